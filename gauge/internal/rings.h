/// The rings of a shape: outlines, holes, what lies within holes.
#pragma once

#include <cntr/export.h>
#include <cntr/regionst.h>
#include <velstd/vector.h>

#include <span>
#include <vector>

/// A ring: an outline, the outline of a hole, or of what lies within a hole.
struct gx_Ring {
  std::span<const gxVector<2>> points;
  bool closed = true;
  /// 0 for an outline, 1 for its holes, 2 for islands in these, and so on; odd depths take material away.
  int depth = 0;
  /// As a `gxPlace` numbers it: −1 the outline, from 0 on the holes, then what lies within holes.
  long number = -1;
  /// Which region of a set it belongs to; 0 for a single shape.
  long region = 0;
};

/// Return the rings of a shape in the order of their numbers, the regions of a set one after the other.
/// The rings look at the shape's own points.
/// Throws: gxBadPointer for a null handle; BadParams "holes nest too deeply" where a region comes up again
/// among the holes of its own holes, or where there are more than 4 million rings.
GXSHAPE_API std::vector<gx_Ring> gx_ringsOf(std::span<const gxVector<2>> outline);
GXSHAPE_API std::vector<gx_Ring> gx_ringsOf(const gxContour& contour);
GXSHAPE_API std::vector<gx_Ring> gx_ringsOf(const gxRegion& region);
GXSHAPE_API std::vector<gx_Ring> gx_ringsOf(const gxRegionSet& set);

/// Tells whether all coordinates of all rings are finite.
GXSHAPE_API bool gx_allFinite(const std::vector<gx_Ring>& rings);
