#include <cntr/contour.h>

#include <support/computed.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using V = gxVector<2>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr auto kAllPairs = gxContourDefs::eAllPairs;
constexpr auto kFirstPoint = gxContourDefs::eFirstPoint;

gxCircle circleOf(const std::string& text, gxContourDefs::DiameterMode mode) {
  return gxContour(pointsOf(text)).encloseCircle(mode);
}

TEST(ContourCircle, OfAllPairsHasTheFarthestTwoVerticesAsItsDiameter) {
  const gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  EXPECT_EQ(contour.encloseCircle(kAllPairs), gxCircle(V(2, 1.5), 2.5));
  EXPECT_EQ(contour.diameter(kAllPairs), 5.0);
}

TEST(ContourCircle, AroundTheFirstPointReachesTheVertexFarthestFromIt) {
  const gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  EXPECT_EQ(contour.encloseCircle(kFirstPoint), gxCircle(V(0, 0), 5));
  EXPECT_EQ(contour.diameter(kFirstPoint), 10.0);
}

TEST(ContourCircle, OfAllPairsTakesTheFirstOfEquallyFarPairs) {
  EXPECT_EQ(circleOf("0 0, 2 0, 0 2, 2 2", kAllPairs).center(), V(1, 1));
  // Vertices 1 and 2 are as far from each other as 3 and 4.
  EXPECT_EQ(circleOf("0 0, 8 0, -8 0, 0 9, 0 -7", kAllPairs), gxCircle(V(0, 0), 8));
  EXPECT_EQ(circleOf("0 0, 0 9, 0 -7, 8 0, -8 0", kAllPairs), gxCircle(V(0, 1), 8));
}

TEST(ContourCircle, OfTwoEquallyFarPairsTheLowerSecondIndexWins) {
  // From vertex 0, both 1 and 2 are 5 away, and nothing is farther.
  EXPECT_EQ(circleOf("0 0, 3 4, 4 3", kAllPairs).center(), V(1.5, 2));
  EXPECT_EQ(circleOf("0 0, 4 3, 3 4", kAllPairs).center(), V(2, 1.5));
}

TEST(ContourCircle, OfAllPairsMayLeaveVerticesOutside) {
  const gxCircle circle = circleOf("0 0, 4 0, 2 3.4", kAllPairs);
  EXPECT_EQ(circle, gxCircle(V(2, 0), 2));
  EXPECT_GT(V(2, 3.4).distance(circle.center()), circle.radius());
}

