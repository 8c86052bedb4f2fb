// The points of a set's outlines, one after the other.
#include <gauge/internal/shape_points.h>

std::vector<gxVector<2>> gx_outlinePoints(const gxRegionSet& set) {
  std::vector<gxVector<2>> points;
  for (const auto& region : set.regions()) {
    const auto& outline = region->points();
    points.insert(points.end(), outline.begin(), outline.end());
  }
  return points;
}
