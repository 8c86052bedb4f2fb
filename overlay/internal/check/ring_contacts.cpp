// The meetings of edges.
//
//  1. The edges are taken in runs of 8 along their rings; a tree over the boxes of all runs tells for each
//     run which others it may meet, and boxes of single edges settle most pairs that are left.
//  2. A pair is decided by the exact tests of edges (internal/predicates).
//  3. A vertex on a vertex would show up in four pairs and a vertex on an edge in two.  It is told by the
//     pair whose edges *end* there.  Whether the rings cross or touch at the point is told by the order of
//     the four directions around it; where two of them are the same, the edges overlap, and the pair
//     that does so tells.
//  4. Neighbours have a vertex in common and can only go back over each other.
#include <overlay/internal/check/ring_contacts.h>

#include <cntr/internal/index/box_tree.h>
#include <overlay/internal/crossing_point.h>
#include <overlay/internal/predicates.h>

#include <algorithm>
#include <array>
#include <string>
#include <tuple>

namespace {

using V = gxVector<2>;

constexpr std::size_t kRun = 8;

struct Run {
  std::size_t ring;
  std::size_t first;
  std::size_t end;
};

class Search {
 public:
  Search(const std::vector<gx_CheckedRing>& rings, std::size_t atMost, bool ringsMayTouch,
         const gxOverlayLimits& limits)
      : rings_(rings), atMost_(atMost), ringsMayTouch_(ringsMayTouch), limits_(limits) {}

  std::vector<gx_Contact> run(bool& cut) {
    std::vector<gx_Box> boxes;
    makeRuns_(boxes);
    const gx_BoxTree tree(boxes);
    for (std::size_t i = 0; i < runs_.size() && !full_; ++i) {
      tree.forEachMeeting(boxes[i], [&](std::size_t j) {
        if (j >= i && !full_) pairRuns_(i, j);
      });
    }
    cut = full_;
    const auto key = [](const gx_Contact& c) {
      return std::tuple(c.ring[0], c.ring[1], c.edge[0], c.edge[1], c.kind);
    };
    std::sort(found_.begin(), found_.end(),
              [&](const gx_Contact& a, const gx_Contact& b) { return key(a) < key(b); });
    return std::move(found_);
  }

 private:
  const V& from_(std::size_t ring, std::size_t edge) const { return rings_[ring].from(edge); }
  const V& to_(std::size_t ring, std::size_t edge) const { return rings_[ring].to(edge); }

  void makeRuns_(std::vector<gx_Box>& boxes) {
    for (std::size_t r = 0; r < rings_.size(); ++r) {
      if (!rings_[r].usable) continue;
      for (std::size_t first = 0; first < rings_[r].size(); first += kRun) {
        const std::size_t end = std::min(first + kRun, rings_[r].size());
        runs_.push_back({r, first, end});
        gx_Box box;
        box.add(from_(r, first));
        for (std::size_t e = first; e < end; ++e) box.add(to_(r, e));
        boxes.push_back(box);
      }
    }
  }

  void pairRuns_(std::size_t i, std::size_t j) {
    const Run& a = runs_[i];
    const Run& b = runs_[j];
    for (std::size_t e = a.first; e < a.end; ++e) {
      gx_Box box;
      box.add(from_(a.ring, e));
      box.add(to_(a.ring, e));
      for (std::size_t f = i == j ? e + 1 : b.first; f < b.end && !full_; ++f) {
        gx_Box other;
        other.add(from_(b.ring, f));
        other.add(to_(b.ring, f));
        if (box.meets(other)) pairEdges_(a.ring, e, b.ring, f);
      }
    }
    askToStop_((a.end - a.first) * (b.end - b.first));
  }

  void askToStop_(std::size_t pairs) {
    constexpr std::size_t kPairsBetween = 4096;
    sinceAsked_ += pairs;
    if (sinceAsked_ < kPairsBetween) return;
    sinceAsked_ = 0;
    if (limits_.stop && limits_.stop()) throw gxStopped(L"the check was stopped");
  }

