// Shapes as what they hold: a repair without the classes around it.
#include <overlay/internal/arranged.h>

#include <overlay/internal/operand_rings.h>

std::vector<gx_ResultRegion> gx_settled(const gxShapes& shape, gx_Steps& steps) {
  gx_OperandRings rings;
  rings.add(shape, 0, gxFillRule::eEvenOdd);
  const gx_Arrangement arrangement(rings.list, steps);
  return arrangement.regions(arrangement.label(1, gx_Membership::eUnion), gx_Keep());
}
