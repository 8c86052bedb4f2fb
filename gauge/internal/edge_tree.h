/// All edges of all rings of a shape in one list, under a tree of boxes.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/outline/box.h>
#include <gauge/internal/rings.h>
#include <velstd/vector.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

/// An edge of a shape: its ends, the position of its ring in the list of rings, its number on the ring.
struct gx_Edge {
  gxVector<2> a;
  gxVector<2> b;
  std::uint32_t ring = 0;
  std::uint32_t number = 0;

  gx_Box box() const {
    gx_Box result;
    result.add(a);
    result.add(b);
    return result;
  }
};

/// A tree of boxes over edges in the order of the walk: a leaf is a run of 8 edges, a node above it a run
/// of 8 leaves, and so on.
class GXSHAPE_API gx_EdgeTree {
 public:
  static constexpr std::size_t kFan = 8;

  gx_EdgeTree() = default;
  /// Makes the tree over the edges of the rings as they stand.  A ring of one point has one edge, closed or
  /// not, so that it is somewhere.
  explicit gx_EdgeTree(const std::vector<gx_Ring>& rings);

  const std::vector<gx_Edge>& edges() const { return edges_; }
  std::size_t levels() const { return boxes_.size(); }
  /// Level 0 holds the leaves.
  const std::vector<gx_Box>& boxes(std::size_t level) const { return boxes_[level]; }

  /// What lies below a box: boxes of the level below, edges below level 0.
  struct Range {
    std::size_t first;
    std::size_t end;
  };
  Range below(std::size_t level, std::size_t i) const {
    const std::size_t count = level == 0 ? edges_.size() : boxes_[level - 1].size();
    return {i * kFan, std::min((i + 1) * kFan, count)};
  }

  /// Calls `visit(first, end)` for every leaf whose box and whose boxes above pass `meets`, until a visit
  /// returns true; tells whether one did.
  template <class Meets, class Visit>
  bool forEachRun(const Meets& meets, const Visit& visit) const {
    return !boxes_.empty() && walk_(levels() - 1, 0, boxes_.back().size(), meets, visit);
  }

  /// Calls `visit(first, end)` for leaves, near ones first where it is cheap to tell, leaving out those
  /// that lie farther from the point than `limit`, which a visit may lower.
  template <class Visit>
  void forEachNear(const gxVector<2>& point, const double& limit, const Visit& visit) const {
    if (!boxes_.empty()) near_(levels() - 1, 0, boxes_.back().size(), point, limit, visit);
  }

 private:
  // Distances are left out only beyond this part of the limit and of the box.
  static constexpr double kSlack = 1e-12;

  static bool tooFar_(const gx_Box& b, const gxVector<2>& point, double limit) {
    const double reach = limit + kSlack * (limit + (b.highX - b.lowX) + (b.highY - b.lowY));
    return b.squareFrom(point) > reach * reach;
  }

  template <class Meets, class Visit>
  bool walk_(std::size_t level, std::size_t first, std::size_t end, const Meets& meets,
             const Visit& visit) const {
    for (std::size_t i = first; i < end; ++i) {
      if (!meets(boxes_[level][i])) continue;
      const Range range = below(level, i);
      if (level == 0 ? visit(range.first, range.end)
                     : walk_(level - 1, range.first, range.end, meets, visit)) {
        return true;
      }
    }
    return false;
  }

  template <class Visit>
  void near_(std::size_t level, std::size_t first, std::size_t end, const gxVector<2>& point,
             const double& limit, const Visit& visit) const {
    // The top may be wide; below it a node has at most 8.
    std::size_t nearest = first;
    double least = boxes_[level][first].squareFrom(point);
    for (std::size_t i = first + 1; i < end; ++i) {
      const double square = boxes_[level][i].squareFrom(point);
      if (!(square < least)) continue;
      least = square;
      nearest = i;
    }
    for (std::size_t k = first; k < end; ++k) {
      const std::size_t i = k == first ? nearest : k == nearest ? first : k;
      if (tooFar_(boxes_[level][i], point, limit)) continue;
      const Range range = below(level, i);
      if (level == 0) {
        visit(range.first, range.end);
      } else {
        near_(level - 1, range.first, range.end, point, limit, visit);
      }
    }
  }

  std::vector<gx_Edge> edges_;
  std::vector<std::vector<gx_Box>> boxes_;
};
