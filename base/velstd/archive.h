/// The archive: one operation both stores and loads.
#pragma once

#include <velstd/exception.h>
#include <velstd/export.h>
#include <velstd/handle.h>
#include <velstd/persistent.h>
#include <velstd/vector.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <iosfwd>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

struct gx_ArchivePass;

/// A place that persistent objects are stored to and loaded from: memory, a stream or a file.
///
/// The archive knows its direction.  A class describes its record once, as a sequence of
/// `archive || field`, and the same lines write it and read it back.
///
/// A pass is one call of `store` or `load`.  It writes or reads one frame: a header, one object with
/// everything that it reaches through handles, and a checksum (docs/archive.md, byte by byte).
/// Frames follow each other, so an archive may hold any number of objects.  Within a pass an object
/// that is reached twice is written once and comes back shared.  Every object that a pass reads
/// lives until the pass ends; then the archive lets go, and what nobody else holds is destroyed.
///
/// What an archive says is not trusted.  Whatever the bytes, loading ends in an object or in one of
/// the exceptions below, allocates at most a few dozen times the archive's size, and leaves every
/// object safe to ask, also one that is only partly loaded.
///
/// Threads: an archive is used by one thread at a time; different archives need no care, as long as
/// the objects that they store are not shared.
class VELSTD_API gxArchive {
 public:
  // ---- Errors (archive_errors.cpp) ----------------------------------------------------------------

  /// Any error of an archive; never thrown itself.  The message ends with the place, in bytes from
  /// the beginning of the archive: " (at byte 123)".
  class VELSTD_API Errors : public gxException {
   public:
    ~Errors() override;
    /// Tells whether the place is known: it is, for whatever goes wrong while a frame is stored or
    /// loaded; it counts from the beginning to behind the last byte that was stored or read.
    bool hasByteOffset() const noexcept { return offset_ != kNowhere; }
    /// Returns the place, in bytes from the beginning of the archive; 0 while it is not known.
    std::uint64_t byteOffset() const noexcept { return hasByteOffset() ? offset_ : 0; }
    /// Sets the place, unless it is known already.
    void byteOffset(std::uint64_t offset) noexcept {
      if (!hasByteOffset()) offset_ = offset;
    }

   protected:
    /// Makes the exception with this message.
    explicit Errors(std::wstring message = std::wstring());
    Errors(const Errors&) noexcept;
    Errors& operator=(const Errors&) noexcept;
    void message_(std::basic_ostream<wchar_t>& out) const override;

   private:
    static constexpr std::uint64_t kNowhere = (std::numeric_limits<std::uint64_t>::max)();
    std::shared_ptr<const std::wstring> text_;  // shared, so that copying an exception cannot throw
    std::uint64_t offset_ = kNowhere;
  };

  /// The archive ends before the value does, or a count promises more elements than bytes are left.
  class VELSTD_API Truncated final : public gx_ConcreteException<Truncated, Errors, 0x10000121> {
   public:
    /// Makes the exception with this message.
    explicit Truncated(std::wstring message = std::wstring());
    Truncated(const Truncated&) noexcept;
    Truncated& operator=(const Truncated&) noexcept;
    ~Truncated() override;
  };

  /// The bytes are not those of an archive, or a field holds a value that it cannot have.
  class VELSTD_API BadFormat final : public gx_ConcreteException<BadFormat, Errors, 0x10000122> {
   public:
    /// Makes the exception with this message.
    explicit BadFormat(std::wstring message = std::wstring());
    BadFormat(const BadFormat&) noexcept;
    BadFormat& operator=(const BadFormat&) noexcept;
    ~BadFormat() override;
  };

  /// The checksum at the end of a frame is not that of its bytes.
  class VELSTD_API BadChecksum final : public gx_ConcreteException<BadChecksum, Errors, 0x10000123> {
   public:
    /// Makes the exception with this message.
    explicit BadChecksum(std::wstring message = std::wstring());
    BadChecksum(const BadChecksum&) noexcept;
    BadChecksum& operator=(const BadChecksum&) noexcept;
    ~BadChecksum() override;
  };

  /// A limit of the archive is passed, or a number does not fit its field.
  class VELSTD_API LimitExceeded final : public gx_ConcreteException<LimitExceeded, Errors, 0x10000124> {
   public:
    /// Makes the exception with this message.
    explicit LimitExceeded(std::wstring message = std::wstring());
    LimitExceeded(const LimitExceeded&) noexcept;
    LimitExceeded& operator=(const LimitExceeded&) noexcept;
    ~LimitExceeded() override;
  };

