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
#include <cntr/internal/memory/probe.h>
#include <cntr/regionst.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace {

// From so many regions on, the index pays.
constexpr std::size_t kIndexPays = 16;

}  // namespace

// The index, made if it is time to; null while there is none.  Every time that a region changes doubles
// the number of questions up to the next index, so that making it costs no more than asking.
gx_RegionIndex* gxRegionSet::index_() const {
  if (state_.regions.size() < kIndexPays) return nullptr;
  gx_RegionSetMemory& memory = state_.memory;
  ++memory.questions;
  if (memory.index != nullptr) {
    if (memory.index->holds(state_.regions)) return memory.index.get();
    memory.index.reset();
  }
  if (memory.questions < memory.nextTry) return nullptr;
  memory.nextTry = memory.questions + std::max(memory.questions, gx_RegionSetMemory::kFirstTry);
  gx_countComputation(gx_Computation::eSetIndex);
  memory.index = std::make_shared<gx_RegionIndex>(state_.regions);
  return memory.index.get();
}

bool gxRegionSet::inside(const gxVector<2>& point, bool considerHoles) const {
  if (gx_RegionIndex* index = index_()) {
    for (const std::size_t i : index->thatMayHold(point)) {
      if (state_.regions[i]->inside(point, considerHoles)) return true;
    }
    return false;
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
