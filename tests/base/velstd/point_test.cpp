#include <velstd/point.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <type_traits>

namespace {

static_assert(std::is_convertible_v<gxPoint, gxVector<2>>);
static_assert(!std::is_convertible_v<gxVector<2>, gxPoint>);

TEST(Point, TurnsIntoAVectorByItself) {
  const gxPoint point(3, -4);
  const gxVector<2> vector = point;
  EXPECT_EQ(vector, gxVector<2>(3, -4));
  EXPECT_EQ(gxPoint(vector), point);
  EXPECT_EQ(gxPoint(), gxPoint(0, 0));
  EXPECT_EQ(point.x(), 3.0);
  EXPECT_EQ(point.y(), -4.0);
}

TEST(Point, DistanceIsEuclidean) {
  EXPECT_EQ(gxPoint(1, 1).distToPoint({4, 5}), 5.0);
  EXPECT_EQ(gxPoint(1, 1).distToPoint(gxPoint(1, 1)), 0.0);
  EXPECT_EQ(gxPoint(3e300, 0).distToPoint({0, 4e300}), 5e300);
  EXPECT_TRUE(std::isnan(gxPoint(1, 1).distToPoint({std::numeric_limits<double>::quiet_NaN(), 0})));
}

}  // namespace
