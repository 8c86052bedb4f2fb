/// All edges of all rings of a shape in one list, under a tree of boxes.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/packed_boxes.h>
#include <cntr/internal/outline/box.h>
#include <gauge/internal/rings.h>
#include <velstd/vector.h>

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
/// of 8 leaves, and so on, up to a single one.
class GXSHAPE_API gx_EdgeTree {
 public:
  static constexpr std::size_t kFan = gx_kFan;

  gx_EdgeTree() = default;
  /// Makes the tree over the edges of the rings as they stand.  A ring of one point has one edge, closed or
  /// not, so that it is somewhere.
  explicit gx_EdgeTree(const std::vector<gx_Ring>& rings);

  const std::vector<gx_Edge>& edges() const { return edges_; }
  /// Return the number of levels, 0 without edges; the number of boxes of a level; a box.  Level 0 holds the
  /// leaves.
  std::size_t levels() const { return edges_.empty() ? 0 : boxes_.levels(); }
  std::size_t size(std::size_t level) const { return boxes_.size(level); }
  const gx_Box& box(std::size_t level, std::size_t i) const { return boxes_.box(level, i); }

  /// What lies below a box: boxes of the level below, edges below level 0.
  gx_PackedBoxes::Run below(std::size_t level, std::size_t i) const {
    return boxes_.below(level, i, edges_.size());
  }

  /// Calls `visit(first, end)` for every leaf whose box and whose boxes above pass `meets`, until a visit
  /// returns true; tells whether one did.
  template <class Meets, class Visit>
  bool forEachRun(const Meets& meets, const Visit& visit) const {
    return boxes_.any(meets, [&](std::size_t leaf) {
      const gx_PackedBoxes::Run run = below(0, leaf);
      return visit(run.first, run.end);
    });
  }

  /// Calls `visit(first, end)` for leaves, near ones first, leaving out those that lie farther from the
  /// point than `limit`, which a visit may lower.
  template <class Visit>
  void forEachNear(const gxVector<2>& point, const double& limit, const Visit& visit) const {
    const auto tooFar = [&limit](const gx_Box& box, double square) {
      const double reach = limit + kSlack * (limit + (box.highX - box.lowX) + (box.highY - box.lowY));
      return square > reach * reach;
    };
    boxes_.forEachNear(point, tooFar, [&](std::size_t leaf) {
      const gx_PackedBoxes::Run run = below(0, leaf);
      visit(run.first, run.end);
    });
  }

 private:
  // Distances are left out only beyond this part of the limit and of the box.
  static constexpr double kSlack = 1e-12;

  std::vector<gx_Edge> edges_;
  gx_PackedBoxes boxes_{{}, 1};
};
