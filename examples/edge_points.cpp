// Edge points of a picture, in millimetres: 0.1 mm a pixel, the origin at pixel (100, 100).

#include <ch_core/cntrtmpl.h>

#include <cstdio>

int main() {
  // An edge detector reports position (px), magnitude, and the gradient's direction in 256ths of a turn.
  const std::vector<gxEdgelet> found = {{{100, 100}, 900, gxAngle8(96)},
                                        {{300, 100}, 850, gxAngle8(32)},
                                        {{300, 200}, 870, gxAngle8(224)},
                                        {{100, 200}, 910, gxAngle8(160)}};

  const gxXform<2> pixelsFromMillimetres(gxMatrix<2>(10, 0, 0, 10), gxVector<2>(100, 100));
  const gxPtrHandle_const<gx2XformBase> calibration(new gx2XformLinear(pixelsFromMillimetres));
  gxRegionT<gxEdgelet> part(found, calibration);

  const gxVector<2> centre = part.centerOfMass(false);
  std::printf("%g mm by %g mm, area %g mm^2, centre (%g, %g) mm\n",
              part.encloseRect(gxXform<2>::I).size().x(), part.encloseRect(gxXform<2>::I).size().y(),
              part.area(false), centre.x(), centre.y());

  const gxEdgelet where = part.datum(centre);
  std::printf("the centre in the picture: (%g, %g) px\n", where.position().x(), where.position().y());

  // New points make new edge points, which nobody has measured: magnitude 0.
  part.points({{0, 0}, {10, 0}, {10, 10}});
  std::printf("after setting the points: %zu edge points, magnitude %d\n", part.data().size(),
              static_cast<int>(part.data()[0].magnitude()));
}
