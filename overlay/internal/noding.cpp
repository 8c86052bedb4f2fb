// Noding in rounds.
//
//  1. All pairs of edges whose boxes meet are decided exactly.  A crossing becomes a node, rounded
//     correctly; an end that lies on another edge is a node as it stands; of edges that overlap, every end
//     that lies on the other is one.  Neighbours in a ring meet where the way folds back on itself.
//  2. All nodes of a round are inserted together, so that no order of edges can show.  Along an edge they
//     stand in the order of x, then y, each in the edge's direction: rounding is monotone in each coordinate, so nodes stay in the box
//     of their edge, and the bent chain is monotone in x and y, never meets itself and passes no node twice.
//  3. A bent piece may meet what its edge did not.  So the next round holds every piece beside a crossing
//     of the last round against the pieces of the edges that are near its own.  Near are edges, with boxes that
//     meet, of which neither is aside of the other's line by more than both can bend in all rounds; the first
//     round notes them as it goes.  Where there are too many to note (edges that lie on each other by the
//     dozen), all pairs whose boxes meet are looked at once more.  Whatever was not bent is settled for good.
//  4. The round that finds nothing is the last one, and the proof that nothing meets any more.
//
// A node lies within half a unit in the last place of its piece in each coordinate, and the distance from a
// segment is convex; so after r rounds a chain lies within r · 0.7072 ulp of the largest coordinate from
// its edge.  In bundles of edges a few units apart the rounds creep on, each adding one short piece (the
// outline (55,3), (8,2), (54,3), (2,0) in units in the last place needs 44 rounds); therefore the rounds are
// counted, and the grid takes over (snap.cpp).
//
// Dropped: inserting crossings one at a time (results hang on the order), stopping where the number of new
// nodes no longer falls (creeping keeps it, and honest input may raise it once), sorting along an edge by a
// computed parameter (it contradicts the order of the rounded points).
#include <overlay/internal/crossing_point.h>
#include <overlay/internal/noding.h>
#include <overlay/internal/predicates.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Edges bend by less than 0.7072 units in the last place of the largest coordinate in a round, so two of them come
// nearer to each other by less than 6 in four rounds.
constexpr double kBends = 8.0;

// So many near pairs are noted for each edge, and so many for a few.
constexpr std::size_t kNearPerEdge = 4;
constexpr std::size_t kNearAtLeast = 256;

double spacingAt(const gx_Box& box) {
  const double largest = std::max({std::fabs(box.lowX), std::fabs(box.lowY), std::fabs(box.highX),
                                   std::fabs(box.highY), std::numeric_limits<double>::min()});
  return std::ldexp(1.0, std::ilogb(largest) - 52);
}

// Tells whether c and d are on one side of the line through a and b, farther from it than `far`, beyond rounding (of
// which `gx_Orientation` tells).
bool areAside(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c, const gxVector<2>& d,
              double far) {
  constexpr double kRounding = 2.0 * std::numeric_limits<double>::epsilon();
  const gxVector<2> along = b - a;
  const double margin =
      far * (std::fabs(along.x()) + std::fabs(along.y())) + std::numeric_limits<double>::min();
  const double left = along.x() * (c.y() - a.y());
  const double right = along.y() * (c.x() - a.x());
  const double error = kRounding * (std::fabs(left) + std::fabs(right)) + margin;
  const double otherLeft = along.x() * (d.y() - a.y());
  const double otherRight = along.y() * (d.x() - a.x());
  const double otherError = kRounding * (std::fabs(otherLeft) + std::fabs(otherRight)) + margin;
  const double side = left - right;
  const double otherSide = otherLeft - otherRight;
  return (side > error && otherSide > otherError) || (-side > error && -otherSide > otherError);
}

}  // namespace

gx_Noding::gx_Noding(const gx_EdgeSet& edges, gx_Steps& steps)
    : edges_(edges), steps_(steps), flags_(edges.size()), far_(kBends * spacingAt(edges.box())) {
  for (std::size_t r = 0; r < edges.rings(); ++r) {
    const gx_EdgeSet::Ring& ring = edges.ring(r);
    if (ring.closed && ring.edges() != 0) flags_[ring.end] |= eClosing;
  }
}

bool gx_Noding::run() {
  round_ = 1;
  markChainEnds_();
  firstRound_();
  while (insert_()) {
    ++round_;
    laterRound_();
    if (round_ <= kMostRounds || added_.empty()) continue;
    for (const gx_Incidence& i : added_) unsettled_.push_back(edges_.ringOf(i.place / 2));
    std::sort(unsettled_.begin(), unsettled_.end());
    unsettled_.erase(std::unique(unsettled_.begin(), unsettled_.end()), unsettled_.end());
    return false;
  }
  markFirsts_();
  insert_();
  return true;
}

