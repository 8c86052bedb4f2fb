// The test of one edge, and two ways through the index to the edges that are tested: along one segment,
// and edge by edge of another contour.  (Every edge with every other: self_crossing.cpp.)
//
// Another contour has an index too.  Its tree is walked in its order, and on the way down the boxes
// of ours that a box of theirs touches are kept in a list, which only gets finer: parts of theirs
// that are nowhere near ours are left out whole, and neighbouring edges share the way down.
//
// Few edges go without a tree: their boxes stand in arrays on the stack.
//
// Whether outlines meet at all is the same walk, up to the first hit.  (Two combs of 4,000 teeth meet in
// 16 million places: to find all of them, and ask whether there was one, took seven seconds.)
#include <cntr/internal/search/crossing.h>
#include <cntr/internal/search/edge_pairs.h>
#include <cntr/internal/search/exchange_order.h>
#include <velstd/line.h>
#include <velstd/real_eq.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

gx_CrossingQuery::gx_CrossingQuery(const gxVector<2>& from, const gxVector<2>& to, bool countEndContacts)
    : from_(from),
      to_(to),
      direction_(gx_directionOf(from, to)),
      bounds_(gx_Box::ofEdge(from, to)),
      countEndContacts_(countEndContacts) {}

bool gx_CrossingQuery::hits(const gxVector<2>& from, const gxVector<2>& to, gxVector<2>& place) const {
  if (gx_missesOn(from_, direction_, from, to)) return false;
  const gxLineSeg edge(from, to);
  const gxLineSeg seg(from_, to_);
  const gxLine line = edge.line();
  const gxLine segLine = seg.line();
  if (line.isParallel(segLine)) return false;
  if (!countEndContacts_ &&
      (edge.distToPoint(from_) <= gx_kTouch || edge.distToPoint(to_) <= gx_kTouch)) {
    return false;
  }
  place = line.intersect(segLine);
  return edge.distToPoint(place) < gx_kTouch && seg.distToPoint(place) < gx_kTouch;
}

void gx_CrossingQuery::test(const gxVector<2>& from, const gxVector<2>& to, std::size_t number,
                            std::vector<gx_Hit>& found) const {
  if (gx_outside(from.x(), to.x(), bounds_.lowX, bounds_.highX)) return;
  if (gx_outside(from.y(), to.y(), bounds_.lowY, bounds_.highY)) return;
  if (gfRealEq(from, to, gx_kCoincide)) return;
  gxVector<2> place;
  if (hits(from, to, place)) found.push_back({place, static_cast<int>(number)});
}

bool gx_CrossingQuery::mayMeet(const gx_Box& b) const {
  if (!b.meets(bounds_)) return false;
  const gxVector<2>& d = direction_;
  const double ax = std::abs(d.x());
  const double ay = std::abs(d.y());
  const double halfX = 0.5 * (b.highX - b.lowX);
  const double halfY = 0.5 * (b.highY - b.lowY);
  const double x = b.lowX + halfX - from_.x();
  const double y = b.lowY + halfY - from_.y();
  const double reach = ax * halfY + ay * halfX;
  // Twice the tolerance for the two distances of a hit; the rounding of coordinates, and that of
  // the distances and of this very test, many times over.
  const double coordinates = std::abs(b.lowX) + std::abs(b.highX) + std::abs(b.lowY) + std::abs(b.highY);
  const double slack = (ax + ay) * (3.0 * gx_kTouch + 1e-14 * coordinates) +
                       1e-12 * (reach + ax * std::abs(y) + ay * std::abs(x));
  return !(std::abs(d.x() * y - d.y() * x) > reach + slack);
}

double gx_CrossingQuery::sideSlack(const gx_Box& bounds) const {
  const double ax = std::abs(direction_.x());
  const double ay = std::abs(direction_.y());
  const double width = std::max(bounds.highX - from_.x(), from_.x() - bounds.lowX);
  const double height = std::max(bounds.highY - from_.y(), from_.y() - bounds.lowY);
  const double coordinates =
      std::abs(bounds.lowX) + std::abs(bounds.highX) + std::abs(bounds.lowY) + std::abs(bounds.highY);
  const double slack =
      (ax + ay) * (3.0 * gx_kTouch + 1e-14 * coordinates) + 1e-12 * (ax * height + ay * width);
  constexpr double kLargest = 1e280;  // a trillionth of what overflows
  return slack < kLargest ? slack : std::numeric_limits<double>::infinity();
}

