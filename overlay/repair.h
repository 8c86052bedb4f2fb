/// Repair by rule: the regions that an outline encloses, whatever it is like.
#pragma once

#include <cntr/export.h>
#include <overlay/options.h>
#include <overlay/shapes.h>

#include <cstddef>

/// How a repair went.
struct gxRepairReport {
  /// Of the shape as it was given, by the plain sum of the coordinates: the outlines' areas, 0 or more
  /// each, less those of their holes, as `gxRegionSet::area` adds them up.  Loops that go around twice
  /// count twice, and loops of either direction cancel.
  double areaBefore = 0.0;
  double areaAfter = 0.0;        ///< of the result: outlines less holes
  std::size_t regions = 0;       ///< of the result
  std::size_t holes = 0;         ///< of the result, in all
  std::size_t ringsDropped = 0;  ///< outlines and holes given of which no edge is border of the result
  std::size_t nodes = 0;         ///< places where edges met, and one for each ring
  std::size_t ringsSnapped = 0;  ///< rings that went on a grid (see `gfRepair`)
  double largestMove = 0.0;      ///< of a vertex, by that; 0 where none was snapped
};

/// A repaired shape, and how it came about.
struct gxRepaired {
  gxRegionSet regions;
  gxRepairReport report;
};

/// Returns the regions that the shape encloses by rule: even-odd, non-zero, positive, or everything that
/// cannot be reached from infinity (then without holes: what lies in a hole cannot be reached either).
///
/// The result is valid, tested exactly before it is returned: no two edges have anything in common but
/// ends, no ring passes a point twice, outlines are counter-clockwise (y up), holes clockwise, each in its
/// outline, the interior of each region connected.  Rings may touch in single vertices.  `gxRegion::holes`
/// refuses some such holes; here they are set all the same.
///
/// Every vertex given that remains keeps its bits, and crossings are rounded to the nearest doubles.  Where
/// that makes new crossings, they are taken in too: an edge is bent by less than 3 units in the last place
/// of the largest coordinate.  In bundles of edges few units apart, where this does not come to an end,
/// vertices and crossings of the rings concerned go on a grid as wide as one such unit; the report tells.
///
/// The same bits come out for every order of regions and holes, every first vertex and, the rule "positive"
/// excepted, every direction: each ring begins with its first vertex by x, then y; holes and regions are
/// sorted by their first vertices, then their second ones, and so on.
///  - points that repeat the one before, spikes, walls of no width: gone
///  - fewer than three points, all on one line: nothing
/// Throws: gxBadPointer for a null hole; BadParams for a coordinate that is not finite, with its place, and
/// "holes nest too deeply" for a region among the holes of its own holes; gxStopped, gxLimitExceeded.
/// Cost: O(n log n + k) for k meetings of edges.
GXSHAPE_API gxRepaired gfRepair(const gxShapes& shapes, const gxOverlayOptions& options);
GXSHAPE_API gxRepaired gfRepair(const gxShapes& shapes, gxFillRule rule = gxFillRule::eEvenOdd);
