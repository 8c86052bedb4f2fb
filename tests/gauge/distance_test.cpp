#include <gauge/distance.h>
#include <gauge/internal/segments.h>
#include <gtest/gtest.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <sstream>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Handle = gxPtrHandle_const<gxRegion>;

gxRegion square(double low, double high) {
  return gxRegion(Points{{low, low}, {high, low}, {high, high}, {low, high}});
}

TEST(ShapeDistance, ApartWithBothPlaces) {
  const gxRegion a = square(0, 2);
  const gxRegion b(pointsOf("5 1, 9 0, 9 3"));
  const auto d = gfDistance(a, b);
  EXPECT_EQ(d.status, gxStatus::eOk);
  EXPECT_EQ(d.distance, 3.0);
  EXPECT_EQ(d.from, (gxPlace{-1, 2, 0.5, {2, 1}}));
  EXPECT_EQ(d.to.point, V(5, 1));
  EXPECT_EQ(d.to.edge, 0);
  EXPECT_EQ(d.fromRegion, 0);
  EXPECT_EQ(gfDistance(b, a).distance, 3.0);
}

TEST(ShapeDistance, TouchingAndCrossingAreZero) {
  EXPECT_EQ(gfDistance(square(0, 2), square(2, 4)).distance, 0.0);
  EXPECT_EQ(gfDistance(square(0, 2), square(2, 4)).from.point, V(2, 2));
  EXPECT_EQ(gfDistance(square(0, 2), square(1, 4)).distance, 0.0);
  EXPECT_GT(gfDistance(square(0, 2), square(std::nextafter(2, 3), 4)).distance, 0.0);
}

TEST(ShapeDistance, InsideTheMaterialIsZeroAndInAHoleIsNot) {
  const auto within = gfDistance(square(1, 2), square(0, 9));
  EXPECT_EQ(within.distance, 0.0);
  EXPECT_EQ(within.from.point, V(1, 1));
  EXPECT_FALSE(within.to.valid());
  const auto around = gfDistance(square(0, 9), square(1, 2));
  EXPECT_EQ(around.distance, 0.0);
  EXPECT_FALSE(around.from.valid());
  EXPECT_EQ(around.to.point, V(1, 1));
  gxRegion holed = square(0, 9);
  holed.holes({Handle(new gxRegion(square(1, 8)))});
  EXPECT_EQ(gfDistance(square(3, 4), holed).distance, 2.0);
  EXPECT_EQ(gfDistance(square(3, 4), holed).to.ring, 0);
  const gxContour open(pointsOf("0 0, 9 0, 9 9, 0 9, 0 1"), false);
  EXPECT_EQ(gfDistance(square(3, 4), open).distance, 3.0);
}

TEST(ShapeDistance, DegenerateShapes) {
  EXPECT_EQ(gfDistance(gxRegion(), square(0, 1)).status, gxStatus::eEmpty);
  EXPECT_TRUE(std::isnan(gfDistance(gxRegion(), square(0, 1)).distance));
  EXPECT_EQ(gfDistance(gxRegion(), gxRegion(pointsOf("0 nan"))).status, gxStatus::eNotFinite);
  EXPECT_EQ(gfDistance(gxRegion(pointsOf("0 0")), gxRegion(pointsOf("3 4"))).distance, 5.0);
  EXPECT_EQ(gfDistance(gxRegion(pointsOf("0 0, 1 0")), gxRegion(pointsOf("3 0, 4 4"))).distance, 2.0);
  for (const double scale : {1e300, 3e307, 1e-300}) {
    EXPECT_DOUBLE_EQ(
        gfDistance(gxRegion(Points{{0, 0}}), gxRegion(Points{{3 * scale, 4 * scale}})).distance / scale,
        5.0);
  }
}

TEST(ShapeDistance, SetsNameTheirRegions) {
  gxRegionSet set;
  set.add(Handle(new gxRegion(square(0, 1))));
  set.add(Handle(new gxRegion(square(5, 6))));
  const auto d = gfDistance(set, gxRegion(pointsOf("8 5.5, 9 5, 9 6")));
  EXPECT_EQ(d.distance, 2.0);
  EXPECT_EQ(d.fromRegion, 1);
  EXPECT_EQ(d.toRegion, 0);
}

TEST(ShapeDistance, RandomOutlinesAgainstAllPairsOfEdges) {
  RandomShapes random("shape distance", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto a = random.star(random.integer(3, 80), {0, 0}, 0.4, 1.0);
    const auto b =
        random.star(random.integer(3, 80), {random.uniform(-3, 3), random.uniform(-3, 3)}, 0.2, 1.0);
    const gxContour first(a, false);
    const gxContour second(b, false);
    const auto d = gfDistance(first, second);
    double least = HUGE_VAL;
    for (std::size_t i = 1; i < a.size(); ++i) {
      for (std::size_t j = 1; j < b.size(); ++j)
        least = std::min(least, gx_gapBetween(a[i - 1], a[i], b[j - 1], b[j]).distance);
    }
    EXPECT_NEAR(d.distance, least, 1e-15);
    EXPECT_NEAR((d.from.point - d.to.point).len(), d.distance, 1e-14);
  }
}

TEST(ShapeDistance, Prints) {
  std::ostringstream out;
  out << gfDistance(gxRegion(pointsOf("0 0")), gxRegion(pointsOf("3 4")));
  EXPECT_EQ(out.str(), "distance 5 from ring -1 edge 0 t 0 at (0, 0) to ring -1 edge 0 t 0 at (3, 4)");
}

}  // namespace
