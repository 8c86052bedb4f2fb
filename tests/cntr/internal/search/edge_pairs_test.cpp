// Pairs of edges decided without the test, held against the test.
#include <cntr/internal/search/edge_pairs.h>
#include <support/random_shapes.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using V = gxVector<2>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(EdgePairs, TheBoxOfAnEdgePassesOverANaNAtItsEnd) {
  const gx_Box box = gx_Box::ofEdge(V(3, 1), V(kNaN, 2));
  EXPECT_EQ(box.lowX, 3.0);
  EXPECT_EQ(box.highX, 3.0);
  EXPECT_EQ(box.highY, 2.0);
  EXPECT_TRUE(gx_outside(kNaN, 3.0, 0.0, 9.0));
  EXPECT_FALSE(gx_outside(3.0, kNaN, 0.0, 9.0));
}

TEST(EdgePairs, AnEdgeBesideTheLineMissesItAndOneWithinTheToleranceMayNot) {
  const V origin(0, 0);
  const V along(10, 0);
  EXPECT_TRUE(gx_missesOn(origin, along, V(1, 1), V(5, 2)));
  EXPECT_TRUE(gx_missesOn(origin, along, V(1, -1), V(5, -1e-5)));
  EXPECT_FALSE(gx_missesOn(origin, along, V(1, 1), V(5, -1)));
  EXPECT_FALSE(gx_missesOn(origin, along, V(1, 1e-6), V(5, 1)));
  EXPECT_FALSE(gx_missesOn(origin, along, V(1, kNaN), V(5, 1)));
}

TEST(EdgePairs, DirectionsAreThoseOfLines) {
  for (const double size : {1.0, 1e-150, 1e150, 1e308}) {
    const V from(-size, 0.5 * size);
    const V to(size, -size);
    EXPECT_EQ(gx_directionOf(from, to), gxLineSeg(from, to).line().direction());
  }
}

TEST(EdgePairs, FewBoxesLeaveOutEdgesOfNoLength) {
  const std::vector<V> points{{0, 0}, {1, 0}, {1, 0}, {1, 1}};
  const gx_FewBoxes boxes(gx_Outline{points, true});
  ASSERT_EQ(boxes.count(), 3U);
  EXPECT_EQ(boxes.number(1), 1U);
  EXPECT_EQ(boxes.number(2), 3U);
  EXPECT_EQ(boxes.meeting({0, 0, 1, 0}), 0b111U);
  EXPECT_EQ(boxes.meeting({1, 0.5, 3, 1}), 0b101U) << "the closing edge and the upright one";
  EXPECT_EQ(boxes.meeting({2, 0, 3, 1}), 0U);
  EXPECT_EQ(boxes.notApartAfter(0), 0b110U);
}

// Of every number of edges, with coordinates that are not finite among them: a bit for each box, as the
// comparison of two boxes has it.
TEST(EdgePairs, FewBoxesTellOfEachWhatTheBoxItselfTells) {
  RandomShapes random("few boxes", 2000);
  long met = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<V> points = random.outline();
    if (points.size() > gx_kFewEdges) points.resize(gx_kFewEdges);
    if (!points.empty() && random.chance(0.2))
      points[static_cast<std::size_t>(random.integer(0, 1)) % points.size()] = V(kNaN, 1.0);
    const gx_Outline outline{points, random.chance(0.5)};
    const gx_FewBoxes boxes(outline);
    const auto box = [&](std::size_t i) {
      return gx_Box::ofEdge(outline.from(boxes.number(i)), outline.to(boxes.number(i)));
    };
    for (std::size_t i = 0; i < boxes.count(); ++i) {
      const gx_Box b = box(i);
      std::uint64_t meeting = 0;
      std::uint64_t notApart = 0;
      for (std::size_t j = 0; j < boxes.count(); ++j) {
        const gx_Box o = box(j);
        meeting |= static_cast<std::uint64_t>(o.meets(b)) << j;
        const bool apart = o.highX < b.lowX || b.highX < o.lowX || o.highY < b.lowY || b.highY < o.lowY;
        notApart |= static_cast<std::uint64_t>(j > i && !apart) << j;
      }
      EXPECT_EQ(boxes.meeting(b), meeting) << i;
      EXPECT_EQ(boxes.notApartAfter(i), notApart) << i;
      met += std::popcount(meeting);
    }
  }
  EXPECT_GT(met, 1000);
}

TEST(EdgePairs, WhatIsDecidedIsNeverAHitAndSurelyParallelIsParallel) {
  RandomShapes random("pairs of edges", 2000);
  long missed = 0;
  long parallel = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const std::vector<V> points = random.outline();
    if (points.size() < 4) continue;
    const auto last = static_cast<int>(points.size()) - 2;
    for (int pair = 0; pair < 20; ++pair) {
      const auto i = static_cast<std::size_t>(random.integer(0, last));
      const auto j = static_cast<std::size_t>(random.integer(0, last));
      const gxLineSeg first(points[i], points[i + 1]);
      const gxLineSeg second(points[j], points[j + 1]);
      const V d = gx_directionOf(first.p1(), first.p2());
      if (gx_surelyParallel(d, gx_directionOf(second.p1(), second.p2()))) {
        ++parallel;
        EXPECT_TRUE(first.line().isParallel(second.line()));
        EXPECT_TRUE(second.line().isParallel(first.line()));
      }
      if (gx_missesOn(first.p1(), d, second.p1(), second.p2())) {
        ++missed;
        const V q = second.line().intersect(first.line());
        EXPECT_FALSE(first.distToPoint(q) < gx_kTouch && second.distToPoint(q) < gx_kTouch);
      }
    }
  }
  EXPECT_GT(missed, 1000);
  EXPECT_GT(parallel, 1000 * random.share());
}

}  // namespace
