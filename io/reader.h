/// Files, record by record.
#pragma once

#include <io/csv.h>
#include <io/export.h>
#include <io/limits.h>
#include <io/read_error.h>
#include <io/record.h>

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

class gx_Cutter;

/// The formats.  The numbers stay as they are.
enum class gxFormat : int {
  eUnknown = 0,
  eWkt = 1,      ///< a geometry of well-known text a line
  eWkb = 2,      ///< well-known binary in hexadecimal digits, one a line
  eGeoJson = 3,  ///< a feature collection, features, or geometries
  eJsonl = 4,    ///< our JSON, one a line
  eCsv = 5,      ///< points, a line each
  eRagged = 6,   ///< the plain ragged file
  eNpz = 7,      ///< numpy's arrays
  eArchive = 8,  ///< the library's archive
};

/// Returns the word for a format: "wkt", "wkb", "geojson", "jsonl", "csv", "ragged", "npz", "gxa".
GXSHAPE_IO_API const char* gfFormatName(gxFormat format);
/// Returns the format of a word, eUnknown for one that is none.
GXSHAPE_IO_API gxFormat gfFormatOf(std::string_view name);
/// Tells the format by the first bytes of a file; some hundred are enough.
/// A byte order mark and empty lines are passed over.  eUnknown for no content, or what is of no format.
/// Throws: gxReadError "compressed" for gzip and zstd, "unsupported" for a JSON array.
GXSHAPE_IO_API gxFormat gfDetectFormat(std::string_view begin);

/// A record as it was cut from a file, not yet understood.
struct gxRawRecord {
  std::uint64_t number = 0;  ///< from 1
  std::uint64_t byte = 0;    ///< where it begins in the file
  std::string_view text;     ///< until the next record is cut
  /// What was wrong already while cutting ("too_long", "truncated"); then the text is empty.
  const gxReadError* error = nullptr;
};

struct gxReadOptions {
  gxFormat format = gxFormat::eUnknown;  ///< unknown: by content
  gxReadLimits limits{};
  std::string idField{};   ///< the property (GeoJSON) or member (JSON lines) with the id
  bool everyLine = false;  ///< in formats of lines: an empty line is a record too, and a wrong one
  std::uint64_t firstNumber = 1;
};

/// Reads a file from front to back.  Cutting it into records is separate from understanding them, so that
/// several threads may do the latter:
///
///     gxRecordReader reader(stream);
///     gxRecord record;
///     while (reader.next(record)) ...            // throws for a broken record; the next call goes on behind it
///
/// Memory: one record and a block of 1 MiB, whatever the length of the file; .npz and archives are read
/// whole.  One thread at a time may use a reader; `parse` may be called by any number.
class GXSHAPE_IO_API gxRecordReader {
 public:
  /// Throws: gxReadError where the content is of no format, or of one that is not read.
  explicit gxRecordReader(std::istream& stream, const gxReadOptions& options = {});
  gxRecordReader(const gxRecordReader&) = delete;
  gxRecordReader& operator=(const gxRecordReader&) = delete;
  ~gxRecordReader();

  gxFormat format() const;
  /// Cuts the next record; false at the end.  What is wrong with the record is in it.
  /// Throws: gxReadError (record 0) where reading cannot go on at all: braces that do not balance, a broken .npz.
  bool cut(gxRawRecord& raw);
  /// Understands a record that was cut, by this reader or another of the same file.
  /// Throws: gxReadError with number and byte.
  void parse(const gxRawRecord& raw, gxRecord& record) const;
  /// Cuts and understands.  Throws: as both; after an error in a record the next call goes on behind it.
  bool next(gxRecord& record);
  /// Tells whether a record could be cut without waiting for more of the file.
  bool hasBuffered() const;
  /// Returns how many bytes have been cut.
  std::uint64_t bytesCut() const;

 private:
  std::unique_ptr<gx_Cutter> cutter_;
  gxReadOptions options_;
  gxCsvColumns columns_;
};
