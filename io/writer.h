/// Records into files.
#pragma once

#include <io/export.h>
#include <io/ragged.h>
#include <io/reader.h>
#include <io/record.h>

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

/// Writes records in any format.  Text of records can be made by other threads with `append`, and handed to
/// the writer in order.
class GXSHAPE_IO_API gxRecordWriter {
 public:
  /// Begins a file; nothing is written before the first record or `finish`.  Throws: std::invalid_argument
  /// for eUnknown.
  gxRecordWriter(std::ostream& stream, gxFormat format);
  gxRecordWriter(const gxRecordWriter&) = delete;
  gxRecordWriter& operator=(const gxRecordWriter&) = delete;
  ~gxRecordWriter();

  /// Appends the text of a record as it stands in such a file, line end included.  CSV has columns of edge points
  /// where `csvEdges`; `write` has them when the first record has some.
  static void append(gxFormat format, const gxRecord& record, std::string& text, bool csvEdges = false);
  /// Writes what `append` made, of one record.
  void writeText(std::string_view text, bool csvEdges = false);
  /// Writes a record.
  void write(const gxRecord& record);
  /// Writes what ends the file.  Without a record it is an empty one of its format.
  void finish();

 private:
  void begin(bool csvEdges);

  std::ostream& stream_;
  gxFormat format_;
  bool begun_ = false;
  bool csvEdges_ = false;
  std::uint64_t count_ = 0;
  std::string text_;
  gxRaggedArrays arrays_;
  gxRecord record_;
};
