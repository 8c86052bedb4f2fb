// The count is the one thing that shapes on different threads have in common here.  It orders nothing:
// whoever hands a shape from one thread to another does so with a lock or the like, and that makes
// what was counted visible too.
#include <cntr/internal/memory/watch.h>

#include <atomic>

namespace {

std::atomic<std::uint64_t> changes{1};

}  // namespace

std::uint64_t gx_Watch::epoch() noexcept {
  return changes.load(std::memory_order_relaxed);
}

void gx_Watch::count_() noexcept {
  since_.store(0, std::memory_order_relaxed);
  changes.fetch_add(1, std::memory_order_relaxed);
}
