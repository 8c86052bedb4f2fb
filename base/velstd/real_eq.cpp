// Rounding down.  The bounds are compared as doubles before the conversion, because converting a
// double outside the range of the integer is undefined.
#include <velstd/real_eq.h>

#include <limits>

long gfIFloor(double value) {
  if (std::isnan(value)) return 0;
  const double floored = std::floor(value);
  // The first double past the range: 2^63, or 2^31 where a long has 32 bits; made as twice its half, for the
  // greatest long itself may be no double.
  constexpr long kHalf = (std::numeric_limits<long>::max)() / 2 + 1;
  constexpr double kEnd = 2.0 * static_cast<double>(kHalf);
  if (floored >= kEnd) return std::numeric_limits<long>::max();
  if (floored < -kEnd) return std::numeric_limits<long>::min();
  return static_cast<long>(floored);
}
