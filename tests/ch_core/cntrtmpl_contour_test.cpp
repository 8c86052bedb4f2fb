// The edge-point contour: its two views, the transform between them, copies, and what it refuses.
#include <ch_core/cntrtmpl.h>
#include <gtest/gtest.h>
#include <support/computed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>
#include <velip/pel.h>

#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Contour = gxContourT<gxEdgelet>;
using Region = gxRegionT<gxEdgelet>;
using Xform = gxPtrHandle_const<gx2XformBase>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

gxEdgelet edge(double x, double y, unsigned short magnitude = 7, unsigned char angle = 9) {
  return {gxVector<2>(x, y), magnitude, gxAngle8(angle)};
}

std::vector<gxEdgelet> triangle() {
  return {edge(0, 0, 100, 10), edge(4, 0, 200, 20), edge(4, 3, 300, 30)};
}

Xform linear(double xx, double xy, double yx, double yy, double tx, double ty) {
  return Xform(new gx2XformLinear(gxXform<2>(gxMatrix<2>(xx, xy, yx, yy), gxVector<2>(tx, ty))));
}

Xform shiftBy5() {
  return linear(1, 0, 0, 1, 5, 0);
}

Xform singular() {
  return linear(1, 2, 2, 4, 0, 0);
}

// Counts how often its inverse is asked for.
class CountingXform : public gx2XformLinear {
 public:
  explicit CountingXform(long& inversions) : inversions_(&inversions) {}
  gxPtrHandle<gx2XformBase> clone() const override {
    return gxPtrHandle<gx2XformBase>(new CountingXform(*inversions_));
  }
  gxPtrHandle<gx2XformBase> inverseBase() const override {
    ++*inversions_;
    return gx2XformLinear::inverseBase();
  }

 private:
  long* inversions_;
};

// Fails for points whose x is below 0.
class HalfPlaneXform : public gx2XformLinear {
 public:
  gxVector<2> mapPoint(const gxVector<2>& point) const override {
    if (point.x() < 0) throw gxMathError::Singular();
    return point;
  }
  gxPtrHandle<gx2XformBase> clone() const override {
    return gxPtrHandle<gx2XformBase>(new HalfPlaneXform(*this));
  }
  gxPtrHandle<gx2XformBase> inverseBase() const override { return clone(); }
};

class ExposedEdges : public Contour {
 public:
  using Contour::Contour;
  using Contour::makeDataConsistentWithPoints;
  using Contour::makePointsConsistentWithData;
  using gxContour::setPoints;
};

std::vector<gxVector<2>> positions(const std::vector<gxEdgelet>& data) {
  std::vector<gxVector<2>> result;
  for (const gxEdgelet& e : data) result.push_back(e.position());
  return result;
}

}  // namespace

static_assert(std::is_nothrow_move_constructible_v<Contour>);
static_assert(!std::is_nothrow_move_assignable_v<Contour>);  // a derived class may be unable to follow

// ---- Construction -------------------------------------------------------------------------------

TEST(EdgeletContour, DefaultIsClosedEmptyAndWithoutTransform) {
  const Contour contour;
  EXPECT_TRUE(contour.points().empty());
  EXPECT_TRUE(contour.data().empty());
  EXPECT_TRUE(contour.isClosed());
  EXPECT_EQ(contour.label(), 0UL);
  EXPECT_TRUE(contour.dataFromPointsXform().isNull());
}

TEST(EdgeletContour, OfEdgePointsAloneHasThePositionsAsPoints) {
  const Contour contour(triangle());
  EXPECT_EQ(contour.points(), positions(triangle()));
  EXPECT_EQ(contour.data(), triangle());
  EXPECT_TRUE(contour.isClosed());
  EXPECT_EQ(contour.label(), 0UL);
  EXPECT_FALSE(contour.dataFromPointsXform().isNull());
}

TEST(EdgeletContour, TransformLeadsFromPointsToData) {
  const Contour contour({edge(15, 2)}, shiftBy5());
  EXPECT_EQ(contour.points(), pointsOf("10 2"));
  EXPECT_EQ(contour.datum({10, 2}), edge(15, 2, 0, 0));
  EXPECT_EQ(contour.point(edge(15, 2)), gxVector<2>(10, 2));
}

