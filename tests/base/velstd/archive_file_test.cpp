// Archives in files: replaced in one step, and whole whatever fails.
#include <archive/probe_node.h>
#include <gtest/gtest.h>
#include <velstd/archive.h>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>

using archive_test::ProbeNode;
namespace fs = std::filesystem;

namespace {

// A folder that is there for one test.
class ArchiveFile : public testing::Test {
 protected:
  void SetUp() override {
    std::random_device random;
    folder_ = fs::temp_directory_path() /
              ("gxshape-archive-" + std::to_string(random()) + std::to_string(random()));
    fs::create_directory(folder_);
    path_ = folder_ / "shapes.gxa";
  }
  void TearDown() override { fs::remove_all(folder_); }

  void write(long number, std::size_t points = 0) const {
    ProbeNode node;
    node.number = number;
    node.points.resize(points);
    gxArchive out;
    out.store(node);
    out.writeFile(path_);
  }
  long read() const {
    gxArchive in = gxArchive::fromFile(path_);
    ProbeNode node;
    in.load(node);
    EXPECT_TRUE(in.atEnd());
    return node.number;
  }
  long filesInFolder() const {
    return std::distance(fs::directory_iterator(folder_), fs::directory_iterator());
  }

  fs::path folder_;
  fs::path path_;
};

// Lets no file of the process grow beyond a size, while it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int) = nullptr;
};

}  // namespace

TEST_F(ArchiveFile, IsWrittenAndRead) {
  write(3, 100000);
  EXPECT_EQ(read(), 3);
  write(4);
  EXPECT_EQ(read(), 4);
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(ArchiveFile, ThatDoesNotFitOnTheDiskLeavesTheOldOneWhole) {
  write(1);
  for (const rlim_t room : {rlim_t{0}, rlim_t{10}, rlim_t{100000}}) {
    const FileSizeLimit limit(room);
    EXPECT_THROW(write(2, 100000), gxArchive::FileError) << room;
  }
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(filesInFolder(), 1) << "the unfinished file is gone";
}

TEST_F(ArchiveFile, AfterAnObjectThatThrewHoldsTheOnesBefore) {
  ProbeNode node;
  node.number = 4;
  gxArchive out;
  out.store(node);
  node.number = 5;
  node.onSerialize = [](gxArchive&) { throw 1; };
  EXPECT_THROW(out.store(node), int);
  out.writeFile(path_);
  EXPECT_EQ(read(), 4);
}

TEST_F(ArchiveFile, InAFolderThatIsMissingSaysSo) {
  path_ = folder_ / "missing" / "shapes.gxa";
  try {
    write(1);
    FAIL();
  } catch (const gxArchive::FileError& error) {
    EXPECT_NE(std::string(error.what()).find("No such file or directory"), std::string::npos)
        << error.what();
  }
  EXPECT_THROW(read(), gxArchive::FileError);
}

TEST_F(ArchiveFile, ThatIsAFolderIsRefused) {
  fs::create_directory(path_);
  EXPECT_THROW(write(1), gxArchive::FileError);
  EXPECT_THROW(read(), gxArchive::FileError);
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(ArchiveFile, ThatIsAPipeIsRefusedBeforeAnythingIsCreated) {
  ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
  EXPECT_THROW(write(1), gxArchive::FileError);
  EXPECT_TRUE(fs::is_fifo(path_));
  EXPECT_EQ(filesInFolder(), 1);
  const fs::path link = folder_ / "link.gxa";
  fs::create_symlink(path_, link);
  path_ = link;
  EXPECT_THROW(write(1), gxArchive::FileError);
  EXPECT_TRUE(fs::is_fifo(folder_ / "shapes.gxa"));
}

TEST_F(ArchiveFile, ThatIsASocketIsRefusedBeforeAnythingIsCreated) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path_.native().size(), sizeof address.sun_path);
  std::copy(path_.native().begin(), path_.native().end(), address.sun_path);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_GE(socket, 0);
  ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  try {
    write(1);
    FAIL();
  } catch (const gxArchive::FileError& error) {
    EXPECT_NE(std::string(error.what()).find("it is no regular file"), std::string::npos)
        << error.what();
  }
  EXPECT_TRUE(fs::is_socket(path_));
  EXPECT_EQ(filesInFolder(), 1);
  ::close(socket);
}

TEST_F(ArchiveFile, MayHaveTheLongestNameThatTheSystemTakes) {
  const long most = ::pathconf(folder_.c_str(), _PC_NAME_MAX);
  ASSERT_GE(most, 100);
  for (const long length : {most - 5, most}) {
    path_ = folder_ / (std::string(static_cast<std::size_t>(length) - 4, 'n') + ".gxa");
    write(length);
    EXPECT_EQ(read(), length);
    write(length + 1);
    EXPECT_EQ(read(), length + 1);
  }
  EXPECT_EQ(filesInFolder(), 2);
}

