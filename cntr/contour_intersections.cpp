// Crossings with a segment, with another contour, with itself.
//
// With a segment from p1 to p2, tolerance 1e-6:
//   1. Where the upright box of the points and the box of the segment do not touch, nothing.
//   2. For every edge in order, leave it out when it has no length, when its box does not touch the
//      segment's, when it is parallel to the segment, or, where contacts at the segment's ends do not
//      count, when it comes within the tolerance of either end.
//   3. Intersect the two lines; it is a hit when the edge and the segment both pass within the
//      tolerance.  A hit at a vertex is found on both edges, and both are kept: callers that cut
//      and walk need the edges.
//   4. Order the hits along the segment.  Equal positions keep the order in which an exchange sort
//      leaves them.
//
// With another contour: the same with each of its edges.  With itself: whether some edge of the contour's
// own has a hit, end contacts left out, which leaves out the edge itself and its neighbours.
//
// With a segment, few edges are taken one after the other.  Of more, only those come to step 2 whose runs
// pass in the edge index (internal/index/edge_index, internal/search/crossing): the edges are met in the
// same order, and each is asked the same.  With another contour and with itself it is one walk over pairs
// of edges whose boxes meet: through both indices, or, of few edges, through lists of boxes
// (internal/search/edge_pairs, internal/search/self_crossing); the hits come in the same order.
#include <cntr/contour.h>
#include <cntr/internal/memory/computation_count.h>
#include <cntr/internal/outline/outline.h>
#include <cntr/internal/search/crossing.h>
#include <cntr/internal/search/edge_pairs.h>

#include <utility>

std::vector<gxVector<2>> gxContour::intersections(const gxLineSeg& seg, std::vector<int>& edges,
                                                  bool countEndContacts) const {
  checkEmptyContour();
  const gx_CrossingQuery query(seg, countEndContacts);
  std::vector<gx_Hit> hits;
  const gxRect box = uprightBox_();
  if (!query.reaches(box)) {
    edges.clear();
    return {};
  }
  if (indexPays_()) {
    gxBudget unlimited;
    gx_findHits(edgeIndex_(), outline_(), query, hits, unlimited);
  } else {
    gx_findHits(box, outline_(), query, hits);
  }
  std::vector<int> found;
  std::vector<gxVector<2>> points = gx_inOrderAlong(seg, hits, found);
  edges.swap(found);  // nothing can fail any more
  return points;
}

std::vector<gxVector<2>> gxContour::intersections(const gxLineSeg& seg, bool countEndContacts) const {
  std::vector<int> edges;
  return intersections(seg, edges, countEndContacts);
}

std::vector<gxVector<2>> gxContour::intersections(const gxContour& other) const {
  gxBudget unlimited;
  return intersections(other, unlimited);
}

std::vector<gxVector<2>> gxContour::intersections(const gxContour& other, gxBudget& budget) const {
  checkEmptyContour();
  const gx_Outline theirs = other.outline_();
  std::vector<gxVector<2>> result;
  if (other.indexPays_()) {
    const gxRect box = uprightBox_();
    gx_findCrossings(edgeIndex_(), outline_(), box, other.edgeIndex_(), theirs, result, budget);
    return result;
  }
  if (!indexPays_()) {
    if (theirs.edges() == 0) return result;
    const gxRect box = uprightBox_();
    gx_findCrossingsOfFew(outline_(), box, theirs, result);
    return result;
  }
  for (std::size_t k = 0; k < theirs.edges(); ++k) {
    budget.spend(edgeIndex_().size(0));
    const std::vector<gxVector<2>> hits = intersections(gxLineSeg(theirs.from(k), theirs.to(k)), true);
    result.insert(result.end(), hits.begin(), hits.end());
  }
  return result;
}

// Asks as `intersections` does, up to the first hit.
bool gxContour::meets_(const gxContour& other, gxBudget& budget) const {
  checkEmptyContour();
  const gx_Outline theirs = other.outline_();
  if (theirs.edges() == 0) return false;
  const gxRect box = uprightBox_();
  if (other.indexPays_()) {
    return gx_meet(edgeIndex_(), outline_(), box, other.edgeIndex_(), theirs, budget);
  }
  if (!indexPays_()) {
    budget.spend(theirs.edges());
    return gx_fewMeet(outline_(), box, theirs);
  }
  const gx_Outline ours = outline_();
  std::vector<gx_Hit> hits;
  for (std::size_t k = 0; k < theirs.edges(); ++k) {
    const gx_CrossingQuery query(theirs.from(k), theirs.to(k), true);
    if (!query.reaches(box)) continue;
    const bool isHit =
        edgeIndex_().forEachRun([&query](const gx_Box& run) { return query.mayMeet(run); },
                                [&](std::size_t first, std::size_t end) {
                                  budget.spend();
                                  for (std::size_t i = first; i < end; ++i)
                                    query.test(ours.from(i), ours.to(i), i, hits);
                                  return !hits.empty();
                                });
    if (isHit) return true;
  }
  return false;
}

bool gxContour::isSelfIntersecting() const {
  bool crosses = false;
  if (state_.memory.selfIntersecting.get(crosses)) return crosses;
  gxBudget unlimited;
  return isSelfIntersecting(unlimited);
}

bool gxContour::isSelfIntersecting(gxBudget& budget) const {
  if (state_.points.size() < 2) return false;  // a point that is not finite would make an edge
  bool crosses = false;
  if (state_.memory.selfIntersecting.get(crosses)) return crosses;
  gx_countComputation(gx_Computation::eSelfIntersection);
  crosses = false;
  if (gx_hasEdgeOfLength(outline_())) {
    checkEmptyContour();
    const gxRect box = uprightBox_();
    crosses = indexPays_() ? gx_crossesItself(edgeIndex_(), outline_(), box, budget)
                           : gx_fewCrossThemselves(outline_(), box);
  }
  state_.memory.selfIntersecting.set(crosses);
  return crosses;
}
