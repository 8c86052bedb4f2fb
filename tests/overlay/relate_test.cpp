// Shapes against shapes: words and areas.
// Covers overlay/internal/arranged.cpp
// Covers overlay/internal/arranged.h
#include <overlay/relate.h>

#include <overlay/cgal_judge.h>
#include <overlay/shape_builder.h>
#include <support/overlay_judge.h>
#include <support/overlay_shapes.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using slow::Region;
using slow::Set;

gxRegion regionOf(const std::string& points) {
  return gxRegion(pointsOf(points));
}

const gxRegion kSquare = regionOf("0 0, 10 0, 10 10, 0 10");

TEST(Relate, answersInWords) {
  const gxRegion within = regionOf("2 2, 4 2, 4 4");
  const gxRegion across = regionOf("5 5, 15 5, 15 15, 5 15");
  const gxRegion beside = regionOf("10 0, 20 0, 20 10, 10 10");
  const gxRegion apart = regionOf("11 11, 12 11, 12 12");
  EXPECT_TRUE(gfIntersects(kSquare, within) && gfIntersects(kSquare, across) &&
              gfIntersects(kSquare, beside));
  EXPECT_FALSE(gfIntersects(kSquare, apart));
  EXPECT_TRUE(gfDisjoint(kSquare, apart));
  EXPECT_FALSE(gfDisjoint(kSquare, beside));
  EXPECT_TRUE(gfTouches(kSquare, beside));
  EXPECT_FALSE(gfTouches(kSquare, across) || gfTouches(kSquare, within) || gfTouches(kSquare, apart));
  EXPECT_TRUE(gfContains(kSquare, within) && gfCovers(kSquare, within) && gfCovers(kSquare, kSquare));
  EXPECT_FALSE(gfContains(within, kSquare) || gfCovers(across, kSquare) || gfContains(kSquare, beside));
  EXPECT_TRUE(gfOverlaps(kSquare, across));
  EXPECT_FALSE(gfOverlaps(kSquare, within) || gfOverlaps(kSquare, beside) ||
               gfOverlaps(kSquare, kSquare));
  EXPECT_TRUE(gfEqual(kSquare, regionOf("10 10, 5 10, 0 10, 0 0, 10 0")));
  EXPECT_FALSE(gfEqual(kSquare, within));
}

TEST(Relate, takesShapesWithoutAreaForNothing) {
  const gxRegion none;
  const gxRegion flat = regionOf("2 2, 4 4, 6 6");
  for (const gxRegion* empty : {&none, &flat}) {
    EXPECT_FALSE(gfIntersects(kSquare, *empty) || gfTouches(*empty, kSquare) ||
                 gfOverlaps(kSquare, *empty));
    EXPECT_TRUE(gfCovers(kSquare, *empty) && gfDisjoint(kSquare, *empty) && gfEqual(none, *empty));
    EXPECT_FALSE(gfContains(kSquare, *empty) || gfCovers(*empty, kSquare) || gfEqual(kSquare, *empty));
    EXPECT_EQ(gfOverlapRatio(kSquare, *empty), 0.0);
    EXPECT_TRUE(std::isnan(gfOverlapRatio(none, *empty)));
  }
}

TEST(Relate, takesInvalidShapesByEvenOdd) {
  const gxRegion bow = regionOf("0 0, 10 10, 10 0, 0 10");
  EXPECT_TRUE(gfCovers(kSquare, bow));
  EXPECT_TRUE(gfTouches(bow, regionOf("0 0, 5 5, 10 0"))) << "the lower quarter";
  EXPECT_TRUE(gfCovers(bow, regionOf("0 0, 5 5, 0 10")));
  const std::vector<gxRegion> pile{kSquare, kSquare, regionOf("5 5, 15 5, 15 15, 5 15")};
  EXPECT_TRUE(gfContains(pile, regionOf("7 7, 14 7, 14 14"))) << "overlapping regions are one shape";
  const gxRegion spike = regionOf("0 0, 10 0, 20 0, 10 0, 10 10, 0 10");
  EXPECT_TRUE(gfEqual(spike, kSquare));
  EXPECT_FALSE(gfIntersects(spike, regionOf("15 -1, 16 -1, 15 1"))) << "a spike holds nothing";
}

