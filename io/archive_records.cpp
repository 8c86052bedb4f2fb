// Archives.  A frame is cut by the length in its head, so that every object is loaded for itself and a
// damaged one is told by its number.  Edge points are stored as a contour: the record of an edge region has
// no place for them.
#include <io/archive_records.h>
#include <io/internal/byte_scanner.h>

#include <ch_core/cntrtmpl.h>
#include <velstd/archive.h>

#include <charconv>
#include <memory>

namespace {

using Code = gxReadError::Code;

constexpr std::size_t kHeadBytes = 20;  // magic, number of the format, length
constexpr std::size_t kSumBytes = 8;

Code codeOf(const gxArchive::Errors& error) {
  if (dynamic_cast<const gxArchive::Truncated*>(&error) != nullptr) return Code::eTruncated;
  if (dynamic_cast<const gxArchive::BadChecksum*>(&error) != nullptr) return Code::eBadChecksum;
  if (dynamic_cast<const gxArchive::LimitExceeded*>(&error) != nullptr) return Code::eTooMany;
  if (dynamic_cast<const gxArchive::UnknownClass*>(&error) != nullptr) return Code::eUnsupported;
  if (dynamic_cast<const gxArchive::UnknownVersion*>(&error) != nullptr) return Code::eUnsupported;
  return Code::eBadSyntax;
}

void assign(const gxPersistent& object, std::uint64_t number, std::uint64_t byte, gxRecord& record) {
  if (const auto* set = dynamic_cast<const gxRegionSet*>(&object)) return record.assign(*set);
  if (const auto* region = dynamic_cast<const gxRegion*>(&object)) return record.assign(*region);
  if (const auto* contour = dynamic_cast<const gxContour*>(&object)) return record.assign(*contour);
  throw gxReadError(Code::eUnsupported, number, byte, "an object that is no shape");
}

std::size_t frameBytes(std::string_view file, std::size_t at) {
  gx_ByteScanner in(file.data() + at, file.size() - at);
  if (in.left() < kHeadBytes) return in.left();
  in.skip(12, "a head");
  const auto length = in.readUnchecked<std::uint64_t>();
  const std::size_t rest = file.size() - at;
  return length < rest ? (std::min)(rest, static_cast<std::size_t>(length) + kHeadBytes + kSumBytes)
                       : rest;
}

void loadFrame(std::string_view frame, std::uint64_t number, std::uint64_t byte, gxRecord& record) {
  try {
    gxArchive archive(std::span(reinterpret_cast<const unsigned char*>(frame.data()), frame.size()));
    const auto object = archive.loadNew();
    if (object == nullptr) throw gxReadError(Code::eUnsupported, number, byte, "a null object");
    assign(*object, number, byte, record);
  } catch (const gxArchive::Errors& error) {
    throw gxReadError(codeOf(error), number, byte + error.byteOffset(), error.what());
  } catch (const gxException& error) {
    throw gxReadError(Code::eBadSyntax, number, byte, error.what());
  }
}

std::uint32_t labelOf(const gxRecordId& id) {
  std::uint32_t label = 0;
  if (!id.isNumber) return 0;
  const auto [end, error] = std::from_chars(id.text.data(), id.text.data() + id.text.size(), label);
  return error == std::errc() && end == id.text.data() + id.text.size() ? label : 0;
}

std::vector<gxEdgelet> edgesOf(const gxRecord& record) {
  std::vector<gxEdgelet> edges;
  for (std::size_t i = 0; i < record.points.size(); ++i) {
    edges.emplace_back(record.points[i], record.magnitudes[i], gxAngle8(record.angles[i]));
  }
  return edges;
}

void storeLabelled(gxContour& contour, const gxRecord& record, gxArchive& archive) {
  contour.label(labelOf(record.id));
  archive.store(contour);
}

void store(const gxRecord& record, gxArchive& archive) {
  using Kind = gxRecord::Kind;
  if (record.kind == Kind::eSet) return archive.store(record.toSet());
  if (record.hasEdges() && record.ringCount() == 1) {
    gxContourT<gxEdgelet> contour(edgesOf(record));
    contour.isClosed(record.kind == Kind::eRegion);
    return storeLabelled(contour, record, archive);
  }
  if (record.kind == Kind::eRegion || record.kind == Kind::eEmpty) {
    gxRegion region = record.toRegion();
    return storeLabelled(region, record, archive);
  }
  gxContour contour = record.toContour();
  if (record.kind == Kind::ePoints) contour.isClosed(false);
  storeLabelled(contour, record, archive);
}

}  // namespace

void gfReadArchive(std::string_view file, const std::function<void(const gxRecord&)>& take) {
  gxRecord record;
  std::uint64_t number = 0;
  for (std::size_t at = 0; at < file.size();) {
    const std::size_t bytes = frameBytes(file, at);
    loadFrame(file.substr(at, bytes), ++number, at, record);
    record.number = number;
    record.byte = at;
    take(record);
    at += bytes;
  }
}

void gfAppendArchive(const gxRecord& record, std::string& out) {
  gxArchive archive;
  store(record, archive);
  const auto bytes = archive.bytes();
  out.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}
