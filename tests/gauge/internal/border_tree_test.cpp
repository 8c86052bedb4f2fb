// The nearest edge and containment over all rings, beside a walk over everything.
#include <gauge/internal/border_tree.h>
#include <gtest/gtest.h>
#include <support/plain_distance.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>

namespace {

TEST(BorderTree, NumbersEdgesRingByRing) {
  const auto first = pointsOf("0 0, 4 0, 4 4");
  const auto none = pointsOf("");
  const auto open = pointsOf("1 1, 2 1, 2 2");
  const gx_Rings rings{{first, true}, {none, true}, {open, false}};
  const gx_Frame frame(gx_boxOf(rings));
  const gx_BorderTree tree(rings, frame);
  ASSERT_EQ(tree.edges(), 5u);
  EXPECT_EQ(tree.rings(), 2u);
  EXPECT_EQ(tree.ringOf(2), 0u);
  EXPECT_EQ(tree.ringOf(3), 1u);
  EXPECT_EQ(tree.firstEdge(1), 3u);
  EXPECT_EQ(tree.endEdge(0), 3u);
  EXPECT_EQ(tree.endEdge(1), 5u);
  EXPECT_TRUE(tree.isClosed(0));
  EXPECT_FALSE(tree.isClosed(1));
  const gxPlace start = tree.placeOf(0, 0.0);
  EXPECT_EQ(start.ring, -1);
  EXPECT_EQ(start.point, gxVector<2>(4, 4));
  const gxPlace end = tree.placeOf(4, 1.0);
  EXPECT_EQ(end.ring, 1);
  EXPECT_EQ(end.edge, 1);
  EXPECT_EQ(end.point, gxVector<2>(2, 2));
  EXPECT_EQ(tree.placeOf(1, 0.25).point, gxVector<2>(1, 0));
}

TEST(BorderTree, StatusIsEmptyBadOrOk) {
  const auto none = pointsOf("");
  const auto some = pointsOf("0 0");
  const auto bad = pointsOf("0 nan");
  EXPECT_EQ(gx_statusOf({}), gxStatus::eEmpty);
  EXPECT_EQ(gx_statusOf({{none, true}}), gxStatus::eEmpty);
  EXPECT_EQ(gx_statusOf({{none, true}, {some, true}}), gxStatus::eOk);
  EXPECT_EQ(gx_statusOf({{some, true}, {bad, true}}), gxStatus::eNotFinite);
}

TEST(BorderTree, PieceMeasuresToItsEndsAndItsInside) {
  const gx_Piece piece{{0, 0}, {4, 0}};
  EXPECT_EQ(piece.squareFrom({-3, 4}), 25.0);
  EXPECT_EQ(piece.squareFrom({7, 4}), 25.0);
  EXPECT_EQ(piece.squareFrom({2, 3}), 9.0);
  EXPECT_EQ(piece.footFrom({-3, 4}), 0.0);
  EXPECT_EQ(piece.footFrom({7, 4}), 1.0);
  EXPECT_EQ(piece.footFrom({1, 4}), 0.25);
  const gx_Piece point{{1, 1}, {1, 1}};
  EXPECT_EQ(point.squareFrom({4, 5}), 25.0);
  EXPECT_EQ(point.footFrom({4, 5}), 0.0);
}

TEST(BorderTree, TheNearestEdgeIsThatOfAWalkOverAll) {
  RandomShapes random("border tree nearest", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<std::vector<gxVector<2>>> outlines;
    const int count = random.chance(0.5) ? 1 : random.integer(2, 12);
    for (int i = 0; i < count; ++i) outlines.push_back(random.finiteOutline());
    gx_Rings rings;
    for (const auto& outline : outlines) rings.push_back({outline, random.chance(0.7)});
    if (gx_statusOf(rings) != gxStatus::eOk) continue;
    const gx_Frame frame(gx_boxOf(rings));
    const gx_BorderTree tree(rings, frame);
    for (int k = 0; k < 20; ++k) {
      const gxVector<2> p(random.uniform(-3, 3), random.uniform(-3, 3));
      std::size_t best = 0;
      for (std::size_t e = 1; e < tree.edges(); ++e) {
        if (tree.squareFrom(e, p) < tree.squareFrom(best, p)) best = e;
      }
      const auto guess = static_cast<std::size_t>(random.integer(0, static_cast<int>(tree.edges()) - 1));
      EXPECT_EQ(tree.nearest(p, guess), best);
      std::vector<bool> visited(tree.edges(), false);
      tree.forEachWithin(p, 0.5, [&](std::size_t e) { visited[e] = true; });
      for (std::size_t e = 0; e < tree.edges(); ++e) {
        EXPECT_TRUE(visited[e] || tree.squareFrom(e, p) >= 0.2499);
      }
    }
  }
}

TEST(BorderTree, HoldsByTheEvenOddRuleOverAllRings) {
  RandomShapes random("border tree holds", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    gx_Rings rings{{shape.outline, true}};
    for (const auto& hole : shape.holes) rings.push_back({hole, true});
    if (gx_statusOf(rings) != gxStatus::eOk) continue;
    const gx_Frame frame(gx_boxOf(rings));
    const gx_BorderTree tree(rings, frame);
    for (int k = 0; k < 20; ++k) {
      const gxVector<2> p(random.uniform(-2, 2), random.uniform(-2, 2));
      bool inside = false;
      for (std::size_t e = 0; e < tree.edges(); ++e) {
        const gx_Piece& edge = tree.piece(e);
        if ((edge.a.y() > p.y()) == (edge.b.y() > p.y())) continue;
        const double x =
            edge.a.x() + (edge.b.x() - edge.a.x()) * ((p.y() - edge.a.y()) / (edge.b.y() - edge.a.y()));
        if (x > p.x()) inside = !inside;
      }
      EXPECT_EQ(tree.holds(p), inside);
    }
  }
}

TEST(BorderTree, OpenRingsHoldNothing) {
  const auto open = pointsOf("0 0, 4 0, 4 4, 0 4");
  const gx_Rings rings{{open, false}};
  EXPECT_FALSE(gx_BorderTree(rings, gx_Frame(gx_boxOf(rings))).holds({0, 0}));
}

}  // namespace
