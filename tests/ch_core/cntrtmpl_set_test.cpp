// The edge-point region set: its two lists, how each follows the other, and what fails.
#include <ch_core/cntrtmpl.h>
#include <gtest/gtest.h>
#include <support/computed.h>
#include <support/shape_text.h>
#include <velip/pel.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Region = gxRegionT<gxEdgelet>;
using Set = gxRegionSetT<gxEdgelet>;
using RegionHandle = gxPtrHandle_const<Region>;
using PlainHandle = gxPtrHandle_const<gxRegion>;

gxEdgelet edge(double x, double y) {
  return {gxVector<2>(x, y), 7, gxAngle8(9)};
}

RegionHandle edgeSquare(double x, double y, double size = 1) {
  return RegionHandle(
      new Region({edge(x, y), edge(x + size, y), edge(x + size, y + size), edge(x, y + size)}));
}

PlainHandle plainSquare(double x, double y, double size = 1) {
  return PlainHandle(new gxRegion({{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}}));
}

PlainHandle emptyPlain() {
  return PlainHandle(new gxRegion);
}

class ExposedSet : public Set {
 public:
  using Set::makeDataConsistentWithPoints;
  using Set::makePointsConsistentWithData;
  using Set::Set;
  using Set::setRegions;
};

// Both lists hold the same objects.
bool inStep(const Set& set) {
  const auto plain = set.regions();
  const auto typed = set.regionsT();
  return plain == std::vector<PlainHandle>(typed.begin(), typed.end());
}

}  // namespace

static_assert(std::is_nothrow_move_constructible_v<Set>);
static_assert(!std::is_nothrow_move_assignable_v<Set>);  // as of all shapes

// ---- Construction -------------------------------------------------------------------------------

TEST(EdgeletSet, DefaultIsEmpty) {
  const Set set;
  EXPECT_TRUE(set.regions().empty());
  EXPECT_TRUE(set.regionsT().empty());
  EXPECT_EQ(set.cachedVectorSize(), 3);
  EXPECT_EQ(set.area(true), 0.0);
}

TEST(EdgeletSet, BothListsHoldTheVerySameObjects) {
  const std::vector<RegionHandle> handles{edgeSquare(0, 0), edgeSquare(5, 0, 2)};
  const Set set(handles);
  EXPECT_EQ(set.regionsT(), handles);
  EXPECT_TRUE(inStep(set));
  EXPECT_EQ(handles[0]->refCount(), 3);
}

TEST(EdgeletSet, MeasuresAreThoseOfAPlainSetOfTheSameRegions) {
  const std::vector<RegionHandle> handles{edgeSquare(0, 0), edgeSquare(5, 0, 2)};
  const Set set(handles);
  const gxRegionSet plain(std::vector<PlainHandle>(handles.begin(), handles.end()));
  EXPECT_EQ(set.area(true), plain.area(true));
  EXPECT_EQ(set.area(true), 5.0);
  EXPECT_EQ(set.centerOfMass(false), plain.centerOfMass(false));
  EXPECT_EQ(set.inertiaMatrix(false), plain.inertiaMatrix(false));
  EXPECT_EQ(set.encloseRect(gxXform<2>::I), plain.encloseRect(gxXform<2>::I));
  EXPECT_EQ(set.inside({0.5, 0.4}, true), plain.inside({0.5, 0.4}, true));
  EXPECT_EQ(set.distToPoint({3, 3}, false, false, false),
            plain.distToPoint({3, 3}, false, false, false));
  EXPECT_EQ(set.isSelfIntersecting(), plain.isSelfIntersecting());
}

TEST(EdgeletSet, WritableHandlesAndListsCompile) {
  const gxPtrHandle<Region> writable(new Region({edge(0, 0)}));
  const Set set(std::vector<gxPtrHandle<Region>>{writable, nullptr});
  ASSERT_EQ(set.regionsT().size(), 2U);
  EXPECT_EQ(set.regionsT()[0].get(), writable.get());
  EXPECT_TRUE(inStep(set));
  EXPECT_EQ(Set({edgeSquare(0, 0), writable}).regions().size(), 2U);
}

