/// The Delaunay triangulation of points, by exact decisions.
#pragma once

#include <cntr/export.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// An edge of the triangulation, and the points that make a triangle with it on either side.
struct gx_DelaunayEdge {
  static constexpr long kNone = -1;

  long a = kNone;
  long b = kNone;
  long left = kNone;  ///< on the left of a → b, or `kNone` where that is outside of the hull
  long right = kNone;
};

/// Returns the edges of a Delaunay triangulation of the points, each once, in no particular order; indices
/// are those of the first of equal points.  All coordinates are finite.  Points on one line have edges
/// without triangles.
/// Cost: O(n log n).
/// Source: L. Guibas and J. Stolfi, "Primitives for the manipulation of general subdivisions and the
/// computation of Voronoi diagrams", 1985.
GXSHAPE_API std::vector<gx_DelaunayEdge> gx_delaunay(const std::vector<gxVector<2>>& points);
