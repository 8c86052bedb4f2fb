#include <cntr/shapestat.h>

#include <support/random_shapes.h>
#include <support/region_shapes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

Points backwards(Points points) {
  std::reverse(points.begin(), points.end());
  return points;
}

std::vector<gxEdgelet> edgeletsAt(const Points& points) {
  std::vector<gxEdgelet> edgelets;
  for (const V& p : points) edgelets.emplace_back(p, static_cast<unsigned short>(7), gxAngle8(9));
  return edgelets;
}

void expectNear(const gx_InertiaData& a, const gx_InertiaData& b, double tolerance) {
  EXPECT_NEAR(a.area(), b.area(), tolerance);
  EXPECT_NEAR(a.centerOfMass().x(), b.centerOfMass().x(), tolerance);
  EXPECT_NEAR(a.centerOfMass().y(), b.centerOfMass().y(), tolerance);
  EXPECT_NEAR(a.inertiaMatrix().m00(), b.inertiaMatrix().m00(), tolerance);
  EXPECT_NEAR(a.inertiaMatrix().m01(), b.inertiaMatrix().m01(), tolerance);
  EXPECT_NEAR(a.inertiaMatrix().m10(), b.inertiaMatrix().m10(), tolerance);
  EXPECT_NEAR(a.inertiaMatrix().m11(), b.inertiaMatrix().m11(), tolerance);
}

gx_InertiaData record(double area, const V& center, double m00, double m01, double m11) {
  return {area, center, gxMatrix<2>(m00, m01, m01, m11)};
}

const gx_InertiaData kUnitSquare = record(1.0, V(0.5, 0.5), 1.0 / 12, 0, 1.0 / 12);

// ---- The record -----------------------------------------------------------------------------------

TEST(InertiaData, ByDefaultIsAllZero) {
  const gx_InertiaData none;
  EXPECT_EQ(none.area(), 0.0);
  EXPECT_EQ(none.centerOfMass(), V(0, 0));
  expectNear(none, record(0, V(0, 0), 0, 0, 0), 0.0);
}

TEST(InertiaData, KeepsWhatItIsGivenUnchecked) {
  const gx_InertiaData odd(-3.0, V(kNaN, 1), gxMatrix<2>(1, 2, 3, -4));
  EXPECT_EQ(odd.area(), -3.0);
  EXPECT_EQ(odd.centerOfMass().y(), 1.0);
  EXPECT_EQ(odd.inertiaMatrix().m10(), 3.0);
}

TEST(InertiaDataSum, WithARecordOfNoAreaIsTheOtherOneUnchanged) {
  const gx_InertiaData nothing(0.0, V(77, 88), gxMatrix<2>(5, 6, 7, 8));
  const gx_InertiaData odd(2.0, V(1, 2), gxMatrix<2>(3, 4, 5, 6));
  for (const gx_InertiaData& sum : {odd + nothing, nothing + odd}) {
    expectNear(sum, odd, 0.0);
  }
  const gx_InertiaData negativeZero(-0.0, V(77, 88), gxMatrix<2>(5, 6, 7, 8));
  expectNear(odd + negativeZero, odd, 0.0);
}

TEST(InertiaDataSum, AnAreaThatIsNoNumberCountsAsNone) {
  const gx_InertiaData unknown(kNaN, V(77, 88), gxMatrix<2>(5, 6, 7, 8));
  expectNear(kUnitSquare + unknown, kUnitSquare, 0.0);
  expectNear(unknown + kUnitSquare, kUnitSquare, 0.0);
}

TEST(InertiaDataSum, OfTwoWithoutAreaIsTheSecond) {
  const gx_InertiaData a(0.0, V(1, 1), gxMatrix<2>(1, 1, 1, 1));
  const gx_InertiaData b(0.0, V(2, 2), gxMatrix<2>(2, 2, 2, 2));
  expectNear(a + b, b, 0.0);
}

TEST(InertiaDataSum, OfTwoHalvesIsTheWhole) {
  gx_InertiaData left = gf_InertiaDataPolygon(square(0, 0, 2));
  const gx_InertiaData right = gf_InertiaDataPolygon(square(2, 0, 2));
  expectNear(left + right, gf_InertiaDataPolygon(pointsOf("0 0, 4 0, 4 2, 0 2")), 1e-13);
}

