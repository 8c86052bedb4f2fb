// Where points lie: states, signed distances and nearest places of many points, with and without indexes.
#include "binding.h"

#include <gauge/distance.h>
#include <gauge/locate.h>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

// The indexes of a shape, kept by Python beside it.
struct Locator {
  explicit Locator(const Shape& shape)
      : edges(shape.size()), locator(unlocked(edges, [&] {
          return withShape(shape, [](const auto& s) { return gxLocator(s); });
        })) {}
  std::size_t edges;
  gxLocator locator;
};

std::size_t effort(const Locator& shape, PointSpan points) {
  return points.size() * 8 + (shape.edges > 10'000 ? kWorthUnlocking : 0);
}

py::array states(const Locator& shape, const PointArray& array, double tolerance) {
  const PointSpan points = spanOf(array);
  const auto found =
      unlocked(effort(shape, points), [&] { return shape.locator.states(points, tolerance); });
  py::array_t<std::int8_t> result(static_cast<py::ssize_t>(found.size()));
  std::transform(found.begin(), found.end(), result.mutable_data(),
                 [](gxState state) { return static_cast<std::int8_t>(state); });
  return result;
}

py::array signedDistances(const Locator& shape, const PointArray& array) {
  const PointSpan points = spanOf(array);
  const auto found =
      unlocked(effort(shape, points), [&] { return shape.locator.signedDistances(points); });
  py::array_t<double> result(static_cast<py::ssize_t>(found.size()));
  std::copy(found.begin(), found.end(), result.mutable_data());
  return result;
}

py::array which(const Locator& shape, const PointArray& array) {
  const PointSpan points = spanOf(array);
  return out(unlocked(effort(shape, points), [&] { return shape.locator.which(points); }));
}

py::dict nearest(const Locator& shape, const PointArray& array) {
  const PointSpan points = spanOf(array);
  const auto found = unlocked(effort(shape, points), [&] { return shape.locator.nearest(points); });
  const auto count = static_cast<py::ssize_t>(found.size());
  py::array_t<std::int8_t> status(count);
  py::array_t<double> distance(count);
  py::array_t<double> t(count);
  py::array_t<double> place(std::vector<py::ssize_t>{count, 2});
  py::array_t<std::int64_t> region(count);
  py::array_t<std::int64_t> ring(count);
  py::array_t<std::int64_t> edge(count);
  for (std::size_t i = 0; i < found.size(); ++i) {
    status.mutable_data()[i] = static_cast<std::int8_t>(found[i].status);
    distance.mutable_data()[i] = found[i].distance;
    region.mutable_data()[i] = found[i].region;
    ring.mutable_data()[i] = found[i].place.ring;
    edge.mutable_data()[i] = found[i].place.edge;
    t.mutable_data()[i] = found[i].place.t;
    place.mutable_data()[2 * i] = found[i].place.point.x();
    place.mutable_data()[2 * i + 1] = found[i].place.point.y();
  }
  return py::dict("status"_a = status, "distance"_a = distance, "region"_a = region, "ring"_a = ring,
                  "edge"_a = edge, "t"_a = t, "point"_a = place);
}

py::dict distance(const Locator& a, const Locator& b) {
  const gxShapeDistance d =
      unlocked(a.edges + b.edges, [&] { return gfDistance(a.locator, b.locator); });
  return py::dict("status"_a = out(d.status), "distance"_a = d.distance, "from_place"_a = out(d.from),
                  "to_place"_a = out(d.to));
}

}  // namespace

void bindPlaceGauges(py::module_& module) {
  const py::handle plain(reinterpret_cast<PyObject*>(&PyType_Type));
  py::class_<Locator>(module, "Locator", py::metaclass(plain))
      .def(py::init<const Shape&>(), "shape"_a)
      .def_property_readonly("status", [](const Locator& l) { return out(l.locator.status()); })
      .def("states", &states, "points"_a, "tolerance"_a)
      .def("signed_distances", &signedDistances, "points"_a)
      .def("which", &which, "points"_a)
      .def("nearest", &nearest, "points"_a);
  module.def("distance", &distance, "first"_a, "second"_a);
}
