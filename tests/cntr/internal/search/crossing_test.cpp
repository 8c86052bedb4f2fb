// Covers cntr/internal/search/self_crossing.cpp
// Crossings through the index, held against the scan.
#include <support/large_outlines.h>

#include <cntr/internal/search/crossing.h>
#include <support/exposed.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>

namespace {

slow::Hits hitsOf(const ExposedContour& contour, const gxLineSeg& seg, bool countEndContacts) {
  slow::Hits hits;
  hits.points = contour.intersections(seg, hits.edges, countEndContacts);
  return hits;
}

TEST(CrossingQuery, ABoxFarFromTheSegmentsLineHoldsNoHit) {
  const gx_CrossingQuery query(gxLineSeg({0, 0}, {100, 100}), true);
  EXPECT_FALSE(query.mayMeet(gx_Box{60, 10, 70, 20}));
  EXPECT_FALSE(query.mayMeet(gx_Box{200, 200, 210, 210}));
  EXPECT_TRUE(query.mayMeet(gx_Box{60, 55, 70, 65}));
}

TEST(CrossingQuery, ABoxWithinTheToleranceOfTheLineMayHoldOne) {
  const gx_CrossingQuery query(gxLineSeg({0, 0}, {100, 100}), true);
  EXPECT_TRUE(query.mayMeet(gx_Box{60 + 1e-6, 50, 70, 60}));
}

TEST(CrossingQuery, AnEdgeAlongTheSegmentIsNoHit) {
  const gx_CrossingQuery query(gxLineSeg({0, 0}, {10, 0}), true);
  std::vector<gx_Hit> hits;
  query.test(gxVector<2>(2, 0), gxVector<2>(5, 0), 7, hits);
  EXPECT_TRUE(hits.empty());
}

TEST(CrossingQuery, AnEdgeAcrossTheSegmentIsOneHitWithItsNumber) {
  const gx_CrossingQuery query(gxLineSeg({0, 0}, {10, 0}), true);
  std::vector<gx_Hit> hits;
  query.test(gxVector<2>(4, -1), gxVector<2>(4, 1), 7, hits);
  ASSERT_EQ(hits.size(), 1U);
  EXPECT_EQ(hits[0].point, gxVector<2>(4, 0));
  EXPECT_EQ(hits[0].edge, 7);
}

TEST(Crossing, OfManyEdgesWithASegmentIsThatOfTheScanBitForBit) {
  RandomShapes random("segment through the index", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = largeOutline(random);
    const ExposedContour contour(outline.points, outline.closed);
    for (int query = 0; query < 10; ++query) {
      const gxLineSeg seg = random.segmentNear(outline.points);
      const bool ends = random.chance(0.5);
      EXPECT_TRUE(agree([&] { return hitsOf(contour, seg, ends); },
                        [&] { return slow::intersections(outline, seg, ends); }));
    }
  }
}

TEST(Crossing, OfTwoLargeContoursIsThatOfTheScanBitForBit) {
  RandomShapes random("contours through both indexes", 100);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline ours = largeOutline(random);
    slow::Outline theirs = random.chance(0.3) ? ours : largeOutline(random);
    if (random.chance(0.3)) theirs.points = rotatedStart(reversed(ours.points), 7);
    const ExposedContour contour(ours.points, ours.closed);
    const gxContour other(theirs.points, theirs.closed);
    EXPECT_TRUE(agree([&] { return contour.intersections(other); },
                      [&] { return slow::intersections(ours, theirs); }));
  }
}

TEST(Crossing, OfASmallContourWithALargeOneIsThatOfTheScan) {
  RandomShapes random("small and large contour", 100);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline large = largeOutline(random);
    const slow::Outline little{random.outline(), random.chance(0.5)};
    const gxContour a(large.points, large.closed);
    const gxContour b(little.points, little.closed);
    EXPECT_TRUE(
        agree([&] { return a.intersections(b); }, [&] { return slow::intersections(large, little); }));
    EXPECT_TRUE(
        agree([&] { return b.intersections(a); }, [&] { return slow::intersections(little, large); }));
  }
}

TEST(Crossing, WithItselfIsThatOfTheScan) {
  RandomShapes random("self-crossing through the index", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = largeOutline(random);
    const gxContour contour(outline.points, outline.closed);
    EXPECT_TRUE(agree([&] { return contour.isSelfIntersecting(); },
                      [&] { return slow::isSelfIntersecting(outline); }));
  }
}

}  // namespace
