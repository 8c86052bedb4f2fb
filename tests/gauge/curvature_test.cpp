// Tangent, normal, curvature; corners.
#include <gauge/clean.h>
#include <gauge/curvature.h>
#include <gauge/resample.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/printed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <numbers>
#include <sstream>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
using Points = std::vector<gxVector<2>>;

Points circleOf(double radius, int count) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double angle = 2 * kPi * i / count;
    points.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
  }
  return points;
}

TEST(Curvature, OnACircleTheCircleFitIsExactHoweverItIsSampled) {
  RandomShapes random("curvature circle", 50);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const double radius = random.uniform(1, 20);
    Points points;
    double angle = 0.0;
    while (angle < 2 * kPi - 0.1) {
      points.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
      angle += random.uniform(0.01, 0.1);
    }
    const gxBends got = gfCurvature(points, true, 0.5 * radius, gxCurvatureFit::eCircle);
    for (std::size_t i = 0; i < points.size(); ++i) {
      EXPECT_NEAR(got.at[i].curvature * radius, 1.0, 1e-9);
      EXPECT_NEAR(got.at[i].normal.distance(points[i].unit()), 0.0, 1e-9);
      EXPECT_NEAR(got.at[i].tangent * points[i], 0.0, 1e-8 * radius);
    }
    for (const gxBend& bend :
         gfCurvature(gfReversed(points, true), true, 0.5 * radius, gxCurvatureFit::eCircle).at) {
      EXPECT_NEAR(bend.curvature * radius, -1.0, 1e-9);
    }
  }
}

TEST(Curvature, OnACircleTheParabolaIsWrongByTheSquareOfTheWindow) {
  const Points points = circleOf(10, 2000);
  double before = 0.0;
  for (const double window : {0.5, 1.0, 2.0}) {
    const gxBends got = gfCurvature(points, true, window);
    const double error = std::abs(got.at[3].curvature - 0.1);
    EXPECT_LT(error, window * window / 1000.0);
    if (before > 0.0) {
      EXPECT_NEAR(error / before, 4.0, 0.3);
    }
    before = error;
  }
}

TEST(Curvature, OnALineItIsNothing) {
  const Points line = pointsOf("0 0, 3 4, 6 8, 12 16, 15 20");
  for (const auto fit : {gxCurvatureFit::eParabola, gxCurvatureFit::eCircle}) {
    for (const gxBend& bend : gfCurvature(line, false, 16, fit).at) {
      EXPECT_NEAR(bend.curvature, 0.0, 1e-14);
      EXPECT_NEAR(bend.tangent.distance({0.6, 0.8}), 0.0, 1e-14);
      EXPECT_NEAR(bend.normal.distance({0.8, -0.6}), 0.0, 1e-14);
    }
  }
}

TEST(Curvature, TooFewPointsInTheWindowAreNaN) {
  const Points square = pointsOf("0 0, 4 0, 4 4, 0 4");
  for (const gxBend& bend : gfCurvature(square, true, 3).at) EXPECT_TRUE(std::isnan(bend.curvature));
  for (const gxBend& bend : gfCurvature(square, true, 5).at) EXPECT_FALSE(std::isnan(bend.curvature));
  for (const gxBend& bend : gfCurvature(pointsOf("1 1, 1 1, 1 1, 1 1"), true, 5).at) {
    EXPECT_TRUE(std::isnan(bend.curvature));
  }
  EXPECT_TRUE(std::isnan(gfCurvature(pointsOf("0 0, 1 0, 0 0, 1 0"), false, 9).at[1].curvature));
}

TEST(Curvature, OfAParabolaItself) {
  Points points;
  for (int i = -50; i <= 50; ++i) points.emplace_back(0.002 * i, 0.5 * (0.002 * i) * (0.002 * i));
  const gxBends got = gfCurvature(points, false, 0.05);
  EXPECT_NEAR(got.at[50].curvature, 1.0, 5e-3);
  EXPECT_NEAR(got.at[50].tangent.distance({1, 0}), 0.0, 1e-12);
  // One-sided at the end, where the curvature is 1 / (1 + x²)^(3/2).
  EXPECT_NEAR(got.at[0].curvature, std::pow(1.01, -1.5), 2e-2);
}

TEST(Curvature, MoreThanEnoughPointsAreThinned) {
  const gxBends got = gfCurvature(circleOf(10, 20000), true, 5.0, gxCurvatureFit::eCircle);
  for (const std::size_t i : {std::size_t{0}, std::size_t{9999}, std::size_t{19999}}) {
    EXPECT_NEAR(got.at[i].curvature, 0.1, 1e-10);
  }
}

TEST(Curvature, WhatCannotBeAskedSaysSo) {
  const Points square = pointsOf("0 0, 4 0, 4 4, 0 4");
  for (const bool closed : {false, true}) {
    EXPECT_EQ(gfCurvature(Points{}, closed, 1).status, gxStatus::eEmpty);
    EXPECT_EQ(gfCorners(Points{}, closed, 1, gxRadian(1)).status, gxStatus::eEmpty);
    for (const double bad : {kNaN, kInfinity}) {
      EXPECT_EQ(gfCurvature(Points{{0, bad}, {1, 1}}, closed, 1).status, gxStatus::eNotFinite);
      EXPECT_EQ(gfCorners(Points{{0, bad}, {1, 1}}, closed, 1, gxRadian(1)).status,
                gxStatus::eNotFinite);
    }
    for (const double window : {0.0, -1.0, kNaN, kInfinity}) {
      EXPECT_EQ(gfCurvature(square, closed, window).status, gxStatus::eBadArgument);
      EXPECT_EQ(gfCorners(square, closed, window, gxRadian(1)).status, gxStatus::eBadArgument);
    }
    EXPECT_EQ(gfCorners(square, closed, 1, gxRadian(0)).status, gxStatus::eBadArgument);
    EXPECT_EQ(gfCorners(square, closed, 1, gxRadian(kNaN)).status, gxStatus::eBadArgument);
    EXPECT_TRUE(gfCorners(pointsOf("1 1, 1 1"), closed, 1, gxRadian(1)).corners.empty());
  }
}

