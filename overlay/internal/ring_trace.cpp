// From kept faces to regions.
//
//  1. A half-edge is border where the face on its left is kept and the one on its right is not.  Arriving at
//     a node, the walk leaves by the first border half-edge clockwise from the way back: it follows the
//     edge of the interior that it came along, so lobes that touch in a node are walked apart.
//  2. A walk may pass a node more than once.  It is cut there, with a stack, into simple rings: one at most
//     is counter-clockwise, the outline, and the others are holes of it, those that touch it included.
//     So a hole that touches its outline at two nodes makes two regions.
//  3. A walk without an outline is made of holes that touch no other border of their region.  They belong
//     to the innermost outline around their first vertex; an outline that passes through that vertex lies
//     within the hole, or beside it, and is none.
//  4. Each ring begins at its first vertex by x, then y; holes and regions are sorted by their vertices.
#include <cntr/internal/index/box_tree.h>
#include <overlay/internal/point_in_ring.h>
#include <overlay/internal/predicates.h>
#include <overlay/internal/ring_trace.h>

#include <algorithm>
#include <utility>

namespace {

using Points = std::vector<gxVector<2>>;
constexpr std::uint32_t kNone = gx_Graph::kNone;

// Puts the first vertex first.
void rotate(gx_ResultRing& ring) {
  const auto first =
      std::min_element(ring.points.begin(), ring.points.end(), gx_before) - ring.points.begin();
  std::rotate(ring.points.begin(), ring.points.begin() + first, ring.points.end());
  if (!ring.origins.empty())
    std::rotate(ring.origins.begin(), ring.origins.begin() + first, ring.origins.end());
}

// Of a simple ring that begins at its first vertex.
bool isCounterClockwise(const Points& points) {
  return gx_Orientation(points.back(), points[0], points[1]) > 0;
}

bool ringBefore(const gx_ResultRing& a, const gx_ResultRing& b) {
  return std::lexicographical_compare(a.points.begin(), a.points.end(), b.points.begin(), b.points.end(),
                                      gx_before);
}

// ---- Walks --------------------------------------------------------------------------------------

class Trace {
 public:
  Trace(const gx_Graph& graph, const gx_Border& border, bool withOrigins)
      : graph_(graph),
        border_(border),
        withOrigins_(withOrigins),
        walked_(graph.positions(), 0),
        onStack_(graph.nodes(), kNone) {}

  void all() {
    for (std::uint32_t i = 0; i < graph_.positions(); ++i) {
      if (!graph_.leaving(i).isSameWay && walked_[i] == 0 && border_.holds(i)) walk(i);
    }
  }

  std::vector<gx_ResultRegion> regions;
  std::vector<gx_ResultRing> holes;  // of outlines of other walks

 private:
  void walk(std::uint32_t start) {
    firstHole_ = holes.size();
    outline_ = kNone;
    stack_.clear();
    std::uint32_t i = start;
    do {
      walked_[i] = 1;
      const std::uint32_t node = graph_.nodeOf(graph_.leaving(i).half);
      if (onStack_[node] != kNone) cutFrom(onStack_[node]);
      onStack_[node] = static_cast<std::uint32_t>(stack_.size());
      stack_.push_back(i);
      i = border_.next(i);
    } while (i != start);
    cutFrom(0);
    if (outline_ == kNone) return;
    gx_ResultRegion& region = regions[outline_];
    for (std::size_t h = firstHole_; h < holes.size(); ++h) region.holes.push_back(std::move(holes[h]));
    holes.resize(firstHole_);
  }

  // Takes the ring from the stack that begins at that height.
  void cutFrom(std::size_t height) {
    gx_ResultRing ring = ringOf(height);
    for (std::size_t i = height; i < stack_.size(); ++i) {
      onStack_[graph_.nodeOf(graph_.leaving(stack_[i]).half)] = kNone;
    }
    stack_.resize(height);
    rotate(ring);
    if (isCounterClockwise(ring.points)) {
      outline_ = static_cast<std::uint32_t>(regions.size());
      regions.push_back({std::move(ring), {}});
    } else {
      holes.push_back(std::move(ring));
    }
  }

  gx_ResultRing ringOf(std::size_t height) const {
    gx_ResultRing ring;
    std::size_t size = 0;
    for (std::size_t i = height; i < stack_.size(); ++i)
      size += 1 + graph_.vertices(graph_.leaving(stack_[i]).half);
    ring.points.reserve(size);
    if (withOrigins_) ring.origins.reserve(size);
    for (std::size_t i = height; i < stack_.size(); ++i) {
      const std::uint32_t before = stack_[i == height ? stack_.size() - 1 : i - 1];
      const std::uint32_t half = graph_.leaving(stack_[i]).half;
      const std::uint32_t node = graph_.nodeOf(half);
      if (!goesStraightOn(before, stack_[i])) add(ring, graph_.node(node), {node, true});
      graph_.forEachVertex(half, [&](std::uint32_t p) {
        add(ring, graph_.edges().point(p), {p, false});
      });
    }
    return ring;
  }

