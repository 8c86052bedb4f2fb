// Crossings with a segment, with another contour, with itself.
//
// With a segment from p1 to p2, tolerance 1e-6:
//   1. Where the upright box of the contour and the box of the segment do not touch, nothing.
//   2. For every edge in order, leave it out when it has no length, when its box does not touch the
//      segment's, when it is parallel to the segment, or, where contacts at the segment's ends do not
//      count, when it comes within the tolerance of either end.
//   3. Intersect the two lines; it is a hit when the edge and the segment both pass within the
//      tolerance.  A hit at a vertex is found on both edges, and both are kept: callers that cut
//      and walk need the edges.
//   4. Order the hits along the segment.  Equal positions keep the order in which an exchange sort
//      leaves them.
//
// With itself: the same with each of the contour's own edges as the segment and end contacts left
// out, which leaves out the edge itself and its neighbours, until some edge has a hit.
#include <cntr/contour.h>
#include <cntr/internal/edge_walk.h>
#include <cntr/internal/exchange_order.h>
#include <cntr/internal/probe.h>

#include <utility>

namespace {

// How far a computed crossing may lie off either line's segment, in units of the coordinates.
constexpr double kTouch = 1e-6;

struct Hit {
  gxVector<2> point;
  int edge;
};

// What the test of one segment needs of it, computed once.
struct Query {
  explicit Query(const gxLineSeg& segment)
      : seg(segment),
        line(segment.line()),
        box(gxRect(segment.p1(), gxVector<2>()).enclose(gxRect(segment.p2(), gxVector<2>()))) {}

  gxLineSeg seg;
  gxLine line;
  gxRect box;
};

bool touchesEnd(const gxLineSeg& edge, const gxLineSeg& seg) {
  return edge.distToPoint(seg.p1()) <= kTouch || edge.distToPoint(seg.p2()) <= kTouch;
}

// Tests one edge whose box touches the query's; puts the crossing into `hit`.
bool meets(const gxLineSeg& edge, const gxLine& edgeLine, const Query& query, bool countEndContacts,
           gxVector<2>& hit) {
  if (edgeLine.isParallel(query.line)) return false;
  if (!countEndContacts && touchesEnd(edge, query.seg)) return false;
  hit = edgeLine.intersect(query.line);
  return edge.distToPoint(hit) < kTouch && query.seg.distToPoint(hit) < kTouch;
}

std::vector<gxVector<2>> inOrderAlong(const gxLineSeg& seg, const std::vector<Hit>& hits,
                                      std::vector<int>& edges) {
  const gxVector<2> direction = seg.p2() - seg.p1();
  std::vector<double> keys;
  keys.reserve(hits.size());
  for (const Hit& hit : hits) keys.push_back((hit.point - seg.p1()) * direction);
  std::vector<gxVector<2>> points;
  points.reserve(hits.size());
  for (const std::size_t i : gx_exchangeOrder(keys)) {
    points.push_back(hits[i].point);
    edges.push_back(hits[i].edge);
  }
  return points;
}

}  // namespace

std::vector<gxVector<2>> gxContour::intersections(const gxLineSeg& seg, std::vector<int>& edges,
                                                  bool countEndContacts) const {
  checkEmptyContour();
  edges.clear();
  const Query query(seg);
  if (!encloseRect(gxXform<2>::I).overlaps(query.box)) return {};
  computeLineSegs();
  const gx_ContourMemory& memory = state_.memory;
  std::vector<Hit> hits;
  for (std::size_t k = 0; k < memory.segments.size(); ++k) {
    if (!memory.validLine[k] || !memory.segmentBounds[k].overlaps(query.box)) continue;
    gxVector<2> hit;
    if (meets(memory.segments[k], memory.lines[k], query, countEndContacts, hit)) {
      hits.push_back({hit, static_cast<int>(k)});
    }
  }
  return inOrderAlong(seg, hits, edges);
}

std::vector<gxVector<2>> gxContour::intersections(const gxLineSeg& seg, bool countEndContacts) const {
  std::vector<int> edges;
  return intersections(seg, edges, countEndContacts);
}

std::vector<gxVector<2>> gxContour::intersections(const gxContour& other) const {
  checkEmptyContour();
  std::vector<gxVector<2>> result;
  const std::vector<gxVector<2>>& points = other.points();
  gx_forEachEdge(points.size(), other.isClosed(), [&](std::size_t from, std::size_t to, std::size_t) {
    const std::vector<gxVector<2>> hits = intersections(gxLineSeg(points[from], points[to]), true);
    result.insert(result.end(), hits.begin(), hits.end());
  });
  return result;
}

bool gxContour::isSelfIntersecting() const {
  if (state_.points.empty()) return false;
  gx_ContourMemory& memory = state_.memory;
  if (memory.selfIntersectingValid) return memory.selfIntersecting;
  gx_countComputation(gx_Computation::eSelfIntersection);
  computeLineSegs();
  bool crosses = false;
  for (std::size_t k = 0; k < memory.segments.size() && !crosses; ++k) {
    crosses = memory.validLine[k] && !intersections(memory.segments[k], false).empty();
  }
  memory.selfIntersecting = crosses;
  memory.selfIntersectingValid = true;
  return crosses;
}
