// Making the index:
//   1. Of every region take the remembered rectangle, without asking for it, and the box of its points.
//   2. Where they are the same the box goes into the tree for containment, and of a region without
//      holes into that for distances; else the region goes on a list.
//   3. Watch every region.  The index holds until a watched region has changed; what changed
//      elsewhere makes every index look at its own regions once.
#include <cntr/internal/sets/region_index.h>
#include <cntr/region.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Returns the box of the points; empty where a coordinate is NaN.
gx_Box boxOf(const std::vector<gxVector<2>>& points) {
  gx_Box box;
  for (const gxVector<2>& p : points) {
    if (p.x() != p.x() || p.y() != p.y()) return {};
    box.add(p);
  }
  return box;
}

}  // namespace

gx_RegionIndex::gx_RegionIndex(const std::vector<Handle>& regions)
    : count_(regions.size()), inside_({}), near_({}) {
  std::vector<gx_Box> insideBoxes;
  std::vector<gx_Box> nearBoxes;
  for (std::size_t i = 0; i < regions.size(); ++i) {
    if (regions[i].isNull() || regions[i]->points().size() < 2) return;
    const gxRegion& region = *regions[i];
    const gxRect* rect = region.rememberedUprightBox_();
    if (rect == nullptr) return;
    const gx_EdgeIndex* edges = region.edgeIndexIfMade_();
    const gx_Box box = edges != nullptr && !edges->hasNaN() ? edges->bounds() : boxOf(region.points());
    if (rect->origin() == gxVector<2>(box.lowX, box.lowY) &&
        rect->corner() == gxVector<2>(box.highX, box.highY)) {
      insideNumbers_.push_back(i);
      insideBoxes.push_back(box);
      if (region.holes().empty()) {
        nearNumbers_.push_back(i);
        nearBoxes.push_back(box);
        continue;
      }
    } else {
      notTrue_.push_back(i);
    }
    alwaysAsked_.push_back(i);
  }
  inside_ = gx_BoxTree(insideBoxes);
  near_ = gx_BoxTree(nearBoxes);
  for (const Handle& region : regions) region->watch_().begin();
  madeAt_ = checkedAt_ = gx_Watch::epoch();
}

bool gx_RegionIndex::holds(const std::vector<Handle>& regions) {
  if (madeAt_ == 0 || regions.size() != count_) return false;
  const std::uint64_t now = gx_Watch::epoch();
  if (checkedAt_ == now) return true;
  const bool same = std::all_of(regions.begin(), regions.end(), [this](const Handle& region) {
    return !region.isNull() && region->watch_().sameSince(madeAt_);
  });
  if (same) checkedAt_ = now;
  return same;
}

const std::vector<std::size_t>& gx_RegionIndex::thatMayHold(const gxVector<2>& point) {
  found_.assign(notTrue_.begin(), notTrue_.end());
  inside_.forEachMeeting({point.x(), point.y(), point.x(), point.y()},
                         [&](std::size_t i) { found_.push_back(insideNumbers_[i]); });
  std::sort(found_.begin(), found_.end());
  return found_;
}

// A distance is computed from a foot on an edge that is off by a few units in the last place of the
// coordinates; the slack is several hundred times that.
bool gx_RegionIndex::surelyFarther(const gx_Box& box, const gxVector<2>& point, double limit) {
  const double size = std::abs(box.lowX) + std::abs(box.highX) + std::abs(box.lowY) +
                      std::abs(box.highY) + std::abs(point.x()) + std::abs(point.y());
  const double reach = limit + gx_EdgeIndex::kSlack * (limit + size);
  const double square = reach * reach;
  return square > gx_EdgeIndex::kSmallestSquare && box.squareFrom(point) > square;
}
