#include <cntr/region.h>

#include <support/computed.h>
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/region_shapes.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

long count(const gxRegion& region, const V& point, bool bothWays = false) {
  return gx_RegionInside::insideCount(region, point, bothWays);
}

// A comb of 2 · teeth + 2 corners, wide enough that many rays cross it often.
Points comb(int teeth) {
  Points points{{0, -1}};
  for (int i = 0; i < teeth; ++i) {
    points.emplace_back(i, 0);
    points.emplace_back(i + 0.5, 5);
  }
  points.emplace_back(teeth, 0);
  points.emplace_back(teeth, -1);
  return points;
}

// ---- Counting crossings ---------------------------------------------------------------------------

TEST(InsideCount, OutsideTheBoxIsZeroWithoutARay) {
  const gxRegion region(square(0, 0, 10));
  const Computed circle(gx_Computation::eEncloseCircle);
  EXPECT_EQ(count(region, V(10.001, 5)), 0);
  EXPECT_EQ(count(region, V(5, -1e-9)), 0);
  EXPECT_EQ(circle.times(), 0) << "the length of the ray was never asked for";
}

TEST(InsideCount, OnAVertexIsOne) {
  const gxRegion region(square(0, 0, 10));
  EXPECT_EQ(count(region, V(10, 10)), 1);
  EXPECT_EQ(count(region, V(10, 10), true), 1);
}

TEST(InsideCount, AMillionthFromAVertexIsOneEvenFromOutside) {
  // The vertex (5, 5) is a notch, so that the point 5e-7 above it is outside, but inside the box.
  const gxRegion region(pointsOf("0 0, 10 0, 10 10, 5 5, 0 10"));
  EXPECT_EQ(count(region, V(5, 5 + 5e-7)), 1);
  EXPECT_TRUE(region.inside(V(5, 5 + 5e-7), false));
  EXPECT_EQ(count(region, V(5, 5 + 2e-6)) % 2, 0);
  EXPECT_FALSE(region.inside(V(5, 5 + 2e-6), false));
}

TEST(InsideCount, TheDistanceOfExactlyAMillionthCountsAsOnTheVertex) {
  const gxRegion region(pointsOf("-5 5, -5 -5, 5 -5, 5 5, 0 0"));
  EXPECT_EQ(count(region, V(0, 1e-6)), 1);
}

TEST(InsideCount, FarFromTheFirstVertexIsZero) {
  // The circle around the first vertex has radius 10; the corner of the box is 14.1 away.
  const gxRegion region(pointsOf("0 0, 10 0, 0 10"));
  EXPECT_EQ(count(region, V(9.9, 9.9)), 0);
  EXPECT_EQ(count(region, V(9.9, 9.9), true), 0);
}

TEST(InsideCount, FarFromTheFirstVertexARayTooShortIsNotTrusted) {
  // A flat wedge seen from its tip: the box is far larger than the circle around the first vertex.
  const gxRegion region(pointsOf("0 0, 7 7, 7.05 7, 10 0, 7.05 -7, 7 -7"));
  for (double x = 0.05; x < 10; x += 0.37) {
    for (double y = -6.95; y < 7; y += 0.41) {
      if (V(x, y).len() > 10) {
        EXPECT_EQ(count(region, V(x, y)), 0) << x << ' ' << y;
      }
    }
  }
}

TEST(InsideCount, OnTheCircleAroundTheFirstVertexTheRayDecides) {
  // (6, 8) is as far from (0, 0) as (10, 0), and inside the arm that ends there.
  const gxRegion region(pointsOf("0 0, 10 0, 6 8.0000001, 5.9 8"));
  EXPECT_EQ(count(region, V(5.999, 7.99)) % 2, 1);
}

TEST(InsideCount, BothWaysTakesTheSmallerCount) {
  // From between two teeth every ray to one side meets more edges than the one to the other.
  const gxRegion region(comb(5));
  const V gap(2.99, 1.0);
  EXPECT_LE(count(region, gap, true), count(region, gap, false));
  EXPECT_EQ(count(region, gap, false) % 2, count(region, gap, true) % 2);
}

