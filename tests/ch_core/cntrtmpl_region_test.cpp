// The edge-point region: one contour seen as region and as edge-point contour, two lists of holes,
// copies and moves that touch each part once, and writing through every base.
#include <ch_core/cntrtmpl.h>
#include <gtest/gtest.h>
#include <support/computed.h>
#include <support/shape_text.h>
#include <velip/pel.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Contour = gxContourT<gxEdgelet>;
using Region = gxRegionT<gxEdgelet>;
using RegionHandle = gxPtrHandle_const<Region>;
using PlainHandle = gxPtrHandle_const<gxRegion>;
using Xform = gxPtrHandle_const<gx2XformBase>;

gxEdgelet edge(double x, double y, unsigned short magnitude = 7, unsigned char angle = 9) {
  return {gxVector<2>(x, y), magnitude, gxAngle8(angle)};
}

std::vector<gxEdgelet> squareData(double x = 0, double y = 0, double size = 4) {
  return {edge(x, y, 1), edge(x + size, y, 2), edge(x + size, y + size, 3), edge(x, y + size, 4)};
}

std::vector<gxVector<2>> positions(const std::vector<gxEdgelet>& data) {
  std::vector<gxVector<2>> result;
  for (const gxEdgelet& e : data) result.push_back(e.position());
  return result;
}

Xform shiftBy5() {
  return Xform(new gx2XformLinear(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), gxVector<2>(5, 0))));
}

PlainHandle plainSquare(double x, double y, double size) {
  return PlainHandle(new gxRegion({{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}}));
}

RegionHandle edgeSquare(double x, double y, double size) {
  return RegionHandle(new Region(squareData(x, y, size)));
}

bool inStep(const Region& region) {
  if (region.points().size() != region.data().size()) return false;
  for (std::size_t i = 0; i < region.points().size(); ++i) {
    if (!(region.point(region.data()[i]) == region.points()[i])) return false;
  }
  return true;
}

}  // namespace

static_assert(std::is_nothrow_move_constructible_v<Region>);
static_assert(!std::is_nothrow_move_assignable_v<Region>);  // as of all shapes
static_assert(std::is_base_of_v<gxRegion, Region> && std::is_base_of_v<Contour, Region>);
static_assert(std::is_convertible_v<RegionHandle, PlainHandle>);
static_assert(!std::is_convertible_v<PlainHandle, RegionHandle>);

// ---- Construction -------------------------------------------------------------------------------

TEST(EdgeletRegion, DefaultIsEmptyClosedAndWithoutTransform) {
  const Region region;
  EXPECT_TRUE(region.points().empty());
  EXPECT_TRUE(region.data().empty());
  EXPECT_TRUE(region.holes().empty());
  EXPECT_TRUE(region.gxRegion::holes().empty());
  EXPECT_TRUE(region.isClosed());
  EXPECT_EQ(region.label(), 0UL);
  EXPECT_TRUE(region.dataFromPointsXform().isNull());
}

TEST(EdgeletRegion, OfAContourSharesItsTransformAndTakesTheLabel) {
  Contour contour(squareData(), shiftBy5());
  contour.label(3);
  const Region region(contour, 8);
  EXPECT_EQ(region.label(), 8UL);
  EXPECT_EQ(region.data(), contour.data());
  EXPECT_EQ(region.points(), contour.points());
  EXPECT_EQ(region.dataFromPointsXform(), contour.dataFromPointsXform());
  EXPECT_TRUE(region.gxContourT<gxEdgelet>::operator==(contour));
}

TEST(EdgeletRegion, OfAnOpenContourIsClosedAndForgetsWhatHeldForTheOpenOne) {
  Contour contour(squareData());
  contour.isClosed(false);
  EXPECT_EQ(contour.length(), 12.0);
  const Region region(contour, 0);
  EXPECT_TRUE(region.isClosed());
  EXPECT_EQ(region.length(), 16.0);
}

TEST(EdgeletRegion, OfEdgePointsAndTransform) {
  const Region region(squareData(), shiftBy5(), 2);
  EXPECT_EQ(region.label(), 2UL);
  EXPECT_EQ(region.points(), pointsOf("-5 0, -1 0, -1 4, -5 4"));
  EXPECT_EQ(region.area(false), 16.0);
  const Region plain(squareData(), 6);
  EXPECT_EQ(plain.label(), 6UL);
  EXPECT_EQ(plain.points(), positions(squareData()));
  const Region null(squareData(), nullptr, 1);
  EXPECT_EQ(null.points(), positions(squareData()));
}

