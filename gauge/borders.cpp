// The rings of a shape.
//
// Holes may hold holes, which several regions may hold in turn.  The rings are listed level by level; a
// region that comes up again on the path to itself would list its rings for ever, and is refused before
// anything is listed.  The path is kept on a list, not on the stack: holes may nest ten thousand deep.
#include <gauge/borders.h>

#include <cstddef>
#include <unordered_set>
#include <utility>

namespace {

const gxRegion& holeOf(const gxRegion& region, std::size_t i) {
  return *region.holes()[i];
}

// A region is finished when all below it is; what several regions hold is looked at once.
void checkNesting(const gxRegion& region) {
  std::unordered_set<const gxRegion*> open{&region};
  std::unordered_set<const gxRegion*> finished;
  std::vector<std::pair<const gxRegion*, std::size_t>> path{{&region, 0}};
  while (!path.empty()) {
    auto& [top, next] = path.back();
    if (next == top->holes().size()) {
      finished.insert(top);
      open.erase(top);
      path.pop_back();
      continue;
    }
    const gxRegion* hole = &holeOf(*top, next++);
    if (open.count(hole) != 0) throw gxContourDefs::BadParams(L"holes nest too deeply");
    if (finished.count(hole) != 0) continue;
    open.insert(hole);
    path.emplace_back(hole, 0);
  }
}

}  // namespace

gxBorders::gxBorders(const gxContour& contour) : rings_{{contour.points(), contour.isClosed()}} {}

gxBorders::gxBorders(const gxRegion& region) {
  add_(region);
}

gxBorders::gxBorders(const gxRegionSet& set) {
  for (const auto& region : set.regions()) add_(*region);
}

void gxBorders::add_(const gxRegion& region) {
  checkNesting(region);
  std::vector<const gxRegion*> level{&region};
  while (!level.empty()) {
    std::vector<const gxRegion*> below;
    for (const gxRegion* one : level) {
      rings_.push_back({one->points(), true});
      for (std::size_t i = 0; i < one->holes().size(); ++i) below.push_back(&holeOf(*one, i));
    }
    level = std::move(below);
  }
}
