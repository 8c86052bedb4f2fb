// Well-known text.  A recursive grammar of depth three at most, so it is written as three loops: parts,
// rings, points.
#include <io/internal/text_scanner.h>
#include <io/number_writer.h>
#include <io/wkt.h>

#include <algorithm>
#include <array>

namespace {

using Code = gxReadError::Code;

bool same(std::string_view word, std::string_view upper) {
  return std::equal(word.begin(), word.end(), upper.begin(), upper.end(),
                    [](char a, char b) { return (a >= 'a' && a <= 'z' ? a - 32 : a) == b; });
}

class WktReader {
 public:
  WktReader(std::string_view text, const gxReadLimits& limits, gxRecord& record)
      : in_(text, limits), record_(record) {}

  void read() {
    skipReference();
    const std::uint64_t at = in_.byte();
    const std::string_view type = in_.word();
    const bool empty = dimensionsAndEmpty();
    readAs(type, at, empty);
    in_.skipSpace();
    if (!in_.atEnd()) in_.failWanted("the end of the line");
  }

 private:
  void skipReference() {
    in_.skipSpace();
    gx_TextScanner ahead = in_;
    if (!same(ahead.word(), "SRID")) return;
    ahead.want('=');
    ahead.number();
    ahead.want(';');
    in_ = ahead;
  }

  // Takes "Z", "M", "ZM", then "EMPTY" if it stands there.
  bool dimensionsAndEmpty() {
    std::string_view next = in_.word();
    if (same(next, "Z") || same(next, "M") || same(next, "ZM")) next = in_.word();
    if (same(next, "EMPTY")) return true;
    if (!next.empty()) in_.failWanted("'(' or EMPTY, after the word for the kind");
    return false;
  }

  void readAs(std::string_view type, std::uint64_t at, bool empty) {
    using Kind = gxRecord::Kind;
    if (same(type, "POLYGON")) return polygonAs(Kind::eRegion, empty);
    if (same(type, "MULTIPOLYGON")) return multiPolygon(empty);
    if (same(type, "LINESTRING")) return oneRing(Kind::eOpen, empty);
    if (same(type, "LINEARRING")) return oneRing(Kind::eRegion, empty);
    if (same(type, "POINT") || same(type, "MULTIPOINT")) return points(empty);
    if (same(type, "GEOMETRYCOLLECTION") && empty) return;
    refuse(type, at);
  }

  [[noreturn]] void refuse(std::string_view type, std::uint64_t at) const {
    static constexpr std::array<std::string_view, 11> kKnown = {"GEOMETRYCOLLECTION",
                                                                "MULTILINESTRING",
                                                                "CIRCULARSTRING",
                                                                "COMPOUNDCURVE",
                                                                "CURVEPOLYGON",
                                                                "MULTICURVE",
                                                                "MULTISURFACE",
                                                                "TRIANGLE",
                                                                "POLYHEDRALSURFACE",
                                                                "TIN",
                                                                "CURVE"};
    for (const auto known : kKnown) {
      if (same(type, known))
        throw gxReadError(Code::eUnsupported, at, std::string(known) + " is not read");
    }
    if (type.empty()) in_.failWanted("a word as POLYGON");
    throw gxReadError(Code::eBadSyntax, at,
                      "a word as POLYGON expected, found '" + std::string(type.substr(0, 40)) + "'");
  }

  void point() {
    const double x = in_.number();
    const double y = in_.number();
    in_.addPoint(record_, x, y);
    for (int more = 0; more < 2; ++more) {
      in_.skipSpace();
      if (in_.atEnd() || in_.peek() == ',' || in_.peek() == ')') return;
      in_.number();
      record_.hadMore = true;
    }
  }

  void ring(bool closed) {
    in_.want('(');
    do point();
    while (in_.take(','));
    in_.want(')');
    in_.endRing(record_, closed);
  }

  bool takesEmpty() {
    gx_TextScanner ahead = in_;
    if (!same(ahead.word(), "EMPTY")) return false;
    in_ = ahead;
    return true;
  }

