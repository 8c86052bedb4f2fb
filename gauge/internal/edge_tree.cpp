// The edges of all rings, and boxes over runs of 8, level by level up to a single one.
#include <cntr/internal/outline/edge_walk.h>
#include <gauge/internal/edge_tree.h>

#include <utility>

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
  std::vector<gx_Box> leaves(gx_runsOf(edges_.size()));
  for (std::size_t i = 0; i < edges_.size(); ++i) {
    leaves[i / kFan].add(edges_[i].a);
    leaves[i / kFan].add(edges_[i].b);
  }
  boxes_ = gx_PackedBoxes(std::move(leaves), 1);
}
