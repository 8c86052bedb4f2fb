#include <velstd/line.h>
#include <velstd/real_eq.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include <support/quad.h>
#include <support/random_doubles.h>

namespace {

using V = gxVector<2>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kUnit = 0x1p-53;  // half a unit in the last place of 1

struct QuadPoint {
  Quad x;
  Quad y;
};

// The meeting point of lines whose cross products do not vanish, in 113 bits.
QuadPoint exactMeeting(const gxLine& a, const gxLine& b) {
  const Quad dx = a.direction().x();
  const Quad dy = a.direction().y();
  const Quad ex = b.direction().x();
  const Quad ey = b.direction().y();
  const Quad wx = static_cast<Quad>(b.point().x()) - static_cast<Quad>(a.point().x());
  const Quad wy = static_cast<Quad>(b.point().y()) - static_cast<Quad>(a.point().y());
  const Quad t = (wx * ey - wy * ex) / (dx * ey - dy * ex);
  return {a.point().x() + dx * t, a.point().y() + dy * t};
}

double errorOf(const gxPoint& got, const QuadPoint& truth) {
  return static_cast<double>(std::max(quadAbs(got.x() - truth.x), quadAbs(got.y() - truth.y)));
}

// The distance of a point from a line, in 113 bits.
Quad exactDistance(const gxLine& line, const V& p) {
  const Quad dx = line.direction().x();
  const Quad dy = line.direction().y();
  const Quad wx = static_cast<Quad>(p.x()) - static_cast<Quad>(line.point().x());
  const Quad wy = static_cast<Quad>(p.y()) - static_cast<Quad>(line.point().y());
  return quadAbs(dx * wy - dy * wx) / quadSqrt(dx * dx + dy * dy);
}

bool isFinite(const V& v) {
  return std::isfinite(v.x()) && std::isfinite(v.y());
}

TEST(Line, DefaultIsTheXAxis) {
  EXPECT_EQ(gxLine().point(), V(0, 0));
  EXPECT_EQ(gxLine().direction(), V(1, 0));
}

TEST(Line, KeepsPointAndDirection) {
  const gxLine line(V(1, 2), V(3, 4));
  EXPECT_EQ(line.point(), V(1, 2));
  EXPECT_EQ(line.direction(), V(3, 4));
  const gxLine copy(line);
  EXPECT_EQ(copy, line);
  EXPECT_FALSE(copy == gxLine(V(1, 2), V(3, 5)));
  EXPECT_FALSE(copy == gxLine(V(1, 3), V(3, 4)));
}

TEST(Line, ExtremeDirectionsAreScaledByAPowerOfTwo) {
  const gxLine longLine(V(0, 0), V(0x1.8p1000, -0x1p1000));
  EXPECT_EQ(longLine.direction(), V(1.5, -1));
  const gxLine shortLine(V(0, 0), V(5e-324, 0));
  EXPECT_EQ(shortLine.direction(), V(1, 0));
}

TEST(Line, ReInitGivesTheXAxisBack) {
  gxLine line(V(1, 2), V(3, 4));
  line.reInit();
  EXPECT_EQ(line, gxLine());
}

TEST(LineIsParallel, CollinearAndOppositeLinesIncluded) {
  const gxLine line(V(1, 2), V(3, 4));
  EXPECT_TRUE(line.isParallel(line));
  EXPECT_TRUE(line.isParallel(gxLine(V(50, -7), V(3, 4))));
  EXPECT_TRUE(line.isParallel(gxLine(V(0, 0), V(-6, -8))));
  EXPECT_FALSE(line.isParallel(gxLine(V(1, 2), V(4, -3))));
  EXPECT_FALSE(line.isParallel(gxLine(V(1, 2), V(3, 4.001))));
}

TEST(LineIsParallel, TheLimitIsOneInAMillionMillion) {
  EXPECT_EQ(gxLine::kParallelSine, 1e-12);
  for (const double size : {1e-300, 1e-9, 1.0, 1e9, 1e300}) {
    const gxLine axis(V(0, 0), V(size, 0));
    EXPECT_TRUE(axis.isParallel(gxLine(V(0, 0), V(1, 0.999e-12)))) << size;
    EXPECT_TRUE(axis.isParallel(gxLine(V(0, 0), V(1, -0.999e-12)))) << size;
    EXPECT_FALSE(axis.isParallel(gxLine(V(0, 0), V(1, 1.001e-12)))) << size;
    EXPECT_FALSE(axis.isParallel(gxLine(V(0, 0), V(1, -1.001e-12)))) << size;
  }
}

TEST(LineIsParallel, TurnedByALittleInAnyDirection) {
  constexpr std::uint64_t kSeed = 171;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 20000; ++i) {
    const double angle = random.uniform(-4, 4);
    const double size = std::scalbn(1.0, random.whole(600) - 300);
    const V d(size * std::cos(angle), size * std::sin(angle));
    const V across(-d.y(), d.x());
    ASSERT_TRUE(gxLine(V(), d).isParallel(gxLine(V(), (d + across * 0.99e-12) * -3.0))) << angle;
    ASSERT_FALSE(gxLine(V(), d).isParallel(gxLine(V(), (d + across * 1.01e-12) * -3.0))) << angle;
  }
}

