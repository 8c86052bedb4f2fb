/// Comparison within a tolerance, and rounding down to an integer.
#pragma once

#include <velstd/export.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <cmath>

/// Is true when the difference of the two numbers, as rounded, is at most `eps` in size.
///  - NaN equals nothing, an infinity not even itself (the difference is not a number)
///  - with a negative or NaN `eps` nothing is equal; with 0 the numbers must be the same
inline bool gfRealEq(double a, double b, double eps) {
  return std::abs(a - b) <= eps;
}

/// Is true when both components differ by at most `eps`.
inline bool gfRealEq(const gxVector<2>& a, const gxVector<2>& b, double eps) {
  return gfRealEq(a.x(), b.x(), eps) && gfRealEq(a.y(), b.y(), eps);
}

/// Is true when each of the six independent numbers of the transforms differs by at most `eps`.
inline bool gfRealEq(const gxXform<2>& a, const gxXform<2>& b, double eps) {
  return gfRealEq(a.xx(), b.xx(), eps) && gfRealEq(a.xy(), b.xy(), eps) &&
         gfRealEq(a.yx(), b.yx(), eps) && gfRealEq(a.yy(), b.yy(), eps) &&
         gfRealEq(a.tx(), b.tx(), eps) && gfRealEq(a.ty(), b.ty(), eps);
}

/// Returns the largest integer that is not above `value`.
///  - values beyond the range of long give its nearest end; NaN gives 0
VELSTD_API long gfIFloor(double value);
