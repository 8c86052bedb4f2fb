/// A tree over the boxes of the regions of a set.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/box_tree.h>
#include <velstd/handle.h>
#include <velstd/vector.h>

#include <cstddef>
#include <cstdint>
#include <vector>

class gxRegion;

/// Which regions of a list a point may lie in, and which may come nearer to it than some distance,
/// without asking all of them.
///
/// It stands for asking a region only where asking shows nowhere.  A null handle, a region of fewer than
/// the 2 points below which it throws, and one with a point that is no number are always to be asked; for
/// distances so is a region with holes, because these lie where they like and may throw.
class GXSHAPE_API gx_RegionIndex {
 public:
  using Handle = gxPtrHandle_const<gxRegion>;

  /// Makes the index and watches the regions.
  explicit gx_RegionIndex(const std::vector<Handle>& regions);

  /// Tells whether every region still is what it was when the index was made.
  bool holds(const std::vector<Handle>& regions);

  /// Returns, in ascending order and up to the next call, the regions that have to be asked whether
  /// they hold the point; the others do not.
  const std::vector<std::size_t>& thatMayHold(const gxVector<2>& point);

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
  std::uint64_t madeAt_ = 0;     // epochs of the watch
  std::uint64_t checkedAt_ = 0;  // and nothing had changed then
  std::size_t count_ = 0;
  std::vector<std::size_t> insideNumbers_;  // the regions of the boxes in `inside_`
  std::vector<std::size_t> withoutBox_;     // the others
  std::vector<std::size_t> nearNumbers_;    // the same for `near_`
  std::vector<std::size_t> alwaysAsked_;
  gx_BoxTree inside_;
  gx_BoxTree near_;
  std::vector<std::size_t> found_;  // kept from call to call, so that it need not be allocated
};