TEST(LineIsParallel, ALineWithoutDirectionIsParallelToEveryLine) {
  const gxLine none(V(1, 1), V(0, 0));
  EXPECT_TRUE(none.isParallel(gxLine(V(0, 0), V(1, 2))));
  EXPECT_TRUE(gxLine(V(0, 0), V(1, 2)).isParallel(none));
  EXPECT_TRUE(none.isParallel(none));
}

TEST(LineIsParallel, NaNIsParallelToNothing) {
  EXPECT_FALSE(gxLine(V(0, 0), V(kNaN, 1)).isParallel(gxLine()));
  EXPECT_FALSE(gxLine().isParallel(gxLine(V(0, 0), V(0, kNaN))));
}

TEST(LineIntersect, AxesMeetAtTheOrigin) {
  EXPECT_EQ(gxLine().intersect(gxLine(V(0, 5), V(0, 1))), gxPoint(0, 0));
  EXPECT_EQ(gxLine(V(0, 2), V(1, 0)).intersect(gxLine(V(3, 0), V(0, -4))), gxPoint(3, 2));
  EXPECT_EQ(gxLine(V(0, 0), V(1, 1)).intersect(gxLine(V(0, 4), V(1, -1))), gxPoint(2, 2));
}

TEST(LineIntersect, FarFromTheOriginAsGoodAsNearIt) {
  const gxLine a(V(1e15, 1e15), V(1, 1));
  const gxLine b(V(1e15, 1e15 + 4), V(1, -1));
  EXPECT_EQ(a.intersect(b), gxPoint(1e15 + 2, 1e15 + 2));
}

TEST(LineIntersect, NearlyParallelLinesMeetWhereTheyDo) {
  constexpr std::uint64_t kSeed = 172;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  double worst = 0.0;
  for (int i = 0; i < 100000; ++i) {
    const V d(random.uniform(-1, 1), random.uniform(-1, 1));
    const double tilt = std::scalbn(random.uniform(1, 2), -random.whole(45));
    const gxLine a(V(random.uniform(-1e6, 1e6), random.uniform(-1e6, 1e6)), d);
    const gxLine b(V(random.uniform(-1e6, 1e6), random.uniform(-1e6, 1e6)),
                   d * random.uniform(0.5, 2) + V(-d.y(), d.x()) * tilt);
    const QuadPoint truth = exactMeeting(a, b);
    const auto way =
        static_cast<double>(quadAbs(truth.x - a.point().x()) + quadAbs(truth.y - a.point().y()));
    const double size = way + std::abs(a.point().x()) + std::abs(a.point().y());
    worst = std::max(worst, errorOf(a.intersect(b), truth) / (size * kUnit));
  }
  // The point and the way to it, each rounded a few times, and nothing for the angle.
  EXPECT_LT(worst, 6.0);
}

TEST(LineIntersect, ParallelLinesGiveTheNearestPointToTheOthersOrigin) {
  EXPECT_EQ(gxLine().intersect(gxLine(V(7, 3), V(2, 0))), gxPoint(7, 0));
  EXPECT_EQ(gxLine().intersect(gxLine(V(7, 0), V(-1, 0))), gxPoint(7, 0));
  EXPECT_EQ(gxLine(V(0, 0), V(3, 3)).intersect(gxLine(V(0, 2), V(-1, -1))), gxPoint(1, 1));
}

TEST(LineIntersect, ALineWithoutDirectionStandsForItsPoint) {
  const gxLine none(V(3, 4), V(0, 0));
  EXPECT_EQ(none.intersect(gxLine()), gxPoint(3, 4));
  EXPECT_EQ(gxLine().intersect(none), gxPoint(3, 0));
  EXPECT_EQ(none.intersect(gxLine(V(1, 1), V(0, 0))), gxPoint(3, 4));
}

