// From rings to regions: validity by the plain test, areas by the slabs, the same bits however it is said.
// Covers overlay/internal/noding.cpp
// Covers overlay/internal/graph.cpp
// Covers overlay/internal/winding.cpp
// Covers overlay/internal/ring_trace.cpp
#include "rings_of_sets.h"

#include <support/overlay_shapes.h>
#include <support/shape_text.h>
#include <support/slab_judge.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace {

using judge::overlaid;
using judge::Overlaid;
using slow::Set;
using M = gx_Membership;

Set outlineOf(const std::string& points) {
  return {{pointsOf(points), {}}};
}

std::vector<bool> sameSets(const Set& a, const Set& b) {
  std::vector<bool> same = {a.size() == b.size()};
  for (std::size_t i = 0; same[0] && i < a.size(); ++i) {
    same.push_back(a[i].outline == b[i].outline && a[i].holes.size() == b[i].holes.size());
    for (std::size_t h = 0; same.back() && h < a[i].holes.size(); ++h) {
      same.push_back(a[i].holes[h].outline == b[i].holes[h].outline);
    }
  }
  return same;
}

void expectSame(const Set& a, const Set& b) {
  const std::vector<bool> same = sameSets(a, b);
  EXPECT_EQ(std::count(same.begin(), same.end(), false), 0);
}

judge::Combination combinationOf(M::Question question) {
  return [question](const std::vector<bool>& held) {
    const auto count = static_cast<std::size_t>(std::count(held.begin(), held.end(), true));
    switch (question) {
      case M::eUnion: return count != 0;
      case M::eIntersection: return count == held.size();
      case M::eDifference: return held[0] && count == 1;
      default: return count % 2 != 0;
    }
  };
}

// What the result has to be like: how far an area may be off where vertices were rounded.
double allowance(const std::vector<Set>& operands, const Overlaid& result) {
  judge::Rings rings;
  for (const Set& set : operands) {
    for (judge::Ring& ring : judge::ringsOf(set)) rings.push_back(std::move(ring));
  }
  const double bend = (result.snapped != 0 ? 1.5 : 0.7072 * result.rounds) * judge::ulpOf(rings);
  return 1.01 * bend * judge::lengthOf(rings);
}

}  // namespace

TEST(Arrangement, OfNothingHasNoRegions) {
  EXPECT_TRUE(overlaid({{}}, gx_RingRule::eEvenOdd, M::eUnion).set.empty());
  EXPECT_TRUE(overlaid({outlineOf("")}, gx_RingRule::eEvenOdd, M::eUnion).set.empty());
  EXPECT_TRUE(overlaid({outlineOf("1 1")}, gx_RingRule::eEvenOdd, M::eUnion).set.empty());
  EXPECT_TRUE(overlaid({outlineOf("1 1, 2 2, 3 3")}, gx_RingRule::eEvenOdd, M::eUnion).set.empty());
}

TEST(Arrangement, ARingWithoutMeetingsComesBackFromItsFirstVertexCounterClockwise) {
  const Overlaid result =
      overlaid({outlineOf("4 0, 0 0, 0 4, 2 4, 4 4")}, gx_RingRule::eEvenOdd, M::eUnion);
  ASSERT_EQ(result.set.size(), 1U);
  EXPECT_EQ(result.set[0].outline, pointsOf("0 0, 4 0, 4 4, 2 4, 0 4"));
}

TEST(Arrangement, TheNodeOfAMeetingThatIsNoBendIsLeftOut) {
  const Overlaid inside = overlaid({outlineOf("0 0, 8 0, 8 8, 0 8"), outlineOf("4 0, 6 4, 2 4")},
                                   gx_RingRule::eEvenOdd, M::eUnion);
  ASSERT_EQ(inside.set.size(), 1U);
  EXPECT_EQ(inside.set[0].outline, pointsOf("0 0, 8 0, 8 8, 0 8"));
}

