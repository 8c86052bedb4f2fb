// Cutting what is no text.
//
//   frames    the plain ragged file: by the length in front of each record.
//   loaded    .npz and archives, read whole, become ragged records in memory.
#include <io/archive_records.h>
#include <io/internal/byte_scanner.h>
#include <io/internal/cutter.h>
#include <io/ragged.h>

#include <deque>

using Code = gxReadError::Code;

namespace {

class Frames final : public gx_Cutter {
 public:
  Frames(std::unique_ptr<gx_InputBlock> in, const gxReadOptions& options)
      : gx_Cutter(std::move(in), options) {
    if (!have(16)) throw gxReadError(Code::eTruncated, in_->text().size(), "ends within its head");
    gx_ByteScanner head(in_->text().data() + 8, 8);
    const auto version = head.readUnchecked<std::uint32_t>();
    if (version != 1)
      throw gxReadError(Code::eUnsupported, 8, "version " + std::to_string(version) + " is not read");
    in_->drop(16);
  }

 protected:
  bool cutNext(gxRawRecord& raw) override {
    if (!have(1)) return false;
    if (!have(4)) throw gxReadError(Code::eTruncated, in_->byte(), "ends within the length of a record");
    gx_ByteScanner head(in_->text().data(), 4);
    const std::size_t length = head.readUnchecked<std::uint32_t>();
    raw.byte = in_->byte() + 4;
    if (length > limits_.recordBytes) {
      failTooLong(raw, raw.byte);
      passOver(length + 4);
      return true;
    }
    if (!have(length + 4)) throw gxReadError(Code::eTruncated, in_->byte(), "ends within a record");
    raw.text = in_->text().substr(4, length);
    used_ = length + 4;
    return true;
  }

 private:
  void passOver(std::size_t bytes) {
    while (bytes > 0 && have(1)) {
      const std::size_t part = (std::min)(bytes, in_->text().size());
      in_->drop(part);
      bytes -= part;
    }
  }
};

class Loaded final : public gx_Cutter {
 public:
  Loaded(std::unique_ptr<gx_InputBlock> in, const gxReadOptions& options, gxFormat format)
      : gx_Cutter(std::move(in), options) {
    const std::size_t most = 16 * limits_.recordBytes;
    while (in_->text().size() <= most && in_->fill()) {}
    if (in_->text().size() > most) {
      throw gxReadError(Code::eTooLong, 0,
                        "a file of more than " + std::to_string(most) + " bytes, which is read whole");
    }
    size_ = in_->text().size();
    if (format == gxFormat::eNpz) {
      arrays_.emplace(in_->text());
    } else {
      readArchive();
    }
    in_->drop(size_);
  }

 protected:
  bool cutNext(gxRawRecord& raw) override {
    body_.clear();
    if (arrays_ && next_ < arrays_->size()) {
      arrays_->get(next_++, record_);
      gfAppendRagged(record_, body_);
    } else if (!bodies_.empty()) {
      body_ = std::move(bodies_.front().second);
      raw.byte = bodies_.front().first;
      bodies_.pop_front();
    } else if (broken_) {
      fail(raw, broken_->code(), broken_->byte(), broken_->cause());
      broken_.reset();
      return true;
    } else {
      return false;
    }
    raw.text = body_;
    return true;
  }

 private:
  void readArchive() {
    try {
      gfReadArchive(in_->text(), [this](const gxRecord& record) {
        bodies_.emplace_back(record.byte, std::string());
        gfAppendRagged(record, bodies_.back().second);
      });
    } catch (const gxReadError& error) {
      broken_.emplace(error);
    }
  }

  std::size_t size_ = 0;
  std::optional<gxRaggedArrays> arrays_;
  std::size_t next_ = 0;
  std::deque<std::pair<std::uint64_t, std::string>> bodies_;
  std::optional<gxReadError> broken_;
  gxRecord record_;
  std::string body_;
};

}  // namespace

std::unique_ptr<gx_Cutter> gf_FrameCutter(std::unique_ptr<gx_InputBlock> input,
                                          const gxReadOptions& options) {
  return std::make_unique<Frames>(std::move(input), options);
}

std::unique_ptr<gx_Cutter> gf_LoadedCutter(std::unique_ptr<gx_InputBlock> input,
                                           const gxReadOptions& options, gxFormat format) {
  return std::make_unique<Loaded>(std::move(input), options, format);
}
