// Archives in files: replaced in one step, and whole whatever fails.
#include <archive/probe_node.h>
#include <gtest/gtest.h>
#include <velstd/archive.h>

#include <sys/resource.h>
#include <sys/stat.h>

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

TEST_F(ArchiveFile, WhoseObjectThrowsLeavesTheOldOneWhole) {
  write(1);
  ProbeNode node;
  node.onSerialize = [](gxArchive&) { throw 1; };
  gxArchive out;
  EXPECT_THROW(out.store(node), int);
  EXPECT_EQ(read(), 1);
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

TEST_F(ArchiveFile, ThatIsEmptyIsTruncated) {
  std::ofstream(path_).close();
  EXPECT_THROW(read(), gxArchive::Truncated);
}