namespace {

// Tests the edges from `first` up to `end` that come near the segment's line: an edge both of whose ends
// are clearly on the same side of it holds no hit.
void testRun(const gx_Outline& outline, std::size_t first, std::size_t end,
             const gx_CrossingQuery& query, double slack, std::vector<gx_Hit>& hits) {
  double before = query.side(outline.from(first));
  for (std::size_t k = first; k < end; ++k) {
    const double after = query.side(outline.to(k));
    const bool apart = (before > slack && after > slack) || (before < -slack && after < -slack);
    if (!apart) query.test(outline.from(k), outline.to(k), k, hits);
    before = after;
  }
}

}  // namespace

void gx_findHits(const gx_EdgeIndex& index, const gx_Outline& outline, const gx_CrossingQuery& query,
                 std::vector<gx_Hit>& hits, gxBudget& budget) {
  const double slack = query.sideSlack(index.bounds());
  index.forEachRun([&query](const gx_Box& box) { return query.mayMeet(box); },
                   [&](std::size_t first, std::size_t end) {
                     budget.spend();
                     testRun(outline, first, end, query, slack, hits);
                     return false;
                   });
}

void gx_findHits(const gxRect& box, const gx_Outline& outline, const gx_CrossingQuery& query,
                 std::vector<gx_Hit>& hits) {
  const gx_Box bounds{box.origin().x(), box.origin().y(), box.corner().x(), box.corner().y()};
  const std::size_t edges = outline.edges();
  if (edges != 0) testRun(outline, 0, edges, query, query.sideSlack(bounds), hits);
}

void gx_appendAlong(const gxVector<2>& from, const gxVector<2>& to, const std::vector<gx_Hit>& hits,
                    std::vector<gxVector<2>>& points, std::vector<int>* edges) {
  if (hits.size() == 1) {
    points.push_back(hits.front().point);
    if (edges != nullptr) edges->push_back(hits.front().edge);
  }
  if (hits.size() < 2) return;
  const gxVector<2> direction = to - from;
  if (hits.size() == 2) {  // as most lines through a shape have them
    const bool turned =
        gx_exchanged((hits[0].point - from) * direction, (hits[1].point - from) * direction);
    const gx_Hit& first = hits[turned ? 1 : 0];
    const gx_Hit& second = hits[turned ? 0 : 1];
    points.insert(points.end(), {first.point, second.point});
    if (edges != nullptr) edges->insert(edges->end(), {first.edge, second.edge});
    return;
  }
  std::vector<double> keys;
  keys.reserve(hits.size());
  for (const gx_Hit& hit : hits) keys.push_back((hit.point - from) * direction);
  for (const std::size_t i : gx_exchangeOrder(keys)) {
    points.push_back(hits[i].point);
    if (edges != nullptr) edges->push_back(hits[i].edge);
  }
}

// ---- With another contour -----------------------------------------------------------------------

namespace {

using Points = std::vector<gxVector<2>>;

// The walk down both trees.
class Crossings {
 public:
  // Without a result to append to, the walk ends at the first hit.
  Crossings(const gx_EdgeIndex& index, const gx_Outline& ours, const gxRect& box,
            const gx_EdgeIndex& theirIndex, const gx_Outline& theirs, Points* result, gxBudget& budget)
      : index_(index),
        ours_(ours),
        theirIndex_(theirIndex),
        theirs_(theirs),
        box_(box),
        result_(result),
        budget_(budget) {}

  // Tells whether the walk ended early.
  bool find() {
    std::vector<Node> all;
    const std::size_t top = index_.levels() - 1;
    for (std::size_t i = 0; i < index_.size(top); ++i) all.push_back({top, i});
    const std::size_t theirTop = theirIndex_.levels() - 1;
    return descend(theirTop, 0, theirIndex_.size(theirTop), all);
  }

 private:
  struct Node {
    std::size_t level;
    std::size_t at;
  };

  // Collects, in order, the nodes at or below `node` that the box touches and that are on the level
  // of the box or lower.
  void refine(const Node& node, const gx_Box& box, std::size_t level, std::vector<Node>& touched) {
    budget_.spend();
    if (!index_.box(node.level, node.at).meets(box)) return;
    if (node.level <= level) {
      touched.push_back(node);
      return;
    }
    const gx_EdgeIndex::Run run = index_.below(node.level, node.at);
    for (std::size_t i = run.first; i < run.end; ++i) refine({node.level - 1, i}, box, level, touched);
  }

