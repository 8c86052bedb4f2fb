#include <cntr/contour.h>

#include <cntr/region.h>
#include <support/exposed.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

const Points kTriangle = pointsOf("0 0, 4 0, 4 3");
const Points kSquare = pointsOf("0 0, 1 0, 1 1, 0 1");

// ---- What compiles --------------------------------------------------------------------------------

static_assert(std::is_nothrow_move_constructible_v<gxContour>);
static_assert(
    !std::is_nothrow_move_assignable_v<gxContour>);  // what is behind it may be unable to follow
static_assert(std::is_copy_constructible_v<gxContour> && std::is_copy_assignable_v<gxContour>);
static_assert(std::is_base_of_v<gxPersistent, gxContour> && std::is_base_of_v<gxRepBase, gxContour>);
static_assert(std::has_virtual_destructor_v<gxContour>);

static_assert(!std::is_convertible_v<Points, gxContour>, "points become a contour only when asked");
static_assert(!std::is_convertible_v<gxPolygon, gxContour>, "so do polygons");
static_assert(std::is_constructible_v<gxContour, Points, bool, unsigned long>);
static_assert(std::is_constructible_v<gxContour, gxPolygon, unsigned long>);

template <class C>
concept AnswersWhenConst = requires(const C c, V p, gxRegion region, gxLineSeg seg, gxEllipse e,
                                    double d) {
  c.points();
  c.isClosed();
  c.label();
  c.cachedVectorSize();
  c.length();
  c.closestPoint(p, true);
  c.closestVertexIndex(p);
  c.distToPoint(p, true);
  c.intersections(seg, true);
  c.intersections(c);
  c.isSelfIntersecting();
  c.extremalVertexIndex(gxRadian(1.0));
  c.extremalVertexPosition(gxRadian(1.0));
  c.encloseRect(gxXform<2>());
  c.encloseCircle(gxContourDefs::eAllPairs);
  c.diameter(gxContourDefs::eAllPairs);
  c.convexHull(region);
  c.meanPosition();
  c.fitEllipse(e, d);
  c.vertexIndex(p, 1.0);
  c.map(gxXform<2>(), region);
  c.polygon();
  c.mutating_();
};
static_assert(AnswersWhenConst<gxContour>);
static_assert(AnswersWhenConst<gxRegion>, "a region keeps every question of the contour within reach");

// ---- Construction ---------------------------------------------------------------------------------

TEST(ContourConstruction, ByDefaultItIsClosedAndHasNoPoints) {
  const gxContour contour;
  EXPECT_TRUE(contour.isClosed());
  EXPECT_TRUE(contour.points().empty());
  EXPECT_EQ(contour.label(), 0u);
  EXPECT_EQ(contour.cachedVectorSize(), 3);
}

TEST(ContourConstruction, FromPointsKeepsThemInOrder) {
  const gxContour contour(kTriangle, false, 7);
  EXPECT_EQ(contour.points(), kTriangle);
  EXPECT_FALSE(contour.isClosed());
  EXPECT_EQ(contour.label(), 7u);
  EXPECT_EQ(contour.cachedVectorSize(), 3);
}

TEST(ContourConstruction, FromPointsAloneIsClosedWithLabelZero) {
  const gxContour contour(kTriangle);
  EXPECT_TRUE(contour.isClosed());
  EXPECT_EQ(contour.label(), 0u);
}

TEST(ContourConstruction, TheLargestLabelFits) {
  EXPECT_EQ(gxContour(kTriangle, true, 0xFFFFFFFFUL).label(), 0xFFFFFFFFUL);
}

gxPolygon polygonOf(const std::string& text) {
  return {pointsOf(text), gxPolygon::eEvenOdd};
}

TEST(ContourFromPolygon, WithEqualEndsItIsClosedAndKeepsTheRepeatedVertex) {
  const gxContour contour(polygonOf("0 0, 4 0, 4 3, 0 0"), 5);
  EXPECT_TRUE(contour.isClosed());
  EXPECT_EQ(contour.points(), pointsOf("0 0, 4 0, 4 3, 0 0"));
  EXPECT_EQ(contour.label(), 5u);
}

