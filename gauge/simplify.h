/// Outlines and poly-lines with fewer points, within a tolerance.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <cstddef>
#include <iosfwd>
#include <span>
#include <vector>

/// How an outline is simplified.
struct GXSHAPE_API gxSimplifyOptions {
  /// Whether chords that would meet another chord are split further, until they do not, so that an
  /// outline that does not cross itself still does not.
  bool keepsCrossingsOut = false;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxSimplifyOptions& options);

/// What is left.
struct GXSHAPE_API gxSimplified {
  gxStatus status = gxStatus::eOk;
  std::vector<std::size_t> kept;    ///< the indices of the points that stay, ascending
  std::vector<gxVector<2>> points;  ///< those points
};
/// Prints how many points stay.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxSimplified& simplified);

/// Leaves out points such that each of them is within `tolerance` of the segment that replaces it, and
/// with it every point of the old line within it of the new one (D. Douglas and T. Peucker, "Algorithms
/// for the reduction of the number of points", 1973, with the distance from the segment in place of
/// that from the line).  With tolerance 0 only points go that lie exactly on the segment between their
/// neighbours.
///
/// Of an outline, the same points stay wherever it starts and whichever way it runs: the two points
/// farthest from each other stay, and every tie is decided by coordinates, the lower x and then the
/// lower y.  A poly-line keeps its ends.  An outline with an area keeps 3 points at least; all points
/// that have the coordinates of one of the first two stay.
///  - no points: `eEmpty`; a NaN or infinite coordinate: `eNotFinite`; none kept
///  - a tolerance that is negative or NaN: `eBadArgument`, none kept
///  - all points on a line: `eFlat`; the ends of the poly-line and where it turns back, or the two
///    farthest points of the outline; of equal points the first of an outline
/// Cost: O(n log n) mostly, O(n²) where every split takes off a few points alone (a spiral with a
/// tolerance below its pitch does not, a fan of needles of falling length does); the same again for
/// each round in which crossings are split.
GXSHAPE_API gxSimplified gfSimplify(std::span<const gxVector<2>> points, bool closed, double tolerance,
                                    const gxSimplifyOptions& options = {});
/// The same of a contour.
GXSHAPE_API gxSimplified gfSimplify(const gxContour& contour, double tolerance,
                                    const gxSimplifyOptions& options = {});
