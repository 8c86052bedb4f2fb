#include <cntr/contour.h>

#include <cntr/region.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using V = gxVector<2>;

const gxXform<2> kQuarterTurn(gxMatrix<2>(0, -1, 1, 0), V(10, 20));

gxContour triangle(bool closed = true) {
  return gxContour(pointsOf("0 0, 4 0, 4 3"), closed, 7);
}

// ---- Mapping --------------------------------------------------------------------------------------

TEST(ContourMapping, MapsEveryPointInOrder) {
  gxContour result;
  triangle().map(kQuarterTurn, result);
  EXPECT_EQ(result.points(), pointsOf("10 20, 10 24, 7 24"));
}

TEST(ContourMapping, ByTheIdentityGivesTheSamePointsClosedFlagAndLabel) {
  for (const bool closed : {true, false}) {
    gxContour result(pointsOf("9 9"), !closed, 99);
    triangle(closed).map(gxXform<2>::I, result);
    EXPECT_TRUE(result == triangle(closed));
    EXPECT_EQ(result.label(), 7u);
  }
}

TEST(ContourMapping, GivesTheResultTheDefaultCachedVectorSize) {
  gxContour source = triangle();
  source.cachedVectorSize(9);
  gxContour result;
  result.cachedVectorSize(5);
  source.map(gxXform<2>(), result);
  EXPECT_EQ(result.cachedVectorSize(), 3);
  EXPECT_EQ(source.cachedVectorSize(), 9);
}

TEST(ContourMapping, MayPutItsResultIntoTheContourItself) {
  gxContour contour = triangle();
  EXPECT_EQ(contour.length(), 12.0);
  contour.map(gxXform<2>(gxMatrix<2>(2, 0, 0, 2), V(0, 0)), contour);
  EXPECT_EQ(contour.points(), pointsOf("0 0, 8 0, 8 6"));
  EXPECT_EQ(contour.length(), 24.0) << "what was remembered is gone";
}

TEST(ContourMapping, OfNoPointsAndOfOneGivesAsMany) {
  gxContour result = triangle();
  gxContour().map(kQuarterTurn, result);
  EXPECT_TRUE(result.points().empty());
  EXPECT_TRUE(result.isClosed());
  gxContour(pointsOf("1 2"), false).map(kQuarterTurn, result);
  EXPECT_EQ(result.points(), pointsOf("8 21"));
  EXPECT_FALSE(result.isClosed());
}

TEST(ContourMapping, OfARegionAsAContourGivesAClosedOne) {
  const gxRegion region{gxContour(pointsOf("0 0, 4 0, 4 3"), false, 7)};
  gxContour result;
  region.map(gxXform<2>(), result);
  EXPECT_TRUE(result.isClosed());
  EXPECT_EQ(result.label(), 7u);
}

TEST(ContourMapping, ChangesNothingInTheSource) {
  const gxContour source = triangle();
  source.trackChanges(true);
  gxContour result;
  source.map(kQuarterTurn, result);
  EXPECT_TRUE(source == triangle());
  EXPECT_EQ(source.changeCount(), 0u);
}

TEST(ContourMapping, ThroughASingularTransformGivesWhatThatMakes) {
  gxContour result;
  triangle().map(gxXform<2>(gxMatrix<2>(0, 0, 0, 0), V(5, 6)), result);
  EXPECT_EQ(result.points(), pointsOf("5 6, 5 6, 5 6"));
}

TEST(ContourMapping, CoordinatesOfEveryKindAreMappedByPlainArithmetic) {
  gxContour result;
  gxContour(pointsOf("nan 1, inf 1, 1e308 1e308, 5e-324 0"))
      .map(gxXform<2>(gxMatrix<2>(1, 0, 0, 2), V(0, 0)), result);
  EXPECT_TRUE(std::isnan(result.points()[0].x()));
  EXPECT_TRUE(std::isinf(result.points()[1].x()));
  EXPECT_EQ(result.points()[2].x(), 1e308);
  EXPECT_TRUE(std::isinf(result.points()[2].y()));
  EXPECT_EQ(result.points()[3], V(5e-324, 0));
}

// ---- Conversion to a polygon ------------------------------------------------------------------------

TEST(ContourAsPolygon, ClosedRepeatsItsFirstPointAtTheEnd) {
  EXPECT_EQ(triangle(true).polygon().vertices(), pointsOf("0 0, 4 0, 4 3, 0 0"));
}

TEST(ContourAsPolygon, OpenIsTakenAsItStands) {
  EXPECT_EQ(triangle(false).polygon().vertices(), pointsOf("0 0, 4 0, 4 3"));
}

TEST(ContourAsPolygon, HasFillModeZero) {
  EXPECT_EQ(static_cast<int>(triangle().polygon().fillMode()), 0);
}

TEST(ContourAsPolygon, WithoutPointsIsEmpty) {
  EXPECT_EQ(gxContour().polygon().size(), 0);
  EXPECT_EQ(gxContour(std::vector<V>(), false).polygon().size(), 0);
}

TEST(ContourAsPolygon, OfOnePointHasTwoVerticesClosedAndOneOpen) {
  EXPECT_EQ(gxContour(pointsOf("1 2")).polygon().vertices(), pointsOf("1 2, 1 2"));
  EXPECT_EQ(gxContour(pointsOf("1 2"), false).polygon().vertices(), pointsOf("1 2"));
}

TEST(ContourAsPolygon, AndBackKeepsTheRepeatedPoint) {
  const gxContour back(triangle(true).polygon(), 7);
  EXPECT_TRUE(back.isClosed());
  EXPECT_EQ(back.points(), pointsOf("0 0, 4 0, 4 3, 0 0"));
  EXPECT_EQ(back.length(), triangle().length());
  EXPECT_FALSE(gxContour(triangle(false).polygon()).isClosed());
}

TEST(ContourAsPolygon, OfARegionIsClosed) {
  EXPECT_EQ(gxRegion(triangle(false)).polygon().size(), 4);
}

TEST(ContourAsPolygon, KeepsCoordinatesOfEveryKind) {
  const gxPolygon polygon = gxContour(pointsOf("nan 0, inf -inf, 1e308 5e-324")).polygon();
  EXPECT_TRUE(std::isnan(polygon[0].x()) && std::isnan(polygon[3].x()));
  EXPECT_TRUE(std::isinf(polygon[1].x()));
  EXPECT_EQ(polygon[2], V(1e308, 5e-324));
}

}  // namespace
