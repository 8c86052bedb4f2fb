// Orthogonal distances and their derivatives; Gauss and Newton's method on them.
//
// The foot on an ellipse: in its own axes and the first quadrant, the foot is (a² x / (s + a² − b²),
// b² y / s) for the greatest root s of  (a x / (s + a² − b²))² + (b y / s)² = 1.  The left side falls and is
// convex there, so Newton's method climbs to the root from the larger of b y and a x − (a² − b²), where one
// term alone is 1, and cannot leave (after D. Eberly, "Distance from a point to an ellipse, an ellipsoid, or
// a hyperellipsoid", 2013).  With t = s − b² as the unknown, t + b² loses all digits next to the long axis.
//
// Everything happens in a frame of size 1 to 2.
#include <gauge/internal/fit_shapes.h>
#include <gauge/internal/least_squares.h>
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>

#include <algorithm>
#include <cmath>

namespace {

// Circles with a larger radius, and ellipses with a longer axis, say nothing about points of size 1 to 2.
constexpr double kLargest = 1e7;
constexpr double kLongest = 1e4;

// From a start far below the root Newton's method grows s by a half each time: 100 times are a factor of
// 4e17, beyond which the foot does not change by a rounding.
constexpr int kMostSteps = 100;

gxVector<2> turnedLeft(const gxVector<2>& v) {
  return {-v.y(), v.x()};
}

// The conic through five points: the null vector of five equations in six unknowns.
bool conicThrough(const gxVector<2>* p, std::array<double, 6>& conic) {
  std::array<std::array<double, 6>, 5> m{};
  for (std::size_t i = 0; i < 5; ++i) {
    const double x = p[i].x();
    const double y = p[i].y();
    m[i] = {x * x, x * y, y * y, x, y, 1.0};
  }
  std::array<std::size_t, 6> column{0, 1, 2, 3, 4, 5};
  for (std::size_t k = 0; k < 5; ++k) {
    std::size_t row = k;
    std::size_t best = k;
    for (std::size_t i = k; i < 5; ++i) {
      for (std::size_t j = k; j < 6; ++j) {
        if (std::abs(m[i][column[j]]) > std::abs(m[row][column[best]])) {
          row = i;
          best = j;
        }
      }
    }
    std::swap(m[k], m[row]);
    std::swap(column[k], column[best]);
    const double pivot = m[k][column[k]];
    if (!(std::abs(pivot) > 1e-13)) return false;
    for (std::size_t i = k + 1; i < 5; ++i) {
      const double factor = m[i][column[k]] / pivot;
      for (std::size_t j = k; j < 6; ++j) m[i][column[j]] -= factor * m[k][column[j]];
    }
  }
  conic[column[5]] = 1.0;
  for (std::size_t k = 5; k-- > 0;) {
    double value = 0.0;
    for (std::size_t j = k + 1; j < 6; ++j) value -= m[k][column[j]] * conic[column[j]];
    conic[column[k]] = value / m[k][column[k]];
  }
  return true;
}

std::optional<gx_FitEllipse> ellipseOf(const std::array<double, 6>& conic) {
  const auto [xx, xy, yy, x, y, one] = conic;
  const double inner = 4.0 * xx * yy - xy * xy;
  if (!(inner > 0.0)) return std::nullopt;
  gx_FitEllipse ellipse;
  ellipse.centre = {(xy * y - 2.0 * yy * x) / inner, (xy * x - 2.0 * xx * y) / inner};
  const double rest = one + 0.5 * (x * ellipse.centre.x() + y * ellipse.centre.y());
  const double mean = 0.5 * (xx + yy);
  const double root = std::hypot(0.5 * (xx - yy), 0.5 * xy);
  const double sign = mean < 0.0 ? -1.0 : 1.0;
  const double small = sign * mean - root;
  const double large = sign * mean + root;
  if (!(small > 0.0) || !(-sign * rest > 0.0)) return std::nullopt;
  ellipse.a = std::sqrt(-sign * rest / small);
  ellipse.b = std::sqrt(-sign * rest / large);
  const double angle = 0.5 * std::atan2(-sign * xy, -sign * (xx - yy));
  ellipse.along = {std::cos(angle), std::sin(angle)};
  if (!(ellipse.a < kLongest)) return std::nullopt;
  return ellipse;
}

}  // namespace

// ---- Lines ---------------------------------------------------------------------------------------

std::optional<gx_FitLine> gx_FitLine::moved(const std::array<double, 2>& step) const {
  gx_FitLine line = *this;
  line.point = point + turnedLeft(along) * step[0];
  line.along = (along + turnedLeft(along) * std::tan(std::clamp(step[1], -0.7, 0.7))).unit();
  return line;
}

