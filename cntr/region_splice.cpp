// Splicing: one outline out of two that cross, by a keyhole cut at their first crossing.
//
//   1. The lowest edge i of this outline that meets the other, and its first crossing X with it, on
//      the other's edge j.
//   2. X, once around this outline from the end of edge i, X again, once around the other outline
//      from the end of edge j.  The end of edge k is point k.
//
// The edges of this outline are taken from its points: a list of them, remembered, would take seven
// times the memory of the points, for one walk up to the first hit.
//
// Many outlines spliced onto one, as in the repair of a set, are kept in a tree that does the same
// (internal/repair/spliced_outline).
#include <cntr/internal/outline/outline.h>
#include <cntr/internal/outline/tolerances.h>
#include <cntr/region.h>
#include <velstd/real_eq.h>

namespace {

using Points = std::vector<gxVector<2>>;

void appendAround(Points& walk, const Points& outline, std::size_t first) {
  for (std::size_t i = 0; i < outline.size(); ++i) walk.push_back(outline[(first + i) % outline.size()]);
}

}  // namespace

// Gives the first crossing of an edge of another outline with this one, and on which edge of this one.
bool gxRegion::firstMeeting_(const gxLineSeg& edge, gxVector<2>& place, std::size_t& ownEdge) const {
  std::vector<int> edges;
  const Points hits = gxContour::intersections(edge, edges, true);
  if (hits.empty()) return false;
  place = hits.front();
  ownEdge = static_cast<std::size_t>(edges.front());
  return true;
}

void gxRegion::splice(const gxRegion& other, gxRegion& result) const {
  for (std::size_t i = 0; i < points().size(); ++i) {
    const gxVector<2>& from = points()[gx_edgeStart(i, points().size(), true)];
    const gxVector<2>& to = points()[i];
    if (gfRealEq(from, to, gx_kCoincide)) continue;
    gxVector<2> place;
    std::size_t edge = 0;
    if (!other.firstMeeting_(gxLineSeg(from, to), place, edge)) continue;
    Points walk;
    walk.reserve(points().size() + other.points().size() + 2);
    walk.push_back(place);
    appendAround(walk, points(), i);
    walk.push_back(place);
    appendAround(walk, other.points(), edge);
    result = gxRegion(walk);
    return;
  }
  throw gxContourDefs::BadParams(L"spliced regions do not intersect");
}
