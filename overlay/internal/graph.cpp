// The graph.
//
//  1. Arcs: the way of each ring from incidence to incidence, with the range of vertices between.
//  2. Around each node the half-edges are sorted: first those to the right (or straight up), then those to
//     the left, by comparing coordinates; within a half by the exact orientation of their first pieces.
//     Pieces of the same direction are equal, for else their ends would have become nodes of each other.
//  3. Components: rings joined by their nodes.
#include <overlay/internal/graph.h>
#include <overlay/internal/predicates.h>

#include <algorithm>
#include <numeric>

gx_Graph::gx_Graph(const gx_Noding& noding)
    : noding_(noding), incidences_(noding.incidences()), arcs_(incidences_.size()) {
  makeArcs_();
  orderAroundNodes_();
  findComponents_();
}

void gx_Graph::makeArcs_() {
  std::uint32_t at = 0;
  for (const std::uint32_t number : edges().order()) {
    const gx_EdgeSet::Ring& ring = edges().ring(number);
    if (ring.edges() == 0) continue;
    const std::uint32_t first = at;
    while (at < incidences_.size() && incidences_[at].place <= 2 * ring.end) ++at;
    for (std::uint32_t i = first; i + 1 < at; ++i) addArc_(i, i + 1, number);
    if (ring.closed) {
      addArc_(at - 1, first, number);
    } else {
      arcs_[at - 1].ring = number;
    }
  }
}

void gx_Graph::addArc_(std::uint32_t from, std::uint32_t to, std::uint32_t number) {
  const gx_EdgeSet::Ring& ring = edges().ring(number);
  const std::uint32_t firstVertex = incidences_[from].place / 2 + 1;
  const std::uint32_t behind = (incidences_[to].place + 1) / 2;
  const std::uint32_t around = to > from ? 0 : ring.edges();
  arcs_[from] = {to, number, firstVertex, behind + around - firstVertex};
}

gxVector<2> gx_Graph::toward_(std::uint32_t half) const {
  const Arc& arc = arcs_[half / 2];
  if (arc.vertices == 0) return node(nodeOf(half ^ 1U));
  const gx_EdgeSet::Ring& ring = edges().ring(arc.ring);
  const std::uint32_t p = arc.firstVertex + (half % 2 == 0 ? 0 : arc.vertices - 1);
  return edges().point(p < ring.end || !ring.closed ? p : p - ring.edges());
}

// ---- Order around a node ------------------------------------------------------------------------

namespace {

bool isToTheRight(const gxVector<2>& from, const gxVector<2>& toward) {
  return gx_before(from, toward);
}

}  // namespace

void gx_Graph::orderAroundNodes_() {
  nodeStarts_.assign(noding_.nodes().size() + 1, 0);
  const auto forEachHalf = [this](const auto& visit) {
    for (std::uint32_t arc = 0; arc < arcs_.size(); ++arc) {
      if (arcs_[arc].end == kNone) continue;
      visit(2 * arc);
      visit(2 * arc + 1);
    }
  };
  forEachHalf([this](std::uint32_t half) { ++nodeStarts_[nodeOf(half) + 1]; });
  std::partial_sum(nodeStarts_.begin(), nodeStarts_.end(), nodeStarts_.begin());
  leaving_.resize(nodeStarts_.back());
  std::vector<std::uint32_t> next(nodeStarts_.begin(), nodeStarts_.end() - 1);
  forEachHalf([&](std::uint32_t half) {
    leaving_[next[nodeOf(half)]++] = {toward_(half), half, false};
  });
  positions_.resize(2 * arcs_.size());
  for (std::uint32_t n = 0; n < nodes(); ++n) order_(n);
}

void gx_Graph::order_(std::uint32_t n) {
  const gxVector<2>& center = node(n);
  const auto before = [&center](const Leaving& a, const Leaving& b) {
    const bool right = isToTheRight(center, a.toward);
    if (right != isToTheRight(center, b.toward)) return right;
    return gx_Orientation(center, a.toward, b.toward) > 0;
  };
  const auto first = leaving_.begin() + begin(n);
  const auto last = leaving_.begin() + end(n);
  if (last - first > 8) {
    std::sort(first, last, before);
  } else {
    for (auto i = first; i < last; ++i) {
      const Leaving moved = *i;
      auto hole = i;
      for (; hole > first && before(moved, *(hole - 1)); --hole) *hole = *(hole - 1);
      *hole = moved;
    }
  }
  for (auto i = first; i < last; ++i) {
    // Pieces of one direction are the same piece, so that comparing their ends is enough.
    i->isSameWay = i != first && i->toward == (i - 1)->toward;
    positions_[i->half] = static_cast<std::uint32_t>(i - leaving_.begin());
  }
}

// ---- Components ---------------------------------------------------------------------------------

namespace {

std::uint32_t find(std::vector<std::uint32_t>& parents, std::uint32_t i) {
  while (parents[i] != i) {
    parents[i] = parents[parents[i]];
    i = parents[i];
  }
  return i;
}

}  // namespace

void gx_Graph::findComponents_() {
  std::vector<std::uint32_t> parents(edges().rings());
  std::iota(parents.begin(), parents.end(), 0U);
  std::vector<std::uint32_t> ringAt(nodes(), kNone);
  for (std::size_t i = 0; i < incidences_.size(); ++i) {
    const std::uint32_t ring = arcs_[i].ring;
    std::uint32_t& other = ringAt[incidences_[i].node];
    if (other == kNone) {
      other = ring;
    } else if (other != ring) {
      const std::uint32_t a = find(parents, other);
      const std::uint32_t b = find(parents, ring);
      parents[std::max(a, b)] = std::min(a, b);
    }
  }
  components_.assign(edges().rings(), kNone);
  for (std::uint32_t r = 0; r < edges().rings(); ++r) {
    if (edges().ring(r).edges() == 0) continue;
    const std::uint32_t top = find(parents, r);
    if (components_[top] == kNone) {
      components_[top] = static_cast<std::uint32_t>(roots_.size());
      roots_.push_back(kNone);
    }
    components_[r] = components_[top];
  }
  for (std::size_t i = 0; i < incidences_.size(); ++i) {
    std::uint32_t& root = roots_[components_[arcs_[i].ring]];
    if (root == kNone || gx_before(node(incidences_[i].node), node(root))) root = incidences_[i].node;
  }
}
