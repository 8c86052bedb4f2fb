/// An allocator that can be told to fail (failing_allocations_test.cpp replaces the program's).
#pragma once

#include <cstddef>

namespace memory_test {

/// Makes allocation number `k` of this thread from here on fail, 0 the first, while it lives; all others
/// succeed.
class FailingAllocation {
 public:
  explicit FailingAllocation(long k) noexcept;
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation();

  /// Tells whether it came to that.
  static bool happened() noexcept;
};

/// Counts the allocations of this thread since its construction.
class Allocations {
 public:
  Allocations() noexcept;
  long count() const noexcept;

 private:
  long before_;
};

/// Keeps what this thread allocates, while it gathers, in pages of its own, so that they can be sealed: from
/// then on a write to any of these blocks ends the process.  The pages stay until the program ends.
class SealableMemory {
 public:
  /// Begins to gather.
  explicit SealableMemory(std::size_t bytes);
  SealableMemory(const SealableMemory&) = delete;
  SealableMemory& operator=(const SealableMemory&) = delete;
  ~SealableMemory();

  /// Ends gathering: blocks come from the usual place again.
  void stopGathering() noexcept;
  /// Forbids writing to what was gathered.
  void seal() const;
  /// Returns how many bytes the blocks take.
  std::size_t used() const noexcept;
};

/// Returns the number of blocks that are allocated at this moment, by all threads.
long blocksInUse() noexcept;

}  // namespace memory_test
