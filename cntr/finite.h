/// A strict check of coordinates, for whoever takes shapes from outside.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <velstd/vector.h>

#include <span>

/// Do nothing where every coordinate is finite, and throw else.  The text has the first point that is not, in
/// the order of points, an outline before its holes, a region before the next:
///
///   point 3 is (NaN, 2): coordinates have to be finite
///   point 0 of hole 1 of region 4 is (Infinity, 0): coordinates have to be finite
///
/// The classes take any coordinates, and every operation says what it then answers; this is for the place
/// where data come in, so that a NaN is told there and not by an answer far behind.
///  - no points: nothing to find
/// Throws: BadParams with point, ring and value; gxBadPointer for a null hole or region; BadParams "holes nest too
/// deeply" where a region comes up again among the holes of its own holes.
/// Cost: O(n).
GXSHAPE_API void gfCheckFinite(std::span<const gxVector<2>> points);
GXSHAPE_API void gfCheckFinite(const gxContour& contour);
GXSHAPE_API void gfCheckFinite(const gxRegion& region);
GXSHAPE_API void gfCheckFinite(const gxRegionSet& set);
