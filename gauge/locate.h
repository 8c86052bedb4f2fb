/// Points and shapes: inside or outside, how far, nearest to what.
#pragma once

#include <cntr/export.h>
#include <cntr/regionst.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <cstdint>
#include <iosfwd>
#include <limits>
#include <memory>
#include <span>
#include <vector>

/// Where a point lies.
enum class gxState : std::int8_t { eOutside = -1, eBorder = 0, eInside = 1 };
/// Prints "outside", "border" or "inside".
GXSHAPE_API std::ostream& operator<<(std::ostream& out, gxState state);

/// Where a point lies, and on what.
struct GXSHAPE_API gxLocation {
  gxStatus status = gxStatus::eEmpty;
  gxState state = gxState::eOutside;
  /// Of a set, the first region that holds the point or has it on its border; −1 where none does.  Of a
  /// single shape 0, or −1 outside.
  long region = -1;
  /// On the border: the nearest place, else none.
  gxPlace place;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxLocation& location);

/// What is nearest to a point.
struct GXSHAPE_API gxNearest {
  gxStatus status = gxStatus::eEmpty;
  double distance = std::numeric_limits<double>::quiet_NaN();
  long region = -1;  ///< of a set; 0 of a single shape
  gxPlace place;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxNearest& nearest);

/// Answers questions about points and one shape, from indexes that it makes when it is made.  It copies the
/// coordinates and does not need the shape any more.  The const members may be called on many threads at
/// the same time.
///
/// Material is what an odd number of borders encloses (even-odd over outline, holes, islands), of a set
/// what any region has.  An open contour encloses nothing: its points are border or outside.  Whether a
/// point is inside or exactly on the border is decided exactly, for every finite input (of shapes larger
/// than 2^100 or smaller than 2^-100 after scaling by a power of two), never by the direction of a ray.
///
/// Degenerate shapes and queries, in all members:
///  - a shape without points: `eEmpty`, outside, distance NaN
///  - a shape with a NaN or infinite coordinate, or such a query: `eNotFinite`, outside, distance NaN
///  - a shape without area: border or outside;  a single point: an edge of no length
/// Ties: the first region, then ring, then edge.
class GXSHAPE_API gxLocator {
 public:
  /// Make the indexes.  Throws: gxBadPointer for a null handle; BadParams "holes nest too deeply".
  /// Cost: O(n), some 100 ns an edge.
  // NOLINTBEGIN(google-explicit-constructor): a shape stands for its own locator
  gxLocator(const gxContour& contour);
  gxLocator(const gxRegion& region);
  gxLocator(const gxRegionSet& set);
  // NOLINTEND(google-explicit-constructor)
  explicit gxLocator(std::span<const gxVector<2>> outline);
  gxLocator(const gxLocator&) = default;
  gxLocator(gxLocator&&) noexcept = default;
  gxLocator& operator=(const gxLocator&) = default;
  gxLocator& operator=(gxLocator&&) noexcept = default;
  ~gxLocator();

  /// Returns `eOk`, `eEmpty` or `eNotFinite`: what can be said of the shape.
  gxStatus status() const;

  /// Tells where a point lies: on the border where an edge is within the tolerance, 0 or more, of it (with
  /// 0: exactly on it), else inside or outside.
  ///  - a tolerance below 0 or NaN: `eBadArgument`, outside
  /// Cost: some 10 ns for most points with tolerance 0; else that of `nearest`.
  gxLocation locate(const gxVector<2>& point, double tolerance = 0.0) const;
  /// Returns the states alone, for many points.
  std::vector<gxState> states(std::span<const gxVector<2>> points, double tolerance = 0.0) const;

  /// Returns the nearest place of the border.  Cost: O(log n) where most edges are far.
  gxNearest nearest(const gxVector<2>& point) const;
  std::vector<gxNearest> nearest(std::span<const gxVector<2>> points) const;

  /// Returns the distance from the border: above 0 outside, below 0 inside, +0 on it.  Of a set whose
  /// regions overlap, borders inside another region count as borders.
  double signedDistance(const gxVector<2>& point) const;
  std::vector<double> signedDistances(std::span<const gxVector<2>> points) const;

  /// Returns the number of the first region that holds each point or has it on its border, −1 for none.
  std::vector<long> which(std::span<const gxVector<2>> points) const;

  /// Return the `count` nearest edges, by their nearest places, or vertices, the nearest first; all where
  /// there are not so many.  A vertex is given with the edge that ends at it (t = 1; on an open contour the
  /// first vertex is the start of edge 0).
  ///  - a query that has no answer: nothing
  /// Cost: O(count log n) where most edges are far.
  std::vector<gxNearest> nearestEdges(const gxVector<2>& point, std::size_t count) const;
  std::vector<gxNearest> nearestVertices(const gxVector<2>& point, std::size_t count) const;
  /// Return all edges or vertices at a distance of at most `radius`, the nearest first.
  std::vector<gxNearest> edgesWithin(const gxVector<2>& point, double radius) const;
  std::vector<gxNearest> verticesWithin(const gxVector<2>& point, double radius) const;

 private:
  friend class gx_LocatorAccess;  // for the gauges that search through the same indexes
  struct Data;
  std::shared_ptr<const Data> data_;
};

/// Tell where one point lies, how far from the border it is, and what is nearest, without indexes: as the
/// members of `gxLocator` of the same meaning, with the same answers (but
/// for which of two edges is named that are equally near within rounding).
/// Throws: gxBadPointer for a null handle; BadParams "holes nest too deeply".
/// Cost: O(n).
GXSHAPE_API gxLocation gfLocate(const gxContour& contour, const gxVector<2>& point,
                                double tolerance = 0.0);
GXSHAPE_API gxLocation gfLocate(const gxRegion& region, const gxVector<2>& point,
                                double tolerance = 0.0);
GXSHAPE_API gxLocation gfLocate(const gxRegionSet& set, const gxVector<2>& point,
                                double tolerance = 0.0);
GXSHAPE_API double gfSignedDistance(const gxContour& contour, const gxVector<2>& point);
GXSHAPE_API double gfSignedDistance(const gxRegion& region, const gxVector<2>& point);
GXSHAPE_API double gfSignedDistance(const gxRegionSet& set, const gxVector<2>& point);
GXSHAPE_API gxNearest gfNearest(const gxContour& contour, const gxVector<2>& point);
GXSHAPE_API gxNearest gfNearest(const gxRegion& region, const gxVector<2>& point);
GXSHAPE_API gxNearest gfNearest(const gxRegionSet& set, const gxVector<2>& point);

/// The same for many points, through a `gxLocator`.
inline std::vector<gxState> gfLocateEach(const gxLocator& shape, std::span<const gxVector<2>> points,
                                         double tolerance = 0.0) {
  return shape.states(points, tolerance);
}
inline std::vector<double> gfSignedDistances(const gxLocator& shape,
                                             std::span<const gxVector<2>> points) {
  return shape.signedDistances(points);
}
inline std::vector<gxNearest> gfNearestEach(const gxLocator& shape,
                                            std::span<const gxVector<2>> points) {
  return shape.nearest(points);
}
inline std::vector<long> gfWhich(const gxLocator& set, std::span<const gxVector<2>> points) {
  return set.which(points);
}
