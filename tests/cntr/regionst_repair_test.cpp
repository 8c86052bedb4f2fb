// Self-intersection, regularization and outer hull of sets: what counts, how regions are merged,
// what is remembered, and what stays as it was when something fails.
#include <cntr/regionst.h>
#include <gtest/gtest.h>
#include <support/computed.h>
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;
using Handles = std::vector<Handle>;

std::vector<gxVector<2>> box(double x, double y, double size) {
  return {{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}};
}

Handle square(double x, double y, double size = 1.0) {
  return Handle(new gxRegion(box(x, y, size)));
}

Handle regionOf(const std::string& points) {
  return Handle(new gxRegion(pointsOf(points)));
}

Handle eight() {
  return regionOf("0 0, 2 2, 2 0, 0 2");
}

Handles overlapping() {
  return {square(0, 0, 2), square(1, 1, 2)};
}

gxRegionSet regularized(const gxRegionSet& set) {
  gxRegionSet result;
  set.regularize(result);
  return result;
}

gxRegionSet hullOf(const gxRegionSet& set) {
  gxRegionSet result;
  set.outerHull(result);
  return result;
}

bool meet(const gxRegion& a, const gxRegion& b) {
  return !static_cast<const gxContour&>(a).intersections(static_cast<const gxContour&>(b)).empty();
}

}  // namespace

// ---- Self-intersection --------------------------------------------------------------------------

TEST(RegionSetSelfIntersection, DisjointRegionsDoNot) {
  EXPECT_FALSE(gxRegionSet({square(0, 0), square(5, 0)}).isSelfIntersecting());
}

TEST(RegionSetSelfIntersection, RegionWhollyInsideAnotherDoesNotCount) {
  EXPECT_FALSE(gxRegionSet({square(0, 0, 10), square(4, 4)}).isSelfIntersecting());
}

TEST(RegionSetSelfIntersection, OverlappingOutlinesCount) {
  EXPECT_TRUE(gxRegionSet(overlapping()).isSelfIntersecting());
  EXPECT_TRUE(gxRegionSet({square(20, 20), square(0, 0, 2), square(50, 0), square(1, 1, 2)}).isSelfIntersecting());
}

TEST(RegionSetSelfIntersection, TouchingOutlinesCount) {
  EXPECT_TRUE(gxRegionSet({square(0, 0), regionOf("1 0.5, 2 0, 2 1")}).isSelfIntersecting());
}

TEST(RegionSetSelfIntersection, TheSameRegionTwiceMeetsItself) {
  const Handle one = square(0, 0);
  EXPECT_TRUE(gxRegionSet({one, one}).isSelfIntersecting());
}

TEST(RegionSetSelfIntersection, OneCrossingOutlineCounts) {
  EXPECT_TRUE(gxRegionSet({square(9, 9), eight()}).isSelfIntersecting());
  EXPECT_TRUE(gxRegionSet({eight(), square(9, 9)}).isSelfIntersecting());
}

TEST(RegionSetSelfIntersection, HolesAreNotLookedAt) {
  const gxPtrHandle<gxRegion> holed(new gxRegion(box(0, 0, 4)));
  holed->holes({square(1, 1, 2), square(2, 2, 1.5)});  // they cross each other
  EXPECT_FALSE(gxRegionSet({holed}).isSelfIntersecting());
  EXPECT_FALSE(gxRegionSet({holed, square(1.5, 1.5, 1.2)}).isSelfIntersecting());  // crosses a hole
}

TEST(RegionSetSelfIntersection, EmptySetDoesNotAndRemembersNothing) {
  gxRegionSet set;
  set.trackChanges(true);
  const Computed tests(gx_Computation::eSetSelfIntersection);
  EXPECT_FALSE(set.isSelfIntersecting());
  EXPECT_EQ(tests.times(), 0);
  EXPECT_EQ(set.changeCount(), 0U);
}

