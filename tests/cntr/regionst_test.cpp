// The model of the region set: construction, copying, moving, comparison, setters, what drops the
// memory and what keeps it.
#include <cntr/regionst.h>
#include <gtest/gtest.h>
#include <support/computed.h>
#include <support/exposed.h>

#include <type_traits>
#include <utility>
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

gxPtrHandle<gxRegion> writableSquare(double x, double y) {
  return gxPtrHandle<gxRegion>(new gxRegion(box(x, y, 1.0)));
}

Handle pointless() {
  return Handle(new gxRegion);
}

gxXform<2> shift(double tx) {
  return {gxMatrix<2>(1, 0, 0, 1), gxVector<2>(tx, 0)};
}

Handles overlapping() {
  return {square(0, 0, 2), square(1, 1, 2)};
}

}  // namespace

static_assert(std::is_nothrow_move_constructible_v<gxRegionSet>);
static_assert(
    !std::is_nothrow_move_assignable_v<gxRegionSet>);  // what is behind it may be unable to follow
static_assert(!std::is_convertible_v<Handles, gxRegionSet>);

// ---- Construction -------------------------------------------------------------------------------

TEST(RegionSet, DefaultSetHasNoRegionsAndAreaZero) {
  const gxRegionSet set;
  EXPECT_TRUE(set.regions().empty());
  EXPECT_EQ(set.cachedVectorSize(), 3);
  EXPECT_EQ(set.area(true), 0.0);
  EXPECT_EQ(set.area(false), 0.0);
}

TEST(RegionSet, ConstructorSharesTheRegionsInOrder) {
  const Handles handles{square(0, 0), square(5, 0), nullptr};
  const gxRegionSet set(handles);
  EXPECT_EQ(set.regions(), handles);
  EXPECT_EQ(handles[0]->refCount(), 2);
}

TEST(RegionSet, ConstructorFromWritableHandlesSharesThemAndKeepsNulls) {
  const std::vector<gxPtrHandle<gxRegion>> handles{writableSquare(0, 0), nullptr, writableSquare(3, 0)};
  const gxRegionSet set(handles);
  ASSERT_EQ(set.regions().size(), 3U);
  EXPECT_EQ(set.regions()[0].get(), handles[0].get());
  EXPECT_TRUE(set.regions()[1].isNull());
  EXPECT_EQ(set.regions()[2].get(), handles[2].get());
}

TEST(RegionSet, BracedListsOfHandlesCompile) {
  const Handle one = square(0, 0);
  EXPECT_EQ(gxRegionSet({one, square(4, 4)}).regions().size(), 2U);
  EXPECT_TRUE(gxRegionSet({}, gxContourDefs::eRegularize).regions().empty());
  gxRegionSet set;
  set.regions({one});
  EXPECT_EQ(set.regions(), Handles{one});
  set.regions({});
  EXPECT_TRUE(set.regions().empty());
}

TEST(RegionSet, ModeNoneAndUnknownModesKeepOverlappingRegionsAsGiven) {
  const Handles handles = overlapping();
  EXPECT_EQ(gxRegionSet(handles, gxContourDefs::eNone).regions(), handles);
  EXPECT_EQ(gxRegionSet(handles, static_cast<gxContourDefs::IntersectionMode>(7)).regions(), handles);
  EXPECT_EQ(gxRegionSet(handles, static_cast<gxContourDefs::IntersectionMode>(-1)).regions(), handles);
}

TEST(RegionSet, ModesReplaceTheSetByItsRepairedForm) {
  const Handles handles = overlapping();
  gxRegionSet expected;
  gxRegionSet(handles).regularize(expected);
  EXPECT_EQ(gxRegionSet(handles, gxContourDefs::eRegularize), expected);
  EXPECT_EQ(expected.regions().size(), 1U);
  gxRegionSet(handles).outerHull(expected);
  EXPECT_EQ(gxRegionSet(handles, gxContourDefs::eOuterHull), expected);
}

