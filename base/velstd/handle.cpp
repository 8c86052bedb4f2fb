// Counting and the bounded destruction of what is no longer held.
//
// The plain rule "delete at count 0" recurses: the object's destructor drops its own handles, whose
// objects drop theirs, and a chain of ten thousand holes overflows the stack.  So each thread counts
// how many of these deletions are running; past 32 the object is pushed onto a list instead, and
// the outermost deletion works the list off.  The list needs no memory: a dead object's count is
// free to hold the address of the next.
#include <velstd/handle.h>

#include <bit>

static_assert(sizeof(long) == sizeof(void*), "a dead object's count holds an address");

gxRepBase::~gxRepBase() = default;

long gfInterlockedIncrement(std::atomic<long>& count) noexcept {
  return count.fetch_add(1, std::memory_order_relaxed) + 1;
}

long gfInterlockedDecrement(std::atomic<long>& count) noexcept {
  return count.fetch_sub(1, std::memory_order_acq_rel) - 1;
}

namespace {

// Deep enough that everyday objects die in their natural order, shallow enough for any stack.
constexpr int kMostNestedDeletions = 32;

struct Deletions {
  int running = 0;
  const gxRepBase* waiting = nullptr;
};
thread_local Deletions deletions;

}  // namespace

void gx_PtrHandleBase_RepAccessor::acquire(const gxRepBase* rep) noexcept {
  if (rep != nullptr) gfInterlockedIncrement(rep->count_);
}

void gx_PtrHandleBase_RepAccessor::release(const gxRepBase* rep) noexcept {
  if (rep == nullptr || gfInterlockedDecrement(rep->count_) != 0) return;
  if (deletions.running == kMostNestedDeletions) {
    rep->count_.store(std::bit_cast<long>(deletions.waiting), std::memory_order_relaxed);
    deletions.waiting = rep;
    return;
  }
  ++deletions.running;
  delete rep;
  while (deletions.running == 1 && deletions.waiting != nullptr) {
    const gxRepBase* next = deletions.waiting;
    deletions.waiting = std::bit_cast<const gxRepBase*>(next->count_.load(std::memory_order_relaxed));
    // The analyzer does not see that only dead objects wait, each of them once.
    delete next;  // NOLINT(clang-analyzer-cplusplus.NewDelete)
  }
  --deletions.running;
}
