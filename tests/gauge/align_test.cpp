// Alignment: moved shapes are moved back; what shapes leave open is named.
#include <cntr/contour.h>
#include <gauge/align.h>
#include <gauge/arc.h>
#include <gauge/internal/segments.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/printed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <sstream>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
using Points = std::vector<gxVector<2>>;

const Points kL = pointsOf("0 0, 30 0, 30 10, 10 10, 10 40, 0 40");

Points aligned(const Points& points, const gxAlignment& alignment) {
  Points result;
  for (const auto& p : points) result.push_back(alignment.map(p));
  return result;
}

TEST(Align, AMovedShapeIsMovedBack) {
  RandomShapes random("align", 40);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const double angle = random.uniform(-std::numbers::pi, std::numbers::pi);
    const Placement moved{
        std::cos(angle), std::sin(angle), {random.uniform(-100, 100), random.uniform(-100, 100)}, 1.0};
    const Points part = moved.of(kL);
    const gxAlignment got = gfAlign(part, kL);
    EXPECT_EQ(got.status, gxStatus::eOk);
    EXPECT_TRUE(got.converged);
    EXPECT_FALSE(got.freeAngle || got.freeShift || got.freeScale);
    EXPECT_LE(got.rounds, 12);
    const gxRect box = gxContour(part).encloseRect(gxXform<2>::I);
    EXPECT_NEAR(got.centre.distance(box.origin() + box.size() * 0.5), 0.0, 1e-12);
    EXPECT_NEAR(std::remainder(got.angle.toDouble() + angle, 2 * std::numbers::pi), 0.0, 1e-12);
    EXPECT_EQ(got.scale, 1.0);
    EXPECT_NEAR(got.residual, 0.0, 1e-12);
    const Points back = aligned(part, got);
    for (std::size_t i = 0; i < kL.size(); ++i) {
      EXPECT_NEAR(back[i].distance(kL[i]), 0.0, 1e-10);
      EXPECT_NEAR((got.transform() * part[i]).distance(kL[i]), 0.0, 1e-9);
    }
  }
}

TEST(Align, SizesAreFoundWhereAsked) {
  for (const double scale : {0.2, 1.0, 3.0, 1e-4, 1e5}) {
    const Placement moved{0.8, 0.6, {5, -7}, scale};
    const gxAlignment got = gfAlign(moved.of(kL), kL, {.scales = true});
    EXPECT_EQ(got.status, gxStatus::eOk);
    EXPECT_NEAR(got.scale * scale, 1.0, 1e-10) << scale;
    EXPECT_NEAR(got.angle.toDouble(), -std::atan2(0.6, 0.8), 1e-10);
  }
}

TEST(Align, ChipsAndBurrsDoNotPullRobustFits) {
  // A deep chip and a high burr; everything else is the golden shape, moved.
  const Points worn =
      pointsOf("0 0, 12 0, 14 4, 16 0, 30 0, 30 10, 10 10, 10 25, 14 26, 10 27, 10 40, 0 40");
  const Placement moved{std::cos(0.1), std::sin(0.1), {3, 2}, 1.0};
  const gxAlignment robust = gfAlign(moved.of(worn), kL);
  EXPECT_NEAR(robust.angle.toDouble(), -0.1, 1e-10);
  const gxAlignment plain = gfAlign(moved.of(worn), kL, {.robust = false});
  EXPECT_NEAR(plain.angle.toDouble(), -0.1, 0.02);
  EXPECT_GT(std::abs(plain.angle.toDouble() + 0.1), 1e-6);
}

TEST(Align, InPlaceAShapeStaysNear) {
  // Half a turn out of place: the start in place finds the near way, the free one the true one.
  const Placement small{std::cos(0.02), std::sin(0.02), {0.3, -0.2}, 1.0};
  const gxAlignment got = gfAlign(small.of(kL), kL, {.startsInPlace = true});
  EXPECT_NEAR(got.angle.toDouble(), -0.02, 1e-11);
}

TEST(Align, OfSymmetricShapesTheLeastRotation) {
  const Points square = pointsOf("0 0, 10 0, 10 10, 0 10");
  for (const double angle : {0.1, -0.3, 0.6}) {
    const Placement moved{std::cos(angle), std::sin(angle), {1, 2}, 1.0};
    EXPECT_NEAR(gfAlign(moved.of(square), square).angle.toDouble(), -angle, 1e-10);
  }
}

TEST(Align, WhatAShapeLeavesOpenIsNamed) {
  const gxAlignment line =
      gfAlign({pointsOf("2 1, 3 1"), false}, {pointsOf("0 0, 10 0"), false}, {.startsInPlace = true});
  EXPECT_TRUE(line.freeShift);
  EXPECT_FALSE(line.freeAngle);
  EXPECT_NEAR(line.map({2, 1}).y(), 0.0, 1e-12);
  Points circle;
  for (int i = 0; i < 600000; ++i) {
    const double angle = 2 * std::numbers::pi * i / 600000;
    circle.emplace_back(10 * std::cos(angle), 10 * std::sin(angle));
  }
  const gxAlignment round = gfAlign(Placement{1, 0, {3, 4}, 1}.of(circle), circle, {.samples = 200});
  EXPECT_TRUE(round.freeAngle);
  EXPECT_NEAR(round.shift.distance({-3, -4}), 0.0, 1e-6);
}