TEST(RegionSetSelfIntersection, BothVerdictsAreRemembered) {
  const gxRegionSet apart({square(0, 0), square(5, 0)});
  const gxRegionSet crossing(overlapping());
  const Computed tests(gx_Computation::eSetSelfIntersection);
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(apart.isSelfIntersecting());
    EXPECT_TRUE(crossing.isSelfIntersecting());
  }
  EXPECT_EQ(tests.times(), 2);
}

TEST(RegionSetSelfIntersection, EveryOutlineIsAskedAlsoAfterOneCrosses) {
  const Handles handles{eight(), square(9, 9), square(19, 9)};
  const Computed tests(gx_Computation::eSelfIntersection);
  EXPECT_TRUE(gxRegionSet(handles).isSelfIntersecting());
  EXPECT_EQ(tests.times(), 3);
}

TEST(RegionSetSelfIntersection, PointlessRegionAloneIsFineAndBeforeAnotherThrows) {
  const Handle none(new gxRegion);
  EXPECT_FALSE(gxRegionSet({none}).isSelfIntersecting());
  EXPECT_FALSE(gxRegionSet({square(0, 0), none}).isSelfIntersecting());
  EXPECT_THROW(static_cast<void>(gxRegionSet({none, square(0, 0)}).isSelfIntersecting()),
               gxContourDefs::EmptyContour);
  EXPECT_THROW(static_cast<void>(gxRegionSet({none, none}).isSelfIntersecting()),
               gxContourDefs::EmptyContour);
}

TEST(RegionSetSelfIntersection, PairThatMeetsBeforeThePointlessRegionAnswersFirst) {
  const Handle none(new gxRegion);
  EXPECT_TRUE(gxRegionSet({square(0, 0, 2), square(1, 1, 2), none, square(9, 9)}).isSelfIntersecting());
}

TEST(RegionSetSelfIntersection, FailureLeavesNoVerdict) {
  gxRegionSet set({square(0, 0, 2), square(1, 1, 2), nullptr});
  const Computed tests(gx_Computation::eSetSelfIntersection);
  EXPECT_THROW(static_cast<void>(set.isSelfIntersecting()), gxBadPointer);
  EXPECT_THROW(static_cast<void>(set.isSelfIntersecting()), gxBadPointer);
  EXPECT_EQ(tests.times(), 2);
}

TEST(RegionSetSelfIntersection, HugeInfiniteAndNaNCoordinatesAreAnswered) {
  EXPECT_NO_THROW(static_cast<void>(
      gxRegionSet({square(-1e308, -1e308, 1.5e308), square(0, 0, 1e308)}).isSelfIntersecting()));
  EXPECT_NO_THROW(static_cast<void>(
      gxRegionSet({regionOf("0 0, inf 0, 0 -inf"), regionOf("nan 0, 1 nan, 2 2")}).isSelfIntersecting()));
}

TEST(RegionSetSelfIntersection, RandomSetsMatchPlainLoops) {
  RandomShapes random("region set self-intersection", 1500);
  int crossing = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Handles handles;
    const int count = random.integer(1, 8);
    for (int i = 0; i < count; ++i) {
      const gxVector<2> center(random.uniform(-30, 30), random.uniform(-30, 30));
      handles.emplace_back(new gxRegion(random.chance(0.8) ? random.star(random.integer(3, 20), center, 1, 6)
                                                           : random.outline()));
    }
    bool expected = false;
    std::string thrown;
    try {
      for (const Handle& region : handles) expected = region->isSelfIntersecting() || expected;
      for (std::size_t i = 0; i < handles.size() && !meet(*handles[i], *handles[i]); ++i) {
      }
      bool pairs = false;
      for (std::size_t i = 0; i + 1 < handles.size() && !pairs; ++i) {
        for (std::size_t j = i + 1; j < handles.size() && !pairs; ++j) pairs = meet(*handles[i], *handles[j]);
      }
      expected = expected || pairs;
    } catch (const gxContourDefs::EmptyContour&) {
      thrown = "EmptyContour";
    }
    // The loop above asks every region about itself, which a set does not: such failures are the
    // loop's own unless the set fails too.
    try {
      const bool answer = gxRegionSet(handles).isSelfIntersecting();
      if (thrown.empty()) EXPECT_EQ(answer, expected);
      crossing += answer ? 1 : 0;
    } catch (const gxContourDefs::EmptyContour&) {
      EXPECT_EQ(thrown, "EmptyContour");
    }
  }
  EXPECT_GT(crossing, 100);
}

