// Containment by the scan, held against the counted ray.
#include <support/large_outlines.h>

#include <cntr/internal/search/containment_scan.h>
#include <cntr/region.h>
#include <support/slow_truth_region.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using Answer = gx_ContainmentGrid::Answer;
using Points = std::vector<gxVector<2>>;

Points circle(int count, double radius, const gxVector<2>& center) {
  Points points;
  for (int i = 0; i < count; ++i) {
    points.push_back(center + gxVector<2>(radius, gxRadian(6.283185307179586 * i / count)));
  }
  return points;
}

gxRect boxOf(const Points& points) {
  return gxContour(points).encloseRect(gxXform<2>());
}

Answer scan(const Points& points, const gxVector<2>& point, bool wide = true) {
  double reach = 0.0;
  for (const gxVector<2>& p : points) reach = std::max(reach, p.distance(points.front()));
  return gx_scanContainment(points, boxOf(points), reach, point, wide);
}

TEST(ContainmentScan, TellsInsideFromOutsideOfEveryCount) {
  for (int count = 3; count <= 30; ++count) {
    SCOPED_TRACE(count);
    const Points points = circle(count, 100, {3, 4});
    EXPECT_EQ(scan(points, {3, 5}), Answer::eInside);
    EXPECT_EQ(scan(points, {13.5, -20.25}), Answer::eInside);
    EXPECT_EQ(scan(points, {-101, 4}), Answer::eOutside);
    const gxVector<2> middle = (points[0] + points[1]) * 0.5;
    EXPECT_EQ(scan(points, middle + (middle - gxVector<2>(3, 4)) * 1e-3), Answer::eOutside);
    EXPECT_EQ(scan(points, middle - (middle - gxVector<2>(3, 4)) * 1e-3), Answer::eInside);
  }
}

TEST(ContainmentScan, IsUnsureWithinTheTolerancesOfTheOutline) {
  const Points points = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  EXPECT_EQ(scan(points, {10, 10}), Answer::eUnsure);
  EXPECT_EQ(scan(points, {10 - 2e-6, 10 - 2e-6}), Answer::eUnsure) << "a ray may pass the vertex";
  EXPECT_EQ(scan(points, {10 - 3e-6, 10 - 3e-6}), Answer::eInside);
  EXPECT_EQ(scan(points, {5, 1e-6}), Answer::eUnsure);
  EXPECT_EQ(scan(points, {5, 1.2e-6}), Answer::eInside);
  EXPECT_EQ(scan(points, {1e-6, 5}), Answer::eUnsure) << "the closing edge";
  EXPECT_EQ(scan(points, {1.2e-6, 5}), Answer::eInside);
}

TEST(ContainmentScan, IsUnsureOfEveryPointOnTheLevelOfASpikesLine) {
  // The spike runs nearly along the x axis, and its line passes the point at less than rounding can tell.
  const Points points = {{-4, -1}, {4, -1}, {4, 0x1p-200}, {1, -0x1p-200}, {-4, 3}};
  EXPECT_EQ(scan(points, {0, 0}), Answer::eInside);
  const Points thin = {{-9, -1}, {9, -1}, {9, 0x1p-1060}, {8, -0x1p-1060}, {-9, 5}};
  EXPECT_EQ(scan(thin, {0.5, 0}), Answer::eUnsure);
}

TEST(ContainmentScan, IsUnsureWhereTheProofDoesNotReach) {
  EXPECT_EQ(scan(circle(50, 100, {1e7, 0}), {1e7, 0}), Answer::eUnsure) << "large coordinates";
  EXPECT_EQ(scan(circle(50, 100, {0, -6e5}), {0, -6e5}), Answer::eUnsure);
  EXPECT_EQ(scan(circle(200, 1e-5, {0, 0}), {0, 0}), Answer::eUnsure) << "vertices reach everywhere";
  // Beyond the circle around the first vertex, which is the right corner.
  const Points triangle = {{10, 0}, {0, 9}, {0, -9}};
  EXPECT_EQ(scan(triangle, {0.5, 8.9}), Answer::eOutside);
  EXPECT_EQ(gx_scanContainment(triangle, boxOf(triangle), 5.0, {1, 0}), Answer::eUnsure);
}

TEST(ContainmentScan, IsUnsureOfAnythingBesideAVertexThatIsNoNumber) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  for (std::size_t at = 1; at < 9; ++at) {
    SCOPED_TRACE(at);
    Points points = circle(9, 10, {0, 0});
    points[at] = {points[at].x(), kNaN};
    EXPECT_EQ(scan(points, {1, 1}), Answer::eUnsure);
    points[at] = {kNaN, 1.0};
    EXPECT_EQ(scan(points, {1, 1}), Answer::eUnsure);
  }
}

// Points anywhere near the outline, and some that are close to a vertex or an edge, or on the level of a
// vertex, on purpose.
gxVector<2> query(RandomShapes& random, const Points& points) {
  const auto i = static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 2));
  if (random.chance(0.2)) return {random.pointNear(points).x(), points[i].y()};
  if (random.chance(0.4)) return random.pointNear(points);
  const double f = random.chance(0.3) ? 0.0 : random.uniform(0.0, 1.0);
  const double size = std::pow(10.0, random.uniform(-8.0, 0.0));
  return points[i] * (1.0 - f) + points[i + 1] * f +
         gxVector<2>(random.uniform(-size, size), random.uniform(-size, size));
}

TEST(ContainmentScan, IsTheCountedRaysWhereItIsSure) {
  RandomShapes random("containment by a scan", 600);
  int sure = 0;
  int asked = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.chance(0.5) ? random.star(random.integer(3, 60), {0, 0}, 5.0, 40.0)
                                             : largeOutline(random).points;
    if (points.size() < 3) continue;
    for (int i = 0; i < 20; ++i) {
      const gxVector<2> p = query(random, points);
      const Answer answer = scan(points, p);
      EXPECT_EQ(scan(points, p, false), answer) << "in narrower registers";
      ++asked;
      if (answer == Answer::eUnsure) continue;
      ++sure;
      EXPECT_EQ(answer == Answer::eInside, slow::insideCount(points, p, false) % 2 != 0)
          << testing::PrintToString(p);
    }
  }
  EXPECT_GT(sure, asked / 3);
}

TEST(ContainmentScan, AnswersOfASmallRegionAreThoseOfTheCountedRay) {
  RandomShapes random("containment of few points", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.star(random.integer(3, 40), {100, 50}, 5.0, 40.0);
    const slow::Region truth{points, {}};
    const gxRegion region(points);
    std::vector<gxVector<2>> queries;
    for (int i = 0; i < 20; ++i) queries.push_back(query(random, points));
    const std::vector<bool> together = gxRegion(points).inside(queries, false);
    for (std::size_t i = 0; i < queries.size(); ++i) {
      const bool expected = slow::inside(truth, queries[i], false);
      EXPECT_EQ(region.inside(queries[i], false), expected) << testing::PrintToString(queries[i]);
      EXPECT_EQ(together[i], expected) << testing::PrintToString(queries[i]);
    }
  }
}

}  // namespace
