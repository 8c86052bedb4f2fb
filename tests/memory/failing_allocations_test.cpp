// The allocator of these tests: every global operator new of the program, the shared libraries included,
// comes here.  It counts by thread, so that what other threads allocate disturbs nobody.
#include <memory/failing_allocations.h>

#include <gtest/gtest.h>

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

namespace {

thread_local long made = 0;
thread_local long untilFailure = -1;  // -1: none fails
thread_local bool failed = false;
std::atomic<long> inUse{0};

// The pages of a SealableMemory, one at a time; a block in them is never given back.
std::byte* pages = nullptr;
std::size_t pagesSize = 0;
std::size_t pagesUsed = 0;
thread_local bool gathers = false;

bool isGathered(const void* block) noexcept {
  const auto* const byte = static_cast<const std::byte*>(block);
  return pages != nullptr && byte >= pages && byte < pages + pagesSize;
}

void* gathered(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) {
  const std::size_t begin = (pagesUsed + alignment - 1) / alignment * alignment;
  if (begin > pagesSize || size > pagesSize - begin) throw std::bad_alloc();
  pagesUsed = begin + std::max<std::size_t>(size, 1);
  return pages + begin;
}

void* allocate(std::size_t size) {
  ++made;
  if (untilFailure == 0) {
    untilFailure = -1;
    failed = true;
    throw std::bad_alloc();
  }
  if (untilFailure > 0) --untilFailure;
  void* const block = gathers ? gathered(size) : std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  ++inUse;
  return block;
}

void release(void* block) noexcept {
  if (block == nullptr) return;
  --inUse;
  if (!isGathered(block)) std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return allocate(size);
}
// The forms that do not throw, which a stable sort asks for its buffer: all blocks come from one place.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
// The aligned form, for nodes of a cache line's length: neither counted nor made to fail.
void* operator new(std::size_t size, std::align_val_t alignment) {
  const auto wanted = static_cast<std::size_t>(alignment);
  if (gathers) return gathered(size, wanted);
  void* const block = std::aligned_alloc(wanted, (size + wanted - 1) / wanted * wanted);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block, std::align_val_t) noexcept {
  if (!isGathered(block)) std::free(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  if (!isGathered(block)) std::free(block);
}
void operator delete(void* block) noexcept {
  release(block);
}
void operator delete[](void* block) noexcept {
  release(block);
}
void operator delete(void* block, std::size_t) noexcept {
  release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  release(block);
}

memory_test::FailingAllocation::FailingAllocation(long k) noexcept {
  failed = false;
  untilFailure = k;
}
memory_test::FailingAllocation::~FailingAllocation() {
  untilFailure = -1;
}
bool memory_test::FailingAllocation::happened() noexcept {
  return failed;
}

memory_test::Allocations::Allocations() noexcept : before_(made) {}
long memory_test::Allocations::count() const noexcept {
  return made - before_;
}

memory_test::SealableMemory::SealableMemory(std::size_t bytes) {
  void* const mapped = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  pages = static_cast<std::byte*>(mapped);
  pagesSize = bytes;
  pagesUsed = 0;
  gathers = true;
}
memory_test::SealableMemory::~SealableMemory() {
  stopGathering();
}
void memory_test::SealableMemory::stopGathering() noexcept {
  gathers = false;
}
void memory_test::SealableMemory::seal() const {
  if (mprotect(pages, pagesSize, PROT_READ) != 0) throw std::bad_alloc();
}
std::size_t memory_test::SealableMemory::used() const noexcept {
  return pagesUsed;
}

long memory_test::blocksInUse() noexcept {
  return inUse;
}

TEST(FailingAllocation, FailsOnceAndOnlyAtItsNumber) {
  for (long k = 0; k < 5; ++k) {
    long survived = 0;
    const long before = memory_test::blocksInUse();
    {
      std::vector<std::string*> strings(5);
      const memory_test::FailingAllocation failing(k);
      for (std::string*& string : strings) {
        try {
          string = new std::string;
          ++survived;
        } catch (const std::bad_alloc&) {
          EXPECT_EQ(&string - strings.data(), k);
        }
      }
      EXPECT_TRUE(failing.happened());
      for (const std::string* string : strings) delete string;
    }
    EXPECT_EQ(survived, 4);
    EXPECT_EQ(memory_test::blocksInUse(), before);
  }
  const memory_test::FailingAllocation never(1000);
  const memory_test::Allocations allocations;
  EXPECT_EQ(std::vector<int>(7).size(), 7U);
  EXPECT_EQ(allocations.count(), 1);
  EXPECT_FALSE(never.happened());
}