TEST(RegionSet, ModeIsNotPassedToTheRegions) {
  const Handle eight(new gxRegion({{0, 0}, {2, 2}, {2, 0}, {0, 2}}));
  const gxRegionSet set({eight, square(9, 9)}, gxContourDefs::eNone);
  EXPECT_TRUE(set.regions()[0]->isSelfIntersecting());
}

TEST(RegionSet, ConstructorWhoseRepairFailsThrows) {
  EXPECT_THROW(gxRegionSet({square(0, 0), nullptr}, gxContourDefs::eRegularize), gxBadPointer);
  EXPECT_THROW(gxRegionSet({pointless(), square(0, 0)}, gxContourDefs::eOuterHull),
               gxContourDefs::EmptyContour);
}

// ---- Comparison ---------------------------------------------------------------------------------

TEST(RegionSetEquality, TwoEmptySetsAreEqual) {
  EXPECT_TRUE(gxRegionSet() == gxRegionSet());
  EXPECT_FALSE(gxRegionSet() == gxRegionSet({square(0, 0)}));
}

TEST(RegionSetEquality, ComparesRegionsByValueInOrder) {
  EXPECT_TRUE(gxRegionSet({square(0, 0), square(5, 0)}) == gxRegionSet({square(0, 0), square(5, 0)}));
  EXPECT_FALSE(gxRegionSet({square(0, 0), square(5, 0)}) == gxRegionSet({square(5, 0), square(0, 0)}));
}

TEST(RegionSetEquality, MemoryAndCachedVectorSizeTakeNoPart) {
  const gxRegionSet a({square(0, 0)});
  gxRegionSet b({square(0, 0)});
  b.cachedVectorSize(9);
  static_cast<void>(b.area(true));
  EXPECT_TRUE(a == b);
}

TEST(RegionSetEquality, NullHandleThrowsWhereverItStands) {
  const gxRegionSet whole({square(0, 0), square(5, 0)});
  const gxRegionSet holed({square(0, 0), nullptr});
  EXPECT_THROW(static_cast<void>(whole == holed), gxBadPointer);
  EXPECT_THROW(static_cast<void>(holed == whole), gxBadPointer);
  EXPECT_THROW(static_cast<void>(holed == holed), gxBadPointer);
}

TEST(RegionSetEquality, StopsAtTheFirstUnequalPair) {
  EXPECT_FALSE(gxRegionSet({square(0, 0), nullptr}) == gxRegionSet({square(1, 0), nullptr}));
}

TEST(RegionSetEquality, SetsOfDifferentLengthAreUnequalAndNoHandleIsRead) {
  EXPECT_FALSE(gxRegionSet({nullptr}) == gxRegionSet({nullptr, nullptr}));
}

// ---- Copying and moving -------------------------------------------------------------------------

TEST(RegionSetCopy, AnswersFromTheCopiedMemory) {
  const gxRegionSet original({square(0, 0), square(5, 0)});
  const double area = original.area(true);
  const gxRect rect = original.encloseRect(shift(1));
  static_cast<void>(original.isSelfIntersecting());
  const gxRegionSet copy(original);
  const Computed areas(gx_Computation::eSetArea);
  const Computed rects(gx_Computation::eSetEncloseRect);
  const Computed tests(gx_Computation::eSetSelfIntersection);
  EXPECT_EQ(copy.area(true), area);
  EXPECT_EQ(copy.encloseRect(shift(1)), rect);
  EXPECT_FALSE(copy.isSelfIntersecting());
  EXPECT_EQ(areas.times(), 0);
  EXPECT_EQ(rects.times(), 0);
  EXPECT_EQ(tests.times(), 0);
  EXPECT_EQ(copy.regions(), original.regions());
}

TEST(RegionSetCopy, AddingToOneLeavesTheOthersMemory) {
  gxRegionSet original({square(0, 0)});
  static_cast<void>(original.area(true));
  gxRegionSet copy(original);
  copy.add(square(5, 0));
  const Computed areas(gx_Computation::eSetArea);
  EXPECT_EQ(original.area(true), 1.0);
  EXPECT_EQ(areas.times(), 0);
  EXPECT_EQ(copy.area(true), 2.0);
  EXPECT_EQ(areas.times(), 1);
}

