#include <cntr/shapestat.h>

#include <support/region_shapes.h>
#include <velstd/exception.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kPi = 3.141592653589793;

gxEllipse ellipseOf(double m00, double m01, double m11, const V& center = V(0, 0)) {
  return gf_EllipseFromInertiaData({1.0, center, gxMatrix<2>(m00, m01, m01, m11)});
}

// ---- The ellipse of equal moments -----------------------------------------------------------------

TEST(EllipseFromMoments, OfASquareIsTheCircleOfTheSameMoments) {
  const gxEllipse::gxEllipseGeom geom =
      gf_EllipseFromInertiaData(gf_InertiaDataPolygon(square(0, 0, 2))).geom();
  EXPECT_NEAR(geom.radii.x(), std::pow(16.0 * (16.0 / 9.0) / (kPi * kPi), 0.125), 1e-14);
  EXPECT_NEAR(geom.radii.x(), 1.1415, 1e-4) << "the circle of equal area would have 1.1284";
  EXPECT_NEAR(geom.radii.y(), geom.radii.x(), 1e-14);
  EXPECT_NEAR(geom.center.distance(V(1, 1)), 0.0, 1e-15);
}

TEST(EllipseFromMoments, OfEqualMomentsIsNotTurned) {
  EXPECT_EQ(ellipseOf(4.0 / 3, 0, 4.0 / 3).geom().rotation.toDouble(), 0.0);
}

TEST(EllipseFromMoments, OfASolidEllipseIsThatEllipse) {
  for (const double turn : {0.0, 0.3, 1.2, -0.7, 1.5}) {
    SCOPED_TRACE(turn);
    const double along = kPi * 27.0 * 2.0 / 4;  // semi-axes 3 and 2
    const double across = kPi * 3.0 * 8.0 / 4;
    const double c = std::cos(turn);
    const double s = std::sin(turn);
    const gxEllipse::gxEllipseGeom geom =
        ellipseOf(c * c * along + s * s * across, s * c * (along - across),
                  s * s * along + c * c * across, V(7, -8))
            .geom();
    EXPECT_NEAR(geom.radii.x(), 3.0, 1e-12);
    EXPECT_NEAR(geom.radii.y(), 2.0, 1e-12);
    EXPECT_NEAR(geom.rotation.toDouble(), turn, 1e-12);
    EXPECT_EQ(geom.center, V(7, -8));
  }
}

TEST(EllipseFromMoments, TheFirstRadiusLiesAlongTheLargerMoment) {
  const gxEllipse::gxEllipseGeom tall = ellipseOf(1, 0, 4).geom();
  EXPECT_NEAR(tall.rotation.toDouble(), kPi / 2, 1e-15);
  EXPECT_GT(tall.radii.x(), tall.radii.y());
}

TEST(EllipseFromMoments, OfUprightTallShapesAreTurnedByAQuarterNeverByMinusOne) {
  for (const double off : {0.0, -0.0, 1e-17, -1e-17, -1e-300}) {
    SCOPED_TRACE(off);
    EXPECT_EQ(ellipseOf(1, off, 4).geom().rotation.toDouble(), kPi / 2);
    EXPECT_NEAR(ellipseOf(4, off, 1).geom().rotation.toDouble(), off / 3, 1e-30);
  }
  for (int first = 0; first < 4; ++first) {
    Points corners = pointsOf("0 0, 1 0, 1 2, 0 2");
    std::rotate(corners.begin(), corners.begin() + first, corners.end());
    for (const double x : {0.0, 0.3, 1e3}) {
      Points moved = corners;
      for (V& p : moved) p += V(x, x);
      const gxEllipse ellipse = gf_EllipseFromInertiaData(gf_InertiaDataPolygon(moved));
      EXPECT_GT(ellipse.geom().rotation.toDouble(), -kPi / 2);
      EXPECT_NEAR(std::abs(ellipse.geom().rotation.toDouble()), kPi / 2, 1e-9);
    }
  }
}

TEST(EllipseFromMoments, HasNeitherFlag) {
  const gxEllipse::gxEllipseGeom geom = ellipseOf(4, 0.5, 1).geom();
  EXPECT_FALSE(geom.clockwise);
  EXPECT_FALSE(geom.inverted);
}

TEST(EllipseFromMoments, TheAreaTakesNoPart) {
  const gxMatrix<2> m(2, 0.5, 0.5, 1);
  const auto radii = [&m](double area) {
    return gf_EllipseFromInertiaData({area, V(0, 0), m}).geom().radii;
  };
  EXPECT_EQ(radii(1.0), radii(-50.0));
  EXPECT_EQ(radii(1.0), radii(0.0));
}

TEST(EllipseFromMoments, NegativeMomentsCountByTheirMagnitude) {
  const gxEllipse::gxEllipseGeom geom = ellipseOf(-2, 0, -1).geom();
  EXPECT_GT(geom.radii.x(), 0.0);
  EXPECT_GT(geom.radii.y(), 0.0);
}

