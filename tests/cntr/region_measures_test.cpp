#include <cntr/region.h>

#include <support/computed.h>
#include <support/region_shapes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace {

Points backwards(Points points) {
  std::reverse(points.begin(), points.end());
  return points;
}

// ---- Area -----------------------------------------------------------------------------------------

TEST(RegionArea, OfASquareWithAHole) {
  const gxRegion region = squareWithHole();
  EXPECT_EQ(region.area(false), 100.0);
  EXPECT_EQ(region.area(true), 96.0);
}

TEST(RegionArea, TheDirectionsOfOutlineAndHoleDoNotMatter) {
  EXPECT_EQ(regionOf(square(0, 0, 10), {backwards(square(4, 4, 2))}).area(true), 96.0);
  EXPECT_EQ(regionOf(backwards(square(0, 0, 10)), {square(4, 4, 2)}).area(true), 96.0);
  EXPECT_EQ(gxRegion(backwards(square(0, 0, 10))).area(false), 100.0);
}

TEST(RegionArea, AHoleLargerThanTheOutlineMakesItNegative) {
  EXPECT_EQ(regionOf(square(0, 0, 10), {square(-5, -5, 20)}).area(true), -300.0);
}

TEST(RegionArea, HolesOfHolesTakeNoPart) {
  gxRegion hole(square(2, 2, 6));
  hole.holes({shared(gxRegion(square(4, 4, 2)))});
  gxRegion region(square(0, 0, 10));
  region.holes({shared(hole)});
  EXPECT_EQ(region.area(true), 64.0);
}

TEST(RegionArea, OfABowTieIsTheDifferenceOfItsLobes) {
  EXPECT_EQ(gxRegion(bowTie()).area(false), 0.0);
}

TEST(RegionArea, FarFromTheOriginLosesNothing) {
  EXPECT_EQ(gxRegion(square(1e9, -1e9, 10)).area(false), 100.0);
}

// ---- Centre of mass -------------------------------------------------------------------------------

TEST(RegionCenterOfMass, MovesAwayFromTheHole) {
  const gxRegion region = regionOf(square(0, 0, 10), {square(6, 6, 2)});
  EXPECT_EQ(region.centerOfMass(false), V(5, 5));
  const V center = region.centerOfMass(true);
  EXPECT_NEAR(center.x(), (500.0 - 28.0) / 96.0, 1e-14);
  EXPECT_NEAR(center.y(), (500.0 - 28.0) / 96.0, 1e-14);
}

TEST(RegionCenterOfMass, DoesNotDependOnDirections) {
  const V there = regionOf(square(0, 0, 10), {square(6, 6, 2)}).centerOfMass(true);
  const V back = regionOf(backwards(square(0, 0, 10)), {backwards(square(6, 6, 2))}).centerOfMass(true);
  EXPECT_NEAR(there.distance(back), 0.0, 1e-14);
}

TEST(RegionCenterOfMass, OfAnOutlineWithoutAreaIsTheOrigin) {
  EXPECT_EQ(gxRegion(pointsOf("1 1, 2 2, 3 3")).centerOfMass(false), V(0, 0));
  EXPECT_EQ(gxRegion(bowTie()).centerOfMass(false), V(0, 0));
}

TEST(RegionCenterOfMass, WithHolesThatCancelTheAreaTheDivisionDecides) {
  const gxRegion region = regionOf(square(0, 0, 10), {square(20, 20, 10)});
  EXPECT_EQ(region.area(true), 0.0);
  const V center = region.centerOfMass(true);
  EXPECT_EQ(center,
            V(-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()))
      << "(500 - 2500) times the reciprocal of 0";
}

TEST(RegionCenterOfMass, WithHolesThatCancelAreaAndMomentIsNotANumber) {
  const gxRegion region =
      regionOf(pointsOf("-2 -1, 2 -1, 2 1, -2 1"),
               {pointsOf("-1 -20, 1 -20, 1 -18, -1 -18"), pointsOf("-1 18, 1 18, 1 20, -1 20")});
  EXPECT_EQ(region.area(true), 0.0);
  EXPECT_TRUE(std::isnan(region.centerOfMass(true).x()));
}

// ---- Moments --------------------------------------------------------------------------------------

TEST(RegionMoments, OfASquare) {
  const gxMatrix<2> m = gxRegion(square(3, 4, 2)).inertiaMatrix(false);
  EXPECT_NEAR(m.m00(), 4.0 / 3.0, 1e-14);
  EXPECT_NEAR(m.m11(), 4.0 / 3.0, 1e-14);
  EXPECT_NEAR(m.m01(), 0.0, 1e-14);
}

