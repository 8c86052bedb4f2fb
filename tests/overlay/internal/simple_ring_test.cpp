// Rings that are right as they are, and that their repair is what the arrangement makes of them.
// Covers overlay/internal/simple_ring.h
#include <overlay/internal/simple_ring.h>

#include <overlay/internal/predicates.h>
#include <overlay/plain_sets.h>
#include <overlay/repair.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

bool isSimple(const Points& points) {
  const gxOverlayLimits limits;
  gx_Steps steps(limits);
  return gx_isSimpleRing(points, steps);
}

bool isSimple(const char* text) {
  return isSimple(pointsOf(text));
}

TEST(SimpleRing, OutlinesThatMeetThemselvesNowhereAre) {
  EXPECT_TRUE(isSimple("0 0, 4 0, 0 3"));
  EXPECT_TRUE(isSimple("0 0, 0 3, 4 0")) << "either way round";
  EXPECT_TRUE(isSimple("0 0, 1 0, 2 0, 2 2, 0 2")) << "points between";
  EXPECT_TRUE(isSimple("0 0, 3 0, 3 1, 1 1, 1 3, 0 3"));
}

TEST(SimpleRing, WhateverMeetsItselfIsNot) {
  EXPECT_FALSE(isSimple("0 0, 10 10, 10 0, 0 10")) << "crossing";
  EXPECT_FALSE(isSimple("0 0, 4 0, 4 4, 2 0, 0 4")) << "a corner on an edge";
  EXPECT_FALSE(isSimple("0 0, 2 2, 4 0, 4 4, 2 2, 0 4")) << "a corner twice";
  EXPECT_FALSE(isSimple("0 0, 4 0, 4 0, 0 3")) << "a point repeated";
  EXPECT_FALSE(isSimple("0 0, 4 0, 0 3, 0 0")) << "around the end";
  EXPECT_FALSE(isSimple("0 0, 10 0, 14 0, 10 0, 5 8")) << "a spike";
  EXPECT_FALSE(isSimple("4 0, 0 3, 0 0, -2 0, 0 0")) << "one around the end";
}

TEST(SimpleRing, WhatHasNoAreaOrIsNotFiniteIsNot) {
  for (const char* text :
       {"", "1 1", "0 0, 1 1", "0 0, 1 1, 2 2", "0 0, 2 2, 1 1", "0 0, nan 1, 2 2", "0 0, 1 0, 1 inf"}) {
    EXPECT_FALSE(isSimple(text)) << text;
  }
}

TEST(SimpleRing, IsPutInOrder) {
  Points points = pointsOf("4 0, 0 3, 0 0");
  EXPECT_TRUE(gx_putInOrder(points));
  EXPECT_EQ(points, pointsOf("0 0, 4 0, 0 3"));
  points = pointsOf("4 0, 0 0, 0 3");
  EXPECT_FALSE(gx_putInOrder(points));
  EXPECT_EQ(points, pointsOf("0 0, 4 0, 0 3"));
}

TEST(SimpleRing, AsksWhetherToStop) {
  // A square wave, and back above it.
  Points points;
  for (int i = 0; i < 20000; ++i) points.emplace_back(i / 2, (i + 1) / 2 % 2);
  points.emplace_back(10000, 5);
  points.emplace_back(-1, 5);
  gxOverlayLimits limits;
  limits.stop = [] { return true; };
  gx_Steps steps(limits);
  EXPECT_THROW(gx_isSimpleRing(points, steps), gxStopped);
}

// All pairs of edges, and neighbours by hand.
bool isSimpleByAllPairs(const Points& points) {
  const std::size_t n = points.size();
  if (n < 3) return false;
  for (std::size_t i = 0; i < n; ++i) {
    const V& a = points[i];
    const V& b = points[(i + 1) % n];
    const V& c = points[(i + 2) % n];
    if (a == b) return false;
    // The next edge may have nothing but its start in common with this one.
    if (gx_meetingOf(a, b, b, c).kind != gx_EdgeMeeting::eTouching || a == c) return false;
    for (std::size_t j = i + 2; j < n; ++j) {
      const bool neighbours = i == 0 && j == n - 1;
      if (!neighbours &&
          gx_meetingOf(a, b, points[j], points[(j + 1) % n]).kind != gx_EdgeMeeting::eApart) {
        return false;
      }
    }
  }
  return true;
}

void expectSameRepair(const gxRegion& region, gxFillRule rule) {
  gxOverlayOptions options;
  options.rule = rule;
  const gxRepaired alone = gfRepair(region, options);
  // Beside a region without points an outline goes through the whole arrangement.
  const std::vector<gxRegion> both{region, gxRegion()};
  const gxRepaired whole = gfRepair(both, options);
  ASSERT_TRUE(areSame(plainSet(alone.regions), plainSet(whole.regions)));
  EXPECT_TRUE(sameBits(alone.report.areaBefore, whole.report.areaBefore));
  EXPECT_TRUE(sameBits(alone.report.areaAfter, whole.report.areaAfter));
  EXPECT_EQ(alone.report.regions, whole.report.regions);
  EXPECT_EQ(alone.report.holes, whole.report.holes);
  EXPECT_EQ(alone.report.nodes, whole.report.nodes);
  EXPECT_EQ(alone.report.ringsDropped + 1, whole.report.ringsDropped) << "the one without points";
  EXPECT_EQ(alone.report.ringsSnapped, 0U);
  EXPECT_EQ(alone.report.largestMove, 0.0);
}

TEST(SimpleRingSlowTruth, RandomRingsAreJudgedAsByAllPairsAndRepairedAsByTheArrangement) {
  RandomShapes random("simple rings", 1500);
  int simple = 0;
  int tangled = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Points points;
    if (random.chance(0.5)) {
      points = random.star(random.integer(3, 200), {random.uniform(-5, 5), 3.0}, 2.0, 4.0);
      if (random.chance(0.5)) points = reversed(points);
      if (random.chance(0.3)) {
        const auto k = static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1));
        points[k] = points[k] * random.uniform(0.0, 2.0);
      }
    } else {
      const int n = random.integer(3, 8);
      for (int i = 0; i < n; ++i) points.emplace_back(random.integer(0, 9), random.integer(0, 9));
    }
    const bool expected = isSimpleByAllPairs(points);
    ASSERT_EQ(isSimple(points), expected) << testing::PrintToString(points);
    (expected ? simple : tangled) += 1;
    if (!expected) continue;
    for (const gxFillRule rule :
         {gxFillRule::eEvenOdd, gxFillRule::eNonZero, gxFillRule::ePositive, gxFillRule::eOuter}) {
      expectSameRepair(gxRegion(points), rule);
    }
  }
  EXPECT_GT(simple, 300 * random.share());
  EXPECT_GT(tangled, 300 * random.share());
}

}  // namespace
