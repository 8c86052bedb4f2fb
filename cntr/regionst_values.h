/// What region sets and regions answer through arguments, as values.
#pragma once

#include <cntr/export.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <velstd/budget.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

/// Return the set without self-crossings, as `gxRegionSet::regularize` and `outerHull` put it into their
/// argument, within a budget where one is given.  Throw: as those.
GXSHAPE_API gxRegionSet gfRegularized(const gxRegionSet& set);
GXSHAPE_API gxRegionSet gfRegularized(const gxRegionSet& set, gxBudget& budget);
GXSHAPE_API gxRegionSet gfOuterHull(const gxRegionSet& set);
GXSHAPE_API gxRegionSet gfOuterHull(const gxRegionSet& set, gxBudget& budget);

/// Returns the set of the regions mapped through `xform` with their holes (see `gxRegion::mapped`), in order,
/// with the set's `cachedVectorSize`.
/// Throws: gxBadPointer for a null region or hole; BadParams "holes nest too deeply".
/// Cost: O(points).
GXSHAPE_API gxRegionSet gfMapped(const gxRegionSet& set, const gxXform<2>& xform);

/// A vertex of a region: which of its rings, and where in that.
struct gxRegionVertex {
  long hole = -1;   ///< −1 the outline, else the hole's position
  long vertex = 0;  ///< the index in that ring
  friend bool operator==(const gxRegionVertex&, const gxRegionVertex&) = default;
};

/// Returns the vertex of outline and holes nearest to `point`, as `gxRegion::closestVertexIndex` gives it.
/// Throws: as that.
GXSHAPE_API gxRegionVertex gfClosestVertex(const gxRegion& region, const gxVector<2>& point);
