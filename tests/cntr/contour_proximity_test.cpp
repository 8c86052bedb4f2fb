#include <cntr/contour.h>

#include <cntr/region.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using V = gxVector<2>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// 3 -- 2
// |    |     closed: edge 0 is the left side, 1 the bottom, 2 the right, 3 the top
// 0 -- 1
const gxContour& square() {
  static const gxContour contour(pointsOf("0 0, 4 0, 4 4, 0 4"));
  return contour;
}

const gxContour& elbow() {
  static const gxContour contour(pointsOf("0 0, 3 0, 3 4"), false);
  return contour;
}

// ---- Length ---------------------------------------------------------------------------------------

TEST(ContourLength, OpenContourAddsItsEdges) {
  EXPECT_EQ(elbow().length(), 7.0);
}

TEST(ContourLength, ClosedContourAddsTheClosingEdge) {
  EXPECT_EQ(gxContour(elbow().points(), true).length(), 12.0);
}

TEST(ContourLength, WithoutPointsOrWithOneItIsZero) {
  EXPECT_EQ(gxContour().length(), 0.0);
  EXPECT_EQ(gxContour(pointsOf("3 4"), true).length(), 0.0);
  EXPECT_EQ(gxContour(pointsOf("3 4"), false).length(), 0.0);
}

TEST(ContourLength, TwoPointsCountOnceOpenAndTwiceClosed) {
  EXPECT_EQ(gxContour(pointsOf("0 0, 3 4"), false).length(), 5.0);
  EXPECT_EQ(gxContour(pointsOf("0 0, 3 4"), true).length(), 10.0);
}

TEST(ContourLength, RepeatedPointsAddNothing) {
  EXPECT_EQ(gxContour(pointsOf("0 0, 0 0, 3 0, 3 0, 3 4, 3 4"), false).length(), 7.0);
}

TEST(ContourLength, OfARegionIsThatOfItsClosedOutline) {
  EXPECT_EQ(gxRegion(elbow()).length(), 12.0);
}

TEST(ContourLength, NaNCoordinateGivesNaN) {
  EXPECT_TRUE(std::isnan(gxContour(pointsOf("0 0, nan 0, 1 1")).length()));
}

TEST(ContourLength, InfiniteCoordinateGivesInfinityOrNaN) {
  EXPECT_EQ(gxContour(pointsOf("0 0, inf 0"), false).length(), kInf);
  EXPECT_TRUE(std::isnan(gxContour(pointsOf("inf 0, inf 0"), false).length()))
      << "infinity minus infinity";
}

TEST(ContourLength, HugeEdgesOverflowToInfinityAndNoSooner) {
  EXPECT_EQ(gxContour(pointsOf("-1e308 0, 1e308 0"), false).length(), kInf);
  EXPECT_EQ(gxContour(pointsOf("0 0, 1e308 0"), false).length(), 1e308);
}

TEST(ContourLength, DenormalEdgesAreAdded) {
  EXPECT_EQ(gxContour(pointsOf("0 0, 5e-324 0, 1e-323 0"), false).length(), 1e-323);
}

// ---- Nearest vertex -------------------------------------------------------------------------------

TEST(ContourClosestVertex, IsTheNearestOne) {
  EXPECT_EQ(square().closestVertexIndex(V(3, 1)), 1);
  EXPECT_EQ(square().closestVertexIndex(V(100, 100)), 2);
}

TEST(ContourClosestVertex, TiesGoToTheLowestIndex) {
  EXPECT_EQ(square().closestVertexIndex(V(2, 2)), 0);
  EXPECT_EQ(square().closestVertexIndex(V(4, 2)), 1);
  EXPECT_EQ(gxContour(pointsOf("9 9, 1 1, 1 1")).closestVertexIndex(V(0, 0)), 1);
}

TEST(ContourClosestVertex, ANaNQueryGivesVertexZero) {
  EXPECT_EQ(square().closestVertexIndex(V(kNaN, 0)), 0);
  EXPECT_EQ(square().closestVertexIndex(V(0, kNaN)), 0);
}

TEST(ContourClosestVertex, AnInfiniteQueryIsNearToNothing) {
  EXPECT_EQ(square().closestVertexIndex(V(kInf, 0)), 0);
}

TEST(ContourClosestVertex, VerticesThatAreNotFiniteLoseAgainstFiniteOnes) {
  EXPECT_EQ(gxContour(pointsOf("nan 0, inf 0, 7 7")).closestVertexIndex(V(0, 0)), 2);
}

TEST(ContourClosestVertex, ADistanceThatOverflowsIsNearToNothing) {
  EXPECT_EQ(gxContour(pointsOf("1e308 0, 1e308 1")).closestVertexIndex(V(-1e308, 0)), 0);
}

TEST(ContourClosestVertex, DenormalDistancesAreTold) {
  EXPECT_EQ(gxContour(pointsOf("1e-323 0, 5e-324 0, 1 1")).closestVertexIndex(V(0, 0)), 1);
}

