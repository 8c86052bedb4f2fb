/// Whether points lie in a simple ring.
#pragma once

#include <cntr/internal/index/edge_index.h>
#include <velstd/orientation.h>
#include <velstd/vector.h>

#include <cstddef>
#include <memory>
#include <vector>

/// A simple ring, which must stay where it is, that is asked whether it holds points, exactly.  A ring of many
/// points makes an index at the first question that its box does not answer.
class gx_PointInRing {
 public:
  explicit gx_PointInRing(const std::vector<gxVector<2>>& points) : points_(&points) {
    for (const gxVector<2>& p : points) box_.add(p);
  }

  const gx_Box& box() const { return box_; }

  /// Tells whether the point lies within the ring and is none of its vertices; a point of an edge between
  /// its ends is not asked for.
  bool holds(const gxVector<2>& p) {
    if (!box_.holds(p)) return false;
    if (!index_ && points_->size() > kFew)
      index_ = std::make_unique<gx_EdgeIndex>(gx_Outline{*points_, true});
    winding_ = 0;
    isVertex_ = false;
    if (index_) {
      index_->forEachRun(
          [&p](const gx_Box& b) { return b.lowY <= p.y() && b.highY >= p.y() && b.lowX <= p.x(); },
          [&](std::size_t first, std::size_t end) { return count_(first, end, p); });
    } else {
      count_(0, points_->size(), p);
    }
    return !isVertex_ && winding_ != 0;
  }

 private:
  static constexpr std::size_t kFew = 64;

  // Counts how often a ray to the left is crossed; tells whether the point is a vertex.
  bool count_(std::size_t first, std::size_t end, const gxVector<2>& p) {
    for (std::size_t k = first; k < end && !isVertex_; ++k) {
      const gxVector<2>& a = (*points_)[k == 0 ? points_->size() - 1 : k - 1];
      const gxVector<2>& b = (*points_)[k];
      isVertex_ = b == p || a == p;
      const bool up = a.y() <= p.y() && p.y() < b.y();
      const bool down = b.y() <= p.y() && p.y() < a.y();
      if (up && gx_Orientation(a, b, p) < 0) --winding_;
      if (down && gx_Orientation(a, b, p) > 0) ++winding_;
    }
    return isVertex_;
  }

  const std::vector<gxVector<2>>* points_;
  gx_Box box_;
  std::unique_ptr<gx_EdgeIndex> index_;
  int winding_ = 0;
  bool isVertex_ = false;
};