TEST(InsideCount, BothWaysNeverExceedsOneWay) {
  RandomShapes random("inside count both ways", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points outline = random.finiteOutline();
    if (outline.size() < 2) continue;
    const gxRegion region(outline);
    for (int i = 0; i < 20; ++i) {
      const V p = random.pointNear(outline);
      const long one = count(region, p, false);
      EXPECT_LE(count(region, p, true), one);
      EXPECT_GE(one, 0);
    }
  }
}

TEST(InsideCount, TheRayLeavesThroughTheFirstWideSector) {
  // Seen from (0, 0): three edges one behind the other from about 5° to about 120°, then once more
  // around.  The sectors wider than 180° / 7 begin at 6°, 122° and 240°; the first has three edges.
  const auto polar = [](double radius, double degrees) {
    const double angle = degrees * 3.141592653589793 / 180.0;
    return V(radius * std::cos(angle), radius * std::sin(angle));
  };
  const gxRegion region(Points{polar(4, 5), polar(4, 120), polar(6, 121), polar(6, 6), polar(8, 4),
                               polar(8, 122), polar(8, 240)});
  EXPECT_EQ(count(region, V(0, 0), false), 3);
  EXPECT_EQ(count(region, V(0, 0), true), 1) << "the other way there is one edge";
  const gxRegion mirrored(Points{polar(4, -5), polar(4, -120), polar(6, -121), polar(6, -6),
                                 polar(8, -4), polar(8, -122), polar(8, -240)});
  EXPECT_EQ(count(mirrored, V(0, 0), false), 1) << "now the first begins at 120°";
}

TEST(InsideCount, ASectorThatIsNotWideIsPassedOver) {
  // As before, but between 4° and 5°, the very first sector, there is one edge and not three.
  const auto polar = [](double radius, double degrees) {
    const double angle = degrees * 3.141592653589793 / 180.0;
    return V(radius * std::cos(angle), radius * std::sin(angle));
  };
  const gxRegion region(Points{polar(4, 4), polar(4, 120), polar(6, 121), polar(6, 6), polar(8, 5),
                               polar(8, 122), polar(8, 240)});
  EXPECT_EQ(count(region, V(0, 0), false), 3);
}

TEST(InsideCount, OfAPointOnAnEdgeIsWhatTheRayMeets) {
  // The ray starts on the edge: edges that touch its start are left out.
  const gxRegion region(square(0, 0, 10));
  const long k = count(region, V(10, 4));
  EXPECT_TRUE(k == 0 || k == 1) << k;
}

TEST(InsideCount, BelowTwoPointsThereIsNoBoxToAsk) {
  EXPECT_THROW(count(gxRegion(), V(0, 0)), gxContourDefs::EmptyContour);
  EXPECT_THROW(count(gxRegion(pointsOf("0 0")), V(0, 0)), gxContourDefs::EmptyContour);
}

TEST(InsideCount, OfTwoPointsIsEvenBesideTheVertices) {
  const gxRegion region(pointsOf("0 0, 4 4"));
  EXPECT_EQ(count(region, V(1, 3)) % 2, 0);
  EXPECT_EQ(count(region, V(4, 4)), 1);
}

TEST(InsideCount, AVertexThatIsNoNumberIsNearEveryPoint) {
  const gxRegion region(pointsOf("0 0, 10 0, nan 5, 10 10, 0 10"));
  EXPECT_EQ(count(region, V(5, 5)), 1);
}

// ---- Inside ---------------------------------------------------------------------------------------

TEST(Inside, AVertexAndItsMillionthAreInside) {
  const gxRegion region(square(0, 0, 10));
  for (const V& v : region.points()) EXPECT_TRUE(region.inside(v, false));
  EXPECT_TRUE(region.inside(V(5e-7, 5e-7), false));
  EXPECT_FALSE(region.inside(V(-5e-7, -5e-7), false)) << "outside the box the vertices are not asked";
}

