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
#include <cntr/internal/memory/probe.h>
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

// The bounds of one coordinate, as enclosing the points one by one finds them: a NaN is passed over,
// except where it comes first, and of equal bounds the first stays.  Only zeros can be equal without
// being the same, so a bound of 0 is looked for again one by one.
struct Bounds {
  explicit Bounds(double first) : low{first, first}, high{first + 0.0, first + 0.0} {}
  void add(double value, int lane) {
    low[lane] = value < low[lane] ? value : low[lane];
    high[lane] = value > high[lane] ? value : high[lane];
  }
  double lowest() const { return low[1] < low[0] ? low[1] : low[0]; }
  double highest() const { return high[1] > high[0] ? high[1] : high[0]; }

  double low[2];  // two lanes, each with every other point, halve the waiting for the last result
  double high[2];
};

template <class Map>
gxRect boxOneByOne(const std::vector<gxVector<2>>& points, const Map& map) {
  gxRect box(map(points.front()), gxVector<2>(0.0, 0.0));
  for (std::size_t i = 1; i < points.size(); ++i) {
    box = box.enclose(gxRect(map(points[i]), gxVector<2>(0.0, 0.0)));
  }
  return box;
}

template <class Map>
gxRect boxOf(const std::vector<gxVector<2>>& points, const Map& map) {
  const gxVector<2> first = map(points.front());
  Bounds x(first.x());
  Bounds y(first.y());
  std::size_t i = 1;
  for (; i + 2 <= points.size(); i += 2) {
    const gxVector<2> p = map(points[i]);
    const gxVector<2> q = map(points[i + 1]);
    x.add(p.x(), 0);
    y.add(p.y(), 0);
    x.add(q.x(), 1);
    y.add(q.y(), 1);
  }
  if (i < points.size()) {
    const gxVector<2> p = map(points[i]);
    x.add(p.x(), 0);
    y.add(p.y(), 0);
  }
  const gxVector<2> low(x.lowest(), y.lowest());
  const gxVector<2> high(x.highest(), y.highest());
  if (low.x() == 0.0 || low.y() == 0.0 || high.x() == 0.0 || high.y() == 0.0) {
    return boxOneByOne(points, map);
  }
  return gxRect::fromCorners(low, high);
}

gxRect mappedBox(const std::vector<gxVector<2>>& points, const gxXform<2>& xform) {
  if (gfRealEq(xform, gxXform<2>(), kSame)) return boxOf(points, [](const gxVector<2>& p) { return p; });
  return boxOf(points, [&xform](const gxVector<2>& p) { return xform * p; });
}

}  // namespace

long gxContour::extremalVertexIndex(const gxRadian& angle) const {
  checkEmptyContour();
  auto& memo = state_.memory.extremalVertices.made();
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
  auto& memo = state_.memory.encloseRects.made();
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
  const gxRect box = boxOf(state_.points, [](const gxVector<2>& p) { return p; });
  state_.memory.uprightBox.set({box.origin().x(), box.origin().y(), box.corner().x(), box.corner().y()});
  return box;
}
