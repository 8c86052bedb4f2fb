// Rings put on a grid.
#include "rings_of_sets.h"

#include <overlay/internal/snap.h>
#include <support/overlay_shapes.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using judge::Ring;

std::vector<gx_SnappedRing> snapped(const judge::Rings& rings, const std::vector<std::uint32_t>& which,
                                    bool together = false) {
  gx_EdgeSet edges;
  for (const Ring& ring : rings) edges.add(ring.data(), ring.size(), true);
  edges.finish();
  const gxOverlayLimits limits;
  gx_Steps steps(limits);
  auto result = gx_snapRings(edges, which, together, steps);
  std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) { return a.ring < b.ring; });
  return result;
}

Ring inUnits(const std::string& points) {
  Ring ring = pointsOf(points);
  for (auto& p : ring) p = gxVector<2>(1, 1) + p * 0x1p-52;
  return ring;
}

}  // namespace

TEST(Snap, VerticesOfOneBinadeStayAndEdgesPassTheCrossingsPixel) {
  const Ring creeping = inUnits("55 3, 8 2, 54 3, 2 0");
  const auto moved = snapped({creeping}, {0});
  ASSERT_EQ(moved.size(), 1U);
  std::size_t vertices = 0;
  for (std::size_t i = 0; i < moved[0].points.size(); ++i) {
    if (moved[0].sources[i] % 2 != 0) continue;
    EXPECT_EQ(moved[0].points[i], creeping[moved[0].sources[i] / 2]);
    ++vertices;
  }
  EXPECT_EQ(vertices, 4U);
  EXPECT_GT(moved[0].points.size(), 4U);
}

TEST(Snap, TheRingThatNeverSettlesInRoundsComesOutValid) {
  const Ring creeping = inUnits("55 3, 8 2, 54 3, 2 0");
  for (const auto rule : {gx_RingRule::eEvenOdd, gx_RingRule::eNonZero}) {
    const judge::Overlaid result = judge::overlaid({{{creeping, {}}}}, rule, gx_Membership::eUnion);
    EXPECT_EQ(result.snapped, 1U);
    EXPECT_EQ(result.move, 0.0);
    EXPECT_EQ(judge::faultOf(result.set), "");
  }
}

TEST(Snap, OnlyRingsNearTheOneNamedAreMoved) {
  const Ring one = pointsOf("0 0, 1 0, 1 1, 0 1");
  const Ring near = pointsOf("1 0.5, 2 0.5, 2 1");
  const Ring nearThat = pointsOf("1.5 0.3, 3 0.3, 3 2");
  const Ring away = pointsOf("5 5, 6 5, 6 6");
  const auto moved = snapped({one, near, nearThat, away}, {0});
  ASSERT_EQ(moved.size(), 3U);
  EXPECT_EQ(moved[2].ring, 2U);
  EXPECT_EQ(snapped({one, near, nearThat, away}, {3}).size(), 1U);
  EXPECT_EQ(snapped({one, near, nearThat, away}, {3, 0, 1}).size(), 4U);
  EXPECT_EQ(snapped({one, near, nearThat, away}, {3}, true).size(), 4U);
}

TEST(Snap, TheGridIsThatOfTheLargestCoordinateOfTheGroup) {
  const Ring small = {{0.1, 0.1}, {0.3, 0.1}, {0.2, 0.3}};
  const Ring large = {{0.15, 0.15}, {0x1p40, 0.2}, {0.15, 0.7}};
  const auto apart = snapped({small, {{5, 5}, {0x1p40, 5}, {5, 6}}}, {0});
  ASSERT_EQ(apart.size(), 1U);
  // Multiples of the spacing at 0.3, which all three are.
  EXPECT_NEAR(apart[0].points[0].x(), 0.1, 0x1p-54);
  const auto together = snapped({small, large}, {0});
  ASSERT_EQ(together.size(), 2U);
  for (const gx_SnappedRing& ring : together) {
    for (const auto& p : ring.points) {
      EXPECT_EQ(p.x(), std::nearbyint(p.x() * 0x1p12) * 0x1p-12);
      EXPECT_EQ(p.y(), std::nearbyint(p.y() * 0x1p12) * 0x1p-12);
    }
  }
}

TEST(Snap, RingsOnAGridDoNotCross) {
  RandomShapes random("snapped rings", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto operands = overlayOperands(random, OverlayFamily::eThin, 2);
    judge::Rings rings;
    for (const slow::Set& set : operands) {
      for (Ring& ring : judge::ringsOf(set)) rings.push_back(std::move(ring));
    }
    std::vector<std::uint32_t> all(rings.size());
    for (std::uint32_t i = 0; i < all.size(); ++i) all[i] = i;
    const double unit = judge::ulpOf(rings);
    judge::Rings moved;
    for (gx_SnappedRing& ring : snapped(rings, all, true)) {
      for (std::size_t i = 0; i < ring.points.size(); ++i) {
        if (ring.sources[i] % 2 != 0) continue;
        const gxVector<2> by = ring.points[i] - rings[ring.ring][ring.sources[i] / 2];
        EXPECT_LE(std::max(std::fabs(by.x()), std::fabs(by.y())), unit / 2);
      }
      moved.push_back(std::move(ring.points));
    }
    // Noding what is on the grid finds ends on edges, and no crossing: nothing is bent.
    gx_EdgeSet edges;
    for (const Ring& ring : moved) edges.add(ring.data(), ring.size(), true);
    edges.finish();
    const gxOverlayLimits limits;
    gx_Steps steps(limits);
    gx_Noding noding(edges, steps);
    EXPECT_TRUE(noding.run());
    for (const gx_Incidence& i : noding.incidences()) EXPECT_EQ(i.round, 0U);
  }
}
