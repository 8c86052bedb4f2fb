// Self-intersection, regularization and outer hull of sets: what counts, how regions are merged,
// what is remembered, and what stays as it was when something fails.
#include <cntr/regionst.h>
#include <gtest/gtest.h>
#include <support/computed.h>
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <sstream>
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

// What becomes of two regions that meet.
gxRegion joined(const Handle& a, const Handle& b) {
  gxRegion spliced;
  gx_RegionInside::splice(*a, *b, spliced);
  gxRegion result;
  spliced.regularize(result);
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
  EXPECT_TRUE(gxRegionSet({square(20, 20), square(0, 0, 2), square(50, 0), square(1, 1, 2)})
                  .isSelfIntersecting());
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

TEST(RegionSetSelfIntersection, TheFirstOutlineThatCrossesItselfDecides) {
  const Handles handles{square(19, 9), eight(), square(9, 9)};
  const Computed tests(gx_Computation::eSelfIntersection);
  EXPECT_TRUE(gxRegionSet(handles).isSelfIntersecting());
  EXPECT_EQ(tests.times(), 2);
}

TEST(RegionSetSelfIntersection, APairThatMeetsDecidesBeforeAnyOutlineIsAsked) {
  const Handles handles{square(0, 0, 2), square(9, 9), square(1, 1, 2)};
  const Computed tests(gx_Computation::eSelfIntersection);
  EXPECT_TRUE(gxRegionSet(handles).isSelfIntersecting());
  EXPECT_EQ(tests.times(), 0);
}

TEST(RegionSetSelfIntersection, AnOutlineThatIsKnownToCrossItselfDecidesAtOnce) {
  const Handles handles{square(9, 9), eight()};
  EXPECT_TRUE(handles[1]->isSelfIntersecting());
  const Computed tests(gx_Computation::eSelfIntersection);
  EXPECT_TRUE(gxRegionSet(handles).isSelfIntersecting());
  EXPECT_EQ(tests.times(), 0);
}

TEST(RegionSetSelfIntersection, WhatIsKnownDoesNotHideAFailure) {
  const Handles handles{eight(), Handle(new gxRegion), square(9, 9)};
  EXPECT_TRUE(handles[0]->isSelfIntersecting());
  EXPECT_THROW(static_cast<void>(gxRegionSet(handles).isSelfIntersecting()),
               gxContourDefs::EmptyContour);
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
  EXPECT_NO_THROW(
      static_cast<void>(gxRegionSet({regionOf("0 0, inf 0, 0 -inf"), regionOf("nan 0, 1 nan, 2 2")})
                            .isSelfIntersecting()));
}

namespace {

// The answer as text, or the name of what was thrown instead.
template <class Ask>
std::string outcome(Ask ask) {
  try {
    std::ostringstream text;
    text << ask();
    return text.str();
  } catch (const gxContourDefs::EmptyContour&) {
    return "EmptyContour";
  } catch (const gxContourDefs::BadParams& e) {
    return "BadParams " + std::string(e.what());
  } catch (const gxBadPointer&) {
    return "BadPointer";
  }
}

bool plainVerdict(const Handles& handles) {
  bool crossing = false;
  for (const Handle& region : handles) crossing = region->isSelfIntersecting() || crossing;
  for (std::size_t i = 0; i < handles.size(); ++i) {
    for (std::size_t j = i + 1; j < handles.size(); ++j) {
      if (meet(*handles[i], *handles[j])) return true;
    }
  }
  return crossing;
}

Handles randomRegions(RandomShapes& random, double spread) {
  Handles handles;
  const int count = random.integer(1, 8);
  for (int i = 0; i < count; ++i) {
    const gxVector<2> center(random.uniform(-spread, spread), random.uniform(-spread, spread));
    if (random.chance(0.02)) {
      handles.push_back(nullptr);
    } else if (random.chance(0.85)) {
      handles.emplace_back(new gxRegion(random.star(random.integer(3, 20), center, 1, 6)));
    } else {
      handles.emplace_back(new gxRegion(random.outline()));
    }
  }
  return handles;
}

}  // namespace

TEST(RegionSetSelfIntersection, RandomSetsMatchPlainLoops) {
  RandomShapes random("region set self-intersection", 1500);
  int crossing = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Handles handles = randomRegions(random, 30);
    const std::string expected = outcome([&] { return plainVerdict(handles); });
    EXPECT_EQ(outcome([&] { return gxRegionSet(handles).isSelfIntersecting(); }), expected);
    crossing += expected == "1" ? 1 : 0;
  }
  EXPECT_GT(crossing, 100 * random.share());
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
  const Handles handles = overlapping();
  const gxRegionSet result = regularized(gxRegionSet(handles));
  ASSERT_EQ(result.regions().size(), 1U);
  EXPECT_EQ(*result.regions()[0], joined(handles[0], handles[1]));
  EXPECT_FALSE(result.isSelfIntersecting());
  EXPECT_EQ(result.encloseRect(gxXform<2>::I), gxRect(gxVector<2>(0, 0), gxVector<2>(3, 3)));
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
  const Handles pair = overlapping();
  const gxRegionSet set({pair[0], lone, pair[1], last});
  const gxRegionSet result = regularized(set);
  ASSERT_EQ(result.regions().size(), 3U);
  EXPECT_EQ(*result.regions()[0], joined(pair[0], pair[1]));
  EXPECT_EQ(*result.regions()[1], *lone);
  EXPECT_EQ(*result.regions()[2], *last);
}

