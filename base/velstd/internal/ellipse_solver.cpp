// The ellipse nearest to points.
//
//  1. Take three starts: the algebraic fit that can only give ellipses, the circle nearest to the
//     points, and the ellipse with the points' second moments.  The first is usually the best but is
//     drawn to small ellipses when a short arc is noisy; the others help it out of a wrong valley.
//  2. Refine each to the least sum of squared orthogonal distances, by the method of Levenberg and
//     Marquardt.  The ellipse is the image of the unit circle under centre + M w with a symmetric M:
//     five unknowns that stay independent when the ellipse is a circle, where radii and rotation do
//     not.  At the foot M w with normal n the distance changes by −n with the centre and by −n·(dM w)
//     with M.  Of many points, a regular sample settles the shape first and all of them only finish.
//  3. Take the best ellipse of a reasonable size.  Where the points follow a parabola or a hyperbola,
//     the sum falls for ever as the ellipse grows; then the algebraic fit stands as it is.
//  4. Where the circle nearest to the points is as good, it is the result.
#include <velstd/internal/circle_solver.h>
#include <velstd/internal/ellipse_distance.h>
#include <velstd/internal/ellipse_solver.h>
#include <velstd/internal/fit_frame.h>
#include <velstd/internal/normal_equations.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace {

using Points = std::vector<gxVector<2>>;

// Refinement needs 4 to 15 evaluations; long flat arcs with much noise some 50.
constexpr int kMostEvaluations = 100;

// The frame is 2 to 4 wide.  An ellipse larger than this shows less than a thousandth of its outline.
constexpr double kLargestAxis = 1e3;
// An ellipse flatter than this is a doubled segment.
constexpr double kFlattest = 1e-7;

// Of more points than twice this, a sample of so many is fitted first.
constexpr std::size_t kSample = 500;

gxVector<2> turned(const gxVector<2>& v, const gxVector<2>& axis) {
  return {v * axis, gf_Cross(axis, v)};
}

gx_EllipseImage imageOf(const gx_EllipseAxes& axes) {
  const double c = axes.major.x();
  const double s = axes.major.y();
  return {axes.center, axes.a * c * c + axes.b * s * s, (axes.a - axes.b) * c * s,
          axes.a * s * s + axes.b * c * c};
}

bool reasonable(const gx_EllipseAxes& axes) {
  return axes.a <= kLargestAxis && axes.b >= kFlattest * axes.a;
}

// ---- The algebraic start --------------------------------------------------------------------------

template <std::size_t N>
using Matrix = std::array<std::array<double, N>, N>;

// Turns a symmetric matrix into a diagonal one by plane rotations; returns its eigenvector, of
// length 1, for the largest eigenvalue.
template <std::size_t N>
std::array<double, N> largestEigenvector(Matrix<N> m) {
  Matrix<N> vectors{};
  for (std::size_t i = 0; i < N; ++i) vectors[i][i] = 1.0;
  constexpr int kSweeps = 12;  // the off-diagonal elements are squared away after some five
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    for (std::size_t i = 0; i + 1 < N; ++i) {
      for (std::size_t j = i + 1; j < N; ++j) {
        if (m[i][j] == 0.0) continue;
        const double angle = 0.5 * std::atan2(2.0 * m[i][j], m[j][j] - m[i][i]);
        const double c = std::cos(angle);
        const double s = std::sin(angle);
        for (std::size_t k = 0; k < N; ++k) {
          const double first = m[k][i];
          const double second = m[k][j];
          m[k][i] = c * first - s * second;
          m[k][j] = s * first + c * second;
        }
        for (std::size_t k = 0; k < N; ++k) {
          const double first = m[i][k];
          const double second = m[j][k];
          m[i][k] = c * first - s * second;
          m[j][k] = s * first + c * second;
          const double u = vectors[k][i];
          const double v = vectors[k][j];
          vectors[k][i] = c * u - s * v;
          vectors[k][j] = s * u + c * v;
        }
      }
    }
  }
  std::size_t best = 0;
  for (std::size_t i = 1; i < N; ++i) {
    if (m[i][i] > m[best][best]) best = i;
  }
  std::array<double, N> result{};
  for (std::size_t i = 0; i < N; ++i) result[i] = vectors[i][best];
  return result;
}

// A conic xx x² + xy xy + yy y² + x x + y y + one = 0.
struct Conic {
  double xx, xy, yy, x, y, one;
};