TEST(Align, WhatCannotBeAlignedSaysSo) {
  EXPECT_EQ(gfAlign(Points{}, kL).status, gxStatus::eEmpty);
  EXPECT_EQ(gfAlign(kL, Points{}).status, gxStatus::eEmpty);
  EXPECT_EQ(gfAlign(Points{{kNaN, 0}}, kL).status, gxStatus::eNotFinite);
  EXPECT_EQ(gfAlign(kL, pointsOf("1 1, 1 1")).status, gxStatus::eUndetermined);
  EXPECT_EQ(gfAlign(pointsOf("1 1"), kL).status, gxStatus::eUndetermined);
  EXPECT_EQ(gfAlign(kL, kL, {.samples = 0}).status, gxStatus::eBadArgument);
  EXPECT_EQ(gfAlign(kL, kL, {.mostRounds = 0}).status, gxStatus::eBadArgument);
  EXPECT_TRUE(std::isnan(gfAlign(Points{}, kL).residual));
}

TEST(Align, FarAwayAndAtAnyScale) {
  const Points far = kTurnedFarAway.of(kL);
  const gxAlignment got = gfAlign(far, kL);
  for (std::size_t i = 0; i < kL.size(); ++i) EXPECT_NEAR(got.map(far[i]).distance(kL[i]), 0.0, 1e-8);
  for (const double scale : {0x1p-1000, 0x1p1000}) {
    const Placement placed{1, 0, {0, 0}, scale};
    const gxAlignment there = gfAlign(placed.of(kTurned345.of(kL)), placed.of(kL));
    EXPECT_NEAR(there.angle.toDouble(), -std::atan2(0.6, 0.8), 1e-11);
  }
  std::ostringstream out;
  out << got;
  EXPECT_NE(out.str().find("alignment: angle -0.64"), std::string::npos) << out.str();
}

// The root mean square of the distances of `count` samples, moved, from all edges of the golden outline.
double plainResidual(const Points& part, const Points& golden, const gxAlignment& motion, int count) {
  const gxArcLength arc(part, true);
  double sum = 0.0;
  for (int k = 0; k < count; ++k) {
    const gxVector<2> p = motion.map(arc.at(arc.length() * ((k + 0.5) / count)));
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < golden.size(); ++i) {
      least = std::min(least, gx_footOn(golden[i], golden[(i + 1) % golden.size()], p).distance);
    }
    sum += least * least;
  }
  return std::sqrt(sum / count);
}

TEST(Align, NoSmallMotionIsBetter) {
  RandomShapes random("align grid", 10);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points golden = random.star(30, {0, 0}, 5, 9);
    Points part;
    for (const auto& p : golden)
      part.push_back(p + gxVector<2>(random.uniform(-0.3, 0.3), random.uniform(-0.3, 0.3)));
    const bool scales = random.chance(0.5);
    const gxAlignment got = gfAlign(
        part, golden, {.scales = scales, .robust = false, .startsInPlace = true, .samples = 400});
    EXPECT_TRUE(got.converged);
    const double residual = plainResidual(part, golden, got, 400);
    EXPECT_NEAR(got.residual, residual, 1e-12);
    for (int k = 0; k < 60; ++k) {
      const double size = std::pow(10.0, random.uniform(-7, -4));
      gxAlignment other = got;
      other.angle = got.angle + gxRadian(random.uniform(-size, size) / 5);
      other.shift += gxVector<2>(random.uniform(-size, size), random.uniform(-size, size));
      if (scales) other.scale *= 1 + random.uniform(-size, size) / 5;
      EXPECT_GE(plainResidual(part, golden, other, 400), residual - 1e-13) << size;
    }
  }
}

TEST(Align, FromNearbyPlacesMinimaAreAboutAsGood) {
  // Where the nearest edges change there are several minima: they differ by a thousandth, not more.
  RandomShapes random("align near", 10);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points golden = random.star(30, {0, 0}, 5, 9);
    Points part;
    for (const auto& p : golden)
      part.push_back(p + gxVector<2>(random.uniform(-0.3, 0.3), random.uniform(-0.3, 0.3)));
    const gxAlignOptions options{.robust = false, .startsInPlace = true, .samples = 400};
    const gxAlignment got = gfAlign(part, golden, options);
    for (int k = 0; k < 5; ++k) {
      gxAlignment other = got;
      other.angle = got.angle + gxRadian(random.uniform(-0.01, 0.01));
      other.shift += gxVector<2>(random.uniform(-0.05, 0.05), random.uniform(-0.05, 0.05));
      const gxAlignment there = gfAlign(aligned(part, other), golden, options);
      EXPECT_NEAR(there.residual, got.residual, 1e-3 * got.residual);
    }
  }
}

TEST(Align, OptionsPrint) {
  gxAlignOptions options;
  EXPECT_EQ(printed(options), "rigid, robust, from anywhere, 100 rounds, 1000 samples");
  options.scales = options.startsInPlace = true;
  options.robust = false;
  EXPECT_EQ(printed(options), "scales, all alike, from its place, 100 rounds, 1000 samples");
}

}  // namespace
