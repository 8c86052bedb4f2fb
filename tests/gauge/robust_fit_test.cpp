// Robust fits: planted shapes, outliers, standard errors worked out by hand.
#include <gauge/robust_fit.h>
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
using Points = std::vector<gxVector<2>>;
using W = gxFitWeights;

// Twenty points of the x axis, 0.1 above, below, below, above and so on.
Points wavyLine() {
  Points points;
  for (int i = 0; i < 20; ++i) points.emplace_back(i - 9.5, (i % 4 == 0 || i % 4 == 3) ? 0.1 : -0.1);
  return points;
}

Points wavyCircle() {
  Points points;
  for (int i = 0; i < 24; ++i) {
    const double angle = kPi / 12 * i;
    const double r = 10 + 0.05 * std::cos(4 * angle);
    points.emplace_back(r * std::cos(angle), r * std::sin(angle));
  }
  return points;
}

Points ellipsePoints(int count = 24) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double t = 2 * kPi / count * i;
    points.emplace_back(8 * std::cos(t), 4 * std::sin(t));
  }
  return points;
}

Points with(Points points, const Points& others) {
  points.insert(points.end(), others.begin(), others.end());
  return points;
}

Points column(double x, double y, double dx, double dy, int count) {
  Points points;
  for (int i = 0; i < count; ++i) points.emplace_back(x + dx * i, y + dy * i);
  return points;
}

TEST(RobustFit, ALineWithEvenNoise) {
  for (const W weights : {W::eLeastSquares, W::eHuber, W::eTukey, W::eConsensus}) {
    const gxRobustLine got = gfRobustLine(wavyLine(), {.weights = weights});
    EXPECT_EQ(got.status, gxStatus::eOk);
    EXPECT_NEAR(got.angle.toDouble(), 0.0, 1e-12);
    EXPECT_NEAR(got.point.y(), 0.0, 1e-12);
    EXPECT_EQ(got.inliers.size(), 20u);
    EXPECT_NEAR(got.residualRms, 0.1, 1e-12);
    EXPECT_NEAR(got.residualMax, 0.1, 1e-12);
  }
  const gxRobustLine got = gfRobustLine(wavyLine(), {.weights = W::eLeastSquares});
  EXPECT_NEAR(got.deviation, std::sqrt(0.2 / 18), 1e-14);
  EXPECT_NEAR(got.angleError, 0.0040875956, 1e-10);
  EXPECT_NEAR(got.offsetError, 0.0235702260, 1e-10);
}

TEST(RobustFit, OutliersTakeALineOnlyFromLeastSquares) {
  const Points points = with(wavyLine(), column(0, 50, 1, 0, 6));
  const Placement turned{0.8, 0.6, {0, 0}, 1};
  for (const W weights : {W::eTukey, W::eConsensus}) {
    const gxRobustLine got = gfRobustLine(turned.of(points), {.weights = weights});
    EXPECT_EQ(got.inliers.size(), 20u);
    EXPECT_NEAR(got.angle.toDouble(), std::atan2(0.6, 0.8), 1e-11);
    EXPECT_NEAR(gf_Cross(gxVector<2>(0.8, 0.6), got.point), 0.0, 1e-11);
  }
  const gxRobustLine plain = gfRobustLine(turned.of(points), {.weights = W::eLeastSquares});
  EXPECT_GT(std::abs(plain.angle.toDouble() - std::atan2(0.6, 0.8)), 0.1);
}

TEST(RobustFit, AVerticalLineIsNoSpecialCase) {
  const Placement turned{0, 1, {0, 0}, 1};
  for (const W weights : {W::eLeastSquares, W::eTukey}) {
    const gxRobustLine got = gfRobustLine(turned.of(wavyLine()), {.weights = weights});
    EXPECT_NEAR(std::abs(got.angle.toDouble()), kPi / 2, 1e-12);
    EXPECT_NEAR(got.point.x(), 0.0, 1e-12);
  }
}