  void add(gx_ResultRing& ring, const gxVector<2>& p, const gx_VertexOrigin& origin) const {
    ring.points.push_back(p);
    if (withOrigins_) ring.origins.push_back(origin);
  }

  // Tells whether the node between two half-edges of a ring is no vertex of what the border follows, no bend,
  // and on no other border.
  bool goesStraightOn(std::uint32_t before, std::uint32_t position) const {
    const std::uint32_t back = graph_.positionOf(graph_.leaving(before).half ^ 1U);
    if (isVertex(graph_.bundleBegin(back)) || isVertex(position)) return false;
    const std::uint32_t node = graph_.nodeOf(graph_.leaving(position).half);
    if (borders(node) != 2) return false;
    return gx_Orientation(graph_.leaving(back).toward, graph_.node(node),
                          graph_.leaving(position).toward) == 0;
  }

  // Returns how many bundles of border leave a node, in either direction.
  int borders(std::uint32_t node) const {
    int count = 0;
    for (std::uint32_t i = graph_.begin(node); i < graph_.end(node); ++i) {
      if (graph_.leaving(i).isSameWay) continue;
      count += border_.isSide(i) ? 1 : 0;
    }
    return count;
  }

  bool isVertex(std::uint32_t bundle) const {
    const std::uint32_t behind = graph_.bundleEnd(bundle);
    for (std::uint32_t i = bundle; i < behind; ++i) {
      const gx_Incidence& at = graph_.incidences()[graph_.incidenceOf(graph_.leaving(i).half)];
      // Vertices that the grid put on an edge have odd sources.
      if (at.isVertex() && graph_.edges().source(at.place / 2) % 2 == 0) return true;
    }
    return false;
  }

  const gx_Graph& graph_;
  const gx_Border& border_;
  bool withOrigins_;
  std::vector<unsigned char> walked_;
  std::vector<std::uint32_t> stack_;    // positions of half-edges
  std::vector<std::uint32_t> onStack_;  // of every node: where on the stack its half-edge lies
  std::size_t firstHole_ = 0;
  std::uint32_t outline_ = kNone;
};

// ---- Holes and their outlines -------------------------------------------------------------------

// Of two outlines around one point, one lies within the other, and so does its box.
bool isFurtherIn(const gx_Box& a, const gx_Box& b) {
  if (a.lowX != b.lowX) return a.lowX > b.lowX;
  if (a.highX != b.highX) return a.highX < b.highX;
  if (a.lowY != b.lowY) return a.lowY > b.lowY;
  return a.highY < b.highY;
}

void placeHoles(std::vector<gx_ResultRegion>& regions, std::vector<gx_ResultRing>& holes) {
  if (holes.empty()) return;
  std::vector<gx_PointInRing> outlines;
  std::vector<gx_Box> boxes;
  outlines.reserve(regions.size());
  boxes.reserve(regions.size());
  for (const gx_ResultRegion& region : regions) {
    outlines.emplace_back(region.outline.points);
    boxes.push_back(outlines.back().box());
  }
  const gx_BoxTree tree(boxes);
  for (gx_ResultRing& hole : holes) {
    const gxVector<2>& p = hole.points[0];
    std::size_t best = regions.size();
    tree.forEachMeeting({p.x(), p.y(), p.x(), p.y()}, [&](std::size_t i) {
      if ((best == regions.size() || isFurtherIn(boxes[i], boxes[best])) && outlines[i].holds(p))
        best = i;
    });
    if (best != regions.size()) regions[best].holes.push_back(std::move(hole));
  }
}

}  // namespace

std::vector<gx_ResultRegion> gx_traceRegions(const gx_Graph& graph, const gx_FaceLabels& labels,
                                             const gx_Keep& keep, bool withOrigins,
                                             const std::vector<unsigned char>* cuts) {
  const gx_Border border(graph, labels, keep, cuts);
  Trace trace(graph, border, withOrigins);
  trace.all();
  placeHoles(trace.regions, trace.holes);
  for (gx_ResultRegion& region : trace.regions)
    std::sort(region.holes.begin(), region.holes.end(), ringBefore);
  std::sort(trace.regions.begin(), trace.regions.end(),
            [](const gx_ResultRegion& a, const gx_ResultRegion& b) {
              return ringBefore(a.outline, b.outline);
            });
  return std::move(trace.regions);
}
