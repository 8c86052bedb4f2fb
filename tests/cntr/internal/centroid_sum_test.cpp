// The sum of triangle centres: the same bits side by side as one by one.
#include "large_outlines.h"

#include <cntr/internal/centroid_sum.h>
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

TEST(CentroidSum, MakesTheCentreOfMassOfTheSlowTruthBitForBit) {
  RandomShapes random("centres of triangles", 800);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const std::vector<gxVector<2>> points =
        random.chance(0.5) ? largeOutline(random).points : random.outline();
    EXPECT_TRUE(
        agree([&] { return gf_CenterOfMass(points); }, [&] { return slow::centerOfMass(points); }));
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
  }
}

}  // namespace
