/// The widths of a shape between two parallel lines, as calipers measure them.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <cntr/regionst.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <iosfwd>
#include <limits>
#include <span>

/// The Feret diameters of a shape.  The width at an angle θ is the extent along (cos θ, sin θ); angles lie
/// in (−π/2, π/2].
struct GXSHAPE_API gxFeret {
  gxStatus status = gxStatus::eEmpty;
  /// The greatest width: the distance of the two points farthest from each other, the direction from one
  /// to the other, and their indices and places (`feretMaxFrom` before `feretMaxTo` in the order of the
  /// hull).
  double feretMax = 0.0;
  double feretMaxAngle = std::numeric_limits<double>::quiet_NaN();
  long feretMaxFrom = -1;
  long feretMaxTo = -1;
  gxVector<2> feretMaxFromPoint{std::numeric_limits<double>::quiet_NaN(),
                                std::numeric_limits<double>::quiet_NaN()};
  gxVector<2> feretMaxToPoint = feretMaxFromPoint;
  /// The least width: between an edge of the hull, given by the indices of its ends, and the point
  /// farthest from that edge; the foot is that point's on the edge's line.  The angle is that of the
  /// width, across the edge.
  double feretMin = 0.0;
  double feretMinAngle = std::numeric_limits<double>::quiet_NaN();
  long feretMinEdgeFrom = -1;
  long feretMinEdgeTo = -1;
  long feretMinVertex = -1;
  gxVector<2> feretMinPoint = feretMaxFromPoint;
  gxVector<2> feretMinFoot = feretMaxFromPoint;
  /// The width across the greatest one.
  double feretAcross = 0.0;
  /// The mean over all directions: the hull's perimeter / π (Cauchy).
  double feretMean = 0.0;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxFeret& feret);

/// Returns the Feret diameters (ISO 13322-1, ISO 9276-6), 0 or more.
///  - no points: `eEmpty`, widths 0, angles NaN;  a NaN or infinite coordinate: `eNotFinite`, all NaN
///  - one point, or all equal: `eFlat`, widths 0, angles NaN
///  - all on one line: `eFlat`, greatest width the length, least width 0 across the line with its ends as
///    the edge and the first of them as the point, mean 2 · length / π
///  - ties: the first pair, or edge, in the order of the hull that begins as `gfConvexHull` says; exact
///    for the greatest width, within 1e-14 for the least
/// Of equal points the first is named.  Of a contour or region the outline's points count; of a set those
/// of all outlines, and indices then run through the outlines in their order.
/// Throws: gxBadPointer for a null handle in a set.
/// Cost: that of the hull, O(hull), and a look for the indices.
GXSHAPE_API gxFeret gfFeret(std::span<const gxVector<2>> points);
GXSHAPE_API gxFeret gfFeret(const gxContour& contour);
GXSHAPE_API gxFeret gfFeret(const gxRegionSet& set);

/// Returns the width at an angle, any number of radians: the extent along (cos angle, sin angle).
///  - no points: 0;  a NaN or infinite coordinate or angle: NaN
/// Cost: O(n).
GXSHAPE_API double gfWidthAt(std::span<const gxVector<2>> points, double angle);
GXSHAPE_API double gfWidthAt(const gxContour& contour, double angle);
GXSHAPE_API double gfWidthAt(const gxRegionSet& set, double angle);
