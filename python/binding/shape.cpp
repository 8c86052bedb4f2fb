// Shapes: making them of arrays, looking at them, mapping, comparing and archiving.
#include "binding.h"

#include <velip/edgelet.h>
#include <velstd/archive.h>
#include <velstd/xform_base.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <set>
#include <stdexcept>
#include <string_view>

namespace {

using Bytes = py::array_t<std::uint8_t, py::array::c_style>;
using Words = py::array_t<std::uint16_t, py::array::c_style>;
using RegionHandle = gxPtrHandle_const<gxRegion>;
using EdgeContour = gxContourT<gxEdgelet>;
using EdgeRegion = gxRegionT<gxEdgelet>;
using EdgeSet = gxRegionSetT<gxEdgelet>;
using Six = std::array<double, 6>;  // xx, xy, yx, yy, tx, ty

// ---- Making ---------------------------------------------------------------------------------------

Points pointsOf(const PointArray& array) {
  const PointSpan span = spanOf(array);
  return {span.begin(), span.end()};
}

Shape makeContour(const PointArray& points, bool closed, unsigned long label) {
  return Shape::of(gxContour(pointsOf(points), closed, label));
}

std::vector<RegionHandle> handlesOf(const std::vector<Shape>& shapes) {
  std::vector<RegionHandle> handles;
  handles.reserve(shapes.size());
  for (const Shape& shape : shapes) handles.push_back(shape.regionHandle());
  return handles;
}

Shape makeRegion(const PointArray& points, const std::vector<Shape>& holes, unsigned long label) {
  gxRegion region(pointsOf(points));
  region.label(label);
  if (!holes.empty()) region.holes(handlesOf(holes));
  return Shape::of(std::move(region));
}

Shape makeSet(const std::vector<Shape>& regions) {
  return Shape::of(gxRegionSet(handlesOf(regions)));
}

gxXform<2> xformOf(const Six& six) {
  return {gxMatrix<2>(six[0], six[1], six[2], six[3]), gxVector<2>(six[4], six[5])};
}

EdgeContour edgeContourOf(const PointArray& positions, const Words& magnitudes, const Bytes& angles,
                          bool closed, unsigned long label, const Six& transform) {
  const PointSpan places = spanOf(positions);
  if (static_cast<std::size_t>(magnitudes.size()) != places.size() ||
      static_cast<std::size_t>(angles.size()) != places.size()) {
    throw std::invalid_argument("one magnitude and one angle a point are wanted");
  }
  std::vector<gxEdgelet> data;
  data.reserve(places.size());
  for (std::size_t i = 0; i < places.size(); ++i)
    data.emplace_back(places[i], magnitudes.data()[i], gxAngle8(angles.data()[i]));
  EdgeContour contour(data, EdgeContour::XformHandle(new gx2XformLinear(xformOf(transform))));
  contour.label(label);
  if (!closed) contour.isClosed(false);
  return contour;
}

Shape makeEdgeContour(const PointArray& positions, const Words& magnitudes, const Bytes& angles,
                      bool closed, unsigned long label, const Six& transform) {
  return {Kind::eEdgeContour, gxPtrHandle_const<gxContour>(new EdgeContour(edgeContourOf(
                                  positions, magnitudes, angles, closed, label, transform)))};
}

// Setting plain holes makes the data anew, so these are set again behind them.
Shape makeEdgeRegion(const PointArray& positions, const Words& magnitudes, const Bytes& angles,
                     const std::vector<Shape>& holes, unsigned long label, const Six& transform) {
  const EdgeContour outline = edgeContourOf(positions, magnitudes, angles, true, label, transform);
  auto region = gfMakeHandle<EdgeRegion>(outline, label);
  if (!holes.empty()) {
    region->holes(handlesOf(holes));
    region->data(outline.data());
  }
  return {Kind::eEdgeRegion, RegionHandle(region)};
}

Shape makeEdgeSet(const std::vector<Shape>& regions) {
  std::vector<gxPtrHandle_const<EdgeRegion>> handles;
  handles.reserve(regions.size());
  for (const Shape& shape : regions) {
    handles.emplace_back(dynamic_cast<const EdgeRegion*>(&shape.region()));
  }
  return {Kind::eEdgeSet, gxPtrHandle_const<gxRegionSet>(new EdgeSet(handles))};
}

// ---- Looking --------------------------------------------------------------------------------------

// The array looks at the library's memory; its base keeps the shape, and that the points.
py::array pointsView(const py::object& self) {
  const auto& shape = self.cast<const Shape&>();
  const Points& points = shape.contour().points();
  const std::vector<py::ssize_t> sizes = {static_cast<py::ssize_t>(points.size()), 2};
  if (points.empty()) {
    py::array_t<double> none(sizes);
    none.attr("setflags")("write"_a = false);
    return none;
  }
  py::array_t<double> view(sizes, reinterpret_cast<const double*>(points.data()), self);
  view.attr("setflags")("write"_a = false);
  return view;
}

Shape shapeOfHandle(const RegionHandle& region) {
  const bool hasEdges = dynamic_cast<const EdgeContour*>(region.get()) != nullptr;
  return {hasEdges ? Kind::eEdgeRegion : Kind::eRegion, region};
}

std::vector<Shape> shapesOf(const std::vector<RegionHandle>& handles) {
  std::vector<Shape> shapes;
  shapes.reserve(handles.size());
  for (const auto& handle : handles) shapes.push_back(shapeOfHandle(handle));
  return shapes;
}

std::vector<Shape> partsOf(const Shape& shape) {
  if (shape.isSet()) return shapesOf(shape.set().regions());
  return shape.isRegion() ? shapesOf(shape.region().holes()) : std::vector<Shape>();
}

py::tuple edgesOf(const Shape& shape) {
  const auto& data = dynamic_cast<const EdgeContour&>(shape.contour()).data();
  const auto count = static_cast<py::ssize_t>(data.size());
  py::array_t<double> positions(std::vector<py::ssize_t>{count, 2});
  py::array_t<std::uint16_t> magnitudes(count);
  py::array_t<std::uint8_t> angles(count);
  for (std::size_t i = 0; i < data.size(); ++i) {
    positions.mutable_data()[2 * i] = data[i].position().x();
    positions.mutable_data()[2 * i + 1] = data[i].position().y();
    magnitudes.mutable_data()[i] = data[i].magnitude();
    angles.mutable_data()[i] = data[i].angle().toByte();
  }
  return py::make_tuple(positions, magnitudes, angles);
}

Six transformOf(const Shape& shape) {
  const auto handle = dynamic_cast<const EdgeContour&>(shape.contour()).dataFromPointsXform();
  if (handle.isNull()) return {1.0, 0.0, 0.0, 1.0, 0.0, 0.0};
  const gxXform<2> x = handle->linearXform(gxVector<2>());
  return {x.xx(), x.xy(), x.yx(), x.yy(), x.tx(), x.ty()};
}

// ---- Comparing ------------------------------------------------------------------------------------

bool sameRing(const gxContour& a, const gxContour& b) {
  const auto* edgesA = dynamic_cast<const EdgeContour*>(&a);
  const auto* edgesB = dynamic_cast<const EdgeContour*>(&b);
  if ((edgesA == nullptr) != (edgesB == nullptr)) return false;
  if (edgesA != nullptr && edgesA->data() != edgesB->data()) return false;
  return a.isClosed() == b.isClosed() && a.points() == b.points();
}

// With a list in place of recursion, for holes nest deeply; what was compared once is not compared again,
// for holes may be shared.
bool sameRegions(const std::vector<RegionHandle>& a, const std::vector<RegionHandle>& b) {
  if (a.size() != b.size()) return false;
  std::vector<std::pair<const gxRegion*, const gxRegion*>> waiting;
  std::set<std::pair<const gxRegion*, const gxRegion*>> seen;
  const auto add = [&](const std::vector<RegionHandle>& left, const std::vector<RegionHandle>& right) {
    for (std::size_t i = 0; i < left.size(); ++i) {
      const std::pair pair(&*left[i], &*right[i]);
      if (seen.insert(pair).second) waiting.push_back(pair);
    }
  };
  add(a, b);
  while (!waiting.empty()) {
    const auto [left, right] = waiting.back();
    waiting.pop_back();
    if (!sameRing(*left, *right) || left->holes().size() != right->holes().size()) return false;
    add(left->holes(), right->holes());
  }
  return true;
}

bool sameShapes(const Shape& a, const Shape& b) {
  if (a.kind() != b.kind()) return false;
  if (a.isSet()) return sameRegions(a.set().regions(), b.set().regions());
  if (a.isRegion()) return sameRegions({a.regionHandle()}, {b.regionHandle()});
  return sameRing(a.contour(), b.contour());
}

// ---- Mapping, archiving, text ------------------------------------------------------------------------

gxRegionSet mappedSet(const gxRegionSet& set, const gxXform<2>& xform) {
  std::vector<RegionHandle> regions;
  for (const auto& region : set.regions()) regions.emplace_back(new gxRegion(region->mapped(xform)));
  return gxRegionSet(regions);
}

Shape mapped(const Shape& shape, const Six& six) {
  const gxXform<2> xform = xformOf(six);
  return unlocked(shape.size(), [&] {
    if (shape.isSet()) return Shape::of(mappedSet(shape.set(), xform));
    if (shape.isRegion()) return Shape::of(shape.region().mapped(xform));
    return Shape::of(shape.contour().mapped(xform));
  });
}

// As deep as an archive goes, so that what can be made can be pickled.
gxArchive::Limits archiveLimits() {
  gxArchive::Limits limits;
  limits.nesting = gxArchive::kMostNesting;
  return limits;
}

py::bytes toArchive(const Shape& shape) {
  gxArchive archive;
  archive.limits(archiveLimits());
  const auto store = [&](const auto& object) { archive.store(object); };
  withShape(shape, store);
  const auto bytes = archive.bytes();
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

Shape fromArchive(const py::bytes& text) {
  const std::string_view bytes = text;
  gxArchive archive(std::span(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
  archive.limits(archiveLimits());
  std::unique_ptr<gxPersistent> object = archive.loadNew();
  if (auto* set = dynamic_cast<gxRegionSet*>(object.get())) return Shape::of(std::move(*set));
  if (auto* region = dynamic_cast<gxRegion*>(object.get())) return Shape::of(std::move(*region));
  if (auto* edges = dynamic_cast<EdgeContour*>(object.get())) {
    return {Kind::eEdgeContour, gxPtrHandle_const<gxContour>(new EdgeContour(std::move(*edges)))};
  }
  if (auto* contour = dynamic_cast<gxContour*>(object.get())) return Shape::of(std::move(*contour));
  throw std::invalid_argument("the archive holds no shape");
}

// The rings of a shape, outlines before their holes, each with its points: for pictures and files.
py::list ringsOf(const Shape& shape) {
  gxRecord record;
  shape.into(record);
  py::list parts;
  for (std::size_t p = 0; p < record.partCount(); ++p) {
    py::list rings;
    for (std::size_t r = record.firstRing(p); r < record.partEnds[p]; ++r)
      rings.append(arrayOf(record.ring(r)));
    parts.append(rings);
  }
  return parts;
}

}  // namespace

std::size_t Shape::size() const {
  std::size_t count = 0;
  const gxBorders looked = borders();
  for (const auto& ring : looked.rings()) count += ring.points.size();
  return count;
}

gxBorders Shape::borders() const {
  return withShape(*this, [](const auto& shape) { return gxBorders(shape); });
}

void Shape::into(gxRecord& record) const {
  withShape(*this, [&](const auto& shape) { record.assign(shape); });
}

Shape shapeOf(const gxRecord& record) {
  if (record.kind == gxRecord::Kind::eSet) return Shape::of(record.toSet());
  if (record.kind == gxRecord::Kind::eRegion || record.kind == gxRecord::Kind::eEmpty)
    return Shape::of(record.toRegion());
  return Shape::of(gxContour(record.points, false));
}

PointSpan spanOf(const PointArray& points) {
  if (points.ndim() != 2 || points.shape(1) != 2) throw std::invalid_argument("want shape (n, 2)");
  static_assert(sizeof(gxVector<2>) == 2 * sizeof(double));
  return {reinterpret_cast<const gxVector<2>*>(points.data()),
          static_cast<std::size_t>(points.shape(0))};
}

py::array_t<double> arrayOf(PointSpan points) {
  py::array_t<double> array(std::vector<py::ssize_t>{static_cast<py::ssize_t>(points.size()), 2});
  if (!points.empty()) std::memcpy(array.mutable_data(), points.data(), points.size_bytes());
  return array;
}

py::object out(gxStatus status) {
  return py::int_(static_cast<int>(status));
}

py::object out(const gxVector<2>& point) {
  py::array_t<double> array(2);
  array.mutable_data()[0] = point.x();
  array.mutable_data()[1] = point.y();
  return array;
}

py::object out(const gxPlace& place) {
  if (!place.valid()) return py::none();
  return py::make_tuple(place.ring, place.edge, place.t, place.point.x(), place.point.y());
}

py::dict out(const gxConvexityDefect& defect) {
  return py::dict("start"_a = defect.start, "end"_a = defect.end, "deepest"_a = defect.deepest,
                  "depth"_a = defect.depth, "area"_a = defect.area);
}

py::object out(const std::vector<long>& numbers) {
  py::array_t<std::int64_t> array(static_cast<py::ssize_t>(numbers.size()));
  std::copy(numbers.begin(), numbers.end(), array.mutable_data());
  return array;
}

py::object out(const std::vector<std::size_t>& numbers) {
  py::array_t<std::int64_t> array(static_cast<py::ssize_t>(numbers.size()));
  std::transform(numbers.begin(), numbers.end(), array.mutable_data(),
                 [](std::size_t n) { return static_cast<std::int64_t>(n); });
  return array;
}

void bindShape(py::module_& module) {
  const py::handle plain(reinterpret_cast<PyObject*>(&PyType_Type));
  py::class_<Shape>(module, "Shape", py::metaclass(plain))
      .def_property_readonly("kind", [](const Shape& s) { return static_cast<int>(s.kind()); })
      .def_property_readonly("points", &pointsView)
      .def_property_readonly("closed", [](const Shape& s) { return s.contour().isClosed(); })
      .def_property_readonly("label", [](const Shape& s) { return s.contour().label(); })
      .def_property_readonly("parts", &partsOf)
      .def_property_readonly("edges", &edgesOf)
      .def_property_readonly("transform", &transformOf)
      .def_property_readonly("size", &Shape::size)
      .def("rings", &ringsOf)
      .def("same", &sameShapes, "other"_a)
      .def("mapped", &mapped, "transform"_a)
      .def("archive", &toArchive);
  module.def("make_contour", &makeContour, "points"_a, "closed"_a, "label"_a);
  module.def("make_region", &makeRegion, "points"_a, "holes"_a, "label"_a);
  module.def("make_set", &makeSet, "regions"_a);
  module.def("make_edge_contour", &makeEdgeContour, "positions"_a, "magnitudes"_a, "angles"_a,
             "closed"_a, "label"_a, "transform"_a);
  module.def("make_edge_region", &makeEdgeRegion, "positions"_a, "magnitudes"_a, "angles"_a, "holes"_a,
             "label"_a, "transform"_a);
  module.def("make_edge_set", &makeEdgeSet, "regions"_a);
  module.def("from_archive", &fromArchive, "data"_a);
}
