// Mapping a region, and drawing it.  Holes are neither mapped nor drawn: a mapped region is its
// outline alone.
#include <cntr/region.h>

void gxRegion::map(const gxXform<2>& xform, gxRegion& result) const {
  std::vector<gxVector<2>> mapped;
  mapped.reserve(points().size());
  for (const gxVector<2>& p : points()) mapped.push_back(xform * p);
  const gxRegion region(mapped, gxContourDefs::eNone);
  result = region;  // copied, not moved: where the result cannot follow, that throws
}

void gxRegion::draw(gxUITablet& tablet, const gxColor& colour, const gxUITablet::Layers& layer) const {
  gxContour::draw(tablet, gxContourDefs::eDrawEdges, colour, layer);
}
