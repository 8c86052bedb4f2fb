// Reading numbers and words.
//
// Numbers come in two kinds.  Most have at most 15 digits and a small exponent: their digits are a whole
// number that a double holds exactly, the power of ten is exact too, so one multiplication or division
// rounds once and right (W. Clinger, "How to read floating point numbers accurately", 1990).  All others
// go through std::from_chars, which is right for every text and knows no locale; the first kind is three
// times faster without it.  The most usual of the first kind are read by the header, within their caller.
#include <io/internal/text_scanner.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Appends the digits behind a point to a number, which may wrap around behind 19 of them; returns their end.  Eight
// at a time, since most of the time of reading goes here: coordinates with 6 digits behind the point are read 1.3
// times as fast as digit by digit.  (The digits before the point are too few for that: done the same way, the
// gain was lost.)
const char* takeFraction(const char* p, const char* end, std::uint64_t& number) {
  while (std::endian::native == std::endian::little && end - p >= 8) {
    const auto run = gx_DigitRun::at(p);
    if (run.count == 0) return p;
    number = number * gn_wholeTens[run.count] + run.value();
    p += run.count;
    if (run.count < 8) return p;
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
  if (p != end_ && continuesNumber(*p)) return false;
  value = static_cast<double>(digits) / gn_exactTens[static_cast<std::size_t>(behind)];
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

double gx_TextScanner::longNumber() {
  double value = 0.0;
  if (plainNumber(value)) return value;
  const char* const first = at_;
  value = anyNumber();
  // "nan" may have a payload in brackets for from_chars, which WKT would take for its own bracket.
  if (std::isnan(value) && at_[-1] == ')') at_ = first + (*first == '-' || *first == '+' ? 4 : 3);
  if (at_ != end_ && continuesNumber(*at_)) {
    fail(gxReadError::Code::eBadNumber, "number expected, found " + here());
  }
  return value;
}

// JSON allows no zero before other digits, and nothing but space or a bracket behind a number; a sign there is left
// for isJsonNumber to find.
bool gx_TextScanner::shortJsonNumber(double& value) {
  const gx_TextScanner before = *this;
  if (!shortNumber(value)) return false;
  const char* const digits = *before.at_ == '-' ? before.at_ + 1 : before.at_;
  const bool isPadded = digits[0] == '0' && digits[1] != '.';
  if (!isPadded && *at_ != '-' && *at_ != '+') return true;
  *this = before;
  return false;
}

double gx_TextScanner::jsonNumber() {
  skipSpace();
  double value = 0.0;
  if (shortJsonNumber(value)) return value;
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
