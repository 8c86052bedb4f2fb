// Containment and distance: the regions are asked one after the other, in order, so that the first
// region that fails is the one whose failure is seen.  Nothing is remembered here.
#include <cntr/regionst.h>

#include <limits>

bool gxRegionSet::inside(const gxVector<2>& point, bool considerHoles) const {
  for (const RegionHandle& region : state_.regions) {
    if (region->inside(point, considerHoles)) return true;
  }
  return false;
}

double gxRegionSet::distToPoint(const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                                bool insideIsZero) const {
  checkEmptyRegionSet();
  double smallest = std::numeric_limits<double>::infinity();
  for (const RegionHandle& region : state_.regions) {
    const double distance = region->distToPoint(point, vertexOnly, considerHoles, insideIsZero);
    if (smallest > distance) smallest = distance;  // never by a NaN
  }
  return smallest;
}
