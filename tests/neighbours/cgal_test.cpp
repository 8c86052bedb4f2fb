#include <gxshape/interop/cgal.h>

#include <overlay/boolean.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>

#include <CGAL/Boolean_set_operations_2.h>
#include <CGAL/Exact_predicates_exact_constructions_kernel.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <gtest/gtest.h>

#include <list>

namespace {

using Exact = CGAL::Exact_predicates_exact_constructions_kernel;
using Inexact = CGAL::Exact_predicates_inexact_constructions_kernel;
using V = gxVector<2>;
using Points = std::vector<V>;
using Rings = std::vector<Points>;

// A number that may be exact has no sign at zero.
bool sameValues(const Points& a, const Points& b) {
  return a == b;
}

template <class Kernel>
void expectBack(const std::string& tag) {
  RandomShapes random(tag, 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    const gxRegion region(shape.outline, shape.holes);
    const auto there = gfToCgal<Kernel>(region);
    ASSERT_EQ(there.size(), 1U);
    const gxRegion back = gfRegionFromCgal(there[0]);
    EXPECT_TRUE(sameValues(back.points(), region.points()));
    ASSERT_EQ(back.holes().size(), region.holes().size());
    for (std::size_t i = 0; i < back.holes().size(); ++i) {
      EXPECT_TRUE(sameValues(back.holes()[i]->points(), region.holes()[i]->points()));
    }
  }
}

TEST(Cgal, GivesRegionsBackFromExactNumbers) {
  expectBack<Exact>("CGAL exact");
}
TEST(Cgal, GivesRegionsBackFromDoubles) {
  expectBack<Inexact>("CGAL doubles");
}

TEST(Cgal, GivesAnyFiniteOutlineBack) {
  RandomShapes random("CGAL outlines", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    if (std::any_of(points.begin(), points.end(),
                    [](const V& p) { return !std::isfinite(p.x()) || !std::isfinite(p.y()); })) {
      continue;
    }
    EXPECT_TRUE(sameValues(gfPointsFromCgal(gfToCgal<Inexact>(points)), points));
    EXPECT_TRUE(sameValues(gfRegionFromCgal(gfToCgal<Exact>(points)).points(), points));
  }
}

TEST(Cgal, TurnsRingsForSetOperationsOnRequest) {
  const Points square{{0, 0}, {4, 0}, {4, 4}, {0, 4}};
  const gxRegion right(square, Rings{{{1, 1}, {1, 2}, {2, 2}}});
  const gxRegion wrong(reversed(square), Rings{{{1, 1}, {2, 2}, {1, 2}}});
  for (const gxRegion& region : {right, wrong}) {
    const auto there = gfToCgal<Exact>(region, gxCgalRings::eForSets)[0];
    EXPECT_TRUE(there.outer_boundary().is_counterclockwise_oriented());
    EXPECT_TRUE(there.holes_begin()->is_clockwise_oriented());
    EXPECT_EQ(gfRegionFromCgal(there)[0], V(0, 0));
  }
  EXPECT_TRUE(gfToCgal<Exact>(wrong)[0].outer_boundary().is_clockwise_oriented());
  const gxRegion bow({{0, 0}, {4, 4}, {4, 0}, {0, 4}});
  EXPECT_TRUE(sameValues(gfRegionFromCgal(gfToCgal<Exact>(bow, gxCgalRings::eForSets)[0]).points(),
                         bow.points()));
}

TEST(Cgal, JoinsWhatOursJoin) {
  const gxRegion plate({{0, 0}, {40, 0}, {40, 30}, {0, 30}},
                       Rings{{{25, 10}, {35, 10}, {35, 20}, {25, 20}}});
  const gxRegion bar({{-5, 12}, {45, 12}, {45, 18}, {-5, 18}});
  std::list<CGAL::Polygon_with_holes_2<Exact>> joined;
  const auto a = gfToCgal<Exact>(plate, gxCgalRings::eForSets);
  const auto b = gfToCgal<Exact>(bar, gxCgalRings::eForSets);
  CGAL::Polygon_with_holes_2<Exact> both;
  ASSERT_TRUE(CGAL::join(a[0], b[0], both));
  EXPECT_EQ(gfRegionFromCgal(both).area(true), gfUnion(plate, bar).area(true));
}

TEST(Cgal, HasIslandsAsPolygonsOfTheirOwn) {
  gxRegion hole({{1, 1}, {1, 8}, {8, 8}, {8, 1}});
  hole.addHole({{3, 3}, {4, 3}, {4, 4}});
  gxRegion outer({{0, 0}, {9, 0}, {9, 9}, {0, 9}});
  outer.addHole(hole);
  const auto there = gfToCgal<Inexact>(outer);
  ASSERT_EQ(there.size(), 2U);
  EXPECT_EQ(there[1].outer_boundary().size(), 3U);
  EXPECT_EQ(gfToCgal<Inexact>(gxRegion())[0].outer_boundary().size(), 0U);
}

}  // namespace
