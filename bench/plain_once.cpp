#include "plain_once.h"

#include "plain_scan.h"

#include <cntr/contourdefs.h>
#include <support/slow_truth_region.h>
#include <velstd/line_seg.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <set>
#include <tuple>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

V nearestOn(const gxLineSeg& edge, const V& point) {
  const V d = edge.p2() - edge.p1();
  const double t = (d * (point - edge.p1())) / (d * d);
  if (!(t > 0.0)) return edge.p1();
  return t >= 1.0 ? edge.p2() : edge.line().proj(point);
}

// The first edge, the closing edge excepted, that is proven to lie on the outside.
std::size_t startEdge(const gx_PlainScan& scan, const Points& p) {
  const double tolerance = 0.01 * slow::medianFeatureSize({p, true});
  const auto crossings = [&scan](const V& from, const V& to) {
    return scan.intersections(gxLineSeg(from, to), true).points.size();
  };
  for (std::size_t i = 0; i + 1 < p.size(); ++i) {
    const V middle = (p[i] + p[i + 1]) * 0.5;
    const V u = (p[i] - p[i + 1]).unit();
    const V offset(-u.y() * tolerance, u.x() * tolerance);
    const V a = middle + offset;
    const V b = middle - offset;
    const bool outside = slow::insideCount(p, a, true) == 0 || slow::insideCount(p, b, true) == 0;
    if (crossings(a, b) == 1 && crossings(p[i], p[i + 1]) == 2 && outside) return i;
  }
  throw gxContourDefs::BadParams(L"invalid contour");
}

Points outsideWalk(const gx_PlainScan& scan, const Points& p) {
  const std::size_t n = p.size();
  const std::size_t start = startEdge(scan, p);
  const std::size_t limit = std::max<std::size_t>(200000, 64 * n);
  V q = p[start];
  bool forward = true;
  std::size_t next = start + 1;
  Points traced;
  std::set<std::tuple<double, double, std::size_t, bool>> seen;
  do {
    if (!seen.emplace(q.x(), q.y(), next, forward).second || traced.size() >= limit) {
      throw gxContourDefs::BadParams(L"invalid contour");
    }
    const std::size_t target = forward ? next : (next + n - 1) % n;
    const slow::Hits hits = scan.intersections(gxLineSeg(q, p[target]), false);
    if (hits.points.empty()) {
      q = p[target];
      next = (next + (forward ? 1 : n - 1)) % n;
    } else {
      q = hits.points.front();
      next = static_cast<std::size_t>(hits.edges.front());
      forward = !forward;
    }
    traced.push_back(q);
  } while (!(q == p[start]));
  return traced;
}

}  // namespace

V gx_plainNearestVertex(const Points& points, const V& point) {
  std::size_t nearest = 0;
  double best = kInfinity;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double distance = point.distance(points[i]);
    if (!(distance < best)) continue;
    best = distance;
    nearest = i;
  }
  return points[nearest];
}

V gx_plainNearestPoint(const Points& points, const V& point) {
  V nearest;
  double best = kInfinity;
  V from = points.back();
  for (const V& to : points) {
    const gxLineSeg edge(from, to);
    from = to;
    const double distance = edge.distToPoint(point);
    if (!(distance < best)) continue;
    best = distance;
    nearest = nearestOn(edge, point);
  }
  return nearest;
}

Points gx_plainRegularize(const Points& points) {
  const gx_PlainScan scan(points);
  return scan.isSelfIntersecting() ? outsideWalk(scan, points) : points;
}