TEST(EdgeletRegion, OneContourIsSharedByBothBases) {
  Region region(squareData());
  const gxContour* throughRegion = static_cast<gxRegion*>(&region);
  const gxContour* throughEdges = static_cast<Contour*>(&region);
  EXPECT_EQ(throughRegion, throughEdges);
}

TEST(EdgeletRegion, NamesOfBothBasesResolve) {
  const Region region(squareData());
  EXPECT_TRUE(region.isClosed());
  EXPECT_EQ(region.points().size(), 4U);
  EXPECT_EQ(region.closestPoint({2, -1}, false), gxVector<2>(2, 0));
  EXPECT_EQ(region.closestPoint({2, -1}, false, true), gxVector<2>(2, 0));
  EXPECT_EQ(region.distToPoint({2, -1}, false), 1.0);
  EXPECT_EQ(region.distToPoint({2, -1}, false, true, true), 1.0);
  EXPECT_EQ(region.cachedVectorSize(), 3);
  gxContour mapped;
  region.map(gxXform<2>::I, mapped);
  gxRegion mappedRegion;
  region.map(gxXform<2>::I, mappedRegion);
  EXPECT_EQ(mapped.points(), mappedRegion.points());
}

// ---- Region behaviour ---------------------------------------------------------------------------

TEST(EdgeletRegion, MeasuresAreThoseOfThePlainRegion) {
  const Region region(squareData(2, 3, 5));
  const gxRegion plain(region.points());
  EXPECT_EQ(region.area(true), plain.area(true));
  EXPECT_EQ(region.centerOfMass(false), plain.centerOfMass(false));
  EXPECT_EQ(region.inertiaMatrix(false), plain.inertiaMatrix(false));
  EXPECT_EQ(region.inside({3, 4}, false), plain.inside({3, 4}, false));
}

TEST(EdgeletRegion, CannotBeSetOpen) {
  Region region(squareData());
  EXPECT_NO_THROW(region.isClosed(true));
  EXPECT_THROW(region.isClosed(false), gxContourDefs::RegionCannotBeSetOpen);
  EXPECT_EQ(region.data(), squareData());
}

TEST(EdgeletRegion, SettersKeepTheViewsInStepAndDropTheRegionsMemory) {
  Region region(squareData(), shiftBy5(), 0);
  EXPECT_EQ(region.area(false), 16.0);
  region.points(pointsOf("0 0, 1 0, 1 1, 0 1"));
  EXPECT_EQ(region.area(false), 1.0);
  EXPECT_EQ(positions(region.data()), pointsOf("5 0, 6 0, 6 1, 5 1"));
  EXPECT_EQ(region.data()[0].magnitude(), 0);
  region.data(squareData(0, 0, 3));
  EXPECT_EQ(region.area(false), 9.0);
  EXPECT_TRUE(inStep(region));
  EXPECT_EQ(region.data(), squareData(0, 0, 3));
}

// ---- Comparison ---------------------------------------------------------------------------------

TEST(EdgeletRegionEquality, CopyIsEqualAndRebuiltIsNot) {
  const Region region(squareData());
  EXPECT_TRUE(Region(region) == region);
  EXPECT_FALSE(Region(squareData()) == region);
}

TEST(EdgeletRegionEquality, HolesOfEitherKindAndLabelTakeNoPart) {
  const Region region(squareData());
  Region other(region);
  other.holes({edgeSquare(1, 1, 1)});
  other.holes({plainSquare(1, 1, 1)});
  other.label(9);
  EXPECT_TRUE(other == region);
}

// ---- Holes --------------------------------------------------------------------------------------

TEST(EdgeletRegionHoles, EdgePointHolesDoNotTouchThePlainOnes) {
  Region region(squareData());
  region.holes({edgeSquare(1, 1, 1)});
  EXPECT_EQ(region.holes().size(), 1U);
  EXPECT_TRUE(region.gxRegion::holes().empty());
  EXPECT_EQ(region.area(true), 16.0);
}

TEST(EdgeletRegionHoles, PlainHolesCountAndDoNotTouchTheEdgePointOnes) {
  Region region(squareData());
  const RegionHandle kept = edgeSquare(2, 2, 1);
  region.holes({kept});
  region.holes({plainSquare(1, 1, 1)});
  EXPECT_EQ(region.area(true), 15.0);
  ASSERT_EQ(region.holes().size(), 1U);
  EXPECT_EQ(region.holes()[0], kept);
}

