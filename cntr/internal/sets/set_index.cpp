// Asking for the index:
//   1. Where the epoch is that of the last check, the index holds.
//   2. Else it is checked under the latch, region by region: where it holds the epoch is noted, where it
//      does not it is taken out.
//   3. Without an index the question counts, and the one that makes it pay builds it, outside of the
//      latch; threads that ask meanwhile go region by region.
#include <cntr/internal/memory/computation_count.h>
#include <cntr/internal/memory/watch.h>
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/sets/region_index.h>
#include <cntr/internal/sets/set_index.h>

#include <algorithm>
#include <utility>

const gx_RegionIndex* gx_SetIndex::get(const Regions& regions) const {
  const std::uint64_t now = gx_Watch::epoch();
  if (checkedAt_.load(std::memory_order_acquire) == now) {
    if (const gx_RegionIndex* index = index_.load(std::memory_order_acquire)) return index;
  }
  if (const gx_RegionIndex* index = checked_(regions, now)) return index;
  questions_.add(1);
  if (questions_.spent() < std::max(nextTry_.spent(), gx_kFirstSetIndex)) return nullptr;
  return made_(regions);
}

const gx_RegionIndex* gx_SetIndex::checked_(const Regions& regions, std::uint64_t now) const {
  const gx_RegionIndex* stale = nullptr;
  {
    const gx_Latch::Hold hold(latch_);
    // Acquired all the same: whoever makes an index publishes it without the latch.
    const gx_RegionIndex* const index = index_.load(std::memory_order_acquire);
    if (index == nullptr) return nullptr;
    if (index->holds(regions)) {
      checkedAt_.store(now, std::memory_order_release);
      return index;
    }
    stale = index_.exchange(nullptr, std::memory_order_relaxed);
  }
  stale->release();  // not under the latch: it frees memory
  return nullptr;
}

const gx_RegionIndex* gx_SetIndex::made_(const Regions& regions) const {
  if (beingMade_.exchange(true, std::memory_order_acquire)) return nullptr;
  struct Guard {
    ~Guard() { flag.store(false, std::memory_order_release); }
    std::atomic<bool>& flag;
  } const guard{beingMade_};
  if (const gx_RegionIndex* index = index_.load(std::memory_order_acquire)) return index;
  gx_countComputation(gx_Computation::eSetIndex);
  auto index = std::make_unique<gx_RegionIndex>(regions);
  const std::uint64_t questions = questions_.spent();
  nextTry_.set(questions + std::max(questions, gx_kFirstSetIndex));
  const gx_RegionIndex* const mine = index.release();
  index_.store(mine, std::memory_order_release);
  checkedAt_.store(mine->madeAt(), std::memory_order_release);
  return mine;
}

void gx_SetIndex::take_(const gx_SetIndex& other) noexcept {
  const gx_Latch::Hold hold(other.latch_);
  if (const gx_RegionIndex* index = other.index_.load(std::memory_order_acquire)) {
    index->acquire();
    index_.store(index, std::memory_order_relaxed);
    checkedAt_.store(other.checkedAt_.load(std::memory_order_relaxed), std::memory_order_relaxed);
  }
  questions_ = other.questions_;
  nextTry_ = other.nextTry_;
}

void gx_SetIndex::drop() noexcept {
  if (const gx_RegionIndex* index = index_.exchange(nullptr, std::memory_order_relaxed))
    index->release();
  checkedAt_.store(0, std::memory_order_relaxed);
  questions_.drop();
  nextTry_.drop();
}
