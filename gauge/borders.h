/// The borders of a shape, as gauges look at them: a contour, a region with holes, a set, bare points.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <velstd/vector.h>

#include <span>
#include <utility>
#include <vector>

/// A look at the borders of a shape: its rings, in the order in which places number them (the outline is
/// −1, its holes 0, 1 …, then the holes of holes, level by level; of a set the rings of one region follow
/// those of the region before).  It is made of a shape where a gauge wants one, and is used while the
/// shape lives and does not change:
///
///   gfHausdorff(part, golden);                     // contours or regions
///   gfHausdorff({points, false}, {others, true});  // an open poly-line and a closed outline
class GXSHAPE_API gxBorders {
 public:
  /// The points of one ring; a closed one leads from its last point back to the first.
  struct Ring {
    std::span<const gxVector<2>> points;  ///< in the order of the walk
    bool closed = true;                   ///< whether the last leads back to the first
  };

  // Every shape is a list of rings, so these are conversions.
  // NOLINTBEGIN(google-explicit-constructor)
  /// Looks at the one ring that there is.
  gxBorders(const gxContour& contour);
  /// Looks at the outline and all holes.
  /// Throws: gxBadPointer for a null hole; BadParams "holes nest too deeply" where a region comes up
  /// again among the holes of its own holes.
  gxBorders(const gxRegion& region);
  /// Looks at the outlines and holes of all regions.  Throws: as for a region.
  gxBorders(const gxRegionSet& set);
  gxBorders(std::span<const gxVector<2>> points, bool closed = true) : rings_{{points, closed}} {}
  gxBorders(const std::vector<gxVector<2>>& points, bool closed = true) : rings_{{points, closed}} {}
  // NOLINTEND(google-explicit-constructor)

  /// Looks at a list of rings; the first is −1 in places.
  explicit gxBorders(std::vector<Ring> rings) : rings_(std::move(rings)) {}

  /// Returns the rings, outlines before their holes.
  const std::vector<Ring>& rings() const { return rings_; }

 private:
  void add_(const gxRegion& region);

  std::vector<Ring> rings_;
};
