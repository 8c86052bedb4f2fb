// Simplification: what stays, and that it depends on nothing but the shape.
#include <gauge/clean.h>
#include <gauge/hausdorff.h>
#include <gauge/simplify.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/plain_distance.h>
#include <support/printed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
using Points = std::vector<gxVector<2>>;

Points kept(const Points& points, bool closed, double tolerance) {
  return gfSimplify(points, closed, tolerance).points;
}

std::set<std::pair<double, double>> placesOf(const Points& points) {
  std::set<std::pair<double, double>> places;
  for (const auto& p : points) places.emplace(p.x(), p.y());
  return places;
}

TEST(Simplify, WhatIsWithinTheToleranceGoes) {
  const Points line = pointsOf("0 0, 1 0.5, 2 -0.5, 3 0");
  EXPECT_EQ(kept(line, false, 0.6), pointsOf("0 0, 3 0"));
  EXPECT_EQ(gfSimplify(line, false, 0.6).kept, (std::vector<std::size_t>{0, 3}));
  EXPECT_EQ(kept(line, false, 0.1), line);
}

TEST(Simplify, ThePointAtTheToleranceItselfGoes) {
  const Points line = pointsOf("0 0, 2 1, 4 0");
  EXPECT_EQ(kept(line, false, 1.0), pointsOf("0 0, 4 0"));
  EXPECT_EQ(kept(line, false, std::nextafter(1.0, 0.0)), line);
}

TEST(Simplify, ASpikeBeyondTheEndIsMeasuredFromTheSegment) {
  // The tip at (9, 0) lies on the line through the ends, and 5 beyond them.
  const Points spike = pointsOf("0 0, 9 0, 4 0");
  EXPECT_EQ(kept(spike, false, 4.0), spike);
  EXPECT_EQ(kept(spike, false, 5.0), pointsOf("0 0, 4 0"));
}

TEST(Simplify, WithToleranceNothingOnlyPointsExactlyBetweenGo) {
  EXPECT_EQ(kept(pointsOf("0 0, 1 0, 2 0, 2 1, 2 2, 0 2"), true, 0.0), pointsOf("0 0, 2 0, 2 2, 0 2"));
  // One third is not on the segment from (0, 0) to (3, 1) exactly, and (1.5, 0.5) not on the rest.
  const Points third = {{0, 0}, {1, 1.0 / 3}, {1.5, 0.5}, {3, 1}};
  EXPECT_EQ(kept(third, false, 0.0), third);
  const Points halfway = pointsOf("0 0, 1.5 0.5, 3 1");
  EXPECT_EQ(kept(halfway, false, 0.0), pointsOf("0 0, 3 1"));
  EXPECT_EQ(kept(kFarAway.of(halfway), false, 0.0).size(), 2u);
}

TEST(Simplify, AnOutlineWithAnAreaKeepsThreePoints) {
  const Points square = pointsOf("0 0, 4 0, 4 4, 0 4");
  EXPECT_EQ(kept(square, true, 100.0), pointsOf("0 0, 4 4, 0 4"));
  EXPECT_EQ(kept(square, false, 100.0), pointsOf("0 0, 0 4"));
  const Points triangle = pointsOf("0 0, 4 0, 1 1");
  EXPECT_EQ(kept(triangle, true, 100.0), triangle);
}

TEST(Simplify, FlatShapes) {
  const gxSimplified line = gfSimplify(pointsOf("0 0, 2 0, 1 0, 3 0"), true, 0.1);
  EXPECT_EQ(line.status, gxStatus::eFlat);
  EXPECT_EQ(line.points, pointsOf("0 0, 3 0"));
  const gxSimplified equal = gfSimplify(pointsOf("1 1, 1 1, 1 1"), true, 0.1);
  EXPECT_EQ(equal.status, gxStatus::eFlat);
  EXPECT_EQ(equal.points, pointsOf("1 1"));
  const gxSimplified open = gfSimplify(pointsOf("0 0, 9 0, 3 0"), false, 0.1);
  EXPECT_EQ(open.status, gxStatus::eFlat);
  EXPECT_EQ(open.points, pointsOf("0 0, 9 0, 3 0"));
  EXPECT_EQ(kept(pointsOf("1 1"), false, 0), pointsOf("1 1"));
  EXPECT_EQ(kept(pointsOf("1 1"), true, 0), pointsOf("1 1"));
}

