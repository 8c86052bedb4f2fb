// Splicing: one outline out of two that cross, by a keyhole cut at their first crossing.
//
//   1. The lowest edge i of this outline that meets the other, and its first crossing X with it, on
//      the other's edge j.
//   2. X, once around this outline from the end of edge i, X again, once around the other outline
//      from the end of edge j.  The end of edge k is point k.
//
// The edges of this outline are taken from its points: a list of them, remembered, would take seven
// times the memory of the points, for one walk up to the first hit.
#include <cntr/internal/outline/edge_walk.h>
#include <cntr/region.h>
#include <velstd/real_eq.h>

namespace {

// Closer points coincide: an edge between them has no length and meets nothing.
constexpr double kCoincide = 1e-15;

using Points = std::vector<gxVector<2>>;

void appendAround(Points& walk, const Points& outline, std::size_t first) {
  for (std::size_t i = 0; i < outline.size(); ++i) walk.push_back(outline[(first + i) % outline.size()]);
}

}  // namespace

void gxRegion::splice(const gxRegion& other, gxRegion& result) const {
  for (std::size_t i = 0; i < points().size(); ++i) {
    const gxVector<2>& from = points()[gx_edgeStart(i, points().size(), true)];
    const gxVector<2>& to = points()[i];
    if (gfRealEq(from, to, kCoincide)) continue;
    std::vector<int> edges;
    const Points hits = other.gxContour::intersections(gxLineSeg(from, to), edges, true);
    if (hits.empty()) continue;
    Points walk;
    walk.reserve(points().size() + other.points().size() + 2);
    walk.push_back(hits.front());
    appendAround(walk, points(), i);
    walk.push_back(hits.front());
    appendAround(walk, other.points(), static_cast<std::size_t>(edges.front()));
    result = gxRegion(walk);
    return;
  }
  throw gxContourDefs::BadParams(L"spliced regions do not intersect");
}
