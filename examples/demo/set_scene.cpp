// Scene 3: the coins as one shape.
//
//  1. The regions go into a set, which shares them.
//  2. Area, centre of mass and second moments of all coins together.
//  3. The enclosing rectangle in three frames: upright, turned, and in calibrated millimetres.
//  4. Containment and distance of a few points.

#include "scenes.h"
#include "shapes.h"
#include "sketch.h"

#include <cntr/shapestat.h>

#include <cstdio>
#include <vector>

namespace {

void printMeasures(const gxRegionSet& coins) {
  const gxVector<2> centre = coins.centerOfMass(true);
  const gxMatrix<2> inertia = coins.inertiaMatrix(true);
  const gxEllipse axes = gf_EllipseFromInertiaData(gx_InertiaData(coins.area(true), centre, inertia));
  std::printf("\n%zu regions, area %.2f px^2, centre of mass (%.2f, %.2f) px, %s\n",
              coins.regions().size(), coins.area(true), centre.x(), centre.y(),
              coins.isSelfIntersecting() ? "some of them meet" : "no two of them meet");
  std::printf("second moments about the centre (px^4): xx %.6g, xy %.6g, yy %.6g\n", inertia.m00(),
              inertia.m01(), inertia.m11());
  std::printf("principal axis at %.2f degrees\n", axes.geom().rotation.toDouble() * kDegrees);
}

void printFrames(const gxRegionSet& coins) {
  struct Frame {
    const char* name;
    const char* unit;
    gxXform<2> xform;
  };
  const Frame frames[] = {{"upright", "px", gxXform<2>::I},
                          {"turned by 30 degrees", "px", turned(30.0 / kDegrees)},
                          {"calibrated (see scene 5)", "mm", pixelsFromMillimetres().inverse()}};
  std::printf("\nenclosing rectangle               x        y    width   height\n");
  for (const Frame& frame : frames) {
    const gxRect box = coins.encloseRect(frame.xform);
    std::printf("%-24s   %8.2f %8.2f %8.2f %8.2f  %s\n", frame.name, box.origin().x(), box.origin().y(),
                box.size().x(), box.size().y(), frame.unit);
  }
}

void printPoints(const gxRegionSet& coins) {
  std::printf("\npoint (px)         in a coin   to the border   to the nearest coin\n");
  for (const gxVector<2>& point : {gxVector<2>(44, 54), gxVector<2>(60, 54), gxVector<2>(75, 90),
                                   gxVector<2>(192, 152), gxVector<2>(0, 0)}) {
    std::printf("(%5.1f, %5.1f)     %-9s   %13.3f   %19.3f\n", point.x(), point.y(),
                coins.inside(point, true) ? "yes" : "no", coins.distToPoint(point, false, true, false),
                coins.distToPoint(point, false, true, true));
  }
}

}  // namespace

void showCoinSet(const std::filesystem::path& data) {
  std::printf("\n== 3. The coins as one shape\n");
  const gxRegionSet coins = makeCoinSet(data);
  printMeasures(coins);
  printFrames(coins);
  printPoints(coins);
}