TEST(Inside, OutsideTheBoxIsOutside) {
  const gxRegion region(square(0, 0, 10));
  EXPECT_FALSE(region.inside(V(11, 5), false));
  EXPECT_FALSE(region.inside(V(5, 11), true));
}

TEST(Inside, DoesNotDependOnTheDirectionOfTheOutline) {
  Points outline = comb(7);
  const gxRegion one(outline);
  const gxRegion other(reversed(outline));
  for (double x = 0.013; x < 7; x += 0.17) {
    for (double y = -0.93; y < 5; y += 0.21) {
      EXPECT_EQ(one.inside(V(x, y), false), other.inside(V(x, y), false)) << x << ' ' << y;
    }
  }
}

TEST(Inside, AFigureThatCrossesItselfIsEvenOdd) {
  const gxRegion star(pentagram());
  EXPECT_FALSE(star.inside(V(0.1, 0.2), false)) << "the middle is gone around twice";
  EXPECT_TRUE(star.inside(V(4, 0.1), false));
}

TEST(Inside, AHoleIsOutsideWhereHolesCount) {
  const gxRegion region = squareWithHole();
  EXPECT_TRUE(region.inside(V(5.1, 5.2), false));
  EXPECT_FALSE(region.inside(V(5.1, 5.2), true));
  EXPECT_TRUE(region.inside(V(2.1, 2.2), true));
}

TEST(Inside, AnIslandInAHoleIsInside) {
  gxRegion hole(square(2, 2, 6));
  hole.holes({shared(gxRegion(square(4, 4, 2)))});
  gxRegion region(square(0, 0, 10));
  region.holes({shared(hole)});
  EXPECT_TRUE(region.inside(V(5.1, 5.2), true));
  EXPECT_FALSE(region.inside(V(3.1, 3.2), true));
  EXPECT_TRUE(region.inside(V(1.1, 1.2), true));
}

TEST(Inside, ALakeOnAnIslandInAHoleIsOutside) {
  gxRegion island(square(3, 3, 4));
  island.holes({shared(gxRegion(square(4, 4, 2)))});
  gxRegion hole(square(2, 2, 6));
  hole.holes({shared(island)});
  gxRegion region(square(0, 0, 10));
  region.holes({shared(hole)});
  EXPECT_FALSE(region.inside(V(5.1, 5.2), true));
  EXPECT_TRUE(region.inside(V(3.5, 3.6), true));
}

TEST(Inside, TheSecondHoleIsAskedWhenTheFirstDoesNotHoldThePoint) {
  const gxRegion region = regionOf(square(0, 0, 10), {square(1, 1, 2), square(6, 6, 2)});
  EXPECT_FALSE(region.inside(V(7.1, 7.2), true));
  EXPECT_FALSE(region.inside(V(2.1, 2.2), true));
  EXPECT_TRUE(region.inside(V(5.1, 5.2), true));
}

TEST(Inside, AHoleOverAnIslandOfAnotherHoleTakesItAway) {
  gxRegion hole(square(2, 2, 6));
  hole.holes({shared(gxRegion(square(4, 4, 2)))});
  gxRegion region(square(0, 0, 10));
  region.holes({shared(hole), shared(gxRegion(square(3.5, 3.5, 3)))});
  EXPECT_FALSE(region.inside(V(5.1, 5.2), true)) << "the island of the first, but in the second";
}

TEST(Inside, AHoleOutsideOfTheOutlineIsOutsideAnyway) {
  const gxRegion region = regionOf(square(0, 0, 10), {square(20, 20, 2)});
  EXPECT_FALSE(region.inside(V(21.1, 21.2), true));
}

TEST(Inside, ThePointOnAVertexOfAHoleIsInTheHole) {
  const gxRegion region = squareWithHole();
  EXPECT_FALSE(region.inside(V(4, 4), true));
}