// ---- The first round ----------------------------------------------------------------------------

void gx_Noding::markChainEnds_() {
  for (std::size_t r = 0; r < edges_.rings(); ++r) {
    const gx_EdgeSet::Ring& ring = edges_.ring(r);
    if (ring.closed || ring.edges() == 0) continue;
    mark_(ring.first, nodes_.add(edges_.point(ring.first)));
    mark_(ring.end, nodes_.add(edges_.point(ring.end)));
  }
}

void gx_Noding::markFirsts_() {
  for (std::size_t r = 0; r < edges_.rings(); ++r) {
    const gx_EdgeSet::Ring& ring = edges_.ring(r);
    if (ring.edges() == 0) continue;
    std::uint32_t least = ring.first;
    for (std::uint32_t i = ring.first + 1; i <= ring.end; ++i) {
      if (gx_before(edges_.point(i), edges_.point(least))) least = i;
    }
    mark_(least, nodes_.add(edges_.point(least)));
  }
}

void gx_Noding::firstRound_() {
  edges_.forEachJoint([this](std::uint32_t i, std::uint32_t j) {
    if (gx_isFold(edges_.from(i), edges_.to(i), edges_.to(j))) fold_(i, j);
  });
  edges_.forEachPair(
      [this](std::uint32_t i, std::uint32_t j) {
        pair_(i, j);
        return false;
      },
      [this](std::size_t count) { steps_.looked(count); });
}

void gx_Noding::fold_(std::uint32_t edge, std::uint32_t next) {
  mark_(edge + 1, nodes_.add(edges_.to(edge)));
  if (gx_isBetween(edges_.to(next), edges_.from(edge), edges_.to(edge))) {
    touch_(edge, next + 1);
  } else {
    touch_(next, edge);
  }
}

void gx_Noding::pair_(std::uint32_t i, std::uint32_t j) {
  const gxVector<2>& a = edges_.from(i);
  const gxVector<2>& b = edges_.to(i);
  const gxVector<2>& c = edges_.from(j);
  const gxVector<2>& d = edges_.to(j);
  if (areAside(a, b, c, d, far_) || areAside(c, d, a, b, far_)) return;
  noteNear_(i, j);
  if (a == c) return equalEnds_(i, i, i + 1, j, j, j + 1);
  if (a == d) return equalEnds_(i, i, i + 1, j, j + 1, j);
  if (b == c) return equalEnds_(i, i + 1, i, j, j, j + 1);
  if (b == d) return equalEnds_(i, i + 1, i, j, j + 1, j);
  const gx_EdgeMeeting meeting = gx_meetingOf(a, b, c, d);
  if (meeting.kind == gx_EdgeMeeting::eApart) return;
  if (meeting.kind == gx_EdgeMeeting::eCrossing) {
    const gxVector<2> p = gx_crossingPoint(a, b, c, d);
    onEdge_(i, p, true);
    onEdge_(j, p, true);
    return;
  }
  if ((meeting.ends & gx_EdgeMeeting::eA) != 0) touch_(j, i);
  if ((meeting.ends & gx_EdgeMeeting::eB) != 0) touch_(j, i + 1);
  if ((meeting.ends & gx_EdgeMeeting::eC) != 0) touch_(i, j);
  if ((meeting.ends & gx_EdgeMeeting::eD) != 0) touch_(i, j + 1);
}

void gx_Noding::noteNear_(std::uint32_t i, std::uint32_t j) {
  if (!knowsNear_) return;
  if (near_.size() >= kNearPerEdge * edges_.size() + kNearAtLeast) {
    knowsNear_ = false;
    near_ = {};
    return;
  }
  near_.push_back({i, j});
}

// Edges with equal ends meet elsewhere only where they go the same way from there.
void gx_Noding::equalEnds_(std::uint32_t i, std::uint32_t own, std::uint32_t far, std::uint32_t j,
                           std::uint32_t other, std::uint32_t otherFar) {
  markPoint_(own);
  markPoint_(other);
  const gxVector<2>& p = edges_.point(far);
  const gxVector<2>& q = edges_.point(otherFar);
  if (p == q) {
    markPoint_(far);
    markPoint_(otherFar);
  } else if (gx_isFold(p, edges_.point(own), q)) {
    if (gx_isBetween(q, edges_.point(own), p)) {
      touch_(i, otherFar);
    } else {
      touch_(j, far);
    }
  }
}