std::optional<gx_EllipseImage> imageOf(Conic k) {
  const double det = 4.0 * k.xx * k.yy - k.xy * k.xy;
  if (!(det > 0.0)) return std::nullopt;
  const gxVector<2> center((k.xy * k.y - 2.0 * k.yy * k.x) / det, (k.xy * k.x - 2.0 * k.xx * k.y) / det);
  const double level = -(k.one + 0.5 * (k.x * center.x() + k.y * center.y()));
  const double mean = 0.5 * (k.xx + k.yy) / level;
  const double spread = 0.5 * std::hypot(k.xx - k.yy, k.xy) / std::fabs(level);
  const double larger = mean + spread;
  const double smaller = det / (4.0 * level * level) / larger;
  if (!(smaller > 0.0) || !std::isfinite(larger)) return std::nullopt;
  const double sign = level < 0.0 ? -1.0 : 1.0;
  const gxRadian major(0.5 * std::atan2(-sign * k.xy, sign * (k.yy - k.xx)));
  gx_EllipseAxes axes{center, gxVector<2>(1.0, major), 1.0 / std::sqrt(smaller),
                      1.0 / std::sqrt(larger)};
  if (!std::isfinite(axes.a) || !std::isfinite(center * center)) return std::nullopt;
  return imageOf(axes);
}

// The direct least squares fit: the conic of the least algebraic error among those with
// 4 xx yy − xy² = 1 (A. Fitzgibbon, M. Pilu and R. Fisher, IEEE PAMI 21, 1999), by eliminating the
// linear terms first (R. Halíř and J. Flusser, WSCG 1998).  Q is the number of quadratic terms: 3, or 2
// without xy.  The constraint has one positive eigenvalue, which is looked for in the symmetric
// problem L⁻¹ C L⁻ᵀ with the scatter L Lᵀ: exact points, which make the scatter singular, need only
// a ridge of rounding size.
template <std::size_t Q>
std::optional<gx_EllipseImage> directFit(const Points& points) {
  constexpr std::size_t N = Q + 3;
  Matrix<N> s{};
  for (const gxVector<2>& p : points) {
    std::array<double, N> term{};
    term[0] = p.x() * p.x();
    term[1] = Q == 3 ? p.x() * p.y() : p.y() * p.y();
    if (Q == 3) term[2] = p.y() * p.y();
    term[Q] = p.x();
    term[Q + 1] = p.y();
    term[Q + 2] = 1.0;
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t j = 0; j <= i; ++j) s[i][j] += term[i] * term[j];
    }
  }
  for (std::size_t i = 0; i < N; ++i) {
    for (std::size_t j = 0; j < i; ++j) s[j][i] = s[i][j];
  }
  for (std::size_t k = N; k-- > Q;) {
    if (!(s[k][k] > 0.0)) return std::nullopt;
    for (std::size_t i = 0; i < k; ++i) {
      for (std::size_t j = 0; j < k; ++j) s[i][j] -= s[i][k] * s[k][j] / s[k][k];
    }
  }

  Matrix<Q> low{};
  double trace = 0.0;
  for (std::size_t i = 0; i < Q; ++i) trace += s[i][i];
  const double ridge = trace * 1e-16;
  for (std::size_t i = 0; i < Q; ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      double value = s[i][j] + (i == j ? ridge : 0.0);
      for (std::size_t k = 0; k < j; ++k) value -= low[i][k] * low[j][k];
      low[i][j] = i == j ? std::sqrt(std::max(value, ridge)) : value / low[j][j];
    }
  }
  const auto solveLower = [&low](std::array<double, Q>& v) {
    for (std::size_t i = 0; i < Q; ++i) {
      for (std::size_t k = 0; k < i; ++k) v[i] -= low[i][k] * v[k];
      v[i] /= low[i][i];
    }
  };
  const auto solveUpper = [&low](std::array<double, Q>& v) {
    for (std::size_t i = Q; i-- > 0;) {
      for (std::size_t k = i + 1; k < Q; ++k) v[i] -= low[k][i] * v[k];
      v[i] /= low[i][i];
    }
  };
  Matrix<Q> m{};
  for (std::size_t j = 0; j < Q; ++j) {
    std::array<double, Q> v{};
    v[j] = 1.0;
    solveUpper(v);
    std::array<double, Q> c{};
    c[0] = 2.0 * v[Q - 1];
    c[Q - 1] = 2.0 * v[0];
    if (Q == 3) c[1] = -v[1];
    solveLower(c);
    for (std::size_t i = 0; i < Q; ++i) m[i][j] = c[i];
  }
  std::array<double, Q> quadratic = largestEigenvector<Q>(m);
  solveUpper(quadratic);

  std::array<double, N> k{};
  std::copy(quadratic.begin(), quadratic.end(), k.begin());
  for (std::size_t i = Q; i < N; ++i) {
    for (std::size_t j = 0; j < i; ++j) k[i] -= s[i][j] * k[j];
    k[i] /= s[i][i];
  }
  return imageOf(Conic{k[0], Q == 3 ? k[1] : 0.0, k[Q - 1], k[Q], k[Q + 1], k[Q + 2]});
}

