// A pull parser for JSON: the reader says what ought to come, and the scanner reads it or tells where it
// failed.  Nothing is built on the way but the coordinates themselves, the depth of recursion is limited,
// and every error has its byte, which parsers that make a tree do not give.
#include <io/internal/json_scanner.h>

#include <cmath>
#include <limits>

namespace {

using Code = gxReadError::Code;

void appendUtf8(unsigned c, std::string& text) {
  const auto put = [&](unsigned byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (c < 0x80) return put(c);
  if (c < 0x800) {
    put(0xc0 | c >> 6);
  } else if (c < 0x10000) {
    put(0xe0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3f));
  } else {
    put(0xf0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3f));
    put(0x80 | (c >> 6 & 0x3f));
  }
  put(0x80 | (c & 0x3f));
}

// How many bytes follow a first byte, and the least that the second one may be; 0 for none that is valid.
int bytesBehind(unsigned char c) {
  if (c >= 0xc2 && c <= 0xdf) return 1;
  if (c >= 0xe0 && c <= 0xef) return 2;
  if (c >= 0xf0 && c <= 0xf4) return 3;
  return 0;
}

bool secondFits(unsigned char first, unsigned char second) {
  if (first == 0xe0) return second >= 0xa0;
  if (first == 0xed) return second <= 0x9f;
  if (first == 0xf0) return second >= 0x90;
  if (first == 0xf4) return second <= 0x8f;
  return true;
}

}  // namespace

void gx_JsonScanner::failType(const std::string& wanted) const {
  const char c = peek();
  if (atEnd() || c == ']' || c == '}' || c == ',' || c == ':') failWanted(wanted);
  fail(Code::eBadType, wanted + " expected, found " + here());
}

unsigned gx_JsonScanner::hexFour() {
  unsigned value = 0;
  for (int i = 0; i < 4; ++i) {
    const char c = peek();
    unsigned digit = 0;
    if (c >= '0' && c <= '9')
      digit = static_cast<unsigned>(c - '0');
    else if (c >= 'a' && c <= 'f')
      digit = static_cast<unsigned>(c - 'a' + 10);
    else if (c >= 'A' && c <= 'F')
      digit = static_cast<unsigned>(c - 'A' + 10);
    else
      failWanted("a hexadecimal digit");
    value = value * 16 + digit;
    skip();
  }
  return value;
}

void gx_JsonScanner::escape(std::string& text) {
  static constexpr std::string_view kFrom = "\"\\/bfnrt";
  static constexpr std::string_view kTo = "\"\\/\b\f\n\r\t";
  const char c = peek();
  const std::size_t known = c == '\0' ? std::string_view::npos : kFrom.find(c);
  if (known != std::string_view::npos) {
    text += kTo[known];
    skip();
    return;
  }
  if (c != 'u') failWanted("an escape");
  skip();
  unsigned code = hexFour();
  if (code >= 0xdc00 && code <= 0xdfff)
    fail(Code::eBadUtf8, "the second half of a surrogate without the first");
  if (code >= 0xd800 && code <= 0xdbff) {
    if (peek() != '\\') fail(Code::eBadUtf8, "the first half of a surrogate without the second");
    skip();
    if (peek() != 'u') fail(Code::eBadUtf8, "the first half of a surrogate without the second");
    skip();
    const unsigned low = hexFour();
    if (low < 0xdc00 || low > 0xdfff)
      fail(Code::eBadUtf8, "the first half of a surrogate without the second");
    code = 0x10000 + ((code - 0xd800) << 10) + (low - 0xdc00);
  }
  appendUtf8(code, text);
}

void gx_JsonScanner::plainCharacter(std::string& text) {
  const auto c = static_cast<unsigned char>(peek());
  if (c < 0x20) fail(Code::eBadSyntax, "a control character in a string");
  text += peek();
  skip();
  if (c < 0x80) return;
  const int behind = bytesBehind(c);
  if (behind == 0) fail(Code::eBadUtf8, "not UTF-8");
  for (int i = 0; i < behind; ++i) {
    const auto next = static_cast<unsigned char>(peek());
    if (atEnd() || next < 0x80 || next > 0xbf || (i == 0 && !secondFits(c, next)))
      fail(Code::eBadUtf8, "not UTF-8");
    text += peek();
    skip();
  }
}

