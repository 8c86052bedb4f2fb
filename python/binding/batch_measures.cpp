// Numbers of many shapes: measure, describe, fits, comparison with a golden shape.  Each function returns
// (block of columns, status, error, texts); the package gives the columns their names.
#include "batch.h"

#include <gauge/align.h>
#include <gauge/descriptors.h>
#include <gauge/deviation.h>
#include <gauge/enclosing.h>
#include <gauge/feret.h>
#include <gauge/hausdorff.h>
#include <gauge/measure.h>
#include <gauge/moments.h>
#include <gauge/robust_fit.h>

#include <array>

namespace {

py::tuple answer(const Columns& columns, Failures& failures) {
  return py::make_tuple(columns.block(), failures.statuses(), failures.errors(), failures.texts());
}

double asNumber(std::size_t count) {
  return static_cast<double>(count);
}

// ---- Measure ------------------------------------------------------------------------------------------

gxMeasure measureOf(const Ragged& shapes, std::size_t i, std::vector<gxMeasuredRing>& rings) {
  rings.clear();
  const auto [firstPart, endPart] = shapes.partsOf(i);
  for (std::size_t part = firstPart; part < endPart; ++part) {
    const auto [first, end] = shapes.ringsOf(part);
    for (std::size_t r = first; r < end; ++r) rings.push_back({shapes.ring(r), r > first});
  }
  return gfMeasure(rings, !shapes.isOpen(i));
}

struct Counts {
  std::size_t points = 0, holes = 0, parts = 0;
};

Counts countsOf(const Ragged& shapes, std::size_t i) {
  Counts counts;
  const auto [firstPart, endPart] = shapes.partsOf(i);
  for (std::size_t part = firstPart; part < endPart; ++part) {
    const auto [first, end] = shapes.ringsOf(part);
    std::size_t here = 0;
    for (std::size_t r = first; r < end; ++r) here += shapes.ring(r).size();
    counts.points += here;
    if (end > first) counts.holes += end - first - 1;
    if (endPart - firstPart > 1 || here > 0) ++counts.parts;
  }
  return counts;
}

// points, holes, area, length, centre_x, centre_y, box_x_min, box_y_min, box_x_max, box_y_max
constexpr std::size_t kMeasures = 10;

py::tuple measure(const Ragged& shapes, unsigned threads, const py::object& progress) {
  Columns columns(kMeasures, shapes.size());
  Failures failures(shapes.size());
  forEach(shapes.size(), threads, progress, [&]() -> Work {
    return [&, rings = std::vector<gxMeasuredRing>()](std::size_t i) mutable {
      failures.guard(i, [&] {
        const gxMeasure m = measureOf(shapes, i, rings);
        const Counts counts = countsOf(shapes, i);
        const std::array<double, kMeasures> row = {asNumber(counts.points),
                                                   asNumber(counts.holes),
                                                   m.area,
                                                   m.length,
                                                   m.centre.x(),
                                                   m.centre.y(),
                                                   m.low.x(),
                                                   m.low.y(),
                                                   m.high.x(),
                                                   m.high.y()};
        for (std::size_t c = 0; c < kMeasures; ++c) columns.at(c, i) = row[c];
        failures.status(i, m.status);
      });
    };
  });
  return answer(columns, failures);
}

// ---- Describe -----------------------------------------------------------------------------------------

// The columns of `describe` in the order of docs/names.csv, and the gauge that each comes from.
enum class Gauge { eCounts, eDescriptors, eCentre, eFeret, eCircle, eRectangle, eMoments };
struct Described {
  const char* name;
  Gauge gauge;
};
constexpr Described kDescribed[] = {
    {"points", Gauge::eCounts},
    {"holes", Gauge::eCounts},
    {"parts", Gauge::eCounts},
    {"area", Gauge::eDescriptors},
    {"filled_area", Gauge::eDescriptors},
    {"perimeter", Gauge::eDescriptors},
    {"length", Gauge::eDescriptors},
    {"centre_x", Gauge::eCentre},
    {"centre_y", Gauge::eCentre},
    {"box_x_min", Gauge::eDescriptors},
    {"box_y_min", Gauge::eDescriptors},
    {"box_x_max", Gauge::eDescriptors},
    {"box_y_max", Gauge::eDescriptors},
    {"equivalent_diameter", Gauge::eDescriptors},
    {"circularity", Gauge::eDescriptors},
    {"compactness", Gauge::eDescriptors},
    {"convexity", Gauge::eDescriptors},
    {"solidity", Gauge::eDescriptors},
    {"extent", Gauge::eDescriptors},
    {"rectangularity", Gauge::eDescriptors},
    {"aspect_ratio", Gauge::eDescriptors},
    {"elongation", Gauge::eDescriptors},
    {"eccentricity", Gauge::eDescriptors},
    {"orientation", Gauge::eDescriptors},
    {"euler_number", Gauge::eDescriptors},
    {"feret_max", Gauge::eDescriptors},
    {"feret_min", Gauge::eDescriptors},
    {"feret_mean", Gauge::eDescriptors},
    {"feret_across", Gauge::eDescriptors},
    {"feret_max_angle", Gauge::eFeret},
    {"feret_min_angle", Gauge::eFeret},
    {"enclosing_circle_radius", Gauge::eCircle},
    {"enclosing_circle_centre_x", Gauge::eCircle},
    {"enclosing_circle_centre_y", Gauge::eCircle},
    {"rectangle_length", Gauge::eRectangle},
    {"rectangle_width", Gauge::eRectangle},
    {"rectangle_angle", Gauge::eRectangle},
    {"rectangle_centre_x", Gauge::eRectangle},
    {"rectangle_centre_y", Gauge::eRectangle},
    {"moment_20", Gauge::eMoments},
    {"moment_11", Gauge::eMoments},
    {"moment_02", Gauge::eMoments},
    {"moment_30", Gauge::eMoments},
    {"moment_21", Gauge::eMoments},
    {"moment_12", Gauge::eMoments},
    {"moment_03", Gauge::eMoments},
    {"eta_20", Gauge::eMoments},
    {"eta_11", Gauge::eMoments},
    {"eta_02", Gauge::eMoments},
    {"eta_30", Gauge::eMoments},
    {"eta_21", Gauge::eMoments},
    {"eta_12", Gauge::eMoments},
    {"eta_03", Gauge::eMoments},
    {"hu_1", Gauge::eMoments},
    {"hu_2", Gauge::eMoments},
    {"hu_3", Gauge::eMoments},
    {"hu_4", Gauge::eMoments},
    {"hu_5", Gauge::eMoments},
    {"hu_6", Gauge::eMoments},
    {"hu_7", Gauge::eMoments},
    {"ellipse_a", Gauge::eMoments},
    {"ellipse_b", Gauge::eMoments},
    {"ellipse_angle", Gauge::eMoments},
};
constexpr std::size_t kDescribedCount = std::size(kDescribed);

// The numbers of one shape, gauge by gauge, as far as they are wanted.
class Describer {
 public:
  Describer(const Ragged& shapes, const std::vector<std::size_t>& wanted) : shapes_(shapes) {
    for (const std::size_t column : wanted)
      wants_[static_cast<std::size_t>(kDescribed[column].gauge)] = true;
    first_.fill(kDescribedCount);
    for (std::size_t c = kDescribedCount; c-- > 0;)
      first_[static_cast<std::size_t>(kDescribed[c].gauge)] = c;
  }

