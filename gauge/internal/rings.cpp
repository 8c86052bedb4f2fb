// The rings of a shape, level by level: the outline, all its holes, then all holes of these, so that the
// holes that a region lists itself have the numbers of its list.
//
// (A region given twice among the holes is there twice.  Only one that lies within itself would never end:
// each new ring looks along its own ancestors for the region that it is made of.)
#include <cntr/contourdefs.h>
#include <gauge/internal/frame.h>
#include <gauge/internal/rings.h>

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::size_t kMostRings = 4'000'000;

// A region on the way down, and where the one that holds it stands.
struct Step {
  const gxRegion* region;
  std::size_t parent;
  int depth;
};

void checkNotWithinItself(const std::vector<Step>& steps, std::size_t at) {
  for (std::size_t up = at; up != 0;) {
    up = steps[up].parent;
    if (steps[up].region == steps[at].region) throw gxContourDefs::BadParams(L"holes nest too deeply");
  }
}

void addRings(const gxRegion& region, long number, std::vector<gx_Ring>& rings) {
  if (region.holes().empty()) {
    rings.push_back({region.points(), true, 0, -1, number});
    return;
  }
  std::vector<Step> steps;
  steps.reserve(1 + region.holes().size());
  steps.push_back({&region, 0, 0});
  if (rings.empty()) rings.reserve(1 + region.holes().size());
  for (std::size_t at = 0; at < steps.size(); ++at) {
    const Step step = steps[at];
    checkNotWithinItself(steps, at);
    if (rings.size() >= kMostRings) throw gxContourDefs::BadParams(L"holes nest too deeply");
    rings.push_back({step.region->points(), true, step.depth, static_cast<long>(at) - 1, number});
    for (const auto& hole : step.region->holes()) steps.push_back({&*hole, at, step.depth + 1});
  }
}

}  // namespace

std::vector<gx_Ring> gx_ringsOf(std::span<const gxVector<2>> outline) {
  return {{outline}};
}

std::vector<gx_Ring> gx_ringsOf(const gxContour& contour) {
  return {{contour.points(), contour.isClosed()}};
}

std::vector<gx_Ring> gx_ringsOf(const gxRegion& region) {
  std::vector<gx_Ring> rings;
  addRings(region, 0, rings);
  return rings;
}

std::vector<gx_Ring> gx_ringsOf(const gxRegionSet& set) {
  std::vector<gx_Ring> rings;
  long number = 0;
  for (const auto& region : set.regions()) addRings(*region, number++, rings);
  return rings;
}

bool gx_allFinite(const std::vector<gx_Ring>& rings) {
  return std::all_of(rings.begin(), rings.end(),
                     [](const gx_Ring& ring) { return gx_allFinite(ring.points); });
}
