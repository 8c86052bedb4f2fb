// Feet of points on an ellipse: four side by side, and one alone.
// Covers base/velstd/internal/four.h
#include <velstd/internal/ellipse_distance.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace {

template <class Number>
GX_FOURFOLD void findFeet(double a, double b, const Number& x, const Number& y,
                          gx_EllipseFeet<Number>& feet) {
  gx_FeetClimb<Number> climb(a, b, x, y);
  for (int i = 0; i < gx_FeetClimb<Number>::kMostRounds && !climb.settled(); ++i) climb.round();
  climb.end(feet);
}

gx_EllipseFeet<double> footOf(double a, double b, double x, double y) {
  gx_EllipseFeet<double> foot;
  findFeet(a, b, x, y, foot);
  return foot;
}

void fourFeet(double a, double b, const gx_Four& x, const gx_Four& y, gx_EllipseFeet<gx_Four>& feet) {
  findFeet(a, b, x, y, feet);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void fourFeetInWideRegisters(double a, double b, const gx_Four& x,
                                                             const gx_Four& y,
                                                             gx_EllipseFeet<gx_Four>& feet) {
  findFeet(a, b, x, y, feet);
}
#endif

bool sameBits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// Points near and far from ellipses round and flat, on their axes and in their centre.
class Draw {
 public:
  double number(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(engine_);
  }
  double coordinate(double size) {
    switch (std::uniform_int_distribution<int>(0, 5)(engine_)) {
      case 0: return 0.0;
      case 1: return size;
      case 2: return size * std::pow(10.0, number(-20.0, 3.0));
      default: return number(-2.0, 2.0) * size;
    }
  }

 private:
  std::mt19937_64 engine_{20250721};
};

TEST(EllipseDistance, FourFeetHaveTheBitsOfEachAlone) {
  Draw draw;
  for (int round = 0; round < 20000; ++round) {
    const double a = std::pow(10.0, draw.number(-2.0, 2.0));
    const double b = round % 3 == 0 ? a : a * std::pow(10.0, draw.number(-6.0, 0.0));
    gx_Four x;
    gx_Four y;
    for (int i = 0; i < 4; ++i) {
      x[i] = draw.coordinate(a);
      y[i] = draw.coordinate(b);
    }
    gx_EllipseFeet<gx_Four> feet;
    fourFeet(a, b, x, y, feet);
    gx_EllipseFeet<gx_Four> wide = feet;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2")) fourFeetInWideRegisters(a, b, x, y, wide);
#endif
    for (int i = 0; i < 4; ++i) {
      const gx_EllipseFoot foot = footOf(a, b, x[i], y[i]);
      ASSERT_TRUE(sameBits(foot.cosine, feet.cosine[i]) && sameBits(foot.sine, feet.sine[i]) &&
                  sameBits(foot.cosine, wide.cosine[i]) && sameBits(foot.sine, wide.sine[i]))
          << a << ' ' << b << ' ' << x[i] << ' ' << y[i];
    }
  }
}

TEST(EllipseDistance, NoPointOfTheEllipseIsNearerThanTheFoot) {
  Draw draw;
  for (int round = 0; round < 2000; ++round) {
    const double a = std::pow(10.0, draw.number(-2.0, 2.0));
    const double b = round % 3 == 0 ? a : a * std::pow(10.0, draw.number(-3.0, 0.0));
    const double x = draw.coordinate(a);
    const double y = draw.coordinate(b);
    const gx_EllipseFoot foot = footOf(a, b, x, y);
    EXPECT_NEAR(foot.cosine * foot.cosine + foot.sine * foot.sine, 1.0, 1e-15);
    const double distance = std::hypot(x - a * foot.cosine, y - b * foot.sine);
    for (int i = 0; i < 360; ++i) {
      const double t = 6.283185307179586 * i / 360;
      EXPECT_LE(distance, std::hypot(x - a * std::cos(t), y - b * std::sin(t)) + 1e-14 * (a + distance))
          << a << ' ' << b << ' ' << x << ' ' << y;
    }
  }
}

TEST(EllipseDistance, OfEquallyNearPointsTheUpperOneIsTaken) {
  EXPECT_GT(footOf(3.0, 1.0, 0.5, 0.0).sine, 0.0);
  EXPECT_GT(footOf(3.0, 1.0, 0.5, -0.0).sine, 0.0);
  EXPECT_EQ(footOf(3.0, 1.0, 4.0, 0.0).cosine, 1.0);
}

}  // namespace
