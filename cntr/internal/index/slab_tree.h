/// A tree of slabs over the edges of a contour, for the nearest edge or vertex.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/packed_boxes.h>
#include <cntr/internal/outline/box.h>
#include <cntr/internal/outline/outline.h>
#include <cntr/internal/outline/tolerances.h>
#include <velstd/vector.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#if defined(__SSE2__)
#  include <emmintrin.h>
#endif

/// The slabs of up to 8 runs of edges, component by component.
struct alignas(64) gx_SlabNode {
  static constexpr std::size_t kFan = gx_kFan;

  // No slab, until it is put in: at an infinite distance.
  static constexpr float kNone = -std::numeric_limits<float>::infinity();

  // The middle, relative to the anchor; the direction, of length 1 but for rounding; half the extents
  // along it and across.
  float x[kFan] = {};
  float y[kFan] = {};
  float alongX[kFan] = {};
  float alongY[kFan] = {};
  float halfAlong[kFan] = {kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone};
  float halfAcross[kFan] = {};
  gxVector<2> anchor;
  double reach = 0.0;  // no middle is farther from the anchor
  unsigned children = 0;
};

/// The squares of the distances of the slabs of a node from a point, to be taken one by one.
class gx_SlabSquares {
 public:
  static constexpr std::size_t kNone = gx_SlabNode::kFan;

#if defined(__SSE2__)
  /// Measures the distances from the point (qx, qy), seen from the anchor; all numbers are finite.
  gx_SlabSquares(const gx_SlabNode& node, float qx, float qy)
      : low_(four_(node, 0, qx, qy)), high_(four_(node, 4, qx, qy)) {}

  /// Takes the nearest slab that is left, and returns its place; `kNone` where it is not within
  /// `limit`, a square.
  std::size_t take(float limit) {
    __m128 least = _mm_min_ps(low_, high_);
    least = _mm_min_ps(least, _mm_shuffle_ps(least, least, _MM_SHUFFLE(1, 0, 3, 2)));
    least = _mm_min_ps(least, _mm_shuffle_ps(least, least, _MM_SHUFFLE(2, 3, 0, 1)));
    if (!(_mm_cvtss_f32(least) <= limit && _mm_cvtss_f32(least) < kTaken)) return kNone;
    const int low = _mm_movemask_ps(_mm_cmpeq_ps(low_, least));
    const int high = _mm_movemask_ps(_mm_cmpeq_ps(high_, least));
    const int found = std::countr_zero(static_cast<unsigned>(low | (high << 4)));
    const std::size_t at = static_cast<std::size_t>(found) % kNone;
    static constexpr float kMark[16] = {0, 0, 0, 0, 0, 0, 0, 0, kTaken};
    low_ = _mm_max_ps(low_, _mm_loadu_ps(kMark + 8 - at));
    high_ = _mm_max_ps(high_, _mm_loadu_ps(kMark + (at < 4 ? 0 : 12 - at)));
    return at;
  }

 private:
  static __m128 four_(const gx_SlabNode& node, std::size_t first, float qx, float qy) {
    const __m128 sign = _mm_set1_ps(-0.0F);
    const __m128 dx = _mm_sub_ps(_mm_set1_ps(qx), _mm_load_ps(node.x + first));
    const __m128 dy = _mm_sub_ps(_mm_set1_ps(qy), _mm_load_ps(node.y + first));
    const __m128 ux = _mm_load_ps(node.alongX + first);
    const __m128 uy = _mm_load_ps(node.alongY + first);
    const __m128 along = _mm_add_ps(_mm_mul_ps(dx, ux), _mm_mul_ps(dy, uy));
    const __m128 across = _mm_sub_ps(_mm_mul_ps(dy, ux), _mm_mul_ps(dx, uy));
    const __m128 beyond = _mm_max_ps(
        _mm_sub_ps(_mm_andnot_ps(sign, along), _mm_load_ps(node.halfAlong + first)), _mm_setzero_ps());
    const __m128 beside = _mm_max_ps(
        _mm_sub_ps(_mm_andnot_ps(sign, across), _mm_load_ps(node.halfAcross + first)), _mm_setzero_ps());
    return _mm_add_ps(_mm_mul_ps(beyond, beyond), _mm_mul_ps(beside, beside));
  }

