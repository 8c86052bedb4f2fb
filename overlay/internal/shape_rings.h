/// The rings of a shape with their levels.
#pragma once

#include <cntr/export.h>
#include <cntr/region.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// One ring of a shape: an outline, a hole, an island and so on.
struct gx_ShapeRing {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  const std::vector<gxVector<2>>* source = nullptr;  // the points as given
  long region = 0;                                   // its place in the list of regions
  long number = -1;           // in the region: −1 the outline, then the holes, level by level
  std::size_t owner = kNone;  // the ring that this one is a hole of
  int level = 0;              // 0 outlines, 1 holes, 2 islands …
};

/// Returns the rings of the regions, region by region: the outline first, then the holes, level by level.
/// Holes of a hole that comes several times within an outermost region are taken once.
/// Throws: gxBadPointer for a null hole; BadParams "holes nest too deeply" where a region comes up among the
/// holes of its own holes.
GXSHAPE_API std::vector<gx_ShapeRing> gx_ringsOf(const std::vector<const gxRegion*>& regions);
