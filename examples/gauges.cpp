// What an inspection asks of a part: how large, how thin, how far from the golden one, how round.

#include <cntr/region.h>
#include <gauge/gauge.h>

#include <cstdio>
#include <vector>

int main() {
  // A plate of 40 by 20 with a hole, and one that was made: turned, moved, with a chip in its upper side.
  gxRegion golden({{0, 0}, {40, 0}, {40, 20}, {0, 20}});
  golden.holes({gxRegion::HoleHandle(new gxRegion({{6, 6}, {14, 6}, {14, 14}, {6, 14}}))});

  const gxFeret feret = gfFeret(golden);
  const gxMoments moments = gfMoments(golden);
  std::printf("width %g to %g, area %g, centre (%.3f, %g)\n", feret.feretMin, feret.feretMax,
              moments.area, moments.centre.x(), moments.centre.y());
  std::printf("thinnest wall %g, largest circle inside %g\n", gfSmallestWall(golden).wall,
              gfInscribedCircle(golden).radius);

  std::vector<gxVector<2>> outline{{0, 0}, {40, 0}, {40, 20}, {31, 20}, {30, 19.5}, {29, 20}, {0, 20}};
  std::vector<gxVector<2>> hole{{6, 6}, {14, 6}, {14, 14}, {6, 14}};
  for (std::vector<gxVector<2>>* ring : {&outline, &hole}) {
    for (gxVector<2>& p : *ring) p = {0.8 * p.x() - 0.6 * p.y() + 100, 0.6 * p.x() + 0.8 * p.y()};
  }
  gxRegion part(outline);
  part.holes({gxRegion::HoleHandle(new gxRegion(hole))});

  const gxAlignment alignment = gfAlign(part, golden);
  std::printf("turned by %.4f degrees\n", -alignment.angle.toDouble() * gx_kDegreesPerRadian);
  gxRegion laid(part);
  part.map(alignment.transform(), laid);
  const gxDeviation deviation = gfDeviation(laid, golden, {.lower = -0.2, .upper = 0.2});
  std::printf("deviation %.3f to %.3f, %zu stretch out of tolerance, %.2f long, worst on edge %ld\n",
              deviation.deviationMin, deviation.deviationMax, deviation.stretches.size(),
              deviation.stretches[0].length, deviation.stretches[0].worst.edge);

  // Points of a turned surface, probed at eight places.
  const std::vector<gxVector<2>> probed{
      {-13.93285, 6.62144}, {-10.04374, 9.34289}, {-5.3716, 8.5062},     {-2.64147, 4.61692},
      {-3.37999, -0.12926}, {-7.34141, -2.90926}, {-12.11852, -2.06743}, {-14.8844, 1.92115}};
  const gxRoundness zone = gfRoundness(probed);
  const gxRobustCircle circle = gfRobustCircle(probed);
  std::printf("roundness %.5f by the minimum zone, radius %.4f within %.4f\n", zone.roundness,
              circle.radius, circle.radiusError);
}