TEST(ContourFromPolygon, WithDifferentEndsItIsOpen) {
  const gxContour contour(polygonOf("0 0, 4 0, 4 3"));
  EXPECT_FALSE(contour.isClosed());
  EXPECT_EQ(contour.points(), kTriangle);
  EXPECT_EQ(contour.label(), 0u);
}

TEST(ContourFromPolygon, EndsWithinOneQuadrillionthCoincide) {
  EXPECT_TRUE(gxContour(polygonOf("0 0, 4 0, 1e-15 -1e-15")).isClosed());
  EXPECT_FALSE(gxContour(polygonOf("0 0, 4 0, 1.1e-15 0")).isClosed());
  EXPECT_FALSE(gxContour(polygonOf("0 0, 4 0, 0 1.1e-15")).isClosed());
}

TEST(ContourFromPolygon, WithoutVerticesItIsClosedAndEmpty) {
  const gxContour contour{gxPolygon(), 3};
  EXPECT_TRUE(contour.isClosed());
  EXPECT_TRUE(contour.points().empty());
  EXPECT_EQ(contour.label(), 3u);
}

TEST(ContourFromPolygon, OfOneVertexItIsClosed) {
  EXPECT_TRUE(gxContour(polygonOf("5 5")).isClosed());
  EXPECT_EQ(gxContour(polygonOf("5 5")).points().size(), 1u);
}

TEST(ContourFromPolygon, EndsThatAreNotFiniteNeverCoincide) {
  EXPECT_FALSE(gxContour(polygonOf("nan 0, 1 1, nan 0")).isClosed());
  EXPECT_FALSE(gxContour(polygonOf("inf 0, 1 1, inf 0")).isClosed());
}

// ---- Comparison -----------------------------------------------------------------------------------

TEST(ContourEquality, LabelsTakeNoPart) {
  EXPECT_TRUE(gxContour(kTriangle, true, 1) == gxContour(kTriangle, true, 2));
}

TEST(ContourEquality, CachedVectorSizeTakesPart) {
  const gxContour a(kTriangle);
  gxContour b(kTriangle);
  b.cachedVectorSize(4);
  EXPECT_FALSE(a == b);
  b.cachedVectorSize(3);
  EXPECT_TRUE(a == b);
}

TEST(ContourEquality, OpenAndClosedDiffer) {
  EXPECT_FALSE(gxContour(kTriangle, true) == gxContour(kTriangle, false));
}

TEST(ContourEquality, PointsAreComparedExactlyOneByOne) {
  EXPECT_FALSE(gxContour(kTriangle) == gxContour(pointsOf("0 0, 4 0")));
  EXPECT_FALSE(gxContour(kTriangle) == gxContour(pointsOf("4 0, 4 3, 0 0"))) << "another first vertex";
  EXPECT_FALSE(gxContour(kTriangle) == gxContour(pointsOf("0 5e-324, 4 0, 4 3")));
  EXPECT_TRUE(gxContour(kTriangle) == gxContour(pointsOf("-0 0, 4 0, 4 3"))) << "0 equals -0";
}

TEST(ContourEquality, ANaNEqualsNothingNotEvenItself) {
  const gxContour contour(pointsOf("nan 0, 1 1"));
  EXPECT_FALSE(contour == contour);
}

TEST(ContourEquality, MemoriesTakeNoPart) {
  const gxContour asked(kTriangle);
  asked.length();
  asked.encloseRect(gxXform<2>());
  EXPECT_TRUE(asked == gxContour(kTriangle));
}

TEST(ContourEquality, ARegionIsComparedAsTheClosedContourItIs) {
  const gxRegion region{gxContour(kTriangle, false)};
  EXPECT_TRUE(gxContour(kTriangle, true) == region);
  EXPECT_FALSE(gxContour(kTriangle, false) == region);
}

