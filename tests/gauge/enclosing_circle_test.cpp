#include <gauge/enclosing.h>
#include <gauge/internal/exact.h>
#include <gauge/internal/frame.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/plain_gauges.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace {

gxEnclosingCircle circleOf(const std::vector<gxVector<2>>& points) {
  return gfEnclosingCircle(std::span<const gxVector<2>>(points));
}
gxEnclosingCircle circleOf(const std::string& text) {
  return circleOf(pointsOf(text));
}

std::vector<long> supports(const gxEnclosingCircle& c) {
  return {c.support.begin(), c.support.begin() + c.supports};
}

// Every point inside as a user would ask it.
void expectHolds(const gxEnclosingCircle& c, const std::vector<gxVector<2>>& points) {
  for (const auto& p : points) {
    EXPECT_LE(std::hypot(p.x() - c.centre.x(), p.y() - c.centre.y()), c.radius);
    EXPECT_LE((p - c.centre).len(), c.radius);
  }
}

TEST(EnclosingCircle, NoPoints) {
  const auto c = circleOf("");
  EXPECT_EQ(c.status, gxStatus::eEmpty);
  EXPECT_EQ(c.radius, 0.0);
  EXPECT_TRUE(std::isnan(c.centre.x()));
  EXPECT_EQ(c.supports, 0);
}

TEST(EnclosingCircle, OnePointAndManyEqualOnes) {
  for (const char* text : {"3 4", "3 4, 3 4, 3 4", "1e300 -1e-300, 1e300 -1e-300"}) {
    const auto c = circleOf(text);
    EXPECT_EQ(c.status, gxStatus::eOk);
    EXPECT_EQ(c.radius, 0.0);
    EXPECT_EQ(c.centre, pointsOf(text)[0]);
    EXPECT_EQ(supports(c), std::vector<long>{0});
  }
}

TEST(EnclosingCircle, TwoPointsAndPointsOnALineHaveTheirEnds) {
  EXPECT_EQ(circleOf("0 0, 6 8").radius, 5.0);
  EXPECT_EQ(circleOf("0 0, 6 8").centre, gxVector<2>(3, 4));
  const auto c = circleOf("3 3, 0 0, 1 1, 5 5, 4 4, 0 0");
  EXPECT_EQ(supports(c), (std::vector<long>{1, 3}));
  EXPECT_NEAR(c.radius, 2.5 * std::sqrt(2.0), 1e-15);
}

TEST(EnclosingCircle, AnObtuseTriangleHasItsLongestSide) {
  const auto c = circleOf("0 0, 4 0, 2 1");
  EXPECT_EQ(supports(c), (std::vector<long>{0, 1}));
  EXPECT_EQ(c.radius, 2.0);
  EXPECT_EQ(c.centre, gxVector<2>(2, 0));
}

TEST(EnclosingCircle, ARightTriangleHasItsLongestSideToo) {
  EXPECT_EQ(supports(circleOf("0 0, 4 0, 0 3")), (std::vector<long>{1, 2}));
  EXPECT_EQ(circleOf("0 0, 4 0, 0 3").radius, 2.5);
}

TEST(EnclosingCircle, AnAcuteTriangleHasAllThree) {
  EXPECT_EQ(supports(circleOf("0 0, 4 0, 2 3, 2 1")), (std::vector<long>{0, 1, 2}));
}

TEST(EnclosingCircle, OppositePointsWinOverThree) {
  // (3, 4) is opposite to (−3, −4); the triangle of the first three would do as well.
  EXPECT_EQ(supports(circleOf("5 0, -3 4, -4 -3, 3 4, -3 -4")), (std::vector<long>{3, 4}));
  EXPECT_EQ(supports(circleOf("0 0, 2 0, 2 2, 0 2")), (std::vector<long>{0, 2}));
  EXPECT_EQ(supports(circleOf("1 0, 2 0, 2 2, 0 2, 0 0")), (std::vector<long>{1, 3}));
}

