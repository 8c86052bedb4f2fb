// Drawing edge points as ticks along their edges.
#include <ch_core/cntrtmpl.h>
#include <gtest/gtest.h>
#include <veldispc/recording_tablet.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using Region = gxRegionT<gxEdgelet>;
using Segment = gxRecordingTablet::Segment;

const gxColor kGreen(0, 255, 0);

std::vector<Segment> drawn(const gxRegion& region) {
  gxRecordingTablet tablet;
  region.draw(tablet, kGreen, gxUITablet::eOverlayLayer);
  return tablet.segments();
}

gxEdgelet edge(double x, double y, unsigned char angle) {
  return {gxVector<2>(x, y), 1, gxAngle8(angle)};
}

void expectTick(const Segment& tick, double fromX, double fromY, double toX, double toY) {
  EXPECT_NEAR(tick.from.x(), fromX, 1e-15);
  EXPECT_NEAR(tick.from.y(), fromY, 1e-15);
  EXPECT_NEAR(tick.to.x(), toX, 1e-15);
  EXPECT_NEAR(tick.to.y(), toY, 1e-15);
  EXPECT_EQ(tick.colour, kGreen);
  EXPECT_EQ(tick.layer, gxUITablet::eOverlayLayer);
}

}  // namespace

TEST(EdgeletRegionDrawing, GradientOfNinetyDegreesIsDrawnAlongX) {
  const auto ticks = drawn(Region({edge(10, 10, 64)}));
  ASSERT_EQ(ticks.size(), 1U);
  expectTick(ticks[0], 10.5, 10, 9.5, 10);
}

TEST(EdgeletRegionDrawing, AngleZeroWrapsToTwoHundredAndSeventyDegrees) {
  const auto ticks = drawn(Region({edge(10, 10, 0)}));
  ASSERT_EQ(ticks.size(), 1U);
  expectTick(ticks[0], 10, 9.5, 10, 10.5);
}

TEST(EdgeletRegionDrawing, EveryAngleIsATickOfLengthOneAcrossIt) {
  for (int angle = 0; angle < 256; ++angle) {
    const auto ticks = drawn(Region({edge(0, 0, static_cast<unsigned char>(angle))}));
    ASSERT_EQ(ticks.size(), 1U);
    const double direction = (angle - 64) * 3.141592653589793 / 128;
    expectTick(ticks[0], 0.5 * std::cos(direction), 0.5 * std::sin(direction),
               -0.5 * std::cos(direction), -0.5 * std::sin(direction));
  }
}

TEST(EdgeletRegionDrawing, TicksAreDrawnInDataSpaceInOrderAndNothingElse) {
  const gxPtrHandle_const<gx2XformBase> shift(
      new gx2XformLinear(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), gxVector<2>(100, 0))));
  Region region({edge(0, 0, 64), edge(4, 0, 64), edge(4, 4, 64)}, shift);
  region.holes({gxPtrHandle_const<Region>(new Region({edge(1, 1, 0)}))});
  const auto ticks = drawn(region);
  ASSERT_EQ(ticks.size(), 3U);
  expectTick(ticks[0], 0.5, 0, -0.5, 0);
  expectTick(ticks[1], 4.5, 0, 3.5, 0);
  expectTick(ticks[2], 4.5, 4, 3.5, 4);
}

TEST(EdgeletRegionDrawing, ContoursDrawingDrawsTheOutline) {
  const Region region({edge(0, 0, 64), edge(4, 0, 64), edge(4, 4, 64)});
  gxRecordingTablet tablet;
  region.draw(tablet, gxContourDefs::eDrawEdges, kGreen, gxUITablet::eImageLayer);
  ASSERT_EQ(tablet.segments().size(), 3U);
  EXPECT_EQ(tablet.segments()[0].from, gxPair<double>(4, 4));
  EXPECT_EQ(tablet.segments()[0].to, gxPair<double>(0, 0));
}

TEST(EdgeletRegionDrawing, WithoutEdgePointsDrawsNothing) {
  EXPECT_TRUE(drawn(Region()).empty());
}

TEST(EdgeletRegionDrawing, AnyPositionIsDrawn) {
  const auto ticks =
      drawn(Region({edge(std::numeric_limits<double>::infinity(), 0, 0),
                    edge(std::numeric_limits<double>::quiet_NaN(), 0, 0), edge(1e308, 0, 0)}));
  EXPECT_EQ(ticks.size(), 3U);
}

TEST(EdgeletSetDrawing, DrawsTheTicksOfEveryRegion) {
  using Set = gxRegionSetT<gxEdgelet>;
  const gxPtrHandle_const<Region> first(new Region({edge(0, 0, 64)}));
  const gxPtrHandle_const<Region> second(new Region({edge(9, 9, 64), edge(5, 5, 64)}));
  gxRecordingTablet tablet;
  Set({first, second}).draw(tablet, kGreen, gxUITablet::eOverlayLayer);
  ASSERT_EQ(tablet.segments().size(), 3U);
  expectTick(tablet.segments()[1], 9.5, 9, 8.5, 9);
}