TEST(Relate, refusesWhatIsNotFinite) {
  const gxRegion bad = regionOf("20 20, nan 21, 22 22");
  EXPECT_THROW(gfRelate(kSquare, bad), gxContourDefs::BadParams);
  EXPECT_THROW(gfIntersects(kSquare, bad), gxContourDefs::BadParams) << "boxes say nothing then";
  EXPECT_THROW(gfTouches(bad, kSquare), gxContourDefs::BadParams);
  EXPECT_THROW(gfOverlapRatio(kSquare, regionOf("0 0, inf 0, 1 1")), gxContourDefs::BadParams);
}

TEST(Overlap, givesTheAreas) {
  const gxOverlap areas = gfOverlap(kSquare, regionOf("5 5, 15 5, 15 15, 5 15"));
  EXPECT_EQ(areas.first, 100.0);
  EXPECT_EQ(areas.second, 100.0);
  EXPECT_EQ(areas.both, 25.0);
  EXPECT_EQ(areas.either, 175.0);
  EXPECT_EQ(areas.ratio(), 25.0 / 175.0);
  EXPECT_EQ(gfOverlapRatio(kSquare, kSquare), 1.0);
  EXPECT_EQ(gfOverlapRatio(kSquare, regionOf("10 0, 20 0, 20 10, 10 10")), 0.0);
}

TEST(Overlap, keepsTheDigitsOfSmallShapesFarAway) {
  const gxRegion one =
      regionOf("100000000 100000000, 100000001 100000000, 100000001 100000001, 100000000 100000001");
  const gxRegion other = regionOf(
      "100000000.5 100000000, 100000001.5 100000000, 100000001.5 100000001, 100000000.5 100000001");
  EXPECT_EQ(gfOverlap(one, other).both, 0.5);
}

TEST(Overlap, isInfiniteBeyondTheRange) {
  const gxRegion huge = regionOf("-1e300 -1e300, 1e300 -1e300, 1e300 1e300, -1e300 1e300");
  EXPECT_EQ(gfOverlap(huge, huge).both, std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(gfOverlapRatio(huge, huge)));
}

// ---- Against exact areas --------------------------------------------------------------------------

TEST(RelateSlowTruth, hasTheAreasOfTheExactJudge) {
  RandomShapes random("overlap areas", 50);
  while (random.next()) {
    const OverlayFamily family = someFamily(random);
    SCOPED_TRACE(random.trace() + " " + nameOf(family));
    if (family == OverlayFamily::eHuge) continue;
    const auto pair = overlayOperands(random, family, 2);
    const auto area = [&](bool inA, bool inB) {
      return judge::judgeByCgal(judge::combined(pair, judge::Rule::eEvenOdd,
                                                [&](const std::vector<bool>& held) {
                                                  return held[0] == inA && held[1] == inB;
                                                }))
          .area;
    };
    const double both = area(true, true);
    const double first = area(true, false);
    const double second = area(false, true);
    const gxOverlap overlap = gfOverlap(judge::setFrom(pair[0]), judge::setFrom(pair[1]));
    judge::Rings rings = judge::ringsOf(pair[0]);
    for (const judge::Ring& ring : judge::ringsOf(pair[1])) rings.push_back(ring);
    const double slack =
        1e-12 * (both + first + second) + 2.83 * judge::ulpOf(rings) * judge::lengthOf(rings);
    ASSERT_NEAR(overlap.both, both, slack);
    ASSERT_NEAR(overlap.first, both + first, slack);
    ASSERT_NEAR(overlap.second, both + second, slack);
    ASSERT_NEAR(overlap.either, both + first + second, slack);
    const gxRelation relation = gfRelate(judge::setFrom(pair[0]), judge::setFrom(pair[1]));
    if (both > slack) {
      ASSERT_TRUE(relation.interiorsMeet);
    }
    if (first > slack) {
      ASSERT_TRUE(relation.firstBeyond);
    }
    if (second > slack) {
      ASSERT_TRUE(relation.secondBeyond);
    }
  }
}

}  // namespace