TEST(EdgeletSet, NullHandlesStandInBothLists) {
  const Set set({edgeSquare(0, 0), nullptr});
  EXPECT_TRUE(set.regionsT()[1].isNull());
  EXPECT_TRUE(set.regions()[1].isNull());
  EXPECT_THROW(static_cast<void>(set.area(true)), gxBadPointer);
}

// ---- Plain regions ------------------------------------------------------------------------------

TEST(EdgeletSetAdd, EmptyPlainRegionGetsAnEmptyEdgePointRegion) {
  Set set;
  const PlainHandle plain = emptyPlain();
  set.add(plain);
  ASSERT_EQ(set.regions().size(), 1U);
  EXPECT_EQ(set.regions()[0], plain);
  ASSERT_EQ(set.regionsT().size(), 1U);
  EXPECT_TRUE(set.regionsT()[0]->points().empty());
  EXPECT_TRUE(set.regionsT()[0]->dataFromPointsXform().isNull());
}

TEST(EdgeletSetAdd, PlainSquareIsRefusedAndNeitherListChanges) {
  const std::vector<RegionHandle> handles{edgeSquare(0, 0)};
  Set set(handles);
  static_cast<void>(set.area(true));
  EXPECT_THROW(set.add(plainSquare(5, 5)), gxBadPointer);
  EXPECT_EQ(set.regionsT(), handles);
  EXPECT_TRUE(inStep(set));
  const Computed areas(gx_Computation::eSetArea);
  EXPECT_EQ(set.area(true), 1.0);
  EXPECT_EQ(areas.times(), 1);
}

TEST(EdgeletSetAdd, ARegionOfTheSetThatHasPointsRefusesToo) {
  const std::vector<RegionHandle> handles{edgeSquare(0, 0)};
  Set set(handles);
  EXPECT_THROW(set.add(emptyPlain()), gxBadPointer);
  EXPECT_THROW(set.add(edgeSquare(5, 5)), gxBadPointer);  // taken as a plain region
  EXPECT_EQ(set.regionsT(), handles);
  EXPECT_TRUE(inStep(set));
}

TEST(EdgeletSetAdd, NullHandleIsRefused) {
  Set set;
  set.add(emptyPlain());
  const auto typed = set.regionsT();
  const auto plain = set.regions();
  EXPECT_THROW(set.add(nullptr), gxBadPointer);
  EXPECT_EQ(set.regionsT(), typed);
  EXPECT_EQ(set.regions(), plain);
}

TEST(EdgeletSetAdd, EveryPlainRegionGetsANewOne) {
  Set set;
  set.add(emptyPlain());
  const RegionHandle first = set.regionsT()[0];
  set.add(emptyPlain());
  EXPECT_EQ(set.regionsT().size(), 2U);
  EXPECT_NE(set.regionsT()[0], first);
}

// Two regions without points cannot be tested for meeting, so the repair fails after the list of
// edge-point regions was made anew: it is put back.
TEST(EdgeletSetAdd, FailingRepairPutsBothListsBack) {
  Set set;
  set.add(emptyPlain());
  const auto typed = set.regionsT();
  const auto plain = set.regions();
  for (const auto mode : {gxContourDefs::eOuterHull, gxContourDefs::eRegularize}) {
    EXPECT_THROW(set.add(emptyPlain(), mode), gxContourDefs::EmptyContour);
    EXPECT_EQ(set.regionsT(), typed);
    EXPECT_EQ(set.regions(), plain);
    EXPECT_THROW(set.regions({emptyPlain(), emptyPlain()}, mode), gxContourDefs::EmptyContour);
    EXPECT_EQ(set.regionsT(), typed);
    EXPECT_EQ(set.regions(), plain);
  }
}

TEST(EdgeletSetRegions, PlainRegionsAreRefusedAndNeitherListChanges) {
  const std::vector<RegionHandle> handles{edgeSquare(0, 0), edgeSquare(3, 3)};
  Set set(handles);
  EXPECT_THROW(set.regions({emptyPlain(), plainSquare(0, 0)}), gxBadPointer);
  EXPECT_EQ(set.regionsT(), handles);
  EXPECT_TRUE(inStep(set));
  set.regions({emptyPlain(), emptyPlain()});
  EXPECT_EQ(set.regionsT().size(), 2U);
  set.regions({});
  EXPECT_TRUE(set.regionsT().empty());
}

