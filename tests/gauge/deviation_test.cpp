// The signed deviation: squares with a chip and a burr by hand, random shapes beside dense sampling.
#include <gauge/deviation.h>
#include <gauge/internal/envelope.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/plain_distance.h>
#include <support/printed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
using Points = std::vector<gxVector<2>>;

const Points kSquare = pointsOf("0 0, 10 0, 10 10, 0 10");
// A chip of depth 1 in the lower side from x 2 to 4, a burr of height 2 on the upper side from 6 to 5.
const Points kWorn = pointsOf("0 0, 2 0, 3 1, 4 0, 10 0, 10 10, 6 10, 5.5 12, 5 10, 0 10");

TEST(Deviation, ABurrIsPositiveAChipNegative) {
  for (const Placement& placed : {kInPlace, kTurned345, kFarAway, kTurnedFarAway}) {
    const gxDeviation got = gfDeviation(placed.of(kWorn), placed.of(kSquare));
    EXPECT_EQ(got.status, gxStatus::eOk);
    EXPECT_NEAR(got.deviationMax, 2.0, 1e-9);
    EXPECT_NEAR(got.deviationMin, -1.0, 1e-9);
    EXPECT_NEAR(got.maxPlace.point.distance(placed.of({5.5, 12})), 0.0, 1e-9);
    EXPECT_NEAR(got.minPlace.point.distance(placed.of({3, 1})), 0.0, 1e-9);
    EXPECT_TRUE(got.within());
    EXPECT_EQ(got.outOfTolerance, 0.0);
    ASSERT_EQ(got.samples.size(), kWorn.size());
    EXPECT_NEAR(got.samples[2].deviation, -1.0, 1e-9);
    EXPECT_NEAR(got.samples[7].deviation, 2.0, 1e-9);
  }
}

TEST(Deviation, TheMeanSquareIsByLength) {
  const gxDeviation got = gfDeviation(kWorn, kSquare);
  // On each flank the distance grows evenly: a third of the square of the height, by length.
  const double chip = 2 * std::sqrt(2.0);
  const double burr = 2 * std::sqrt(4.25);
  const double total = 40 - 2 - 1 + chip + burr;
  EXPECT_NEAR(got.deviationRms, std::sqrt((chip * 1.0 / 3 + burr * 4.0 / 3) / total), 1e-14);
}

TEST(Deviation, StretchesOutOfToleranceEndWhereTheLimitIsCrossed) {
  const gxDeviation got = gfDeviation(kWorn, kSquare, {.lower = -0.5, .upper = 0.5});
  ASSERT_EQ(got.stretches.size(), 2u);
  const gxDeviationStretch& chip = got.stretches[0];
  EXPECT_NEAR(chip.from.point.distance({2.5, 0.5}), 0.0, 1e-14);
  EXPECT_NEAR(chip.to.point.distance({3.5, 0.5}), 0.0, 1e-14);
  EXPECT_NEAR(chip.worst.point.distance({3, 1}), 0.0, 1e-14);
  EXPECT_NEAR(chip.deviation, -1.0, 1e-14);
  EXPECT_NEAR(chip.length, std::sqrt(2.0), 1e-14);
  const gxDeviationStretch& burr = got.stretches[1];
  EXPECT_NEAR(burr.from.point.distance({5.875, 10.5}), 0.0, 1e-14);
  EXPECT_NEAR(burr.to.point.distance({5.125, 10.5}), 0.0, 1e-14);
  EXPECT_NEAR(burr.deviation, 2.0, 1e-14);
  const double total = 37 + 2 * std::sqrt(2.0) + 2 * std::sqrt(4.25);
  EXPECT_NEAR(got.outOfTolerance, (chip.length + burr.length) / total, 1e-14);
  EXPECT_FALSE(got.within());
  EXPECT_EQ(gfDeviation(kWorn, kSquare, {.lower = -0.5}).stretches.size(), 1u);
  EXPECT_EQ(gfDeviation(kWorn, kSquare, {.upper = 0.5}).stretches.size(), 1u);
  EXPECT_TRUE(gfDeviation(kWorn, kSquare, {.lower = -1.0, .upper = 2.0}).within());
}