TEST(EdgeletRegionHoles, SettingEdgePointHolesDropsTheMemoryAndReports) {
  Region region(squareData());
  static_cast<void>(region.area(false));
  static_cast<void>(region.length());
  region.trackChanges(true);
  region.holes(std::vector<RegionHandle>{});
  EXPECT_GT(region.changeCount(), 0U);
  const Computed areas(gx_Computation::eArea);
  const Computed lengths(gx_Computation::eLength);
  static_cast<void>(region.area(false));
  static_cast<void>(region.length());
  EXPECT_EQ(areas.times(), 1);
  EXPECT_EQ(lengths.times(), 1);
}

TEST(EdgeletRegionHoles, EdgePointHolesAreNotChecked) {
  Region region(squareData());
  region.holes({nullptr, edgeSquare(3, 3, 4), edgeSquare(50, 50, 1)});
  EXPECT_EQ(region.holes().size(), 3U);
  EXPECT_TRUE(region.holes()[0].isNull());
  EXPECT_EQ(region.data(), squareData());
}

TEST(EdgeletRegionHoles, EveryKindOfListCompiles) {
  Region region(squareData());
  const RegionHandle typed = edgeSquare(1, 1, 1);
  const gxPtrHandle<Region> writable(new Region(squareData(1, 1, 1)));
  region.holes(std::vector<RegionHandle>{typed});
  region.holes(std::vector<gxPtrHandle<Region>>{writable});
  EXPECT_EQ(region.holes()[0].get(), writable.get());
  region.holes({typed});
  region.holes({writable});
  EXPECT_EQ(region.holes()[0].get(), writable.get());
  region.holes({});
  EXPECT_TRUE(region.holes().empty());
  const gxPtrHandle<gxRegion> plain(new gxRegion(positions(squareData(1, 1, 1))));
  region.holes(std::vector<PlainHandle>{plain});
  region.holes(std::vector<gxPtrHandle<gxRegion>>{plain});
  region.holes({plain});
  region.holes({PlainHandle(plain)});
  EXPECT_EQ(region.gxRegion::holes().size(), 1U);
  EXPECT_TRUE(region.holes().empty());
}

TEST(EdgeletRegionHoles, PlainHolesMakeTheDataAnew) {
  Region region(squareData());
  region.holes({plainSquare(1, 1, 1)});
  EXPECT_EQ(region.data()[2], edge(4, 4, 0, 0));
}

TEST(EdgeletRegionHoles, RefusedPlainHolesChangeNothing) {
  Region region(squareData());
  EXPECT_THROW(region.holes({plainSquare(3, 3, 4)}), gxContourDefs::BadParams);
  EXPECT_THROW(region.holes({PlainHandle()}), gxBadPointer);
  EXPECT_EQ(region.data(), squareData());
  EXPECT_TRUE(region.gxRegion::holes().empty());
}

// ---- Copying and moving -------------------------------------------------------------------------

TEST(EdgeletRegionCopy, SharesTransformAndBothListsOfHoles) {
  Region region(squareData(), shiftBy5(), 6);
  region.holes({edgeSquare(-4, 1, 1)});
  region.holes({plainSquare(-4, 1, 1)});
  Region assigned;
  assigned = region;
  const Region copy(region);
  for (const Region* same : {&copy, static_cast<const Region*>(&assigned)}) {
    EXPECT_EQ(same->holes(), region.holes());
    EXPECT_EQ(same->gxRegion::holes(), region.gxRegion::holes());
    EXPECT_EQ(same->dataFromPointsXform(), region.dataFromPointsXform());
    EXPECT_EQ(same->points(), region.points());
    EXPECT_EQ(same->data(), region.data());
    EXPECT_EQ(same->label(), 6UL);
  }
}

TEST(EdgeletRegionCopy, BringsBothMemoriesAlong) {
  const Region region(squareData());
  static_cast<void>(region.area(false));
  static_cast<void>(region.length());
  Region assigned;
  assigned = region;
  const Region copy(region);
  const Computed areas(gx_Computation::eArea);
  const Computed lengths(gx_Computation::eLength);
  EXPECT_EQ(copy.area(false) + assigned.area(false), 32.0);
  EXPECT_EQ(copy.length() + assigned.length(), 32.0);
  EXPECT_EQ(areas.times() + lengths.times(), 0);
}

