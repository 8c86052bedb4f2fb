// Shapes as arguments: the regions in order, whatever held them.
#include <overlay/shapes.h>

gxShapes::gxShapes(const gxRegion& region) : regions_{&region} {}

gxShapes::gxShapes(const gxRegionSet& set) : gxShapes(set.regions()) {}

gxShapes::gxShapes(const std::vector<gxRegion>& regions) {
  for (const gxRegion& region : regions) regions_.push_back(&region);
}

gxShapes::gxShapes(const std::vector<gxRegionSet>& sets) {
  for (const gxRegionSet& set : sets) {
    for (const auto& region : set.regions()) regions_.push_back(&*region);
  }
}

gxShapes::gxShapes(const std::vector<gxPtrHandle_const<gxRegion>>& regions) {
  for (const auto& region : regions) regions_.push_back(&*region);
}

gxShapes::gxShapes(const std::vector<gxPtrHandle<gxRegion>>& regions) {
  for (const auto& region : regions) regions_.push_back(&*region);
}
