/// A tree of boxes over the edges of a contour.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/packed_boxes.h>
#include <cntr/internal/index/slab_tree.h>
#include <cntr/internal/memo/shared_part.h>
#include <cntr/internal/outline/box.h>
#include <cntr/internal/outline/outline.h>
#include <cntr/internal/outline/tolerances.h>
#include <velstd/vector.h>

#include <cstddef>

/// A packed R-tree over the edges of an outline, in edge order.
///
/// The edges of an outline come in an order that keeps neighbours together, so nothing is sorted: a
/// leaf is a run of 8 consecutive edges, a node above it a run of 8 leaves, and so on: about 4.6 bytes an
/// edge in all.  A walk through the tree meets the edges in their order.  The boxes hold all points of the
/// edges, a NaN coordinate excepted.
class GXSHAPE_API gx_EdgeIndex {
 public:
  static constexpr std::size_t kFan = gx_kFan;
  using Run = gx_PackedBoxes::Run;

  explicit gx_EdgeIndex(const gx_Outline& outline);

  std::size_t edges() const { return edges_; }
  /// Returns the box of all points.
  const gx_Box& bounds() const { return bounds_; }
  /// Tells whether some point has a NaN coordinate.
  bool hasNaN() const { return hasNaN_; }

  /// Returns the tree of slabs over the same outline, made by the first call; null where a coordinate
  /// is NaN, and while another thread is making it.
  const gx_SlabTree* slabs(const gx_Outline& outline) const {
    if (hasNaN_) return nullptr;
    return slabs_.madeUnlessBusy([&] { return gx_SlabTree(outline, bounds_); });
  }

  /// Returns the number of levels above the edges; level 0 holds the leaves.
  std::size_t levels() const { return boxes_.levels(); }
  /// Returns the number of boxes of a level.
  std::size_t size(std::size_t level) const { return boxes_.size(level); }
  const gx_Box& box(std::size_t level, std::size_t i) const { return boxes_.box(level, i); }
  /// Returns the boxes of the next level, or the edges, below a box.
  Run below(std::size_t level, std::size_t i) const { return boxes_.below(level, i, edges_); }

  /// Calls `visit(first, end)` for every leaf, a run of edges, whose box and whose boxes above pass
  /// `meets`, in edge order, until one visit returns true; tells whether one did.
  template <class Meets, class Visit>
  bool forEachRun(const Meets& meets, const Visit& visit) const {
    return boxes_.any(meets, [&](std::size_t leaf) {
      const Run run = below(0, leaf);
      return visit(run.first, run.end);
    });
  }

  /// Calls `visit(first, end)` for runs of edges, the nearest boxes first, leaving out those that
  /// hold nothing within `limit` of the point.  A visit may lower the limit, and never raises it.
  ///
  /// A distance computed for an edge, as it is rounded, may be below the true one by a few units in
  /// the last place of the edge's length and of the distance; a box is left out only where it lies
  /// farther away than the limit by `gx_kRounding` of both, a thousand times that.
  template <class Visit>
  void forEachRunNear(const gxVector<2>& point, const double& limit, const Visit& visit) const {
    boxes_.forEachNear(
        point, [&](const gx_Box& box, double square) { return isTooFar_(box, square, limit); },
        [&](std::size_t leaf) {
          const Run run = below(0, leaf);
          visit(run.first, run.end);
        });
  }
  /// Squares below this have lost digits to denormals and prove nothing.
  static constexpr double kSmallestSquare = 1e-280;

 private:
  static bool isTooFar_(const gx_Box& b, double square, double limit) {
    const double reach = limit + gx_kRounding * (limit + (b.highX - b.lowX) + (b.highY - b.lowY));
    return reach * reach > kSmallestSquare && square > reach * reach;
  }

  std::size_t edges_;
  bool hasNaN_ = false;
  gx_Box bounds_;
  gx_PackedBoxes boxes_;
  gx_Shared<gx_SlabTree> slabs_;
};
