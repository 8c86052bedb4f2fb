/// A tree over the boxes of the regions of a set.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/box_tree.h>
#include <velstd/handle.h>
#include <velstd/vector.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

class gxRegion;

/// Which regions of a list a point may lie in, and which may come nearer to it than some distance,
/// without asking all of them.
///
/// It may skip a region only if asking that region would have no side effect.  A null handle, a region of fewer than
/// the 2 points below which it throws, and one with a point that is no number are always to be asked; for
/// distances so is a region with holes, because these lie where they like and may throw.
class GXSHAPE_API gx_RegionIndex {
 public:
  using Handle = gxPtrHandle_const<gxRegion>;

  /// Makes the index and watches the regions.
  explicit gx_RegionIndex(const std::vector<Handle>& regions);

  /// Tells whether every region still is what it was when the index was made.
  bool holds(const std::vector<Handle>& regions) const;
  /// Returns the epoch of the watches at which it was made.
  std::uint64_t madeAt() const { return madeAt_; }

  /// Count the sets that share the index, of which the first is the one that made it; the last one to let
  /// go destroys it.
  void acquire() const noexcept { owners_.fetch_add(1, std::memory_order_relaxed); }
  void release() const noexcept {
    if (owners_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }

  /// Calls `visit(i)`, in ascending order, for the regions that have to be asked whether they hold the
  /// point, until one visit returns true; tells whether one did.  The others do not hold it.
  template <class Visit>
  bool anyThatMayHold(const gxVector<2>& point, const Visit& visit) const {
    std::array<std::size_t, kFew> few;
    std::vector<std::size_t> many;
    std::size_t count = 0;
    const auto add = [&](std::size_t i) {
      if (count < kFew) few[count] = i;
      if (count == kFew) many.assign(few.begin(), few.end());
      if (count >= kFew) many.push_back(i);
      ++count;
    };
    std::for_each(withoutBox_.begin(), withoutBox_.end(), add);
    inside_.forEachMeeting({point.x(), point.y(), point.x(), point.y()},
                           [&](std::size_t i) { add(insideNumbers_[i]); });
    std::size_t* const first = count <= kFew ? few.data() : many.data();
    std::sort(first, first + count);
    return std::any_of(first, first + count, visit);
  }

  /// The regions whose distance has to be asked for always, in ascending order.
  const std::vector<std::size_t>& alwaysAsked() const { return alwaysAsked_; }

  /// Calls `visit(i)` for each of the other regions that may come nearer to the point than `limit`,
  /// the nearest box first; a visit may lower the limit, and never raises it.
  template <class Visit>
  void forEachNear(const gxVector<2>& point, const double& limit, const Visit& visit) const {
    near_.forEachNear(
        point, [&](const gx_Box& box) { return surelyFarther(box, point, limit); },
        [&](std::size_t i) { visit(nearNumbers_[i]); });
  }

  /// Tells whether every point of the box is farther away than `limit` for certain.
  static bool surelyFarther(const gx_Box& box, const gxVector<2>& point, double limit);

 private:
  // As many boxes usually hold a point at the most; more are put on the heap.
  static constexpr std::size_t kFew = 16;

  mutable std::atomic<std::uint32_t> owners_{1};
  std::uint64_t madeAt_ = 0;
  std::size_t count_ = 0;
  std::vector<std::size_t> insideNumbers_;  // the regions of the boxes in `inside_`
  std::vector<std::size_t> withoutBox_;     // the others
  std::vector<std::size_t> nearNumbers_;    // the same for `near_`
  std::vector<std::size_t> alwaysAsked_;
  gx_BoxTree inside_;
  gx_BoxTree near_;
};
