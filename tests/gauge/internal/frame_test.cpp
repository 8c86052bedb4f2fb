#include <gauge/internal/frame.h>
#include <gtest/gtest.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>

namespace {

double longestHalf(const std::vector<gxVector<2>>& points, const gx_Frame& frame) {
  double longest = 0.0;
  for (const auto& p : points) {
    const auto q = frame.to(p);
    longest = std::max({longest, std::fabs(q.x()), std::fabs(q.y())});
  }
  return longest;
}

TEST(Frame, OneNaNOrInfinityAnywhereIsSeen) {
  EXPECT_TRUE(gx_allFinite({}));
  for (std::size_t n = 1; n < 8; ++n) {
    std::vector<gxVector<2>> points(n, gxVector<2>(1e308, -1e308));
    EXPECT_TRUE(gx_allFinite(points));
    for (std::size_t i = 0; i < n; ++i) {
      for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        points[i] = {bad, 0};
        EXPECT_FALSE(gx_allFinite(points));
        points[i] = {0, bad};
        EXPECT_FALSE(gx_allFinite(points));
      }
      points[i] = {1e308, -1e308};
    }
  }
}

TEST(Frame, TheLongerHalfSideIsBetweenOneAndTwo) {
  for (const char* text :
       {"0 0, 4 0, 4 3", "1e6 1e6, 1000007 1000001", "-1.7e308 0, 1.7e308 1e300", "1e-300 0, 0 1e-301",
        "0 0, 0x1p-1070 0x1p-1071", "0 0, 0x1p-1040 0x1p-1041", "5 -1e-20, 5 1e-20"}) {
    const auto points = pointsOf(text);
    const double half = longestHalf(points, gx_Frame(points));
    EXPECT_GE(half, 1.0) << text;
    EXPECT_LT(half, 2.0) << text;
  }
}

TEST(Frame, ASinglePointIsTheOriginAtScaleOne) {
  const gx_Frame frame(pointsOf("7 -1e300, 7 -1e300"));
  EXPECT_EQ(frame.to({7, -1e300}), gxVector<2>(0, 0));
  EXPECT_EQ(frame.lengthFrom(3.0), 3.0);
  EXPECT_EQ(frame.middle(), gxVector<2>(7, -1e300));
}

TEST(Frame, TheSmallestBoxThereIsHasAScale) {
  const gx_Frame frame(pointsOf("0 0, 0x1p-1074 0"));
  EXPECT_EQ(frame.to({0x1p-1074, 0}).x() - frame.to({0, 0}).x(), 1.0);
  EXPECT_EQ(frame.lengthFrom(1.0), 0x1p-1074);
}

TEST(Frame, LengthsAndPointsComeBack) {
  const auto points = pointsOf("10 20, 14 20, 14 23");
  const gx_Frame frame(points);
  for (const auto& p : points) EXPECT_EQ(frame.from(frame.to(p)), p);
  EXPECT_EQ(frame.lengthTo(4.0), 2.0);
  EXPECT_EQ(frame.lengthFrom(2.0), 4.0);
  EXPECT_EQ(frame.areaFrom(1.0), 4.0);
}

TEST(Frame, ScalingAloneIsExactAndDoesNotOverflow) {
  const auto points = pointsOf("-1.7e308 1, 1.7e308 -3e-300");
  const gx_Frame frame(points);
  EXPECT_EQ(frame.unscaled(frame.scaled(points[0])), points[0]);
  EXPECT_TRUE(std::isfinite((frame.scaled(points[1]) - frame.scaled(points[0])).x()));
}

TEST(Frame, PointsOnALineAreToldExactly) {
  EXPECT_TRUE(gx_onOneLine({}));
  EXPECT_TRUE(gx_onOneLine(pointsOf("1 2")));
  EXPECT_TRUE(gx_onOneLine(pointsOf("1 2, 1 2, 3 4")));
  EXPECT_TRUE(gx_onOneLine(pointsOf("0 0, 0 0, 1 3, 2 6, -1 -3")));
  EXPECT_FALSE(gx_onOneLine(pointsOf("0 0, 0 0, 1 3, 2 6, -1 -3.0000000000000004")));
  EXPECT_TRUE(gx_onOneLine(pointsOf("0.1 0.1, 0.3 0.3, 1e300 1e300, 1e-300 1e-300")));
}

TEST(Frame, RandomPointsComeBackToRounding) {
  RandomShapes random("frame", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.outline();
    if (points.empty() || !gx_allFinite(points)) continue;
    const gx_Frame frame(points);
    const gx_Box box = gx_boxOf(points);
    const double size =
        std::max({std::fabs(box.lowX), std::fabs(box.lowY), std::fabs(box.highX), std::fabs(box.highY)});
    for (const auto& p : points) {
      EXPECT_TRUE(box.holds(p));
      const auto back = frame.from(frame.to(p));
      EXPECT_NEAR(back.x() / size, p.x() / size, 4e-16);
      EXPECT_NEAR(back.y() / size, p.y() / size, 4e-16);
    }
  }
}

}  // namespace
