// Which hole of a list the region refuses, and where.
//
// The setter refuses a whole list and says no more than that, because a list of holes is taken or left.
// Whoever traced the holes wants to know which of them it was, and where it meets the outline:
//   1. In the order of the list, take the edges of each hole in theirs.
//   2. Ask the outline for its crossings with the edge, contacts at the edge's ends counted: the
//      question that the setter asks.
//   3. The first crossing found is the answer; nothing behind it is looked at.
#include <cntr/internal/outline/edge_walk.h>
#include <cntr/region.h>

namespace {

// Looks for the first edge of the hole that meets the outline, and puts where into `point`.
bool meets(const gxContour& outline, const gxRegion& hole, gxVector<2>& point) {
  const std::vector<gxVector<2>>& corners = hole.points();
  for (std::size_t k = 0; k < corners.size(); ++k) {
    const gxLineSeg edge(corners[gx_edgeStart(k, corners.size(), true)], corners[k]);
    const std::vector<gxVector<2>> hits = outline.intersections(edge, true);
    if (hits.empty()) continue;
    point = hits.front();
    return true;
  }
  return false;
}

}  // namespace

gxHoleConflict gxRegion::firstHoleConflict(const std::vector<HoleHandle>& holes) const {
  gxHoleConflict conflict;
  for (std::size_t i = 0; i < holes.size() && !conflict.found; ++i) {
    conflict.found = holes[i].isNull() || points().size() < 2 || meets(*this, *holes[i], conflict.point);
    if (conflict.found) conflict.hole = static_cast<long>(i);
  }
  return conflict;
}
