// Well-known binary.  Every count is compared with the bytes that are left before anything is read: a
// point takes 16 bytes, a ring at least 4, a polygon at least 9.
#include <io/internal/byte_scanner.h>
#include <io/wkb.h>

#include <limits>

namespace {

using Code = gxReadError::Code;

enum Type : std::uint32_t { kPoint = 1, kLine = 2, kPolygon = 3, kMultiPoint = 4, kMultiPolygon = 6 };

class WkbReader {
 public:
  WkbReader(std::span<const unsigned char> bytes, const gxReadLimits& limits, gxRecord& record)
      : in_(bytes.data(), bytes.size()), limits_(limits), record_(record) {}

  void read() {
    const std::uint64_t at = in_.byte();
    const std::uint32_t type = head();
    switch (type) {
      case kPoint: return points(1, true);
      case kLine: return line();
      case kPolygon: record_.kind = gxRecord::Kind::eRegion; return polygon();
      case kMultiPoint: return multiPoint();
      case kMultiPolygon: return multiPolygon();
      default: refuse(type, at);
    }
  }

  void wantEnd() const {
    if (in_.left() > 0) throw gxReadError(Code::eBadSyntax, in_.byte(), "bytes behind the geometry");
  }

 private:
  [[noreturn]] static void refuse(std::uint32_t type, std::uint64_t at) {
    const bool known = type >= 1 && type <= 17;
    throw gxReadError(
        known ? Code::eUnsupported : Code::eBadSyntax, at,
        "geometries of type " + std::to_string(type) + (known ? " are not read" : " do not exist"));
  }

  // Byte order and type; sets how many coordinates a point has.
  std::uint32_t head() {
    const std::uint64_t at = in_.byte();
    const auto order = in_.read<std::uint8_t>("the byte order");
    if (order > 1) throw gxReadError(Code::eBadSyntax, at, "a byte order of 0 or 1 expected");
    in_.bigEndian(order == 0);
    auto type = in_.read<std::uint32_t>("the type");
    more_ = ((type & 0x80000000U) != 0 ? 1U : 0U) + ((type & 0x40000000U) != 0 ? 1U : 0U);
    if ((type & 0x20000000U) != 0) in_.skip(4, "the reference system");
    type &= 0x1fffffffU;
    const std::uint32_t thousands = type / 1000;
    if (thousands > 3) return type;
    more_ += thousands == 3 ? 2 : (thousands > 0 ? 1 : 0);
    return type % 1000;
  }

  std::uint32_t memberHead(std::uint32_t wanted) {
    const std::uint64_t at = in_.byte();
    const std::uint32_t type = head();
    if (type != wanted) throw gxReadError(Code::eBadType, at, "a member of another type than the whole");
    return type;
  }

  std::uint32_t count(std::uint64_t leastBytes, const char* what) {
    const auto number = in_.read<std::uint32_t>(what);
    in_.want(number * leastBytes, what);
    return number;
  }

  void point() {
    const double x = in_.readUnchecked<double>();
    const double y = in_.readUnchecked<double>();
    for (std::uint32_t i = 0; i < more_; ++i) in_.readUnchecked<double>();
    record_.hadMore = record_.hadMore || more_ > 0;
    record_.points.emplace_back(x, y);
  }

  void pointsOfRing(bool closed) {
    const std::uint64_t at = in_.byte();
    const std::uint32_t number = count(16 + 8 * std::uint64_t{more_}, "points");
    if (number > limits_.points - record_.points.size()) tooMany("points", limits_.points, at);
    for (std::uint32_t i = 0; i < number; ++i) point();
    if (record_.ringEnds.size() >= limits_.rings) tooMany("rings", limits_.rings, at);
    record_.endRing(closed);
  }

  [[noreturn]] static void tooMany(const char* what, std::size_t limit, std::uint64_t at) {
    throw gxReadError(Code::eTooMany, at, "more than " + std::to_string(limit) + ' ' + what);
  }

  void line() {
    record_.kind = gxRecord::Kind::eOpen;
    pointsOfRing(false);
    record_.endPart();
  }

  void polygon() {
    const std::uint32_t rings = count(4, "rings");
    for (std::uint32_t r = 0; r < rings; ++r) pointsOfRing(true);
    if (rings > 0 || record_.kind == gxRecord::Kind::eSet) record_.endPart();
  }

  void multiPolygon() {
    record_.kind = gxRecord::Kind::eSet;
    const std::uint32_t parts = count(9, "polygons");
    for (std::uint32_t p = 0; p < parts; ++p) {
      memberHead(kPolygon);
      polygon();
    }
  }

