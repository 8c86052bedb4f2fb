// Drawing sets: every region in order, each in its own way.
#include <cntr/regionst.h>
#include <gtest/gtest.h>
#include <veldispc/recording_tablet.h>

#include <vector>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;

std::vector<gxVector<2>> box(double x, double y, double size) {
  return {{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}};
}

Handle square(double x, double y, double size = 1.0) {
  return Handle(new gxRegion(box(x, y, size)));
}

Handle ring(double x, double y) {  // 4 by 4 with a hole of 2 by 2
  const gxPtrHandle<gxRegion> region(new gxRegion(box(x, y, 4)));
  region->holes({square(x + 1, y + 1, 2)});
  return region;
}

const gxColor kRed(255, 0, 0);

// A region with a drawing of its own: one segment.
class Dot : public gxRegion {
 public:
  using gxRegion::draw;
  void draw(gxUITablet& tablet, const gxColor& colour, const gxUITablet::Layers& layer) const override {
    tablet.drawLineSeg({7, 7}, {7, 7}, colour, layer);
  }
};

}  // namespace

TEST(RegionSetDrawing, DrawsEveryRegionInOrder) {
  const Handle first = ring(0, 0);
  const Handle second = square(9, 9);
  gxRecordingTablet expected;
  first->draw(expected, kRed, gxUITablet::eOverlayLayer);
  second->draw(expected, kRed, gxUITablet::eOverlayLayer);
  gxRecordingTablet tablet;
  gxRegionSet({first, second}).draw(tablet, kRed, gxUITablet::eOverlayLayer);
  EXPECT_EQ(tablet.segments(), expected.segments());
  EXPECT_EQ(tablet.segments().size(), 8U);  // the outlines, without the hole
}

TEST(RegionSetDrawing, DrawsEachRegionInItsOwnWay) {
  gxRecordingTablet tablet;
  gxRegionSet({square(0, 0), Handle(new Dot)}).draw(tablet, kRed, gxUITablet::eImageLayer);
  ASSERT_EQ(tablet.segments().size(), 5U);
  EXPECT_EQ(tablet.segments()[4].from, gxPair<double>(7, 7));
}

TEST(RegionSetDrawing, EmptySetDrawsNothing) {
  gxRecordingTablet tablet;
  gxRegionSet().draw(tablet, kRed, gxUITablet::eImageLayer);
  EXPECT_TRUE(tablet.segments().empty());
}

TEST(RegionSetDrawing, NullHandleThrowsAfterTheRegionsBeforeIt) {
  gxRecordingTablet tablet;
  EXPECT_THROW(
      gxRegionSet({square(0, 0), nullptr, square(5, 5)}).draw(tablet, kRed, gxUITablet::eImageLayer),
      gxBadPointer);
  EXPECT_EQ(tablet.segments().size(), 4U);
}
