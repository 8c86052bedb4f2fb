// Repair by rule: by hand, against the judges, and what is refused.
// Covers overlay/internal/operand_rings.cpp
// Covers overlay/internal/outer_faces.cpp
// Covers overlay/internal/point_in_ring.h
#include <overlay/internal/point_in_ring.h>
#include <overlay/plain_sets.h>
#include <overlay/repair.h>
#include <overlay/troublemakers.h>
#include <support/shape_text.h>
#include <support/slab_judge.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using slow::Set;

constexpr gxFillRule kRules[] = {gxFillRule::eEvenOdd, gxFillRule::eNonZero, gxFillRule::ePositive,
                                 gxFillRule::eOuter};
constexpr judge::Rule kJudged[] = {judge::Rule::eEvenOdd, judge::Rule::eNonZero, judge::Rule::ePositive,
                                   judge::Rule::eOuter};

gxRegion regionOf(const std::string& points) {
  return gxRegion(pointsOf(points));
}

Set repaired(const gxShapes& shapes, gxFillRule rule) {
  return plainSet(gfRepair(shapes, rule).regions);
}

double allowance(const Set& set, const gxRepairReport& report) {
  const judge::Rings rings = judge::ringsOf(set);
  return (report.ringsSnapped != 0 ? 1.5 : 3.0) * judge::ulpOf(rings) * judge::lengthOf(rings);
}

gxPtrHandle_const<gxRegion> holeOf(const std::string& points) {
  return gxPtrHandle_const<gxRegion>(new gxRegion(pointsOf(points)));
}

}  // namespace

TEST(Repair, ABowByTheFourRules) {
  const gxRegion bow = regionOf("0 0, 10 10, 10 0, 0 10");
  EXPECT_TRUE(areSame(repaired(bow, gxFillRule::eEvenOdd),
                      {{pointsOf("0 0, 5 5, 0 10"), {}}, {pointsOf("5 5, 10 0, 10 10"), {}}}));
  EXPECT_TRUE(areSame(repaired(bow, gxFillRule::eNonZero), repaired(bow, gxFillRule::eEvenOdd)));
  EXPECT_TRUE(areSame(repaired(bow, gxFillRule::ePositive), {{pointsOf("0 0, 5 5, 0 10"), {}}}));
  EXPECT_TRUE(areSame(repaired(bow, gxFillRule::eOuter), repaired(bow, gxFillRule::eEvenOdd)));
}

TEST(Repair, ALoopInside) {
  const gxRegion loop = regionOf("0 0, 6 0, 6 6, 2 6, 2 2, 4 2, 4 4, 0 4");
  const double areas[] = {28, 32, 32, 32};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(judge::areaOf(repaired(loop, kRules[i])), areas[i]) << i;
}

TEST(Repair, ByTheOuterRuleHolesAreFilledAndWhatLiesInThemIsGone) {
  gxRegion region = regionOf("0 0, 9 0, 9 9, 0 9");
  region.holes({holeOf("2 2, 7 2, 7 7, 2 7")});
  const std::vector<gxRegion> both = {region, regionOf("4 4, 5 4, 5 5"), regionOf("20 0, 21 0, 20 1")};
  EXPECT_TRUE(areSame(repaired(both, gxFillRule::eOuter),
                      {{pointsOf("0 0, 9 0, 9 9, 0 9"), {}}, {pointsOf("20 0, 21 0, 20 1"), {}}}));
  EXPECT_EQ(repaired(both, gxFillRule::eEvenOdd).size(), 3U);
}

TEST(Repair, AWallOfNoWidthHoldsByTheOuterRuleAlone) {
  const gxRegion wall = regionOf("0 0, 4 0, 4 4, 0 4, 0 0, 0 4, 4 4, 4 0");
  for (const gxFillRule rule : kRules) {
    EXPECT_EQ(judge::areaOf(repaired(wall, rule)), rule == gxFillRule::eOuter ? 16.0 : 0.0);
  }
}

TEST(Repair, AManyCorneredRingHoldsWhatIsInIt) {
  judge::Ring ring;
  for (int i = 0; i < 400; ++i)
    ring.emplace_back(100 * std::cos(i * 0.0157), 100 * std::sin(i * 0.0157));
  gx_PointInRing in(ring);
  EXPECT_TRUE(in.holds({0, 0}));
  EXPECT_TRUE(in.holds({70, 70}));
  EXPECT_FALSE(in.holds({72, 72}));
  EXPECT_FALSE(in.holds({200, 0}));
  EXPECT_FALSE(in.holds(ring[7]));
  EXPECT_FALSE(in.holds(ring[399]));
}

TEST(Repair, NothingComesOfNothing) {
  for (const gxFillRule rule : kRules) {
    EXPECT_TRUE(repaired(gxRegionSet(), rule).empty());
    EXPECT_TRUE(repaired(gxRegion(), rule).empty());
    EXPECT_TRUE(repaired(regionOf("1 1, 2 2"), rule).empty());
    EXPECT_TRUE(repaired(regionOf("1 1, 2 2, 3 3"), rule).empty());
  }
}

