/// What the operations of this folder are told beside their shapes.
#pragma once

#include <overlay/limits.h>

/// The rule by which an outline encloses points, told by how often it goes around them
/// (counter-clockwise, y up, counts positive).
enum class gxFillRule : int {
  eEvenOdd = 0,   ///< an odd number of times, as `gxRegion::inside` counts
  eNonZero = 1,   ///< any number of times but 0
  ePositive = 2,  ///< more often counter-clockwise than clockwise: the one rule that asks for direction
  eOuter = 3,     ///< everything that cannot be reached from infinity, without crossing an edge
};

/// Rule and limits of a call.
///
/// The rule is that of outlines and of holes; under `ePositive` a hole counts by `eNonZero`, for holes run
/// either way.  Boolean operations take `eOuter` as `eNonZero`.
struct gxOverlayOptions {
  gxFillRule rule = gxFillRule::eEvenOdd;
  gxOverlayLimits limits;
};
