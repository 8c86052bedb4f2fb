// The ellipse fit as its callers see it.
//
//  1. Check the parameters.
//  2. Bring the points into a frame of size 1 around their centroid; with a held rotation, turn them
//     so that the held axis lies along x.
//  3. Fit there, leaving out what may be left out.
//  4. Fit a circle under the same rules; where it is as good, it is the result.
//  5. Bring the ellipse back, in the one form that angles and radii have, and fill the results, last
//     of all, so that a failure leaves them alone.
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>
#include <velstd/internal/circle_solver.h>
#include <velstd/internal/ellipse_solver.h>
#include <velstd/internal/fit_frame.h>
#include <velstd/internal/outlier_search.h>

#include <cmath>
#include <optional>
#include <utility>

gxEllipseFitDefs::Errors::Errors(const wchar_t* message) : gxExceptionWithString(message) {}
gxEllipseFitDefs::Errors::Errors(const Errors&) noexcept = default;
gxEllipseFitDefs::Errors& gxEllipseFitDefs::Errors::operator=(const Errors&) noexcept = default;
gxEllipseFitDefs::Errors::~Errors() = default;

gxEllipseFitDefs::BadParams::BadParams(const wchar_t* message) : gx_ConcreteException(message) {}
gxEllipseFitDefs::BadParams::BadParams(const BadParams&) noexcept = default;
gxEllipseFitDefs::BadParams& gxEllipseFitDefs::BadParams::operator=(const BadParams&) noexcept = default;
gxEllipseFitDefs::BadParams::~BadParams() = default;

gxEllipseFitDefs::BadPoints::BadPoints(const wchar_t* message) : gx_ConcreteException(message) {}
gxEllipseFitDefs::BadPoints::BadPoints(const BadPoints&) noexcept = default;
gxEllipseFitDefs::BadPoints& gxEllipseFitDefs::BadPoints::operator=(const BadPoints&) noexcept = default;
gxEllipseFitDefs::BadPoints::~BadPoints() = default;

namespace {

constexpr double kPi = 3.141592653589793;

using Points = std::vector<gxVector<2>>;
using Search = gx_OutlierSearch<gx_EllipseSolver>;

void check(const gxEllipseFitParams& params) {
  if (params.mode() != gxEllipseFitDefs::eFitAll && params.mode() != gxEllipseFitDefs::eFixedRotation) {
    throw gxEllipseFitDefs::BadParams(L"unknown mode");
  }
  if (params.mode() == gxEllipseFitDefs::eFixedRotation &&
      !std::isfinite(params.rotation().toDouble())) {
    throw gxEllipseFitDefs::BadParams(L"rotation not finite");
  }
  if (!(params.limit() >= 0.0)) throw gxEllipseFitDefs::BadParams(L"limit negative or not a number");
}

// Brings the direction of an axis into (−π/2, π/2]; an angle that is there already keeps its bits.
double axisAngle(double angle) {
  if (angle > -kPi / 2 && angle <= kPi / 2) return angle;
  const double turned = std::remainder(angle, kPi);
  return turned <= -kPi / 2 ? kPi / 2 : turned;
}

// The points turned so that direction `axis` comes to lie along x.
Points turnedTo(const gxVector<2>& axis, const Points& points) {
  Points result;
  result.reserve(points.size());
  for (const gxVector<2>& p : points) result.emplace_back(p * axis, gf_Cross(axis, p));
  return result;
}

bool isCircle(const gx_EllipseImage& image) {
  return image.xy == 0.0 && image.xx == image.yy;
}

// The found ellipse, or the circle that obeys the same rules where that has no larger residual.
std::optional<Search::Result> noWorseThanCircle(std::optional<Search::Result> found,
                                                const gx_FitFrame& frame, const Points& points,
                                                unsigned long ignore, double limit, gxBudget& budget) {
  const gx_CircleSolver circles(std::nullopt, frame.rounding());
  const auto circle = gx_OutlierSearch<gx_CircleSolver>(circles, ignore, limit, budget).run(points);
  if (!circle) return found;
  const auto mean = [&points](double kept, std::size_t left) {
    return kept / static_cast<double>(points.size() - left);
  };
  if (found && mean(found->kept, found->left.size()) < mean(circle->kept, circle->left.size()))
    return found;
  const double radius = circle->shape.radius();
  return Search::Result{
      {circle->shape.center(), radius, 0.0, radius}, circle->cost, circle->kept, circle->left};
}

gxEllipse::gxEllipseGeom describe(const gx_EllipseImage& image, const gx_FitFrame& frame) {
  const gx_EllipseAxes axes = gx_AxesOf(image);
  gxEllipse::gxEllipseGeom geom;
  geom.center = frame.positionOut(axes.center);
  geom.radii = {frame.lengthOut(axes.a), frame.lengthOut(axes.b)};
  if (geom.radii.x() > geom.radii.y())
    geom.rotation = gxRadian(axisAngle(axes.major.angle().toDouble()));
  return geom;
}

}  // namespace

void gfEllipseFit(const gxEllipseFitParams& params, const std::vector<gxVector<2>>& points,
                  gxEllipseFitResults& results) {
  gxBudget unlimited;
  gfEllipseFit(params, points, results, unlimited);
}

void gfEllipseFit(const gxEllipseFitParams& params, const std::vector<gxVector<2>>& points,
                  gxEllipseFitResults& results, gxBudget& budget) {
  check(params);
  const gx_FitFrame frame(points);
  if (!frame.valid()) throw gxEllipseFitDefs::BadPoints(L"no points, all equal, or not finite");

  const bool held = params.mode() == gxEllipseFitDefs::eFixedRotation;
  const double holds = held ? axisAngle(params.rotation().toDouble()) : 0.0;
  const gxVector<2> axis(1.0, gxRadian(holds));
  const Points seen = held ? turnedTo(axis, frame.points()) : frame.points();

  const double limit = frame.lengthIn(params.limit());
  const gx_EllipseSolver solver(held, frame.rounding());
  const Search search(solver, params.ignore(), limit, budget);
  std::optional<Search::Result> found = search.run(seen);
  // Without outliers the solver has compared already; a circle that it chose gets its own numbers.
  if (found && (!found->left.empty() || isCircle(found->shape))) {
    found = noWorseThanCircle(std::move(found), frame, seen, params.ignore(), limit, budget);
  }
  if (!found) throw gxEllipseFitDefs::BadPoints(L"the points do not determine an ellipse");

  gxEllipse::gxEllipseGeom geom;
  if (held) {
    const gx_EllipseAxes axes = gx_AxesOf(found->shape);
    geom.center = frame.positionOut(turnedTo({axis.x(), -axis.y()}, {axes.center}).front());
    geom.radii = {frame.lengthOut(axes.a), frame.lengthOut(axes.b)};
    const bool along = found->shape.xx >= found->shape.yy;
    if (geom.radii.x() > geom.radii.y())
      geom.rotation = gxRadian(along ? holds : axisAngle(holds + kPi / 2));
  } else {
    geom = describe(found->shape, frame);
  }
  const double count = static_cast<double>(points.size() - found->left.size());
  const double residual = frame.lengthOut(std::sqrt(found->kept / count));
  if (!std::isfinite(geom.center * gxVector<2>(0.0, 0.0)) || !std::isfinite(geom.radii.x()) ||
      !std::isfinite(residual)) {
    throw gxEllipseFitDefs::BadPoints(L"the ellipse is too large to be described");
  }
  results = gxEllipseFitResults(gxEllipse(geom), residual, found->left);
}