TEST(EdgeletContour, NullTransformIsTheIdentity) {
  const Contour contour(triangle(), nullptr);
  EXPECT_EQ(contour.points(), positions(triangle()));
  EXPECT_EQ(contour.dataFromPointsXform()->mapPoint({3, 4}), gxVector<2>(3, 4));
}

TEST(EdgeletContour, ClonesTheTransformItIsGiven) {
  const Xform xform = shiftBy5();
  const Contour contour(triangle(), xform);
  EXPECT_NE(contour.dataFromPointsXform().get(), xform.get());
  EXPECT_EQ(xform->refCount(), 1);
}

TEST(EdgeletContour, NoEdgePointsNeedNoInverse) {
  EXPECT_NO_THROW(Contour({}, singular()));
}

TEST(EdgeletContour, TransformWithoutInverseIsRefused) {
  EXPECT_THROW(Contour(triangle(), singular()), gxMathError::Singular);
}

// ---- Keeping the views in step ------------------------------------------------------------------

TEST(EdgeletContour, SettingThePointsMakesTheDataAnew) {
  Contour contour(triangle(), shiftBy5());
  contour.points(pointsOf("1 1, 2 2"));
  EXPECT_EQ(contour.data(), (std::vector<gxEdgelet>{edge(6, 1, 0, 0), edge(7, 2, 0, 0)}));
  EXPECT_EQ(contour.points(), pointsOf("1 1, 2 2"));
}

TEST(EdgeletContour, SettingTheSamePointsStillDropsMagnitudesAndAngles) {
  Contour contour(triangle());
  contour.points(contour.points());
  for (const gxEdgelet& e : contour.data()) {
    EXPECT_EQ(e.magnitude(), 0);
    EXPECT_EQ(e.angle(), gxAngle8(0));
  }
}

TEST(EdgeletContour, SettingTheDataMakesThePointsAndKeepsTheData) {
  Contour contour({}, shiftBy5());
  contour.data(triangle());
  EXPECT_EQ(contour.data(), triangle());
  EXPECT_EQ(contour.points(), pointsOf("-5 0, -1 0, -1 3"));
  contour.data(contour.data());  // its own list
  EXPECT_EQ(contour.data(), triangle());
  contour.data({});
  EXPECT_TRUE(contour.points().empty());
}

TEST(EdgeletContour, EitherSetterDropsTheMemory) {
  Contour contour(triangle());
  EXPECT_EQ(contour.length(), 12.0);
  contour.data({edge(0, 0), edge(1, 0)});
  EXPECT_EQ(contour.length(), 2.0);
  contour.points(pointsOf("0 0, 5 0"));
  EXPECT_EQ(contour.length(), 10.0);
}

TEST(EdgeletContour, EitherSetterReports) {
  Contour contour(triangle());
  contour.trackChanges(true);
  contour.data(triangle());
  const std::uint32_t once = contour.changeCount();
  EXPECT_GT(once, 0U);
  contour.points(pointsOf("0 0"));
  EXPECT_GT(contour.changeCount(), once);
}

TEST(EdgeletContour, OpenAndClosedWorksAsForContours) {
  Contour contour(triangle());
  contour.isClosed(false);
  EXPECT_EQ(contour.length(), 7.0);
  EXPECT_EQ(contour.data(), triangle());
}

TEST(EdgeletContour, RawPointSetterLeavesTheDataAlone) {
  ExposedEdges contour(triangle());
  contour.setPoints(pointsOf("9 9"));
  EXPECT_EQ(contour.data(), triangle());
  contour.makePointsConsistentWithData();
  EXPECT_EQ(contour.points(), positions(triangle()));
  contour.setPoints(pointsOf("9 9"));
  contour.makeDataConsistentWithPoints();
  EXPECT_EQ(contour.data(), (std::vector<gxEdgelet>{edge(9, 9, 0, 0)}));
}

TEST(EdgeletContour, GeometryIsThatOfThePoints) {
  const Contour contour(triangle(), linear(2, 0, 0, 2, 0, 0));
  const gxContour plain(contour.points());
  EXPECT_EQ(contour.length(), plain.length());
  EXPECT_EQ(contour.closestPoint({9, 9}, false), plain.closestPoint({9, 9}, false));
  EXPECT_EQ(contour.meanPosition(), plain.meanPosition());
  gxRegion hull;
  contour.convexHull(hull);
  EXPECT_EQ(hull.points().size(), 3U);
}

