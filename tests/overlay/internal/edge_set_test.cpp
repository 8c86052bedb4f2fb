// The list of edges: its numbering, what it drops and refuses, and its pairs against all pairs.
#include <cntr/contourdefs.h>
#include <overlay/internal/edge_set.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using P = gxVector<2>;
using Points = std::vector<P>;
using Pairs = std::multiset<std::pair<std::uint32_t, std::uint32_t>>;

struct Given {
  Points points;
  bool closed = true;
};

gx_EdgeSet setOf(const std::vector<Given>& rings) {
  gx_EdgeSet set;
  for (const Given& g : rings) set.add(g.points.data(), g.points.size(), g.closed);
  set.finish();
  return set;
}

std::vector<std::uint32_t> edgesOf(const gx_EdgeSet& set) {
  std::vector<std::uint32_t> edges;
  for (const std::uint32_t r : set.order()) {
    for (std::uint32_t i = set.ring(r).first; i < set.ring(r).end; ++i) edges.push_back(i);
  }
  return edges;
}

bool follow(const gx_EdgeSet& set, std::uint32_t i, std::uint32_t j) {
  const gx_EdgeSet::Ring& ring = set.ring(set.ringOf(i));
  return set.ringOf(i) == set.ringOf(j) &&
         (j == i + 1 || (ring.closed && i == ring.first && j + 1 == ring.end));
}

Pairs allPairs(const gx_EdgeSet& set) {
  Pairs pairs;
  const std::vector<std::uint32_t> edges = edgesOf(set);
  for (const std::uint32_t i : edges) {
    for (const std::uint32_t j : edges) {
      if (i < j && !follow(set, i, j) && set.boxOf(i).meets(set.boxOf(j))) pairs.emplace(i, j);
    }
  }
  return pairs;
}

Pairs foundPairs(const gx_EdgeSet& set) {
  Pairs pairs;
  set.forEachPair(
      [&pairs](std::uint32_t i, std::uint32_t j) {
        pairs.emplace(i, j);
        return false;
      },
      [](std::size_t) {});
  return pairs;
}

std::vector<Given> randomRings(std::mt19937& random, std::size_t rings, std::size_t most) {
  std::uniform_real_distribution<double> at(0.0, 20.0);
  std::uniform_real_distribution<double> step(-1.0, 1.0);
  std::vector<Given> given(rings);
  for (Given& g : given) {
    P p(at(random), at(random));
    for (std::size_t i = random() % (most + 1); i > 0; --i) {
      p = p + P(step(random), std::round(step(random)));
      g.points.push_back(p);
    }
    g.closed = random() % 4 != 0;
  }
  return given;
}

}  // namespace

TEST(EdgeSet, AClosedRingHasItsFirstPointBehindItsLast) {
  const gx_EdgeSet set = setOf({{{{0, 0}, {1, 0}, {0, 1}}}});
  ASSERT_EQ(set.size(), 4U);
  EXPECT_EQ(set.ring(0).edges(), 3U);
  EXPECT_EQ(set.from(2), P(0, 1));
  EXPECT_EQ(set.to(2), P(0, 0));
  EXPECT_EQ(set.source(2), 4U);
  EXPECT_EQ(set.source(3), 0U);
}

TEST(EdgeSet, AnOpenChainHasNoClosingEdge) {
  const gx_EdgeSet set = setOf({{{{0, 0}, {1, 0}, {0, 1}}, false}});
  EXPECT_EQ(set.size(), 3U);
  EXPECT_EQ(set.ring(0).edges(), 2U);
}

TEST(EdgeSet, PointsThatRepeatTheOneBeforeAreDroppedAcrossTheClosingEdgeToo) {
  const gx_EdgeSet set = setOf({{{{0, 0}, {0, -0.0}, {1, 0}, {1, 0}, {0, 1}, {0, 0}, {0, 0}}}});
  ASSERT_EQ(set.ring(0).edges(), 3U);
  EXPECT_EQ(set.point(1), P(1, 0));
  EXPECT_EQ(set.source(1), 4U);
  EXPECT_EQ(set.source(2), 8U);
}

TEST(EdgeSet, RingsWithoutALengthHaveNoEdges) {
  const gx_EdgeSet set =
      setOf({{{}}, {{{1, 1}}}, {{{2, 2}, {2, 2}}}, {{{3, 3}}, false}, {{{0, 0}, {1, 1}}}});
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(set.ring(i).edges(), 0U) << i;
  EXPECT_EQ(set.ring(4).edges(), 2U);
  EXPECT_TRUE(foundPairs(set).empty());
  EXPECT_TRUE(foundPairs(setOf({})).empty());
}

