#include <cntr/contour.h>

#include <cntr/region.h>
#include <cntr/shapestat.h>
#include <support/computed.h>
#include <support/exposed.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

namespace {

using V = gxVector<2>;

constexpr double kInf = std::numeric_limits<double>::infinity();

gxContour unitSquare() {
  return gxContour(pointsOf("0 0, 1 0, 1 1, 0 1"));
}

double median(const std::string& text, bool closed) {
  return ExposedContour(pointsOf(text), closed).medianFeatureSize();
}

V mean(const std::string& text, bool closed) {
  return gxContour(pointsOf(text), closed).meanPosition();
}

bool isNaN(const V& v) {
  return std::isnan(v.x()) && std::isnan(v.y());
}

// ---- Mean position --------------------------------------------------------------------------------

TEST(ContourMeanPosition, OfASquareIsItsCentre) {
  EXPECT_EQ(unitSquare().meanPosition(), V(0.5, 0.5));
}

TEST(ContourMeanPosition, WeighsEachEdgeWithItsLength) {
  EXPECT_EQ(mean("0 0, 1 0, 3 0", false), V(1.5, 0));
  EXPECT_EQ(mean("0 0, 3 0, 3 4", false), V(16.5 / 7.0, 8.0 / 7.0));
}

TEST(ContourMeanPosition, ClosedCountsTheClosingEdge) {
  EXPECT_EQ(mean("0 0, 3 0, 3 4", true), V(24.0 / 12.0, 18.0 / 12.0));
}

TEST(ContourMeanPosition, DoesNotDependOnHowManyPointsLieOnAnEdge) {
  EXPECT_EQ(mean("0 0, 0.25 0, 0.5 0, 0.5 0, 1 0, 1 1, 0 1", true), V(0.5, 0.5));
}

TEST(ContourMeanPosition, OfTwoPointsIsTheirMidpoint) {
  EXPECT_EQ(mean("0 0, 4 2", false), V(2, 1));
  EXPECT_EQ(mean("0 0, 4 2", true), V(2, 1));
}

TEST(ContourMeanPosition, WithoutLengthIsNotANumber) {
  EXPECT_TRUE(isNaN(mean("5 5, 5 5, 5 5", true)));
  EXPECT_TRUE(isNaN(mean("5 5, 5 5", false)));
}

TEST(ContourMeanPosition, ANaNMakesItNaN) {
  EXPECT_TRUE(isNaN(mean("0 0, nan 0, 1 1", true)));
  EXPECT_TRUE(isNaN(mean("0 0, 1 nan", false)));
}

TEST(ContourMeanPosition, InfiniteAndOverflowingLengthsMakeItNaN) {
  EXPECT_TRUE(isNaN(mean("0 0, inf inf", false)));
  EXPECT_TRUE(isNaN(mean("-1e308 -1e308, 1e308 1e308", false))) << "0 times infinity";
}

TEST(ContourMeanPosition, ADenormalLengthIsALengthButItsProductsAreZero) {
  EXPECT_EQ(mean("0 0, 5e-324 0", false), V(0, 0));
}

TEST(ContourMeanPosition, OfARegionIsThatOfItsClosedOutline) {
  EXPECT_EQ(gxRegion(gxContour(pointsOf("0 0, 3 0, 3 4"), false)).meanPosition(), V(2, 1.5));
}

// ---- Median edge length -----------------------------------------------------------------------------

TEST(ContourMedianFeatureSize, OfASquareIsItsSide) {
  EXPECT_EQ(ExposedContour(unitSquare()).medianFeatureSize(), 1.0);
}

TEST(ContourMedianFeatureSize, OfAnEvenNumberOfEdgesIsTheUpperOfTheMiddleTwo) {
  EXPECT_EQ(median("0 0, 1 0, 3 0", false), 2.0);
  EXPECT_EQ(median("0 0, 4 0, 5 0, 7 0, 10 0", false), 3.0) << "4, 1, 2, 3";
}

TEST(ContourMedianFeatureSize, OfAnOddNumberOfEdgesIsTheMiddleOne) {
  EXPECT_EQ(median("0 0, 4 0, 5 0, 7 0", false), 2.0) << "4, 1, 2";
  EXPECT_EQ(median("0 0, 3 0, 3 4", true), 4.0) << "5, 3, 4";
}

TEST(ContourMedianFeatureSize, OfOneEdgeIsItsLength) {
  EXPECT_EQ(median("0 0, 3 4", false), 5.0);
  EXPECT_EQ(median("0 0, 3 4", true), 5.0);
}

TEST(ContourMedianFeatureSize, EdgesOfNoLengthCount) {
  EXPECT_EQ(median("0 0, 0 0, 0 0, 5 0", false), 0.0);
}

TEST(ContourMedianFeatureSize, NaNLengthsAreTheGreatest) {
  EXPECT_EQ(median("nan 0, 0 0, 1 0, 3 0", false), 2.0) << "1, 2, NaN";
  EXPECT_TRUE(std::isnan(median("nan 0, nan 0, 1 0, 3 0", false))) << "2, NaN, NaN";
  EXPECT_TRUE(std::isnan(median("0 0, nan 0", false)));
}

TEST(ContourMedianFeatureSize, InfiniteAndHugeLengthsAreOrdered) {
  EXPECT_EQ(median("0 0, inf 0", false), kInf);
  EXPECT_EQ(median("-1e308 0, 1e308 0, 1e308 1", false), kInf) << "1, infinity";
  EXPECT_EQ(median("0 0, 1e308 0", false), 1e308);
  EXPECT_EQ(median("0 0, 5e-324 0", false), 5e-324);
}

// ---- Fitted ellipse ---------------------------------------------------------------------------------

std::vector<V> ellipsePoints() {
  std::vector<V> points;
  for (int i = 0; i < 24; ++i) {
    const double t = i * std::numbers::pi / 12;
    points.emplace_back(10 + 5 * std::cos(t), 20 + 2 * std::sin(t));
  }
  return points;
}

TEST(ContourEllipse, IsTheFitOfItsPoints) {
  gxEllipse ellipse;
  gxEllipse expected;
  double residual = -7;
  double expectedResidual = -8;
  gxContour(ellipsePoints()).fitEllipse(ellipse, residual);
  gf_FitEllipse(ellipsePoints(), expected, expectedResidual);
  EXPECT_EQ(ellipse, expected);
  EXPECT_EQ(residual, expectedResidual);
  EXPECT_NEAR(ellipse.geom().center.distance(V(10, 20)), 0.0, 1e-9);
  EXPECT_NEAR(std::max(ellipse.geom().radii.x(), ellipse.geom().radii.y()), 5.0, 1e-9);
  EXPECT_NEAR(residual, 0.0, 1e-9);
}

TEST(ContourEllipse, IsFittedOnceAndTheFailureOfAFitIsRememberedToo) {
  for (const std::vector<V>& points : {ellipsePoints(), pointsOf("0 0, 1 1, 2 2")}) {
    const gxContour contour(points);
    const Computed computed(gx_Computation::eFitEllipse);
    gxEllipse ellipse;
    double first = 0;
    double second = 1;
    contour.fitEllipse(ellipse, first);
    contour.fitEllipse(ellipse, second);
    EXPECT_EQ(first, second);
    EXPECT_EQ(computed.times(), 1);
  }
}

TEST(ContourEllipse, OfPointsOnOneLineIsTheDefaultOneWithResidualMinusOne) {
  for (const std::string text : {"0 0, 1 1", "0 0, 1 1, 2 2", "5 5, 5 5, 5 5", "nan 0, 1 1, 2 5"}) {
    SCOPED_TRACE(text);
    gxEllipse ellipse(gxCircle(V(1, 2), 3));
    double residual = 42;
    gxContour(pointsOf(text)).fitEllipse(ellipse, residual);
    EXPECT_EQ(ellipse, gxEllipse());
    EXPECT_EQ(residual, -1.0);
  }
}

TEST(ContourEllipse, OfThreePointsIsTheCircleThroughThem) {
  gxEllipse ellipse;
  double residual = 0;
  gxContour(pointsOf("5 0, 0 5, -5 0")).fitEllipse(ellipse, residual);
  EXPECT_NEAR(ellipse.geom().center.len(), 0.0, 1e-12);
  EXPECT_NEAR(ellipse.geom().radii.x(), 5.0, 1e-12);
  EXPECT_NEAR(ellipse.geom().radii.y(), 5.0, 1e-12);
  EXPECT_NEAR(residual, 0.0, 1e-12);
}

// ---- Too few points ---------------------------------------------------------------------------------

TEST(ContourFeatures, OnePointOrNoneIsRefused) {
  for (const std::string text : {"", "1 1"}) {
    for (const bool closed : {true, false}) {
      const ExposedContour contour(pointsOf(text), closed);
      gxEllipse ellipse;
      double residual = 0;
      EXPECT_THROW(contour.meanPosition(), gxContourDefs::EmptyContour);
      EXPECT_THROW(contour.medianFeatureSize(), gxContourDefs::EmptyContour);
      EXPECT_THROW(contour.fitEllipse(ellipse, residual), gxContourDefs::EmptyContour);
    }
  }
}

}  // namespace