TEST(ContourClosestVertex, OfARegionIsThatOfItsOutline) {
  const gxRegion region(square());
  EXPECT_EQ(region.closestVertexIndex(V(3, 1)), 1);
}

// ---- Nearest point --------------------------------------------------------------------------------

TEST(ContourClosestPoint, LiesInsideTheNearestEdge) {
  EXPECT_EQ(square().closestPoint(V(1, 1.5), false), V(0, 1.5));
  EXPECT_EQ(square().closestPoint(V(3, -2), false), V(3, 0));
}

TEST(ContourClosestPoint, ATieGoesToTheEarlierEdgeTheClosingOneFirst) {
  EXPECT_EQ(square().closestPoint(V(2, 2), false), V(0, 2)) << "all four sides are 2 away";
  EXPECT_EQ(gxContour(square().points(), false).closestPoint(V(2, 2), false), V(2, 0))
      << "open: the left side is missing, the bottom is first";
}

TEST(ContourClosestPoint, BeyondTheEndOfAnOpenContourIsTheLastPointExactly) {
  EXPECT_EQ(elbow().closestPoint(V(3.1, 99), false), V(3, 4));
  EXPECT_EQ(elbow().closestPoint(V(-5, -0.3), false), V(0, 0));
}

TEST(ContourClosestPoint, TheClosingEdgeCountsOnlyWhenClosed) {
  EXPECT_EQ(gxContour(elbow().points(), true).closestPoint(V(1.5, 2), false), V(1.5, 2));
  EXPECT_EQ(elbow().closestPoint(V(1.4, 2), false), V(3, 2));
}

TEST(ContourClosestPoint, AnEdgeOfNoLengthCompetesWithItsStart) {
  EXPECT_EQ(gxContour(pointsOf("1 1, 1 1"), false).closestPoint(V(5, 5), false), V(1, 1));
  EXPECT_EQ(gxContour(pointsOf("0 0, 2 0, 2 0, 4 0"), false).closestPoint(V(3, 1), false), V(3, 0));
  EXPECT_EQ(gxContour(pointsOf("0 0, 2 0, 2 0, 4 0"), false).closestPoint(V(2, 1), false), V(2, 0));
}

TEST(ContourClosestPoint, VertexOnlyIsTheNearestVertex) {
  for (const V& query : pointsOf("2 2, 4 2, 1 3, -7 9, 3.9 0.1")) {
    const long index = square().closestVertexIndex(query);
    EXPECT_EQ(square().closestPoint(query, true), square().points()[static_cast<std::size_t>(index)]);
  }
}

TEST(ContourClosestPoint, AQueryOnTheContourGivesItself) {
  EXPECT_EQ(square().closestPoint(V(4, 1), false), V(4, 1));
  EXPECT_EQ(square().closestPoint(V(4, 4), false), V(4, 4));
}

TEST(ContourClosestPoint, ANaNQueryGivesTheOriginOrVertexZero) {
  const gxContour contour(pointsOf("5 5, 6 5, 6 6"));
  EXPECT_EQ(contour.closestPoint(V(kNaN, 0), false), V(0, 0));
  EXPECT_EQ(contour.closestPoint(V(0, kNaN), false), V(0, 0));
  EXPECT_EQ(contour.closestPoint(V(kNaN, kNaN), true), V(5, 5));
}

TEST(ContourClosestPoint, WithNothingAtAFiniteDistanceIsTheOrigin) {
  EXPECT_EQ(gxContour(pointsOf("5 5, 6 5, 6 6")).closestPoint(V(kInf, 0), false), V(0, 0));
  EXPECT_EQ(gxContour(pointsOf("nan 5, 6 nan")).closestPoint(V(1, 1), false), V(0, 0));
  EXPECT_EQ(gxContour(pointsOf("1e308 0, 1e308 1")).closestPoint(V(-1e308, 0), false), V(0, 0));
}

TEST(ContourClosestPoint, EdgesThatAreNotFinitePassUnseen) {
  EXPECT_EQ(gxContour(pointsOf("0 0, 4 0, nan 7, 4 4"), false).closestPoint(V(1, 2), false), V(1, 0));
}

TEST(ContourClosestPoint, WhereTheProductsOverflowTheEdgeAnswersWithItsStart) {
  const gxContour contour(pointsOf("7 0, 1e308 0"), false);
  EXPECT_EQ(contour.closestPoint(V(5e307, 1e300), false), V(7, 0));
  EXPECT_EQ(contour.closestPoint(V(5e100, 1e90), false), V(7, 0));
}

TEST(ContourClosestPoint, LargeCoordinatesWhoseProductsFitAreProjected) {
  const gxContour contour(pointsOf("0 0, 1e150 0"), false);
  EXPECT_EQ(contour.closestPoint(V(5e149, 1e140), false), V(5e149, 0));
}

TEST(ContourClosestPoint, DenormalCoordinatesAreAnswered) {
  const gxContour contour(pointsOf("0 0, 1e-320 0"), false);
  EXPECT_EQ(contour.closestPoint(V(1, 0), false), V(1e-320, 0));
  EXPECT_EQ(contour.closestPoint(V(-1, 0), false), V(0, 0));
}