TEST(InertiaDataSum, OfTwoNegativeHalvesIsTheNegativeWhole) {
  const gx_InertiaData left = gf_InertiaDataPolygon(backwards(square(0, 0, 2)));
  const gx_InertiaData right = gf_InertiaDataPolygon(backwards(square(2, 0, 2)));
  EXPECT_LT(left.area(), 0.0);
  expectNear(left + right, gf_InertiaDataPolygon(pointsOf("0 2, 4 2, 4 0, 0 0")), 1e-13);
}

TEST(InertiaDataSum, WithANegativeRecordTakesItOut) {
  // 4 by 4 less 2 by 2 in its corner, against the L that is left.
  const gx_InertiaData whole = gf_InertiaDataPolygon(square(0, 0, 4));
  const gx_InertiaData hole = gf_InertiaDataPolygon(backwards(square(2, 2, 2)));
  const gx_InertiaData rest = gf_InertiaDataPolygon(pointsOf("0 0, 4 0, 4 2, 2 2, 2 4, 0 4"));
  expectNear(whole + hole, rest, 1e-12);
  expectNear(hole + whole, rest, 1e-12);
}

TEST(InertiaDataSum, WithItsOwnNegationIsNothing) {
  const gx_InertiaData one = record(6, V(4.0 / 3, 1), 16.0 / 3, -2, 3);
  const gx_InertiaData minus = record(-6, V(4.0 / 3, 1), 16.0 / 3, -2, 3);
  expectNear(one + minus, gx_InertiaData(), 1e-14);
  expectNear(minus + one, gx_InertiaData(), 1e-14);
}

TEST(InertiaDataSum, AreasThatCancelWithinTenToMinusSixteenPutTheCentreAtTheOrigin) {
  EXPECT_EQ((record(1e-17, V(1, 1), 0, 0, 0) + record(1e-17, V(3, 3), 0, 0, 0)).centerOfMass(), V(0, 0));
  const V center = (record(1e-15, V(1, 1), 0, 0, 0) + record(1e-15, V(3, 3), 0, 0, 0)).centerOfMass();
  EXPECT_NEAR(center.x(), 2.0, 1e-12);
}

TEST(InertiaDataSum, ReadsTheUpperOffDiagonalAndIsSymmetric) {
  const gx_InertiaData a(1.0, V(0, 0), gxMatrix<2>(1, 5, 9, 1));
  const gx_InertiaData b(1.0, V(0, 0), gxMatrix<2>(1, 3, 7, 1));
  const gxMatrix<2> sum = (a + b).inertiaMatrix();
  EXPECT_EQ(sum.m01(), 8.0);
  EXPECT_EQ(sum.m10(), 8.0);
}

// ---- Area -----------------------------------------------------------------------------------------

TEST(Area, OfTheUnitSquareIsOneInBothDirections) {
  EXPECT_EQ(gf_Area(square(0, 0, 1)), 1.0);
  EXPECT_EQ(gf_Area(backwards(square(0, 0, 1))), 1.0);
}

TEST(Area, OfTwoPointsOrFewerIsZero) {
  EXPECT_EQ(gf_Area(Points()), 0.0);
  EXPECT_EQ(gf_Area(pointsOf("3 4")), 0.0);
  EXPECT_EQ(gf_Area(pointsOf("3 4, 5 1")), 0.0);
  EXPECT_EQ(gf_Area(edgeletsAt(Points())), 0.0);
  EXPECT_EQ(gf_Area(edgeletsAt(pointsOf("3 4"))), 0.0);
  EXPECT_EQ(gf_Area(edgeletsAt(pointsOf("3 4, 5 1"))), 0.0);
}

TEST(Area, OfTwoPointsOrFewerIsZeroWhateverTheyAre) {
  EXPECT_EQ(gf_Area(pointsOf("nan 0")), 0.0);
  EXPECT_EQ(gf_Area(pointsOf("inf 0")), 0.0);
  EXPECT_EQ(gf_Area(pointsOf("1e308 0, -1e308 0")), 0.0);
  EXPECT_EQ(gf_Area(pointsOf("nan 0, 1 1")), 0.0);
}