  gxStatus describe(std::size_t i, std::array<double, kDescribedCount>& row) {
    status_ = gxStatus::eOk;
    row_ = &row;
    row.fill(std::numeric_limits<double>::quiet_NaN());
    const Counts counts = countsOf(shapes_, i);
    put(0, {asNumber(counts.points), asNumber(counts.holes), asNumber(counts.parts)});
    shapes_.get(i, record_);
    outlines_.clear();
    for (std::size_t p = 0; p < record_.partCount(); ++p) {
      if (record_.partEnds[p] == record_.firstRing(p)) continue;
      const auto ring = record_.ring(record_.firstRing(p));
      outlines_.insert(outlines_.end(), ring.begin(), ring.end());
    }
    if (wants(Gauge::eDescriptors)) descriptors();
    if (wants(Gauge::eCentre)) centre(i);
    if (wants(Gauge::eFeret)) feret();
    if (wants(Gauge::eCircle)) circle();
    if (wants(Gauge::eRectangle)) rectangle();
    if (wants(Gauge::eMoments)) moments();
    return status_;
  }

 private:
  bool wants(Gauge gauge) const { return wants_[static_cast<std::size_t>(gauge)]; }
  std::size_t first(Gauge gauge) const { return first_[static_cast<std::size_t>(gauge)]; }
  void put(std::size_t column, std::initializer_list<double> numbers) {
    std::copy(numbers.begin(), numbers.end(), row_->begin() + static_cast<std::ptrdiff_t>(column));
  }
  // The first thing that is to be said of a shape stands.
  void take(gxStatus status) {
    if (status_ == gxStatus::eOk) status_ = status;
  }

  template <class Use>
  auto withRecord(const Use& use) const {
    if (record_.kind == gxRecord::Kind::eSet) return use(record_.toSet());
    if (record_.kind == gxRecord::Kind::eOpen) return use(record_.toContour());
    return use(record_.toRegion());
  }

