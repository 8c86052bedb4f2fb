// Moments of a ring by Green's theorem.
//
//  1. Each edge from a to b, seen from the ring's first point, makes a triangle with it.  With w = a × b,
//     the moments of the ring are sums of w times polynomials in a and b.  A few dozen terms are added
//     plainly, and these sums then with what rounding took from them, so that a million points lose no
//     more digits than fifty.
//  2. The centre is m10 / m00, m01 / m00; the parallel-axis formulas move the others there.
//  3. Rings are put together about their common centre, by differences of centres only.
//
// (Raw moments about the origin of the coordinates, subtracted in the end, lose twice the digits of offset
// over size in the second order, and three times in the third: nothing is left at 1e6.)
#include <gauge/internal/edge_terms.h>
#include <gauge/internal/ring_moments.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

using Sums = std::array<double, 10>;  // as in ring_moments.h

// The sums behind a block of edges added up, with what rounding took from them.
class Kept {
 public:
  void add(const Sums& terms, std::size_t count) {
    for (std::size_t k = 0; k < count; ++k) sums_[k].add(terms[k]);
  }
  Sums total() const {
    Sums result{};
    for (std::size_t k = 0; k < result.size(); ++k) result[k] = sums_[k].high + sums_[k].low;
    return result;
  }

 private:
  std::array<gx_KeptSum<double>, 10> sums_;
};

template <bool third>
inline void addEdge(const gxVector<2>& a, const gxVector<2>& b, Sums& s) {
  gx_addToMoments<double>({a.x(), a.y()}, {b.x(), b.y()}, s.data());
  if constexpr (third) {
    const double w = a.x() * b.y() - b.x() * a.y();
    const double x = a.x() + b.x();
    const double y = a.y() + b.y();
    const double ax2 = a.x() * a.x();
    const double bx2 = b.x() * b.x();
    const double ay2 = a.y() * a.y();
    const double by2 = b.y() * b.y();
    const double axx = a.x() * b.x();
    const double ayy = a.y() * b.y();
    s[6] += w * (x * (ax2 + bx2));
    s[7] += w * (ax2 * (y + 2.0 * a.y()) + 2.0 * axx * y + bx2 * (y + 2.0 * b.y()));
    s[8] += w * (ay2 * (x + 2.0 * a.x()) + 2.0 * ayy * x + by2 * (x + 2.0 * b.x()));
    s[9] += w * (y * (ay2 + by2));
  }
}

// The sums over all edges that do not touch the first point; those that do enclose nothing with it.
template <bool third>
Sums sumsOf(std::span<const gxVector<2>> points, const gx_Frame& frame) {
  Kept kept;
  if (points.size() < 3) return {};
  const gxVector<2> first = frame.scaled(points[0]);
  gxVector<2> a = frame.scaled(points[1]) - first;
  for (std::size_t i = 2; i < points.size();) {
    Sums block{};
    for (const std::size_t end = std::min(i + gx_kMomentBlock, points.size()); i < end; ++i) {
      const gxVector<2> b = frame.scaled(points[i]) - first;
      addEdge<third>(a, b, block);
      a = b;
    }
    kept.add(block, third ? 10 : 6);
  }
  return kept.total();
}

}  // namespace

void gx_MomentSums::shift(const gxVector<2>& d) {
  const double x = d.x();
  const double y = d.y();
  m30 += 3.0 * x * m20 + area * x * x * x;
  m21 += 2.0 * x * m11 + y * m20 + area * x * x * y;
  m12 += 2.0 * y * m11 + x * m02 + area * x * y * y;
  m03 += 3.0 * y * m02 + area * y * y * y;
  m20 += area * x * x;
  m11 += area * x * y;
  m02 += area * y * y;
}

gx_MomentSums gx_ringMoments(std::span<const gxVector<2>> points, const gx_Frame& frame,
                             const gxVector<2>& from, bool thirdOrder) {
  const Sums sums = thirdOrder ? sumsOf<true>(points, frame) : sumsOf<false>(points, frame);
  if (sums[0] == 0.0) return {};
  return gx_ringMomentsFrom(sums, frame.scaled(points[0]) - frame.scaled(from), thirdOrder);
}

gx_MomentSums gx_ringMomentsFrom(const std::array<double, 10>& sums, const gxVector<2>& first,
                                 bool thirdOrder) {
  gx_MomentSums result;
  const double sign = sums[0] < 0.0 ? -1.0 : 1.0;
  result.area = sign * sums[0] / 2.0;
  if (result.area == 0.0) return result;
  const gxVector<2> c(sums[1] / (3.0 * sums[0]), sums[2] / (3.0 * sums[0]));
  result.m20 = sign * sums[3] / 12.0;
  result.m11 = sign * sums[4] / 24.0;
  result.m02 = sign * sums[5] / 12.0;
  // From the first point to the centre, in the order in which each needs the one before.
  result.m20 -= result.area * c.x() * c.x();
  result.m11 -= result.area * c.x() * c.y();
  result.m02 -= result.area * c.y() * c.y();
  if (thirdOrder) {
    const double x = c.x();
    const double y = c.y();
    result.m30 = sign * sums[6] / 20.0 - 3.0 * x * result.m20 - result.area * x * x * x;
    result.m21 = sign * sums[7] / 60.0 - 2.0 * x * result.m11 - y * result.m20 - result.area * x * x * y;
    result.m12 = sign * sums[8] / 60.0 - 2.0 * y * result.m11 - x * result.m02 - result.area * x * y * y;
    result.m03 = sign * sums[9] / 20.0 - 3.0 * y * result.m02 - result.area * y * y * y;
  }
  result.centre = first + c;
  return result;
}

gx_MomentSums gx_momentsOf(const std::vector<gx_Ring>& rings, const gx_Frame& frame,
                           const gxVector<2>& from, bool thirdOrder) {
  if (rings.size() == 1) return gx_ringMoments(rings[0].points, frame, from, thirdOrder);
  std::vector<gx_MomentSums> parts;
  parts.reserve(rings.size());
  gx_MomentSums total;
  gxVector<2> weighted;
  for (const gx_Ring& ring : rings) {
    parts.push_back(gx_ringMoments(ring.points, frame, from, thirdOrder));
    const double area = ring.depth % 2 == 0 ? parts.back().area : -parts.back().area;
    total.area += area;
    weighted += parts.back().centre * area;
  }
  if (total.area == 0.0) return total;
  total.centre = weighted / total.area;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    gx_MomentSums& part = parts[i];
    const double sign = rings[i].depth % 2 == 0 ? 1.0 : -1.0;
    part.shift(part.centre - total.centre);
    total.m20 += sign * part.m20;
    total.m11 += sign * part.m11;
    total.m02 += sign * part.m02;
    total.m30 += sign * part.m30;
    total.m21 += sign * part.m21;
    total.m12 += sign * part.m12;
    total.m03 += sign * part.m03;
  }
  return total;
}
