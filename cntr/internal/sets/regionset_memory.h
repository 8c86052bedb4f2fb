/// Everything a region set remembers about itself.
#pragma once

#include <cntr/internal/memory/bounded_memo.h>
#include <cntr/internal/outline/deep_ptr.h>
#include <cntr/internal/sets/region_index.h>
#include <velstd/handle.h>
#include <velstd/matrix.h>
#include <velstd/rect.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <cstdint>
#include <memory>

class gxRegionSet;

/// The results that a region set has computed, each beside the flag that says whether it holds for
/// the present regions.  Copied with the set, dropped by one call.
struct gx_RegionSetMemory {
  bool centerWithHolesValid = false;
  gxVector<2> centerWithHoles;
  bool centerNoHolesValid = false;
  gxVector<2> centerNoHoles;

  bool areaWithHolesValid = false;
  double areaWithHoles = 0.0;
  bool areaNoHolesValid = false;
  double areaNoHoles = 0.0;

  gx_DeepPtr<gx_BoundedMemo<gxXform<2>, gxRect, gx_XformKey>> encloseRects;

  bool inertiaWithHolesValid = false;
  gxMatrix<2> inertiaWithHoles;
  bool inertiaNoHolesValid = false;
  gxMatrix<2> inertiaNoHoles;

  bool selfIntersecting = false;
  bool selfIntersectingValid = false;

  // The repaired sets are shared with copies.  They outlive the drop of their flags, until the next
  // repair puts others in their place.
  bool regularizedValid = false;
  gxPtrHandle_const<gxRegionSet> regularizedSet;
  bool outerHullValid = false;
  gxPtrHandle_const<gxRegionSet> outerHullSet;

  // The tree over the regions' boxes, which containment and distance go through once so many
  // questions were asked that it pays, and at which count of questions to try to make it.  It is used
  // only while it says itself that the regions are still what they were, and shared with copies of the
  // set, which share the regions.
  std::shared_ptr<gx_RegionIndex> index;
  std::uint64_t questions = 0;
  std::uint64_t nextTry = kFirstTry;
  static constexpr std::uint64_t kFirstTry = 8;

  /// Forgets the tree, as where the regions become others and all else is kept.
  void dropIndex() noexcept {
    index.reset();
    questions = 0;
    nextTry = kFirstTry;
  }

  /// Forgets every result.
  void drop() noexcept {
    dropIndex();
    encloseRects.reset();
    centerWithHolesValid = centerNoHolesValid = false;
    areaWithHolesValid = areaNoHolesValid = false;
    areaWithHoles = areaNoHoles = 0.0;
    inertiaWithHolesValid = inertiaNoHolesValid = false;
    selfIntersectingValid = false;
    regularizedValid = outerHullValid = false;
  }
};
