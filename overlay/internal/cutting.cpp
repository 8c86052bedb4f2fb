// Cutting.
//
//  1. What a chain may cut along are its half-edges with kept faces on both sides.
//  2. Dead ends go, one half-edge after the other from every node that only one bundle of border or cut
//     leaves.
//  3. What is left may still hold bridges between loops: a half-edge whose two directions come up in one walk
//     has the same face on both sides.  Taking all of them away changes no face, so once is enough.
#include <overlay/internal/cutting.h>
#include <velstd/orientation.h>

#include <utility>

namespace {

class Cuts {
 public:
  Cuts(const gx_Graph& graph, const gx_FaceLabels& labels, const gx_Keep& keep)
      : graph_(graph), cuts_(graph.positions(), 0), border_(graph, labels, keep, &cuts_) {
    for (std::uint32_t i = 0; i < graph.positions(); ++i) {
      if (graph.leaving(i).isSameWay || !keep.holds(labels.left[i]) || !keep.holds(labels.right[i]))
        continue;
      const std::uint32_t behind = graph.bundleEnd(i);
      for (std::uint32_t j = i; j < behind; ++j) {
        if (!graph.edges().ring(graph.ringOf(graph.leaving(j).half)).closed) cuts_[i] = 1;
      }
    }
  }

  void dropDeadEnds() {
    for (std::uint32_t n = 0; n < graph_.nodes(); ++n) {
      std::uint32_t node = n;
      for (;;) {
        const std::uint32_t only = onlyCutOf(node);
        if (only == gx_Graph::kNone) break;
        node = drop(only);
      }
    }
  }

  void dropBridges() {
    std::vector<std::uint32_t> walks(graph_.positions(), 0);
    std::uint32_t count = 0;
    for (std::uint32_t i = 0; i < graph_.positions(); ++i) {
      if (graph_.leaving(i).isSameWay || walks[i] != 0 || !border_.holds(i)) continue;
      ++count;
      for (std::uint32_t at = i; walks[at] == 0; at = border_.next(at)) walks[at] = count;
    }
    for (std::uint32_t i = 0; i < graph_.positions(); ++i) {
      if (cuts_[i] != 0 && walks[i] == walks[otherEnd(i)]) cuts_[i] = 2;
    }
    for (unsigned char& cut : cuts_) cut = cut == 1 ? 1 : 0;
  }

  std::vector<unsigned char> take() { return std::move(cuts_); }

 private:
  std::uint32_t otherEnd(std::uint32_t bundle) const {
    return graph_.bundleBegin(graph_.positionOf(graph_.leaving(bundle).half ^ 1U));
  }

  // Returns the bundle of the one cut that ends at a node where nothing else does.
  std::uint32_t onlyCutOf(std::uint32_t node) const {
    std::uint32_t only = gx_Graph::kNone;
    for (std::uint32_t i = graph_.begin(node); i < graph_.end(node); ++i) {
      if (graph_.leaving(i).isSameWay || !border_.isSide(i)) continue;
      if (only != gx_Graph::kNone || cuts_[i] == 0) return gx_Graph::kNone;
      only = i;
    }
    return only;
  }

  // Returns the node at the other end.
  std::uint32_t drop(std::uint32_t bundle) {
    const std::uint32_t other = otherEnd(bundle);
    cuts_[bundle] = 0;
    cuts_[other] = 0;
    return graph_.nodeOf(graph_.leaving(other).half);
  }

  const gx_Graph& graph_;
  std::vector<unsigned char> cuts_;
  gx_Border border_;
};

}  // namespace

std::vector<unsigned char> gx_cuts(const gx_Graph& graph, const gx_FaceLabels& labels,
                                   const gx_Keep& keep) {
  Cuts cuts(graph, labels, keep);
  cuts.dropDeadEnds();
  cuts.dropBridges();
  return cuts.take();
}

std::vector<gx_ChainPart> gx_partsOf(const gx_Graph& graph, const gx_FaceLabels& labels,
                                     const gx_Keep& keep, std::uint32_t ring) {
  std::vector<gx_ChainPart> parts;
  for (std::uint32_t arc = 0; arc < graph.incidences().size(); ++arc) {
    if (!graph.isArc(arc) || graph.ringOf(2 * arc) != ring) continue;
    const std::uint32_t position = graph.positionOf(2 * arc);
    const bool left = keep.holds(labels.left[position]);
    const bool right = keep.holds(labels.right[position]);
    const gx_ChainPart::Side side = left != right ? gx_ChainPart::eBorder
                                    : left        ? gx_ChainPart::eInside
                                                  : gx_ChainPart::eOutside;
    const gxVector<2>& start = graph.node(graph.nodeOf(2 * arc));
    if (parts.empty() || parts.back().side != side) {
      parts.push_back({side, {start}});
    } else if (!graph.incidences()[arc].isVertex()) {
      // A node within a part that is no vertex stays where the chain is bent.
      std::vector<gxVector<2>>& points = parts.back().points;
      if (gx_Orientation(points[points.size() - 2], start, graph.leaving(position).toward) == 0)
        points.pop_back();
    }
    std::vector<gxVector<2>>& points = parts.back().points;
    graph.forEachVertex(2 * arc, [&](std::uint32_t p) { points.push_back(graph.edges().point(p)); });
    points.push_back(graph.node(graph.nodeOf(2 * arc + 1)));
  }
  return parts;
}