TEST(RegionSetCopy, RectanglesAreCopiedNotShared) {
  const gxRegionSet original({square(0, 0)});
  static_cast<void>(original.encloseRect(shift(1)));
  const gxRegionSet copy(original);
  static_cast<void>(copy.encloseRect(shift(2)));
  const Computed rects(gx_Computation::eSetEncloseRect);
  static_cast<void>(original.encloseRect(shift(2)));
  EXPECT_EQ(rects.times(), 1);
}

TEST(RegionSetCopy, AssigningASetWithoutRectanglesForgetsThem) {
  const gxRegionSet plain({square(0, 0)});
  gxRegionSet target({square(0, 0)});
  static_cast<void>(target.encloseRect(shift(1)));
  target = plain;
  const Computed rects(gx_Computation::eSetEncloseRect);
  static_cast<void>(target.encloseRect(shift(1)));
  EXPECT_EQ(rects.times(), 1);
}

TEST(RegionSetCopy, CopiesCachedVectorSize) {
  gxRegionSet original;
  original.cachedVectorSize(7);
  EXPECT_EQ(gxRegionSet(original).cachedVectorSize(), 7);
  gxRegionSet target;
  target = original;
  EXPECT_EQ(target.cachedVectorSize(), 7);
}

TEST(RegionSetCopy, SharesTheRepairedSets) {
  const gxRegionSet original(overlapping());
  gxRegionSet result;
  original.regularize(result);
  const gxRegionSet copy(original);
  const Computed repairs(gx_Computation::eSetRegularize);
  gxRegionSet again;
  copy.regularize(again);
  EXPECT_EQ(repairs.times(), 0);
  EXPECT_EQ(again.regions(), result.regions());  // the very same objects
}

TEST(RegionSetCopy, SelfAssignmentKeepsRegionsAndMemory) {
  gxRegionSet set({square(0, 0)});
  static_cast<void>(set.area(true));
  const gxRegionSet& same = set;
  set = same;
  const Computed areas(gx_Computation::eSetArea);
  EXPECT_EQ(set.area(true), 1.0);
  EXPECT_EQ(areas.times(), 0);
}

TEST(RegionSetCopy, ReferenceCountAndTrackingAreNotCopied) {
  const gxPtrHandle<gxRegionSet> original(new gxRegionSet({square(0, 0)}));
  original->trackChanges(true);
  gxRegionSet copy(*original);
  EXPECT_EQ(copy.refCount(), 0);
  EXPECT_FALSE(copy.isTrackingChanges());
  copy = *original;
  EXPECT_FALSE(copy.isTrackingChanges());
  *original = copy;
  EXPECT_EQ(original->refCount(), 1);
  EXPECT_EQ(original->changeCount(), 0U);
}

TEST(RegionSetMove, MovedFromSetIsEmptyAndUsable) {
  gxRegionSet source({square(0, 0)});
  source.cachedVectorSize(5);
  static_cast<void>(source.area(true));
  gxRegionSet target(std::move(source));
  EXPECT_EQ(target.regions().size(), 1U);
  EXPECT_EQ(target.cachedVectorSize(), 5);
  const Computed areas(gx_Computation::eSetArea);
  EXPECT_EQ(target.area(true), 1.0);
  EXPECT_EQ(areas.times(), 0);
  EXPECT_TRUE(source.regions().empty());  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(source.area(true), 0.0);
  source.add(square(3, 3, 2));
  EXPECT_EQ(source.area(true), 4.0);
  target = std::move(source);
  EXPECT_EQ(target.area(true), 4.0);
  EXPECT_TRUE(source.regions().empty());  // NOLINT(bugprone-use-after-move)
}

TEST(RegionSetMove, SelfMoveChangesNothing) {
  gxRegionSet set({square(0, 0)});
  gxRegionSet& same = set;
  set = std::move(same);
  EXPECT_EQ(set.regions().size(), 1U);
}

