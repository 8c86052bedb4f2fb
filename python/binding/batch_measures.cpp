// Numbers of many shapes: measure and describe.  Each function returns (block of columns, status, error,
// texts); the package gives the columns their names.
#include "batch.h"

#include <gauge/defects.h>
#include <gauge/descriptors.h>
#include <gauge/enclosing.h>
#include <gauge/feret.h>
#include <gauge/inscribed.h>
#include <gauge/measure.h>
#include <gauge/measure_many.h>
#include <gauge/moments.h>
#include <gauge/wall.h>

#include <array>

namespace {

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

// So many outlines go side by side, none of more points than this, so that what is copied of them stays in
// the processor's own memory.
constexpr std::size_t kTogether = 64;
constexpr std::size_t kLong = 4096;

// Measures a range of shapes.  Those that are one closed ring, which most are, go through `gfMeasureMany`,
// which takes half the time and gives the same bits.  It wants them one behind the other: they are looked at
// where they lie as long as they do so, and copied from the first one on that does not, as where rings repeat
// their first points.
class Measurer {
 public:
  Measurer(const Ragged& shapes, const std::vector<std::size_t>& wanted, Columns& columns,
           Failures& failures)
      : shapes_(shapes), wanted_(wanted), columns_(columns), failures_(failures) {
    many_.resize(kTogether);
  }

  void operator()(std::size_t first, std::size_t last) {
    for (std::size_t i = first; i < last; ++i) {
      const auto ring = shapes_.onlyRing(i);
      if (ring && ring->size() <= kLong) {
        take(i, *ring);
      } else {
        failures_.guard(i, [&] { measureAlone(i); });
      }
    }
    measureTaken();
  }

 private:
  void take(std::size_t i, PointSpan ring) {
    if (rows_.empty()) {
      taken_ = ring;
    } else if (copied_.empty() && taken_.data() + taken_.size() == ring.data()) {
      taken_ = {taken_.data(), taken_.size() + ring.size()};
    } else {
      if (copied_.empty()) copied_.assign(taken_.begin(), taken_.end());
      copied_.insert(copied_.end(), ring.begin(), ring.end());
      taken_ = copied_;
    }
    rows_.push_back(i);
    offsets_.push_back(taken_.size());
    if (rows_.size() == kTogether) measureTaken();
  }

  void measureTaken() {
    gfMeasureMany(gxOutlines(taken_, offsets_), 0, rows_.size(), many_);
    for (std::size_t k = 0; k < rows_.size(); ++k) {
      put(rows_[k], many_.status[k],
          {asNumber(offsets_[k + 1] - offsets_[k]), 0.0, many_.area[k], many_.length[k],
           many_.centreX[k], many_.centreY[k], many_.boxXMin[k], many_.boxYMin[k], many_.boxXMax[k],
           many_.boxYMax[k]});
    }
    rows_.clear();
    copied_.clear();
    offsets_.assign(1, 0);
  }

  void measureAlone(std::size_t i) {
    const gxMeasure m = measureOf(shapes_, i, rings_);
    const Counts counts = countsOf(shapes_, i);
    put(i, m.status,
        {asNumber(counts.points), asNumber(counts.holes), m.area, m.length, m.centre.x(), m.centre.y(),
         m.low.x(), m.low.y(), m.high.x(), m.high.y()});
  }

  void put(std::size_t i, gxStatus status, const std::array<double, kMeasures>& row) {
    for (std::size_t c = 0; c < wanted_.size(); ++c) columns_.at(c, i) = row[wanted_[c]];
    failures_.status(i, status);
  }

  const Ragged& shapes_;
  const std::vector<std::size_t>& wanted_;
  Columns& columns_;
  Failures& failures_;
  std::vector<gxMeasuredRing> rings_;
  // The outlines that go together, the row of each, and their measures.
  PointSpan taken_;
  Points copied_;
  std::vector<std::size_t> offsets_{0};
  std::vector<std::size_t> rows_;
  gxMeasureColumns many_;
};

void checkWanted(const std::vector<std::size_t>& wanted, std::size_t count) {
  for (const std::size_t column : wanted) {
    if (column >= count) throw py::index_error("no such column");
  }
}

py::tuple measure(const Ragged& shapes, const std::vector<std::size_t>& wanted, unsigned threads,
                  const py::object& progress) {
  checkWanted(wanted, kMeasures);
  Columns columns(wanted.size(), shapes.size());
  Failures failures(shapes.size());
  forRanges(shapes.size(), threads, progress,
            [&]() -> RangeWork { return Measurer(shapes, wanted, columns, failures); });
  return tableOf(columns, failures);
}

// ---- Describe -----------------------------------------------------------------------------------------

// The columns of `describe` in the order of docs/names.csv, and the gauge that each comes from.
enum class Gauge {
  eCounts,
  eDescriptors,
  eCentre,
  eFeret,
  eCircle,
  eRectangle,
  eMoments,
  eInscribed,
  eWall,
  eDefects
};
constexpr std::size_t kGauges = 10;
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
    // These take long, and come where they are named.
    {"inscribed_circle_radius", Gauge::eInscribed},
    {"inscribed_circle_centre_x", Gauge::eInscribed},
    {"inscribed_circle_centre_y", Gauge::eInscribed},
    {"wall", Gauge::eWall},
    {"wall_from_ring", Gauge::eWall},
    {"wall_from_edge", Gauge::eWall},
    {"wall_from_t", Gauge::eWall},
    {"wall_from_x", Gauge::eWall},
    {"wall_from_y", Gauge::eWall},
    {"wall_to_ring", Gauge::eWall},
    {"wall_to_edge", Gauge::eWall},
    {"wall_to_t", Gauge::eWall},
    {"wall_to_x", Gauge::eWall},
    {"wall_to_y", Gauge::eWall},
};
constexpr std::size_t kDescribedCount = std::size(kDescribed);

