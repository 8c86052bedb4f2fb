#include <cntr/shapestat.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(StandardDeviation, IsThatOfThePopulation) {
  EXPECT_DOUBLE_EQ(gf_StdDev({1, 2, 3, 4}), std::sqrt(1.25));
  EXPECT_DOUBLE_EQ(gf_StdDev({-1, 1}), 1.0);
}

TEST(StandardDeviation, OfOneValueIsZero) {
  EXPECT_EQ(gf_StdDev({5}), 0.0);
}

TEST(StandardDeviation, OfEqualValuesIsZero) {
  EXPECT_EQ(gf_StdDev({4, 4, 4, 4}), 0.0);
}

TEST(StandardDeviation, OfNoValuesIsNotANumber) {
  EXPECT_TRUE(std::isnan(gf_StdDev({})));
}

TEST(StandardDeviation, FarFromZeroKeepsItsDigits) {
  EXPECT_DOUBLE_EQ(gf_StdDev({1e9 + 1, 1e9 + 2, 1e9 + 3, 1e9 + 4}), std::sqrt(1.25));
}

TEST(StandardDeviation, OfValuesThatAreNotFiniteIsNotANumber) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(std::isnan(gf_StdDev({1, infinity})));
  EXPECT_TRUE(std::isnan(gf_StdDev({1, std::numeric_limits<double>::quiet_NaN()})));
}

TEST(StandardDeviation, OfHugeValuesOverflowsToInfinityOfTinyOnesToZero) {
  EXPECT_EQ(gf_StdDev({1e308, -1e308}), std::numeric_limits<double>::infinity());
  EXPECT_EQ(gf_StdDev({5e-324, 0}), 0.0);
}

}  // namespace
