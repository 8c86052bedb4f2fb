// The view of an outline, held against the walk over its edges.
#include <cntr/internal/outline/outline.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using V = gxVector<2>;

TEST(Outline, GivesTheEdgesOfTheWalkOneByOne) {
  for (std::size_t count = 0; count < 6; ++count) {
    std::vector<V> points;
    for (std::size_t i = 0; i < count; ++i) points.emplace_back(static_cast<double>(i), 1.0);
    for (const bool closed : {true, false}) {
      const gx_Outline outline{points, closed};
      std::size_t edges = 0;
      outline.forEachEdge([&](std::size_t start, std::size_t end, std::size_t k) {
        EXPECT_EQ(k, edges++);
        EXPECT_EQ(outline.start(k), start);
        EXPECT_EQ(outline.end(k), end);
        EXPECT_EQ(outline.from(k), points[start]);
        EXPECT_EQ(outline.to(k), points[end]);
      });
      EXPECT_EQ(outline.edges(), edges) << count << (closed ? " closed" : " open");
    }
  }
}

TEST(Outline, IsClosedUnlessSaidOtherwise) {
  const std::vector<V> points = {{0, 0}, {1, 0}, {1, 1}};
  EXPECT_EQ(gx_Outline{points}.edges(), 3U);
}

TEST(Outline, LooksAtThePointsAsTheyAreWhenItIsAsked) {
  std::vector<V> points = {{0, 0}, {1, 0}};
  const gx_Outline outline{points, false};
  EXPECT_EQ(outline.edges(), 1U);
  points.emplace_back(2, 2);
  EXPECT_EQ(outline.edges(), 2U);
  EXPECT_EQ(outline.to(1), V(2, 2));
}

}  // namespace
