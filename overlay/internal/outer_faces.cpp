// The outer face of each component is found at its first node by x, then y, where it lies left of the last
// half-edge; its border is walked around once.  All other faces are kept, so only outlines come of it; of
// those, what lies in the outline of another component is dropped.
#include <cntr/internal/index/box_tree.h>
#include <overlay/internal/outer_faces.h>
#include <overlay/internal/point_in_ring.h>

#include <utility>

namespace {

// Labels the faces left of the half-edges on the way around one face.
class OuterWalk {
 public:
  explicit OuterWalk(const gx_Graph& graph) : graph_(graph) {
    labels_.left.assign(graph.positions(), 1);
    labels_.right.assign(graph.positions(), 1);
  }

  void from(std::uint32_t root) {
    const std::uint32_t start = graph_.bundleBegin(graph_.end(root) - 1);
    std::uint32_t bundle = start;
    do {
      const std::uint32_t back = graph_.bundleBegin(graph_.positionOf(graph_.leaving(bundle).half ^ 1U));
      mark(labels_.left, bundle);
      mark(labels_.right, back);
      const std::uint32_t node = graph_.nodeOf(graph_.leaving(back).half);
      bundle = graph_.bundleBegin((back == graph_.begin(node) ? graph_.end(node) : back) - 1);
    } while (bundle != start);
  }

  const gx_FaceLabels& labels() const { return labels_; }

 private:
  void mark(std::vector<unsigned char>& side, std::uint32_t bundle) {
    const std::uint32_t behind = graph_.bundleEnd(bundle);
    for (std::uint32_t i = bundle; i < behind; ++i) side[i] = 0;
  }

  const gx_Graph& graph_;
  gx_FaceLabels labels_;
};

}  // namespace

std::vector<gx_ResultRegion> gx_outerRegions(const gx_Graph& graph, gx_FaceLabels& labels) {
  OuterWalk walk(graph);
  for (const std::uint32_t root : graph.roots()) walk.from(root);
  labels = walk.labels();
  std::vector<gx_ResultRegion> all = gx_traceRegions(graph, labels, gx_Keep());
  if (all.size() < 2) return all;
  std::vector<gx_PointInRing> outlines;
  std::vector<gx_Box> boxes;
  outlines.reserve(all.size());
  boxes.reserve(all.size());
  for (const gx_ResultRegion& region : all) {
    outlines.emplace_back(region.outline.points);
    boxes.push_back(outlines.back().box());
  }
  const gx_BoxTree tree(boxes);
  std::vector<gx_ResultRegion> outer;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const gxVector<2>& p = all[i].outline.points[0];
    bool isInside = false;
    tree.forEachMeeting({p.x(), p.y(), p.x(), p.y()}, [&](std::size_t other) {
      isInside = isInside || (other != i && outlines[other].holds(p));
    });
    if (!isInside) outer.push_back({all[i].outline, {}});
  }
  return outer;
}
