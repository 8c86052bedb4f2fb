// The results that other rooms put into an argument, as values.
#include <cntr/contour.h>
#include <cntr/region.h>

gxRegion gxContour::convexHull() const {
  gxRegion hull;
  convexHull(hull);
  return hull;
}

gxFittedEllipse gxContour::fitEllipse() const {
  gxFittedEllipse fitted;
  fitEllipse(fitted.ellipse, fitted.residual);
  return fitted;
}

gxContour gxContour::mapped(const gxXform<2>& xform) const {
  gxContour result;
  map(xform, result);
  return result;
}
