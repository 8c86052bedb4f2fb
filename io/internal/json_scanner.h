/// What JSON adds to a scanner of text: strings, and values that are passed over.
#pragma once

#include <io/internal/text_scanner.h>

#include <string>

/// Walks through the text of one JSON value, as the caller asks for what ought to come next.
class GXSHAPE_IO_API gx_JsonScanner : public gx_TextScanner {
 public:
  using gx_TextScanner::gx_TextScanner;

  /// Reads a string: escapes resolved, UTF-8 checked, surrogates in pairs only.
  /// Throws: bad_syntax, bad_utf8, truncated; bad_type where another value stands.
  void string(std::string& text);
  /// Reads a number, or one of the strings "NaN", "Infinity", "-Infinity", which JSON cannot write else.
  double numberOrWord();
  /// Passes over a value of any kind.  Throws: too_deep, and what its parts throw.
  void skipValue(int depth);
  /// Reads `null` where it stands.
  bool takeNull();
  /// Reads the id of a record: text, or a whole number of at most 2^53.
  void id(gxRecordId& id);
  /// Enters an object; then, key by key, `nextKey` until it returns false.
  void beginObject(int depth);
  bool nextKey(std::string& key);
  /// Enters an array; then `nextItem` before each item until it returns false.
  void beginArray(int depth);
  bool nextItem();
  /// Throws bad_type "an array expected, found ..." .
  [[noreturn]] void failType(const std::string& wanted) const;

 private:
  void escape(std::string& text);
  unsigned hexFour();
  void plainCharacter(std::string& text);
  void constant(const char* word);
  bool first_ = true;  // whether the container that was entered last has given nothing yet
};