TEST(RobustFit, ACircleWithEvenNoiseAndItsErrors) {
  const gxRobustCircle got = gfRobustCircle(wavyCircle(), {.weights = W::eLeastSquares});
  EXPECT_EQ(got.status, gxStatus::eOk);
  EXPECT_NEAR(got.centre.len(), 0.0, 1e-12);
  EXPECT_NEAR(got.radius, 10.0, 1e-12);
  EXPECT_NEAR(got.deviation * got.deviation * 21, 0.03, 1e-12);
  EXPECT_NEAR(got.centreXError, 0.0109108945, 1e-9);
  EXPECT_NEAR(got.centreYError, 0.0109108945, 1e-9);
  EXPECT_NEAR(got.radiusError, 0.0077151675, 1e-9);
}

TEST(RobustFit, OutliersInsideACircle) {
  const Points points = with(wavyCircle(), column(4, 0, 0, 0.1, 8));
  for (const W weights : {W::eTukey, W::eConsensus}) {
    const gxRobustCircle got = gfRobustCircle(points, {.weights = weights});
    EXPECT_EQ(got.status, gxStatus::eOk);
    EXPECT_EQ(got.inliers.size(), 24u);
    EXPECT_NEAR(got.centre.len(), 0.0, 1e-9);
    EXPECT_NEAR(got.radius, 10.0, weights == W::eConsensus ? 1e-12 : 2e-3);
  }
}

TEST(RobustFit, OnShortArcsTheErrorsGrowAsTheyShould) {
  struct Arc {
    double degrees, cx, cy, r;
  };
  for (const Arc& arc : {Arc{90, 1.9222, 0.4096, 1.7276}, Arc{180, 0.5543, 0.2500, 0.3855},
                         Arc{60, 4.2134, 0.5923, 4.0150}, Arc{30, 16.592, 1.159, 16.392}}) {
    Points points;
    for (int i = 0; i < 31; ++i) {
      const double angle = (arc.degrees / 30 * i - arc.degrees / 2) * kPi / 180;
      const double r = 10 + 1e-7 * ((i * 7) % 5 - 2);
      points.emplace_back(r * std::cos(angle), r * std::sin(angle));
    }
    const gxRobustCircle got = gfRobustCircle(points, {.weights = W::eLeastSquares});
    EXPECT_NEAR(got.centreXError / got.deviation, arc.cx, 1e-3 * arc.cx);
    EXPECT_NEAR(got.centreYError / got.deviation, arc.cy, 1e-3 * arc.cy);
    EXPECT_NEAR(got.radiusError / got.deviation, arc.r, 1e-3 * arc.r);
  }
}

TEST(RobustFit, TheErrorsOfAnEllipse) {
  Points points = ellipsePoints();
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i] = points[i] * (1.0 + 1e-8 * static_cast<double>((i * 7) % 5) - 2e-8);
  }
  const gxRobustEllipse got = gfRobustEllipse(points, {.weights = W::eLeastSquares});
  EXPECT_EQ(got.status, gxStatus::eOk);
  EXPECT_NEAR(got.centreXError / got.deviation, 0.353552, 1e-5);
  EXPECT_NEAR(got.centreYError / got.deviation, 0.250000, 1e-5);
  EXPECT_NEAR(got.aError / got.deviation, 0.408245, 1e-5);
  EXPECT_NEAR(got.bError / got.deviation, 0.322748, 1e-5);
  EXPECT_NEAR(got.angleError / got.deviation, 0.0721693, 1e-6);
}

TEST(RobustFit, AnExactEllipseWithOutliers) {
  const Points points = with(ellipsePoints(), column(20, 0, 0, 1, 10));
  for (const W weights : {W::eTukey, W::eConsensus}) {
    const gxRobustEllipse got = gfRobustEllipse(points, {.weights = weights});
    EXPECT_EQ(got.status, gxStatus::eOk);
    EXPECT_EQ(got.inliers.size(), 24u);
    EXPECT_NEAR(got.a, 8.0, 1e-11);
    EXPECT_NEAR(got.b, 4.0, 1e-11);
    EXPECT_NEAR(got.centre.len(), 0.0, 1e-11);
    EXPECT_NEAR(got.angle.toDouble(), 0.0, 1e-11);
    EXPECT_NEAR(got.residualMax, 0.0, 1e-12);
    EXPECT_NEAR(got.aError, 0.0, 1e-12);
  }
}

