#include <velstd/number_text.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace {

// What ECMAScript prints for the same doubles.
TEST(NumberText, IsPlainFromAMillionthUpToTenToTheTwentyOne) {
  EXPECT_EQ(gfNumberText(1100.0), "1100");
  EXPECT_EQ(gfNumberText(100000.0), "100000");
  EXPECT_EQ(gfNumberText(0.1), "0.1");
  EXPECT_EQ(gfNumberText(1.0 / 3.0), "0.3333333333333333");
  EXPECT_EQ(gfNumberText(1e-6), "0.000001");
  EXPECT_EQ(gfNumberText(1.25e-5), "0.0000125");
  EXPECT_EQ(gfNumberText(123456789012345680000.0), "123456789012345680000");
  EXPECT_EQ(gfNumberText(999999999999999900000.0), "999999999999999900000");
  EXPECT_EQ(gfNumberText(12.5), "12.5");
}

TEST(NumberText, HasAnExponentBeyond) {
  EXPECT_EQ(gfNumberText(1e21), "1e+21");
  EXPECT_EQ(gfNumberText(1.5e300), "1.5e+300");
  EXPECT_EQ(gfNumberText(1e-7), "1e-7");
  EXPECT_EQ(gfNumberText(1.25e-7), "1.25e-7");
  EXPECT_EQ(gfNumberText(5e-324), "5e-324");
  EXPECT_EQ(gfNumberText(std::numeric_limits<double>::max()), "1.7976931348623157e+308");
}

TEST(NumberText, OfZerosInfinitiesAndNaN) {
  EXPECT_EQ(gfNumberText(0.0), "0");
  EXPECT_EQ(gfNumberText(-0.0), "-0");
  EXPECT_EQ(gfNumberText(std::numeric_limits<double>::infinity()), "Infinity");
  EXPECT_EQ(gfNumberText(-std::numeric_limits<double>::infinity()), "-Infinity");
  EXPECT_EQ(gfNumberText(std::numeric_limits<double>::quiet_NaN()), "NaN");
}

TEST(NumberText, HasTheSignInFront) {
  EXPECT_EQ(gfNumberText(-1e-7), "-1e-7");
  EXPECT_EQ(gfNumberText(-12.0), "-12");
}

TEST(NumberText, OfAnyDoubleReadsBackAsTheSame) {
  constexpr std::uint64_t kSeed = 4;
  SCOPED_TRACE("seed 4");
  std::mt19937_64 random(kSeed);
  for (int i = 0; i < 200000; ++i) {
    double value = std::bit_cast<double>(random());
    if (i % 2 == 0) value = std::ldexp(static_cast<double>(random() >> 40), -static_cast<int>(i % 64));
    if (!std::isfinite(value)) continue;
    const std::string text = gfNumberText(value);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(std::strtod(text.c_str(), nullptr)),
              std::bit_cast<std::uint64_t>(value))
        << text;
  }
}

}  // namespace
