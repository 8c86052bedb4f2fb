// Gaussian smoothing: circles in closed form, everything else beside numerical integration.
#include <gauge/arc.h>
#include <gauge/clean.h>
#include <gauge/resample.h>
#include <gauge/smooth.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/printed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <numbers>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
using Points = std::vector<gxVector<2>>;

Points circleOf(double radius, int count) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double angle = 2 * std::numbers::pi * i / count;
    points.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
  }
  return points;
}

// The curve at any arc length: around, or turned by half a turn about its ends.
gxVector<2> goingOn(const gxArcLength& arc, double s) {
  if (arc.isClosed()) return arc.at(s);
  if (s < 0) return arc.points().front() * 2.0 - goingOn(arc, -s);
  if (s > arc.length()) return arc.points().back() * 2.0 - goingOn(arc, 2 * arc.length() - s);
  return arc.at(s);
}

// By the trapezoidal rule with many steps.
gxVector<2> plainMean(const gxArcLength& arc, double s0, double sigma) {
  constexpr int kSteps = 40000;
  gxVector<2> sum;
  double weight = 0.0;
  for (int k = -kSteps; k <= kSteps; ++k) {
    const double u = 8.0 * sigma * k / kSteps;
    const double w = std::exp(-0.5 * (u / sigma) * (u / sigma));
    sum += goingOn(arc, s0 + u) * w;
    weight += w;
  }
  return sum / weight;
}

TEST(Smooth, ACircleShrinksByAKnownFactor) {
  // 10 exp(−4 / 200), but for the shortness of the chords, and for the thinning of 20000 points.
  for (const int count : {300, 1000, 20000}) {
    const Points got = gfSmooth(circleOf(10, count), true, 2.0).points;
    ASSERT_EQ(got.size(), static_cast<std::size_t>(count));
    const double step = std::numbers::pi / count;
    for (const auto& p : got)
      EXPECT_NEAR(p.len(), 9.8019867331, 12 * step * step + (count > 10000 ? 2e-5 : 3e-8));
  }
  const Points fine = gfSmooth(circleOf(10, 100000), true, 0.002).points;
  EXPECT_NEAR(fine[77].len(), 10 * std::exp(-0.5e-6 * 0.04), 1e-8);
}

TEST(Smooth, WithCorrectionACircleKeepsItsRadius) {
  for (const double sigma : {0.5, 2.0, 5.0}) {
    const Points got = gfSmooth(circleOf(10, 900), true, sigma, gxSmoothCorrection::eShrink).points;
    for (const auto& p : got) EXPECT_NEAR(p.len(), 10.0, 3e-3);
  }
}

TEST(Smooth, AStraightLineStaysWithAndWithoutCorrection) {
  const Points line = pointsOf("0 0, 1 0.5, 2 1, 7 3.5, 10 5");
  for (const double sigma : {0.1, 1.0, 20.0, 1000.0}) {
    for (const auto correction : {gxSmoothCorrection::eNone, gxSmoothCorrection::eShrink}) {
      const Points got = gfSmooth(line, false, sigma, correction).points;
      for (std::size_t i = 0; i < line.size(); ++i) {
        EXPECT_NEAR(got[i].distance(line[i]), 0.0, 1e-12) << sigma;
      }
    }
  }
}

TEST(Smooth, OfAWideGaussianTheMeanPositionIsLeft) {
  const Points square = pointsOf("0 0, 4 0, 4 4, 0 4");
  for (const double sigma : {24.0, 33.0, 1e9}) {
    for (const auto& p : gfSmooth(square, true, sigma).points) {
      EXPECT_NEAR(p.distance({2, 2}), 0.0, 1e-12);
    }
  }
  // Both sides of the limit at which the closed form is left are alike.
  const Points uneven = pointsOf("0 0, 9 0, 1 4");
  const double length = gxArcLength(uneven, true).length();
  const auto below = gfSmooth(uneven, true, 1.999 * length).points;
  const auto above = gfSmooth(uneven, true, 2.001 * length).points;
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(below[i].distance(above[i]), 0.0, 1e-11);
  const double open = gxArcLength(uneven, false).length();
  const auto lower = gfSmooth(uneven, false, 2.999 * open).points;
  const auto upper = gfSmooth(uneven, false, 3.001 * open).points;
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(lower[i].distance(upper[i]), 0.0, 1e-10);
}

