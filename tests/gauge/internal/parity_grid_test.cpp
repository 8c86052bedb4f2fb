// Covers gauge/internal/edge_tree.cpp
#include <gauge/internal/parity_grid.h>
#include <gtest/gtest.h>
#include <support/exact_containment.h>
#include <support/gauge_shapes.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>

namespace {

TEST(EdgeTree, EdgesComeRingByRingInTheirOrder) {
  const auto outline = pointsOf("0 0, 4 0, 4 3");
  const auto hole = pointsOf("1 1");
  const gx_EdgeTree tree({{outline, true, 0, -1, 0}, {hole, true, 1, 0, 0}, {outline, false, 0, -1, 1}});
  ASSERT_EQ(tree.edges().size(), 6U);
  EXPECT_EQ(tree.edges()[0].a, gxVector<2>(4, 3));  // the closing edge
  EXPECT_EQ(tree.edges()[0].b, gxVector<2>(0, 0));
  EXPECT_EQ(tree.edges()[3].a, tree.edges()[3].b);
  EXPECT_EQ(tree.edges()[3].ring, 1U);
  EXPECT_EQ(tree.edges()[4].a, gxVector<2>(0, 0));
  EXPECT_EQ(tree.edges()[5].number, 1U);
  EXPECT_EQ(gx_EdgeTree().levels(), 0U);
}

TEST(EdgeTree, NearAndMeetingRunsLeaveNothingOut) {
  RandomShapes random("edge tree", 50);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.star(random.integer(3, 700), {0, 0}, 0.5, 2);
    const gx_EdgeTree tree({{points}});
    const gxVector<2> p(random.uniform(-3, 3), random.uniform(-3, 3));
    const double radius = random.uniform(0, 2);
    std::size_t seen = 0;
    tree.forEachNear(p, radius, [&](std::size_t first, std::size_t end) {
      for (std::size_t i = first; i < end; ++i)
        seen += tree.edges()[i].box().squareFrom(p) <= radius * radius;
    });
    std::size_t wanted = 0;
    for (const auto& e : tree.edges()) wanted += e.box().squareFrom(p) <= radius * radius;
    EXPECT_EQ(seen, wanted);
    std::size_t all = 0;
    const auto count = [&](std::size_t first, std::size_t end) {
      all += end - first;
      return false;
    };
    EXPECT_FALSE(tree.forEachRun([](const gx_Box&) { return true; }, count));
    EXPECT_EQ(all, points.size());
    EXPECT_TRUE(tree.forEachRun([](const gx_Box&) { return true; },
                                [](std::size_t, std::size_t) { return true; }));
  }
}

TEST(ParityGrid, NoEdges) {
  const gx_ParityGrid grid{std::span<const gx_Edge>()};
  EXPECT_FALSE(grid.at({0, 0}).odd);
  EXPECT_FALSE(gx_parityByScan({}, {0, 0}).odd);
}

// Integer points, where every coincidence happens, against whole numbers.
TEST(ParityGrid, LatticeOutlinesAgainstWholeNumbers) {
  RandomShapes random("parity grid on a lattice", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<gxVector<2>> points;
    const int count = random.integer(3, random.chance(0.2) ? 60 : 9);
    const int size = random.integer(1, 8);
    for (int i = 0; i < count; ++i)
      points.emplace_back(random.integer(-size, size), random.integer(-size, size));
    const ExactOutline exact(points);
    const gx_EdgeTree tree({{points}});
    const gx_ParityGrid grid(tree.edges());
    for (int x = -2 * size - 1; x <= 2 * size + 1; ++x) {
      for (int y = -2 * size - 1; y <= 2 * size + 1; ++y) {
        const gxVector<2> p(x / 2.0, y / 2.0);
        const ExactSide side = exact.locate(p);
        const bool on = side == ExactSide::eOnVertex || side == ExactSide::eOnEdge;
        for (const auto& found : {grid.at(p), gx_parityByScan(tree.edges(), p)}) {
          ASSERT_EQ(found.onEdge, on) << x << ' ' << y;
          if (on) continue;
          ASSERT_EQ(found.odd, side == ExactSide::eInside) << x << ' ' << y;
        }
        EXPECT_EQ(grid.at(p).edge, gx_parityByScan(tree.edges(), p).edge);
      }
    }
  }
}

TEST(ParityGrid, AnyFiniteOutlineAsTheScanSays) {
  RandomShapes random("parity grid", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.finiteOutline();
    const gx_EdgeTree tree({{points}});
    const gx_ParityGrid grid(tree.edges());
    for (int k = 0; k < 60; ++k) {
      const auto p = random.pointNear(points);
      if (!std::isfinite(p.x()) || !std::isfinite(p.y())) continue;  // what a locator does not ask
      const auto found = grid.at(p);
      const auto wanted = gx_parityByScan(tree.edges(), p);
      EXPECT_EQ(found.odd, wanted.odd);
      EXPECT_EQ(found.onEdge, wanted.onEdge);
      EXPECT_EQ(found.edge, wanted.edge);
    }
  }
}

}  // namespace
