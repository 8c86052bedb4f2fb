/// A place in the text of a record, and what every text format reads there.
#pragma once

#include <io/export.h>
#include <io/limits.h>
#include <io/read_error.h>
#include <io/record.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/// The powers of ten that a double holds exactly.
inline constexpr std::array<double, 23> gn_exactTens = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
/// Those up to eight digits, as whole numbers.
inline constexpr std::array<std::uint64_t, 9> gn_wholeTens = {1,      10,      100,      1000,     10000,
                                                              100000, 1000000, 10000000, 100000000};

/// The digits at the front of eight bytes of text, from the lowest byte on.
struct gx_DigitRun {
  std::uint64_t bytes;  ///< what is not digits has bits above the lowest four, or a ten
  unsigned count;       ///< of digits before the first byte that is none; 8 where all are

  static gx_DigitRun at(const char* text) {
    gx_DigitRun run{0, 0};
    std::memcpy(&run.bytes, text, 8);
    run.bytes ^= 0x3030303030303030;
    // The high bit of each byte that is no digit.
    const std::uint64_t others = ((run.bytes + 0x7676767676767676) | run.bytes) & 0x8080808080808080;
    run.count = static_cast<unsigned>(std::countr_zero(others)) / 8;
    return run;
  }
  /// Returns the number that the digits are: pairs, then fours, then all are put together by one
  /// multiplication each.  There must be at least one.
  std::uint64_t value() const {
    std::uint64_t pairs = bytes << ((0 - 8 * count) & 63);
    pairs = (pairs * 2561) >> 8;
    pairs = ((pairs & 0x00ff00ff00ff00ff) * 6553601) >> 16;
    return ((pairs & 0x0000ffff0000ffff) * 42949672960001) >> 32;
  }
};

/// Walks through the text of one record.  Errors are thrown with the byte of the place.
class GXSHAPE_IO_API gx_TextScanner {
 public:
  gx_TextScanner(std::string_view text, const gxReadLimits& limits)
      : begin_(text.data()), at_(text.data()), end_(text.data() + text.size()), limits_(&limits) {}

  const gxReadLimits& limits() const { return *limits_; }
  std::uint64_t byte() const { return static_cast<std::uint64_t>(at_ - begin_); }
  bool atEnd() const { return at_ == end_; }
  /// Returns the next byte, 0 at the end.
  char peek() const { return at_ == end_ ? '\0' : *at_; }
  void skip() { ++at_; }

  void skipSpace() {
    while (at_ != end_ && *at_ <= ' ' && (*at_ == ' ' || *at_ == '\t' || *at_ == '\r' || *at_ == '\n'))
      ++at_;
  }
  /// Skips space, then takes the byte where it is the next.
  bool take(char c) {
    skipSpace();
    if (at_ == end_ || *at_ != c) return false;
    ++at_;
    return true;
  }
  /// Skips space and takes the byte.  Throws: bad_syntax "'(' expected, found 'x'", truncated at the end.
  void want(char c) {
    if (!take(c)) failWanted(std::string("'") + c + "'");
  }
  /// Takes a word of letters; empty where none stands.  Space before it is skipped.
  std::string_view word();
  /// Takes up to `c`, which stays; the rest where there is no `c`.
  std::string_view upTo(char c);

  /// Reads a number as WKT and CSV have it: also "NaN", "inf", "Infinity" and a plus sign.
  /// Throws: bad_number where there is none, or one that no double holds.  One too small to be told from
  /// 0 is 0.
  double number() {
    skipSpace();
    double value = 0.0;
    return shortNumber(value) ? value : longNumber();
  }
  /// Reads a number by the stricter rules of JSON.
  double jsonNumber();

  /// Throw with the place where the scanner stands.
  [[noreturn]] void fail(gxReadError::Code code, const std::string& cause) const;
  [[noreturn]] void failWanted(const std::string& what) const;
  /// What stands here, for a message: "'x'", "the end".
  std::string here() const;

  /// Adds a point or ends a ring, within the limits.
  void addPoint(gxRecord& record, double x, double y) const {
    if (record.points.size() >= limits_->points) tooMany("points", limits_->points);
    record.points.emplace_back(x, y);
  }
  void endRing(gxRecord& record, bool closed) const {
    if (record.ringEnds.size() >= limits_->rings) tooMany("rings", limits_->rings);
    record.endRing(closed);
  }

 private:
  [[noreturn]] void tooMany(const char* what, std::size_t limit) const;
  bool plainNumber(double& value);
  double anyNumber();
  double longNumber();
  bool shortJsonNumber(double& value);

  // A number with a point and up to seven digits on either side of it, as most coordinates are, away from the end of
  // the text: the same value as plainNumber's, in about half the instructions, since the digits behind the point are
  // taken all at once and nothing is called.
  bool shortNumber(double& value) {
    constexpr std::ptrdiff_t kLongest = 1 + 7 + 1 + 8;  // sign, digits, point, the word behind it
    if (std::endian::native != std::endian::little || end_ - at_ < kLongest) return false;
    const bool minus = *at_ == '-';
    const char* p = minus ? at_ + 1 : at_;
    const char* const eighth = p + 7;
    std::uint64_t digits = digitAt(p);
    if (digits > 9) return false;
    for (unsigned digit = digitAt(++p); digit <= 9; digit = digitAt(++p)) {
      if (p == eighth) return false;
      digits = 10 * digits + digit;
    }
    if (*p != '.') return false;
    const auto behind = gx_DigitRun::at(++p);
    if (behind.count == 0 || behind.count == 8) return false;
    p += behind.count;
    if (continuesNumber(*p)) return false;
    digits = digits * gn_wholeTens[behind.count] + behind.value();
    // Signed, which a processor turns into a double at once.
    value = static_cast<double>(static_cast<std::int64_t>(digits)) / gn_exactTens[behind.count];
    if (minus) value = -value;
    at_ = p;
    return true;
  }
  static unsigned digitAt(const char* p) { return static_cast<unsigned char>(*p) - unsigned{'0'}; }
  // Whether a number cannot end before this character: an exponent, a second point, letters.
  static bool continuesNumber(char c) {
    return c >= '.' && (c == '.' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'));
  }

  const char* begin_;
  const char* at_;
  const char* end_;
  const gxReadLimits* limits_;
};