TEST(ContourEquality, WithoutPointsTwoContoursAreEqual) {
  EXPECT_TRUE(gxContour() == gxContour(Points(), true, 9));
  EXPECT_FALSE(gxContour() == gxContour(Points(), false));
}

// ---- Setters --------------------------------------------------------------------------------------

TEST(ContourSetters, PointsAreReplaced) {
  gxContour contour(kTriangle, false, 7);
  contour.points(kSquare);
  EXPECT_EQ(contour.points(), kSquare);
  EXPECT_FALSE(contour.isClosed());
  EXPECT_EQ(contour.label(), 7u);
}

TEST(ContourSetters, PointsMayBeSetToTheContoursOwnList) {
  ExposedContour contour(kTriangle);
  contour.points(contour.points());
  EXPECT_EQ(contour.points(), kTriangle);
  contour.setPoints(contour.points());
  EXPECT_EQ(contour.points(), kTriangle);
}

TEST(ContourSetters, ClosedFlagCanBeChangedBothWays) {
  gxContour contour(kTriangle);
  contour.isClosed(false);
  EXPECT_FALSE(contour.isClosed());
  contour.isClosed(true);
  EXPECT_TRUE(contour.isClosed());
}

TEST(ContourSetters, CachedVectorSizeAcceptsZeroAndTheLargest) {
  gxContour contour(kTriangle);
  contour.cachedVectorSize(0);
  EXPECT_EQ(contour.cachedVectorSize(), 0);
  contour.cachedVectorSize(std::numeric_limits<long>::max());
  contour.extremalVertexIndex(gxRadian(1.0));
  EXPECT_EQ(contour.cachedVectorSize(), std::numeric_limits<long>::max());
}

TEST(ContourSetters, ANegativeCachedVectorSizeIsRefusedAndTheOldOneStays) {
  gxContour contour(kTriangle);
  contour.cachedVectorSize(5);
  for (const long size : {-1L, std::numeric_limits<long>::min()}) {
    try {
      contour.cachedVectorSize(size);
      ADD_FAILURE() << size << " was accepted";
    } catch (const gxContourDefs::BadParams& e) {
      EXPECT_EQ(e.message(), L"");
    }
  }
  EXPECT_EQ(contour.cachedVectorSize(), 5);
}

TEST(ContourSetters, ReInitBringsTheDefaultStateBack) {
  gxContour contour(kTriangle, false, 7);
  contour.cachedVectorSize(9);
  contour.trackChanges(true);
  contour.reInit();
  EXPECT_GE(contour.changeCount(), 1u);
  EXPECT_TRUE(contour == gxContour());
  EXPECT_EQ(contour.label(), 0u);
}

TEST(ContourEmptyCheck, ThrowsForNoPointAndForOneAndPassesForTwo) {
  EXPECT_THROW(ExposedContour().checkEmptyContour(), gxContourDefs::EmptyContour);
  EXPECT_THROW(ExposedContour(pointsOf("1 1")).checkEmptyContour(), gxContourDefs::EmptyContour);
  EXPECT_NO_THROW(ExposedContour(pointsOf("1 1, 1 1")).checkEmptyContour());
}

TEST(ContourEmptyCheck, ItsExceptionHasNoMessage) {
  try {
    ExposedContour().checkEmptyContour();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const gxContourDefs::Errors& e) {
    EXPECT_EQ(e.message(), L"");
    EXPECT_EQ(e.errorNumber(), 0x10004680);
  }
}

// ---- Copies and moves -----------------------------------------------------------------------------

TEST(ContourCopy, CarriesPointsClosedFlagLabelAndCachedVectorSize) {
  gxContour original(kTriangle, false, 7);
  original.cachedVectorSize(9);
  const gxContour copy(original);
  EXPECT_TRUE(copy == original);
  EXPECT_EQ(copy.label(), 7u);
  gxContour assigned;
  assigned = original;
  EXPECT_TRUE(assigned == original);
  EXPECT_EQ(assigned.label(), 7u);
}

