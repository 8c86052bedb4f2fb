/// Vectors kept apart from their size, for formulas at the ends of the double range.
#pragma once

#include <velstd/vector.h>

#include <algorithm>
#include <cmath>

/// The vector `vector` × 2^`exponent`, its larger component in [1, 2).  A vector that is zero or not
/// finite stands as it is, with exponent 0.
struct gx_ScaledVector {
  gxVector<2> vector;
  int exponent = 0;
};

/// Numbers between these have been reached without overflow, and with all their digits: a result
/// outside is computed again with scaled vectors.  (0 is outside: it may be an underflow.)
constexpr double gx_kLeastSafe = 1e-280;
constexpr double gx_kMostSafe = 1e300;

/// Tells whether the number is safe in that sense; false for NaN.
inline bool gf_IsSafe(double value) {
  return std::abs(value) >= gx_kLeastSafe && std::abs(value) <= gx_kMostSafe;
}

inline bool gf_IsFinite(const gxVector<2>& v) {
  return std::isfinite(v.x()) && std::isfinite(v.y());
}

/// Returns the vector times 2^exponent.
inline gxVector<2> gf_TimesPower(const gxVector<2>& v, int exponent) {
  return {std::scalbn(v.x(), exponent), std::scalbn(v.y(), exponent)};
}

inline gx_ScaledVector gf_Scaled(const gxVector<2>& v) {
  const double largest = std::max(std::abs(v.x()), std::abs(v.y()));
  if (largest == 0.0 || !gf_IsFinite(v)) return {v, 0};
  const int exponent = std::ilogb(largest);
  return {gf_TimesPower(v, -exponent), exponent};
}

/// Returns a − b, also where the difference of two finite points exceeds the double range.
inline gx_ScaledVector gf_ScaledDifference(const gxVector<2>& a, const gxVector<2>& b) {
  const gxVector<2> difference = a - b;
  if (gf_IsFinite(difference)) return gf_Scaled(difference);
  gx_ScaledVector half = gf_Scaled(a * 0.5 - b * 0.5);
  ++half.exponent;
  return half;
}

/// Returns point + offset × 2^exponent, also where the offset alone exceeds the double range; not
/// finite where the sum does.
inline gxVector<2> gf_Moved(const gxVector<2>& point, const gxVector<2>& offset, int exponent) {
  const gxVector<2> sum = point + gf_TimesPower(offset, exponent);
  if (gf_IsFinite(sum)) return sum;
  return (point * 0.5 + gf_TimesPower(offset, exponent - 1)) * 2.0;
}
