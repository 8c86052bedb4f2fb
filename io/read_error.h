/// What a reader throws.
#pragma once

#include <io/export.h>

#include <cstdint>
#include <stdexcept>
#include <string>

/// A record, or a file, that cannot be read: which, where and why.  `what()` has all of it in a sentence.
class GXSHAPE_IO_API gxReadError : public std::runtime_error {
 public:
  /// The causes.  The numbers and words stay as they are; new ones are appended.
  enum class Code : int {
    eBadSyntax = 0,     ///< "bad_syntax": the text is not of the format
    eBadNumber = 1,     ///< "bad_number": no number, or one beyond the range of a double
    eBadType = 2,       ///< "bad_type": a value of another type than the format wants there
    eBadUtf8 = 3,       ///< "bad_utf8": text that is not UTF-8, a surrogate without its other half
    eTooDeep = 4,       ///< "too_deep": nested more deeply than the limit
    eTooLong = 5,       ///< "too_long": a record or an id with more bytes than the limit
    eTooMany = 6,       ///< "too_many": more rings or points than the limit
    eTruncated = 7,     ///< "truncated": ends in the middle
    eCompressed = 8,    ///< "compressed": gzip, zstd or a deflated member of a zip file
    eUnsupported = 9,   ///< "unsupported": of the format, and not read here
    eBadChecksum = 10,  ///< "bad_checksum": an archive that was damaged
  };

  /// Makes the error of a place in a record; the reader adds which record.
  gxReadError(Code code, std::uint64_t byte, const std::string& cause);
  gxReadError(Code code, std::uint64_t record, std::uint64_t byte, const std::string& cause);
  gxReadError(const gxReadError&) noexcept;
  gxReadError& operator=(const gxReadError&) noexcept;
  ~gxReadError() override;

  Code code() const noexcept { return code_; }
  /// Returns the word of the code.
  const char* name() const noexcept;
  /// Returns the number of the record, from 1; 0 where the whole file is meant.
  std::uint64_t record() const noexcept { return record_; }
  /// Returns where it was noticed, in bytes from the beginning of the file.
  std::uint64_t byte() const noexcept { return byte_; }
  /// Returns the cause alone: "number expected, found 'x'".
  const char* cause() const noexcept { return runtime_error::what() + causeAt_; }

 private:
  std::uint64_t record_;
  std::uint64_t byte_;
  std::size_t causeAt_;  // in the text of what()
  Code code_;
};
