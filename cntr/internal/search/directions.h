/// The directions from a point to the vertices of a closed outline.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/edge_index.h>
#include <velstd/vector.h>

#include <vector>

/// Returns the direction from `point` to `vertex` in [0, 2π).
GXSHAPE_API double gx_directionTo(const gxVector<2>& point, const gxVector<2>& vertex);

/// Tells whether some vertex is not farther from the point than the tolerance; a distance that is
/// not a number is not farther.
GXSHAPE_API bool gx_isOnVertex(const gx_EdgeIndex& index, const std::vector<gxVector<2>>& points,
                               const gxVector<2>& point, double tolerance);

/// Finds the first gap above `wide` between neighbouring directions, from direction 0 on: gives the
/// direction before it and its width.  Returns false, having found nothing, where so many directions
/// come before it that looking at all of them is no slower.
GXSHAPE_API bool gx_firstWideGap(const gx_EdgeIndex& index, const std::vector<gxVector<2>>& points,
                                 const gxVector<2>& point, double wide, double& before, double& gap);

/// The same by looking at all of them, for `wide` of at most π / 64; false where there is no such gap
/// before the last direction, and where a coordinate is NaN or not below 1e150.  No vertex may be at
/// the point.
GXSHAPE_API bool gx_firstWideGapOfAll(const std::vector<gxVector<2>>& points, const gxVector<2>& point,
                                      double wide, double& before, double& gap);
