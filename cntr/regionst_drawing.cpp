// Drawing: every region in its own way, in order.
#include <cntr/regionst.h>

void gxRegionSet::draw(gxUITablet& tablet, const gxColor& colour,
                       const gxUITablet::Layers& layer) const {
  for (const RegionHandle& region : state_.regions) region->draw(tablet, colour, layer);
}