TEST(Measures, OfAnOutlineWithANaNTellOnlyInTheArea) {
  const Points points = pointsOf("0 0, 1 0, nan nan, 1 1, 0 1");
  EXPECT_TRUE(std::isnan(gf_Area(points)));
  EXPECT_NEAR(gf_CenterOfMass(points).x(), 1.0 / 3.0, 1e-15);
  EXPECT_NEAR(gf_InertiaDataPolygon(points).area(), 2.0 / 3.0, 1e-15);
  const Points first = pointsOf("nan 0, 1 0, 1 1, 0 1");
  EXPECT_TRUE(std::isnan(gf_Area(first)));
  EXPECT_EQ(gf_CenterOfMass(first), V(0, 0));
  EXPECT_TRUE(std::isnan(gf_InertiaDataPolygon(first).area()));
}

TEST(Area, OfEdgePointsIsThatOfTheirPositions) {
  for (const Points& points : {square(0, 0, 3), pointsOf("0 0, 4 0, 0 3"), pentagram()}) {
    EXPECT_EQ(gf_Area(edgeletsAt(points)), gf_Area(points));
  }
}

TEST(Area, OfAClosedListWithItsFirstPointRepeatedIsTheSame) {
  EXPECT_EQ(gf_Area(pointsOf("0 0, 4 0, 0 3, 0 0")), 6.0);
}

// ---- Centre of mass -------------------------------------------------------------------------------

// (1, 1) is not known. The area says so; centre and moments look like numbers and are those of nothing.
TEST(ShapeWithANaNVertex, HasANaNAreaAndAFiniteCentreAndMatrix) {
  const std::vector<V> points{{0, 0}, {1, 0}, {kNaN, kNaN}, {1, 1}, {0, 1}};
  EXPECT_TRUE(std::isnan(gf_Area(points)));
  const V centre = gf_CenterOfMass(points);
  EXPECT_TRUE(std::isfinite(centre.x()) && std::isfinite(centre.y()));
  const gx_InertiaData moments = gf_InertiaDataPolygon(points);
  for (int i = 0; i < 2; ++i)
    for (int k = 0; k < 2; ++k) EXPECT_TRUE(std::isfinite(moments.inertiaMatrix().element(i, k)));
}

TEST(CenterOfMass, OfTheUnitSquareIsItsMiddleInBothDirections) {
  EXPECT_EQ(gf_CenterOfMass(square(0, 0, 1)), V(0.5, 0.5));
  EXPECT_EQ(gf_CenterOfMass(backwards(square(0, 0, 1))), V(0.5, 0.5));
  EXPECT_EQ(gnContour::centerOfMass(square(0, 0, 1)), V(0.5, 0.5));
  EXPECT_EQ(gf_CenterOfMass(edgeletsAt(square(0, 0, 1))), V(0.5, 0.5));
}

TEST(CenterOfMass, OfTwoPointsOrFewerIsTheOrigin) {
  for (const char* text : {"", "3 4", "3 4, 5 1"}) {
    EXPECT_EQ(gf_CenterOfMass(pointsOf(text)), V(0, 0));
    EXPECT_EQ(gf_CenterOfMass(edgeletsAt(pointsOf(text))), V(0, 0));
  }
}

TEST(CenterOfMass, OfCollinearPointsIsTheOrigin) {
  EXPECT_EQ(gf_CenterOfMass(pointsOf("1 1, 2 2, 3 3")), V(0, 0));
  EXPECT_EQ(gf_CenterOfMass(pointsOf("5 1, 5 2, 5 3, 5 0")), V(0, 0));
  EXPECT_EQ(gf_CenterOfMass(pointsOf("0.1 0.3, 0.2 0.6, 0.7 2.1")), V(0, 0)) << "rounding makes no area";
  EXPECT_EQ(gf_CenterOfMass(pointsOf("7 7, 7 7, 7 7")), V(0, 0));
}

TEST(CenterOfMass, HalfAMillionthOfAreaIsNoneALittleMoreIsSome) {
  EXPECT_EQ(gf_CenterOfMass(pointsOf("2 2, 2.0009 2, 2.0009 2.001")), V(0, 0))
      << "twice the area is 0.9e-6";
  EXPECT_NE(gf_CenterOfMass(pointsOf("2 2, 2.0011 2, 2.0011 2.001")), V(0, 0));
  EXPECT_EQ(gf_CenterOfMass(pointsOf("0 0, 0.00099 0, 0.00099 0.001")), V(0, 0)) << "0.99e-6";
  EXPECT_NE(gf_CenterOfMass(pointsOf("0 0, 0.00101 0, 0.00101 0.001")), V(0, 0)) << "1.01e-6";
}

TEST(CenterOfMass, FarFromTheOriginKeepsItsDigits) {
  EXPECT_EQ(gf_CenterOfMass(square(1e9, -1e9, 10)), V(1e9 + 5, -1e9 + 5));
}

