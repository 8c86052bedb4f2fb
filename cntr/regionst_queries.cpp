// Containment and distance: the regions are asked one after the other, in order, so that the first
// region that fails is the one whose failure is seen.  No answer is remembered.
//
// Through the index.  A set that is asked often makes a tree over the regions' boxes
// (internal/sets/region_index).  Containment then asks, in order, those whose box holds the point.  For the
// distance the regions that could fail are asked in order, as before; of the others only the smallest
// distance matters, and it is found from the nearest box outwards.  Where the point may be inside a region
// its box holds the point, so that region is among the nearest.
//
// One by one.  A region of many points whose box is farther away than the smallest distance so far
// need not be asked for its own: it cannot be smaller, it does not hold the point, and such a region
// cannot fail either (it has points enough, and no holes).
#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/sets/region_index.h>
#include <cntr/regionst.h>

#include <algorithm>
#include <cmath>
#include <limits>

// The index where there is one, or time to make it; else null.
const gx_RegionIndex* gxRegionSet::index_() const {
  return state_.regions.size() <= gx_kFewRegions ? nullptr : state_.memory.index.get(state_.regions);
}

bool gxRegionSet::inside(const gxVector<2>& point, bool considerHoles) const {
  if (const gx_RegionIndex* index = index_()) {
    return index->anyThatMayHold(
        point, [&](std::size_t i) { return state_.regions[i]->inside(point, considerHoles); });
  }
  for (const RegionHandle& region : state_.regions) {
    if (region->inside(point, considerHoles)) return true;
  }
  return false;
}

std::vector<bool> gxRegionSet::inside(const std::vector<gxVector<2>>& points, bool considerHoles) const {
  std::vector<bool> result;
  result.reserve(points.size());
  for (const gxVector<2>& point : points) result.push_back(inside(point, considerHoles));
  return result;
}

double gxRegionSet::distToPoint(const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                                bool insideIsZero) const {
  checkEmptyRegionSet();
  const gx_RegionIndex* index = index_();
  if (index == nullptr || !std::isfinite(point.x()) || !std::isfinite(point.y())) {
    return distToPointOneByOne_(point, vertexOnly, considerHoles, insideIsZero);
  }
  double smallest = std::numeric_limits<double>::infinity();
  const auto ask = [&](std::size_t i) {
    const double distance =
        state_.regions[i]->distToPoint(point, vertexOnly, considerHoles, insideIsZero);
    if (smallest > distance) smallest = distance;  // never by a NaN
  };
  for (const std::size_t i : index->alwaysAsked()) ask(i);
  index->forEachNear(point, smallest, ask);
  return smallest;
}

double gxRegionSet::distToPointOneByOne_(const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                                         bool insideIsZero) const {
  double smallest = std::numeric_limits<double>::infinity();
  for (const RegionHandle& handle : state_.regions) {
    const gxRegion& region = *handle;
    const bool isPlain = region.indexPays_() && region.holes().empty() && !region.edgeIndex_().hasNaN();
    if (isPlain && gx_RegionIndex::surelyFarther(region.edgeIndex_().bounds(), point, smallest))
      continue;
    const double distance = region.distToPoint(point, vertexOnly, considerHoles, insideIsZero);
    if (smallest > distance) smallest = distance;  // never by a NaN
  }
  return smallest;
}
