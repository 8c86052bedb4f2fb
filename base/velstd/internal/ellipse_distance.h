/// The point of an ellipse nearest to a given point.
#pragma once

#include <velstd/internal/four.h>

/// The nearest point of an ellipse with its axes along x and y.
template <class Number>
struct gx_EllipseFeet {
  Number cosine;  ///< the nearest point is (a cosine, b sine), cosine² + sine² = 1
  Number sine;
};
using gx_EllipseFoot = gx_EllipseFeet<double>;

/// The way to the points of the ellipse x²/a² + y²/b² = 1 nearest to (x, y), one or four, to rounding.
///
/// Expects a >= b >= 1e-12 a and numbers that neither overflow nor vanish when squared.  Where
/// several points are equally near (points of the major axis near the centre), the one with y >= 0
/// is taken; a point in the centre of a circle gives (a, 0) or (0, b).
/// Cost: 2 to 4 rounds of two divisions for points near the ellipse, some more elsewhere.
///
///  1. By symmetry the point is in the first quadrant.  Its foot F fulfils p − F = t ∇(x²/a² + y²/b²) / 2,
///     so F = (a² x / (t + a²), b² y / (t + b²)) for the largest root t of
///     (a x / (t + a²))² + (b y / (t + b²))² = 1 (D. Eberly, "Distance from a point to an ellipse, an
///     ellipsoid, or a hyperellipsoid", 2013).
///  2. With w = t / b² + 1, k = a² / b² − 1: (p / (w + k))² + (q / w)² = 1, p = a x / b², q = y / b.
///     As w is measured from the pole, it keeps its relative precision for points near the major
///     axis, where a root counted from 0 would lose it.
///  3. One over the root of the left side grows and is concave, nearly a straight line (J. Moré, "The
///     Levenberg-Marquardt algorithm: implementation and theory", 1978, for the same kind of equation),
///     so Newton's method on it climbs to the root from the left and cannot leave.  It starts at w = 1,
///     the root of points on the ellipse, or at the place where one of the two terms alone is 1,
///     whichever is farther right; a step from the right of the root lands on its left, and is held
///     above that place.  Of four, each stays where it has settled, so that it has the bits that it
///     has alone.
///  4. The two terms at the root are cosine² and sine².
template <class Number>
class gx_FeetClimb {
 public:
  GX_FOURFOLD gx_FeetClimb(double a, double b, const Number& x, const Number& y) : x_(x), y_(y) {
    const Number zero = {};
    const double ratio = a / b;
    k_ = (ratio - 1.0) * (ratio + 1.0);
    const double perB = 1.0 / b;
    p_ = (x < zero ? -x : x) * (ratio * perB);
    // A point on the major axis is moved off it by nothing that counts; its foot then has y > 0.
    const Number offTheAxis = zero + 1e-150;
    const Number above = (y < zero ? -y : y) * perB;
    q_ = above > offTheAxis ? above : offTheAxis;
    lowest_ = q_ > p_ - k_ ? q_ : p_ - k_;
    const Number one = zero + 1.0;
    w_ = lowest_ > one ? lowest_ : one;
  }

  // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): it has its first value where it is declared
  GX_FOURFOLD bool settled() const { return gf_AllTrue(settled_); }

  GX_FOURFOLD void round() {
    const Number inverse = 1.0 / (w_ * (w_ + k_));
    const Number du = w_ * inverse;
    const Number dv = (w_ + k_) * inverse;
    const Number u = p_ * du;
    const Number v = q_ * dv;
    const Number uu = u * u;
    const Number vv = v * v;
    const Number square = uu + vv;
    Number root = square;
    gf_TakeRoot(root);
    const Number step = (root - 1.0) * square / (uu * du + vv * dv);
    const Number there = w_ + step;
    const Number next = lowest_ > there ? lowest_ : there;
    const Number moved = next < w_ ? w_ - next : next - w_;
    // What a step leaves is its square at most, and the distance depends on the square of that.
    const auto close = moved <= 1e-5 * w_;
    w_ = settled_ ? w_ : next;
    settled_ |= close;
  }

  GX_FOURFOLD void end(gx_EllipseFeet<Number>& feet) const {
    const Number zero = {};
    const Number inverse = 1.0 / (w_ * (w_ + k_));
    const Number u = p_ * (w_ * inverse);
    const Number v = q_ * ((w_ + k_) * inverse);
    Number norm = u * u + v * v;
    gf_TakeRoot(norm);
    norm = 1.0 / norm;
    feet.cosine = x_ < zero ? -u * norm : u * norm;
    feet.sine = y_ < zero ? -v * norm : v * norm;
  }

  /// Never reached: the start is within a factor of 1.5 of the root.
  static constexpr int kMostRounds = 60;

 private:
  double k_;
  Number x_;
  Number y_;
  Number p_;
  Number q_;
  Number lowest_;
  Number w_;
  decltype(Number() < Number()) settled_ = {};
};
