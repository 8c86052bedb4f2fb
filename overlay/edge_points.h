/// Edge points for the regions that overlay makes of edge-point regions.
#pragma once

#include <ch_core/cntrtmpl.h>
#include <cntr/export.h>
#include <cntr/regionst.h>
#include <velip/edgelet.h>
#include <velstd/handle.h>

#include <vector>

/// Returns the regions of a result (of a union, a repair, a clipping …) as regions with edge points, in the
/// order of the result, with the edge points of the regions that it was made of:
///
///   gfWithEdgePoints(gfUnion(*a, *b), {a, b})
///
///  - a vertex that a source has, in its outline or in one of its edge-point holes, keeps the edge point from there;
///    of several sources that of the first, and of several vertices of it that of the first, outlines before holes
///  - a crossing, within rounding on an edge of a source (of several the first, its nearest edge): the magnitude
///    between those of the edge's ends, rounded, and the angle between theirs the shorter way around, by how far
///    along the edge it lies
///  - any other vertex, as growing, clipping or another shape made it: magnitude 0, angle 0
/// The transform is that of the first source that has one, cloned for each region.  Under the identity the points
/// keep their bits; under another one they are what it and its inverse make of them, within their rounding.  An
/// edge point of a source with another transform object gets the position that the first one gives it, and keeps
/// magnitude and angle.
///
/// Holes are set in both lists of a region, the same objects: they count in its measures, and have their edge
/// points.  Labels are 0.
///  - sources whose edge points were not loaded with them take no part
///  - no regions: an empty set
/// Throws: gxBadPointer for a null source or hole, and where no source has a transform while the result has
/// regions; gxMathError::Singular for a transform without an inverse.
/// Cost: O(n log n) in the points of sources and result.
GXSHAPE_API gxRegionSetT<gxEdgelet> gfWithEdgePoints(
    const gxRegionSet& result, const std::vector<gxPtrHandle_const<gxRegionT<gxEdgelet>>>& sources);
