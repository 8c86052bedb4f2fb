/// Regions of rings as other libraries have them, and their rings back.
#pragma once

#include <cntr/region.h>
#include <velstd/handle.h>
#include <velstd/vector.h>

#include <cstddef>
#include <limits>
#include <string>
#include <utility>
#include <vector>

/// Returns a region of an outline and the outlines of its holes, taken as they are.  `gxRegion::holes`
/// refuses holes that touch or cross the outline; other libraries take touching holes for valid, and what
/// they hand over is looked at afterwards: `gfCheck` says what is wrong, `gfRepair` puts it right.
///  - fewer than 3 points, here or there: kept all the same
/// Throws: std::bad_alloc alone.
/// Cost: O(points).
inline gxRegion gfRegionOfRings(const std::vector<gxVector<2>>& outline,
                                const std::vector<std::vector<gxVector<2>>>& holes) {
  gxRegion region(outline);
  if (holes.empty()) return region;
  // Each hole is set as two equal points far from a stand-in outline, which meets nothing, and gets its own
  // points afterwards; nothing has been remembered of the region by then.
  region.points({{0.0, 0.0}, {0.0, 1.0}});
  std::vector<gxPtrHandle<gxRegion>> handles;
  handles.reserve(holes.size());
  const std::vector<gxVector<2>> aside{{8.0, 8.0}, {8.0, 8.0}};
  for (std::size_t i = 0; i < holes.size(); ++i) handles.push_back(gfMakeHandle<gxRegion>(aside));
  region.holes(handles);
  for (std::size_t i = 0; i < holes.size(); ++i) handles[i]->points(holes[i]);
  region.points(outline);
  return region;
}

/// A region as one outline with holes that have none themselves.
struct gxRegionRings {
  const std::vector<gxVector<2>>* outline = nullptr;   ///< the points of the region or island
  std::vector<const std::vector<gxVector<2>>*> holes;  ///< those of its holes, in order
};

/// Returns the rings of a region as those libraries see them that know no holes of holes: the region itself,
/// then the islands in its holes, then those in theirs, as parts of their own.  The pointers hold while the
/// region lives and does not change.
/// Throws: gxBadPointer for a null hole; BadParams "holes nest too deeply" where there are more parts than
/// 10,000,000, as where a region comes up again among the holes of its own holes.
/// Cost: O(holes).
inline std::vector<gxRegionRings> gfRingsOf(const gxRegion& region) {
  constexpr std::size_t kMostParts = 10'000'000;
  std::vector<gxRegionRings> parts;
  std::vector<const gxRegion*> islands{&region};
  for (std::size_t next = 0; next < islands.size(); ++next) {
    gxRegionRings part;
    part.outline = &islands[next]->points();
    for (const gxRegion::HoleHandle& hole : islands[next]->holes()) {
      part.holes.push_back(&hole->points());
      for (const gxRegion::HoleHandle& island : hole->holes()) islands.push_back(&*island);
      if (islands.size() > kMostParts) throw gxContourDefs::BadParams(L"holes nest too deeply");
    }
    parts.push_back(std::move(part));
  }
  return parts;
}
