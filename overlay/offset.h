/// Growing and shrinking shapes by a distance.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <cntr/regionst.h>
#include <overlay/limits.h>
#include <overlay/shapes.h>

#include <cstddef>

/// How an offset goes around a corner.
enum class gxJoin : int {
  eRound = 0,  ///< on a circle, as steps of its chord tolerance
  eMitre = 1,  ///< to where the sides meet, up to the mitre limit, beyond that as a bevel
  eBevel = 2,  ///< straight across
};

/// How the offset of an open contour ends.
enum class gxEnds : int {
  eRound = 0,   ///< in half a circle around the end
  eFlat = 1,    ///< straight across at the end
  eSquare = 2,  ///< straight across, the distance behind the end
};

/// The form of an offset.
struct gxOffsetForm {
  gxJoin join = gxJoin::eRound;
  gxEnds ends = gxEnds::eRound;
  /// How far a mitre may reach from its corner, in units of the distance; 1 or more.  The corner of a
  /// square reaches √2.
  double mitreLimit = 5.0;
  /// How far the chords of a round join may lie inside its circle, in the units of the coordinates; above
  /// 0, or 0 for a 500th of the distance, which are 52 chords to the full circle.
  double arcTolerance = 0.0;
};

/// What an offset did.
struct gxOffsetReport {
  bool countedAsZero = false;  ///< the distance is within 64 units in the last place of the coordinates
  std::size_t walkPoints = 0;  ///< of the raw curve
  std::size_t snappedRings = 0;  ///< of the raw curve, that were put on a grid (see docs/overlay.md)
  double largestMove = 0.0;      ///< of a vertex of the raw curve by that, in L
};

/// Returns the points within `distance` of the shape (above 0: it grows), or the points of the shape that
/// have at least that distance from everything outside it (below 0: it shrinks): valid regions with
/// holes, in the order of their first vertices, outlines counter-clockwise and holes clockwise.  Holes grow
/// as outlines shrink.  The shape counts as what it holds by the even-odd rule, each region by itself;
/// regions that overlap or touch are one shape.
///  - a distance of 0, or one below 64 units in the last place of the largest coordinate: what the shape
///    holds, its vertices kept
///  - a shape without area: no regions
/// Round joins are chords of a circle with corners on it, so the result lies inside the exact one by no
/// more than the arc tolerance; corners moved along straight edges are rounded to doubles.
/// Throws: BadParams for a distance or a coordinate that is not finite, a mitre limit below 1, a tolerance
/// below 0 or NaN, and where the result would leave the range of numbers; gxBadPointer for a null hole;
/// gxStopped, gxLimitExceeded (see `gxOverlayLimits`).
/// Cost: O(n log n) and what the crossings of the moved edges cost.
GXSHAPE_API gxRegionSet gfOffset(const gxShapes& shape, double distance, const gxOffsetForm& form = {},
                                 const gxOverlayLimits& limits = {}, gxOffsetReport* report = nullptr);

/// Returns the points within `distance` of a contour's edges, as `gfOffset` does: an open contour as a line
/// with ends, a closed one as a band around its outline.
///  - one point, or all the same: a circle, or what `ends` makes of a line without direction: nothing for
///    flat ends, an upright square for square ones
///  - no points, or a distance of 0 (as above): no regions
/// Throws: as `gfOffset`; BadParams for a distance below 0.
GXSHAPE_API gxRegionSet gfOffsetPath(const gxContour& path, double distance,
                                     const gxOffsetForm& form = {}, const gxOverlayLimits& limits = {},
                                     gxOffsetReport* report = nullptr);

/// The tolerance band of an outline.
struct gxToleranceBand {
  gxRegionSet inside;   ///< the shape shrunk: what belongs to it in every case
  gxRegionSet outside;  ///< the shape grown: beyond it nothing does
  gxRegionSet ring;     ///< what lies between: where a border may lie
};

/// Returns the band of a shape: shrunk by `inward`, grown by `outward`, and the difference of the two.
/// Throws: as `gfOffset`; BadParams for a distance below 0.
GXSHAPE_API gxToleranceBand gfToleranceBand(const gxShapes& shape, double inward, double outward,
                                            const gxOffsetForm& form = {},
                                            const gxOverlayLimits& limits = {});
