// The tree is a treap: each node has a number of its own, the greatest on top, so that its depth is that
// of a tree made in random order, O(log n), whatever is cut and joined.  The numbers come from a fixed
// sequence: the same input makes the same tree.  Edges without length, which splices at a vertex leave behind,
// have no box, or the search would go through all of them.
//
// Splicing at edge k, from a to b, which meets edge e of the other, from c to d, in X.  The outline is then
// X, once around from b to a, X, once around the other from d to c.  Its edges: (c, X), (X, b), those behind
// k, those before k, (a, X), (X, d), those of the other behind e, those before e.
//
// (To make the merged outline anew each time, with its index, takes time and memory that grow with the
// square: 28 s for a set that names one triangle 6,400 times.)
#include <cntr/internal/repair/spliced_outline.h>

#include <cntr/internal/outline/edge_walk.h>
#include <cntr/internal/search/edge_pairs.h>

namespace {

// The finalizer of splitmix64: neighbouring numbers come out far apart.
std::uint32_t scattered(std::uint64_t number) {
  std::uint64_t h = (number + 1) * 0x9e3779b97f4a7c15ULL;
  h = (h ^ (h >> 30U)) * 0xbf58476d1ce4e5b9ULL;
  h = (h ^ (h >> 27U)) * 0x94d049bb133111ebULL;
  return static_cast<std::uint32_t>(h >> 32U);
}

}  // namespace

gx_SplicedOutline::gx_SplicedOutline(const Points& outline) {
  for (std::size_t k = 0; k < outline.size(); ++k) {
    box_.add(outline[k]);
    root_ = joined_(root_, newEdge_(outline[gx_edgeStart(k, outline.size(), true)], outline[k]));
  }
}

gx_SplicedOutline::Points gx_SplicedOutline::points() const {
  Points points;
  points.reserve(size());
  append_(root_, points);
  return points;
}

void gx_SplicedOutline::append_(Index node, Points& points) const {
  if (node == kNone) return;
  append_(nodes_[node].left, points);
  points.push_back(nodes_[node].to);
  append_(nodes_[node].right, points);
}

// ---- The tree -----------------------------------------------------------------------------------

gx_SplicedOutline::Index gx_SplicedOutline::newEdge_(const gxVector<2>& from, const gxVector<2>& to) {
  const auto node = static_cast<Index>(nodes_.size());
  nodes_.push_back({from, to, {}, kNone, kNone, 1, scattered(node)});
  update_(node);
  return node;
}

void gx_SplicedOutline::update_(Index node) {
  Node& n = nodes_[node];
  n.count = 1 + countOf_(n.left) + countOf_(n.right);
  n.box = gx_Box();
  if (n.from != n.to) {
    n.box.add(n.from);
    n.box.add(n.to);
  }
  if (n.left != kNone) n.box.add(nodes_[n.left].box);
  if (n.right != kNone) n.box.add(nodes_[n.right].box);
}

// The edges of `first`, then those of `second`.
gx_SplicedOutline::Index gx_SplicedOutline::joined_(Index first, Index second) {
  if (first == kNone) return second;
  if (second == kNone) return first;
  if (nodes_[first].priority > nodes_[second].priority) {
    nodes_[first].right = joined_(nodes_[first].right, second);
    update_(first);
    return first;
  }
  nodes_[second].left = joined_(first, nodes_[second].left);
  update_(second);
  return second;
}

// Parts the first `count` edges from the others.
void gx_SplicedOutline::cut_(Index node, Index count, Index& first, Index& second) {
  if (node == kNone) {
    first = second = kNone;
    return;
  }
  Node& n = nodes_[node];
  const Index before = countOf_(n.left);
  if (before < count) {
    cut_(n.right, count - before - 1, n.right, second);
    first = node;
  } else {
    cut_(n.left, count, first, n.left);
    second = node;
  }
  update_(node);
}

// ---- Meeting ------------------------------------------------------------------------------------

bool gx_SplicedOutline::isHit(const gx_CrossingQuery& query, gxBudget& budget) const {
  return isHitBelow_(root_, query, budget);
}

bool gx_SplicedOutline::isHitBelow_(Index node, const gx_CrossingQuery& query, gxBudget& budget) const {
  if (node == kNone || !query.mayMeet(nodes_[node].box)) return false;
  budget.spend();
  const Node& n = nodes_[node];
  std::vector<gx_Hit> hits;
  query.test(n.from, n.to, 0, hits);
  return !hits.empty() || isHitBelow_(n.left, query, budget) || isHitBelow_(n.right, query, budget);
}

std::optional<gx_SplicedOutline::Found> gx_SplicedOutline::firstBelow_(Index node, std::size_t before,
                                                                       const gx_Box& reach,
                                                                       const Meets& meets,
                                                                       gxBudget& budget) const {
  if (node == kNone || !nodes_[node].box.meets(reach)) return std::nullopt;
  budget.spend();
  const Node& n = nodes_[node];
  if (auto found = firstBelow_(n.left, before, reach, meets, budget)) return found;
  const std::size_t edge = before + countOf_(n.left);
  if (!gfRealEq(n.from, n.to, gx_kCoincide) && gx_Box::ofEdge(n.from, n.to).meets(reach)) {
    if (const auto meeting = meets(n.from, n.to)) return Found{edge, *meeting};
  }
  return firstBelow_(n.right, edge + 1, reach, meets, budget);
}

// ---- Splicing -----------------------------------------------------------------------------------

bool gx_SplicedOutline::splice(const Points& other, const Meets& meets, gxBudget& budget) {
  gx_Box reach;
  for (const gxVector<2>& point : other) reach.add(point);
  const std::optional<Found> found = firstBelow_(root_, 0, reach, meets, budget);
  if (!found) return false;
  budget.spend(other.size());
  box_.add(reach);
  box_.add(found->meeting.place);

  Index before = kNone;
  Index edge = kNone;
  Index behind = kNone;
  cut_(root_, static_cast<Index>(found->edge), before, behind);
  cut_(behind, 1, edge, behind);
  const gxVector<2> a = nodes_[edge].from;
  const gxVector<2> b = nodes_[edge].to;
  const gxVector<2>& x = found->meeting.place;
  const std::size_t e = found->meeting.edge;

  root_ = joined_(newEdge_(other[gx_edgeStart(e, other.size(), true)], x), newEdge_(x, b));
  root_ = joined_(joined_(root_, behind), before);
  root_ = joined_(joined_(root_, newEdge_(a, x)), newEdge_(x, other[e]));
  for (std::size_t i = 1; i < other.size(); ++i) {
    const std::size_t k = (e + i) % other.size();
    root_ = joined_(root_, newEdge_(other[gx_edgeStart(k, other.size(), true)], other[k]));
  }
  return true;
}
