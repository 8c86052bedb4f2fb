// Points spread anew.
#include <gauge/arc.h>
#include <gauge/resample.h>
#include <gauge/simplify.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/plain_distance.h>
#include <support/printed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
using Points = std::vector<gxVector<2>>;

const Points kRectangle = pointsOf("0 0, 4 0, 4 3, 0 3");

TEST(Resample, AnOutlineGetsAsManyPointsAPolyLineOneMore) {
  EXPECT_EQ(gfResample(kRectangle, true, 7).points, pointsOf("0 0, 2 0, 4 0, 4 2, 3 3, 1 3, 0 2"));
  EXPECT_EQ(gfResample(kRectangle, false, 2).points, pointsOf("0 0, 4 1.5, 0 3"));
  EXPECT_EQ(gfResample(kRectangle, true, 1).points, pointsOf("0 0"));
  EXPECT_EQ(gfResample(gxContour(kRectangle, false), 1).points, pointsOf("0 0, 0 3"));
}

TEST(Resample, BySpacingTheArcsAreEqualAndNoLonger) {
  EXPECT_EQ(gfResampleBySpacing(kRectangle, true, 2.0).points.size(), 7u);
  EXPECT_EQ(gfResampleBySpacing(kRectangle, true, 1.99).points.size(), 8u);
  EXPECT_EQ(gfResampleBySpacing(kRectangle, true, 100).points, pointsOf("0 0"));
  EXPECT_EQ(gfResampleBySpacing(gxContour(kRectangle, false), kInfinity).points, pointsOf("0 0, 0 3"));
}

TEST(Resample, ByDeviationCornersStayAndGapsAreFilled) {
  const Points noisy = pointsOf("0 0, 1 0.01, 2 0, 4 0, 4 3, 0 3");
  EXPECT_EQ(gfResampleByDeviation(noisy, true, 0.1, kInfinity).points, kRectangle);
  EXPECT_EQ(gfResampleByDeviation(noisy, true, 0.1, 2.0).points,
            pointsOf("0 0, 2 0, 4 0, 4 1.5, 4 3, 2 3, 0 3, 0 1.5"));
  EXPECT_EQ(gfResampleByDeviation(gxContour(noisy, false), 0.1, 2.0).points,
            pointsOf("0 0, 2 0, 4 0, 4 1.5, 4 3, 2 3, 0 3"));
}

TEST(Resample, WhatCannotBeResampledSaysSo) {
  for (const bool closed : {false, true}) {
    EXPECT_EQ(gfResample(Points{}, closed, 5).status, gxStatus::eEmpty);
    EXPECT_EQ(gfResample(kRectangle, closed, 0).status, gxStatus::eBadArgument);
    for (const double spacing : {0.0, -1.0, kNaN, 1e-300}) {
      EXPECT_EQ(gfResampleBySpacing(kRectangle, closed, spacing).status, gxStatus::eBadArgument);
      EXPECT_EQ(gfResampleByDeviation(kRectangle, closed, 0.1, spacing).status, gxStatus::eBadArgument);
    }
    EXPECT_EQ(gfResampleByDeviation(kRectangle, closed, -1, 1).status, gxStatus::eBadArgument);
    EXPECT_EQ(gfResampleByDeviation(Points{}, closed, 1, 1).status, gxStatus::eEmpty);
    const auto flat = gfResample(pointsOf("1 1, 1 1"), closed, 3);
    EXPECT_EQ(flat.status, gxStatus::eFlat);
    EXPECT_EQ(flat.points, Points(closed ? 3 : 4, gxVector<2>(1, 1)));
    for (const double bad : {kNaN, kInfinity}) {
      const Points spoiled{{0, 0}, {1, bad}, {2, 0}};
      EXPECT_EQ(gfResample(spoiled, closed, 3).status, gxStatus::eNotFinite);
      EXPECT_EQ(gfResampleBySpacing(spoiled, closed, 3).status, gxStatus::eNotFinite);
      EXPECT_EQ(gfResampleByDeviation(spoiled, closed, 3, 1).status, gxStatus::eNotFinite);
    }
  }
  EXPECT_EQ(gfResample(pointsOf("-1e308 -1e308, 1e308 1e308"), true, 3).status, gxStatus::eNotFinite);
  EXPECT_EQ(gfResampleByDeviation(pointsOf("1 1, 1 1"), true, 1, 1).points, pointsOf("1 1"));
}

TEST(Resample, RandomShapesGiveTheVeryPlacesOfTheArc) {
  RandomShapes random("resample", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.finiteOutline();
    const bool closed = random.chance(0.5);
    const gxArcLength arc(points, closed);
    if (!(arc.length() > 0.0)) continue;
    const auto pieces = static_cast<std::size_t>(random.integer(1, 300));
    const gxResampled got = gfResample(points, closed, pieces);
    ASSERT_EQ(got.points.size(), closed ? pieces : pieces + 1);
    for (std::size_t k = 0; k < got.points.size(); ++k) {
      const double s = arc.length() * (static_cast<double>(k) / static_cast<double>(pieces));
      EXPECT_NEAR(got.points[k].distance(arc.at(s)), 0.0, 1e-13 * arc.length());
    }
  }
}

TEST(Resample, MotionMovesTheSamples) {
  RandomShapes random("resample motion", 30);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.star(40, {0, 0}, 3, 9);
    const Points here = gfResample(points, true, 33).points;
    const Points there = gfResample(kTurnedFarAway.of(points), true, 33).points;
    for (std::size_t k = 0; k < here.size(); ++k) {
      EXPECT_NEAR(kTurnedFarAway.of(here[k]).distance(there[k]), 0.0, 1e-8);
    }
    // The last sample of the one direction is the first after point 0 of the other.
    const Points back = gfResample(reversed(points), true, 33).points;
    for (std::size_t k = 1; k < here.size(); ++k) {
      EXPECT_NEAR(back[k].distance(here[33 - k]), 0.0, 1e-13);
    }
  }
}

TEST(Resample, ResultsPrint) {
  EXPECT_EQ(printed(gfResample(pointsOf("0 0, 4 0"), false, 4)), "5 points");
  EXPECT_EQ(printed(gfResample(pointsOf("0 0, 4 0"), false, 0)), "0 points bad_argument");
}

}  // namespace
