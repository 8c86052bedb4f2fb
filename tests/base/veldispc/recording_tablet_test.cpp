#include <veldispc/recording_tablet.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(RecordingTablet, KeepsSegmentsInOrder) {
  gxRecordingTablet tablet;
  EXPECT_TRUE(tablet.segments().empty());
  tablet.drawLineSeg({1, 2}, {3, 4}, gxColor(255, 0, 0), gxUITablet::eImageLayer);
  tablet.drawLineSeg({3, 4}, {3, 4}, gxColor(0, 0, 1), gxUITablet::eOverlayLayer);
  ASSERT_EQ(tablet.segments().size(), 2U);
  EXPECT_EQ(tablet.segments()[0],
            (gxRecordingTablet::Segment{{1, 2}, {3, 4}, gxColor(255, 0, 0), gxUITablet::eImageLayer}));
  EXPECT_EQ(tablet.segments()[1],
            (gxRecordingTablet::Segment{{3, 4}, {3, 4}, gxColor(0, 0, 1), gxUITablet::eOverlayLayer}));
}

TEST(RecordingTablet, KeepsAnyCoordinates) {
  gxRecordingTablet tablet;
  tablet.drawLineSeg({std::numeric_limits<double>::quiet_NaN(), -HUGE_VAL}, {1e308, 5e-324}, gxColor(),
                     gxUITablet::eImageLayer);
  ASSERT_EQ(tablet.segments().size(), 1U);
  EXPECT_TRUE(std::isnan(tablet.segments()[0].from.x()));
  EXPECT_EQ(tablet.segments()[0].from.y(), -HUGE_VAL);
  EXPECT_EQ(tablet.segments()[0].to, gxPair<double>(1e308, 5e-324));
}

TEST(RecordingTablet, ClearForgetsAndCopiesRemember) {
  gxRecordingTablet tablet;
  tablet.drawLineSeg({1, 2}, {3, 4}, gxColor(), gxUITablet::eImageLayer);
  const gxRecordingTablet copy(tablet);
  tablet.clear();
  EXPECT_TRUE(tablet.segments().empty());
  EXPECT_EQ(copy.segments().size(), 1U);
  tablet = copy;
  EXPECT_EQ(tablet.segments(), copy.segments());
}

}  // namespace