TEST(LineIntersect, NotFiniteLinesGiveNaN) {
  const gxLine good(V(0, 0), V(1, 2));
  for (const gxLine& bad :
       {gxLine(V(kNaN, 0), V(1, 0)), gxLine(V(0, 0), V(1, kNaN)), gxLine(V(kInf, 0), V(1, 0)),
        gxLine(V(0, 0), V(kInf, 0)), gxLine(V(0, kNaN), V(0, 0))}) {
    for (const gxPoint& p : {good.intersect(bad), bad.intersect(good)}) {
      EXPECT_TRUE(std::isnan(p.x()) && std::isnan(p.y()));
    }
  }
}

TEST(LineIntersect, IsFiniteForFiniteLinesOverTheWholeRange) {
  constexpr std::uint64_t kSeed = 173;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 300000; ++i) {
    const bool wild = i % 2 == 0;
    const auto next = [&] { return wild ? random.anyFinite() : random.nasty(); };
    const gxLine a(V(next(), next()), V(next(), next()));
    const gxLine b(V(next(), next()), V(next(), next()));
    const gxPoint p = a.intersect(b);
    ASSERT_TRUE(isFinite(p)) << a.point().x() << ' ' << a.point().y() << ' ' << a.direction().x() << ' '
                             << a.direction().y() << "  " << b.point().x() << ' ' << b.point().y() << ' '
                             << b.direction().x() << ' ' << b.direction().y();
  }
}

TEST(LineIntersect, LargeAndTinyCoordinatesAreAsGoodAsAny) {
  constexpr std::uint64_t kSeed = 174;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  double worst = 0.0;
  for (int i = 0; i < 50000; ++i) {
    const int place = random.whole(2020) - 1010;  // of the points; of the directions another
    const int reach = random.whole(2020) - 1010;
    const auto at = [&] { return std::scalbn(random.uniform(-1, 1), place); };
    const auto towards = [&] { return std::scalbn(random.uniform(-1, 1), reach); };
    const gxLine a(V(at(), at()), V(towards(), towards()));
    const gxLine b(V(at(), at()), V(towards(), towards()));
    const V d = a.direction().unit();
    const V e = b.direction().unit();
    if (std::abs(gf_Cross(d, e)) < 1e-3) continue;
    const double error = errorOf(a.intersect(b), exactMeeting(a, b));
    worst = std::max(worst, std::scalbn(error, -place));
  }
  EXPECT_LT(worst, 1e-12);  // at a slope of 1/1000 the way is up to 3000 long
}

TEST(LineIntersect, PointsAtOppositeEndsOfTheRange) {
  const gxLine a(V(-1.7e308, 0), V(1, 1));
  const gxLine b(V(1.7e308, 0), V(-1, 1));
  const gxPoint p = a.intersect(b);
  EXPECT_NEAR(p.x() / 1e308, 0.0, 1e-15);
  EXPECT_NEAR(p.y() / 1e308, 1.7, 1e-15);
}

TEST(LineProj, FootOfThePerpendicular) {
  EXPECT_EQ(gxLine().proj(V(3, 4)), gxPoint(3, 0));
  EXPECT_EQ(gxLine(V(0, 0), V(2, 2)).proj(V(4, 0)), gxPoint(2, 2));
  EXPECT_EQ(gxLine(V(10, 10), V(0, -5)).proj(V(3, 4)), gxPoint(10, 4));
  EXPECT_EQ(gxLine(V(1, 1), V(3, 0)).proj(V(1, 1)), gxPoint(1, 1));
}

TEST(LineProj, WithoutDirectionItIsThePoint) {
  EXPECT_EQ(gxLine(V(5, 6), V(0, 0)).proj(V(100, 100)), gxPoint(5, 6));
}

TEST(LineProj, NotFiniteGivesNaN) {
  for (const V p : {V(kNaN, 0), V(0, kInf)}) {
    EXPECT_TRUE(std::isnan(gxLine(V(), V(1, 1)).proj(p).x()));
    EXPECT_TRUE(std::isnan(gxLine(p, V(1, 1)).proj(V()).y()));
  }
}

TEST(LineProj, EndsOfTheRange) {
  EXPECT_EQ(gxLine(V(-1.7e308, 0), V(1, 0)).proj(V(1.7e308, 1.7e308)), gxPoint(1.7e308, 0));
  EXPECT_EQ(gxLine(V(0, 0), V(0, 1e-100)).proj(V(1e-300, 5e-324)), gxPoint(0, 5e-324));
  // The foot would be at (1.2 × 1.7e308, …), beyond the range.
  EXPECT_EQ(gxLine(V(0, 0), V(1, 0.5)).proj(V(1.7e308, 1.7e308)), gxPoint(0, 0));
}

