/// Everything a region remembers beside what its outline remembers.
#pragma once

#include <cntr/internal/index/containment_grid.h>
#include <cntr/internal/outline/deep_ptr.h>
#include <velstd/handle.h>
#include <velstd/matrix.h>
#include <velstd/vector.h>

#include <cstdint>

class gxRegion;

/// The results that a region has computed from its outline and holes, each beside the flag that
/// says whether it holds.  Copied with the region, dropped by one call.
struct gx_RegionMemory {
  bool centerWithHolesValid = false;
  gxVector<2> centerWithHoles;
  bool centerNoHolesValid = false;
  gxVector<2> centerNoHoles;

  bool areaWithHolesValid = false;
  double areaWithHoles = 0.0;
  bool areaNoHolesValid = false;
  double areaNoHoles = 0.0;

  bool inertiaNoHolesValid = false;
  gxMatrix<2> inertiaNoHoles;

  // The repaired regions are shared with copies.  They outlive the drop of their flags, until the
  // next repair puts others in their place.
  bool regularizedValid = false;
  gxPtrHandle_const<gxRegion> regularized;
  bool outerHullValid = false;
  gxPtrHandle_const<gxRegion> outerHull;

  // The grid that answers most containment queries, made when rays have cost as much.
  gx_DeepPtr<gx_ContainmentGrid> containment;
  std::uint64_t rayEffort = 0;  // what rays have cost, about, in nanoseconds

  /// Forgets every result.
  void drop() noexcept {
    centerWithHolesValid = centerNoHolesValid = false;
    areaWithHolesValid = areaNoHolesValid = false;
    areaWithHoles = areaNoHoles = 0.0;
    inertiaNoHolesValid = false;
    regularizedValid = outerHullValid = false;
    containment.reset();
    rayEffort = 0;
  }
};
