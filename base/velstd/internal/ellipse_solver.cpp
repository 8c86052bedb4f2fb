// The ellipse nearest to points.
//
//  1. Start from the algebraic fit that can only give ellipses.  On short noisy arcs it is drawn to
//     small ellipses; where the result is doubtful, the circle nearest to the points and the ellipse
//     with their second moments are tried as well, to help it out of a wrong valley.
//  2. Refine to the least sum of squared orthogonal distances, by the method of Levenberg and
//     Marquardt.  The unknowns are the conic's coefficients, the quadratic ones with trace 1.  The
//     distance of a point changes with a coefficient by the term at its foot, divided by the slope of
//     the conic there.  (Centre and matrix, or centre, radii and rotation, were tried first: on arcs
//     of 30 degrees a hundred steps did not reach the bottom of their bent valley.  For the
//     coefficients the valley is straight, and 5 to 10 steps do; and circles are no exception.)
//     Of many points, a regular sample settles the shape and all of them only finish.
//  3. A short noisy arc leaves the size of the ellipse open: along a valley from some small ellipse to
//     a parabola the sum hardly changes, and its least place is anywhere, or at infinity.  Where the
//     standard error of the longer semi-axis is above a thirtieth of it, a smaller ellipse is preferred
//     among nearly equal ones (kPreference).
//  4. Where the circle nearest to the points is as good, it is the result.
#include <velstd/internal/circle_solver.h>
#include <velstd/internal/ellipse_distance.h>
#include <velstd/internal/ellipse_solver.h>
#include <velstd/internal/ellipse_start.h>
#include <velstd/internal/fit_frame.h>
#include <velstd/internal/normal_equations.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using Points = std::vector<gxVector<2>>;
using Unknowns = std::array<double, 5>;

// Refinement needs 4 to 15 evaluations; long flat arcs with much noise some 50.
constexpr int kMostEvaluations = 100;

// The frame is 1 to 4 wide.  Of an ellipse larger than this the points show less than a thousandth.
constexpr double kLargestAxis = 1e3;
// An ellipse flatter than this is a doubled segment.
constexpr double kFlattest = 1e-7;

// The refinement over all points begins near its end and goes on until a step is below some
// hundred-thousandth of the unknowns' own uncertainty; what it leaves is a thousandth of that.
constexpr double kLastStepOfMany = 1e-12;

// Of more points than twice this, a sample of so many is fitted first.
constexpr std::size_t kSample = 500;

// The size counts as open when its relative standard error is above kDoubt.  Then the logarithm of the
// likelihood, n/2 log S, gets the term k log(1 + a / frame) with k = kPreference: as good as k more
// observations in favour of the smaller.  On arcs of 30 to 120 degrees with noise, k = 0 leaves a
// twentieth of the ellipses off by twice their size, k = 1 by 0.7, 2 to 4 by 0.3 to 0.6 at a median
// error 10 to 20 percent below that of k = 0; see docs/accuracy.md for the arcs.
constexpr double kDoubt = 0.03;
constexpr double kPreference = 3.0;

bool reasonable(const gx_EllipseAxes& axes) {
  return axes.a <= kLargestAxis && axes.b >= kFlattest * axes.a;
}

gxVector<2> turned(const gxVector<2>& v, const gxVector<2>& axis) {
  return {v * axis, gf_Cross(axis, v)};
}

gx_EllipseImage imageOf(const gx_CircleArc& arc) {
  return {arc.center(), arc.radius(), 0.0, arc.radius()};
}

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

