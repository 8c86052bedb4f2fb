// Gauges of one shape: descriptors, moments, widths, circles, rectangles, walls, defects.  Every answer is a
// dict with the names of docs/names.csv, of which the package makes a frozen dataclass.
#include "binding.h"

#include <gauge/defects.h>
#include <gauge/descriptors.h>
#include <gauge/enclosing.h>
#include <gauge/feret.h>
#include <gauge/inscribed.h>
#include <gauge/measure.h>
#include <gauge/moments.h>
#include <gauge/wall.h>
#include <velstd/convex_hull.h>

namespace {

// Of gauges that look at a contour or a set: a region is a contour to them.
template <class Use>
auto ofOutlines(const Shape& shape, const Use& use) {
  return shape.isSet() ? use(shape.set()) : use(shape.contour());
}

// Area, length, centre and box as `gfMeasure` has them, the rings being those of files.
gxMeasure measureOf(const Shape& shape) {
  gxRecord record;
  shape.into(record);
  std::vector<gxMeasuredRing> rings;
  for (std::size_t p = 0; p < record.partCount(); ++p) {
    for (std::size_t r = record.firstRing(p); r < record.partEnds[p]; ++r)
      rings.push_back({record.ring(r), r > record.firstRing(p)});
  }
  return gfMeasure(rings, record.kind != gxRecord::Kind::eOpen);
}

py::dict measure(const Shape& shape) {
  const gxMeasure m = unlocked(shape.size(), [&] { return measureOf(shape); });
  return py::dict("status"_a = out(m.status), "area"_a = m.area, "length"_a = m.length,
                  "centre"_a = out(m.centre),
                  "box"_a = py::make_tuple(m.low.x(), m.low.y(), m.high.x(), m.high.y()));
}

py::dict describe(const Shape& shape) {
  const gxDescriptors d = unlocked(
      shape.size(), [&] { return withShape(shape, [](const auto& s) { return gfDescribe(s); }); });
  return py::dict(
      "status"_a = out(d.status), "area"_a = d.area, "filled_area"_a = d.filledArea,
      "perimeter"_a = d.perimeter, "length"_a = d.length,
      "box"_a =
          py::make_tuple(d.box.origin().x(), d.box.origin().y(), d.box.corner().x(), d.box.corner().y()),
      "equivalent_diameter"_a = d.equivalentDiameter, "circularity"_a = d.circularity,
      "compactness"_a = d.compactness, "convexity"_a = d.convexity, "solidity"_a = d.solidity,
      "extent"_a = d.extent, "rectangularity"_a = d.rectangularity, "aspect_ratio"_a = d.aspectRatio,
      "elongation"_a = d.elongation, "eccentricity"_a = d.eccentricity, "orientation"_a = d.orientation,
      "euler_number"_a = d.eulerNumber, "feret_max"_a = d.feretMax, "feret_min"_a = d.feretMin,
      "feret_mean"_a = d.feretMean, "feret_across"_a = d.feretAcross, "hull_area"_a = d.hullArea,
      "hull_perimeter"_a = d.hullPerimeter);
}

py::dict moments(const Shape& shape) {
  const gxMoments m = unlocked(
      shape.size(), [&] { return withShape(shape, [](const auto& s) { return gfMoments(s); }); });
  py::tuple hu(7);
  for (std::size_t i = 0; i < 7; ++i) hu[i] = m.hu[i];
  return py::dict("status"_a = out(m.status), "area"_a = m.area, "centre"_a = out(m.centre),
                  "moment_20"_a = m.moment20, "moment_11"_a = m.moment11, "moment_02"_a = m.moment02,
                  "moment_30"_a = m.moment30, "moment_21"_a = m.moment21, "moment_12"_a = m.moment12,
                  "moment_03"_a = m.moment03, "eta_20"_a = m.eta20, "eta_11"_a = m.eta11,
                  "eta_02"_a = m.eta02, "eta_30"_a = m.eta30, "eta_21"_a = m.eta21, "eta_12"_a = m.eta12,
                  "eta_03"_a = m.eta03, "hu"_a = hu, "ellipse_a"_a = m.ellipseA,
                  "ellipse_b"_a = m.ellipseB, "ellipse_angle"_a = m.ellipseAngle);
}

py::dict feret(const Shape& shape) {
  const gxFeret f = unlocked(
      shape.size(), [&] { return ofOutlines(shape, [](const auto& s) { return gfFeret(s); }); });
  return py::dict("status"_a = out(f.status), "feret_max"_a = f.feretMax,
                  "feret_max_angle"_a = f.feretMaxAngle,
                  "feret_max_points"_a = py::make_tuple(f.feretMaxFrom, f.feretMaxTo),
                  "feret_min"_a = f.feretMin, "feret_min_angle"_a = f.feretMinAngle,
                  "feret_across"_a = f.feretAcross, "feret_mean"_a = f.feretMean);
}

py::dict enclosingCircle(const Shape& shape) {
  const gxEnclosingCircle c = unlocked(shape.size(), [&] {
    return ofOutlines(shape, [](const auto& s) { return gfEnclosingCircle(s); });
  });
  const std::vector<long> support(c.support.begin(), c.support.begin() + c.supports);
  return py::dict("status"_a = out(c.status), "centre"_a = out(c.centre), "radius"_a = c.radius,
                  "supports"_a = out(support));
}

py::dict inscribedCircle(const Shape& shape, double tolerance) {
  const gxInscribedCircle c = unlocked(shape.size(), [&] {
    return shape.isSet() ? gfInscribedCircle(shape.set(), tolerance)
                         : gfInscribedCircle(shape.region(), tolerance);
  });
  return py::dict("status"_a = out(c.status), "centre"_a = out(c.centre), "radius"_a = c.radius,
                  "gap"_a = c.gap, "touch"_a = out(c.touch), "region"_a = c.region);
}

py::dict rectangle(const Shape& shape, bool leastWidth) {
  const gxTurnedRectangle r = unlocked(shape.size(), [&] {
    return ofOutlines(shape, [&](const auto& s) {
      return leastWidth ? gfLeastWidthRectangle(s) : gfLeastAreaRectangle(s);
    });
  });
  const auto corners = r.corners();
  return py::dict("status"_a = out(r.status), "centre"_a = out(r.centre), "length"_a = r.length,
                  "width"_a = r.width, "angle"_a = r.angle, "corners"_a = arrayOf(corners));
}

py::dict smallestWall(const Shape& shape) {
  const gxWall w = unlocked(shape.size(), [&] {
    return shape.isSet() ? gfSmallestWall(shape.set()) : gfSmallestWall(shape.region());
  });
  return py::dict("status"_a = out(w.status), "wall"_a = w.wall, "wall_from"_a = out(w.from),
                  "wall_to"_a = out(w.to), "region"_a = w.region);
}

py::dict defects(const Shape& shape) {
  const gxConvexityDefects found =
      unlocked(shape.size(), [&] { return gfConvexityDefects(shape.contour()); });
  py::list list;
  for (const auto& defect : found.defects) list.append(out(defect));
  return py::dict("status"_a = out(found.status), "defects"_a = list);
}

Shape hull(const Shape& shape) {
  return unlocked(shape.size(), [&] {
    Points all;
    const gxBorders borders = shape.borders();
    for (const auto& ring : borders.rings())
      all.insert(all.end(), ring.points.begin(), ring.points.end());
    Points hull;
    gfConvexHull(all, hull);
    return Shape::of(gxRegion(hull));
  });
}

}  // namespace

void bindShapeGauges(py::module_& module) {
  module.def("measure", &measure, "shape"_a);
  module.def("describe", &describe, "shape"_a);
  module.def("moments", &moments, "shape"_a);
  module.def("feret", &feret, "shape"_a);
  module.def("enclosing_circle", &enclosingCircle, "shape"_a);
  module.def("inscribed_circle", &inscribedCircle, "shape"_a, "tolerance"_a);
  module.def("rectangle", &rectangle, "shape"_a, "least_width"_a);
  module.def("smallest_wall", &smallestWall, "shape"_a);
  module.def("convexity_defects", &defects, "shape"_a);
  module.def("convex_hull", &hull, "shape"_a);
}