// K. Pearson, "On lines and planes of closest fit to systems of points in space", 1901.
const Points kPearson =
    pointsOf("0 5.9, 0.9 5.4, 1.8 4.4, 2.6 4.6, 3.3 3.5, 4.4 3.7, 5.2 2.8, 6.1 2.8, 6.5 2.4, 7.4 1.5");

TEST(RobustFit, PearsonsPoints) {
  const gxRobustLine got = gfRobustLine(kPearson, {.weights = W::eLeastSquares});
  EXPECT_NEAR(std::tan(got.angle.toDouble()), -0.545561197521, 1e-11);
  EXPECT_NEAR(got.point.y() - got.point.x() * std::tan(got.angle.toDouble()), 5.784043775, 1e-9);
  EXPECT_NEAR(got.deviation * got.deviation * 8, 0.618572759437, 1e-11);
  EXPECT_NEAR(got.angleError, 0.0325459254, 1e-9);
  EXPECT_NEAR(got.offsetError, 0.0879326987, 1e-9);
}

TEST(RobustFit, GanderGolubAndStrebelsPoints) {
  const Points points = pointsOf("1 7, 2 6, 5 8, 7 7, 9 5, 3 7");
  const gxRobustCircle got = gfRobustCircle(points, {.weights = W::eLeastSquares});
  EXPECT_NEAR(got.centre.distance({4.739782411, 2.983532699}), 0.0, 2e-9);
  EXPECT_NEAR(got.radius, 4.714226038, 1e-9);
  EXPECT_NEAR(got.deviation, 0.63968718, 1e-8);
  EXPECT_NEAR(got.centreXError, 0.47759, 1e-5);
  EXPECT_NEAR(got.centreYError, 1.54291, 1e-5);
  EXPECT_NEAR(got.radiusError, 1.22432, 1e-5);
}

TEST(RobustFit, AWorseModelSaysSo) {
  for (const W weights : {W::eLeastSquares, W::eTukey, W::eConsensus}) {
    const gxStatus circle = gfRobustCircle(wavyLine(), {.weights = weights}).status;
    EXPECT_TRUE(circle == gxStatus::eWorse || circle == gxStatus::eUndetermined) << circle;
    const gxStatus ellipse = gfRobustEllipse(wavyLine(), {.weights = weights}).status;
    EXPECT_TRUE(ellipse == gxStatus::eWorse || ellipse == gxStatus::eUndetermined) << ellipse;
    Points circlePoints;
    for (int i = 0; i < 20; ++i)
      circlePoints.push_back(gxVector<2>(3.0, gxRadian(0.3 * i)) + gxVector<2>(1, 2));
    const gxRobustEllipse round = gfRobustEllipse(circlePoints, {.weights = weights});
    EXPECT_EQ(round.status, gxStatus::eWorse);
    EXPECT_NEAR(round.a, 3.0, 1e-6);
    EXPECT_NEAR(round.b, 3.0, 1e-6);
  }
}

TEST(RobustFit, AnEllipseOfExactlyRoundPointsIsTheirCircle) {
  const Points round = pointsOf(
      "13 16, 12 19, 11 20, 8 21, 5 20, 4 19, 3 16, 4 13, 5 12, 8 11, 11 12, 12 13, 8 16.5, 8.25 16");
  for (const W weights : {W::eTukey, W::eConsensus}) {
    const gxRobustEllipse got = gfRobustEllipse(round, {.weights = weights});
    EXPECT_EQ(got.status, gxStatus::eWorse);
    EXPECT_NEAR(got.centre.distance({8, 16}), 0.0, 1e-12);
    EXPECT_NEAR(got.a, 5.0, 1e-12);
    EXPECT_NEAR(got.b, 5.0, 1e-12);
    EXPECT_EQ(got.inliers.size(), 12u);
  }
}