TEST(EnclosingCircle, OfManyOnTheCircleTheFirstSetWins) {
  // No two are opposite.
  EXPECT_EQ(supports(circleOf("5 0, 3 4, -3 4, -4 -3, 0 1")), (std::vector<long>{0, 1, 3}));
}

TEST(EnclosingCircle, OfEqualPointsTheFirstSupports) {
  EXPECT_EQ(supports(circleOf("1 1, 0 0, 0 0, 4 0, 4 0")), (std::vector<long>{1, 3}));
}

TEST(EnclosingCircle, ThePublishedSetOnWhichAnotherLibraryLeavesAPointOutside) {
  // (2.7, 2.7) and 1.3 √2; the other answer has radius 1.821 and leaves (2, 1) outside.
  const auto c = circleOf("1 2, 2 3, 2 2, 2 1, 3 4, 3 3, 3 1, 4 4");
  EXPECT_NEAR(c.centre.x(), 2.7, 1e-15);
  EXPECT_NEAR(c.centre.y(), 2.7, 1e-15);
  EXPECT_NEAR(c.radius, 1.3 * std::sqrt(2.0), 1e-15);
}

TEST(EnclosingCircle, NaNAndInfinityAnywhere) {
  for (const char* text : {"nan 0", "0 0, 1 nan, 2 0", "0 0, 1 inf", "0 0, 4 0, 2 3, -inf 0"}) {
    const auto c = circleOf(text);
    EXPECT_EQ(c.status, gxStatus::eNotFinite);
    EXPECT_TRUE(std::isnan(c.radius) && std::isnan(c.centre.x()) && std::isnan(c.centre.y()));
    EXPECT_EQ(c.supports, 0);
  }
}

TEST(EnclosingCircle, TheEndsOfTheRange) {
  const auto large = circleOf("0 0, 4e300 0, 0 3e300");
  EXPECT_DOUBLE_EQ(large.radius, 2.5e300);
  EXPECT_DOUBLE_EQ(large.centre.x(), 2e300);
  const auto widest = circleOf("-1.7e308 0, 1.7e308 0, 0 1e308");
  EXPECT_DOUBLE_EQ(widest.radius, 1.7e308);
  EXPECT_EQ(widest.centre, gxVector<2>(0, 0));
  const auto small = circleOf("0 0, 4e-300 0, 0 3e-300");
  EXPECT_DOUBLE_EQ(small.radius, 2.5e-300);
  const auto smallest = circleOf("0 0, 0x1p-1074 0");
  EXPECT_EQ(smallest.radius, 0x1p-1074);
}

TEST(EnclosingCircle, KnownShapesInAnyPlaceAndOrder) {
  for (const KnownShape& known : knownShapes()) {
    for (const bool turn : {false, true}) {
      for (const double scale : {1e-3, 1.0, 1e6}) {
        for (const gxVector<2> offset : {gxVector<2>(0, 0), gxVector<2>(1e6, -1e6)}) {
          const KnownShape s = placed(known, turn, scale, offset);
          const double slack = (s.circleRadius + offset.len()) * 1e-15;
          EXPECT_NEAR(gfEnclosingCircle(s.set()).radius, s.circleRadius, slack) << s.name;
          if (!s.second.empty()) continue;
          const auto c = gfEnclosingCircle(s.region());
          EXPECT_NEAR(c.radius, s.circleRadius, slack) << s.name;
          expectHolds(c, s.outline);
          EXPECT_NEAR(circleOf(reversed(s.outline)).radius, c.radius, slack);
          EXPECT_NEAR(circleOf(rotatedStart(s.outline, 2)).radius, c.radius, slack);
        }
      }
    }
  }
}