TEST(ContourCopy, IsIndependentOfTheOriginal) {
  gxContour original(kTriangle);
  gxContour copy(original);
  original.points(kSquare);
  EXPECT_EQ(copy.points(), kTriangle);
  copy.isClosed(false);
  EXPECT_TRUE(original.isClosed());
}

TEST(ContourCopy, SelfAssignmentChangesNothing) {
  gxContour contour(kTriangle, false, 7);
  const gxContour& same = contour;
  contour.trackChanges(true);
  contour = same;
  EXPECT_EQ(contour.points(), kTriangle);
  EXPECT_EQ(contour.label(), 7u);
  EXPECT_EQ(contour.changeCount(), 0u);
}

TEST(ContourCopy, LeavesReferenceCountsAlone) {
  const gxPtrHandle<gxContour> held(new gxContour(kTriangle));
  const gxContour copy(*held);
  EXPECT_EQ(copy.refCount(), 0);
  gxContour other;
  *held = other;
  EXPECT_EQ(held->refCount(), 1);
  const gxContour moved(std::move(*held));
  EXPECT_EQ(held->refCount(), 1);
  EXPECT_EQ(moved.refCount(), 0);
}

TEST(ContourMove, TakesEverythingOver) {
  gxContour original(kTriangle, false, 7);
  original.cachedVectorSize(9);
  const V* const storage = original.points().data();
  const gxContour moved(std::move(original));
  EXPECT_EQ(moved.points().data(), storage) << "the list itself went over, nothing was copied";
  EXPECT_FALSE(moved.isClosed());
  EXPECT_EQ(moved.label(), 7u);
  EXPECT_EQ(moved.cachedVectorSize(), 9);
}

TEST(ContourMove, LeavesAClosedContourWithoutPointsThatCanBeUsed) {
  gxContour original(kTriangle, false, 7);
  original.length();
  gxContour target;
  target = std::move(original);
  // NOLINTBEGIN(bugprone-use-after-move): that state is promised
  EXPECT_TRUE(original.isClosed());
  EXPECT_TRUE(original.points().empty());
  EXPECT_EQ(original.length(), 0.0);
  EXPECT_FALSE(original.isSelfIntersecting());
  EXPECT_THROW(original.meanPosition(), gxContourDefs::EmptyContour);
  EXPECT_EQ(original.diameter(gxContourDefs::eFirstPoint), 0.0);
  original.points(kSquare);
  EXPECT_EQ(original.length(), 4.0);
  // NOLINTEND(bugprone-use-after-move)
  EXPECT_EQ(target.length(), 7.0);
}

TEST(ContourMove, ToItselfChangesNothing) {
  gxContour contour(kTriangle, false, 7);
  gxContour& same = contour;
  contour = std::move(same);
  EXPECT_EQ(contour.points(), kTriangle);
  EXPECT_EQ(contour.label(), 7u);
}

TEST(ContourMove, ReportsNoChange) {
  gxContour from(kTriangle);
  gxContour to;
  from.trackChanges(true);
  to.trackChanges(true);
  to = std::move(from);
  EXPECT_EQ(to.changeCount(), 0u);
  EXPECT_EQ(from.changeCount(), 0u);  // NOLINT(bugprone-use-after-move)
}

// ---- Change tracking ------------------------------------------------------------------------------

template <class Change>
unsigned changesOf(Change change) {
  ExposedContour contour(kTriangle);
  contour.trackChanges(true);
  change(contour);
  return contour.changeCount();
}

