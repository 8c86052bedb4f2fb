// Self-intersection, regularization and outer hull of a set.
//
// A set intersects itself when an outline does, or when two outlines meet.
//
// Repair.  A set that does not intersect itself is copied as it is: its regions are shared, holes
// and all.  Otherwise:
//   1. Merge, in one pass over all pairs i < j of the working list.  Where region i meets the outline
//      of region j, the two are spliced into one, which takes slot i; the last region of the list
//      takes slot j, and the list gets shorter.
//   2. The pass goes on with j + 1.  The region that moved into slot j is not compared with the
//      merged one, nor are regions before j again: a chain of overlaps may stay in several pieces.
//      (Comparing again until nothing meets would be a union; this is one cheap pass, and callers
//      have its results on file.)
//   3. Regularize every region that is left, or take its outer hull, by itself.
//
// Which pairs are looked at.  Outlines can only meet where the box of one touches the box of the other:
// that is the first thing their crossing asks.  So of many regions only those come up, in their order,
// whose boxes touch, found in a tree over the boxes (internal/index/box_tree); the others would answer
// that they do not meet.  Where a merged region's box has grown, only those come up besides that touch
// what has come to it.  A region of too few points meets all, so that asking it fails as it would.  A region
// that knows about its edges knows its box: of many small ones, reading all points would be most of the work.
//
// Of many regions the merged one is kept in a tree of edges while the pass goes on (internal/repair/
// spliced_outline), and becomes a region at its end: a region for every merge costs the square.  Where a
// coordinate is not finite, boxes do not tell, and regions are made.
//
// Whether a set intersects itself, one yes decides.  What is known already is asked first, then the pairs,
// which are cheap, then the outlines; only pairs can fail, and are asked whatever is known where one will.
//
// The result is remembered; the flag is set only after the computation returned, and the assignment
// holds a handle of its own to the result, because the target may be this set.
#include <cntr/internal/index/box_tree.h>
#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/memory/computation_count.h>
#include <cntr/internal/memory/repaired.h>
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/repair/spliced_outline.h>
#include <cntr/internal/search/crossing.h>
#include <cntr/internal/search/edge_pairs.h>
#include <cntr/regionst.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <queue>
#include <utility>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;

bool isFinite(const Handle& region) {
  return std::all_of(region->points().begin(), region->points().end(), [](const gxVector<2>& point) {
    return std::isfinite(point.x()) && std::isfinite(point.y());
  });
}

// The box of the region's points, from the index of its edges where that knows it: a coordinate that is NaN is passed
// over.
gx_Box boxOf(const gxRegion& region, const gx_EdgeIndex* edges) {
  return edges != nullptr && !edges->hasNaN() ? edges->bounds() : gx_Box::ofPoints(region.points());
}

// Tells, for slot i = 0, 1, 2 … of a list of regions, which of those after it may meet the one that
// stands there, while merging moves regions about.  A slot above i always holds one of the regions
// that the list began with.
class Neighbours {
 public:
  // `indexOf(region)` gives the index of the region's edges, null where it has none yet.
  template <class IndexOf>
  Neighbours(const std::vector<Handle>& regions, const IndexOf& indexOf) : regions_(regions) {
    if (regions.size() <= gx_kFewRegions || std::any_of(regions.begin(), regions.end(), isNull)) return;
    for (std::size_t k = 0; k < regions.size(); ++k) {
      slots_.push_back(k);
      ids_.push_back(k);
      boxes_.push_back(boxOf(*regions[k], indexOf(*regions[k])));
    }
    seen_.assign(regions.size(), 0);
    tree_.emplace(boxes_);
  }

  // Tells whether boxes tell which regions may meet.
  bool hasTree() const { return tree_.has_value(); }

  // Begins with those after slot `after` that may meet the region in slot i.
  void begin(std::size_t i, std::size_t after) {
    ++pass_;
    at_ = after;
    waiting_ = {};
    isAll_ = !tree_ || regions_[i]->points().size() < 2;  // of too few points the first fails
    if (!isAll_) addMeeting(boxes_[ids_[i]]);
  }

  // The region in slot i has become another one.
  void replaced(std::size_t i) {
    if (tree_) boxes_[ids_[i]] = gx_Box::ofPoints(regions_[i]->points());
  }

