// The shapes of the scenes.

#include "shapes.h"

#include "readers.h"

#include <cntr/shapestat.h>
#include <velstd/xform_base.h>

#include <cmath>

std::vector<gxRegion> readCoins(const std::filesystem::path& data) {
  std::vector<gxRegion> coins;
  for (const Outline& outline : readOutlines(data / "coins" / "outlines.jsonl")) {
    coins.emplace_back(outline.points);
    coins.back().label(coins.size() - 1);
  }
  return coins;
}

gxRegionSet makeCoinSet(const std::filesystem::path& data) {
  std::vector<gxRegionSet::RegionHandle> handles;
  for (const gxRegion& coin : readCoins(data)) handles.emplace_back(new gxRegion(coin));
  return gxRegionSet(handles);
}

std::vector<gxRegionT<gxEdgelet>> readEdgeRegions(const std::filesystem::path& data) {
  const gxPtrHandle_const<gx2XformBase> calibration(new gx2XformLinear(pixelsFromMillimetres()));
  std::vector<gxRegionT<gxEdgelet>> regions;
  for (const std::vector<gxEdgelet>& edgePoints : readEdgePoints(data / "coins" / "edges.csv")) {
    regions.emplace_back(edgePoints, calibration, regions.size());
  }
  return regions;
}

gxXform<2> pixelsFromMillimetres() {
  constexpr double kPixelsPerMillimetre = 4.0;
  const double angle = 3.0 / kDegrees;
  const double c = kPixelsPerMillimetre * std::cos(angle);
  const double s = kPixelsPerMillimetre * std::sin(angle);
  return {gxMatrix<2>(c, s, s, -c), gxVector<2>(191.5, 151.0)};
}

gxEllipse principalEllipse(const gxRegion& region) {
  return gf_EllipseFromInertiaData(
      gx_InertiaData(region.area(false), region.centerOfMass(false), region.inertiaMatrix(false)));
}
