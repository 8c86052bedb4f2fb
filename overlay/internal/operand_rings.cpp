// Regions as rings with roles, and the results as regions.
//
// Holes may have holes, to any depth, and be shared; they are visited with a stack of its own, and a region
// among the holes of its own holes is found on the way up.
#include <cntr/contourdefs.h>
#include <overlay/internal/operand_rings.h>

#include <utility>

namespace {

// Levels that each refer twice to the next double the rings from level to level.
constexpr std::size_t kMostRings = std::size_t{1} << 24U;

}  // namespace

void gx_OperandRings::add(const gxShapes& shapes, std::uint32_t operand, gxFillRule rule) {
  struct Open {
    const gxRegion* region;
    std::uint32_t parent;
  };
  std::vector<Open> open;
  for (const gxRegion* region : shapes.regions()) {
    open.push_back({region, gx_EdgeSet::kNone});
    while (!open.empty()) {
      const Open next = open.back();
      open.pop_back();
      for (std::uint32_t up = next.parent; up != gx_EdgeSet::kNone; up = list.roles[up].parent) {
        if (regions[up] == next.region) throw gxContourDefs::BadParams(L"holes nest too deeply");
      }
      if (list.size() >= kMostRings) throw gxContourDefs::BadParams(L"holes nest too deeply");
      const bool isHole = next.parent != gx_EdgeSet::kNone;
      const std::uint32_t ring =
          list.add(next.region->points(), {operand, next.parent, gx_ringRule(rule, isHole)});
      regions.push_back(next.region);
      for (const gxRegion::HoleHandle& hole : next.region->holes()) open.push_back({&*hole, ring});
    }
  }
}

void gx_ValidRegion::setHoles(gxRegion& region, std::vector<gxRegion::HoleHandle> holes) {
  region.holes_ = std::move(holes);
}

gxPtrHandle<gxRegion> gx_ValidRegion::make(const gx_ResultRegion& region) {
  gxPtrHandle<gxRegion> made(new gxRegion(region.outline.points));
  std::vector<gxRegion::HoleHandle> holes;
  holes.reserve(region.holes.size());
  for (const gx_ResultRing& hole : region.holes) holes.emplace_back(new gxRegion(hole.points));
  setHoles(*made, std::move(holes));
  return made;
}

gxRegionSet gx_regionSetOf(const std::vector<gx_ResultRegion>& regions) {
  std::vector<gxRegionSet::RegionHandle> handles;
  handles.reserve(regions.size());
  for (const gx_ResultRegion& region : regions) handles.push_back(gx_ValidRegion::make(region));
  return gxRegionSet(handles);
}
