#include <velstd/real_eq.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <support/random_doubles.h>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr long kLongMax = std::numeric_limits<long>::max();
constexpr long kLongMin = std::numeric_limits<long>::min();

using V = gxVector<2>;

TEST(RealEq, TheToleranceItselfIsStillEqual) {
  EXPECT_TRUE(gfRealEq(1.0, 1.5, 0.5));
  EXPECT_FALSE(gfRealEq(1.0, std::nextafter(1.5, 2.0), 0.5));
  EXPECT_TRUE(gfRealEq(V(1, 2), V(1.5, 1.5), 0.5));
  EXPECT_FALSE(gfRealEq(V(1, 2), V(1.75, 2), 0.5));
  EXPECT_FALSE(gfRealEq(V(1, 2), V(1, 2.75), 0.5));
}

TEST(RealEq, ComparesEachComponentNotTheDistance) {
  EXPECT_TRUE(gfRealEq(V(0, 0), V(1, 1), 1.0));  // at distance 1.41
}

TEST(RealEq, TheToleranceOfCoincidingVerticesIsAbsolute) {
  EXPECT_TRUE(gfRealEq(V(0, 0), V(1e-15, -1e-15), 1e-15));
  EXPECT_FALSE(gfRealEq(V(0, 0), V(1.1e-15, 0), 1e-15));
  EXPECT_FALSE(gfRealEq(V(1e6, 0), V(std::nextafter(1e6, 2e6), 0), 1e-15));
}

TEST(RealEq, WithToleranceZeroOnlyTheSameNumbers) {
  EXPECT_TRUE(gfRealEq(V(1, -0.0), V(1, 0.0), 0.0));
  EXPECT_FALSE(gfRealEq(5e-324, 0.0, 0.0));
}

TEST(RealEq, NaNEqualsNothingAndInfinityNotItself) {
  EXPECT_FALSE(gfRealEq(kNaN, kNaN, kInf));
  EXPECT_FALSE(gfRealEq(V(kNaN, 0), V(kNaN, 0), 1.0));
  EXPECT_FALSE(gfRealEq(V(0, kNaN), V(0, 0), 1.0));
  EXPECT_FALSE(gfRealEq(kInf, kInf, 1.0));
  EXPECT_FALSE(gfRealEq(1.0, 1.0, kNaN));
  EXPECT_FALSE(gfRealEq(1.0, 1.0, -1.0));
}

TEST(RealEq, TransformsDifferInAnyOfTheirSixNumbers) {
  const gxXform<2> base(gxMatrix<2>(1, 2, 3, 4), V(5, 6));
  EXPECT_TRUE(gfRealEq(base, base, 0.0));
  for (int i = 0; i < 6; ++i) {
    double n[6] = {1, 2, 3, 4, 5, 6};
    n[i] += 0.25;
    const gxXform<2> other(gxMatrix<2>(n[0], n[1], n[2], n[3]), V(n[4], n[5]));
    EXPECT_TRUE(gfRealEq(base, other, 0.25)) << i;
    EXPECT_FALSE(gfRealEq(base, other, 0.125)) << i;
  }
}

TEST(IFloor, RoundsDown) {
  EXPECT_EQ(gfIFloor(2.0), 2);
  EXPECT_EQ(gfIFloor(2.9), 2);
  EXPECT_EQ(gfIFloor(-2.0), -2);
  EXPECT_EQ(gfIFloor(-2.1), -3);
  EXPECT_EQ(gfIFloor(-0.0), 0);
  EXPECT_EQ(gfIFloor(5e-324), 0);
  EXPECT_EQ(gfIFloor(-5e-324), -1);
}

TEST(IFloor, EndsOfTheRangeOfLong) {
  EXPECT_EQ(gfIFloor(0x1p63), kLongMax);
  EXPECT_EQ(gfIFloor(std::nextafter(0x1p63, 0.0)), kLongMax - 1023);
  EXPECT_EQ(gfIFloor(-0x1p63), kLongMin);
  EXPECT_EQ(gfIFloor(std::nextafter(-0x1p63, -kInf)), kLongMin);
  EXPECT_EQ(gfIFloor(std::nextafter(-0x1p63, 0.0)), kLongMin + 1024);
  EXPECT_EQ(gfIFloor(1e308), kLongMax);
  EXPECT_EQ(gfIFloor(-1e308), kLongMin);
}

TEST(IFloor, NotFinite) {
  EXPECT_EQ(gfIFloor(kInf), kLongMax);
  EXPECT_EQ(gfIFloor(-kInf), kLongMin);
  EXPECT_EQ(gfIFloor(kNaN), 0);
}

TEST(IFloor, RandomNumbersLieInTheUnitAboveTheirFloor) {
  constexpr std::uint64_t kSeed = 121;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 100000; ++i) {
    const double value = random.withExponent(-1074, 61);
    const auto floor = static_cast<double>(gfIFloor(value));
    ASSERT_TRUE(floor <= value && (value < floor + 1.0 || std::abs(value) >= 0x1p52)) << value;
  }
}

}  // namespace
