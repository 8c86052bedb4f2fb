// Archives in files.
//
//   1. A file is replaced, never written into: the archive goes into a new file beside the target,
//      which is flushed to the disk, and then takes the target's name in one step.  Whoever looks,
//      and whenever the machine stops, finds the old file or the new one.
//   2. The new file lies in the target's folder, since names change in one step only within a file
//      system.  Its name is made of the process and a counter, and it is opened only if it does not
//      exist yet, so that two writers cannot share it.  (The target's name was part of it once, and then
//      a name of 250 characters, which is allowed, became one that is not.)
//   3. A target that is a link stays one: the file that it leads to is replaced.  The new file takes
//      over the old one's permissions.
//   4. A target that is there and is no regular file is refused before anything is created: its name
//      would otherwise go to the new file, and the device or the pipe behind it be gone.
//   5. Whatever fails, the new file is removed.
//
// A file is read frame by frame, each against the limit of a frame; a file may hold many.
#include <velstd/archive.h>
#include <velstd/internal/archive_frame.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#if defined(__unix__) || defined(__APPLE__)
#  define GX_POSIX_FILES 1
#  include <fcntl.h>
#  include <sys/stat.h>
#  include <unistd.h>
#endif

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const char* what, const fs::path& path, const std::error_code& reason) {
  throw gxArchive::FileError(fs::path(what).wstring() + L" \"" + path.wstring() + L"\": " +
                             fs::path(reason.message()).wstring());
}

#if defined(GX_POSIX_FILES)

std::error_code lastError() {
  return {errno, std::generic_category()};
}

/// A new file, removed again unless it is kept.
class NewFile {
 public:
  explicit NewFile(const fs::path& target) {
    static std::atomic<unsigned> counter{0};
    constexpr int kMostTries = 1000;
    for (int i = 0; i < kMostTries && file_ < 0; ++i) {
      path_ = target.parent_path() /
              (".archive-" + std::to_string(::getpid()) + "-" + std::to_string(++counter) + ".new");
      file_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (file_ < 0 && errno != EEXIST) break;
    }
    if (file_ < 0) fail("cannot create", path_, lastError());
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    if (file_ >= 0) ::close(file_);
    if (!kept_) ::unlink(path_.c_str());
  }

  void takePermissionsOf(const fs::path& old) {
    struct ::stat state = {};
    if (::stat(old.c_str(), &state) == 0) static_cast<void>(::fchmod(file_, state.st_mode & 07777));
  }

  void write(std::span<const unsigned char> bytes) {
    while (!bytes.empty()) {
      const ::ssize_t written = ::write(file_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) fail("cannot write", path_, lastError());
      bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    if (::fsync(file_) != 0) fail("cannot flush", path_, lastError());
    const int file = std::exchange(file_, -1);
    if (::close(file) != 0) fail("cannot close", path_, lastError());
  }

  void replace(const fs::path& target) {
    if (::rename(path_.c_str(), target.c_str()) != 0) fail("cannot replace", target, lastError());
    kept_ = true;
    // The new name is a change of the folder, which has a flush of its own.  It is no longer a
    // failure of the file when that is not possible.
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    const int opened = ::open(folder.c_str(), O_RDONLY | O_CLOEXEC);
    if (opened < 0) return;
    static_cast<void>(::fsync(opened));
    ::close(opened);
  }

 private:
  fs::path path_;
  int file_ = -1;
  bool kept_ = false;
};

#else

unsigned nextNumber() {
  static std::atomic<unsigned> counter{0};
  return ++counter;
}

/// The same with what the language offers, which has no flush to the disk.
class NewFile {
 public:
  explicit NewFile(const fs::path& target)
      : path_(target.parent_path() / (".archive-" + std::to_string(nextNumber()) + ".new")) {}
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    std::error_code ignored;
    if (!kept_) fs::remove(path_, ignored);
  }
  void takePermissionsOf(const fs::path&) {}
  void write(std::span<const unsigned char> bytes) {
    std::ofstream file(path_, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) fail("cannot write", path_, std::make_error_code(std::errc::io_error));
  }
  void replace(const fs::path& target) {
    std::error_code reason;
    fs::rename(path_, target, reason);
    if (reason) fail("cannot replace", target, reason);
    kept_ = true;
  }

 private:
  fs::path path_;
  bool kept_ = false;
};

#endif

