// The tree of slabs over the edges: what it may leave out, and what it does.
#include <support/large_outlines.h>

#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/index/slab_tree.h>
#include <cntr/internal/outline/edge_walk.h>
#include <velstd/line_seg.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

gxLineSeg edge(const Points& points, bool closed, std::size_t k) {
  return {points[gx_edgeStart(k, points.size(), closed)], points[gx_edgeEnd(k, closed)]};
}

// For each edge, how often its run was visited.
std::vector<int> visits(const gx_SlabTree& tree, std::size_t edges, const gxVector<2>& point,
                        double limit) {
  std::vector<int> result(edges);
  tree.forEachRunNear(point, limit, [&result](std::size_t first, std::size_t end) {
    for (std::size_t k = first; k < end; ++k) ++result[k];
  });
  return result;
}

Points roundOutline(int count, double radius) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double turn = 6.283185307179586 * i / count;
    points.emplace_back(radius * std::cos(turn), radius * std::sin(turn));
  }
  return points;
}

TEST(SlabTree, WithoutALimitEveryEdgeIsVisitedOnce) {
  for (const int count : {1, 7, 8, 9, 64, 65, 513, 5000}) {
    const Points points = roundOutline(count + 1, 10.0);
    const gx_EdgeIndex index({points, false});
    const gx_SlabTree* tree = index.slabs({points, false});
    ASSERT_TRUE(tree != nullptr && tree->answers({0, 0}));
    EXPECT_EQ(visits(*tree, index.edges(), {3, 4}, kInfinity), std::vector<int>(index.edges(), 1))
        << count;
  }
}

TEST(SlabTree, NoEdgeWithinTheLimitIsLeftOut) {
  RandomShapes random("slab tree", 400);
  int asked = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = largeOutline(random);
    const gx_EdgeIndex index({outline.points, outline.closed});
    const gx_SlabTree* tree = index.slabs({outline.points, outline.closed});
    for (int query = 0; query < 6; ++query) {
      const gxVector<2> p = random.pointNear(outline.points);
      if (tree == nullptr || !tree->answers(p)) continue;
      ++asked;
      const std::size_t some =
          static_cast<std::size_t>(random.integer(0, static_cast<int>(index.edges()) - 1));
      const double limit = edge(outline.points, outline.closed, some).distToPoint(p);
      const std::vector<int> visited = visits(*tree, index.edges(), p, limit);
      for (std::size_t k = 0; k < index.edges(); ++k) {
        if (edge(outline.points, outline.closed, k).distToPoint(p) > limit) continue;
        EXPECT_EQ(visited[k], 1) << "edge " << k << " of " << index.edges();
      }
    }
  }
  EXPECT_GT(asked, 1000 * random.share());
}

TEST(SlabTree, FromInsideARoundOutlineOnlyRunsNearTheFootAreVisited) {
  const Points points = roundOutline(100000, 16000.0);
  const gx_EdgeIndex index({points, true});
  const gx_SlabTree* tree = index.slabs({points, true});
  ASSERT_TRUE(tree != nullptr && tree->answers({5000, 1000}));
  int edges = 0;
  for (const int v : visits(*tree, index.edges(), {5000, 1000}, 16000.0 - std::hypot(5000, 1000)))
    edges += v;
  EXPECT_GT(edges, 0);
  EXPECT_LT(edges, 400);  // by upright boxes it would be some thousand
}

TEST(SlabTree, DoesNotAnswerWhereSinglePrecisionWouldNotDo) {
  const auto answers = [](const Points& points, const gxVector<2>& p) {
    const gx_EdgeIndex index({points, true});
    const gx_SlabTree* tree = index.slabs({points, true});
    return tree != nullptr && tree->answers(p);
  };
  EXPECT_TRUE(answers(roundOutline(100, 10.0), {500, 0}));
  EXPECT_FALSE(answers(roundOutline(100, 10.0), {1e6, 0}));
  EXPECT_FALSE(answers(roundOutline(100, 10.0), {kNaN, 0}));
  EXPECT_FALSE(answers(roundOutline(100, 10.0), {0, -kInfinity}));
  EXPECT_FALSE(answers(roundOutline(100, 1e15), {0, 0}));
  EXPECT_FALSE(answers(roundOutline(100, 1e-12), {0, 0}));
  EXPECT_FALSE(answers(Points(100, {3, 4}), {3, 4}));
  Points broken = roundOutline(100, 10.0);
  broken[17] = {kNaN, 1};
  EXPECT_FALSE(answers(broken, {0, 0}));
  broken[17] = {kInfinity, 1};
  EXPECT_FALSE(answers(broken, {0, 0}));
}

}  // namespace
