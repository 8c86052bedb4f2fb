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
/// It stands for asking a region only where asking shows nowhere: where the region remembers its
/// upright rectangle, so that asking it adds no memory and evicts none, and has the 2 points below
/// which it would throw.  A region whose remembered rectangle is not the true box of its points (a
/// shear's, under the same key, or a point that is no number) is always to be asked; for distances so
/// is a region with holes, because these lie where they like and may throw.
class GXSHAPE_API gx_RegionIndex {
 public:
  using Handle = gxPtrHandle_const<gxRegion>;

  /// Makes the index and watches the regions; it holds (`holds`) unless some region does not
  /// remember its rectangle, is null, or has fewer than 2 points.
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
  std::uint64_t madeAt_ = 0;     // epochs of the watch; 0 when it does not hold
  std::uint64_t checkedAt_ = 0;  // and nothing had changed then
  std::size_t count_ = 0;
  std::vector<std::size_t> insideNumbers_;  // the regions of the boxes in `inside_`
  std::vector<std::size_t> notTrue_;        // the others
  std::vector<std::size_t> nearNumbers_;    // the same for `near_`
  std::vector<std::size_t> alwaysAsked_;
  gx_BoxTree inside_;
  gx_BoxTree near_;
  std::vector<std::size_t> found_;  // kept from call to call, so that it need not be allocated
};
