// The rounded crossing, against 128-bit integers and against its own exact test of sides, which integers
// check first.
#include <overlay/internal/crossing_point.h>
#include <overlay/internal/predicates.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace {

using P = gxVector<2>;
__extension__ using Wide = __int128;

struct Cross {
  P a, b, c, d;
};

bool crosses(const Cross& e) {
  return gx_meetingOf(e.a, e.b, e.c, e.d).kind == gx_EdgeMeeting::eCrossing;
}

P pointOf(const Cross& e) {
  return gx_crossingPoint(e.a, e.b, e.c, e.d);
}

Wide whole(double v) {
  return static_cast<Wide>(v);
}

// The crossing's coordinate as a fraction num / den, den > 0, of whole coordinates up to 2^30 or so.
struct Fraction {
  Wide num;
  Wide den;
};

Fraction exact(const Cross& e, bool alongY) {
  const Wide rx = whole(e.b.x()) - whole(e.a.x());
  const Wide ry = whole(e.b.y()) - whole(e.a.y());
  const Wide qx = whole(e.d.x()) - whole(e.c.x());
  const Wide qy = whole(e.d.y()) - whole(e.c.y());
  const Wide den = rx * qy - ry * qx;
  const Wide t = (whole(e.c.x()) - whole(e.a.x())) * qy - (whole(e.c.y()) - whole(e.a.y())) * qx;
  const Wide num = alongY ? whole(e.a.y()) * den + t * ry : whole(e.a.x()) * den + t * rx;
  return den > 0 ? Fraction{num, den} : Fraction{-num, -den};
}

Cross randomCross(std::mt19937_64& random, std::int64_t size) {
  std::uniform_int_distribution<std::int64_t> at(-size, size);
  const auto point = [&] { return P(static_cast<double>(at(random)), static_cast<double>(at(random))); };
  for (;;) {
    const Cross e{point(), point(), point(), point()};
    if (crosses(e)) return e;
  }
}

// Tells whether p is the double nearest to the crossing, by exact sides of the middles beside it.
bool isNearest(const Cross& e, bool alongY, double p) {
  const double inf = std::numeric_limits<double>::infinity();
  const double before = std::nextafter(p, -inf);
  const double behind = std::nextafter(p, inf);
  return gx_sideOfCrossing(e.a, e.b, e.c, e.d, alongY, before, p) >= 0 &&
         gx_sideOfCrossing(e.a, e.b, e.c, e.d, alongY, p, behind) <= 0;
}

void expectRounded(const Cross& e) {
  const P p = pointOf(e);
  EXPECT_TRUE(isNearest(e, false, p.x()));
  EXPECT_TRUE(isNearest(e, true, p.y()));
  for (const P& q : {gx_crossingPoint(e.b, e.a, e.c, e.d), gx_crossingPoint(e.a, e.b, e.d, e.c),
                     gx_crossingPoint(e.c, e.d, e.a, e.b), gx_crossingPoint(e.d, e.c, e.b, e.a)}) {
    EXPECT_EQ(q.x(), p.x());
    EXPECT_EQ(q.y(), p.y());
  }
}

}  // namespace

TEST(CrossingPoint, OfABowIsItsMiddle) {
  const P p = gx_crossingPoint({0, 0}, {10, 10}, {10, 0}, {0, 10});
  EXPECT_EQ(p, P(5, 5));
}

TEST(CrossingPoint, OfUprightEdgesHasTheirCoordinates) {
  const P p = gx_crossingPoint({0.1, -1}, {0.1, 7}, {-3, 0.3}, {5, 0.3});
  EXPECT_EQ(p.x(), 0.1);
  EXPECT_EQ(p.y(), 0.3);
}

TEST(CrossingPoint, AtTheOriginIsPlusZero) {
  for (const Cross& e : {Cross{{-1, -1}, {1, 1}, {-1, 1}, {1, -1}},
                         Cross{{-1, -0.0}, {1, -0.0}, {-0.0, 1}, {-0.0, -1}}}) {
    const P p = pointOf(e);
    EXPECT_FALSE(std::signbit(p.x()));
    EXPECT_FALSE(std::signbit(p.y()));
    EXPECT_EQ(p, P(0, 0));
  }
}

TEST(CrossingPoint, HalfwayBetweenTwoDoublesGoesToTheEvenOne) {
  // x = 2^52 + 1/2 and 2^52 + 3/2, where doubles are whole numbers.
  const double far = 4503599627370496.0;
  EXPECT_EQ(gx_crossingPoint({far, 0}, {far + 1, 2}, {far, 2}, {far + 1, 0}).x(), far);
  EXPECT_EQ(gx_crossingPoint({far + 1, 0}, {far + 2, 2}, {far + 1, 2}, {far + 2, 0}).x(), far + 2);
  EXPECT_EQ(gx_crossingPoint({-far - 1, 0}, {-far - 2, 2}, {-far - 1, 2}, {-far - 2, 0}).x(), -far - 2);
}

