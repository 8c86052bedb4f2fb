// Reading numbers and words.
//
// Numbers come in two kinds.  Most have at most 15 digits and a small exponent: their digits are a whole
// number that a double holds exactly, the power of ten is exact too, so one multiplication or division
// rounds once and right (W. Clinger, "How to read floating point numbers accurately", 1990).  All others
// go through std::from_chars, which is right for every text and knows no locale; the first kind is three
// times faster without it.
#include <io/internal/text_scanner.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr std::array<double, 23> kTens = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                          1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                          1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Eight digits in eight bytes, the first in the lowest, as a number: pairs, then fours, then all are put together
// by one multiplication each.
std::uint64_t eightDigits(std::uint64_t bytes) {
  bytes = (bytes * 2561) >> 8;
  bytes = ((bytes & 0x00ff00ff00ff00ff) * 6553601) >> 16;
  return ((bytes & 0x0000ffff0000ffff) * 42949672960001) >> 32;
}

// Appends the digits behind a point to a number, which may wrap around behind 19 of them; returns their end.  Eight
// at a time, since most of the time of reading goes here: coordinates with 6 digits behind the point are read 1.3
// times as fast as digit by digit.  (The digits before the point are too few for that: done the same way, the
// gain was lost.)
const char* takeFraction(const char* p, const char* end, std::uint64_t& number) {
  constexpr std::array<std::uint64_t, 9> kPowers = {1,      10,      100,      1000,     10000,
                                                    100000, 1000000, 10000000, 100000000};
  if constexpr (std::endian::native == std::endian::little) {
    while (end - p >= 8) {
      std::uint64_t bytes = 0;
      std::memcpy(&bytes, p, 8);
      bytes ^= 0x3030303030303030;
      // The high bit of each byte that is no digit.
      const std::uint64_t others = ((bytes + 0x7676767676767676) | bytes) & 0x8080808080808080;
      if (others == 0) {
        number = number * kPowers[8] + eightDigits(bytes);
        p += 8;
        continue;
      }
      const auto count = static_cast<unsigned>(std::countr_zero(others)) / 8;
      if (count == 0) return p;
      number = number * kPowers[count] + eightDigits(bytes << (64 - 8 * count));
      return p + count;
    }
  }
  while (p != end && isDigit(*p)) number = 10 * number + static_cast<std::uint64_t>(*p++ - '0');
  return p;
}

// Tells whether a decimal number that no double holds is too small, not too large: whether its first
// digit that counts stands behind the point.
bool isTiny(const char* at, const char* end) {
  long before = 0;
  long zerosBehind = 0;
  bool behind = false;
  bool counts = false;
  for (; at != end && *at != 'e' && *at != 'E'; ++at) {
    if (*at == '.') behind = true;
    if (!isDigit(*at)) continue;
    counts = counts || *at != '0';
    if (!behind && counts) ++before;
    if (behind && !counts) ++zerosBehind;
  }
  long exponent = 0;
  if (at != end) {
    ++at;
    const bool minus = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+')) ++at;
    for (; at != end && exponent < 1'000'000'000; ++at) exponent = 10 * exponent + (*at - '0');
    if (minus) exponent = -exponent;
  }
  return before - zerosBehind + exponent < 0;
}

bool isJsonNumber(std::string_view text) {
  std::size_t i = 0;
  const auto digits = [&] {
    const std::size_t first = i;
    while (i < text.size() && isDigit(text[i])) ++i;
    return i - first;
  };
  if (i < text.size() && text[i] == '-') ++i;
  const bool zero = i < text.size() && text[i] == '0';
  const std::size_t whole = digits();
  if (whole == 0 || (zero && whole > 1)) return false;
  if (i < text.size() && text[i] == '.') {
    ++i;
    if (digits() == 0) return false;
  }
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    ++i;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
    if (digits() == 0) return false;
  }
  return i == text.size();
}

}  // namespace

std::string_view gx_TextScanner::word() {
  skipSpace();
  const char* const first = at_;
  while (at_ != end_ && isLetter(*at_)) ++at_;
  return {first, static_cast<std::size_t>(at_ - first)};
}