TEST(EdgeletContour, RandomDataComeBackThroughTheTransform) {
  RandomShapes random("edge-point contour round trip", 500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxXform<2> xform = random.similarity();
    std::vector<gxEdgelet> data;
    for (const gxVector<2>& p : random.outline(OutlineKind::eStar, random.integer(0, 30))) {
      data.push_back({p, static_cast<unsigned short>(random.integer(0, 65535)),
                      gxAngle8(static_cast<unsigned char>(random.integer(0, 255)))});
    }
    const Contour contour(data, Xform(new gx2XformLinear(xform)));
    const gxXform<2> inverse = xform.inverse();
    ASSERT_EQ(contour.points().size(), data.size());
    for (std::size_t i = 0; i < data.size(); ++i) {
      EXPECT_EQ(contour.points()[i], inverse * data[i].position());
      EXPECT_EQ(contour.datum(contour.points()[i]).position(), xform * contour.points()[i]);
    }
  }
}

TEST(EdgeletContour, AnyCoordinatesPassThrough) {
  const Contour contour({edge(kNaN, 1), edge(kInf, 2), edge(1e308, -1e308)});
  EXPECT_EQ(contour.points().size(), 3U);
  EXPECT_EQ(contour.data()[1].position().x(), kInf);
  EXPECT_EQ(contour.points()[2], gxVector<2>(1e308, -1e308));
}

// ---- The inverse --------------------------------------------------------------------------------

TEST(EdgeletContourInverse, IsMadeOnceAndSharedWithCopies) {
  long inversions = 0;
  Contour contour({}, Xform(new CountingXform(inversions)));
  EXPECT_EQ(inversions, 0);
  contour.data(triangle());
  EXPECT_EQ(inversions, 1);
  contour.data(triangle());
  contour.points(pointsOf("0 0"));
  static_cast<void>(contour.point(edge(1, 1)));
  const Contour copy(contour);
  static_cast<void>(copy.point(edge(1, 1)));
  EXPECT_EQ(inversions, 1);
}

TEST(EdgeletContourInverse, FailureIsNotRemembered) {
  const Contour contour({}, singular());
  EXPECT_THROW(static_cast<void>(contour.point(edge(0, 0))), gxMathError::Singular);
  EXPECT_THROW(static_cast<void>(contour.point(edge(0, 0))), gxMathError::Singular);
  EXPECT_EQ(contour.datum({1, 1}).position(), gxVector<2>(3, 6));  // the other way works
}

// ---- Comparison ---------------------------------------------------------------------------------

TEST(EdgeletContourEquality, CopyIsEqualAndRebuiltIsNot) {
  const Contour contour(triangle(), shiftBy5());
  EXPECT_TRUE(Contour(contour) == contour);
  EXPECT_FALSE(Contour(triangle(), shiftBy5()) == contour);
  EXPECT_FALSE(Contour(triangle()) == Contour(triangle()));
}

TEST(EdgeletContourEquality, DefaultsAreEqual) {
  const Contour none;
  EXPECT_TRUE(none == Contour());
  EXPECT_TRUE(Contour(none) == none);
}

TEST(EdgeletContourEquality, EdgePointsClosedFlagAndLabelTakeNoPart) {
  const Contour contour(triangle());
  Contour other(contour);
  other.points(other.points());  // magnitudes and angles are gone
  other.isClosed(false);
  other.label(5);
  other.cachedVectorSize(9);
  EXPECT_FALSE(other.data() == contour.data());
  EXPECT_TRUE(other == contour);
}

TEST(EdgeletContourEquality, OtherPointsAreUnequal) {
  const Contour contour(triangle());
  Contour other(contour);
  other.points(pointsOf("0 0"));
  EXPECT_FALSE(other == contour) << "fewer";
  other.points(pointsOf("0 0, 4 0, 4 3.5"));
  EXPECT_FALSE(other == contour) << "as many";
  other.points(pointsOf("0 0, 4 0, 4 3"));
  EXPECT_TRUE(other == contour);
}

// ---- Copying and moving -------------------------------------------------------------------------

TEST(EdgeletContourCopy, SharesTheTransformAndCopiesTheRest) {
  Contour contour(triangle(), shiftBy5());
  contour.label(4);
  contour.isClosed(false);
  const Contour copy(contour);
  EXPECT_EQ(copy.dataFromPointsXform(), contour.dataFromPointsXform());
  EXPECT_EQ(copy.label(), 4UL);
  EXPECT_FALSE(copy.isClosed());
  contour.data({});
  EXPECT_EQ(copy.data(), triangle());
  EXPECT_EQ(copy.points().size(), 3U);
}