TEST(EdgeletRegionCopy, SelfAssignmentChangesNothing) {
  Region region(squareData());
  region.holes({edgeSquare(1, 1, 1)});
  const Region& same = region;
  region = same;
  Region& itself = region;
  region = std::move(itself);
  EXPECT_EQ(region.data(), squareData());
  EXPECT_EQ(region.holes().size(), 1U);
}

TEST(EdgeletRegionCopy, SourceMayBeAHoleOfTheTarget) {
  for (const bool move : {false, true}) {
    Region region(squareData(0, 0, 9));
    {
      const gxPtrHandle<Region> hole(new Region(squareData(1, 1, 2), 5));
      region.holes({hole});
    }
    Region& hole = const_cast<Region&>(*region.holes()[0]);
    if (move) {
      region = std::move(hole);
    } else {
      region = hole;
    }
    EXPECT_EQ(region.data(), squareData(1, 1, 2));
    EXPECT_EQ(region.label(), 5UL);
    EXPECT_TRUE(region.holes().empty());
  }
}

// The hole is an edge-point region in the plain list, and belongs to that list alone.
TEST(EdgeletRegionCopy, SourceMayBeAPlainHoleOfTheTarget) {
  enum class How { eCopyAsRegion, eMoveAsRegion, eCopy, eMove };
  for (const How how : {How::eCopyAsRegion, How::eMoveAsRegion, How::eCopy, How::eMove}) {
    Region region(squareData(0, 0, 9));
    gxRegion& base = region;
    base.holes({RegionHandle(new Region(squareData(1, 1, 2)))});
    Region& hole = const_cast<Region&>(dynamic_cast<const Region&>(*region.gxRegion::holes()[0]));
    switch (how) {
      case How::eCopyAsRegion: base = static_cast<const gxRegion&>(hole); break;
      case How::eMoveAsRegion: base = std::move(static_cast<gxRegion&>(hole)); break;
      case How::eCopy: region = hole; break;
      case How::eMove: region = std::move(hole); break;
    }
    EXPECT_EQ(region.points(), positions(squareData(1, 1, 2)));
    EXPECT_TRUE(region.gxRegion::holes().empty());
    EXPECT_TRUE(inStep(region));
  }
}

TEST(EdgeletRegionMove, TakesEverythingOnce) {
  Region source(squareData(), shiftBy5(), 6);
  source.holes({edgeSquare(-4, 1, 1)});
  source.holes({plainSquare(-4, 1, 1)});
  static_cast<void>(source.area(true));
  static_cast<void>(source.length());
  const Region expected(source);
  Region target(std::move(source));
  const Computed areas(gx_Computation::eAreaWithHoles);
  const Computed lengths(gx_Computation::eLength);
  EXPECT_EQ(target.area(true), 15.0);
  EXPECT_EQ(target.length(), 16.0);
  EXPECT_EQ(areas.times() + lengths.times(), 0);
  EXPECT_TRUE(target == expected);
  EXPECT_EQ(target.data(), expected.data());
  EXPECT_EQ(target.holes(), expected.holes());
  EXPECT_EQ(target.gxRegion::holes(), expected.gxRegion::holes());

  EXPECT_TRUE(source.points().empty());  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(source.data().empty());
  EXPECT_TRUE(source.holes().empty());
  EXPECT_TRUE(source.gxRegion::holes().empty());
  EXPECT_TRUE(source.dataFromPointsXform().isNull());
  EXPECT_EQ(source.label(), 0UL);
  EXPECT_THROW(static_cast<void>(source.area(false)), gxContourDefs::EmptyContour);

  source = std::move(target);
  EXPECT_EQ(source.data(), expected.data());
  EXPECT_TRUE(target.points().empty());  // NOLINT(bugprone-use-after-move)
  target = Region(squareData());
  EXPECT_EQ(target.area(false), 16.0);
}

TEST(EdgeletRegionMove, NotifiesNobody) {
  Region source(squareData());
  Region target;
  source.trackChanges(true);
  target.trackChanges(true);
  target = std::move(source);
  EXPECT_EQ(source.changeCount(), 0U);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(target.changeCount(), 0U);
}

