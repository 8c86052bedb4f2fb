// Nearest edge and vertex through the index, with the very answer of the scan over all of them.
//
// The scan takes each distance as the base library rounds it, and the first of the smallest wins.
// Here the runs of edges come nearest box first, so the first of the smallest is found by comparing
// numbers too: a candidate wins when its distance is smaller, or equal and its number lower.  Boxes
// are left out with a slack far above rounding (see `forEachRunNear`), and inside a run an edge is
// left out by its squared distance with a slack of the same kind before the exact one, with its
// square root and division, is asked for.
#include <cntr/internal/edge_walk.h>
#include <cntr/internal/nearest.h>
#include <velstd/line_seg.h>

#include <cmath>
#include <limits>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kSlack = gx_EdgeIndex::kSlack;

// Tells whether the distance of the edge from a to b is above `best` for certain.
bool surelyFarther(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& point, double best) {
  const gxVector<2> d = b - a;
  const gxVector<2> w = point - a;
  const double reach = best + kSlack * (best + std::abs(w.x()) + std::abs(w.y()));
  const double limit = reach * reach;
  if (!(limit > gx_EdgeIndex::kSmallestSquare)) return false;
  const double along = w * d;
  if (along <= 0.0) return w * w > limit;
  const double square = d * d;
  if (!(square < kInfinity)) return false;  // overflowed: nothing is known of where the foot lies
  if (along >= square) {
    const gxVector<2> v = point - b;
    return v * v > limit;
  }
  const double cross = gf_Cross(d, w);
  return limit * square > gx_EdgeIndex::kSmallestSquare && cross * cross > limit * square;
}

}  // namespace

std::size_t gx_nearestEdge(const gx_EdgeIndex& index, const Points& points, bool closed,
                           const gxVector<2>& point) {
  double best = kInfinity;
  std::size_t nearest = index.edges();
  index.forEachRunNear(point, best, [&](std::size_t first, std::size_t end) {
    for (std::size_t k = first; k < end; ++k) {
      const gxVector<2>& a = points[gx_edgeStart(k, points.size(), closed)];
      const gxVector<2>& b = points[gx_edgeEnd(k, closed)];
      if (surelyFarther(a, b, point, best)) continue;
      const double distance = gxLineSeg(a, b).distToPoint(point);
      if (distance < best || (distance == best && k < nearest && best < kInfinity)) {
        best = distance;
        nearest = k;
      }
    }
  });
  return nearest;
}

std::size_t gx_nearestVertex(const gx_EdgeIndex& index, const Points& points, bool closed,
                             const gxVector<2>& point) {
  double best = kInfinity;
  std::size_t nearest = 0;
  const auto consider = [&](std::size_t i) {
    const gxVector<2> d = points[i] - point;
    const double limit = best * best * (1.0 + kSlack);
    if (limit > gx_EdgeIndex::kSmallestSquare && d * d > limit) return;
    const double distance = point.distance(points[i]);
    if (distance < best || (distance == best && i < nearest && best < kInfinity)) {
      best = distance;
      nearest = i;
    }
  };
  if (!closed) consider(0);  // the one vertex that no edge ends at
  index.forEachRunNear(point, best, [&](std::size_t first, std::size_t end) {
    for (std::size_t k = first; k < end; ++k) consider(gx_edgeEnd(k, closed));
  });
  return nearest;
}
