// Reading a file:
//
//   1. The first bytes tell the format.
//   2. A cutter (io/internal/cut_*.cpp) parts the file into records, as text; one that is longer than the
//      limit is passed over while it is read, so that it takes no more memory than the limit.
//   3. The reader of the format understands the text of a record, and the place of an error in it becomes one
//      in the file.
#include <io/internal/cutter.h>
#include <io/json.h>
#include <io/ragged.h>
#include <io/reader.h>
#include <io/wkb.h>
#include <io/wkt.h>

using Code = gxReadError::Code;

gxRecordReader::gxRecordReader(std::istream& stream, const gxReadOptions& options) : options_(options) {
  auto in = std::make_unique<gx_InputBlock>(stream);
  constexpr std::size_t kEnough = 4096;
  // A first line is enough too: whoever sends one and waits for its answer sends no more.
  while (in->text().size() < kEnough && in->text().find('\n') == std::string_view::npos && in->fill()) {}
  if (options_.format == gxFormat::eUnknown) options_.format = gfDetectFormat(in->text());
  if (in->text().starts_with("\xef\xbb\xbf")) in->drop(3);
  switch (options_.format) {
    case gxFormat::eUnknown:
      if (in->text().find_first_not_of(" \t\r\n") != std::string_view::npos) {
        throw gxReadError(Code::eBadSyntax, 0, "the content is of no known format");
      }
      cutter_ = gf_LineCutter(std::move(in), options_);
      break;
    case gxFormat::eWkt:
    case gxFormat::eWkb:
    case gxFormat::eJsonl: cutter_ = gf_LineCutter(std::move(in), options_); break;
    case gxFormat::eCsv: cutter_ = gf_RowCutter(std::move(in), options_, columns_); break;
    case gxFormat::eGeoJson: cutter_ = gf_ObjectCutter(std::move(in), options_); break;
    case gxFormat::eRagged: cutter_ = gf_FrameCutter(std::move(in), options_); break;
    case gxFormat::eNpz:
    case gxFormat::eArchive: cutter_ = gf_LoadedCutter(std::move(in), options_, options_.format); break;
  }
}

gxRecordReader::~gxRecordReader() = default;

gxFormat gxRecordReader::format() const {
  return options_.format;
}
bool gxRecordReader::cut(gxRawRecord& raw) {
  return cutter_->cut(raw);
}
bool gxRecordReader::hasBuffered() const {
  return cutter_->hasBuffered();
}
std::uint64_t gxRecordReader::bytesCut() const {
  return cutter_->bytesCut();
}

void gxRecordReader::parse(const gxRawRecord& raw, gxRecord& record) const {
  record.clear();
  record.number = raw.number;
  record.byte = raw.byte;
  if (raw.error != nullptr) throw gxReadError(*raw.error);
  try {
    switch (options_.format) {
      case gxFormat::eWkt: gfReadWkt(raw.text, record, options_.limits); break;
      case gxFormat::eWkb: gfReadWkbHex(raw.text, record, options_.limits); break;
      case gxFormat::eGeoJson: gfReadGeoJson(raw.text, record, options_.limits, options_.idField); break;
      case gxFormat::eJsonl: gfReadJson(raw.text, record, options_.limits, options_.idField); break;
      case gxFormat::eCsv: gfReadCsv(raw.text, columns_, record, options_.limits); break;
      default: gfReadRagged(raw.text, record, options_.limits); break;
    }
  } catch (const gxReadError& error) {
    throw gxReadError(error.code(), raw.number, raw.byte + error.byte(), error.cause());
  }
}

bool gxRecordReader::next(gxRecord& record) {
  gxRawRecord raw;
  if (!cut(raw)) return false;
  parse(raw, record);
  return true;
}
