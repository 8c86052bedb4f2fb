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
#include <velstd/internal/four.h>
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

// A sample only gives a start; what this leaves is a ten-thousandth of the sample's own uncertainty.
constexpr gx_Refinement kOfSample{1e-8, true, 1e-4};
// The refinement over all points begins near its end, where steps need no damping, and ends where a step
// would be below some ten-thousandth of the unknowns' own uncertainty.
constexpr gx_Refinement kOfAll{1e-12, false, 1e-9};

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

gx_EllipseImage imageOf(const gx_CircleArc& arc) {
  return {arc.center(), arc.radius(), 0.0, arc.radius()};
}

// Points, one or four, as an ellipse sees them.
template <class Number>
struct Seen {
  Number distance;  // signed, positive outside
  Number footX;     // where the foot is
  Number footY;
  Number perSlope;  // one over the length of (b cosine, a sine), the normal at the foot along the axes
};

// The climb to the feet of points, seen from the centre along the axes.
template <class Number>
class Look {
 public:
  GX_FOURFOLD Look(const gx_EllipseAxes& axes, const Number& px, const Number& py)
      : axes_(axes),
        x_((px - axes.center.x()) * axes.major.x() + (py - axes.center.y()) * axes.major.y()),
        y_((py - axes.center.y()) * axes.major.x() - (px - axes.center.x()) * axes.major.y()),
        climb_(axes.a, axes.b, x_, y_) {}

  GX_FOURFOLD bool settled() const { return climb_.settled(); }
  GX_FOURFOLD void round() { climb_.round(); }

  GX_FOURFOLD void end(Seen<Number>& seen) const {
    gx_EllipseFeet<Number> feet;
    climb_.end(feet);
    const Number nx = axes_.b * feet.cosine;
    const Number ny = axes_.a * feet.sine;
    seen.perSlope = nx * nx + ny * ny;
    gf_TakeRoot(seen.perSlope);
    seen.perSlope = 1.0 / seen.perSlope;
    const Number u = axes_.a * feet.cosine;
    const Number v = axes_.b * feet.sine;
    seen.distance = ((x_ - u) * nx + (y_ - v) * ny) * seen.perSlope;
    seen.footX = axes_.center.x() + (u * axes_.major.x() - v * axes_.major.y());
    seen.footY = axes_.center.y() + (u * axes_.major.y() + v * axes_.major.x());
  }

 private:
  const gx_EllipseAxes& axes_;
  Number x_;
  Number y_;
  gx_FeetClimb<Number> climb_;
};

// Looks at all points and has `use` take them: two fours at a time, whose climbs fill each other's
// waiting times, then one by one.
template <class Use>
GX_FOURFOLD void lookAtAll(const gx_EllipseAxes& axes, const Points& points, Use& use) {
  constexpr int kMostRounds = gx_FeetClimb<double>::kMostRounds;
  std::size_t i = 0;
  for (; i + 8 <= points.size(); i += 8) {
    gx_Four x;
    gx_Four y;
    gf_LoadFour(&points[i], x, y);
    Look<gx_Four> first(axes, x, y);
    gf_LoadFour(&points[i + 4], x, y);
    Look<gx_Four> second(axes, x, y);
    for (int k = 0; k < kMostRounds && !(first.settled() && second.settled()); ++k) {
      first.round();
      second.round();
    }
    Seen<gx_Four> seen;
    first.end(seen);
    use.four(seen);
    second.end(seen);
    use.four(seen);
  }
  for (; i < points.size(); ++i) {
    Look<double> one(axes, points[i].x(), points[i].y());
    for (int k = 0; k < kMostRounds && !one.settled(); ++k) one.round();
    Seen<double> seen;
    one.end(seen);
    use.one(seen);
  }
}

#if defined(__x86_64__)
template <class Use>
__attribute__((target("avx2"))) void lookWithRegistersOfFour(const gx_EllipseAxes& axes,
                                                             const Points& points, Use& use) {
  lookAtAll(axes, points, use);
}
#endif

// The same, with the widest registers that the machine has; the bits are the same.
template <class Use>
void lookAt(const gx_EllipseAxes& axes, const Points& points, Use& use) {
#if defined(__x86_64__)
  static const bool wide = __builtin_cpu_supports("avx2");
  if (wide) return lookWithRegistersOfFour(axes, points, use);
#endif
  lookAtAll(axes, points, use);
}

// The sums behind the normal equations, over one point in four or over the points left over.
template <class Number>
struct NormalSums {
  Number matrix[15] = {};  // row by row, up to the diagonal
  Number gradient[5] = {};
  Number cost = {};

