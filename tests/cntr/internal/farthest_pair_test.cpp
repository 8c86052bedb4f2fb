// The farthest pair through the index, held against all pairs.
#include "large_outlines.h"

#include <cntr/contour.h>
#include <cntr/internal/farthest_pair.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

gx_Pair pairOf(const std::vector<gxVector<2>>& points, bool closed = true) {
  return gx_farthestPair(gx_EdgeIndex(points, closed), points, closed);
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

}  // namespace
