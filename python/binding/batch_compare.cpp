// Numbers of many shapes: comparison with a golden shape, fits.  Each function returns (block of columns,
// status, error, texts); the package gives the columns their names.
#include "batch.h"

#include <gauge/align.h>
#include <gauge/deviation.h>
#include <gauge/hausdorff.h>
#include <gauge/robust_fit.h>

#include <array>

namespace {

// ---- Comparing --------------------------------------------------------------------------------------

gxBorders bordersOf(const Ragged& shapes, std::size_t i) {
  std::vector<gxBorders::Ring> rings;
  const auto [first, end] = shapes.ringsOfShape(i);
  for (std::size_t r = first; r < end; ++r) rings.push_back({shapes.ring(r), shapes.isClosed(r)});
  return gxBorders(std::move(rings));
}

// hausdorff, hausdorff_forward, hausdorff_back, deviation_max, deviation_min, deviation_rms, angle, scale,
// shift_x, shift_y, residual
py::tuple compare(const Ragged& shapes, const Shape& golden, int align, double step, unsigned threads,
                  const py::object& progress) {
  Columns columns(11, shapes.size());
  Failures failures(shapes.size());
  const gxBorders target = golden.borders();
  gxDeviationOptions how;
  how.spacing = step;
  gxAlignOptions moves;
  moves.scales = align == 2;
  const auto one = [&](std::size_t i) {
    gxBorders shape = bordersOf(shapes, i);
    std::vector<Points> moved;
    if (align != 0) {
      const gxAlignment a = gfAlign(shape, target, moves);
      const std::array<double, 5> row = {a.angle.toDouble(), a.scale, a.shift.x(), a.shift.y(),
                                         a.residual};
      for (std::size_t c = 0; c < row.size(); ++c) columns.at(6 + c, i) = row[c];
      failures.status(i, a.status);
      if (a.status != gxStatus::eOk && a.status != gxStatus::eUndetermined) return;
      std::vector<gxBorders::Ring> rings;
      moved.reserve(shape.rings().size());
      for (const auto& ring : shape.rings()) {
        auto& points = moved.emplace_back();
        for (const auto& p : ring.points) points.push_back(a.map(p));
        rings.push_back({points, ring.closed});
      }
      shape = gxBorders(std::move(rings));
    }
    const gxHausdorff h = gfHausdorff(shape, target);
    const gxDeviation d = gfDeviation(shape, target, how);
    const std::array<double, 6> row = {h.hausdorff,    h.hausdorffForward, h.hausdorffBack,
                                       d.deviationMax, d.deviationMin,     d.deviationRms};
    for (std::size_t c = 0; c < row.size(); ++c) columns.at(c, i) = row[c];
    if (failures.status(i) == gxStatus::eOk)
      failures.status(i, h.status == gxStatus::eOk ? d.status : h.status);
  };
  forEach(shapes.size(), threads, progress,
          [&]() -> Work { return [&](std::size_t i) { failures.guard(i, [&] { one(i); }); }; });
  return tableOf(columns, failures);
}

// ---- Fits ---------------------------------------------------------------------------------------------

// kind 0: a line (centre_x, centre_y, ellipse_angle); 1: a circle (centre_x, centre_y, radius);
// 2: an ellipse (centre_x, centre_y, ellipse_a, ellipse_b, ellipse_angle); then residual and inliers.
py::tuple fit(const Ragged& shapes, int kind, int weights, double inlierLimit, unsigned threads,
              const py::object& progress) {
  Columns columns(kind == 2 ? 7 : 5, shapes.size());
  Failures failures(shapes.size());
  gxRobustOptions how;
  how.weights = static_cast<gxFitWeights>(weights);
  how.inlierLimit = inlierLimit;
  const auto put = [&](std::size_t i, const gxFitQuality& fit, std::initializer_list<double> numbers) {
    std::size_t c = 0;
    for (const double number : numbers) columns.at(c++, i) = number;
    columns.at(c++, i) = fit.residualRms;
    columns.at(c, i) = static_cast<double>(fit.inliers.size());
    failures.status(i, fit.status);
  };
  const auto one = [&](std::size_t i, Points& points) {
    points.clear();
    const auto [first, end] = shapes.ringsOfShape(i);
    for (std::size_t r = first; r < end; ++r) {
      const PointSpan ring = shapes.ring(r);
      points.insert(points.end(), ring.begin(), ring.end());
    }
    if (kind == 0) {
      const gxRobustLine f = gfRobustLine(points, how);
      put(i, f, {f.point.x(), f.point.y(), f.angle.toDouble()});
    } else if (kind == 1) {
      const gxRobustCircle f = gfRobustCircle(points, how);
      put(i, f, {f.centre.x(), f.centre.y(), f.radius});
    } else {
      const gxRobustEllipse f = gfRobustEllipse(points, how);
      put(i, f, {f.centre.x(), f.centre.y(), f.a, f.b, f.angle.toDouble()});
    }
  };
  forEach(shapes.size(), threads, progress, [&]() -> Work {
    return [&, points = Points()](std::size_t i) mutable { failures.guard(i, [&] { one(i, points); }); };
  });
  return tableOf(columns, failures);
}

}  // namespace

void bindBatchCompare(py::module_& module) {
  module.def("batch_compare", &compare, "shapes"_a, "golden"_a, "align"_a, "step"_a, "threads"_a,
             "progress"_a);
  module.def("batch_fit", &fit, "shapes"_a, "kind"_a, "weights"_a, "inlier_limit"_a, "threads"_a,
             "progress"_a);
}
