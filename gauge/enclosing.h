/// What encloses a shape: the smallest circle, the rectangles of least area and of least width.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <cntr/regionst.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <array>
#include <iosfwd>
#include <span>

/// The smallest circle that holds all points.
struct GXSHAPE_API gxEnclosingCircle {
  gxStatus status = gxStatus::eEmpty;
  /// Where it lies, in the coordinates of the points.
  gxVector<2> centre{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  double radius = 0.0;  ///< in the unit of the points
  /// How many points determine the circle: 0 (no answer), 1 (a point), 2 (a diameter) or 3.
  int supports = 0;
  /// Their indices, ascending; −1 behind them.
  std::array<long, 3> support{-1, -1, -1};
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxEnclosingCircle& circle);

/// Returns the smallest circle that holds all points.  Which points support it is decided exactly.  The
/// centre is rounded, and the radius is the largest distance of a point from that centre, rounded up, so
/// that `hypot` of the difference of any point from it is not above the radius.
///  - no points: `eEmpty`, radius 0, centre NaN;  a NaN or infinite coordinate: `eNotFinite`, all NaN
///  - one point, or all equal: radius 0, one support
///  - all on one line: the two ends
///  - ties, where more points lie on the circle than determine it: two that are opposite to each other
///    before three; of several sets the first, by its lowest index, then the next; of equal points the
///    first
/// Of a contour or region the outline's points count, open or closed; of a set those of all outlines, and
/// indices then run through the outlines in their order.
/// Throws: gxBadPointer for a null handle in a set.
/// Cost: O(n) a pass over the points, three to six of them.  (The circle of the farthest point and the
/// support so far, in rounded numbers, then exactly among the points near the border: after E. Welzl,
/// "Smallest enclosing disks", 1991, and B. Gärtner, "Fast and robust smallest enclosing balls", 1999.)
GXSHAPE_API gxEnclosingCircle gfEnclosingCircle(std::span<const gxVector<2>> points);
GXSHAPE_API gxEnclosingCircle gfEnclosingCircle(const gxContour& contour);
GXSHAPE_API gxEnclosingCircle gfEnclosingCircle(const gxRegionSet& set);

/// A rectangle in any direction.
struct GXSHAPE_API gxTurnedRectangle {
  gxStatus status = gxStatus::eEmpty;
  /// Where it lies, in the coordinates of the points.
  gxVector<2> centre{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  /// The longer side, and the shorter one.
  double length = 0.0;
  double width = 0.0;
  /// The direction of the longer side, in (−π/2, π/2]; of a square in [0, π/2).
  double angle = 0.0;
  /// The number of the hull's edge that one side lies on, counted from the corner that `gfConvexHull`
  /// gives first; −1 where the hull has no area.
  long hullEdge = -1;

  /// Returns length · width.
  double area() const { return length * width; }
  /// Returns the corners: with L half the longer side along `angle` and S half the shorter side, turned
  /// from it by +π/2: centre − L − S, centre + L − S, centre + L + S, centre − L + S.
  std::array<gxVector<2>, 4> corners() const;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxTurnedRectangle& rectangle);

/// Return the rectangle of least area, and that of least width (its shorter side is the least width of
/// the points), that hold all points.  One side lies on an edge of the convex hull (H. Freeman and
/// R. Shapira, "Determining the minimum-area encasing rectangle for an arbitrary closed curve", 1975);
/// of rectangles that are equal within 1e-14 that with the lowest edge number wins.
///  - no points: `eEmpty`, 0 by 0, the rest NaN;  a NaN or infinite coordinate: `eNotFinite`, all NaN
///  - one point, or all equal: `eFlat`, 0 by 0 at angle 0
///  - all on one line: `eFlat`, the length by 0, the angle that of the line
/// Shapes and what they throw: as `gfEnclosingCircle`.
/// Cost: that of the hull, and O(hull) for the calipers (G. Toussaint, "Solving geometric problems with
/// the rotating calipers", 1983).
GXSHAPE_API gxTurnedRectangle gfLeastAreaRectangle(std::span<const gxVector<2>> points);
GXSHAPE_API gxTurnedRectangle gfLeastAreaRectangle(const gxContour& contour);
GXSHAPE_API gxTurnedRectangle gfLeastAreaRectangle(const gxRegionSet& set);
GXSHAPE_API gxTurnedRectangle gfLeastWidthRectangle(std::span<const gxVector<2>> points);
GXSHAPE_API gxTurnedRectangle gfLeastWidthRectangle(const gxContour& contour);
GXSHAPE_API gxTurnedRectangle gfLeastWidthRectangle(const gxRegionSet& set);