TEST(RegionSetRepair, LastRegionMergedNeedsNoMove) {
  const Handle lone = square(20, 0);
  const Handles pair = overlapping();
  const gxRegionSet result = regularized(gxRegionSet({pair[0], lone, pair[1]}));
  ASSERT_EQ(result.regions().size(), 2U);
  EXPECT_EQ(*result.regions()[0], joined(pair[0], pair[1]));
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
  EXPECT_EQ(*result.regions()[0], joined(p, q));
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
  EXPECT_EQ(set.encloseRect(gxXform<2>::I), gxRect(gxVector<2>(-1, 0), gxVector<2>(12, 10)));
}

namespace {

// The merge pass with indices into a list of outlines, nothing shared.
std::vector<gxRegion> plainRepair(const Handles& handles, bool hull) {
  std::vector<gxRegion> work;
  for (const Handle& region : handles) work.push_back(*region);
  for (std::size_t i = 0; i + 1 < work.size(); ++i) {
    for (std::size_t j = i + 1; j < work.size(); ++j) {
      if (!meet(work[i], work[j])) continue;
      gxRegion spliced;
      gx_RegionInside::splice(work[i], work[j], spliced);
      work[i] = spliced;
      work[j] = gxRegion(work.back());
      work.pop_back();
    }
  }
  for (gxRegion& region : work) {
    gxRegion repaired;
    if (hull) {
      region.outerHull(repaired);
    } else {
      region.regularize(repaired);
    }
    region = repaired;
  }
  return work;
}

std::string asText(const gxRegion& region) {
  std::ostringstream text;
  for (const gxVector<2>& p : region.points()) PrintTo(p, &text);
  return text.str() + '\n';
}

}  // namespace

TEST(RegionSetRepair, RandomSetsMatchPlainLoops) {
  RandomShapes random("region set repair", 600);
  int repaired = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Handles handles = randomRegions(random, 12);
    const bool hull = random.chance(0.5);
    const std::string expected = outcome([&] {
      std::string text;
      if (!plainVerdict(handles)) {
        for (const Handle& region : handles) text += asText(*region);
      } else {
        for (const gxRegion& region : plainRepair(handles, hull)) text += asText(region);
        ++repaired;
      }
      return text;
    });
    EXPECT_EQ(outcome([&] {
                std::string text;
                const gxRegionSet result =
                    hull ? hullOf(gxRegionSet(handles)) : regularized(gxRegionSet(handles));
                for (const Handle& region : result.regions()) text += asText(*region);
                return text;
              }),
              expected);
  }
  EXPECT_GT(repaired, 100 * random.share());
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
  EXPECT_THROW(
      gx_RegionSetInside::outerHullRegularize(gxRegionSet({nullptr, square(0, 0)}), result, false),
      gxBadPointer);
  EXPECT_THROW(
      gx_RegionSetInside::outerHullRegularize(gxRegionSet({square(0, 0), nullptr}), result, true),
      gxBadPointer);
  EXPECT_THROW(gx_RegionSetInside::outerHullRegularize(gxRegionSet({nullptr}), result, true),
               gxBadPointer);
  EXPECT_TRUE(result.regions().empty());
}

