/// Boost.Geometry sees the library's points, rings and regions as they lie in memory: no copy.
///
///   gxVector<2>                  a point
///   std::vector<gxVector<2>>     a ring (`contour.points()`), open: the first point is not repeated
///   gxBoostLine                  a line string over the points of an open contour
///   gxRegion                     a polygon with holes, for reading
///   std::vector<gxRegion>        a multi-polygon, for reading
///   gxRect                       a box, for reading
///
/// The rings are declared counter-clockwise (y up), which is what overlay and repair make.  Boost.Geometry
/// believes that: of a ring that runs the other way `area` is negative, and set operations and `is_valid` go
/// wrong; `length`, `perimeter`, `envelope`, `within`, `distance`, `convex_hull` and `centroid` do not mind.
/// Results are written into `gxBoostPolygon`, a model of Boost's own over our points, of which
/// `gfRegionFromBoost` makes a region; `gfToBoost` makes one of a region with its rings turned the right way.
#pragma once

#include <cntr/contour.h>
#include <cntr/region.h>
#include <gxshape/interop/rings.h>
#include <velstd/rect.h>
#include <velstd/vector.h>

#include <boost/geometry/core/access.hpp>
#include <boost/geometry/core/closure.hpp>
#include <boost/geometry/core/coordinate_dimension.hpp>
#include <boost/geometry/core/coordinate_system.hpp>
#include <boost/geometry/core/coordinate_type.hpp>
#include <boost/geometry/core/cs.hpp>
#include <boost/geometry/core/exterior_ring.hpp>
#include <boost/geometry/core/interior_rings.hpp>
#include <boost/geometry/core/point_order.hpp>
#include <boost/geometry/core/ring_type.hpp>
#include <boost/geometry/core/tag.hpp>
#include <boost/geometry/core/tags.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <boost/mpl/int.hpp>
#include <boost/range/iterator_range.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>
#include <vector>

/// The points of an open contour as a line string, in the contour's memory.
class gxBoostLine {
 public:
  using value_type = gxVector<2>;
  using const_iterator = std::vector<gxVector<2>>::const_iterator;
  using iterator = const_iterator;
  using size_type = std::size_t;
  using difference_type = std::ptrdiff_t;
  using reference = const gxVector<2>&;
  using const_reference = const gxVector<2>&;

  gxBoostLine() = default;
  /// Looks at the points, which must outlive it.
  explicit gxBoostLine(const std::vector<gxVector<2>>& points)
      : begin_(points.begin()), end_(points.end()) {}
  explicit gxBoostLine(const gxContour& contour) : gxBoostLine(contour.points()) {}

  /// The points as a range.
  const_iterator begin() const { return begin_; }
  const_iterator end() const { return end_; }
  std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }

 private:
  const_iterator begin_;
  const_iterator end_;
};

/// Goes over the holes of a region and gives the points of each, in the hole's memory.
class gx_BoostHole {
 public:
  using iterator_category = std::random_access_iterator_tag;
  using value_type = std::vector<gxVector<2>>;
  using difference_type = std::ptrdiff_t;
  using pointer = const value_type*;
  using reference = const value_type&;

  gx_BoostHole() = default;
  explicit gx_BoostHole(std::vector<gxRegion::HoleHandle>::const_iterator at) : at_(at) {}

  /// Return the points of the hole here, or `n` further on.  Throws: gxBadPointer for a null hole.
  reference operator*() const { return (*at_)->points(); }
  pointer operator->() const { return &**this; }
  reference operator[](difference_type n) const { return *(*this + n); }

  /// Step and compare as pointers do.
  gx_BoostHole& operator+=(difference_type n) {
    at_ += n;
    return *this;
  }
  gx_BoostHole& operator-=(difference_type n) { return *this += -n; }
  gx_BoostHole& operator++() { return *this += 1; }
  gx_BoostHole& operator--() { return *this -= 1; }
  gx_BoostHole operator++(int) {
    const gx_BoostHole old = *this;
    ++*this;
    return old;
  }
  gx_BoostHole operator--(int) {
    const gx_BoostHole old = *this;
    --*this;
    return old;
  }
  friend gx_BoostHole operator+(gx_BoostHole i, difference_type n) { return i += n; }
  friend gx_BoostHole operator+(difference_type n, gx_BoostHole i) { return i += n; }
  friend gx_BoostHole operator-(gx_BoostHole i, difference_type n) { return i -= n; }
  friend difference_type operator-(const gx_BoostHole& a, const gx_BoostHole& b) {
    return a.at_ - b.at_;
  }
  friend auto operator<=>(const gx_BoostHole&, const gx_BoostHole&) = default;

 private:
  std::vector<gxRegion::HoleHandle>::const_iterator at_;
};