  bool descend(std::size_t level, std::size_t first, std::size_t end, const std::vector<Node>& nodes) {
    std::vector<Node> touched;
    for (std::size_t i = first; i < end; ++i) {
      const gx_Box& box = theirIndex_.box(level, i);
      touched.clear();
      for (const Node& node : nodes) refine(node, box, level, touched);
      if (touched.empty()) continue;
      const gx_EdgeIndex::Run below = theirIndex_.below(level, i);
      if (level == 0 ? testRun(below.first, below.end, touched)
                     : descend(level - 1, below.first, below.end, touched)) {
        return true;
      }
    }
    return false;
  }

  bool testRun(std::size_t first, std::size_t end, const std::vector<Node>& runs) {
    for (std::size_t k = first; k < end; ++k) {
      const gx_CrossingQuery query(theirs_.from(k), theirs_.to(k), true);
      if (!query.reaches(box_)) continue;
      hits_.clear();
      const double slack = query.sideSlack(index_.bounds());
      for (const Node& run : runs) {
        if (query.mayMeet(index_.box(run.level, run.at))) testEdges(run.at, query, slack);
        if (result_ == nullptr && !hits_.empty()) return true;
      }
      if (result_ != nullptr) gx_appendAlong(query.from(), query.to(), hits_, *result_, nullptr);
    }
    return false;
  }

  void testEdges(std::size_t run, const gx_CrossingQuery& query, double slack) {
    budget_.spend();
    const gx_EdgeIndex::Run edges = index_.below(0, run);
    ::testRun(ours_, edges.first, edges.end, query, slack, hits_);
  }

  const gx_EdgeIndex& index_;
  const gx_Outline& ours_;
  const gx_EdgeIndex& theirIndex_;
  const gx_Outline& theirs_;
  const gxRect& box_;
  Points* result_;
  gxBudget& budget_;
  std::vector<gx_Hit> hits_;
};

}  // namespace

void gx_findCrossings(const gx_EdgeIndex& index, const gx_Outline& ours, const gxRect& box,
                      const gx_EdgeIndex& theirIndex, const gx_Outline& theirs, Points& result,
                      gxBudget& budget) {
  Crossings(index, ours, box, theirIndex, theirs, &result, budget).find();
}

bool gx_meet(const gx_EdgeIndex& index, const gx_Outline& ours, const gxRect& box,
             const gx_EdgeIndex& theirIndex, const gx_Outline& theirs, gxBudget& budget) {
  return Crossings(index, ours, box, theirIndex, theirs, nullptr, budget).find();
}

namespace {

// The pairs of few edges: calls `visit(query, hits)` with the hits of each edge of theirs that has any, until
// one visit returns true; with `first`, one hit of each is enough.
template <class Visit>
bool forHitsOfFew(const gx_Outline& our, const gxRect& box, const gx_Outline& their, bool first,
                  const Visit& visit) {
  const gx_FewBoxes boxes(our);
  std::vector<gx_Hit> hits;
  gxVector<2> place;
  for (std::size_t edge = 0; edge < their.edges(); ++edge) {
    const gx_CrossingQuery query(their.from(edge), their.to(edge), true);
    if (!query.reaches(box)) continue;
    hits.clear();
    for (std::uint64_t near = boxes.meeting(query.box()); near != 0 && !(first && !hits.empty());
         near &= near - 1) {
      const std::size_t k = boxes.number(static_cast<std::size_t>(std::countr_zero(near)));
      if (query.hits(our.from(k), our.to(k), place)) hits.push_back({place, static_cast<int>(k)});
    }
    if (!hits.empty() && visit(query, hits)) return true;
  }
  return false;
}

}  // namespace

void gx_findCrossingsOfFew(const gx_Outline& ours, const gxRect& box, const gx_Outline& theirs,
                           Points& result) {
  forHitsOfFew(ours, box, theirs, false,
               [&result](const gx_CrossingQuery& query, const std::vector<gx_Hit>& hits) {
                 gx_appendAlong(query.from(), query.to(), hits, result, nullptr);
                 return false;
               });
}

bool gx_fewMeet(const gx_Outline& ours, const gxRect& box, const gx_Outline& theirs) {
  return forHitsOfFew(ours, box, theirs, true,
                      [](const gx_CrossingQuery&, const std::vector<gx_Hit>&) { return true; });
}
