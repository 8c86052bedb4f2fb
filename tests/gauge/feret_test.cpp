#include <gauge/feret.h>
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

gxFeret feretOf(const Points& points) {
  return gfFeret(std::span<const gxVector<2>>(points));
}
double widthAt(const Points& points, double angle) {
  return gfWidthAt(std::span<const gxVector<2>>(points), angle);
}

TEST(Feret, NoPoints) {
  const auto f = feretOf({});
  EXPECT_EQ(f.status, gxStatus::eEmpty);
  EXPECT_EQ(f.feretMax, 0.0);
  EXPECT_EQ(f.feretMean, 0.0);
  EXPECT_TRUE(std::isnan(f.feretMaxAngle) && std::isnan(f.feretMinAngle));
  EXPECT_EQ(f.feretMaxFrom, -1);
  EXPECT_EQ(widthAt({}, 1.0), 0.0);
}

TEST(Feret, OnePoint) {
  const auto f = feretOf(pointsOf("7 8, 7 8"));
  EXPECT_EQ(f.status, gxStatus::eFlat);
  EXPECT_EQ(f.feretMax, 0.0);
  EXPECT_EQ(f.feretMin, 0.0);
  EXPECT_EQ(f.feretMean, 0.0);
  EXPECT_TRUE(std::isnan(f.feretMaxAngle) && std::isnan(f.feretMinAngle));
  EXPECT_EQ(f.feretMaxFrom, 0);
  EXPECT_EQ(f.feretMaxFromPoint, gxVector<2>(7, 8));
}

TEST(Feret, ASegment) {
  const auto f = feretOf(pointsOf("3 4, 0 0, 1.5 2"));
  EXPECT_EQ(f.status, gxStatus::eFlat);
  EXPECT_DOUBLE_EQ(f.feretMax, 5.0);
  EXPECT_EQ(f.feretMin, 0.0);
  EXPECT_EQ(f.feretAcross, 0.0);
  EXPECT_DOUBLE_EQ(f.feretMean, 10.0 / kPi);
  EXPECT_DOUBLE_EQ(f.feretMaxAngle, std::atan2(4, 3));
  EXPECT_DOUBLE_EQ(f.feretMinAngle, std::atan2(4, 3) - kPi / 2);
  EXPECT_EQ(f.feretMaxFrom, 1);
  EXPECT_EQ(f.feretMaxTo, 0);
}

TEST(Feret, NaNAndInfinityAnywhere) {
  for (const char* text : {"0 nan", "0 0, 1 0, inf 1"}) {
    const auto f = feretOf(pointsOf(text));
    EXPECT_EQ(f.status, gxStatus::eNotFinite);
    EXPECT_TRUE(std::isnan(f.feretMax) && std::isnan(f.feretMin) && std::isnan(f.feretMean) &&
                std::isnan(f.feretAcross));
    EXPECT_TRUE(std::isnan(widthAt(pointsOf(text), 0.0)));
  }
  EXPECT_TRUE(std::isnan(widthAt(pointsOf("0 0, 1 0"), std::nan(""))));
}

TEST(Feret, PlacesOfARectangle) {
  const auto f = feretOf(pointsOf("1 1, 0 0, 3 0, 3 1, 0 1, 3 1"));
  EXPECT_DOUBLE_EQ(f.feretMax, std::sqrt(10.0));
  EXPECT_EQ(f.feretMaxFrom, 1);  // the first of the two diagonals, by the hull's order
  EXPECT_EQ(f.feretMaxTo, 3);    // and the first of the equal points
  EXPECT_DOUBLE_EQ(f.feretMaxAngle, std::atan2(1, 3));
  EXPECT_DOUBLE_EQ(f.feretMin, 1.0);
  EXPECT_DOUBLE_EQ(f.feretMinAngle, kPi / 2);
  EXPECT_EQ(f.feretMinEdgeFrom, 1);
  EXPECT_EQ(f.feretMinEdgeTo, 2);
  EXPECT_EQ(f.feretMinVertex, 3);
  EXPECT_EQ(f.feretMinPoint, gxVector<2>(3, 1));
  EXPECT_EQ(f.feretMinFoot, gxVector<2>(3, 0));
  EXPECT_DOUBLE_EQ(f.feretAcross, 6.0 / std::sqrt(10.0));
}