TEST(ContourChangeTracking, EverySetterReportsAChange) {
  EXPECT_GE(changesOf([](ExposedContour& c) { c.points(kSquare); }), 1u);
  EXPECT_EQ(changesOf([](ExposedContour& c) { c.setPoints(kSquare); }), 1u);
  EXPECT_EQ(changesOf([](ExposedContour& c) { c.isClosed(false); }), 1u);
  EXPECT_EQ(changesOf([](ExposedContour& c) { c.isClosed(true); }), 1u) << "also with the value it has";
  EXPECT_EQ(changesOf([](ExposedContour& c) { c.label(3); }), 1u);
  EXPECT_EQ(changesOf([](ExposedContour& c) { c.cachedVectorSize(3); }), 1u);
  EXPECT_EQ(changesOf([](ExposedContour& c) { c.cleanCacheInfo(); }), 1u);
  EXPECT_EQ(changesOf([](ExposedContour& c) { c.makeDataConsistentWithPoints(); }), 1u);
  EXPECT_EQ(changesOf([](ExposedContour& c) { c.makePointsConsistentWithData(); }), 1u);
  EXPECT_GE(changesOf([](ExposedContour& c) { c.reInit(); }), 1u);
}

TEST(ContourChangeTracking, ThePublicPointSetterDropsTheMemoryTwice) {
  EXPECT_EQ(changesOf([](ExposedContour& c) { c.points(kSquare); }), 2u);
}

TEST(ContourChangeTracking, ARefusedSetterReportsNone) {
  EXPECT_EQ(changesOf([](ExposedContour& c) {
              EXPECT_THROW(c.cachedVectorSize(-1), gxContourDefs::BadParams);
            }),
            0u);
}

TEST(ContourChangeTracking, AssignmentReportsNone) {
  const gxContour square(kSquare);
  EXPECT_EQ(changesOf([&](ExposedContour& c) { static_cast<gxContour&>(c) = square; }), 0u);
}

TEST(ContourChangeTracking, QuestionsReportNone) {
  EXPECT_EQ(changesOf([](ExposedContour& c) {
              c.length();
              c.encloseRect(gxXform<2>());
              c.extremalVertexIndex(gxRadian(1.0));
              c.diameter(gxContourDefs::eAllPairs);
              c.vertexIndex(V(0, 0), 1.0);
              c.isSelfIntersecting();
              c.meanPosition();
              c.lineSegs();
            }),
            0u);
}

TEST(ContourChangeTracking, IsOffByDefaultAndInCopies) {
  gxContour contour(kTriangle);
  contour.label(4);
  EXPECT_EQ(contour.changeCount(), 0u);
  contour.trackChanges(true);
  contour.label(5);
  gxContour copy(contour);
  copy.label(6);
  EXPECT_FALSE(copy.isTrackingChanges());
  EXPECT_EQ(copy.changeCount(), 0u);
}

// ---- Derived classes that cannot follow -------------------------------------------------------------

struct CannotFollow {};

// A contour with per-vertex data that refuses to be brought in step when told so.
class Stubborn : public gxContour {
 public:
  using gxContour::gxContour;
  using gxContour::operator=;
  bool refuses = false;
  int followed = 0;
  void setPointsOnly(const std::vector<gxVector<2>>& points) { setPoints(points); }

 protected:
  void makeDataConsistentWithPoints() override { follow_(); }
  void contourAssigned_() override { follow_(); }

 private:
  void follow_() {
    if (refuses) throw CannotFollow();
    ++followed;
  }
};

TEST(ContourThatCannotFollow, KeepsItsPointsWhenThePointSetterFails) {
  Stubborn contour(kTriangle, false, 7);
  contour.cachedVectorSize(5);
  EXPECT_EQ(contour.length(), 7.0);
  contour.refuses = true;
  EXPECT_THROW(contour.points(kSquare), CannotFollow);
  EXPECT_EQ(contour.points(), kTriangle);
  EXPECT_FALSE(contour.isClosed());
  EXPECT_EQ(contour.label(), 7u);
  EXPECT_EQ(contour.cachedVectorSize(), 5);
  EXPECT_EQ(contour.length(), 7.0) << "nothing of the refused points is remembered";
}

