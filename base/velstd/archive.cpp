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
#include <velstd/internal/archive_pass.h>
#include <velstd/internal/archive_sum.h>

#include <algorithm>
#include <istream>
#include <ostream>
#include <utility>

namespace {

constexpr unsigned char kMagic[8] = {0x89, 'G', 'X', 'A', 0x0d, 0x0a, 0x1a, 0x0a};
constexpr std::uint32_t kFormat = 1;
constexpr std::size_t kHeader = 20;  // magic, format, length of the payload
constexpr std::size_t kSum = 8;
constexpr std::size_t kFirstPiece = 1U << 16U;
constexpr std::size_t kSlack = 1U << 12U;
constexpr std::size_t kLongestName = 255;

template <class Unsigned>
void putLittle(unsigned char* bytes, Unsigned value) {
  for (std::size_t i = 0; i < sizeof value; ++i) {
    bytes[i] = static_cast<unsigned char>(value >> (8 * i));
  }
}

template <class Unsigned>
Unsigned getLittle(const unsigned char* bytes) {
  Unsigned value = 0;
  for (std::size_t i = 0; i < sizeof value; ++i) {
    value = static_cast<Unsigned>(value | static_cast<Unsigned>(Unsigned{bytes[i]} << (8 * i)));
  }
  return value;
}

template <class Unsigned>
void transferLittle(gxArchive& archive, Unsigned& value) {
  unsigned char bytes[sizeof(Unsigned)] = {};
  if (archive.isStoring()) putLittle(bytes, value);
  archive.transfer(bytes, sizeof bytes);
  if (archive.isLoading()) value = getLittle<Unsigned>(bytes);
}

std::wstring widen(const std::string& text) {
  std::wstring result;
  for (const char c : text) result += static_cast<wchar_t>(static_cast<unsigned char>(c));
  return result;
}

/// Returns the name with everything that is not plain text replaced: it comes from an archive.
std::wstring printable(const std::string& name) {
  std::wstring result = L"\"";
  for (const char c : name) result += c >= ' ' && c <= '~' ? static_cast<wchar_t>(c) : L'?';
  return result + L'"';
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
    cursor_ = in_ == nullptr ? start : end_;
    end_ = in_ == nullptr ? end : end_;
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
  std::copy_n(kMagic, sizeof kMagic, header);
  putLittle(header + 8, kFormat);
  store_(header, sizeof header);
}

void gxArchive::endFrame_() {
  putLittle(buffer_.data() + frame_ + 12, std::uint64_t{buffer_.size() - frame_ - kHeader});
  unsigned char sum[kSum] = {};
  putLittle(sum, gf_ArchiveSum(buffer_.data() + frame_, buffer_.size() - frame_));
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
  try {
    written = out_->rdbuf()->sputn(reinterpret_cast<const char*>(buffer_.data()),
                                   static_cast<std::streamsize>(buffer_.size()));
    flushed = out_->rdbuf()->pubsync() == 0;
  } catch (...) {
    throw FileError(L"the stream cannot be written");
  }
  if (static_cast<std::size_t>(written) != buffer_.size() || !flushed) {
    throw FileError(L"the stream took only a part of the archive");
  }
}

void gxArchive::openFrame_() {
  if (in_ != nullptr) {
    before_ += static_cast<std::uint64_t>(cursor_ - begin_);
    buffer_.clear();
    fetch_(kHeader);
  }
  if (!std::equal(cursor_, cursor_ + std::min(bytesLeft(), sizeof kMagic), kMagic)) {
    throw BadFormat(L"this is not an archive");
  }
  if (bytesLeft() < kHeader) truncated_(kHeader);
  if (getLittle<std::uint32_t>(cursor_ + 8) != kFormat) {
    throw BadFormat(L"the archive has a format that this version does not know");
  }
  const std::uint64_t length = getLittle<std::uint64_t>(cursor_ + 12);
  if (length > limits_.bytes || limits_.bytes - length < kHeader + kSum) {
    throw LimitExceeded(L"the frame is longer than " + std::to_wstring(limits_.bytes) + L" bytes");
  }
  const std::size_t whole = kHeader + static_cast<std::size_t>(length) + kSum;
  if (in_ != nullptr) fetch_(whole);
  if (bytesLeft() < whole) truncated_(whole);
  const unsigned char* const sum = cursor_ + whole - kSum;
  if (gf_ArchiveSum(cursor_, whole - kSum) != getLittle<std::uint64_t>(sum)) {
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
    try {
      got = in_->rdbuf()->sgetn(reinterpret_cast<char*>(buffer_.data() + had),
                                static_cast<std::streamsize>(piece));
    } catch (...) {
      throw FileError(L"the stream cannot be read");
    }
    more = static_cast<std::size_t>(got) == piece;
    buffer_.resize(had + static_cast<std::size_t>(std::max<std::streamsize>(got, 0)));
  }
  begin_ = cursor_ = buffer_.data();
  end_ = begin_ + buffer_.size();
}

// ---- References -------------------------------------------------------------------------------------
//
// A reference is a number: 0 for null, the number of an object that came earlier, or the next number,
// after which the object follows.  The object begins with its class, again a number: of a class that
// came earlier, or the next number, after which the name follows.

namespace {

// A hole in a hole takes 460 bytes of the stack when loaded or stored, 2,400 under the address
// sanitizer (measured with tests/archive's nested regions on a painted stack); a thousand levels, the
// most that can be set, leave most of an ordinary 8 MiB stack free.
constexpr std::uint32_t kMostNesting = 1000;

}  // namespace

/// One level of nesting, while it lasts.
class gxArchive::Level {
 public:
  explicit Level(const gxArchive& archive) : pass_(*archive.pass_) {
    const std::uint32_t most = std::min(archive.limits_.nesting, kMostNesting);
    if (pass_.depth >= most) {
      throw LimitExceeded(L"objects nest deeper than " + std::to_wstring(most) + L" levels");
    }
    ++pass_.depth;
  }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;
  ~Level() { --pass_.depth; }