TEST(Feret, TheEndsOfTheRange) {
  for (const double scale : {1e300, 3e307, 1e-300}) {
    Points points = pointsOf("0 0, 4 0, 0 3");
    for (auto& p : points) p = p * scale;
    const auto f = feretOf(points);
    EXPECT_DOUBLE_EQ(f.feretMax / scale, 5.0);
    EXPECT_DOUBLE_EQ(f.feretMin / scale, 2.4);
    EXPECT_DOUBLE_EQ(f.feretMinFoot.x() / scale, 1.44);
    EXPECT_DOUBLE_EQ(widthAt(points, 0.0) / scale, 4.0);
  }
}

TEST(Feret, KnownShapesInAnyPlace) {
  for (const KnownShape& known : knownShapes()) {
    for (const bool turn : {false, true}) {
      for (const double scale : {1e-3, 1.0, 1e6}) {
        for (const gxVector<2> offset : {gxVector<2>(0, 0), gxVector<2>(1e6, -1e6)}) {
          const KnownShape s = placed(known, turn, scale, offset);
          const auto f = gfFeret(s.set());
          const double slack = s.feretMax * 1e-10 + offset.len() * 4e-16;
          EXPECT_NEAR(f.feretMax, s.feretMax, slack) << s.name;
          EXPECT_NEAR(f.feretMin, s.feretMin, slack) << s.name;
          EXPECT_NEAR(gfWidthAt(s.set(), f.feretMaxAngle), f.feretMax, slack);
          EXPECT_NEAR(gfWidthAt(s.set(), f.feretMinAngle), f.feretMin, slack);
          EXPECT_NEAR(gfWidthAt(s.set(), f.feretMaxAngle + kPi / 2), f.feretAcross, slack);
        }
      }
    }
  }
}

TEST(Feret, RandomPointsAgainstAllPairsAndEdges) {
  RandomShapes random("feret", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    auto points = random.finiteOutline();
    if (points.size() > 60) points.resize(60);
    if (points.empty()) continue;
    const auto f = feretOf(points);
    const double scale = f.feretMax + 1e-300;
    EXPECT_NEAR(static_cast<double>(plain::farthest(points) / scale), f.feretMax / scale, 4e-16);
    EXPECT_NEAR(static_cast<double>(plain::rectangles(points).width / scale), f.feretMin / scale, 1e-14);
    EXPECT_EQ(points[static_cast<std::size_t>(f.feretMaxFrom)], f.feretMaxFromPoint);
    EXPECT_EQ(points[static_cast<std::size_t>(f.feretMaxTo)], f.feretMaxToPoint);
    EXPECT_NEAR((f.feretMaxToPoint - f.feretMaxFromPoint).len() / scale, f.feretMax / scale, 4e-16);
    // The foot is rounded where it lies.
    EXPECT_NEAR((f.feretMinPoint - f.feretMinFoot).len() / scale, f.feretMin / scale,
                1e-14 + f.feretMinFoot.len() / scale * 4e-16);
    // The mean width is the mean over many directions.
    long double sum = 0;
    for (int k = 0; k < 360; ++k) {
      const double angle = k * kPi / 360.0;
      const auto wide = plain::extent(points, static_cast<long double>(angle));
      EXPECT_NEAR(widthAt(points, angle) / scale, static_cast<double>(wide / scale), 1e-12);
      sum += wide;
    }
    EXPECT_NEAR(static_cast<double>(sum / 360 / scale), f.feretMean / scale, 1e-4);
    EXPECT_EQ(feretOf(reversed(points)).feretMax, f.feretMax);
  }
}

TEST(Feret, Prints) {
  std::ostringstream out;
  out << feretOf(pointsOf("0 0, 4 0, 4 3, 0 3"));
  EXPECT_EQ(out.str(), "greatest 5 at 0.643501 least 3 at 1.5708 across 4.8 mean 4.45634");
}

}  // namespace