TEST(ContourThatCannotFollow, IsAskedOnceByThePointSetterAndByAssignment) {
  Stubborn contour(kTriangle);
  contour.points(kSquare);
  EXPECT_EQ(contour.followed, 1);
  contour = gxContour(kTriangle);
  EXPECT_EQ(contour.followed, 2);
  gxContour& asContour = contour;
  gxContour(kSquare).map(gxXform<2>(), asContour);
  EXPECT_EQ(contour.followed, 3);
  EXPECT_EQ(contour.points(), kSquare);
}

TEST(ContourThatCannotFollow, IsAsItWasWhenAnAssignmentFails) {
  Stubborn contour(kTriangle, false, 7);
  EXPECT_EQ(contour.length(), 7.0);
  contour.refuses = true;
  const gxContour source(kSquare, true, 8);
  EXPECT_THROW(contour = source, CannotFollow);
  EXPECT_EQ(contour.points(), kTriangle);
  EXPECT_FALSE(contour.isClosed());
  EXPECT_EQ(contour.label(), 7u);
}

TEST(ContourThatCannotFollow, MovesNothingWhenAMoveAssignmentFails) {
  Stubborn contour(kTriangle, false, 7);
  contour.refuses = true;
  gxContour source(kSquare, true, 8);
  EXPECT_THROW(contour = std::move(source), CannotFollow);
  EXPECT_EQ(contour.points(), kTriangle);
  EXPECT_FALSE(contour.isClosed());
  EXPECT_EQ(contour.label(), 7u);
  EXPECT_EQ(source.points(), kSquare);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(source.label(), 8u);
  EXPECT_THROW(contour = gxContour(kSquare), CannotFollow);
  EXPECT_EQ(contour.points(), kTriangle);
}

// By then the target has changed; a source without points has little to follow.
TEST(ContourThatCannotFollow, IsNotHeardWhenItIsMovedFrom) {
  Stubborn contour(kTriangle, false, 7);
  Stubborn source(kSquare, true, 8);
  source.refuses = true;
  contour = std::move(static_cast<gxContour&>(source));
  EXPECT_EQ(contour.points(), kSquare);
  EXPECT_EQ(contour.followed, 1);
  EXPECT_TRUE(source.points().empty());  // NOLINT(bugprone-use-after-move)
  source.setPointsOnly(kSquare);
  const gxContour made(std::move(static_cast<gxContour&>(source)));
  EXPECT_EQ(made.points(), kSquare);
  EXPECT_TRUE(source.points().empty());
}

// ---- Derived classes with a memory of their own -----------------------------------------------------

// Counts how often it is told to forget.
class Remembering : public ExposedContour {
 public:
  using ExposedContour::ExposedContour;
  int forgot = 0;

  void cleanCacheInfo() override {
    ++forgot;
    ExposedContour::cleanCacheInfo();
  }
};

TEST(ContourWithAMemoryOfItsOwn, HearsOfEveryChangeOfPointsAndClosedFlag) {
  Remembering contour(kTriangle);
  const auto timesDuring = [&](const auto& change) {
    const int before = contour.forgot;
    change();
    return contour.forgot - before;
  };
  EXPECT_EQ(timesDuring([&] { contour.points(kSquare); }), 2) << "the setter and its hook";
  EXPECT_EQ(timesDuring([&] { contour.isClosed(false); }), 1);
  EXPECT_EQ(timesDuring([&] { contour.isClosed(false); }), 1) << "also where the flag was so already";
  EXPECT_EQ(timesDuring([&] { contour.setPoints(kTriangle); }), 1);
  EXPECT_EQ(timesDuring([&] { contour.makeDataConsistentWithPoints(); }), 1);
  EXPECT_EQ(timesDuring([&] { contour.makePointsConsistentWithData(); }), 1);
  EXPECT_EQ(timesDuring([&] { contour.label(4); }), 0);
  EXPECT_EQ(timesDuring([&] { contour.cachedVectorSize(4); }), 0);
}

// ---- Regions seen as their contour ------------------------------------------------------------------

