// The counting allocator of the archive tests: every global operator new of the program, the shared
// libraries included, comes here.  A block carries its size in front, in a header that keeps the
// alignment; the sanitizers go on watching the blocks that it asks of malloc.
#include <archive/memory_count.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

namespace {

std::atomic<std::size_t> inUse{0};
std::atomic<std::size_t> peak{0};

constexpr std::size_t kHeader = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

void* allocate(std::size_t size) {
  auto* const block = static_cast<unsigned char*>(std::malloc(size + kHeader));
  if (block == nullptr) throw std::bad_alloc();
  new (block) std::size_t(size);
  const std::size_t now = inUse += size;
  std::size_t highest = peak;
  while (highest < now && !peak.compare_exchange_weak(highest, now)) {}
  return block + kHeader;
}

void release(void* object) noexcept {
  if (object == nullptr) return;
  auto* const block = static_cast<unsigned char*>(object) - kHeader;
  inUse -= *std::launder(reinterpret_cast<std::size_t*>(block));
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return allocate(size);
}
void operator delete(void* object) noexcept {
  release(object);
}
void operator delete[](void* object) noexcept {
  release(object);
}
void operator delete(void* object, std::size_t) noexcept {
  release(object);
}
void operator delete[](void* object, std::size_t) noexcept {
  release(object);
}

std::size_t archive_test::bytesInUse() {
  return inUse;
}
std::size_t archive_test::peakBytes() {
  return peak;
}
void archive_test::forgetPeak() {
  peak = inUse.load();
}

// Held by the tests beside it: memory_use_test.cpp.
TEST(MemoryCount, SeesWhatIsAllocatedAndFreed) {
  const std::size_t before = archive_test::bytesInUse();
  archive_test::forgetPeak();
  {
    const std::vector<char> some(100000);
    EXPECT_GE(archive_test::bytesInUse(), before + 100000);
    EXPECT_EQ(some.size(), 100000U);
  }
  EXPECT_EQ(archive_test::bytesInUse(), before);
  EXPECT_GE(archive_test::peakBytes(), before + 100000);
  archive_test::forgetPeak();
  EXPECT_LT(archive_test::peakBytes(), before + 100000);
}
