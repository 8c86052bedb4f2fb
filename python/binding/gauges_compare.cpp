// Gauges of two shapes: Hausdorff, Fréchet, deviation, alignment, profile.
#include "binding.h"

#include <gauge/align.h>
#include <gauge/deviation.h>
#include <gauge/form.h>
#include <gauge/frechet.h>
#include <gauge/hausdorff.h>

#include <array>

namespace {

py::dict hausdorff(const Shape& shape, const Shape& golden) {
  const gxHausdorff h = unlocked(shape.size() + golden.size(),
                                 [&] { return gfHausdorff(shape.borders(), golden.borders()); });
  return py::dict("status"_a = out(h.status), "hausdorff"_a = h.hausdorff,
                  "hausdorff_forward"_a = h.hausdorffForward, "hausdorff_back"_a = h.hausdorffBack,
                  "forward_from"_a = out(h.forward.from), "forward_to"_a = out(h.forward.to),
                  "back_from"_a = out(h.back.from), "back_to"_a = out(h.back.to));
}

py::dict frechet(const Shape& a, const Shape& b) {
  const gxFrechet f = unlocked(a.size() * b.size(), [&] { return gfFrechet(a.contour(), b.contour()); });
  return py::dict("status"_a = out(f.status), "frechet"_a = f.frechet, "lower"_a = f.lower);
}

py::dict deviation(const Shape& shape, const Shape& golden, double lower, double upper, double spacing) {
  gxDeviationOptions how;
  how.lower = lower;
  how.upper = upper;
  how.spacing = spacing;
  const gxDeviation d = unlocked(shape.size() + golden.size(),
                                 [&] { return gfDeviation(shape.borders(), golden.borders(), how); });
  const auto count = static_cast<py::ssize_t>(d.samples.size());
  py::array_t<double> points(std::vector<py::ssize_t>{count, 2});
  py::array_t<double> values(count);
  for (std::size_t i = 0; i < d.samples.size(); ++i) {
    points.mutable_data()[2 * i] = d.samples[i].place.point.x();
    points.mutable_data()[2 * i + 1] = d.samples[i].place.point.y();
    values.mutable_data()[i] = d.samples[i].deviation;
  }
  py::list stretches;
  for (const auto& s : d.stretches) {
    stretches.append(py::make_tuple(out(s.from), out(s.to), out(s.worst), s.deviation, s.length));
  }
  return py::dict("status"_a = out(d.status), "deviation_max"_a = d.deviationMax,
                  "deviation_min"_a = d.deviationMin, "deviation_rms"_a = d.deviationRms,
                  "out_of_tolerance"_a = d.outOfTolerance, "max_place"_a = out(d.maxPlace),
                  "min_place"_a = out(d.minPlace), "stretches"_a = stretches, "sample_points"_a = points,
                  "sample_deviations"_a = values);
}

py::dict align(const Shape& shape, const Shape& golden, bool scales, bool robust, bool inPlace,
               int rounds, std::size_t samples) {
  gxAlignOptions how;
  how.scales = scales;
  how.robust = robust;
  how.startsInPlace = inPlace;
  how.mostRounds = rounds;
  how.samples = samples;
  const gxAlignment a =
      unlocked(kWorthUnlocking, [&] { return gfAlign(shape.borders(), golden.borders(), how); });
  const gxXform<2> x = a.transform();
  py::list left;
  if (a.freeAngle) left.append("angle");
  if (a.freeScale) left.append("scale");
  if (a.freeShift) left.append("shift");
  return py::dict("status"_a = out(a.status), "angle"_a = a.angle.toDouble(), "scale"_a = a.scale,
                  "shift"_a = out(a.shift), "rounds"_a = a.rounds, "residual"_a = a.residual,
                  "converged"_a = a.converged, "free"_a = py::tuple(left),
                  "numbers"_a = std::array<double, 6>{x.xx(), x.xy(), x.yx(), x.yy(), x.tx(), x.ty()});
}

py::dict profile(const Shape& shape, const Shape& nominal, bool bestFit) {
  const gxProfile p = unlocked(shape.size() + nominal.size(),
                               [&] { return gfProfile(shape.borders(), nominal.borders(), bestFit); });
  return py::dict("status"_a = out(p.status), "profile"_a = p.profile, "peak"_a = p.peak,
                  "valley"_a = p.valley, "worst"_a = out(p.worst));
}

}  // namespace

void bindCompareGauges(py::module_& module) {
  module.def("hausdorff", &hausdorff, "shape"_a, "golden"_a);
  module.def("frechet", &frechet, "a"_a, "b"_a);
  module.def("deviation", &deviation, "shape"_a, "golden"_a, "lower"_a, "upper"_a, "spacing"_a);
  module.def("align", &align, "shape"_a, "golden"_a, "scales"_a, "robust"_a, "in_place"_a, "rounds"_a,
             "samples"_a);
  module.def("profile", &profile, "shape"_a, "nominal"_a, "best_fit"_a);
}