// Every edge of a pentagram is crossed, so none can be proved to lie outside.
TEST(RegionSetRepair, FailingRegionFailsTheSetAndNothingIsRemembered) {
  const Handle pentagram = regionOf("0 10, 6 -8, -9.5 3, 9.5 3, -6 -8");
  const gxRegionSet set({square(50, 50), pentagram});
  const Handles before{square(7, 7)};
  gxRegionSet result(before);
  const Computed merges(gx_Computation::eSetRegularize);
  const Computed hulls(gx_Computation::eSetOuterHull);
  for (int i = 0; i < 2; ++i) {
    try {
      set.regularize(result);
      FAIL() << "repaired";
    } catch (const gxContourDefs::BadParams& e) {
      EXPECT_EQ(e.message(), L"invalid contour");
    }
    EXPECT_THROW(set.outerHull(result), gxContourDefs::BadParams);
  }
  EXPECT_EQ(merges.times(), 2);
  EXPECT_EQ(hulls.times(), 2);
  EXPECT_EQ(result.regions(), before);
}

TEST(RegionSetRepair, RegionOfTooFewPointsThatCrossesAnotherCannotBeMergedIntoAnything) {
  const Handle line(new gxRegion({{-1, 0.4}, {2, 0.6}}));
  gxRegionSet set({line, square(0, 0)});
  ASSERT_TRUE(set.isSelfIntersecting());
  const std::string expected = outcome([&] { return asText(joined(line, square(0, 0))); });
  EXPECT_EQ(outcome([&] { return asText(*regularized(set).regions().at(0)); }), expected);
}

TEST(RegionSetRepair, FailingRepairIntoItselfChangesNothing) {
  const Handles handles{square(50, 50), regionOf("0 10, 6 -8, -9.5 3, 9.5 3, -6 -8")};
  gxRegionSet set(handles);
  EXPECT_THROW(set.regularize(set), gxContourDefs::BadParams);
  EXPECT_THROW(set.outerHull(set), gxContourDefs::BadParams);
  EXPECT_EQ(set.regions(), handles);
  EXPECT_THROW(set.add(square(80, 80), gxContourDefs::eOuterHull), gxContourDefs::BadParams);
  EXPECT_EQ(set.regions(), handles);
}

// ---- Many regions -------------------------------------------------------------------------------
//
// Of many regions only those are compared whose boxes touch.  Nothing of that may show: not in the
// answer, not in what is thrown, and not in which regions are asked for their boxes, because these
// are remembered in a bounded memory.

namespace {

// Enough regions for the tree, from a few that overlap to a heap; now and then without points, with
// NaN or infinite coordinates, one that covers everything, one twice.
Handles manyRegions(RandomShapes& random) {
  Handles handles;
  const int count = random.integer(16, 60);
  const double spread = random.chance(0.3) ? 15 : 80;
  const bool odd = random.chance(0.5);
  for (int i = 0; i < count; ++i) {
    const gxVector<2> center(random.uniform(-spread, spread), random.uniform(-spread, spread));
    if (odd && random.chance(0.02)) {
      handles.emplace_back(new gxRegion(random.outline(OutlineKind::eFew, 1)));
    } else if (odd && random.chance(0.02)) {
      handles.emplace_back(new gxRegion(random.outline(OutlineKind::eNotFinite, 8)));
    } else if (odd && random.chance(0.01)) {
      handles.emplace_back(new gxRegion(box(-200, -200, 400)));
    } else if (odd && i > 0 && random.chance(0.01)) {
      handles.push_back(handles.front());
    } else {
      handles.emplace_back(new gxRegion(random.star(random.integer(3, 12), center, 1, 5)));
    }
  }
  return handles;
}

// The same outlines in regions of their own.  The rectangles of every third region leave no room.
Handles afresh(const Handles& handles) {
  Handles result;
  for (std::size_t i = 0; i < handles.size(); ++i) {
    const gxPtrHandle<gxRegion> region(new gxRegion(handles[i]->points()));
    if (i % 3 == 0) {
      region->cachedVectorSize(0);
      if (region->points().size() > 1) {
        static_cast<void>(region->encloseRect(gxXform<2>(gxMatrix<2>(2, 0, 0, 2), gxVector<2>(0, 0))));
      }
    }
    result.emplace_back(region);
  }
  return result;
}

}  // namespace

