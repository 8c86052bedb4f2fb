/// The points of a fit, moved to their centroid and scaled to a size near 1.
#pragma once

#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// A frame in which a fit computes, so that its result depends neither on the unit of the points
/// nor on their distance from the origin: the points relative to their centroid, divided by a power
/// of two that brings them into the square [−2, 2]².  A power of two scales without rounding, so
/// points in another unit that differs by a power of two give the same bits.
class gx_FitFrame {
 public:
  /// Moves and scales the points.  Whatever the finite input, from subnormal to the largest double,
  /// nothing overflows.
  explicit gx_FitFrame(const std::vector<gxVector<2>>& points);

  /// Tells whether there are points, all finite and not all equal.  Otherwise the frame is empty.
  bool valid() const { return !points_.empty(); }

  /// Returns the points in the frame, in the given order.
  const std::vector<gxVector<2>>& points() const { return points_; }

  /// Returns the largest rounding error that the coordinates carry from their distance to the
  /// origin, in the unit of the frame: deviations below it mean nothing.
  double rounding() const { return rounding_; }

  /// Turns a length of the frame into one of the caller; may overflow to infinity.
  double lengthOut(double length) const;
  /// Turns a length of the caller, infinities included, into one of the frame.
  double lengthIn(double length) const;
  /// Turns a position of the frame into one of the caller; may overflow.
  gxVector<2> positionOut(const gxVector<2>& position) const;

 private:
  std::vector<gxVector<2>> points_;
  gxVector<2> middle_;    // of the points' box, in the caller's unit times guard_
  gxVector<2> centroid_;  // relative to the middle, in the unit of the frame
  double guard_ = 1.0;    // 1, or less where the caller's coordinates are near the largest double
  int exponent_ = 0;      // the frame's unit is 2^exponent_ / guard_
  double rounding_ = 0.0;
};

/// Returns the number of distinct points, counted up to `enough`.
std::size_t gx_CountDistinct(const std::vector<gxVector<2>>& points, std::size_t enough);

/// The straight line nearest to points in a frame.
struct gx_NearestLine {
  gxVector<2> point;      ///< the centroid
  gxVector<2> direction;  ///< of length 1
  double length = 0.0;    ///< root mean square of the coordinates along the line
  double width = 0.0;     ///< root mean square of the distances from the line
};

/// Returns the line for which the sum of squared distances is least; `points` is not empty.
gx_NearestLine gx_FindNearestLine(const std::vector<gxVector<2>>& points);
