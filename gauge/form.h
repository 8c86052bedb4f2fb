/// Form errors: roundness, straightness, flat angle, parallelism, profile of a line.
#pragma once

#include <cntr/export.h>
#include <gauge/borders.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <iosfwd>
#include <limits>
#include <span>
#include <vector>

/// What a form error is measured from.
enum class gxFormReference : int {
  eLeastSquares = 0,          ///< the circle or line of the least sum of squared distances
  eMinimumZone = 1,           ///< two concentric circles or parallel lines as near as possible
  eMinimumCircumscribed = 2,  ///< the smallest circle around all points
  eMaximumInscribed = 3,      ///< the largest circle without a point inside, centred among the points
};

/// A roundness deviation.
struct GXSHAPE_API gxRoundness {
  gxStatus status = gxStatus::eOk;
  gxFormReference reference = gxFormReference::eLeastSquares;
  /// The greatest distance of a point from the centre less the least one.
  double roundness = std::numeric_limits<double>::quiet_NaN();
  gxVector<2> centre{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  double outerRadius = std::numeric_limits<double>::quiet_NaN();  ///< that greatest distance
  double innerRadius = std::numeric_limits<double>::quiet_NaN();  ///< that least one
  /// Of the least squares circle alone: its radius, the greatest distance of a point outside and inside of
  /// it, 0 or more, and the root mean square of all.
  double radius = std::numeric_limits<double>::quiet_NaN();
  double peak = std::numeric_limits<double>::quiet_NaN();
  double valley = std::numeric_limits<double>::quiet_NaN();
  double rms = std::numeric_limits<double>::quiet_NaN();
  /// The indices of the points that determine the circles, ascending: two and two of the minimum zone, two
  /// or three of the circumscribed circle (outer) and of the inscribed one (inner); of the least squares
  /// circle the farthest and the nearest point.
  std::vector<long> outerSupports;
  std::vector<long> innerSupports;
  bool ties =
      false;  ///< whether another centre gives the very same; the lowest one by x, then y, is given
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxRoundness& result);

/// Returns the roundness deviation of a sampled profile (RONt of ISO 12181-1, with its four reference
/// circles; RONp, RONv and RONq of the least squares one).  Points count as points: edges play no part, and
/// filtering is the caller's.
///  - no points: `eEmpty`;  a NaN or infinite coordinate: `eNotFinite`
///  - fewer than 3 distinct points, or all on a line: `eUndetermined`; the circumscribed circle is given all
///    the same.  The minimum zone of points on a line is `eUnbounded`, 0
///  - points on so short an arc that two parallel lines are nearer to each other than any two circles:
///    the minimum zone is `eUnbounded`, its width that of the lines, without a centre
///  - points none of whose empty circles has its centre among them (three with an obtuse angle): the
///    inscribed circle is `eUndetermined`
///  - some ten thousand points on a smooth convex curve: the minimum zone may end at its cap of work,
///    `eCapped`, with the best found
/// Cost: O(n log n); of the minimum zone O(n h) distances for h corners of the hull.
/// Sources: T. Rivlin, "Approximation by circles", 1979: the points of the minimum zone interlace, two and
/// two; V. Le and D. Lee, "Out-of-roundness problem revisited", 1991: its centre lies where an edge of
/// the nearest and one of the farthest Voronoi diagram cross, of which all are looked at.
GXSHAPE_API gxRoundness gfRoundness(std::span<const gxVector<2>> points,
                                    gxFormReference reference = gxFormReference::eMinimumZone);

/// A straightness deviation.
struct GXSHAPE_API gxStraightness {
  gxStatus status = gxStatus::eOk;
  gxFormReference reference = gxFormReference::eLeastSquares;
  double straightness = std::numeric_limits<double>::quiet_NaN();  ///< the width of the zone
  gxVector<2> point{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  /// Of the line through `point`, in the middle of the zone or through the mean of the points; in
  /// (−π/2, π/2].
  double angle = std::numeric_limits<double>::quiet_NaN();
  /// Of the least squares line alone: the greatest distance on its left and on its right, 0 or more, and
  /// the root mean square.
  double peak = std::numeric_limits<double>::quiet_NaN();
  double valley = std::numeric_limits<double>::quiet_NaN();
  double rms = std::numeric_limits<double>::quiet_NaN();
  /// The indices of the two points on one side of the minimum zone and of the one on the other.
  std::vector<long> supports;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxStraightness& result);

/// Returns the straightness deviation of a sampled profile (STRt of ISO 12780-1; STRp, STRv and STRq of the
/// least squares line).  The minimum zone is the least width of the convex hull.  `reference` is one of
/// the first two.
///  - no points: `eEmpty`;  a NaN or infinite coordinate: `eNotFinite`;  another reference: `eBadArgument`
///  - one distinct point: `eUndetermined`;  two, or all on a line: 0
///  - points spread alike in all directions have no least squares line: `eUndetermined`, with the numbers of
///    that at angle 0
/// Cost: O(n log n).
GXSHAPE_API gxStraightness gfStraightness(std::span<const gxVector<2>> points,
                                          gxFormReference reference = gxFormReference::eMinimumZone);

/// The angle of two straight features.
struct GXSHAPE_API gxFlatAngle {
  gxStatus status = gxStatus::eOk;
  double flatAngle = std::numeric_limits<double>::quiet_NaN();  ///< in [0, π/2]
  double firstAngle = std::numeric_limits<double>::quiet_NaN();
  double secondAngle = std::numeric_limits<double>::quiet_NaN();
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxFlatAngle& result);
/// Returns the angle between the reference lines of two features, as `gfStraightness` gives them.  A status
/// that is not ok of one of them is that of the result, with the angle NaN.
GXSHAPE_API gxFlatAngle gfFlatAngle(std::span<const gxVector<2>> first,
                                    std::span<const gxVector<2>> second,
                                    gxFormReference reference = gxFormReference::eLeastSquares);

/// A parallelism deviation.
struct GXSHAPE_API gxParallelism {
  gxStatus status = gxStatus::eOk;
  double parallelism = std::numeric_limits<double>::quiet_NaN();  ///< the width of the zone, a length
  double flatAngle = std::numeric_limits<double>::quiet_NaN();  ///< between the two lines, in [0, π/2]
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxParallelism& result);
/// Returns the width of the points perpendicular to the datum's reference line (ISO 1101), 0 or more.  Of
/// the datum's status, and of points that are empty or not finite, as `gfFlatAngle`; the points themselves
/// need not have a direction, the angle is then NaN.
GXSHAPE_API gxParallelism gfParallelism(std::span<const gxVector<2>> points,
                                        std::span<const gxVector<2>> datum,
                                        gxFormReference reference = gxFormReference::eMinimumZone);

/// A profile deviation.
struct GXSHAPE_API gxProfile {
  gxStatus status = gxStatus::eOk;
  double profile = std::numeric_limits<double>::quiet_NaN();  ///< the width of the zone, 0 or more
  double peak = std::numeric_limits<double>::quiet_NaN();     ///< the greatest deviation outwards
  double valley = std::numeric_limits<double>::quiet_NaN();   ///< the greatest inwards, negative
  gxPlace worst;                                              ///< where the larger of the two is
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxProfile& result);
/// Returns the profile deviation of a shape from a nominal one: the width of the least zone that lies
/// evenly on both sides of the nominal border and holds the shape's, twice the greatest deviation (ISO
/// 1101).  With `bestFit` the shape is laid upon the nominal one first, by least squares, without
/// a change of size; places are then those of the shape before.  Degenerate shapes: as `gfDeviation` and
/// `gfAlign` say.
GXSHAPE_API gxProfile gfProfile(const gxBorders& shape, const gxBorders& nominal, bool bestFit = false);