TEST(EdgeletContourCopy, BringsTheMemoryAlong) {
  const Contour contour(triangle());
  static_cast<void>(contour.length());
  Contour assigned;
  assigned = contour;
  const Computed lengths(gx_Computation::eLength);
  EXPECT_EQ(Contour(contour).length(), 12.0);
  EXPECT_EQ(assigned.length(), 12.0);
  EXPECT_EQ(lengths.times(), 0);
}

TEST(EdgeletContourCopy, SelfAssignmentChangesNothing) {
  Contour contour(triangle());
  const Contour& same = contour;
  contour = same;
  EXPECT_EQ(contour.data(), triangle());
  Contour& itself = contour;
  contour = std::move(itself);
  EXPECT_EQ(contour.data(), triangle());
}

TEST(EdgeletContourCopy, AssignmentReportsNothing) {
  Contour contour(triangle());
  Contour target;
  target.trackChanges(true);
  target = contour;
  target = std::move(contour);
  EXPECT_EQ(target.changeCount(), 0U);
}

TEST(EdgeletContourMove, MovedFromIsLikeADefaultOne) {
  Contour source(triangle(), shiftBy5());
  source.label(4);
  source.isClosed(false);
  const gx2XformBase* xform = source.dataFromPointsXform().get();
  Contour target(std::move(source));
  EXPECT_EQ(target.data(), triangle());
  EXPECT_EQ(target.label(), 4UL);
  EXPECT_EQ(target.dataFromPointsXform().get(), xform);
  EXPECT_TRUE(source.points().empty());  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(source.data().empty());
  EXPECT_TRUE(source.isClosed());
  EXPECT_TRUE(source.dataFromPointsXform().isNull());
  source = Contour(triangle());
  EXPECT_EQ(source.points().size(), 3U);
  target = std::move(source);
  EXPECT_EQ(target.points(), positions(triangle()));
  EXPECT_TRUE(source.data().empty());  // NOLINT(bugprone-use-after-move)
}

TEST(EdgeletContourReInit, BringsTheDefaultStateBack) {
  Contour contour(triangle());
  contour.trackChanges(true);
  contour.reInit();
  EXPECT_GE(contour.changeCount(), 1U);
  EXPECT_TRUE(contour == Contour());
  EXPECT_TRUE(contour.data().empty());
}

// ---- Through the contour base -------------------------------------------------------------------

TEST(EdgeletContourAsContour, AssignmentMakesTheData) {
  Contour contour(triangle(), shiftBy5());
  gxContour plain(pointsOf("1 1, 2 2"), false, 8);
  static_cast<void>(plain.length());
  gxContour& base = contour;
  base = plain;
  EXPECT_EQ(contour.points(), pointsOf("1 1, 2 2"));
  EXPECT_EQ(contour.data(), (std::vector<gxEdgelet>{edge(6, 1, 0, 0), edge(7, 2, 0, 0)}));
  EXPECT_EQ(contour.label(), 8UL);
  const Computed lengths(gx_Computation::eLength);
  EXPECT_DOUBLE_EQ(contour.length(), plain.length());
  EXPECT_EQ(lengths.times(), 0);  // the memory came along
}

TEST(EdgeletContourAsContour, MapIntoItMakesTheData) {
  Contour contour({}, shiftBy5());
  gxContour(pointsOf("1 1, 2 2, 3 1"))
      .map(gxXform<2>(gxMatrix<2>(2, 0, 0, 2), gxVector<2>(0, 0)), contour);
  EXPECT_EQ(contour.points(), pointsOf("2 2, 4 4, 6 2"));
  EXPECT_EQ(positions(contour.data()), pointsOf("7 2, 9 4, 11 2"));
}

TEST(EdgeletContourAsContour, AssignmentWithoutTransformFailsAndChangesNothing) {
  Contour contour;
  contour.label(3);
  const gxContour plain(pointsOf("1 1, 2 2"));
  gxContour& base = contour;
  EXPECT_THROW(base = plain, gxBadPointer);
  EXPECT_TRUE(contour.points().empty());
  EXPECT_EQ(contour.label(), 3UL);
  EXPECT_NO_THROW(base = gxContour());  // no points, nothing to map
}