TEST(EdgeletRegionReInit, BringsTheDefaultStateBack) {
  Region region(squareData(), 5);
  region.holes({edgeSquare(1, 1, 1)});
  region.trackChanges(true);
  region.reInit();
  EXPECT_GE(region.changeCount(), 1U);
  EXPECT_TRUE(region == Region());
  EXPECT_TRUE(region.data().empty());
  EXPECT_TRUE(region.holes().empty());
  EXPECT_EQ(region.label(), 0UL);
}

// ---- Through the bases --------------------------------------------------------------------------

TEST(EdgeletRegionAsContour, AssignmentMakesTheDataAndDropsTheRegionsMemory) {
  Region region(squareData(), shiftBy5(), 0);
  EXPECT_EQ(region.area(false), 16.0);
  gxContour& base = region;
  base = gxContour(pointsOf("0 0, 1 0, 1 1, 0 1"));
  EXPECT_EQ(region.area(false), 1.0);
  EXPECT_TRUE(inStep(region));
}

TEST(EdgeletRegionAsContour, MapIntoItFollows) {
  Region region(squareData(), shiftBy5(), 0);
  static_cast<void>(region.area(false));
  gxContour(pointsOf("0 0, 1 0, 1 1")).map(gxXform<2>(gxMatrix<2>(2, 0, 0, 2), {}), region);
  EXPECT_EQ(region.area(false), 2.0);
  EXPECT_TRUE(inStep(region));
}

TEST(EdgeletRegionAsContour, AssignmentWithoutTransformChangesNothing) {
  Region region;
  const gxContour plain(pointsOf("0 0, 1 0, 1 1"));
  gxContour& base = region;
  EXPECT_THROW(base = plain, gxBadPointer);
  EXPECT_TRUE(region.points().empty());
  EXPECT_THROW(plain.map(gxXform<2>::I, region), gxBadPointer);
  EXPECT_TRUE(region.points().empty());
}

TEST(EdgeletRegionAsRegion, AssignmentTakesOutlineHolesAndMemoryAndMakesTheData) {
  Region region(squareData(), shiftBy5(), 0);
  gxRegion plain(pointsOf("0 0, 3 0, 3 3, 0 3"));
  plain.holes({plainSquare(1, 1, 1)});
  static_cast<void>(plain.area(true));
  gxRegion& base = region;
  base = plain;
  EXPECT_EQ(region.gxRegion::holes(), plain.holes());
  EXPECT_TRUE(inStep(region));
  EXPECT_EQ(region.data()[1], edge(8, 0, 0, 0));
  const Computed areas(gx_Computation::eAreaWithHoles);
  EXPECT_EQ(region.area(true), 8.0);
  EXPECT_EQ(areas.times(), 0);
}

TEST(EdgeletRegionAsRegion, AssignmentWithoutTransformChangesNothing) {
  Region region;
  region.holes({edgeSquare(1, 1, 1)});
  gxRegion plain(pointsOf("0 0, 3 0, 3 3, 0 3"));
  gxRegion& base = region;
  EXPECT_THROW(base = plain, gxBadPointer);
  EXPECT_TRUE(region.points().empty());
  EXPECT_TRUE(region.gxRegion::holes().empty());
  EXPECT_EQ(region.holes().size(), 1U);
  EXPECT_THROW(base = std::move(plain), gxBadPointer);
  EXPECT_THROW(base = gxRegion(pointsOf("0 0, 3 0, 3 3, 0 3")), gxBadPointer);
  EXPECT_TRUE(region.points().empty());
  EXPECT_EQ(region.holes().size(), 1U);
  EXPECT_EQ(plain.points().size(), 4U);  // NOLINT(bugprone-use-after-move)
}

TEST(EdgeletRegionAsRegion, MapIntoItFollowsOrThrows) {
  const gxRegion plain(pointsOf("0 0, 3 0, 3 3, 0 3"));
  Region region({}, shiftBy5(), 0);
  plain.map(gxXform<2>::I, region);
  EXPECT_EQ(region.points(), plain.points());
  EXPECT_TRUE(inStep(region));
  Region without;
  EXPECT_THROW(plain.map(gxXform<2>::I, without), gxBadPointer);
  EXPECT_TRUE(without.points().empty());
}

TEST(EdgeletRegionAsRegion, MovingItsRegionOutEmptiesTheData) {
  Region region(squareData());
  const gxRegion plain(std::move(static_cast<gxRegion&>(region)));
  EXPECT_EQ(plain.points().size(), 4U);
  EXPECT_TRUE(region.points().empty());
  EXPECT_TRUE(region.data().empty());
  region.data(squareData());
  gxRegion other;
  other = std::move(static_cast<gxRegion&>(region));
  EXPECT_EQ(other.points().size(), 4U);
  EXPECT_TRUE(region.data().empty());
  EXPECT_TRUE(region.points().empty());
}

