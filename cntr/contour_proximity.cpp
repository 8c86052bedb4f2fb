// Length, nearest point, nearest vertex, distance.
//
// Nearest point.  For each edge in order, ask the segment for its distance; where it is strictly
// below the best so far, compute the nearest point of that edge: with t the position of the foot of
// the perpendicular along the edge, the start for t <= 0 (also where t is not a number, as on an
// edge of no length), the end for t >= 1, else the projection on the edge's line.  The distance
// chooses the edge, the formula gives the point; where rounding makes them disagree, that stands.
#include <cntr/contour.h>
#include <cntr/internal/edge_walk.h>
#include <cntr/internal/probe.h>

#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double lengthOf(const std::vector<gxVector<2>>& points, bool closed) {
  double sum = 0.0;
  gx_forEachEdge(points.size(), closed, [&](std::size_t from, std::size_t to, std::size_t) {
    sum += points[from].distance(points[to]);
  });
  return sum;
}

gxVector<2> nearestOnEdge(const gxLineSeg& edge, const gxVector<2>& point) {
  const gxVector<2> d = edge.p2() - edge.p1();
  const double t = (d * (point - edge.p1())) / (d * d);
  if (!(t > 0.0)) return edge.p1();
  if (t >= 1.0) return edge.p2();
  return edge.line().proj(point);
}

gxVector<2> nearestPoint(const std::vector<gxVector<2>>& points, bool closed, const gxVector<2>& point) {
  gxVector<2> nearest;
  double best = kInfinity;
  gx_forEachEdge(points.size(), closed, [&](std::size_t from, std::size_t to, std::size_t) {
    const gxLineSeg edge(points[from], points[to]);
    const double distance = edge.distToPoint(point);
    if (distance < best) {
      best = distance;
      nearest = nearestOnEdge(edge, point);
    }
  });
  return nearest;
}

std::size_t nearestVertex(const std::vector<gxVector<2>>& points, const gxVector<2>& point) {
  std::size_t nearest = 0;
  double best = kInfinity;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double distance = point.distance(points[i]);
    if (distance < best) {
      best = distance;
      nearest = i;
    }
  }
  return nearest;
}

}  // namespace

double gxContour::length() const {
  if (state_.points.empty()) return 0.0;
  gx_ContourMemory& memory = state_.memory;
  if (!memory.lengthValid) {
    gx_countComputation(gx_Computation::eLength);
    memory.length = lengthOf(state_.points, isClosed());
    memory.lengthValid = true;
  }
  return memory.length;
}

gxVector<2> gxContour::closestPoint(const gxVector<2>& point, bool vertexOnly) const {
  checkEmptyContour();
  if (vertexOnly) return state_.points[nearestVertex(state_.points, point)];
  return nearestPoint(state_.points, isClosed(), point);
}

long gxContour::closestVertexIndex(const gxVector<2>& point) const {
  checkEmptyContour();
  return static_cast<long>(nearestVertex(state_.points, point));
}

double gxContour::distToPoint(const gxVector<2>& point, bool vertexOnly) const {
  return point.distance(closestPoint(point, vertexOnly));
}
