// The layout of velstd/number_text.h, for millions of numbers: whole numbers below 2^53 and those that
// std::to_chars lays out with a point are taken from it as they stand, the rest goes the slower way.
#include <io/number_writer.h>

#include <velstd/number_text.h>

#include <array>
#include <charconv>
#include <cmath>

void gfAppendNumber(double value, std::string& out) {
  std::array<char, 40> text{};
  const double size = std::fabs(value);
  if (size < 0x1p53 && value == std::floor(value)) {
    if (std::signbit(value) && value == 0.0) {
      out += "-0";
      return;
    }
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), static_cast<long long>(value));
    out.append(text.data(), end.ptr);
  } else if (size >= 1e-3 && size < 1e6) {
    // In this range the plain form has the fewest digits and is what to_chars chooses.
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    out.append(text.data(), end.ptr);
  } else {
    out += gfNumberText(value);
  }
}
