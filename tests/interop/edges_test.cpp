#include <gxshape/interop/edges.h>

#include <gtest/gtest.h>
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>

#include <algorithm>
#include <iterator>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

static_assert(std::random_access_iterator<gxEdgeRange::Iterator>);
static_assert(std::ranges::random_access_range<gxEdgeRange>);
static_assert(std::ranges::sized_range<gxEdgeRange>);
static_assert(std::ranges::borrowed_range<gxEdgeRange>);

TEST(Edges, OfAClosedContourBeginWithTheClosingOne) {
  const gxContour triangle({{0, 0}, {4, 0}, {4, 3}});
  const gxEdgeRange edges = gfEdges(triangle);
  ASSERT_EQ(edges.size(), 3U);
  EXPECT_FALSE(edges.empty());
  EXPECT_EQ(edges[0], (gxEdge{{4, 3}, {0, 0}}));
  EXPECT_EQ(edges[1], (gxEdge{{0, 0}, {4, 0}}));
  EXPECT_EQ(edges[2], (gxEdge{{4, 0}, {4, 3}}));
}

TEST(Edges, OfAnOpenContourBeginWithTheFirst) {
  const Points points{{0, 0}, {4, 0}, {4, 3}};
  const gxEdgeRange edges = gfEdges(points, false);
  ASSERT_EQ(edges.size(), 2U);
  EXPECT_EQ(edges[0], (gxEdge{{0, 0}, {4, 0}}));
  EXPECT_EQ(edges[1], (gxEdge{{4, 0}, {4, 3}}));
}

TEST(Edges, AreNoneBelowTwoPoints) {
  const Points one{{1, 2}};
  const Points two{{1, 2}, {3, 4}};
  for (const bool closed : {true, false}) {
    EXPECT_TRUE(gxEdgeRange(std::span<const V>(), closed).empty());
    EXPECT_EQ(gfEdges(one, closed).size(), 0U);
    EXPECT_TRUE(gfEdges(one, closed).begin() == gfEdges(one, closed).end());
  }
  EXPECT_EQ(gfEdges(two, true).size(), 2U);
  EXPECT_EQ(gfEdges(two, false).size(), 1U);
}

TEST(Edges, AreThoseOfTheContourItself) {
  RandomShapes random("edges as a range", 500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const bool closed = random.chance(0.5);
    const ExposedContour contour(gxContour(random.finiteOutline(), closed));
    if (contour.size() < 2) continue;
    const std::vector<gxLineSeg>& expected = contour.lineSegs();
    const gxEdgeRange edges = gfEdges(contour);
    ASSERT_EQ(edges.size(), expected.size());
    std::size_t k = 0;
    for (const auto [from, to] : edges) {
      if (contour.validLine()[k]) {
        EXPECT_EQ(from, expected[k].p1());
        EXPECT_EQ(to, expected[k].p2());
        EXPECT_EQ(edges[k].segment(), expected[k]);
      } else {
        EXPECT_LT(from.distance(to), 1e-12);
      }
      ++k;
    }
    EXPECT_EQ(k, expected.size());
  }
}

TEST(Edges, AreWalkedInAnySteps) {
  const Points points{{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}};
  const gxEdgeRange edges = gfEdges(points);
  auto at = edges.begin();
  EXPECT_EQ(*at, edges[0]);
  EXPECT_EQ(*at++, edges[0]);
  EXPECT_EQ(*at, edges[1]);
  EXPECT_EQ(*++at, edges[2]);
  EXPECT_EQ(*--at, edges[1]);
  EXPECT_EQ(*at--, edges[1]);
  EXPECT_EQ(*at, edges[0]);
  at += 3;
  EXPECT_EQ(*at, edges[3]);
  at -= 2;
  EXPECT_EQ(*at, edges[1]);
  EXPECT_EQ(at[2], edges[3]);
  EXPECT_EQ(*(at + 1), edges[2]);
  EXPECT_EQ(*(2 + at), edges[3]);
  EXPECT_EQ(*(at - 1), edges[0]);
  EXPECT_EQ(edges.end() - edges.begin(), 5);
  EXPECT_TRUE(edges.begin() < edges.end());
  EXPECT_FALSE(edges.end() < edges.begin());
  EXPECT_EQ(std::distance(edges.begin(), edges.end()), 5);
}

TEST(Edges, GoThroughAlgorithms) {
  const gxContour square({{0, 0}, {2, 0}, {2, 2}, {0, 2}});
  const auto edges = gfEdges(square);
  EXPECT_TRUE(std::all_of(edges.begin(), edges.end(),
                          [](const gxEdge& edge) { return edge.from.distance(edge.to) == 2.0; }));
  EXPECT_EQ(std::ranges::count_if(edges, [](const gxEdge& e) { return e.from.x() == e.to.x(); }), 2);
  // The iterators hold without the range.
  const auto first = gfEdges(square).begin();
  EXPECT_EQ((*first).to, V(0, 0));
}

}  // namespace