std::optional<gx_FitLine> gx_FitLine::through(const gxVector<2>* p) {
  if (p[0] == p[1]) return std::nullopt;
  return gx_FitLine{(p[0] + p[1]) * 0.5, (p[1] - p[0]).unit()};
}

std::optional<gx_FitLine> gx_FitLine::leastSquares(const std::vector<gxVector<2>>& points) {
  gxVector<2> mean;
  for (const gxVector<2>& p : points) mean += p;
  mean = mean / static_cast<double>(points.size());
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  for (const gxVector<2>& p : points) {
    const gxVector<2> d = p - mean;
    xx += d.x() * d.x();
    xy += d.x() * d.y();
    yy += d.y() * d.y();
  }
  if (!(xx + yy > 0.0)) return std::nullopt;
  const double angle = 0.5 * std::atan2(2.0 * xy, xx - yy);
  return gx_FitLine{mean, {std::cos(angle), std::sin(angle)}};
}

// ---- Circles -------------------------------------------------------------------------------------

std::array<double, 3> gx_FitCircle::row(const gxVector<2>& p) const {
  const gxVector<2> out = (p - centre).unit();
  return {-out.x(), -out.y(), -1.0};
}

std::optional<gx_FitCircle> gx_FitCircle::moved(const std::array<double, 3>& step) const {
  const gx_FitCircle circle{centre + gxVector<2>(step[0], step[1]), radius + step[2]};
  if (!(circle.radius > 0.0) || !(circle.radius < kLargest)) return std::nullopt;
  return circle;
}

std::optional<gx_FitCircle> gx_FitCircle::through(const gxVector<2>* p) {
  const gxVector<2> u = p[1] - p[0];
  const gxVector<2> v = p[2] - p[0];
  const double twice = 2.0 * gf_Cross(u, v);
  if (twice == 0.0) return std::nullopt;
  const gxVector<2> arm((v.y() * (u * u) - u.y() * (v * v)) / twice,
                        (u.x() * (v * v) - v.x() * (u * u)) / twice);
  const gx_FitCircle circle{p[0] + arm, arm.len()};
  if (!(circle.radius < kLargest)) return std::nullopt;
  return circle;
}

std::optional<gx_FitCircle> gx_FitCircle::leastSquares(const std::vector<gxVector<2>>& points) {
  try {
    gxCircleFitResults found;
    gfCircleFit(gxCircleFitParams(gxCircleFitDefs::eFitAll, 0.0, 0, 0.0), points, found);
    if (!(found.circle().radius() < kLargest)) return std::nullopt;
    return gx_FitCircle{found.circle().center(), found.circle().radius()};
  } catch (const gxCircleFitDefs::BadPoints&) {
    return std::nullopt;
  }
}

// ---- Ellipses ------------------------------------------------------------------------------------

gxVector<2> gx_FitEllipse::inside_(const gxVector<2>& p) const {
  const gxVector<2> d = p - centre;
  return {along * d, gf_Cross(along, d)};
}

gxVector<2> gx_FitEllipse::foot_(const gxVector<2>& q) const {
  const double x = std::abs(q.x());
  const double y = std::abs(q.y());
  const double focal = (a - b) * (a + b);
  double s = std::max(b * y, a * x - focal);
  gxVector<2> foot;
  if (s > 0.0) {
    for (int i = 0; i < kMostSteps; ++i) {
      const double u = a * x / (s + focal);
      const double v = b * y / s;
      const double slope = 2.0 * (u * u / (s + focal) + v * v / s);
      const double step = (u * u + v * v - 1.0) / slope;
      if (!(step > 1e-16 * s)) break;
      s += step;
    }
    foot = {a * (a * x / (s + focal)), b * (b * y / s)};
    // Onto the ellipse itself, as s is rounded.
    foot = foot / std::hypot(foot.x() / a, foot.y() / b);
  } else {
    // On the long axis, between the centres of curvature of its ends; of a circle its centre.
    const double ratio = focal > 0.0 ? a * x / focal : 0.0;
    foot = {a * ratio, b * std::sqrt((1.0 - ratio) * (1.0 + ratio))};
  }
  return {std::copysign(foot.x(), q.x()), std::copysign(foot.y(), q.y())};
}

double gx_FitEllipse::distance(const gxVector<2>& p) const {
  const gxVector<2> q = inside_(p);
  const gxVector<2> d = q - foot_(q);
  const double u = q.x() / a;
  const double v = q.y() / b;
  return u * u + v * v < 1.0 ? -d.len() : d.len();
}

