// Scene 4: the edge points of the coins under a calibration.
//
//  1. The edge points stand in the picture, in pixels; the transform of the regions leads from
//     millimetres to pixels, so their points, and all their geometry, are in millimetres.
//  2. The table gives what a caliper would.
//  3. The picture shows the edge points where they were found: each draws itself as a tick along the
//     edge.  On the right one coin from near, with the gradient at every fourth point.

#include "scenes.h"
#include "shapes.h"
#include "sketch.h"

#include <veldispc/svg_tablet.h>

#include <cmath>
#include <cstdio>
#include <numbers>
#include <string>
#include <vector>

namespace {

using EdgeRegion = gxRegionT<gxEdgelet>;

double meanMagnitude(const EdgeRegion& region) {
  double sum = 0.0;
  for (const gxEdgelet& edgePoint : region.data()) sum += edgePoint.magnitude();
  return sum / static_cast<double>(region.data().size());
}

void printRegions(const std::vector<EdgeRegion>& regions) {
  std::printf(
      "\nThe calibration is made up: 0.25 mm a pixel, origin in the middle, y upwards, turned by 3\n");
  std::printf(
      "degrees.  Equal diameter: that of the circle with the coin's area.  Magnitude: mean of the\n");
  std::printf("edge points', in thousandths of a grey level a pixel.\n\n");
  std::printf(
      "coin  edge points   length      area   equal diameter   centre of mass   mean magnitude\n");
  std::printf("                      (mm)    (mm^2)             (mm)      x (mm)  y (mm)\n");
  for (const EdgeRegion& region : regions) {
    const double area = region.area(false);
    const gxVector<2> centre = region.centerOfMass(false);
    std::printf("%4lu  %11zu  %7.3f  %8.3f  %15.3f    %8.3f %7.3f  %15.0f\n", region.label(),
                region.data().size(), region.length(), area, 2.0 * std::sqrt(area / std::numbers::pi),
                centre.x(), centre.y(), meanMagnitude(region));
  }
}

// The gradient as a line from the edge into the coin, its length after the magnitude.
void drawGradients(gxUITablet& tablet, const EdgeRegion& region) {
  constexpr double kPixelsPerMagnitude = 1.0 / 12000.0;
  constexpr std::size_t kStep = 4;
  for (std::size_t i = 0; i < region.data().size(); i += kStep) {
    const gxEdgelet& edgePoint = region.data()[i];
    const gxVector<2> along(edgePoint.magnitude() * kPixelsPerMagnitude,
                            gxRadian(edgePoint.angle().toDegree()));
    drawLine(tablet, edgePoint.position(), edgePoint.position() + along, palette::kTurnedBox);
  }
}

// The axes of the calibrated frame through its origin, with a mark every 10 mm; `placement` leads from
// pixels to the picture.
void drawFrame(gxSvgTablet& tablet, const gxXform<2>& placement) {
  const gxXform<2> toPicture = placement * pixelsFromMillimetres();
  const auto draw = [&](const gxVector<2>& from, const gxVector<2>& to) {
    drawLine(tablet, toPicture * from, toPicture * to, palette::kUprightBox);
  };
  const auto write = [&](const gxVector<2>& at, const std::string& text) {
    const gxVector<2> there = toPicture * at;
    tablet.drawText({there.x(), there.y()}, text, palette::kLabel, gxUITablet::eOverlayLayer, 12.0);
  };
  draw({-44.0, 0.0}, {44.0, 0.0});
  draw({0.0, -34.0}, {0.0, 34.0});
  for (int i = -4; i <= 4; ++i) {
    if (i == 0) continue;
    draw({10.0 * i, -0.8}, {10.0 * i, 0.8});
    write({10.0 * i, -2.2}, std::to_string(10 * i));
  }
  for (int i = -3; i <= 3; ++i) {
    if (i == 0) continue;
    draw({-0.8, 10.0 * i}, {0.8, 10.0 * i});
    write({-2.4, 10.0 * i}, std::to_string(10 * i));
  }
  write({42.0, 2.0}, "x (mm)");
  write({0.0, 35.5}, "y (mm)");
}

// Every second edge point of a region: ticks are a pixel long, as far as the edge points are apart, and
// would run into each other.
EdgeRegion everySecond(const EdgeRegion& region) {
  std::vector<gxEdgelet> data;
  for (std::size_t i = 0; i < region.data().size(); i += 2) data.push_back(region.data()[i]);
  return EdgeRegion(data, region.dataFromPointsXform(), region.label());
}

void drawNear(gxSvgTablet& tablet, const EdgeRegion& region, const gxRect& panel) {
  const gxXform<2> toPixels = pixelsFromMillimetres();
  const gxRect view = region.encloseRect(toPixels);
  const gxXform<2> placement = fitInto(view, panel, false);
  PanelTablet near(tablet, placement);
  tablet.strokeWidth(1.2);
  drawGradients(near, region);
  tablet.strokeWidth(3.0);
  everySecond(region).draw(near, palette::kHull, gxUITablet::eOverlayLayer);
  tablet.strokeWidth(2.0);
  const gxVector<2> centre = placement * (toPixels * region.centerOfMass(false));
  drawCross(tablet, centre, 8.0, palette::kCentre);
  const gxVector<2> millimetre = gxVector<2>(placement.xx() * toPixels.xx(), 0.0);
  const gxVector<2> foot = centre + gxVector<2>(-millimetre.x() / 2.0, 90.0);
  drawLine(tablet, foot, foot + millimetre, palette::kOutline);
  tablet.drawText({centre.x(), foot.y() + 16.0}, "1 mm", palette::kOutline, gxUITablet::eOverlayLayer,
                  16.0);
}

void drawRegions(const std::vector<EdgeRegion>& regions, const std::filesystem::path& path) {
  constexpr std::size_t kNear = 16;
  gxSvgTablet tablet(gxRect({0.0, 0.0}, {1660.0, 800.0}), 1660.0, gxSvgTablet::eYDown, 10.0);
  tablet.background(palette::kPaper);
  tablet.title("Edge points of 24 coins");
  const gxXform<2> placement =
      fitInto(gxRect({0.0, 0.0}, {384.0, 303.0}), gxRect({0.0, 0.0}, {960.0, 757.5}), false);
  PanelTablet all(tablet, placement);
  tablet.strokeWidth(1.2);
  drawFrame(tablet, placement);
  tablet.strokeWidth(1.4);
  for (const EdgeRegion& region : regions) region.draw(all, palette::kHull, gxUITablet::eOverlayLayer);
  for (const EdgeRegion& region : regions) {
    const gxVector<2> at = placement * (pixelsFromMillimetres() * region.centerOfMass(false));
    tablet.drawText({at.x(), at.y()}, std::to_string(region.label()), palette::kLabel,
                    gxUITablet::eOverlayLayer, 15.0);
  }
  drawNear(tablet, regions.at(kNear), gxRect({1010.0, 50.0}, {620.0, 650.0}));
  tablet.drawText({480.0, 775.0},
                  "all edge points, a tick each, in the picture; axes: the calibrated frame",
                  palette::kLabel, gxUITablet::eOverlayLayer, 17.0);
  tablet.drawText({1320.0, 775.0},
                  "coin " + std::to_string(kNear) +
                      ": every second tick, every fourth gradient (longer is stronger)",
                  palette::kLabel, gxUITablet::eOverlayLayer, 17.0);
  tablet.save(path);
  std::printf("\nDrawn: %s\n", path.c_str());
}

}  // namespace

void showEdgePoints(const std::filesystem::path& data, const std::filesystem::path& out) {
  std::printf("\n== 4. Edge points under a calibration\n");
  const std::vector<EdgeRegion> regions = readEdgeRegions(data);
  printRegions(regions);
  drawRegions(regions, out / "edges.svg");
}
