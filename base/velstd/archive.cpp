// Passes and frames.
//
//   1. A frame is a header (8 bytes that no text file begins with, the format's number, the length of
//      what follows), the payload, and a checksum over both.
//   2. Storing builds the frame in memory and fills in the length at the end; only then does a stream
//      see it, in one piece.  An exception cuts the buffer back, and nothing has been stored.
//   3. Loading looks at the header first: nothing is fetched or allocated for a length that the limits
//      refuse, and a stream is read in pieces that double, so that a false length costs no more than
//      twice what the stream holds.  Then the checksum; only then the payload is interpreted.
//   4. What a checksum cannot promise (it is no signature) each field checks for itself.
//
// Streaming the payload straight through, checksum last, was the other choice: it saves a copy and
// loses the guarantee that no object changes for a frame that is damaged.
#include <velstd/archive.h>
#include <velstd/internal/archive_frame.h>
#include <velstd/internal/archive_number.h>
#include <velstd/internal/archive_pass.h>
#include <velstd/internal/archive_sum.h>

#include <algorithm>
#include <istream>
#include <new>
#include <ostream>
#include <utility>

#if defined(__GLIBCXX__)
#  include <cxxabi.h>
#endif

namespace {

constexpr std::size_t kHeader = gx_ArchiveFrame::kHeader;
constexpr std::size_t kSum = gx_ArchiveFrame::kSum;
constexpr std::size_t kFirstPiece = 1U << 16U;

/// Runs `call` on a stream's buffer; what it throws is the stream's failure.  Two things are not: that
/// memory ran out, which the caller may mend, and the end of a thread that is being cancelled.
template <class Call>
void onStream(const wchar_t* failure, const Call& call) {
  try {
    call();
  } catch (const std::bad_alloc&) {
    throw;
#if defined(__GLIBCXX__)
  } catch (const abi::__forced_unwind&) {
    throw;
#endif
  } catch (...) {
    throw gxArchive::FileError(failure);
  }
}

}  // namespace

// ---- Making an archive ------------------------------------------------------------------------------

gxArchive::gxArchive() : direction_(Direction::eStoring) {}

gxArchive::gxArchive(std::span<const unsigned char> bytes)
    : direction_(Direction::eLoading),
      begin_(bytes.data()),
      cursor_(bytes.data()),
      end_(bytes.data() + bytes.size()) {}

gxArchive::gxArchive(std::iostream& stream, Direction direction)
    : direction_(direction),
      out_(direction == Direction::eStoring ? &stream : nullptr),
      in_(direction == Direction::eLoading ? &stream : nullptr) {}

gxArchive::gxArchive(std::ostream& stream) : direction_(Direction::eStoring), out_(&stream) {}

gxArchive::gxArchive(std::istream& stream) : direction_(Direction::eLoading), in_(&stream) {}

gxArchive::gxArchive(std::vector<unsigned char>&& owned, const Limits& limits)
    : direction_(Direction::eLoading), limits_(limits), buffer_(std::move(owned)) {
  begin_ = cursor_ = buffer_.data();
  end_ = begin_ + buffer_.size();
}

gxArchive::~gxArchive() = default;

void gxArchive::checkLimits_(const Limits& limits) {
  if (limits.nesting <= kMostNesting) return;
  throw LimitExceeded(L"a nesting of " + std::to_wstring(limits.nesting) + L" levels cannot be set, " +
                      std::to_wstring(kMostNesting) + L" is the most");
}

std::span<const unsigned char> gxArchive::bytes() const noexcept {
  if (isLoading()) return {};
  return buffer_;
}

bool gxArchive::atEnd() const {
  if (isStoring()) return true;
  if (in_ == nullptr) return cursor_ == end_;
  return !in_->good() || in_->rdbuf() == nullptr ||
         in_->rdbuf()->sgetc() == std::istream::traits_type::eof();
}

// ---- Passes -----------------------------------------------------------------------------------------