  /// A reference to an object that was not read yet, or that is still being read or stored (a cycle).
  class VELSTD_API BadReference final : public gx_ConcreteException<BadReference, Errors, 0x10000125> {
   public:
    /// Makes the exception with this message.
    explicit BadReference(std::wstring message = std::wstring());
    BadReference(const BadReference&) noexcept;
    BadReference& operator=(const BadReference&) noexcept;
    ~BadReference() override;
  };

  /// The archive names a class that the registry does not hold, or such an object is to be stored.
  class VELSTD_API UnknownClass final : public gx_ConcreteException<UnknownClass, Errors, 0x10000126> {
   public:
    /// Makes the exception with this message.
    explicit UnknownClass(std::wstring message = std::wstring());
    UnknownClass(const UnknownClass&) noexcept;
    UnknownClass& operator=(const UnknownClass&) noexcept;
    ~UnknownClass() override;
  };

  /// A record has a version that its class does not know.
  class VELSTD_API UnknownVersion final
      : public gx_ConcreteException<UnknownVersion, Errors, 0x10000127> {
   public:
    /// `source` and `line` name the place that refuses; `source` is a literal, or null.
    UnknownVersion(const char* source, int line);
    UnknownVersion(const UnknownVersion&) noexcept;
    UnknownVersion& operator=(const UnknownVersion&) noexcept;
    ~UnknownVersion() override;

    /// Return the class that refused, and a number that tells the place within it.
    const char* source() const noexcept { return source_; }
    int line() const noexcept { return line_; }

   private:
    const char* source_;
    int line_;
  };

  /// A stream or a file cannot be opened, read or written; the message gives the system's reason.
  class VELSTD_API FileError final : public gx_ConcreteException<FileError, Errors, 0x10000128> {
   public:
    /// Makes the exception with this message.
    explicit FileError(std::wstring message = std::wstring());
    FileError(const FileError&) noexcept;
    FileError& operator=(const FileError&) noexcept;
    ~FileError() override;
  };

  // ---- Making an archive (archive.cpp) ------------------------------------------------------------

  /// Which way an archive goes.
  enum class Direction { eStoring, eLoading };

  /// What a pass may cost at most, in either direction: what could not be read back is not written.
  struct Limits {
    /// Objects inside objects; the outermost counts 1.  At most `kMostNesting`.
    std::uint32_t nesting = 256;
    std::uint32_t objects = 1'000'000;  ///< objects in a frame, the outermost included
    std::uint64_t bytes = 0x7fff'ffff;  ///< a whole frame, header and checksum included
  };

  /// The deepest nesting that can be set.  Each level is one of recursion: a hole in a hole takes 460
  /// bytes of the stack when loaded or stored, 2,400 under the address sanitizer, so that a thousand
  /// levels leave most of an ordinary 8 MiB stack free.
  static constexpr std::uint32_t kMostNesting = 1000;

  /// Makes an archive that stores into memory; see `bytes`.
  gxArchive();
  /// Makes an archive that loads from memory, which must stay as it is while the archive is used.
  explicit gxArchive(std::span<const unsigned char> bytes);
  /// Makes an archive on a stream, opened in binary mode.  Each pass writes its frame in one piece,
  /// when it is complete, or reads exactly its frame.  The stream's exception mask does not matter.
  gxArchive(std::iostream& stream, Direction direction);
  explicit gxArchive(std::ostream& stream);
  explicit gxArchive(std::istream& stream);
  /// Reads a whole file, of any number of frames, and gives an archive that loads from it.
  ///  - what follows the last frame and is no frame is not read; loading it throws what it throws
  /// Throws: FileError; LimitExceeded where a frame is longer than `limits.bytes`, or for limits that
  /// cannot be set.
  static gxArchive fromFile(const std::filesystem::path& path) { return fromFile(path, Limits()); }
  static gxArchive fromFile(const std::filesystem::path& path, const Limits& limits);

  gxArchive(const gxArchive&) = delete;
  gxArchive& operator=(const gxArchive&) = delete;
  ~gxArchive();

  /// Tell which way the archive goes.
  bool isStoring() const noexcept { return direction_ == Direction::eStoring; }
  bool isLoading() const noexcept { return direction_ == Direction::eLoading; }

