/// Snap rounding: rings put on a grid, where rounding crossing by crossing does not come to an end.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/edge_set.h>
#include <overlay/internal/steps.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// A ring after it was put on a grid, with the source of every point (see gx_Arrangement).
struct gx_SnappedRing {
  std::uint32_t ring = 0;
  std::vector<gxVector<2>> points;
  std::vector<std::uint32_t> sources;
};

/// Puts rings on grids: those that are named, with all rings that come near them, and near those, each such
/// group on a grid of its own, as wide as the spacing of doubles at its largest coordinate.  Returns the
/// rings moved.
///
/// Vertices move by at most half the grid in each coordinate, and not at all where they lie on it; an edge
/// is bent to pass every vertex and crossing of its group within half the grid in each coordinate.
/// Afterwards no edges of the group cross, and none meets an edge outside the group.
///  - `together`: one group of all rings
GXSHAPE_API std::vector<gx_SnappedRing> gx_snapRings(const gx_EdgeSet& edges,
                                                     const std::vector<std::uint32_t>& rings,
                                                     bool together, gx_Steps& steps);