TEST(EdgeletSetRegions, HooksLeadBothWays) {
  ExposedSet set(std::vector<RegionHandle>{edgeSquare(0, 0)});
  set.setRegions({emptyPlain(), emptyPlain()});
  EXPECT_EQ(set.regionsT().size(), 1U);
  set.makeDataConsistentWithPoints();
  EXPECT_EQ(set.regionsT().size(), 2U);
  EXPECT_FALSE(inStep(set));
  set.makePointsConsistentWithData();
  EXPECT_TRUE(inStep(set));
}

TEST(EdgeletSetRegions, HooksDropTheMemory) {
  ExposedSet set(std::vector<RegionHandle>{edgeSquare(0, 0)});
  const Computed areas(gx_Computation::eSetArea);
  static_cast<void>(set.area(true));
  set.makePointsConsistentWithData();
  static_cast<void>(set.area(true));
  EXPECT_EQ(areas.times(), 2);

  ExposedSet empty;
  empty.setRegions({emptyPlain()});
  const Computed answers(gx_Computation::eSetSelfIntersection);
  EXPECT_FALSE(empty.isSelfIntersecting());
  empty.makeDataConsistentWithPoints();
  EXPECT_FALSE(empty.isSelfIntersecting());
  EXPECT_EQ(answers.times(), 2);
}

// ---- Comparison ---------------------------------------------------------------------------------

TEST(EdgeletSetEquality, ComparesThePlainRegions) {
  EXPECT_TRUE(Set({edgeSquare(0, 0)}) == Set({edgeSquare(0, 0)}));  // other transforms, equal outlines
  EXPECT_FALSE(Set({edgeSquare(0, 0)}) == Set({edgeSquare(1, 0)}));
  EXPECT_TRUE(Set() == Set());
  EXPECT_THROW(static_cast<void>(Set({nullptr}) == Set({nullptr})), gxBadPointer);
}

// ---- Copying and moving -------------------------------------------------------------------------

TEST(EdgeletSetCopy, SharesTheRegionsOfBothListsAndBringsTheMemory) {
  Set set({edgeSquare(0, 0), edgeSquare(5, 5)});
  set.cachedVectorSize(6);
  static_cast<void>(set.area(true));
  const Set copy(set);
  Set assigned;
  assigned = set;
  const Computed areas(gx_Computation::eSetArea);
  for (const Set* same : {&copy, static_cast<const Set*>(&assigned)}) {
    EXPECT_EQ(same->regionsT(), set.regionsT());
    EXPECT_TRUE(inStep(*same));
    EXPECT_EQ(same->cachedVectorSize(), 6);
    EXPECT_EQ(same->area(true), 2.0);
  }
  EXPECT_EQ(areas.times(), 0);
}

TEST(EdgeletSetCopy, SelfAssignmentChangesNothing) {
  Set set({edgeSquare(0, 0)});
  const Set& same = set;
  set = same;
  Set& itself = set;
  set = std::move(itself);
  EXPECT_EQ(set.regionsT().size(), 1U);
  EXPECT_TRUE(inStep(set));
}

TEST(EdgeletSetMove, MovedFromIsEmptyInBothListsAndUsable) {
  const std::vector<RegionHandle> handles{edgeSquare(0, 0)};
  Set source(handles);
  static_cast<void>(source.area(true));
  Set target(std::move(source));
  EXPECT_EQ(target.regionsT(), handles);
  EXPECT_TRUE(inStep(target));
  const Computed areas(gx_Computation::eSetArea);
  EXPECT_EQ(target.area(true), 1.0);
  EXPECT_EQ(areas.times(), 0);
  EXPECT_TRUE(source.regions().empty());  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(source.regionsT().empty());
  source = std::move(target);
  EXPECT_EQ(source.regionsT(), handles);
  EXPECT_TRUE(target.regionsT().empty());  // NOLINT(bugprone-use-after-move)
  target.add(emptyPlain());
  EXPECT_EQ(target.regionsT().size(), 1U);
}