// ---- Repair of sets that do not intersect themselves --------------------------------------------

TEST(RegionSetRepair, SingleSimpleRegionIsKeptHolesAndAll) {
  const gxPtrHandle<gxRegion> holed(new gxRegion(box(0, 0, 4)));
  holed->holes({square(1, 1)});
  const gxRegionSet set({holed});
  EXPECT_EQ(regularized(set).regions(), set.regions());  // the very same object
  EXPECT_EQ(hullOf(set).regions(), set.regions());
}

TEST(RegionSetRepair, DisjointAndNestedRegionsAreKept) {
  const gxRegionSet apart({square(0, 0), square(5, 0)});
  EXPECT_EQ(hullOf(apart).regions(), apart.regions());
  const gxRegionSet nested({square(0, 0, 10), square(4, 4)});
  EXPECT_EQ(regularized(nested).regions(), nested.regions());
  EXPECT_EQ(hullOf(nested).regions(), nested.regions());
}

TEST(RegionSetRepair, UnchangedSetBringsItsMemoryAlong) {
  const gxRegionSet set({square(0, 0), square(5, 0)});
  static_cast<void>(set.area(true));
  const gxRegionSet result = regularized(set);
  const Computed areas(gx_Computation::eSetArea);
  EXPECT_EQ(result.area(true), 2.0);
  EXPECT_EQ(areas.times(), 0);
}

TEST(RegionSetRepair, EmptySetGivesAnEmptySet) {
  gxRegionSet result({square(0, 0)});
  gxRegionSet().regularize(result);
  EXPECT_TRUE(result.regions().empty());
  result.add(square(0, 0));
  gxRegionSet().outerHull(result);
  EXPECT_TRUE(result.regions().empty());
  gxRegionSet none;
  none.regularize(none);
  EXPECT_TRUE(none.regions().empty());
}

TEST(RegionSetRepair, WorkerRefusesAnEmptySet) {
  gxRegionSet result({square(0, 0)});
  EXPECT_THROW(gx_RegionSetInside::outerHullRegularize(gxRegionSet(), result, true),
               gxContourDefs::EmptyRegionSet);
  EXPECT_THROW(gx_RegionSetInside::outerHullRegularize(gxRegionSet(), result, false),
               gxContourDefs::EmptyRegionSet);
  EXPECT_EQ(result.regions().size(), 1U);
}

// ---- Repair -------------------------------------------------------------------------------------

TEST(RegionSetRepair, TwoOverlappingSquaresBecomeOneInSlotZero) {
  const gxRegionSet result = regularized(gxRegionSet(overlapping()));
  ASSERT_EQ(result.regions().size(), 1U);
  EXPECT_DOUBLE_EQ(result.area(false), 7.0);
  EXPECT_FALSE(result.isSelfIntersecting());
}

TEST(RegionSetRepair, CrossingRegionIsRepairedByItself) {
  const gxRegionSet set({square(9, 9), eight()});
  const gxRegionSet result = regularized(set);
  ASSERT_EQ(result.regions().size(), 2U);
  gxRegion expected;
  eight()->regularize(expected);
  EXPECT_EQ(*result.regions()[1], expected);
  EXPECT_EQ(*result.regions()[0], *set.regions()[0]);
  gxRegion hull;
  eight()->outerHull(hull);
  EXPECT_EQ(*hullOf(set).regions()[1], hull);
}

TEST(RegionSetRepair, MergedRegionTakesTheLowerSlotAndTheLastMovesIntoTheHigher) {
  // 0 and 2 overlap; 1 and 3 stand alone.
  const Handle lone = square(20, 0);
  const Handle last = square(40, 0);
  const gxRegionSet set({square(0, 0, 2), lone, square(1, 1, 2), last});
  const gxRegionSet result = regularized(set);
  ASSERT_EQ(result.regions().size(), 3U);
  EXPECT_DOUBLE_EQ(result.regions()[0]->area(false), 7.0);
  EXPECT_EQ(*result.regions()[1], *lone);
  EXPECT_EQ(*result.regions()[2], *last);
}

