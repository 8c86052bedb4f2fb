// Our own JSON, one record a line.  What a shape is made of may come before its type; so the arrays are
// read as they come, each by the depth that its name has.
#include <io/internal/json_rings.h>
#include <io/json.h>

namespace {

using Code = gxReadError::Code;
using Kind = gxRecord::Kind;

constexpr std::uint64_t kNone = ~std::uint64_t{0};

class LineReader {
 public:
  LineReader(std::string_view text, const gxReadLimits& limits, std::string_view idField,
             gxRecord& record)
      : in_(text, limits), idField_(idField), record_(record) {}

  void read() {
    in_.beginObject(1);
    std::string key;
    while (in_.nextKey(key)) member(key);
    in_.skipSpace();
    if (!in_.atEnd()) in_.failWanted("the end of the line");
    finish();
  }

 private:
  void member(const std::string& key) {
    if (key == (idField_.empty() ? "id" : idField_)) return in_.id(record_.id);
    if (key == "type") return type();
    if (key == "rings") return shape(key, [&] { gx_readPart(in_, record_, 2); });
    if (key == "parts") return shape(key, [&] { gx_readParts(in_, record_, 2); });
    if (key == "outer") return shape(key, [&] { gx_readRing(in_, record_, true, 2); });
    if (key == "holes" && shape_ == "outer") return holes();
    if (key == "points") return points();
    if (key == "magnitudes") return edges(record_.magnitudes, 65535);
    if (key == "angles") return edges(record_.angles, 255);
    in_.skipValue(2);
  }

  void type() {
    typeAt_ = in_.byte();
    in_.string(type_);
  }

  template <class Read>
  void shape(const std::string& key, const Read& read) {
    in_.skipSpace();
    if (!shape_.empty()) in_.fail(Code::eBadSyntax, "a second shape");
    shape_ = key;
    shapeAt_ = in_.byte();
    read();
  }

  // Whether the points are closed, and so may lose a repeated one, the type tells, which may come later.
  void points() {
    shape("points", [&] { gx_readRing(in_, record_, false, 2); });
    record_.endPart();
  }

  void holes() {
    in_.beginArray(2);
    while (in_.nextItem()) gx_readRing(in_, record_, true, 3);
  }

  template <class Number>
  void edges(std::vector<Number>& numbers, unsigned largest) {
    numbers.clear();
    edgesAt_ = in_.byte();
    in_.beginArray(2);
    while (in_.nextItem()) {
      in_.skipSpace();
      const gx_TextScanner before = in_;
      const double value = in_.numberOrWord();
      if (!(value >= 0.0 && value <= largest) || value != static_cast<unsigned>(value)) {
        before.fail(Code::eBadNumber,
                    "a whole number from 0 to " + std::to_string(largest) + " expected");
      }
      if (numbers.size() >= in_.limits().points)
        before.fail(Code::eTooMany, "more edges than points are taken");
      numbers.push_back(static_cast<Number>(static_cast<unsigned>(value)));
    }
  }

  void wantShape(const char* key) const {
    if (shape_.empty() || shape_ == key) return;
    throw gxReadError(Code::eBadType, shapeAt_,
                      "\"" + type_ + "\" has \"" + key + "\", found \"" + shape_ + "\"");
  }

  void finish() {
    if (shape_ == "outer") {
      record_.endPart();
      shape_ = "rings";
    }
    if (type_.empty()) guessType();
    if (type_ == "region")
      finishRegion();
    else if (type_ == "set")
      finishAs(Kind::eSet, "parts");
    else if (type_ == "open")
      finishAs(Kind::eOpen, "points");
    else if (type_ == "points")
      finishAs(Kind::ePoints, "points");
    else if (type_ == "empty")
      finishAs(Kind::eEmpty, "");
    else
      throw gxReadError(Code::eBadType, typeAt_,
                        "the type \"" + type_.substr(0, 40) + "\" does not exist");
    checkEdges();
  }

  void guessType() {
    if (typeAt_ != kNone) return;
    if (shape_ == "rings" || shape_ == "points")
      type_ = "region";
    else if (shape_ == "parts")
      type_ = "set";
    else
      in_.fail(Code::eBadType, "none of \"rings\", \"parts\", \"points\" is there");
  }

  void finishRegion() {
    if (shape_ == "points")
      closeTheRing();
    else
      wantShape("rings");
    record_.kind = Kind::eRegion;
    record_.dropEmptyRing();
  }

  void finishAs(Kind kind, const char* key) {
    wantShape(key);
    record_.kind = kind;
    record_.dropEmptyRing();
  }

  void closeTheRing() {
    record_.ringEnds.clear();
    record_.partEnds.clear();
    record_.endRing(true);
    record_.endPart();
  }

  void checkEdges() {
    const std::size_t points = record_.points.size();
    if (edgesAt_ == kNone) return;
    // The closing point, which went, had an edge of its own.
    if (record_.magnitudes.size() != points || record_.angles.size() != points) {
      throw gxReadError(
          Code::eBadType, edgesAt_,
          "\"magnitudes\" and \"angles\" have one number a point, that is " + std::to_string(points));
    }
  }

  gx_JsonScanner in_;
  std::string_view idField_;
  gxRecord& record_;
  std::string type_;
  std::string shape_;
  std::uint64_t typeAt_ = kNone;
  std::uint64_t shapeAt_ = 0;
  std::uint64_t edgesAt_ = kNone;
};

template <class Number>
void appendEdges(const char* name, const std::vector<Number>& numbers, std::string& out) {
  out += ",\"";
  out += name;
  out += "\":[";
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i > 0) out += ',';
    out += std::to_string(numbers[i]);
  }
  out += ']';
}

void appendShape(const gxRecord& record, std::string& out) {
  const bool none = record.partCount() == 0;
  switch (record.kind) {
    case Kind::eEmpty: out += "\"type\":\"empty\""; return;
    case Kind::eRegion:
      out += "\"type\":\"region\",\"rings\":";
      if (none)
        out += "[]";
      else
        gx_appendPart(record, 0, false, out);
      return;
    case Kind::eSet:
      out += "\"type\":\"set\",\"parts\":";
      gx_appendParts(record, false, out);
      return;
    case Kind::eOpen:
    case Kind::ePoints:
      out += record.kind == Kind::eOpen ? "\"type\":\"open\",\"points\":"
                                        : "\"type\":\"points\",\"points\":";
      if (none)
        out += "[]";
      else
        gx_appendRing(record.ring(0), false, false, out);
      return;
  }
}

}  // namespace

void gfReadJson(std::string_view text, gxRecord& record, const gxReadLimits& limits,
                std::string_view idField) {
  LineReader(text, limits, idField, record).read();
}

void gfAppendJson(const gxRecord& record, std::string& out) {
  out += '{';
  if (record.id.isGiven) {
    out += "\"id\":";
    gx_appendId(record.id, out);
    out += ',';
  }
  appendShape(record, out);
  if (record.hasEdges()) {
    appendEdges("magnitudes", record.magnitudes, out);
    appendEdges("angles", record.angles, out);
  }
  out += '}';
}

void gfAppendJsonString(std::string_view text, std::string& out) {
  static constexpr const char* kHex = "0123456789abcdef";
  out += '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (byte < 0x20) {
      out += "\\u00";
      out += kHex[byte >> 4];
      out += kHex[byte & 15];
    } else {
      out += c;
    }
  }
  out += '"';
}
