// Area, centre of mass, moments and enclosing rectangle of all regions together.
//
// The regions count as disjoint.  Areas add up; the centre is Σ area · centre over Σ area; moments
// add up record by record, each addition moving both records to their common centre; rectangles
// enclose one another, region by region.
//
// Each answer is remembered after the whole of it was computed, and only then is the change
// reported; an answer from memory reports nothing.
#include <cntr/internal/memory/probe.h>
#include <cntr/regionst.h>
#include <cntr/shapestat.h>

#include <cmath>

namespace {

using Regions = std::vector<gxPtrHandle_const<gxRegion>>;

// A total area up to this is none: a centre divided by it would be rounding alone.
constexpr double kNoArea = 1e-15;

gxVector<2> commonCenter(const Regions& regions, bool considerHoles) {
  gxVector<2> sum;
  double total = 0.0;
  for (const gxPtrHandle_const<gxRegion>& region : regions) {
    const double area = region->area(considerHoles);
    sum += region->centerOfMass(considerHoles) * area;
    total += area;
  }
  if (std::abs(total) > kNoArea) return sum / total;
  return {};
}

gxMatrix<2> commonInertia(const Regions& regions, bool considerHoles) {
  gx_InertiaData sum;
  for (const gxPtrHandle_const<gxRegion>& region : regions) {
    const gxMatrix<2> matrix = region->inertiaMatrix(considerHoles);
    const gxVector<2> center = region->centerOfMass(considerHoles);
    const double area = region->area(considerHoles);
    sum = sum + gx_InertiaData(area, center, matrix);
  }
  return sum.inertiaMatrix();
}

gxRect commonRect(const Regions& regions, const gxXform<2>& xform) {
  gxRect rect = regions.front()->encloseRect(xform);
  for (std::size_t i = 1; i < regions.size(); ++i) rect = rect.enclose(regions[i]->encloseRect(xform));
  return rect;
}

}  // namespace

double gxRegionSet::area(bool considerHoles) const {
  gx_RegionSetMemory& memory = state_.memory;
  bool& valid = considerHoles ? memory.areaWithHolesValid : memory.areaNoHolesValid;
  double& area = considerHoles ? memory.areaWithHoles : memory.areaNoHoles;
  if (valid) return area;
  gx_countComputation(gx_Computation::eSetArea);
  double sum = 0.0;
  for (const RegionHandle& region : state_.regions) sum += region->area(considerHoles);
  area = sum;
  valid = true;
  mutating_();
  return area;
}

gxVector<2> gxRegionSet::centerOfMass(bool considerHoles) const {
  checkEmptyRegionSet();
  gx_RegionSetMemory& memory = state_.memory;
  bool& valid = considerHoles ? memory.centerWithHolesValid : memory.centerNoHolesValid;
  gxVector<2>& center = considerHoles ? memory.centerWithHoles : memory.centerNoHoles;
  if (valid) return center;
  gx_countComputation(gx_Computation::eSetCenterOfMass);
  center = commonCenter(state_.regions, considerHoles);
  valid = true;
  mutating_();
  return center;
}

gxMatrix<2> gxRegionSet::inertiaMatrix(bool considerHoles) const {
  checkEmptyRegionSet();
  gx_RegionSetMemory& memory = state_.memory;
  bool& valid = considerHoles ? memory.inertiaWithHolesValid : memory.inertiaNoHolesValid;
  gxMatrix<2>& inertia = considerHoles ? memory.inertiaWithHoles : memory.inertiaNoHoles;
  if (valid) return inertia;
  gx_countComputation(gx_Computation::eSetInertiaMatrix);
  inertia = commonInertia(state_.regions, considerHoles);
  valid = true;
  mutating_();
  return inertia;
}

gxRect gxRegionSet::encloseRect(const gxXform<2>& xform) const {
  checkEmptyRegionSet();
  auto& memo = state_.memory.encloseRects.made();
  if (const gxRect* known = memo.find(xform)) return *known;
  gx_countComputation(gx_Computation::eSetEncloseRect);
  const gxRect rect = commonRect(state_.regions, xform);
  memo.insert(xform, rect, state_.cachedVectorSize);
  mutating_();
  return rect;
}