TEST(LineProj, RandomPointsOverTheWholeRange) {
  constexpr std::uint64_t kSeed = 175;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 50000; ++i) {
    const int place = random.whole(2040) - 1020;
    const auto at = [&] { return std::scalbn(random.uniform(-1, 1), place); };
    const gxLine line(V(at(), at()), V(random.withExponent(-900, 900), random.withExponent(-900, 900)));
    const V p(at(), at());
    const Quad dx = line.direction().x();
    const Quad dy = line.direction().y();
    const Quad wx = static_cast<Quad>(p.x()) - static_cast<Quad>(line.point().x());
    const Quad wy = static_cast<Quad>(p.y()) - static_cast<Quad>(line.point().y());
    const Quad t = (wx * dx + wy * dy) / (dx * dx + dy * dy);
    const QuadPoint truth{line.point().x() + dx * t, line.point().y() + dy * t};
    ASSERT_LT(std::scalbn(errorOf(line.proj(p), truth), -place), 1e-14) << i;
  }
}

TEST(LineDistance, OfPoints) {
  EXPECT_EQ(gxLine().distToPoint(V(100, -7)), 7.0);
  EXPECT_DOUBLE_EQ(gxLine(V(0, 0), V(1, 1)).distToPoint(V(2, 0)), std::numbers::sqrt2);
  EXPECT_EQ(gxLine(V(5, 5), V(3, 4)).distToPoint(V(8, 9)), 0.0);
  EXPECT_EQ(gxLine(V(5, 5), V(3, 4)).distToPoint(V(5, 5)), 0.0);
}

TEST(LineDistance, WithoutDirectionItIsTheDistanceToThePoint) {
  EXPECT_EQ(gxLine(V(1, 1), V(0, 0)).distToPoint(V(4, 5)), 5.0);
}

TEST(LineDistance, NaNGivesNaN) {
  EXPECT_TRUE(std::isnan(gxLine().distToPoint(V(0, kNaN))));
  EXPECT_TRUE(std::isnan(gxLine(V(kNaN, 0), V(1, 0)).distToPoint(V(0, 1))));
  EXPECT_TRUE(std::isnan(gxLine(V(0, 0), V(1, kNaN)).distToPoint(V(0, 1))));
}

TEST(LineDistance, BeyondTheRangeGivesInfinity) {
  EXPECT_EQ(gxLine(V(0, -1.7e308), V(1, 0)).distToPoint(V(0, 1.7e308)), kInf);
}

TEST(LineDistance, RandomPointsOverTheWholeRange) {
  constexpr std::uint64_t kSeed = 176;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 50000; ++i) {
    const int place = random.whole(2040) - 1020;
    const auto at = [&] { return std::scalbn(random.uniform(-1, 1), place); };
    const gxLine line(V(at(), at()), V(random.withExponent(-900, 900), random.withExponent(-900, 900)));
    const V p(at(), at());
    const auto truth = static_cast<double>(exactDistance(line, p));
    ASSERT_NEAR(std::scalbn(line.distToPoint(p), -place), std::scalbn(truth, -place), 1e-14) << i;
  }
}

// A place on the line is at distance 0, one a unit beside it is not, also where the products of a cross
// product vanish.
TEST(LineDistance, OfPlacesOnTheLineIsZeroAtEveryScaleAndOfPlacesBesideItIsNot) {
  for (int exponent = -1040; exponent <= 1010; exponent += 10) {
    const double unit = std::ldexp(1.0, exponent);
    for (const V& d : {V(3, 2), V(1, 0), V(0, 1), V(-5, 7)}) {
      const gxLine line(V(4 * unit, -unit), d * unit);
      for (const double t : {-3.0, 0.0, 1.0, 4.0}) {
        const V on = V((4 + d.x() * t) * unit, (-1 + d.y() * t) * unit);
        EXPECT_EQ(line.distToPoint(on), 0.0) << exponent << ' ' << d.x() << ' ' << t;
        const double want = 1.0 / d.len();
        const V beside = d.x() != 0.0 ? on + V(0, unit) : on + V(unit, 0);
        const double share = d.x() != 0.0 ? std::abs(d.x()) : std::abs(d.y());
        EXPECT_NEAR(line.distToPoint(beside) / unit, want * share, 1e-14 + 0x1p-1074 / unit) << exponent;
      }
    }
  }
}

}  // namespace