 private:
  gx_ArchivePass& pass_;
};

void gxArchive::reference_(gxPersistent* pointer, gxPersistent*& pointerOut) {
  if (pass_ == nullptr) throw BadFormat(L"no pass is running");
  if (isStoring()) {
    storeReference_(pointer);
    pointerOut = pointer;
  } else {
    pointerOut = nullptr;
    pointerOut = loadReference_(nullptr);
  }
}

void gxArchive::tooManyObjects_() const {
  throw LimitExceeded(L"the frame holds more than " + std::to_wstring(limits_.objects) + L" objects");
}

void gxArchive::storeReference_(gxPersistent* pointer) {
  std::uint32_t number = 0;
  if (pointer == nullptr) {
    transferLittle(*this, number);
    return;
  }
  // Two bases of one object may be reached through different addresses; the whole object has one.
  const auto [place, isNew] = pass_->stored.try_emplace(dynamic_cast<const void*>(pointer));
  gx_ArchivePass::StoredObject& stored = place->second;
  if (isNew) {
    if (pass_->stored.size() > limits_.objects) tooManyObjects_();
    stored.number = static_cast<std::uint32_t>(pass_->stored.size());
  } else if (!stored.complete) {
    throw BadReference(L"an object reaches itself and cannot be stored");
  }
  number = stored.number;
  transferLittle(*this, number);
  if (!isNew) return;
  const Level level(*this);
  storeClass_(*pointer);
  pointer->dispatchSerialize(*this);
  stored.complete = true;
}

void gxArchive::storeClass_(const gxPersistent& object) {
  const std::string name = gf_ClassName(typeid(object));
  const auto [place, isNew] = pass_->storedClasses.try_emplace(name);
  if (isNew) {
    if (gx_Instantiator::factory(name) == nullptr || name.size() > kLongestName) {
      throw UnknownClass(widen(name) + L" is not a registered class");
    }
    place->second = static_cast<std::uint32_t>(pass_->storedClasses.size());
  }
  transferLittle(*this, place->second);
  if (!isNew) return;
  auto length = static_cast<unsigned char>(name.size());
  *this || length;
  store_(reinterpret_cast<const unsigned char*>(name.data()), name.size());
}

/// Loads a reference.  The first of a pass is the frame's own object: it goes into `root` where that
/// is not null, and no handle can refer to it, because it is still being read until the pass ends.
gxPersistent* gxArchive::loadReference_(gxPersistent* root) {
  std::vector<gx_LoadedObject>& loaded = pass_->loaded;
  const bool isFirst = loaded.empty();
  std::uint32_t number = 0;
  transferLittle(*this, number);
  if (number == 0 && isFirst) throw BadFormat(L"the frame holds no object");
  if (number == 0) return nullptr;
  if (number <= loaded.size()) {
    const gx_LoadedObject& earlier = loaded[number - 1];
    if (!earlier.complete) throw BadReference(L"a reference to an object that is still being read");
    if (pass_->simple) throw BadReference(L"a reference where none are kept");
    return earlier.object;
  }
  if (number != loaded.size() + 1) throw BadReference(L"a reference to an object that was not read yet");
  if (number > limits_.objects) tooManyObjects_();

  const Level level(*this);
  gxPersistent* const object = loadClass_(root);
  loaded[number - 1].complete = false;
  object->dispatchSerialize(*this);
  loaded[number - 1].complete = true;
  return object;
}

/// Loads the class that an object begins with, and enters the object, `root` or a new one.
gxPersistent* gxArchive::loadClass_(gxPersistent* root) {
  std::vector<gx_ArchivePass::LoadedClass>& classes = pass_->loadedClasses;
  std::uint32_t number = 0;
  transferLittle(*this, number);
  if (number == 0 || number > classes.size() + 1) throw BadFormat(L"a class that was not named");
  if (number == classes.size() + 1) {
    unsigned char length = 0;
    *this || length;
    std::string name(length, '\0');
    take_(reinterpret_cast<unsigned char*>(name.data()), name.size());
    const gx_Instantiator::Factory make = gx_Instantiator::factory(name);
    if (make == nullptr) throw UnknownClass(L"the archive names an unknown class, " + printable(name));
    classes.push_back({std::move(name), make});
  }
  const gx_ArchivePass::LoadedClass& named = classes[number - 1];
  if (root != nullptr) {
    const std::string wanted = gf_ClassName(typeid(*root));
    if (named.name != wanted) {
      throw BadFormat(L"the archive holds a " + widen(named.name) + L", not a " + widen(wanted));
    }
    pass_->loaded.push_back({root, nullptr, false, false});
    return root;
  }
  std::unique_ptr<gxPersistent> object(named.make());
  const bool isFirst = pass_->loaded.empty();
  const gxRepBase* const counted = isFirst ? nullptr : dynamic_cast<const gxRepBase*>(object.get());
  pass_->loaded.push_back({object.get(), counted, false, true});
  gx_PtrHandleBase_RepAccessor::acquire(counted);
  return object.release();
}

// ---- Fields -----------------------------------------------------------------------------------------

void gxArchive::store_(const unsigned char* data, std::size_t size) {
  if (pass_ == nullptr) throw BadFormat(L"no pass is running");
  const std::uint64_t used = buffer_.size() - frame_ + kSum;
  if (used > limits_.bytes || limits_.bytes - used < size) {
    throw LimitExceeded(L"the frame is longer than " + std::to_wstring(limits_.bytes) + L" bytes");
  }
  makeRoom_(size);
  buffer_.insert(buffer_.end(), data, data + size);
}

/// Lets the buffer take `size` more bytes in its place.  What follows a long list of points is short:
/// without the slack it would move them all again.
void gxArchive::makeRoom_(std::size_t size) {
  const std::size_t needed = buffer_.size() + size;
  if (needed > buffer_.capacity()) buffer_.reserve(std::max(2 * buffer_.size(), needed + kSlack));
}

gxArchive& gxArchive::operator||(bool& value) {
  unsigned char byte = value ? 1 : 0;
  transfer(&byte, 1);
  if (byte > 1) throw BadFormat(L"a flag that is neither 0 nor 1");
  value = byte != 0;
  return *this;
}

gxArchive& gxArchive::operator||(long& value) {
  using Limit = std::numeric_limits<std::int32_t>;
  const char* const name = std::exchange(field_, nullptr);
  if (isStoring() && (value < Limit::min() || value > Limit::max())) tooLarge_(name);
  auto word = static_cast<std::uint32_t>(value);
  transferLittle(*this, word);
  if (isLoading()) value = static_cast<std::int32_t>(word);
  return *this;
}

gxArchive& gxArchive::operator||(unsigned long& value) {
  const char* const name = std::exchange(field_, nullptr);
  if (isStoring() && value > std::numeric_limits<std::uint32_t>::max()) tooLarge_(name);
  auto word = static_cast<std::uint32_t>(value);
  transferLittle(*this, word);
  if (isLoading()) value = word;
  return *this;
}

void gxArchive::tooLarge_(const char* name) const {
  throw LimitExceeded(widen(name == nullptr ? "a number" : name) + L" does not fit into 32 bits");
}

gxArchive& operator||(gxArchive& archive, unsigned short& value) {
  std::uint16_t bits = value;
  transferLittle(archive, bits);
  value = bits;
  return archive;
}

gxArchive& operator||(gxArchive& archive, double& value) {
  auto bits = std::bit_cast<std::uint64_t>(value);
  transferLittle(archive, bits);
  value = std::bit_cast<double>(bits);
  return archive;
}

gxArchive& operator||(gxArchive& archive, gxVector<2>& value) {
  double x = value.x();
  double y = value.y();
  archive || x || y;
  value = gxVector<2>(x, y);
  return archive;
}

std::size_t gxArchive::sequence(std::size_t count, std::size_t leastSize) {
  unsigned char version = 0;
  *this || version;
  if (version != 0) throw UnknownVersion(nullptr, 0);
  unsigned long written = count;
  field("the number of elements") || written;
  if (isStoring() && count <= limits_.bytes / std::max<std::size_t>(leastSize, 1))
    makeRoom_(count * leastSize);
  if (isLoading() && written > bytesLeft() / std::max<std::size_t>(leastSize, 1)) {
    throw Truncated(L"a sequence of " + std::to_wstring(written) + L" elements in the last " +
                    std::to_wstring(bytesLeft()) + L" bytes");
  }
  return written;
}

// A point in memory is its record where the machine is little-endian: two doubles without a gap.
gxArchive& operator||(gxArchive& archive, std::vector<gxVector<2>>& points) {
  const std::size_t count = archive.sequence(points.size(), sizeof(gxVector<2>));
  if (archive.isLoading()) points.resize(count);
  if constexpr (std::endian::native == std::endian::little) {
    archive.transfer(reinterpret_cast<unsigned char*>(points.data()), count * sizeof(gxVector<2>));
  } else {
    for (gxVector<2>& point : points) archive || point;
  }
  return archive;
}