  template <std::size_t kRow, class... Others>
  GX_FOURFOLD void addRow(const Number& derivative, const Number& distance, const Others&... others) {
    Number* sum = matrix + kRow * (kRow + 1) / 2;
    ((*sum++ += derivative * others), ...);
    gradient[kRow] += derivative * distance;
  }

  GX_FOURFOLD void add(const Seen<Number>& seen, double slope) {
    const Number steep = slope * seen.perSlope;
    const Number x = seen.footX * steep;
    const Number y = seen.footY * steep;
    const Number d0 = 0.5 * (seen.footX - seen.footY) * (x + y);
    const Number d1 = seen.footX * y;
    addRow<0>(d0, seen.distance, d0);
    addRow<1>(d1, seen.distance, d0, d1);
    addRow<2>(x, seen.distance, d0, d1, x);
    addRow<3>(y, seen.distance, d0, d1, x, y);
    addRow<4>(steep, seen.distance, d0, d1, x, y, steep);
    cost += seen.distance * seen.distance;
  }
};

struct NormalUse {
  double slope;
  NormalSums<gx_Four> fours;
  NormalSums<double> ones;

  GX_FOURFOLD void four(const Seen<gx_Four>& seen) { fours.add(seen, slope); }
  GX_FOURFOLD void one(const Seen<double>& seen) { ones.add(seen, slope); }
};

gx_NormalEquations<5> evaluate(const gx_EllipseImage& image, const Points& points) {
  const gx_EllipseAxes axes = gx_AxesOf(image);
  NormalUse use{0.5 * axes.a * axes.b / gx_ConicScale(axes), {}, {}};
  lookAt(axes, points, use);
  gx_NormalEquations<5> sums;
  std::size_t k = 0;
  for (std::size_t i = 0; i < 5; ++i) {
    for (std::size_t j = 0; j <= i; ++j, ++k) {
      sums.matrix[i][j] = gf_Total(use.fours.matrix[k]) + use.ones.matrix[k];
    }
    sums.gradient[i] = gf_Total(use.fours.gradient[i]) + use.ones.gradient[i];
  }
  sums.cost = gf_Total(use.fours.cost) + use.ones.cost;
  return sums;
}

struct CostUse {
  gx_Four fours = {};
  double ones = 0.0;

  GX_FOURFOLD void four(const Seen<gx_Four>& seen) { fours += seen.distance * seen.distance; }
  GX_FOURFOLD void one(const Seen<double>& seen) { ones += seen.distance * seen.distance; }
};

double costOf(const gx_EllipseImage& image, const Points& points) {
  CostUse use;
  lookAt(gx_AxesOf(image), points, use);
  return gf_Total(use.fours) + use.ones;
}

struct DistanceUse {
  double* out;

  GX_FOURFOLD void four(const Seen<gx_Four>& seen) {
    const gx_Four& d = seen.distance;  // in the order in which four points are loaded
    out[0] = std::fabs(d[0]);
    out[1] = std::fabs(d[2]);
    out[2] = std::fabs(d[1]);
    out[3] = std::fabs(d[3]);
    out += 4;
  }
  GX_FOURFOLD void one(const Seen<double>& seen) { *out++ = std::fabs(seen.distance); }
};

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
                                                  double preference, const gx_Refinement& how) const {
  const auto [shape, cost] = gx_LeastSquares<5>(
      start, kMostEvaluations, how,
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
    const std::vector<std::optional<Shape>>& starts, const Points& points, double preference,
    const gx_Refinement& how) const {
  std::optional<Fitted> result;
  for (const std::optional<Shape>& start : starts) {
    if (!start || !reasonable(gx_AxesOf(*start))) continue;
    const Fitted refined = refine(*start, points, preference, how);
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
  const gx_Refinement how = all ? gx_Refinement() : kOfSample;
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
  std::optional<Fitted> result = best({direct}, sample, 0.0, how);
  if (doubtful(result)) {
    const auto shape = result ? std::optional<Shape>(result->shape) : direct;
    result = best({shape, circle, gx_MomentsEllipse(sample, upright_)}, sample, 0.0, how);
  }
  if (doubtful(result)) {
    const auto shape = result ? std::optional<Shape>(result->shape) : std::nullopt;
    const std::optional<Fitted> small = best({shape, direct, circle}, sample, kPreference, how);
    if (small) result = all ? small : refine(small->shape, points, kPreference, gx_Refinement());
    if (result) result->cost = costOf(result->shape, points);
  } else if (!all) {
    result = refine(result->shape, points, 0.0, kOfAll);
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
  out.resize(points.size());
  DistanceUse use{out.data()};
  lookAt(gx_AxesOf(shape), points, use);
}