TEST(Inside, ANullHoleIsMetOnlyByAPointInsideTheOutline) {
  gxRegion region = squareWithHole();
  addNullHole(region);
  EXPECT_THROW(region.inside(V(1.1, 1.2), true), gxBadPointer);
  EXPECT_FALSE(region.inside(V(5.1, 5.2), true)) << "the hole before it decides";
  EXPECT_FALSE(region.inside(V(11, 5), true));
  EXPECT_TRUE(region.inside(V(1.1, 1.2), false));
}

TEST(Inside, BelowTwoPointsThrows) {
  EXPECT_THROW(gxRegion().inside(V(0, 0), false), gxContourDefs::EmptyContour);
  EXPECT_THROW(gxRegion(pointsOf("0 0")).inside(V(0, 0), false), gxContourDefs::EmptyContour);
}

TEST(Inside, AHoleBelowTwoPointsThrowsWhenItIsAsked) {
  gxRegion region(square(0, 0, 10));
  region.holes({shared(gxRegion())});
  EXPECT_THROW(region.inside(V(5.1, 5.2), true), gxContourDefs::EmptyContour);
  EXPECT_TRUE(region.inside(V(5.1, 5.2), false));
}

TEST(Inside, APointThatIsNoNumberIsOutside) {
  const gxRegion small(square(0, 0, 10));
  Points many;
  for (int i = 0; i < 100; ++i) many.emplace_back(10 * std::cos(i * 0.0628), 10 * std::sin(i * 0.0628));
  const gxRegion large(many);
  for (const gxRegion* region : {&small, &large}) {
    EXPECT_FALSE(region->inside(V(kNaN, 5), false));
    EXPECT_FALSE(region->inside(V(5, kNaN), true));
    EXPECT_FALSE(region->inside(V(kInfinity, 0), false));
    EXPECT_FALSE(region->inside(V(0, -kInfinity), false));
    EXPECT_FALSE(region->inside(V(1e308, -1e308), false));
  }
}

TEST(Inside, OutlinesAtTheEndsOfTheRangeGiveAnAnswer) {
  for (const char* text :
       {"-1e308 -1e308, 1e308 -1e308, 1e308 1e308, -1e308 1e308", "0 0, inf 0, inf inf, 0 inf",
        "0 0, 10 0, 10 10, nan nan", "0 0, 5e-324 0, 5e-324 5e-324", "nan nan, nan nan, nan nan"}) {
    SCOPED_TRACE(text);
    const gxRegion region(pointsOf(text));
    for (const V& p :
         {V(1, 1), V(0, 0), V(1e308, 0), V(kNaN, 0), V(kInfinity, kInfinity), V(5e-324, 0)}) {
      EXPECT_EQ(region.inside(p, true), region.inside(p, true));
    }
  }
}

TEST(Inside, ATinyOutlineIsAllVertex) {
  const gxRegion region(square(0, 0, 1e-7));
  EXPECT_TRUE(region.inside(V(5e-8, 5e-8), false));
  EXPECT_FALSE(region.inside(V(2e-7, 5e-8), false));
}

TEST(Inside, AfterNewPointsTheAnswerIsNew) {
  Points ring;
  for (int i = 0; i < 200; ++i) ring.emplace_back(10 * std::cos(i * 0.0314), 10 * std::sin(i * 0.0314));
  gxRegion region(ring);
  EXPECT_TRUE(region.inside(V(0.1, 0.2), false));
  for (V& p : ring) p += V(50, 0);
  region.points(ring);
  EXPECT_FALSE(region.inside(V(0.1, 0.2), false));
  EXPECT_TRUE(region.inside(V(50.1, 0.2), false));
}

TEST(Inside, OfManyPointsIsTheParityOfTheCount) {
  RandomShapes random("inside of many points", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points outline = random.outline(static_cast<OutlineKind>(random.integer(0, 7)), 150);
    if (outline.size() < 65) continue;
    const gxRegion region(outline);
    for (int i = 0; i < 200; ++i) {
      const V p = random.pointNear(outline);
      EXPECT_EQ(region.inside(p, false), count(region, p) % 2 == 1);
    }
  }
}

}  // namespace
