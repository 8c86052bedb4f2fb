#include <velstd/angle.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <type_traits>

#include <support/random_doubles.h>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = std::numbers::pi;

static_assert(!std::is_convertible_v<double, gxRadian>);
static_assert(!std::is_convertible_v<double, gxDegree>);
static_assert(!std::is_convertible_v<gxDegree, gxRadian>);
static_assert(!std::is_convertible_v<gxRadian, gxDegree>);

TEST(Angle, IsKeptAsGiven) {
  EXPECT_EQ(gxRadian().toDouble(), 0.0);
  EXPECT_EQ(gxDegree().toDouble(), 0.0);
  EXPECT_EQ(gxRadian(-100.0).toDouble(), -100.0);
  EXPECT_EQ(gxDegree(725.0).toDouble(), 725.0);
}

TEST(Angle, RadiansAndDegreesMakeEachOther) {
  EXPECT_DOUBLE_EQ(gxRadian(gxDegree(180.0)).toDouble(), kPi);
  EXPECT_DOUBLE_EQ(gxRadian(gxDegree(-90.0)).toDouble(), -kPi / 2);
  EXPECT_DOUBLE_EQ(gxDegree(gxRadian(kPi)).toDouble(), 180.0);
  EXPECT_DOUBLE_EQ(gxDegree(gxRadian(1.0)).toDouble(), 57.29577951308232);
}

TEST(Angle, ArithmeticAndOrderAreThoseOfTheNumbers) {
  EXPECT_EQ((gxRadian(1.0) + gxRadian(0.5)).toDouble(), 1.5);
  EXPECT_EQ((gxRadian(1.0) - gxRadian(0.5)).toDouble(), 0.5);
  EXPECT_EQ((-gxRadian(1.0)).toDouble(), -1.0);
  EXPECT_EQ((gxRadian(1.0) * 3.0).toDouble(), 3.0);
  EXPECT_EQ((gxDegree(350.0) + gxDegree(20.0)).toDouble(), 370.0);
  EXPECT_EQ((gxDegree(10.0) - gxDegree(20.0)).toDouble(), -10.0);
  EXPECT_EQ((-gxDegree(10.0)).toDouble(), -10.0);
  EXPECT_EQ((gxDegree(10.0) * 0.5).toDouble(), 5.0);
  EXPECT_LT(gxRadian(0.0), gxRadian(7.0));
  EXPECT_NE(gxRadian(0.0), gxRadian(2 * kPi));
  EXPECT_EQ(gxDegree(1.0), gxDegree(1.0));
  EXPECT_FALSE(gxRadian(kNaN) == gxRadian(kNaN));
}

TEST(AngleNorm, EveryQuarterTurnOfDegrees) {
  const double expected[] = {0, 90, 180, 270};
  for (int quarter = -12; quarter <= 12; ++quarter) {
    EXPECT_EQ(gxDegree(90.0 * quarter).norm().toDouble(), expected[(quarter + 12) % 4]) << quarter;
  }
}

TEST(AngleNorm, EveryQuarterTurnOfRadians) {
  const double expected[] = {0, kPi / 2, kPi, 3 * kPi / 2};
  for (int quarter = -4; quarter <= 4; ++quarter) {
    EXPECT_DOUBLE_EQ(gxRadian(quarter * (kPi / 2)).norm().toDouble(), expected[(quarter + 4) % 4])
        << quarter;
  }
}

TEST(AngleNorm, AnglesInsideOneTurnStay) {
  for (const double angle : {0.0, 5e-324, 1.0, kPi, 6.283185307179585}) {
    EXPECT_EQ(gxRadian(angle).norm().toDouble(), angle);
  }
}

TEST(AngleNorm, TinyNegativeAnglesGiveZeroNotTheFullTurn) {
  for (const double angle : {-5e-324, -1e-300, -1e-17}) {
    EXPECT_EQ(gxRadian(angle).norm().toDouble(), 0.0) << angle;
    EXPECT_EQ(gxDegree(angle).norm().toDouble(), 0.0) << angle;
  }
  EXPECT_LT(gxRadian(-1e-15).norm().toDouble(), 2 * kPi);
  EXPECT_GT(gxRadian(-1e-15).norm().toDouble(), 6.28);
}

TEST(AngleNorm, ZeroHasNoSign) {
  EXPECT_FALSE(std::signbit(gxRadian(-0.0).norm().toDouble()));
  EXPECT_FALSE(std::signbit(gxDegree(-720.0).norm().toDouble()));
}

TEST(AngleNorm, NotFiniteGivesNaN) {
  for (const double angle : {kNaN, kInf, -kInf}) {
    EXPECT_TRUE(std::isnan(gxRadian(angle).norm().toDouble()));
    EXPECT_TRUE(std::isnan(gxDegree(angle).norm().toDouble()));
  }
}

TEST(AngleNorm, AnyAngleFallsIntoOneTurnAndKeepsItsDirection) {
  constexpr std::uint64_t kSeed = 111;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 100000; ++i) {
    const double wild = random.anyFinite();
    const double rest = gxRadian(wild).norm().toDouble();
    ASSERT_TRUE(rest >= 0.0 && rest < 2 * kPi) << wild;
    const double degrees = gxDegree(wild).norm().toDouble();
    ASSERT_TRUE(degrees >= 0.0 && degrees < 360.0) << wild;
    const double tame = random.uniform(-50.0, 50.0);
    ASSERT_NEAR(std::sin(gxRadian(tame).norm().toDouble()), std::sin(tame), 1e-14) << tame;
    ASSERT_NEAR(std::cos(gxRadian(tame).norm().toDouble()), std::cos(tame), 1e-14) << tame;
  }
}

}  // namespace
