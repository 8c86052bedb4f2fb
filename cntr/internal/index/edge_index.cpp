// Building the tree: the boxes of the runs of edges first, then level by level the boxes of runs of
// boxes, until one run holds a whole level.
#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/outline/edge_walk.h>

namespace {

constexpr std::size_t runs(std::size_t count) {
  return (count + gx_EdgeIndex::kFan - 1) / gx_EdgeIndex::kFan;
}

}  // namespace

gx_EdgeIndex::gx_EdgeIndex(const std::vector<gxVector<2>>& points, bool closed)
    : edges_(gx_edgeCount(points.size(), closed)), starts_{0} {
  std::size_t total = 0;
  for (std::size_t count = runs(edges_);; count = runs(count)) {
    total += count;
    starts_.push_back(total);
    if (count <= kFan) break;
  }
  boxes_.resize(total);

  // Edge k runs to point k in a closed contour and to point k + 1 in an open one, from the one before.
  const std::size_t ahead = closed ? 0 : 1;
  for (std::size_t leaf = 0; leaf < size(0); ++leaf) {
    const std::size_t first = leaf * kFan + ahead;
    const std::size_t end = std::min(first + kFan, points.size());
    gx_Box box;
    box.add(points[first == 0 ? points.size() - 1 : first - 1]);
    for (std::size_t i = first; i < end; ++i) box.add(points[i]);
    boxes_[leaf] = box;
  }
  for (std::size_t level = 1; level < levels(); ++level) {
    for (std::size_t i = 0; i < size(level); ++i) {
      gx_Box box;
      const std::size_t end = std::min((i + 1) * kFan, size(level - 1));
      for (std::size_t below = i * kFan; below < end; ++below) box.add(this->box(level - 1, below));
      boxes_[starts_[level] + i] = box;
    }
  }
  for (std::size_t i = 0; edges_ != 0 && i < size(levels() - 1); ++i) bounds_.add(box(levels() - 1, i));
  for (const gxVector<2>& p : points) hasNaN_ |= (p.x() != p.x()) || (p.y() != p.y());
}