TEST(RegionSeenAsItsContour, AssigningAnOpenContourLeavesItClosed) {
  gxRegion region(kSquare);
  gxContour& outline = region;
  outline = gxContour(pointsOf("0 0, 3 0, 3 4"), false, 7);
  EXPECT_TRUE(region.isClosed());
  EXPECT_EQ(region.length(), 12.0);
  EXPECT_EQ(region.label(), 7u);
}

TEST(RegionSeenAsItsContour, AnAssignmentDropsWhatTheRegionRemembers) {
  gxRegion region(kSquare);
  EXPECT_EQ(region.area(false), 1.0);
  gxContour& outline = region;
  outline = gxContour(kTriangle);
  EXPECT_EQ(region.area(false), 6.0);
  gxContour(pointsOf("0 0, 2 0, 2 2, 0 2")).map(gxXform<2>(), outline);
  EXPECT_EQ(region.area(false), 4.0);
}

TEST(RegionSeenAsItsContour, AnAssignmentKeepsItsHoles) {
  gxRegion region(pointsOf("0 0, 10 0, 10 10, 0 10"));
  region.holes({gxPtrHandle_const<gxRegion>(new gxRegion(pointsOf("4 4, 5 4, 5 5")))});
  gxContour& outline = region;
  outline = gxContour(kTriangle);
  EXPECT_EQ(region.holes().size(), 1u);
  EXPECT_EQ(region.points(), kTriangle);
}

TEST(RegionSeenAsItsContour, MayBeAssignedFromItsOwnHole) {
  gxRegion region(pointsOf("0 0, 10 0, 10 10, 0 10"));
  region.holes({gxPtrHandle_const<gxRegion>(new gxRegion(pointsOf("4 4, 5 4, 5 5")))});
  gxContour& outline = region;
  outline = *region.holes()[0];
  EXPECT_EQ(region.points(), pointsOf("4 4, 5 4, 5 5"));
}

TEST(RegionSeenAsItsContour, MovedFromItHasNoPointsAndRemembersNoArea) {
  gxRegion region(kSquare);
  EXPECT_EQ(region.area(false), 1.0);
  gxContour contour;
  contour = std::move(static_cast<gxContour&>(region));
  EXPECT_EQ(contour.points(), kSquare);
  EXPECT_THROW(region.area(false), gxContourDefs::EmptyContour);  // NOLINT(bugprone-use-after-move)
}

TEST(RegionSeenAsItsContour, SlicedIntoAContourItCarriesTheFlagOfItsContourPart) {
  const gxRegion fromClosed{gxContour(kTriangle, true)};
  EXPECT_TRUE(gxContour(fromClosed).isClosed());
  const gxRegion fromPoints(kTriangle);
  EXPECT_TRUE(gxContour(fromPoints).isClosed());
  // A region keeps the flag of the contour that it was made of, although it never asks for it.
  const gxRegion fromOpen{gxContour(pointsOf("0 0, 3 0, 3 4"), false)};
  EXPECT_EQ(fromOpen.length(), 12.0);
  const gxContour sliced(fromOpen);
  EXPECT_FALSE(sliced.isClosed());
  EXPECT_EQ(sliced.length(), 7.0) << "the closed length was not carried along";
}

// A region that can exchange its outline with any contour.
class SwappingRegion : public gxRegion {
 public:
  explicit SwappingRegion(const std::vector<gxVector<2>>& points) : gxContour(points, true) {}
  void swapOutline(gxContour& other) { swapContour_(other); }
};

TEST(ContourMoving, AnOutlineExchangedWithAnOpenContourLeavesTheOpenLengthBehind) {
  const std::vector<gxVector<2>> points{{0, 0}, {3, 0}, {3, 4}};
  gxContour open(points, false);
  SwappingRegion region(points);
  ASSERT_EQ(open.length(), 7.0);
  ASSERT_EQ(region.length(), 12.0);
  region.swapOutline(open);
  EXPECT_EQ(region.length(), 12.0);  // came in as the poly-line of length 7
  EXPECT_TRUE(open.isClosed());
  EXPECT_EQ(open.length(), 12.0);
}

}  // namespace