TEST(RegionSetRepair, LastRegionMergedNeedsNoMove) {
  const Handle lone = square(20, 0);
  const gxRegionSet result = regularized(gxRegionSet({square(0, 0, 2), lone, square(1, 1, 2)}));
  ASSERT_EQ(result.regions().size(), 2U);
  EXPECT_DOUBLE_EQ(result.regions()[0]->area(false), 7.0);
  EXPECT_EQ(*result.regions()[1], *lone);
}

// P overlaps Q and R; Q and R are apart.  P and Q are merged, R moves into Q's slot, and the pass is
// over before R could be compared: P+Q and R stay apart although they overlap.
//
//        +-------P-------+
//     +--+--+         +--+--+
//     | Q|  |         |  | R|
//     +--+--+         +--+--+
//        +---------------+
TEST(RegionSetRepair, ChainOfOverlapsStaysUnmerged) {
  const Handle p = square(0, 0, 10);
  const Handle q = square(-1, 4, 2);
  const Handle r = square(9, 4, 2);
  const gxRegionSet result = regularized(gxRegionSet({p, q, r}));
  ASSERT_EQ(result.regions().size(), 2U);
  EXPECT_DOUBLE_EQ(result.regions()[0]->area(false), 102.0);  // P and half of Q
  EXPECT_EQ(*result.regions()[1], *r);
  EXPECT_TRUE(meet(*result.regions()[0], *result.regions()[1]));
  EXPECT_TRUE(result.isSelfIntersecting());
  EXPECT_EQ(hullOf(gxRegionSet({p, q, r})).regions().size(), 2U);
}

TEST(RegionSetRepair, SecondPassMergesWhatTheFirstLeft) {
  gxRegionSet set({square(0, 0, 10), square(-1, 4, 2), square(9, 4, 2)});
  set.regularize(set);
  ASSERT_EQ(set.regions().size(), 2U);
  set.regularize(set);
  ASSERT_EQ(set.regions().size(), 1U);
  EXPECT_DOUBLE_EQ(set.area(false), 104.0);
}

TEST(RegionSetRepair, RepairedRegionsHaveNoHoles) {
  const gxPtrHandle<gxRegion> holed(new gxRegion(box(0, 0, 4)));
  holed->holes({square(1, 1)});
  const gxRegionSet result = regularized(gxRegionSet({holed, square(3, 3, 4)}));
  ASSERT_EQ(result.regions().size(), 1U);
  EXPECT_TRUE(result.regions()[0]->holes().empty());
}

TEST(RegionSetRepair, UntouchedSimpleRegionsAreCopiesWithTheirHoles) {
  const gxPtrHandle<gxRegion> holed(new gxRegion(box(20, 20, 4)));
  holed->holes({square(21, 21)});
  Handles handles = overlapping();
  handles.emplace_back(holed);
  const gxRegionSet result = regularized(gxRegionSet(handles));
  ASSERT_EQ(result.regions().size(), 2U);
  EXPECT_NE(result.regions()[1].get(), holed.get());
  EXPECT_EQ(result.regions()[1]->holes(), holed->holes());
}

TEST(RegionSetRepair, TheSetItselfIsNotChanged) {
  const Handles handles = overlapping();
  const gxRegionSet set(handles);
  gxRegionSet result;
  set.regularize(result);
  EXPECT_EQ(set.regions(), handles);
  EXPECT_EQ(*handles[0], gxRegion(box(0, 0, 2)));
}

// ---- Memory -------------------------------------------------------------------------------------

