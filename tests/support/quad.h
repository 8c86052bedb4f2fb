/// Arithmetic of 113 bits, to hold doubles against: products of two doubles are exact in it.
#pragma once

#include <cmath>

__extension__ using Quad = __float128;

inline Quad quadAbs(Quad x) {
  return x < 0 ? -x : x;
}

/// Returns the square root, good to the last few of 113 bits.  (long double has the same range of
/// exponents, so its root is a start for Newton's iteration everywhere.)
inline Quad quadSqrt(Quad x) {
  if (!(x > 0)) return 0;
  Quad root = std::sqrt(static_cast<long double>(x));
  root = (root + x / root) / 2;
  return (root + x / root) / 2;
}

/// Returns |got − truth| in units of the last place of the truth, as a double.
inline double errorInUlps(double got, Quad truth) {
  const auto rounded = static_cast<double>(truth);
  if (got == rounded) return 0.0;
  const double size = std::abs(rounded);
  const double ulp = std::isfinite(size) ? std::nextafter(size, HUGE_VAL) - size : 0x1p971;
  return static_cast<double>(quadAbs(static_cast<Quad>(got) - truth) / static_cast<Quad>(ulp));
}