gx_NormalEquations<5> evaluate(const gx_EllipseImage& image, const Points& points) {
  const gx_EllipseAxes axes = gx_AxesOf(image);
  const gxVector<2> back(axes.major.x(), -axes.major.y());
  const double scale = gx_ConicScale(axes);
  gx_NormalEquations<5> sums;
  for (const gxVector<2>& p : points) {
    const Foot foot = footOf(axes, p);
    const gxVector<2> f = axes.center + turned({axes.a * foot.place.x(), axes.b * foot.place.y()}, back);
    const double gx = foot.place.x() / axes.a;
    const double gy = foot.place.y() / axes.b;
    const double steep = 0.5 / (scale * std::sqrt(gx * gx + gy * gy));
    sums.add({0.5 * (f.x() - f.y()) * (f.x() + f.y()) * steep, f.x() * f.y() * steep, f.x() * steep,
              f.y() * steep, steep},
             foot.distance);
  }
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

// The conic after a step.
gx_Conic shifted(gx_Conic k, const Unknowns& step) {
  k.xx += 0.5 * step[0];
  k.yy -= 0.5 * step[0];
  k.xy += step[1];
  k.x += step[2];
  k.y += step[3];
  k.one += step[4];
  return k;
}

std::optional<gx_EllipseImage> moved(const gx_EllipseImage& image, const Unknowns& step) {
  std::optional<gx_EllipseImage> next = gx_ImageOf(shifted(gx_ConicOf(gx_AxesOf(image)), step));
  if (next && !reasonable(gx_AxesOf(*next))) next.reset();
  return next;
}

// The change of the longer semi-axis with each unknown.
Unknowns slopeOfSize(const gx_EllipseImage& image) {
  constexpr double kStep = 1e-7;
  const double here = gx_AxesOf(image).a;
  Unknowns slope{};
  for (std::size_t i = 0; i < slope.size(); ++i) {
    Unknowns step{};
    for (const double way : {kStep, -kStep}) {
      step[i] = way / here;
      if (const auto next = gx_ImageOf(shifted(gx_ConicOf(gx_AxesOf(image)), step))) {
        slope[i] = (gx_AxesOf(*next).a - here) / step[i];
        break;
      }
    }
  }
  return slope;
}

// Turns the sums for S into those for S · (1 + a)^(2 w), a the longer semi-axis in the unit of the
// frame.  The curvature of the second factor is left out: it only lengthens the steps.
void preferSmall(gx_NormalEquations<5>& sums, const gx_EllipseImage& image, double w) {
  const double size = 1.0 + gx_AxesOf(image).a;
  const double factor = std::pow(size, 2.0 * w);
  const Unknowns slope = slopeOfSize(image);
  for (std::size_t i = 0; i < slope.size(); ++i) {
    sums.gradient[i] = factor * (sums.gradient[i] + w * sums.cost / size * slope[i]);
    for (std::size_t j = 0; j <= i; ++j) sums.matrix[i][j] *= factor;
  }
  sums.cost *= factor;
}

// The standard error of the longer semi-axis, relative to it.
double doubtOfSize(const gx_EllipseImage& image, const Points& points, bool upright) {
  gx_NormalEquations<5> sums = evaluate(image, points);
  const Unknowns slope = slopeOfSize(image);
  for (std::size_t i = 0; i < slope.size(); ++i) sums.gradient[i] = -slope[i];
  if (upright) sums.hold(1);
  const auto solved = sums.step(0.0);
  if (!solved || points.size() < 6) return 0.0;
  double product = 0.0;
  for (std::size_t i = 0; i < slope.size(); ++i)
    product += (upright && i == 1 ? 0.0 : slope[i] * (*solved)[i]);
  const double variance = sums.cost / static_cast<double>(points.size() - 5) * product;
  return std::sqrt(variance) / gx_AxesOf(image).a;
}

bool liesOnLine(const Points& points, double rounding) {
  const gx_NearestLine line = gx_FindNearestLine(points);
  return !(line.width > 4.0 * rounding && line.width > 1e-14 * line.length);
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

gx_EllipseSolver::Fitted gx_EllipseSolver::refine(const Shape& start, const Points& points,
                                                  double preference, double lastStep) const {
  const auto [shape, cost] = gx_LeastSquares<5>(
      start, kMostEvaluations, lastStep,
      [&](const Shape& image) {
        gx_NormalEquations<5> sums = evaluate(image, points);
        if (preference > 0.0) preferSmall(sums, image, preference / static_cast<double>(points.size()));
        if (upright_) sums.hold(1);
        return sums;
      },
      [](const Shape& image, const Unknowns& step) { return moved(image, step); });
  return {shape, cost};
}

// The best of the refined starts; without preference, one that has not grown to the edge of reason,
// where there is no least sum.
std::optional<gx_EllipseSolver::Fitted> gx_EllipseSolver::best(
    const std::vector<std::optional<Shape>>& starts, const Points& points, double preference) const {
  std::optional<Fitted> result;
  for (const std::optional<Shape>& start : starts) {
    if (!start || !reasonable(gx_AxesOf(*start))) continue;
    const Fitted refined = refine(*start, points, preference, gx_kLastStep);
    if (preference == 0.0 && gx_AxesOf(refined.shape).a > 0.5 * kLargestAxis) continue;
    if (!result || refined.cost < result->cost) result = refined;
  }
  return result;
}

std::optional<gx_EllipseImage> gx_EllipseSolver::roughFit(const Points& points) const {
  return gx_DirectEllipse(points, upright_);
}

std::optional<gx_EllipseSolver::Fitted> gx_EllipseSolver::fit(const Points& points) const {
  const std::size_t fewest = upright_ ? kFewest - 1 : kFewest;
  if (gx_CountDistinct(points, fewest) < fewest) return std::nullopt;
  const Points sample = thinned(points);
  const bool all = sample.size() == points.size();
  const double share =
      std::sqrt(static_cast<double>(sample.size()) / static_cast<double>(points.size()));
  if (liesOnLine(points, rounding_)) return std::nullopt;

  const gx_CircleSolver circles(std::nullopt, rounding_);
  const auto arc = circles.fit(sample);
  const std::optional<Shape> circle = arc ? std::optional<Shape>(imageOf(arc->shape)) : std::nullopt;
  const std::optional<Shape> direct = gx_DirectEllipse(sample, upright_);

  // A shape that the points determine well is the only one; a doubtful one has rivals.
  const auto doubtful = [&](const std::optional<Fitted>& fitted) {
    return !fitted || doubtOfSize(fitted->shape, sample, upright_) * share > kDoubt;
  };
  std::optional<Fitted> result = best({direct}, sample, 0.0);
  if (doubtful(result)) {
    const auto shape = result ? std::optional<Shape>(result->shape) : direct;
    result = best({shape, circle, gx_MomentsEllipse(sample, upright_)}, sample, 0.0);
  }
  if (doubtful(result)) {
    const auto shape = result ? std::optional<Shape>(result->shape) : std::nullopt;
    const std::optional<Fitted> small = best({shape, direct, circle}, sample, kPreference);
    if (small) result = all ? small : refine(small->shape, points, kPreference, gx_kLastStep);
    if (result) result->cost = costOf(result->shape, points);
  } else if (!all) {
    result = refine(result->shape, points, 0.0, kLastStepOfMany);
  }

  // The nearest circle has no smaller sum over all points than the circle nearest to the sample has
  // over the sample.
  if (circle && !(result && result->cost < costOf(*circle, sample))) {
    const auto full = all ? arc : circles.fit(points);
    if (full && !(result && result->cost < full->cost))
      result = Fitted{imageOf(full->shape), full->cost};
  }
  return result;
}

void gx_EllipseSolver::distances(const gx_EllipseImage& shape, const Points& points,
                                 std::vector<double>& out) {
  out.clear();
  out.reserve(points.size());
  const gx_EllipseAxes axes = gx_AxesOf(shape);
  for (const gxVector<2>& p : points) out.push_back(std::fabs(footOf(axes, p).distance));
}
