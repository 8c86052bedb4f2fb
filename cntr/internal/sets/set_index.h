/// The index of a region set, which is replaced when one of the regions changes.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/memo/latch.h>
#include <cntr/internal/memo/published.h>
#include <velstd/handle.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

class gxRegion;
class gx_RegionIndex;

/// The one thing that a shape remembers and that goes stale while the shape itself stays: a region of the
/// set is changed by its owner, and the set is not told.  So the index is checked before it is used, and
/// replaced where it does not hold any more.
///
/// Any number of threads may ask.  While no watched region has changed since the last check, nothing is
/// written and nothing is locked.  Taking a stale index out is safe although others read without a lock:
/// whoever changed the region had it to himself, so all who read the old index were done by then, and
/// whoever comes later finds another epoch and looks again under the latch.
class GXSHAPE_API gx_SetIndex {
 public:
  using Regions = std::vector<gxPtrHandle_const<gxRegion>>;

  gx_SetIndex() noexcept = default;
  /// A copy shares the index, as the copy of the set shares the regions.
  gx_SetIndex(const gx_SetIndex& other) noexcept { take_(other); }
  gx_SetIndex& operator=(const gx_SetIndex& other) noexcept {
    if (this == &other) return *this;
    drop();
    take_(other);
    return *this;
  }
  ~gx_SetIndex() { drop(); }

  /// Returns the index, made if it is time to; null while there is none.  It stays as long as the set and
  /// its regions do.  Every time that a region changes doubles the number of questions up to the next
  /// index, so that making it costs no more than asking; questions that an index answers do not count.
  const gx_RegionIndex* get(const Regions& regions) const;

  /// Forgets it; for operations that have the set to themselves.
  void drop() noexcept;

 private:
  const gx_RegionIndex* checked_(const Regions& regions, std::uint64_t now) const;
  const gx_RegionIndex* made_(const Regions& regions) const;
  void take_(const gx_SetIndex& other) noexcept;

  mutable std::atomic<const gx_RegionIndex*> index_{nullptr};  // owned, together with copies
  mutable std::atomic<std::uint64_t> checkedAt_{0};            // the epoch at which it was found to hold
  gx_Effort questions_;
  gx_Effort nextTry_;  // 0: the first
  mutable std::atomic<bool> beingMade_{false};
  mutable gx_Latch latch_;
};