TEST_F(ArchiveFile, BehindALinkIsReplacedAndTheLinkStays) {
  const fs::path real = folder_ / "real.gxa";
  fs::create_symlink("real.gxa", path_);
  write(1);
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(real)));
  write(2);
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_EQ(read(), 2);
}

TEST_F(ArchiveFile, BehindLinksInACircleIsRefused) {
  fs::create_symlink("other.gxa", path_);
  fs::create_symlink("shapes.gxa", folder_ / "other.gxa");
  EXPECT_THROW(write(1), gxArchive::FileError);
  EXPECT_EQ(filesInFolder(), 2);
}

TEST_F(ArchiveFile, KeepsTheOldPermissions) {
  write(1);
  fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_write);
  write(2);
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(ArchiveFile, LargerThanTheLimitIsNotRead) {
  write(1, 1000);
  gxArchive::Limits limits;
  limits.bytes = fs::file_size(path_) - 1;
  EXPECT_THROW(gxArchive::fromFile(path_, limits), gxArchive::LimitExceeded);
  ++limits.bytes;
  gxArchive in = gxArchive::fromFile(path_, limits);
  EXPECT_EQ(in.limits().bytes, limits.bytes);
  ProbeNode node;
  in.load(node);
  EXPECT_EQ(node.points.size(), 1000U);
}

TEST_F(ArchiveFile, OfSeveralObjectsIsReadInOrder) {
  gxArchive out;
  ProbeNode node;
  for (node.number = 0; node.number < 5; ++node.number) out.store(node);
  out.writeFile(path_);
  gxArchive in = gxArchive::fromFile(path_);
  long count = 0;
  for (; !in.atEnd(); ++count) {
    in.load(node);
    EXPECT_EQ(node.number, count);
  }
  EXPECT_EQ(count, 5);
}

// Many frames, each within the limit, all together far beyond it.
TEST_F(ArchiveFile, OfManyFramesIsReadWithTheLimitsItWasWrittenWith) {
  ProbeNode node;
  node.points.resize(10000);
  gxArchive probe;
  probe.store(node);
  gxArchive::Limits limits;
  limits.bytes = probe.bytes().size();
  gxArchive out;
  out.limits(limits);
  for (node.number = 0; node.number < 7; ++node.number) out.store(node);
  out.writeFile(path_);
  gxArchive in = gxArchive::fromFile(path_, limits);
  long count = 0;
  for (; !in.atEnd(); ++count) {
    in.load(node);
    EXPECT_EQ(node.number, count);
    EXPECT_EQ(node.points.size(), 10000U);
  }
  EXPECT_EQ(count, 7);
  --limits.bytes;
  EXPECT_THROW(gxArchive::fromFile(path_, limits), gxArchive::LimitExceeded);
}

TEST_F(ArchiveFile, WithSomethingElseBehindItsFramesIsReadUpToThere) {
  for (const std::string& tail : {std::string("and then some text that is no archive"), std::string("x"),
                                  std::string("\x89GXA\r\n"), std::string(100000, '\0')}) {
    write(6);
    const auto size = fs::file_size(path_);
    std::ofstream(path_, std::ios::binary | std::ios::app) << tail;
    gxArchive in = gxArchive::fromFile(path_);
    ProbeNode node;
    in.load(node);
    EXPECT_EQ(node.number, 6);
    EXPECT_FALSE(in.atEnd());
    try {
      in.load(node);
      FAIL();
    } catch (const gxArchive::Errors& error) {
      const bool isPart = tail[0] == '\x89';
      EXPECT_EQ(error.errorNumber(),
                isPart ? gxArchive::Truncated().errorNumber() : gxArchive::BadFormat().errorNumber());
      EXPECT_EQ(error.byteOffset(), size);
    }
  }
}

// The system refuses to read at the address 0 of a process: an error of the device, and no short file.
TEST_F(ArchiveFile, ThatTheSystemFailsToReadSaysSo) {
  const fs::path memory = "/proc/self/mem";
  if (!fs::exists(memory)) GTEST_SKIP() << "no such file here: " << memory;
  try {
    gxArchive::fromFile(memory);
    FAIL();
  } catch (const gxArchive::FileError& error) {
    const std::string text = error.what();
    EXPECT_NE(text.find("cannot read"), std::string::npos) << text;
    EXPECT_NE(text.find(memory.string()), std::string::npos) << text;
  }
}

TEST_F(ArchiveFile, CutAnywhereIsTruncated) {
  write(6, 10000);
  const auto size = fs::file_size(path_);
  for (const std::uintmax_t left : {size - 1, size / 2, std::uintmax_t{21}, std::uintmax_t{20},
                                    std::uintmax_t{19}, std::uintmax_t{1}}) {
    fs::resize_file(path_, left);
    EXPECT_THROW(read(), gxArchive::Truncated) << left;
  }
}

TEST_F(ArchiveFile, ThatIsEmptyIsTruncated) {
  std::ofstream(path_).close();
  EXPECT_THROW(read(), gxArchive::Truncated);
}