// The point lies on the edge.
void gx_Noding::touch_(std::uint32_t edge, std::uint32_t point) {
  onEdge_(edge, edges_.point(point), false);
  markPoint_(point);
}

void gx_Noding::markPoint_(std::uint32_t point) {
  if ((flags_[vertexOf_(point)] & eNode) == 0) mark_(point, nodes_.add(edges_.point(point)));
}

void gx_Noding::onEdge_(std::uint32_t edge, const gxVector<2>& p, bool bends) {
  const std::uint32_t node = nodes_.add(p);
  if (p == edges_.from(edge)) {
    mark_(edge, node);
  } else if (p == edges_.to(edge)) {
    mark_(edge + 1, node);
  } else {
    steps_.met();
    added_.push_back({2 * edge + 1, node, bends ? round_ : 0});
  }
}

std::uint32_t gx_Noding::vertexOf_(std::uint32_t point) const {
  return (flags_[point] & eClosing) != 0 ? edges_.ring(edges_.ringOf(point)).first : point;
}

void gx_Noding::mark_(std::uint32_t point, std::uint32_t node) {
  const std::uint32_t vertex = vertexOf_(point);
  if ((flags_[vertex] & eNode) != 0) return;
  flags_[vertex] |= eNode;
  added_.push_back({2 * vertex, node, 0});
}

// ---- Inserting ----------------------------------------------------------------------------------

// Puts what was added in its places; tells whether there was something.
bool gx_Noding::insert_() {
  if (added_.empty()) return false;
  const auto before = [this](const gx_Incidence& a, const gx_Incidence& b) { return before_(a, b); };
  std::sort(added_.begin(), added_.end(), before);
  const auto same = [](const gx_Incidence& a, const gx_Incidence& b) {
    return a.place == b.place && a.node == b.node;
  };
  added_.erase(std::unique(added_.begin(), added_.end(), same), added_.end());
  for (const gx_Incidence& i : added_) {
    if (!i.isVertex()) flags_[i.place / 2] |= eSplit;
  }
  const auto old = static_cast<std::ptrdiff_t>(incidences_.size());
  incidences_.insert(incidences_.end(), added_.begin(), added_.end());
  std::inplace_merge(incidences_.begin(), incidences_.begin() + old, incidences_.end(), before);
  added_.clear();
  noteInsides_();
  return true;
}

// Notes where the incidences inside of each split edge begin.
void gx_Noding::noteInsides_() {
  for (std::size_t i = incidences_.size(); i-- > 0;) {
    if (incidences_[i].isVertex()) continue;
    if (inside_.empty()) inside_.resize(edges_.size());
    inside_[incidences_[i].place / 2] = static_cast<std::uint32_t>(i);
  }
}

// ---- Later rounds -------------------------------------------------------------------------------

// Of the pieces of an edge, those whose boxes meet a box.
void gx_Noding::piecesOf_(std::uint32_t edge, const gx_Box& within, std::vector<Piece>& pieces) const {
  pieces.clear();
  const std::uint32_t start = edge;
  const std::uint32_t end = vertexOf_(edge + 1);
  End from{edges_.from(edge), start, (flags_[start] & eNode) != 0};
  bool bent = false;
  const auto add = [&](const End& to, bool isBent) {
    if (gx_boxesMeet(gx_boxOfEdge(from.at, to.at), within))
      pieces.push_back({from, to, edge, isBent ? 1U : 0U});
  };
  if (isSplit(edge)) {
    for (std::size_t i = firstInside_(edge);
         i < incidences_.size() && incidences_[i].place == 2 * edge + 1; ++i) {
      const bool bends = incidences_[i].round + 1 == round_;
      const End to{nodes_.at(incidences_[i].node), gx_EdgeSet::kNone, true};
      add(to, bent || bends);
      from = to;
      bent = bends;
    }
  }
  add({edges_.to(edge), end, (flags_[end] & eNode) != 0}, bent);
}

void gx_Noding::findBentEdges_() {
  bent_.clear();
  for (const gx_Incidence& i : incidences_) {
    if (i.round + 1 != round_ || i.isVertex()) continue;
    if (bent_.empty() || bent_.back() != i.place / 2) bent_.push_back(i.place / 2);
  }
}

void gx_Noding::laterRound_() {
  findBentEdges_();
  for (const std::uint32_t edge : bent_) flags_[edge] |= eBent;
  const auto pair = [this](std::uint32_t i, std::uint32_t j) {
    if (((flags_[i] | flags_[j]) & eBent) != 0) bentPair_(i, j);
    return false;
  };
  if (knowsNear_) {
    for (const std::uint32_t edge : bent_) bentJoints_(edge);
    for (const Near& near : near_) pair(near.edge, near.other);
  } else {
    edges_.forEachJoint(pair);
    edges_.forEachPair(pair, [this](std::size_t count) { steps_.looked(count); });
  }
  for (const std::uint32_t edge : bent_) flags_[edge] &= static_cast<unsigned char>(~eBent);
}

