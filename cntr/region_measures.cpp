// Area, centre of mass and moments, with and without holes.
//
// A hole counts through its own outline alone, whatever its direction and wherever it lies.  With
// holes: the area is the outline's less that of each hole; the centre is Σ centre · area with the
// holes subtracted, times the reciprocal of the remaining area, which nothing keeps from being 0.
// The sum behind the centre of the outline holds its area, which is kept along with it.
#include <cntr/internal/memory/probe.h>
#include <cntr/internal/sums/centroid_sum.h>
#include <cntr/region.h>
#include <cntr/shapestat.h>

double gxRegion::area(bool considerHoles) const {
  checkEmptyContour();
  if (!memory_.areaNoHolesValid && !(considerHoles && memory_.areaWithHolesValid)) {
    gx_countComputation(gx_Computation::eArea);
    memory_.areaNoHoles = gf_Area(points());
    memory_.areaNoHolesValid = true;
  }
  if (!considerHoles) return memory_.areaNoHoles;
  if (!memory_.areaWithHolesValid) {
    gx_countComputation(gx_Computation::eAreaWithHoles);
    double remaining = memory_.areaNoHoles;
    for (const HoleHandle& hole : holes_) remaining = remaining - hole->area(false);
    memory_.areaWithHoles = remaining;
    memory_.areaWithHolesValid = true;
  }
  return memory_.areaWithHoles;
}

gxVector<2> gxRegion::centerOfMass(bool considerHoles) const {
  checkEmptyContour();
  if (considerHoles) {
    if (memory_.centerWithHolesValid) return memory_.centerWithHoles;
    gx_countComputation(gx_Computation::eCenterOfMassWithHoles);
    const gxVector<2> outline = centerOfMass(false);
    double remaining = area(false);
    gxVector<2> sum = outline * remaining;
    for (const HoleHandle& hole : holes_) {
      sum -= hole->centerOfMass(false) * hole->area(false);
      remaining = remaining - hole->area(false);
    }
    memory_.centerWithHoles = sum * (1.0 / remaining);
    memory_.centerWithHolesValid = true;
    return memory_.centerWithHoles;
  }
  if (!memory_.centerNoHolesValid) {
    gx_countComputation(gx_Computation::eCenterOfMass);
    const gx_CentreAndArea both = gx_centreAndArea(points());
    memory_.centerNoHoles = both.centre;
    memory_.centerNoHolesValid = true;
    if (both.areaIsKnown) {
      memory_.areaNoHoles = both.area;
      memory_.areaNoHolesValid = true;
    }
  }
  return memory_.centerNoHoles;
}

gxMatrix<2> gxRegion::inertiaMatrix(bool considerHoles) const {
  checkEmptyContour();
  if (considerHoles && !holes_.empty()) {
    throw gxContourDefs::BadParams(L"inertiaMatrix(considerHoles) is not implemented");
  }
  if (!memory_.inertiaNoHolesValid) {
    gx_countComputation(gx_Computation::eInertiaMatrix);
    memory_.inertiaNoHoles = gf_InertiaDataPolygon(points()).inertiaMatrix();
    memory_.inertiaNoHolesValid = true;
  }
  return memory_.inertiaNoHoles;
}