std::string_view gx_TextScanner::upTo(char c) {
  const char* const first = at_;
  const void* const found = std::memchr(at_, c, static_cast<std::size_t>(end_ - at_));
  at_ = found == nullptr ? end_ : static_cast<const char*>(found);
  return {first, static_cast<std::size_t>(at_ - first)};
}

// Up to 18 digits, a point among them, no exponent: taken where that is exact, else left where it is.
bool gx_TextScanner::plainNumber(double& value) {
  const char* p = at_;
  const bool minus = p != end_ && *p == '-';
  if (minus) ++p;
  std::uint64_t digits = 0;
  const char* const first = p;
  while (p != end_ && isDigit(*p)) digits = 10 * digits + static_cast<std::uint64_t>(*p++ - '0');
  std::ptrdiff_t count = p - first;
  std::ptrdiff_t behind = 0;
  if (count == 0) return false;
  if (p != end_ && *p == '.') {
    const char* const point = p++;
    p = takeFraction(p, end_, digits);
    behind = p - point - 1;
    count += behind;
    if (behind == 0) return false;
  }
  if (count > 18 || digits > (std::uint64_t{1} << 53)) return false;
  if (p != end_ && (isLetter(*p) || *p == '.')) return false;
  value = static_cast<double>(digits) / kTens[static_cast<std::size_t>(behind)];
  if (minus) value = -value;
  at_ = p;
  return true;
}

double gx_TextScanner::anyNumber() {
  const char* first = at_;
  if (first != end_ && *first == '+' && first + 1 != end_ && first[1] != '-') ++first;
  double value = 0.0;
  const auto [past, error] = std::from_chars(first, end_, value);
  if (error == std::errc::result_out_of_range) {
    if (!isTiny(first, past)) {
      fail(gxReadError::Code::eBadNumber, "a number beyond the range of doubles");
    }
    value = *first == '-' ? -0.0 : 0.0;
  } else if (error != std::errc()) {
    fail(gxReadError::Code::eBadNumber, "number expected, found " + here());
  }
  at_ = past;
  return value;
}

double gx_TextScanner::number() {
  skipSpace();
  double value = 0.0;
  if (plainNumber(value)) return value;
  const char* const first = at_;
  value = anyNumber();
  // "nan" may have a payload in brackets for from_chars, which WKT would take for its own bracket.
  if (std::isnan(value) && at_[-1] == ')') at_ = first + (*first == '-' || *first == '+' ? 4 : 3);
  if (at_ != end_ && (isLetter(*at_) || *at_ == '.')) {
    fail(gxReadError::Code::eBadNumber, "number expected, found " + here());
  }
  return value;
}

double gx_TextScanner::jsonNumber() {
  skipSpace();
  const char* first = at_;
  const char* past = at_;
  while (past != end_ &&
         (isDigit(*past) || isLetter(*past) || *past == '-' || *past == '+' || *past == '.')) {
    ++past;
  }
  if (!isJsonNumber({first, static_cast<std::size_t>(past - first)})) {
    const bool constant = first != past && isLetter(*first);
    fail(constant ? gxReadError::Code::eBadSyntax : gxReadError::Code::eBadNumber,
         "number expected, found " + here());
  }
  double value = 0.0;
  return plainNumber(value) ? value : anyNumber();
}

std::string gx_TextScanner::here() const {
  if (at_ == end_) return "the end";
  const auto byte = static_cast<unsigned char>(*at_);
  if (byte >= 0x20 && byte < 0x7f) return std::string("'") + *at_ + "'";
  constexpr const char* kHex = "0123456789abcdef";
  return std::string("byte 0x") + kHex[byte >> 4] + kHex[byte & 15];
}

void gx_TextScanner::fail(gxReadError::Code code, const std::string& cause) const {
  throw gxReadError(code, byte(), cause);
}

void gx_TextScanner::failWanted(const std::string& what) const {
  fail(atEnd() ? gxReadError::Code::eTruncated : gxReadError::Code::eBadSyntax,
       what + " expected, found " + here());
}

void gx_TextScanner::tooMany(const char* what, std::size_t limit) const {
  fail(gxReadError::Code::eTooMany, "more than " + std::to_string(limit) + ' ' + what);
}
