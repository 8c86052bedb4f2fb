/// A tree over boxes that come in any order.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/edge_index.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <vector>

/// Finds, of many boxes, those that meet a given one, in O(log n) for each found where the boxes are
/// spread out.  Packed: the boxes are sorted once into tiles, by left side and then by lower side;
/// a leaf is a run of 8 of them, a node above it a run of 8 leaves, and so on, without pointers.
class GXSHAPE_API gx_BoxTree {
 public:
  explicit gx_BoxTree(const std::vector<gx_Box>& boxes);

  /// Calls `visit(i)` for the number of every box that meets `box`, in no particular order.  An
  /// empty box meets nothing but what is unbounded; a bound that is NaN meets nothing.
  template <class Visit>
  void forEachMeeting(const gx_Box& box, const Visit& visit) const {
    if (!order_.empty()) walk_(starts_.size() - 2, 0, size_(starts_.size() - 2), box, visit);
  }

  /// Calls `visit(i)` for every box that is not left out, the nearest to the point first.  A box and
  /// all below it are left out where `tooFar(box)` says so; what it says may grow stricter from visit
  /// to visit, and what it says of a box it must say of every box inside that one.
  template <class TooFar, class Visit>
  void forEachNear(const gxVector<2>& point, const TooFar& tooFar, const Visit& visit) const {
    if (!order_.empty())
      nearWalk_(starts_.size() - 2, 0, size_(starts_.size() - 2), point, tooFar, visit);
  }

 private:
  static constexpr std::size_t kFan = 8;

  std::size_t size_(std::size_t level) const { return starts_[level + 1] - starts_[level]; }

  // Level 0 holds the boxes themselves, in the order of the tiles.
  template <class Visit>
  void walk_(std::size_t level, std::size_t first, std::size_t end, const gx_Box& box,
             const Visit& visit) const {
    for (std::size_t i = first; i < end; ++i) {
      if (!boxes_[starts_[level] + i].meets(box)) continue;
      if (level == 0) {
        visit(order_[i]);
      } else {
        walk_(level - 1, i * kFan, (std::min)((i + 1) * kFan, size_(level - 1)), box, visit);
      }
    }
  }

  template <class TooFar, class Visit>
  void nearWalk_(std::size_t level, std::size_t first, std::size_t end, const gxVector<2>& point,
                 const TooFar& tooFar, const Visit& visit) const {
    double squares[kFan];
    const gx_Box* boxes = &boxes_[starts_[level]];
    for (std::size_t i = first; i < end; ++i) squares[i - first] = boxes[i].squareFrom(point);
    for (unsigned open = (1U << (end - first)) - 1U; open != 0;) {
      auto nearest = static_cast<std::size_t>(std::countr_zero(open));
      for (std::size_t c = nearest + 1; c < end - first; ++c) {
        if (((open >> c) & 1U) != 0 && squares[c] < squares[nearest]) nearest = c;
      }
      open &= ~(1U << nearest);
      const std::size_t i = first + nearest;
      if (tooFar(boxes[i])) continue;
      if (level == 0) {
        visit(order_[i]);
      } else {
        nearWalk_(level - 1, i * kFan, (std::min)((i + 1) * kFan, size_(level - 1)), point, tooFar,
                  visit);
      }
    }
  }

  std::vector<std::size_t> order_;   // the number of each box, tile by tile
  std::vector<std::size_t> starts_;  // where each level begins in `boxes_`, and the end of the last
  std::vector<gx_Box> boxes_;
};
