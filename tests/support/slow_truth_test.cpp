// The judge judged: the slow truth on shapes whose answers can be worked out by hand.
#include <support/same_bits.h>
#include <support/shape_text.h>
#include <support/slow_truth_memory.h>

#include <gtest/gtest.h>

namespace {

const slow::Outline kSquare{pointsOf("0 0, 1 0, 1 1, 0 1"), true};

TEST(SlowTruth, EdgesBeginWithTheClosingOne) {
  using Edges = std::vector<std::pair<std::size_t, std::size_t>>;
  EXPECT_EQ(slow::edges({pointsOf("0 0, 1 0, 1 1"), true}), (Edges{{2, 0}, {0, 1}, {1, 2}}));
  EXPECT_EQ(slow::edges({pointsOf("0 0, 1 0, 1 1"), false}), (Edges{{0, 1}, {1, 2}}));
  EXPECT_EQ(slow::edges({pointsOf("3 3"), true}), (Edges{{0, 0}}));
}

TEST(SlowTruth, LengthOpenAndClosed) {
  EXPECT_EQ(slow::length({pointsOf("0 0, 3 0, 3 4"), false}), 7.0);
  EXPECT_EQ(slow::length({pointsOf("0 0, 3 0, 3 4"), true}), 12.0);
}

TEST(SlowTruth, ACrossingAtACornerCountsForBothEdges) {
  const slow::Hits hits = slow::intersections(kSquare, gxLineSeg({-1.0, 1.0}, {1.0, -1.0}), true);
  EXPECT_EQ(hits.points, pointsOf("0 0, 0 0"));
  EXPECT_EQ(hits.edges, (std::vector<int>{0, 1}));
}

TEST(SlowTruth, TheExchangeSortIsNotStable) {
  // 2a 2b 1: 2a goes behind 2b when 1 comes to the front.
  EXPECT_EQ(slow::exchangeOrder({2.0, 2.0, 1.0}), (std::vector<std::size_t>{2, 1, 0}));
}

TEST(SlowTruth, AVertexOnAnEdgeIsACrossing) {
  EXPECT_FALSE(slow::isSelfIntersecting(kSquare));
  EXPECT_TRUE(slow::isSelfIntersecting({pointsOf("0 0, 4 4, 4 0, 0 4"), true}));
  EXPECT_TRUE(slow::isSelfIntersecting({pointsOf("0 0, 4 0, 4 4, 2 0, 0 4"), true}));
}

TEST(SlowTruth, MedianIsTheUpperOfTwo) {
  EXPECT_EQ(slow::medianFeatureSize({pointsOf("0 0, 1 0, 3 0"), false}), 2.0);
  EXPECT_EQ(slow::meanPosition({pointsOf("0 0, 1 0, 3 0"), false}), gxVector<2>(1.5, 0.0));
}

TEST(SlowTruth, VerticesNearAPointAreStrictlyNearer) {
  EXPECT_EQ(slow::vertexIndex(pointsOf("0 0, 1 0, 1.5 0"), {0.5, 0.0}, 1.0), (std::vector<int>{0, 1}));
}

TEST(SlowTruth, MomentsOfARightTriangle) {
  const slow::Moments m = slow::polygonMoments(pointsOf("0 0, 4 0, 0 3"));
  EXPECT_NEAR(m.area, 6.0, 1e-14);
  EXPECT_NEAR(m.center.x(), 4.0 / 3.0, 1e-14);
  EXPECT_NEAR(m.matrix.m00(), 16.0 / 3.0, 1e-13);
  EXPECT_NEAR(m.matrix.m01(), -2.0, 1e-13);
  EXPECT_NEAR(m.matrix.m11(), 3.0, 1e-13);
}

TEST(SlowTruth, ABowTieIsWalkedAroundAndCut) {
  const slow::Points tie = pointsOf("0 0, 4 4, 4 0, 0 4");
  EXPECT_EQ(slow::outsideWalk(tie), pointsOf("4 0, 2 2, 0 0, 0 4, 2 2, 4 4"));
  EXPECT_EQ(slow::hullOfWalk(slow::outsideWalk(tie)), pointsOf("2 2, 0 0, 0 4, 2 2, 4 4, 4 0"));
}

TEST(SlowTruth, ASpliceVisitsTheCrossingTwice) {
  const slow::Points spliced =
      slow::splice(pointsOf("0 0, 2 0, 2 2, 0 2"), pointsOf("1 1, 3 1, 3 3, 1 3"));
  EXPECT_EQ(spliced.size(), 10U);
  EXPECT_EQ(spliced[0], gxVector<2>(2.0, 1.0));
  EXPECT_EQ(spliced[5], spliced[0]);
}

TEST(SlowTruth, MergingSkipsWhatMovedUp) {  // the first overlaps the others, which are apart
  const slow::Set set{{pointsOf("0 0, 10 0, 10 1, 0 1"), {}},
                      {pointsOf("1 -1, 2 -1, 2 2, 1 2"), {}},
                      {pointsOf("7 -1, 8 -1, 8 2, 7 2"), {}}};
  EXPECT_EQ(slow::merged(set).size(), 2U);
}

TEST(SlowTruth, AMemoryHoldsOneMoreThanItsLimit) {
  slow::Memo<double, long> memo;
  slow::Evictions evictions;
  for (int key = 0; key < 10; ++key) memo.remember(key, key, 3, evictions);
  EXPECT_EQ(memo.size(), 4U);
  EXPECT_TRUE(memo.find(9.0).has_value());
}

TEST(SameBits, ToldApartAndTogether) {
  EXPECT_FALSE(sameBits(0.0, -0.0));
  EXPECT_TRUE(sameBits(std::nan("1"), std::nan("2")));
  EXPECT_FALSE(sameBits(pointsOf("0 0"), pointsOf("0 0, 1 1")));
  EXPECT_FALSE(agree([] { return 1.0; }, [] { return 1.0 + 1e-16 + 1e-15; }));
  EXPECT_FALSE(agree([]() -> double { throw gxContourDefs::EmptyContour(); }, [] { return 0.0; }));
  EXPECT_TRUE(agree([]() -> double { throw gxContourDefs::EmptyContour(); },
                    []() -> double { throw gxContourDefs::EmptyContour(); }));
}

}  // namespace
