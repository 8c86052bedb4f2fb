// The convex hull: the one room of the contour that computes with a region.
#include <cntr/contour.h>
#include <cntr/internal/memory/computation_count.h>
#include <cntr/region.h>
#include <velstd/convex_hull.h>

#include <utility>

void gxContour::convexHull(gxRegion& hull) const {
  checkEmptyContour();
  gxPtrHandle_const<gxRegion> known;  // of our own, because `hull` may be this contour
  if (const auto* published = state_.memory.convexHull.get()) {
    known = *published;
  } else {
    gx_countComputation(gx_Computation::eConvexHull);
    std::vector<gxVector<2>> corners;
    gfConvexHull(state_.points, corners);
    known = gfMakeHandle<gxRegion>(std::move(corners), gxContourDefs::eNone);
    state_.memory.convexHull.publish(known);
  }
  hull = *known;
}
