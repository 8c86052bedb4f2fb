// The circle fit as its callers see it.
//
//  1. Check the parameters.
//  2. Bring the points into a frame of size 1 around their centroid.
//  3. Fit there, leaving out what may be left out.
//  4. Bring the circle back and fill the results, last of all, so that a failure leaves them alone.
#include <velstd/circle_fit.h>
#include <velstd/internal/circle_solver.h>
#include <velstd/internal/fit_frame.h>
#include <velstd/internal/outlier_search.h>

#include <cmath>
#include <optional>

gxCircleFitDefs::Errors::Errors(const wchar_t* message) : gxExceptionWithString(message) {}
gxCircleFitDefs::Errors::Errors(const Errors&) noexcept = default;
gxCircleFitDefs::Errors& gxCircleFitDefs::Errors::operator=(const Errors&) noexcept = default;
gxCircleFitDefs::Errors::~Errors() = default;

gxCircleFitDefs::BadParams::BadParams(const wchar_t* message) : gx_ConcreteException(message) {}
gxCircleFitDefs::BadParams::BadParams(const BadParams&) noexcept = default;
gxCircleFitDefs::BadParams& gxCircleFitDefs::BadParams::operator=(const BadParams&) noexcept = default;
gxCircleFitDefs::BadParams::~BadParams() = default;

gxCircleFitDefs::BadPoints::BadPoints(const wchar_t* message) : gx_ConcreteException(message) {}
gxCircleFitDefs::BadPoints::BadPoints(const BadPoints&) noexcept = default;
gxCircleFitDefs::BadPoints& gxCircleFitDefs::BadPoints::operator=(const BadPoints&) noexcept = default;
gxCircleFitDefs::BadPoints::~BadPoints() = default;

namespace {

void check(const gxCircleFitParams& params) {
  if (params.mode() != gxCircleFitDefs::eFitAll && params.mode() != gxCircleFitDefs::eFixedRadius) {
    throw gxCircleFitDefs::BadParams(L"unknown mode");
  }
  const bool goodRadius = params.radius() > 0.0 && std::isfinite(params.radius());
  if (params.mode() == gxCircleFitDefs::eFixedRadius && !goodRadius) {
    throw gxCircleFitDefs::BadParams(L"radius not positive and finite");
  }
  if (!(params.limit() >= 0.0)) throw gxCircleFitDefs::BadParams(L"limit negative or not a number");
}

}  // namespace

void gfCircleFit(const gxCircleFitParams& params, const std::vector<gxVector<2>>& points,
                 gxCircleFitResults& results) {
  gxBudget unlimited;
  gfCircleFit(params, points, results, unlimited);
}

void gfCircleFit(const gxCircleFitParams& params, const std::vector<gxVector<2>>& points,
                 gxCircleFitResults& results, gxBudget& budget) {
  check(params);
  const gx_FitFrame frame(points);
  if (!frame.valid()) throw gxCircleFitDefs::BadPoints(L"no points, all equal, or not finite");

  std::optional<double> radius;
  if (params.mode() == gxCircleFitDefs::eFixedRadius) radius = frame.lengthIn(params.radius());
  const gx_CircleSolver solver(radius, frame.rounding());
  const gx_OutlierSearch<gx_CircleSolver> search(solver, params.ignore(), frame.lengthIn(params.limit()),
                                                 budget);
  const auto found = search.run(frame.points());
  if (!found) throw gxCircleFitDefs::BadPoints(L"the points do not determine a circle");

  const gxCircle circle(frame.positionOut(found->shape.center()),
                        radius ? params.radius() : frame.lengthOut(found->shape.radius()));
  const double count = static_cast<double>(points.size() - found->left.size());
  const double residual = frame.lengthOut(std::sqrt(found->kept / count));
  if (!std::isfinite(circle.center() * gxVector<2>(0.0, 0.0)) || !std::isfinite(circle.radius()) ||
      !std::isfinite(residual)) {
    throw gxCircleFitDefs::BadPoints(L"the circle is too large to be described");
  }
  results = gxCircleFitResults(circle, residual, found->left);
}
