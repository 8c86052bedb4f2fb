/// Angles in radians and in degrees.
#pragma once

#include <velstd/export.h>

#include <compare>

class gxDegree;

/// An angle in radians, kept as given: 0 and 2π are different values until `norm` is asked.
/// Angles run from the x axis towards the y axis: counter-clockwise where y points up, clockwise on a
/// picture whose y runs down.  A default angle is 0.
///
/// A class of its own, and no plain number, so that radians and degrees cannot be mixed up: one turns into
/// the other where it is asked to, by a constructor, with one rounding.
class VELSTD_API gxRadian {
 public:
  constexpr gxRadian() = default;
  /// Makes an angle of a number of radians, or of degrees; any number is taken, NaN and infinities too.
  constexpr explicit gxRadian(double radians) : value_(radians) {}
  constexpr explicit gxRadian(const gxDegree& degrees);

  /// Returns the angle in radians, as it was given.
  constexpr double toDouble() const { return value_; }

  /// Returns the same direction in [0, 2π).
  ///  - a tiny negative angle that would round up to 2π gives 0
  ///  - NaN and infinities give NaN
  gxRadian norm() const;

  /// Calculate as with numbers; nothing is brought into a range.
  constexpr gxRadian operator-() const { return gxRadian(-value_); }
  constexpr gxRadian operator+(const gxRadian& other) const { return gxRadian(value_ + other.value_); }
  constexpr gxRadian operator-(const gxRadian& other) const { return gxRadian(value_ - other.value_); }
  constexpr gxRadian operator*(double factor) const { return gxRadian(value_ * factor); }

  /// Compares the numbers as they stand (no wrap-around; a NaN equals nothing).
  friend constexpr auto operator<=>(const gxRadian&, const gxRadian&) = default;

 private:
  double value_ = 0.0;
};

/// An angle in degrees, kept as given; otherwise as `gxRadian`.  Whole quarter turns are exact numbers
/// here, which they are not in radians: `gx2Rigid` keeps degrees for that reason.
class VELSTD_API gxDegree {
 public:
  constexpr gxDegree() = default;
  /// Makes an angle of a number of degrees, or of radians.
  constexpr explicit gxDegree(double degrees) : value_(degrees) {}
  constexpr explicit gxDegree(const gxRadian& radians);

  /// Returns the angle in degrees, as it was given.
  constexpr double toDouble() const { return value_; }

  /// Returns the same direction in [0, 360); NaN and infinities give NaN.
  gxDegree norm() const;

  /// Calculate as with numbers; nothing is brought into a range.
  constexpr gxDegree operator-() const { return gxDegree(-value_); }
  constexpr gxDegree operator+(const gxDegree& other) const { return gxDegree(value_ + other.value_); }
  constexpr gxDegree operator-(const gxDegree& other) const { return gxDegree(value_ - other.value_); }
  constexpr gxDegree operator*(double factor) const { return gxDegree(value_ * factor); }

  /// Compares the numbers as they stand (no wrap-around; a NaN equals nothing).
  friend constexpr auto operator<=>(const gxDegree&, const gxDegree&) = default;

 private:
  double value_ = 0.0;
};

/// π / 180 and its inverse: one degree in radians, one radian in degrees.
inline constexpr double gx_kRadiansPerDegree = 0.017453292519943295;
inline constexpr double gx_kDegreesPerRadian = 57.29577951308232;

constexpr gxRadian::gxRadian(const gxDegree& degrees)
    : value_(degrees.toDouble() * gx_kRadiansPerDegree) {}
constexpr gxDegree::gxDegree(const gxRadian& radians)
    : value_(radians.toDouble() * gx_kDegreesPerRadian) {}
