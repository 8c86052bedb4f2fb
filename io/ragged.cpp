// The plain ragged form of one record.  All counts stand in front, so that the length of the body follows
// from them and is compared before anything is reserved.
#include <io/internal/byte_scanner.h>
#include <io/ragged.h>

namespace {

using Code = gxReadError::Code;

constexpr unsigned kHasId = 1;
constexpr unsigned kIdIsNumber = 2;
constexpr unsigned kHasEdges = 4;

struct Head {
  std::uint8_t kind, flags;
  std::uint32_t idBytes, parts, rings;
  std::uint64_t points;
};

Head readHead(gx_ByteScanner& in, const gxReadLimits& limits) {
  Head h{};
  h.kind = in.read<std::uint8_t>("the head of a record");
  h.flags = in.read<std::uint8_t>("the head of a record");
  in.skip(2, "the head of a record");
  h.idBytes = in.read<std::uint32_t>("the head of a record");
  h.parts = in.read<std::uint32_t>("the head of a record");
  h.rings = in.read<std::uint32_t>("the head of a record");
  h.points = in.read<std::uint64_t>("the head of a record");
  if (h.kind > 4)
    throw gxReadError(Code::eBadType, 0, "the kind " + std::to_string(h.kind) + " does not exist");
  if (h.flags > 7) throw gxReadError(Code::eUnsupported, 1, "flags of a later version");
  if (h.idBytes > limits.idBytes) throw gxReadError(Code::eTooLong, 4, "an id of too many bytes");
  if (h.parts > limits.rings || h.rings > limits.rings)
    throw gxReadError(Code::eTooMany, 8, "too many rings");
  if (h.points > limits.points) throw gxReadError(Code::eTooMany, 16, "too many points");
  return h;
}

template <class Number>
void readEnds(gx_ByteScanner& in, std::size_t count, std::uint64_t last,
              std::vector<std::size_t>& ends) {
  std::uint64_t before = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t at = in.byte();
    const std::uint64_t end = in.readUnchecked<Number>();
    if (end < before || end > last)
      throw gxReadError(Code::eBadSyntax, at, "an offset that falls, or lies beyond the end");
    ends.push_back(static_cast<std::size_t>(end));
    before = end;
  }
  if (before != last) throw gxReadError(Code::eBadSyntax, in.byte(), "offsets that end too early");
}

}  // namespace

void gfReadRagged(std::string_view body, gxRecord& record, const gxReadLimits& limits) {
  gx_ByteScanner in(body.data(), body.size());
  const Head h = readHead(in, limits);
  const bool edges = (h.flags & kHasEdges) != 0;
  const std::uint64_t size = h.parts * std::uint64_t{4} + h.rings * std::uint64_t{8} +
                             h.points * std::uint64_t{edges ? 19U : 16U} + h.idBytes;
  if (size > in.left()) throw gxReadError(Code::eTruncated, body.size(), "shorter than its counts say");
  if (size < in.left()) throw gxReadError(Code::eBadSyntax, 24 + size, "longer than its counts say");
  record.kind = static_cast<gxRecord::Kind>(h.kind);
  readEnds<std::uint32_t>(in, h.parts, h.rings, record.partEnds);
  readEnds<std::uint64_t>(in, h.rings, h.points, record.ringEnds);
  for (std::uint64_t i = 0; i < h.points; ++i) {
    const double x = in.readUnchecked<double>();
    record.points.emplace_back(x, in.readUnchecked<double>());
  }
  for (std::uint64_t i = 0; edges && i < h.points; ++i)
    record.magnitudes.push_back(in.readUnchecked<std::uint16_t>());
  for (std::uint64_t i = 0; edges && i < h.points; ++i)
    record.angles.push_back(in.readUnchecked<std::uint8_t>());
  record.id.isGiven = (h.flags & kHasId) != 0;
  record.id.isNumber = (h.flags & kIdIsNumber) != 0;
  record.id.text.assign(reinterpret_cast<const char*>(in.at()), h.idBytes);
}

void gfAppendRagged(const gxRecord& record, std::string& out) {
  const unsigned flags = (record.id.isGiven ? kHasId : 0U) | (record.id.isNumber ? kIdIsNumber : 0U) |
                         (record.hasEdges() ? kHasEdges : 0U);
  gx_appendLittle(static_cast<std::uint8_t>(record.kind), out);
  gx_appendLittle(static_cast<std::uint8_t>(flags), out);
  gx_appendLittle(std::uint16_t{0}, out);
  gx_appendLittle(static_cast<std::uint32_t>(record.id.text.size()), out);
  gx_appendLittle(static_cast<std::uint32_t>(record.partCount()), out);
  gx_appendLittle(static_cast<std::uint32_t>(record.ringCount()), out);
  gx_appendLittle(static_cast<std::uint64_t>(record.points.size()), out);
  for (const std::size_t end : record.partEnds) gx_appendLittle(static_cast<std::uint32_t>(end), out);
  for (const std::size_t end : record.ringEnds) gx_appendLittle(static_cast<std::uint64_t>(end), out);
  for (const auto& p : record.points) {
    gx_appendLittle(p.x(), out);
    gx_appendLittle(p.y(), out);
  }
  for (const std::uint16_t magnitude : record.magnitudes) gx_appendLittle(magnitude, out);
  for (const std::uint8_t angle : record.angles) gx_appendLittle(angle, out);
  out += record.id.text;
}