TEST(EdgeSet, NumbersThatAreGivenComeBackAsSources) {
  const Points points = {{0, 0}, {0, 0}, {1, 0}, {0, 1}};
  const std::vector<std::uint32_t> sources = {7, 8, 9, 11};
  gx_EdgeSet set;
  set.add(points.data(), points.size(), true, sources.data());
  set.finish();
  EXPECT_EQ(set.source(0), 7U);
  EXPECT_EQ(set.source(1), 9U);
  EXPECT_EQ(set.source(2), 11U);
  EXPECT_EQ(set.source(3), 7U);
}

TEST(EdgeSet, ACoordinateThatIsNotFiniteIsRefusedWithItsPlace) {
  for (const double bad :
       {std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::infinity()}) {
    try {
      setOf({{{{0, 0}}}, {{{0, 0}, {1, 0}, {0, bad}}}});
      FAIL();
    } catch (const gxContourDefs::BadParams& thrown) {
      EXPECT_NE(thrown.message().find(L"point 2 of ring 1 is not finite"), std::wstring::npos);
    }
  }
}

TEST(EdgeSet, EveryPairOfEdgesWhoseBoxesMeetIsFoundOnce) {
  std::mt19937 random(31);
  std::size_t pairs = 0;
  for (int round = 0; round < 60; ++round) {
    const gx_EdgeSet set = setOf(randomRings(random, 1 + random() % 30, 1 + random() % 90));
    const Pairs expected = allPairs(set);
    ASSERT_EQ(foundPairs(set), expected) << "round " << round;
    pairs += expected.size();
  }
  EXPECT_GT(pairs, 10000U);
}

TEST(EdgeSet, TheSearchStopsWhereAVisitSaysSo) {
  const gx_EdgeSet set = setOf({{{{0, 0}, {10, 10}, {10, 0}, {0, 10}, {0, 5}, {10, 5}}}});
  int visits = 0;
  EXPECT_TRUE(set.forEachPair([&visits](std::uint32_t, std::uint32_t) { return ++visits == 2; },
                              [](std::size_t) {}));
  EXPECT_EQ(visits, 2);
}

TEST(EdgeSet, TheEdgesWhoseBoxesMeetABoxAreFoundOfAllRingsAndOfOne) {
  std::mt19937 random(32);
  for (int round = 0; round < 100; ++round) {
    const gx_EdgeSet set = setOf(randomRings(random, 1 + random() % 30, 1 + random() % 90));
    const gx_Box box{3.0, 4.0, 3.0 + static_cast<double>(random() % 9), 9.0};
    const std::size_t ring = random() % set.rings();
    std::vector<std::uint32_t> all;
    std::vector<std::uint32_t> one;
    std::vector<std::uint32_t> foundAll;
    std::vector<std::uint32_t> foundOne;
    for (const std::uint32_t edge : edgesOf(set)) {
      if (!set.boxOf(edge).meets(box)) continue;
      all.push_back(edge);
      if (set.ringOf(edge) == ring) one.push_back(edge);
    }
    set.forEachMeeting(box, [&](std::uint32_t edge) { foundAll.push_back(edge); });
    set.forEachOfRing(
        set.ring(ring), [&](const gx_Box& b) { return b.meets(box); },
        [&](std::uint32_t edge) { foundOne.push_back(edge); });
    ASSERT_EQ(foundAll, all) << "round " << round;
    ASSERT_EQ(foundOne, one) << "round " << round;
  }
}

TEST(EdgeSet, TheJointsOfRingsAndChains) {
  const gx_EdgeSet set =
      setOf({{{{0, 0}, {1, 0}, {0, 1}}}, {{{0, 0}, {1, 0}, {0, 1}}, false}, {{{0, 0}, {5, 5}}}});
  std::vector<std::pair<std::uint32_t, std::uint32_t>> joints;
  set.forEachJoint([&](std::uint32_t i, std::uint32_t j) { joints.emplace_back(i, j); });
  const std::uint32_t second = set.ring(1).first;
  const std::uint32_t third = set.ring(2).first;
  const std::vector<std::pair<std::uint32_t, std::uint32_t>> expected = {
      {0, 1}, {1, 2}, {2, 0}, {second, second + 1}, {third, third + 1}, {third + 1, third}};
  EXPECT_EQ(joints, expected);
}
