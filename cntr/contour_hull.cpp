// The convex hull: the one room of the contour that computes with a region.
#include <cntr/contour.h>
#include <cntr/internal/memory/probe.h>
#include <cntr/region.h>
#include <velstd/convex_hull.h>

void gxContour::convexHull(gxRegion& hull) const {
  checkEmptyContour();
  gx_ContourMemory& memory = state_.memory;
  if (!memory.convexHullValid) {
    gx_countComputation(gx_Computation::eConvexHull);
    std::vector<gxVector<2>> corners;
    gfConvexHull(state_.points, corners);
    memory.convexHull = gxPtrHandle_const<gxRegion>(new gxRegion(corners, gxContourDefs::eNone));
    memory.convexHullValid = true;
  }
  hull = *memory.convexHull;
}
