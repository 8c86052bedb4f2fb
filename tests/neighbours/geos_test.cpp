#include <gxshape/interop/geos.h>
#include <gxshape/interop/geos_wkb.h>

#include <support/random_shapes.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Rings = std::vector<Points>;

bool sameBitsOf(const Points& a, const Points& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!sameBits(a[i], b[i])) return false;
  }
  return true;
}

void expectSameRings(const gxRegion& a, const gxRegion& b) {
  EXPECT_TRUE(sameBitsOf(a.points(), b.points()));
  ASSERT_EQ(a.holes().size(), b.holes().size());
  for (std::size_t i = 0; i < a.holes().size(); ++i) {
    EXPECT_TRUE(sameBitsOf(a.holes()[i]->points(), b.holes()[i]->points())) << "hole " << i;
  }
}

std::vector<gxRegion> someRegions(RandomShapes& random) {
  std::vector<gxRegion> regions;
  const int count = random.integer(0, 3);
  for (int i = 0; i < count; ++i) {
    const OutlineWithHoles shape = random.outlineWithHoles();
    regions.emplace_back(shape.outline, shape.holes);
  }
  return regions;
}

TEST(Geos, GivesRegionsBackBitForBit) {
  const gxGeos geos;
  RandomShapes random("GEOS regions", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const std::vector<gxRegion> regions = someRegions(random);
    const gxGeosGeometry there = gfToGeos(geos, regions);
    const std::vector<gxRegion> back = gfRegionsFromGeos(geos, *there);
    ASSERT_EQ(back.size(), regions.size());
    for (std::size_t i = 0; i < back.size(); ++i) expectSameRings(back[i], regions[i]);
  }
}

TEST(Geos, GivesAnyOutlineOfTwoAndMorePointsBackBitForBit) {
  const gxGeos geos;
  RandomShapes random("GEOS outlines", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    if (points.size() == 1) continue;
    if (std::any_of(points.begin(), points.end(),
                    [](const V& p) { return !std::isfinite(p.x()) || !std::isfinite(p.y()); })) {
      continue;  // GEOS takes a ring that begins with a NaN for an open one
    }
    const gxGeosGeometry line = gfToGeos(geos, gxContour(points, false));
    EXPECT_TRUE(sameBitsOf(gfPointsFromGeos(geos, *line, false), points));
    // A ring that repeats its first point at the end loses that, once: it is how GEOS has all rings.
    const gxGeosGeometry ring = gfToGeos(geos, gxContour(points, true));
    const Points back = gfPointsFromGeos(geos, *ring, true);
    EXPECT_TRUE(sameBitsOf(back, points));
  }
}

TEST(Geos, GivesTheSameRegionsByWellKnownBinary) {
  const gxGeos geos;
  RandomShapes random("GEOS by WKB", 10'000);
  gxRecord record;
  gxRecord back;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    const gxRegion region(shape.outline, shape.holes);
    record.assign(region);
    const gxGeosGeometry there = gfToGeosByWkb(geos, record);
    EXPECT_EQ(GEOSEqualsExact_r(geos.context(), there.get(), gfToGeos(geos, region).get(), 0.0), 1);
    gfFromGeosByWkb(geos, *there, back);
    expectSameRings(back.toRegion(), region);
  }
}

TEST(Geos, MeasuresWhatWeMeasure) {
  const gxGeos geos;
  const gxRegion plate({{0, 0}, {40, 0}, {40, 30}, {0, 30}},
                       Rings{{{25, 10}, {35, 10}, {35, 20}, {25, 20}}});
  const gxGeosGeometry there = gfToGeos(geos, plate);
  EXPECT_EQ(GEOSGeomTypeId_r(geos.context(), there.get()), GEOS_POLYGON);
  double value = 0;
  ASSERT_EQ(GEOSArea_r(geos.context(), there.get(), &value), 1);
  EXPECT_EQ(value, 1100);
  ASSERT_EQ(GEOSLength_r(geos.context(), there.get(), &value), 1);
  EXPECT_EQ(value, 180);
}

