// Labels by walking.
//
//  1. Each component is walked from its first node by x and y.  All its half-edges go right from there, so
//     the face left of it is the outer one; it lies where the rings of other components put it: those whose
//     box holds the node are asked for their winding numbers, by a ray to the left.
//  2. Around a node one steps over one bundle after the other, counter-clockwise: every ring that leaves
//     along it is gone around once more, every ring that arrives once less.  After a full turn all counts
//     are as before, for rings are closed: labels cannot contradict each other, whatever the input.
//  3. From the left of a half-edge to the right of its other half nothing changes; so the walk goes on at
//     the other node, depth first, with one state and a stack of its own.
#include <cntr/internal/index/box_tree.h>
#include <overlay/internal/winding.h>
#include <velstd/orientation.h>

#include <optional>
#include <utility>

namespace {

// With so few rings it is quicker to look at all boxes.
constexpr std::size_t kFewRings = 16;

class Walk {
 public:
  Walk(const gx_Graph& graph, gx_Membership& membership)
      : graph_(graph), membership_(membership), seen_(graph.nodes(), 0) {
    labels_.left.resize(graph.positions());
    labels_.right.resize(graph.positions());
  }

  void from(std::uint32_t root) {
    open(root, graph_.begin(root));
    while (!stack_.empty()) {
      Frame& frame = stack_.back();
      if (frame.next == frame.first && frame.begun) {
        stack_.pop_back();
        continue;
      }
      frame.begun = true;
      const std::uint32_t bundle = frame.next;
      const std::uint32_t behind = stepOver(bundle);
      frame.next = behind == graph_.end(frame.node) ? graph_.begin(frame.node) : behind;
      const std::uint32_t back = graph_.leaving(bundle).half ^ 1U;
      const std::uint32_t other = graph_.nodeOf(back);
      if (seen_[other] == 0) open(other, graph_.bundleBegin(graph_.positionOf(back)));
    }
  }

  gx_FaceLabels labels() { return std::move(labels_); }

 private:
  struct Frame {
    std::uint32_t node;
    std::uint32_t first;
    std::uint32_t next;
    bool begun;
  };

  void open(std::uint32_t node, std::uint32_t first) {
    seen_[node] = 1;
    stack_.push_back({node, first, first, false});
  }

  // Returns the position behind the bundle.
  std::uint32_t stepOver(std::uint32_t bundle) {
    const unsigned char right = membership_.label();
    const std::uint32_t behind = graph_.bundleEnd(bundle);
    for (std::uint32_t i = bundle; i < behind; ++i) {
      const std::uint32_t half = graph_.leaving(i).half;
      const std::uint32_t ring = graph_.ringOf(half);
      if (graph_.edges().ring(ring).closed) membership_.step(ring, half % 2 == 0 ? 1 : -1);
    }
    const unsigned char left = membership_.label();
    for (std::uint32_t i = bundle; i < behind; ++i) {
      labels_.right[i] = right;
      labels_.left[i] = left;
    }
    return behind;
  }

  const gx_Graph& graph_;
  gx_Membership& membership_;
  gx_FaceLabels labels_;
  std::vector<unsigned char> seen_;
  std::vector<Frame> stack_;
};

// Finds the rings whose box holds a point.
class RingBoxes {
 public:
  explicit RingBoxes(const gx_EdgeSet& edges) : edges_(edges) {
    if (edges.rings() <= kFewRings) return;
    std::vector<gx_Box> boxes(edges.rings());
    for (std::size_t i = 0; i < boxes.size(); ++i) boxes[i] = edges.ring(i).box;
    tree_.emplace(boxes);
  }

  template <class Visit>
  void forEachAround(const gxVector<2>& p, const Visit& visit) const {
    if (tree_) {
      tree_->forEachMeeting({p.x(), p.y(), p.x(), p.y()},
                            [&](std::size_t i) { visit(static_cast<std::uint32_t>(i)); });
      return;
    }
    for (std::uint32_t i = 0; i < edges_.rings(); ++i) {
      if (edges_.ring(i).box.holds(p)) visit(i);
    }
  }

 private:
  const gx_EdgeSet& edges_;
  std::optional<gx_BoxTree> tree_;
};

}  // namespace

gx_FaceLabels gx_labelFaces(const gx_Graph& graph, gx_Membership& membership) {
  Walk walk(graph, membership);
  if (graph.roots().size() == 1) {
    walk.from(graph.roots()[0]);
    return walk.labels();
  }
  const RingBoxes boxes(graph.edges());
  std::vector<std::pair<std::uint32_t, int>> around;
  for (std::uint32_t component = 0; component < graph.roots().size(); ++component) {
    const std::uint32_t root = graph.roots()[component];
    around.clear();
    boxes.forEachAround(graph.node(root), [&](std::uint32_t ring) {
      if (graph.components()[ring] == component || graph.components()[ring] == gx_Graph::kNone) return;
      const int w = gx_windingOf(graph.noding(), ring, graph.node(root));
      if (w != 0) around.emplace_back(ring, w);
    });
    for (const auto& [ring, w] : around) membership.step(ring, w);
    walk.from(root);
    for (const auto& [ring, w] : around) membership.step(ring, -w);
  }
  return walk.labels();
}

int gx_windingOf(const gx_Noding& noding, std::uint32_t number, const gxVector<2>& point) {
  const gx_EdgeSet& edges = noding.edges();
  const gx_EdgeSet::Ring& ring = edges.ring(number);
  if (!ring.closed) return 0;
  int winding = 0;
  const auto piece = [&](const gxVector<2>& p, const gxVector<2>& q) {
    const bool up = p.y() <= point.y() && point.y() < q.y();
    const bool down = q.y() <= point.y() && point.y() < p.y();
    if (!up && !down) return;
    const int side = gx_Orientation(p, q, point);
    if (up && side < 0) --winding;
    if (down && side > 0) ++winding;
  };
  edges.forEachOfRing(
      ring,
      [&point](const gx_Box& b) {
        return b.lowY <= point.y() && b.highY >= point.y() && b.lowX <= point.x();
      },
      [&](std::uint32_t edge) { noding.forEachPiece(edge, piece); });
  return winding;
}
