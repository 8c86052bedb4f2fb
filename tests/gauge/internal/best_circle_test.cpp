// A circle is pushed to where three edges hold it; cells find the widest place.
#include <gauge/internal/best_circle.h>
#include <gtest/gtest.h>
#include <support/shape_text.h>

namespace {

constexpr std::size_t kMany = 1000000;

TEST(BestCircle, IsPushedUntilThreeEdgesHoldIt) {
  const gxLocator locator{gxRegion(pointsOf("0 0, 4 0, 0 3"))};
  gx_BestCircle best(gx_LocatorAccess::data(locator), 1e-9, kMany);
  best.offer({0.5, 0.2}, 0.2);
  EXPECT_NEAR(best.radius, 1.0, 1e-15);
  EXPECT_NEAR(best.centre.distance({1, 1}), 0.0, 1e-14);
}

TEST(BestCircle, IsPushedAwayFromCornersOfHoles) {
  // Between the corner (2, 2) of the hole and two sides.
  gxRegion plate(pointsOf("0 0, 9 0, 9 9, 0 9"));
  plate.holes({gxPtrHandle_const<gxRegion>(new gxRegion(pointsOf("2 2, 8.5 2, 8.5 8.5, 2 8.5")))});
  const gxLocator locator(plate);
  gx_BestCircle best(gx_LocatorAccess::data(locator), 1e-9, kMany);
  best.offer({0.9, 0.8}, 0.8);
  EXPECT_NEAR(best.radius, 4 - 2 * std::sqrt(2.0), 1e-14);
}

TEST(BestCircle, WhatIsNoLargerChangesNothing) {
  const gxLocator locator{gxRegion(pointsOf("0 0, 4 0, 0 3"))};
  gx_BestCircle best(gx_LocatorAccess::data(locator), 1e-9, kMany);
  best.offer({0.5, 0.2}, 0.2);
  const double radius = best.radius;
  best.offer({0.1, 0.1}, 0.1);
  EXPECT_EQ(best.radius, radius);
}

TEST(BestCircle, CellsFindTheWidestPlace) {
  // Two chambers, the right one a little wider.
  const gxLocator locator{gxRegion(
      pointsOf("0 0, 10 0, 10 4, 20 4, 20 -0.5, 31 -0.5, 31 10.5, 20 10.5, 20 6, 10 6, 10 10, 0 10"))};
  gx_BestCircle best(gx_LocatorAccess::data(locator), 1e-9, kMany);
  best.searchCells();
  EXPECT_NEAR(best.radius, 5.5, 1e-12);
  EXPECT_GT(best.centre.x(), 20.0);
  EXPECT_FALSE(best.spent());
}

TEST(BestCircle, ItsSlackIsRelativeButForRounding) {
  const gxLocator locator{gxRegion(pointsOf("0 0, 4 0, 0 3"))};
  gx_BestCircle best(gx_LocatorAccess::data(locator), 1e-3, 5);
  best.searchCells();
  EXPECT_NEAR(best.slack(), 1e-3 * best.radius, 1e-15);
  EXPECT_TRUE(best.spent());
  EXPECT_EQ(best.size(), 4.0);
  EXPECT_GE(best.widest(), 1.5 - best.radius);
  const gxLocator far{gxRegion(pointsOf("1000000 0, 1000004 0, 1000000 3"))};
  EXPECT_GT(gx_BestCircle(gx_LocatorAccess::data(far), 1e-12, 5).slack(), 1e-10);
}

}  // namespace
