/// What the functions of overlay take for a shape.
#pragma once

#include <cntr/export.h>
#include <cntr/region.h>
#include <cntr/regionst.h>

#include <vector>

/// A shape as an argument: a region, a set, or a list of either, holes and islands included, seen as the
/// points that one of its regions holds.  It refers to what it was made of, which must outlive it.
class GXSHAPE_API gxShapes {
 public:
  // NOLINTBEGIN(google-explicit-constructor): an argument is to be written as the shape that it is
  gxShapes(const gxRegion& region);
  gxShapes(const gxRegionSet& set);
  gxShapes(const std::vector<gxRegion>& regions);
  gxShapes(const std::vector<gxRegionSet>& sets);
  gxShapes(const std::vector<gxPtrHandle_const<gxRegion>>& regions);
  gxShapes(const std::vector<gxPtrHandle<gxRegion>>& regions);
  // NOLINTEND(google-explicit-constructor)

  /// Returns the regions in order.  The constructors throw gxBadPointer for a null handle.
  const std::vector<const gxRegion*>& regions() const { return regions_; }

 private:
  std::vector<const gxRegion*> regions_;
};