TEST(Deviation, AStretchAcrossTheStartIsOne) {
  // Begins in the middle of the burr: closing edge from (5, 10) … is cut at its tip.
  const Points worn = pointsOf("5.5 12, 5 10, 0 10, 0 0, 10 0, 10 10, 6 10");
  const gxDeviation got = gfDeviation(worn, kSquare, {.lower = -0.5, .upper = 0.5});
  ASSERT_EQ(got.stretches.size(), 1u);
  EXPECT_NEAR(got.stretches[0].from.point.distance({5.875, 10.5}), 0.0, 1e-13);
  EXPECT_NEAR(got.stretches[0].to.point.distance({5.125, 10.5}), 0.0, 1e-13);
  const Points other = rotatedStart(worn, 1);
  EXPECT_EQ(gfDeviation(other, kSquare, {.lower = -0.5, .upper = 0.5}).stretches.size(), 1u);
  // The walk of an outline begins at its last vertex: here that is the tip.
  const Points tipLast = rotatedStart(worn, 1);
  const gxDeviation across = gfDeviation(tipLast, kSquare, {.lower = -0.5, .upper = 0.5});
  ASSERT_EQ(across.stretches.size(), 1u);
  EXPECT_NEAR(across.stretches[0].length, 2 * std::sqrt(4.25) * 0.75, 1e-13);
  EXPECT_NEAR(across.stretches[0].from.point.distance({5.875, 10.5}), 0.0, 1e-13);
  EXPECT_NEAR(across.stretches[0].to.point.distance({5.125, 10.5}), 0.0, 1e-13);
  EXPECT_NEAR(across.stretches[0].deviation, 2.0, 1e-13);
}

TEST(Deviation, AShapeOutOfToleranceThroughout) {
  const Points larger = pointsOf("-1 -1, 11 -1, 11 11, -1 11");
  const gxDeviation got = gfDeviation(larger, kSquare, {.lower = -0.5, .upper = 0.5});
  ASSERT_EQ(got.stretches.size(), 1u);
  EXPECT_NEAR(got.outOfTolerance, 1.0, 1e-15);
  EXPECT_NEAR(got.deviationMin, 1.0, 1e-15);
  EXPECT_NEAR(got.deviationMax, std::sqrt(2.0), 1e-15);
  EXPECT_NEAR(got.stretches[0].length, 48.0, 1e-12);
  EXPECT_NEAR(gfDeviation(kSquare, larger).deviationMax, -1.0, 1e-15);
}

TEST(Deviation, HolesTurnInsideOut) {
  gxRegion golden(kSquare);
  golden.holes({gxRegion::HoleHandle(new gxRegion(pointsOf("4 4, 6 4, 6 6, 4 6")))});
  gxRegion part(kSquare);
  part.holes({gxRegion::HoleHandle(new gxRegion(pointsOf("4.5 4, 6.5 4, 6.5 6, 4.5 6")))});
  const gxDeviation got = gfDeviation(part, golden);
  // The hole's left side lies in the golden hole, outside of the material; its right side in it.
  EXPECT_NEAR(got.deviationMax, 0.5, 1e-15);
  EXPECT_NEAR(got.deviationMin, -0.5, 1e-15);
  EXPECT_EQ(got.maxPlace.ring, 0);
  EXPECT_EQ(got.minPlace.ring, 0);
}

TEST(Deviation, OfAnOpenGoldenLineTheRightIsPositive) {
  const Points line = pointsOf("0 0, 10 0, 10 10");
  const auto at = [&](const char* point) {
    return gfDeviation({pointsOf(point), false}, {line, false}).deviationMax;
  };
  EXPECT_EQ(at("5 -2"), 2.0);
  EXPECT_EQ(at("5 2"), -2.0);
  EXPECT_EQ(at("13 -4"), 5.0);
  EXPECT_EQ(at("8 3"), -2.0);
  EXPECT_EQ(at("-3 -4"), 5.0);
  EXPECT_EQ(at("-3 4"), -5.0);
  EXPECT_EQ(gfDeviation({pointsOf("5 -1, 5 1"), false}, {line, false}).deviationMin, -1.0);
  const Points rightTurn = pointsOf("0 0, 10 0, 10 -10");
  EXPECT_EQ(gfDeviation({pointsOf("13 4"), false}, {rightTurn, false}).deviationMax, -5.0);
}

