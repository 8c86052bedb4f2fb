#include <cntr/region.h>

#include <support/region_shapes.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// ---- Nearest vertex -------------------------------------------------------------------------------

TEST(RegionClosestVertex, OfTheOutlineAlone) {
  const gxRegion region = squareWithHole();
  EXPECT_EQ(region.closestVertexIndex(V(4.1, 4.1)), 0) << "the hole's corner is nearer";
  long hole = 7;
  EXPECT_EQ(region.closestVertexIndex(V(4.1, 4.1), false, hole), 0);
  EXPECT_EQ(hole, -1);
}

TEST(RegionClosestVertex, WithHolesTellsWhichHole) {
  const gxRegion region = regionOf(square(0, 0, 10), {square(1, 1, 1), square(4, 4, 2)});
  long hole = 7;
  EXPECT_EQ(region.closestVertexIndex(V(6.1, 6.2), true, hole), 2);
  EXPECT_EQ(hole, 1);
  EXPECT_EQ(region.closestVertexIndex(V(9.9, 9.8), true, hole), 2);
  EXPECT_EQ(hole, -1);
}

TEST(RegionClosestVertex, ATieIsTheOutlines) {
  const gxRegion region = regionOf(square(0, 0, 10), {square(4, 4, 2)});
  long hole = 7;
  EXPECT_EQ(region.closestVertexIndex(V(2, 2), true, hole), 0);
  EXPECT_EQ(hole, -1);
}

TEST(RegionClosestVertex, ATieAmongHolesIsTheFirsts) {
  const gxRegion region = regionOf(square(0, 0, 20), {square(6, 9, 2), square(12, 9, 2)});
  long hole = 7;
  EXPECT_EQ(region.closestVertexIndex(V(10, 9), true, hole), 1);
  EXPECT_EQ(hole, 0);
}

TEST(RegionClosestVertex, WithoutHolesTheFlagChangesNothing) {
  const gxRegion region(square(0, 0, 10));
  long hole = 7;
  EXPECT_EQ(region.closestVertexIndex(V(9, 9), true, hole), 2);
  EXPECT_EQ(hole, -1);
}

TEST(RegionClosestVertex, HolesOfHolesTakeNoPart) {
  gxRegion hole(square(2, 2, 6));
  hole.holes({shared(gxRegion(square(4, 4, 2)))});
  gxRegion region(square(0, 0, 10));
  region.holes({shared(hole)});
  long index = 0;
  region.closestVertexIndex(V(4, 4), true, index);
  EXPECT_EQ(index, 0);
  EXPECT_EQ(region.closestPoint(V(4, 4), true, true), V(2, 2));
}

TEST(RegionClosestVertex, ANullHoleThrowsOnlyWhereHolesCount) {
  gxRegion region(square(0, 0, 10));
  addNullHole(region);
  long hole = 7;
  EXPECT_THROW(region.closestVertexIndex(V(1, 1), true, hole), gxBadPointer);
  EXPECT_EQ(hole, 7) << "nothing is answered";
  EXPECT_EQ(region.closestVertexIndex(V(1, 1), false, hole), 0);
}

TEST(RegionClosestVertex, BelowTwoPointsThrows) {
  long hole = 0;
  EXPECT_THROW(gxRegion().closestVertexIndex(V(0, 0)), gxContourDefs::EmptyContour);
  EXPECT_THROW(gxRegion(pointsOf("1 1")).closestVertexIndex(V(0, 0), true, hole),
               gxContourDefs::EmptyContour);
  gxRegion region(square(0, 0, 10));
  region.holes({shared(gxRegion(pointsOf("5 5")))});
  EXPECT_THROW(region.closestVertexIndex(V(0, 0), true, hole), gxContourDefs::EmptyContour);
}

// ---- Nearest point --------------------------------------------------------------------------------

TEST(RegionClosestPoint, OnAHolesEdgeWhateverTheFlag) {
  const gxRegion region = squareWithHole();
  EXPECT_EQ(region.closestPoint(V(5, 3.5), false, false), V(5, 4));
  EXPECT_EQ(region.closestPoint(V(5, 3.5), false, true), V(5, 4));
}

TEST(RegionClosestPoint, VerticesOnlyAsksTheFlag) {
  const gxRegion region = squareWithHole();
  EXPECT_EQ(region.closestPoint(V(4.2, 3.5), true, false), V(0, 0));
  EXPECT_EQ(region.closestPoint(V(4.2, 3.5), true, true), V(4, 4));
}

