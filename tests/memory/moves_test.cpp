// Moves take over what there is: they allocate nothing, whatever the shape remembers.
//
// Covers ch_core/cntrtmpl_contour.cpp
// Covers ch_core/cntrtmpl_region.cpp
// Covers ch_core/cntrtmpl_set.cpp
#include <ch_core/cntrtmpl.h>
#include <memory/failing_allocations.h>

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;
using Handle = gxPtrHandle_const<gxRegion>;
using EdgeRegionHandle = gxPtrHandle_const<gxRegionT<gxEdgelet>>;

Points square(double low, double high) {
  return {{low, low}, {high, low}, {high, high}, {low, high}};
}
std::vector<gxEdgelet> edges() {
  std::vector<gxEdgelet> result;
  for (const gxVector<2>& p : square(0, 10)) result.emplace_back(p, 7, gxAngle8(9));
  return result;
}

// Leaves as much behind in the memory as there is.
void ask(const gxContour& contour) {
  contour.length();
  contour.isSelfIntersecting();
  contour.encloseRect(gxXform<2>::I);
  contour.extremalVertexIndex(gxRadian(1));
  contour.vertexIndex(gxVector<2>(0, 0), 1);
  gxRegion hull;
  contour.convexHull(hull);
  for (int i = 0; i < 100; ++i) contour.closestPoint(gxVector<2>(i, i), false);
}
void ask(const gxRegion& region) {
  ask(static_cast<const gxContour&>(region));
  region.area(true);
  for (int i = 0; i < 100; ++i) region.inside(gxVector<2>(i, i), true);
  gxRegion result;
  region.regularize(result);
}
void ask(const gxRegionSet& set) {
  set.area(true);
  set.encloseRect(gxXform<2>::I);
  for (int i = 0; i < 100; ++i) set.inside(gxVector<2>(i, i), true);
  gxRegionSet result;
  set.regularize(result);
}

// Constructs and assigns by moving, between shapes that are full and shapes that are empty.
template <class T>
void movesAllocateNothing(const std::function<T()>& make) {
  T source = make();
  T target = make();
  T empty;
  ask(source);
  ask(target);
  const memory_test::Allocations allocations;
  T taken(std::move(source));
  EXPECT_EQ(allocations.count(), 0);
  target = std::move(taken);
  EXPECT_EQ(allocations.count(), 0);
  target = std::move(empty);
  EXPECT_EQ(allocations.count(), 0);
  std::swap(target, source);
  EXPECT_EQ(allocations.count(), 0);
}

}  // namespace

TEST(Moves, OfContoursAllocateNothing) {
  movesAllocateNothing<gxContour>([] { return gxContour(square(0, 10), true, 4); });
}

TEST(Moves, OfRegionsAllocateNothing) {
  movesAllocateNothing<gxRegion>([] {
    gxRegion region(square(0, 10));
    region.holes({Handle(new gxRegion(square(1, 2)))});
    return region;
  });
}

TEST(Moves, OfSetsAllocateNothing) {
  movesAllocateNothing<gxRegionSet>([] {
    std::vector<Handle> regions;
    for (int i = 0; i < 20; ++i) regions.emplace_back(new gxRegion(square(3 * i, 3 * i + 2)));
    return gxRegionSet(regions);
  });
}

TEST(Moves, OfEdgePointShapesAllocateNothing) {
  movesAllocateNothing<gxContourT<gxEdgelet>>([] { return gxContourT<gxEdgelet>(edges()); });
  movesAllocateNothing<gxRegionT<gxEdgelet>>([] {
    gxRegionT<gxEdgelet> region(edges());
    region.gxRegion::holes({Handle(new gxRegion(square(1, 2)))});
    region.holes({EdgeRegionHandle(new gxRegionT<gxEdgelet>(edges()))});
    return region;
  });
  movesAllocateNothing<gxRegionSetT<gxEdgelet>>(
      [] { return gxRegionSetT<gxEdgelet>({EdgeRegionHandle(new gxRegionT<gxEdgelet>(edges()))}); });
}

TEST(Moves, BetweenTheBasesOfPlainShapesAllocateNothing) {
  gxRegion region(square(0, 10));
  gxContour contour(square(0, 3));
  ask(region);
  const memory_test::Allocations allocations;
  static_cast<gxContour&>(region) = std::move(contour);
  contour = std::move(static_cast<gxContour&>(region));
  gxContour taken(std::move(static_cast<gxContour&>(region)));
  EXPECT_EQ(allocations.count(), 0);
  EXPECT_EQ(contour.points().size(), 4U);
  EXPECT_TRUE(taken.points().empty());
}

TEST(MovedInPoints, AreTakenOverWithoutACopyOrAnAllocation) {
  Points outline = square(0, 10);
  const gxVector<2>* const place = outline.data();
  Points second = square(0, 10);
  const gxVector<2>* const secondPlace = second.data();
  const memory_test::Allocations allocations;
  const gxContour contour(std::move(outline), false, 7);
  const gxRegion region(std::move(second));
  EXPECT_EQ(allocations.count(), 0);
  EXPECT_EQ(contour.points().data(), place);
  EXPECT_EQ(region.points().data(), secondPlace);
  EXPECT_FALSE(contour.isClosed());
  EXPECT_EQ(contour.label(), 7U);
  EXPECT_EQ(contour, gxContour(square(0, 10), false));
  EXPECT_EQ(region.area(false), 100.0);
}

TEST(MovedInPoints, OfARegionOnTheHeapCostOneAllocationAndCopiedOnesTwo) {
  Points outline = square(0, 10);
  const Points kept = square(0, 10);
  const memory_test::Allocations moved;
  const Handle first = gfMakeHandle<gxRegion>(std::move(outline));
  EXPECT_EQ(moved.count(), 1);
  const memory_test::Allocations copied;
  const Handle second = gfMakeHandle<gxRegion>(kept);
  EXPECT_EQ(copied.count(), 2);
  EXPECT_EQ(*first, *second);
}

TEST(MovedInPoints, AreRepairedAsCopiedOnesAre) {
  const Points bowTie{{0, 0}, {4, 4}, {4, 0}, {0, 4}};
  const gxRegion copied(bowTie, gxContourDefs::eRegularize);
  const gxRegion moved(Points(bowTie), gxContourDefs::eRegularize);
  EXPECT_EQ(moved, copied);
  EXPECT_NE(moved.points(), bowTie);
}

TEST(FreshShapes, AskedForTheMeasuresOfEveryDayAllocateTheirPointsAlone) {
  const Points outline = square(0, 10);
  const memory_test::Allocations allocations;
  const gxRegion region(outline);
  region.centerOfMass(false);
  region.area(false);
  region.length();
  region.diameter(gxContourDefs::eFirstPoint);
  EXPECT_TRUE(region.inside({5, 5}, false));
  EXPECT_FALSE(region.isSelfIntersecting());
  EXPECT_EQ(allocations.count(), 1);
}
