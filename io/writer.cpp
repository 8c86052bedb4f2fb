// What stands around records: heads, commas, ends.  The arrays of .npz are the one format that is written
// at the end.
#include <io/archive_records.h>
#include <io/internal/byte_scanner.h>
#include <io/json.h>
#include <io/wkb.h>
#include <io/wkt.h>
#include <io/writer.h>

#include <ostream>
#include <stdexcept>

gxRecordWriter::gxRecordWriter(std::ostream& stream, gxFormat format)
    : stream_(stream), format_(format) {
  if (format == gxFormat::eUnknown) throw std::invalid_argument("a format to write is wanted");
}

gxRecordWriter::~gxRecordWriter() = default;

void gxRecordWriter::append(gxFormat format, const gxRecord& record, std::string& text, bool csvEdges) {
  switch (format) {
    case gxFormat::eWkt: gfAppendWkt(record, text); break;
    case gxFormat::eWkb: gfAppendWkbHex(record, text); break;
    case gxFormat::eGeoJson: gfAppendGeoJson(record, text); return;
    case gxFormat::eJsonl: gfAppendJson(record, text); break;
    case gxFormat::eCsv: gfAppendCsv(record, csvEdges, text); return;
    case gxFormat::eArchive: gfAppendArchive(record, text); return;
    default: gfAppendRagged(record, text); return;
  }
  text += '\n';
}

void gxRecordWriter::begin(bool csvEdges) {
  if (begun_) return;
  begun_ = true;
  csvEdges_ = csvEdges;
  if (format_ == gxFormat::eGeoJson) stream_ << "{\"type\":\"FeatureCollection\",\"features\":[";
  if (format_ == gxFormat::eCsv) stream_ << gfCsvHead(csvEdges);
  if (format_ == gxFormat::eRagged) {
    std::string head(gnRaggedMark);
    gx_appendLittle(std::uint32_t{1}, head);
    gx_appendLittle(std::uint32_t{0}, head);
    stream_ << head;
  }
}

void gxRecordWriter::writeText(std::string_view text, bool csvEdges) {
  begin(csvEdges);
  ++count_;
  if (format_ == gxFormat::eNpz) {
    record_.clear();
    gfReadRagged(text, record_);
    arrays_.add(record_);
    return;
  }
  if (format_ == gxFormat::eGeoJson) stream_ << (count_ == 1 ? "\n" : ",\n");
  if (format_ == gxFormat::eRagged) {
    std::string length;
    gx_appendLittle(static_cast<std::uint32_t>(text.size()), length);
    stream_ << length;
  }
  stream_.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void gxRecordWriter::write(const gxRecord& record) {
  text_.clear();
  append(format_, record, text_, begun_ ? csvEdges_ : record.hasEdges());
  writeText(text_, record.hasEdges());
}

void gxRecordWriter::finish() {
  begin(false);
  if (format_ == gxFormat::eGeoJson) stream_ << "\n]}\n";
  if (format_ == gxFormat::eNpz) stream_ << arrays_.file();
  stream_.flush();
}