TEST(RegionSetOfManyRegions, RandomVerdictsMatchPlainLoops) {
  RandomShapes random("region set of many: verdict", 400);
  int crossing = 0;
  int apart = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Handles handles = manyRegions(random);
    const Handles mine = afresh(handles);
    const Handles theirs = afresh(handles);
    const std::string expected = outcome([&] { return plainVerdict(theirs); });
    EXPECT_EQ(outcome([&] { return gxRegionSet(mine).isSelfIntersecting(); }), expected);
    crossing += expected == "1" ? 1 : 0;
    apart += expected == "0" ? 1 : 0;
  }
  EXPECT_GT(crossing, 50);
  EXPECT_GT(apart, 5);
}

TEST(RegionSetOfManyRegions, RandomMergesMatchPlainLoops) {
  RandomShapes random("region set of many: merge", 250);
  int repaired = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Handles handles = manyRegions(random);
    const Handles mine = afresh(handles);
    const Handles theirs = afresh(handles);
    const bool hull = random.chance(0.5);
    const std::string expected = outcome([&] {
      std::string text;
      for (const gxRegion& region : plainRepair(theirs, hull)) text += asText(region);
      return text;
    });
    EXPECT_EQ(outcome([&] {
                gxRegionSet result;
                gx_RegionSetInside::outerHullRegularize(gxRegionSet(mine), result, hull);
                std::string text;
                for (const Handle& region : result.regions()) text += asText(*region);
                return text;
              }),
              expected);
    repaired += expected.find('(') != std::string::npos ? 1 : 0;
  }
  EXPECT_GT(repaired, 20);
}

TEST(RegionSetMerge, LooksAtOutlinesNotAtHoles) {
  const gxPtrHandle<gxRegion> ring(new gxRegion(box(0, 0, 10)));
  ring->holes({square(4, 4, 2)});
  // The second crosses the hole of the first, not its outline; the third crosses itself.
  const gxRegionSet result =
      regularized(gxRegionSet({Handle(ring), square(3, 3, 2), regionOf("20 0, 22 2, 22 0, 20 2")}));
  ASSERT_EQ(result.regions().size(), 3U);
  EXPECT_EQ(result.regions()[0]->holes().size(), 1U);
  EXPECT_EQ(result.regions()[0]->points(), box(0, 0, 10));
}

TEST(RegionSetOfManyRegions, NullHandleAmongManyThrows) {
  Handles handles;
  for (int i = 0; i < 40; ++i) handles.push_back(square(3 * i, 0));
  handles[30] = nullptr;
  const gxRegionSet set(handles);
  gxRegionSet result;
  EXPECT_THROW(static_cast<void>(set.isSelfIntersecting()), gxBadPointer);
  EXPECT_THROW(gx_RegionSetInside::outerHullRegularize(set, result, false), gxBadPointer);
}

TEST(RegionSetOfManyRegions, PointlessRegionAmongManyThrowsAlsoWhereOnlyPointlessOnesFollow) {
  Handles handles;
  for (int i = 0; i < 20; ++i) handles.emplace_back(new gxRegion);
  EXPECT_THROW(static_cast<void>(gxRegionSet(handles).isSelfIntersecting()),
               gxContourDefs::EmptyContour);
  for (int i = 0; i < 19; ++i) handles[static_cast<std::size_t>(i)] = square(3 * i, 0);
  EXPECT_FALSE(gxRegionSet(handles).isSelfIntersecting());  // nothing follows it
}

TEST(RegionSetOfManyRegions, TwentyThousandCoinsAreToldApart) {
  Handles handles;
  for (int i = 0; i < 20000; ++i) {
    std::vector<gxVector<2>> coin;
    const gxVector<2> center((i % 200) * 80.0, static_cast<double>(i / 200) * 80.0);
    for (int k = 0; k < 24; ++k) coin.push_back(center + gxVector<2>(30.0, gxRadian(0.26179938 * k)));
    handles.emplace_back(new gxRegion(coin));
  }
  EXPECT_FALSE(gxRegionSet(handles).isSelfIntersecting());
  handles.emplace_back(new gxRegion(box(40, 40, 40)));  // over the corner of one of them
  gxRegionSet set(handles);
  EXPECT_TRUE(set.isSelfIntersecting());
  set.regularize(set);
  EXPECT_EQ(set.regions().size(), 20000U);
}