TEST(RegionSetMove, NotifiesNobody) {
  gxRegionSet source({square(0, 0)});
  gxRegionSet target;
  source.trackChanges(true);
  target.trackChanges(true);
  target = std::move(source);
  EXPECT_EQ(source.changeCount(), 0U);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(target.changeCount(), 0U);
}

// The repaired form belongs to the set; once the set is overwritten, nobody else holds it.
TEST(RegionSetOwnedSource, RepairIntoItselfSurvives) {
  gxRegionSet set(overlapping());
  set.regularize(set);
  gxRegionSet expected;
  gxRegionSet(overlapping()).regularize(expected);
  EXPECT_EQ(set, expected);
  EXPECT_EQ(set.regions().size(), 1U);
  gxRegionSet other(overlapping());
  other.outerHull(other);
  gxRegionSet(overlapping()).outerHull(expected);
  EXPECT_EQ(other, expected);
  EXPECT_EQ(other.regions().size(), 1U);
}

TEST(RegionSetOwnedSource, ElementOfTheSetAsArgumentOfAdd) {
  gxRegionSet set({square(0, 0)});
  for (int i = 0; i < 20; ++i) set.add(set.regions().front());
  EXPECT_EQ(set.regions().size(), 21U);
  EXPECT_EQ(set.area(false), 21.0);
}

// ---- Setters ------------------------------------------------------------------------------------

TEST(RegionSetAdd, ModeNoneAppendsAsPassedAlsoWhereRegionsOverlap) {
  gxRegionSet set;
  const Handles handles = overlapping();
  for (const Handle& handle : handles) set.add(handle, gxContourDefs::eNone);
  EXPECT_EQ(set.regions(), handles);
  set.add(nullptr);
  EXPECT_TRUE(set.regions()[2].isNull());
}

TEST(RegionSetAdd, ModeAppliesToTheWholeSet) {
  gxRegionSet set({square(0, 0, 2), square(1, 1, 2)});
  set.add(square(20, 20), gxContourDefs::eRegularize);
  ASSERT_EQ(set.regions().size(), 2U);
  EXPECT_FALSE(set.isSelfIntersecting());
  EXPECT_EQ(*set.regions()[1], *square(20, 20));
}

TEST(RegionSetAdd, DropsEverythingRemembered) {
  gxRegionSet set({square(0, 0), square(5, 0)});
  static_cast<void>(set.area(true));
  static_cast<void>(set.area(false));
  static_cast<void>(set.centerOfMass(true));
  static_cast<void>(set.centerOfMass(false));
  static_cast<void>(set.inertiaMatrix(true));
  static_cast<void>(set.inertiaMatrix(false));
  static_cast<void>(set.encloseRect(gxXform<2>::I));
  static_cast<void>(set.isSelfIntersecting());
  set.add(square(10, 0));
  const Computed areas(gx_Computation::eSetArea);
  const Computed centers(gx_Computation::eSetCenterOfMass);
  const Computed moments(gx_Computation::eSetInertiaMatrix);
  const Computed rects(gx_Computation::eSetEncloseRect);
  const Computed tests(gx_Computation::eSetSelfIntersection);
  EXPECT_EQ(set.area(true), 3.0);
  EXPECT_EQ(set.area(false), 3.0);
  EXPECT_EQ(set.centerOfMass(true), gxVector<2>(5.5, 0.5));
  EXPECT_EQ(set.centerOfMass(false), gxVector<2>(5.5, 0.5));
  static_cast<void>(set.inertiaMatrix(true));
  static_cast<void>(set.inertiaMatrix(false));
  EXPECT_EQ(set.encloseRect(gxXform<2>::I).size(), gxVector<2>(11, 1));
  EXPECT_FALSE(set.isSelfIntersecting());
  EXPECT_EQ(areas.times(), 2);
  EXPECT_EQ(centers.times(), 2);
  EXPECT_EQ(moments.times(), 2);
  EXPECT_EQ(rects.times(), 1);
  EXPECT_EQ(tests.times(), 1);
}

