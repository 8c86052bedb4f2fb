// What the calipers find is judged in the tests of enclosing.h and feret.h; here are the measures and the
// corners that lie very close together.
#include <gauge/internal/hull.h>
#include <gtest/gtest.h>
#include <support/shape_text.h>

#include <cmath>

namespace {

TEST(Hull, PerimeterAndAreaAreThoseOfTheScaledCorners) {
  const gx_Hull hull(pointsOf("0 0, 4 0, 1 1, 0 3"));
  const double s = hull.frame().lengthTo(1.0);
  EXPECT_EQ(hull.size(), 3U);
  EXPECT_DOUBLE_EQ(hull.perimeter(), 12 * s);
  EXPECT_DOUBLE_EQ(hull.area(), 6 * s * s);
  EXPECT_DOUBLE_EQ(hull.along({1, 0}), 4 * s);
  EXPECT_DOUBLE_EQ(hull.along({0, -1}), 3 * s);
}

TEST(Hull, ASegmentCountsThereAndBack) {
  const gx_Hull hull(pointsOf("3 4, 0 0"));
  EXPECT_DOUBLE_EQ(hull.frame().lengthFrom(hull.perimeter()), 10.0);
  EXPECT_EQ(hull.area(), 0.0);
  EXPECT_DOUBLE_EQ(hull.frame().lengthFrom(hull.greatest().width), 5.0);
}

TEST(Hull, AnEdgeOfASubnormalLengthKeepsItsDirection) {
  const gx_Hull hull(pointsOf("0 0, 0x1p-1070 0, 4 1, 2 3"));
  ASSERT_EQ(hull.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_GT(hull.direction(i) * hull.direction(i), 0.0);
  }
  EXPECT_TRUE(std::isfinite(hull.leastArea().across));
  EXPECT_TRUE(std::isfinite(hull.least().width));
}

}  // namespace
