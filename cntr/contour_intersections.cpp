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
// With another contour: the same with each of its edges.  With itself: the same with each of the
// contour's own edges and end contacts left out, which leaves out the edge itself and its
// neighbours, until some edge has a hit.
//
// Few edges are taken one after the other.  Of more, only those come to step 2 whose runs pass in the
// edge index (internal/index/edge_index, internal/search/crossing): the edges are met in the same order, and each
// is asked the same.  The contour's upright box is asked for once, not for every edge: it is remembered
// by the first question and stays so.
#include <cntr/contour.h>
#include <cntr/internal/memory/probe.h>
#include <cntr/internal/outline/edge_walk.h>
#include <cntr/internal/search/crossing.h>

#include <utility>

std::vector<gxVector<2>> gxContour::intersections(const gxLineSeg& seg, std::vector<int>& edges,
                                                  bool countEndContacts) const {
  checkEmptyContour();
  edges.clear();
  const gx_CrossingQuery query(seg, countEndContacts);
  if (!query.reaches(encloseRect(gxXform<2>::I))) return {};
  std::vector<gx_Hit> hits;
  if (indexPays_()) {
    gx_findHits(edgeIndex_(), state_.points, isClosed(), query, hits);
  } else {
    const std::vector<gxVector<2>>& points = state_.points;
    gx_forEachEdge(points.size(), isClosed(), [&](std::size_t from, std::size_t to, std::size_t k) {
      query.test(points[from], points[to], k, hits);
    });
  }
  return gx_inOrderAlong(seg, hits, edges);
}

std::vector<gxVector<2>> gxContour::intersections(const gxLineSeg& seg, bool countEndContacts) const {
  std::vector<int> edges;
  return intersections(seg, edges, countEndContacts);
}

std::vector<gxVector<2>> gxContour::intersections(const gxContour& other) const {
  checkEmptyContour();
  const std::vector<gxVector<2>>& theirs = other.state_.points;
  std::vector<gxVector<2>> result;
  if (other.indexPays_()) {
    const gxRect& box = encloseRect(gxXform<2>::I);
    gx_findCrossings(edgeIndex_(), state_.points, isClosed(), box, other.edgeIndex_(), theirs,
                     other.isClosed(), result);
    return result;
  }
  if (!indexPays_()) {
    if (gx_edgeCount(theirs.size(), other.isClosed()) == 0) return result;
    const gxRect box = encloseRect(gxXform<2>::I);
    gx_findCrossingsOfFew(state_.points, isClosed(), box, theirs, other.isClosed(), result);
    return result;
  }
  gx_forEachEdge(theirs.size(), other.isClosed(), [&](std::size_t from, std::size_t to, std::size_t) {
    const std::vector<gxVector<2>> hits = intersections(gxLineSeg(theirs[from], theirs[to]), true);
    result.insert(result.end(), hits.begin(), hits.end());
  });
  return result;
}

bool gxContour::isSelfIntersecting() const {
  if (state_.points.size() < 2) return false;  // a point that is not finite would make an edge
  gx_ContourMemory& memory = state_.memory;
  if (memory.selfIntersectingValid) return memory.selfIntersecting;
  gx_countComputation(gx_Computation::eSelfIntersection);
  bool crosses = false;
  if (gx_hasEdgeOfLength(state_.points, isClosed())) {
    checkEmptyContour();
    const gxRect box = encloseRect(gxXform<2>::I);
    crosses = indexPays_() ? gx_crossesItself(edgeIndex_(), state_.points, isClosed(), box)
                           : gx_fewCrossThemselves(state_.points, isClosed(), box);
  }
  memory.selfIntersecting = crosses;
  memory.selfIntersectingValid = true;
  return crosses;
}