// The convexity defects of each shape; none where nobody asks for them.
using DefectLists = std::vector<std::vector<gxConvexityDefect>>;

// The numbers of one shape, gauge by gauge, as far as they are wanted.
class Describer {
 public:
  Describer(const Ragged& shapes, const std::vector<std::size_t>& wanted, DefectLists& defects)
      : shapes_(shapes), defects_(defects) {
    wants_[static_cast<std::size_t>(Gauge::eDefects)] = !defects.empty();
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
    if (wants(Gauge::eInscribed)) inscribed();
    if (wants(Gauge::eWall)) wall();
    if (wants(Gauge::eDefects)) defects(i);
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
  void inscribed() {
    const gxInscribedCircle c = record_.kind == gxRecord::Kind::eSet
                                    ? gfInscribedCircle(record_.toSet())
                                    : gfInscribedCircle(record_.toRegion());
    put(first(Gauge::eInscribed), {c.radius, c.centre.x(), c.centre.y()});
    take(c.status);
  }
  void wall() {
    const gxWall w = record_.kind == gxRecord::Kind::eSet ? gfSmallestWall(record_.toSet())
                                                          : gfSmallestWall(record_.toRegion());
    const auto whole = [](long number) { return static_cast<double>(number); };
    put(first(Gauge::eWall),
        {w.wall, whole(w.from.ring), whole(w.from.edge), w.from.t, w.from.point.x(), w.from.point.y(),
         whole(w.to.ring), whole(w.to.edge), w.to.t, w.to.point.x(), w.to.point.y()});
    take(w.status);
  }
  // Of a set, those of its first region.
  void defects(std::size_t i) {
    const PointSpan outline = record_.ringCount() == 0 ? PointSpan() : record_.ring(0);
    gxConvexityDefects found = gfConvexityDefects(outline);
    defects_[i] = std::move(found.defects);
    take(found.status);
  }

  const Ragged& shapes_;
  DefectLists& defects_;
  std::array<bool, kGauges> wants_{};
  std::array<std::size_t, kGauges> first_{};
  gxRecord record_;
  Points outlines_;
  std::vector<gxMeasuredRing> rings_;
  std::array<double, kDescribedCount>* row_ = nullptr;
  gxStatus status_ = gxStatus::eOk;
};

py::list listOf(const DefectLists& lists) {
  py::list all;
  for (const auto& defects : lists) {
    py::list list;
    for (const auto& defect : defects) list.append(out(defect));
    all.append(list);
  }
  return all;
}

// The last of the answer is a list of defects for each shape, empty where they are not wanted.
py::tuple describe(const Ragged& shapes, const std::vector<std::size_t>& wanted, bool wantsDefects,
                   unsigned threads, const py::object& progress) {
  checkWanted(wanted, kDescribedCount);
  DefectLists defects(wantsDefects ? shapes.size() : 0);
  Columns columns(wanted.size(), shapes.size());
  Failures failures(shapes.size());
  forEach(shapes.size(), threads, progress, [&]() -> Work {
    auto describer = std::make_shared<Describer>(shapes, wanted, defects);
    return [&, describer](std::size_t i) {
      failures.guard(i, [&] {
        std::array<double, kDescribedCount> row;
        const gxStatus status = describer->describe(i, row);
        for (std::size_t c = 0; c < wanted.size(); ++c) columns.at(c, i) = row[wanted[c]];
        failures.status(i, status);
      });
    };
  });
  return tableOf(columns, failures) + py::make_tuple(listOf(defects));
}

// Of those that are given unasked, or of the others.
py::list describedNames(bool onRequest) {
  py::list names;
  for (const Described& column : kDescribed) {
    if ((column.gauge >= Gauge::eInscribed) == onRequest) names.append(column.name);
  }
  return names;
}

}  // namespace

void bindBatchMeasures(py::module_& module) {
  const py::handle plain(reinterpret_cast<PyObject*>(&PyType_Type));
  py::class_<Ragged>(module, "Ragged", py::metaclass(plain))
      .def(py::init<PointArray, Offsets, Offsets, Offsets, Flags>(), "coords"_a, "rings"_a, "parts"_a,
           "shapes"_a, "closed"_a);
  module.def("batch_measure", &measure, "shapes"_a, "wanted"_a, "threads"_a, "progress"_a);
  module.def("batch_describe", &describe, "shapes"_a, "wanted"_a, "defects"_a, "threads"_a,
             "progress"_a);
  module.def("described_names", &describedNames, "on_request"_a);
}
