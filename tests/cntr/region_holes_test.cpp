#include <cntr/region.h>

#include <support/random_shapes.h>
#include <support/region_shapes.h>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace {

bool isNowhere(const V& point) {
  return point.x() != point.x() && point.y() != point.y();
}

bool refuses(const gxRegion& region, const std::vector<Handle>& holes) {
  gxRegion copy(region);
  try {
    copy.holes(holes);
  } catch (const gxException&) {
    return true;
  }
  return false;
}

TEST(RegionHoleConflict, NoHolesNoConflict) {
  const gxHoleConflict conflict = gxRegion(square(0, 0, 10)).firstHoleConflict({});
  EXPECT_FALSE(conflict.found);
  EXPECT_EQ(conflict.hole, -1);
  EXPECT_TRUE(isNowhere(conflict.point));
}

TEST(RegionHoleConflict, HolesThatAreWellInsideOrOutsideAreNone) {
  const gxRegion region(square(0, 0, 10));
  const gxHoleConflict conflict = region.firstHoleConflict(
      {shared(gxRegion(square(1, 1, 2))), shared(gxRegion(square(20, 1, 2))), shared(gxRegion())});
  EXPECT_FALSE(conflict.found);
  EXPECT_EQ(conflict.hole, -1);
  EXPECT_TRUE(isNowhere(conflict.point));
}

TEST(RegionHoleConflict, TheFirstHoleOfTheListIsNamedWithItsFirstCrossing) {
  const gxRegion region(square(0, 0, 10));
  const gxHoleConflict conflict =
      region.firstHoleConflict({shared(gxRegion(square(1, 1, 2))), shared(gxRegion(square(8, 4, 4))),
                                shared(gxRegion(square(-1, 4, 2)))});
  EXPECT_TRUE(conflict.found);
  EXPECT_EQ(conflict.hole, 1);
  // Its closing edge runs down the left side and meets nothing; its first edge runs from (8, 4) to (12, 4).
  EXPECT_EQ(conflict.point, V(10, 4));
}

//   . . . . . .
//   . ####### .      A hole that an outline tracer found: its corner is the same pixel as one of the
//   . #o o###       outline's, where the ring is thinnest.
//   . ##o####
TEST(RegionHoleConflict, AHoleThatTouchesItsOutlineAtOnePixelIsNamedWithThatPixel) {
  const gxRegion traced(pointsOf("0 0, 6 0, 6 6, 3 6, 2 5, 0 6"));
  const gxHoleConflict conflict =
      traced.firstHoleConflict({shared(gxRegion(pointsOf("2 5, 1 3, 3 3")))});
  EXPECT_TRUE(conflict.found);
  EXPECT_EQ(conflict.hole, 0);
  EXPECT_NEAR(conflict.point.distance(V(2, 5)), 0.0, 1e-6);
}

TEST(RegionHoleConflict, ANullHandleIsOneWithoutAPlace) {
  const gxRegion region(square(0, 0, 10));
  const gxHoleConflict conflict =
      region.firstHoleConflict({shared(gxRegion(square(1, 1, 2))), Handle()});
  EXPECT_TRUE(conflict.found);
  EXPECT_EQ(conflict.hole, 1);
  EXPECT_TRUE(isNowhere(conflict.point));
}

TEST(RegionHoleConflict, AnyHoleOfARegionWithoutAnEdgeIsOneWithoutAPlace) {
  const gxRegion point(Points{{1, 2}});
  EXPECT_TRUE(gxRegion().firstHoleConflict({shared(gxRegion())}).found);
  const gxHoleConflict conflict = point.firstHoleConflict({shared(gxRegion(square(0, 0, 10)))});
  EXPECT_TRUE(conflict.found);
  EXPECT_EQ(conflict.hole, 0);
  EXPECT_TRUE(isNowhere(conflict.point));
  EXPECT_FALSE(gxRegion(Points{{1, 2}, {3, 4}}).firstHoleConflict({shared(gxRegion())}).found);
}

TEST(RegionHoleConflict, TheRegionAndItsHolesStayAsTheyAre) {
  const gxRegion region = squareWithHole();
  const gxRegion* hole = region.holes()[0].get();
  EXPECT_TRUE(region.firstHoleConflict({shared(gxRegion(square(9, 9, 3)))}).found);
  ASSERT_EQ(region.holes().size(), 1u);
  EXPECT_EQ(region.holes()[0].get(), hole);
  EXPECT_EQ(region.area(true), 96.0);
}

bool same(const V& a, const V& b) {
  return std::bit_cast<std::uint64_t>(a.x()) == std::bit_cast<std::uint64_t>(b.x()) &&
         std::bit_cast<std::uint64_t>(a.y()) == std::bit_cast<std::uint64_t>(b.y());
}

// The list is refused exactly where a conflict is named; it is the first hole that has crossings, and
// the first of these.
TEST(RegionHoleConflict, RandomHolesAreNamedWhereTheSetterRefusesThem) {
  RandomShapes random("region hole conflict", 600);
  long rounds = 0;
  long found = 0;
  long crossed = 0;
  for (; random.next(); ++rounds) {
    SCOPED_TRACE(random.trace());
    const Points outline = random.outline();
    const gxRegion region(outline);
    std::vector<Handle> holes;
    const int count = random.integer(0, 4);
    for (int i = 0; i < count; ++i) {
      Points hole =
          random.chance(0.1) ? random.outline() : random.star(random.integer(3, 12), V(0, 0), 0.5, 1);
      if (!outline.empty() && random.chance(0.9)) {
        const V about = random.pointNear(outline);
        for (V& p : hole) p = about + p * random.uniform(1e-3, 1);
      }
      holes.push_back(random.chance(0.02) ? Handle() : shared(gxRegion(hole)));
    }
    const gxHoleConflict conflict = region.firstHoleConflict(holes);
    EXPECT_EQ(conflict.found, refuses(region, holes));
    EXPECT_EQ(conflict.found, conflict.hole >= 0);
    found += conflict.found;
    for (long i = 0; i < static_cast<long>(holes.size()); ++i) {
      const Handle& hole = holes[static_cast<std::size_t>(i)];
      if (conflict.found && i == conflict.hole) {
        if (isNowhere(conflict.point)) break;  // null, or the region has no edge
        const Points hits = region.intersections(*hole);
        ASSERT_FALSE(hits.empty());
        EXPECT_TRUE(same(conflict.point, hits.front()));
        ++crossed;
        break;
      }
      EXPECT_TRUE(region.intersections(*hole).empty()) << "an earlier hole";
    }
  }
  EXPECT_GT(crossed, 100 * random.share());
  EXPECT_LT(10 * found, 9 * rounds);
}

}  // namespace
