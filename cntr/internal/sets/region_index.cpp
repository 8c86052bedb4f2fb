// Making the index:
//   1. Take the box of each region's points, from its edge index where there is one.
//   2. The box goes into the tree for containment, and of a region without holes into that for
//      distances; a region without a box that holds all of it goes on a list.
//   3. Watch every region.  The index holds until a watched region has changed; what changed
//      elsewhere makes every index look at its own regions once.
//
// No region is asked anything that it would remember, so a set may make its index whenever it likes.
#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/sets/region_index.h>
#include <cntr/region.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Whether a box holds all of the region, so that outside of it there is nothing to ask.
bool hasBox(const gx_Box& box) {
  return box.highX >= box.lowX && box.highY >= box.lowY;
}

// Returns the box of the region's points; none where there are too few to be asked, or a coordinate is NaN.
gx_Box boxOf(const gxRegion& region, const gx_EdgeIndex* edges) {
  if (edges != nullptr && !edges->hasNaN()) return edges->bounds();
  return region.points().size() < 2 ? gx_Box() : gx_Box::ofNumbers(region.points());
}

}  // namespace

gx_RegionIndex::gx_RegionIndex(const std::vector<Handle>& regions)
    : count_(regions.size()), inside_({}), near_({}) {
  std::vector<gx_Box> insideBoxes;
  std::vector<gx_Box> nearBoxes;
  for (std::size_t i = 0; i < regions.size(); ++i) {
    if (regions[i].isNull()) {
      withoutBox_.push_back(i);
      alwaysAsked_.push_back(i);
      continue;
    }
    const gxRegion& region = *regions[i];
    const gx_EdgeIndex* edges = region.edgeIndexIfMade_();
    const gx_Box box = boxOf(region, edges);
    if (hasBox(box)) {
      insideNumbers_.push_back(i);
      insideBoxes.push_back(box);
    } else {
      withoutBox_.push_back(i);
    }
    if (hasBox(box) && region.holes().empty()) {
      nearNumbers_.push_back(i);
      nearBoxes.push_back(box);
    } else {
      alwaysAsked_.push_back(i);
    }
  }
  inside_ = gx_BoxTree(insideBoxes);
  near_ = gx_BoxTree(nearBoxes);
  for (const Handle& region : regions) {
    if (!region.isNull()) region->watch_().begin();
  }
  madeAt_ = gx_Watch::epoch();
}

bool gx_RegionIndex::holds(const std::vector<Handle>& regions) const {
  return regions.size() == count_ &&
         std::all_of(regions.begin(), regions.end(), [this](const Handle& region) {
           return region.isNull() || region->watch_().sameSince(madeAt_);
         });
}

// A distance is computed from a foot on an edge that is off by a few units in the last place of the
// coordinates; the slack is several hundred times that.
bool gx_RegionIndex::surelyFarther(const gx_Box& box, const gxVector<2>& point, double limit) {
  const double size = std::abs(box.lowX) + std::abs(box.highX) + std::abs(box.lowY) +
                      std::abs(box.highY) + std::abs(point.x()) + std::abs(point.y());
  const double reach = limit + gx_kRounding * (limit + size);
  const double square = reach * reach;
  return square > gx_EdgeIndex::kSmallestSquare && box.squareFrom(point) > square;
}