  __m128 low_;
  __m128 high_;
#else
  gx_SlabSquares(const gx_SlabNode& node, float qx, float qy) {
    for (std::size_t i = 0; i < gx_SlabNode::kFan; ++i) {
      const float dx = qx - node.x[i];
      const float dy = qy - node.y[i];
      const float along = std::abs(dx * node.alongX[i] + dy * node.alongY[i]) - node.halfAlong[i];
      const float across = std::abs(dy * node.alongX[i] - dx * node.alongY[i]) - node.halfAcross[i];
      const float beyond = (std::max)(along, 0.0F);
      const float beside = (std::max)(across, 0.0F);
      squares_[i] = beyond * beyond + beside * beside;
    }
  }

  std::size_t take(float limit) {
    float* const nearest = std::min_element(squares_, squares_ + gx_SlabNode::kFan);
    if (!(*nearest <= limit && *nearest < kTaken)) return kNone;
    *nearest = kTaken;
    return static_cast<std::size_t>(nearest - squares_);
  }

 private:
  float squares_[gx_SlabNode::kFan];
#endif
  static constexpr float kTaken = std::numeric_limits<float>::infinity();
};

/// A tree of boxes over runs of consecutive edges, each box turned along the chord of its run.
///
/// The outline of an object is smooth at the scale of a few edges, and a box along the chord is there
/// a slab no thicker than the noise; upright boxes of slanted runs are as thick as the run is long,
/// and of a point inside a round shape hundreds of them are as near as the nearest edge.
///
/// A leaf is a run of 8 edges, and each node holds the slabs of 8 leaves or nodes in single
/// precision, component by component, so that all 8 are measured side by side: about 4.6 bytes an
/// edge.  A slab holds its run for certain, and what is lost by measuring in single precision is
/// bounded below, so nothing is left out that could be nearest.
class GXSHAPE_API gx_SlabTree {
 public:
  static constexpr std::size_t kFan = gx_SlabNode::kFan;

  /// `bounds` is the box of all points; none of them may have a NaN coordinate.
  gx_SlabTree(const gx_Outline& outline, const gx_Box& bounds);

  /// Tells whether the tree can be asked about the point: not where coordinates are out of the range
  /// in which single precision is safe, nor for a point so far away that it tells nothing apart.
  bool answers(const gxVector<2>& point) const {
    return std::abs(point.x() - centre_.x()) + std::abs(point.y() - centre_.y()) <= farthest_;
  }

  /// Calls `visit(first, end)` for runs of edges, about the nearest first, leaving out those that hold
  /// nothing within `limit` of the point.  A visit may lower the limit, and never raises it.
  template <class Visit>
  void forEachRunNear(const gxVector<2>& point, const double& limit, const Visit& visit) const {
    walk_(starts_.size() - 2, 0, point, limit, visit);
  }

 private:
  // With q from the anchor to the point, rounded to single precision, c the middle and d = q − c, the
  // errors are, in units of 2⁻²⁴: |q| + |d| in d, 3 |d| in the products with the direction and their
  // sum, 2 |d| in the difference from the extents, 2 |d| in the root of the sum of squares and 2 |d|
  // in the length of the direction; |d| is at most |q| + |c|.
  static constexpr double kSingleSlack = 12.0 / 16777216.0;
  template <class Visit>
  void walk_(std::size_t level, std::size_t at, const gxVector<2>& point, const double& limit,
             const Visit& visit) const {
    const gx_SlabNode& node = nodes_[starts_[level] + at];
    const gxVector<2> q = point - node.anchor;
    const double slack = kSingleSlack * (std::sqrt(q * q) + node.reach);
    gx_SlabSquares slabs(node, static_cast<float>(q.x()), static_cast<float>(q.y()));
    for (;;) {
      const double reach = limit * (1.0 + gx_kRounding) + slack;
      const std::size_t nearest = slabs.take(static_cast<float>(reach * reach * (1.0 + 1e-6)));
      if (nearest == gx_SlabSquares::kNone) return;
      const std::size_t below = at * kFan + nearest;
      if (level == 0) {
        visit(below * kFan, (std::min)((below + 1) * kFan, edges_));
      } else {
        walk_(level - 1, below, point, limit, visit);
      }
    }
  }

  std::size_t edges_;
  gxVector<2> centre_;
  double farthest_ = -1.0;
  std::vector<std::size_t> starts_;  // where each level begins in `nodes_`, and the end of the last
  std::vector<gx_SlabNode> nodes_;
};