  // The box of the region that stands in the slot of this pass has grown.
  void grown(const gx_Box& before, const gx_Box& now) {
    if (now.lowX < before.lowX) addMeeting({now.lowX, now.lowY, before.lowX, now.highY});
    if (now.highX > before.highX) addMeeting({before.highX, now.lowY, now.highX, now.highY});
    if (now.lowY < before.lowY) addMeeting({now.lowX, now.lowY, now.highX, before.lowY});
    if (now.highY > before.highY) addMeeting({now.lowX, before.highY, now.highX, now.highY});
  }

  // Gives the next slot; false when there is none.
  bool next(std::size_t& slot) {
    if (isAll_) {
      if (at_ + 1 >= regions_.size()) return false;
      slot = ++at_;
      return true;
    }
    for (; !waiting_.empty(); waiting_.pop()) {
      if (waiting_.top() <= at_ || waiting_.top() >= regions_.size()) continue;
      slot = at_ = waiting_.top();
      return true;
    }
    return false;
  }

  // The region in slot j is gone, and the last of the list took its place.
  void lastMovedTo(std::size_t j) {
    if (!tree_) return;
    slots_[ids_[j]] = kGone;
    const std::size_t last = ids_.back();
    ids_.pop_back();
    if (j == ids_.size()) return;
    ids_[j] = last;
    slots_[last] = j;
  }

 private:
  static constexpr std::size_t kGone = static_cast<std::size_t>(-1);

  static bool isNull(const Handle& region) { return region.isNull(); }

  void addMeeting(const gx_Box& box) {
    tree_->forEachMeeting(box, [this](std::size_t id) {
      if (seen_[id] == pass_ || slots_[id] == kGone || slots_[id] <= at_) return;
      seen_[id] = pass_;
      waiting_.push(slots_[id]);
    });
  }

  const std::vector<Handle>& regions_;
  std::vector<std::size_t> slots_;  // by the region's first slot: where it stands now
  std::vector<std::size_t> ids_;    // by slot: the first slot of the region that stands there
  std::vector<gx_Box> boxes_;       // by the first slot
  std::vector<std::size_t> seen_;   // by the first slot: in which pass it was last put on the list
  std::optional<gx_BoxTree> tree_;  // over the regions that the list began with
  std::size_t pass_ = 0;
  std::size_t at_ = 0;  // the slot that was given last
  bool isAll_ = false;  // all slots are given
  std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>> waiting_;
};

bool meet(const gx_SplicedOutline& merged, const gxRegion& other, gxBudget& budget) {
  const gx_Outline edges{other.points(), true};
  for (std::size_t k = 0; k < edges.edges(); ++k) {
    if (merged.isHit(gx_CrossingQuery(edges.from(k), edges.to(k), true), budget)) return true;
  }
  return false;
}

}  // namespace

bool gxRegionSet::isSelfIntersecting() const {
  gxBudget unlimited;
  return isSelfIntersecting(unlimited);
}

bool gxRegionSet::isSelfIntersecting(gxBudget& budget) const {
  if (state_.regions.empty()) return false;
  bool crosses = false;
  if (state_.memory.selfIntersecting.get(crosses)) return crosses;
  gx_countComputation(gx_Computation::eSetSelfIntersection);
  crosses = computeSelfIntersecting_(budget);
  if (state_.memory.selfIntersecting.setFirst(crosses)) mutating_();
  return crosses;
}

bool gxRegionSet::computeSelfIntersecting_(gxBudget& budget) const {
  const std::vector<RegionHandle>& regions = state_.regions;
  bool isKnown = false;
  bool mayFail = false;
  for (std::size_t i = 0; i < regions.size(); ++i) {
    const gxRegion& region = *regions[i];  // a null handle fails whatever the others are
    isKnown = isKnown || region.isKnownToCrossItself_();
    mayFail = mayFail || (i + 1 < regions.size() && region.points().size() < 2);
  }
  if (isKnown && !mayFail) return true;
  Neighbours neighbours(regions, [](const gxRegion& region) { return region.edgeIndexIfMade_(); });
  for (std::size_t i = 0; i + 1 < regions.size(); ++i) {
    neighbours.begin(i, i);
    for (std::size_t j = 0; neighbours.next(j);) {
      budget.spend();
      if (regions[i]->meets_(*regions[j], budget)) return true;
    }
  }
  return std::any_of(regions.begin(), regions.end(), [&budget](const RegionHandle& region) {
    return region->isSelfIntersecting(budget);
  });
}

