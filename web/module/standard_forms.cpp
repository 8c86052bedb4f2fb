// Digits of doubles for a standard library that has none.
//
//   1. The fewest digits come from the surroundings: what JavaScript writes for a number are by its own
//      standard the fewest digits that read back as the same double, the nearest to it among those.
//   2. So many digits behind the point come from snprintf, which is exact here.
//   3. Reading: the end of the number is found first, for strtod would take hexadecimal numbers and leading
//      blanks too; then strtod reads a copy that ends there.  It rounds correctly.
#include "standard_forms.h"

#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION < 14000

#  include <emscripten.h>

#  include <cmath>
#  include <cstdio>
#  include <cstdlib>
#  include <cstring>
#  include <string>

// clang-format off
EM_JS(int, gxweb_digits, (double value, int scientific, char* out, int size), {
  const text = scientific ? value.toExponential() : String(value);
  if (text.length > size) return -1;
  for (let i = 0; i < text.length; ++i) HEAPU8[out + i] = text.charCodeAt(i);
  return text.length;
});
// clang-format on

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

const char* pastDigits(const char* at, const char* last) {
  while (at != last && isDigit(*at)) ++at;
  return at;
}

// Past a word in small or large letters, or null where it is not there.
const char* pastWord(const char* at, const char* last, const char* word) {
  for (; *word != '\0'; ++at, ++word) {
    if (at == last || (*at | 0x20) != *word) return nullptr;
  }
  return at;
}

// "nan" may be followed by letters, digits and underscores in brackets.
const char* pastPayload(const char* at, const char* last) {
  if (at == last || *at != '(') return at;
  for (const char* p = at + 1; p != last; ++p) {
    if (*p == ')') return p + 1;
    if (!isDigit(*p) && *p != '_' && ((*p | 0x20) < 'a' || (*p | 0x20) > 'z')) return at;
  }
  return at;
}

const char* pastExponent(const char* at, const char* last) {
  if (at == last || (*at | 0x20) != 'e') return at;
  const char* p = at + 1;
  if (p != last && (*p == '+' || *p == '-')) ++p;
  const char* const end = pastDigits(p, last);
  return end == p ? at : end;
}

// Where the number that begins here ends; its beginning where there is none.
const char* pastNumber(const char* first, const char* last) {
  const char* const whole = pastDigits(first, last);
  const char* end = whole;
  if (end != last && *end == '.') end = pastDigits(end + 1, last);
  const bool hasDigits = whole != first || end - whole > 1;
  return hasDigits ? pastExponent(end, last) : first;
}

}  // namespace

namespace std {

to_chars_result to_chars(char* first, char* last, double value, chars_format format) {
  const int size = gxweb_digits(value, format == chars_format::scientific ? 1 : 0, first,
                                static_cast<int>(last - first));
  if (size < 0) return {last, errc::value_too_large};
  return {first + size, errc()};
}

to_chars_result to_chars(char* first, char* last, double value, chars_format format, int precision) {
  const char* const how = format == chars_format::fixed ? "%.*f" : "%.*e";
  const auto space = static_cast<size_t>(last - first);
  const int size = snprintf(first, space, how, precision, value);
  if (size < 0 || static_cast<size_t>(size) >= space) return {last, errc::value_too_large};
  return {first + size, errc()};
}

from_chars_result from_chars(const char* first, const char* last, double& value) {
  const bool minus = first != last && *first == '-';
  const char* const begin = minus ? first + 1 : first;
  const double sign = minus ? -1.0 : 1.0;
  if (const char* const past = pastWord(begin, last, "infinity")) {
    value = sign * HUGE_VAL;
    return {past, errc()};
  }
  if (const char* const past = pastWord(begin, last, "inf")) {
    value = sign * HUGE_VAL;
    return {past, errc()};
  }
  if (const char* const past = pastWord(begin, last, "nan")) {
    value = sign * NAN;
    return {pastPayload(past, last), errc()};
  }
  const char* const end = pastNumber(begin, last);
  if (end == begin) return {first, errc::invalid_argument};
  const string text(begin, end);
  const double read = strtod(text.c_str(), nullptr);
  if (isinf(read)) return {end, errc::result_out_of_range};
  value = sign * read;
  return {end, errc()};
}

}  // namespace std

#endif
