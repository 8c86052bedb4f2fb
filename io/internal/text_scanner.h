/// A place in the text of a record, and what every text format reads there.
#pragma once

#include <io/export.h>
#include <io/limits.h>
#include <io/read_error.h>
#include <io/record.h>

#include <cstring>
#include <string>
#include <string_view>

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
    while (at_ != end_ && (*at_ == ' ' || *at_ == '\t' || *at_ == '\r' || *at_ == '\n')) ++at_;
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
  double number();
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

  const char* begin_;
  const char* at_;
  const char* end_;
  const gxReadLimits* limits_;
};
