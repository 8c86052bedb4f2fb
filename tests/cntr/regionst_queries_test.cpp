// Containment and distance of sets: the regions in their order, and what is met on the way.
#include <cntr/regionst.h>
#include <gtest/gtest.h>
#include <support/computed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;
using Handles = std::vector<Handle>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

std::vector<gxVector<2>> box(double x, double y, double size) {
  return {{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}};
}

Handle square(double x, double y, double size = 1.0) {
  return Handle(new gxRegion(box(x, y, size)));
}

Handle ring(double x, double y) {  // 4 by 4 with a hole of 2 by 2
  const gxPtrHandle<gxRegion> region(new gxRegion(box(x, y, 4)));
  region->holes({square(x + 1, y + 1, 2)});
  return region;
}

}  // namespace

// ---- Containment --------------------------------------------------------------------------------

TEST(RegionSetInside, IsInsideAnyRegion) {
  const gxRegionSet set({square(0, 0), square(5, 0)});
  EXPECT_TRUE(set.inside({0.5, 0.4}, true));
  EXPECT_TRUE(set.inside({5.5, 0.4}, true));
  EXPECT_FALSE(set.inside({3, 0.4}, true));
}

TEST(RegionSetInside, PassesTheFlagOn) {
  const gxRegionSet set({ring(0, 0)});
  EXPECT_FALSE(set.inside({2, 2.1}, true));
  EXPECT_TRUE(set.inside({2, 2.1}, false));
}

TEST(RegionSetInside, RegionInAnothersHoleCounts) {
  const gxRegionSet set({ring(0, 0), square(1.5, 1.5)});
  EXPECT_TRUE(set.inside({2, 2.1}, true));
}

TEST(RegionSetInside, EmptySetHoldsNoPoint) {
  EXPECT_FALSE(gxRegionSet().inside({0, 0}, true));
}

TEST(RegionSetInside, OfManyRegionsMakesAnIndexAlsoWhereEveryPointIsInside) {
  Handles handles;
  for (int i = 0; i < 30; ++i) handles.push_back(square(2 * i, 0));
  const gxRegionSet set(handles);
  const Computed indices(gx_Computation::eSetIndex);
  for (int i = 0; i < 40; ++i) EXPECT_TRUE(set.inside({2.0 * (i % 3) + 0.5, 0.4}, true));
  EXPECT_EQ(indices.times(), 1);
  const Computed boxes(gx_Computation::eUprightBox);
  EXPECT_TRUE(set.inside({58.5, 0.4}, true));
  EXPECT_EQ(boxes.times(), 1) << "no region but the one that holds the point was asked";
}

TEST(RegionSetInside, OfManyRegionsWithANullOneFailsWhereItComesFirst) {
  Handles handles;
  for (int i = 0; i < 30; ++i) handles.push_back(square(2 * i, 0));
  handles[10] = nullptr;
  const gxRegionSet set(handles);
  for (int i = 0; i < 40; ++i) {
    EXPECT_TRUE(set.inside({18.5, 0.4}, true));
    EXPECT_THROW(static_cast<void>(set.inside({22.5, 0.4}, true)), gxBadPointer);
  }
}

TEST(RegionSetInside, FirstRegionThatHoldsThePointEndsTheSearch) {
  const gxRegionSet set({square(0, 0), nullptr});
  EXPECT_TRUE(set.inside({0.5, 0.4}, false));
  EXPECT_THROW(static_cast<void>(set.inside({7, 7}, false)), gxBadPointer);
  const gxRegionSet tooFew({square(0, 0), Handle(new gxRegion)});
  EXPECT_TRUE(tooFew.inside({0.5, 0.4}, false));
  EXPECT_THROW(static_cast<void>(tooFew.inside({7, 7}, false)), gxContourDefs::EmptyContour);
}

TEST(RegionSetInside, NaNIsOutside) {
  EXPECT_FALSE(gxRegionSet({square(0, 0)}).inside({kNaN, 0.5}, true));
}

// ---- Distance -----------------------------------------------------------------------------------

