/// Regions and sets of the library from plain ones and back.
#pragma once

#include <cntr/region.h>
#include <cntr/regionst.h>
#include <support/random_shapes.h>
#include <support/slow_truth_set.h>

#include <vector>

/// The library's region of a plain one, holes and all.  Throws what setting its holes throws.
inline gxPtrHandle<gxRegion> regionOf(const slow::Region& plain) {
  const gxPtrHandle<gxRegion> region(new gxRegion(plain.outline));
  std::vector<gxPtrHandle_const<gxRegion>> holes;
  for (const slow::Region& hole : plain.holes) holes.push_back(regionOf(hole));
  if (!holes.empty()) region->holes(holes);
  return region;
}

inline slow::Region plainOf(const gxRegion& region) {
  slow::Region plain{region.points(), {}};
  for (const auto& hole : region.holes()) plain.holes.push_back(plainOf(*hole));
  return plain;
}

inline gxRegionSet setOf(const slow::Set& plain) {
  std::vector<gxPtrHandle_const<gxRegion>> regions;
  for (const slow::Region& region : plain) regions.push_back(regionOf(region));
  return gxRegionSet(regions);
}

inline slow::Set plainOf(const gxRegionSet& set) {
  slow::Set plain;
  for (const auto& region : set.regions()) plain.push_back(plainOf(*region));
  return plain;
}

/// A region with holes, islands in some of them; or any outline at all, with a hole or two far from
/// it or of too few points.
inline slow::Region randomRegion(RandomShapes& random) {
  if (random.chance(0.6)) {
    const OutlineWithHoles shape = random.outlineWithHoles();
    slow::Region region{shape.outline, {}};
    for (const slow::Points& outline : shape.holes) {
      slow::Region hole{outline, {}};
      if (random.chance(0.4)) {  // the same shape, smaller, around its mean
        gxVector<2> mean(0.0, 0.0);
        for (const gxVector<2>& p : outline) mean = mean + p / static_cast<double>(outline.size());
        slow::Points island;
        for (const gxVector<2>& p : outline) island.push_back(mean + (p - mean) * 0.25);
        hole.holes.push_back({island, {}});
      }
      region.holes.push_back(hole);
    }
    return region;
  }
  slow::Region region{random.outline(), {}};
  if (region.outline.size() >= 2 && random.chance(0.5)) {
    region.holes.push_back({random.star(random.integer(1, 6), {1e9, 1e9}, 1.0, 5.0), {}});
  }
  return region;
}
