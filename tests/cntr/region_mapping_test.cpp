#include <cntr/region.h>

#include <support/region_shapes.h>
#include <veldispc/recording_tablet.h>
#include <velstd/xform.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

const gxXform<2> kDoubleAndMove(gxMatrix<2>(2, 0, 0, 2), V(1, -1));

TEST(RegionMap, TheIdentityGivesTheOutlineWithoutHoles) {
  gxRegion result;
  squareWithHole().map(gxXform<2>::I, result);
  EXPECT_EQ(result.points(), square(0, 0, 10));
  EXPECT_TRUE(result.holes().empty());
}

TEST(RegionMap, MapsEveryPoint) {
  gxRegion result;
  gxRegion(square(0, 0, 10)).map(kDoubleAndMove, result);
  EXPECT_EQ(result.points(), square(1, -1, 20));
}

TEST(RegionMap, WhatTheResultHeldIsGone) {
  gxRegion result = squareWithHole();
  result.label(3);
  result.cachedVectorSize(7);
  result.area(true);
  gxRegion(square(0, 0, 2)).map(kDoubleAndMove, result);
  EXPECT_TRUE(result.holes().empty());
  EXPECT_EQ(result.area(true), 16.0);
  EXPECT_EQ(result.label(), 0u);
  EXPECT_EQ(result.cachedVectorSize(), 3);
}

TEST(RegionMap, TheLabelStaysBehind) {
  gxRegion region(square(0, 0, 2));
  region.label(9);
  gxRegion result;
  region.map(kDoubleAndMove, result);
  EXPECT_EQ(result.label(), 0u);
}

TEST(RegionMap, IntoItself) {
  gxRegion region = squareWithHole();
  region.area(true);
  region.map(kDoubleAndMove, region);
  EXPECT_EQ(region.points(), square(1, -1, 20));
  EXPECT_TRUE(region.holes().empty());
  EXPECT_EQ(region.area(true), 400.0);
}

TEST(RegionMap, KeepsAnOutlineThatCrossesItself) {
  gxRegion result;
  gxRegion(bowTie()).map(gxXform<2>::I, result);
  EXPECT_EQ(result.points(), bowTie());
}

TEST(RegionMap, WithoutPointsGivesNone) {
  gxRegion result(square(0, 0, 1));
  gxRegion().map(kDoubleAndMove, result);
  EXPECT_TRUE(result.points().empty());
}

TEST(RegionMap, SeenAsAContourKeepsTheHoles) {
  gxRegion region = squareWithHole();
  const gxContour& outline = region;
  outline.map(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), V(100, 0)), region);
  EXPECT_EQ(region.points(), square(100, 0, 10));
  EXPECT_EQ(region.holes().size(), 1u);
}

TEST(RegionMap, OfAnyNumbersIsWhatTheTransformGives) {
  const Points points = pointsOf("1e308 0, inf -inf, 5e-324 1");
  gxRegion result;
  gxRegion(points).map(kDoubleAndMove, result);
  ASSERT_EQ(result.points().size(), 3u);
  EXPECT_EQ(result.points()[0], V(HUGE_VAL, -1));
  EXPECT_EQ(result.points()[2], kDoubleAndMove * points[2]);
}

TEST(RegionDrawing, WithThreeArgumentsDrawsTheOutlinesEdges) {
  gxRecordingTablet tablet;
  squareWithHole().draw(tablet, gxColor(1, 2, 3), gxUITablet::eOverlayLayer);
  ASSERT_EQ(tablet.segments().size(), 4u) << "the hole is not drawn";
  EXPECT_EQ(tablet.segments()[0].from, gxPair<double>(0, 10)) << "the closing edge comes first";
  EXPECT_EQ(tablet.segments()[0].to, gxPair<double>(0, 0));
  EXPECT_EQ(tablet.segments()[3].to, gxPair<double>(0, 10));
  EXPECT_EQ(tablet.segments()[1].colour, gxColor(1, 2, 3));
  EXPECT_EQ(tablet.segments()[1].layer, gxUITablet::eOverlayLayer);
}

TEST(RegionDrawing, WithFourArgumentsDrawsTheSame) {
  gxRecordingTablet three;
  gxRecordingTablet four;
  const gxRegion region = squareWithHole();
  region.draw(three, gxColor(1, 2, 3), gxUITablet::eImageLayer);
  region.draw(four, gxContourDefs::eDrawEdges, gxColor(1, 2, 3), gxUITablet::eImageLayer);
  EXPECT_EQ(three.segments(), four.segments());
}

TEST(RegionDrawing, OfNoPointsDrawsNothingAndOfOneADot) {
  gxRecordingTablet tablet;
  gxRegion().draw(tablet, gxColor(), gxUITablet::eImageLayer);
  EXPECT_TRUE(tablet.segments().empty());
  gxRegion(pointsOf("3 4")).draw(tablet, gxColor(), gxUITablet::eImageLayer);
  ASSERT_EQ(tablet.segments().size(), 1u);
  EXPECT_EQ(tablet.segments()[0].from, tablet.segments()[0].to);
}

// A region that draws something of its own.
class Crossed : public gxRegion {
 public:
  using gxRegion::draw;
  void draw(gxUITablet& tablet, const gxColor& colour, const gxUITablet::Layers& layer) const override {
    tablet.drawLineSeg({0, 0}, {1, 1}, colour, layer);
  }
};

TEST(RegionDrawing, ADerivedRegionDrawsItsOwnWay) {
  gxRecordingTablet tablet;
  const Crossed crossed;
  const gxRegion& region = crossed;
  region.draw(tablet, gxColor(), gxUITablet::eImageLayer);
  EXPECT_EQ(tablet.segments().size(), 1u);
}

}  // namespace