TEST(Curvature, InAnyPlaceAndAtAnyScale) {
  const Points points = circleOf(10, 60);
  for (const double scale : {1e-300, 1e-3, 1e6, 1e300}) {
    const gxBends got =
        gfCurvature(Placement{1, 0, {0, 0}, scale}.of(points), true, 3 * scale, gxCurvatureFit::eCircle);
    EXPECT_NEAR(got.at[5].curvature * scale, 0.1, 1e-10);
  }
  const gxBends far = gfCurvature(kTurnedFarAway.of(points), true, 3, gxCurvatureFit::eCircle);
  EXPECT_NEAR(far.at[5].curvature, 0.1, 1e-8);
}

TEST(Corners, OfASquareHoweverItIsSampled) {
  const Points square = pointsOf("0 0, 4 0, 4 4, 0 4");
  for (const std::size_t pieces : {std::size_t{4}, std::size_t{16}, std::size_t{400}}) {
    const Points points = gfResample(square, true, pieces).points;
    const gxCorners got = gfCorners(points, true, 1.0, gxRadian(0.5));
    ASSERT_EQ(got.corners.size(), 4u);
    for (std::size_t k = 0; k < 4; ++k) {
      EXPECT_EQ(got.corners[k].vertex, k * pieces / 4);
      EXPECT_NEAR(got.corners[k].turn.toDouble(), kPi / 2, 1e-12);
    }
    for (const gxCorner& corner :
         gfCorners(gfReversed(points, true), true, 1.0, gxRadian(0.5)).corners) {
      EXPECT_NEAR(corner.turn.toDouble(), -kPi / 2, 1e-12);
    }
  }
  EXPECT_EQ(gfCorners(square, false, 1.0, gxRadian(0.5)).corners.size(), 2u);
  EXPECT_TRUE(gfCorners(square, true, 1.0, gxRadian(1.6)).corners.empty());
}

TEST(Corners, ARoundedOneIsOneAndACircleHasNone) {
  EXPECT_TRUE(gfCorners(circleOf(10, 400), true, 1.0, gxRadian(0.3)).corners.empty());
  Points rounded;
  for (int i = 0; i < 40; ++i) rounded.emplace_back(0.1 * i, 0.0);
  for (int i = 0; i <= 10; ++i) {
    const double angle = -kPi / 2 + kPi / 20 * i;
    rounded.emplace_back(4.0 + 0.2 * std::cos(angle), 0.2 + 0.2 * std::sin(angle));
  }
  for (int i = 1; i < 40; ++i) rounded.emplace_back(4.2, 0.2 + 0.1 * i);
  const gxCorners got = gfCorners(rounded, false, 1.0, gxRadian(0.8));
  ASSERT_EQ(got.corners.size(), 1u);
  EXPECT_EQ(got.corners[0].vertex, 45u);
}

TEST(Corners, OfEqualTurnsTheLowestVertexIsTheCorner) {
  // A slot: two right angles 0.5 apart, seen through a window of 2.
  const Points slot = pointsOf("0 9, 0 0, 0.5 0, 0.5 9");
  const gxCorners got = gfCorners(slot, false, 2.0, gxRadian(0.5));
  ASSERT_EQ(got.corners.size(), 1u);
  EXPECT_EQ(got.corners[0].vertex, 1u);
}

TEST(Corners, ATurnBackIsHalfATurn) {
  const gxCorners got = gfCorners(pointsOf("0 0, 5 0, 0 0"), false, 1.0, gxRadian(1));
  ASSERT_EQ(got.corners.size(), 1u);
  EXPECT_NEAR(std::abs(got.corners[0].turn.toDouble()), kPi, 1e-12);
  std::ostringstream out;
  out << got.corners[0] << "; " << gfCurvature(pointsOf("0 0, 1 0, 2 0"), false, 5).at[1];
  EXPECT_NE(out.str().find("vertex 1 turns by 3.14"), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("tangent (1, 0), curvature 0"), std::string::npos) << out.str();
}

TEST(Curvature, ListsPrintHowManyThereAre) {
  EXPECT_EQ(printed(gfCurvature(pointsOf("0 0, 1 0, 2 0"), false, 5)), "3 bends");
  EXPECT_EQ(printed(gfCurvature(pointsOf("0 0, 1 0, 2 0"), false, 0)), "0 bends bad_argument");
  EXPECT_EQ(printed(gfCorners(pointsOf("0 0, 9 0, 9 9, 0 9"), true, 2, gxRadian(1))), "4 corners");
  EXPECT_EQ(printed(gfCorners(pointsOf(""), true, 2, gxRadian(1))), "0 corners empty");
}

}  // namespace
