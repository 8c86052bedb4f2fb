// Rounding down.  The bounds are compared as doubles before the conversion, because converting a
// double outside the range of the integer is undefined.
#include <velstd/real_eq.h>

#include <limits>

long gfIFloor(double value) {
  if (std::isnan(value)) return 0;
  const double floored = std::floor(value);
  constexpr double kEnd = 9223372036854775808.0;  // 2^63, the first double past the range
  static_assert(std::numeric_limits<long>::digits == 63, "the bounds are those of a 64-bit long");
  if (floored >= kEnd) return std::numeric_limits<long>::max();
  if (floored < -kEnd) return std::numeric_limits<long>::min();
  return static_cast<long>(floored);
}