  void pairEdges_(std::size_t r, std::size_t e, std::size_t s, std::size_t f) {
    if (r > s || (r == s && e > f)) {
      std::swap(r, s);
      std::swap(e, f);
    }
    if (r == s && rings_[r].after(e) == f) return neighbours_(r, e, f);
    if (r == s && rings_[r].after(f) == e) return neighbours_(r, f, e);
    const V& a = from_(r, e);
    const V& b = to_(r, e);
    const V& c = from_(s, f);
    const V& d = to_(s, f);
    const gx_EdgeMeeting meeting = gx_meetingOf(a, b, c, d);
    using M = gx_EdgeMeeting;
    if (meeting.kind == M::eCrossing) {
      add_({gx_Contact::Kind::eCrossing, {r, s}, {e, f}, gx_crossingPoint(a, b, c, d), V()});
    } else if (meeting.kind == M::eOverlap) {
      const V low = std::max(std::min(a, b, gx_before), std::min(c, d, gx_before), gx_before);
      const V high = std::min(std::max(a, b, gx_before), std::max(c, d, gx_before), gx_before);
      add_({gx_Contact::Kind::eOverlap, {r, s}, {e, f}, low, high});
    } else if (meeting.ends == M::eB || meeting.ends == (M::eB | M::eD)) {
      atPoint_(r, e, s, f, b);
    } else if (meeting.ends == M::eD) {
      atPoint_(r, e, s, f, d);
    }
  }

  void neighbours_(std::size_t r, std::size_t e, std::size_t next) {
    const V& v = to_(r, e);
    if (!gx_isFold(from_(r, e), v, to_(r, next))) return;
    add_({gx_Contact::Kind::eSpike, {r, r}, {std::min(e, next), std::max(e, next)}, v, V()});
  }

  // Two rings, or two stretches of one, at a point where one of the edges ends at least.
  void atPoint_(std::size_t r, std::size_t e, std::size_t s, std::size_t f, const V& v) {
    const std::array<V, 2> a = around_(r, e, v);
    const std::array<V, 2> b = around_(s, f, v);
    for (const V& p : a) {
      for (const V& q : b) {
        if (gx_sameDirection(v, p, q)) return;
      }
    }
    const bool folded = gx_sameDirection(v, a[0], a[1]) || gx_sameDirection(v, b[0], b[1]);
    const bool crosses = !folded && gx_between(v, b[0], b[1], a[0]) != gx_between(v, b[0], b[1], a[1]);
    add_({crosses ? gx_Contact::Kind::eCrossing : gx_Contact::Kind::eTouching, {r, s}, {e, f}, v, V()});
  }

  // The points before and after v, which ends the edge or lies within it.
  std::array<V, 2> around_(std::size_t ring, std::size_t edge, const V& v) const {
    const V& from = from_(ring, edge);
    const V& to = to_(ring, edge);
    return {from, to == v ? to_(ring, rings_[ring].after(edge)) : to};
  }

  void add_(const gx_Contact& contact) {
    if (found_.size() == limits_.maxMeetings) {
      throw gxLimitExceeded(L"the edges meet more than " + std::to_wstring(limits_.maxMeetings) +
                            L" times, which is the limit");
    }
    found_.push_back(contact);
    const bool harmless =
        contact.kind == gx_Contact::Kind::eTouching && contact.ring[0] != contact.ring[1];
    if (!harmless || !ringsMayTouch_) full_ = ++counted_ >= atMost_;
  }

  const std::vector<gx_CheckedRing>& rings_;
  std::size_t atMost_;
  bool ringsMayTouch_;
  const gxOverlayLimits& limits_;
  std::vector<Run> runs_;
  std::vector<gx_Contact> found_;
  std::size_t counted_ = 0;
  std::size_t sinceAsked_ = 0;
  bool full_ = false;
};

}  // namespace

std::vector<gx_Contact> gx_findContacts(const std::vector<gx_CheckedRing>& rings, std::size_t atMost,
                                        bool ringsMayTouch, const gxOverlayLimits& limits, bool& cut) {
  cut = atMost == 0;
  if (cut) return {};
  return Search(rings, atMost, ringsMayTouch, limits).run(cut);
}
