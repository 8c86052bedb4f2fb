#include <gauge/internal/exact.h>
#include <gtest/gtest.h>
#include <support/random_shapes.h>

#include <cmath>

namespace {

using V = gxVector<2>;

// The sign of the in-circle determinant of small integers, in integers.
int integerInCircle(const V& a, const V& b, const V& c, const V& p) {
  const auto n = [](double v) { return static_cast<long long>(v); };
  const long long ax = n(a.x() - p.x()), ay = n(a.y() - p.y());
  const long long bx = n(b.x() - p.x()), by = n(b.y() - p.y());
  const long long cx = n(c.x() - p.x()), cy = n(c.y() - p.y());
  const long long det = (ax * ax + ay * ay) * (bx * cy - by * cx) +
                        (bx * bx + by * by) * (cx * ay - cy * ax) +
                        (cx * cx + cy * cy) * (ax * by - ay * bx);
  const long long turn = (bx - ax) * (cy - ay) - (by - ay) * (cx - ax);
  const int sign = (det > 0) - (det < 0);
  return turn > 0 ? sign : turn < 0 ? -sign : 0;
}

TEST(Exact, InsideOnAndOutsideACircleEitherWayAround) {
  const V a(5, 0), b(0, 5), c(-5, 0);
  for (const auto& [p, side] : {std::pair(V(0, -5), 0),
                                {V(3, 4), 0},
                                {V(-4, -3), 0},
                                {V(0, 0), 1},
                                {V(3, std::nextafter(4, 0)), 1},
                                {V(3, std::nextafter(4, 5)), -1},
                                {V(1e300, 0), -1}}) {
    EXPECT_EQ(gx_InCircle(a, b, c, p), side) << p.x() << ' ' << p.y();
    EXPECT_EQ(gx_InCircle(c, b, a, p), side) << p.x() << ' ' << p.y();
  }
}

TEST(Exact, ThreePointsOnALineMakeNoCircle) {
  EXPECT_EQ(gx_InCircle({0, 0}, {1, 1}, {2, 2}, {0, 5}), 0);
  EXPECT_EQ(gx_InCircle({0, 0}, {0, 0}, {2, 2}, {0, 5}), 0);
}

TEST(Exact, NaNAndInfinityGiveZero) {
  const V bad[] = {{std::nan(""), 0}, {0, HUGE_VAL}};
  for (const V& p : bad) {
    EXPECT_EQ(gx_InCircle({5, 0}, {0, 5}, {-5, 0}, p), 0);
    EXPECT_EQ(gx_InCircle(p, {0, 5}, {-5, 0}, {0, 0}), 0);
    EXPECT_EQ(gx_DotSign(p, {0, 5}, {-5, 0}), 0);
    EXPECT_EQ(gx_CompareDistances(p, {0, 5}, {-5, 0}, {0, 0}), 0);
  }
}

TEST(Exact, AnglesAreAcuteRightOrObtuse) {
  EXPECT_EQ(gx_DotSign({0, 0}, {1, 0}, {1, 1}), 1);
  EXPECT_EQ(gx_DotSign({0, 0}, {1, 0}, {0, 1}), 0);
  EXPECT_EQ(gx_DotSign({0, 0}, {1, 0}, {-1, 1}), -1);
  EXPECT_EQ(gx_DotSign({0, 0}, {0, 0}, {-1, 1}), 0);
  EXPECT_EQ(gx_DotSign({0, 0}, {1e-300, 0x1p-1074}, {0x1p-1074, 1e-300}), 1);
  EXPECT_EQ(gx_DotSign({0.1, 0.1}, {0.3, 0.1}, {0.1, 0.7}), 0);
}

TEST(Exact, DistancesAreComparedBeyondTheRangeOfTheirSquares) {
  EXPECT_EQ(gx_CompareDistances({0, 0}, {3, 4}, {0, 0}, {5, 0}), 0);
  EXPECT_EQ(gx_CompareDistances({0, 0}, {3e300, 4e300}, {0, 0}, {5e300, 1}), -1);
  EXPECT_EQ(gx_CompareDistances({-1.7e308, 0}, {1.7e308, 0}, {0, -1.7e308}, {1, 1.7e308}), -1);
  EXPECT_EQ(gx_CompareDistances({0x1p-1074, 0}, {0, 0}, {0, 0}, {0, 0}), 1);
  EXPECT_EQ(gx_CompareDistances({1, 0}, {0, 0}, {0, 0}, {std::nextafter(1, 2), 0}), -1);
}

TEST(Exact, PowersOfTwoChangeNothing) {
  RandomShapes random("exact scales", 2000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    V p[4];
    for (V& v : p) v = V(random.integer(-6, 6), random.integer(-6, 6));
    const int inCircle = gx_InCircle(p[0], p[1], p[2], p[3]);
    const int dot = gx_DotSign(p[0], p[1], p[2]);
    const int order = gx_CompareDistances(p[0], p[1], p[2], p[3]);
    EXPECT_EQ(inCircle, integerInCircle(p[0], p[1], p[2], p[3]));
    for (const double scale : {0x1p-1074, 0x1p-1000, 0x1p-300, 0x1p-160, 0x1p160, 0x1p500, 0x1p1020}) {
      EXPECT_EQ(gx_InCircle(p[0] * scale, p[1] * scale, p[2] * scale, p[3] * scale), inCircle);
      EXPECT_EQ(gx_DotSign(p[0] * scale, p[1] * scale, p[2] * scale), dot);
      EXPECT_EQ(gx_CompareDistances(p[0] * scale, p[1] * scale, p[2] * scale, p[3] * scale), order);
    }
  }
}

TEST(Exact, PointsThatAreNearlyOnACircleAreDecidedAsInLongIntegers) {
  // On the circle around (2^40, −2^40) with radius 5 · 2^k, and next to it by the smallest step.
  for (const int k : {0, 10, 30}) {
    const double r = std::ldexp(1.0, k);
    const V m(0x1p40, -0x1p40);
    const V a = m + V(5, 0) * r, b = m + V(-3, 4) * r, c = m + V(0, -5) * r;
    const V on = m + V(3, 4) * r;
    EXPECT_EQ(gx_InCircle(a, b, c, on), 0);
    EXPECT_EQ(gx_InCircle(a, b, c, {on.x(), std::nextafter(on.y(), 0)}), -1);
    EXPECT_EQ(gx_InCircle(a, b, c, {on.x(), std::nextafter(on.y(), -1e30)}), 1);
  }
}

}  // namespace
