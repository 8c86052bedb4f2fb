// A plate with a hole: made, measured, asked. The program of the README.

#include <gxshape/gxshape.h>

#include <cstdio>

int main() {
  gxRegion plate({{0, 0}, {40, 0}, {40, 30}, {0, 30}});
  const gxPtrHandle_const<gxRegion> hole(new gxRegion({{25, 10}, {35, 10}, {35, 20}, {25, 20}}));
  plate.holes({hole});

  const gxVector<2> centre = plate.centerOfMass(true);
  std::printf("length %g, area %g, centre (%.3f, %.3f)\n", plate.length(), plate.area(true), centre.x(),
              centre.y());

  const gxVector<2> probe(30, 12);
  std::printf("(30, 12) is %s, %g from the border\n", plate.inside(probe, true) ? "inside" : "outside",
              plate.distToPoint(probe, gxNearestOptions{}));

  const gxRegion bow({{0, 0}, {10, 10}, {10, 0}, {0, 10}});
  gxRegion repaired;
  bow.regularize(repaired);
  std::printf("the bow crosses itself: %s; repaired: %zu points, area %g\n",
              bow.isSelfIntersecting() ? "yes" : "no", repaired.points().size(), repaired.area(false));
}
