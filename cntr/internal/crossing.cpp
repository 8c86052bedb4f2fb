// The test of one edge, and the three ways through the index to the edges that are tested: along
// one segment, edge by edge of another contour, and every edge with every other.
//
// Another contour has an index too.  Its tree is walked in its order, and on the way down the boxes
// of ours that a box of theirs touches are kept in a list, which only gets finer: parts of theirs
// that are nowhere near ours are left out whole, and neighbouring edges share the way down.
//
// With itself: a pair of boxes that do not touch holds no pair of edges whose boxes do.  Both orders
// of a pair are tested, for the test asks about the ends of one of them.  Which pair is found first
// does not matter: the answer is only whether there is one.
#include <cntr/internal/crossing.h>
#include <cntr/internal/edge_walk.h>
#include <cntr/internal/exchange_order.h>
#include <velstd/real_eq.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Points = std::vector<gxVector<2>>;

// How far a computed crossing may lie off either segment, in units of the coordinates.
constexpr double kTouch = 1e-6;

// Closer points coincide.
constexpr double kCoincide = 1e-15;

gxRect boxAround(const gxVector<2>& a, const gxVector<2>& b) {
  return gxRect(a, gxVector<2>()).enclose(gxRect(b, gxVector<2>()));
}

gx_Box boundsOf(const gxRect& r) {
  return {r.origin().x(), r.origin().y(), r.corner().x(), r.corner().y()};
}

bool touchesEnd(const gxLineSeg& edge, const gxLineSeg& seg) {
  return edge.distToPoint(seg.p1()) <= kTouch || edge.distToPoint(seg.p2()) <= kTouch;
}

// One side of an interval test: the least and greatest of an edge's coordinate against a range.  An
// edge's box is the start widened by the end, so a NaN at the start meets nothing, one at the end
// is passed over.
bool outside(double from, double to, double low, double high) {
  return !((to > from ? to : from) >= low && (to < from ? to : from) <= high);
}

struct Outline {
  const gx_EdgeIndex& index;
  const Points& points;
  bool closed;

  const gxVector<2>& from(std::size_t k) const { return points[gx_edgeStart(k, points.size(), closed)]; }
  const gxVector<2>& to(std::size_t k) const { return points[gx_edgeEnd(k, closed)]; }
};

}  // namespace

gx_CrossingQuery::gx_CrossingQuery(const gxLineSeg& seg, bool countEndContacts)
    : seg_(seg),
      line_(seg.line()),
      box_(boxAround(seg.p1(), seg.p2())),
      bounds_(boundsOf(box_)),
      countEndContacts_(countEndContacts) {}

void gx_CrossingQuery::test(const gxLineSeg& edge, const gxLine& line, std::size_t number,
                            std::vector<gx_Hit>& hits) const {
  if (line.isParallel(line_)) return;
  if (!countEndContacts_ && touchesEnd(edge, seg_)) return;
  const gxVector<2> q = line.intersect(line_);
  if (edge.distToPoint(q) < kTouch && seg_.distToPoint(q) < kTouch) {
    hits.push_back({q, static_cast<int>(number)});
  }
}

void gx_CrossingQuery::test(const gxVector<2>& from, const gxVector<2>& to, std::size_t number,
                            std::vector<gx_Hit>& hits) const {
  if (outside(from.x(), to.x(), bounds_.lowX, bounds_.highX)) return;
  if (outside(from.y(), to.y(), bounds_.lowY, bounds_.highY)) return;
  if (gfRealEq(from, to, kCoincide)) return;
  const gxLineSeg edge(from, to);
  test(edge, edge.line(), number, hits);
}