/// Follows links to the file that they name, which need not exist, so that the links stay when the
/// file is replaced.
fs::path throughLinks(fs::path path) {
  constexpr int kMostLinks = 40;  // as many as the system itself follows
  std::error_code reason;
  for (int i = 0; fs::is_symlink(fs::symlink_status(path, reason)); ++i) {
    if (i == kMostLinks)
      fail("cannot follow", path, std::make_error_code(std::errc::too_many_symbolic_link_levels));
    const fs::path next = fs::read_symlink(path, reason);
    if (reason) fail("cannot follow", path, reason);
    path = path.parent_path() / next;
  }
  return path;
}

/// Throws: FileError where something stands at the target that is no regular file.
void checkReplaceable(const fs::path& target) {
  std::error_code reason;
  const fs::file_status status = fs::symlink_status(target, reason);
  if (!fs::exists(status) || fs::is_regular_file(status)) return;
  if (fs::is_directory(status))
    fail("cannot replace", target, std::make_error_code(std::errc::is_a_directory));
  throw gxArchive::FileError(L"cannot replace \"" + target.wstring() + L"\": it is no regular file");
}

/// A file that is read into memory, as far as it consists of frames.
class FrameReader {
 public:
  explicit FrameReader(const fs::path& path) : path_(path) {
    std::error_code reason;
    if (fs::is_directory(path, reason))
      fail("cannot read", path, std::make_error_code(std::errc::is_a_directory));
    errno = 0;
    file_.open(path, std::ios::binary);
    if (!file_) fail("cannot open", path, {errno == 0 ? EIO : errno, std::generic_category()});
  }

  /// Reads the next frame, or what stands in its place.  Returns false where nothing is left that could
  /// be read as a frame; throws through `tooLong` for one that is longer than `most`.
  template <class TooLong>
  bool readFrame(std::uint64_t most, const TooLong& tooLong) {
    const std::size_t start = bytes_.size();
    if (!read_(gx_ArchiveFrame::kHeader)) return false;
    const unsigned char* const header = bytes_.data() + start;
    if (!gx_ArchiveFrame::mayBegin({header, gx_ArchiveFrame::kHeader}) ||
        !gx_ArchiveFrame::hasKnownFormat(header)) {
      return false;
    }
    const std::uint64_t size = gx_ArchiveFrame::size(header, most);
    if (size == 0) tooLong();
    makeRoom_(start + static_cast<std::size_t>(size));
    return read_(static_cast<std::size_t>(size) - gx_ArchiveFrame::kHeader);
  }

  std::vector<unsigned char> take() { return std::move(bytes_); }

 private:
  /// Lets the bytes take a frame that ends there, and the header of the next, in their place; only
  /// where the file is as long as that.
  void makeRoom_(std::size_t end) {
    std::error_code reason;
    const std::uintmax_t size = fs::file_size(path_, reason);
    const std::size_t room = end + gx_ArchiveFrame::kHeader;
    if (!reason && size >= end && room > bytes_.capacity()) {
      bytes_.reserve(std::max(room, 2 * bytes_.capacity()));
    }
  }

  /// Reads `size` bytes more, in pieces that double, so that a false length costs no more than the file
  /// holds.  Returns false where the file ends before.
  bool read_(std::size_t size) {
    constexpr std::size_t kFirstPiece = 1U << 16U;
    for (std::size_t wanted = size; wanted != 0;) {
      const std::size_t had = bytes_.size();
      const std::size_t piece = std::min(wanted, std::max(had, kFirstPiece));
      bytes_.resize(had + piece);
      file_.read(reinterpret_cast<char*>(bytes_.data() + had), static_cast<std::streamsize>(piece));
      const auto got = static_cast<std::size_t>(file_.gcount());
      bytes_.resize(had + got);
      if (file_.bad()) fail("cannot read", path_, std::make_error_code(std::errc::io_error));
      if (got != piece) return false;
      wanted -= piece;
    }
    return true;
  }

  fs::path path_;
  std::ifstream file_;
  std::vector<unsigned char> bytes_;
};

}  // namespace

void gxArchive::writeFile(const std::filesystem::path& path) const {
  if (!isStoring()) throw BadFormat(L"an archive that loads has nothing to write");
  const fs::path target = throughLinks(path);
  checkReplaceable(target);
  NewFile file(target);
  file.takePermissionsOf(target);
  file.write(bytes());
  file.replace(target);
}

gxArchive gxArchive::fromFile(const std::filesystem::path& path, const Limits& limits) {
  checkLimits_(limits);
  FrameReader file(path);
  while (file.readFrame(limits.bytes, [&] { frameTooLong_(limits); })) {}
  return {file.take(), limits};
}