std::optional<gx_EllipseImage> directFit(const Points& points, bool upright) {
  return upright ? directFit<2>(points) : directFit<3>(points);
}

// ---- The other starts -----------------------------------------------------------------------------

gx_EllipseImage imageOf(const gx_CircleArc& arc) {
  return {arc.center(), arc.radius(), 0.0, arc.radius()};
}

// The ellipse whose outline has the points' centroid and second moments.
gx_EllipseImage momentsFit(const Points& points, bool upright) {
  const auto n = static_cast<double>(points.size());
  gxVector<2> centroid;
  for (const gxVector<2>& p : points) centroid += p;
  centroid = centroid / n;
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  for (const gxVector<2>& p : points) {
    const gxVector<2> d = p - centroid;
    xx += d.x() * d.x();
    xy += d.x() * d.y();
    yy += d.y() * d.y();
  }
  if (upright) xy = 0.0;
  const gxRadian angle(0.5 * std::atan2(2.0 * xy, xx - yy));
  const double mean = 0.5 * (xx + yy);
  const double spread = std::hypot(0.5 * (xx - yy), xy);
  const double a = std::sqrt(2.0 * (mean + spread) / n);
  const double b = std::sqrt(2.0 * std::max(mean - spread, 0.0) / n);
  return imageOf(gx_EllipseAxes{centroid, gxVector<2>(1.0, angle), a, std::max(b, 1e-3 * a)});
}

// ---- The refinement -------------------------------------------------------------------------------

// The distance of a point, signed, positive outside, with the foot's place on the unit circle and the
// normal there, both along the axes.
struct Foot {
  double distance;
  gxVector<2> place;
  gxVector<2> normal;
};

Foot footOf(const gx_EllipseAxes& axes, const gxVector<2>& point) {
  const gxVector<2> p = turned(point - axes.center, axes.major);
  const gx_EllipseFoot foot = gx_FootOnEllipse(axes.a, axes.b, p.x(), p.y());
  const double nx = axes.b * foot.cosine;
  const double ny = axes.a * foot.sine;
  const double scale = 1.0 / std::sqrt(nx * nx + ny * ny);
  const gxVector<2> normal(nx * scale, ny * scale);
  const double d =
      (p.x() - axes.a * foot.cosine) * normal.x() + (p.y() - axes.b * foot.sine) * normal.y();
  return {d, {foot.cosine, foot.sine}, normal};
}

gx_NormalEquations<5> evaluate(const gx_EllipseImage& image, const Points& points, bool upright) {
  const gx_EllipseAxes axes = gx_AxesOf(image);
  const gxVector<2> back(axes.major.x(), -axes.major.y());
  gx_NormalEquations<5> sums;
  for (const gxVector<2>& p : points) {
    const Foot foot = footOf(axes, p);
    const gxVector<2> w = turned(foot.place, back);
    const gxVector<2> n = turned(foot.normal, back);
    sums.add({-n.x(), -n.y(), -n.x() * w.x(), -(n.x() * w.y() + n.y() * w.x()), -n.y() * w.y()},
             foot.distance);
  }
  if (upright) sums.hold(3);
  return sums;
}

double costOf(const gx_EllipseImage& image, const Points& points) {
  const gx_EllipseAxes axes = gx_AxesOf(image);
  double sum = 0.0;
  for (const gxVector<2>& p : points) {
    const double d = footOf(axes, p).distance;
    sum += d * d;
  }
  return sum;
}

