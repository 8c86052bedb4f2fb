#include <velstd/circle.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using V = gxVector<2>;

TEST(Circle, DefaultIsAPointAtTheOrigin) {
  const gxCircle circle;
  EXPECT_EQ(circle.center(), V(0, 0));
  EXPECT_EQ(circle.radius(), 0.0);
}

TEST(Circle, IsKeptAsGiven) {
  const gxCircle circle(V(1, 2), -3.0);
  EXPECT_EQ(circle.center(), V(1, 2));
  EXPECT_EQ(circle.radius(), -3.0);
  EXPECT_TRUE(std::isnan(gxCircle(V(), std::numeric_limits<double>::quiet_NaN()).radius()));
}

TEST(Circle, CopiesAreEqual) {
  const gxCircle circle(V(1, 2), 3.0);
  gxCircle copy(circle);
  EXPECT_EQ(copy, circle);
  copy = gxCircle(V(1, 2), 4.0);
  EXPECT_FALSE(copy == circle);
  EXPECT_FALSE(gxCircle(V(1, 3), 3.0) == circle);
}

TEST(Circle, ReInitGivesTheDefaultBack) {
  gxCircle circle(V(1, 2), 3.0);
  circle.reInit();
  EXPECT_EQ(circle, gxCircle());
}

}  // namespace