TEST(CenterOfMass, OfABowTieWithLobesOfOneSizeIsTheOrigin) {
  EXPECT_EQ(gf_CenterOfMass(bowTie()), V(0, 0));
}

// ---- Moments --------------------------------------------------------------------------------------

TEST(PolygonMoments, OfTheUnitSquare) {
  expectNear(gf_InertiaDataPolygon(square(0, 0, 1)), kUnitSquare, 1e-15);
}

TEST(PolygonMoments, OfTheUnitSquareClockwiseHaveANegativeAreaAndTheSameMatrix) {
  expectNear(gf_InertiaDataPolygon(backwards(square(0, 0, 1))),
             record(-1.0, V(0.5, 0.5), 1.0 / 12, 0, 1.0 / 12), 1e-15);
}

TEST(PolygonMoments, OfARightTriangle) {
  const gx_InertiaData expected = record(6, V(4.0 / 3, 1), 16.0 / 3, -2, 3);
  expectNear(gf_InertiaDataPolygon(pointsOf("0 0, 4 0, 0 3")), expected, 1e-14);
}

TEST(PolygonMoments, OfAnObtuseTriangleDoNotDependOnTheFirstCorner) {
  // Each altitude but one falls outside of its side; ∫ over the triangle by the corner formula.
  const Points triangle = pointsOf("0 0, 10 0, 14 2");
  const gx_InertiaData expected = record(10, V(8, 2.0 / 3), 10.0 / 18 * (100 + 196 - 140),
                                         10.0 / 36 * (14 * 2 * 2 - 10 * 2), 10.0 / 18 * 4);
  for (std::size_t start = 0; start < 3; ++start) {
    SCOPED_TRACE(start);
    expectNear(gf_InertiaDataPolygon(rotatedStart(triangle, start)), expected, 1e-12);
  }
}

TEST(PolygonMoments, OfNoThreePointsAreAllZero) {
  for (const char* text : {"", "3 4", "3 4, 5 1"}) {
    expectNear(gf_InertiaDataPolygon(pointsOf(text)), gx_InertiaData(), 0.0);
  }
}

TEST(PolygonMoments, OfCollinearPointsHaveNoArea) {
  const gx_InertiaData none = gf_InertiaDataPolygon(pointsOf("1 1, 2 2, 3 3, 7 7"));
  EXPECT_NEAR(none.area(), 0.0, 1e-12);
}

TEST(PolygonMoments, OfEqualPointsAreFinite) {
  const gx_InertiaData none = gf_InertiaDataPolygon(pointsOf("2 2, 2 2, 2 2"));
  EXPECT_TRUE(std::isfinite(none.area()));
  EXPECT_TRUE(std::isfinite(none.inertiaMatrix().m00()));
}

TEST(PolygonMoments, RepeatedPointsChangeNothing) {
  expectNear(gf_InertiaDataPolygon(pointsOf("0 0, 0 0, 1 0, 1 1, 1 1, 1 1, 0 1, 0 0")), kUnitSquare,
             1e-14);
}

TEST(PolygonMoments, OfATriangleWithACornerOnTheCentreOfMass) {
  // The fan's apex is a corner of the outline: two of its triangles have a side of no length.
  const Points arrow = pointsOf("-3 -3, 0 0, 3 -3, 0 6");
  EXPECT_EQ(gf_CenterOfMass(arrow), V(0, 1));
  const Points moved = pointsOf("-3 -4, 0 0, 3 -4, 0 4");
  const gx_InertiaData there = gf_InertiaDataPolygon(moved);
  EXPECT_NEAR(there.area(), 12.0, 1e-12);
  EXPECT_NEAR(there.centerOfMass().y(), 0.0, 1e-12);
  // ∫x² of the triangle (-3,-4), (3,-4), (0,4), less that of (-3,-4), (3,-4), (0,0).
  EXPECT_NEAR(there.inertiaMatrix().m00(), 24.0 * 9 / 6 - 12.0 * 9 / 6, 1e-12);
}

