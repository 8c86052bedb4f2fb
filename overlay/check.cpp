// The report of everything that is wrong.
//
//  1. Ring by ring: points that are not finite, points that repeat the one before, fewer than three
//     different ones, all on one line.  What is left of a ring without repeated points is usable or not.
//  2. All contacts of edges of usable rings, exactly (internal/check/ring_contacts).  Nothing is constructed
//     but the place of a crossing that is shown.
//  3. Rings of one region that touch in single points: with the points as nodes they make a graph, and an
//     interior is in parts exactly where there is a way around in it.  The contact that closes one is told.
//  4. Direction, of rings that meet neither themselves nor others in more than points.
//  5. Nesting, of rings that do not cross or overlap: a hole in its outline, no hole in another one.  A
//     region inside others lies in the solid of one exactly when an odd number of its rings go around it.
//
// Tried and dropped: to label the faces of the drawing for step 5.  It needs the whole arrangement, where
// a point on each ring and a tree over the boxes of the rings do.
#include <overlay/check.h>
#include <overlay/internal/check/checked_rings.h>
#include <overlay/internal/check/problem_text.h>
#include <overlay/internal/check/ring_contacts.h>
#include <overlay/shapes.h>

#include <cntr/internal/index/box_tree.h>
#include <overlay/internal/predicates.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <numeric>
#include <set>

