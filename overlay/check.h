/// What is wrong with a region or a set, all of it, with places and words.
#pragma once

#include <cntr/export.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <overlay/limits.h>
#include <velstd/vector.h>

#include <array>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

/// What may be wrong with a shape.  The words of `gfName` and the numbers stay as they are.
enum class gxProblemKind : int {
  eNotFinite = 0,         ///< a coordinate is NaN or infinite
  eTooFewPoints = 1,      ///< fewer than three different points
  eRepeatedPoint = 2,     ///< a point equal to the one before it: an edge of no length
  eSpike = 3,             ///< two edges, one after the other, that go back over each other
  eCrossing = 4,          ///< edges cross, or rings do where they meet at a vertex
  eTouching = 5,          ///< a ring touches itself; rings touch so that an interior is in parts
  eOverlap = 6,           ///< edges lie on each other for a stretch
  eZeroArea = 7,          ///< all points lie on one line
  eWrongWayRound = 8,     ///< an outline runs clockwise (y up), a hole counter-clockwise
  eHoleOutside = 9,       ///< a hole lies outside its outline
  eHoleCrossesHole = 10,  ///< the edges of two holes of one region cross
  eNestedWrongly = 11,    ///< a hole lies inside another, a region inside another
};

/// One thing that is wrong.
struct gxProblem {
  gxProblemKind kind;  ///< what
  gxVector<2> point;   ///< where; of a crossing the double nearest to it
  /// The edges that take part, by their numbers in their rings (edge k ends at point k); −1 where
  /// the whole ring is meant; the same one twice where there is only one.
  std::array<long, 2> edges;
  /// The rings they belong to: −1 the outline, k the hole of that index, and on from there the holes
  /// of the holes, level by level.
  std::array<long, 2> rings;
  /// The regions of the set; 0 for a region.
  std::array<long, 2> regions;
  std::string sentence;  ///< "edges 0 and 2 of the outline cross at (2, 2)"
};

/// What counts, and how much of it is told.
struct gxCheckOptions {
  /// The most problems that are told; the search ends there.
  std::size_t atMost = (std::numeric_limits<std::size_t>::max)();
  /// Rings of one region may touch in single points as long as that parts no interior, and regions of a
  /// set may.  False: every such contact is told.  (The setter of holes refuses all of them.)
  bool ringsMayTouch = true;
  /// Outlines and holes may run either way, as far as the classes are concerned.  True: none is told as
  /// the wrong way round.
  bool anyDirection = false;
};

/// Returns the word for a kind: "not_finite", "too_few_points", "crossing" and so on; "unknown" for a
/// value that is none.
GXSHAPE_API std::string gfName(gxProblemKind kind);

/// Returns everything that is wrong with a region and its holes; empty where it is valid.  Tests are
/// exact for every finite input, without tolerance.
///
/// First come the problems of single rings in their order, then those of edges with each other by the
/// numbers of rings and edges, then those of rings with each other.  A ring that is not finite, or has no
/// area, is told as such and left out of everything after.  Rings whose edges cross or overlap are not
/// asked how they nest.
///  - no points: "too_few_points"
///  - a hole that stands in the list twice, or comes again among its own neighbours' holes: its holes
///    are looked at once
/// Throws: gxBadPointer for a null hole; BadParams "holes nest too deeply" where a region comes up among
/// the holes of its own holes; gxStopped, gxLimitExceeded (see `gxOverlayLimits`; meetings are counted
/// up to `atMost`).
/// Cost: O(n log n) for edges that lie apart, and what there is to tell.
GXSHAPE_API std::vector<gxProblem> gfCheck(const gxRegion& region, const gxCheckOptions& options = {},
                                           const gxOverlayLimits& limits = {});
/// Returns the same for all regions of a set, and how they meet and nest among each other: outlines
/// that cross, that lie inside another region and in none of its holes.
///  - no regions: nothing
/// Throws: as above; gxBadPointer for a null region too.
GXSHAPE_API std::vector<gxProblem> gfCheck(const gxRegionSet& set, const gxCheckOptions& options = {},
                                           const gxOverlayLimits& limits = {});
