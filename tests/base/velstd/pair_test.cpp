#include <velstd/pair.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(Pair, DefaultHoldsZeros) {
  EXPECT_EQ(gxPair<double>().x(), 0.0);
  EXPECT_EQ(gxPair<long>().y(), 0L);
}

TEST(Pair, HoldsWhatItIsGiven) {
  constexpr gxPair<long> pair(std::numeric_limits<long>::min(), 7);
  static_assert(pair.x() == std::numeric_limits<long>::min());
  static_assert(pair.y() == 7);
}

TEST(Pair, EqualityIsExact) {
  EXPECT_EQ(gxPair<double>(1, 2), gxPair<double>(1, 2));
  EXPECT_NE(gxPair<double>(1, 2), gxPair<double>(2, 1));
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  EXPECT_NE(gxPair<double>(kNaN, 0), gxPair<double>(kNaN, 0));
}

}  // namespace
