/// Outlines and poly-lines put into one form: direction, start, points that say nothing.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <cstddef>
#include <span>
#include <vector>

/// Returns which way an outline goes around: +1 from x towards y (counterclockwise with y up), −1 the
/// other way, 0 where it has no area, fewer than 3 points, or a coordinate that is not finite.  The sign
/// of the area; where rounding leaves that open, of an outline that does not cross itself the turn at its
/// lowest corner decides, exactly.  So it does
/// of an outline that crosses itself and whose parts cancel.
GXSHAPE_API int gfOrientation(std::span<const gxVector<2>> points);
/// The same of a contour; 0 of an open one.
GXSHAPE_API int gfOrientation(const gxContour& contour);

/// Returns the points in the other direction.  An outline still begins at its point 0.
GXSHAPE_API std::vector<gxVector<2>> gfReversed(std::span<const gxVector<2>> points, bool closed);
/// Returns the points of an outline going around as asked, +1 or −1, beginning at point 0; an outline
/// without a direction, or asked for 0, as it is.
GXSHAPE_API std::vector<gxVector<2>> gfOriented(std::span<const gxVector<2>> points, int orientation);
/// Returns the points of an outline beginning at that one; the index counts around, so that any will do.
GXSHAPE_API std::vector<gxVector<2>> gfStartingAt(std::span<const gxVector<2>> points,
                                                  std::size_t start);

/// Returns the points without those that equal the one before, exactly, or that are no farther than
/// `tolerance` from the last one kept; of an outline also without last points that close at its first.
/// The first of equal points stays, and the last point of a poly-line, in place of the one kept before
/// it where that is the first no longer.
///  - a NaN coordinate equals nothing, and such points stay
///  - a tolerance that is negative or NaN counts as 0
/// What comes out stays as it is when it is put in again.
GXSHAPE_API std::vector<gxVector<2>> gfWithoutRepeated(std::span<const gxVector<2>> points, bool closed,
                                                       double tolerance = 0.0);
/// Returns the points without those that lie exactly on the segment between their neighbours, repeated
/// points among them.  The tip of a spike, where the walk turns back on itself, stays.  What comes out
/// stays as it is when it is put in again.
///  - points with a NaN or infinite coordinate stay, and their neighbours
GXSHAPE_API std::vector<gxVector<2>> gfWithoutCollinear(std::span<const gxVector<2>> points,
                                                        bool closed);

/// Tells whether two outlines are the same up to start and direction, or two poly-lines up to direction:
/// the same points exactly, no tolerance.  No points are the same as no points; a NaN equals nothing.
/// Cost: O(n).
GXSHAPE_API bool gfSameWalk(std::span<const gxVector<2>> a, std::span<const gxVector<2>> b, bool closed);
/// The same of contours; an open one is never the same as a closed one.
GXSHAPE_API bool gfSameWalk(const gxContour& a, const gxContour& b);
