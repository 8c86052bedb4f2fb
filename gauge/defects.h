/// Convexity defects: where an outline draws back from its convex hull.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <iosfwd>
#include <span>
#include <vector>

/// A stretch of an outline between two corners of its hull that follow each other on the hull.
struct GXSHAPE_API gxConvexityDefect {
  /// The indices of the points where it begins and ends, in the direction of the outline, and of the point
  /// in between that is deepest, the first on ties.
  long start = -1;
  long end = -1;
  long deepest = -1;
  gxVector<2> startPoint;
  gxVector<2> endPoint;
  gxVector<2> deepestPoint;
  /// The distance of the deepest point from the line of the hull's edge, above 0.
  double depth = 0.0;
  /// The area of the pocket between the outline and the hull's edge; where the outline crosses itself in
  /// it, the magnitude of the signed sum.
  double area = 0.0;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxConvexityDefect& defect);

struct GXSHAPE_API gxConvexityDefects {
  gxStatus status = gxStatus::eEmpty;
  /// In the order of the outline, by `start`.
  std::vector<gxConvexityDefect> defects;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxConvexityDefects& defects);

/// Returns the convexity defects of an outline.  Points on an edge of the hull make no defect.
///  - an outline that passes through a corner of the hull more than once: of its points the ones that
///    follow the hull's order
///  - an outline that comes to the hull's corners in another order (it crosses itself): `eCrossing`; from
///    each corner of the hull to the next one that the outline comes to, the depth being the distance
///    from the line between these
///  - no points: `eEmpty`;  a point, or all on one line: `eFlat`, none
///  - a NaN or infinite coordinate: `eNotFinite`, none;  an open contour: `eNotClosed`, none
/// Throws: nothing but std::bad_alloc.
/// Cost: that of the hull, and O(n).
GXSHAPE_API gxConvexityDefects gfConvexityDefects(std::span<const gxVector<2>> outline);
GXSHAPE_API gxConvexityDefects gfConvexityDefects(const gxContour& contour);