  /// Returns the limits in force.
  const Limits& limits() const noexcept { return limits_; }
  /// Sets the limits of the passes that follow.
  /// Throws: LimitExceeded for a nesting above `kMostNesting`; the limits are then as they were.
  void limits(const Limits& limits) {
    checkLimits_(limits);
    limits_ = limits;
  }

  // ---- Passes (archive.cpp) -----------------------------------------------------------------------

  /// Stores the object and everything that it reaches.  When it throws, nothing was stored (a stream
  /// that failed may hold the beginning of the frame).
  /// Throws: UnknownClass for an object of a class that is not registered; BadReference for objects
  /// that reach themselves; LimitExceeded; FileError.
  void store(const gxPersistent& object);

  /// Loads the next object into `object`, which must be of the class that was stored.  When it
  /// throws, `object` may be partly loaded: it is safe to ask, to assign and to destroy.  An archive
  /// in memory then stands where it stood before; a stream stands behind what was read.
  /// Throws: the errors above; BadFormat where the archive holds an object of another class.
  void load(gxPersistent& object);

  /// Makes and loads the next object, of whatever registered class it is.  Its reference count is 0:
  /// it may be given to a handle.
  std::unique_ptr<gxPersistent> loadNew();

  /// Makes and loads the next object into a handle; a null handle where it is not a `T`.
  template <class T>
  gxPtrHandle<T> loadHandle() {
    std::unique_ptr<gxPersistent> object = loadNew();
    T* const wanted = dynamic_cast<T*>(object.get());
    if (wanted != nullptr) static_cast<void>(object.release());
    return gxPtrHandle<T>(wanted);
  }

  /// Tells whether the archive holds no further frame.  Always true for one that stores.
  bool atEnd() const;

  /// Returns what was stored into memory, frame after frame; empty for an archive that loads or that
  /// stores to a stream.
  std::span<const unsigned char> bytes() const noexcept;

  /// Writes `bytes()` to a file: to a new file beside the target first, which is flushed to the disk
  /// and then takes the target's name.  When it throws, the target is as it was.
  ///  - a link stays: the file that it leads to is replaced
  /// Throws: FileError, also for a target that is there and is no regular file (a folder, a device, a
  /// pipe); nothing is created then.
  void writeFile(const std::filesystem::path& path) const;

  // ---- Fields (for the classes that describe their records) ---------------------------------------
  //
  // Numbers are little-endian and of fixed width, the same on every machine.  Outside of a pass every
  // one of these throws BadFormat, and the archive stays where it is.

  /// One byte, 0 or 1; loading any other throws BadFormat.
  gxArchive& operator||(bool& value);
  /// A signed 32-bit number.  Storing one that does not fit throws LimitExceeded naming the field.
  gxArchive& operator||(long& value);
  /// An unsigned 32-bit number.  Storing one that does not fit throws LimitExceeded naming the field.
  gxArchive& operator||(unsigned long& value);

  /// Names the field that comes next, for error messages, and returns the archive.
  gxArchive& field(const char* name) noexcept {
    field_ = name;
    return *this;
  }

  /// Stores or loads `size` bytes as they are.
  void transfer(unsigned char* data, std::size_t size) {
    if (isStoring()) {
      store_(data, size);
    } else {
      take_(data, size);
    }
  }

  /// Gives the next `size` bytes of the frame, which stay where they are until the pass ends.
  std::span<const unsigned char> takeBytes(std::size_t size);

  /// Stores or loads the count of a sequence of elements that take at least `leastSize` bytes each,
  /// after the sequence's version byte, which must be 0.  When loading, the count is checked against
  /// the bytes that are left, so that the caller may allocate: at most count * leastSize bytes are
  /// promised.
  /// Throws: UnknownVersion(null, 0), Truncated, LimitExceeded.
  std::size_t sequence(std::size_t count, std::size_t leastSize);

  /// Returns how many bytes the frame being read still holds; 0 while storing.
  std::size_t bytesLeft() const noexcept { return static_cast<std::size_t>(end_ - cursor_); }

  /// Returns the key under which this pass remembers a visit to an object on one class level (see
  /// `gxPersistent::haveVisited`).  Every class has a level of its own: this library uses those
  /// below 0x100.
  std::uint64_t passAndLevel(std::uint16_t level) const noexcept;

 private:
  friend class gxPersistent;
  class Running;
  class Level;

  gxArchive(std::vector<unsigned char>&& owned, const Limits& limits);

