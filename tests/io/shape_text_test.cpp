// Covers include/gxshape/interop/text.h
#include <gxshape/interop/text.h>

#include <gtest/gtest.h>
#include <io/record.h>
#include <io/wkt.h>
#include <support/random_shapes.h>
#include <support/region_shapes.h>
#include <support/same_bits.h>

#include <limits>
#include <sstream>

namespace {

template <class T>
std::string printed(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

TEST(ShapeText, IsWellKnownText) {
  EXPECT_EQ(printed(gxContour({{0, 0}, {0.1, 0}, {4, -3}})), "LINEARRING (0 0, 0.1 0, 4 -3, 0 0)");
  EXPECT_EQ(printed(gxContour({{0, 0}, {1e300, -0.0}}, false)), "LINESTRING (0 0, 1e+300 -0)");
  EXPECT_EQ(printed(squareWithHole()),
            "POLYGON ((0 0, 10 0, 10 10, 0 10, 0 0), (4 4, 6 4, 6 6, 4 6, 4 4))");
  EXPECT_EQ(printed(gxRegionSet({shared(gxRegion(square(0, 0, 1))), shared(gxRegion(square(2, 0, 1)))})),
            "MULTIPOLYGON (((0 0, 1 0, 1 1, 0 1, 0 0)), ((2 0, 3 0, 3 1, 2 1, 2 0)))");
}

TEST(ShapeText, OfNothingAndOfNumbersThatAreNone) {
  EXPECT_EQ(printed(gxContour()), "LINEARRING EMPTY");
  EXPECT_EQ(printed(gxContour({}, false)), "LINESTRING EMPTY");
  EXPECT_EQ(printed(gxRegion()), "POLYGON EMPTY");
  EXPECT_EQ(printed(gxRegionSet()), "MULTIPOLYGON EMPTY");
  EXPECT_EQ(printed(gxRegionSet({shared(gxRegion())})), "MULTIPOLYGON (EMPTY)");
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(
      printed(gxContour({{std::numeric_limits<double>::quiet_NaN(), infinity}, {-infinity, 0}}, false)),
      "LINESTRING (NaN Infinity, -Infinity 0)");
  EXPECT_EQ(printed(gfRegionOfRings({}, {square(0, 0, 1)})),
            "POLYGON (EMPTY, (0 0, 1 0, 1 1, 0 1, 0 0))");
}

TEST(ShapeText, OfIslandsHasThemAsPartsOfTheirOwn) {
  gxRegion hole(square(1, 1, 7));
  hole.addHole(square(3, 3, 1));
  gxRegion outer(square(0, 0, 9));
  outer.addHole(hole);
  EXPECT_EQ(printed(outer),
            "MULTIPOLYGON (((0 0, 9 0, 9 9, 0 9, 0 0), (1 1, 8 1, 8 8, 1 8, 1 1)), ((3 3, 4 3, 4 4, 3 "
            "4, 3 3)))");
}

TEST(ShapeText, IsThatOfTheWriter) {
  RandomShapes random("shapes as text", 10'000);
  gxRecord record;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    const gxRegion region(shape.outline, shape.holes);
    std::string expected;
    record.assign(region);
    gfAppendWkt(record, expected);
    EXPECT_EQ(gfText(region), expected);
    expected.clear();
    const gxRegionSet set({shared(region), shared(gxRegion(random.finiteOutline()))});
    record.assign(set);
    gfAppendWkt(record, expected);
    EXPECT_EQ(gfText(set), expected);
  }
}

TEST(ShapeText, ReadsBackBitForBit) {
  RandomShapes random("shapes read back from text", 10'000);
  gxRecord record;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.outline();
    if (std::any_of(points.begin(), points.end(),
                    [](const V& p) { return p.x() != p.x() || p.y() != p.y(); })) {
      continue;  // a ring is closed by a point equal to its first one, which a NaN is not
    }
    record.clear();
    gfReadWkt(gfText(gxRegion(points)), record);
    const gxRegion back = record.toRegion();
    ASSERT_EQ(back.size(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) EXPECT_TRUE(sameBits(back[i], points[i]));
  }
}

TEST(ShapeText, OfPointsPairsEdgePointsAndColours) {
  EXPECT_EQ(printed(gxPoint(0.5, 2)), "(0.5, 2)");
  EXPECT_EQ(printed(gxPair<double>(0.1, -7)), "(0.1, -7)");
  EXPECT_EQ(printed(gxPair<long>(5, -7)), "(5, -7)");
  EXPECT_EQ(printed(gxEdgelet(V(1, 2.5), 30, gxAngle8(64))),
            "(1, 2.5), magnitude 30, angle 64/256 turn");
  EXPECT_EQ(printed(gxColor(1, 2, 255)), "#0102ff");
  EXPECT_EQ(gfText(V(1, 2)), "(1, 2)");
  EXPECT_EQ(gfText(gxCircle(V(0, 0), 2)), "circle at (0, 0), radius 2");
}

TEST(ShapeText, RefusesNullHandlesAndHolesWithoutEnd) {
  gxRegion region = squareWithHole();
  addNullHole(region);
  EXPECT_THROW(gfText(region), gxBadPointer);
  EXPECT_THROW(gfText(gxRegionSet({Handle()})), gxBadPointer);
}

}  // namespace