TEST(RobustFit, FewPoints) {
  EXPECT_EQ(gfRobustLine(pointsOf("1 1")).status, gxStatus::eUndetermined);
  EXPECT_EQ(gfRobustLine(pointsOf("1 1, 1 1")).status, gxStatus::eUndetermined);
  const gxRobustLine two = gfRobustLine(pointsOf("0 0, 3 4"), {.weights = W::eLeastSquares});
  EXPECT_EQ(two.status, gxStatus::eOk);
  EXPECT_NEAR(two.angle.toDouble(), std::atan2(4, 3), 1e-15);
  EXPECT_TRUE(std::isnan(two.deviation) && std::isnan(two.angleError));
  const gxRobustCircle three = gfRobustCircle(pointsOf("1 0, 0 1, -1 0"), {.weights = W::eLeastSquares});
  EXPECT_EQ(three.status, gxStatus::eOk);
  EXPECT_NEAR(three.radius, 1.0, 1e-14);
  EXPECT_TRUE(std::isnan(three.radiusError));
  EXPECT_EQ(gfRobustCircle(pointsOf("0 0, 1 1, 2 2")).status, gxStatus::eUndetermined);
  EXPECT_EQ(gfRobustEllipse(pointsOf("0 0, 1 1, 2 2")).status, gxStatus::eUndetermined);
  EXPECT_TRUE(std::isnan(gfRobustCircle(pointsOf("0 0, 1 1, 2 2")).radius));
}

TEST(RobustFit, SpreadAlikeInAllDirectionsThereIsNoLine) {
  const gxRobustLine square =
      gfRobustLine(pointsOf("0 0, 1 0, 1 1, 0 1"), {.weights = W::eLeastSquares});
  EXPECT_EQ(square.status, gxStatus::eUndetermined);
  EXPECT_EQ(square.angle.toDouble(), 0.0);
  EXPECT_NEAR(square.point.distance({0.5, 0.5}), 0.0, 1e-15);
}

TEST(RobustFit, WhatCannotBeFittedSaysSo) {
  EXPECT_EQ(gfRobustLine(Points{}).status, gxStatus::eEmpty);
  EXPECT_EQ(gfRobustCircle(Points{}).status, gxStatus::eEmpty);
  EXPECT_EQ(gfRobustEllipse(Points{}).status, gxStatus::eEmpty);
  const Points bad{{0, 0}, {1, kNaN}, {2, 0}, {3, 1}, {4, 1}, {5, 5}};
  EXPECT_EQ(gfRobustLine(bad).status, gxStatus::eNotFinite);
  EXPECT_EQ(gfRobustCircle(bad).status, gxStatus::eNotFinite);
  EXPECT_EQ(gfRobustEllipse(bad).status, gxStatus::eNotFinite);
  for (const double limit : {-1.0, kNaN}) {
    EXPECT_EQ(gfRobustLine(wavyLine(), {.inlierLimit = limit}).status, gxStatus::eBadArgument);
    EXPECT_EQ(gfRobustCircle(wavyLine(), {.inlierLimit = limit}).status, gxStatus::eBadArgument);
    EXPECT_EQ(gfRobustEllipse(wavyLine(), {.inlierLimit = limit}).status, gxStatus::eBadArgument);
  }
}

TEST(RobustFit, AGivenLimitDecidesWhoBelongs) {
  const Points points = with(wavyLine(), Points{{0, 0.3}, {1, 0.5}});
  const auto inliers = [&](double limit) {
    return gfRobustLine(points, {.weights = W::eConsensus, .inlierLimit = limit}).inliers.size();
  };
  // A point at the limit belongs.
  EXPECT_EQ(gfRobustLine(pointsOf("0 0, 1 0, 2 0, 3 0, 4 0, 5 0, 6 0, 2 4"), {.inlierLimit = 4.0})
                .inliers.size(),
            8u);
  EXPECT_EQ(inliers(0.2), 20u);
  EXPECT_EQ(inliers(0.4), 21u);
  EXPECT_EQ(inliers(1.0), 22u);
}

TEST(RobustFit, TheSameSeedTheSameBitsAndAnyPlaceAndScale) {
  const Points points = with(wavyCircle(), column(4, 0, 0, 0.1, 8));
  const gxRobustCircle first = gfRobustCircle(points);
  const gxRobustCircle second = gfRobustCircle(points);
  EXPECT_EQ(first.radius, second.radius);
  EXPECT_EQ(first.centre, second.centre);
  const gxRobustCircle far = gfRobustCircle(kTurnedFarAway.of(points));
  EXPECT_NEAR(far.radius, first.radius, 1e-8);
  for (const int exponent : {-1000, 1000}) {
    const gxRobustCircle there =
        gfRobustCircle(Placement{1, 0, {0, 0}, std::ldexp(1.0, exponent)}.of(points));
    EXPECT_EQ(std::ldexp(there.radius, -exponent), first.radius);
  }
}

