#include <cntr/internal/repair/loops.h>

#include <support/inside_of.h>
#include <support/random_shapes.h>
#include <support/region_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_region.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

std::vector<Points> outlinesOf(const gx_Loops& loops) {
  std::vector<Points> outlines;
  for (std::size_t i = 0; i < loops.size(); ++i) outlines.push_back(loops.outline(i));
  return outlines;
}

std::vector<Points> cut(const std::vector<Points>& outlines) {
  gx_Loops loops(outlines);
  loops.cutAtPinchPoints();
  return outlinesOf(loops);
}

std::vector<Points> withoutInner(const std::vector<Points>& outlines) {
  gx_Loops loops(outlines);
  loops.dropInnerLoops(insideOf);
  return outlinesOf(loops);
}

std::vector<Points> joinedOf(const std::vector<Points>& outlines) {
  gx_Loops loops(outlines);
  loops.joinTouchingLoops();
  return outlinesOf(loops);
}

using Outlines = std::vector<Points>;

// ---- Cutting --------------------------------------------------------------------------------------

TEST(CutAtPinchPoints, ALoopThatPassesNoPointTwiceStays) {
  EXPECT_EQ(cut({square(0, 0, 4)}), Outlines({square(0, 0, 4)}));
}

TEST(CutAtPinchPoints, ABowTieFallsIntoItsLobes) {
  EXPECT_EQ(cut({pointsOf("4 0, 2 2, 0 0, 0 4, 2 2, 4 4")}),
            Outlines({pointsOf("2 2, 0 0, 0 4"), pointsOf("2 2, 4 4, 4 0")}));
}

TEST(CutAtPinchPoints, APinchAtTheFirstVertexCutsThere) {
  EXPECT_EQ(cut({pointsOf("2 2, 0 0, 0 4, 2 2, 4 4, 4 0")}),
            Outlines({pointsOf("2 2, 0 0, 0 4"), pointsOf("2 2, 4 4, 4 0")}));
}

TEST(CutAtPinchPoints, APointPassedThreeTimesGivesThreeLoops) {
  //  Three leaves around (0, 0).  The first cut leaves the second and third leaf together, appended,
  //  and cut in its turn.
  EXPECT_EQ(
      cut({pointsOf("0 0, 3 1, 3 -1, 0 0, -1 3, 1 3, 0 0, -1 -3, 1 -3")}),
      Outlines({pointsOf("0 0, 3 1, 3 -1"), pointsOf("0 0, -1 3, 1 3"), pointsOf("0 0, -1 -3, 1 -3")}));
}

TEST(CutAtPinchPoints, TheShortenedLoopIsScannedAgainFromItsFirstVertex) {
  //  Cutting at p leaves p, q, r, q, s in place.  From its first vertex on, q is met as vertex 1, and
  //  q, r stay in place; going on from where the scan stood would meet it as vertex 3.
  EXPECT_EQ(
      cut({pointsOf("0 0, 1 -1, 2 0, 4 0, 5 1, 4 0, 3 3, 2 0, -1 2")}),
      Outlines({pointsOf("4 0, 5 1"), pointsOf("2 0, -1 2, 0 0, 1 -1"), pointsOf("4 0, 3 3, 2 0")}));
}

TEST(CutAtPinchPoints, APathWalkedThereAndBackFallsIntoItsEdges) {
  EXPECT_EQ(cut({pointsOf("0 0, 2 0, 4 0, 5 1, 4 0, 2 0, 2 2")}),
            Outlines({pointsOf("4 0, 5 1"), pointsOf("2 0, 2 2, 0 0"), pointsOf("4 0, 2 0")}));
}

TEST(CutAtPinchPoints, VerticesCloserThanAMillionthAreOnePoint) {
  EXPECT_EQ(cut({pointsOf("2 2, 0 0, 0 4, 2.0000005 2, 4 4, 4 0")}),
            Outlines({pointsOf("2 2, 0 0, 0 4"), pointsOf("2.0000005 2, 4 4, 4 0")}));
  EXPECT_EQ(cut({pointsOf("2 2, 0 0, 0 4, 2.000002 2, 4 4, 4 0")}).size(), 1u);
}

TEST(CutAtPinchPoints, ARepeatedVertexIsDroppedAndTheRestKeepsThePlace) {
  EXPECT_EQ(cut({pointsOf("0 0, 4 0, 4 0, 4 4, 0 4"), square(9, 9, 1)}),
            Outlines({pointsOf("4 0, 4 4, 0 4, 0 0"), square(9, 9, 1)}));
}

TEST(CutAtPinchPoints, ARepeatedFirstVertexIsDropped) {
  EXPECT_EQ(cut({pointsOf("0 0, 0 0, 4 0, 4 4")}), Outlines({pointsOf("0 0, 4 0, 4 4")}));
}

