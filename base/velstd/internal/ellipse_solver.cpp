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
//     coefficients the valley is straight, and 5 to 10 steps do; and circles are no exception.)  Points
//     that lie on no ellipse at all need as many: the curvature that their distances add is learnt
//     from the steps (normal_equations.h); without, one in seven of such outlines went to the limit.
//     A second start that comes near a minimum that is known already is not followed to its end.
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

// Tells whether an ellipse is on its way to the edge of reason, where there is no least sum.
bool growsAway(const gx_EllipseImage& image) {
  return gx_AxesOf(image).a > 0.5 * kLargestAxis;
}

gx_EllipseImage imageOf(const gx_CircleArc& arc) {
  return {arc.center(), arc.radius(), 0.0, arc.radius()};
}

// Four points as an ellipse sees them.
template <class Number>
struct Seen {
  Number distance;  // signed, positive outside
  Number footX;     // where the foot is
  Number footY;
  Number perSlope;  // one over the length of (b cosine, a sine), the normal at the foot along the axes
};

// Makes the points from number `count` on add nothing to a sum; four points are loaded in the order 0, 2,
// 1, 3.
GX_FOURFOLD void blankFrom(std::size_t count, Seen<gx_Four>& seen) {
  const gx_Four kept = {1.0, count > 2 ? 1.0 : 0.0, count > 1 ? 1.0 : 0.0, 0.0};
  seen.distance *= kept;
  seen.perSlope *= kept;
}

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

