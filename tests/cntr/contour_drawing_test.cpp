#include <cntr/contour.h>

#include <cntr/region.h>
#include <support/shape_text.h>
#include <veldispc/recording_tablet.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using Segment = gxRecordingTablet::Segment;

constexpr gxColor kColour(10, 20, 30);
constexpr auto kLayer = gxUITablet::eOverlayLayer;

std::vector<Segment> drawn(const gxContour& contour, int mode = 0) {
  gxRecordingTablet tablet;
  contour.draw(tablet, static_cast<gxContourDefs::DrawMode>(mode), kColour, kLayer);
  return tablet.segments();
}

Segment segment(double x1, double y1, double x2, double y2) {
  return {{x1, y1}, {x2, y2}, kColour, kLayer};
}

TEST(ContourDrawing, ClosedDrawsTheClosingEdgeFirst) {
  EXPECT_EQ(drawn(gxContour(pointsOf("0 0, 4 0, 4 3"))),
            std::vector<Segment>({segment(4, 3, 0, 0), segment(0, 0, 4, 0), segment(4, 0, 4, 3)}));
}

TEST(ContourDrawing, OpenDrawsOneSegmentFewerThanPoints) {
  EXPECT_EQ(drawn(gxContour(pointsOf("0 0, 4 0, 4 3"), false)),
            std::vector<Segment>({segment(0, 0, 4, 0), segment(4, 0, 4, 3)}));
}

TEST(ContourDrawing, OnePointClosedIsASegmentOfNoLengthAndOpenNothing) {
  EXPECT_EQ(drawn(gxContour(pointsOf("5 6"))), std::vector<Segment>({segment(5, 6, 5, 6)}));
  EXPECT_TRUE(drawn(gxContour(pointsOf("5 6"), false)).empty());
}

TEST(ContourDrawing, WithoutPointsDrawsNothing) {
  EXPECT_TRUE(drawn(gxContour()).empty());
}

TEST(ContourDrawing, EdgesOfNoLengthAreDrawnToo) {
  EXPECT_EQ(drawn(gxContour(pointsOf("1 1, 1 1, 2 2"), false)).size(), 2u);
}

TEST(ContourDrawing, EveryModeDrawsAlike) {
  const gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  for (const int mode : {1, 2, -1, 1000000}) EXPECT_EQ(drawn(contour, mode), drawn(contour, 0)) << mode;
}

TEST(ContourDrawing, TheLayerIsHandedOn) {
  gxRecordingTablet tablet;
  gxContour(pointsOf("0 0, 4 0"))
      .draw(tablet, gxContourDefs::eDrawEdges, kColour, gxUITablet::eImageLayer);
  EXPECT_EQ(tablet.segments()[0].layer, gxUITablet::eImageLayer);
}

TEST(ContourDrawing, OfARegionAsAContourDrawsItsClosedOutline) {
  const gxRegion region{gxContour(pointsOf("0 0, 4 0, 4 3"), false)};
  EXPECT_EQ(drawn(region).size(), 3u);
}

TEST(ContourDrawing, CoordinatesOfEveryKindAreHandedOnAsTheyAre) {
  const std::vector<Segment> segments = drawn(gxContour(pointsOf("nan inf, 1e308 5e-324"), false));
  ASSERT_EQ(segments.size(), 1u);
  EXPECT_TRUE(std::isnan(segments[0].from.x()) && std::isinf(segments[0].from.y()));
  EXPECT_EQ(segments[0].to, gxPair<double>(1e308, 5e-324));
}

TEST(ContourDrawing, ChangesNothing) {
  const gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  contour.trackChanges(true);
  drawn(contour);
  EXPECT_EQ(contour.changeCount(), 0u);
}

// A tablet that breaks down after one segment.
class BreakingTablet : public gxUITablet {
 public:
  void drawLineSeg(const gxPair<double>&, const gxPair<double>&, const gxColor&, Layers) override {
    if (drawn_++ == 1) throw std::string("broken");
  }

 private:
  int drawn_ = 0;
};

TEST(ContourDrawing, WhatTheTabletThrowsComesThrough) {
  BreakingTablet tablet;
  EXPECT_THROW(
      gxContour(pointsOf("0 0, 4 0, 4 3")).draw(tablet, gxContourDefs::eDrawEdges, kColour, kLayer),
      std::string);
}

}  // namespace