TEST(RegionClosestPoint, ATieIsTheOutlines) {
  const gxRegion region = squareWithHole();
  EXPECT_EQ(region.closestPoint(V(5, 2), false, true), V(5, 0));
}

TEST(RegionClosestPoint, WithoutHolesIsTheContours) {
  const gxRegion region(square(0, 0, 10));
  EXPECT_EQ(region.closestPoint(V(5, -3), false, true), region.closestPoint(V(5, -3), false));
  EXPECT_EQ(region.closestPoint(V(5, -3), false), V(5, 0));
}

TEST(RegionClosestPoint, ANullHoleThrows) {
  gxRegion region(square(0, 0, 10));
  addNullHole(region);
  EXPECT_THROW(region.closestPoint(V(1, 1), false, false), gxBadPointer);
  EXPECT_THROW(region.closestPoint(V(1, 1), false, true), gxBadPointer);
  EXPECT_THROW(region.closestPoint(V(1, 1), true, true), gxBadPointer);
  EXPECT_EQ(region.closestPoint(V(1, 1), true, false), V(0, 0));
}

TEST(RegionClosestPoint, OfAQueryThatIsNoNumberIsTheOutlines) {
  const gxRegion region = squareWithHole();
  EXPECT_EQ(region.closestPoint(V(kNaN, 1), true, true), V(0, 0));
  EXPECT_EQ(region.closestPoint(V(kNaN, 1), false, true),
            gxContour(square(0, 0, 10)).closestPoint(V(kNaN, 1), false));
}

TEST(RegionClosestPoint, BelowTwoPointsThrows) {
  EXPECT_THROW(gxRegion().closestPoint(V(0, 0), false, false), gxContourDefs::EmptyContour);
  gxRegion region(square(0, 0, 10));
  region.holes({shared(gxRegion())});
  EXPECT_THROW(region.closestPoint(V(0, 0), false, false), gxContourDefs::EmptyContour);
}

// ---- Distance -------------------------------------------------------------------------------------

TEST(RegionDistance, InsideIsZeroWhereAskedFor) {
  const gxRegion region = squareWithHole();
  EXPECT_EQ(region.distToPoint(V(2, 1.5), false, true, true), 0.0);
  EXPECT_EQ(region.distToPoint(V(2, 1.5), false, true, false), 1.5);
}

TEST(RegionDistance, InAHoleIsPositive) {
  const gxRegion region = squareWithHole();
  EXPECT_EQ(region.distToPoint(V(5.25, 5.5), false, true, true), 0.5);
  EXPECT_EQ(region.distToPoint(V(5.25, 5.5), false, false, true), 0.0) << "holes do not count";
}

TEST(RegionDistance, OutsideIsToTheNearestPoint) {
  const gxRegion region = squareWithHole();
  EXPECT_EQ(region.distToPoint(V(13, 14), false, true, true), 5.0);
  EXPECT_EQ(region.distToPoint(V(5, -3), false, true, true), 3.0);
  EXPECT_EQ(region.distToPoint(V(10, -3), true, true, true), 3.0);
}

TEST(RegionDistance, ToAHolesVertexWhereHolesCount) {
  const gxRegion region = squareWithHole();
  EXPECT_EQ(region.distToPoint(V(4, 3), true, true, false), 1.0);
  EXPECT_EQ(region.distToPoint(V(4, 3), true, false, false), 5.0);
}

TEST(RegionDistance, OfAQueryThatIsNoNumberIsNone) {
  EXPECT_TRUE(std::isnan(squareWithHole().distToPoint(V(kNaN, 1), false, true, true)));
}

TEST(RegionDistance, ANullHoleThrows) {
  gxRegion region(square(0, 0, 10));
  addNullHole(region);
  EXPECT_THROW(region.distToPoint(V(1.1, 1.2), false, true, true), gxBadPointer);
  EXPECT_THROW(region.distToPoint(V(20, 1), false, false, true), gxBadPointer);
}

TEST(RegionDistance, BelowTwoPointsThrows) {
  EXPECT_THROW(gxRegion().distToPoint(V(0, 0), false, false, true), gxContourDefs::EmptyContour);
  EXPECT_THROW(gxRegion().distToPoint(V(0, 0), false, false, false), gxContourDefs::EmptyContour);
}

// ---- Crossings ------------------------------------------------------------------------------------

