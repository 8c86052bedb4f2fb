/// What the tests of edges against each other share: their directions and boxes, and when a pair is
/// decided without the test itself.
#pragma once

#include <cntr/internal/outline/box.h>
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/outline/outline.h>
#include <cntr/internal/outline/tolerances.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>
#include <velstd/real_eq.h>
#include <velstd/vector.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#if defined(__SSE2__)
#  include <emmintrin.h>
#endif

/// The sum of the sizes of both components.
inline double gx_sizeOf(const gxVector<2>& v) {
  return std::abs(v.x()) + std::abs(v.y());
}

/// The direction of the line through two points.  In this range it is their difference as it stands.
inline gxVector<2> gx_directionOf(const gxVector<2>& from, const gxVector<2>& to) {
  const gxVector<2> d = to - from;
  const double size = gx_sizeOf(d);
  if (size >= 1e-100 && size <= 1e100) return d;
  return gxLineSeg(from, to).line().direction();
}

/// Tells whether a and b lie so far to the same side of the line from `origin` along d that no point is
/// within the tolerance of the line and of the edge from a to b: true only for certain.  A hit lies
/// within the tolerance of both.  The slack covers, many times over, the rounding of the distances
/// that the test measures (some units in the last place of the edges' lengths) and of this very test.
inline bool gx_missesOn(const gxVector<2>& origin, const gxVector<2>& d, const gxVector<2>& a,
                        const gxVector<2>& b) {
  const gxVector<2> toA = a - origin;
  const gxVector<2> toB = b - origin;
  const double sideA = gf_Cross(d, toA);
  const double sideB = gf_Cross(d, toB);
  const double coordinates = gx_sizeOf(origin) + gx_sizeOf(a) + gx_sizeOf(b);
  const double slack = gx_sizeOf(d) * (3.0 * gx_kTouch + 1e-14 * coordinates) +
                       1e-12 * (std::abs(d.x()) * (std::abs(toA.y()) + std::abs(toB.y())) +
                                std::abs(d.y()) * (std::abs(toA.x()) + std::abs(toB.x())));
  return (sideA > slack && sideB > slack) || (sideA < -slack && sideB < -slack);
}

/// Tells whether lines in these directions are parallel as `gxLine::isParallel` has it: true only for
/// certain.  Squares instead of lengths, and a thousandth of the bound, far more than their rounding,
/// on the safe side.
inline bool gx_surelyParallel(const gxVector<2>& d, const gxVector<2>& e) {
  const double cross = gf_Cross(d, e);
  const double squares = (d * d) * (e * e);
  constexpr double kSine = gxLine::kParallelSine * gxLine::kParallelSine * 0.999;
  return squares >= 1e-250 && squares <= 1e250 && cross * cross <= kSine * squares;
}

/// Tells whether the least and greatest of an edge's coordinate miss a range.  An edge's box is the start
/// widened by the end, so a NaN at the start meets nothing, one at the end is passed over.
inline bool gx_outside(double from, double to, double low, double high) {
  return !((to > from ? to : from) >= low && (to < from ? to : from) <= high);
}

/// Up to N boxes, coordinate by coordinate, so that two are compared at a time.
template <std::size_t N>
class gx_BoxColumns {
 public:
  std::size_t count() const { return count_; }
  gx_Box box(std::size_t i) const { return {lowX_[i], lowY_[i], highX_[i], highY_[i]}; }

  void add(const gx_Box& box) {
    lowX_[count_] = box.lowX;
    lowY_[count_] = box.lowY;
    highX_[count_] = box.highX;
    highY_[count_++] = box.highY;
  }
  /// Makes the last box so large that it holds this one; a coordinate that is NaN is passed over.
  void widenLast(const gx_Box& box) {
    const std::size_t last = count_ - 1;
    if (box.lowX < lowX_[last]) lowX_[last] = box.lowX;
    if (box.lowY < lowY_[last]) lowY_[last] = box.lowY;
    if (box.highX > highX_[last]) highX_[last] = box.highX;
    if (box.highY > highY_[last]) highY_[last] = box.highY;
  }

