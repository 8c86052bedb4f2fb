#include <cntr/internal/outline/break_even.h>
#include <cntr/region.h>

#include <support/computed.h>
#include <support/exposed.h>
#include <support/region_shapes.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>
#include <utility>

namespace {

// ---- What compiles --------------------------------------------------------------------------------

static_assert(std::is_nothrow_move_constructible_v<gxRegion>);
static_assert(
    !std::is_nothrow_move_assignable_v<gxRegion>);  // what is behind it may be unable to follow
static_assert(std::is_base_of_v<gxContour, gxRegion>);
static_assert(std::has_virtual_destructor_v<gxRegion>);
static_assert(!std::is_convertible_v<Points, gxRegion>, "points become a region only when asked");
static_assert(!std::is_convertible_v<gxContour, gxRegion>, "so do contours");
static_assert(!std::is_convertible_v<gxPolygon, gxRegion>, "and polygons");

template <class R>
concept AnswersWhenConst = requires(const R r, V p, gxRegion result, gxLineSeg seg, long i) {
  r.holes();
  r.inside(p, true);
  r.closestPoint(p, true, true);
  r.closestPoint(p, true);
  r.closestVertexIndex(p, true, i);
  r.distToPoint(p, true, true, true);
  r.distToPoint(p, true);
  r.intersections(r, true);
  r.intersections(r);
  r.intersections(seg, true, true);
  r.intersections(seg, true);
  r.area(true);
  r.centerOfMass(true);
  r.inertiaMatrix(false);
  r.regularize(result);
  r.outerHull(result);
  r.map(gxXform<2>(), result);
};
static_assert(AnswersWhenConst<gxRegion>, "holes are reached through const handles");

// ---- Construction ---------------------------------------------------------------------------------

TEST(RegionConstruction, ByDefaultItHasNoPointsAndNoHoles) {
  const gxRegion region;
  EXPECT_TRUE(region.points().empty());
  EXPECT_TRUE(region.holes().empty());
  EXPECT_TRUE(region.isClosed());
  EXPECT_EQ(region.label(), 0u);
  EXPECT_THROW(region.area(false), gxContourDefs::EmptyContour);
}

TEST(RegionConstruction, FromPointsKeepsThemInOrder) {
  const gxRegion region(bowTie());
  EXPECT_EQ(region.points(), bowTie());
  EXPECT_TRUE(region.holes().empty());
}

TEST(RegionConstruction, FromAnOpenContourItIsClosed) {
  const gxContour open(square(0, 0, 1), false, 7);
  const gxRegion region(open);
  EXPECT_TRUE(region.isClosed());
  EXPECT_EQ(region.points(), open.points());
  EXPECT_EQ(region.label(), 7u);
}

TEST(RegionConstruction, FromAnOpenContourNothingRememberedOfTheOpenOneIsUsed) {
  const gxContour open(square(0, 0, 1), false);
  EXPECT_EQ(open.length(), 3.0);
  EXPECT_EQ(open.intersections(gxLineSeg(V(-1, 0.5), V(0.5, 0.5)), true).size(), 0u);
  const gxRegion region(open);
  EXPECT_EQ(region.length(), 4.0);
  EXPECT_EQ(region.intersections(gxLineSeg(V(-1, 0.5), V(0.5, 0.5)), true).size(), 1u)
      << "the closing edge is crossed";
}

TEST(RegionConstruction, FromAPolygonKeepsTheRepeatedVertex) {
  const gxRegion region(gxPolygon(pointsOf("0 0, 4 0, 4 3, 0 0"), gxPolygon::eEvenOdd));
  EXPECT_EQ(region.points(), pointsOf("0 0, 4 0, 4 3, 0 0"));
  EXPECT_EQ(region.area(false), 6.0);
}

TEST(RegionConstruction, FromAnOpenPolygonItIsClosedAllTheSame) {
  const gxRegion region(gxPolygon(pointsOf("0 0, 4 0, 4 3"), gxPolygon::eEvenOdd));
  EXPECT_TRUE(region.isClosed());
  EXPECT_EQ(region.length(), 12.0);
}

TEST(RegionConstruction, FromAnEmptyPolygonItHasNoPoints) {
  const gxRegion region{gxPolygon()};
  EXPECT_TRUE(region.isClosed());
  EXPECT_TRUE(region.points().empty());
}

TEST(RegionConstruction, ModeNoneKeepsABowTieAsGiven) {
  EXPECT_EQ(gxRegion(bowTie(), gxContourDefs::eNone).points(), bowTie());
}

TEST(RegionConstruction, ModeOuterHullGivesTheOuterHull) {
  gxRegion hull;
  gxRegion(bowTie()).outerHull(hull);
  EXPECT_NE(hull.points(), bowTie());
  EXPECT_EQ(gxRegion(bowTie(), gxContourDefs::eOuterHull).points(), hull.points());
  EXPECT_EQ(gxRegion(gxContour(bowTie()), gxContourDefs::eOuterHull).points(), hull.points());
  const gxPolygon polygon = gxContour(bowTie(), false).polygon();
  EXPECT_EQ(gxRegion(polygon, gxContourDefs::eOuterHull).points(), hull.points());
}

TEST(RegionConstruction, ModeRegularizeGivesTheRegularizedOutline) {
  gxRegion regular;
  gxRegion(bowTie()).regularize(regular);
  EXPECT_NE(regular.points(), bowTie());
  EXPECT_EQ(gxRegion(bowTie(), gxContourDefs::eRegularize).points(), regular.points());
  EXPECT_EQ(gxRegion(gxContour(bowTie()), gxContourDefs::eRegularize).points(), regular.points());
}

TEST(RegionConstruction, ModesKeepAnOutlineThatDoesNotCrossItself) {
  EXPECT_EQ(gxRegion(square(0, 0, 1), gxContourDefs::eOuterHull).points(), square(0, 0, 1));
  EXPECT_EQ(gxRegion(square(0, 0, 1), gxContourDefs::eRegularize).points(), square(0, 0, 1));
  EXPECT_TRUE(gxRegion(Points(), gxContourDefs::eOuterHull).points().empty());
  EXPECT_EQ(gxRegion(pointsOf("1 1, 2 2"), gxContourDefs::eRegularize).points().size(), 2u);
}

TEST(RegionConstruction, AnyOtherModeKeepsTheOutline) {
  for (const int mode : {-1, 3, 17}) {
    EXPECT_EQ(gxRegion(bowTie(), static_cast<gxContourDefs::IntersectionMode>(mode)).points(), bowTie());
  }
}

TEST(RegionConstruction, WhatTheRepairThrowsComesOut) {
  EXPECT_EQ(messageOfBadParams([] { gxRegion(pentagram(), gxContourDefs::eOuterHull); }),
            L"invalid contour");
  EXPECT_EQ(messageOfBadParams([] { gxRegion(pentagram(), gxContourDefs::eRegularize); }),
            L"invalid contour");
}

// ---- Copies ---------------------------------------------------------------------------------------

TEST(RegionCopy, SharesTheHoles) {
  const gxRegion region = squareWithHole();
  const gxRegion copy(region);
  EXPECT_EQ(copy.points(), region.points());
  ASSERT_EQ(copy.holes().size(), 1u);
  EXPECT_EQ(copy.holes()[0].get(), region.holes()[0].get());
  EXPECT_EQ(copy.holes()[0]->refCount(), 2);
}

TEST(RegionCopy, AnswersFromWhatTheOriginalRemembers) {
  const gxRegion region = squareWithHole();
  region.area(true);
  region.centerOfMass(true);
  region.inertiaMatrix(false);
  const gxRegion copy(region);
  gxRegion assigned;
  assigned = region;
  const Computed area(gx_Computation::eArea);
  const Computed areaWithHoles(gx_Computation::eAreaWithHoles);
  const Computed center(gx_Computation::eCenterOfMass);
  const Computed centerWithHoles(gx_Computation::eCenterOfMassWithHoles);
  const Computed inertia(gx_Computation::eInertiaMatrix);
  for (const gxRegion* r : {&copy, const_cast<const gxRegion*>(&assigned)}) {
    EXPECT_EQ(r->area(false), 100.0);
    EXPECT_EQ(r->area(true), 96.0);
    r->centerOfMass(true);
    r->inertiaMatrix(true && r->holes().empty());
  }
  EXPECT_EQ(area.times() + areaWithHoles.times() + center.times() + centerWithHoles.times(), 0);
  EXPECT_EQ(inertia.times(), 0);
}

TEST(RegionCopy, SharesTheRepairedForms) {
  const gxRegion region(bowTie());
  gxRegion result;
  region.regularize(result);
  region.outerHull(result);
  const gxRegion copy(region);
  const Computed regular(gx_Computation::eRegularize);
  const Computed hull(gx_Computation::eOuterHull);
  copy.regularize(result);
  copy.outerHull(result);
  EXPECT_EQ(regular.times() + hull.times(), 0);
}

TEST(RegionCopy, DoesNotSeeLaterChangesOfTheOriginal) {
  gxRegion region = squareWithHole();
  const gxRegion copy(region);
  region.points(square(0, 0, 3));
  region.holes({});
  EXPECT_EQ(copy.area(true), 96.0);
}

TEST(RegionAssignment, ToItselfChangesNothingAndKeepsWhatIsRemembered) {
  gxRegion region = squareWithHole();
  region.area(true);
  const Computed area(gx_Computation::eArea);
  const gxRegion& same = region;
  region = same;
  EXPECT_EQ(region.holes().size(), 1u);
  EXPECT_EQ(region.area(true), 96.0);
  EXPECT_EQ(area.times(), 0);
}

TEST(RegionAssignment, MovingToItselfChangesNothing) {
  gxRegion region = squareWithHole();
  gxRegion& same = region;
  region = std::move(same);
  EXPECT_EQ(region.points(), square(0, 0, 10));
  EXPECT_EQ(region.holes().size(), 1u);
}

TEST(RegionAssignment, FromAHoleThatOnlyThisRegionHolds) {
  gxRegion region = squareWithHole();
  region = *region.holes()[0];
  EXPECT_EQ(region.points(), square(4, 4, 2));
  EXPECT_TRUE(region.holes().empty());
}

TEST(RegionAssignment, FromAHoleOfAHole) {
  gxRegion hole(square(2, 2, 6));
  hole.holes({shared(gxRegion(square(4, 4, 2)))});
  gxRegion region(square(0, 0, 10));
  region.holes({shared(hole)});
  region = *region.holes()[0]->holes()[0];
  EXPECT_EQ(region.points(), square(4, 4, 2));
}

TEST(RegionAssignment, MovingFromAHoleThatOnlyThisRegionHolds) {
  gxRegion region(square(0, 0, 10));
  gxRegion* hole = nullptr;
  {
    const gxPtrHandle<gxRegion> handle(new gxRegion(square(4, 4, 2)));
    region.holes({handle});
    hole = handle.get();
  }
  region = std::move(*hole);
  EXPECT_EQ(region.points(), square(4, 4, 2));
  EXPECT_TRUE(region.holes().empty());
}

TEST(RegionAssignment, OfAHoleSeenAsAContourKeepsTheHoles) {
  gxRegion region = squareWithHole();
  gxContour& outline = region;
  outline = *region.holes()[0];
  EXPECT_EQ(region.points(), square(4, 4, 2));
  EXPECT_EQ(region.holes().size(), 1u);
}

TEST(RegionAssignment, FromItsOwnConvexHull) {
  gxRegion region(pointsOf("0 0, 4 0, 2 1, 4 4, 0 4"));
  region.convexHull(region);
  EXPECT_EQ(region.area(false), 16.0);
  EXPECT_EQ(region.points().size(), 4u);
}

// ---- Moves ----------------------------------------------------------------------------------------

TEST(RegionMove, TakesHolesAndMemoryAndLeavesAnEmptyUsableRegion) {
  gxRegion source = squareWithHole();
  source.area(true);
  const gxRegion* hole = source.holes()[0].get();
  const Computed area(gx_Computation::eArea);
  const gxRegion target(std::move(source));
  EXPECT_EQ(target.area(true), 96.0);
  EXPECT_EQ(area.times(), 0);
  EXPECT_EQ(target.holes()[0].get(), hole);
  EXPECT_TRUE(source.points().empty());  // NOLINT(bugprone-use-after-move): it is usable
  EXPECT_TRUE(source.holes().empty());
  EXPECT_TRUE(source.isClosed());
  EXPECT_THROW(source.area(false), gxContourDefs::EmptyContour);
  source.points(square(0, 0, 2));
  EXPECT_EQ(source.area(true), 4.0);
}

TEST(RegionMove, AssignmentTakesHolesAndMemoryAndLeavesAnEmptyUsableRegion) {
  gxRegion source = squareWithHole();
  source.area(true);
  gxRegion target(square(1, 1, 1));
  target.area(false);
  const Computed area(gx_Computation::eArea);
  target = std::move(source);
  EXPECT_EQ(target.area(true), 96.0);
  EXPECT_EQ(area.times(), 0);
  EXPECT_TRUE(source.points().empty());  // NOLINT(bugprone-use-after-move): it is usable
  EXPECT_TRUE(source.holes().empty());
  source.points(square(0, 0, 2));
  EXPECT_EQ(source.area(true), 4.0);
}

TEST(RegionMove, TheCountOfHandlesStaysWithTheObject) {
  const gxPtrHandle<gxRegion> handle(new gxRegion(square(0, 0, 1)));
  const gxRegion moved(std::move(*handle));
  EXPECT_EQ(handle->refCount(), 1);
  EXPECT_EQ(moved.refCount(), 0);
}

// ---- Comparison -----------------------------------------------------------------------------------

TEST(RegionEquality, HolesTakeNoPart) {
  EXPECT_TRUE(squareWithHole() == gxRegion(square(0, 0, 10)));
  EXPECT_FALSE(squareWithHole() == gxRegion(square(0, 0, 9)));
}

TEST(RegionEquality, CachedVectorSizeTakesPartAndTheLabelDoesNot) {
  gxRegion a(square(0, 0, 1));
  gxRegion b(square(0, 0, 1));
  b.label(9);
  EXPECT_TRUE(a == b);
  b.cachedVectorSize(8);
  EXPECT_FALSE(a == b);
}

// ---- Closedness -----------------------------------------------------------------------------------

TEST(RegionClosedness, ClosingItDoesNothing) {
  gxRegion region(square(0, 0, 10));
  region.area(false);
  const Computed area(gx_Computation::eArea);
  region.isClosed(true);
  EXPECT_TRUE(region.isClosed());
  region.area(false);
  EXPECT_EQ(area.times(), 0) << "nor does it drop what is remembered";
}

TEST(RegionClosedness, OpeningItIsRefusedAndChangesNothing) {
  gxRegion region = squareWithHole();
  region.area(true);
  const Computed area(gx_Computation::eArea);
  try {
    region.isClosed(false);
    FAIL() << "opened";
  } catch (const gxContourDefs::RegionCannotBeSetOpen& error) {
    EXPECT_EQ(error.message(), L"");
    EXPECT_EQ(error.errorNumber(), 0x10004684);
  }
  EXPECT_TRUE(region.isClosed());
  EXPECT_EQ(region.points(), square(0, 0, 10));
  EXPECT_EQ(region.holes().size(), 1u);
  region.area(true);
  EXPECT_EQ(area.times(), 0);
}

TEST(RegionClosedness, OpeningItThroughItsContourIsRefusedToo) {
  gxRegion region(square(0, 0, 1));
  gxContour& contour = region;
  EXPECT_THROW(contour.isClosed(false), gxContourDefs::RegionCannotBeSetOpen);
  EXPECT_TRUE(contour.isClosed());
}

// ---- Holes ----------------------------------------------------------------------------------------

// What a region remembers is gone when the next questions compute it anew.
Points circleOf100() {
  Points points;
  for (int i = 0; i < 100; ++i) points.emplace_back(10.0, gxRadian(0.0628318530717958 * i));
  return points;
}

// Every question whose answer a region remembers, holes or not.
void askAll(const gxRegion& region) {
  for (const bool holes : {false, true}) {
    static_cast<void>(region.area(holes));
    static_cast<void>(region.centerOfMass(holes));
  }
  static_cast<void>(region.inertiaMatrix(false));
  static_cast<void>(region.length());
  static_cast<void>(region.meanPosition());
  static_cast<void>(region.extremalVertexIndex(gxRadian(0.7)));
  static_cast<void>(region.encloseRect(gxXform<2>(gxMatrix<2>(2, 0, 0, 1), V(0, 0))));
  static_cast<void>(region.encloseCircle(gxContourDefs::eAllPairs));
  static_cast<void>(region.encloseCircle(gxContourDefs::eFirstPoint));
  gxRegion result;
  region.convexHull(result);
  gxEllipse ellipse;
  double residual = 0.0;
  region.fitEllipse(ellipse, residual);
  for (int i = 0; i < 17; ++i) static_cast<void>(region.vertexIndex(V(1, 1), 2.0));
  static_cast<void>(region.isSelfIntersecting());
}

constexpr gx_Computation kRemembered[] = {
    gx_Computation::eArea,          gx_Computation::eAreaWithHoles,
    gx_Computation::eCenterOfMass,  gx_Computation::eCenterOfMassWithHoles,
    gx_Computation::eInertiaMatrix, gx_Computation::eLength,
    gx_Computation::eMeanPosition,  gx_Computation::eExtremalVertex,
    gx_Computation::eEncloseRect,   gx_Computation::eEncloseCircle,
    gx_Computation::eConvexHull,    gx_Computation::eFitEllipse,
    gx_Computation::eVertexGrid,    gx_Computation::eSelfIntersection};

// Holes of the region are asked for their area too, and remember it: what they compute is left aside.
void expectNothingRemembered(const gxRegion& region) {
  for (const Handle& hole : region.holes()) {
    static_cast<void>(hole->area(false));
    static_cast<void>(hole->centerOfMass(false));
  }
  std::vector<Computed> computed;
  for (const gx_Computation what : kRemembered) computed.emplace_back(what);
  askAll(region);
  for (std::size_t i = 0; i < computed.size(); ++i) {
    // Of few vertices all are looked at each time.
    const bool fewVertices = region.points().size() <= gx_kFewToLookUp;
    if (fewVertices && kRemembered[i] == gx_Computation::eVertexGrid) continue;
    EXPECT_GE(computed[i].times(), 1) << "computation number " << static_cast<int>(kRemembered[i]);
  }
}

void remember(const gxRegion& region) {
  askAll(region);
  std::vector<Computed> computed;
  for (const gx_Computation what : kRemembered) computed.emplace_back(what);
  askAll(region);
  for (const Computed& c : computed) ASSERT_EQ(c.times(), 0);
}

TEST(RegionHoles, ThatAreRefusedLeaveNoRepairedFormEither) {
  gxRegion region(pointsOf("0 0, 10 10, 10 0, 0 10"));  // a bow tie
  const Computed walks(gx_Computation::eRegularize);
  const Computed hulls(gx_Computation::eOuterHull);
  gxRegion result;
  region.regularize(result);
  region.outerHull(result);
  const Handle crossing = shared(gxRegion(square(8, 8, 4)));
  EXPECT_EQ(messageOfBadParams([&] { region.holes({crossing}); }), L"holes cannot intersect region");
  region.regularize(result);
  region.outerHull(result);
  EXPECT_EQ(walks.times(), 2);
  EXPECT_EQ(hulls.times(), 2);
}

TEST(RegionHoles, WhatTheCheckComputesStaysRemembered) {
  gxRegion region(circleOf100());
  const Computed indices(gx_Computation::eEdgeIndex);
  const Computed boxes(gx_Computation::eUprightBox);
  region.holes({shared(gxRegion(square(-0.1, -0.1, 0.2)))});
  EXPECT_EQ(boxes.times(), 1);
  const long made = indices.times();
  EXPECT_TRUE(region.inside(V(1, 0.5), false));
  static_cast<void>(region.intersections(gxLineSeg(V(0, 0), V(20, 1)), true, false));
  EXPECT_EQ(boxes.times(), 1);
  EXPECT_EQ(indices.times(), made);
  EXPECT_EQ(made, 1);
}

TEST(RegionHoles, AreKeptInOrder) {
  gxRegion region(square(0, 0, 10));
  const Handle a = shared(gxRegion(square(1, 1, 1)));
  const Handle b = shared(gxRegion(square(5, 5, 1)));
  region.holes({b, a});
  ASSERT_EQ(region.holes().size(), 2u);
  EXPECT_EQ(region.holes()[0].get(), b.get());
  EXPECT_EQ(region.holes()[1].get(), a.get());
}

TEST(RegionHoles, CanBeGivenAsWritableHandles) {
  gxRegion region(square(0, 0, 10));
  const std::vector<gxPtrHandle<gxRegion>> holes{gxPtrHandle<gxRegion>(new gxRegion(square(1, 1, 1)))};
  region.holes(holes);
  ASSERT_EQ(region.holes().size(), 1u);
  EXPECT_EQ(region.holes()[0].get(), holes[0].get());
}

TEST(RegionHoles, ThatCrossTheOutlineAreRefusedAndTheOldOnesKept) {
  gxRegion region = squareWithHole();
  const gxRegion* old = region.holes()[0].get();
  remember(region);
  const Handle h0 = shared(gxRegion(square(1, 1, 1)));
  const Handle h1 = shared(gxRegion(square(8, 8, 4)));
  EXPECT_EQ(messageOfBadParams([&] { region.holes({h0, h1}); }), L"holes cannot intersect region");
  ASSERT_EQ(region.holes().size(), 1u);
  EXPECT_EQ(region.holes()[0].get(), old);
  expectNothingRemembered(region);
  EXPECT_EQ(h0->refCount(), 1) << "nothing of the refused list is held";
}

TEST(RegionHoles, AsWritableHandlesAreCheckedLikewise) {
  gxRegion region = squareWithHole();
  const std::vector<gxPtrHandle<gxRegion>> holes{gxPtrHandle<gxRegion>(new gxRegion(square(8, 8, 4)))};
  EXPECT_EQ(messageOfBadParams([&] { region.holes(holes); }), L"holes cannot intersect region");
  EXPECT_EQ(region.area(true), 96.0);
}

TEST(RegionHoles, ThatTouchTheOutlineWithAVertexAreRefused) {
  gxRegion region(square(0, 0, 10));
  const Handle touching = shared(gxRegion(pointsOf("0 5, 3 4, 3 6")));
  EXPECT_EQ(messageOfBadParams([&] { region.holes({touching}); }), L"holes cannot intersect region");
}

TEST(RegionHoles, WithAnEdgeOnTheOutlineAreRefused) {
  gxRegion region(square(0, 0, 10));
  const Handle touching = shared(gxRegion(square(4, 0, 2)));
  EXPECT_EQ(messageOfBadParams([&] { region.holes({touching}); }), L"holes cannot intersect region");
}

TEST(RegionHoles, AMillionthAwayFromASlantedEdgeAreRefusedALittleFartherNot) {
  gxRegion region(pointsOf("0 0, 10 -10, 20 0, 10 10"));
  const auto hole = [](double away) {
    const double d = away * std::sqrt(0.5);
    return shared(gxRegion(Points{{5 + d, 5 - d}, {8, 4}, {8, 2}}));
  };
  EXPECT_THROW(region.holes({hole(5e-7)}), gxContourDefs::BadParams);
  EXPECT_NO_THROW(region.holes({hole(2e-6)}));
}

TEST(RegionHoles, BesideAnUprightEdgeTheirBoxesDecide) {
  gxRegion region(square(0, 0, 10));
  EXPECT_NO_THROW(region.holes({shared(gxRegion(pointsOf("5e-7 5, 3 4, 3 6")))}));
}

TEST(RegionHoles, OutsideOfTheOutlineAreAccepted) {
  gxRegion region(square(0, 0, 10));
  region.holes({shared(gxRegion(square(20, 20, 2)))});
  EXPECT_EQ(region.area(true), 96.0);
}

TEST(RegionHoles, AroundTheOutlineAreAccepted) {
  gxRegion region(square(0, 0, 10));
  region.holes({shared(gxRegion(square(-5, -5, 20)))});
  EXPECT_EQ(region.area(true), -300.0);
}

TEST(RegionHoles, ThatOverlapEachOtherAreAccepted) {
  gxRegion region(square(0, 0, 10));
  region.holes({shared(gxRegion(square(2, 2, 3))), shared(gxRegion(square(4, 4, 3)))});
  EXPECT_EQ(region.area(true), 82.0);
}

TEST(RegionHoles, WhoseOwnHolesCrossTheOutlineAreAccepted) {
  gxRegion hole(square(4, 4, 2));
  hole.holes({shared(gxRegion(square(8, 8, 5)))});
  gxRegion region(square(0, 0, 10));
  EXPECT_NO_THROW(region.holes({shared(hole)}));
}

TEST(RegionHoles, TheSameOneTwiceCountsTwice) {
  gxRegion region(square(0, 0, 10));
  const Handle hole = shared(gxRegion(square(4, 4, 2)));
  region.holes({hole, hole});
  EXPECT_EQ(region.area(true), 92.0);
}

TEST(RegionHoles, AnEmptyListSucceedsAndDropsWhatIsRemembered) {
  gxRegion region = squareWithHole();
  remember(region);
  region.holes({});
  EXPECT_TRUE(region.holes().empty());
  expectNothingRemembered(region);
  gxRegion empty;
  EXPECT_NO_THROW(empty.holes({}));
}

TEST(RegionHoles, TheirOwnListCanBeGivenAgain) {
  gxRegion region = squareWithHole();
  region.holes(region.holes());
  EXPECT_EQ(region.area(true), 96.0);
}

TEST(RegionHoles, ANullHandleIsRefusedAndTheOldOnesKept) {
  gxRegion region = squareWithHole();
  remember(region);
  EXPECT_THROW(region.holes({shared(gxRegion(square(1, 1, 1))), Handle()}), gxBadPointer);
  EXPECT_EQ(region.holes().size(), 1u);
  expectNothingRemembered(region);
  EXPECT_THROW(region.holes(std::vector<gxPtrHandle<gxRegion>>(1)), gxBadPointer);
  EXPECT_EQ(region.area(true), 96.0);
}

TEST(RegionHoles, TheFirstFaultInTheListDecides) {
  gxRegion region(square(0, 0, 10));
  const Handle crossing = shared(gxRegion(square(8, 8, 4)));
  EXPECT_THROW(region.holes({crossing, Handle()}), gxContourDefs::BadParams);
  EXPECT_THROW(region.holes({Handle(), crossing}), gxBadPointer);
}

TEST(RegionHoles, ARegionOfFewerThanTwoPointsTakesNone) {
  const Handle hole = shared(gxRegion(square(4, 4, 2)));
  gxRegion none;
  EXPECT_THROW(none.holes({hole}), gxContourDefs::EmptyContour);
  gxRegion one(pointsOf("1 1"));
  EXPECT_THROW(one.holes({hole}), gxContourDefs::EmptyContour);
  EXPECT_TRUE(one.holes().empty());
  gxRegion two(pointsOf("1 1, 2 1"));
  EXPECT_NO_THROW(two.holes({hole}));
}

TEST(RegionHoles, OfFewerThanTwoPointsAreAskedAsTheyStand) {
  gxRegion region(square(0, 0, 10));
  EXPECT_NO_THROW(region.holes({shared(gxRegion()), shared(gxRegion(pointsOf("5 5")))}));
  EXPECT_NO_THROW(region.holes({shared(gxRegion(pointsOf("0 5")))}))
      << "a point has no edge to touch with";
  EXPECT_EQ(region.holes().size(), 1u);
}

TEST(RegionHoles, SettingThemReportsAChange) {
  gxRegion region(square(0, 0, 10));
  region.trackChanges(true);
  const auto before = region.changeCount();
  region.holes({shared(gxRegion(square(4, 4, 2)))});
  EXPECT_GT(region.changeCount(), before);
}

// ---- What drops and what keeps the memory -----------------------------------------------------------

TEST(RegionMemory, NewPointsDropEverything) {
  gxRegion region = squareWithHole();
  remember(region);
  region.points(square(0, 0, 12));
  expectNothingRemembered(region);
  EXPECT_EQ(region.area(true), 140.0) << "holes stay";
}

TEST(RegionMemory, LabelAndCachedVectorSizeKeepEverything) {
  gxRegion region = squareWithHole();
  remember(region);
  region.label(5);
  region.cachedVectorSize(9);
  const Computed area(gx_Computation::eArea);
  const Computed length(gx_Computation::eLength);
  remember(region);
  EXPECT_EQ(area.times() + length.times(), 0);
}

TEST(RegionMemory, CleaningDropsEverything) {
  ExposedRegion region(square(0, 0, 10));
  remember(region);
  region.cleanCacheInfo();
  expectNothingRemembered(region);
}

TEST(RegionMemory, NewPointsDropTheRepairedForms) {
  gxRegion region(bowTie());
  gxRegion result;
  region.regularize(result);
  region.outerHull(result);
  region.points(bowTie());
  const Computed regular(gx_Computation::eRegularize);
  const Computed hull(gx_Computation::eOuterHull);
  region.regularize(result);
  region.outerHull(result);
  EXPECT_EQ(regular.times(), 1);
  EXPECT_EQ(hull.times(), 1);
}

TEST(RegionMemory, AssigningThroughTheContourDropsTheRegionsOwnAndKeepsTheContours) {
  gxRegion region(square(0, 0, 10));
  region.area(false);
  const gxContour small(square(0, 0, 2));
  small.length();
  gxContour& contour = region;
  contour = small;
  EXPECT_EQ(region.area(false), 4.0);
  const Computed length(gx_Computation::eLength);
  EXPECT_EQ(region.length(), 8.0);
  EXPECT_EQ(length.times(), 0);
}

TEST(RegionMemory, MappingAContourIntoARegionDropsTheRegionsOwn) {
  gxRegion region(square(0, 0, 10));
  region.area(false);
  region.centerOfMass(false);
  const gxContour small(square(0, 0, 2));
  small.map(gxXform<2>::I, region);
  EXPECT_EQ(region.area(false), 4.0);
  EXPECT_EQ(region.centerOfMass(false), V(1, 1));
}

TEST(RegionMemory, AssigningAnOpenContourThroughTheContourLeavesTheRegionClosed) {
  gxRegion region(square(0, 0, 10));
  gxContour& contour = region;
  contour = gxContour(square(0, 0, 2), false);
  EXPECT_TRUE(region.isClosed());
  EXPECT_EQ(region.area(false), 4.0);
}

TEST(RegionMemory, AnOpenContourAssignedThroughTheContourBringsNoMemoryOfItsOpenForm) {
  gxRegion region(square(0, 0, 10));
  const gxContour open(square(0, 0, 2), false);
  EXPECT_EQ(open.length(), 6.0);
  gxContour& contour = region;
  contour = open;
  EXPECT_EQ(region.length(), 8.0);
}

TEST(RegionMemory, ReInitBringsBackTheDefaultState) {
  gxRegion region = squareWithHole();
  region.label(4);
  region.trackChanges(true);
  region.reInit();
  EXPECT_GE(region.changeCount(), 1u);
  EXPECT_TRUE(region.points().empty());
  EXPECT_TRUE(region.holes().empty());
  EXPECT_EQ(region.label(), 0u);
}

TEST(RegionEmptyCheck, BeginsBelowThreePoints) {
  EXPECT_THROW(ExposedRegion(pointsOf("0 0, 1 0")).checkEmptyContour(), gxContourDefs::EmptyContour);
  EXPECT_NO_THROW(ExposedRegion(pointsOf("0 0, 1 0, 2 0")).checkEmptyContour());
}

// ---- Failures of derived classes --------------------------------------------------------------------

// A region with data of its own, which cannot follow while `refuses` is set.
class Refusing : public gxRegion {
 public:
  explicit Refusing(const Points& points) { gxRegion::operator=(gxRegion(points)); }
  bool refuses = false;

