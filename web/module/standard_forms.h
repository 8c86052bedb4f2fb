// What the sources need and Debian's libc++ for WebAssembly (version 13) has not yet: std::bit_cast, and
// std::to_chars and std::from_chars of doubles.  Every source of the WebAssembly build is compiled with this
// header before it; no other build sees it.  A later libc++ has all of it, hence the version in the condition.
#pragma once

#include <charconv>
#include <version>

#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION < 14000

namespace std {

#  if !defined(__cpp_lib_bit_cast)
template <class To, class From>
constexpr To bit_cast(const From& from) noexcept {
  return __builtin_bit_cast(To, from);
}
#  endif

// As the standard has them, for the forms that the library asks for: the fewest digits that tell the
// double from its neighbours, scientific or fixed (the latter of sizes from 1e-6 to 1e21), and so many
// digits behind the point.
to_chars_result to_chars(char* first, char* last, double value, chars_format format);
to_chars_result to_chars(char* first, char* last, double value, chars_format format, int precision);

// Reads the longest beginning that is a decimal number, an infinity or a NaN.
from_chars_result from_chars(const char* first, const char* last, double& value);

}  // namespace std

#endif