  void polygon() {
    in_.want('(');
    do {
      if (takesEmpty())
        in_.endRing(record_, true);
      else
        ring(true);
    } while (in_.take(','));
    in_.want(')');
    record_.endPart();
  }

  void polygonAs(gxRecord::Kind kind, bool empty) {
    record_.kind = kind;
    if (!empty) polygon();
  }

  void multiPolygon(bool empty) {
    record_.kind = gxRecord::Kind::eSet;
    if (empty) return;
    in_.want('(');
    do {
      if (takesEmpty())
        record_.endPart();
      else
        polygon();
    } while (in_.take(','));
    in_.want(')');
  }

  void oneRing(gxRecord::Kind kind, bool empty) {
    record_.kind = kind;
    if (empty) return;
    ring(kind == gxRecord::Kind::eRegion);
    record_.endPart();
  }

  // POINT (1 2), MULTIPOINT (1 2, 3 4) and MULTIPOINT ((1 2), (3 4)).
  void points(bool empty) {
    record_.kind = gxRecord::Kind::ePoints;
    if (empty) return;
    in_.want('(');
    do {
      const bool inBrackets = in_.take('(');
      if (inBrackets || !takesEmpty()) point();
      if (inBrackets) in_.want(')');
    } while (in_.take(','));
    in_.want(')');
    in_.endRing(record_, false);
    record_.endPart();
  }

  gx_TextScanner in_;
  gxRecord& record_;
};

void appendPoint(const gxVector<2>& p, std::string& out) {
  gfAppendNumber(p.x(), out);
  out += ' ';
  gfAppendNumber(p.y(), out);
}

void appendRing(std::span<const gxVector<2>> ring, bool closed, std::string& out) {
  if (ring.empty()) {
    out += "EMPTY";
    return;
  }
  out += '(';
  for (const auto& p : ring) {
    appendPoint(p, out);
    out += ", ";
  }
  if (closed)
    appendPoint(ring[0], out);
  else
    out.resize(out.size() - 2);
  out += ')';
}

void appendPart(const gxRecord& record, std::size_t part, std::string& out) {
  const std::size_t first = record.firstRing(part);
  if (first == record.partEnds[part]) {
    out += "EMPTY";
    return;
  }
  for (std::size_t r = first; r < record.partEnds[part]; ++r) {
    out += r == first ? "(" : ", ";
    appendRing(record.ring(r), true, out);
  }
  out += ')';
}

void appendSet(const gxRecord& record, std::string& out) {
  if (record.partCount() == 0) {
    out += "MULTIPOLYGON EMPTY";
    return;
  }
  out += "MULTIPOLYGON (";
  for (std::size_t p = 0; p < record.partCount(); ++p) {
    if (p > 0) out += ", ";
    appendPart(record, p, out);
  }
  out += ')';
}

}  // namespace

void gfReadWkt(std::string_view text, gxRecord& record, const gxReadLimits& limits) {
  WktReader(text, limits, record).read();
  record.dropEmptyRing();
}

void gfAppendWkt(const gxRecord& record, std::string& out) {
  using Kind = gxRecord::Kind;
  const bool none = record.partCount() == 0 || record.ringCount() == 0;
  switch (record.kind) {
    case Kind::eEmpty: out += "GEOMETRYCOLLECTION EMPTY"; return;
    case Kind::eSet: appendSet(record, out); return;
    case Kind::eRegion:
      out += "POLYGON ";
      if (none)
        out += "EMPTY";
      else
        appendPart(record, 0, out);
      return;
    case Kind::eOpen:
      out += "LINESTRING ";
      appendRing(none ? std::span<const gxVector<2>>() : record.ring(0), false, out);
      return;
    case Kind::ePoints: {
      const auto points = none ? std::span<const gxVector<2>>() : record.ring(0);
      out += points.size() == 1 ? "POINT " : "MULTIPOINT ";
      appendRing(points, false, out);
      return;
    }
  }
}
