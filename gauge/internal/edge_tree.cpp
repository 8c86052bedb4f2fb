// The edges of all rings, and boxes over runs of 8, level by level up to a single one.
#include <cntr/internal/outline/edge_walk.h>
#include <gauge/internal/edge_tree.h>

gx_EdgeTree::gx_EdgeTree(const std::vector<gx_Ring>& rings) {
  std::size_t count = 0;
  for (const gx_Ring& ring : rings) count += ring.points.size();
  edges_.reserve(count);
  for (std::size_t r = 0; r < rings.size(); ++r) {
    const auto& points = rings[r].points;
    const bool closed = rings[r].closed || points.size() == 1;
    gx_forEachEdge(points.size(), closed, [&](std::size_t from, std::size_t to, std::size_t k) {
      edges_.push_back(
          {points[from], points[to], static_cast<std::uint32_t>(r), static_cast<std::uint32_t>(k)});
    });
  }
  if (edges_.empty()) return;
  std::vector<gx_Box> level((edges_.size() + kFan - 1) / kFan);
  for (std::size_t i = 0; i < edges_.size(); ++i) {
    level[i / kFan].add(edges_[i].a);
    level[i / kFan].add(edges_[i].b);
  }
  boxes_.push_back(std::move(level));
  while (boxes_.back().size() > 1) {
    const auto& below = boxes_.back();
    std::vector<gx_Box> above((below.size() + kFan - 1) / kFan);
    for (std::size_t i = 0; i < below.size(); ++i) above[i / kFan].add(below[i]);
    boxes_.push_back(std::move(above));
  }
}
