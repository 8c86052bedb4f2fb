#include <gauge/internal/axis.h>
#include <gtest/gtest.h>

namespace {

constexpr double kHalf = std::numbers::pi / 2.0;

TEST(Axis, BothDirectionsGiveOneAngleInItsHalfOpenRange) {
  EXPECT_EQ(gx_axisAngle({1, 0}), 0.0);
  EXPECT_EQ(gx_axisAngle({-1, 0}), 0.0);
  EXPECT_FALSE(std::signbit(gx_axisAngle({-1, 0.0})));
  EXPECT_FALSE(std::signbit(gx_axisAngle({1, -0.0})));
  EXPECT_EQ(gx_axisAngle({0, 1}), kHalf);
  EXPECT_EQ(gx_axisAngle({0, -1}), kHalf);
  EXPECT_EQ(gx_axisAngle({-0.0, -1}), kHalf);
  EXPECT_EQ(gx_axisAngle({1, 1}), kHalf / 2);
  EXPECT_EQ(gx_axisAngle({-1, -1}), kHalf / 2);
  EXPECT_EQ(gx_axisAngle({-1, 1}), -kHalf / 2);
  EXPECT_EQ(gx_axisAngle({1, -1}), -kHalf / 2);
  EXPECT_EQ(gx_axisAngle({0, 0}), 0.0);
  EXPECT_EQ(gx_axisAngle({1e-300, -1}), kHalf);  // next to −π/2, which is the same axis
  EXPECT_TRUE(std::isnan(gx_axisAngle({std::nan(""), 1})));
}

}  // namespace
