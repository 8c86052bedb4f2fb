// What archives and thread-local values cost in memory, as the counting allocator sees it.
//
// Covers base/velstd/archive_file.cpp
// Covers base/velstd/thread_local.cpp
#include <archive/memory_count.h>
#include <archive/probe_node.h>
#include <archive/record_writer.h>
#include <gtest/gtest.h>
#include <velstd/archive.h>
#include <velstd/thread_local.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

using archive_test::ProbeNode;

namespace {

// A header that promises 1.8 GB, and something behind it.
std::string falseLength(std::size_t behind) {
  return std::string("\x89GXA\r\n\x1a\n\x01\0\0\0\0\0\0\x70\0\0\0\0", 20) + std::string(behind, 'x');
}

std::size_t peakOf(const std::function<void()>& call) {
  const std::size_t before = archive_test::bytesInUse();
  archive_test::forgetPeak();
  call();
  return archive_test::peakBytes() - before;
}

}  // namespace

TEST(MemoryUse, AFalseLengthCostsNoMoreThanTheStreamHolds) {
  for (const std::size_t behind : {std::size_t{1000}, std::size_t{1000000}}) {
    std::istringstream stream(falseLength(behind));
    ProbeNode node;
    gxArchive in(stream);
    EXPECT_LE(peakOf([&] { EXPECT_THROW(in.load(node), gxArchive::Truncated); }), 4 * behind + 200000);
  }
}

TEST(MemoryUse, AFalseLengthCostsNoMoreThanTheFileHolds) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                     ("gxshape-false-" + std::to_string(std::random_device()()));
  for (const std::size_t behind : {std::size_t{1000}, std::size_t{1000000}}) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << falseLength(behind);
    ProbeNode node;
    EXPECT_LE(peakOf([&] {
                gxArchive in = gxArchive::fromFile(path);
                EXPECT_THROW(in.load(node), gxArchive::Truncated);
              }),
              4 * behind + 200000);
  }
  std::filesystem::remove(path);
}

TEST(MemoryUse, AFileIsReadIntoHardlyMoreThanItsSize) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                     ("gxshape-size-" + std::to_string(std::random_device()()));
  ProbeNode node;
  node.points.resize(100000);
  gxArchive out;
  out.store(node);
  out.writeFile(path);
  const std::size_t size = out.bytes().size();
  EXPECT_LE(peakOf([&] { gxArchive::fromFile(path); }), size + 100000);
  std::filesystem::remove(path);
}

TEST(MemoryUse, ThreadLocalObjectsLeaveNothingBehind) {
  int value = 0;
  const auto useSome = [&](int count) {
    for (int i = 0; i < count; ++i) {
      gx_ThreadLocal local;
      local.OSValue(&value);
    }
  };
  useSome(1);
  const std::size_t before = archive_test::bytesInUse();
  useSome(100000);
  EXPECT_LE(archive_test::bytesInUse(), before + 1000);
}
