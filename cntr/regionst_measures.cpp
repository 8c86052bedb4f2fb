// Area, centre of mass, moments and enclosing rectangle of all regions together.
//
// The regions count as disjoint.  Areas add up; the centre is Σ area · centre over Σ area; moments
// add up record by record, each addition moving both records to their common centre; rectangles
// enclose one another, region by region.
//
// Each answer is remembered after the whole of it was computed, and only then is the change
// reported; an answer from memory reports nothing.
#include <cntr/internal/memory/computation_count.h>
#include <cntr/regionst.h>
#include <cntr/shapestat.h>

#include <array>
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
  const auto& memo = considerHoles ? state_.memory.areaWithHoles : state_.memory.areaNoHoles;
  double area = 0.0;
  if (memo.get<0>(area)) return area;
  gx_countComputation(gx_Computation::eSetArea);
  area = 0.0;
  for (const RegionHandle& region : state_.regions) area += region->area(considerHoles);
  if (memo.setFirst({area})) mutating_();
  return area;
}

gxVector<2> gxRegionSet::centerOfMass(bool considerHoles) const {
  checkEmptyRegionSet();
  const auto& memo = considerHoles ? state_.memory.centerWithHoles : state_.memory.centerNoHoles;
  std::array<double, 2> known{};
  if (memo.get(known)) return {known[0], known[1]};
  gx_countComputation(gx_Computation::eSetCenterOfMass);
  const gxVector<2> center = commonCenter(state_.regions, considerHoles);
  if (memo.setFirst({center.x(), center.y()})) mutating_();
  return center;
}

gxMatrix<2> gxRegionSet::inertiaMatrix(bool considerHoles) const {
  checkEmptyRegionSet();
  const auto& memo = considerHoles ? state_.memory.inertiaWithHoles : state_.memory.inertiaNoHoles;
  std::array<double, 4> known{};
  if (memo.get(known)) return {known[0], known[1], known[2], known[3]};
  gx_countComputation(gx_Computation::eSetInertiaMatrix);
  const gxMatrix<2> inertia = commonInertia(state_.regions, considerHoles);
  if (memo.setFirst({inertia.m00(), inertia.m01(), inertia.m10(), inertia.m11()})) mutating_();
  return inertia;
}

gxRect gxRegionSet::encloseRect(const gxXform<2>& xform) const {
  checkEmptyRegionSet();
  auto& memo = state_.memory.encloseRects.made();
  gxRect rect;
  if (memo.find(xform, rect)) return rect;
  gx_countComputation(gx_Computation::eSetEncloseRect);
  rect = commonRect(state_.regions, xform);
  memo.insert(xform, rect, state_.cachedVectorSize);
  mutating_();
  return rect;
}
