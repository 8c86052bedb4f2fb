/// The boxes of a packed R-tree.
#pragma once

#include <cntr/internal/outline/box.h>
#include <velstd/vector.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>
#include <vector>

/// So many nodes of a packed tree share a parent.
inline constexpr std::size_t gx_kFan = 8;

/// Returns the number of runs of up to 8.
constexpr std::size_t gx_runsOf(std::size_t count) {
  return (count + gx_kFan - 1) / gx_kFan;
}

/// Returns where each level of a packed tree of `count` nodes begins, level 0 first, and the end of the last:
/// a level has an eighth of the nodes of the one below, and the last has at most `top`.
inline std::vector<std::size_t> gx_levelStarts(std::size_t count, std::size_t top) {
  std::vector<std::size_t> starts{0, count};
  while (count > top) {
    count = gx_runsOf(count);
    starts.push_back(starts.back() + count);
  }
  return starts;
}

/// Boxes in an order that keeps neighbours together, and above them the boxes of runs of 8, of runs of 8 of
/// these and so on, up to a level of at most `top`, 1 to 8: an implicit R-tree, level by level in one array,
/// without pointers.  A box test at an inner node never hides a box that passes its own.
class gx_PackedBoxes {
 public:
  struct Run {
    std::size_t first;
    std::size_t end;
  };

  explicit gx_PackedBoxes(std::vector<gx_Box> boxes, std::size_t top = gx_kFan)
      : starts_(gx_levelStarts(boxes.size(), top)), boxes_(std::move(boxes)) {
    boxes_.resize(starts_.back());
    for (std::size_t level = 1; level < levels(); ++level) {
      for (std::size_t i = 0; i < size(level); ++i) {
        const Run run = below(level, i, 0);
        gx_Box node;
        for (std::size_t k = run.first; k < run.end; ++k) node.add(box(level - 1, k));
        boxes_[starts_[level] + i] = node;
      }
    }
  }

  /// Returns the number of levels; level 0 holds the boxes that were given.
  std::size_t levels() const { return starts_.size() - 1; }
  /// Returns the number of boxes of a level.
  std::size_t size(std::size_t level) const { return starts_[level + 1] - starts_[level]; }
  const gx_Box& box(std::size_t level, std::size_t i) const { return boxes_[starts_[level] + i]; }
  /// Returns the run of what lies below a box: boxes of the next level down, or, below level 0, up to 8 of
  /// `items` that the tree is made over.
  Run below(std::size_t level, std::size_t i, std::size_t items) const {
    const std::size_t count = level == 0 ? items : size(level - 1);
    return {i * gx_kFan, (std::min)((i + 1) * gx_kFan, count)};
  }

  /// Calls `visit(i)` for every box of level 0 that passes `meets`, and whose boxes above do, in order,
  /// until one visit returns true; tells whether one did.
  template <class Meets, class Visit>
  bool any(const Meets& meets, const Visit& visit) const {
    return size(0) != 0 && any_(levels() - 1, {0, size(levels() - 1)}, meets, visit);
  }

  /// Calls `visit(i)` for boxes of level 0, the nearest to the point first, leaving out those for which, or
  /// for a box above them, `tooFar(box, square)` is true; `square` is `box.squareFrom(point)`.  What it
  /// says may grow stricter from visit to visit.
  template <class TooFar, class Visit>
  void forEachNear(const gxVector<2>& point, const TooFar& tooFar, const Visit& visit) const {
    if (size(0) != 0) near_(levels() - 1, {0, size(levels() - 1)}, point, tooFar, visit);
  }

 private:
  template <class Meets, class Visit>
  bool any_(std::size_t level, const Run& run, const Meets& meets, const Visit& visit) const {
    for (std::size_t i = run.first; i < run.end; ++i) {
      if (!meets(box(level, i))) continue;
      if (level == 0 ? visit(i) : any_(level - 1, below(level, i, 0), meets, visit)) return true;
    }
    return false;
  }

  template <class TooFar, class Visit>
  void near_(std::size_t level, const Run& run, const gxVector<2>& point, const TooFar& tooFar,
             const Visit& visit) const {
    double squares[gx_kFan];
    const gx_Box* const boxes = &boxes_[starts_[level]];
    for (std::size_t i = run.first; i < run.end; ++i)
      squares[i - run.first] = boxes[i].squareFrom(point);
    // A bit for each box that has not been looked at.
    for (unsigned open = (1U << (run.end - run.first)) - 1U; open != 0;) {
      auto nearest = static_cast<std::size_t>(std::countr_zero(open));
      for (std::size_t c = nearest + 1; c < run.end - run.first; ++c) {
        if (((open >> c) & 1U) != 0 && squares[c] < squares[nearest]) nearest = c;
      }
      open &= ~(1U << nearest);
      const std::size_t i = run.first + nearest;
      if (tooFar(boxes[i], squares[nearest])) continue;
      if (level == 0) {
        visit(i);
      } else {
        near_(level - 1, below(level, i, 0), point, tooFar, visit);
      }
    }
  }

  std::vector<std::size_t> starts_;  // where each level begins in `boxes_`, and the end of the last
  std::vector<gx_Box> boxes_;
};
