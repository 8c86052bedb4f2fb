/// Points to ask containment about, on, near and away from an outline, and the count of the answers.
#pragma once

#include <cntr/region.h>
#include <support/exact_containment.h>
#include <support/random_doubles.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

/// What containment was asked, by where the point lies.
struct ContainmentCount {
  long asked = 0;
  long saidInside = 0;
  long differ = 0;        ///< from exact even-odd; on the border, where that has no answer: from inside
  double farthest = 0.0;  ///< distance from the outline of the farthest point with a different answer
};

/// The kinds of points asked, in the order of the table.
enum class QueryKind : int { eAnywhere, eNear, eOnVertex, eOnEdge, eBoxCorner, eBoxBorder, eCount };

inline const char* nameOf(QueryKind kind) {
  constexpr std::array<const char*, 6> kNames{"anywhere in the box", "1e-1 to 1e-6 from an edge",
                                              "on a vertex",         "on an edge",
                                              "corners of the box",  "elsewhere on the box"};
  return kNames[static_cast<std::size_t>(kind)];
}

using ContainmentCounts = std::array<ContainmentCount, static_cast<std::size_t>(QueryKind::eCount)>;

/// Asks one outline `each` points of every kind and adds up the answers.  A point is counted where it
/// lies exactly: one that was meant to be near and lies on an edge counts as on the edge.
inline void askContainment(const std::vector<gxVector<2>>& points, RandomDoubles& random, int each,
                           ContainmentCounts& counts) {
  using V = gxVector<2>;
  const ExactOutline exact(points);
  const gxRegion region(exact.points());
  const std::vector<V>& p = exact.points();
  const gxRect box = region.encloseRect(gxXform<2>::I);
  const V low = box.origin();
  const V high = box.corner();
  const auto ask = [&](QueryKind kind, const V& where) {
    const V q = ExactOutline::onGrid(where);
    const ExactSide side = exact.locate(q);
    if (side == ExactSide::eOnVertex) kind = QueryKind::eOnVertex;
    if (side == ExactSide::eOnEdge && kind < QueryKind::eBoxCorner) kind = QueryKind::eOnEdge;
    ContainmentCount& count = counts[static_cast<std::size_t>(kind)];
    const bool answer = region.inside(q, false);
    ++count.asked;
    if (answer) ++count.saidInside;
    if (answer == (side != ExactSide::eOutside)) return;
    ++count.differ;
    count.farthest = std::max(count.farthest, region.distToPoint(q, false));
  };
  const int n = static_cast<int>(p.size());
  for (int i = 0; i < each; ++i) {
    ask(QueryKind::eAnywhere, V(random.uniform(low.x(), high.x()), random.uniform(low.y(), high.y())));
    const auto k = static_cast<std::size_t>(random.whole(n));
    const V& a = p[k];
    const V& b = p[(k + 1) % p.size()];
    const V across = V(b.y() - a.y(), a.x() - b.x()) * (1.0 / b.distance(a));
    const double away = std::pow(10.0, random.uniform(-6.0, -1.0)) * (random.whole(2) == 0 ? 1.0 : -1.0);
    ask(QueryKind::eNear, a + (b - a) * random.uniform(0.0, 1.0) + across * away);
    ask(QueryKind::eOnVertex, a);
    ask(QueryKind::eOnEdge, (a + b) * 0.5);
    const double t = random.uniform(0.0, 1.0);
    const bool upright = random.whole(2) == 0;
    const bool atLow = random.whole(2) == 0;
    ask(QueryKind::eBoxBorder, upright
                                   ? V(atLow ? low.x() : high.x(), low.y() + t * (high.y() - low.y()))
                                   : V(low.x() + t * (high.x() - low.x()), atLow ? low.y() : high.y()));
  }
  for (const V& corner : {low, V(high.x(), low.y()), high, V(low.x(), high.y())}) {
    ask(QueryKind::eBoxCorner, corner);
  }
}

/// The answers for points at 1e-6 to 1e-3 from a vertex, by decade: [0] is 1e-3 to 1e-4.
using NearVertexCounts = std::array<ContainmentCount, 3>;

/// Asks one outline `each` points near its vertices, in every direction, and adds up the answers.
inline void askNearVertices(const std::vector<gxVector<2>>& points, RandomDoubles& random, int each,
                            NearVertexCounts& counts) {
  using V = gxVector<2>;
  const ExactOutline exact(points);
  const gxRegion region(exact.points());
  const std::vector<V>& p = exact.points();
  for (int i = 0; i < each; ++i) {
    const V& vertex = p[static_cast<std::size_t>(random.whole(static_cast<int>(p.size())))];
    const double away = std::pow(10.0, random.uniform(-6.0, -3.0));
    const double t = random.uniform(0.0, 6.283185307179586);
    const V q = ExactOutline::onGrid(vertex + V(std::cos(t), std::sin(t)) * away);
    const double distance = q.distance(vertex);
    if (distance <= 1e-6 || distance > 1e-3) continue;  // by rule inside, and rounded out of the range
    const ExactSide side = exact.locate(q);
    if (side != ExactSide::eInside && side != ExactSide::eOutside) continue;
    ContainmentCount& count = counts[distance > 1e-4 ? 0 : distance > 1e-5 ? 1 : 2];
    const bool answer = region.inside(q, false);
    ++count.asked;
    if (answer) ++count.saidInside;
    if (answer == (side == ExactSide::eInside)) continue;
    ++count.differ;
    count.farthest = std::max(count.farthest, region.distToPoint(q, false));
  }
}
