/// The nearest edge and the nearest vertex of a contour.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/edge_index.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// Returns the number of the edge nearest to the point, by `gxLineSeg::distToPoint`, the lowest on
/// ties; `edges()` where no distance is below infinity.
GXSHAPE_API std::size_t gx_nearestEdge(const gx_EdgeIndex& index, const gx_Outline& outline,
                                       const gxVector<2>& point);

/// Returns the number of the vertex nearest to the point, the lowest on ties; 0 where no distance
/// is below infinity.
GXSHAPE_API std::size_t gx_nearestVertex(const gx_EdgeIndex& index, const gx_Outline& outline,
                                         const gxVector<2>& point);

/// The same without an index, by measuring all edges or vertices.
GXSHAPE_API std::size_t gx_nearestEdge(const gx_Outline& outline, const gxVector<2>& point);
GXSHAPE_API std::size_t gx_nearestVertex(const std::vector<gxVector<2>>& points,
                                         const gxVector<2>& point);
