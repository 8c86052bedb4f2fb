// Directions from a point to vertices, through the index and all of them.
#include <support/large_outlines.h>

#include <cntr/internal/search/directions.h>
#include <support/exposed.h>
#include <support/same_bits.h>
#include <support/slow_truth_region.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kPi = 3.141592653589793;

TEST(Directions, RunFromTheXAxisTowardsTheYAxisInOneTurn) {
  EXPECT_EQ(gx_directionTo({1, 1}, {3, 1}), 0.0);
  EXPECT_DOUBLE_EQ(gx_directionTo({1, 1}, {1, 3}), kPi / 2);
  EXPECT_DOUBLE_EQ(gx_directionTo({1, 1}, {1, 0}), 3 * kPi / 2);
}

TEST(Directions, APointIsOnAVertexWithinTheTolerance) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < 100; ++i) points.emplace_back(i, i % 7);
  const gx_EdgeIndex index({points, true});
  EXPECT_TRUE(gx_isOnVertex(index, points, {50, 1}, 1e-6));
  EXPECT_TRUE(gx_isOnVertex(index, points, {50 + 9e-7, 1}, 1e-6));
  EXPECT_FALSE(gx_isOnVertex(index, points, {50 + 2e-6, 1}, 1e-6));
}

TEST(Directions, AVertexThatIsNotANumberIsEverywhere) {
  std::vector<gxVector<2>> points(100);
  points[60] = gxVector<2>(std::numeric_limits<double>::quiet_NaN(), 0);
  EXPECT_TRUE(gx_isOnVertex(gx_EdgeIndex({points, true}), points, {500, 500}, 1e-6));
}

TEST(Directions, TheFirstWideGapIsThatAmongAllSortedDirections) {
  RandomShapes random("first wide gap", 400);
  long found = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = largeOutline(random);
    const gx_EdgeIndex index({outline.points, true});
    if (index.hasNaN()) continue;
    const double wide = kPi / static_cast<double>(outline.points.size());
    for (int query = 0; query < 8; ++query) {
      const gxVector<2> p = random.pointNear(outline.points);
      double before = 0.0;
      double gap = 0.0;
      if (!gx_firstWideGap(index, outline.points, p, wide, before, gap)) continue;
      ++found;
      std::vector<double> all;
      for (const gxVector<2>& v : outline.points) all.push_back(gx_directionTo(p, v));
      std::sort(all.begin(), all.end());
      std::size_t k = 0;
      while (k + 1 < all.size() && !(gxRadian(all[k + 1] - all[k]).norm().toDouble() > wide)) ++k;
      ASSERT_LT(k + 1, all.size());
      EXPECT_TRUE(sameBits(before, all[k]));
      EXPECT_TRUE(sameBits(gap, gxRadian(all[k + 1] - all[k]).norm().toDouble()));
    }
  }
  EXPECT_GT(found, 100);
}

// A circle with a small loop outside at every 20th vertex.
std::vector<gxVector<2>> circleWithLoops(int count, double radius) {
  std::vector<gxVector<2>> points;
  const double step = 2 * kPi / count;
  const double edge = radius * step;
  for (int i = 0; i < count; ++i) {
    const gxVector<2> out(std::cos(i * step), std::sin(i * step));
    const gxVector<2> along(-out.y(), out.x());
    const gxVector<2> at = out * radius;
    if (i % 20 != 10) {
      points.push_back(at);
      continue;
    }
    points.insert(points.end(),
                  {at + along * (0.5 * edge), at + out * (0.8 * edge), at - along * (0.5 * edge)});
  }
  return points;
}

TEST(Directions, TheFirstGapSeenFromBesideAnEdgeTakesFewVertices) {
  // The point's own box comes first, and some of its vertices lie behind the point: half of all vertices
  // have lesser directions than those, and would be too many.
  const std::vector<gxVector<2>> points = circleWithLoops(10'000, 1500);
  const gx_EdgeIndex index({points, true});
  const double wide = kPi / static_cast<double>(points.size());
  int found = 0;
  for (std::size_t i = 0; i < 1000; ++i) {
    const gxVector<2> middle = (points[i] + points[i + 1]) * 0.5;
    double before = 0.0;
    double gap = 0.0;
    if (gx_firstWideGap(index, points, middle * (1.0 + 6e-6), wide, before, gap)) ++found;
  }
  EXPECT_EQ(found, 1000);
}

TEST(Directions, LookingAtAllGivesTheSameGap) {
  RandomShapes random("first wide gap of all", 600);
  long found = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<gxVector<2>> points = largeOutline(random).points;
    const bool isRound = random.chance(0.4);
    if (isRound) {  // seen from near the border, an even row of gaps about as wide as the limit
      points = random.outline(OutlineKind::eRegular, random.integer(65, 2000));
      for (auto& p : points)
        p = p + gxVector<2>(random.uniform(-1e-3, 1e-3), random.uniform(-1e-3, 1e-3));
    }
    if (gx_EdgeIndex({points, true}).hasNaN()) continue;
    const double wide = kPi / static_cast<double>(points.size());
    for (int query = 0; query < 8; ++query) {
      const gxVector<2> p = random.pointNear(points);
      if (std::any_of(points.begin(), points.end(),
                      [&p](const gxVector<2>& v) { return !(v.distance(p) > 1e-6); })) {
        continue;
      }
      double before = 0.0;
      double gap = 0.0;
      std::vector<double> all;
      for (const gxVector<2>& v : points) all.push_back(gx_directionTo(p, v));
      std::sort(all.begin(), all.end());
      std::size_t k = 0;
      while (k + 1 < all.size() && !(gxRadian(all[k + 1] - all[k]).norm().toDouble() > wide)) ++k;
      if (!gx_firstWideGapOfAll(points, p, wide, before, gap)) {
        const bool ordinary = std::all_of(points.begin(), points.end(),
                                          [](const gxVector<2>& v) {
                                            return std::abs(v.x()) < 1e149 && std::abs(v.y()) < 1e149;
                                          }) &&
                              std::abs(p.x()) < 1e149 && std::abs(p.y()) < 1e149;
        EXPECT_TRUE(!ordinary || k + 1 == all.size());
        continue;
      }
      ++found;
      ASSERT_LT(k + 1, all.size());
      EXPECT_TRUE(sameBits(before, all[k]));
      EXPECT_TRUE(sameBits(gap, gxRadian(all[k + 1] - all[k]).norm().toDouble()));
    }
  }
  EXPECT_GT(found, 1000 * random.share());
}

TEST(Directions, TheCountOfTheRayIsThatOfTheSlowTruth) {
  RandomShapes random("rays through the index", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = largeOutline(random);
    const gxRegion region(outline.points);
    for (int query = 0; query < 8; ++query) {
      const gxVector<2> p = random.pointNear(outline.points);
      const bool bothWays = random.chance(0.5);
      EXPECT_TRUE(agree([&] { return gx_RegionInside::insideCount(region, p, bothWays); },
                        [&] { return slow::insideCount(outline.points, p, bothWays); }));
    }
  }
}

}  // namespace
