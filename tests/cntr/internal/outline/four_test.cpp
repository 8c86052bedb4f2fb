// Four points side by side are what each would be alone.
#include <cntr/internal/outline/four.h>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>

namespace {

using V = gxVector<2>;

TEST(Four, PointsAreSeenFromOneInTheOrderThatSavesMovingThem) {
  const std::array<V, 4> points = {V(1.25, -3), V(1e10, 0.1), V(-7, 1e-12), V(0.3, 5e7)};
  const V from(0.7, -1.1);
  const gx_Four twice = {from.x(), from.y(), from.x(), from.y()};
  gx_Four x;
  gx_Four y;
  gx_seeFour(points.data(), twice, x, y);
  const std::array<std::size_t, 4> order = {0, 2, 1, 3};
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(x[k], points[order[k]].x() - from.x()) << k;
    EXPECT_EQ(y[k], points[order[k]].y() - from.y()) << k;
  }
}

TEST(Four, TheTotalIsThatOfTheEvenPlusThatOfTheOddComponents) {
  EXPECT_EQ(gf_Total(gx_Four{1.0, 2.0, 4.0, 8.0}), 15.0);
  // Another order would lose the 1.
  EXPECT_EQ(gf_Total(gx_Four{1e16, 1.0, -1e16, 0.0}), 1.0);
  EXPECT_EQ(gf_Total(gx_Four{1.0, 1e16, 0.0, -1e16}), 1.0);
}

}  // namespace