TEST(CutAtPinchPoints, ALastVertexEqualToTheFirstIsDropped) {
  EXPECT_EQ(cut({pointsOf("0 0, 4 0, 4 4, 0 0")}), Outlines({pointsOf("0 0, 4 0, 4 4")}));
}

TEST(CutAtPinchPoints, ManyRepetitionsAreDroppedOneByOne) {
  EXPECT_EQ(cut({pointsOf("1 1, 1 1, 1 1, 1 1, 4 0, 4 0, 4 4")}).front().size(), 3u);
}

TEST(CutAtPinchPoints, ALoopOfTwoEqualPointsAmongOthersIsRemovedAndTheOrderKept) {
  EXPECT_EQ(cut({square(0, 0, 1), pointsOf("7 7, 7 7"), square(2, 0, 1), square(4, 0, 1)}),
            Outlines({square(0, 0, 1), square(2, 0, 1), square(4, 0, 1)}));
}

TEST(CutAtPinchPoints, ALoopOfTwoEqualPointsAloneStays) {
  EXPECT_EQ(cut({pointsOf("7 7, 7 7")}), Outlines({pointsOf("7 7, 7 7")}));
}

TEST(CutAtPinchPoints, ManyEqualPointsAloneAreCutDownToTwo) {
  EXPECT_EQ(cut({pointsOf("7 7, 7 7, 7 7, 7 7, 7 7")}), Outlines({pointsOf("7 7, 7 7")}));
}

TEST(CutAtPinchPoints, LoopsOfOnePointOrNoneAreLeftAlone) {
  EXPECT_EQ(cut({pointsOf("1 1"), Points(), square(0, 0, 1)}),
            Outlines({pointsOf("1 1"), Points(), square(0, 0, 1)}));
  EXPECT_TRUE(cut({}).empty());
}

TEST(CutAtPinchPoints, EveryLoopOfTheListIsScanned) {
  EXPECT_EQ(cut({square(9, 9, 1), pointsOf("2 2, 0 0, 0 4, 2 2, 4 4, 4 0")}),
            Outlines({square(9, 9, 1), pointsOf("2 2, 0 0, 0 4"), pointsOf("2 2, 4 4, 4 0")}));
}

TEST(CutAtPinchPoints, VerticesThatAreNoNumbersAreNobodysNeighbours) {
  EXPECT_EQ(cut({pointsOf("nan 0, nan 0, 1 1, 2 2")}).front().size(), 4u);
}

// ---- Dropping -------------------------------------------------------------------------------------

TEST(DropInnerLoops, ALoopInsideAnotherGoes) {
  EXPECT_EQ(withoutInner({square(0, 0, 10), square(4, 4, 2)}), Outlines({square(0, 0, 10)}));
  EXPECT_EQ(withoutInner({square(4, 4, 2), square(0, 0, 10)}), Outlines({square(0, 0, 10)}));
}

TEST(DropInnerLoops, LoopsApartStay) {
  EXPECT_EQ(withoutInner({square(0, 0, 1), square(4, 4, 2)}),
            Outlines({square(0, 0, 1), square(4, 4, 2)}));
}

TEST(DropInnerLoops, HalfWayAlongTheFirstEdgeDecides) {
  // Overlapping squares: the second's first edge begins inside the first and ends outside.
  EXPECT_EQ(withoutInner({square(0, 0, 4), pointsOf("3 2, 9 2, 9 4, 3 4")}).size(), 2u)
      << "(6, 2) is outside";
  EXPECT_EQ(withoutInner({square(0, 0, 4), pointsOf("1 2, 6 2, 6 4, 1 4")}), Outlines({square(0, 0, 4)}))
      << "(3.5, 2) is inside";
}

TEST(DropInnerLoops, TheLastLoopTakesThePlaceOfARemovedOne) {
  EXPECT_EQ(withoutInner({square(0, 0, 10), square(4, 4, 2), square(20, 0, 1), square(30, 0, 1)}),
            Outlines({square(0, 0, 10), square(30, 0, 1), square(20, 0, 1)}));
}

TEST(DropInnerLoops, AfterARemovalTheScanStartsAgain) {
  // Three squares in each other: the innermost and the middle one go, whatever their order.
  for (const Outlines& order : {Outlines({square(0, 0, 10), square(2, 2, 6), square(4, 4, 2)}),
                                Outlines({square(4, 4, 2), square(2, 2, 6), square(0, 0, 10)}),
                                Outlines({square(2, 2, 6), square(0, 0, 10), square(4, 4, 2)})}) {
    EXPECT_EQ(withoutInner(order), Outlines({square(0, 0, 10)}));
  }
}

TEST(DropInnerLoops, OfTwoEqualLoopsBothMayStay) {
  // The test point lies on the other's edge; whether that counts as inside is the ray's affair, but
  // at least one loop is left.
  EXPECT_GE(withoutInner({square(0, 0, 4), square(0, 0, 4)}).size(), 1u);
}