TEST(RegionSetAdd, DropsTheRepairedForms) {
  gxRegionSet set(overlapping());
  gxRegionSet result;
  set.regularize(result);
  set.outerHull(result);
  set.add(square(20, 20));
  const Computed regularized(gx_Computation::eSetRegularize);
  const Computed hulls(gx_Computation::eSetOuterHull);
  set.regularize(result);
  EXPECT_EQ(result.regions().size(), 2U);
  set.outerHull(result);
  EXPECT_EQ(result.regions().size(), 2U);
  EXPECT_EQ(regularized.times(), 1);
  EXPECT_EQ(hulls.times(), 1);
}

TEST(RegionSetAdd, FailingRepairKeepsTheOldRegionsAndDropsOnlyTheMemory) {
  const Handles handles{square(0, 0), square(5, 0)};
  gxRegionSet set(handles);
  static_cast<void>(set.area(true));
  EXPECT_THROW(set.add(nullptr, gxContourDefs::eRegularize), gxBadPointer);
  EXPECT_EQ(set.regions(), handles);
  const Computed areas(gx_Computation::eSetArea);
  EXPECT_EQ(set.area(true), 2.0);
  EXPECT_EQ(areas.times(), 1);
  EXPECT_FALSE(set.isSelfIntersecting());
}

TEST(RegionSetRegions, ReplacesTheRegions) {
  gxRegionSet set({square(0, 0)});
  const Handles handles{square(3, 3, 2), nullptr, square(3, 3, 2)};
  set.regions(handles);
  EXPECT_EQ(set.regions(), handles);
  const std::vector<gxPtrHandle<gxRegion>> writable{writableSquare(0, 0), nullptr};
  set.regions(writable);
  ASSERT_EQ(set.regions().size(), 2U);
  EXPECT_EQ(set.regions()[0].get(), writable[0].get());
  EXPECT_TRUE(set.regions()[1].isNull());
}

TEST(RegionSetRegions, ModeAppliesToTheNewRegions) {
  gxRegionSet set({square(50, 50)});
  set.regions(overlapping(), gxContourDefs::eOuterHull);
  EXPECT_EQ(set.regions().size(), 1U);
  const std::vector<gxPtrHandle<gxRegion>> writable{gxPtrHandle<gxRegion>(new gxRegion(box(0, 0, 2))),
                                                    gxPtrHandle<gxRegion>(new gxRegion(box(1, 1, 2)))};
  set.regions(writable, gxContourDefs::eRegularize);
  EXPECT_EQ(set.regions().size(), 1U);
}

TEST(RegionSetRegions, DropsTheMemory) {
  gxRegionSet set({square(0, 0)});
  static_cast<void>(set.area(false));
  set.regions({square(0, 0, 3)});
  EXPECT_EQ(set.area(false), 9.0);
}

TEST(RegionSetRegions, FailingRepairKeepsTheOldRegions) {
  const Handles handles{square(0, 0)};
  gxRegionSet set(handles);
  EXPECT_THROW(set.regions({pointless(), square(0, 0)}, gxContourDefs::eOuterHull),
               gxContourDefs::EmptyContour);
  EXPECT_EQ(set.regions(), handles);
  EXPECT_THROW(set.regions({nullptr}, gxContourDefs::eRegularize), gxBadPointer);
  EXPECT_EQ(set.regions(), handles);
  EXPECT_EQ(set.area(false), 1.0);
}

TEST(RegionSetRegions, RawSetterKeepsTheMemory) {
  ExposedRegionSet set(gxRegionSet({square(0, 0)}));
  EXPECT_EQ(set.area(true), 1.0);
  set.setRegions({square(0, 0, 3)});
  EXPECT_EQ(set.area(true), 1.0);   // the remembered one, on purpose
  EXPECT_EQ(set.area(false), 9.0);  // not asked before
  set.cleanCacheInfo();
  EXPECT_EQ(set.area(true), 9.0);
}

