#include <gxshape/interop/boost_geometry.h>

#include <overlay/boolean.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>
#include <boost/geometry.hpp>

#include <cmath>

namespace {

namespace bg = boost::geometry;
using V = gxVector<2>;
using Points = std::vector<V>;
using Rings = std::vector<Points>;

// Counter-clockwise outline, clockwise hole: what the traits declare.
gxRegion plate() {
  return gxRegion({{0, 0}, {40, 0}, {40, 30}, {0, 30}}, Rings{{{25, 10}, {25, 20}, {35, 20}, {35, 10}}});
}

TEST(BoostGeometry, AsksARegionWhereItLies) {
  const gxRegion region = plate();
  EXPECT_EQ(bg::area(region), 1100);
  EXPECT_EQ(bg::perimeter(region), 180);
  EXPECT_EQ(bg::num_points(region), 8U);
  EXPECT_EQ(bg::num_interior_rings(region), 1U);
  EXPECT_TRUE(bg::within(V(5, 5), region));
  EXPECT_FALSE(bg::within(V(30, 15), region));
  EXPECT_EQ(bg::distance(V(30, 12), region), 2);
  V centre;
  bg::centroid(region, centre);
  EXPECT_NEAR(centre.x(), region.centerOfMass(true).x(), 1e-12);
  EXPECT_TRUE(bg::is_valid(region));
  EXPECT_EQ(static_cast<const void*>(&bg::exterior_ring(region)),
            static_cast<const void*>(&region.points()));
}

TEST(BoostGeometry, AsksRingsLinesBoxesAndSeveralRegions) {
  const gxContour square({{0, 0}, {4, 0}, {4, 4}, {0, 4}});
  EXPECT_EQ(bg::area(square.points()), 16);
  EXPECT_EQ(bg::perimeter(square.points()), 16);
  const gxContour path({{0, 0}, {3, 4}, {3, 5}}, false);
  EXPECT_EQ(bg::length(gxBoostLine(path)), 6);
  EXPECT_EQ(bg::num_points(gxBoostLine()), 0U);
  EXPECT_EQ(bg::area(gxRect(V(1, 2), V(3, 4))), 12);
  EXPECT_TRUE(bg::within(V(2, 3), gxRect(V(1, 2), V(3, 4))));
  EXPECT_FALSE(bg::within(V(2, 7), gxRect(V(1, 2), V(3, 4))));
  EXPECT_EQ(bg::area(std::vector<gxRegion>{plate(), plate()}), 2200);
  V point;
  bg::assign_values(point, 3.0, 4.0);
  EXPECT_EQ(point, V(3, 4));
}

TEST(BoostGeometry, ReadsEveryPointAndHole) {
  RandomShapes random("Boost views", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    const gxRegion region(shape.outline, shape.holes);
    std::size_t hole = 0;
    for (const auto& ring : bg::interior_rings(region))
      EXPECT_EQ(&ring, &region.holes()[hole++]->points());
    EXPECT_EQ(hole, region.holes().size());
    double length = gxContour(shape.outline).length();
    for (const Points& ring : shape.holes) length += gxContour(ring).length();
    EXPECT_NEAR(static_cast<double>(bg::perimeter(region)), length, 1e-9 * length);
  }
}

bool sameBitsOf(const Points& a, const Points& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!sameBits(a[i], b[i])) return false;
  }
  return true;
}

// Turned the right way, so what comes back is the ring or the ring in the other direction.
bool sameRing(const Points& a, const Points& b) {
  Points turned = b;
  std::reverse(turned.begin(), turned.end());
  return sameBitsOf(a, b) || sameBitsOf(a, turned);
}

TEST(BoostGeometry, GivesBackWhatItWasGiven) {
  RandomShapes random("Boost round trip", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    std::vector<gxRegion> regions{gxRegion(shape.outline, shape.holes)};
    if (random.chance(0.5)) regions.push_back(gfRegionOfRings(random.outline(), {}));
    const gxBoostMultiPolygon there = gfToBoost(regions);
    const std::vector<gxRegion> back = gfRegionsFromBoost(there);
    ASSERT_EQ(back.size(), regions.size());
    EXPECT_GT(bg::area(there[0]), 0.0);
    for (std::size_t i = 0; i < back.size(); ++i) {
      EXPECT_TRUE(sameRing(back[i].points(), regions[i].points()));
      ASSERT_EQ(back[i].holes().size(), regions[i].holes().size());
      for (std::size_t k = 0; k < back[i].holes().size(); ++k) {
        EXPECT_TRUE(sameRing(back[i].holes()[k]->points(), regions[i].holes()[k]->points()));
        EXPECT_LT(bg::area(back[i].holes()[k]->points()), 0.0);
      }
    }
  }
}

TEST(BoostGeometry, JoinsWhatOursJoin) {
  const gxRegion bar({{-5, 12}, {45, 12}, {45, 18}, {-5, 18}});
  const auto a = gfToBoost({plate()});
  const auto b = gfToBoost({bar});
  gxBoostMultiPolygon joined;
  bg::union_(a, b, joined);
  double area = 0;
  for (const gxRegion& region : gfRegionsFromBoost(joined)) area += region.area(true);
  EXPECT_NEAR(area, gfUnion(plate(), bar).area(true), 1e-9);
}

TEST(BoostGeometry, HasIslandsAsPolygonsOfTheirOwn) {
  gxRegion hole({{1, 1}, {1, 8}, {8, 8}, {8, 1}});
  hole.addHole({{3, 3}, {4, 3}, {4, 4}});
  gxRegion outer({{0, 0}, {9, 0}, {9, 9}, {0, 9}});
  outer.addHole(hole);
  const auto there = gfToBoost({outer});
  ASSERT_EQ(there.size(), 2U);
  EXPECT_EQ(bg::area(there), 81 - 49 + 0.5);
}

}  // namespace
