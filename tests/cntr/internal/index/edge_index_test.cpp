// The tree of boxes over the edges.
#include <support/large_outlines.h>

#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/outline/edge_walk.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using V = gxVector<2>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<std::size_t> edgesMet(const gx_EdgeIndex& index, const gx_Box& box) {
  std::vector<std::size_t> met;
  index.forEachRun([&box](const gx_Box& b) { return b.meets(box); },
                   [&met](std::size_t first, std::size_t end) {
                     for (std::size_t k = first; k < end; ++k) met.push_back(k);
                     return false;
                   });
  return met;
}

TEST(EdgeIndex, OfNoPointsHasNoEdges) {
  const std::vector<V> none;
  const gx_EdgeIndex index({none, true});
  EXPECT_EQ(index.edges(), 0U);
  EXPECT_TRUE(edgesMet(index, gx_Box{-1, -1, 1, 1}).empty());
}

TEST(EdgeIndex, ANaNCoordinateIsPassedOverAndNoticed) {
  const std::vector<V> points = {{0, 0}, {kNaN, 5}, {2, 1}};
  const gx_EdgeIndex index({points, true});
  EXPECT_TRUE(index.hasNaN());
  EXPECT_EQ(index.bounds().highX, 2.0);
  EXPECT_EQ(index.bounds().highY, 5.0);
}

TEST(EdgeIndex, BoundsAreThoseOfAllPoints) {
  const std::vector<V> points = {{3, -1}, {0, 4}, {-2, 0.5}};
  const gx_EdgeIndex index({points, false});
  EXPECT_EQ(index.bounds().lowX, -2.0);
  EXPECT_EQ(index.bounds().lowY, -1.0);
  EXPECT_EQ(index.bounds().highX, 3.0);
  EXPECT_EQ(index.bounds().highY, 4.0);
  EXPECT_FALSE(index.hasNaN());
}

TEST(EdgeIndex, EveryEdgeWhoseBoxTouchesIsVisitedOnceAndInOrder) {
  RandomShapes random("edge index", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = largeOutline(random);
    const gx_EdgeIndex index({outline.points, outline.closed});
    ASSERT_EQ(index.edges(), gx_edgeCount(outline.points.size(), outline.closed));
    const gxVector<2> p = random.pointNear(outline.points);
    const gxVector<2> q = random.pointNear(outline.points);
    gx_Box box;
    box.add(p);
    box.add(q);
    const std::vector<std::size_t> met = edgesMet(index, box);
    EXPECT_TRUE(std::is_sorted(met.begin(), met.end()));
    EXPECT_EQ(std::adjacent_find(met.begin(), met.end()), met.end());
    for (std::size_t k = 0; k < index.edges(); ++k) {
      gx_Box edge;
      edge.add(outline.points[gx_edgeStart(k, outline.points.size(), outline.closed)]);
      edge.add(outline.points[gx_edgeEnd(k, outline.closed)]);
      EXPECT_TRUE(!edge.meets(box) || std::binary_search(met.begin(), met.end(), k)) << "edge " << k;
    }
  }
}

TEST(EdgeIndex, AVisitThatReturnsTrueEndsTheWalk) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < 1000; ++i) points.emplace_back(i, 0);
  const gx_EdgeIndex index({points, false});
  int visits = 0;
  EXPECT_TRUE(index.forEachRun([](const gx_Box&) { return true; },
                               [&visits](std::size_t, std::size_t) { return ++visits == 3; }));
  EXPECT_EQ(visits, 3);
}

TEST(EdgeIndex, TakesLessThanSixBytesAnEdge) {
  std::vector<gxVector<2>> points(100000);
  const gx_EdgeIndex index({points, true});
  std::size_t boxes = 0;
  for (std::size_t level = 0; level < index.levels(); ++level) boxes += index.size(level);
  EXPECT_LT(boxes * sizeof(gx_Box), 6 * points.size());
}

}  // namespace