std::array<double, 5> gx_FitEllipse::row(const gxVector<2>& p) const {
  const gxVector<2> foot = foot_(inside_(p));
  const gxVector<2> normal = gxVector<2>(foot.x() / (a * a), foot.y() / (b * b)).unit();
  const gxVector<2> out = along * normal.x() + turnedLeft(along) * normal.y();
  return {-out.x(), -out.y(), -normal.x() * (foot.x() / a), -normal.y() * (foot.y() / b),
          -gf_Cross(foot, normal)};
}

std::optional<gx_FitEllipse> gx_FitEllipse::moved(const std::array<double, 5>& step) const {
  gx_FitEllipse ellipse = *this;
  ellipse.centre = centre + gxVector<2>(step[0], step[1]);
  ellipse.a = a + step[2];
  ellipse.b = b + step[3];
  ellipse.along = (along + turnedLeft(along) * std::tan(std::clamp(step[4], -0.7, 0.7))).unit();
  if (ellipse.a < ellipse.b) {
    std::swap(ellipse.a, ellipse.b);
    ellipse.along = turnedLeft(ellipse.along);
  }
  if (!(ellipse.b > 1e-9 * ellipse.a) || !(ellipse.a < kLongest)) return std::nullopt;
  return ellipse;
}

std::optional<gx_FitEllipse> gx_FitEllipse::through(const gxVector<2>* p) {
  std::array<double, 6> conic{};
  if (!conicThrough(p, conic)) return std::nullopt;
  return ellipseOf(conic);
}

std::optional<gx_FitEllipse> gx_FitEllipse::leastSquares(const std::vector<gxVector<2>>& points) {
  try {
    gxEllipseFitResults found;
    gfEllipseFit(gxEllipseFitParams(gxEllipseFitDefs::eFitAll, gxRadian(0.0), 0, 0.0), points, found);
    const gxEllipse::gxEllipseGeom& geom = found.ellipse().geom();
    const double angle = geom.rotation.toDouble();
    if (!(geom.radii.x() < kLongest) || !(geom.radii.y() > 0.0)) return std::nullopt;
    return gx_FitEllipse{
        geom.center, {std::cos(angle), std::sin(angle)}, geom.radii.x(), geom.radii.y()};
  } catch (const gxEllipseFitDefs::BadPoints&) {
    return std::nullopt;
  }
}

// ---- Refining ------------------------------------------------------------------------------------

template <class Shape>
std::optional<Shape> gx_refined(
    const Shape& start, std::span<const gxVector<2>> points, std::span<const double> weights, int most,
    std::array<std::array<double, Shape::kUnknowns>, Shape::kUnknowns>* covariance) {
  const auto costOf = [&](const Shape& shape) {
    double sum = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (weights[i] == 0.0) continue;
      const double e = shape.distance(points[i]);
      sum += weights[i] * e * e;
    }
    return sum;
  };
  Shape shape = start;
  double cost = costOf(shape);
  gx_LeastSquares<Shape::kUnknowns> equations;
  for (int round = 0;; ++round) {
    equations.clear();
    equations.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (weights[i] == 0.0) continue;
      equations.add(shape.row(points[i]), -shape.distance(points[i]), weights[i]);
    }
    equations.solve();
    if (!equations.determined()) return std::nullopt;
    if (covariance != nullptr) *covariance = equations.covariance;
    double size = 0.0;
    for (const double d : equations.x) size = std::max(size, std::abs(d));
    if (round == most || size < 1e-16) return shape;
    bool lower = false;
    for (double factor = 1.0; !lower && factor * size > 1e-16; factor *= 0.5) {
      auto step = equations.x;
      for (double& d : step) d *= factor;
      const std::optional<Shape> next = shape.moved(step);
      if (!next) continue;
      const double there = costOf(*next);
      // A step of the size of rounding is taken even if the cost rises by rounding.
      lower = there < cost || (size < 1e-7 && there <= cost * (1.0 + 1e-12) + 1e-30 && factor == 1.0);
      if (!lower) continue;
      shape = *next;
      cost = there;
    }
    if (!lower || size < 1e-15) return shape;
  }
}

template GXSHAPE_API std::optional<gx_FitLine> gx_refined(const gx_FitLine&,
                                                          std::span<const gxVector<2>>,
                                                          std::span<const double>, int,
                                                          std::array<std::array<double, 2>, 2>*);
template GXSHAPE_API std::optional<gx_FitCircle> gx_refined(const gx_FitCircle&,
                                                            std::span<const gxVector<2>>,
                                                            std::span<const double>, int,
                                                            std::array<std::array<double, 3>, 3>*);
template GXSHAPE_API std::optional<gx_FitEllipse> gx_refined(const gx_FitEllipse&,
                                                             std::span<const gxVector<2>>,
                                                             std::span<const double>, int,
                                                             std::array<std::array<double, 5>, 5>*);
