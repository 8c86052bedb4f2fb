#include <velstd/internal/scaled_vector.h>

#include <gtest/gtest.h>

#include <limits>

#include <support/random_doubles.h>

namespace {

using V = gxVector<2>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(ScaledVector, LargerComponentLiesFromOneToTwo) {
  const gx_ScaledVector s = gf_Scaled(V(12, -5));
  EXPECT_EQ(s.vector, V(1.5, -0.625));
  EXPECT_EQ(s.exponent, 3);
  EXPECT_EQ(gf_Scaled(V(0, -5e-324)).vector, V(0, -1));
  EXPECT_EQ(gf_Scaled(V(0, -5e-324)).exponent, -1074);
}

TEST(ScaledVector, ZeroAndNotFiniteStandAsTheyAre) {
  EXPECT_EQ(gf_Scaled(V(0, 0)).vector, V(0, 0));
  EXPECT_EQ(gf_Scaled(V(0, 0)).exponent, 0);
  EXPECT_EQ(gf_Scaled(V(kInf, 1)).vector, V(kInf, 1));
  EXPECT_EQ(gf_Scaled(V(1, kNaN)).exponent, 0);
  EXPECT_EQ(gf_Scaled(V(0, kNaN)).exponent, 0);
}

TEST(ScaledVector, ScalingIsExactWhereNothingUnderflows) {
  constexpr std::uint64_t kSeed = 201;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 50000; ++i) {
    const double x = random.anyFinite();
    const V v(x, x * random.uniform(-1, 1));
    const gx_ScaledVector s = gf_Scaled(v);
    ASSERT_EQ(gf_TimesPower(s.vector, s.exponent), v);
    const double largest = std::max(std::abs(s.vector.x()), std::abs(s.vector.y()));
    ASSERT_TRUE((largest >= 1.0 && largest < 2.0) || v == V(0, 0)) << x;
  }
}

TEST(ScaledVector, DifferenceBeyondTheRange) {
  const gx_ScaledVector s = gf_ScaledDifference(V(0x1p1023, 0), V(-0x1p1023, 0x1p1022));
  EXPECT_EQ(s.vector, V(1, -0.25));
  EXPECT_EQ(s.exponent, 1024);
  const gx_ScaledVector near = gf_ScaledDifference(V(5, 1), V(2, 1));
  EXPECT_EQ(near.vector, V(1.5, 0));
  EXPECT_EQ(near.exponent, 1);
}

TEST(ScaledVector, MovedThereAndBackAcrossTheRange) {
  EXPECT_EQ(gf_Moved(V(1, 2), V(1, -1), 2), V(5, -2));
  EXPECT_EQ(gf_Moved(V(-0x1p1023, 0), V(1, 0), 1024), V(0x1p1023, 0));
  EXPECT_FALSE(gf_IsFinite(gf_Moved(V(0x1p1023, 0), V(1, 0), 1023)));
}

TEST(ScaledVector, SafeNumbers) {
  EXPECT_TRUE(gf_IsSafe(1.0));
  EXPECT_TRUE(gf_IsSafe(-1e-280));
  EXPECT_TRUE(gf_IsSafe(1e300));
  EXPECT_FALSE(gf_IsSafe(0.0));
  EXPECT_FALSE(gf_IsSafe(9e-281));
  EXPECT_FALSE(gf_IsSafe(-1.1e300));
  EXPECT_FALSE(gf_IsSafe(kInf));
  EXPECT_FALSE(gf_IsSafe(kNaN));
}

}  // namespace
