// Shapes as arguments.
#include <overlay/shapes.h>

#include <support/shape_text.h>

#include <gtest/gtest.h>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;

TEST(Shapes, referToTheRegionsOfWhateverHoldsThem) {
  const gxRegion region(pointsOf("0 0, 1 0, 0 1"));
  EXPECT_EQ(gxShapes(region).regions(), std::vector<const gxRegion*>{&region});
  const gxPtrHandle<gxRegion> one(new gxRegion(region));
  const gxPtrHandle<gxRegion> two(new gxRegion(region));
  const std::vector<const gxRegion*> both{&*one, &*two};
  EXPECT_EQ(gxShapes(std::vector<gxPtrHandle<gxRegion>>{one, two}).regions(), both);
  EXPECT_EQ(gxShapes(std::vector<Handle>{one, two}).regions(), both);
  const gxRegionSet set{Handle(one), Handle(two)};
  EXPECT_EQ(gxShapes(set).regions(), both);
  const std::vector<gxRegionSet> sets{set, gxRegionSet(), set};
  EXPECT_EQ(gxShapes(sets).regions(), (std::vector<const gxRegion*>{&*one, &*two, &*one, &*two}));
  const std::vector<gxRegion> regions{region, region};
  EXPECT_EQ(gxShapes(regions).regions(), (std::vector<const gxRegion*>{&regions[0], &regions[1]}));
}

TEST(Shapes, refuseNullHandles) {
  const std::vector<Handle> handles{Handle()};
  EXPECT_THROW(gxShapes{handles}, gxBadPointer);
  EXPECT_THROW(gxShapes{gxRegionSet(handles)}, gxBadPointer);
}

}  // namespace
