// Gauges of bare points: form errors, robust fits; and curves made of curves.
#include "binding.h"

#include <gauge/form.h>
#include <gauge/resample.h>
#include <gauge/robust_fit.h>
#include <gauge/simplify.h>
#include <gauge/smooth.h>
#include <gauge/uncertainty.h>

namespace {

py::dict roundness(const PointArray& points, int reference) {
  const PointSpan span = spanOf(points);
  const gxRoundness r =
      unlocked(span.size(), [&] { return gfRoundness(span, static_cast<gxFormReference>(reference)); });
  return py::dict("status"_a = out(r.status), "roundness"_a = r.roundness, "centre"_a = out(r.centre),
                  "outer_radius"_a = r.outerRadius, "inner_radius"_a = r.innerRadius,
                  "radius"_a = r.radius, "peak"_a = r.peak, "valley"_a = r.valley, "rms"_a = r.rms,
                  "outer_supports"_a = out(r.outerSupports), "inner_supports"_a = out(r.innerSupports));
}

py::dict straightness(const PointArray& points, int reference) {
  const PointSpan span = spanOf(points);
  const gxStraightness s = unlocked(
      span.size(), [&] { return gfStraightness(span, static_cast<gxFormReference>(reference)); });
  return py::dict("status"_a = out(s.status), "straightness"_a = s.straightness,
                  "point"_a = out(s.point), "angle"_a = s.angle, "peak"_a = s.peak,
                  "valley"_a = s.valley, "rms"_a = s.rms, "supports"_a = out(s.supports));
}

py::dict flatAngle(const PointArray& first, const PointArray& second, int reference) {
  const gxFlatAngle a =
      gfFlatAngle(spanOf(first), spanOf(second), static_cast<gxFormReference>(reference));
  return py::dict("status"_a = out(a.status), "flat_angle"_a = a.flatAngle,
                  "first_angle"_a = a.firstAngle, "second_angle"_a = a.secondAngle);
}

py::dict parallelism(const PointArray& points, const PointArray& datum, int reference) {
  const gxParallelism p =
      gfParallelism(spanOf(points), spanOf(datum), static_cast<gxFormReference>(reference));
  return py::dict("status"_a = out(p.status), "parallelism"_a = p.parallelism,
                  "flat_angle"_a = p.flatAngle);
}

py::dict quality(const gxFitQuality& fit) {
  return py::dict("status"_a = out(fit.status), "deviation"_a = fit.deviation,
                  "residual_rms"_a = fit.residualRms, "residual_max"_a = fit.residualMax,
                  "inliers"_a = out(fit.inliers));
}

gxRobustOptions optionsOf(int weights, double inlierLimit, long seed) {
  gxRobustOptions options;
  options.weights = static_cast<gxFitWeights>(weights);
  options.inlierLimit = inlierLimit;
  options.seed = seed;
  return options;
}

// A fit, with what all have; `add` adds the shape's own numbers.
template <class Fit, class Add>
py::dict fitted(const PointArray& points, const gxRobustOptions& how,
                Fit (*find)(PointSpan, const gxRobustOptions&), const Add& add) {
  const PointSpan span = spanOf(points);
  const Fit fit = unlocked(span.size(), [&] { return find(span, how); });
  py::dict answer = quality(fit);
  add(fit, answer);
  return answer;
}

py::dict fitLine(const PointArray& points, int weights, double inlierLimit, long seed) {
  return fitted(points, optionsOf(weights, inlierLimit, seed), &gfRobustLine,
                [](const gxRobustLine& fit, py::dict& answer) {
                  answer["point"] = out(fit.point);
                  answer["angle"] = fit.angle.toDouble();
                  answer["offset_error"] = fit.offsetError;
                  answer["angle_error"] = fit.angleError;
                });
}

py::dict fitCircle(const PointArray& points, int weights, double inlierLimit, long seed) {
  return fitted(points, optionsOf(weights, inlierLimit, seed), &gfRobustCircle,
                [](const gxRobustCircle& fit, py::dict& answer) {
                  answer["centre"] = out(fit.centre);
                  answer["radius"] = fit.radius;
                  answer["centre_error"] = py::make_tuple(fit.centreXError, fit.centreYError);
                  answer["radius_error"] = fit.radiusError;
                });
}

py::dict fitEllipse(const PointArray& points, int weights, double inlierLimit, long seed) {
  return fitted(points, optionsOf(weights, inlierLimit, seed), &gfRobustEllipse,
                [](const gxRobustEllipse& fit, py::dict& answer) {
                  answer["centre"] = out(fit.centre);
                  answer["ellipse_a"] = fit.a;
                  answer["ellipse_b"] = fit.b;
                  answer["ellipse_angle"] = fit.angle.toDouble();
                  answer["centre_error"] = py::make_tuple(fit.centreXError, fit.centreYError);
                  answer["axes_error"] = py::make_tuple(fit.aError, fit.bError);
                  answer["angle_error"] = fit.angleError;
                });
}

py::tuple simplify(const PointArray& points, bool closed, double tolerance, bool keepsCrossingsOut) {
  const PointSpan span = spanOf(points);
  const gxSimplified s =
      unlocked(span.size(), [&] { return gfSimplify(span, closed, tolerance, {keepsCrossingsOut}); });
  return py::make_tuple(out(s.status), out(s.kept));
}

py::tuple smooth(const PointArray& points, bool closed, double sigma) {
  const PointSpan span = spanOf(points);
  const gxSmoothed s = unlocked(span.size(), [&] { return gfSmooth(span, closed, sigma); });
  return py::make_tuple(out(s.status), arrayOf(s.points));
}

py::tuple resample(const PointArray& points, bool closed, double spacing) {
  const PointSpan span = spanOf(points);
  const gxResampled r =
      unlocked(kWorthUnlocking, [&] { return gfResampleBySpacing(span, closed, spacing); });
  return py::make_tuple(out(r.status), arrayOf(r.points));
}

py::dict uncertainty(const PointArray& points, bool closed, double sigma, double correlation) {
  const PointSpan span = spanOf(points);
  const gxUncertainty u = unlocked(span.size(), [&] {
    return gfUncertainty(span, closed, {sigma, correlation});
  });
  return py::dict("status"_a = out(u.status), "length"_a = u.length, "length_bias"_a = u.lengthBias,
                  "area"_a = u.area, "equivalent_diameter"_a = u.equivalentDiameter,
                  "centre"_a = py::make_tuple(u.centreX, u.centreY),
                  "centre_covariance"_a = u.centreCovariance);
}

}  // namespace

void bindFormGauges(py::module_& module) {
  module.def("roundness", &roundness, "points"_a, "reference"_a);
  module.def("straightness", &straightness, "points"_a, "reference"_a);
  module.def("flat_angle", &flatAngle, "first"_a, "second"_a, "reference"_a);
  module.def("parallelism", &parallelism, "points"_a, "datum"_a, "reference"_a);
  module.def("fit_line", &fitLine, "points"_a, "weights"_a, "inlier_limit"_a, "seed"_a);
  module.def("fit_circle", &fitCircle, "points"_a, "weights"_a, "inlier_limit"_a, "seed"_a);
  module.def("fit_ellipse", &fitEllipse, "points"_a, "weights"_a, "inlier_limit"_a, "seed"_a);
  module.def("simplify", &simplify, "points"_a, "closed"_a, "tolerance"_a, "keeps_crossings_out"_a);
  module.def("smooth", &smooth, "points"_a, "closed"_a, "sigma"_a);
  module.def("resample", &resample, "points"_a, "closed"_a, "spacing"_a);
  module.def("uncertainty", &uncertainty, "points"_a, "closed"_a, "sigma"_a, "correlation_length"_a);
}
