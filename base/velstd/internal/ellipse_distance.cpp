// The foot of a point on an ellipse.
//
//  1. By symmetry the point is in the first quadrant.  Its foot F fulfils p − F = t ∇(x²/a² + y²/b²) / 2,
//     so F = (a² x / (t + a²), b² y / (t + b²)) for the largest root t of
//     (a x / (t + a²))² + (b y / (t + b²))² = 1 (D. Eberly, "Distance from a point to an ellipse, an
//     ellipsoid, or a hyperellipsoid", 2013).
//  2. With w = t / b² + 1, k = a² / b² − 1: (p / (w + k))² + (q / w)² = 1, p = a x / b², q = y / b.
//     As w is measured from the pole, it keeps its relative precision for points near the major
//     axis, where a root counted from 0 would lose it.
//  3. One over the root of the left side grows and is concave, nearly a straight line (J. Moré, "The
//     Levenberg-Marquardt algorithm: implementation and theory", 1978, for the same kind of equation),
//     so Newton's method on it climbs to the root from the left and cannot leave.  It starts at w = 1,
//     the root of points on the ellipse, or at the place where one of the two terms alone is 1,
//     whichever is farther right; a step from the right of the root lands on its left, and is held
//     above that place.
//  4. The two terms at the root are cosine² and sine².
#include <velstd/internal/ellipse_distance.h>

#include <algorithm>
#include <cmath>

gx_EllipseFoot gx_FootOnEllipse(double a, double b, double x, double y) {
  const double ratio = a / b;
  const double k = (ratio - 1.0) * (ratio + 1.0);
  const double p = ratio * (std::fabs(x) / b);
  // A point on the major axis is moved off it by nothing that counts; its foot then has y > 0.
  constexpr double kOffTheAxis = 1e-150;
  const double q = std::max(std::fabs(y) / b, kOffTheAxis);
  const double lowest = std::max(q, p - k);

  constexpr int kMostRounds = 60;  // never reached: the start is within a factor of 1.5 of the root
  double w = std::max(lowest, 1.0);
  for (int i = 0; i < kMostRounds; ++i) {
    const double du = 1.0 / (w + k);
    const double dv = 1.0 / w;
    const double u = p * du;
    const double v = q * dv;
    const double square = u * u + v * v;
    const double step = (std::sqrt(square) - 1.0) * square / (u * u * du + v * v * dv);
    const double next = std::max(lowest, w + step);
    // What a step leaves is its square at most, and the distance depends on the square of that.
    const bool settled = std::fabs(next - w) <= 1e-6 * w;
    w = next;
    if (settled) break;
  }
  const double u = p / (w + k);
  const double v = q / w;
  const double norm = 1.0 / std::sqrt(u * u + v * v);
  return {std::copysign(u * norm, x), std::copysign(v * norm, y)};
}
