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

#include <cmath>
#include <cstddef>
#include <vector>

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

/// The boxes of the edges that have a length, of an outline of few, and the numbers of those edges.
class gx_FewBoxes {
 public:
  explicit gx_FewBoxes(const gx_Outline& outline) {
    outline.forEachEdge([&](std::size_t from, std::size_t to, std::size_t k) {
      const gxVector<2>& a = outline.points[from];
      const gxVector<2>& b = outline.points[to];
      if (!gfRealEq(a, b, gx_kCoincide)) add(gx_Box::ofEdge(a, b), k);
    });
  }

  std::size_t count() const { return count_; }
  std::size_t number(std::size_t i) const { return numbers_[i]; }
  gx_Box box(std::size_t i) const { return {lowX_[i], lowY_[i], highX_[i], highY_[i]}; }

  // As `gx_Box::meets`, without a branch.
  bool meets(std::size_t i, const gx_Box& o) const {
    return (highX_[i] >= o.lowX) & (o.highX >= lowX_[i]) & (highY_[i] >= o.lowY) & (o.highY >= lowY_[i]);
  }
  // Tells whether the boxes have no point in common; a NaN never tells.
  bool apart(std::size_t i, const gx_Box& o) const {
    return (highX_[i] < o.lowX) | (o.highX < lowX_[i]) | (highY_[i] < o.lowY) | (o.highY < lowY_[i]);
  }

 private:
  void add(const gx_Box& box, std::size_t number) {
    lowX_[count_] = box.lowX;
    lowY_[count_] = box.lowY;
    highX_[count_] = box.highX;
    highY_[count_] = box.highY;
    numbers_[count_++] = number;
  }

  // On purpose without first values: of 3 edges only 3 are ever looked at.
  std::size_t count_ = 0;
  double lowX_[gx_kFewEdges];
  double lowY_[gx_kFewEdges];
  double highX_[gx_kFewEdges];
  double highY_[gx_kFewEdges];
  std::size_t numbers_[gx_kFewEdges];
};