TEST(RegionSetDistance, IsTheSmallestOfTheRegions) {
  const gxRegionSet set({square(0, 0), square(5, 0)});
  EXPECT_EQ(set.distToPoint({4, 0.5}, false, false, false), 1.0);
  EXPECT_EQ(set.distToPoint({2, 0.5}, false, false, false), 1.0);
}

TEST(RegionSetDistance, OfAPointInsideOneOfTwoDependsOnTheFlag) {
  const gxRegionSet set({square(0, 0, 4), square(10, 0)});
  EXPECT_EQ(set.distToPoint({1, 2}, false, false, false), 1.0);
  EXPECT_EQ(set.distToPoint({1, 2}, false, false, true), 0.0);
}

TEST(RegionSetDistance, PassesTheThreeFlagsInOrder) {
  const gxRegionSet set({ring(0, 0)});
  const gxVector<2> inHole(2, 1.5);
  EXPECT_EQ(set.distToPoint(inHole, false, false, false), 0.5);
  EXPECT_EQ(set.distToPoint(inHole, false, true, true), 0.5);   // the hole is outside
  EXPECT_EQ(set.distToPoint(inHole, false, false, true), 0.0);  // the hole does not count
  EXPECT_EQ(set.distToPoint(inHole, true, true, false), inHole.distance({1, 1}));
  EXPECT_EQ(set.distToPoint(inHole, true, false, false), inHole.distance({0, 0}));
}

TEST(RegionSetDistance, NaNDistancesAreInfinite) {
  const gxRegionSet set({square(0, 0), square(5, 0)});
  EXPECT_EQ(set.distToPoint({kNaN, 0}, false, false, false), kInf);
  const gxRegionSet mixed({Handle(new gxRegion({{kNaN, 0}, {kNaN, 1}, {kNaN, 2}})), square(5, 0)});
  EXPECT_EQ(mixed.distToPoint({4, 0.5}, true, false, false), gxVector<2>(4, 0.5).distance({5, 0}));
}

TEST(RegionSetDistance, EmptySetThrows) {
  EXPECT_THROW(static_cast<void>(gxRegionSet().distToPoint({0, 0}, false, false, false)),
               gxContourDefs::EmptyRegionSet);
}

TEST(RegionSetDistance, NullHandleAndEmptyRegionThrowEvenWhenTheDistanceIsZeroAlready) {
  EXPECT_THROW(static_cast<void>(
                   gxRegionSet({square(0, 0), nullptr}).distToPoint({0.5, 0.4}, false, false, true)),
               gxBadPointer);
  EXPECT_THROW(
      static_cast<void>(
          gxRegionSet({square(0, 0), Handle(new gxRegion)}).distToPoint({0.5, 0.4}, false, false, true)),
      gxContourDefs::EmptyContour);
}

// ---- Random sets against plain loops ------------------------------------------------------------

TEST(RegionSetQueries, RandomSetsMatchPlainLoops) {
  RandomShapes random("region set queries", 1500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Handles handles;
    std::vector<gxVector<2>> last = pointsOf("0 0, 1 0");
    const int count = random.integer(1, 5);
    for (int i = 0; i < count; ++i) {
      std::vector<gxVector<2>> points = random.placed(random.outline());
      if (points.size() < 2) continue;  // those throw; see above
      last = points;
      handles.emplace_back(new gxRegion(points));
    }
    const gxRegionSet set(handles);
    const gxVector<2> point = random.pointNear(last);
    bool inside = false;
    for (const Handle& region : handles) inside = inside || region->inside(point, true);
    EXPECT_EQ(set.inside(point, true), inside);
    if (handles.empty()) continue;
    for (const bool vertexOnly : {true, false}) {
      double nearest = kInf;
      for (const Handle& region : handles) {
        const double distance = region->distToPoint(point, vertexOnly, true, true);
        if (distance < nearest) nearest = distance;
      }
      EXPECT_EQ(set.distToPoint(point, vertexOnly, true, true), nearest);
    }
  }
}

// ---- Regions of many points ---------------------------------------------------------------------
//
// A region of more than 64 points that is too far away to matter is not asked for its distance.
// Nothing of that may show, far from the origin neither.

