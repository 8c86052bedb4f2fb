// Making the tree: the boxes of the runs of edges, from their points; what lies above is the same for every
// packed tree (internal/index/packed_boxes).
#include <cntr/internal/index/edge_index.h>

#include <algorithm>
#include <vector>

namespace {

std::vector<gx_Box> boxesOfRuns(const gx_Outline& outline) {
  const std::vector<gxVector<2>>& points = outline.points;
  std::vector<gx_Box> boxes(gx_runsOf(outline.edges()));
  // Edge k runs to point k of a closed outline and to point k + 1 of an open one, from the one before.
  const std::size_t ahead = outline.closed ? 0 : 1;
  for (std::size_t leaf = 0; leaf < boxes.size(); ++leaf) {
    const std::size_t first = leaf * gx_kFan + ahead;
    const std::size_t end = std::min(first + gx_kFan, points.size());
    gx_Box& box = boxes[leaf];
    box.add(points[first == 0 ? points.size() - 1 : first - 1]);
    for (std::size_t i = first; i < end; ++i) box.add(points[i]);
  }
  return boxes;
}

}  // namespace

gx_EdgeIndex::gx_EdgeIndex(const gx_Outline& outline)
    : edges_(outline.edges()), boxes_(boxesOfRuns(outline)) {
  const std::size_t top = levels() - 1;
  for (std::size_t i = 0; i < size(top); ++i) bounds_.add(box(top, i));
  for (const gxVector<2>& p : outline.points) hasNaN_ |= (p.x() != p.x()) || (p.y() != p.y());
}