/// Makes a pass the archive's running one, and puts back whatever was there.
class gxArchive::Running {
 public:
  explicit Running(gxArchive& archive) : archive_(archive) {
    if (archive.pass_ != nullptr) throw BadFormat(L"the archive is in the middle of a pass");
    archive_.pass_ = &pass;
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running() { archive_.pass_ = nullptr; }

  gx_ArchivePass pass;

 private:
  gxArchive& archive_;
};

std::uint64_t gxArchive::passAndLevel(std::uint16_t level) const noexcept {
  return pass_ == nullptr ? level : (pass_->number << kLevelBits) | level;
}

std::uint64_t gxArchive::offset_() const noexcept {
  return before_ + (isStoring() ? buffer_.size() : static_cast<std::size_t>(cursor_ - begin_));
}

void gxArchive::truncated_(std::size_t size) const {
  throw Truncated(L"the archive ends " + std::to_wstring(size - bytesLeft()) + L" bytes too early");
}

void gxArchive::store(const gxPersistent& object) {
  if (!isStoring()) throw BadFormat(L"the archive loads and cannot store");
  const Running running(*this);
  const std::size_t before = buffer_.size();
  try {
    beginFrame_();
    storeReference_(const_cast<gxPersistent*>(&object));
    endFrame_();
  } catch (Errors& error) {
    error.byteOffset(offset_());
    buffer_.resize(before);
    throw;
  } catch (...) {
    buffer_.resize(before);
    throw;
  }
}

void gxArchive::load(gxPersistent& object) {
  loadFrame_(&object, false);
}

std::unique_ptr<gxPersistent> gxArchive::loadNew() {
  return std::unique_ptr<gxPersistent>(loadFrame_(nullptr, false));
}

/// Loads a frame into `root`, or into a new object, which is returned and belongs to the caller.
gxPersistent* gxArchive::loadFrame_(gxPersistent* root, bool simple) {
  if (!isLoading()) throw BadFormat(L"the archive stores and cannot load");
  Running running(*this);
  running.pass.simple = simple;
  const unsigned char* const start = cursor_;
  const unsigned char* const end = end_;
  const auto restore = [&] {
    if (in_ == nullptr) {
      cursor_ = start;
      end_ = end;
    } else {
      cursor_ = end_;  // what was read of a stream cannot be given back
    }
  };
  try {
    openFrame_();
    gxPersistent* const loaded = loadReference_(root);
    if (cursor_ != end_) throw BadFormat(L"the frame goes on after its object");
    cursor_ += kSum;
    end_ = in_ == nullptr ? end : cursor_;
    if (root == nullptr) running.pass.loaded.front().owned = false;
    return loaded;
  } catch (Errors& error) {
    error.byteOffset(offset_());
    restore();
    throw;
  } catch (...) {
    restore();
    throw;
  }
}

void gxArchive::loadSimple_(gxPersistent& object) {
  if (!isLoading()) throw BadFormat(L"the archive stores and cannot load");
  if (pass_ == nullptr) {
    loadFrame_(&object, true);
    return;
  }
  // Inside a running pass: the record alone, which knows nothing of what the pass has visited.
  struct Aside {
    explicit Aside(gx_ArchivePass& running) : pass(running), simple(running.simple) {
      std::swap(pass.visits, visits);
      pass.simple = true;
    }
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;
    ~Aside() {
      std::swap(pass.visits, visits);
      pass.simple = simple;
    }
    gx_ArchivePass& pass;
    bool simple;
    gx_VisitSet visits;
  };
  const Aside aside(*pass_);
  object.dispatchSerialize(*this);
}

// ---- Frames -----------------------------------------------------------------------------------------

void gxArchive::beginFrame_() {
  frame_ = buffer_.size();
  unsigned char header[kHeader] = {};
  std::copy_n(gx_ArchiveFrame::kMagic, sizeof gx_ArchiveFrame::kMagic, header);
  gf_PutLittle(header + 8, gx_ArchiveFrame::kFormat);
  store_(header, sizeof header);
}

void gxArchive::endFrame_() {
  gf_PutLittle(buffer_.data() + frame_ + 12, std::uint64_t{buffer_.size() - frame_ - kHeader});
  unsigned char sum[kSum] = {};
  gf_PutLittle(sum, gf_ArchiveSum(buffer_.data() + frame_, buffer_.size() - frame_));
  buffer_.insert(buffer_.end(), sum, sum + sizeof sum);
  if (out_ == nullptr) return;
  write_();
  before_ += buffer_.size();
  buffer_.clear();
}

/// Gives the finished frame to the stream.  The stream's buffer is asked directly: its own write
/// would throw what the stream's exception mask says, and not tell what it left out.
void gxArchive::write_() {
  if (!out_->good() || out_->rdbuf() == nullptr) throw FileError(L"the stream is not ready");
  std::streamsize written = 0;
  bool flushed = false;
  onStream(L"the stream cannot be written", [&] {
    written = out_->rdbuf()->sputn(reinterpret_cast<const char*>(buffer_.data()),
                                   static_cast<std::streamsize>(buffer_.size()));
    flushed = out_->rdbuf()->pubsync() == 0;
  });
  if (static_cast<std::size_t>(written) != buffer_.size() || !flushed) {
    throw FileError(L"the stream took only a part of the archive");
  }
}

void gxArchive::openFrame_() {
  if (in_ != nullptr) {
    before_ += static_cast<std::uint64_t>(cursor_ - begin_);
    begin_ = cursor_ = end_ = nullptr;
    buffer_.clear();
    fetch_(kHeader);
  }
  if (!gx_ArchiveFrame::mayBegin({cursor_, bytesLeft()})) throw BadFormat(L"this is not an archive");
  if (bytesLeft() < kHeader) truncated_(kHeader);
  if (!gx_ArchiveFrame::hasKnownFormat(cursor_)) {
    throw BadFormat(L"the archive has a format that this version does not know");
  }
  const std::uint64_t size = gx_ArchiveFrame::size(cursor_, limits_.bytes);
  if (size == 0) frameTooLong_(limits_);
  const auto whole = static_cast<std::size_t>(size);
  if (in_ != nullptr) fetch_(whole);
  if (bytesLeft() < whole) truncated_(whole);
  const unsigned char* const sum = cursor_ + whole - kSum;
  if (gf_ArchiveSum(cursor_, whole - kSum) != gf_GetLittle<std::uint64_t>(sum)) {
    throw BadChecksum(L"the archive is damaged");
  }
  cursor_ += kHeader;
  end_ = sum;
}

/// Reads on until the buffer holds `size` bytes of the frame, or the stream has no more.
void gxArchive::fetch_(std::size_t size) {
  if (in_->fail() || in_->rdbuf() == nullptr) throw FileError(L"the stream is not ready");
  bool more = true;
  while (more && buffer_.size() < size) {
    const std::size_t had = buffer_.size();
    const std::size_t piece = std::min(size - had, std::max(kFirstPiece, had));
    buffer_.resize(had + piece);
    std::streamsize got = 0;
    onStream(L"the stream cannot be read", [&] {
      got = in_->rdbuf()->sgetn(reinterpret_cast<char*>(buffer_.data() + had),
                                static_cast<std::streamsize>(piece));
    });
    more = static_cast<std::size_t>(got) == piece;
    buffer_.resize(had + static_cast<std::size_t>(std::max<std::streamsize>(got, 0)));
  }
  begin_ = cursor_ = buffer_.data();
  end_ = begin_ + buffer_.size();
}
