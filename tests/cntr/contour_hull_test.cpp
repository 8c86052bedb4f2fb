#include <cntr/contour.h>

#include <cntr/region.h>
#include <support/computed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>
#include <velstd/orientation.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

Points hullOf(const Points& points, bool closed = true) {
  gxRegion hull;
  gxContour(points, closed).convexHull(hull);
  return hull.points();
}

// The points as a set, for hulls whose first corner does not matter.
Points sorted(Points points) {
  std::sort(points.begin(), points.end(),
            [](const V& a, const V& b) { return std::pair(a.x(), a.y()) < std::pair(b.x(), b.y()); });
  return points;
}

TEST(ContourHull, LeavesOutWhatLiesInside) {
  EXPECT_EQ(sorted(hullOf(pointsOf("0 0, 4 0, 2 1, 4 4, 0 4, 1 2"))), pointsOf("0 0, 0 4, 4 0, 4 4"));
}

TEST(ContourHull, LeavesOutPointsOnItsSidesAndRepeatedOnes) {
  EXPECT_EQ(sorted(hullOf(pointsOf("0 0, 2 0, 4 0, 4 0, 4 4, 0 4, 0 2, 0 0"))),
            pointsOf("0 0, 0 4, 4 0, 4 4"));
}

TEST(ContourHull, TurnsTheSameWayWhicheverWayTheOutlineRuns) {
  const Points there = hullOf(pointsOf("0 0, 4 0, 4 4, 0 4"));
  const Points back = hullOf(pointsOf("0 4, 4 4, 4 0, 0 0"));
  EXPECT_EQ(there, back);
  EXPECT_EQ(gx_Orientation(there[0], there[1], there[2]), 1) << "from the x axis towards the y axis";
}

TEST(ContourHull, OfAnOpenContourIsThatOfItsPoints) {
  EXPECT_EQ(hullOf(pointsOf("0 0, 4 0, 2 1, 4 4"), false), hullOf(pointsOf("0 0, 4 0, 2 1, 4 4"), true));
}

TEST(ContourHull, OfPointsOnOneLineIsTheTwoEnds) {
  EXPECT_EQ(sorted(hullOf(pointsOf("1 1, 3 3, 2 2, 0 0"))), pointsOf("0 0, 3 3"));
}

TEST(ContourHull, OfEqualPointsIsOnePoint) {
  EXPECT_EQ(hullOf(pointsOf("7 8, 7 8, 7 8")), pointsOf("7 8"));
}

TEST(ContourHull, PassesOverPointsThatAreNotFinite) {
  EXPECT_EQ(sorted(hullOf(pointsOf("0 0, nan 0, 4 0, inf 4, 4 4, 0 -inf"))), pointsOf("0 0, 4 0, 4 4"));
  EXPECT_TRUE(hullOf(pointsOf("nan 0, 0 inf")).empty());
}

TEST(ContourHull, OfHugeAndOfDenormalPointsIsExact) {
  EXPECT_EQ(sorted(hullOf(pointsOf("-1e308 -1e308, 1e308 -1e308, 0 0, 1e308 1e308"))),
            pointsOf("-1e308 -1e308, 1e308 -1e308, 1e308 1e308"));
  EXPECT_EQ(sorted(hullOf(pointsOf("0 0, 5e-324 0, 1e-323 0, 0 5e-324"))),
            pointsOf("0 0, 0 5e-324, 1e-323 0"));
}

TEST(ContourHull, IsARegionWithoutHolesAndWithLabelZero) {
  gxRegion hull(pointsOf("0 0, 100 0, 100 100, 0 100"));
  hull.holes({gxPtrHandle_const<gxRegion>(new gxRegion(pointsOf("4 4, 5 4, 5 5")))});
  hull.label(5);
  gxContour(pointsOf("0 0, 4 0, 4 4"), false, 9).convexHull(hull);
  EXPECT_EQ(sorted(hull.points()), pointsOf("0 0, 4 0, 4 4"));
  EXPECT_TRUE(hull.holes().empty());
  EXPECT_EQ(hull.label(), 0u);
  EXPECT_TRUE(hull.isClosed());
  EXPECT_EQ(hull.area(true), 8.0);
}

TEST(ContourHull, OfOnePointOrNoneIsRefusedAndTheResultStays) {
  for (const std::string text : {"", "1 1"}) {
    gxRegion hull(pointsOf("0 0, 1 0, 1 1"));
    EXPECT_THROW(gxContour(pointsOf(text)).convexHull(hull), gxContourDefs::EmptyContour);
    EXPECT_EQ(hull.points(), pointsOf("0 0, 1 0, 1 1"));
  }
}

TEST(ContourHull, MayBePutIntoTheRegionItself) {
  gxRegion region(pointsOf("0 0, 4 0, 2 1, 4 4, 0 4"));
  region.holes({gxPtrHandle_const<gxRegion>(new gxRegion(pointsOf("1 2, 1.5 2, 1.5 2.5")))});
  EXPECT_GT(region.area(false), 0.0);
  region.convexHull(region);
  EXPECT_EQ(sorted(region.points()), pointsOf("0 0, 0 4, 4 0, 4 4"));
  EXPECT_EQ(region.area(false), 16.0);
  EXPECT_TRUE(region.holes().empty());
  region.convexHull(region);
  EXPECT_EQ(region.area(false), 16.0);
}

TEST(ContourHull, GivenToACallerIsIndependentOfTheOneRemembered) {
  const gxContour contour(pointsOf("0 0, 4 0, 2 1, 4 4"));
  gxRegion hull;
  contour.convexHull(hull);
  hull.points(pointsOf("9 9, 8 8, 8 9"));
  gxRegion again;
  contour.convexHull(again);
  EXPECT_EQ(sorted(again.points()), pointsOf("0 0, 4 0, 4 4"));
}

TEST(ContourHull, IsSharedByCopiesOfTheContour) {
  const gxContour contour(pointsOf("0 0, 4 0, 2 1, 4 4"));
  gxRegion hull;
  contour.convexHull(hull);
  const gxContour copy(contour);
  const Computed computed(gx_Computation::eConvexHull);
  gxRegion again;
  copy.convexHull(again);
  EXPECT_EQ(computed.times(), 0);
  EXPECT_EQ(again.points(), hull.points());
}

TEST(ContourHull, AfterAChangeOfThePointsIsThatOfTheNewOnes) {
  gxContour contour(pointsOf("0 0, 4 0, 4 4"));
  gxRegion hull;
  contour.convexHull(hull);
  contour.points(pointsOf("1 1, 2 1, 2 2"));
  contour.convexHull(hull);
  EXPECT_EQ(sorted(hull.points()), pointsOf("1 1, 2 1, 2 2"));
}

bool finite(const V& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

TEST(ContourHullAtRandom, TurnsLeftAtEveryCornerAndHasEveryPointOnItsLeftOrOnIt) {
  RandomShapes random("contour hull", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    if (points.size() < 2) continue;
    const Points hull = hullOf(points);
    for (const V& corner : hull) {
      EXPECT_TRUE(std::find(points.begin(), points.end(), corner) != points.end());
    }
    if (hull.size() < 3) continue;
    for (std::size_t i = 0; i < hull.size(); ++i) {
      const V& a = hull[i];
      const V& b = hull[(i + 1) % hull.size()];
      EXPECT_EQ(gx_Orientation(a, b, hull[(i + 2) % hull.size()]), 1);
      for (const V& p : points) {
        EXPECT_TRUE(!finite(p) || gx_Orientation(a, b, p) >= 0);
      }
    }
  }
}

}  // namespace
