#include <velip/angle8.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <type_traits>

namespace {

static_assert(sizeof(gxAngle8) == 1);
static_assert(!std::is_convertible_v<unsigned char, gxAngle8>);
static_assert(!std::is_convertible_v<gxDegree, gxAngle8>);

TEST(Angle8, DefaultIsZero) {
  EXPECT_EQ(gxAngle8().toByte(), 0);
}

TEST(Angle8, EveryByteIsKept) {
  for (int units = 0; units < 256; ++units) {
    EXPECT_EQ(gxAngle8(static_cast<unsigned char>(units)).toByte(), units);
  }
}

TEST(Angle8, EveryByteSurvivesTheWayThroughDegrees) {
  for (int units = 0; units < 256; ++units) {
    const gxAngle8 angle(static_cast<unsigned char>(units));
    EXPECT_EQ(gxAngle8(angle.toDegree()), angle) << units;
    EXPECT_EQ(angle.toDegree().toDouble(), units * 1.40625) << units;
  }
}

TEST(Angle8, QuartersOfATurn) {
  EXPECT_EQ(gxAngle8(gxDegree(0)).toByte(), 0);
  EXPECT_EQ(gxAngle8(gxDegree(90)).toByte(), 64);
  EXPECT_EQ(gxAngle8(gxDegree(180)).toByte(), 128);
  EXPECT_EQ(gxAngle8(gxDegree(270)).toByte(), 192);
  EXPECT_EQ(gxAngle8(gxDegree(360)).toByte(), 0);
  EXPECT_EQ(gxAngle8(gxDegree(-90)).toByte(), 192);
  EXPECT_EQ(gxAngle8(gxDegree(90 + 3600)).toByte(), 64);
}

TEST(Angle8, RoundsToTheNearestUnitAcrossZero) {
  EXPECT_EQ(gxAngle8(gxDegree(0.7)).toByte(), 0);
  EXPECT_EQ(gxAngle8(gxDegree(0.71)).toByte(), 1);
  EXPECT_EQ(gxAngle8(gxDegree(-0.7)).toByte(), 0);
  EXPECT_EQ(gxAngle8(gxDegree(-0.71)).toByte(), 255);
  EXPECT_EQ(gxAngle8(gxDegree(359.9)).toByte(), 0);
}

TEST(Angle8, NotFiniteGivesZero) {
  EXPECT_EQ(gxAngle8(gxDegree(std::numeric_limits<double>::quiet_NaN())).toByte(), 0);
  EXPECT_EQ(gxAngle8(gxDegree(HUGE_VAL)).toByte(), 0);
  EXPECT_EQ(gxAngle8(gxDegree(-HUGE_VAL)).toByte(), 0);
}

TEST(Angle8, SumsAndDifferencesWrapAround) {
  constexpr auto angle = [](int units) { return gxAngle8(static_cast<unsigned char>(units)); };
  EXPECT_EQ(angle(200) + angle(100), angle(44));
  EXPECT_EQ(angle(10) - angle(20), angle(246));
  for (int a = 0; a < 256; a += 5) {
    for (int b = 0; b < 256; b += 3) {
      EXPECT_EQ((angle(a) + angle(b)).toByte(), (a + b) % 256);
      EXPECT_EQ((angle(a) - angle(b)).toByte(), (a - b + 256) % 256);
    }
  }
}

}  // namespace