namespace {

using V = gxVector<2>;
using Kind = gxProblemKind;

bool finite(const V& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

class Check {
 public:
  Check(const std::vector<gx_ShapeRing>& rings, bool ofSet, const gxCheckOptions& options,
        const gxOverlayLimits& limits)
      : ofSet_(ofSet), options_(options), limits_(limits) {
    for (const gx_ShapeRing& ring : rings) static_cast<gx_ShapeRing&>(rings_.emplace_back()) = ring;
  }

  std::vector<gxProblem> run() {
    for (gx_CheckedRing& ring : rings_) takePoints_(ring);
    bool cut = full_();
    if (!cut) contacts_ = gx_findContacts(rings_, room_(), options_.ringsMayTouch, limits_, cut);
    tellContacts_();
    if (cut) return std::move(problems_);
    if (options_.ringsMayTouch) tellPartings_();
    if (!options_.anyDirection) tellDirections_();
    tellNesting_();
    return std::move(problems_);
  }

 private:
  bool full_() const { return problems_.size() >= options_.atMost; }
  std::size_t room_() const { return options_.atMost - problems_.size(); }

  void tell_(gxProblem problem, const V& end = V(), int direction = 0) {
    if (full_()) return;
    problem.sentence = gx_sentenceOf(problem, {end, direction, ofSet_});
    problems_.push_back(std::move(problem));
  }
  void tellRing_(Kind kind, const gx_CheckedRing& ring, const V& place, long edge, int direction = 0) {
    tell_({kind, place, {edge, edge}, {ring.number, ring.number}, {ring.region, ring.region}, {}}, V(),
          direction);
  }
  void tellRings_(Kind kind, const gx_CheckedRing& ring, const gx_CheckedRing& other) {
    tell_(
        {kind, ring.points[0], {-1, -1}, {ring.number, other.number}, {ring.region, other.region}, {}});
  }

  // ---- Step 1 -------------------------------------------------------------------------------------

  void takePoints_(gx_CheckedRing& ring) {
    const std::vector<V>& given = *ring.source;
    bool allFinite = true;
    for (std::size_t i = 0; i < given.size(); ++i) {
      if (finite(given[i])) continue;
      allFinite = false;
      tellRing_(Kind::eNotFinite, ring, given[i], static_cast<long>(i));
    }
    if (!allFinite) return;
    dropRepeated_(ring);
    if (ring.size() < 3 && distinct_(ring) < 3) {
      tellRing_(Kind::eTooFewPoints, ring, given.empty() ? V() : given[0], -1);
    } else if (onOneLine_(ring)) {
      tellRing_(distinct_(ring) < 3 ? Kind::eTooFewPoints : Kind::eZeroArea, ring, ring.points[0], -1);
    } else {
      ring.usable = true;
    }
  }

  void dropRepeated_(gx_CheckedRing& ring) {
    const std::vector<V>& given = *ring.source;
    const std::size_t n = given.size();
    for (std::size_t i = 0; i < n; ++i) {
      if (n > 1 && given[i] == given[i == 0 ? n - 1 : i - 1]) {
        tellRing_(Kind::eRepeatedPoint, ring, given[i], static_cast<long>(i));
      } else {
        ring.points.push_back(given[i]);
        ring.original.push_back(i);
        ring.box.add(given[i]);
      }
    }
  }

  // Counted up to three.
  static int distinct_(const gx_CheckedRing& ring) {
    if (ring.points.empty()) return ring.source->empty() ? 0 : 1;
    const V& first = ring.points[0];
    const V* second = nullptr;
    for (const V& p : ring.points) {
      if (p == first || (second != nullptr && p == *second)) continue;
      if (second != nullptr) return 3;
      second = &p;
    }
    return second == nullptr ? 1 : 2;
  }

  static bool onOneLine_(const gx_CheckedRing& ring) {
    return std::all_of(ring.points.begin(), ring.points.end(), [&](const V& p) {
      return gx_Orientation(ring.points[0], ring.points[1], p) == 0;
    });
  }

  // ---- Step 2 -------------------------------------------------------------------------------------

  void tellContacts_() {
    for (const gx_Contact& c : contacts_) {
      const bool oneRing = c.ring[0] == c.ring[1];
      if (c.kind == gx_Contact::Kind::eTouching && !oneRing && options_.ringsMayTouch) continue;
      tellContact_(c);
    }
    for (const gx_Contact& c : contacts_) {
      if (c.kind == gx_Contact::Kind::eTouching && c.ring[0] != c.ring[1]) continue;
      meeting_.emplace(c.ring[0], c.ring[1]);
    }
  }

  void tellContact_(const gx_Contact& c) {
    const gx_CheckedRing& a = rings_[c.ring[0]];
    const gx_CheckedRing& b = rings_[c.ring[1]];
    tell_({kindOf_(c),
           c.point,
           {static_cast<long>(a.original[c.edge[0]]), static_cast<long>(b.original[c.edge[1]])},
           {a.number, b.number},
           {a.region, b.region},
           {}},
          c.end);
  }

  Kind kindOf_(const gx_Contact& c) const {
    switch (c.kind) {
      case gx_Contact::Kind::eSpike: return Kind::eSpike;
      case gx_Contact::Kind::eTouching: return Kind::eTouching;
      case gx_Contact::Kind::eOverlap: return Kind::eOverlap;
      case gx_Contact::Kind::eCrossing: break;
    }
    const gx_CheckedRing& a = rings_[c.ring[0]];
    const gx_CheckedRing& b = rings_[c.ring[1]];
    const bool siblings = &a != &b && a.owner == b.owner && a.owner != gx_ShapeRing::kNone;
    return siblings ? Kind::eHoleCrossesHole : Kind::eCrossing;
  }

  // ---- Step 3 -------------------------------------------------------------------------------------

  // The region, outline or island, whose solid a ring borders.
  std::size_t solidOf_(std::size_t ring) const {
    return rings_[ring].level % 2 == 0 ? ring : rings_[ring].owner;
  }

  std::size_t rootOf_(std::size_t i) {
    while (root_[i] != i) i = root_[i] = root_[root_[i]];
    return i;
  }

  void tellPartings_() {
    std::vector<const gx_Contact*> touching;
    for (const gx_Contact& c : contacts_) {
      const bool oneSolid = solidOf_(c.ring[0]) == solidOf_(c.ring[1]);
      if (c.kind == gx_Contact::Kind::eTouching && c.ring[0] != c.ring[1] && oneSolid)
        touching.push_back(&c);
    }
    const auto before = [](const gx_Contact* a, const gx_Contact* b) {
      return gx_before(a->point, b->point);
    };
    std::stable_sort(touching.begin(), touching.end(), before);
    root_.resize(rings_.size());
    std::iota(root_.begin(), root_.end(), std::size_t{0});
    for (std::size_t i = 0; i < touching.size();) {
      std::size_t end = i + 1;
      while (end < touching.size() && touching[end]->point == touching[i]->point) ++end;
      joinAtPoint_(touching, i, end);
      i = end;
    }
  }

  // All contacts at one point: rings that two of them name are joined once.
  void joinAtPoint_(const std::vector<const gx_Contact*>& touching, std::size_t first, std::size_t end) {
    std::map<std::size_t, std::size_t> here;
    const auto find = [&](std::size_t ring) {
      auto place = here.try_emplace(ring, ring).first;
      while (place->second != place->first) place = here.find(place->second);
      return place->first;
    };
    for (std::size_t i = first; i < end; ++i) {
      const gx_Contact& c = *touching[i];
      const std::size_t a = find(c.ring[0]);
      const std::size_t b = find(c.ring[1]);
      if (a == b) continue;
      here[a] = b;
      const std::size_t rootA = rootOf_(c.ring[0]);
      const std::size_t rootB = rootOf_(c.ring[1]);
      if (rootA == rootB) tellContact_(c);
      root_[rootA] = rootB;
    }
  }

  // ---- Step 4 -------------------------------------------------------------------------------------

  bool meetsItself_(std::size_t ring) const { return meeting_.count({ring, ring}) != 0; }

  void tellDirections_() {
    for (std::size_t r = 0; r < rings_.size(); ++r) {
      const gx_CheckedRing& ring = rings_[r];
      if (!ring.usable || meetsItself_(r)) continue;
      const int direction = gx_directionOfRing(ring);
      const int wanted = ring.level % 2 == 0 ? 1 : -1;
      if (direction != wanted) tellRing_(Kind::eWrongWayRound, ring, ring.points[0], -1, direction);
    }
  }

  // ---- Step 5 -------------------------------------------------------------------------------------

  bool settled_(std::size_t a, std::size_t b) const {
    return meeting_.count({std::min(a, b), std::max(a, b)}) != 0;
  }

  bool holds_(std::size_t outer, std::size_t inner) {
    auto& sides = sides_[outer];
    if (!sides) sides = std::make_unique<gx_RingSides>(rings_[outer]);
    return sides->holds(rings_[inner]);
  }

  void tellNesting_() {
    sides_.resize(rings_.size());
    std::vector<gx_Box> boxes;
    for (const gx_CheckedRing& ring : rings_) boxes.push_back(ring.usable ? ring.box : gx_Box{});
    const gx_BoxTree tree(boxes);
    for (std::size_t r = 0; r < rings_.size() && !full_(); ++r) {
      if (!rings_[r].usable) continue;
      tellOwner_(r);
      tellContainers_(r, tree);
      askToStop_();
    }
  }

  void askToStop_() const {
    if (limits_.stop && limits_.stop()) throw gxStopped(L"the check was stopped");
  }

  void tellOwner_(std::size_t r) {
    const std::size_t owner = rings_[r].owner;
    if (owner == gx_ShapeRing::kNone || !rings_[owner].usable || settled_(r, owner)) return;
    if (!holds_(owner, r)) tellRings_(Kind::eHoleOutside, rings_[r], rings_[owner]);
  }

  // Tells the rings around this one that ought not to be: another hole of its owner; for an outline, a region
  // whose rings go around it an odd number of times.
  void tellContainers_(std::size_t r, const gx_BoxTree& tree) {
    std::vector<std::size_t> around;
    const gx_Box& box = rings_[r].box;
    tree.forEachMeeting({box.lowX, box.lowY, box.lowX, box.lowY}, [&](std::size_t other) {
      const gx_Box& o = rings_[other].box;
      const bool asked = rings_[r].level == 0 ? rings_[other].region != rings_[r].region
                                              : rings_[other].owner == rings_[r].owner && other != r;
      if (asked && o.highX >= box.highX && o.highY >= box.highY && !settled_(r, other)) {
        around.push_back(other);
      }
    });
    std::sort(around.begin(), around.end());
    std::map<long, std::vector<std::size_t>> byRegion;
    for (const std::size_t other : around) {
      if (holds_(other, r)) byRegion[rings_[other].region].push_back(other);
    }
    for (const auto& [region, holders] : byRegion) {
      if (rings_[r].level != 0) {
        for (const std::size_t other : holders)
          tellRings_(Kind::eNestedWrongly, rings_[r], rings_[other]);
      } else if (holders.size() % 2 != 0) {
        tellRings_(Kind::eNestedWrongly, rings_[r], rings_[holders.front()]);
      }
    }
  }

  std::vector<gx_CheckedRing> rings_;
  bool ofSet_;
  const gxCheckOptions& options_;
  const gxOverlayLimits& limits_;
  std::vector<gxProblem> problems_;
  std::vector<gx_Contact> contacts_;
  std::set<std::pair<std::size_t, std::size_t>> meeting_;  // rings that meet in more than points
  std::vector<std::size_t> root_;
  std::vector<std::unique_ptr<gx_RingSides>> sides_;
};

}  // namespace

std::vector<gxProblem> gfCheck(const gxRegion& region, const gxCheckOptions& options,
                               const gxOverlayLimits& limits) {
  return Check(gx_ringsOf({&region}), false, options, limits).run();
}

std::vector<gxProblem> gfCheck(const gxRegionSet& set, const gxCheckOptions& options,
                               const gxOverlayLimits& limits) {
  return Check(gx_ringsOf(gxShapes(set).regions()), true, options, limits).run();
}
