// The layout of velstd/number_text.h, for millions of numbers.
//
//  1. Whole numbers below 2^53 are written as such.
//  2. Most coordinates of files have few decimals. Where millionths of a unit give the very number back, their
//     digits are the fewest: decimals of up to 15 digits are different doubles, so no shorter one can be this
//     one. (Of the time of `measure` over small shapes a third went into the general search for digits.)
//  3. Of the rest, what std::to_chars lays out with a point is taken as it stands.
//  4. What is left goes the slower way.
#include <io/number_writer.h>

#include <velstd/number_text.h>

#include <array>
#include <charconv>
#include <cmath>

namespace {

constexpr long long kMillion = 1'000'000;

// Appends a number as a whole count of millionths; false where it is none, or has more than 15 digits.
bool appendMillionths(double value, double size, std::string& out) {
  if (!(size >= 1e-6 && size < 1e9)) return false;
  const long long millionths = std::llrint(size * 1e6);
  if (static_cast<double>(millionths) / 1e6 != size) return false;
  std::array<char, 24> text{};
  char* at = text.data();
  if (value < 0.0) *at++ = '-';
  at = std::to_chars(at, text.data() + text.size(), millionths / kMillion).ptr;
  *at++ = '.';
  long long rest = millionths % kMillion;
  for (long long place = kMillion / 10; rest > 0; place /= 10) {
    *at++ = static_cast<char>('0' + rest / place);
    rest %= place;
  }
  out.append(text.data(), at);
  return true;
}

}  // namespace

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
  } else if (appendMillionths(value, size, out)) {
    return;
  } else if (size >= 1e-3 && size < 1e6) {
    // In this range the plain form has the fewest digits and is what to_chars chooses.
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    out.append(text.data(), end.ptr);
  } else {
    out += gfNumberText(value);
  }
}