TEST(RobustFit, RandomCirclesWithTooManyStrangers) {
  RandomShapes random("robust circles", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxVector<2> centre(random.uniform(-50, 50), random.uniform(-50, 50));
    const double radius = random.uniform(1, 30);
    Points points;
    for (int i = 0; i < 60; ++i) {
      const double angle = random.uniform(0, 4);
      const double r = radius * (1 + random.uniform(-1, 1) * 1e-3);
      points.push_back(centre + gxVector<2>(r, gxRadian(angle)));
    }
    for (int i = 0; i < 40; ++i) {
      points.push_back(centre + gxVector<2>(random.uniform(-2, 2), random.uniform(-2, 2)) * radius);
    }
    const gxRobustCircle got = gfRobustCircle(points);
    EXPECT_NEAR(got.radius, radius, 3e-3 * radius);
    EXPECT_NEAR(got.centre.distance(centre), 0.0, 3e-3 * radius);
    // Standard errors are of the size of the errors.
    EXPECT_LT(std::abs(got.radius - radius), 6 * got.radiusError);
  }
}

TEST(RobustFit, ResultsPrint) {
  std::ostringstream out;
  out << gfRobustLine(wavyLine(), {.weights = W::eLeastSquares}) << "; "
      << gfRobustCircle(wavyCircle(), {.weights = W::eLeastSquares}) << "; "
      << gfRobustEllipse(ellipsePoints(), {.weights = W::eLeastSquares});
  const gxVector<2> away(20, 30);
  Points far = ellipsePoints();
  for (auto& point : far) point += away;
  std::ostringstream ellipse;
  ellipse.precision(3);
  ellipse << gfRobustEllipse(far, {.weights = W::eLeastSquares});
  EXPECT_EQ(ellipse.str().find("ellipse at (20, 30) semi-axes 8 and 4 at angle "), 0u) << ellipse.str();
  EXPECT_NE(out.str().find("20 inliers, ok; circle at"), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("24 inliers, ok; ellipse at"), std::string::npos) << out.str();
}

TEST(RobustFit, WithoutInliersNothingIsDetermined) {
  // Nothing lies within 1e-300 of a circle through three points but what rounding puts there.
  Points points;
  for (int i = 0; i < 17; ++i) {
    const double r = 3.3 + 0.1 * std::sin(7.0 * i);
    points.emplace_back(r * std::cos(0.37 * i) + 0.123, r * std::sin(0.37 * i) - 0.456);
  }
  for (const gxFitWeights weights :
       {gxFitWeights::eConsensus, gxFitWeights::eTukey, gxFitWeights::eHuber}) {
    gxRobustOptions options;
    options.weights = weights;
    options.inlierLimit = 1e-300;
    const gxRobustCircle circle = gfRobustCircle(points, options);
    EXPECT_EQ(circle.status, gxStatus::eUndetermined) << weights;
    EXPECT_TRUE(std::isnan(circle.radius) && std::isnan(circle.deviation)) << weights;
    EXPECT_TRUE(circle.inliers.empty()) << weights;
  }
}

TEST(RobustFit, OptionsAndQualityPrint) {
  gxRobustOptions options;
  EXPECT_EQ(printed(options), "tukey weights, inlier limit 0, seed 1");
  const std::pair<gxFitWeights, const char*> words[] = {{gxFitWeights::eLeastSquares, "least squares"},
                                                        {gxFitWeights::eHuber, "huber"},
                                                        {gxFitWeights::eConsensus, "consensus"},
                                                        {static_cast<gxFitWeights>(9), "unknown"}};
  for (const auto& [weights, word] : words) EXPECT_EQ(printed(weights), word);
  gxFitQuality quality;
  quality.deviation = 0.5;
  quality.residualRms = 0.25;
  quality.residualMax = 1.0;
  quality.inliers = {1, 3};
  EXPECT_EQ(printed(quality), "deviation 0.5, residual rms 0.25 max 1, 2 inliers, ok");
}

}  // namespace