  using gxRegion::operator=;

 protected:
  void contourAssigned_() override { follow(); }
  void makeDataConsistentWithPoints() override { follow(); }

 private:
  void follow() {
    if (refuses) throw std::runtime_error("cannot follow");
    gxRegion::contourAssigned_();
  }
};

TEST(RegionThatCannotFollow, AnAssignmentThrowsAndChangesNothing) {
  Refusing region(square(0, 0, 10));
  region.holes({shared(gxRegion(square(4, 4, 2)))});
  region.label(3);
  region.refuses = true;
  const gxRegion other = regionOf(square(0, 0, 20), {square(1, 1, 1)});
  EXPECT_THROW(region = other, std::runtime_error);
  EXPECT_EQ(region.points(), square(0, 0, 10));
  EXPECT_EQ(region.label(), 3u);
  EXPECT_EQ(region.area(true), 96.0);
}

TEST(RegionThatCannotFollow, AMoveThrowsAndTheSourceKeepsEverything) {
  Refusing region(square(0, 0, 10));
  region.refuses = true;
  gxRegion source = squareWithHole();
  EXPECT_THROW(region = std::move(source), std::runtime_error);
  EXPECT_EQ(region.points(), square(0, 0, 10));
  EXPECT_TRUE(region.holes().empty());
  EXPECT_EQ(source.area(true), 96.0);  // NOLINT(bugprone-use-after-move): nothing was moved
}

TEST(RegionThatCannotFollow, IsNotHeardWhenItIsMovedFrom) {
  Refusing source(square(0, 0, 10));
  source.refuses = true;
  gxRegion target;
  target = std::move(static_cast<gxRegion&>(source));
  EXPECT_EQ(target.area(true), 100.0);
  EXPECT_TRUE(source.points().empty());  // NOLINT(bugprone-use-after-move)
  Refusing other(square(0, 0, 10));
  other.refuses = true;
  const gxRegion made(std::move(static_cast<gxRegion&>(other)));
  EXPECT_EQ(made.area(true), 100.0);
}

TEST(RegionThatCannotFollow, SettingHolesThrowsAndKeepsTheOldOnes) {
  Refusing region(square(0, 0, 10));
  region.holes({shared(gxRegion(square(4, 4, 2)))});
  region.refuses = true;
  EXPECT_THROW(region.holes({}), std::runtime_error);
  EXPECT_EQ(region.area(true), 96.0);
}

TEST(RegionThatCannotFollow, ARepairIntoItThrowsAndChangesNothing) {
  Refusing region(square(0, 0, 10));
  region.refuses = true;
  const gxRegion tangled(bowTie());
  EXPECT_THROW(tangled.outerHull(region), std::runtime_error);
  EXPECT_EQ(region.points(), square(0, 0, 10));
}

TEST(RegionThatCannotFollow, AContourMappedIntoItThrowsAndChangesNothing) {
  Refusing region(square(0, 0, 10));
  region.refuses = true;
  const gxContour small(square(0, 0, 2));
  gxContour& outline = region;
  EXPECT_THROW(outline = small, std::runtime_error);
  EXPECT_EQ(region.points(), square(0, 0, 10));
}

// ---- Nesting --------------------------------------------------------------------------------------

// A square of half width `levels`, with a hole of half width `levels` − 1, and so on.
Handle nested(int levels) {
  Handle inner;
  for (int k = 1; k <= levels; ++k) {
    gxPtrHandle<gxRegion> region(new gxRegion(square(-k, -k, 2 * k)));
    if (!inner.isNull()) region->holes({inner});
    inner = region;
  }
  return inner;
}

TEST(RegionNesting, TenThousandLevelsAreCopiedQueriedAndDestroyed) {
  constexpr int kLevels = 10'000;
  const V query(0.25, 0.5);
  gxRegion copy;
  {
    const Handle outermost = nested(kLevels);
    EXPECT_FALSE(outermost->inside(query, true)) << "an even number of outlines around it";
    EXPECT_TRUE(outermost->holes()[0]->inside(query, true));
    EXPECT_TRUE(outermost->inside(query, false));
    EXPECT_EQ(outermost->distToPoint(V(kLevels - 1, 0.0), false, true, true), 0.0);
    copy = *outermost;
  }
  EXPECT_EQ(copy.area(true), 4.0 * kLevels * kLevels - 4.0 * (kLevels - 1.0) * (kLevels - 1.0));
  gxRegion moved(std::move(copy));
  EXPECT_FALSE(moved.inside(query, true));
  moved = gxRegion();
}

TEST(RegionNesting, AHoleSharedByManyLevelsIsNoCycle) {
  const Handle shared1 = shared(gxRegion(square(4, 4, 1)));
  gxRegion a(square(3, 3, 3));
  a.holes({shared1});
  gxRegion region(square(0, 0, 10));
  region.holes({shared1, shared(a), shared1});
  EXPECT_FALSE(region.inside(V(4.5, 4.6), true));
  EXPECT_FALSE(region.inside(V(3.5, 3.6), true));
  EXPECT_TRUE(region.inside(V(1.5, 1.6), true));
}

TEST(RegionNesting, ARegionInItsOwnHoleIsRefusedWhenItIsMet) {
  const gxPtrHandle<gxRegion> outer(new gxRegion(square(0, 0, 10)));
  const gxPtrHandle<gxRegion> inner(new gxRegion(square(2, 2, 6)));
  outer->holes({inner});
  inner->holes({outer});
  const V query(5.25, 5.5);
  EXPECT_EQ(messageOfBadParams([&] { outer->inside(query, true); }), L"holes nest too deeply");
  EXPECT_EQ(messageOfBadParams([&] { inner->inside(query, true); }), L"holes nest too deeply");
  EXPECT_EQ(messageOfBadParams([&] { outer->distToPoint(query, false, true, true); }),
            L"holes nest too deeply");
  EXPECT_TRUE(outer->inside(query, false));
  EXPECT_TRUE(outer->inside(V(1.25, 1.5), true)) << "the cycle is not met";
  EXPECT_EQ(outer->area(true), 64.0) << "measures look one level deep";
  inner->holes({});  // or the two would keep each other alive for ever
}

TEST(RegionNesting, ARegionThatIsItsOwnHoleIsRefusedWhenItIsMet) {
  const gxPtrHandle<gxRegion> region(new gxRegion(square(0, 0, 10)));
  const_cast<std::vector<Handle>&>(region->holes()).push_back(region);  // the check would refuse it
  EXPECT_EQ(messageOfBadParams([&] { region->inside(V(5.25, 5.5), true); }), L"holes nest too deeply");
  EXPECT_EQ(region->area(true), 0.0);
  region->holes({});
}

}  // namespace
