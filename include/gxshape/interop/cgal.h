/// From and to CGAL: polygons, polygons with holes, over any kernel whose numbers hold doubles.
#pragma once

#include <cntr/contour.h>
#include <cntr/region.h>
#include <gxshape/interop/rings.h>
#include <velstd/vector.h>

#include <CGAL/Polygon_2.h>
#include <CGAL/Polygon_with_holes_2.h>
#include <CGAL/number_utils.h>

#include <cstddef>
#include <vector>

/// Convert a point.  To CGAL every finite double is exact; back, an exact number is rounded as
/// `CGAL::to_double` does it, and a number that is a double stays as it is.
template <class Kernel>
typename Kernel::Point_2 gfToCgal(const gxVector<2>& point) {
  return {point.x(), point.y()};
}
template <class Point>
gxVector<2> gfFromCgalPoint(const Point& point) {
  return {CGAL::to_double(point.x()), CGAL::to_double(point.y())};
}

/// Returns points as a polygon of CGAL, which like a contour does not repeat the first one.
template <class Kernel>
CGAL::Polygon_2<Kernel> gfToCgal(const std::vector<gxVector<2>>& points) {
  CGAL::Polygon_2<Kernel> polygon;
  for (const gxVector<2>& point : points) polygon.push_back(gfToCgal<Kernel>(point));
  return polygon;
}
/// Returns the points of a polygon.
template <class Kernel, class Container>
std::vector<gxVector<2>> gfPointsFromCgal(const CGAL::Polygon_2<Kernel, Container>& polygon) {
  std::vector<gxVector<2>> points;
  points.reserve(polygon.size());
  for (auto vertex = polygon.vertices_begin(); vertex != polygon.vertices_end(); ++vertex) {
    points.push_back(gfFromCgalPoint(*vertex));
  }
  return points;
}

/// Which way the rings are to run in CGAL.
enum class gxCgalRings {
  eAsTheyAre,  ///< as the region has them
  eForSets,    ///< outlines counter-clockwise (y up), holes clockwise, as set operations there ask
};

/// Returns one ring.  A ring that crosses itself has no direction and stays as it is; CGAL says so of those that
/// are not simple.
template <class Kernel>
CGAL::Polygon_2<Kernel> gx_cgalRing(const std::vector<gxVector<2>>& points, gxCgalRings rings,
                                    bool isHole) {
  CGAL::Polygon_2<Kernel> polygon = gfToCgal<Kernel>(points);
  if (rings == gxCgalRings::eForSets && polygon.size() > 2 && polygon.is_simple() &&
      polygon.is_clockwise_oriented() != isHole) {
    polygon.reverse_orientation();
  }
  return polygon;
}

/// Returns a region as polygons with holes: the region itself, then the islands in its holes.  Coordinates have
/// to be finite.
///  - `eForSets` turns the rings that run the other way; a ring that is turned begins with the same point
/// Throws: gxBadPointer for a null hole; BadParams "holes nest too deeply"; what CGAL throws.
/// Cost: O(points), with `eForSets` O(n log n), as CGAL asks first whether each ring is simple.
template <class Kernel>
std::vector<CGAL::Polygon_with_holes_2<Kernel>> gfToCgal(const gxRegion& region,
                                                         gxCgalRings rings = gxCgalRings::eAsTheyAre) {
  std::vector<CGAL::Polygon_with_holes_2<Kernel>> result;
  for (const gxRegionRings& part : gfRingsOf(region)) {
    CGAL::Polygon_with_holes_2<Kernel> polygon(gx_cgalRing<Kernel>(*part.outline, rings, false));
    for (const std::vector<gxVector<2>>* hole : part.holes) {
      polygon.add_hole(gx_cgalRing<Kernel>(*hole, rings, true));
    }
    result.push_back(polygon);
  }
  return result;
}

/// Returns the region of a polygon with holes, which are taken as they are.
///  - an unbounded polygon, which has no outline: a region without points, with its holes
template <class Kernel, class Container>
gxRegion gfRegionFromCgal(const CGAL::Polygon_with_holes_2<Kernel, Container>& polygon) {
  std::vector<std::vector<gxVector<2>>> holes;
  for (auto hole = polygon.holes_begin(); hole != polygon.holes_end(); ++hole) {
    holes.push_back(gfPointsFromCgal(*hole));
  }
  return gfRegionOfRings(gfPointsFromCgal(polygon.outer_boundary()), holes);
}
template <class Kernel, class Container>
gxRegion gfRegionFromCgal(const CGAL::Polygon_2<Kernel, Container>& polygon) {
  return gxRegion(gfPointsFromCgal(polygon));
}
