// Sets as values, and the one answer of a region that came back through an argument.
#include <cntr/regionst_values.h>

#include <vector>

gxRegionSet gfRegularized(const gxRegionSet& set) {
  gxRegionSet result;
  set.regularize(result);
  return result;
}

gxRegionSet gfRegularized(const gxRegionSet& set, gxBudget& budget) {
  gxRegionSet result;
  set.regularize(result, budget);
  return result;
}

gxRegionSet gfOuterHull(const gxRegionSet& set) {
  gxRegionSet result;
  set.outerHull(result);
  return result;
}

gxRegionSet gfOuterHull(const gxRegionSet& set, gxBudget& budget) {
  gxRegionSet result;
  set.outerHull(result, budget);
  return result;
}

gxRegionSet gfMapped(const gxRegionSet& set, const gxXform<2>& xform) {
  std::vector<gxRegionSet::RegionHandle> mapped;
  for (const gxRegionSet::RegionHandle& region : set.regions()) {
    mapped.push_back(gfMakeHandle<gxRegion>(region->mapped(xform)));
  }
  gxRegionSet result(mapped);
  result.cachedVectorSize(set.cachedVectorSize());
  return result;
}

gxRegionVertex gfClosestVertex(const gxRegion& region, const gxVector<2>& point) {
  gxRegionVertex result;
  result.vertex = region.closestVertexIndex(point, true, result.hole);
  return result;
}
