/// The angle of an undirected axis.
#pragma once

#include <velstd/vector.h>

#include <cmath>
#include <numbers>

/// Returns the angle of the axis along a vector, in (−π/2, π/2]; 0 for (0, 0), NaN for a NaN.
inline double gx_axisAngle(const gxVector<2>& v) {
  const bool back = v.x() < 0.0 || (v.x() == 0.0 && v.y() < 0.0);
  // A zero counts as +0, so that the angle is never −0.
  const double x = (back ? -v.x() : v.x()) + 0.0;
  const double y = (back ? -v.y() : v.y()) + 0.0;
  const double angle = std::atan2(y, x) + 0.0;
  return angle <= -std::numbers::pi / 2.0 ? std::numbers::pi / 2.0 : angle;
}
