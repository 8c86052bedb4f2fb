// Area, centre of mass and moments, with and without holes.
//
// A hole counts through its own outline alone, whatever its direction and wherever it lies.  With
// holes: the area is the outline's less that of each hole; the centre is Σ centre · area with the
// holes subtracted, times the reciprocal of the remaining area, which nothing keeps from being 0.
// The sum behind the centre of the outline holds its area, which is kept along with it.
#include <cntr/internal/memory/computation_count.h>
#include <cntr/internal/sums/centroid_sum.h>
#include <cntr/internal/sums/triangle_moments.h>
#include <cntr/region.h>
#include <cntr/shapestat.h>

#include <array>

namespace {

// With a centre that is known, which takes half of the time; (0, 0) may be none.
gx_InertiaData outlineInertia(const std::vector<gxVector<2>>& points, const gx_RegionMemory& memory) {
  std::array<double, 2> centre{};
  const bool known = memory.centerNoHoles.get(centre) && !(centre[0] == 0.0 && centre[1] == 0.0);
  return known ? gx_inertiaAround({centre[0], centre[1]}, points) : gf_InertiaDataPolygon(points);
}

}  // namespace

double gxRegion::area(bool considerHoles) const {
  checkEmptyContour();
  if (!considerHoles) return outlineArea_();
  const gx_SeldomOfRegion& memory = memory_.seldom.made();
  double known = 0.0;
  if (memory.areaWithHoles.get<0>(known)) return known;
  const double outline = outlineArea_();
  gx_countComputation(gx_Computation::eAreaWithHoles);
  double remaining = outline;
  for (const HoleHandle& hole : holes_) remaining = remaining - hole->area(false);
  memory.areaWithHoles.set({remaining});
  return remaining;
}

double gxRegion::outlineArea_() const {
  double area = 0.0;
  if (memory_.areaNoHoles.get<0>(area)) return area;
  gx_countComputation(gx_Computation::eArea);
  area = gf_Area(points());
  memory_.areaNoHoles.set({area});
  return area;
}

gxVector<2> gxRegion::centerOfMass(bool considerHoles) const {
  checkEmptyContour();
  if (!considerHoles) return outlineCenter_();
  const gx_SeldomOfRegion& memory = memory_.seldom.made();
  std::array<double, 2> known{};
  if (memory.centerWithHoles.get(known)) return {known[0], known[1]};
  gx_countComputation(gx_Computation::eCenterOfMassWithHoles);
  const gxVector<2> outline = outlineCenter_();
  double remaining = outlineArea_();
  gxVector<2> sum = outline * remaining;
  for (const HoleHandle& hole : holes_) {
    sum -= hole->centerOfMass(false) * hole->area(false);
    remaining = remaining - hole->area(false);
  }
  const gxVector<2> center = sum * (1.0 / remaining);
  memory.centerWithHoles.set({center.x(), center.y()});
  return center;
}

gxVector<2> gxRegion::outlineCenter_() const {
  std::array<double, 2> known{};
  if (memory_.centerNoHoles.get(known)) return {known[0], known[1]};
  gx_countComputation(gx_Computation::eCenterOfMass);
  const gx_CentreAndArea both = gx_centreAndArea(points());
  memory_.centerNoHoles.set({both.centre.x(), both.centre.y()});
  if (both.areaIsKnown) memory_.areaNoHoles.set({both.area});
  return both.centre;
}

gxMatrix<2> gxRegion::inertiaMatrix(bool considerHoles) const {
  checkEmptyContour();
  if (considerHoles && !holes_.empty()) {
    throw gxContourDefs::BadParams(L"inertiaMatrix(considerHoles) is not implemented");
  }
  std::array<double, 4> known{};
  if (memory_.inertiaNoHoles.get(known)) return {known[0], known[1], known[2], known[3]};
  gx_countComputation(gx_Computation::eInertiaMatrix);
  const gxMatrix<2> matrix = outlineInertia(points(), memory_).inertiaMatrix();
  memory_.inertiaNoHoles.set({matrix.m00(), matrix.m01(), matrix.m10(), matrix.m11()});
  return matrix;
}
