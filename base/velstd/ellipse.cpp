// The parametric form of an ellipse.
#include <velstd/ellipse.h>
#include <velstd/matrix.h>

#include <cmath>

gxVector<2> gxEllipse::point(const gxRadian& t) const {
  const gxMatrix<2> axes(geom_.rotation, geom_.rotation, geom_.radii.x(), geom_.radii.y());
  return geom_.center + axes * gxVector<2>(std::cos(t.toDouble()), std::sin(t.toDouble()));
}