TEST(Simplify, WhatCannotBeSimplifiedSaysSo) {
  for (const bool closed : {false, true}) {
    EXPECT_EQ(gfSimplify(Points{}, closed, 1).status, gxStatus::eEmpty);
    EXPECT_EQ(gfSimplify(pointsOf("0 0, 1 1"), closed, -1).status, gxStatus::eBadArgument);
    EXPECT_EQ(gfSimplify(pointsOf("0 0, 1 1"), closed, kNaN).status, gxStatus::eBadArgument);
    EXPECT_EQ(gfSimplify(Points{{0, 0}, {kNaN, 1}}, closed, 1).status, gxStatus::eNotFinite);
    EXPECT_EQ(gfSimplify(Points{{0, 0}, {1, -kInfinity}}, closed, 1).status, gxStatus::eNotFinite);
    EXPECT_TRUE(gfSimplify(Points{{0, 0}, {kNaN, 1}}, closed, 1).kept.empty());
    EXPECT_EQ(gfSimplify(pointsOf("0 0, 4 0, 4 4"), closed, kInfinity).status, gxStatus::eOk);
  }
}

TEST(Simplify, ScalesFromTheSmallestToTheLargestAreOne) {
  RandomShapes random("simplify scales", 20);
  while (random.next()) {
    const Points star = random.star(60, {0, 0}, 3, 9);
    const auto here = gfSimplify(star, true, 0.5).kept;
    for (const int exponent : {-1000, -300, 300, 1000}) {
      const Placement placed{1, 0, {0, 0}, std::ldexp(1.0, exponent)};
      EXPECT_EQ(gfSimplify(placed.of(star), true, std::ldexp(0.5, exponent)).kept, here);
    }
  }
}

TEST(Simplify, TheKeptLineIsWithinTheToleranceOfEverythingAndRandomShapesKeepTheirDirectionAndStart) {
  RandomShapes random("simplify", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.finiteOutline();
    if (points.empty()) continue;
    const bool closed = random.chance(0.7);
    const double size = gfHausdorff(points, Points{points[0]}).hausdorff;
    const double tolerance = random.chance(0.2) ? 0.0 : size * std::exp(random.uniform(-8, 0));
    const gxSimplified got = gfSimplify(points, closed, tolerance);
    const bool isFlatOutline = closed && got.status == gxStatus::eFlat;
    const double apart = gfHausdorff({points, closed}, {got.points, closed}).hausdorff;
    double largest = 0.0;
    for (const auto& p : points) largest = std::max({largest, std::abs(p.x()), std::abs(p.y())});
    EXPECT_TRUE(isFlatOutline || apart <= tolerance + 4e-15 * largest) << apart;
    EXPECT_TRUE(std::is_sorted(got.kept.begin(), got.kept.end()));
    if (closed) {
      const auto start =
          static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1));
      EXPECT_EQ(placesOf(kept(rotatedStart(points, start), true, tolerance)), placesOf(got.points));
      EXPECT_EQ(placesOf(kept(gfReversed(points, true), true, tolerance)), placesOf(got.points));
    } else {
      EXPECT_EQ(placesOf(kept(gfReversed(points, false), false, tolerance)), placesOf(got.points));
    }
  }
}

TEST(Simplify, OfEqualDistancesTheLowerPointSplits) {
  // Both inner points are 1 away from the chord; either alone leaves the other within 1.
  const Points line = pointsOf("0 0, 1 1, 3 1, 4 0");
  EXPECT_EQ(kept(line, false, 0.9), pointsOf("0 0, 1 1, 4 0"));
  EXPECT_EQ(kept(gfReversed(line, false), false, 0.9), pointsOf("4 0, 1 1, 0 0"));
  EXPECT_EQ(kept(pointsOf("0 0, 1 2, 3 2, 4 0"), false, 1.9),
            gfReversed(kept(pointsOf("4 0, 3 2, 1 2, 0 0"), false, 1.9), false));
}

