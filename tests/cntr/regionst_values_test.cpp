#include <cntr/regionst_values.h>

#include <gtest/gtest.h>
#include <support/region_shapes.h>

namespace {

gxRegionSet overlapping() {
  return gxRegionSet({shared(gxRegion(square(0, 0, 4))), shared(gxRegion(square(2, 2, 4)))});
}

TEST(RegionSetValues, AreWhatTheArgumentsGet) {
  const gxRegionSet set = overlapping();
  gxRegionSet expected;
  set.regularize(expected);
  EXPECT_TRUE(gfRegularized(set) == expected);
  EXPECT_EQ(gfRegularized(set).regions().size(), 1U);
  set.outerHull(expected);
  EXPECT_TRUE(gfOuterHull(set) == expected);
}

// A bow tie passes its crossing twice; the outer hull cuts there.
TEST(RegionSetValues, RepairAndHullAreTwoThings) {
  const gxRegionSet set({shared(gxRegion(bowTie())), shared(gxRegion(square(3, 1.5, 1)))});
  gxRegionSet regularized;
  set.regularize(regularized);
  gxRegionSet hull;
  set.outerHull(hull);
  ASSERT_FALSE(regularized == hull);
  EXPECT_TRUE(gfRegularized(set) == regularized);
  EXPECT_TRUE(gfOuterHull(set) == hull);
  gxBudget budget(1'000'000);
  EXPECT_TRUE(gfRegularized(set, budget) == regularized);
  EXPECT_TRUE(gfOuterHull(set, budget) == hull);
}

TEST(RegionSetValues, KeepToTheBudget) {
  const gxRegionSet set = overlapping();
  gxBudget none(0);
  EXPECT_THROW(gfRegularized(set, none), gxStopped);
  gxBudget nothing(0);
  EXPECT_THROW(gfOuterHull(set, nothing), gxStopped);
  gxBudget enough(1'000'000);
  EXPECT_TRUE(gfRegularized(set, enough) == gfRegularized(set));
  EXPECT_TRUE(gfOuterHull(set, enough) == gfOuterHull(set));
}

TEST(RegionSetValues, AreMappedWithTheirHoles) {
  gxRegionSet set({shared(squareWithHole()), shared(gxRegion(square(20, 0, 1)))});
  set.cachedVectorSize(7);
  const gxXform<2> twice(gxMatrix<2>(2, 0, 0, 2), V(1, 0));
  const gxRegionSet mapped = gfMapped(set, twice);
  ASSERT_EQ(mapped.regions().size(), 2U);
  EXPECT_EQ(mapped.regions()[0]->points(), square(1, 0, 20));
  EXPECT_EQ(mapped.regions()[0]->holes()[0]->points(), square(9, 8, 4));
  EXPECT_EQ(mapped.regions()[1]->points(), square(41, 0, 2));
  EXPECT_EQ(mapped.cachedVectorSize(), 7);
  EXPECT_TRUE(gfMapped(gxRegionSet(), twice).regions().empty());
  EXPECT_THROW(gfMapped(gxRegionSet({Handle()}), twice), gxBadPointer);
}

TEST(ClosestVertex, ComesWithItsRing) {
  const gxRegion plate = squareWithHole();
  EXPECT_EQ(gfClosestVertex(plate, V(5.9, 5.8)), (gxRegionVertex{0, 2}));
  EXPECT_EQ(gfClosestVertex(plate, V(9, 0)), (gxRegionVertex{-1, 1}));
  EXPECT_THROW(gfClosestVertex(gxRegion(), V(0, 0)), gxContourDefs::EmptyContour);
}

}  // namespace