TEST(Arrangement, AVertexInLineStaysAndSoDoesWhereAnotherBorderTouches) {
  const Overlaid result = overlaid({outlineOf("0 0, 4 0, 8 0, 8 8, 0 8"), outlineOf("6 0, 7 -2, 5 -2")},
                                   gx_RingRule::eEvenOdd, M::eUnion);
  ASSERT_EQ(result.set.size(), 2U);
  EXPECT_EQ(result.set[0].outline, pointsOf("0 0, 4 0, 6 0, 8 0, 8 8, 0 8"));
  EXPECT_EQ(judge::faultOf(result.set), "");
}

TEST(Arrangement, AHoleThatTouchesItsOutlineTwiceMakesTwoRegions) {
  const Set set = {{pointsOf("0 0, 10 0, 10 10, 0 10"), {{pointsOf("0 5, 5 8, 10 5, 5 2"), {}}}}};
  const Overlaid result = overlaid({set}, gx_RingRule::eEvenOdd, M::eUnion);
  ASSERT_EQ(result.set.size(), 2U);
  EXPECT_EQ(judge::areaOf(result.set), 70.0);
}

TEST(Arrangement, RegionsInTheHolesOfOthersFiftyDeep) {
  Set set;
  for (int i = 0; i < 50; ++i) {
    const auto square = [](double r) { return judge::Ring{{-r, -r}, {r, -r}, {r, r}, {-r, r}}; };
    set.push_back({square(100.0 - 2 * i), {{square(99.5 - 2 * i), {}}}});
  }
  const Overlaid result = overlaid({set}, gx_RingRule::eNonZero, M::eUnion);
  ASSERT_EQ(result.set.size(), 50U);
  EXPECT_EQ(judge::faultOf(result.set), "");
  for (const slow::Region& region : result.set) EXPECT_EQ(region.holes.size(), 1U);
}

TEST(Arrangement, AThousandEqualSquaresAreOne) {
  const std::vector<Set> operands(1000, outlineOf("0 0, 1 0, 1 1, 0 1"));
  const Overlaid all = overlaid(operands, gx_RingRule::eEvenOdd, M::eIntersection);
  ASSERT_EQ(all.set.size(), 1U);
  EXPECT_EQ(all.set[0].outline, pointsOf("0 0, 1 0, 1 1, 0 1"));
  EXPECT_TRUE(overlaid(operands, gx_RingRule::eEvenOdd, M::eSymmetric).set.empty());
}

TEST(Arrangement, ACrossingThatRoundsOntoAVertex) {
  const auto far = [](const gxVector<2>& p) { return p + gxVector<2>(0x1p52, 0x1p52); };
  const Set set = mappedSet(outlineOf("0 0, 3 1, 1 -1, -1 2"), far);
  const Overlaid result = overlaid({set}, gx_RingRule::eEvenOdd, M::eUnion);
  expectSame(result.set, mappedSet(outlineOf("0 0, 1 -1, 3 1"), far));
  EXPECT_EQ(result.rounds, 3U);
}

TEST(Arrangement, ZerosOfEitherSignAreOneNodeAndThatIsPlusZero) {
  const Overlaid result =
      overlaid({{{{{-0.0, -0.0}, {1, -0.0}, {1, 1}}, {}}}, {{{{0.0, -0.0}, {-1, -1}, {-0.0, -1}}, {}}}},
               gx_RingRule::eEvenOdd, M::eUnion);
  ASSERT_EQ(result.set.size(), 2U);
  EXPECT_EQ(judge::faultOf(result.set), "");
  for (const slow::Region& region : result.set) {
    for (const auto& p : region.outline) {
      if (p == gxVector<2>(0, 0)) {
        EXPECT_FALSE(std::signbit(p.x()));
        EXPECT_TRUE(std::signbit(p.y()));
      }
    }
  }
}

