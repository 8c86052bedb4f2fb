// The farthest pair through the index, held against all pairs.
#include <support/large_outlines.h>

#include <cntr/contour.h>
#include <cntr/internal/search/farthest_pair.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

gx_Pair pairOf(const std::vector<gxVector<2>>& points, bool closed = true) {
  gxBudget unlimited;
  return gx_farthestPair(gx_EdgeIndex({points, closed}), {points, closed}, unlimited);
}

TEST(FarthestPair, OfEqualPointsHasDistanceZero) {
  EXPECT_EQ(pairOf(std::vector<gxVector<2>>(100, gxVector<2>(3, 4))).distance, 0.0);
}

TEST(FarthestPair, OfEqualDistancesTheLowestIndicesWin) {
  std::vector<gxVector<2>> points;  // to and fro between two places
  for (int i = 0; i < 100; ++i) points.emplace_back(i % 2 == 0 ? 0 : 10, 0);
  const gx_Pair pair = pairOf(points);
  EXPECT_EQ(pair.i, 0U);
  EXPECT_EQ(pair.j, 1U);
  EXPECT_EQ(pair.distance, 10.0);
}

TEST(FarthestPair, TheFirstPointOfAnOpenContourTakesPart) {
  std::vector<gxVector<2>> points{{-1000, 0}};
  for (int i = 0; i < 100; ++i) points.emplace_back(i, 0);
  const gx_Pair pair = pairOf(points, false);
  EXPECT_EQ(pair.i, 0U);
  EXPECT_EQ(pair.j, 100U);
}

TEST(FarthestPair, PointsThatAreNotNumbersTakeNoPart) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < 100; ++i) points.emplace_back(i, 0);
  points[0] = gxVector<2>(std::numeric_limits<double>::quiet_NaN(), 0);
  const gx_Pair pair = pairOf(points);
  EXPECT_EQ(pair.i, 1U);
  EXPECT_EQ(pair.j, 99U);
}

TEST(FarthestPair, MakesTheCircleOfAllPairsBitForBit) {
  RandomShapes random("farthest pair", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = largeOutline(random);
    const gxContour contour(outline.points, outline.closed);
    EXPECT_TRUE(agree([&] { return contour.encloseCircle(gxContourDefs::eAllPairs); },
                      [&] { return slow::encloseCircle(outline.points, 0); }));
  }
}

TEST(FarthestPair, OfRegularPolygonsIsTheFirstOfManyNearlyEqualOnes) {
  for (int count : {65, 66, 100, 128, 333}) {
    std::vector<gxVector<2>> points;
    for (int i = 0; i < count; ++i) points.emplace_back(7.0, gxRadian(6.283185307179586 * i / count));
    const gxContour contour(points);
    EXPECT_TRUE(agree([&] { return contour.encloseCircle(gxContourDefs::eAllPairs); },
                      [&] { return slow::encloseCircle(points, 0); }));
  }
}

// Round outlines, in which nearly every pair of boxes on opposite sides has to be told apart: regular,
// a little uneven, on a grid with many equal distances; at the origin and far away.
TEST(FarthestPair, OfRoundOutlinesAnywhereIsThatOfTheScan) {
  RandomShapes random("farthest pair of round outlines", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const int count = random.integer(20, 1200);
    const double radius = std::pow(10.0, random.uniform(-6.0, 6.0));
    const double noise = random.chance(0.5) ? 0.0 : radius * std::pow(10.0, random.uniform(-16.0, -3.0));
    const double grid = random.chance(0.3) ? radius * random.uniform(0.5, 6.0) / count : 0.0;
    const gxVector<2> at = random.chance(0.5) ? gxVector<2>() : gxVector<2>(radius * 1e9, -radius * 3e7);
    std::vector<gxVector<2>> points;
    for (int i = 0; i < count; ++i) {
      gxVector<2> p(radius + noise * random.uniform(-1.0, 1.0), gxRadian(6.283185307179586 * i / count));
      if (grid > 0.0) p = {grid * std::round(p.x() / grid), grid * std::round(p.y() / grid)};
      points.push_back(at + p);
    }
    const gxContour contour(points, random.chance(0.5));
    EXPECT_TRUE(agree([&] { return contour.encloseCircle(gxContourDefs::eAllPairs); },
                      [&] { return slow::encloseCircle(points, 0); }));
  }
}

TEST(FarthestPair, OfFewPointsMakesTheCircleOfAllPairsBitForBit) {
  RandomShapes random("farthest pair of few points", 1500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto kind =
        static_cast<OutlineKind>(random.integer(0, static_cast<int>(OutlineKind::eCount) - 1));
    auto points = random.outline(kind, random.integer(0, 64));
    if (random.chance(0.5)) points = random.placed(points);
    const gxContour contour(points, random.chance(0.5));
    EXPECT_TRUE(agree([&] { return contour.encloseCircle(gxContourDefs::eAllPairs); },
                      [&] { return slow::encloseCircle(points, 0); }));
  }
}

}  // namespace
