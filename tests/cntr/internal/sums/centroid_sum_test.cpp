// The sum of triangle centres: the same bits side by side as one by one.
#include <support/large_outlines.h>

#include <cntr/internal/sums/centroid_sum.h>
#include <cntr/shapestat.h>
#include <support/same_bits.h>
#include <support/slow_truth_stats.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(CentroidSum, OfASquareIsItsAreaTwiceAndItsCentre) {
  const gx_CentroidSum sum = gx_sumCentroids({{0, 0}, {2, 0}, {2, 2}, {0, 2}});
  EXPECT_EQ(sum.weight, 8.0);
  EXPECT_DOUBLE_EQ(sum.x / sum.weight, 1.0);
  EXPECT_DOUBLE_EQ(sum.y / sum.weight, 1.0);
}

TEST(CentroidSum, OfPointsOnALineIsZero) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < 20; ++i) points.emplace_back(i, 2 * i);
  EXPECT_EQ(gx_sumCentroids(points).weight, 0.0);
}

TEST(CentroidSum, FlatTrianglesAreLeftOutOneByOne) {
  // Vertices on the sides of a triangle: many of the fan's triangles have no area.
  std::vector<gxVector<2>> points;
  for (int i = 0; i < 9; ++i) points.emplace_back(i, 0);
  for (int i = 0; i < 9; ++i) points.emplace_back(9 - i, i);
  for (int i = 0; i < 9; ++i) points.emplace_back(0, 9 - i);
  EXPECT_EQ(gx_sumCentroids(points).weight, 81.0);
}

// The area, where the sum gives it, is that of the slow truth.
void expectSameArea(const std::vector<gxVector<2>>& points) {
  const gx_CentreAndArea both = gx_centreAndArea(points);
  if (!both.areaIsKnown) return;
  EXPECT_TRUE(agree([&] { return both.area; }, [&] { return slow::area(points); }));
}

TEST(CentroidSum, BringsTheAreaOfAnOrdinaryOutlineAlong) {
  const gx_CentreAndArea both = gx_centreAndArea({{5, 5}, {7, 5}, {7, 7}, {5, 7}});
  EXPECT_TRUE(both.areaIsKnown);
  EXPECT_EQ(both.area, 4.0);
  EXPECT_EQ(both.centre, gxVector<2>(6, 6));
}

TEST(CentroidSum, DoesNotKnowTheAreaWhereATriangleIsTooSmallToCount) {
  EXPECT_FALSE(gx_centreAndArea({{0, 0}, {1e-10, 0}, {1, 1e-10}, {1, 1}, {0, 1}}).areaIsKnown);
  std::vector<gxVector<2>> many;
  for (int i = 0; i < 40; ++i) many.emplace_back(i, i * i);
  many[20] = {1e-10, 0};
  many[21] = {1e-10, 1e-10};
  EXPECT_FALSE(gx_centreAndArea(many).areaIsKnown);
}

TEST(CentroidSum, DoesNotKnowTheAreaOfPointsThatAreNotFinite) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  for (const double value : {kInfinity, -kInfinity, kNaN}) {
    for (std::size_t i = 0; i < 12; ++i) {
      std::vector<gxVector<2>> points;
      for (int k = 0; k < 12; ++k) points.emplace_back(k, k * k);
      points[i] = gxVector<2>(value, 1.0);
      expectSameArea(points);
      points[i] = gxVector<2>(1.0, value);
      expectSameArea(points);
    }
  }
}

TEST(CentroidSum, MakesTheCentreOfMassOfTheSlowTruthBitForBit) {
  RandomShapes random("centres of triangles", 800);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const std::vector<gxVector<2>> points =
        random.chance(0.5) ? largeOutline(random).points : random.outline();
    EXPECT_TRUE(
        agree([&] { return gf_CenterOfMass(points); }, [&] { return slow::centerOfMass(points); }));
    expectSameArea(points);
  }
}

TEST(CentroidSum, ANumberOutOfTheOrdinaryAmongOthersChangesNothingForThem) {
  RandomShapes random("spoiled centres", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<gxVector<2>> points = random.outline(OutlineKind::eStar, random.integer(5, 40));
    const auto i = static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1));
    const double values[] = {1e130,
                             1e-130,
                             1e300,
                             5e-324,
                             std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()};
    points[i] = gxVector<2>(values[random.integer(0, 5)], values[random.integer(0, 5)]);
    EXPECT_TRUE(
        agree([&] { return gf_CenterOfMass(points); }, [&] { return slow::centerOfMass(points); }));
    expectSameArea(points);
  }
}

}  // namespace