TEST(ContourCircle, AnyOtherModeIsRefused) {
  const gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  for (const int mode :
       {2, -1, 3, 1000000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    const auto asMode = static_cast<gxContourDefs::DiameterMode>(mode);
    for (const bool diameter : {false, true}) {
      try {
        if (diameter) {
          contour.diameter(asMode);
        } else {
          contour.encloseCircle(asMode);
        }
        ADD_FAILURE() << "mode " << mode << " was accepted";
      } catch (const gxContourDefs::BadParams& e) {
        EXPECT_EQ(e.message(), L"diameterMode is not one of the valid enums");
      }
    }
  }
}

TEST(ContourCircle, ARefusedModeLeavesWhatIsRemembered) {
  const gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  contour.encloseCircle(kFirstPoint);
  EXPECT_THROW(contour.encloseCircle(static_cast<gxContourDefs::DiameterMode>(2)),
               gxContourDefs::BadParams);
  const Computed computed(gx_Computation::eEncloseCircle);
  contour.encloseCircle(kFirstPoint);
  EXPECT_EQ(computed.times(), 0);
}

TEST(ContourCircle, ARefusedModeIsRefusedWithoutPointsToo) {
  EXPECT_THROW(gxContour().encloseCircle(static_cast<gxContourDefs::DiameterMode>(2)),
               gxContourDefs::BadParams);
}

TEST(ContourCircle, EachModeIsComputedOnceAndAgainAfterAChange) {
  gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  const Computed computed(gx_Computation::eEncloseCircle);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(contour.encloseCircle(kFirstPoint), gxCircle(V(0, 0), 5));
  EXPECT_EQ(computed.times(), 1);
  contour.diameter(kAllPairs);
  contour.diameter(kAllPairs);
  EXPECT_EQ(computed.times(), 2);
  contour.points(pointsOf("1 1, 1 3"));
  EXPECT_EQ(contour.encloseCircle(kFirstPoint), gxCircle(V(1, 1), 2));
  EXPECT_EQ(contour.encloseCircle(kAllPairs), gxCircle(V(1, 2), 1));
  EXPECT_EQ(computed.times(), 4);
}

// ---- No two distinct points -------------------------------------------------------------------------

TEST(ContourCircleSlot, OfAllPairsIsTheDefaultCircleWhereNoTwoPointsAreApart) {
  EXPECT_EQ(gxContour().encloseCircle(kAllPairs), gxCircle());
  EXPECT_EQ(circleOf("5 5", kAllPairs), gxCircle());
  EXPECT_EQ(circleOf("5 5, 5 5, 5 5", kAllPairs), gxCircle());
  EXPECT_EQ(circleOf("5 5, 5 5", kAllPairs).radius(), 0.0);
}

TEST(ContourCircleSlot, OfAllPairsKeepsTheCircleOfEarlierPointsWhereNoTwoAreApart) {
  gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  contour.encloseCircle(kAllPairs);
  contour.points(pointsOf("5 5, 5 5"));
  EXPECT_EQ(contour.encloseCircle(kAllPairs), gxCircle(V(2, 1.5), 2.5));
  contour.points({});
  EXPECT_EQ(contour.encloseCircle(kAllPairs), gxCircle(V(2, 1.5), 2.5));
  contour.points(pointsOf("0 0, 2 0"));
  EXPECT_EQ(contour.encloseCircle(kAllPairs), gxCircle(V(1, 0), 1));
}

TEST(ContourCircleSlot, IsKeptByManyEqualPointsToo) {
  gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  contour.encloseCircle(kAllPairs);
  contour.points(std::vector<V>(200, V(5, 5)));
  EXPECT_EQ(contour.encloseCircle(kAllPairs), gxCircle(V(2, 1.5), 2.5));
  contour.points(std::vector<V>(200, V(std::nan(""), 5)));
  EXPECT_EQ(contour.encloseCircle(kAllPairs), gxCircle(V(2, 1.5), 2.5));
  EXPECT_EQ(gxContour(std::vector<V>(200, V(5, 5))).encloseCircle(kAllPairs), gxCircle());
}

TEST(ContourCircleSlot, OfAllPairsRemembersTheKeptCircle) {
  gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  contour.encloseCircle(kAllPairs);
  contour.points(pointsOf("5 5"));
  const Computed computed(gx_Computation::eEncloseCircle);
  contour.encloseCircle(kAllPairs);
  contour.encloseCircle(kAllPairs);
  EXPECT_EQ(computed.times(), 1);
}

TEST(ContourCircleSlot, AroundTheFirstPointOfEqualPointsHasRadiusZero) {
  EXPECT_EQ(circleOf("5 6", kFirstPoint), gxCircle(V(5, 6), 0));
  EXPECT_EQ(circleOf("5 6, 5 6", kFirstPoint), gxCircle(V(5, 6), 0));
}

TEST(ContourCircleSlot, AroundTheFirstPointWithoutPointsIsReturnedAsItStandsAndRemembered) {
  gxContour contour;
  const Computed computed(gx_Computation::eEncloseCircle);
  EXPECT_EQ(contour.encloseCircle(kFirstPoint), gxCircle());
  contour.encloseCircle(kFirstPoint);
  EXPECT_EQ(computed.times(), 1);
  contour.points(pointsOf("1 1, 1 3"));
  EXPECT_EQ(contour.encloseCircle(kFirstPoint), gxCircle(V(1, 1), 2));
  contour.points({});
  EXPECT_EQ(contour.encloseCircle(kFirstPoint), gxCircle(V(1, 1), 2));
}

TEST(ContourCircleSlot, TravelsWithCopiesAndIsFreshInAMovedFromContour) {
  gxContour contour(pointsOf("0 0, 4 0, 4 3"));
  contour.encloseCircle(kAllPairs);
  contour.points({});
  gxContour copy(contour);
  EXPECT_EQ(copy.encloseCircle(kAllPairs), gxCircle(V(2, 1.5), 2.5));
  const gxContour moved(std::move(contour));
  EXPECT_EQ(contour.encloseCircle(kAllPairs), gxCircle());  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(moved.encloseCircle(kAllPairs), gxCircle(V(2, 1.5), 2.5));
}

// ---- Coordinates at the ends --------------------------------------------------------------------------

TEST(ContourCircle, NaNVerticesArePassedOver) {
  EXPECT_EQ(circleOf("0 0, nan 9, 4 0, 9 nan", kAllPairs), gxCircle(V(2, 0), 2));
  EXPECT_EQ(circleOf("0 0, nan 9, 4 0", kFirstPoint), gxCircle(V(0, 0), 4));
}

TEST(ContourCircle, ANaNFirstVertexIsTheCentreOfACircleOfRadiusZero) {
  const gxCircle circle = circleOf("nan 0, 4 0", kFirstPoint);
  EXPECT_TRUE(std::isnan(circle.center().x()));
  EXPECT_EQ(circle.radius(), 0.0);
  EXPECT_EQ(circleOf("nan 0, 4 0", kAllPairs), gxCircle());
}

TEST(ContourCircle, AnInfiniteVertexMakesTheRadiusInfinite) {
  EXPECT_EQ(circleOf("0 0, inf 0, 1 1", kAllPairs).radius(), kInf);
  EXPECT_EQ(circleOf("0 0, inf 0", kFirstPoint), gxCircle(V(0, 0), kInf));
}

TEST(ContourCircle, HugeDistancesThatOverflowAreInfinite) {
  EXPECT_EQ(circleOf("-1e308 0, 1e308 0", kAllPairs), gxCircle(V(0, 0), kInf));
  EXPECT_EQ(circleOf("0 0, 8e307 0", kAllPairs), gxCircle(V(4e307, 0), 4e307));
}

TEST(ContourCircle, DenormalDistancesCount) {
  EXPECT_EQ(circleOf("0 0, 1e-323 0", kAllPairs), gxCircle(V(5e-324, 0), 5e-324));
  EXPECT_EQ(circleOf("0 0, 1e-323 0", kFirstPoint).radius(), 1e-323);
}

// Squares of distances lose digits towards both ends of their range, and overflow at one.
TEST(ContourCircle, TheRadiusIsTheDistanceOfTheFarthestVertexAtEveryMagnitude) {
  for (int exponent = -330; exponent <= 306; ++exponent) {
    const double unit = std::pow(10.0, exponent);
    const std::vector<V> points = {V(0, 0), V(1.3 * unit, -2.1 * unit), V(0.7 * unit, 2.9 * unit),
                                   V(-1.9 * unit, 2.3 * unit)};
    double farthest = 0.0;
    for (const V& p : points) farthest = std::max(farthest, points.front().distance(p));
    EXPECT_EQ(gxContour(points).encloseCircle(kFirstPoint).radius(), farthest) << "1e" << exponent;
  }
}

}  // namespace
