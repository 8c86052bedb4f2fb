// Repair, boolean operations, offsets, relations and checks of shapes.
#include "binding.h"

#include <overlay/boolean.h>
#include <overlay/check.h>
#include <overlay/offset.h>
#include <overlay/relate.h>
#include <overlay/repair.h>
#include <velstd/rect.h>

#include <array>

namespace {

gxShapes shapesOf(const Shape& shape) {
  if (shape.isSet()) return gxShapes(shape.set());
  return gxShapes(shape.region());
}

gxShapes shapesOf(const std::vector<Shape>& shapes) {
  std::vector<gxPtrHandle_const<gxRegion>> regions;
  for (const Shape& shape : shapes) {
    if (shape.isSet()) {
      for (const auto& region : shape.set().regions()) regions.push_back(region);
    } else {
      regions.push_back(shape.regionHandle());
    }
  }
  return gxShapes(regions);
}

gxOverlayOptions optionsOf(int rule, std::size_t mostMeetings) {
  gxOverlayOptions options;
  options.rule = static_cast<gxFillRule>(rule);
  options.limits.maxMeetings = mostMeetings;
  return options;
}

Shape boolean(const std::string& operation, const Shape& a, const Shape& b, int rule,
              std::size_t mostMeetings) {
  const gxOverlayOptions options = optionsOf(rule, mostMeetings);
  return unlocked(a.size() + b.size(), [&] {
    const gxShapes first = shapesOf(a);
    const gxShapes second = shapesOf(b);
    if (operation == "union") return Shape::of(gfUnion(first, second, options));
    if (operation == "intersection") return Shape::of(gfIntersection(first, second, options));
    if (operation == "difference") return Shape::of(gfDifference(first, second, options));
    return Shape::of(gfSymmetricDifference(first, second, options));
  });
}

Shape unionOf(const std::vector<Shape>& shapes, int rule, std::size_t mostMeetings) {
  const gxOverlayOptions options = optionsOf(rule, mostMeetings);
  return unlocked(kWorthUnlocking, [&] { return Shape::of(gfUnion(shapesOf(shapes), options)); });
}

Shape clip(const Shape& shape, const std::array<double, 4>& box, int rule, std::size_t mostMeetings) {
  const gxRect window(gxVector<2>(box[0], box[1]), gxVector<2>(box[2] - box[0], box[3] - box[1]));
  const gxOverlayOptions options = optionsOf(rule, mostMeetings);
  return unlocked(shape.size(), [&] { return Shape::of(gfClip(shapesOf(shape), window, options)); });
}

gxOffsetForm formOf(int join, int ends, double mitreLimit, double arcTolerance) {
  gxOffsetForm form;
  form.join = static_cast<gxJoin>(join);
  form.ends = static_cast<gxEnds>(ends);
  form.mitreLimit = mitreLimit;
  form.arcTolerance = arcTolerance;
  return form;
}

Shape offset(const Shape& shape, double distance, int join, int ends, double mitreLimit,
             double arcTolerance) {
  const gxOffsetForm form = formOf(join, ends, mitreLimit, arcTolerance);
  return unlocked(shape.size(), [&] {
    if (shape.isSet() || shape.isRegion()) return Shape::of(gfOffset(shapesOf(shape), distance, form));
    return Shape::of(gfOffsetPath(shape.contour(), distance, form));
  });
}

py::tuple repair(const Shape& shape, int rule, std::size_t mostMeetings) {
  const gxOverlayOptions options = optionsOf(rule, mostMeetings);
  gxRepaired r = unlocked(shape.size(), [&] { return gfRepair(shapesOf(shape), options); });
  const gxRepairReport& report = r.report;
  const py::dict told("area_before"_a = report.areaBefore, "area_after"_a = report.areaAfter,
                      "regions"_a = report.regions, "holes"_a = report.holes,
                      "rings_dropped"_a = report.ringsDropped, "rings_snapped"_a = report.ringsSnapped,
                      "largest_move"_a = report.largestMove);
  return py::make_tuple(Shape::of(std::move(r.regions)), told);
}

py::list check(const Shape& shape, std::size_t most, bool anyDirection, bool ringsMayTouch) {
  gxCheckOptions options;
  options.atMost = most;
  options.anyDirection = anyDirection;
  options.ringsMayTouch = ringsMayTouch;
  const auto problems = unlocked(shape.size(), [&] {
    return shape.isSet() ? gfCheck(shape.set(), options) : gfCheck(shape.region(), options);
  });
  py::list list;
  for (const gxProblem& p : problems) {
    list.append(py::dict("kind"_a = gfName(p.kind), "point"_a = out(p.point),
                         "edges"_a = py::make_tuple(p.edges[0], p.edges[1]),
                         "rings"_a = py::make_tuple(p.rings[0], p.rings[1]),
                         "regions"_a = py::make_tuple(p.regions[0], p.regions[1]),
                         "sentence"_a = p.sentence));
  }
  return list;
}

py::dict relate(const Shape& a, const Shape& b) {
  const gxRelation r = unlocked(a.size() + b.size(), [&] { return gfRelate(shapesOf(a), shapesOf(b)); });
  return py::dict("intersects"_a = r.intersects(), "touches"_a = r.touches(),
                  "contains"_a = r.contains(), "covers"_a = r.covers(), "overlaps"_a = r.overlaps(),
                  "equal"_a = r.equal());
}

py::tuple overlap(const Shape& a, const Shape& b) {
  const gxOverlap o = unlocked(a.size() + b.size(), [&] { return gfOverlap(shapesOf(a), shapesOf(b)); });
  return py::make_tuple(o.first, o.second, o.both, o.either, o.ratio());
}

}  // namespace

void bindOverlay(py::module_& module) {
  module.def("boolean", &boolean, "operation"_a, "a"_a, "b"_a, "rule"_a, "most_meetings"_a);
  module.def("union_of", &unionOf, "shapes"_a, "rule"_a, "most_meetings"_a);
  module.def("clip", &clip, "shape"_a, "box"_a, "rule"_a, "most_meetings"_a);
  module.def("offset", &offset, "shape"_a, "distance"_a, "join"_a, "ends"_a, "mitre_limit"_a,
             "arc_tolerance"_a);
  module.def("repair", &repair, "shape"_a, "rule"_a, "most_meetings"_a);
  module.def("check", &check, "shape"_a, "most"_a, "any_direction"_a, "rings_may_touch"_a);
  module.def("relate", &relate, "a"_a, "b"_a);
  module.def("overlap", &overlap, "a"_a, "b"_a);
}