TEST(DropInnerLoops, ALoopAloneStays) {
  EXPECT_EQ(withoutInner({square(0, 0, 4)}), Outlines({square(0, 0, 4)}));
  EXPECT_EQ(withoutInner({pointsOf("7 7, 7 7")}), Outlines({pointsOf("7 7, 7 7")}));
}

// ---- Joining --------------------------------------------------------------------------------------

TEST(JoinTouchingLoops, TheLobesOfABowTieBecomeOneLoopFromTheSharedVertex) {
  EXPECT_EQ(joinedOf({pointsOf("0 0, 0 4, 2 2"), pointsOf("4 4, 4 0, 2 2")}),
            Outlines({pointsOf("2 2, 0 0, 0 4, 2 2, 4 4, 4 0")}));
}

TEST(JoinTouchingLoops, TheFirstSharedVertexOfTheFirstLoopCounts) {
  // Two squares with a common edge share two vertices.
  EXPECT_EQ(joinedOf({square(0, 0, 2), square(2, 0, 2)}),
            Outlines({pointsOf("2 0, 2 2, 0 2, 0 0, 2 0, 4 0, 4 2, 2 2")}));
}

TEST(JoinTouchingLoops, WithinAMillionthIsTouching) {
  EXPECT_EQ(joinedOf({pointsOf("0 0, 0 4, 2 2"), pointsOf("4 4, 4 0, 2.0000005 2")}).size(), 1u);
  EXPECT_EQ(joinedOf({pointsOf("0 0, 0 4, 2 2"), pointsOf("4 4, 4 0, 2.000002 2")}).size(), 2u);
}

TEST(JoinTouchingLoops, AVertexOnAnEdgeIsNotTouching) {
  EXPECT_EQ(joinedOf({square(0, 0, 4), pointsOf("4 2, 6 1, 6 3")}).size(), 2u);
}

TEST(JoinTouchingLoops, TheLastLoopTakesThePlaceOfTheSecond) {
  EXPECT_EQ(joinedOf({pointsOf("0 0, 0 4, 2 2"), square(20, 0, 1), pointsOf("4 4, 4 0, 2 2"),
                      square(30, 0, 1)}),
            Outlines({pointsOf("2 2, 0 0, 0 4, 2 2, 4 4, 4 0"), square(20, 0, 1), square(30, 0, 1)}));
}

TEST(JoinTouchingLoops, AChainBecomesOneLoop) {
  const Outlines joined =
      joinedOf({pointsOf("0 0, 2 0, 1 1"), pointsOf("4 0, 6 0, 5 1"), pointsOf("2 0, 4 0, 3 1")});
  ASSERT_EQ(joined.size(), 1u);
  EXPECT_EQ(joined[0].size(), 9u);
}

TEST(JoinTouchingLoops, LoopsApartStay) {
  EXPECT_EQ(joinedOf({square(0, 0, 1), square(4, 4, 2)}), Outlines({square(0, 0, 1), square(4, 4, 2)}));
}

// ---- The whole, against the slow truth ------------------------------------------------------------

// Walks on a lattice pass many points often, and jitter up to the tolerance makes crowds of them
// that are near to some and not to others.
Points lattice(RandomShapes& random) {
  const int half = random.integer(1, 12);
  const double jitter = random.chance(0.5) ? 0.0 : random.uniform(0.0, 2e-6);
  const double far = random.chance(0.2) ? 1e9 : 0.0;
  const double unit = random.chance(0.2) ? 1e-4 : 1.0;
  Points points;
  for (int i = random.integer(1, random.chance(0.2) ? 250 : 60); i > 0; --i) {
    points.emplace_back(far + unit * random.integer(-half, half) + random.uniform(-jitter, jitter),
                        unit * random.integer(-half, half) + random.uniform(-jitter, jitter));
    if (random.chance(0.1)) points.push_back(points.back());
    if (random.chance(0.01)) points.emplace_back(points.back().x(), std::nan(""));
    if (random.chance(0.01)) points.emplace_back(1e300, points.back().y());
  }
  return points;
}

TEST(Loops, OfAnyWalkAreThoseOfTheSlowTruth) {
  RandomShapes random("loops", 2000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Points walk = random.chance(0.8) ? lattice(random) : random.outline();
    if (walk.empty()) walk.emplace_back();
    EXPECT_TRUE(agree(
        [&] {
          gx_Loops loops({walk});
          loops.cutAtPinchPoints();
          loops.dropInnerLoops(insideOf);
          loops.joinTouchingLoops();
          return loops.outline(0);
        },
        [&] { return walk.size() < 2 ? walk : slow::hullOfWalk(walk); }))
        << testing::PrintToString(walk);
  }
}

}  // namespace