std::optional<gx_EllipseImage> moved(const gx_EllipseImage& image, const std::array<double, 5>& step) {
  const gx_EllipseImage raw{image.center + gxVector<2>(step[0], step[1]), image.xx + step[2],
                            image.xy + step[3], image.yy + step[4]};
  // A step beyond flatness gives a negative axis, which is the same ellipse as its opposite.
  const gx_EllipseAxes axes = gx_AxesOf(raw);
  if (!(reasonable(axes) && std::isfinite(axes.center * axes.center))) return std::nullopt;
  return imageOf(axes);
}

// Every so many-th of the points, where there are many.
Points thinned(const Points& points) {
  const std::size_t stride = points.size() / kSample;
  if (stride < 2) return points;
  Points result;
  result.reserve(points.size() / stride + 1);
  for (std::size_t i = 0; i < points.size(); i += stride) result.push_back(points[i]);
  return result;
}

}  // namespace

gx_EllipseAxes gx_AxesOf(const gx_EllipseImage& image) {
  const double mean = 0.5 * (image.xx + image.yy);
  const double spread = std::hypot(0.5 * (image.xx - image.yy), image.xy);
  gx_EllipseAxes axes;
  axes.center = image.center;
  // A multiple of the unit matrix has every direction for its axis; atan2(0, 0) is 0.
  axes.major = gxVector<2>(1.0, gxRadian(0.5 * std::atan2(2.0 * image.xy, image.xx - image.yy)));
  axes.a = std::fabs(mean + spread);
  axes.b = std::fabs(mean - spread);
  if (axes.a < axes.b) {
    std::swap(axes.a, axes.b);
    axes.major = {-axes.major.y(), axes.major.x()};
  }
  return axes;
}

gx_EllipseImage gx_EllipseSolver::refine(const gx_EllipseImage& start, const Points& points) const {
  return gx_LeastSquares<5>(
             start, kMostEvaluations,
             [&](const Shape& image) { return evaluate(image, points, upright_); },
             [](const Shape& image, const std::array<double, 5>& step) { return moved(image, step); })
      .first;
}

std::optional<gx_EllipseImage> gx_EllipseSolver::roughFit(const Points& points) const {
  return directFit(points, upright_);
}

std::optional<gx_EllipseImage> gx_EllipseSolver::fit(const Points& points) const {
  const std::size_t fewest = upright_ ? 4 : kFewest;
  if (gx_CountDistinct(points, fewest) < fewest) return std::nullopt;
  const gx_NearestLine line = gx_FindNearestLine(points);
  if (!(line.width > 4.0 * rounding_ && line.width > 1e-14 * line.length)) return std::nullopt;

  const Points sample = thinned(points);
  const gx_CircleSolver circles(std::nullopt, rounding_);
  const std::optional<gx_CircleArc> circle = circles.fit(sample);

  std::optional<Shape> best;
  double least = std::numeric_limits<double>::infinity();
  const auto consider = [&](const std::optional<Shape>& start) {
    if (!start || !reasonable(gx_AxesOf(*start))) return;
    const Shape refined = refine(*start, sample);
    const double cost = costOf(refined, sample);
    // At the edge of reason there is no least sum.
    if (gx_AxesOf(refined).a > 0.5 * kLargestAxis) return;
    if (cost < least) {
      least = cost;
      best = refined;
    }
  };
  const std::optional<Shape> direct = directFit(sample, upright_);
  consider(direct);
  if (circle) consider(imageOf(*circle));
  consider(momentsFit(sample, upright_));
  if (!best && direct && reasonable(gx_AxesOf(*direct))) best = direct;
  if (best && sample.size() < points.size()) best = refine(*best, points);
  const double cost = best ? costOf(*best, points) : std::numeric_limits<double>::infinity();

  // No circle is nearer to all points than the nearest to some of them: a sum over fewer points.
  if (circle && !(cost < costOf(imageOf(*circle), sample))) {
    const std::optional<gx_CircleArc> full =
        sample.size() < points.size() ? circles.fit(points) : circle;
    if (full && costOf(imageOf(*full), points) <= cost) best = imageOf(*full);
  }
  return best;
}

void gx_EllipseSolver::distances(const gx_EllipseImage& shape, const Points& points,
                                 std::vector<double>& out) {
  out.clear();
  out.reserve(points.size());
  const gx_EllipseAxes axes = gx_AxesOf(shape);
  for (const gxVector<2>& p : points) out.push_back(std::fabs(footOf(axes, p).distance));
}
