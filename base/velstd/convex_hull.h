/// The convex hull of a set of points.
#pragma once

#include <velstd/export.h>
#include <velstd/vector.h>

#include <vector>

/// Replaces `hull` by the corners of the convex hull of the points: the smallest convex polygon that
/// contains them all, exactly; no tolerance takes part.  The corners are points of the input, in
/// counterclockwise order (y up), beginning at the one with the lowest x, of several the one with the
/// lowest y.  No corner is repeated and none lies on the line between its neighbours.
///  - no points, or none that is finite: an empty hull
///  - all points equal: one corner
///  - all points on one line: its two ends, the one with the lower x (of equal ones, lower y) first
///  - a point with a NaN or infinite coordinate is left out; the others count
///  - 0 and −0 are the same coordinate; of points that differ in nothing else the first is given
/// `hull` may be the same vector as `points`.
/// Throws: nothing but `std::bad_alloc`; then `hull` is as before.
/// Cost: O(n log n) at most.  Linear for points that lie mostly inside, as in a filled shape, and for
/// points that go around in order, as along an outline: 8 ns a point where that can be seen from a
/// place in their middle.
VELSTD_API void gfConvexHull(const std::vector<gxVector<2>>& points, std::vector<gxVector<2>>& hull);
