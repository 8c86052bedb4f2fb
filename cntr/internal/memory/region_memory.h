/// Everything a region remembers beside what its outline remembers.
#pragma once

#include <cntr/internal/memo/published.h>
#include <cntr/internal/memo/shared_part.h>
#include <velstd/handle.h>

class gxRegion;
class gx_ContainmentGrid;

/// What is rarely asked, made by the first question of these: measures with holes, and the repaired
/// forms, which are shared with copies.
struct gx_SeldomOfRegion {
  gx_Numbers<2> centerWithHoles;
  gx_Numbers<1> areaWithHoles;
  gx_Once<gxPtrHandle_const<gxRegion>> regularized;
  gx_Once<gxPtrHandle_const<gxRegion>> outerHull;
};

/// The results that a region has computed from its outline and holes; published and dropped as those of
/// a contour (see `gx_ContourMemory`).
struct gx_RegionMemory {
  gx_Numbers<2> centerNoHoles;
  gx_Numbers<1> areaNoHoles;     // also known once the centre is: both ways give the same bits
  gx_Numbers<4> inertiaNoHoles;  // row by row

  gx_Copied<gx_SeldomOfRegion> seldom;

  // The grid that answers most containment queries, made when rays have cost as much.
  gx_Shared<gx_ContainmentGrid> containment;
  gx_Effort rayEffort;  // what rays have cost, about, in nanoseconds; stands still once there is a grid

  /// Forgets every result.
  void drop() noexcept {
    centerNoHoles.drop();
    areaNoHoles.drop();
    inertiaNoHoles.drop();
    seldom.drop();
    containment.drop();
    rayEffort.drop();
  }
};
