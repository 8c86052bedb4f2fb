// The inverse of a transform: the inverse matrix, and the translation carried back through it.
#include <velstd/exception.h>
#include <velstd/xform.h>

#include <cmath>

gxXform<2> gxXform<2>::inverse() const {
  const gxMatrix<2> back = matrix().inverse();
  const gxVector<2> shift = back * translation();
  if (!std::isfinite(shift.x()) || !std::isfinite(shift.y())) throw gxMathError::Singular();
  return {back, -shift};
}
