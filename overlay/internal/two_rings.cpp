// Two rings, each as it is, valid or not.
//
//  1. Boxes around runs of 8 edges of each ring, and around 8 of these and so on; the points stay where they
//     are.
//  2. The boxes of both are searched for edges that cross.  Where an edge of A crosses an edge of B within
//     both, and no other edge of either passes through that point, both change sides there: around the
//     point lie both, A alone, B alone and neither, whatever the rings do elsewhere.
//  3. Rings without a common point: each lies in one face of the other, so one vertex tells by the edges that
//     a ray to the left crosses.  A ring holds area where its first vertex by x, then y, is passed once, and
//     not straight: the angle there is solid.
//  4. Everything else (common vertices and stretches, crossings that may lie on a third edge) is left to the
//     search that knows about validity (relation.cpp).  It takes some eight times as long, as it holds the
//     edges of each ring against those of the same ring too.
#include <overlay/internal/predicates.h>
#include <overlay/internal/ring_boxes.h>
#include <overlay/internal/two_rings.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace {

using V = gxVector<2>;
using Ring = gx_RingBoxes;

// After so many crossings that may lie on a third edge the search is given up.
constexpr int kMostInVain = 256;

class Search {
 public:
  Search(const Ring& a, const Ring& b, const gxOverlayLimits& limits) : a_(a), b_(b), limits_(limits) {}

  enum Found : unsigned char { eNothing, eCrossing, eMore };

  Found run() {
    among_(a_.top(), 0, b_.top(), 0);
    return crosses_ ? eCrossing : inVain_ == 0 && touching_ == 0 ? eNothing : eMore;
  }

 private:
  // Return true when the search is over.
  bool among_(std::size_t levelA, std::size_t i, std::size_t levelB, std::size_t j) {
    if (!gx_boxesMeet(a_.box(levelA, i), b_.box(levelB, j))) return false;
    if (levelA == 0 && levelB == 0) return edges_(i, j);
    if (levelA >= levelB) {
      for (std::size_t k = a_.below(i); k < a_.behind(levelA, i); ++k) {
        if (among_(levelA - 1, k, levelB, j)) return true;
      }
      return false;
    }
    for (std::size_t k = b_.below(j); k < b_.behind(levelB, j); ++k) {
      if (among_(levelA, i, levelB - 1, k)) return true;
    }
    return false;
  }

  bool edges_(std::size_t i, std::size_t j) {
    tick_();
    std::array<std::size_t, Ring::kFan> those{};
    std::array<gx_Box, Ring::kFan> boxes;
    std::size_t count = 0;
    for (std::size_t q = b_.below(j); q < b_.behind(0, j); ++q) {
      those[count] = q;
      boxes[count] = b_.boxOf(q);
      count += gx_boxesMeet(boxes[count], a_.box(0, i)) ? 1U : 0U;
    }
    for (std::size_t p = a_.below(i); count != 0 && p < a_.behind(0, i); ++p) {
      const gx_Box box = a_.boxOf(p);
      if (!gx_boxesMeet(box, b_.box(0, j))) continue;
      for (std::size_t c = 0; c < count; ++c) {
        if (gx_boxesMeet(box, boxes[c]) && pair_(p, those[c])) return true;
      }
    }
    return false;
  }

  // Touching edges tell nothing.  Where there are more of them than the limit allows to keep, the search that
  // keeps them is to say so.
  bool pair_(std::size_t p, std::size_t q) {
    const auto kind = gx_meetingOf(a_.from(p), a_.to(p), b_.from(q), b_.to(q)).kind;
    if (kind == gx_EdgeMeeting::eApart) return false;
    if (kind != gx_EdgeMeeting::eCrossing) return ++touching_ > limits_.maxMeetings;
    crosses_ = isAlone_(p, q);
    return crosses_ || ++inVain_ >= kMostInVain;
  }