TEST(EdgeletContourAsContour, MoveIntoItWithoutTransformThrowsAsACopyDoes) {
  Contour contour;
  contour.label(3);
  gxContour plain(pointsOf("1 1, 2 2"), false, 8);
  gxContour& base = contour;
  EXPECT_THROW(base = std::move(plain), gxBadPointer);
  EXPECT_TRUE(contour.points().empty());
  EXPECT_EQ(contour.label(), 3UL);
  EXPECT_EQ(plain.points().size(), 2U);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(plain.label(), 8UL);
  EXPECT_THROW(base = gxContour(pointsOf("1 1, 2 2")), gxBadPointer)
      << "a temporary is not lost in silence";
  EXPECT_NO_THROW(base = gxContour());
}

TEST(EdgeletContourAsContour, MoveIntoItMakesTheData) {
  Contour contour(triangle(), shiftBy5());
  gxContour& base = contour;
  base = gxContour(pointsOf("1 1, 2 2"));
  EXPECT_EQ(positions(contour.data()), pointsOf("6 1, 7 2"));
}

// A contour with data of its own beside the edge points, which may be unable to follow.
class Refusing : public Contour {
 public:
  using Contour::Contour;
  using Contour::operator=;
  bool refuses = false;
  int followed = 0;

 protected:
  void dataAssigned_() override {
    if (refuses) throw gxMathError::Singular();
    ++followed;
  }
};

TEST(EdgeletContourThatCannotFollow, KeepsEverythingWhenItIsAssignedTo) {
  Refusing contour(triangle(), shiftBy5());
  contour.label(3);
  contour.cachedVectorSize(9);
  const Xform xform = contour.dataFromPointsXform();
  contour.refuses = true;
  Contour other({edge(1, 1), edge(2, 2)});
  other.label(4);
  EXPECT_THROW(contour = other, gxMathError::Singular);
  EXPECT_THROW(contour = std::move(other), gxMathError::Singular);
  EXPECT_EQ(contour.data(), triangle());
  EXPECT_EQ(contour.points(), pointsOf("-5 0, -1 0, -1 3"));
  EXPECT_EQ(contour.dataFromPointsXform(), xform);
  EXPECT_EQ(contour.label(), 3UL);
  EXPECT_EQ(contour.cachedVectorSize(), 9);
  EXPECT_EQ(other.data().size(), 2U);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(other.points().size(), 2U);
  EXPECT_EQ(other.label(), 4UL);
  contour.refuses = false;
  contour = std::move(other);
  EXPECT_EQ(contour.data().size(), 2U);
  EXPECT_EQ(contour.followed, 1);
  EXPECT_TRUE(other.data().empty());  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(other.dataFromPointsXform().isNull());
}

TEST(EdgeletContourThatCannotFollow, IsNotHeardWhenItIsMovedFrom) {
  Refusing source(triangle());
  source.refuses = true;
  const Contour taken(std::move(static_cast<Contour&>(source)));
  EXPECT_EQ(taken.data(), triangle());
  EXPECT_TRUE(source.data().empty());
  source.refuses = false;
  EXPECT_THROW(source.data(triangle()), gxBadPointer) << "no transform is left";
  source = Contour(triangle());
  Contour target;
  source.refuses = true;
  target = std::move(static_cast<Contour&>(source));
  EXPECT_EQ(target.data(), triangle());
  EXPECT_TRUE(source.points().empty());
}

TEST(EdgeletContourHooks, EitherDropsTheMemory) {
  ExposedEdges contour(triangle());
  EXPECT_EQ(contour.length(), 12.0);
  {
    const Computed lengths(gx_Computation::eLength);
    contour.makeDataConsistentWithPoints();
    EXPECT_EQ(contour.length(), 12.0);
    EXPECT_EQ(lengths.times(), 1);
  }
  const Computed lengths(gx_Computation::eLength);
  contour.makePointsConsistentWithData();
  EXPECT_EQ(contour.length(), 12.0);
  EXPECT_EQ(lengths.times(), 1);
}