TEST(PolygonMoments, OfAClockwiseOutlineWithNotchesAreThoseOfItsReverse) {
  for (const char* text : {"0 0, 9 0, 9 1, 1 1, 1 9, 0 9", "0 0, 10 0, 10 10, 5 1, 0 10",
                           "0 0, 4 0, 4 4, 3 4, 3 1, 1 1, 1 4, 0 4"}) {
    SCOPED_TRACE(text);
    const gx_InertiaData there = gf_InertiaDataPolygon(pointsOf(text));
    const gx_InertiaData back = gf_InertiaDataPolygon(backwards(pointsOf(text)));
    expectNear(back, {-there.area(), there.centerOfMass(), there.inertiaMatrix()}, 1e-11);
    EXPECT_GT(back.inertiaMatrix().m00(), 0.0);
    EXPECT_GT(back.inertiaMatrix().m11(), 0.0);
  }
}

TEST(PolygonMoments, OfAMirroredPictureAreTheMirroredMoments) {
  const Points l = pointsOf("0 0, 9 0, 9 1, 1 1, 1 9, 0 9");
  Points flipped;
  for (const V& p : l) flipped.emplace_back(p.x(), -p.y());
  const gx_InertiaData up = gf_InertiaDataPolygon(l);
  const gx_InertiaData down = gf_InertiaDataPolygon(flipped);
  const gxMatrix<2>& m = up.inertiaMatrix();
  expectNear(
      down,
      record(-up.area(), V(up.centerOfMass().x(), -up.centerOfMass().y()), m.m00(), -m.m01(), m.m11()),
      1e-11);
}

TEST(PolygonMoments, AreTheSameForEveryStartAndBothDirections) {
  RandomShapes random("moments start and direction", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points =
        random.star(random.integer(3, 30), V(random.uniform(-9, 9), random.uniform(-9, 9)), 1.0, 5.0);
    const gx_InertiaData first = gf_InertiaDataPolygon(points);
    const auto start = static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1));
    expectNear(gf_InertiaDataPolygon(rotatedStart(points, start)), first, 1e-8);
    expectNear(gf_InertiaDataPolygon(backwards(points)),
               {-first.area(), first.centerOfMass(), first.inertiaMatrix()}, 1e-8);
  }
}

TEST(PolygonMoments, MoveAndTurnWithTheShape) {
  RandomShapes random("moments move and turn", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.star(random.integer(3, 30), V(0, 0), 1.0, 5.0);
    const double angle = random.uniform(-3, 3);
    const gxMatrix<2> turn{gxRadian(angle), gxRadian(angle), 1.0, 1.0};
    const gxXform<2> motion(turn, V(random.uniform(-20, 20), random.uniform(-20, 20)));
    const gx_InertiaData a = gf_InertiaDataPolygon(points);
    const gx_InertiaData b = gf_InertiaDataPolygon(mapped(motion, points));
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const gxMatrix<2>& m = a.inertiaMatrix();
    const gx_InertiaData expected = record(a.area(), motion * a.centerOfMass(),
                                           c * c * m.m00() - 2 * s * c * m.m01() + s * s * m.m11(),
                                           s * c * (m.m00() - m.m11()) + (c * c - s * s) * m.m01(),
                                           s * s * m.m00() + 2 * s * c * m.m01() + c * c * m.m11());
    expectNear(b, expected, 1e-8);
  }
}

TEST(PolygonMoments, OfAnyCoordinatesComeBack) {
  for (const char* text : {"0 0, nan 0, 1 1", "0 0, inf 0, 1 1, 0 -inf", "nan nan, nan nan, nan nan",
                           "-1e308 -1e308, 1e308 -1e308, 1e308 1e308", "0 0, 5e-324 0, 5e-324 5e-324",
                           "0 0, 1e-160 0, 0 1e-160", "1e308 1, 1e308 1, 1e308 1"}) {
    SCOPED_TRACE(text);
    const Points points = pointsOf(text);
    EXPECT_FALSE(gf_Area(points) < 0.0);
    gf_CenterOfMass(points);
    const gx_InertiaData moments = gf_InertiaDataPolygon(points);
    const gx_InertiaData back = gf_InertiaDataPolygon(backwards(points));
    (void)(moments + back);
    EXPECT_EQ(gf_Area(edgeletsAt(points)) == gf_Area(points), !std::isnan(gf_Area(points)));
  }
}

TEST(PolygonMoments, OfTinyShapesAreAllZeroOrTiny) {
  const gx_InertiaData tiny = gf_InertiaDataPolygon(square(0, 0, 1e-200));
  EXPECT_EQ(tiny.area(), 0.0);
  EXPECT_EQ(tiny.inertiaMatrix().m00(), 0.0);
}

}  // namespace
