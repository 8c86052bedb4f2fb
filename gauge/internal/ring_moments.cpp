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

// Two numbers in one register: x and y, or y and x.
using Two = gx_Two;

Two swapped(const Two& v) {
  return Two{v[1], v[0]};
}

// A corner, seen from the first, with the products that both of its edges need.
struct Corner {
  explicit Corner(const Two& p)
      : at(p), squares(p * p), product(p[0] * p[1]), cubes(squares * swapped(p)) {}

  Two at;
  Two squares;
  double product;
  Two cubes;  // x x y, y y x
};

// The sums of a block.  What one sum does with x and y another one does with y and x; the two go side by
// side, each with the bits that it has alone (as gx_addToMoments adds them).
struct Block {
  double m00 = 0.0;
  double m11 = 0.0;
  Two first = {};         // m10, m01
  Two second = {};        // m20, m02
  Two third = {};         // m30, m03
  Two thirdBetween = {};  // m21, m12

  template <bool thirdOrder>
  void add(const Corner& a, const Corner& b) {
    const Two across = a.at * swapped(b.at);
    const double w = across[0] - across[1];
    const Two sum = a.at + b.at;
    const Two squares = a.squares + b.squares;
    const Two squared = sum * sum;
    m00 += w;
    m11 += w * (sum[0] * sum[1] + (a.product + b.product));
    first += w * sum;
    second += w * (squared + squares);
    if constexpr (thirdOrder) {
      const Two cubes = a.cubes + b.cubes;
      third += w * (sum * squares);
      thirdBetween += w * (squared * swapped(sum) + (cubes + cubes));
    }
  }
  Sums sums() const {
    return {m00,       first[0], first[1],        second[0],       m11,
            second[1], third[0], thirdBetween[0], thirdBetween[1], third[1]};
  }
};

// Corners as seen from the first one, in the scale of a frame.
class View {
 public:
  View(const gxVector<2>& first, const gx_Frame& frame)
      : up_(frame.up()), upAgain_(frame.upAgain()), first_(scaled(first)) {}

  Corner operator()(const gxVector<2>& p) const { return Corner(scaled(p) - first_); }

 private:
  Two scaled(const gxVector<2>& p) const { return Two{p.x(), p.y()} * up_ * upAgain_; }

  double up_;
  double upAgain_;
  Two first_;
};

// The sums over all edges that do not touch the first point; those that do enclose nothing with it.
template <bool third>
Sums sumsOf(std::span<const gxVector<2>> points, const gx_Frame& frame) {
  if (points.size() < 3) return {};
  const View seen(points[0], frame);
  Corner a = seen(points[1]);
  const auto blockOf = [&a, seen](std::span<const gxVector<2>> ends) {
    Block block;
    Corner from = a;  // of its own, to stay in registers
    for (const gxVector<2>& p : ends) {
      const Corner to = seen(p);
      block.add<third>(from, to);
      from = to;
    }
    a = from;
    return block.sums();
  };
  std::span<const gxVector<2>> left = points.subspan(2);
  if (left.size() <= gx_kMomentBlock)
    return blockOf(left);  // rounding takes nothing from a single block
  Kept kept;
  while (!left.empty()) {
    const std::size_t count = std::min(left.size(), gx_kMomentBlock);
    kept.add(blockOf(left.first(count)), third ? 10 : 6);
    left = left.subspan(count);
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
  result.m20 = sign * sums[3] / 24.0;
  result.m11 = sign * sums[4] / 24.0;
  result.m02 = sign * sums[5] / 24.0;
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

gx_MomentSums gx_momentsOf(std::span<const gx_Ring> rings, const gx_Frame& frame,
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
