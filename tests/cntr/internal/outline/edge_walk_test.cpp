#include <cntr/internal/outline/edge_walk.h>

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

using Edge = std::array<std::size_t, 3>;  // start, end, number

std::vector<Edge> walk(std::size_t points, bool closed) {
  std::vector<Edge> edges;
  gx_forEachEdge(points, closed, [&](std::size_t from, std::size_t to, std::size_t k) {
    edges.push_back({from, to, k});
  });
  return edges;
}

TEST(EdgeWalk, ClosedBeginsWithTheClosingEdge) {
  EXPECT_EQ(walk(4, true), std::vector<Edge>({{3, 0, 0}, {0, 1, 1}, {1, 2, 2}, {2, 3, 3}}));
}

TEST(EdgeWalk, OpenHasNoClosingEdge) {
  EXPECT_EQ(walk(4, false), std::vector<Edge>({{0, 1, 0}, {1, 2, 1}, {2, 3, 2}}));
}

TEST(EdgeWalk, TwoPointsClosedGoThereAndBack) {
  EXPECT_EQ(walk(2, true), std::vector<Edge>({{1, 0, 0}, {0, 1, 1}}));
  EXPECT_EQ(walk(2, false), std::vector<Edge>({{0, 1, 0}}));
}

TEST(EdgeWalk, OnePointClosedHasAnEdgeToItselfAndOpenNone) {
  EXPECT_EQ(walk(1, true), std::vector<Edge>({{0, 0, 0}}));
  EXPECT_TRUE(walk(1, false).empty());
}

TEST(EdgeWalk, WithoutPointsThereIsNothing) {
  EXPECT_TRUE(walk(0, true).empty());
  EXPECT_TRUE(walk(0, false).empty());
}

TEST(EdgeWalk, CountStartsAndEndsAgreeWithTheWalk) {
  for (const bool closed : {true, false}) {
    for (std::size_t points = 0; points < 20; ++points) {
      const std::vector<Edge> edges = walk(points, closed);
      EXPECT_EQ(edges.size(), gx_edgeCount(points, closed));
      for (const Edge& e : edges) {
        EXPECT_EQ(gx_edgeStart(e[2], points, closed), e[0]);
        EXPECT_EQ(gx_edgeEnd(e[2], closed), e[1]);
      }
    }
  }
}

}  // namespace
