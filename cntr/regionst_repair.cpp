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
// The result is remembered; the flag is set only after the computation returned, and the assignment
// holds a handle of its own to the result, because the target may be this set.
#include <cntr/internal/probe.h>
#include <cntr/regionst.h>

#include <utility>

bool gxRegionSet::isSelfIntersecting() const {
  if (state_.regions.empty()) return false;
  gx_RegionSetMemory& memory = state_.memory;
  if (memory.selfIntersectingValid) return memory.selfIntersecting;
  gx_countComputation(gx_Computation::eSetSelfIntersection);
  memory.selfIntersecting = computeSelfIntersecting_();
  memory.selfIntersectingValid = true;
  mutating_();
  return memory.selfIntersecting;
}

// Every outline is asked about itself, also after one said yes; the pairs only up to the first that
// meets.
bool gxRegionSet::computeSelfIntersecting_() const {
  const std::vector<RegionHandle>& regions = state_.regions;
  bool crossing = false;
  for (const RegionHandle& region : regions) {
    if (region->isSelfIntersecting()) crossing = true;
  }
  for (std::size_t i = 0; i + 1 < regions.size(); ++i) {
    for (std::size_t j = i + 1; j < regions.size(); ++j) {
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
  if (!state_.memory.regularizedValid) {
    gx_countComputation(gx_Computation::eSetRegularize);
    const gxPtrHandle<gxRegionSet> repaired(new gxRegionSet);
    state_.memory.regularizedSet = repaired;
    outerHullRegularize(*repaired, false);
    state_.memory.regularizedValid = true;
    mutating_();
  }
  const gxPtrHandle_const<gxRegionSet> repaired = state_.memory.regularizedSet;
  result = *repaired;
}

void gxRegionSet::outerHull(gxRegionSet& result) const {
  if (!isSelfIntersecting()) {
    result = *this;
    return;
  }
  if (!state_.memory.outerHullValid) {
    gx_countComputation(gx_Computation::eSetOuterHull);
    const gxPtrHandle<gxRegionSet> hull(new gxRegionSet);
    state_.memory.outerHullSet = hull;
    outerHullRegularize(*hull, true);
    state_.memory.outerHullValid = true;
    mutating_();
  }
  const gxPtrHandle_const<gxRegionSet> hull = state_.memory.outerHullSet;
  result = *hull;
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
  for (std::size_t i = 0; i + 1 < work.size(); ++i) {
    for (std::size_t j = i + 1; j < work.size(); ++j) {
      const gxContour& other = *work[j];
      if (work[i]->intersections(other, false).empty()) continue;
      const gxPtrHandle<gxRegion> merged(new gxRegion);
      work[i]->splice(*work[j], *merged);
      work[i] = merged;
      work[j] = work.back();
      work.pop_back();
    }
  }
}