// Whether any two edges that are no neighbours meet.
bool crosses(const Points& points) {
  const auto segments = plain::segmentsOf(points);
  const std::size_t n = segments.size();
  const auto side = [](const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c) {
    const double cross = gf_Cross(b - a, c - a);
    return cross > 0 ? 1 : cross < 0 ? -1 : 0;
  };
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i + 2; j < n; ++j) {
      if (i == 0 && j == n - 1) continue;
      const auto& [a, b] = segments[i];
      const auto& [c, d] = segments[j];
      if (side(a, b, c) * side(a, b, d) < 0 && side(c, d, a) * side(c, d, b) < 0) return true;
    }
  }
  return false;
}

TEST(Simplify, CrossingsAreKeptOutWhereAsked) {
  RandomShapes random("simplify crossings", 300);
  int crossed = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineKind kinds[] = {OutlineKind::eStar, OutlineKind::eSpiral, OutlineKind::eComb};
    const OutlineKind kind = kinds[random.integer(0, 2)];
    const Points points = random.outline(kind, random.integer(20, 120));
    if (crosses(points)) continue;
    const double tolerance = random.uniform(0.05, 3.0);
    crossed += crosses(kept(points, true, tolerance)) ? 1 : 0;
    const gxSimplified got = gfSimplify(points, true, tolerance, {.keepsCrossingsOut = true});
    EXPECT_FALSE(crosses(got.points));
    EXPECT_LE(gfHausdorff(points, got.points).hausdorff, tolerance + 1e-13);
  }
  EXPECT_GT(crossed, 5);  // else the option would have had nothing to do
}

TEST(Simplify, AnOutlineThatCrossesItselfStillEnds) {
  const Points bowTie = pointsOf("0 0, 4 4, 4 0, 0 4");
  EXPECT_EQ(gfSimplify(bowTie, true, 0.1, {.keepsCrossingsOut = true}).points, bowTie);
}

TEST(Simplify, ALongSpiralIsNoMatterOfRecursion) {
  Points spiral;
  for (int i = 0; i < 20000; ++i) {
    const double angle = 0.05 * i;
    spiral.emplace_back(angle * std::cos(angle), angle * std::sin(angle));
  }
  const gxSimplified got = gfSimplify(spiral, false, 0.01);
  EXPECT_GT(got.points.size(), 1000u);
  EXPECT_LT(got.points.size(), 20000u);
}

TEST(Simplify, OfAnOutlineTheTwoFarthestPointsStay) {
  RandomShapes random("simplify farthest", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const std::vector<gxVector<2>> points = random.star(random.integer(5, 30), {0, 0}, 2, 9);
    std::size_t first = 0;
    std::size_t second = 1;
    for (std::size_t i = 0; i < points.size(); ++i) {
      for (std::size_t j = i + 1; j < points.size(); ++j) {
        if (points[i].distance(points[j]) > points[first].distance(points[second])) {
          first = i;
          second = j;
        }
      }
    }
    const std::vector<std::size_t> kept = gfSimplify(points, true, 100.0).kept;
    EXPECT_EQ(kept.size(), 3U);
    EXPECT_EQ(std::count(kept.begin(), kept.end(), first), 1);
    EXPECT_EQ(std::count(kept.begin(), kept.end(), second), 1);
  }
}

TEST(Simplify, ResultsAndOptionsPrint) {
  EXPECT_EQ(printed(gfSimplify(pointsOf("0 0, 1 0, 2 0, 2 2"), false, 0.1)), "3 points kept");
  EXPECT_EQ(printed(gfSimplify(Points(), true, 0.1)), "0 points kept empty");
  gxSimplifyOptions options;
  EXPECT_EQ(printed(options), "lets chords cross");
  options.keepsCrossingsOut = true;
  EXPECT_EQ(printed(options), "keeps crossings out");
}

}  // namespace
