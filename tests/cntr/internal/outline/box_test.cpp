// Boxes, and what a NaN does to each way to make one.
#include <cntr/internal/outline/box.h>

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using V = gxVector<2>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

void expectBox(const gx_Box& box, double lowX, double lowY, double highX, double highY) {
  EXPECT_EQ(box.lowX, lowX);
  EXPECT_EQ(box.lowY, lowY);
  EXPECT_EQ(box.highX, highX);
  EXPECT_EQ(box.highY, highY);
}

TEST(Box, AnEmptyOneMeetsAndHoldsNothing) {
  EXPECT_FALSE(gx_Box().meets(gx_Box{-1, -1, 1, 1}));
  EXPECT_FALSE(gx_Box{}.holds({0, 0}));
  EXPECT_FALSE(gx_Box().meets(gx_Box()));
}

TEST(Box, ThoseThatShareABorderMeet) {
  EXPECT_TRUE((gx_Box{0, 0, 1, 1}.meets(gx_Box{1, 1, 2, 2})));
  EXPECT_FALSE((gx_Box{0, 0, 1, 1}.meets(gx_Box{1.5, 0, 2, 1})));
  EXPECT_FALSE((gx_Box{0, 0, 1, 1}.meets(gx_Box{0, -2, 1, -0.5})));
}

TEST(Box, HoldsItsBorderAndNoNaN) {
  const gx_Box box{0, 0, 2, 1};
  EXPECT_TRUE(box.holds({0, 1}));
  EXPECT_TRUE(box.holds({2, 0}));
  EXPECT_FALSE(box.holds({2.5, 0.5}));
  EXPECT_FALSE(box.holds({1, kNaN}));
  EXPECT_FALSE(box.holds({kNaN, 0.5}));
}

TEST(Box, OfPointsPassesOverNaN) {
  expectBox(gx_Box::ofPoints({{kNaN, 1}, {3, kNaN}, {-1, 7}}), -1, 1, 3, 7);
  expectBox(gx_Box::ofPoints({}), kInf, kInf, -kInf, -kInf);
}

TEST(Box, OfNumbersIsEmptyWhereThereIsANaN) {
  expectBox(gx_Box::ofNumbers({{0, 1}, {3, -2}}), 0, -2, 3, 1);
  expectBox(gx_Box::ofNumbers({{0, 1}, {3, kNaN}}), kInf, kInf, -kInf, -kInf);
  expectBox(gx_Box::ofNumbers({{kNaN, 1}, {3, 0}}), kInf, kInf, -kInf, -kInf);
}

TEST(Box, OfAnEdgeKeepsANaNAtItsStartAndPassesOverOneAtItsEnd) {
  expectBox(gx_Box::ofEdge({3, 1}, {1, 2}), 1, 1, 3, 2);
  expectBox(gx_Box::ofEdge({3, 1}, {kNaN, 2}), 3, 1, 3, 2);
  const gx_Box box = gx_Box::ofEdge({kNaN, 1}, {3, 2});
  EXPECT_NE(box.lowX, box.lowX);
  EXPECT_NE(box.highX, box.highX);
  EXPECT_FALSE(box.meets(gx_Box{-9, -9, 9, 9}));
}

TEST(Box, IsWithinASizeUpToItsBorder) {
  EXPECT_TRUE((gx_Box{-5, -5, 5, 5}.isWithin(5)));
  for (int side = 0; side < 4; ++side) {
    double bounds[4] = {-5, -5, 5, 5};
    bounds[side] *= 1.01;
    EXPECT_FALSE((gx_Box{bounds[0], bounds[1], bounds[2], bounds[3]}.isWithin(5))) << side;
    bounds[side] = kNaN;
    EXPECT_FALSE((gx_Box{bounds[0], bounds[1], bounds[2], bounds[3]}.isWithin(5))) << side;
  }
}

TEST(Box, TheSquareOfTheDistanceIsZeroInsideAndFromTheNearestSideOutside) {
  const gx_Box box{0, 0, 2, 1};
  EXPECT_EQ(box.squareFrom({1, 0.5}), 0.0);
  EXPECT_EQ(box.squareFrom({5, 5}), 25.0);
  EXPECT_EQ(box.squareFrom({-3, 0.5}), 9.0);
  EXPECT_EQ(box.squareFrom({1, -2}), 4.0);
}

TEST(Box, ReachAlongADirectionIsSeenFromTheFirstPoint) {
  const V points[] = {{1, 1}, {4, 1}, {1, -1}, {0, 2}, {90, 90}};  // the last is not asked for
  expectBox(gx_reachAlong(points, 4, {1, 0}), -1, -2, 3, 1);
  expectBox(gx_reachAlong(points, 4, {0, 1}), -2, -3, 1, 1);
}

}  // namespace
