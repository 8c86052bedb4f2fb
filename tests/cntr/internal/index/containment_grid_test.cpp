// Containment by the grid, held against the counted ray.
#include <support/large_outlines.h>

#include <cntr/internal/index/containment_grid.h>
#include <cntr/internal/index/edge_index.h>
#include <cntr/region.h>
#include <support/slow_truth_region.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Answer = gx_ContainmentGrid::Answer;

std::vector<gxVector<2>> circle(int count, double radius, const gxVector<2>& center) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < count; ++i) {
    points.push_back(center + gxVector<2>(radius, gxRadian(6.283185307179586 * i / count)));
  }
  return points;
}

gx_ContainmentGrid gridOf(const std::vector<gxVector<2>>& points) {
  double reach = 0.0;
  for (const gxVector<2>& p : points) reach = std::max(reach, p.distance(points.front()));
  return gx_ContainmentGrid(points, gx_EdgeIndex({points, true}), reach);
}

TEST(ContainmentGrid, TellsInsideFromOutside) {
  const auto points = circle(200, 100, {0, 0});
  const gx_ContainmentGrid grid = gridOf(points);
  EXPECT_EQ(grid.locate(points, {0, 0}), Answer::eInside);
  EXPECT_EQ(grid.locate(points, {60, -60}), Answer::eInside);
  EXPECT_EQ(grid.locate(points, {80, 80}), Answer::eOutside);
}

TEST(ContainmentGrid, IsUnsureOnTheOutline) {
  const auto points = circle(200, 100, {0, 0});
  const gx_ContainmentGrid grid = gridOf(points);
  EXPECT_EQ(grid.locate(points, points[17]), Answer::eUnsure);
  EXPECT_EQ(grid.locate(points, (points[17] + points[18]) * 0.5), Answer::eUnsure);
}

TEST(ContainmentGrid, IsUnsureOfEverythingWhereCoordinatesAreTooLarge) {
  const auto points = circle(200, 100, {1e7, 0});
  EXPECT_EQ(gridOf(points).locate(points, {1e7, 0}), Answer::eUnsure);
}

TEST(ContainmentGrid, IsUnsureOfEverythingInAnOutlineSmallerThanItsVerticesReach) {
  const auto points = circle(1000, 1e-5, {0, 0});
  EXPECT_EQ(gridOf(points).locate(points, {0, 0}), Answer::eUnsure);
}

TEST(ContainmentGrid, AnOutlineOfLongEdgesGetsACoarserGrid) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < 400; ++i) points.emplace_back(i % 2 == 0 ? 0.0 : 1000.0, i * 2.5);
  const gx_ContainmentGrid grid = gridOf(points);
  int sure = 0;
  for (int i = 0; i < 100; ++i) {
    const gxVector<2> p(5.0 + 9.7 * i, 3.0 + 9.9 * i);
    const Answer answer = grid.locate(points, p);
    if (answer == Answer::eUnsure) continue;
    ++sure;
    EXPECT_EQ(answer == Answer::eInside, slow::insideCount(points, p, false) % 2 != 0);
  }
  EXPECT_GT(sure, 50);
}

// Points anywhere near the outline, and some that are close to a vertex or an edge on purpose.
gxVector<2> query(RandomShapes& random, const std::vector<gxVector<2>>& points) {
  if (random.chance(0.4)) return random.pointNear(points);
  const auto i = static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 2));
  const double f = random.chance(0.3) ? 0.0 : random.uniform(0.0, 1.0);
  const double size = std::pow(10.0, random.uniform(-8.0, 0.0));
  return points[i] * (1.0 - f) + points[i + 1] * f +
         gxVector<2>(random.uniform(-size, size), random.uniform(-size, size));
}

TEST(ContainmentGrid, AnswersOfARegionAreThoseOfTheCountedRay) {
  RandomShapes random("containment by the grid", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = largeOutline(random);
    const gxRegion region(outline.points);
    const slow::Region truth{outline.points, {}};
    std::vector<gxVector<2>> queries;
    for (int i = 0; i < 20; ++i) queries.push_back(query(random, outline.points));
    // One by one, by the ray until the grid pays; all at once, by the grid from the first one on.
    const std::vector<bool> together = gxRegion(outline.points).inside(queries, false);
    for (std::size_t i = 0; i < queries.size(); ++i) {
      const gxVector<2>& p = queries[i];
      const bool expected = slow::inside(truth, p, false);
      EXPECT_EQ(region.inside(p, false), expected) << testing::PrintToString(p);
      EXPECT_EQ(together[i], expected) << testing::PrintToString(p);
    }
  }
}

TEST(ContainmentGrid, AnswersAlsoWhereAShearStandsUnderTheIdentitysKey) {
  const auto points = circle(200, 100, {0, 0});
  const gxRegion region(points);
  const gxRect flat = region.encloseRect(gxXform<2>(gxMatrix<2>(1, 0, -5, 1), gxVector<2>(0, -900)));
  ASSERT_LT(flat.corner().y(), -300.0);
  const std::vector<gxVector<2>> middle(20);  // so many that they are not left to the ray
  EXPECT_EQ(region.inside(middle, false), std::vector<bool>(20, true));
  EXPECT_FALSE(region.inside({0, 150}, false));
}

// Edges whose rise is so small that their slope is not finite, at every height among others.
std::vector<gxVector<2>> withSlopes(RandomShapes& random) {
  std::vector<gxVector<2>> points = random.star(random.integer(8, 200), {0, 0}, 0.4, 1.0);
  for (int k = random.integer(1, 4); k > 0; --k) {
    const auto at = static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1));
    const double rise = std::pow(10.0, random.uniform(-323.0, -280.0)) * (random.chance(0.5) ? 1 : -1);
    const double width = random.uniform(0.1, 1.0);
    const bool steep = random.chance(0.5);
    const auto place = points.begin() + static_cast<std::ptrdiff_t>(at);
    const gxVector<2> ends[] = {steep ? gxVector<2>(-rise, -width) : gxVector<2>(-width, -rise),
                                steep ? gxVector<2>(rise, width) : gxVector<2>(width, rise)};
    points.insert(place, ends, ends + 2);
  }
  return points;
}

TEST(ContainmentGrid, OfOutlinesWithEdgesOfInfiniteSlopeAnswersAsTheCountedRay) {
  RandomShapes random("containment, slopes", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = withSlopes(random);
    std::vector<gxVector<2>> queries;
    for (int i = 0; i < 20; ++i) queries.push_back(query(random, points));
    gxRegion region(points);
    region.inside(std::vector<gxVector<2>>(20 * points.size() / 8), false);  // the grid pays
    const std::vector<bool> got = region.inside(queries, false);
    for (std::size_t i = 0; i < queries.size(); ++i) {
      EXPECT_EQ(got[i], slow::inside({points, {}}, queries[i], false))
          << testing::PrintToString(queries[i]);
    }
  }
}

}  // namespace
