// What operations cost in steps, and how they are stopped.
// Covers base/velstd/budget.cpp
#include <cntr/regionst.h>

#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/region_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_shapes.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace {

using Handles = std::vector<Handle>;

constexpr double kPi = 3.141592653589793;

// A circle of 1,500 pixels with a small loop outside at every 20th vertex.
Points circleWithLoops(int count) {
  Points points;
  const double step = 2 * kPi / count;
  const double edge = 1500.0 * step;
  for (int i = 0; i < count; ++i) {
    const V out(std::cos(i * step), std::sin(i * step));
    const V along(-out.y(), out.x());
    const V at = out * 1500.0;
    if (i % 20 != 10) {
      points.push_back(at);
      continue;
    }
    points.insert(points.end(),
                  {at + along * (0.5 * edge), at + out * (0.8 * edge), at - along * (0.5 * edge)});
  }
  return points;
}

// A rough spiral of seven turns, which its closing edge crosses.
Points sevenTurns(int count) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double turn = 7.0 * i / count;
    const double radius = 1000.0 + 40.0 * turn + 3.0 * std::sin(74.0 * kPi * turn);
    points.emplace_back(radius * std::cos(2 * kPi * turn), radius * std::sin(2 * kPi * turn));
  }
  return points;
}

// A comb of so many teeth along x, or along y.
Points comb(int teeth, bool isAcross) {
  Points points;
  for (int i = 0; i < teeth; ++i) {
    points.emplace_back(2.0 * i + 1.0, 0.0);
    points.emplace_back(2.0 * i + 1.5, 2.0 * teeth);
    points.emplace_back(2.0 * i + 2.0, 0.0);
  }
  points.emplace_back(teeth, -1.0);
  if (isAcross) {
    for (V& p : points) p = V(p.y(), p.x());
  }
  return points;
}

Handles copiesOf(const Points& outline, int count) {
  return Handles(static_cast<std::size_t>(count), Handle(new gxRegion(outline)));
}

// Triangles anywhere in a square of that side.
Handles cluster(int count, double side) {
  RandomShapes random("cluster of triangles", 1);
  random.next();
  Handles handles;
  for (int i = 0; i < count; ++i) {
    handles.emplace_back(
        new gxRegion(random.star(3, {random.uniform(0.0, side), random.uniform(0.0, side)}, 2.0, 4.0)));
  }
  return handles;
}

double steps(const std::function<void(gxBudget&)>& operation) {
  gxBudget budget;
  operation(budget);
  return static_cast<double>(budget.spent());
}

double regularizing(const Points& outline) {
  return steps([&outline](gxBudget& budget) {
    gxRegion result;
    gxRegion(outline).regularize(result, budget);
  });
}

// Up to the end, or to the first region that is refused: all are merged by then.
double regularizing(const Handles& regions) {
  return steps([&regions](gxBudget& budget) {
    gxRegionSet result;
    try {
      gxRegionSet(regions).regularize(result, budget);
    } catch (const gxContourDefs::BadParams&) {
      EXPECT_TRUE(result.regions().empty());
    }
  });
}

// ---- Near-linear --------------------------------------------------------------------------------

TEST(Steps, OfARepairGrowWithTheSmallLoopsOfAnOutline) {
  EXPECT_LT(regularizing(circleWithLoops(20'000)) / regularizing(circleWithLoops(2'000)), 20.0);
}