// The pieces of a bent edge and of its neighbours in the ring.
void gx_Noding::bentJoints_(std::uint32_t edge) {
  const gx_EdgeSet::Ring& ring = edges_.ring(edges_.ringOf(edge));
  if (ring.edges() < 2) return;
  const bool isLast = edge + 1 == ring.end;
  const bool isFirst = edge == ring.first;
  if (!isLast || ring.closed) bentPair_(edge, isLast ? ring.first : edge + 1);
  if (isFirst && !ring.closed) return;
  const std::uint32_t before = isFirst ? ring.end - 1 : edge - 1;
  // Of two bent ones the first has looked at both.
  if ((flags_[before] & eBent) == 0) bentPair_(before, edge);
}

// The pieces of two edges, of which one at least is bent.
void gx_Noding::bentPair_(std::uint32_t edge, std::uint32_t other) {
  piecesOf_(edge, edges_.boxOf(other), pieces_);
  if (pieces_.empty()) return;
  piecesOf_(other, edges_.boxOf(edge), others_);
  for (const Piece& s : pieces_) {
    const gx_Box own = gx_boxOfEdge(s.from.at, s.to.at);
    steps_.looked(others_.size());
    for (const Piece& t : others_) {
      if ((s.isBent | t.isBent) != 0 && gx_boxesMeet(own, gx_boxOfEdge(t.from.at, t.to.at)))
        piecePair_(s, t);
    }
  }
}

void gx_Noding::piecePair_(const Piece& s, const Piece& t) {
  if (s.from.at == t.from.at) return sharedEnd_(s, s.from, s.to, t, t.from, t.to);
  if (s.from.at == t.to.at) return sharedEnd_(s, s.from, s.to, t, t.to, t.from);
  if (s.to.at == t.from.at) return sharedEnd_(s, s.to, s.from, t, t.from, t.to);
  if (s.to.at == t.to.at) return sharedEnd_(s, s.to, s.from, t, t.to, t.from);
  const gx_EdgeMeeting meeting = gx_meetingOf(s.from.at, s.to.at, t.from.at, t.to.at);
  if (meeting.kind == gx_EdgeMeeting::eApart) return;
  if (meeting.kind == gx_EdgeMeeting::eCrossing) {
    const gxVector<2> p = gx_crossingPoint(s.from.at, s.to.at, t.from.at, t.to.at);
    onPiece_(s, p, true);
    onPiece_(t, p, true);
    return;
  }
  if ((meeting.ends & gx_EdgeMeeting::eA) != 0) endOn_(s.from, t);
  if ((meeting.ends & gx_EdgeMeeting::eB) != 0) endOn_(s.to, t);
  if ((meeting.ends & gx_EdgeMeeting::eC) != 0) endOn_(t.from, s);
  if ((meeting.ends & gx_EdgeMeeting::eD) != 0) endOn_(t.to, s);
}

// Pieces with a common end meet elsewhere only where they go the same way from there.
void gx_Noding::sharedEnd_(const Piece& s, const End& own, const End& far, const Piece& t,
                           const End& other, const End& otherFar) {
  const bool sameVertex = own.vertex() != gx_EdgeSet::kNone && own.vertex() == other.vertex();
  if (!sameVertex) {
    ensureNode_(own);
    ensureNode_(other);
  }
  if (!gx_isFold(far.at, own.at, otherFar.at)) return;
  ensureNode_(own);
  if (gx_isBetween(otherFar.at, own.at, far.at)) {
    endOn_(otherFar, s);
  } else {
    endOn_(far, t);
  }
}

// The end lies on the piece.
void gx_Noding::endOn_(const End& end, const Piece& piece) {
  onPiece_(piece, end.at, false);
  ensureNode_(end);
}

void gx_Noding::onPiece_(const Piece& piece, const gxVector<2>& p, bool bends) {
  if (p == piece.from.at) {
    ensureNode_(piece.from);
  } else if (p == piece.to.at) {
    ensureNode_(piece.to);
  } else {
    steps_.met();
    added_.push_back({2 * piece.edge + 1, nodes_.add(p), bends ? round_ : 0});
  }
}

void gx_Noding::ensureNode_(const End& end) {
  if (!end.isNode()) mark_(end.vertex(), nodes_.add(end.at));
}