// Looks at all points and has `use` take them, eight at a time: the climbs of two fours fill each other's
// waiting times.  Of the last ones the rest is the last point again, with distance and slope 0, which adds
// nothing to a sum.
template <class Use>
GX_FOURFOLD void lookAtAll(const gx_EllipseAxes& axes, const Points& points, Use& use) {
  constexpr int kMostRounds = gx_FeetClimb<double>::kMostRounds;
  for (std::size_t i = 0; i < points.size(); i += 8) {
    const std::size_t count = std::min<std::size_t>(8, points.size() - i);
    const gxVector<2>* p = &points[i];
    std::array<gxVector<2>, 8> rest;
    if (count < 8) {
      for (std::size_t k = 0; k < 8; ++k) rest[k] = k < count ? p[k] : points.back();
      p = rest.data();
    }
    gx_Four x;
    gx_Four y;
    gf_LoadFour(p, x, y);
    Look<gx_Four> first(axes, x, y);
    gf_LoadFour(p + 4, x, y);
    Look<gx_Four> second(axes, x, y);
    for (int k = 0; k < kMostRounds && !(first.settled() && second.settled()); ++k) {
      first.round();
      second.round();
    }
    Seen<gx_Four> seen;
    first.end(seen);
    if (count < 4) blankFrom(count, seen);
    use.add(seen, std::min<std::size_t>(count, 4));
    if (count <= 4) break;
    second.end(seen);
    if (count < 8) blankFrom(count - 4, seen);
    use.add(seen, count - 4);
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

// The sums behind the normal equations, each over one point in four.
struct NormalUse {
  double slope;
  gx_Four matrix[15] = {};  // row by row, up to the diagonal
  gx_Four gradient[5] = {};
  gx_Four cost = {};

  template <std::size_t kRow, class... Others>
  GX_FOURFOLD void addRow(const gx_Four& derivative, const gx_Four& distance, const Others&... others) {
    gx_Four* sum = matrix + kRow * (kRow + 1) / 2;
    ((*sum++ += derivative * others), ...);
    gradient[kRow] += derivative * distance;
  }

  GX_FOURFOLD void add(const Seen<gx_Four>& seen, std::size_t /*count*/) {
    const gx_Four steep = slope * seen.perSlope;
    const gx_Four x = seen.footX * steep;
    const gx_Four y = seen.footY * steep;
    const gx_Four d0 = 0.5 * (seen.footX - seen.footY) * (x + y);
    const gx_Four d1 = seen.footX * y;
    addRow<0>(d0, seen.distance, d0);
    addRow<1>(d1, seen.distance, d0, d1);
    addRow<2>(x, seen.distance, d0, d1, x);
    addRow<3>(y, seen.distance, d0, d1, x, y);
    addRow<4>(steep, seen.distance, d0, d1, x, y, steep);
    cost += seen.distance * seen.distance;
  }
};

gx_NormalEquations<5> evaluate(const gx_EllipseImage& image, const Points& points) {
  const gx_EllipseAxes axes = gx_AxesOf(image);
  NormalUse use{0.5 * axes.a * axes.b / gx_ConicScale(axes)};
  lookAt(axes, points, use);
  gx_NormalEquations<5> sums;
  std::size_t k = 0;
  for (std::size_t i = 0; i < 5; ++i) {
    for (std::size_t j = 0; j <= i; ++j, ++k) sums.matrix[i][j] = gf_Total(use.matrix[k]);
    sums.gradient[i] = gf_Total(use.gradient[i]);
  }
  sums.cost = gf_Total(use.cost);
  return sums;
}

struct CostUse {
  gx_Four cost = {};

  GX_FOURFOLD void add(const Seen<gx_Four>& seen, std::size_t /*count*/) {
    cost += seen.distance * seen.distance;
  }
};

double costOf(const gx_EllipseImage& image, const Points& points) {
  CostUse use;
  lookAt(gx_AxesOf(image), points, use);
  return gf_Total(use.cost);
}

struct DistanceUse {
  double* out;

  GX_FOURFOLD void add(const Seen<gx_Four>& seen, std::size_t count) {
    constexpr int kPlaces[4] = {0, 2, 1, 3};  // in the order in which four points are loaded
    for (std::size_t k = 0; k < count; ++k) *out++ = std::fabs(seen.distance[kPlaces[k]]);
  }
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

// The change of the longer semi-axis a with each unknown.  With v its direction, c the centre, L the level
// of the conic and λ = L / a² its smaller eigenvalue: dL = −(the change of the conic at c), as the conic is
// level there, dλ = the change of its quadratic part along v, and a² = L / λ.
Unknowns slopeOfSize(const gx_EllipseAxes& axes) {
  const double x = axes.center.x();
  const double y = axes.center.y();
  const double u = axes.a * axes.major.x();
  const double v = axes.a * axes.major.y();
  const double factor = 0.5 * axes.a / gx_ConicScale(axes);
  return {-0.5 * factor * ((x * x - y * y) + (u * u - v * v)), -factor * (x * y + u * v), -factor * x,
          -factor * y, -factor};
}

// Turns the sums for S into those for S · (1 + a)^(2 w), a the longer semi-axis in the unit of the
// frame.  The curvature of the second factor is left out: it only lengthens the steps.
void preferSmall(gx_NormalEquations<5>& sums, const gx_EllipseImage& image, double w) {
  const gx_EllipseAxes axes = gx_AxesOf(image);
  const double size = 1.0 + axes.a;
  const double factor = std::pow(size, 2.0 * w);
  const Unknowns slope = slopeOfSize(axes);
  for (std::size_t i = 0; i < slope.size(); ++i) {
    sums.gradient[i] = factor * (sums.gradient[i] + w * sums.cost / size * slope[i]);
    for (std::size_t j = 0; j <= i; ++j) sums.matrix[i][j] *= factor;
  }
  sums.cost *= factor;
}

// The standard error of the longer semi-axis, relative to it.
double doubtOfSize(const gx_EllipseImage& image, const Points& points, bool upright) {
  gx_NormalEquations<5> sums = evaluate(image, points);
  const gx_EllipseAxes axes = gx_AxesOf(image);
  const Unknowns slope = slopeOfSize(axes);
  for (std::size_t i = 0; i < slope.size(); ++i) sums.gradient[i] = -slope[i];
  if (upright) sums.hold(1);
  const auto solved = sums.step(0.0);
  if (!solved || points.size() < 6) return 0.0;
  double product = 0.0;
  for (std::size_t i = 0; i < slope.size(); ++i)
    product += (upright && i == 1 ? 0.0 : slope[i] * (*solved)[i]);
  const double variance = sums.cost / static_cast<double>(points.size() - 5) * product;
  return std::sqrt(variance) / axes.a;
}

// The unknowns, counted from the circle x² + y² = 0.
Unknowns unknownsOf(const gx_EllipseImage& image) {
  const gx_Conic k = gx_ConicOf(gx_AxesOf(image));
  return {k.xx - k.yy, k.xy, k.x, k.y, k.one};
}

// Tells whether a shape, with the equations there, has come so near to a minimum that it will end in it:
// the way there raises the sum by less than a hundredth, and it is no lower already.
bool endsIn(const gx_EllipseSolver::Fitted& minimum, const gx_EllipseImage& image,
            const gx_NormalEquations<5>& here) {
  constexpr double kNear = 0.01;
  if (!(here.cost < (1.0 + 2.0 * kNear) * minimum.cost && here.cost >= minimum.cost)) return false;
  const Unknowns there = unknownsOf(minimum.shape);
  Unknowns way = unknownsOf(image);
  for (std::size_t i = 0; i < way.size(); ++i) way[i] -= there[i];
  double rise = 0.0;
  for (std::size_t i = 0; i < way.size(); ++i) {
    for (std::size_t j = 0; j <= i; ++j)
      rise += (i == j ? 1.0 : 2.0) * here.matrix[i][j] * way[i] * way[j];
  }
  return rise < kNear * minimum.cost;
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
                                                  double preference, const gx_Refinement& how,
                                                  const std::optional<Fitted>& known) const {
  const auto [shape, cost] = gx_LeastSquares<5>(
      start, kMostEvaluations, how,
      [&](const Shape& image) {
        gx_NormalEquations<5> sums = evaluate(image, points);
        if (preference > 0.0) preferSmall(sums, image, preference / static_cast<double>(points.size()));
        if (upright_) sums.hold(1);
        return sums;
      },
      [](const Shape& image, const Unknowns& step) { return moved(image, step); },
      [&known, preference](const Shape& image, const gx_NormalEquations<5>& here) {
        if (known && endsIn(*known, image, here)) return true;
        return preference == 0.0 && growsAway(image);
      });
  return {shape, cost};
}

// The best of the refined starts and of what is known; without preference, one that has not grown away.
std::optional<gx_EllipseSolver::Fitted> gx_EllipseSolver::best(
    std::initializer_list<std::optional<Shape>> starts, const Points& points, double preference,
    const gx_Refinement& how, const std::optional<Fitted>& known) const {
  std::optional<Fitted> result = known;
  for (const std::optional<Shape>& start : starts) {
    if (!start || !reasonable(gx_AxesOf(*start))) continue;
    const Fitted refined = refine(*start, points, preference, how, result);
    if (preference == 0.0 && growsAway(refined.shape)) continue;
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
  std::optional<Fitted> result = best({direct}, sample, 0.0, how, {});
  if (doubtful(result)) {
    result = best({circle, gx_MomentsEllipse(sample, upright_)}, sample, 0.0, how, result);
  }
  if (doubtful(result)) {
    const auto shape = result ? std::optional<Shape>(result->shape) : std::nullopt;
    const std::optional<Fitted> small = best({shape, direct, circle}, sample, kPreference, how, {});
    if (small) result = all ? small : refine(small->shape, points, kPreference, gx_Refinement(), {});
    if (result) result->cost = costOf(result->shape, points);
  } else if (!all) {
    result = refine(result->shape, points, 0.0, kOfAll, {});
  }

  // The nearest circle has no smaller sum over all points than the circle nearest to the sample has
  // over the sample.
  if (arc && !(result && result->cost < arc->cost)) {
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
