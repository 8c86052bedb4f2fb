/// A tree over boxes that come in any order.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/packed_boxes.h>

#include <cstddef>
#include <vector>

/// Finds, of many boxes, those that meet a given one, in O(log n) for each found where the boxes are
/// spread out.  A packed R-tree: the boxes are sorted once into tiles, by left side and then by lower side
/// (sort-tile-recursive packing).
class GXSHAPE_API gx_BoxTree {
 public:
  explicit gx_BoxTree(const std::vector<gx_Box>& boxes);

  /// Calls `visit(i)` for the number of every box that meets `box`, in no particular order.  An
  /// empty box meets nothing but what is unbounded; a bound that is NaN meets nothing.
  template <class Visit>
  void forEachMeeting(const gx_Box& box, const Visit& visit) const {
    boxes_.any([&](const gx_Box& other) { return other.meets(box); },
               [&](std::size_t i) {
                 visit(order_[i]);
                 return false;
               });
  }

  /// Calls `visit(i)` for every box that is not left out, the nearest to the point first.  A box and
  /// all below it are left out where `tooFar(box)` says so; what it says may grow stricter from visit
  /// to visit, and what it says of a box it must say of every box inside that one.
  template <class TooFar, class Visit>
  void forEachNear(const gxVector<2>& point, const TooFar& tooFar, const Visit& visit) const {
    boxes_.forEachNear(
        point, [&](const gx_Box& box, double) { return tooFar(box); },
        [&](std::size_t i) { visit(order_[i]); });
  }

 private:
  std::vector<std::size_t> order_;  // the number of each box, tile by tile
  gx_PackedBoxes boxes_;            // in that order
};
