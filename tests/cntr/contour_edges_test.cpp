#include <cntr/contour.h>

#include <support/exposed.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using V = gxVector<2>;

//   2
//   | \        closed: edge 0 from 2 to 0, edge 1 from 0 to 1, edge 2 from 1 to 2
//   0--1
const std::vector<V> kTriangle = pointsOf("0 0, 1 0, 0 1");

TEST(ContourEdges, ClosedContourBeginsWithTheClosingEdge) {
  const ExposedContour contour(kTriangle);
  ASSERT_EQ(contour.lineSegs().size(), 3u);
  EXPECT_EQ(contour.lineSegs()[0], gxLineSeg(V(0, 1), V(0, 0)));
  EXPECT_EQ(contour.lineSegs()[1], gxLineSeg(V(0, 0), V(1, 0)));
  EXPECT_EQ(contour.lineSegs()[2], gxLineSeg(V(1, 0), V(0, 1)));
  EXPECT_EQ(contour.validLine(), std::vector<bool>({true, true, true}));
}

TEST(ContourEdges, OpenContourHasOneEdgeFewerThanPoints) {
  const ExposedContour contour(kTriangle, false);
  ASSERT_EQ(contour.lineSegs().size(), 2u);
  EXPECT_EQ(contour.lineSegs()[0], gxLineSeg(V(0, 0), V(1, 0)));
  EXPECT_EQ(contour.lineSegs()[1], gxLineSeg(V(1, 0), V(0, 1)));
}

TEST(ContourEdges, AnEdgeOfNoLengthKeepsItsNumberAndIsADefaultSegment) {
  const ExposedContour contour(pointsOf("0 0, 0 0, 1 0"));
  ASSERT_EQ(contour.lineSegs().size(), 3u);
  EXPECT_EQ(contour.validLine(), std::vector<bool>({true, false, true}));
  EXPECT_EQ(contour.lineSegs()[1], gxLineSeg());
}

TEST(ContourEdges, AnEdgeOfNoLengthIsADefaultSegmentWhereverItLies) {
  const ExposedContour contour(pointsOf("5 5, 5 5, 9 5"), false);
  EXPECT_EQ(contour.lineSegs()[0], gxLineSeg(V(0, 0), V(0, 0)));
  EXPECT_EQ(contour.lineSegs()[1], gxLineSeg(V(5, 5), V(9, 5)));
}

TEST(ContourEdges, EndsWithinOneQuadrillionthMakeAnEdgeOfNoLength) {
  EXPECT_FALSE(ExposedContour(pointsOf("0 0, 1e-15 -1e-15"), false).validLine()[0]);
  EXPECT_TRUE(ExposedContour(pointsOf("0 0, 1.1e-15 0"), false).validLine()[0]);
  EXPECT_TRUE(ExposedContour(pointsOf("0 0, 0 1.1e-15"), false).validLine()[0]);
}

TEST(ContourEdges, ARepeatedLastVertexMakesAClosingEdgeOfNoLength) {
  const ExposedContour contour(
      gxContour(gxPolygon(pointsOf("0 0, 1 0, 0 1, 0 0"), gxPolygon::eEvenOdd)));
  EXPECT_EQ(contour.validLine(), std::vector<bool>({false, true, true, true}));
}

TEST(ContourEdges, OnePointClosedHasOneEdgeOfNoLengthAndOpenNone) {
  EXPECT_EQ(ExposedContour(pointsOf("3 4")).validLine(), std::vector<bool>({false}));
  EXPECT_EQ(ExposedContour(pointsOf("3 4")).lineSegs().size(), 1u);
  EXPECT_TRUE(ExposedContour(pointsOf("3 4"), false).lineSegs().empty());
}

TEST(ContourEdges, WithoutPointsThereAreNone) {
  EXPECT_TRUE(ExposedContour().lineSegs().empty());
  EXPECT_TRUE(ExposedContour().validLine().empty());
  EXPECT_TRUE(ExposedContour(std::vector<V>(), false).lineSegs().empty());
}

TEST(ContourEdges, TwoPointsClosedHaveTwoEdgesThereAndBack) {
  const ExposedContour contour(pointsOf("0 0, 1 0"));
  ASSERT_EQ(contour.lineSegs().size(), 2u);
  EXPECT_EQ(contour.lineSegs()[0], gxLineSeg(V(1, 0), V(0, 0)));
  EXPECT_EQ(contour.lineSegs()[1], gxLineSeg(V(0, 0), V(1, 0)));
}

TEST(ContourEdges, ARegionsEdgesAreThoseOfTheClosedOutline) {
  const ExposedRegion region{gxRegion(gxContour(kTriangle, false))};
  EXPECT_EQ(region.lineSegs().size(), 3u);
}

TEST(ContourEdges, PointsThatAreNotFiniteNeverCoincide) {
  const ExposedContour contour(pointsOf("inf 0, inf 0, nan 0, nan 0"), false);
  EXPECT_EQ(contour.validLine(), std::vector<bool>({true, true, true}));
  EXPECT_TRUE(std::isnan(contour.lineSegs()[2].p1().x()));
}

TEST(ContourEdges, HugeAndDenormalEdgesKeepTheirEnds) {
  const ExposedContour contour(pointsOf("1e308 -1e308, -1e308 1e308, 5e-324 0, 0 0"), false);
  EXPECT_EQ(contour.lineSegs()[0], gxLineSeg(V(1e308, -1e308), V(-1e308, 1e308)));
  EXPECT_TRUE(contour.validLine()[0]);
  EXPECT_FALSE(contour.validLine()[2]) << "a denormal apart is no length";
}

TEST(ContourEdges, FollowTheClosedFlag) {
  ExposedContour contour(kTriangle);
  EXPECT_EQ(contour.lineSegs().size(), 3u);
  contour.isClosed(false);
  EXPECT_EQ(contour.validLine().size(), 2u);
  EXPECT_EQ(contour.lineSegs().size(), 2u);
}

}  // namespace
