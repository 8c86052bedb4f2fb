#include <velstd/ellipse.h>
#include <velstd/real_eq.h>

#include <gtest/gtest.h>

#include <numbers>
#include <type_traits>

namespace {

using V = gxVector<2>;
constexpr double kPi = std::numbers::pi;

static_assert(!std::is_convertible_v<gxCircle, gxEllipse>);
static_assert(!std::is_convertible_v<gxEllipse::gxEllipseGeom, gxEllipse>);

TEST(Ellipse, DefaultIsAPointAtTheOrigin) {
  const gxEllipse ellipse;
  EXPECT_EQ(ellipse.geom().center, V(0, 0));
  EXPECT_EQ(ellipse.geom().radii, V(0, 0));
  EXPECT_EQ(ellipse.geom().rotation, gxRadian(0));
  EXPECT_FALSE(ellipse.geom().clockwise);
  EXPECT_FALSE(ellipse.geom().inverted);
}

TEST(Ellipse, OfACircleHasEqualRadii) {
  const gxEllipse ellipse(gxCircle(V(1, 2), 3.0));
  EXPECT_EQ(ellipse.geom().center, V(1, 2));
  EXPECT_EQ(ellipse.geom().radii, V(3, 3));
  EXPECT_EQ(ellipse.geom().rotation, gxRadian(0));
}

TEST(Ellipse, IsKeptAsGiven) {
  const gxEllipse::gxEllipseGeom geom{V(1, 2), V(3, 4), gxRadian(7.0), true, true};
  const gxEllipse ellipse(geom);
  EXPECT_EQ(ellipse.geom().radii, V(3, 4));
  EXPECT_EQ(ellipse.geom().rotation, gxRadian(7.0));
  EXPECT_TRUE(ellipse.geom().clockwise);
  EXPECT_TRUE(ellipse.geom().inverted);
}

TEST(Ellipse, EqualityReadsEveryNumberAndFlag) {
  const gxEllipse::gxEllipseGeom geom{V(1, 2), V(3, 4), gxRadian(0.5), false, false};
  EXPECT_EQ(gxEllipse(geom), gxEllipse(geom));
  auto other = geom;
  other.center = V(1, 3);
  EXPECT_FALSE(gxEllipse(other) == gxEllipse(geom));
  other = geom;
  other.radii = V(3, 5);
  EXPECT_FALSE(gxEllipse(other) == gxEllipse(geom));
  other = geom;
  other.rotation = gxRadian(0.25);
  EXPECT_FALSE(gxEllipse(other) == gxEllipse(geom));
  other = geom;
  other.clockwise = true;
  EXPECT_FALSE(gxEllipse(other) == gxEllipse(geom));
  other = geom;
  other.inverted = true;
  EXPECT_FALSE(gxEllipse(other) == gxEllipse(geom));
}

TEST(Ellipse, PointsRunFromTheFirstAxisTowardsTheSecond) {
  const gxEllipse ellipse(gxEllipse::gxEllipseGeom{V(10, 20), V(3, 2), gxRadian(kPi / 2), false, false});
  EXPECT_TRUE(gfRealEq(ellipse.point(gxRadian(0)), V(10, 23), 1e-14));
  EXPECT_TRUE(gfRealEq(ellipse.point(gxRadian(kPi / 2)), V(8, 20), 1e-14));
  EXPECT_TRUE(gfRealEq(ellipse.point(gxRadian(kPi)), V(10, 17), 1e-14));
  EXPECT_TRUE(gfRealEq(ellipse.point(gxRadian(-kPi / 2)), V(12, 20), 1e-14));
}

}  // namespace
