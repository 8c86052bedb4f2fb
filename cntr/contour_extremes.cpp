// The farthest vertex in a direction, and the upright rectangle in any transformed frame.
//
// Farthest vertex: the score of a vertex is its projection on (cos angle, sin angle).  A direction
// within 1e-15 of an axis takes the bare coordinate instead, so that the four axis directions are
// exact although cos(π/2) is not 0.  Scan from the most negative finite double, with a strict
// comparison: the lowest index wins ties, and a contour without a usable score answers −1.
//
// Rectangle: the box of the mapped vertices, one after the other.
//
// Both remember a bounded number of answers; see `gx_BoundedMemo`.
#include <cntr/contour.h>
#include <cntr/internal/probe.h>
#include <velstd/real_eq.h>

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
gxRect boxOf(const std::vector<gxVector<2>>& points, Map map) {
  gxRect box(map(points.front()), gxVector<2>(0.0, 0.0));
  for (std::size_t i = 1; i < points.size(); ++i) {
    box = box.enclose(gxRect(map(points[i]), gxVector<2>(0.0, 0.0)));
  }
  return box;
}

gxRect mappedBox(const std::vector<gxVector<2>>& points, const gxXform<2>& xform) {
  if (gfRealEq(xform, gxXform<2>(), kSame)) return boxOf(points, [](const gxVector<2>& p) { return p; });
  return boxOf(points, [&xform](const gxVector<2>& p) { return xform * p; });
}

}  // namespace

long gxContour::extremalVertexIndex(const gxRadian& angle) const {
  checkEmptyContour();
  auto& memo = state_.memory.extremalVertices.made();
  if (const long* known = memo.find(angle.toDouble())) return *known;
  gx_countComputation(gx_Computation::eExtremalVertex);
  const long index = farthestAlong(state_.points, angle.toDouble());
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
  if (const gxRect* known = memo.find(xform)) return *known;
  gx_countComputation(gx_Computation::eEncloseRect);
  const gxRect box = mappedBox(state_.points, xform);
  memo.insert(xform, box, state_.cachedVectorSize);
  return box;
}

bool gxContour::uprightBoxIsTrue_(std::uint64_t& since) const {
  const auto& memo = state_.memory.encloseRects.made();
  if (since != 0 && since == memo.changes()) return true;
  const gxRect box = encloseRect(gxXform<2>::I);
  const gx_Box& bounds = edgeIndex_().bounds();
  const bool isTrue = box.origin() == gxVector<2>(bounds.lowX, bounds.lowY) &&
                      box.corner() == gxVector<2>(bounds.highX, bounds.highY);
  since = isTrue ? memo.changes() : 0;
  return isTrue;
}
