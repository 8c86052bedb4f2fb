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
// that they do not meet.  A region of too few points meets all, so that asking it fails as it would.
//
// The result is remembered; the flag is set only after the computation returned, and the assignment
// holds a handle of its own to the result, because the target may be this set.
#include <cntr/internal/index/box_tree.h>
#include <cntr/internal/memory/probe.h>
#include <cntr/regionst.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;

// From so many regions on, the tree pays.
constexpr std::size_t kTreePays = 16;

gx_Box boxOf(const gxRegion& region) {
  gx_Box box;
  for (const gxVector<2>& point : region.points()) box.add(point);
  return box;
}

// Tells, for slot i = 0, 1, 2 … of a list of regions, which of those after it may meet the one that
// stands there, while merging moves regions about.  A slot above i always holds one of the regions
// that the list began with.
class Neighbours {
 public:
  explicit Neighbours(const std::vector<Handle>& regions) : regions_(regions) {
    if (regions.size() < kTreePays || std::any_of(regions.begin(), regions.end(), isNull)) return;
    for (std::size_t k = 0; k < regions.size(); ++k) {
      slots_.push_back(k);
      ids_.push_back(k);
      boxes_.push_back(boxOf(*regions[k]));
    }
    tree_.emplace(boxes_);
  }

  // Begins with those after slot `after` that may meet the region in slot i.
  void begin(std::size_t i, std::size_t after) {
    found_.clear();
    next_ = 0;
    if (!tree_ || regions_[i]->points().size() < 2) {  // all; of too few points the first fails
      for (std::size_t j = after + 1; j < regions_.size(); ++j) found_.push_back(j);
      return;
    }
    tree_->forEachMeeting(boxes_[ids_[i]], [&](std::size_t id) {
      if (slots_[id] != kGone && slots_[id] > after) found_.push_back(slots_[id]);
    });
    std::sort(found_.begin(), found_.end());
  }

  // The region in slot i has become another one.
  void replaced(std::size_t i) {
    if (tree_) boxes_[ids_[i]] = boxOf(*regions_[i]);
  }

  // Gives the next slot; false when there is none.
  bool next(std::size_t& slot) {
    if (next_ == found_.size()) return false;
    slot = found_[next_++];
    return true;
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

  const std::vector<Handle>& regions_;
  std::vector<std::size_t> slots_;  // by the region's first slot: where it stands now
  std::vector<std::size_t> ids_;    // by slot: the first slot of the region that stands there
  std::vector<gx_Box> boxes_;       // by the first slot
  std::optional<gx_BoxTree> tree_;  // over the regions that the list began with
  std::vector<std::size_t> found_;
  std::size_t next_ = 0;
};

}  // namespace

bool gxRegionSet::isSelfIntersecting() const {
  if (state_.regions.empty()) return false;
  bool crosses = false;
  if (state_.memory.selfIntersecting.get(crosses)) return crosses;
  gx_countComputation(gx_Computation::eSetSelfIntersection);
  crosses = computeSelfIntersecting_();
  if (state_.memory.selfIntersecting.set(crosses)) mutating_();
  return crosses;
}

// Every outline is asked about itself, also after one said yes; the pairs only up to the first that
// meets.
bool gxRegionSet::computeSelfIntersecting_() const {
  const std::vector<RegionHandle>& regions = state_.regions;
  bool crossing = false;
  for (const RegionHandle& region : regions) {
    if (region->isSelfIntersecting()) crossing = true;
  }
  Neighbours neighbours(regions);
  for (std::size_t i = 0; i + 1 < regions.size(); ++i) {
    neighbours.begin(i, i);
    for (std::size_t j = 0; neighbours.next(j);) {
      const gxContour& other = *regions[j];
      if (!regions[i]->gxContour::intersections(other).empty()) return true;
    }
  }
  return crossing;
}

void gxRegionSet::regularize(gxRegionSet& result) const {
  if (!isSelfIntersecting()) {
    result = *this;
    return;
  }
  gxPtrHandle_const<gxRegionSet> known;  // of our own, because `result` may own or be this one
  if (const auto* published = state_.memory.regularizedSet.get()) {
    known = *published;
  } else {
    gx_countComputation(gx_Computation::eSetRegularize);
    const auto made = gfMakeHandle<gxRegionSet>();
    outerHullRegularize(*made, false);
    if (state_.memory.regularizedSet.publish(made)) mutating_();
    known = made;
  }
  result = *known;
}

void gxRegionSet::outerHull(gxRegionSet& result) const {
  if (!isSelfIntersecting()) {
    result = *this;
    return;
  }
  gxPtrHandle_const<gxRegionSet> known;  // of our own, because `result` may own or be this one
  if (const auto* published = state_.memory.outerHullSet.get()) {
    known = *published;
  } else {
    gx_countComputation(gx_Computation::eSetOuterHull);
    const auto made = gfMakeHandle<gxRegionSet>();
    outerHullRegularize(*made, true);
    if (state_.memory.outerHullSet.publish(made)) mutating_();
    known = made;
  }
  result = *known;
}

void gxRegionSet::outerHullRegularize(gxRegionSet& result, bool hull) const {
  checkEmptyRegionSet();
  std::vector<RegionHandle> work = state_.regions;
  mergeWhereTheyMeet_(work);
  for (RegionHandle& region : work) {
    const gxPtrHandle<gxRegion> repaired(new gxRegion);
    if (hull) {
      region->outerHull(*repaired);
    } else {
      region->regularize(*repaired);
    }
    region = repaired;
  }
  result = gxRegionSet(work);
}

void gxRegionSet::mergeWhereTheyMeet_(std::vector<RegionHandle>& work) {
  Neighbours neighbours(work);
  for (std::size_t i = 0; i + 1 < work.size(); ++i) {
    neighbours.begin(i, i);
    for (std::size_t j = 0; neighbours.next(j);) {
      const gxContour& other = *work[j];
      if (work[i]->intersections(other, false).empty()) continue;
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
