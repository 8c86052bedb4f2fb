/// How shapes lie to each other: yes or no, and by how much they overlap.
#pragma once

#include <cntr/export.h>
#include <overlay/limits.h>
#include <overlay/shapes.h>

/// How two shapes lie to each other, as sets of points: their interiors and borders together.  Where a
/// shape holds no area, all that is asked of its points is false.
struct gxRelation {
  bool interiorsMeet = false;  ///< there is area in both
  bool bordersMeet = false;    ///< the borders have a point in common
  bool firstBeyond = false;    ///< there is area in the first that is not in the second
  bool secondBeyond = false;   ///< there is area in the second that is not in the first
  bool firstEmpty = true;      ///< the first holds no area
  bool secondEmpty = true;

  bool intersects() const { return interiorsMeet || bordersMeet; }
  bool touches() const { return bordersMeet && !interiorsMeet; }
  bool contains() const { return covers() && !secondEmpty; }
  bool covers() const { return !secondBeyond; }
  bool overlaps() const { return interiorsMeet && firstBeyond && secondBeyond; }
  bool equal() const { return !firstBeyond && !secondBeyond; }
};

/// Returns how the two shapes lie to each other, exactly on their coordinates as they are: no tolerance,
/// nothing rounded.
///  - a shape that is not valid (its edges cross or overlap, rings touch, holes lie outside) counts as what
///    it holds by the even-odd rule, each region by itself and with its holes taken out; where edges of
///    one shape cross, the crossings are rounded to doubles first, unless the shapes are of one ring each
///    and cross, or have no point in common: that is exact for all
/// Throws: BadParams for a coordinate that is not finite; gxBadPointer for a null hole; gxStopped,
/// gxLimitExceeded (see `gxOverlayLimits`).
/// Cost: O(n log n) for edges that lie apart, and O(log n) for each meeting; of two shapes of one ring each
/// that cross, or have no point in common, some nanoseconds an edge.
GXSHAPE_API gxRelation gfRelate(const gxShapes& a, const gxShapes& b,
                                const gxOverlayLimits& limits = {});

/// Tells whether the shapes have a point in common, be it of their borders.
/// Throws, cost: as `gfRelate`, here and below; shapes whose boxes are apart are not looked at further.
GXSHAPE_API bool gfIntersects(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits = {});
/// Tells whether they have none.
GXSHAPE_API bool gfDisjoint(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits = {});
/// Tells whether they have points of their borders in common and no area.
GXSHAPE_API bool gfTouches(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits = {});
/// Tells whether all points of `b` are points of `a`; false where `b` has no area.
GXSHAPE_API bool gfContains(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits = {});
/// Tells the same; true where `b` has no area.
GXSHAPE_API bool gfCovers(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits = {});
/// Tells whether they have area in common, and each has some for itself.
GXSHAPE_API bool gfOverlaps(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits = {});
/// Tells whether they are the same points, whatever rings say so; true where neither has area.
GXSHAPE_API bool gfEqual(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits = {});

/// The areas of two shapes and of what they have in common, L².
struct gxOverlap {
  double first = 0.0;
  double second = 0.0;
  double both = 0.0;    ///< of the intersection
  double either = 0.0;  ///< of the union

  /// The share of the union that is in both, 0 to 1; NaN where neither shape has area.
  double ratio() const { return both / either; }
};

/// Returns the areas, 0 or more, without making the intersection: summed along the borders, with each
/// crossing rounded to doubles.  Shapes count as in `gfRelate`, valid or not.
///  - areas beyond the range of doubles: infinite, and the ratio NaN
/// Throws: as `gfRelate`.  Cost: as that of a boolean operation, less the rings.
GXSHAPE_API gxOverlap gfOverlap(const gxShapes& a, const gxShapes& b,
                                const gxOverlayLimits& limits = {});
/// Returns `gfOverlap(a, b).ratio()`: intersection over union.
GXSHAPE_API double gfOverlapRatio(const gxShapes& a, const gxShapes& b,
                                  const gxOverlayLimits& limits = {});