// ---- Distance -------------------------------------------------------------------------------------

TEST(ContourDistance, IsThatToTheNearestPointOrVertex) {
  EXPECT_EQ(square().distToPoint(V(1, 1.5), false), 1.0);
  EXPECT_EQ(square().distToPoint(V(2, 7), false), 3.0);
  EXPECT_EQ(square().distToPoint(V(7, 8), false), 5.0);
  EXPECT_EQ(square().distToPoint(V(0, 2), true), 2.0);
  EXPECT_EQ(square().distToPoint(V(4, 2), false), 0.0);
}

TEST(ContourDistance, OfANaNQueryIsNaN) {
  EXPECT_TRUE(std::isnan(square().distToPoint(V(kNaN, 0), false)));
  EXPECT_TRUE(std::isnan(square().distToPoint(V(0, kNaN), true)));
}

TEST(ContourDistance, OfAnInfiniteQueryIsInfinite) {
  EXPECT_EQ(square().distToPoint(V(kInf, 0), false), kInf);
  EXPECT_EQ(square().distToPoint(V(0, -kInf), true), kInf);
}

// ---- Too few points -------------------------------------------------------------------------------

TEST(ContourProximity, TwoPointsAreEnough) {
  const gxContour two(pointsOf("0 0, 2 0"));
  EXPECT_EQ(two.closestPoint(V(1, 3), false), V(1, 0));
  EXPECT_EQ(two.closestPoint(V(1, 3), true), V(0, 0));
  EXPECT_EQ(two.closestVertexIndex(V(1.1, 3)), 1);
  EXPECT_EQ(two.distToPoint(V(1, 3), false), 3.0);
}

TEST(ContourProximity, OnePointOrNoneIsRefused) {
  for (const gxContour& contour :
       {gxContour(), gxContour(pointsOf("1 1")), gxContour(pointsOf("1 1"), false)}) {
    EXPECT_THROW(contour.closestPoint(V(0, 0), false), gxContourDefs::EmptyContour);
    EXPECT_THROW(contour.closestPoint(V(0, 0), true), gxContourDefs::EmptyContour);
    EXPECT_THROW(contour.closestVertexIndex(V(0, 0)), gxContourDefs::EmptyContour);
    EXPECT_THROW(contour.distToPoint(V(0, 0), false), gxContourDefs::EmptyContour);
    EXPECT_THROW(contour.distToPoint(V(0, 0), true), gxContourDefs::EmptyContour);
    EXPECT_EQ(contour.length(), 0.0);
  }
}

// The same questions to an outline of many points take another way through the rooms: a square of
// 400 points, 100 a side, point 0 at the origin.
gxContour fineSquare() {
  std::vector<V> points;
  for (int i = 0; i < 100; ++i) points.emplace_back(i, 0);
  for (int i = 0; i < 100; ++i) points.emplace_back(100, i);
  for (int i = 0; i < 100; ++i) points.emplace_back(100 - i, 100);
  for (int i = 0; i < 100; ++i) points.emplace_back(0, 100 - i);
  return gxContour(points);
}

TEST(ContourProximityOfManyPoints, TiesGoToTheEarlierEdgeAndTheLowerIndex) {
  const gxContour contour = fineSquare();
  EXPECT_EQ(contour.closestVertexIndex(V(50, 50)), 50) << "bottom, right, top and left all have one";
  EXPECT_EQ(contour.closestVertexIndex(V(10.5, -3)), 10);
  EXPECT_EQ(contour.closestPoint(V(50, 50), false), V(50, 0));
  EXPECT_EQ(contour.closestPoint(V(0.5, 0.5), false), V(0, 0.5)) << "the closing edge first";
  EXPECT_EQ(contour.closestPoint(V(0.5, 0.5), true), V(0, 0));
}

TEST(ContourProximityOfManyPoints, QueriesThatAreNotFiniteAreAnsweredAlike) {
  const gxContour contour = fineSquare();
  EXPECT_EQ(contour.closestPoint(V(kNaN, 50), false), V(0, 0));
  EXPECT_EQ(contour.closestPoint(V(kInf, 50), false), V(0, 0));
  EXPECT_EQ(contour.closestVertexIndex(V(kNaN, 50)), 0);
  EXPECT_EQ(contour.closestVertexIndex(V(50, -kInf)), 0);
}

TEST(ContourProximityOfManyPoints, PointsThatAreNotFinitePassUnseen) {
  std::vector<V> points = fineSquare().points();
  points[10] = V(kNaN, 0);
  points[20] = V(0, kInf);
  const gxContour contour(points);
  EXPECT_EQ(contour.closestVertexIndex(V(10.1, -1)), 11);
  EXPECT_EQ(contour.closestPoint(V(10.1, -1), false), V(11, 0));
  EXPECT_EQ(contour.closestPoint(V(50, 1), false), V(50, 0));
}

}  // namespace