TEST(EdgeletRegionAsRegion, RepairIntoItselfKeepsTheViewsInStep) {
  Region region({edge(0, 0), edge(2, 2), edge(2, 0), edge(0, 2)});
  ASSERT_TRUE(region.isSelfIntersecting());
  region.regularize(region);
  EXPECT_FALSE(region.isSelfIntersecting());
  EXPECT_TRUE(inStep(region));
  EXPECT_GT(region.data().size(), 4U);
}

TEST(EdgeletRegionAsRegion, ConvexHullIntoItselfKeepsTheViewsInStep) {
  Region region({edge(0, 0), edge(4, 0), edge(1, 1), edge(0, 4)});
  region.convexHull(region);
  EXPECT_EQ(region.points().size(), 3U);
  EXPECT_TRUE(inStep(region));
}

TEST(EdgeletRegionAsEdgeletContour, AssignmentKeepsMagnitudesAndDropsTheRegionsMemory) {
  Region region(squareData());
  region.holes({plainSquare(1, 1, 1)});
  EXPECT_EQ(region.area(false), 16.0);
  const Contour contour(squareData(0, 0, 3), shiftBy5());
  Contour& base = region;
  base = contour;
  EXPECT_EQ(region.data(), contour.data());
  EXPECT_EQ(region.dataFromPointsXform(), contour.dataFromPointsXform());
  EXPECT_EQ(region.area(false), 9.0);
  EXPECT_EQ(region.gxRegion::holes().size(), 1U);  // no part of the contour
}

TEST(EdgeletRegionAsEdgeletContour, MoveInAndOut) {
  Region region(squareData());
  static_cast<void>(region.area(false));
  Contour contour(std::move(static_cast<Contour&>(region)));
  EXPECT_EQ(contour.data(), squareData());
  EXPECT_TRUE(region.points().empty());
  EXPECT_THROW(static_cast<void>(region.area(false)), gxContourDefs::EmptyContour);
  static_cast<Contour&>(region) = std::move(contour);
  EXPECT_EQ(region.data(), squareData());
  EXPECT_EQ(region.area(false), 16.0);
  Contour other;
  other = std::move(static_cast<Contour&>(region));
  EXPECT_TRUE(region.data().empty());
}

TEST(EdgeletRegionAsEdgeletContour, AnOpenContourDoesNotOpenTheRegion) {
  Contour contour(squareData());
  contour.isClosed(false);
  EXPECT_EQ(contour.length(), 12.0);
  Region region;
  static_cast<Contour&>(region) = contour;
  EXPECT_TRUE(region.isClosed());
  EXPECT_EQ(region.length(), 16.0);
}

// ---- Refusals and failures ----------------------------------------------------------------------

TEST(EdgeletRegionFailure, RefusedOperationsThrowAndChangeNothing) {
  const Region region(squareData());
  Region result(squareData(5, 5, 1));
  Contour contour;
  EXPECT_THROW(region.mapT(gxXform<2>::I, result), gxPel::BadWindow);
  EXPECT_THROW(region.mapT(gxXform<2>::I, contour), gxPel::BadWindow);
  EXPECT_THROW(region.regularizeT(result), gxPel::BadWindow);
  EXPECT_THROW(region.convexHullT(result), gxPel::BadWindow);
  EXPECT_EQ(result.data(), squareData(5, 5, 1));
}

TEST(EdgeletRegionFailure, PointsWithoutTransformAreRefused) {
  Region region;
  EXPECT_THROW(region.points(pointsOf("0 0, 1 0, 1 1")), gxBadPointer);
  EXPECT_TRUE(region.points().empty());
  EXPECT_THROW(region.data(squareData()), gxBadPointer);
  EXPECT_TRUE(region.data().empty());
}

TEST(EdgeletRegionNesting, TenThousandLevelsOfEdgePointHolesDie) {
  RegionHandle level = edgeSquare(0, 0, 1);
  for (int depth = 0; depth < 10000; ++depth) {
    const gxPtrHandle<Region> around(new Region(squareData()));
    around->holes({level});
    level = around;
  }
  const Region copy(*level);
  level = nullptr;
  EXPECT_EQ(copy.holes().size(), 1U);
}