TEST(Arrangement, RandomOperandsGiveValidRegionsInOrderAndTheSameHoweverTheyAreSaid) {
  RandomShapes random("arrangements", 400);
  std::map<std::uint32_t, int> rounds;
  int snapped = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OverlayFamily family = someFamily(random);
    SCOPED_TRACE(nameOf(family));
    const std::vector<Set> operands = overlayOperands(random, family, random.integer(1, 3));
    const auto rule = random.chance(0.5) ? gx_RingRule::eEvenOdd : gx_RingRule::eNonZero;
    const auto question = static_cast<M::Question>(random.integer(0, 3));
    const Overlaid result = overlaid(operands, rule, question);
    ASSERT_EQ(judge::faultOf(result.set), "");
    ASSERT_EQ(judge::disorderOf(result.set), "");
    std::vector<Set> said;
    for (const Set& set : operands) said.push_back(saidDifferently(random, set, true));
    if (question != M::eDifference) std::reverse(said.begin(), said.end());
    expectSame(overlaid(said, rule, question).set, result.set);
    // What comes out, put in again, comes out bit by bit.
    expectSame(overlaid({result.set}, rule, M::eUnion).set, result.set);
    ++rounds[result.rounds];
    snapped += result.snapped != 0 ? 1 : 0;
  }
  EXPECT_GT(rounds[3], 5);
  EXPECT_GT(snapped, 1);
}

TEST(Arrangement, AreasOfLatticesAreThoseOfTheSlabs) {
  RandomShapes random("arrangements on lattices", 150);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OverlayFamily family =
        random.chance(0.7) ? OverlayFamily::eLattice : OverlayFamily::eTouchingHoles;
    std::vector<Set> operands = overlayOperands(random, family, random.integer(1, 3));
    for (Set& set : operands) set = mappedSet(set, [](const auto& p) { return p * 2.0; });
    const auto question = static_cast<M::Question>(random.integer(0, 3));
    for (const auto& [rule, judged] : {std::pair{gx_RingRule::eEvenOdd, judge::Rule::eEvenOdd},
                                       {gx_RingRule::eNonZero, judge::Rule::eNonZero},
                                       {gx_RingRule::ePositive, judge::Rule::ePositive}}) {
      const Overlaid result = overlaid(operands, rule, question);
      ASSERT_EQ(judge::faultOf(result.set), "");
      const double exact =
          judge::judgeBySlabs(judge::combined(operands, judged, combinationOf(question))).area;
      ASSERT_NEAR(judge::areaOf(result.set), exact, allowance(operands, result) + 1e-15 * exact);
    }
  }
}

TEST(Arrangement, WindingOfARingAroundAPoint) {
  const judge::Ring ring = pointsOf("0 0, 4 0, 4 4, 0 4, 0 0, 4 0, 4 4, 0 4, 2 2");
  gx_RingList list;
  list.add(ring, {});
  const gxOverlayLimits limits;
  gx_Steps steps(limits);
  const gx_Arrangement arrangement(list, steps);
  EXPECT_EQ(gx_windingOf(arrangement.noding(), 0, {3, 1}), 2);
  EXPECT_EQ(gx_windingOf(arrangement.noding(), 0, {0.5, 2}), 1);
  EXPECT_EQ(gx_windingOf(arrangement.noding(), 0, {5, 2}), 0);
  EXPECT_EQ(gx_windingOf(arrangement.noding(), 0, {-1, 2}), 0);
}

TEST(Arrangement, TooManyMeetingsAreRefused) {
  judge::Ring comb;
  for (int i = 0; i < 40; ++i) comb.emplace_back(i, i % 2 == 0 ? 0 : 10);
  judge::Ring across;
  for (const auto& p : comb) across.emplace_back(p.y() * 4, p.x() / 8);
  gx_RingList list;
  list.add(comb, {});
  list.add(across, {});
  gxOverlayLimits limits;
  limits.maxMeetings = 100;
  gx_Steps steps(limits);
  EXPECT_THROW(gx_Arrangement(list, steps), gxLimitExceeded);
}
