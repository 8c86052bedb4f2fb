// The rings of a shape.
//
//  1. A region's rings come in the order of a walk level by level: the outline, its holes, the holes of
//     each hole and so on, so that the holes keep the numbers of the list.  Holes are shared, and two that
//     both refer twice to the next, and so on, would double from level to level: the holes of a region
//     are taken once in each outermost region.
//  2. A walk in depth looks beforehand whether a region is among the holes of its own holes.
#include <overlay/internal/shape_rings.h>

#include <cntr/contourdefs.h>

#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace {

void refuseCycles(const gxRegion& outermost) {
  enum class State { eOnPath, eDone };
  std::unordered_map<const gxRegion*, State> states{{&outermost, State::eOnPath}};
  std::vector<std::pair<const gxRegion*, std::size_t>> path{{&outermost, 0}};
  while (!path.empty()) {
    const gxRegion* region = path.back().first;
    if (path.back().second == region->holes().size()) {
      states[region] = State::eDone;
      path.pop_back();
      continue;
    }
    const gxRegion* hole = &*region->holes()[path.back().second++];
    const auto [place, isNew] = states.try_emplace(hole, State::eOnPath);
    if (isNew) {
      path.emplace_back(hole, 0);
    } else if (place->second == State::eOnPath) {
      throw gxContourDefs::BadParams(L"holes nest too deeply");
    }
  }
}

void append(const gxRegion& outermost, long number, std::vector<gx_ShapeRing>& rings) {
  if (outermost.holes().empty()) {
    rings.push_back({&outermost.points(), number, -1, gx_ShapeRing::kNone, 0});
    return;
  }
  refuseCycles(outermost);
  const std::size_t first = rings.size();
  std::vector<const gxRegion*> regions{&outermost};
  std::unordered_set<const gxRegion*> taken;
  rings.push_back({&outermost.points(), number, -1, gx_ShapeRing::kNone, 0});
  for (std::size_t i = 0; i < regions.size(); ++i) {
    if (!taken.insert(regions[i]).second) continue;
    for (const auto& hole : regions[i]->holes()) {
      const int level = rings[first + i].level + 1;
      const long next = static_cast<long>(regions.size()) - 1;
      regions.push_back(&*hole);
      rings.push_back({&hole->points(), number, next, first + i, level});
    }
  }
}

}  // namespace

std::vector<gx_ShapeRing> gx_ringsOf(const std::vector<const gxRegion*>& regions) {
  std::vector<gx_ShapeRing> rings;
  long number = 0;
  for (const gxRegion* region : regions) append(*region, number++, rings);
  return rings;
}
