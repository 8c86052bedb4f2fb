#include <velstd/line_seg.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <support/quad.h>
#include <support/random_doubles.h>

namespace {

using V = gxVector<2>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The distance of a point from a segment, in 113 bits.
Quad exactDistance(const gxLineSeg& s, const V& p) {
  const Quad dx = static_cast<Quad>(s.p2().x()) - static_cast<Quad>(s.p1().x());
  const Quad dy = static_cast<Quad>(s.p2().y()) - static_cast<Quad>(s.p1().y());
  const Quad wx = static_cast<Quad>(p.x()) - static_cast<Quad>(s.p1().x());
  const Quad wy = static_cast<Quad>(p.y()) - static_cast<Quad>(s.p1().y());
  const Quad square = dx * dx + dy * dy;
  Quad t = square == 0 ? 0 : (wx * dx + wy * dy) / square;
  t = t < 0 ? 0 : t > 1 ? 1 : t;
  const Quad ux = wx - dx * t;
  const Quad uy = wy - dy * t;
  return quadSqrt(ux * ux + uy * uy);
}

TEST(LineSeg, DefaultIsAllZero) {
  EXPECT_EQ(gxLineSeg().p1(), V(0, 0));
  EXPECT_EQ(gxLineSeg().p2(), V(0, 0));
}

TEST(LineSeg, KeepsItsEnds) {
  const gxLineSeg segment(V(1, 2), V(3, 5));
  EXPECT_EQ(segment.p1(), V(1, 2));
  EXPECT_EQ(segment.p2(), V(3, 5));
  const gxLineSeg copy(segment);
  EXPECT_EQ(copy, segment);
  EXPECT_FALSE(gxLineSeg(V(3, 5), V(1, 2)) == segment);
}

TEST(LineSeg, ReInitGivesTheDefaultBack) {
  gxLineSeg segment(V(1, 2), V(3, 5));
  segment.reInit();
  EXPECT_EQ(segment, gxLineSeg());
}

TEST(LineSeg, LineRunsFromTheFirstEndTowardsTheSecond) {
  const gxLine line = gxLineSeg(V(1, 2), V(3, 5)).line();
  EXPECT_EQ(line.point(), V(1, 2));
  EXPECT_EQ(line.direction(), V(2, 3));
}

TEST(LineSeg, LineOfEqualEndsHasNoDirection) {
  EXPECT_EQ(gxLineSeg(V(1, 2), V(1, 2)).line().direction(), V(0, 0));
}

TEST(LineSeg, LineAcrossTheWholeRangeIsFinite) {
  const gxLine line = gxLineSeg(V(-1.7e308, 0), V(1.7e308, 1.7e308)).line();
  EXPECT_EQ(line.direction().unit(), V(2, 1).unit());
  EXPECT_EQ(gxLineSeg(V(-1.7e308, -1.7e308), V(1.7e308, 1.7e308))
                .line()
                .intersect(gxLineSeg(V(-1.7e308, 1.7e308), V(1.7e308, -1.7e308)).line()),
            gxPoint(0, 0));
}

TEST(LineSegDistance, FootInsideGivesTheLinesDistance) {
  const gxLineSeg segment(V(0, 0), V(10, 0));
  EXPECT_EQ(segment.distToPoint(V(5, 3)), 3.0);
  EXPECT_EQ(segment.distToPoint(V(5, -3)), 3.0);
  EXPECT_EQ(segment.distToPoint(V(5, 0)), 0.0);
}

TEST(LineSegDistance, FootOutsideGivesTheNearerEnd) {
  const gxLineSeg segment(V(0, 0), V(10, 0));
  EXPECT_EQ(segment.distToPoint(V(-3, 4)), 5.0);
  EXPECT_EQ(segment.distToPoint(V(13, -4)), 5.0);
  EXPECT_EQ(segment.distToPoint(V(-1, 0)), 1.0);
}

TEST(LineSegDistance, AtAndBesideTheEnds) {
  const gxLineSeg segment(V(1, 1), V(4, 5));
  EXPECT_EQ(segment.distToPoint(V(1, 1)), 0.0);
  EXPECT_EQ(segment.distToPoint(V(4, 5)), 0.0);
  EXPECT_DOUBLE_EQ(segment.distToPoint(V(1 - 4, 1 + 3)), 5.0);
  EXPECT_DOUBLE_EQ(segment.distToPoint(V(4 - 4, 5 + 3)), 5.0);
}

TEST(LineSegDistance, EqualEndsGiveTheDistanceToThePoint) {
  EXPECT_EQ(gxLineSeg(V(1, 1), V(1, 1)).distToPoint(V(4, 5)), 5.0);
  EXPECT_EQ(gxLineSeg(V(1, 1), V(1, 1)).distToPoint(V(1, 1)), 0.0);
}

TEST(LineSegDistance, NaNAnywhereGivesNaN) {
  EXPECT_TRUE(std::isnan(gxLineSeg(V(0, 0), V(1, 0)).distToPoint(V(kNaN, 0))));
  EXPECT_TRUE(std::isnan(gxLineSeg(V(0, kNaN), V(1, 0)).distToPoint(V(0, 0))));
  EXPECT_TRUE(std::isnan(gxLineSeg(V(0, 0), V(1, kNaN)).distToPoint(V(0.5, 1))));
}

TEST(LineSegDistance, InfinitePointIsInfinitelyFar) {
  EXPECT_EQ(gxLineSeg(V(0, 0), V(1, 0)).distToPoint(V(kInf, 0)), kInf);
  EXPECT_EQ(gxLineSeg(V(0, 0), V(1, 0)).distToPoint(V(-kInf, 0)), kInf);
}

TEST(LineSegDistance, EndsOfTheRange) {
  const gxLineSeg across(V(-1.7e308, 0), V(1.7e308, 0));
  EXPECT_EQ(across.distToPoint(V(0, 1e308)), 1e308);
  EXPECT_DOUBLE_EQ(across.distToPoint(V(-1e307, 1e300)), 1e300);
  EXPECT_EQ(gxLineSeg(V(0, 0), V(3e200, 0)).distToPoint(V(2e200, 1e200)), 1e200);
  EXPECT_DOUBLE_EQ(gxLineSeg(V(0, 0), V(3e200, 0)).distToPoint(V(6e200, 4e200)), 5e200);
  EXPECT_EQ(gxLineSeg(V(0, 0), V(3e-200, 0)).distToPoint(V(2e-200, 1e-200)), 1e-200);
  EXPECT_EQ(gxLineSeg(V(0, 0), V(3e-310, 0)).distToPoint(V(2e-310, 1e-310)), 1e-310);
  EXPECT_EQ(gxLineSeg(V(0, 0), V(1e-100, 0)).distToPoint(V(1e-300, 2e-300)), 2e-300);
}

TEST(LineSegDistance, RandomSegmentsOverTheWholeRange) {
  constexpr std::uint64_t kSeed = 181;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 100000; ++i) {
    const int place = random.whole(2040) - 1020;
    const int offset = random.whole(30);
    const auto at = [&] { return std::scalbn(random.uniform(-1, 1), place); };
    const V p1(at(), at());
    const gxLineSeg segment(p1, p1 + V(std::scalbn(at(), -offset), std::scalbn(at(), -offset)));
    const V p(at(), at());
    const auto truth = static_cast<double>(exactDistance(segment, p));
    ASSERT_NEAR(std::scalbn(segment.distToPoint(p), -place), std::scalbn(truth, -place), 2e-15) << i;
  }
}

}  // namespace