TEST(Geos, HasIslandsAsPolygonsOfTheirOwn) {
  const gxGeos geos;
  gxRegion hole({{1, 1}, {1, 8}, {8, 8}, {8, 1}});
  hole.addHole({{3, 3}, {4, 3}, {4, 4}});
  gxRegion outer({{0, 0}, {9, 0}, {9, 9}, {0, 9}});
  outer.addHole(hole);
  const gxGeosGeometry there = gfToGeos(geos, outer);
  EXPECT_EQ(GEOSGeomTypeId_r(geos.context(), there.get()), GEOS_MULTIPOLYGON);
  EXPECT_EQ(gfRegionsFromGeos(geos, *there).size(), 2U);
}

gxGeosGeometry fromText(const gxGeos& geos, const char* text) {
  return {geos.check(GEOSGeomFromWKT_r(geos.context(), text), "text"), {geos.context()}};
}

TEST(Geos, FindsTheRegionsInACollection) {
  const gxGeos geos;
  const gxGeosGeometry all =
      fromText(geos,
               "GEOMETRYCOLLECTION (POINT (9 9), POLYGON ((0 0, 1 0, 1 1, 0 0)), "
               "MULTIPOLYGON (((5 0, 6 0, 6 1, 5 0)), ((7 0, 8 0, 8 1, 7 0))), "
               "LINESTRING (0 0, 1 1), GEOMETRYCOLLECTION (POLYGON ((3 0, 4 0, 4 1, 3 0))))");
  const std::vector<gxRegion> regions = gfRegionsFromGeos(geos, *all);
  ASSERT_EQ(regions.size(), 4U);
  EXPECT_EQ(regions[0][0], V(0, 0));
  EXPECT_EQ(regions[1][0], V(5, 0));
  EXPECT_EQ(regions[2][0], V(7, 0));
  EXPECT_EQ(regions[3][0], V(3, 0));
  EXPECT_EQ(gfRegionsFromGeos(geos, *fromText(geos, "LINEARRING (0 0, 1 0, 1 1, 0 0)"))[0].size(), 3U);
  EXPECT_TRUE(gfRegionsFromGeos(geos, *fromText(geos, "GEOMETRYCOLLECTION EMPTY")).empty());
  EXPECT_TRUE(gfRegionsFromGeos(geos, *fromText(geos, "POLYGON EMPTY"))[0].points().empty());
}

TEST(Geos, DropsHeights) {
  const gxGeos geos;
  const gxGeosGeometry high = fromText(geos, "POLYGON Z ((0 0 5, 1 0 6, 1 1 7, 0 0 5))");
  EXPECT_EQ(gfRegionsFromGeos(geos, *high)[0].points(), (Points{{0, 0}, {1, 0}, {1, 1}}));
}

TEST(Geos, RefusesWhatHasNoAreaWithItsWords) {
  const gxGeos geos;
  EXPECT_THROW(gfRegionsFromGeos(geos, *fromText(geos, "POINT (1 2)")), gxContourDefs::BadParams);
  try {
    static_cast<void>(fromText(geos, "POLYGON ((0 0, 1"));
    ADD_FAILURE() << "nothing was thrown";
  } catch (const gxContourDefs::BadParams& error) {
    EXPECT_EQ(error.message().rfind(L"GEOS: text: ParseException", 0), 0U);
  }
  EXPECT_NE(geos.error(), "");
  const gxGeosGeometry polygon = fromText(geos, "POLYGON ((0 0, 1 0, 1 1, 0 0))");
  EXPECT_THROW(gfPointsFromGeos(geos, *polygon, true), gxContourDefs::BadParams);
}

TEST(Geos, RepeatsASinglePointAndKeepsNone) {
  const gxGeos geos;
  const gxGeosGeometry line = gfToGeos(geos, gxContour({{3, 4}}, false));
  EXPECT_EQ(gfPointsFromGeos(geos, *line, false), (Points{{3, 4}, {3, 4}}));
  EXPECT_EQ(gfPointsFromGeos(geos, *gfGeosRing(geos, {{3, 4}}), false),
            (Points{{3, 4}, {3, 4}, {3, 4}}));
  EXPECT_EQ(GEOSisEmpty_r(geos.context(), gfToGeos(geos, gxRegion()).get()), 1);
  EXPECT_THROW(gfToGeos(geos, gfRegionOfRings({}, {{{0, 0}, {1, 0}, {1, 1}}})),
               gxContourDefs::BadParams);
}

}  // namespace