  /// Tells, bit by bit, which of the boxes from `first` up to `end` meet the other, as `gx_Box::meets` has it.
  std::uint64_t meeting(const gx_Box& o, std::size_t first, std::size_t end) const {
    std::uint64_t bits = 0;
    std::size_t i = first;
#if defined(__SSE2__)
    const __m128d lowX = _mm_set1_pd(o.lowX);
    const __m128d lowY = _mm_set1_pd(o.lowY);
    const __m128d highX = _mm_set1_pd(o.highX);
    const __m128d highY = _mm_set1_pd(o.highY);
    for (; i + 2 <= end; i += 2) {
      const __m128d left = _mm_cmpge_pd(_mm_loadu_pd(highX_ + i), lowX);
      const __m128d right = _mm_cmpge_pd(highX, _mm_loadu_pd(lowX_ + i));
      const __m128d below = _mm_cmpge_pd(_mm_loadu_pd(highY_ + i), lowY);
      const __m128d above = _mm_cmpge_pd(highY, _mm_loadu_pd(lowY_ + i));
      const __m128d both = _mm_and_pd(_mm_and_pd(left, right), _mm_and_pd(below, above));
      bits |= static_cast<std::uint64_t>(_mm_movemask_pd(both)) << i;
    }
#endif
    for (; i < end; ++i) bits |= static_cast<std::uint64_t>(box(i).meets(o)) << i;
    return bits;
  }

  /// Tells, bit by bit, which of the boxes after the i-th are not apart from it for certain; a NaN never tells.
  std::uint64_t notApartAfter(std::size_t i) const {
    const gx_Box o = box(i);
    std::uint64_t bits = 0;
    std::size_t j = i + 1;
#if defined(__SSE2__)
    const __m128d lowX = _mm_set1_pd(o.lowX);
    const __m128d lowY = _mm_set1_pd(o.lowY);
    const __m128d highX = _mm_set1_pd(o.highX);
    const __m128d highY = _mm_set1_pd(o.highY);
    for (; j + 2 <= count_; j += 2) {
      const __m128d left = _mm_cmplt_pd(_mm_loadu_pd(highX_ + j), lowX);
      const __m128d right = _mm_cmplt_pd(highX, _mm_loadu_pd(lowX_ + j));
      const __m128d below = _mm_cmplt_pd(_mm_loadu_pd(highY_ + j), lowY);
      const __m128d above = _mm_cmplt_pd(highY, _mm_loadu_pd(lowY_ + j));
      const __m128d apart = _mm_or_pd(_mm_or_pd(left, right), _mm_or_pd(below, above));
      bits |= static_cast<std::uint64_t>(3 ^ _mm_movemask_pd(apart)) << j;
    }
#endif
    for (; j < count_; ++j) {
      const bool apart =
          highX_[j] < o.lowX || o.highX < lowX_[j] || highY_[j] < o.lowY || o.highY < lowY_[j];
      bits |= static_cast<std::uint64_t>(!apart) << j;
    }
    return bits;
  }

 private:
  static_assert(N <= 64, "a bit for each");

  // On purpose without first values: of 3 boxes only 3 are ever looked at.
  std::size_t count_ = 0;
  double lowX_[N];
  double lowY_[N];
  double highX_[N];
  double highY_[N];
};

/// The boxes of the edges that have a length, of an outline of few, and the numbers of those edges.  Edges
/// that follow each other share a box, which is asked first.
class gx_FewBoxes {
 public:
  explicit gx_FewBoxes(const gx_Outline& outline) {
    outline.forEachEdge([&](std::size_t from, std::size_t to, std::size_t k) {
      const gxVector<2>& a = outline.points[from];
      const gxVector<2>& b = outline.points[to];
      if (!gfRealEq(a, b, gx_kCoincide)) add(gx_Box::ofEdge(a, b), k);
    });
  }

  std::size_t count() const { return boxes_.count(); }
  std::size_t number(std::size_t i) const { return numbers_[i]; }

  /// Tells, bit by bit, which of the boxes meet the other.
  std::uint64_t meeting(const gx_Box& o) const {
    std::uint64_t bits = 0;
    for (std::uint64_t near = groups_.meeting(o, 0, groups_.count()); near != 0; near &= near - 1) {
      const std::size_t first = kGroup * static_cast<std::size_t>(std::countr_zero(near));
      bits |= boxes_.meeting(o, first, std::min(first + kGroup, count()));
    }
    return bits;
  }
  /// Tells, bit by bit, which of the boxes after the i-th are not apart from it for certain.
  std::uint64_t notApartAfter(std::size_t i) const { return boxes_.notApartAfter(i); }

 private:
  static constexpr std::size_t kGroup = 8;

  void add(const gx_Box& box, std::size_t number) {
    if (count() % kGroup == 0) groups_.add({});  // empty: the largest low and the smallest high
    groups_.widenLast(box);
    numbers_[count()] = number;
    boxes_.add(box);
  }

  gx_BoxColumns<gx_kFewEdges> boxes_;
  gx_BoxColumns<(gx_kFewEdges + kGroup - 1) / kGroup> groups_;
  std::size_t numbers_[gx_kFewEdges];
};