bool gx_CrossingQuery::mayMeet(const gx_Box& b) const {
  if (!b.meets(bounds_)) return false;
  const gxVector<2> d = line_.direction();
  const double ax = std::abs(d.x());
  const double ay = std::abs(d.y());
  const double halfX = 0.5 * (b.highX - b.lowX);
  const double halfY = 0.5 * (b.highY - b.lowY);
  const double x = b.lowX + halfX - seg_.p1().x();
  const double y = b.lowY + halfY - seg_.p1().y();
  const double reach = ax * halfY + ay * halfX;
  // Twice the tolerance for the two distances of a hit; the rounding of coordinates, and that of
  // the distances and of this very test, many times over.
  const double coordinates = std::abs(b.lowX) + std::abs(b.highX) + std::abs(b.lowY) + std::abs(b.highY);
  const double slack = (ax + ay) * (3.0 * kTouch + 1e-14 * coordinates) +
                       1e-12 * (reach + ax * std::abs(y) + ay * std::abs(x));
  return !(std::abs(d.x() * y - d.y() * x) > reach + slack);
}

double gx_CrossingQuery::sideSlack(const gx_Box& bounds) const {
  const double ax = std::abs(line_.direction().x());
  const double ay = std::abs(line_.direction().y());
  const double width = std::max(bounds.highX - seg_.p1().x(), seg_.p1().x() - bounds.lowX);
  const double height = std::max(bounds.highY - seg_.p1().y(), seg_.p1().y() - bounds.lowY);
  const double coordinates =
      std::abs(bounds.lowX) + std::abs(bounds.highX) + std::abs(bounds.lowY) + std::abs(bounds.highY);
  const double slack =
      (ax + ay) * (3.0 * kTouch + 1e-14 * coordinates) + 1e-12 * (ax * height + ay * width);
  constexpr double kLargest = 1e280;  // a trillionth of what overflows
  return slack < kLargest ? slack : std::numeric_limits<double>::infinity();
}

namespace {

// Tests the edges from `first` up to `end` that come near the segment's line: an edge both of whose ends
// are clearly on the same side of it holds no hit.
void testRun(const Outline& outline, std::size_t first, std::size_t end, const gx_CrossingQuery& query,
             double slack, std::vector<gx_Hit>& hits) {
  double before = query.side(outline.from(first));
  for (std::size_t k = first; k < end; ++k) {
    const double after = query.side(outline.to(k));
    const bool apart = (before > slack && after > slack) || (before < -slack && after < -slack);
    if (!apart) query.test(outline.from(k), outline.to(k), k, hits);
    before = after;
  }
}

}  // namespace

void gx_findHits(const gx_EdgeIndex& index, const Points& points, bool closed,
                 const gx_CrossingQuery& query, std::vector<gx_Hit>& hits) {
  const Outline outline{index, points, closed};
  const double slack = query.sideSlack(index.bounds());
  index.forEachRun([&query](const gx_Box& box) { return query.mayMeet(box); },
                   [&](std::size_t first, std::size_t end) {
                     testRun(outline, first, end, query, slack, hits);
                     return false;
                   });
}

std::vector<gxVector<2>> gx_inOrderAlong(const gxLineSeg& seg, const std::vector<gx_Hit>& hits,
                                         std::vector<int>& edges) {
  if (hits.empty()) return {};
  const gxVector<2> direction = seg.p2() - seg.p1();
  std::vector<double> keys;
  keys.reserve(hits.size());
  for (const gx_Hit& hit : hits) keys.push_back((hit.point - seg.p1()) * direction);
  std::vector<gxVector<2>> points;
  points.reserve(hits.size());
  for (const std::size_t i : gx_exchangeOrder(keys)) {
    points.push_back(hits[i].point);
    edges.push_back(hits[i].edge);
  }
  return points;
}

// ---- With another contour -----------------------------------------------------------------------

namespace {

// The walk down both trees.
class Crossings {
 public:
  Crossings(const Outline& ours, const gxRect& box, const Outline& theirs, Points& result)
      : ours_(ours), theirs_(theirs), box_(box), result_(result) {}

  void find() {
    std::vector<Node> all;
    const std::size_t top = ours_.index.levels() - 1;
    for (std::size_t i = 0; i < ours_.index.size(top); ++i) all.push_back({top, i});
    const std::size_t theirTop = theirs_.index.levels() - 1;
    descend(theirTop, 0, theirs_.index.size(theirTop), all);
  }

 private:
  struct Node {
    std::size_t level;
    std::size_t at;
  };

