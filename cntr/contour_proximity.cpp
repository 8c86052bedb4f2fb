// Length, nearest point, nearest vertex, distance.
//
// Nearest point.  For each edge in order, ask the segment for its distance; where it is strictly
// below the best so far, compute the nearest point of that edge: with t the position of the foot of
// the perpendicular along the edge, the start for t <= 0 (also where t is not a number, as on an
// edge of no length), the end for t >= 1, else the projection on the edge's line.  The distance
// chooses the edge, the formula gives the point; where rounding makes them disagree, that stands.
//
// Of more than a few points, the edge and the vertex are found through the edge index or a tree of slabs
// (internal/search/nearest), which give the same edge and the same vertex, once the questions before have
// cost about as much as making them.
#include <cntr/contour.h>
#include <cntr/internal/memory/computation_count.h>
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/outline/edge_lengths.h>
#include <cntr/internal/outline/outline.h>
#include <cntr/internal/search/nearest.h>

namespace {

double lengthOf(const gx_Outline& outline) {
  double sum = 0.0;
  if (outline.closed) sum += outline.points.back().distance(outline.points.front());
  gx_forEachLength(outline.points, [&sum](double length, std::size_t) { sum += length; });
  return sum;
}

gxVector<2> nearestOnEdge(const gxLineSeg& edge, const gxVector<2>& point) {
  const gxVector<2> d = edge.p2() - edge.p1();
  const double t = (d * (point - edge.p1())) / (d * d);
  if (!(t > 0.0)) return edge.p1();
  if (t >= 1.0) return edge.p2();
  return edge.line().proj(point);
}

}  // namespace

double gxContour::length() const {
  if (state_.points.empty()) return 0.0;
  double length = 0.0;
  if (state_.memory.length.get<0>(length)) return length;
  gx_countComputation(gx_Computation::eLength);
  length = lengthOf(outline_());
  state_.memory.length.set({length});
  return length;
}

// Tells whether the tree is there, or has become worth its making: else the question about to be answered
// counts.
bool gxContour::treePays_(unsigned effort) const {
  if (!indexPays_()) return false;
  const gx_Effort& spent = state_.memory.nearestEffort;
  if (spent.spent() >= gx_kTreeEffort) return true;
  spent.add(effort);
  return false;
}

// Makes the tree pay at once for many questions.
void gxContour::expectNearest_(std::size_t questions) const {
  if (questions >= gx_kTreeEffort) state_.memory.nearestEffort.set(gx_kTreeEffort);
}

gxVector<2> gxContour::closestPoint(const gxVector<2>& point, bool vertexOnly) const {
  if (vertexOnly) return state_.points[static_cast<std::size_t>(closestVertexIndex(point))];
  checkEmptyContour();
  const gx_Outline outline = outline_();
  const std::size_t k = treePays_(gx_kEdgeEffort) ? gx_nearestEdge(edgeIndex_(), outline, point)
                                                  : gx_nearestEdge(outline, point);
  if (k == outline.edges()) return {};
  return nearestOnEdge(gxLineSeg(outline.from(k), outline.to(k)), point);
}

long gxContour::closestVertexIndex(const gxVector<2>& point) const {
  checkEmptyContour();
  if (!treePays_(gx_kVertexEffort)) return static_cast<long>(gx_nearestVertex(state_.points, point));
  return static_cast<long>(gx_nearestVertex(edgeIndex_(), outline_(), point));
}

double gxContour::distToPoint(const gxVector<2>& point, bool vertexOnly) const {
  return point.distance(closestPoint(point, vertexOnly));
}

// ---- For many points at once --------------------------------------------------------------------

std::vector<gxVector<2>> gxContour::closestPoints(const std::vector<gxVector<2>>& points,
                                                  bool vertexOnly) const {
  std::vector<gxVector<2>> result;
  result.reserve(points.size());
  expectNearest_(points.size());
  for (const gxVector<2>& point : points) result.push_back(gxContour::closestPoint(point, vertexOnly));
  return result;
}

std::vector<long> gxContour::closestVertexIndices(const std::vector<gxVector<2>>& points) const {
  std::vector<long> result;
  result.reserve(points.size());
  expectNearest_(points.size());
  for (const gxVector<2>& point : points) result.push_back(gxContour::closestVertexIndex(point));
  return result;
}

std::vector<double> gxContour::distsToPoints(const std::vector<gxVector<2>>& points,
                                             bool vertexOnly) const {
  std::vector<double> result;
  result.reserve(points.size());
  expectNearest_(points.size());
  for (const gxVector<2>& point : points) result.push_back(gxContour::distToPoint(point, vertexOnly));
  return result;
}