TEST(Deviation, SamplesAtASpacing) {
  const gxDeviation got = gfDeviation(kWorn, kSquare, {.spacing = 0.5});
  const double total = 37 + 2 * std::sqrt(2.0) + 2 * std::sqrt(4.25);
  EXPECT_EQ(got.samples.size(), static_cast<std::size_t>(std::ceil(total / 0.5)));
  EXPECT_EQ(got.samples[0].place.point, gxVector<2>(0, 0));
  for (const gxDeviationSample& sample : got.samples) {
    const double d = plain::distance(plain::segmentsOf(kSquare), sample.place.point);
    EXPECT_NEAR(std::abs(sample.deviation), d, 1e-14);
  }
  EXPECT_LE(got.percentile(0.0), got.percentile(0.5));
  EXPECT_EQ(got.percentile(1.0),
            std::max_element(got.samples.begin(), got.samples.end(), [](const auto& a, const auto& b) {
              return a.deviation < b.deviation;
            })->deviation);
}

TEST(Deviation, PercentilesLieBetweenTheSortedValues) {
  const std::vector<double> values{4, 1, 3, 2};
  EXPECT_EQ(gfPercentile(values, 0.0), 1.0);
  EXPECT_EQ(gfPercentile(values, 0.5), 2.5);
  EXPECT_EQ(gfPercentile(values, 0.25), 1.75);
  EXPECT_EQ(gfPercentile(values, 1.0), 4.0);
  EXPECT_EQ(gfPercentile(std::vector<double>{7}, 0.3), 7.0);
  EXPECT_TRUE(std::isnan(gfPercentile(std::vector<double>{}, 0.5)));
  EXPECT_TRUE(std::isnan(gfPercentile(values, -0.1)));
  EXPECT_TRUE(std::isnan(gfPercentile(values, 1.1)));
  EXPECT_TRUE(std::isnan(gfPercentile(values, kNaN)));
  EXPECT_TRUE(std::isnan(gfPercentile(std::vector<double>{1, kNaN}, 0.5)));
}

TEST(Deviation, WhatCannotBeMeasuredSaysSo) {
  EXPECT_EQ(gfDeviation(Points{}, kSquare).status, gxStatus::eEmpty);
  EXPECT_EQ(gfDeviation(kSquare, Points{}).status, gxStatus::eEmpty);
  for (const double bad : {kNaN, kInfinity}) {
    EXPECT_EQ(gfDeviation(Points{{0, bad}}, kSquare).status, gxStatus::eNotFinite);
    EXPECT_EQ(gfDeviation(kSquare, Points{{0, bad}}).status, gxStatus::eNotFinite);
  }
  EXPECT_EQ(gfDeviation(kSquare, kSquare, {.lower = 1, .upper = 0}).status, gxStatus::eBadArgument);
  EXPECT_EQ(gfDeviation(kSquare, kSquare, {.lower = kNaN}).status, gxStatus::eBadArgument);
  EXPECT_EQ(gfDeviation(kSquare, kSquare, {.spacing = -1}).status, gxStatus::eBadArgument);
  EXPECT_EQ(gfDeviation(kSquare, kSquare, {.spacing = kNaN}).status, gxStatus::eBadArgument);
  EXPECT_EQ(gfDeviation(kSquare, kSquare, {.spacing = 1e-300}).status, gxStatus::eBadArgument);
  const gxDeviation empty = gfDeviation(Points{}, kSquare);
  EXPECT_TRUE(std::isnan(empty.deviationMax) && std::isnan(empty.deviationRms));
  EXPECT_FALSE(empty.within());
}

TEST(Deviation, PointsAndItself) {
  const gxDeviation point = gfDeviation(Points{{5, 12}}, kSquare, {.upper = 1});
  EXPECT_EQ(point.deviationMax, 2.0);
  EXPECT_EQ(point.deviationMin, 2.0);
  EXPECT_EQ(point.deviationRms, 2.0);
  EXPECT_EQ(point.outOfTolerance, 1.0);
  EXPECT_EQ(point.stretches.size(), 1u);
  const gxDeviation same = gfDeviation(kWorn, kWorn, {.lower = 0, .upper = 0});
  EXPECT_EQ(same.deviationMax, 0.0);
  EXPECT_EQ(same.deviationMin, 0.0);
  EXPECT_EQ(same.deviationRms, 0.0);
  EXPECT_TRUE(same.within());
}

