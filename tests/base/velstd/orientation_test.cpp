#include <gtest/gtest.h>
#include <velstd/orientation.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>

namespace {

using Point = gxVector<2>;

// The sign by integers, for coordinates that are whole numbers of at most 30 bits.
int signByIntegers(const Point& a, const Point& b, const Point& c) {
  const auto whole = [](double v) { return static_cast<long long>(v); };
  const long long left = (whole(b.x()) - whole(a.x())) * (whole(c.y()) - whole(a.y()));
  const long long right = (whole(b.y()) - whole(a.y())) * (whole(c.x()) - whole(a.x()));
  return (left > right) - (left < right);
}

void expectSign(int sign, const Point& a, const Point& b, const Point& c) {
  for (const auto orientation : {gx_Orientation, gx_OrientationExact}) {
    EXPECT_EQ(orientation(a, b, c), sign);
    EXPECT_EQ(orientation(b, c, a), sign);
    EXPECT_EQ(orientation(c, a, b), sign);
    EXPECT_EQ(orientation(c, b, a), -sign);
    EXPECT_EQ(orientation(b, a, c), -sign);
    EXPECT_EQ(orientation(a, c, b), -sign);
  }
}

}  // namespace

TEST(Orientation, LeftTurnIsPositiveRightTurnNegativeStraightZero) {
  expectSign(1, {0, 0}, {1, 0}, {0, 1});
  expectSign(-1, {0, 0}, {0, 1}, {1, 0});
  expectSign(0, {0, 0}, {1, 1}, {3, 3});
}

TEST(Orientation, CoincidingPointsGiveZero) {
  expectSign(0, {1, 2}, {1, 2}, {5, 6});
  expectSign(0, {0.1, 0.2}, {0.1, 0.2}, {0.1, 0.2});
}

TEST(Orientation, OneUnitInTheLastPlaceDecides) {
  const double up = std::nextafter(3.3, 4.0);
  const double down = std::nextafter(3.3, 3.0);
  expectSign(0, {1.1, 1.1}, {2.2, 2.2}, {3.3, 3.3});
  expectSign(1, {1.1, 1.1}, {2.2, 2.2}, {3.3, up});
  expectSign(-1, {1.1, 1.1}, {2.2, 2.2}, {3.3, down});
  // Far from the origin, where the differences are not exact.
  expectSign(0, {0.1, 0.1}, {1e16, 1e16}, {12345.678, 12345.678});
  expectSign(1, {0.1, 0.1}, {1e16, 1e16}, {12345.678, std::nextafter(12345.678, 1e9)});
}

TEST(Orientation, SubnormalCoordinatesAreDecided) {
  const double tiny = std::numeric_limits<double>::denorm_min();
  expectSign(1, {0, 0}, {tiny, 0}, {0, tiny});
  expectSign(0, {0, 0}, {tiny, tiny}, {3 * tiny, 3 * tiny});
  expectSign(1, {0, 0}, {2 * tiny, tiny}, {3 * tiny, 2 * tiny});
  expectSign(-1, {0, 0}, {2 * tiny, tiny}, {5 * tiny, 2 * tiny});
}

TEST(Orientation, TheLargestCoordinatesAreDecided) {
  const double most = DBL_MAX;
  expectSign(1, {-most, -most}, {most, -most}, {most, most});
  expectSign(0, {-most, -most}, {0, 0}, {most, most});
  expectSign(1, {-most, -most}, {0, 0}, {std::nextafter(most, 0.0), most});
  expectSign(-1, {-most, -most}, {0, 0}, {most, std::nextafter(most, 0.0)});
}

TEST(Orientation, LargestAndSmallestCoordinatesTogetherAreDecided) {
  const double tiny = std::numeric_limits<double>::denorm_min();
  expectSign(1, {0, 0}, {DBL_MAX, 0}, {DBL_MAX, tiny});
  expectSign(-1, {0, 0}, {DBL_MAX, 0}, {-DBL_MAX, -tiny});
  expectSign(1, {-DBL_MAX, 0}, {DBL_MAX, 0}, {0, tiny});
  expectSign(1, {-DBL_MAX, -DBL_MAX}, {DBL_MAX, DBL_MAX}, {0, tiny});
}

TEST(Orientation, NotFiniteCoordinatesGiveZero) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  expectSign(0, {nan, 0}, {1, 0}, {0, 1});
  expectSign(0, {0, 0}, {infinity, 0}, {0, 1});
  expectSign(0, {0, 0}, {1, 0}, {0, -infinity});
}

TEST(Orientation, IntegersAgreeWithIntegerArithmetic) {
  std::mt19937_64 engine(20260101);
  SCOPED_TRACE("seed 20260101");
  for (const int range : {2, 5, 1000, 1 << 29}) {
    std::uniform_int_distribution<int> draw(-range, range);
    for (int i = 0; i < 3000; ++i) {
      const Point a(draw(engine), draw(engine));
      const Point b(draw(engine), draw(engine));
      const Point c(draw(engine), draw(engine));
      ASSERT_EQ(gx_Orientation(a, b, c), signByIntegers(a, b, c));
      ASSERT_EQ(gx_OrientationExact(a, b, c), signByIntegers(a, b, c));
    }
  }
}

// Scaling by a power of two keeps the sign, wherever nothing is rounded away: the same turns from the
// smallest subnormals to the largest doubles.
TEST(Orientation, EveryScaleGivesTheSameSign) {
  std::mt19937_64 engine(20260102);
  SCOPED_TRACE("seed 20260102");
  std::uniform_int_distribution<int> draw(-40, 40);
  for (int i = 0; i < 500; ++i) {
    const Point a(draw(engine), draw(engine));
    const Point b(draw(engine), draw(engine));
    const Point c(draw(engine), draw(engine));
    const int sign = signByIntegers(a, b, c);
    for (const int exponent : {-1074, -1060, -540, -30, 0, 30, 500, 1018}) {
      const auto scaled = [exponent](const Point& p) {
        return Point(std::ldexp(p.x(), exponent), std::ldexp(p.y(), exponent));
      };
      ASSERT_EQ(gx_Orientation(scaled(a), scaled(b), scaled(c)), sign) << "2^" << exponent;
    }
  }
}

// Points next to a line of two random points: the quick answer, where it is given, is the exact one.
TEST(Orientation, FilterAndExactFormAgreeNextToLines) {
  std::mt19937_64 engine(20260103);
  SCOPED_TRACE("seed 20260103");
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  for (int i = 0; i < 20000; ++i) {
    const double scale = std::ldexp(1.0, static_cast<int>(engine() % 600) - 300);
    const double offset = (i % 2 == 0 ? 0.0 : 1e3 * uniform(engine)) * scale;
    const Point a(offset + scale * uniform(engine), offset + scale * uniform(engine));
    const Point b(offset + scale * uniform(engine), offset + scale * uniform(engine));
    const double t = 3.0 * uniform(engine);
    double y = a.y() + t * (b.y() - a.y());
    for (auto steps = engine() % 3; steps > 0; --steps) y = std::nextafter(y, HUGE_VAL);
    const Point c(a.x() + t * (b.x() - a.x()), y);
    ASSERT_EQ(gx_Orientation(a, b, c), gx_OrientationExact(a, b, c));
    ASSERT_EQ(gx_Orientation(a, b, c), gx_Orientation(b, c, a));
    ASSERT_EQ(gx_Orientation(a, b, c), -gx_Orientation(c, b, a));
  }
}