  // Collects, in order, the nodes at or below `node` that the box touches and that are on the level
  // of the box or lower.
  void refine(const Node& node, const gx_Box& box, std::size_t level, std::vector<Node>& touched) const {
    if (!ours_.index.box(node.level, node.at).meets(box)) return;
    if (node.level <= level) {
      touched.push_back(node);
      return;
    }
    const std::size_t first = node.at * gx_EdgeIndex::kFan;
    const std::size_t end = std::min(first + gx_EdgeIndex::kFan, ours_.index.size(node.level - 1));
    for (std::size_t i = first; i < end; ++i) refine({node.level - 1, i}, box, level, touched);
  }

  void descend(std::size_t level, std::size_t first, std::size_t end, const std::vector<Node>& nodes) {
    std::vector<Node> touched;
    for (std::size_t i = first; i < end; ++i) {
      const gx_Box& box = theirs_.index.box(level, i);
      touched.clear();
      for (const Node& node : nodes) refine(node, box, level, touched);
      if (touched.empty()) continue;
      const std::size_t below = i * gx_EdgeIndex::kFan;
      if (level == 0) {
        testRun(below, std::min(below + gx_EdgeIndex::kFan, theirs_.index.edges()), touched);
      } else {
        descend(level - 1, below, std::min(below + gx_EdgeIndex::kFan, theirs_.index.size(level - 1)),
                touched);
      }
    }
  }

  void testRun(std::size_t first, std::size_t end, const std::vector<Node>& runs) {
    for (std::size_t k = first; k < end; ++k) {
      const gx_CrossingQuery query(gxLineSeg(theirs_.from(k), theirs_.to(k)), true);
      if (!box_.overlaps(query.box())) continue;
      hits_.clear();
      const double slack = query.sideSlack(ours_.index.bounds());
      for (const Node& run : runs) {
        if (query.mayMeet(ours_.index.box(run.level, run.at))) testEdges(run.at, query, slack);
      }
      edges_.clear();
      const Points along = gx_inOrderAlong(query.seg(), hits_, edges_);
      result_.insert(result_.end(), along.begin(), along.end());
    }
  }

  void testEdges(std::size_t run, const gx_CrossingQuery& query, double slack) {
    const std::size_t first = run * gx_EdgeIndex::kFan;
    const std::size_t end = std::min(first + gx_EdgeIndex::kFan, ours_.index.edges());
    ::testRun(ours_, first, end, query, slack, hits_);
  }

  const Outline& ours_;
  const Outline& theirs_;
  const gxRect& box_;
  Points& result_;
  std::vector<gx_Hit> hits_;
  std::vector<int> edges_;
};

}  // namespace

void gx_findCrossings(const gx_EdgeIndex& index, const Points& ours, bool closed, const gxRect& box,
                      const gx_EdgeIndex& theirIndex, const Points& theirs, bool theirsClosed,
                      Points& result) {
  const Outline our{index, ours, closed};
  const Outline their{theirIndex, theirs, theirsClosed};
  Crossings(our, box, their, result).find();
}

// ---- With itself --------------------------------------------------------------------------------

bool gx_hasEdgeOfLength(const Points& points, bool closed) {
  bool found = false;
  const std::size_t edges = gx_edgeCount(points.size(), closed);
  for (std::size_t k = 0; k < edges && !found; ++k) {
    found = !gfRealEq(points[gx_edgeStart(k, points.size(), closed)], points[gx_edgeEnd(k, closed)],
                      kCoincide);
  }
  return found;
}

namespace {

// Pairs of boxes, down to pairs of edges.
class SelfCrossing {
 public:
  SelfCrossing(const Outline& outline, const gxRect& box) : outline_(outline), box_(box) {}

  bool found() {
    const std::size_t top = outline_.index.levels() - 1;
    return among(top, 0, outline_.index.size(top));
  }

 private:
  struct Range {
    std::size_t first;
    std::size_t end;
  };

  Range below(std::size_t level, std::size_t i) const {
    const std::size_t first = i * gx_EdgeIndex::kFan;
    const std::size_t count = level == 0 ? outline_.index.edges() : outline_.index.size(level - 1);
    return {first, std::min(first + gx_EdgeIndex::kFan, count)};
  }