TEST(RegionMoments, WithoutHolesTheFlagChangesNothing) {
  const gxRegion region(pointsOf("0 0, 4 0, 0 3"));
  const gxMatrix<2> plain = region.inertiaMatrix(false);
  const Computed inertia(gx_Computation::eInertiaMatrix);
  const gxMatrix<2> considering = region.inertiaMatrix(true);
  EXPECT_EQ(considering.m00(), plain.m00());
  EXPECT_EQ(considering.m01(), plain.m01());
  EXPECT_EQ(considering.m11(), plain.m11());
  EXPECT_EQ(inertia.times(), 0) << "one memory serves both";
}

TEST(RegionMoments, WithHolesAreRefusedEvenWhenTheOutlinesAreRemembered) {
  const gxRegion region = squareWithHole();
  const auto ask = [&region] { region.inertiaMatrix(true); };
  EXPECT_EQ(messageOfBadParams(ask), L"inertiaMatrix(considerHoles) is not implemented");
  EXPECT_NEAR(region.inertiaMatrix(false).m00(), 1e4 / 12.0, 1e-11);
  EXPECT_EQ(messageOfBadParams(ask), L"inertiaMatrix(considerHoles) is not implemented");
}

TEST(RegionMoments, OfAClockwiseOutlineAreThoseOfItsReverse) {
  // An L: the fan around its centre has triangles that turn the other way.
  const Points l = pointsOf("0 0, 9 0, 9 1, 1 1, 1 9, 0 9");
  const gxMatrix<2> there = gxRegion(l).inertiaMatrix(false);
  const gxMatrix<2> back = gxRegion(backwards(l)).inertiaMatrix(false);
  EXPECT_NEAR(back.m00(), there.m00(), 1e-12 * there.m00());
  EXPECT_NEAR(back.m01(), there.m01(), 1e-12 * there.m00());
  EXPECT_NEAR(back.m11(), there.m11(), 1e-12 * there.m00());
  EXPECT_GT(there.m00(), 0.0);
}

// ---- Failures -------------------------------------------------------------------------------------

TEST(RegionMeasures, OfTwoPointsThrowEmptyContour) {
  for (const char* text : {"", "1 1", "0 0, 1 1"}) {
    SCOPED_TRACE(text);
    const gxRegion region(pointsOf(text));
    for (const bool holes : {false, true}) {
      EXPECT_THROW(region.area(holes), gxContourDefs::EmptyContour);
      EXPECT_THROW(region.centerOfMass(holes), gxContourDefs::EmptyContour);
      EXPECT_THROW(region.inertiaMatrix(holes), gxContourDefs::EmptyContour);
    }
    try {
      region.area(false);
    } catch (const gxContourDefs::EmptyContour& error) {
      EXPECT_EQ(error.message(), L"");
    }
  }
}

TEST(RegionMeasures, TooFewPointsComeBeforeTheHolesThatAreNotImplemented) {
  gxRegion region(pointsOf("0 0, 1 0"));
  region.holes({shared(gxRegion(square(4, 4, 2)))});
  EXPECT_THROW(region.inertiaMatrix(true), gxContourDefs::EmptyContour);
}

TEST(RegionMeasures, AHoleOfTwoPointsThrowsWhereHolesCount) {
  gxRegion region(square(0, 0, 10));
  region.holes({shared(gxRegion(pointsOf("4 4, 5 5")))});
  EXPECT_THROW(region.area(true), gxContourDefs::EmptyContour);
  EXPECT_THROW(region.centerOfMass(true), gxContourDefs::EmptyContour);
  EXPECT_EQ(region.area(false), 100.0);
}

TEST(RegionMeasures, ANullHoleThrowsWhereHolesCount) {
  gxRegion region(square(0, 0, 10));
  addNullHole(region);
  EXPECT_THROW(region.area(true), gxBadPointer);
  EXPECT_THROW(region.centerOfMass(true), gxBadPointer);
  EXPECT_EQ(region.area(false), 100.0);
  EXPECT_EQ(messageOfBadParams([&] { region.inertiaMatrix(true); }),
            L"inertiaMatrix(considerHoles) is not implemented")
      << "the holes are counted, not used";
}

TEST(RegionMeasures, AThrowLeavesTheOutlinesAnswersRememberedAndItsOwnNot) {
  gxRegion region(square(0, 0, 10));
  addNullHole(region);
  const Computed area(gx_Computation::eArea);
  const Computed areaWithHoles(gx_Computation::eAreaWithHoles);
  const Computed center(gx_Computation::eCenterOfMass);
  for (int i = 0; i < 3; ++i) {
    EXPECT_THROW(region.area(true), gxBadPointer);
    EXPECT_THROW(region.centerOfMass(true), gxBadPointer);
  }
  EXPECT_EQ(region.area(false), 100.0);
  EXPECT_EQ(region.centerOfMass(false), V(5, 5));
  EXPECT_EQ(area.times(), 1);
  EXPECT_EQ(center.times(), 1);
  EXPECT_EQ(areaWithHoles.times(), 3) << "begun anew each time";
}