TEST(EdgeletSetReInit, EmptiesBothLists) {
  Set set({edgeSquare(0, 0)});
  set.trackChanges(true);
  set.reInit();
  EXPECT_GE(set.changeCount(), 1U);
  EXPECT_TRUE(set.regions().empty());
  EXPECT_TRUE(set.regionsT().empty());
}

// ---- Through the region set ---------------------------------------------------------------------

TEST(EdgeletSetAsSet, AssignedEdgePointRegionsStandInBothLists) {
  const RegionHandle region = edgeSquare(0, 0);
  const gxRegionSet plain({region, nullptr, emptyPlain()});
  Set set({edgeSquare(9, 9)});
  gxRegionSet& base = set;
  base = plain;
  ASSERT_EQ(set.regionsT().size(), 3U);
  EXPECT_EQ(set.regionsT()[0], region);
  EXPECT_TRUE(set.regionsT()[1].isNull());
  EXPECT_TRUE(set.regionsT()[2]->points().empty());
  EXPECT_EQ(set.regions(), plain.regions());
}

TEST(EdgeletSetAsSet, AssignedPlainRegionsAreRefusedAndNothingChanges) {
  const std::vector<RegionHandle> handles{edgeSquare(9, 9)};
  Set set(handles);
  static_cast<void>(set.area(true));
  gxRegionSet plain({plainSquare(0, 0)});
  gxRegionSet& base = set;
  EXPECT_THROW(base = plain, gxBadPointer);
  EXPECT_THROW(base = std::move(plain), gxBadPointer);
  EXPECT_EQ(plain.regions().size(), 1U);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(set.regionsT(), handles);
  EXPECT_TRUE(inStep(set));
  const Computed areas(gx_Computation::eSetArea);
  EXPECT_EQ(set.area(true), 1.0);
  EXPECT_EQ(areas.times(), 0);
}

TEST(EdgeletSetAsSet, MovingTheRegionsOutEmptiesBothLists) {
  Set set({edgeSquare(0, 0)});
  const gxRegionSet plain(std::move(static_cast<gxRegionSet&>(set)));
  EXPECT_EQ(plain.regions().size(), 1U);
  EXPECT_TRUE(set.regions().empty());
  EXPECT_TRUE(set.regionsT().empty());
}

TEST(EdgeletSetAsSet, RepairOfASetThatNeedsNoneKeepsTheEdgePointRegions) {
  const Set set({edgeSquare(0, 0), edgeSquare(5, 5)});
  Set result;
  set.regularize(result);
  EXPECT_EQ(result.regionsT(), set.regionsT());
  set.outerHull(result);
  EXPECT_TRUE(inStep(result));
}

TEST(EdgeletSetAsSet, RepairedRegionsHaveNoEdgePointsAndAreRefused) {
  Set set({edgeSquare(0, 0, 2), edgeSquare(1, 1, 2)});
  const auto before = set.regionsT();
  EXPECT_THROW(set.regularize(set), gxBadPointer);
  EXPECT_EQ(set.regionsT(), before);
  EXPECT_TRUE(inStep(set));
  gxRegionSet plain;
  set.regularize(plain);
  EXPECT_EQ(plain.regions().size(), 1U);
}

// ---- Refusals -----------------------------------------------------------------------------------

TEST(EdgeletSetFailure, RefusedOperationsThrowAndChangeNothing) {
  const Set set({edgeSquare(0, 0)});
  Set result({edgeSquare(5, 5)});
  const auto before = result.regionsT();
  EXPECT_THROW(set.mapT(gxXform<2>::I, result), gxPel::BadWindow);
  EXPECT_THROW(set.regularizeT(result), gxPel::BadWindow);
  EXPECT_THROW(Set().mapT(gxXform<2>::I, result), gxPel::BadWindow);
  EXPECT_THROW(Set().regularizeT(result), gxPel::BadWindow);
  EXPECT_EQ(result.regionsT(), before);
}