  void store_(const unsigned char* data, std::size_t size);
  void take_(unsigned char* data, std::size_t size) {
    if (pass_ == nullptr) noPass_();
    if (bytesLeft() < size) truncated_(size);
    if (size != 0) std::memcpy(data, cursor_, size);
    cursor_ += size;
  }
  static void checkLimits_(const Limits& limits);
  void makeRoom_(std::size_t size);
  [[noreturn]] static void noPass_();
  [[noreturn]] static void frameTooLong_(const Limits& limits);
  [[noreturn]] void truncated_(std::size_t size) const;
  [[noreturn]] void tooManyObjects_() const;
  [[noreturn]] void tooLarge_(const char* name) const;
  std::uint64_t offset_() const noexcept;

  void reference_(gxPersistent* pointer, gxPersistent*& pointerOut);
  void storeReference_(gxPersistent* pointer);
  void storeClass_(const gxPersistent& object);
  gxPersistent* loadReference_(gxPersistent* root);
  gxPersistent* loadClass_(gxPersistent* root);

  void beginFrame_();
  void endFrame_();
  void write_();
  void openFrame_();
  void fetch_(std::size_t size);
  gxPersistent* loadFrame_(gxPersistent* root, bool simple);
  void loadSimple_(gxPersistent& object);

  Direction direction_;
  Limits limits_;
  std::ostream* out_ = nullptr;
  std::istream* in_ = nullptr;
  std::vector<unsigned char> buffer_;      // what was stored, or the frame that a stream gave
  std::size_t frame_ = 0;                  // storing: where the frame begins in the buffer
  const unsigned char* begin_ = nullptr;   // loading: what the offsets are counted from
  const unsigned char* cursor_ = nullptr;  // loading: the next byte
  const unsigned char* end_ = nullptr;     // loading: the end of the frame's payload, or of the input
  std::uint64_t before_ = 0;               // bytes of the stream before `begin_` or before the buffer
  const char* field_ = nullptr;
  gx_ArchivePass* pass_ = nullptr;
};

// ---- Fields that are not members -------------------------------------------------------------------

/// One byte as it is.
inline gxArchive& operator||(gxArchive& archive, unsigned char& value) {
  archive.transfer(&value, 1);
  return archive;
}

/// An unsigned 16-bit number.
VELSTD_API gxArchive& operator||(gxArchive& archive, unsigned short& value);
/// The 64 bits of a double, NaN payloads and the sign of 0 included.
VELSTD_API gxArchive& operator||(gxArchive& archive, double& value);
/// Two doubles: x, y.
VELSTD_API gxArchive& operator||(gxArchive& archive, gxVector<2>& value);

/// An object held by handle, or null.  Loading drops what the handle held; an object that is not a
/// `T` leaves it null.
template <class T>
gxArchive& operator||(gxArchive& archive, gxPtrHandle<T>& handle) {
  gxPersistent* found = nullptr;
  if (archive.isStoring()) {
    gxPersistent::serializePointer(archive, handle.get(), found);
  } else {
    handle = nullptr;
    gxPersistent::serializePointer(archive, nullptr, found);
    handle = gxPtrHandle<T>(dynamic_cast<T*>(found));
  }
  return archive;
}
template <class T>
gxArchive& operator||(gxArchive& archive, gxPtrHandle_const<T>& handle) {
  // Storing changes nothing in the object; a record's description serves both directions, so it
  // takes the object without const.
  gxPtrHandle<T> both(archive.isStoring() ? const_cast<T*>(handle.get()) : nullptr);
  if (archive.isLoading()) handle = nullptr;
  archive || both;
  if (archive.isLoading()) handle = both;
  return archive;
}

/// The least number of bytes that an element of a sequence takes; a class whose elements take more
/// says so beside its operator.
template <class T>
struct gx_LeastEncodedSize : std::integral_constant<std::size_t, 1> {};
template <class T>
struct gx_LeastEncodedSize<gxPtrHandle<T>> : std::integral_constant<std::size_t, 4> {};
template <class T>
struct gx_LeastEncodedSize<gxPtrHandle_const<T>> : std::integral_constant<std::size_t, 4> {};

/// A sequence: a version byte, 0; the count; the elements in order.
template <class T>
gxArchive& operator||(gxArchive& archive, std::vector<T>& elements) {
  const std::size_t count = archive.sequence(elements.size(), gx_LeastEncodedSize<T>::value);
  if (archive.isLoading()) elements.resize(count);
  for (T& element : elements) archive || element;
  return archive;
}
/// A sequence of points, in one piece.
VELSTD_API gxArchive& operator||(gxArchive& archive, std::vector<gxVector<2>>& points);