// ---- Memory ---------------------------------------------------------------------------------------

TEST(RegionMeasures, TheSecondQuestionIsAnsweredWithoutTouchingTheHoles) {
  gxRegion region(square(0, 0, 10));
  const gxPtrHandle<gxRegion> hole(new gxRegion(square(4, 4, 2)));
  region.holes({hole});
  EXPECT_EQ(region.area(true), 96.0);
  const V center = region.centerOfMass(true);
  hole->points(square(4, 4, 4));  // behind the region's back
  const Computed area(gx_Computation::eArea);
  EXPECT_EQ(region.area(true), 96.0);
  EXPECT_EQ(region.centerOfMass(true), center);
  EXPECT_EQ(area.times(), 0);
  region.holes({hole});
  EXPECT_EQ(region.area(true), 84.0);
}

TEST(RegionMeasures, AreComputedOnce) {
  const gxRegion region = squareWithHole();
  const Computed area(gx_Computation::eArea);
  const Computed areaWithHoles(gx_Computation::eAreaWithHoles);
  const Computed center(gx_Computation::eCenterOfMass);
  const Computed centerWithHoles(gx_Computation::eCenterOfMassWithHoles);
  const Computed inertia(gx_Computation::eInertiaMatrix);
  for (int i = 0; i < 3; ++i) {
    region.area(true);
    region.area(false);
    region.centerOfMass(true);
    region.centerOfMass(false);
    region.inertiaMatrix(false);
  }
  EXPECT_EQ(area.times(), 2) << "the outline's and the hole's";
  EXPECT_EQ(center.times(), 2);
  EXPECT_EQ(areaWithHoles.times(), 1);
  EXPECT_EQ(centerWithHoles.times(), 1);
  EXPECT_EQ(inertia.times(), 1);
}

TEST(RegionMeasures, TheAreaWithHolesRememberedBeforeTheOutlinesIsDropped) {
  gxRegion region = squareWithHole();
  EXPECT_EQ(region.area(true), 96.0);
  region.points(square(0, 0, 12));
  EXPECT_EQ(region.area(true), 140.0);
}

// ---- Ends of the range ----------------------------------------------------------------------------

TEST(RegionMeasures, OfCoordinatesThatAreNotFiniteAreNotFiniteAndDoNotThrow) {
  for (const char* text :
       {"0 0, nan 0, 1 1", "0 0, inf 0, 1 1", "nan nan, nan nan, nan nan", "0 0, 1 0, -inf inf"}) {
    SCOPED_TRACE(text);
    const gxRegion region(pointsOf(text));
    EXPECT_FALSE(std::isfinite(region.area(false)));
    EXPECT_NO_THROW(region.centerOfMass(true));
    EXPECT_NO_THROW(region.inertiaMatrix(true));
  }
}

TEST(RegionMeasures, OfHugeAndTinyOutlinesGiveAnAnswer) {
  const gxRegion huge(pointsOf("-1e308 -1e308, 1e308 -1e308, 1e308 1e308, -1e308 1e308"));
  EXPECT_FALSE(huge.area(true) < 0.0);
  EXPECT_NO_THROW(huge.centerOfMass(false));
  EXPECT_NO_THROW(huge.inertiaMatrix(false));
  const gxRegion large(square(0, 0, 1e100));
  EXPECT_DOUBLE_EQ(large.area(false), 1e200);
  EXPECT_NEAR(large.centerOfMass(false).x() / 1e100, 0.5, 1e-12);
  const gxRegion tiny(square(0, 0, 5e-324));
  EXPECT_EQ(tiny.area(false), 0.0);
  EXPECT_EQ(tiny.centerOfMass(false), V(0, 0));
  EXPECT_EQ(tiny.inertiaMatrix(false).m00(), 0.0);
}

TEST(RegionCenter, WithHolesIsTheSumTimesTheReciprocalOfTheRemainingArea) {
  int told = 0;  // where a division would have other bits
  for (int i = 1; i < 40; ++i) {
    const gxRegion region = regionOf(square(0, 0, 10), {square(1, 2, 0.1 * i)});
    const gxRegion outline(square(0, 0, 10));
    const gxRegion hole(square(1, 2, 0.1 * i));
    const V sum =
        outline.centerOfMass(false) * outline.area(false) - hole.centerOfMass(false) * hole.area(false);
    const double remaining = outline.area(false) - hole.area(false);
    EXPECT_EQ(region.centerOfMass(true), sum * (1.0 / remaining));
    told += sum / remaining != sum * (1.0 / remaining) ? 1 : 0;
  }
  EXPECT_GT(told, 0);
}

}  // namespace