// Counts how often it is told to forget, and to bring its view in step.
class RememberingSet : public ExposedRegionSet {
 public:
  int forgot = 0;
  int followed = 0;

  void cleanCacheInfo() override {
    ++forgot;
    ExposedRegionSet::cleanCacheInfo();
  }
  void makeDataConsistentWithPoints() override { ++followed; }
};

TEST(RegionSetWithAMemoryOfItsOwn, HearsOfEveryChangeOfItsRegions) {
  RememberingSet set;
  const auto during = [&set](const auto& change) {
    const int forgot = set.forgot;
    const int followed = set.followed;
    change();
    return std::pair(set.forgot - forgot, set.followed - followed);
  };
  EXPECT_EQ(during([&] { set.regions({square(0, 0)}); }), std::pair(1, 1));
  EXPECT_EQ(during([&] { set.regions(Handles{square(0, 0)}, gxContourDefs::eNone); }), std::pair(1, 1));
  EXPECT_EQ(during([&] { set.add(square(5, 5)); }), std::pair(1, 1));
  EXPECT_EQ(during([&] { EXPECT_THROW(set.add(nullptr, gxContourDefs::eRegularize), gxBadPointer); }),
            std::pair(1, 1))
      << "also where the mode then fails";
  EXPECT_EQ(during([&] { set.cachedVectorSize(4); }), std::pair(0, 0));
  EXPECT_EQ(during([&] { static_cast<void>(set.area(false)); }), std::pair(0, 0));
}

TEST(RegionSetRegions, HooksOfAPlainSetChangeNothing) {
  ExposedRegionSet set(gxRegionSet({square(0, 0)}));
  static_cast<void>(set.area(true));
  set.makeDataConsistentWithPoints();
  set.makePointsConsistentWithData();
  const Computed areas(gx_Computation::eSetArea);
  EXPECT_EQ(set.area(true), 1.0);
  EXPECT_EQ(areas.times(), 0);
  EXPECT_EQ(set.regions().size(), 1U);
}

TEST(RegionSetCachedVectorSize, ZeroIsAcceptedAndNegativeRefused) {
  gxRegionSet set;
  set.cachedVectorSize(0);
  EXPECT_EQ(set.cachedVectorSize(), 0);
  set.cachedVectorSize(2);
  try {
    set.cachedVectorSize(-1);
    FAIL() << "accepted";
  } catch (const gxContourDefs::BadParams& e) {
    EXPECT_TRUE(e.message().empty());
  }
  EXPECT_EQ(set.cachedVectorSize(), 2);
}

TEST(RegionSetCachedVectorSize, KeepsWhatIsRemembered) {
  gxRegionSet set({square(0, 0)});
  for (int i = 0; i < 4; ++i) static_cast<void>(set.encloseRect(shift(i)));
  set.cachedVectorSize(0);
  const Computed rects(gx_Computation::eSetEncloseRect);
  for (int i = 0; i < 4; ++i) static_cast<void>(set.encloseRect(shift(i)));
  EXPECT_EQ(rects.times(), 0);
}

TEST(RegionSetReInit, BringsTheDefaultStateBack) {
  gxRegionSet set({square(0, 0)});
  set.cachedVectorSize(8);
  static_cast<void>(set.area(true));
  set.trackChanges(true);
  set.reInit();
  EXPECT_TRUE(set.regions().empty());
  EXPECT_EQ(set.cachedVectorSize(), 3);
  EXPECT_EQ(set.area(true), 0.0);
  EXPECT_TRUE(set.isTrackingChanges());
  EXPECT_GT(set.changeCount(), 0U);
}

// ---- Change reports -----------------------------------------------------------------------------

TEST(RegionSetChanges, SettersReport) {
  gxRegionSet set;
  set.trackChanges(true);
  set.add(square(0, 0));
  EXPECT_EQ(set.changeCount(), 1U);
  set.regions({square(0, 0)});
  EXPECT_EQ(set.changeCount(), 2U);
  set.cachedVectorSize(4);
  EXPECT_EQ(set.changeCount(), 3U);
  EXPECT_THROW(set.cachedVectorSize(-4), gxContourDefs::BadParams);
  EXPECT_EQ(set.changeCount(), 3U);
}

