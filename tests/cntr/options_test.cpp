// Flags by name answer as the positional ones do.
#include <cntr/options.h>
#include <cntr/regionst.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

Points square(double low, double high) {
  return {{low, low}, {high, low}, {high, high}, {low, high}};
}

const gxRegion& plate() {
  static const gxRegion made(square(0, 10), {square(2, 5)});
  return made;
}

gxRegionSet plates() {
  gxRegionSet set;
  set.add(gxPtrHandle_const<gxRegion>(new gxRegion(plate())));
  set.add(gxPtrHandle_const<gxRegion>(new gxRegion(square(20, 21))));
  return set;
}

constexpr auto kWith = gxHoles::eConsidered;
constexpr auto kWithout = gxHoles::eIgnored;

TEST(NamedFlags, HolesAreTakenOutOrNot) {
  EXPECT_EQ(plate().area(kWith), 91.0);
  EXPECT_EQ(plate().area(kWithout), 100.0);
  EXPECT_EQ(plate().centerOfMass(kWith), plate().centerOfMass(true));
  EXPECT_EQ(plate().centerOfMass(kWithout), V(5, 5));
  EXPECT_NE(plate().centerOfMass(kWith), V(5, 5));
  EXPECT_EQ(plate().inertiaMatrix(kWithout), plate().inertiaMatrix(false));
  EXPECT_THROW(plate().inertiaMatrix(kWith), gxContourDefs::BadParams);
  EXPECT_FALSE(plate().inside({3, 3}, kWith));
  EXPECT_TRUE(plate().inside({3, 3}, kWithout));
  const Points places = {{3, 3}, {8, 8}, {12, 3}};
  EXPECT_EQ(plate().inside(places, kWith), (std::vector<bool>{false, true, false}));
  EXPECT_EQ(plate().inside(places, kWithout), (std::vector<bool>{true, true, false}));
}

TEST(NamedFlags, ASetTakesThemToo) {
  const gxRegionSet set = plates();
  EXPECT_EQ(set.area(kWith), 92.0);
  EXPECT_EQ(set.area(kWithout), 101.0);
  EXPECT_EQ(set.centerOfMass(kWith), set.centerOfMass(true));
  EXPECT_EQ(set.centerOfMass(kWithout), set.centerOfMass(false));
  EXPECT_NE(set.centerOfMass(kWith), set.centerOfMass(kWithout));
  EXPECT_EQ(set.inertiaMatrix(kWithout), set.inertiaMatrix(false));
  EXPECT_THROW(set.inertiaMatrix(kWith), gxContourDefs::BadParams);
  EXPECT_FALSE(set.inside({3, 3}, kWith));
  EXPECT_TRUE(set.inside({3, 3}, kWithout));
  EXPECT_EQ(set.inside({{3, 3}, {20.5, 20.5}}, kWith), (std::vector<bool>{false, true}));
  EXPECT_EQ(set.distToPoint({8, 8}, {}), 2.0);
  EXPECT_EQ(set.distToPoint({8, 8}, {.insideIsZero = true}), 0.0);
  EXPECT_EQ(set.distToPoint({10, 8}, {.vertexOnly = true}), 2.0);
  EXPECT_EQ(set.distToPoint({3, 3.5}, {.considerHoles = true, .insideIsZero = true}), 1.0);
  EXPECT_EQ(set.distToPoint({3, 3.5}, {.considerHoles = false, .insideIsZero = true}), 0.0);
}

TEST(NamedFlags, NearestIsOnABorderAndCountsHolesUnlessItSaysOtherwise) {
  EXPECT_EQ(plate().distToPoint({5.5, 3}, gxNearestOptions{}), 0.5);
  EXPECT_EQ(plate().distToPoint({5.5, 3}, {.vertexOnly = true}),
            plate().distToPoint({5.5, 3}, true, true, false));
  EXPECT_EQ(plate().distToPoint({9, 1}, {.vertexOnly = true, .considerHoles = false}),
            plate().distToPoint({9, 1}, true, false, false));
  EXPECT_EQ(plate().distToPoint({8, 3}, {.insideIsZero = true}), 0.0);
  EXPECT_EQ(plate().closestPoint({5.5, 3}, {.vertexOnly = false}), V(5, 3));
  EXPECT_EQ(plate().closestPoint({5.5, 4.8}, {.vertexOnly = true}), V(5, 5));
  EXPECT_EQ(plate().closestPoint({4.8, 4.8}, {.vertexOnly = true, .considerHoles = false}),
            plate().closestPoint({4.8, 4.8}, true, false));
  EXPECT_EQ(plate().closestPoints({{5.5, 3}, {9, 3}}, {.considerHoles = true}),
            (Points{{5, 3}, {10, 3}}));
}

TEST(NamedFlags, CrossingsWithHolesAndAtTheEndsOfASegment) {
  const gxLineSeg through(V(-1, 3), V(11, 3));
  EXPECT_EQ(plate().intersections(through, gxContacts::eCounted).size(), 2U);
  EXPECT_EQ(plate().intersections(through, gxContacts::eCounted, kWith).size(), 4U);
  const gxLineSeg fromTheBorder(V(0, 3), V(11, 3));
  EXPECT_EQ(plate().intersections(fromTheBorder, gxContacts::eCounted).size(), 2U);
  EXPECT_EQ(plate().intersections(fromTheBorder, gxContacts::eLeftOut).size(), 1U);
  const gxContour line({{-1, 3}, {11, 3}}, false);
  EXPECT_EQ(plate().intersections(line, kWithout).size(), 2U);
  EXPECT_EQ(plate().intersections(line, kWith).size(), 4U);
  const gxContour contour(square(0, 10));
  EXPECT_EQ(contour.intersections(fromTheBorder, gxContacts::eCounted).size(), 2U);
  EXPECT_EQ(contour.intersections(fromTheBorder, gxContacts::eLeftOut).size(), 1U);
}

}  // namespace