TEST(Smooth, NothingToDoAndNothingThatCanBeDone) {
  const Points square = pointsOf("0 0, 4 0, 4 4, 0 4");
  for (const bool closed : {false, true}) {
    EXPECT_EQ(gfSmooth(square, closed, 0.0).points, square);
    EXPECT_EQ(gfSmooth(Points{}, closed, 1.0).status, gxStatus::eEmpty);
    for (const double sigma : {-1.0, kNaN, kInfinity}) {
      EXPECT_EQ(gfSmooth(square, closed, sigma).status, gxStatus::eBadArgument);
    }
    EXPECT_EQ(gfSmooth(Points{{0, 0}, {kNaN, 1}}, closed, 1.0).status, gxStatus::eNotFinite);
    EXPECT_EQ(gfSmooth(Points{{0, 0}, {kInfinity, 1}}, closed, 1.0).status, gxStatus::eNotFinite);
    const auto flat = gfSmooth(pointsOf("1 1, 1 1"), closed, 1.0);
    EXPECT_EQ(flat.status, gxStatus::eFlat);
    EXPECT_EQ(flat.points, pointsOf("1 1, 1 1"));
    EXPECT_EQ(gfSmooth(pointsOf("1 1"), closed, 1.0).status, gxStatus::eFlat);
    EXPECT_EQ(gfSmooth(gxContour(square, closed), 1.0).points, gfSmooth(square, closed, 1.0).points);
  }
}

TEST(Smooth, RandomShapesAsByNumericalIntegration) {
  RandomShapes random("smooth", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.star(random.integer(3, 40), {0, 0}, 2, 9);
    const bool closed = random.chance(0.5);
    const gxArcLength arc(points, closed);
    const double sigma = arc.length() * std::exp(random.uniform(-6, 0.5));
    const Points got = gfSmooth(points, closed, sigma).points;
    const auto i = static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1));
    EXPECT_NEAR(got[i].distance(plainMean(arc, arc.lengthTo(i), sigma)), 0.0, 2e-6 * sigma);
  }
}

TEST(Smooth, ManyPointsWithinTheGaussianAreThinnedFirst) {
  RandomShapes random("smooth many", 5);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points coarse = random.star(30, {0, 0}, 4, 9);
    const Points fine = gfResample(coarse, true, 30000).points;
    const double sigma = random.uniform(1.0, 4.0);
    const Points got = gfSmooth(fine, true, sigma).points;
    const gxArcLength arc(fine, true);
    for (const std::size_t i : {std::size_t{0}, std::size_t{777}, std::size_t{29999}}) {
      EXPECT_NEAR(got[i].distance(plainMean(arc, arc.lengthTo(i), sigma)), 0.0, 1e-4 * sigma);
    }
  }
}

TEST(Smooth, DirectionStartAndMotionDoNotMatter) {
  RandomShapes random("smooth invariance", 30);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.star(25, {0, 0}, 4, 9);
    const Points got = gfSmooth(points, true, 1.0).points;
    const Points turned = gfSmooth(rotatedStart(points, 7), true, 1.0).points;
    const Points back = gfSmooth(gfReversed(points, true), true, 1.0).points;
    const Points far = gfSmooth(kTurnedFarAway.of(points), true, 1.0).points;
    for (std::size_t i = 0; i < 25; ++i) {
      EXPECT_NEAR(got[(i + 7) % 25].distance(turned[i]), 0.0, 1e-11);
      EXPECT_NEAR(got[i].distance(back[(25 - i) % 25]), 0.0, 1e-11);
      EXPECT_NEAR(kTurnedFarAway.of(got[i]).distance(far[i]), 0.0, 2e-9);
    }
  }
}

TEST(Smooth, ResultsPrint) {
  EXPECT_EQ(printed(gfSmooth(pointsOf("0 0, 4 0, 4 4"), true, 1)), "3 points");
  EXPECT_EQ(printed(gfSmooth(pointsOf("0 0, 4 0"), false, -1)), "0 points bad_argument");
}

}  // namespace
