#include <gauge/enclosing.h>
#include <gauge/internal/frame.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/plain_gauges.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <numbers>
#include <sstream>

namespace {

using Points = std::vector<gxVector<2>>;
constexpr double kPi = std::numbers::pi;

gxTurnedRectangle areaOf(const Points& p) {
  return gfLeastAreaRectangle(std::span<const gxVector<2>>(p));
}
gxTurnedRectangle widthOf(const Points& p) {
  return gfLeastWidthRectangle(std::span<const gxVector<2>>(p));
}

// All points inside but for rounding, and one on each side.
void expectEncloses(const gxTurnedRectangle& r, const Points& points, double slack) {
  const gxVector<2> u(std::cos(r.angle), std::sin(r.angle));
  double most[4] = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
  for (const auto& p : points) {
    const gxVector<2> d = p - r.centre;
    most[0] = std::max(most[0], u * d - r.length / 2);
    most[1] = std::max(most[1], -(u * d) - r.length / 2);
    most[2] = std::max(most[2], gf_Cross(u, d) - r.width / 2);
    most[3] = std::max(most[3], -gf_Cross(u, d) - r.width / 2);
  }
  for (const double m : most) EXPECT_NEAR(m, 0.0, slack);
}

TEST(EnclosingRectangle, NoPoints) {
  const auto r = areaOf({});
  EXPECT_EQ(r.status, gxStatus::eEmpty);
  EXPECT_EQ(r.length, 0.0);
  EXPECT_EQ(r.width, 0.0);
  EXPECT_TRUE(std::isnan(r.angle) && std::isnan(r.centre.x()));
}

TEST(EnclosingRectangle, OnePoint) {
  for (const auto& r : {areaOf(pointsOf("3 4, 3 4")), widthOf(pointsOf("3 4"))}) {
    EXPECT_EQ(r.status, gxStatus::eFlat);
    EXPECT_EQ(r.centre, gxVector<2>(3, 4));
    EXPECT_EQ(r.length, 0.0);
    EXPECT_EQ(r.width, 0.0);
    EXPECT_EQ(r.angle, 0.0);
    EXPECT_EQ(r.hullEdge, -1);
  }
}

TEST(EnclosingRectangle, PointsOnALine) {
  for (const auto& r : {areaOf(pointsOf("0 0, -3 -4, 3 4")), widthOf(pointsOf("3 4, -3 -4"))}) {
    EXPECT_EQ(r.status, gxStatus::eFlat);
    EXPECT_EQ(r.centre, gxVector<2>(0, 0));
    EXPECT_DOUBLE_EQ(r.length, 10.0);
    EXPECT_EQ(r.width, 0.0);
    EXPECT_DOUBLE_EQ(r.angle, std::atan2(4, 3));
  }
  EXPECT_DOUBLE_EQ(areaOf(pointsOf("0 0, 0 -5")).angle, kPi / 2);
}

TEST(EnclosingRectangle, NaNAndInfinityAnywhere) {
  for (const char* text : {"nan 0", "0 0, 1 0, 0 inf"}) {
    const auto r = areaOf(pointsOf(text));
    EXPECT_EQ(r.status, gxStatus::eNotFinite);
    EXPECT_TRUE(std::isnan(r.length) && std::isnan(r.width) && std::isnan(r.angle));
  }
}

TEST(EnclosingRectangle, TheLongerSideComesFirstWhicheverWayItLies) {
  const auto lying = areaOf(pointsOf("0 0, 4 0, 4 2, 0 2"));
  EXPECT_EQ(lying.length, 4.0);
  EXPECT_EQ(lying.width, 2.0);
  EXPECT_EQ(lying.angle, 0.0);
  const auto standing = areaOf(pointsOf("0 0, 2 0, 2 4, 0 4"));
  EXPECT_EQ(standing.length, 4.0);
  EXPECT_DOUBLE_EQ(standing.angle, kPi / 2);
  EXPECT_EQ(standing.centre, gxVector<2>(1, 2));
}

TEST(EnclosingRectangle, CornersComeInAFixedOrder) {
  const auto corners = areaOf(pointsOf("0 0, 4 0, 4 2, 0 2")).corners();
  EXPECT_EQ(std::vector(corners.begin(), corners.end()), pointsOf("0 0, 4 0, 4 2, 0 2"));
  const auto up = areaOf(pointsOf("0 0, 2 0, 2 4, 0 4")).corners();
  const Points wanted = pointsOf("2 0, 2 4, 0 4, 0 0");
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(up[i].distance(wanted[i]), 0.0, 1e-15);
}

TEST(EnclosingRectangle, ASquareHasItsAngleBelowAQuarterTurn) {
  EXPECT_EQ(areaOf(pointsOf("0 0, 2 0, 2 2, 0 2")).angle, 0.0);
  EXPECT_DOUBLE_EQ(areaOf(pointsOf("0 0, 1 -1, 2 0, 1 1")).angle, kPi / 4);
  EXPECT_DOUBLE_EQ(areaOf(pointsOf("0 0, 4 3, 1 7, -3 4")).angle, std::atan2(3, 4));
}

TEST(EnclosingRectangle, LeastAreaAndLeastWidthMayDiffer) {
  // A triangle has all three areas equal to twice its own; the least width is the least height.
  const auto points = pointsOf("0 0, 4 0, 0 3");
  EXPECT_DOUBLE_EQ(areaOf(points).area(), 12.0);
  EXPECT_EQ(areaOf(points).hullEdge, 0);
  EXPECT_DOUBLE_EQ(areaOf(points).length, 4.0);
  EXPECT_DOUBLE_EQ(widthOf(points).width, 2.4);
  EXPECT_DOUBLE_EQ(widthOf(points).length, 5.0);
  EXPECT_EQ(widthOf(points).hullEdge, 1);
  // Here the narrowest is not the smallest.
  const auto kite = pointsOf("0 0, 10 4, 11 7, 2 5");
  EXPECT_LT(areaOf(kite).area(), widthOf(kite).area() * (1.0 + 1e-15));
}

TEST(EnclosingRectangle, TheEndsOfTheRange) {
  for (const double scale : {1e300, 4e307, 1e-300, 1e-307}) {
    Points points = pointsOf("0 0, 4 0, 4 2, 0 2, 2 1");
    for (auto& p : points) p = p * scale;
    const auto r = areaOf(points);
    EXPECT_DOUBLE_EQ(r.length / scale, 4.0);
    EXPECT_DOUBLE_EQ(r.width / scale, 2.0);
    EXPECT_DOUBLE_EQ(r.centre.x() / scale, 2.0);
  }
}

TEST(EnclosingRectangle, KnownShapesInAnyPlace) {
  for (const KnownShape& known : knownShapes()) {
    for (const bool turn : {false, true}) {
      for (const double scale : {1e-3, 1.0, 1e6}) {
        for (const gxVector<2> offset : {gxVector<2>(0, 0), gxVector<2>(1e6, -1e6)}) {
          const KnownShape s = placed(known, turn, scale, offset);
          // Coordinates are rounded to the offset; the table has ten digits.
          const double slack = s.rectangleLength * 5e-9 + offset.len() * 4e-16;
          const auto area = gfLeastAreaRectangle(s.set());
          const auto width = gfLeastWidthRectangle(s.set());
          EXPECT_NEAR(area.area(), s.rectangleLength * s.rectangleWidth, slack * 4 * s.rectangleLength)
              << s.name;
          EXPECT_NEAR(width.width, s.feretMin, slack) << s.name;
          if (s.name == "3-4-5" || s.name == "equilateral 2") continue;  // three of equal area
          EXPECT_NEAR(area.length, s.rectangleLength, slack) << s.name;
          EXPECT_NEAR(area.width, s.rectangleWidth, slack) << s.name;
        }
      }
    }
  }
}

TEST(EnclosingRectangle, RandomPointsAgainstEveryHullEdge) {
  RandomShapes random("enclosing rectangle", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    auto points = random.chance(0.3) ? random.outline() : random.finiteOutline();
    if (points.size() > 60) points.resize(60);
    if (points.empty() || !gx_allFinite(points)) continue;
    const auto r = areaOf(points);
    const auto w = widthOf(points);
    const gx_Box box = gx_boxOf(points);
    const double size = std::max({std::fabs(box.lowX), std::fabs(box.highX), std::fabs(box.lowY),
                                  std::fabs(box.highY), 0x1p-1020});
    if (size > 1e300) continue;
    expectEncloses(r, points, size * 1e-14);
    expectEncloses(w, points, size * 1e-14);
    if (size < 1e-290) continue;
    const auto slow = plain::rectangles(points);
    const double scale = gfEnclosingCircle(std::span<const gxVector<2>>(points)).radius * 2.0 + 1e-300;
    EXPECT_NEAR(r.length / scale * (r.width / scale), static_cast<double>(slow.area / scale / scale),
                1e-14);
    EXPECT_NEAR(w.width / scale, static_cast<double>(slow.width / scale), 1e-14);
    EXPECT_GE(r.length, r.width);
    EXPECT_GT(r.angle, -kPi / 2);
    EXPECT_LE(r.angle, kPi / 2);
    const auto back = areaOf(reversed(points));
    EXPECT_EQ(back.length, r.length);
    EXPECT_EQ(back.angle, r.angle);
  }
}

TEST(EnclosingRectangle, OpenContoursAndSetsCountTheirOutlinePoints) {
  EXPECT_EQ(gfLeastAreaRectangle(gxContour(pointsOf("0 0, 4 0, 4 2"), false)).length, 4.0);
  EXPECT_EQ(gfLeastWidthRectangle(gxContour(pointsOf("0 0, 2 0, 2 2, 0 2"))).width, 2.0);
  EXPECT_EQ(gfLeastAreaRectangle(gxRegionSet()).status, gxStatus::eEmpty);
}

TEST(EnclosingRectangle, Prints) {
  std::ostringstream out;
  out << areaOf(pointsOf("0 0, 4 0, 4 2, 0 2")) << '\n' << areaOf(pointsOf("1 2"));
  EXPECT_EQ(out.str(), "centre (2, 1) 4 by 2 angle 0\ncentre (1, 2) 0 by 0 angle 0 flat");
}

}  // namespace
