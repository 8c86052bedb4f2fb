/// From the classes to rings and back.
#pragma once

#include <cntr/export.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <overlay/internal/arrangement.h>
#include <overlay/options.h>
#include <overlay/shapes.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// The rings of operands: outlines, holes, holes of holes, with the regions that they come from.
struct gx_OperandRings {
  gx_RingList list;
  std::vector<const gxRegion*> regions;  ///< of every ring; null for an open chain

  /// Adds the regions of an operand.
  /// Throws: gxBadPointer for a null hole; BadParams "holes nest too deeply".
  GXSHAPE_API void add(const gxShapes& shapes, std::uint32_t operand, gxFillRule rule);
};

/// Returns the rule of a ring that stands for a rule of the interface; that of a hole with `isHole`.
inline gx_RingRule gx_ringRule(gxFillRule rule, bool isHole) {
  if (rule == gxFillRule::eEvenOdd) return gx_RingRule::eEvenOdd;
  return rule == gxFillRule::ePositive && !isHole ? gx_RingRule::ePositive : gx_RingRule::eNonZero;
}

/// Makes regions whose holes were checked already, by other means than `gxRegion::holes`, which refuses
/// holes that touch their outline.
class GXSHAPE_API gx_ValidRegion {
 public:
  static gxPtrHandle<gxRegion> make(const gx_ResultRegion& region);
  /// Sets the holes of a region that remembers nothing yet.
  static void setHoles(gxRegion& region, std::vector<gxRegion::HoleHandle> holes);
};

/// Returns regions as a set.
GXSHAPE_API gxRegionSet gx_regionSetOf(const std::vector<gx_ResultRegion>& regions);
