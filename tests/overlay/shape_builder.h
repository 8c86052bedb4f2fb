/// Library shapes from plain ones, valid or not.
#pragma once

#include <cntr/region.h>
#include <cntr/regionst.h>
#include <support/slow_truth_set.h>

#include <vector>

namespace judge {

/// The library's region.  Its holes are given while they fit, and get their points afterwards: the setter
/// would refuse holes that touch or lie across, which a region has when its holes change later.
inline gxPtrHandle<gxRegion> regionFrom(const slow::Region& plain) {
  using V = gxVector<2>;
  const gxPtrHandle<gxRegion> region(new gxRegion(std::vector<V>{V(-9, -9), V(9, -9), V(0, 9)}));
  std::vector<gxPtrHandle<gxRegion>> holes;
  for (std::size_t i = 0; i < plain.holes.size(); ++i) {
    holes.emplace_back(new gxRegion(std::vector<V>{V(0, 0), V(1, 0), V(0, 1)}));
  }
  if (!holes.empty()) region->holes(holes);
  region->points(plain.outline);
  for (std::size_t i = 0; i < plain.holes.size(); ++i) *holes[i] = *regionFrom(plain.holes[i]);
  return region;
}

inline gxRegionSet setFrom(const slow::Set& plain) {
  std::vector<gxPtrHandle_const<gxRegion>> regions;
  for (const slow::Region& region : plain) regions.push_back(regionFrom(region));
  return gxRegionSet(regions);
}

inline slow::Region plainFrom(const gxRegion& region) {
  slow::Region plain{region.points(), {}};
  for (const auto& hole : region.holes()) plain.holes.push_back(plainFrom(*hole));
  return plain;
}

inline slow::Set plainFrom(const gxRegionSet& set) {
  slow::Set plain;
  for (const auto& region : set.regions()) plain.push_back(plainFrom(*region));
  return plain;
}

}  // namespace judge