TEST(RegionSetChanges, EveryNewlyRememberedAnswerReportsOnce) {
  const gxRegionSet set({square(0, 0, 2), square(1, 1, 2)});
  gxRegionSet result;
  set.trackChanges(true);
  std::uint32_t before = 0;
  const auto reportsOnce = [&](const auto& ask, std::uint32_t times) {
    ask();
    EXPECT_EQ(set.changeCount() - before, times);
    before = set.changeCount();
    ask();
    EXPECT_EQ(set.changeCount(), before);
  };
  reportsOnce([&] { static_cast<void>(set.area(true)); }, 1);
  reportsOnce([&] { static_cast<void>(set.area(false)); }, 1);
  reportsOnce([&] { static_cast<void>(set.centerOfMass(true)); }, 1);
  reportsOnce([&] { static_cast<void>(set.inertiaMatrix(false)); }, 1);
  reportsOnce([&] { static_cast<void>(set.encloseRect(shift(3))); }, 1);
  reportsOnce([&] { static_cast<void>(set.isSelfIntersecting()); }, 1);
  reportsOnce([&] { set.regularize(result); }, 1);
  reportsOnce([&] { set.outerHull(result); }, 1);
}

TEST(RegionSetChanges, FailedAnswersReportNothing) {
  const gxRegionSet set({square(0, 0), nullptr});
  set.trackChanges(true);
  EXPECT_THROW(static_cast<void>(set.area(true)), gxBadPointer);
  EXPECT_THROW(static_cast<void>(set.centerOfMass(true)), gxBadPointer);
  EXPECT_THROW(static_cast<void>(set.encloseRect(gxXform<2>::I)), gxBadPointer);
  EXPECT_THROW(static_cast<void>(set.isSelfIntersecting()), gxBadPointer);
  EXPECT_EQ(set.changeCount(), 0U);
}

// ---- Sharing ------------------------------------------------------------------------------------

TEST(RegionSetLifetime, ReleasesItsRegions) {
  const Handle region = square(0, 0);
  {
    const gxRegionSet set({region, region});
    const gxRegionSet copy(set);
    EXPECT_EQ(region->refCount(), 5);
  }
  EXPECT_EQ(region->refCount(), 1);
}

TEST(RegionSetAdd, ThatFailsForgetsTheVerdictOfTheRefusedList) {
  const Handle square(new gxRegion(std::vector<gxVector<2>>{{0, 0}, {1, 0}, {1, 1}, {0, 1}}));
  std::vector<gxVector<2>> star;
  for (int i = 0; i < 5; ++i) star.emplace_back(5.0, gxRadian(2.513274122871834 * i));
  const Handle pentagram(new gxRegion(star));
  gxRegionSet set({square});
  EXPECT_THROW(set.add(pentagram, gxContourDefs::eOuterHull), gxContourDefs::BadParams);
  EXPECT_FALSE(set.isSelfIntersecting());
  EXPECT_THROW(set.regions({pentagram}, gxContourDefs::eOuterHull), gxContourDefs::BadParams);
  EXPECT_FALSE(set.isSelfIntersecting());
  EXPECT_EQ(set.regions().size(), 1U);
}

TEST(RegionSetLifetime, RegionsOfTenThousandNestedHolesAreCopiedAskedAndDestroyed) {
  Handle level = square(0, 0);
  for (int depth = 1; depth < 10000; ++depth) {
    const gxPtrHandle<gxRegion> around(new gxRegion(box(-depth, -depth, 2.0 * depth + 1)));
    around->holes({level});
    level = around;
  }
  gxRegionSet set({level, level});
  level = nullptr;
  const gxRegionSet copy(set);
  set = gxRegionSet();
  EXPECT_DOUBLE_EQ(copy.area(true), 2 * (19999.0 * 19999.0 - 19997.0 * 19997.0));
  EXPECT_FALSE(copy.inside({0.5, 0.4}, true));
}