TEST(Steps, OfARepairGrowWithThePointsOfAWoundOutline) {
  EXPECT_LT(regularizing(sevenTurns(8'000)) / regularizing(sevenTurns(800)), 20.0);
}

TEST(Steps, OfASetRepairGrowWithTheNumberOfEqualRegions) {
  const Points triangle = {{0, 0}, {10, 0}, {3, 8}};
  EXPECT_LT(regularizing(copiesOf(triangle, 2'000)) / regularizing(copiesOf(triangle, 200)), 20.0);
}

TEST(Steps, OfASetRepairGrowWithTheNumberOfClusteredRegions) {
  EXPECT_LT(regularizing(cluster(4'000, 600.0)) / regularizing(cluster(400, 190.0)), 20.0);
}

TEST(Steps, OfAYesOrNoEndAtTheFirstHit) {
  const gxRegion one(comb(150, false));
  const gxRegion other(comb(150, true));
  EXPECT_GT(steps([&](gxBudget& budget) { one.gxContour::intersections(other, budget); }), 10'000.0);
  const gxRegionSet set({shared(one), shared(other)});
  EXPECT_LT(steps([&](gxBudget& budget) { EXPECT_TRUE(set.isSelfIntersecting(budget)); }), 2'000.0);
}

// ---- The same answers ---------------------------------------------------------------------------

TEST(Steps, SetsOfEqualAndOfClusteredRegionsAreRepairedAsOneAfterTheOther) {
  RandomShapes random("equal and clustered sets", 30);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    slow::Set set;
    const int count = random.integer(16, 40);
    const double side = random.chance(0.4) ? 0.0 : random.uniform(1.0, 60.0);
    const Points shape = random.star(random.integer(3, 8), {0.0, 0.0}, 1.0, 5.0);
    for (int i = 0; i < count; ++i) {
      const V moved(random.uniform(0.0, side), random.uniform(0.0, side));
      Points outline = shape;
      if (random.chance(0.3)) outline = random.star(random.integer(3, 8), {0.0, 0.0}, 1.0, 5.0);
      for (V& p : outline) p = p + (side == 0.0 ? V(0, 0) : moved);
      set.push_back({outline, {}});
    }
    const gxRegionSet fast = setOf(set);
    const auto repaired = [&fast](bool hull) {
      gxRegionSet result;
      hull ? fast.outerHull(result) : fast.regularize(result);
      return plainOf(result);
    };
    EXPECT_TRUE(agree([&] { return repaired(false); }, [&] { return slow::regularize(set); }));
    EXPECT_TRUE(agree([&] { return repaired(true); }, [&] { return slow::outerHull(set); }));
  }
}

TEST(Steps, AnOutlineThatRepeatsItsEdgesCrossesItselfWhereOnePassDoes) {
  RandomShapes random("repeated edges", 20);
  int crossing = 0;
  bool isStar = false;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    isStar = !isStar;
    const OutlineKind kind = random.chance(0.5) ? OutlineKind::eCloud : OutlineKind::eLattice;
    const Points once = isStar ? random.star(random.integer(3, 9), {0.0, 0.0}, 1.0, 5.0)
                               : random.outline(kind, random.integer(5, 8));
    Points often;
    while (often.size() < 400) often.insert(often.end(), once.begin(), once.end());
    const bool isCrossing = slow::isSelfIntersecting({often, true});
    EXPECT_EQ(gxContour(often, true).isSelfIntersecting(), isCrossing);
    crossing += isCrossing ? 1 : 0;
  }
  EXPECT_GT(crossing, 2);
  EXPECT_LT(crossing, 18);
}

TEST(Steps, WhetherOutlinesMeetIsWhetherTheyHaveACrossing) {
  RandomShapes random("outlines that meet", 300);
  int meeting = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto outline = [&random] {
      const int count = random.chance(0.5) ? random.integer(65, 200) : random.integer(3, 12);
      const V center(random.uniform(-9.0, 9.0), random.uniform(-9.0, 9.0));
      return random.star(count, center, 3.0, 6.0);
    };
    const Points one = outline();
    const Points other = random.chance(0.1) ? one : outline();
    const bool doMeet = !slow::intersections(slow::Outline{one, true}, {other, true}).empty();
    gxRegion region(one);
    EXPECT_EQ(messageOfBadParams([&] { region.holes({shared(gxRegion(other))}); }) ==
                  L"holes cannot intersect region",
              doMeet);
    meeting += doMeet ? 1 : 0;
  }
  EXPECT_GT(meeting, 50);
  EXPECT_LT(meeting, 250);
}

// ---- Stopping -----------------------------------------------------------------------------------

// Runs an operation with budgets from none to enough; each time it is stopped, `check` looks at what is left.
// Returns how often it was stopped.
int stopEverywhere(const std::function<void(gxBudget&)>& operation, const std::function<void()>& check) {
  int stopped = 0;
  for (std::uint64_t most = 0;; most = most * 3 / 2 + 1) {
    gxBudget budget(most);
    try {
      operation(budget);
      return stopped;
    } catch (const gxStopped&) {
      ++stopped;
      EXPECT_EQ(budget.spent() > most, true);
      check();
    }
  }
}

TEST(Stopping, ARepairLeavesRegionAndResultAsTheyWere) {
  const Points outline = circleWithLoops(400);
  gxRegion expectedRegular;
  gxRegion expectedHull;
  gxRegion(outline).regularize(expectedRegular);
  gxRegion(outline).outerHull(expectedHull);
  for (const bool hull : {false, true}) {
    const gxRegion region(outline);
    gxRegion result(square(1, 1, 1));
    const int stopped = stopEverywhere(
        [&](gxBudget& budget) {
          hull ? region.outerHull(result, budget) : region.regularize(result, budget);
        },
        [&] {
          EXPECT_EQ(result.points(), square(1, 1, 1));
          EXPECT_EQ(region.points(), outline);
        });
    EXPECT_GT(stopped, 10);
    EXPECT_TRUE(sameBits(result.points(), (hull ? expectedHull : expectedRegular).points()));
  }
}

TEST(Stopping, ARepairIntoItselfChangesNothing) {
  gxRegion region(circleWithLoops(400));
  gxBudget budget(static_cast<std::uint64_t>(regularizing(region.points()) / 2));
  EXPECT_THROW(region.regularize(region, budget), gxStopped);
  EXPECT_EQ(region.points(), circleWithLoops(400));
  gxRegion expected;
  gxRegion(circleWithLoops(400)).regularize(expected);
  region.regularize(region);
  EXPECT_TRUE(sameBits(region.points(), expected.points()));
}

TEST(Stopping, ASetRepairLeavesSetAndResultAsTheyWere) {
  const Handles regions = cluster(60, 30.0);
  gxRegionSet expected;
  gxRegionSet(regions).regularize(expected);
  const gxRegionSet set(regions);
  gxRegionSet result({shared(gxRegion(square(1, 1, 1)))});
  const gxRegionSet before(result);
  const int stopped = stopEverywhere([&](gxBudget& budget) { set.regularize(result, budget); },
                                     [&] {
                                       EXPECT_TRUE(result == before);
                                       EXPECT_EQ(set.regions().size(), regions.size());
                                     });
  EXPECT_GT(stopped, 5);
  EXPECT_TRUE(result == expected);
  gxRegionSet hull;
  gxBudget none(0);
  EXPECT_THROW(gxRegionSet(regions).outerHull(hull, none), gxStopped);
}

TEST(Stopping, QuestionsRememberNothingAndAnswerLater) {
  const Points outline = circleWithLoops(400);
  const gxContour contour(outline, true);
  EXPECT_GT(
      stopEverywhere([&](gxBudget& budget) { EXPECT_TRUE(contour.isSelfIntersecting(budget)); }, [] {}),
      0);
  const gxContour one(comb(30, false), true);
  const gxContour other(comb(30, true), true);
  Points hits;
  EXPECT_GT(stopEverywhere([&](gxBudget& budget) { hits = one.intersections(other, budget); },
                           [&] { EXPECT_TRUE(hits.empty()); }),
            5);
  EXPECT_TRUE(sameBits(hits, one.intersections(other)));
  const gxRegionSet set(cluster(60, 300.0));
  bool answer = false;
  EXPECT_GT(stopEverywhere([&](gxBudget& budget) { answer = set.isSelfIntersecting(budget); }, [] {}),
            0);
  EXPECT_EQ(answer, set.isSelfIntersecting());
}

Points ring(int count, double radius) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double angle = 2 * kPi * i / count;
    points.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
  }
  return points;
}

TEST(Stopping, SettingHolesKeepsTheOldOnes) {
  const Handle old = shared(gxRegion(square(1, 1, 1)));
  const Handle close = shared(gxRegion(ring(200, 99.99)));
  gxRegion region(ring(200, 100.0));
  region.holes({old});
  const int stopped =
      stopEverywhere([&](gxBudget& budget) { region.holes(std::vector<Handle>{close}, budget); },
                     [&] { EXPECT_EQ(region.holes(), std::vector<Handle>{old}); });
  EXPECT_GT(stopped, 5);
  EXPECT_EQ(region.holes(), std::vector<Handle>{close});
}

TEST(Stopping, TheFarthestPairRemembersNoCircle) {
  for (const int count : {20, 400}) {  // through an index of its own, through the contour's
    const gxContour contour(ring(count, 10.0), true);
    gxCircle circle;
    const int stopped = stopEverywhere(
        [&](gxBudget& budget) { circle = contour.encloseCircle(gxContourDefs::eAllPairs, budget); },
        [&] { EXPECT_EQ(circle, gxCircle()); });
    EXPECT_GT(stopped, 2) << count;
    EXPECT_EQ(circle, gxContour(ring(count, 10.0), true).encloseCircle(gxContourDefs::eAllPairs));
    gxBudget none(0);
    EXPECT_EQ(contour.encloseCircle(gxContourDefs::eAllPairs, none), circle) << "now it is remembered";
    EXPECT_NO_THROW(contour.encloseCircle(gxContourDefs::eFirstPoint, none));
  }
}

TEST(Stopping, ByAQuestionIsStoppedWithinSomeThousandSteps) {
  int asked = 0;
  gxBudget budget([&asked] { return ++asked > 3; });
  gxRegion result;
  EXPECT_THROW(gxRegion(circleWithLoops(4'000)).regularize(result, budget), gxStopped);
  EXPECT_EQ(asked, 4);
  EXPECT_LT(budget.spent(), 10 * gxBudget::kStepsBetweenQuestions);
}

}  // namespace