TEST(Repair, TheReportTellsWhatWasAndWhatIs) {
  gxRegion region = regionOf("0 0, 10 0, 10 10, 0 10");
  region.holes({holeOf("2 2, 4 2, 4 4, 2 4")});
  const gxRegion inside = regionOf("6 6, 7 6, 7 7, 6 7");
  const gxRepaired repaired = gfRepair(std::vector<gxRegion>{region, inside}, gxFillRule::eNonZero);
  EXPECT_EQ(repaired.report.areaBefore, 97.0);
  EXPECT_EQ(repaired.report.areaAfter, 96.0);
  EXPECT_EQ(repaired.report.regions, 1U);
  EXPECT_EQ(repaired.report.holes, 1U);
  EXPECT_EQ(repaired.report.ringsDropped, 1U);
  EXPECT_EQ(repaired.report.nodes, 3U);
  EXPECT_EQ(repaired.report.ringsSnapped, 0U);
  EXPECT_EQ(repaired.report.largestMove, 0.0);
}

TEST(Repair, ARingThatGoesOnAGridIsReported) {
  judge::Ring ring = pointsOf("55 3, 8 2, 54 3, 2 0");
  for (auto& p : ring) p = gxVector<2>(1, 1) + p * 0x1p-52;
  EXPECT_EQ(gfRepair(gxRegion(ring)).report.ringsSnapped, 1U);
}

TEST(Repair, RandomShapesByEveryRuleAgainstTheSlabs) {
  RandomShapes random("repair on lattices", 150);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OverlayFamily family =
        random.chance(0.7) ? OverlayFamily::eLattice : OverlayFamily::eTouchingHoles;
    const Set set =
        mappedSet(overlayOperands(random, family, 1)[0], [](const auto& p) { return p * 2.0; });
    for (int i = 0; i < 4; ++i) {
      const gxRepaired result = gfRepair(librarySet(set), kRules[i]);
      const Set plain = plainSet(result.regions);
      ASSERT_EQ(judge::faultOf(plain), "") << "rule " << i;
      ASSERT_EQ(judge::disorderOf(plain), "") << "rule " << i;
      const double exact = judge::judgeBySlabs(judge::repaired(set, kJudged[i])).area;
      ASSERT_NEAR(judge::areaOf(plain), exact, allowance(set, result.report) + 1e-15 * exact)
          << "rule " << i;
      ASSERT_NEAR(result.report.areaAfter, exact, allowance(set, result.report) + 1e-13 * (1 + exact));
    }
  }
}

TEST(Repair, RandomShapesOfEveryFamilyAreValidAndTheSameHoweverTheyAreSaid) {
  RandomShapes random("repair", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Set set = overlayOperands(random, someFamily(random), 1)[0];
    const int rule = random.integer(0, 3);
    const Set result = repaired(librarySet(set), kRules[rule]);
    ASSERT_EQ(judge::faultOf(result), "");
    ASSERT_EQ(judge::disorderOf(result), "");
    const bool reverse = kRules[rule] != gxFillRule::ePositive;
    ASSERT_TRUE(
        areSame(repaired(librarySet(saidDifferently(random, set, reverse)), kRules[rule]), result));
    ASSERT_TRUE(
        areSame(repaired(librarySet(result),
                         kRules[rule] == gxFillRule::eOuter ? gxFillRule::eNonZero : kRules[rule]),
                result));
  }
}

TEST(Repair, WhatIsRefused) {
  try {
    gfRepair(std::vector<gxRegion>{regionOf("0 0, 1 0, 1 1"), regionOf("0 0, 1 0, nan 1")});
    FAIL();
  } catch (const gxContourDefs::BadParams& thrown) {
    EXPECT_NE(thrown.message().find(L"point 2 of ring 1 is not finite"), std::wstring::npos);
  }
  gxRegion nullHole = regionOf("0 0, 9 0, 9 9");
  gx_ValidRegion::setHoles(nullHole, {gxRegion::HoleHandle()});
  EXPECT_THROW(gfRepair(nullHole), gxBadPointer);
  const gxPtrHandle<gxRegion> own(new gxRegion(pointsOf("0 0, 9 0, 9 9")));
  const gxPtrHandle<gxRegion> its(new gxRegion(pointsOf("1 0, 9 0, 9 8")));
  gx_ValidRegion::setHoles(*own, {its});
  gx_ValidRegion::setHoles(*its, {own});
  EXPECT_THROW(gfRepair(*own), gxContourDefs::BadParams);
  gx_ValidRegion::setHoles(*its, {});
}

TEST(Repair, StopsWhereItIsToldTo) {
  judge::Ring comb;
  for (int i = 0; i < 200; ++i) comb.emplace_back(i, i % 2 == 0 ? 0 : 500);
  for (int i = 0; i < 200; ++i) comb.emplace_back(i % 2 == 0 ? -200 : 500, 200 - i);
  gxOverlayOptions options;
  options.limits.maxMeetings = 5000;
  EXPECT_THROW(gfRepair(gxRegion(comb), options), gxLimitExceeded);
  options.limits.maxMeetings = 1000000;
  EXPECT_NO_THROW(gfRepair(gxRegion(comb), options));
  int asked = 0;
  options.limits.stop = [&asked] { return ++asked == 2; };
  EXPECT_THROW(gfRepair(gxRegion(comb), options), gxStopped);
}