void gxRegionSet::regularize(gxRegionSet& result) const {
  gxBudget unlimited;
  regularize(result, unlimited);
}

void gxRegionSet::regularize(gxRegionSet& result, gxBudget& budget) const {
  repairOnce_(result, false, budget);
}

void gxRegionSet::outerHull(gxRegionSet& result) const {
  gxBudget unlimited;
  outerHull(result, unlimited);
}

void gxRegionSet::outerHull(gxRegionSet& result, gxBudget& budget) const {
  repairOnce_(result, true, budget);
}

void gxRegionSet::repairOnce_(gxRegionSet& result, bool hull, gxBudget& budget) const {
  if (!isSelfIntersecting(budget)) {
    result = *this;
    return;
  }
  const gx_RegionSetMemory& memory = state_.memory;
  gx_assignRepaired(
      hull ? memory.outerHullSet : memory.regularizedSet,
      hull ? gx_Computation::eSetOuterHull : gx_Computation::eSetRegularize,
      [&](gxRegionSet& form) { repair_(form, hull, budget); }, [this] { mutating_(); }, result);
}

void gxRegionSet::outerHullRegularize(gxRegionSet& result, bool hull) const {
  gxBudget unlimited;
  repair_(result, hull, unlimited);
}

void gxRegionSet::repair_(gxRegionSet& result, bool hull, gxBudget& budget) const {
  checkEmptyRegionSet();
  std::vector<RegionHandle> work = state_.regions;
  mergeWhereTheyMeet_(work, budget);
  for (RegionHandle& region : work) {
    const gxPtrHandle<gxRegion> repaired(new gxRegion);
    if (hull) {
      region->outerHull(*repaired, budget);
    } else {
      region->regularize(*repaired, budget);
    }
    region = repaired;
  }
  result = gxRegionSet(work);
}

void gxRegionSet::mergeWhereTheyMeet_(std::vector<RegionHandle>& work, gxBudget& budget) {
  Neighbours neighbours(work, [](const gxRegion& region) { return region.edgeIndexIfMade_(); });
  if (!neighbours.hasTree() || !std::all_of(work.begin(), work.end(), isFinite)) {
    mergeOneByOne_(work, budget);
    return;
  }
  for (std::size_t i = 0; i + 1 < work.size(); ++i) {
    neighbours.begin(i, i);
    std::optional<gx_SplicedOutline> merged;
    for (std::size_t j = 0; neighbours.next(j);) {
      budget.spend();
      const RegionHandle other = work[j];
      const bool doMeet = merged ? meet(*merged, *other, budget) : work[i]->meets_(*other, budget);
      if (!doMeet) continue;
      if (!merged) merged.emplace(work[i]->points());
      const gx_Box before = merged->box();
      const auto firstMeeting = [&other](const gxVector<2>& from, const gxVector<2>& to) {
        gx_SplicedOutline::Meeting meeting{};
        const bool isThere = other->firstMeeting_(gxLineSeg(from, to), meeting.place, meeting.edge);
        return isThere ? std::optional(meeting) : std::nullopt;
      };
      if (!merged->splice(other->points(), firstMeeting, budget)) {
        throw gxContourDefs::BadParams(L"spliced regions do not intersect");
      }
      neighbours.grown(before, merged->box());
      work[j] = work.back();
      work.pop_back();
      neighbours.lastMovedTo(j);
    }
    if (merged) work[i] = gxPtrHandle<gxRegion>(new gxRegion(merged->points()));
  }
}

void gxRegionSet::mergeOneByOne_(std::vector<RegionHandle>& work, gxBudget& budget) {
  Neighbours neighbours(work, [](const gxRegion& region) { return region.edgeIndexIfMade_(); });
  for (std::size_t i = 0; i + 1 < work.size(); ++i) {
    neighbours.begin(i, i);
    for (std::size_t j = 0; neighbours.next(j);) {
      budget.spend();
      if (!work[i]->meets_(*work[j], budget)) continue;
      const gxPtrHandle<gxRegion> merged(new gxRegion);
      work[i]->splice(*work[j], *merged);
      work[i] = merged;
      neighbours.replaced(i);
      work[j] = work.back();
      work.pop_back();
      neighbours.lastMovedTo(j);
      neighbours.begin(i, j);  // the merged region has another box, and the pass goes on after j
    }
  }
}
