// Sums of products without error, against 128-bit integers and at the ends of the range.
#include <overlay/internal/long_sum.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace {

__extension__ using Wide = __int128;

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kLeast = std::numeric_limits<double>::denorm_min();

int sign(Wide value) {
  return (value > 0) - (value < 0);
}

}  // namespace

TEST(LongSum, IsZeroWithoutTerms) {
  EXPECT_EQ(gx_LongSum().sign(), 0);
}

TEST(LongSum, IsNotMovedByAFactorOfZero) {
  gx_LongSum sum;
  sum.add(0.0, kLargest);
  sum.add(3.0, -0.0, 5.0);
  sum.add(3.0, 4.0, 0.0);
  EXPECT_EQ(sum.sign(), 0);
}

TEST(LongSum, HasTheSignOfItsFactors) {
  for (const double x : {-3.0, 3.0}) {
    for (const double y : {-1.0, 1.0}) {
      for (const double z : {-0.5, 0.5}) {
        gx_LongSum sum;
        sum.add(x, y, z);
        EXPECT_EQ(sum.sign(), x * y * z > 0 ? 1 : -1);
      }
    }
  }
}

TEST(LongSum, TheLeastProductDecidesBesideTheGreatestOnesThatCancel) {
  gx_LongSum sum;
  sum.add(kLargest, kLargest, kLargest);
  sum.add(kLeast, kLeast, kLeast);
  sum.add(-kLargest, kLargest, kLargest);
  EXPECT_EQ(sum.sign(), 1);
  sum.add(-kLeast, kLeast, kLeast);
  EXPECT_EQ(sum.sign(), 0);
  sum.add(kLeast, -kLeast, kLeast);
  EXPECT_EQ(sum.sign(), -1);
}

TEST(LongSum, CarriesRunThroughManyWords) {
  gx_LongSum sum;
  sum.add(kLargest, kLargest);
  for (int i = 0; i < 1000; ++i) sum.add(kLargest, kLargest, 1.0);
  for (int i = 0; i < 1001; ++i) sum.add(-kLargest, kLargest);
  EXPECT_EQ(sum.sign(), 0);
}

TEST(LongSum, RandomSumsHaveTheSignThatIntegersGive) {
  std::mt19937_64 random(20);
  for (int round = 0; round < 20000; ++round) {
    gx_LongSum sum;
    Wide exact = 0;
    std::uniform_int_distribution<long> digits(-(1L << (1 + random() % 40)), 1L << (1 + random() % 40));
    for (int i = 0; i < 6; ++i) {
      const long x = digits(random);
      const long y = digits(random);
      const long z = digits(random);
      sum.add(static_cast<double>(x), static_cast<double>(y), static_cast<double>(z));
      exact += static_cast<Wide>(x) * y * z;
      if (i == 4 && round % 2 == 0) {
        sum.add(-static_cast<double>(x), static_cast<double>(y), static_cast<double>(z));
        exact -= static_cast<Wide>(x) * y * z;
      }
    }
    ASSERT_EQ(sum.sign(), sign(exact)) << "round " << round;
  }
}
