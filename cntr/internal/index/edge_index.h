/// A tree of boxes over the edges of a contour.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/slab_tree.h>
#include <cntr/internal/memo/shared_part.h>
#include <velstd/rect.h>
#include <velstd/vector.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <limits>
#include <vector>

/// An axis-aligned box as its four bounds; empty by default, and then it meets nothing.
struct gx_Box {
  double lowX = std::numeric_limits<double>::infinity();
  double lowY = std::numeric_limits<double>::infinity();
  double highX = -std::numeric_limits<double>::infinity();
  double highY = -std::numeric_limits<double>::infinity();

  /// Widens the box to hold a point; a coordinate that is NaN is passed over.
  void add(const gxVector<2>& p) {
    lowX = p.x() < lowX ? p.x() : lowX;
    lowY = p.y() < lowY ? p.y() : lowY;
    highX = p.x() > highX ? p.x() : highX;
    highY = p.y() > highY ? p.y() : highY;
  }
  void add(const gx_Box& o) {
    lowX = (std::min)(lowX, o.lowX);
    lowY = (std::min)(lowY, o.lowY);
    highX = (std::max)(highX, o.highX);
    highY = (std::max)(highY, o.highY);
  }
  /// Tells whether the boxes share a point, borders included.
  bool meets(const gx_Box& o) const {
    return highX >= o.lowX && o.highX >= lowX && highY >= o.lowY && o.highY >= lowY;
  }
  /// Tells whether the point lies in the box or on its border; false for NaN.
  bool holds(const gxVector<2>& p) const {
    return p.x() >= lowX && p.x() <= highX && p.y() >= lowY && p.y() <= highY;
  }
  /// Returns a bound below the square of the distance of any point of the box from `p`; exact but
  /// for rounding.
  double squareFrom(const gxVector<2>& p) const {
    const double dx = (std::max)((std::max)(lowX - p.x(), p.x() - highX), 0.0);
    const double dy = (std::max)((std::max)(lowY - p.y(), p.y() - highY), 0.0);
    return dx * dx + dy * dy;
  }
};

/// Up to so many edges a scan is at least as fast as any tree.  What is laid out for few edges has room
/// for as many, and contours keep to it (`gxContour::indexPays_`).
inline constexpr std::size_t gx_kFewEdges = 64;

/// A tree of boxes over the edges of a contour, in edge order.
///
/// The edges of a contour come in an order that keeps neighbours together, so nothing is sorted: a
/// leaf is a run of 8 consecutive edges, a node above it a run of 8 leaves, and so on; the boxes of
/// each level lie in one array, without pointers: about 4.6 bytes an edge in all.  A walk through
/// the tree meets the edges in their order.  The boxes hold all points of the edges, a NaN
/// coordinate excepted, so a box test at an inner node never hides an edge that passes its own.
class GXSHAPE_API gx_EdgeIndex {
 public:
  static constexpr std::size_t kFan = 8;

  gx_EdgeIndex(const std::vector<gxVector<2>>& points, bool closed);

  std::size_t edges() const { return edges_; }
  /// Returns the box of all points.
  const gx_Box& bounds() const { return bounds_; }
  /// Tells whether some point has a NaN coordinate.
  bool hasNaN() const { return hasNaN_; }

  /// Returns the tree of slabs over the same points, made by the first call; null where a coordinate
  /// is NaN, and while another thread is making it.
  const gx_SlabTree* slabs(const std::vector<gxVector<2>>& points, bool closed) const {
    if (hasNaN_) return nullptr;
    return slabs_.madeUnlessBusy([&] { return gx_SlabTree(points, closed, bounds_); });
  }

  /// Returns the number of levels above the edges; level 0 holds the leaves.
  std::size_t levels() const { return starts_.size() - 1; }
  /// Returns the number of boxes of a level.
  std::size_t size(std::size_t level) const { return starts_[level + 1] - starts_[level]; }
  const gx_Box& box(std::size_t level, std::size_t i) const { return boxes_[starts_[level] + i]; }

  /// Calls `visit(first, end)` for every leaf, a run of edges, whose box and whose boxes above pass
  /// `meets`, in edge order, until one visit returns true; tells whether one did.
  template <class Meets, class Visit>
  bool forEachRun(const Meets& meets, const Visit& visit) const {
    return edges_ != 0 && walk_(levels() - 1, 0, size(levels() - 1), meets, visit);
  }

  /// Calls `visit(first, end)` for runs of edges, the nearest boxes first, leaving out those that
  /// hold nothing within `limit` of the point.  A visit may lower the limit, and never raises it.
  ///
  /// A distance computed for an edge, as it is rounded, may be below the true one by a few units in
  /// the last place of the edge's length and of the distance; a box is left out only where it lies
  /// farther away than the limit by `kSlack` of both, a thousand times that.
  template <class Visit>
  void forEachRunNear(const gxVector<2>& point, const double& limit, const Visit& visit) const {
    if (edges_ != 0) nearWalk_(levels() - 1, 0, size(levels() - 1), point, limit, visit);
  }
  static constexpr double kSlack = 1e-12;
  /// Squares below this have lost digits to denormals and prove nothing.
  static constexpr double kSmallestSquare = 1e-280;

 private:
  bool tooFar_(const gx_Box& b, double square, double limit) const {
    const double reach = limit + kSlack * (limit + (b.highX - b.lowX) + (b.highY - b.lowY));
    return reach * reach > kSmallestSquare && square > reach * reach;
  }

  template <class Visit>
  void nearWalk_(std::size_t level, std::size_t first, std::size_t end, const gxVector<2>& point,
                 const double& limit, const Visit& visit) const {
    double squares[kFan];
    for (std::size_t i = first; i < end; ++i) squares[i - first] = box(level, i).squareFrom(point);
    for (unsigned open = (1U << (end - first)) - 1U; open != 0;) {
      std::size_t nearest = static_cast<std::size_t>(std::countr_zero(open));
      for (std::size_t c = nearest + 1; c < end - first; ++c) {
        if (((open >> c) & 1U) != 0 && squares[c] < squares[nearest]) nearest = c;
      }
      open &= ~(1U << nearest);
      const std::size_t i = first + nearest;
      if (tooFar_(box(level, i), squares[nearest], limit)) continue;
      const std::size_t below = i * kFan;
      if (level == 0) {
        visit(below, (std::min)(below + kFan, edges_));
      } else {
        nearWalk_(level - 1, below, (std::min)(below + kFan, size(level - 1)), point, limit, visit);
      }
    }
  }

  template <class Meets, class Visit>
  bool walk_(std::size_t level, std::size_t first, std::size_t end, const Meets& meets,
             const Visit& visit) const {
    for (std::size_t i = first; i < end; ++i) {
      if (!meets(box(level, i))) continue;
      const std::size_t below = i * kFan;
      if (level == 0) {
        if (visit(below, (std::min)(below + kFan, edges_))) return true;
      } else if (walk_(level - 1, below, (std::min)(below + kFan, size(level - 1)), meets, visit)) {
        return true;
      }
    }
    return false;
  }

  std::size_t edges_;
  bool hasNaN_ = false;
  gx_Box bounds_;
  std::vector<std::size_t> starts_;  // where each level begins in `boxes_`, and the end of the last
  std::vector<gx_Box> boxes_;
  gx_Shared<gx_SlabTree> slabs_;
};