TEST(EnclosingCircle, RandomPointsAgainstAllTriples) {
  RandomShapes random("enclosing circle", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    auto points = random.chance(0.5) ? random.outline() : random.finiteOutline();
    if (points.size() > 24) points.resize(24);
    if (points.empty() || !gx_allFinite(points)) continue;
    const auto c = circleOf(points);
    expectHolds(c, points);
    const gx_Box box = gx_boxOf(points);
    const double size = std::max({std::fabs(box.lowX), std::fabs(box.highX), std::fabs(box.lowY),
                                  std::fabs(box.highY), 0x1p-1040});
    if (size > 1e300) continue;  // what the plain form adds up would overflow
    const auto slow = plain::enclosingCircle(points);
    const double slack =
        1e-15 + 0x1p-1073 / size;  // a centre among subnormals is rounded to one of them
    EXPECT_NEAR(static_cast<double>(c.radius / size), static_cast<double>(slow.radius / size), slack);
    // The supports alone have the same circle.
    std::vector<gxVector<2>> few;
    for (const long i : supports(c)) few.push_back(points[static_cast<std::size_t>(i)]);
    EXPECT_NEAR(circleOf(few).radius / size, c.radius / size, slack);
  }
}

TEST(EnclosingCircle, TheSupportsDoNotDependOnTheOrderOfThePoints) {
  RandomShapes random("enclosing circle order", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points =
        random.outline(random.chance(0.5) ? OutlineKind::eLattice : OutlineKind::eRegular, 30);
    const auto there = circleOf(points);
    const auto back = circleOf(reversed(points));
    EXPECT_EQ(there.supports, back.supports);
    EXPECT_NEAR(there.radius, back.radius, 1e-15 * (there.radius + there.centre.len()));
  }
}

TEST(EnclosingCircle, AHundredThousandCornersOfARegularPolygon) {
  const auto c = circleOf(regularPolygon(100000));
  EXPECT_NEAR(c.radius, 1.0, 1e-15);
  EXPECT_NEAR(c.centre.len(), 0.0, 1e-15);
}

TEST(EnclosingCircle, OpenContoursAndSetsCountTheirOutlinePoints) {
  EXPECT_EQ(gfEnclosingCircle(gxContour(pointsOf("0 0, 6 8"), false)).radius, 5.0);
  EXPECT_EQ(gfEnclosingCircle(gxRegionSet()).status, gxStatus::eEmpty);
  gxRegionSet set;
  set.add(gxRegionSet::RegionHandle(new gxRegion(pointsOf("0 0, 1 0, 0 1"))));
  set.add(gxRegionSet::RegionHandle(new gxRegion(pointsOf("9 0, 10 0, 9 1"))));
  EXPECT_EQ(supports(gfEnclosingCircle(set)), (std::vector<long>{2, 4}));
  set.add(nullptr);
  EXPECT_THROW(gfEnclosingCircle(set), gxBadPointer);
}

TEST(EnclosingCircle, Prints) {
  std::ostringstream out;
  out << circleOf("0 0, 6 8") << '\n' << circleOf("");
  EXPECT_EQ(out.str(), "centre (3, 4) radius 5 supports 0 1\ncentre (nan, nan) radius 0 supports empty");
}

TEST(EnclosingCircle, TheRadiusIsTheLeastThatHoldsEveryPoint) {
  // Exactly, for the points as they are seen from the centre: none is farther away than the radius, and one is
  // farther away than the double below it, or as far.
  RandomShapes random("radius of the circle", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const double scale = random.chance(0.8) ? 1.0 : random.chance(0.5) ? 0x1p-600 : 0x1p600;
    std::vector<gxVector<2>> points;
    const int count = random.integer(2, 6);
    for (int i = 0; i < count; ++i)
      points.emplace_back(random.uniform(-10, 10) * scale, random.uniform(-10, 10) * scale);
    const gxEnclosingCircle circle = gfEnclosingCircle(points);
    const gxVector<2> origin;
    const gxVector<2> radius(circle.radius, 0.0);
    const gxVector<2> below(std::nextafter(circle.radius, 0.0), 0.0);
    bool isLeast = false;
    for (const auto& p : points) {
      const gxVector<2> d = p - circle.centre;
      EXPECT_LE(gx_CompareDistances(origin, d, origin, radius), 0);
      isLeast = isLeast || gx_CompareDistances(origin, d, origin, below) > 0 ||
                std::hypot(d.x(), d.y()) == circle.radius;
    }
    EXPECT_TRUE(isLeast);
  }
}

}  // namespace