  void descriptors() {
    const gxDescriptors d = withRecord([](const auto& shape) { return gfDescribe(shape); });
    put(3, {d.area, d.filledArea, d.perimeter, d.length});
    put(9, {d.box.origin().x(),   d.box.origin().y(),
            d.box.corner().x(),   d.box.corner().y(),
            d.equivalentDiameter, d.circularity,
            d.compactness,        d.convexity,
            d.solidity,           d.extent,
            d.rectangularity,     d.aspectRatio,
            d.elongation,         d.eccentricity,
            d.orientation,        static_cast<double>(d.eulerNumber),
            d.feretMax,           d.feretMin,
            d.feretMean,          d.feretAcross});
    take(d.status);
  }
  void centre(std::size_t i) {
    const gxMeasure m = measureOf(shapes_, i, rings_);
    put(first(Gauge::eCentre), {m.centre.x(), m.centre.y()});
    take(m.status);
  }
  void feret() {
    const gxFeret f = gfFeret(outlines_);
    put(first(Gauge::eFeret), {f.feretMaxAngle, f.feretMinAngle});
    take(f.status);
  }
  void circle() {
    const gxEnclosingCircle c = gfEnclosingCircle(outlines_);
    put(first(Gauge::eCircle), {c.radius, c.centre.x(), c.centre.y()});
    take(c.status);
  }
  void rectangle() {
    const gxTurnedRectangle r = gfLeastAreaRectangle(outlines_);
    put(first(Gauge::eRectangle), {r.length, r.width, r.angle, r.centre.x(), r.centre.y()});
    take(r.status);
  }
  void moments() {
    const gxMoments m = withRecord([](const auto& shape) { return gfMoments(shape); });
    put(first(Gauge::eMoments),
        {m.moment20, m.moment11, m.moment02, m.moment30, m.moment21, m.moment12,
         m.moment03, m.eta20,    m.eta11,    m.eta02,    m.eta30,    m.eta21,
         m.eta12,    m.eta03,    m.hu[0],    m.hu[1],    m.hu[2],    m.hu[3],
         m.hu[4],    m.hu[5],    m.hu[6],    m.ellipseA, m.ellipseB, m.ellipseAngle});
    take(m.status);
  }

  const Ragged& shapes_;
  std::array<bool, 7> wants_{};
  std::array<std::size_t, 7> first_{};
  gxRecord record_;
  Points outlines_;
  std::vector<gxMeasuredRing> rings_;
  std::array<double, kDescribedCount>* row_ = nullptr;
  gxStatus status_ = gxStatus::eOk;
};

py::tuple describe(const Ragged& shapes, const std::vector<std::size_t>& wanted, unsigned threads,
                   const py::object& progress) {
  for (const std::size_t column : wanted) {
    if (column >= kDescribedCount) throw py::index_error("no such column");
  }
  Columns columns(wanted.size(), shapes.size());
  Failures failures(shapes.size());
  forEach(shapes.size(), threads, progress, [&]() -> Work {
    auto describer = std::make_shared<Describer>(shapes, wanted);
    return [&, describer](std::size_t i) {
      failures.guard(i, [&] {
        std::array<double, kDescribedCount> row;
        const gxStatus status = describer->describe(i, row);
        for (std::size_t c = 0; c < wanted.size(); ++c) columns.at(c, i) = row[wanted[c]];
        failures.status(i, status);
      });
    };
  });
  return answer(columns, failures);
}

py::list describedNames() {
  py::list names;
  for (const Described& column : kDescribed) names.append(column.name);
  return names;
}

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
  return answer(columns, failures);
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
    columns.at(c, i) = asNumber(fit.inliers.size());
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
  return answer(columns, failures);
}

}  // namespace

void bindBatchMeasures(py::module_& module) {
  const py::handle plain(reinterpret_cast<PyObject*>(&PyType_Type));
  py::class_<Ragged>(module, "Ragged", py::metaclass(plain))
      .def(py::init<PointArray, Offsets, Offsets, Offsets, Flags>(), "coords"_a, "rings"_a, "parts"_a,
           "shapes"_a, "closed"_a);
  module.def("batch_measure", &measure, "shapes"_a, "threads"_a, "progress"_a);
  module.def("batch_describe", &describe, "shapes"_a, "wanted"_a, "threads"_a, "progress"_a);
  module.def("described_names", &describedNames);
  module.def("batch_compare", &compare, "shapes"_a, "golden"_a, "align"_a, "step"_a, "threads"_a,
             "progress"_a);
  module.def("batch_fit", &fit, "shapes"_a, "kind"_a, "weights"_a, "inlier_limit"_a, "threads"_a,
             "progress"_a);
}
