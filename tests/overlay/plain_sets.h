/// The judges' sets as regions of the library, and back.
#pragma once

#include <overlay/internal/operand_rings.h>
#include <support/overlay_judge.h>
#include <support/overlay_shapes.h>

#include <utility>
#include <vector>

inline gxPtrHandle<gxRegion> libraryRegion(const slow::Region& plain) {
  gxPtrHandle<gxRegion> region(new gxRegion(plain.outline));
  std::vector<gxRegion::HoleHandle> holes;
  for (const slow::Region& hole : plain.holes) holes.emplace_back(libraryRegion(hole));
  gx_ValidRegion::setHoles(*region, std::move(holes));
  return region;
}

inline gxRegionSet librarySet(const slow::Set& plain) {
  std::vector<gxRegionSet::RegionHandle> regions;
  for (const slow::Region& region : plain) regions.emplace_back(libraryRegion(region));
  return gxRegionSet(regions);
}

inline slow::Set plainSet(const gxRegionSet& set) {
  slow::Set plain;
  for (const auto& region : set.regions()) {
    plain.push_back({region->points(), {}});
    for (const auto& hole : region->holes()) plain.back().holes.push_back({hole->points(), {}});
  }
  return plain;
}

inline bool areSame(const slow::Set& a, const slow::Set& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i].outline != b[i].outline || a[i].holes.size() != b[i].holes.size()) return false;
    for (std::size_t h = 0; h < a[i].holes.size(); ++h) {
      if (a[i].holes[h].outline != b[i].holes[h].outline) return false;
    }
  }
  return true;
}
