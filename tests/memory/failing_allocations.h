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

/// Returns the number of blocks that are allocated at this moment, by all threads.
long blocksInUse() noexcept;

}  // namespace memory_test