namespace {

double plainDistance(const Handles& handles, const gxVector<2>& point, bool vertexOnly,
                     bool considerHoles, bool insideIsZero) {
  double nearest = kInf;
  for (const Handle& region : handles) {
    const double distance = region->distToPoint(point, vertexOnly, considerHoles, insideIsZero);
    if (distance < nearest) nearest = distance;
  }
  return nearest;
}

// Outlines of 65 to 120 points around a place that may be far away, now and then with an outlier or
// with coordinates that are not finite, with few points or with a hole.
Handles largeRegions(RandomShapes& random, const gxVector<2>& place, double size) {
  Handles handles;
  const int count = random.integer(2, 12);
  for (int i = 0; i < count; ++i) {
    const gxVector<2> center(random.uniform(-20, 20), random.uniform(-20, 20));
    std::vector<gxVector<2>> points = random.star(random.integer(65, 120), center, 1, 6);
    if (random.chance(0.1)) points.resize(5);
    for (gxVector<2>& p : points) p = place + p * size;
    if (random.chance(0.05)) points[2] = {1e300, 0};
    if (random.chance(0.05)) points[3] = {random.chance(0.5) ? kNaN : kInf, 1};
    const gxPtrHandle<gxRegion> region(new gxRegion(points));
    if (random.chance(0.1)) region->holes({square(1e6, 1e6)});
    handles.emplace_back(region);
  }
  return handles;
}

}  // namespace

TEST(RegionSetDistance, RandomLargeRegionsMatchPlainLoopsBitForBit) {
  RandomShapes random("region set distance, large regions", 1500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const double far = random.chance(0.5) ? 0.0 : std::pow(10.0, random.integer(0, 15));
    const double size = random.chance(0.5) ? 1.0 : std::pow(10.0, random.integer(-160, 150));
    const gxVector<2> place(far, -far);
    const Handles handles = largeRegions(random, place, size);
    const gxRegionSet set(handles);
    for (int k = 0; k < 4; ++k) {
      const gxVector<2> query =
          place + gxVector<2>(random.uniform(-40, 40), random.uniform(-40, 40)) * size;
      for (int flags = 0; flags < 8; ++flags) {
        const bool vertexOnly = (flags & 1) != 0;
        const bool considerHoles = (flags & 2) != 0;
        const bool insideIsZero = (flags & 4) != 0;
        EXPECT_EQ(set.distToPoint(query, vertexOnly, considerHoles, insideIsZero),
                  plainDistance(handles, query, vertexOnly, considerHoles, insideIsZero));
      }
    }
  }
}

// Asked for containment, a region computes its box.
TEST(RegionSetDistance, OfManyPointsOnlyRegionsThatMayBeNearerAreAsked) {
  RandomShapes random("region set distance, boxes", 1);
  ASSERT_TRUE(random.next());
  Handles handles;
  for (int i = 0; i < 20; ++i)
    handles.emplace_back(new gxRegion(random.star(80, {30.0 * i, 0.0}, 5, 9)));
  const Computed boxes(gx_Computation::eUprightBox);
  static_cast<void>(gxRegionSet(handles).distToPoint({0, 0}, false, true, true));
  EXPECT_EQ(boxes.times(), 1);
}

TEST(RegionSetDistance, FailuresComeFromTheFirstRegionThatFails) {
  RandomShapes random("region set distance, failures", 1);
  ASSERT_TRUE(random.next());
  const Handle near(new gxRegion(random.star(80, {0, 0}, 5, 9)));
  const Handle far(new gxRegion(random.star(80, {1000, 0}, 5, 9)));
  const gxPtrHandle<gxRegion> holed(new gxRegion(random.star(80, {2000, 0}, 5, 9)));
  holed->holes({Handle(new gxRegion)});
  EXPECT_THROW(static_cast<void>(
                   gxRegionSet({near, far, holed, nullptr}).distToPoint({0, 20}, false, false, false)),
               gxContourDefs::EmptyContour);
  EXPECT_THROW(static_cast<void>(
                   gxRegionSet({near, far, nullptr, holed}).distToPoint({0, 20}, false, false, false)),
               gxBadPointer);
}
