/// Angles in 256ths of a turn.
#pragma once

#include <velip/export.h>
#include <velstd/angle.h>

/// An angle in one byte: 256 units a turn, from the x axis towards the y axis.  The default is 0.
class VELIP_API gxAngle8 {
 public:
  constexpr gxAngle8() = default;
  /// Makes an angle of so many 256ths of a turn.
  constexpr explicit gxAngle8(unsigned char units) : units_(units) {}
  /// Rounds the angle to the nearest unit, any number of turns away; NaN and infinities give 0.
  explicit gxAngle8(const gxDegree& degrees);

  /// Returns the angle in units, 0 to 255.
  constexpr unsigned char toByte() const { return units_; }
  /// Returns the angle in degrees, 0 to 358.59375.
  constexpr gxDegree toDegree() const { return gxDegree(units_ * kDegreesPerUnit); }

  /// Adds and subtracts with wrap-around at 256.
  constexpr gxAngle8 operator+(const gxAngle8& o) const {
    return gxAngle8(static_cast<unsigned char>(units_ + o.units_));
  }
  constexpr gxAngle8 operator-(const gxAngle8& o) const {
    return gxAngle8(static_cast<unsigned char>(units_ - o.units_));
  }

  /// Compares the units.
  friend constexpr bool operator==(const gxAngle8&, const gxAngle8&) = default;

  static constexpr double kDegreesPerUnit = 1.40625;  ///< 360 / 256, exact

 private:
  unsigned char units_ = 0;
};
