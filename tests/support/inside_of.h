/// The question what is inside a loop, as a region answers it.
#pragma once

#include <cntr/internal/repair/loops.h>
#include <cntr/region.h>

#include <memory>
#include <vector>

inline gx_Loops::Inside insideOf(const std::vector<gxVector<2>>& loop) {
  return [region = std::make_shared<const gxRegion>(loop)](const gxVector<2>& point) {
    return region->inside(point, true);
  };
}