TEST(CrossingPoint, OfLatticesIsTheFractionThatIntegersGive) {
  std::mt19937_64 random(21);
  for (int round = 0; round < 20000; ++round) {
    const Cross e = randomCross(random, std::int64_t{1} << (2 + round % 27));
    const P p = pointOf(e);
    for (const bool alongY : {false, true}) {
      const Fraction f = exact(e, alongY);
      const double value = alongY ? p.y() : p.x();
      // |value · den − num| is at most half a unit of value, times den.
      const auto quotient =
          static_cast<double>(static_cast<long double>(f.num) / static_cast<long double>(f.den));
      ASSERT_NEAR(value, quotient, std::fabs(quotient) * 0x1p-52 + 1e-300) << "round " << round;
    }
    expectRounded(e);
  }
}

TEST(CrossingPoint, TheSideOfAMiddleIsTheOneThatIntegersGive) {
  std::mt19937_64 random(22);
  for (int round = 0; round < 20000; ++round) {
    const Cross e = randomCross(random, std::int64_t{1} << (2 + round % 20));
    for (const bool alongY : {false, true}) {
      const Fraction f = exact(e, alongY);
      const auto near = static_cast<std::int64_t>(f.num / f.den);
      for (std::int64_t p = near - 2; p <= near + 2; ++p) {
        const Wide difference = 2 * f.num - (2 * p + 1) * f.den;
        ASSERT_EQ(gx_sideOfCrossing(e.a, e.b, e.c, e.d, alongY, static_cast<double>(p),
                                    static_cast<double>(p + 1)),
                  (difference > 0) - (difference < 0))
            << "round " << round;
      }
    }
  }
}

TEST(CrossingPoint, OfNearlyParallelEdgesIsStillTheNearest) {
  std::mt19937_64 random(23);
  std::uniform_real_distribution<double> at(-1.0, 1.0);
  int found = 0;
  for (int round = 0; round < 3000; ++round) {
    const P a(at(random), at(random));
    const P b(at(random), at(random));
    const auto beside = [&random](double v) {
      for (std::uint64_t i = random() % 4; i > 0; --i)
        v = std::nextafter(v, random() % 2 == 0 ? 2.0 : -2.0);
      return v;
    };
    const Cross e{a, b, {beside(a.x()), beside(a.y())}, {beside(b.x()), beside(b.y())}};
    if (!crosses(e)) continue;
    ++found;
    expectRounded(e);
  }
  EXPECT_GT(found, 300);
}

TEST(CrossingPoint, AtTheEndsOfTheRangeAndOfMixedSizes) {
  std::mt19937_64 random(24);
  std::uniform_real_distribution<double> at(-1.0, 1.0);
  std::uniform_int_distribution<int> power(-1040, 1023);
  int found = 0;
  for (int round = 0; round < 6000; ++round) {
    const int one = power(random);
    const auto number = [&] { return std::ldexp(at(random), round % 2 == 0 ? one : power(random)); };
    const Cross e{
        {number(), number()}, {number(), number()}, {number(), number()}, {number(), number()}};
    if (!crosses(e)) continue;
    ++found;
    expectRounded(e);
  }
  EXPECT_GT(found, 300);
}

TEST(CrossingPoint, KeepsItsBitsUnderAPowerOfTwo) {
  std::mt19937_64 random(25);
  std::uniform_real_distribution<double> at(-1.0, 1.0);
  for (int round = 0; round < 2000; ++round) {
    const Cross e{{at(random), at(random)},
                  {at(random), at(random)},
                  {at(random), at(random)},
                  {at(random), at(random)}};
    if (!crosses(e)) continue;
    const P p = pointOf(e);
    for (const double scale : {0x1p900, 0x1p-900}) {
      EXPECT_EQ(pointOf({e.a * scale, e.b * scale, e.c * scale, e.d * scale}), p * scale);
    }
  }
}

TEST(CrossingOnGrid, IsTheNearestMultipleWithTiesToEven) {
  std::mt19937_64 random(26);
  for (int round = 0; round < 20000; ++round) {
    const Cross e = randomCross(random, 2 + round % 50);
    const P p = gx_crossingOnGrid(e.a, e.b, e.c, e.d, 1.0);
    for (const bool alongY : {false, true}) {
      const Fraction f = exact(e, alongY);
      const auto k = static_cast<Wide>(alongY ? p.y() : p.x());
      const Wide off = 2 * (f.num - k * f.den);
      ASSERT_TRUE(off >= -f.den && off <= f.den) << "round " << round;
      ASSERT_TRUE((off != f.den && off != -f.den) || k % 2 == 0) << "round " << round;
    }
  }
}

TEST(CrossingOnGrid, OfACrossingJustBeforeAMiddleIsNotRoundedTwice) {
  // x = 1.5 (1 − 1 / (2^54 − 1)), of which the nearest double is 1.5.
  const Cross e{{0, 0}, {3, 0x1p53}, {0, 0x1p53 - 1}, {3, 0}};
  ASSERT_TRUE(crosses(e));
  EXPECT_EQ(pointOf(e).x(), 1.5);
  EXPECT_EQ(gx_crossingOnGrid(e.a, e.b, e.c, e.d, 1.0).x(), 1.0);
}