namespace boost::geometry::traits {

// ---- Points ----------------------------------------------------------------------------------------

template <>
struct tag<gxVector<2>> {
  using type = point_tag;
};
template <>
struct coordinate_type<gxVector<2>> {
  using type = double;
};
template <>
struct coordinate_system<gxVector<2>> {
  using type = cs::cartesian;
};
template <>
struct dimension<gxVector<2>> : boost::mpl::int_<2> {};  // earlier versions ask for a number of MPL
template <>
struct access<gxVector<2>, 0> {
  static double get(const gxVector<2>& p) { return p.x(); }
  static void set(gxVector<2>& p, double x) { p = gxVector<2>(x, p.y()); }
};
template <>
struct access<gxVector<2>, 1> {
  static double get(const gxVector<2>& p) { return p.y(); }
  static void set(gxVector<2>& p, double y) { p = gxVector<2>(p.x(), y); }
};

// ---- Boxes -----------------------------------------------------------------------------------------

template <>
struct tag<gxRect> {
  using type = box_tag;
};
template <>
struct point_type<gxRect> {
  using type = gxVector<2>;
};
template <std::size_t Dimension>
struct indexed_access<gxRect, min_corner, Dimension> {
  static double get(const gxRect& r) { return Dimension == 0 ? r.origin().x() : r.origin().y(); }
};
template <std::size_t Dimension>
struct indexed_access<gxRect, max_corner, Dimension> {
  static double get(const gxRect& r) { return Dimension == 0 ? r.corner().x() : r.corner().y(); }
};

// ---- Rings and lines -------------------------------------------------------------------------------

template <>
struct tag<std::vector<gxVector<2>>> {
  using type = ring_tag;
};
template <>
struct point_order<std::vector<gxVector<2>>> {
  static const order_selector value = counterclockwise;
};
template <>
struct closure<std::vector<gxVector<2>>> {
  static const closure_selector value = open;
};
template <>
struct tag<gxBoostLine> {
  using type = linestring_tag;
};

// ---- Regions ---------------------------------------------------------------------------------------

template <>
struct tag<gxRegion> {
  using type = polygon_tag;
};
template <>
struct ring_const_type<gxRegion> {
  using type = const std::vector<gxVector<2>>&;
};
// Order and closure of a polygon are asked of this type; nothing is ever written through it.
template <>
struct ring_mutable_type<gxRegion> {
  using type = std::vector<gxVector<2>>&;
};
template <>
struct interior_const_type<gxRegion> {
  using type = const boost::iterator_range<gx_BoostHole>;
};
template <>
struct interior_mutable_type<gxRegion> {
  using type = boost::iterator_range<gx_BoostHole>;
};
template <>
struct exterior_ring<gxRegion> {
  static const std::vector<gxVector<2>>& get(const gxRegion& region) { return region.points(); }
};
template <>
struct interior_rings<gxRegion> {
  static boost::iterator_range<gx_BoostHole> get(const gxRegion& region) {
    return {gx_BoostHole(region.holes().begin()), gx_BoostHole(region.holes().end())};
  }
};
template <>
struct tag<std::vector<gxRegion>> {
  using type = multi_polygon_tag;
};

}  // namespace boost::geometry::traits

/// A polygon of Boost.Geometry over our points, as the traits above have it: counter-clockwise, open.
using gxBoostPolygon = boost::geometry::model::polygon<gxVector<2>, false, false>;
/// Several of them.
using gxBoostMultiPolygon = boost::geometry::model::multi_polygon<gxBoostPolygon>;

/// Returns points as a ring that runs as Boost.Geometry asks: counter-clockwise, a hole clockwise.  A ring of no area,
/// or of one that is not a number, stays as it is; a last point that repeats the first stays too.
inline gxBoostPolygon::ring_type gx_boostRing(const std::vector<gxVector<2>>& points, bool isHole) {
  gxBoostPolygon::ring_type ring(points.begin(), points.end());
  double area = 0.0;
  for (std::size_t i = 2; i < points.size(); ++i) {
    area += gf_Cross(points[i - 1] - points[0], points[i] - points[0]);
  }
  if (isHole ? area > 0 : area < 0) std::reverse(ring.begin(), ring.end());
  return ring;
}

/// Returns a copy of regions with rings that run as Boost.Geometry asks; islands in holes are polygons of their
/// own, behind the region that they lie in.
/// Throws: gxBadPointer for a null hole; BadParams "holes nest too deeply".
/// Cost: O(points).
inline gxBoostMultiPolygon gfToBoost(const std::vector<gxRegion>& regions) {
  gxBoostMultiPolygon result;
  for (const gxRegion& region : regions) {
    for (const gxRegionRings& part : gfRingsOf(region)) {
      gxBoostPolygon polygon;
      polygon.outer() = gx_boostRing(*part.outline, false);
      for (const std::vector<gxVector<2>>* hole : part.holes) {
        polygon.inners().push_back(gx_boostRing(*hole, true));
      }
      result.push_back(polygon);
    }
  }
  return result;
}

/// Return the region of a polygon, and those of several; holes are taken as they are.
inline gxRegion gfRegionFromBoost(const gxBoostPolygon& polygon) {
  std::vector<std::vector<gxVector<2>>> holes;
  for (const auto& hole : polygon.inners()) holes.emplace_back(hole.begin(), hole.end());
  return gfRegionOfRings({polygon.outer().begin(), polygon.outer().end()}, holes);
}
inline std::vector<gxRegion> gfRegionsFromBoost(const gxBoostMultiPolygon& polygons) {
  std::vector<gxRegion> regions;
  regions.reserve(polygons.size());
  for (const gxBoostPolygon& polygon : polygons) regions.push_back(gfRegionFromBoost(polygon));
  return regions;
}