// Without a transform each throws after the memory is gone.
TEST(EdgeletContourHooks, EitherReportsTheChangeAlsoWhereItFails) {
  ExposedEdges contour(triangle());
  contour.trackChanges(true);
  contour.makeDataConsistentWithPoints();
  EXPECT_EQ(contour.changeCount(), 1U);
  contour.trackChanges(true);
  contour.makePointsConsistentWithData();
  EXPECT_GE(contour.changeCount(), 1U);
  ExposedEdges without;
  without.setPoints(pointsOf("0 0, 4 0, 4 3"));
  without.trackChanges(true);
  EXPECT_THROW(without.makeDataConsistentWithPoints(), gxBadPointer);
  EXPECT_EQ(without.changeCount(), 1U);
}

TEST(EdgeletContourAsContour, MovingThePointsOutEmptiesTheData) {
  Contour contour(triangle());
  gxContour plain(std::move(static_cast<gxContour&>(contour)));
  EXPECT_EQ(plain.points().size(), 3U);
  EXPECT_TRUE(contour.points().empty());
  EXPECT_TRUE(contour.data().empty());
  EXPECT_FALSE(contour.dataFromPointsXform().isNull());  // it is not the contour's to give
  contour.data(triangle());
  gxContour other;
  other = std::move(static_cast<gxContour&>(contour));
  EXPECT_TRUE(contour.data().empty());
}

// ---- Failures change nothing --------------------------------------------------------------------

TEST(EdgeletContourFailure, WithoutTransformNothingCanBeConverted) {
  Contour contour;
  EXPECT_THROW(static_cast<void>(contour.datum({0, 0})), gxBadPointer);
  EXPECT_THROW(static_cast<void>(contour.point(edge(0, 0))), gxBadPointer);
  EXPECT_THROW(contour.points(pointsOf("1 1")), gxBadPointer);
  EXPECT_TRUE(contour.points().empty());
  EXPECT_THROW(contour.data(triangle()), gxBadPointer);
  EXPECT_TRUE(contour.data().empty());
  EXPECT_NO_THROW(contour.points({}));
  EXPECT_NO_THROW(contour.data({}));
}

TEST(EdgeletContourFailure, FailingPointsKeepPointsAndData) {
  Contour contour({edge(1, 1), edge(2, 2)}, Xform(new HalfPlaneXform));
  EXPECT_THROW(contour.points(pointsOf("5 5, -1 0")), gxMathError::Singular);
  EXPECT_EQ(contour.points(), pointsOf("1 1, 2 2"));
  EXPECT_EQ(contour.data(), (std::vector<gxEdgelet>{edge(1, 1), edge(2, 2)}));
  EXPECT_DOUBLE_EQ(contour.length(), 2 * std::sqrt(2.0));
}

TEST(EdgeletContourFailure, FailingDataKeepPointsAndData) {
  Contour contour({edge(1, 1), edge(2, 2)}, Xform(new HalfPlaneXform));
  EXPECT_THROW(contour.data({edge(5, 5), edge(-1, 0)}), gxMathError::Singular);
  EXPECT_EQ(contour.points(), pointsOf("1 1, 2 2"));
  EXPECT_EQ(contour.data(), (std::vector<gxEdgelet>{edge(1, 1), edge(2, 2)}));
}

TEST(EdgeletContourFailure, FailingAssignmentThroughTheBaseKeepsAll) {
  Contour contour({edge(1, 1), edge(2, 2)}, Xform(new HalfPlaneXform));
  const gxContour plain(pointsOf("5 5, -1 0"), false, 9);
  gxContour& base = contour;
  EXPECT_THROW(base = plain, gxMathError::Singular);
  EXPECT_EQ(contour.points(), pointsOf("1 1, 2 2"));
  EXPECT_TRUE(contour.isClosed());
  EXPECT_EQ(contour.label(), 0UL);
  EXPECT_EQ(contour.data(), (std::vector<gxEdgelet>{edge(1, 1), edge(2, 2)}));
}

TEST(EdgeletContourFailure, RefusedOperationsThrowAndChangeNothing) {
  const Contour contour(triangle());
  Contour result(triangle());
  Region hull;
  EXPECT_THROW(contour.mapT(gxXform<2>::I, result), gxPel::BadWindow);
  EXPECT_THROW(contour.convexHullT(hull), gxPel::BadWindow);
  EXPECT_THROW(Contour().mapT(gxXform<2>::I, result), gxPel::BadWindow);
  EXPECT_THROW(Contour().convexHullT(hull), gxPel::BadWindow);
  EXPECT_EQ(result.data(), triangle());
  EXPECT_TRUE(hull.points().empty());
}
