/// Everything a region set remembers about itself.
#pragma once

#include <cntr/internal/memo/keyed_memo.h>
#include <cntr/internal/memo/published.h>
#include <cntr/internal/memo/shared_part.h>
#include <cntr/internal/sets/set_index.h>
#include <velstd/handle.h>
#include <velstd/rect.h>
#include <velstd/xform.h>

class gxRegionSet;

/// The results that a region set has computed for its present regions; published and dropped as those of
/// a contour (see `gx_ContourMemory`).
struct gx_RegionSetMemory {
  gx_Numbers<2> centerWithHoles;
  gx_Numbers<2> centerNoHoles;
  gx_Numbers<1> areaWithHoles;
  gx_Numbers<1> areaNoHoles;
  gx_Numbers<4> inertiaWithHoles;  // row by row
  gx_Numbers<4> inertiaNoHoles;
  gx_Copied<gx_KeyedMemo<gxXform<2>, gxRect, gx_XformKey>> encloseRects;
  gx_YesNo selfIntersecting;

  // The repaired sets are shared with copies.
  gx_Once<gxPtrHandle_const<gxRegionSet>> regularizedSet;
  gx_Once<gxPtrHandle_const<gxRegionSet>> outerHullSet;

  // The tree over the regions' boxes, which containment and distance go through once so many
  // questions were asked that it pays.
  gx_SetIndex index;

  /// Forgets every result.
  void drop() noexcept {
    centerWithHoles.drop();
    centerNoHoles.drop();
    areaWithHoles.drop();
    areaNoHoles.drop();
    inertiaWithHoles.drop();
    inertiaNoHoles.drop();
    encloseRects.drop();
    selfIntersecting.drop();
    regularizedSet.drop();
    outerHullSet.drop();
    index.drop();
  }
};
