// The digits come from std::to_chars in its scientific form, which are the fewest that tell the double
// from its neighbours, and are laid out here.  (Its plain form will not do: it writes 100000 as 1e+05, and
// all digits of the exact value of a large whole number instead of the fewest.)
#include <velstd/number_text.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace {

// The value is 0.d1d2d3… times ten to the power of `point`.
struct Digits {
  std::string digits;
  int point = 0;
};

Digits digitsOf(double positive) {
  std::array<char, 40> text{};  // 17 digits, a point, an exponent of at most 5 characters
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), positive, std::chars_format::scientific).ptr;
  const std::string all(text.data(), end);
  const std::size_t exponent = all.find('e');
  Digits result;
  result.digits = all.substr(0, 1) + (exponent > 1 ? all.substr(2, exponent - 2) : std::string());
  result.point = std::stoi(all.substr(exponent + 1)) + 1;
  return result;
}

std::string laidOut(const Digits& number) {
  const int count = static_cast<int>(number.digits.size());
  const auto zeros = [](int n) { return std::string(static_cast<std::size_t>(n), '0'); };
  if (count <= number.point && number.point <= 21) return number.digits + zeros(number.point - count);
  if (0 < number.point && number.point <= 21) {
    const auto whole = static_cast<std::size_t>(number.point);
    return number.digits.substr(0, whole) + "." + number.digits.substr(whole);
  }
  if (-6 < number.point && number.point <= 0) return "0." + zeros(-number.point) + number.digits;
  const int exponent = number.point - 1;
  std::string text = number.digits.substr(0, 1);
  // Not "." + digits: with -O3 g++ 12 sees a string copied onto itself there, and a project that takes these
  // sources in may treat that as an error.
  if (count > 1) text.append(".").append(number.digits, 1);
  return text + (exponent < 0 ? "e-" : "e+") + std::to_string(exponent < 0 ? -exponent : exponent);
}

}  // namespace

std::string gfNumberText(double value) {
  if (std::isnan(value)) return "NaN";
  const std::string sign = std::signbit(value) ? "-" : "";
  if (std::isinf(value)) return sign + "Infinity";
  if (value == 0.0) return sign + "0";
  return sign + laidOut(digitsOf(std::abs(value)));
}