TEST(RegionSetRepair, SecondCallIsAnsweredFromMemory) {
  const gxRegionSet set(overlapping());
  const Computed merges(gx_Computation::eSetRegularize);
  const Computed walks(gx_Computation::eRegularize);
  const gxRegionSet first = regularized(set);
  const long walked = walks.times();
  const gxRegionSet second = regularized(set);
  EXPECT_EQ(merges.times(), 1);
  EXPECT_EQ(walks.times(), walked);
  EXPECT_EQ(first.regions(), second.regions());  // the very same objects
}

TEST(RegionSetRepair, HullAndRegularizedFormAreRememberedApart) {
  const gxRegionSet set(overlapping());
  const Computed merges(gx_Computation::eSetRegularize);
  const Computed hulls(gx_Computation::eSetOuterHull);
  static_cast<void>(regularized(set));
  EXPECT_EQ(hulls.times(), 0);
  static_cast<void>(hullOf(set));
  static_cast<void>(hullOf(set));
  EXPECT_EQ(merges.times(), 1);
  EXPECT_EQ(hulls.times(), 1);
}

TEST(RegionSetRepair, ResultCarriesWhatTheRememberedSetRemembers) {
  const gxRegionSet set(overlapping());
  const gxRegionSet first = regularized(set);
  static_cast<void>(first.area(false));
  const gxRegionSet second = regularized(set);
  const Computed areas(gx_Computation::eSetArea);
  static_cast<void>(second.area(false));
  EXPECT_EQ(areas.times(), 1);  // first was a copy: the remembered set itself was not asked
}

TEST(RegionSetRepair, CachedVectorSizeOfTheResultIsThatOfTheRepairedSet) {
  gxRegionSet set(overlapping());
  set.cachedVectorSize(9);
  EXPECT_EQ(regularized(set).cachedVectorSize(), 3);
  gxRegionSet apart({square(0, 0)});
  apart.cachedVectorSize(9);
  EXPECT_EQ(regularized(apart).cachedVectorSize(), 9);
}

// ---- Failures -----------------------------------------------------------------------------------

TEST(RegionSetRepair, NullHandleThrowsAndTheTargetIsUntouched) {
  const Handles handles{square(0, 0, 2), nullptr};
  const gxRegionSet set(handles);
  const Handles before{square(7, 7)};
  gxRegionSet result(before);
  EXPECT_THROW(set.regularize(result), gxBadPointer);
  EXPECT_THROW(set.outerHull(result), gxBadPointer);
  EXPECT_EQ(result.regions(), before);
  EXPECT_EQ(set.regions(), handles);
}

TEST(RegionSetRepair, NullHandleInTheMergePassThrows) {
  gxRegionSet result;
  EXPECT_THROW(gx_RegionSetInside::outerHullRegularize(gxRegionSet({nullptr, square(0, 0)}), result, false),
               gxBadPointer);
  EXPECT_THROW(gx_RegionSetInside::outerHullRegularize(gxRegionSet({square(0, 0), nullptr}), result, true),
               gxBadPointer);
  EXPECT_THROW(gx_RegionSetInside::outerHullRegularize(gxRegionSet({nullptr}), result, true), gxBadPointer);
  EXPECT_TRUE(result.regions().empty());
}

// A region of two points crosses the square; splicing works, but a region of too few points cannot
// be repaired.
TEST(RegionSetRepair, FailingRegionFailsTheSetAndNothingIsRemembered) {
  const gxRegionSet set({eight(), Handle(new gxRegion({{5, 5}, {6, 6}})), Handle(new gxRegion)});
  gxRegionSet result({square(7, 7)});
  const Computed merges(gx_Computation::eSetRegularize);
  std::string first;
  for (int i = 0; i < 2; ++i) {
    try {
      set.regularize(result);
      FAIL() << "repaired";
    } catch (const gxContourDefs::EmptyContour&) {
      first += 'x';
    } catch (const gxContourDefs::BadParams& e) {
      first += e.message().empty() ? 'e' : 'm';
    }
  }
  EXPECT_EQ(first.size(), 2U);
  EXPECT_EQ(first[0], first[1]);
  EXPECT_EQ(merges.times(), 2);
  EXPECT_EQ(*result.regions()[0], *square(7, 7));
}