TEST(RegionCrossings, OfASegmentAreTheOutlinesThenTheHoles) {
  const gxRegion region = regionOf(square(0, 0, 10), {square(6, 4, 2), square(2, 4, 2)});
  const gxLineSeg seg(V(-1, 5), V(11, 5));
  EXPECT_EQ(region.intersections(seg, true, false), pointsOf("0 5, 10 5"));
  EXPECT_EQ(region.intersections(seg, true, true), pointsOf("0 5, 10 5, 6 5, 8 5, 2 5, 4 5"));
  EXPECT_EQ(region.intersections(seg, true), pointsOf("0 5, 10 5"));
}

TEST(RegionCrossings, EndContactsAreHandedOn) {
  const gxRegion region = squareWithHole();
  const gxLineSeg seg(V(0, 5), V(5, 5));
  EXPECT_EQ(region.intersections(seg, true, true), pointsOf("0 5, 4 5"));
  EXPECT_EQ(region.intersections(seg, false, true), pointsOf("4 5"));
}

TEST(RegionCrossings, OfAContourAreTheOutlinesThenTheHoles) {
  const gxRegion region = squareWithHole();
  const gxContour line(pointsOf("5 -1, 5 11"), false);
  EXPECT_EQ(region.intersections(line, false), pointsOf("5 0, 5 10"));
  EXPECT_EQ(region.intersections(line, true), pointsOf("5 0, 5 10, 5 4, 5 6"));
  EXPECT_EQ(region.intersections(line), pointsOf("5 0, 5 10"));
}

TEST(RegionCrossings, OfARegionMeetItsOutlineNotItsHoles) {
  const gxRegion region(square(0, 0, 10));
  const gxRegion other = regionOf(square(4, 4, 20), {square(8, 8, 4)});
  EXPECT_EQ(region.intersections(other, true).size(),
            region.intersections(gxContour(square(4, 4, 20)), true).size());
}

TEST(RegionCrossings, RepeatedHolesRepeatTheirs) {
  gxRegion region(square(0, 0, 10));
  const Handle hole = shared(gxRegion(square(4, 4, 2)));
  region.holes({hole, hole});
  EXPECT_EQ(region.intersections(gxLineSeg(V(3, 5), V(5, 5)), true, true), pointsOf("4 5, 4 5"));
}

TEST(RegionCrossings, ANullHoleThrowsOnlyWhereHolesCount) {
  gxRegion region(square(0, 0, 10));
  addNullHole(region);
  const gxLineSeg seg(V(-1, 5), V(11, 5));
  EXPECT_THROW(region.intersections(seg, true, true), gxBadPointer);
  EXPECT_THROW(region.intersections(gxContour(square(1, 1, 20)), true), gxBadPointer);
  EXPECT_EQ(region.intersections(seg, true, false).size(), 2u);
}

TEST(RegionCrossings, BelowTwoPointsThrows) {
  const gxLineSeg seg(V(-1, 5), V(11, 5));
  EXPECT_THROW(gxRegion().intersections(seg, true, false), gxContourDefs::EmptyContour);
  EXPECT_THROW(gxRegion().intersections(gxContour(square(0, 0, 1)), false), gxContourDefs::EmptyContour);
  gxRegion region(square(0, 0, 10));
  region.holes({shared(gxRegion())});
  EXPECT_THROW(region.intersections(seg, true, true), gxContourDefs::EmptyContour);
  EXPECT_EQ(region.intersections(seg, true, false).size(), 2u);
}

TEST(RegionQueries, AtTheEndsOfTheRangeGiveAnAnswer) {
  for (const char* text :
       {"-1e308 -1e308, 1e308 -1e308, 1e308 1e308", "0 0, inf 0, inf inf", "0 0, 10 0, nan 5",
        "0 0, 5e-324 0, 5e-324 5e-324", "nan nan, nan nan, nan nan"}) {
    SCOPED_TRACE(text);
    gxRegion region(pointsOf(text));
    const_cast<std::vector<Handle>&>(region.holes()).push_back(shared(gxRegion(pointsOf(text))));
    for (const V& p : {V(1, 1), V(1e308, -1e308), V(kNaN, 0), V(HUGE_VAL, HUGE_VAL), V(5e-324, 0)}) {
      long hole = 0;
      const long index = region.closestVertexIndex(p, true, hole);
      EXPECT_TRUE(index >= 0 && index < 3);
      region.closestPoint(p, false, true);
      EXPECT_FALSE(region.distToPoint(p, false, true, true) < 0.0);
      EXPECT_LE(region.intersections(gxLineSeg(p, V(3, 4)), true, true).size(), 6u);
    }
    EXPECT_LE(region.intersections(region, true).size(), 18u);
  }
}

}  // namespace