TEST(Deviation, RandomShapesAsByDenseSampling) {
  RandomShapes random("deviation", 120);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points golden = random.star(random.integer(3, 40), {0, 0}, 3, 9);
    const Points shape = random.chance(0.3) ? random.outline(OutlineKind::eWalk, 30)
                                            : random.star(random.integer(3, 40), {0.5, 0}, 3, 9);
    const gxDeviationOptions options{.lower = random.uniform(-1, 0), .upper = random.uniform(0, 1)};
    const gxDeviation got = gfDeviation(shape, golden, options);
    const auto segments = plain::segmentsOf(golden);
    double most = -kInfinity;
    double least = kInfinity;
    double squares = 0.0;
    double out = 0.0;
    double total = 0.0;
    constexpr int kSteps = 400;
    for (const auto& edge : plain::segmentsOf(shape)) {
      const double step = edge.a.distance(edge.b) / kSteps;
      for (int k = 0; k < kSteps; ++k) {
        const double t = (k + 0.5) / kSteps;
        const gxVector<2> p = edge.a * (1 - t) + edge.b * t;
        const double d = plain::distance(segments, p) * (plain::holds(golden, p) ? -1 : 1);
        most = std::max(most, d);
        least = std::min(least, d);
        squares += d * d * step;
        out += d > options.upper || d < options.lower ? step : 0.0;
        total += step;
      }
    }
    EXPECT_GE(got.deviationMax, most - 1e-12);
    EXPECT_LE(got.deviationMin, least + 1e-12);
    EXPECT_NEAR(got.deviationMax, most, 0.05);
    EXPECT_NEAR(got.deviationMin, least, 0.05);
    EXPECT_NEAR(got.deviationRms, std::sqrt(squares / total), 1e-4);
    EXPECT_NEAR(got.outOfTolerance, out / total, 0.01);
    double length = 0.0;
    for (const auto& stretch : got.stretches) {
      length += stretch.length;
      const bool above = stretch.deviation > options.upper;
      EXPECT_TRUE(above || stretch.deviation < options.lower);
      for (const gxPlace& place : {stretch.from, stretch.to}) {
        const double d = plain::distance(segments, place.point);
        const double limit = std::abs(above ? options.upper : options.lower);
        EXPECT_TRUE(std::abs(d - limit) < 1e-12 || got.outOfTolerance > 1.0 - 1e-12);
      }
    }
    EXPECT_NEAR(length / total, got.outOfTolerance, 1e-12);
  }
}

TEST(Deviation, TheMagnitudeIsTheHausdorffDistanceAtItsMost) {
  RandomShapes random("deviation and hausdorff", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points golden = random.star(random.integer(3, 60), {0, 0}, 3, 9);
    const Points shape = random.star(random.integer(3, 60), {0, 1}, 3, 9);
    const gxDeviation got = gfDeviation(shape, golden);
    const double most = std::max(got.deviationMax, -got.deviationMin);
    EXPECT_NEAR(most, plain::directedHausdorff(shape, golden, 200), 1e-9);
    const gxDeviation back = gfDeviation(reversed(shape), rotatedStart(golden, 1));
    EXPECT_NEAR(back.deviationMax, got.deviationMax, 1e-13);
    EXPECT_NEAR(back.deviationRms, got.deviationRms, 1e-13);
  }
}

TEST(Deviation, ScalesFromTheSmallestToTheLargestAreOne) {
  for (const int exponent : {-1000, -500, 500, 1000}) {
    const Placement placed{1, 0, {0, 0}, std::ldexp(1.0, exponent)};
    const gxDeviation got = gfDeviation(placed.of(kWorn), placed.of(kSquare));
    EXPECT_EQ(got.deviationMax, std::ldexp(2.0, exponent));
    EXPECT_EQ(got.deviationMin, std::ldexp(-1.0, exponent));
  }
}

TEST(Deviation, ResultsPrint) {
  std::ostringstream out;
  const gxDeviation got = gfDeviation(kWorn, kSquare, {.upper = 1});
  out << got << "; " << got.stretches[0];
  EXPECT_NE(out.str().find("deviation from -1 to 2"), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("worst 2 at ring -1"), std::string::npos) << out.str();
}

TEST(Deviation, SamplesAndOptionsPrint) {
  const gxDeviationSample sample{{-1, 2, 0.5, {3, 4}}, -0.25};
  EXPECT_EQ(printed(sample), "deviation -0.25 at ring -1 edge 2 t 0.5 at (3, 4)");
  gxDeviationOptions options;
  EXPECT_EQ(printed(options), "tolerance from -inf to inf, spacing 0");
  options.lower = -1.0;
  options.upper = 2.0;
  options.spacing = 0.5;
  EXPECT_EQ(printed(options), "tolerance from -1 to 2, spacing 0.5");
}

}  // namespace
