// The farthest vertex in a direction, and the upright rectangle in any transformed frame.
//
// Farthest vertex: the score of a vertex is its projection on (cos angle, sin angle).  A direction
// within 1e-15 of an axis takes the bare coordinate instead, so that the four axis directions are
// exact although cos(π/2) is not 0.  Scan from the most negative finite double, with a strict
// comparison: the lowest index wins ties, and a contour without a usable score answers −1.
//
// Rectangle: the box of the mapped vertices, one after the other.  The one of the points as they stand,
// by which other operations reject, is remembered by itself: transforms share keys, and a shear's
// rectangle in its place would make them answer wrong.
//
// Both remember a bounded number of answers; see `gx_KeyedMemo`.
#include <cntr/contour.h>
#include <cntr/internal/memory/computation_count.h>
#include <cntr/internal/outline/paired_box.h>
#include <velstd/real_eq.h>

#include <array>
#include <cmath>
#include <limits>

namespace {

// Directions and transforms this close to an axis or the identity are taken for it: a few units in
// the last place of 1, what the rounding of a sine and cosine makes.
constexpr double kSame = 1e-15;

template <class Score>
long farthest(const std::vector<gxVector<2>>& points, Score score) {
  double best = std::numeric_limits<double>::lowest();
  long index = -1;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double value = score(points[i]);
    if (value > best) {
      best = value;
      index = static_cast<long>(i);
    }
  }
  return index;
}

long farthestAlong(const std::vector<gxVector<2>>& points, double angle) {
  const gxVector<2> d(std::cos(angle), std::sin(angle));
  const auto along = [&d](double x, double y) { return gfRealEq(d, gxVector<2>(x, y), kSame); };
  if (along(1, 0)) return farthest(points, [](const gxVector<2>& p) { return p.x(); });
  if (along(-1, 0)) return farthest(points, [](const gxVector<2>& p) { return -p.x(); });
  if (along(0, 1)) return farthest(points, [](const gxVector<2>& p) { return p.y(); });
  if (along(0, -1)) return farthest(points, [](const gxVector<2>& p) { return -p.y(); });
  return farthest(points, [&d](const gxVector<2>& p) { return d * p; });
}

template <class Map>
gxRect boxOneByOne(const std::vector<gxVector<2>>& points, const Map& map) {
  gxRect box(map(points.front()), gxVector<2>(0.0, 0.0));
  for (std::size_t i = 1; i < points.size(); ++i) {
    box = box.enclose(gxRect(map(points[i]), gxVector<2>(0.0, 0.0)));
  }
  return box;
}

// The bounds of both coordinates, as enclosing the points one by one finds them: a NaN is passed over, except where it
// comes first, and a bound of 0, whose sign is that of the first, is looked for again one by one.
template <class Map>
gxRect boxOf(const std::vector<gxVector<2>>& points, const Map& map) {
  gx_PairedBox odd(
      map(points.front()));  // every other point each, which halves the waiting for the last result
  gx_PairedBox even = odd;
  std::size_t i = 1;
  for (; i + 2 <= points.size(); i += 2) {
    odd.add(map(points[i]));
    even.add(map(points[i + 1]));
  }
  if (i < points.size()) odd.add(map(points[i]));
  odd.add(even);
  const gx_Box box = odd.box();
  if (box.lowX == 0.0 || box.lowY == 0.0 || box.highX == 0.0 || box.highY == 0.0)
    return boxOneByOne(points, map);
  return gxRect::fromCorners({box.lowX, box.lowY}, {box.highX, box.highY});
}

constexpr auto kAsTheyStand = [](const gxVector<2>& p) -> const gxVector<2>& { return p; };

gxRect mappedBox(const std::vector<gxVector<2>>& points, const gxXform<2>& xform) {
  if (gfRealEq(xform, gxXform<2>(), kSame)) return boxOf(points, kAsTheyStand);
  return boxOf(points, [&xform](const gxVector<2>& p) { return xform * p; });
}

}  // namespace

long gxContour::extremalVertexIndex(const gxRadian& angle) const {
  checkEmptyContour();
  auto& memo = state_.memory.seldom.made().extremalVertices;
  long index = -1;
  if (memo.find(angle.toDouble(), index)) return index;
  gx_countComputation(gx_Computation::eExtremalVertex);
  index = farthestAlong(state_.points, angle.toDouble());
  memo.insert(angle.toDouble(), index, state_.cachedVectorSize);
  return index;
}

gxVector<2> gxContour::extremalVertexPosition(const gxRadian& angle) const {
  const long index = extremalVertexIndex(angle);
  if (index >= 0) return state_.points[static_cast<std::size_t>(index)];
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  return {kNaN, kNaN};
}

gxRect gxContour::encloseRect(const gxXform<2>& xform) const {
  checkEmptyContour();
  auto& memo = state_.memory.seldom.made().encloseRects;
  gxRect box;
  if (memo.find(xform, box)) return box;
  gx_countComputation(gx_Computation::eEncloseRect);
  box = mappedBox(state_.points, xform);
  memo.insert(xform, box, state_.cachedVectorSize);
  return box;
}

gxRect gxContour::uprightBox_() const {
  std::array<double, 4> corners{};
  if (state_.memory.uprightBox.get(corners)) {
    return gxRect::fromCorners({corners[0], corners[1]}, {corners[2], corners[3]});
  }
  checkEmptyContour();
  gx_countComputation(gx_Computation::eUprightBox);
  const gxRect box = boxOf(state_.points, kAsTheyStand);
  state_.memory.uprightBox.set({box.origin().x(), box.origin().y(), box.corner().x(), box.corner().y()});
  return box;
}