  // Pairs within and between the nodes of one run of nodes.
  bool among(std::size_t level, std::size_t first, std::size_t end) {
    for (std::size_t a = first; a < end; ++a) {
      const Range own = below(level, a);
      if (level == 0 ? edgesAmong(own) : among(level - 1, own.first, own.end)) return true;
      for (std::size_t b = a + 1; b < end; ++b) {
        if (between(level, a, b)) return true;
      }
    }
    return false;
  }

  bool between(std::size_t level, std::size_t a, std::size_t b) {
    const gx_Box& boxA = outline_.index.box(level, a);
    const gx_Box& boxB = outline_.index.box(level, b);
    if (!boxA.meets(boxB)) return false;
    const Range inA = below(level, a);
    const Range inB = below(level, b);
    if (level == 0) return edgesBetween(inA, boxA, inB, boxB);
    for (std::size_t i = inA.first; i < inA.end; ++i) {
      if (!outline_.index.box(level - 1, i).meets(boxB)) continue;
      for (std::size_t j = inB.first; j < inB.end; ++j) {
        if (between(level - 1, i, j)) return true;
      }
    }
    return false;
  }

  bool edgesAmong(const Range& run) {
    for (std::size_t i = run.first; i < run.end; ++i) {
      for (std::size_t j = i + 2; j < run.end; ++j) {
        if (pairCrosses(i, j)) return true;
      }
    }
    return false;
  }

  bool edgesBetween(const Range& inA, const gx_Box& boxA, const Range& inB, const gx_Box& boxB) {
    std::size_t candidates[gx_EdgeIndex::kFan];
    std::size_t count = 0;
    for (std::size_t j = inB.first; j < inB.end; ++j) {
      if (edgeMeets(j, boxA)) candidates[count++] = j;
    }
    if (count == 0) return false;
    for (std::size_t i = inA.first; i < inA.end; ++i) {
      if (!edgeMeets(i, boxB)) continue;
      for (std::size_t c = 0; c < count; ++c) {
        if (pairCrosses(i, candidates[c])) return true;
      }
    }
    return false;
  }

  bool edgeMeets(std::size_t k, const gx_Box& box) const {
    const gxVector<2>& a = outline_.from(k);
    const gxVector<2>& b = outline_.to(k);
    return !outside(a.x(), b.x(), box.lowX, box.highX) && !outside(a.y(), b.y(), box.lowY, box.highY);
  }

  // Tests a pair of edges both ways.  Neighbours touch each other's ends and never count.
  bool pairCrosses(std::size_t i, std::size_t j) {
    if (j == i + 1 || (outline_.closed && i == 0 && j + 1 == outline_.index.edges())) return false;
    const gxVector<2>& a = outline_.from(i);
    const gxVector<2>& b = outline_.to(i);
    const gxVector<2>& c = outline_.from(j);
    const gxVector<2>& d = outline_.to(j);
    const bool apart = std::max(a.x(), b.x()) < std::min(c.x(), d.x()) ||
                       std::max(c.x(), d.x()) < std::min(a.x(), b.x()) ||
                       std::max(a.y(), b.y()) < std::min(c.y(), d.y()) ||
                       std::max(c.y(), d.y()) < std::min(a.y(), b.y());
    return !apart && (crosses(i, j) || crosses(j, i));
  }

  bool crosses(std::size_t asked, std::size_t other) {
    if (gfRealEq(outline_.from(asked), outline_.to(asked), kCoincide)) return false;
    const gx_CrossingQuery query(gxLineSeg(outline_.from(asked), outline_.to(asked)), false);
    if (!box_.overlaps(query.box())) return false;
    hits_.clear();
    query.test(outline_.from(other), outline_.to(other), other, hits_);
    return !hits_.empty();
  }

  const Outline& outline_;
  const gxRect& box_;
  std::vector<gx_Hit> hits_;
};

}  // namespace

bool gx_crossesItself(const gx_EdgeIndex& index, const Points& points, bool closed, const gxRect& box) {
  const Outline outline{index, points, closed};
  return SelfCrossing(outline, box).found();
}