void gx_JsonScanner::string(std::string& text) {
  text.clear();
  skipSpace();
  if (peek() != '"') failType("a string");
  skip();
  while (true) {
    if (atEnd()) failWanted("the end of a string");
    const char c = peek();
    if (c == '"') break;
    if (c == '\\') {
      skip();
      escape(text);
    } else {
      plainCharacter(text);
    }
  }
  skip();
}

double gx_JsonScanner::numberOrWord() {
  skipSpace();
  const char c = peek();
  if (c == '-' || (c >= '0' && c <= '9')) return jsonNumber();
  if (c == '"') {
    const gx_TextScanner before = *this;
    std::string word;
    string(word);
    if (word == "NaN") return std::numeric_limits<double>::quiet_NaN();
    if (word == "Infinity") return std::numeric_limits<double>::infinity();
    if (word == "-Infinity") return -std::numeric_limits<double>::infinity();
    before.fail(Code::eBadType, "number expected, found a string");
  }
  gx_TextScanner ahead = *this;
  if (c == '[' || c == '{' || c == 't' || c == 'f' || ahead.word() == "null") failType("number");
  return jsonNumber();
}

void gx_JsonScanner::constant(const char* word) {
  for (; *word != '\0'; ++word) {
    if (peek() != *word) failWanted("a value");
    skip();
  }
}

bool gx_JsonScanner::takeNull() {
  skipSpace();
  if (peek() != 'n') return false;
  constant("null");
  return true;
}

void gx_JsonScanner::beginObject(int depth) {
  skipSpace();
  if (peek() != '{') failType("an object");
  if (depth > limits().nesting)
    fail(Code::eTooDeep, "nested more than " + std::to_string(limits().nesting) + " deep");
  skip();
  first_ = true;
}

bool gx_JsonScanner::nextKey(std::string& key) {
  if (take('}')) {
    first_ = false;
    return false;
  }
  if (!first_) want(',');
  skipSpace();
  if (peek() != '"') failWanted("a name in quotes");
  string(key);
  want(':');
  first_ = false;
  return true;
}

void gx_JsonScanner::beginArray(int depth) {
  skipSpace();
  if (peek() != '[') failType("an array");
  if (depth > limits().nesting)
    fail(Code::eTooDeep, "nested more than " + std::to_string(limits().nesting) + " deep");
  skip();
  first_ = true;
}

bool gx_JsonScanner::nextItem() {
  if (take(']')) {
    first_ = false;
    return false;
  }
  if (!first_) want(',');
  first_ = false;
  return true;
}

// Containers are entered by recursion, at most as deep as the limit.
void gx_JsonScanner::skipValue(int depth) {
  skipSpace();
  std::string text;
  switch (peek()) {
    case '{':
      beginObject(depth);
      while (nextKey(text)) skipValue(depth + 1);
      return;
    case '[':
      beginArray(depth);
      while (nextItem()) skipValue(depth + 1);
      return;
    case '"': return string(text);
    case 't': return constant("true");
    case 'f': return constant("false");
    case 'n': return constant("null");
    default: static_cast<void>(jsonNumber());
  }
}

void gx_JsonScanner::id(gxRecordId& id) {
  skipSpace();
  if (takeNull()) return;
  const gx_TextScanner before = *this;
  if (peek() == '"') {
    string(id.text);
    id.isNumber = false;
  } else {
    if (peek() != '-' && (peek() < '0' || peek() > '9')) failType("text or a whole number");
    const double value = jsonNumber();
    if (std::fabs(value) > 0x1p53 || value != std::floor(value)) {
      before.fail(Code::eBadType, "an id is text or a whole number of at most 2^53");
    }
    gx_TextScanner text = before;
    id.text.clear();
    while (text.byte() < byte()) {
      id.text += text.peek();
      text.skip();
    }
    id.isNumber = true;
  }
  id.isGiven = true;
  if (id.text.size() > limits().idBytes) {
    before.fail(Code::eTooLong, "an id of more than " + std::to_string(limits().idBytes) + " bytes");
  }
}
