#include <cntr/internal/search/local_crossings.h>

#include <support/exposed.h>
#include <support/large_outlines.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

TEST(LocalCrossings, CoversFiniteOutlinesOfOrdinarySize) {
  Points points(100, V(1, 2));
  points[3] = V(4e5, -4e5);
  EXPECT_TRUE(gx_LocalCrossings::covers(gx_EdgeIndex({points, true})));
  points[4] = V(6e5, 0);
  EXPECT_FALSE(gx_LocalCrossings::covers(gx_EdgeIndex({points, true})));
  points[4] = V(std::numeric_limits<double>::quiet_NaN(), 0);
  EXPECT_FALSE(gx_LocalCrossings::covers(gx_EdgeIndex({points, true})));
  points[4] = V(0, -std::numeric_limits<double>::infinity());
  EXPECT_FALSE(gx_LocalCrossings::covers(gx_EdgeIndex({points, true})));
}

// Segments as the walk makes them: along an edge, from a vertex or a crossing to a vertex; and others
// that end on a vertex.
TEST(LocalCrossings, AreThoseOfTheContour) {
  RandomShapes random("local crossings", 400);
  long crossed = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = largeOutline(random).points;
    const gx_EdgeIndex index({points, true});
    if (!gx_LocalCrossings::covers(index)) continue;
    const ExposedContour contour(gxContour(points, true));
    gxBudget unlimited;
    gx_LocalCrossings local(index, {points, true}, unlimited);
    auto along = static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1));
    for (int query = 0; query < 60; ++query) {
      along = random.chance(0.1)
                  ? static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1))
                  : (along + 1) % points.size();
      const V& from = points[along == 0 ? points.size() - 1 : along - 1];
      const V& to = points[along];
      V start = from;
      if (random.chance(0.3)) start = from + (to - from) * random.uniform(0.0, 1.0);
      if (random.chance(0.1))
        start = start + V(random.uniform(-1e-6, 1e-6), random.uniform(-1e-6, 1e-6));
      if (random.chance(0.1)) start = random.pointNear(points);
      const gxLineSeg seg = random.chance(0.5) ? gxLineSeg(start, to) : gxLineSeg(to, start);
      std::vector<int> edges;
      std::vector<int> wantEdges;
      EXPECT_TRUE(agree([&] { return local(seg, along, edges); },
                        [&] { return contour.intersections(seg, wantEdges, false); }));
      EXPECT_EQ(edges, wantEdges);
      crossed += wantEdges.empty() ? 0 : 1;
    }
  }
  EXPECT_GT(crossed, 500);
}

}  // namespace