TEST(EllipseFromMoments, WithoutTwoPrincipalMomentsAreSingular) {
  EXPECT_THROW(gf_EllipseFromInertiaData(gx_InertiaData()), gxMathError::Singular);
  EXPECT_THROW(ellipseOf(1, 0, 1e-13), gxMathError::Singular);
  EXPECT_THROW(ellipseOf(1e-13, 0, 1), gxMathError::Singular);
  EXPECT_THROW(ellipseOf(1, 1, 1), gxMathError::Singular) << "a segment at 45 degrees";
  EXPECT_THROW(ellipseOf(1e-12, 0, 1e-12), gxMathError::Singular) << "the limit itself is too small";
  EXPECT_NO_THROW(ellipseOf(1.1e-12, 0, 1.1e-12));
  EXPECT_THROW(gf_EllipseFromInertiaData(gf_InertiaDataPolygon(pointsOf("0 0, 1 1, 2 2"))),
               gxMathError::Singular);
}

TEST(EllipseFromMoments, ThatAreNoNumbersAreSingular) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THROW(ellipseOf(nan, 0, 1), gxMathError::Singular);
  EXPECT_THROW(ellipseOf(1, nan, 1), gxMathError::Singular);
}

TEST(EllipseFromMoments, OfHugeMomentsComeBack) {
  EXPECT_GT(ellipseOf(1e90, 0, 1e90).geom().radii.x(), 1e22);
  EXPECT_NO_THROW(ellipseOf(1e200, 0, 1e200)) << "the cube overflows; so does the radius";
  EXPECT_THROW(ellipseOf(HUGE_VAL, 0, HUGE_VAL), gxMathError::Singular);
}

// ---- The fitted ellipse ---------------------------------------------------------------------------

Points onEllipse(int count, double a, double b) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double t = 2 * kPi * i / count;
    points.emplace_back(3 + a * std::cos(t), 4 + b * std::sin(t));
  }
  return points;
}

TEST(FitEllipse, ThroughPointsOfAnEllipseIsThatEllipse) {
  gxEllipse ellipse;
  double residual = -7;
  gf_FitEllipse(onEllipse(40, 5, 2), ellipse, residual);
  EXPECT_NEAR(residual, 0.0, 1e-9);
  EXPECT_NEAR(ellipse.geom().center.distance(V(3, 4)), 0.0, 1e-9);
  EXPECT_NEAR(std::max(ellipse.geom().radii.x(), ellipse.geom().radii.y()), 5.0, 1e-9);
  EXPECT_NEAR(std::min(ellipse.geom().radii.x(), ellipse.geom().radii.y()), 2.0, 1e-9);
}

TEST(FitEllipse, OfEdgePointsIsThatOfTheirPositions) {
  const Points points = onEllipse(20, 5, 2);
  std::vector<gxEdgelet> edgelets;
  for (const V& p : points) edgelets.emplace_back(p, static_cast<unsigned short>(1), gxAngle8(2));
  gxEllipse a;
  gxEllipse b;
  double ra = 0;
  double rb = 1;
  gf_FitEllipse(points, a, ra);
  gf_FitEllipse(edgelets, b, rb);
  EXPECT_EQ(ra, rb);
  EXPECT_EQ(a.geom().center, b.geom().center);
  EXPECT_EQ(a.geom().radii, b.geom().radii);
}

TEST(FitEllipse, OfThreePointsIsTheCircleThroughThem) {
  gxEllipse ellipse;
  double residual = -7;
  gf_FitEllipse(pointsOf("5 0, 0 5, -5 0"), ellipse, residual);
  EXPECT_NEAR(ellipse.geom().radii.x(), 5.0, 1e-9);
  EXPECT_EQ(ellipse.geom().radii.x(), ellipse.geom().radii.y());
  EXPECT_NEAR(residual, 0.0, 1e-9);
}

TEST(FitEllipse, WhereNeitherFitsIsTheDefaultEllipseWithMinusOne) {
  for (const char* text :
       {"", "1 1", "1 1, 2 2", "1 1, 2 2, 3 3, 4 4, 5 5, 6 6", "7 7, 7 7, 7 7, 7 7, 7 7, 7 7",
        "nan 0, 1 1, 2 0, 3 4, 1 7, 0 2", "inf 0, 1 1, 2 0, 3 4, 1 7, 0 2"}) {
    SCOPED_TRACE(text);
    gxEllipse ellipse(gxEllipse::gxEllipseGeom{V(9, 9), V(8, 7), gxRadian(1), false, false});
    double residual = 5;
    gf_FitEllipse(pointsOf(text), ellipse, residual);
    EXPECT_EQ(residual, -1.0);
    EXPECT_EQ(ellipse.geom().center, V(0, 0));
    EXPECT_EQ(ellipse.geom().radii, V(0, 0));
    EXPECT_EQ(ellipse.geom().rotation.toDouble(), 0.0);
  }
}

TEST(FitEllipse, NeverThrowsAnExceptionOfTheLibrary) {
  for (const char* text : {"-1e308 -1e308, 1e308 -1e308, 1e308 1e308, 0 1e308, 5 5, 7 1",
                           "0 0, 5e-324 0, 0 5e-324, 5e-324 5e-324, 1 1",
                           "1e-200 0, 0 1e-200, -1e-200 0, 0 -1e-200, 1e-200 1e-200"}) {
    SCOPED_TRACE(text);
    gxEllipse ellipse;
    double residual = 5;
    EXPECT_NO_THROW(gf_FitEllipse(pointsOf(text), ellipse, residual));
    EXPECT_GE(residual, -1.0);
  }
}

}  // namespace