  // A point without coordinates is one of NaN.
  void points(std::uint32_t number, bool mayBeEmpty) {
    record_.kind = gxRecord::Kind::ePoints;
    for (std::uint32_t i = 0; i < number; ++i) {
      in_.want(16 + 8 * std::uint64_t{more_}, "points");
      point();
      const gxVector<2>& p = record_.points.back();
      if (mayBeEmpty && p.x() != p.x() && p.y() != p.y()) record_.points.pop_back();
    }
    if (record_.points.empty()) return;
    record_.endRing(false);
    record_.endPart();
  }

  void multiPoint() {
    record_.kind = gxRecord::Kind::ePoints;
    const std::uint32_t number = count(21, "points");
    for (std::uint32_t i = 0; i < number; ++i) {
      memberHead(kPoint);
      in_.want(16 + 8 * std::uint64_t{more_}, "points");
      point();
    }
    if (number == 0) return;
    record_.endRing(false);
    record_.endPart();
  }

  gx_ByteScanner in_;
  const gxReadLimits& limits_;
  gxRecord& record_;
  std::uint32_t more_ = 0;
};

// ---- Writing -------------------------------------------------------------------------------------------

void appendHead(std::uint32_t type, std::string& out) {
  out += '\1';
  gx_appendLittle(type, out);
}

void appendCount(std::size_t count, std::string& out) {
  gx_appendLittle(static_cast<std::uint32_t>(count), out);
}

void appendPoint(const gxVector<2>& p, std::string& out) {
  gx_appendLittle(p.x(), out);
  gx_appendLittle(p.y(), out);
}

void appendRing(std::span<const gxVector<2>> ring, bool closed, std::string& out) {
  appendCount(ring.size() + (closed && !ring.empty() ? 1 : 0), out);
  for (const auto& p : ring) appendPoint(p, out);
  if (closed && !ring.empty()) appendPoint(ring[0], out);
}

void appendPolygon(const gxRecord& record, std::size_t part, std::string& out) {
  appendHead(kPolygon, out);
  if (part >= record.partCount()) return appendCount(0, out);
  appendCount(record.partEnds[part] - record.firstRing(part), out);
  for (std::size_t r = record.firstRing(part); r < record.partEnds[part]; ++r)
    appendRing(record.ring(r), true, out);
}

void appendPoints(std::span<const gxVector<2>> points, std::string& out) {
  if (points.size() != 1) {
    appendHead(kMultiPoint, out);
    appendCount(points.size(), out);
  }
  for (const auto& p : points) {
    appendHead(kPoint, out);
    appendPoint(p, out);
  }
}

int digitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

void gfReadWkb(std::span<const unsigned char> bytes, gxRecord& record, const gxReadLimits& limits) {
  // A collection without members is how nothing at all is written.
  static constexpr unsigned char kNothing[9] = {1, 7, 0, 0, 0, 0, 0, 0, 0};
  if (bytes.size() == 9 && std::memcmp(bytes.data(), kNothing, 9) == 0) return;
  WkbReader reader(bytes, limits, record);
  reader.read();
  reader.wantEnd();
  record.dropEmptyRing();
}

void gfReadWkbHex(std::string_view digits, gxRecord& record, const gxReadLimits& limits) {
  while (!digits.empty() && (digits.back() == ' ' || digits.back() == '\r' || digits.back() == '\t')) {
    digits.remove_suffix(1);
  }
  std::string bytes(digits.size() / 2, '\0');
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const int digit = digitOf(digits[i]);
    if (digit < 0) throw gxReadError(Code::eBadSyntax, i, "a hexadecimal digit expected");
    if (i / 2 == bytes.size()) throw gxReadError(Code::eTruncated, i, "an odd number of digits");
    bytes[i / 2] = static_cast<char>(static_cast<unsigned char>(bytes[i / 2]) << 4 | digit);
  }
  try {
    gfReadWkb({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()}, record, limits);
  } catch (const gxReadError& error) {
    throw gxReadError(error.code(), 2 * error.byte(), error.cause());
  }
}

void gfAppendWkb(const gxRecord& record, std::string& out) {
  using Kind = gxRecord::Kind;
  const auto first = record.ringCount() == 0 ? std::span<const gxVector<2>>() : record.ring(0);
  switch (record.kind) {
    case Kind::eEmpty: appendHead(7, out); return appendCount(0, out);
    case Kind::eRegion: return appendPolygon(record, 0, out);
    case Kind::eSet:
      appendHead(kMultiPolygon, out);
      appendCount(record.partCount(), out);
      for (std::size_t p = 0; p < record.partCount(); ++p) appendPolygon(record, p, out);
      return;
    case Kind::eOpen: appendHead(kLine, out); return appendRing(first, false, out);
    case Kind::ePoints: return appendPoints(first, out);
  }
}

void gfAppendWkbHex(const gxRecord& record, std::string& out) {
  std::string bytes;
  gfAppendWkb(record, bytes);
  constexpr const char* kDigits = "0123456789ABCDEF";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
  }
}
