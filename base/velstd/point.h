/// The point that line operations return.
#pragma once

#include <velstd/vector.h>

/// A position in the plane, as the operations of lines return it.  It turns into a `gxVector<2>`
/// by itself wherever one is wanted.
class gxPoint {
 public:
  constexpr gxPoint() = default;
  /// Makes a point of its coordinates.
  constexpr gxPoint(double x, double y) : position_(x, y) {}
  constexpr explicit gxPoint(const gxVector<2>& position) : position_(position) {}

  /// Is a vector wherever one is wanted.
  constexpr operator gxVector<2>() const { return position_; }  // NOLINT(google-explicit-constructor)

  /// Return the coordinates.
  constexpr double x() const { return position_.x(); }
  constexpr double y() const { return position_.y(); }

  /// Returns the Euclidean distance, 0 or more; NaN where a coordinate is NaN.
  double distToPoint(const gxVector<2>& point) const { return position_.distance(point); }

  /// Compares the coordinates.
  friend constexpr bool operator==(const gxPoint&, const gxPoint&) = default;

 private:
  gxVector<2> position_;
};
