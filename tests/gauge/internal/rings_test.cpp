// Covers gauge/internal/border_length.cpp
#include <gauge/internal/border_length.h>
#include <gauge/internal/rings.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/shape_text.h>

#include <cmath>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;

Handle regionOf(const std::string& text, const std::vector<Handle>& holes = {}) {
  gxPtrHandle<gxRegion> region(new gxRegion(pointsOf(text)));
  region->holes(holes);
  return region;
}

TEST(Rings, HolesHaveTheirNumbersAndIslandsComeAfterAllHoles) {
  const Handle island = regionOf("3 3, 4 3, 4 4");
  const Handle first = regionOf("2 2, 5 2, 5 5, 2 5", {island});
  const Handle second = regionOf("6 6, 7 6, 7 7");
  const Handle whole = regionOf("0 0, 9 0, 9 9, 0 9", {first, second});
  const auto rings = gx_ringsOf(*whole);
  ASSERT_EQ(rings.size(), 4U);
  const long depths[] = {0, 1, 1, 2};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(rings[i].number, static_cast<long>(i) - 1);
    EXPECT_EQ(rings[i].depth, depths[i]);
    EXPECT_TRUE(rings[i].closed);
  }
  EXPECT_EQ(rings[2].points[0], gxVector<2>(6, 6));
  EXPECT_EQ(rings[3].points[0], gxVector<2>(3, 3));
}

TEST(Rings, RegionsOfASetCount) {
  gxRegionSet set;
  set.add(regionOf("0 0, 1 0, 1 1"));
  set.add(regionOf("2 0, 3 0, 3 1"));
  const auto rings = gx_ringsOf(set);
  ASSERT_EQ(rings.size(), 2U);
  EXPECT_EQ(rings[1].region, 1);
  EXPECT_EQ(rings[1].number, -1);
  EXPECT_TRUE(gx_ringsOf(gxRegionSet()).empty());
  set.add(nullptr);
  EXPECT_THROW(gx_ringsOf(set), gxBadPointer);
}

TEST(Rings, AnOpenContourIsOpen) {
  EXPECT_FALSE(gx_ringsOf(gxContour(pointsOf("0 0, 1 1"), false))[0].closed);
  EXPECT_TRUE(gx_ringsOf(gxContour(pointsOf("0 0, 1 1")))[0].closed);
}

TEST(Rings, ARegionThatLiesWithinItselfThrows) {
  gxPtrHandle<gxRegion> hole(new gxRegion(pointsOf("1 1, 2 1, 2 2, 1 2")));
  gxPtrHandle<gxRegion> outer(new gxRegion(pointsOf("0 0, 9 0, 9 9, 0 9")));
  outer->holes({Handle(hole)});
  hole->points(pointsOf("-1 -1, 10 -1, 10 10, -1 10"));
  hole->holes({Handle(outer)});
  EXPECT_THROW(gx_ringsOf(*outer), gxContourDefs::BadParams);
  hole->holes({});
}

TEST(Rings, TenThousandLevelsAreWalkedWithoutRecursion) {
  Handle inner;
  for (int level = 0; level < 10000; ++level) {
    gxPtrHandle<gxRegion> region(new gxRegion(pointsOf("0 0, 1 0, 0 1")));
    const double size = 10.0 + level;
    region->points({{-size, -size}, {size, -size}, {size, size}, {-size, size}});
    if (level > 0) region->holes({inner});
    inner = region;
  }
  EXPECT_EQ(gx_ringsOf(*inner).size(), 10000U);
}

TEST(Rings, ANaNInAHoleIsSeen) {
  EXPECT_FALSE(gx_allFinite(gx_ringsOf(*regionOf("0 0, 9 0, 9 9, 0 9, nan 3"))));
  EXPECT_TRUE(gx_allFinite(gx_ringsOf(*regionOf("0 0, 9 0, 9 9, 0 9"))));
}

TEST(BorderLength, ClosedAndOpen) {
  const auto points = pointsOf("0 0, 3 0, 3 4");
  const gx_Frame frame(points);
  const auto length = [&](bool closed) {
    return frame.lengthFrom(gx_ringLength({points, closed}, frame));
  };
  EXPECT_EQ(length(true), 12.0);
  EXPECT_EQ(length(false), 7.0);
  EXPECT_EQ(gx_ringLength({{}, true}, gx_Frame()), 0.0);
  EXPECT_EQ(gx_ringLength({{points.data(), 1}, true}, gx_Frame()), 0.0);
  for (const KnownShape& s : knownShapes()) {
    const gx_Frame own(s.outline);
    if (s.second.empty()) {
      EXPECT_NEAR(own.lengthFrom(gx_ringLength({s.outline}, own)), s.outer, 1e-9) << s.name;
    }
  }
}

TEST(BorderLength, EdgesFarBelowTheSizeCount) {
  const auto points = pointsOf("0 0, 1e-200 0, 1 0");
  const gx_Frame frame(points);
  EXPECT_GT(gx_ringLength({{points.data(), 2}, false}, frame), 0.0);
}

TEST(BorderLength, TheCentreIsWeightedWithLength) {
  const auto points = pointsOf("0 0, 4 0, 4 0");
  EXPECT_EQ(gx_borderCentre(std::vector<gx_Ring>{{points, false}}, gx_Frame(points)), gxVector<2>(2, 0));
  const auto bent = pointsOf("0 0, 2 0, 2 6");
  const auto centre = gx_borderCentre(std::vector<gx_Ring>{{bent, false}}, gx_Frame(bent));
  EXPECT_DOUBLE_EQ(centre.x(), (1 * 2 + 2 * 6) / 8.0);
  EXPECT_DOUBLE_EQ(centre.y(), 3 * 6 / 8.0);
  const auto point = pointsOf("5 6, 5 6");
  EXPECT_EQ(gx_borderCentre(std::vector<gx_Ring>{{point}}, gx_Frame(point)), gxVector<2>(5, 6));
  EXPECT_TRUE(std::isnan(gx_borderCentre({}, gx_Frame()).x()));
}

}  // namespace
