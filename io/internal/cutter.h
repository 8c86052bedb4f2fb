/// Cutting a file into records: what all formats share.
#pragma once

#include <io/internal/input_block.h>
#include <io/reader.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Cuts one record after the other off the front of a window on the stream.  How, the classes behind the
/// makers below know.
class gx_Cutter {
 public:
  gx_Cutter(std::unique_ptr<gx_InputBlock> in, const gxReadOptions& options)
      : in_(std::move(in)), limits_(options.limits), number_(options.firstNumber) {}
  virtual ~gx_Cutter() = default;
  gx_Cutter(const gx_Cutter&) = delete;
  gx_Cutter& operator=(const gx_Cutter&) = delete;

  bool cut(gxRawRecord& raw) {
    in_->drop(used_);
    used_ = 0;
    error_.reset();
    raw = {};
    if (!cutNext(raw)) return false;
    raw.number = number_++;
    raw.error = error_ ? &*error_ : nullptr;
    return true;
  }
  virtual bool hasBuffered() const { return false; }
  std::uint64_t bytesCut() const { return in_->byte() + used_; }

 protected:
  virtual bool cutNext(gxRawRecord& raw) = 0;

  // Finds `c` from `from` on, reading more as needed; npos at the end or beyond the limit.
  std::size_t find(char c, std::size_t from) {
    while (true) {
      const std::size_t found = in_->text().find(c, from);
      if (found != std::string_view::npos) return found;
      from = in_->text().size();
      if (from > limits_.recordBytes || !in_->fill()) return std::string_view::npos;
    }
  }

  bool have(std::size_t bytes) {
    while (in_->text().size() < bytes) {
      if (!in_->fill()) return false;
    }
    return true;
  }

  // Leaves a record of which only `byte` is known, with what is wrong with it.
  void fail(gxRawRecord& raw, gxReadError::Code code, std::uint64_t byte, const std::string& cause) {
    raw.text = {};
    raw.byte = byte;
    error_.emplace(code, number_, byte, cause);
  }
  void failTooLong(gxRawRecord& raw, std::uint64_t byte) {
    fail(raw, gxReadError::Code::eTooLong, byte,
         "a record of more than " + std::to_string(limits_.recordBytes) + " bytes");
  }

  std::unique_ptr<gx_InputBlock> in_;
  gxReadLimits limits_;
  std::uint64_t number_;
  std::size_t used_ = 0;  // of the window, by the record that was cut last
  std::optional<gxReadError> error_;
};

/// Make a cutter of one kind of file.  `input` stands at the first byte that is no mark of byte order.
/// Throw: gxReadError where the head of the file is broken.
std::unique_ptr<gx_Cutter> gf_LineCutter(std::unique_ptr<gx_InputBlock> input,
                                         const gxReadOptions& options);
/// Reads the names of the columns, too.
std::unique_ptr<gx_Cutter> gf_RowCutter(std::unique_ptr<gx_InputBlock> input,
                                        const gxReadOptions& options, gxCsvColumns& columns);
std::unique_ptr<gx_Cutter> gf_ObjectCutter(std::unique_ptr<gx_InputBlock> input,
                                           const gxReadOptions& options);
std::unique_ptr<gx_Cutter> gf_FrameCutter(std::unique_ptr<gx_InputBlock> input,
                                          const gxReadOptions& options);
/// `format` is eNpz or eArchive.
std::unique_ptr<gx_Cutter> gf_LoadedCutter(std::unique_ptr<gx_InputBlock> input,
                                           const gxReadOptions& options, gxFormat format);