  // Tells whether no other edge passes the crossing of edges p and q: one that did would meet both of them
  // inside.
  bool isAlone_(std::size_t p, std::size_t q) const {
    const gx_Box one = a_.boxOf(p);
    const gx_Box two = b_.boxOf(q);
    const gx_Box around{std::max(one.lowX, two.lowX), std::max(one.lowY, two.lowY),
                        std::min(one.highX, two.highX), std::min(one.highY, two.highY)};
    const auto passes = [&](const Ring& ring, std::size_t own) {
      return ring.search(around, [&](std::size_t edge) {
        return edge != own && meetsInside_(ring, edge, a_, p) && meetsInside_(ring, edge, b_, q);
      });
    };
    return !passes(a_, p) && !passes(b_, q);
  }

  // Tells whether an edge meets another one elsewhere than in an end of that.
  static bool meetsInside_(const Ring& r, std::size_t edge, const Ring& s, std::size_t other) {
    const V& a = r.from(edge);
    const V& b = r.to(edge);
    const V& c = s.from(other);
    const V& d = s.to(other);
    // Edges that share an end, as neighbours do, meet elsewhere on one line only.
    if (a == c || a == d) return gx_Orientation(c, d, b) == 0;
    if (b == c || b == d) return gx_Orientation(c, d, a) == 0;
    const gx_EdgeMeeting m = gx_meetingOf(a, b, c, d);
    const bool atItsEnd = (m.ends & (gx_EdgeMeeting::eC | gx_EdgeMeeting::eD)) != 0;
    return m.kind != gx_EdgeMeeting::eApart && !(m.kind == gx_EdgeMeeting::eTouching && atItsEnd);
  }

  void tick_() {
    constexpr std::size_t kRunsBetween = 4096 / Ring::kFan;
    if (++runs_ % kRunsBetween == 0 && limits_.stop && limits_.stop())
      throw gxStopped(L"the comparison was stopped");
  }

  const Ring& a_;
  const Ring& b_;
  const gxOverlayLimits& limits_;
  std::size_t runs_ = 0;
  std::size_t touching_ = 0;
  int inVain_ = 0;
  bool crosses_ = false;
};

// Tells whether the ring is seen to hold area at its first vertex.
bool isSolidAt(const Ring& ring, std::size_t first) {
  std::size_t times = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) times += ring.from(i) == ring.from(first) ? 1U : 0U;
  const V& before = ring.from(first == 0 ? ring.size() - 1 : first - 1);
  return times == 1 && gx_Orientation(before, ring.from(first), ring.to(first)) != 0;
}

// Tells whether a point that lies on no edge is inside, by the edges left of it.
bool holds(const Ring& ring, const V& p) {
  bool odd = false;
  ring.search({-std::numeric_limits<double>::infinity(), p.y(), p.x(), p.y()}, [&](std::size_t edge) {
    const V& a = ring.from(edge);
    const V& b = ring.to(edge);
    if ((a.y() <= p.y()) != (b.y() <= p.y())) odd ^= (a.y() <= p.y()) == (gx_Orientation(a, b, p) < 0);
    return false;
  });
  return odd;
}

// Of rings without a common point.
std::optional<gx_Relation> apart(const Ring& a, const Ring& b) {
  const std::size_t firstOfA = a.first();
  const std::size_t firstOfB = b.first();
  if (!isSolidAt(a, firstOfA) || !isSolidAt(b, firstOfB)) return std::nullopt;
  gx_Relation relation;
  const bool firstInside = holds(b, a.from(firstOfA));
  const bool secondInside = holds(a, b.from(firstOfB));
  relation.interiorsMeet = firstInside || secondInside;
  relation.firstBeyond = !firstInside;
  relation.secondBeyond = !secondInside;
  return relation;
}

}  // namespace

std::optional<gx_Relation> gx_relateTwoRings(const std::vector<V>& a, const std::vector<V>& b,
                                             const gxOverlayLimits& limits) {
  if (a.size() < 3 || b.size() < 3) return std::nullopt;
  const Ring first(a);
  const Ring second(b);
  if (!first.isFinite() || !second.isFinite()) return std::nullopt;
  switch (Search(first, second, limits).run()) {
    case Search::eCrossing: return gx_Relation{true, true, true, true, {false, false}};
    case Search::eNothing: return apart(first, second);
    case Search::eMore: break;
  }
  return std::nullopt;
}
