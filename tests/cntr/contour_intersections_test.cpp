#include <cntr/contour.h>

#include <cntr/region.h>
#include <support/computed.h>
#include <support/exposed.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Edges = std::vector<int>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The crossings with their edges.
struct Hits {
  Points points;
  Edges edges;
};

Hits hits(const ExposedContour& contour, const V& from, const V& to, bool countEndContacts = true) {
  Hits result;
  result.edges = {77, 78};  // left over from an earlier question
  result.points = contour.intersections(gxLineSeg(from, to), result.edges, countEndContacts);
  return result;
}

// 3 -- 2
// |    |     edge 0 is the left side, 1 the bottom, 2 the right, 3 the top
// 0 -- 1
ExposedContour square() {
  return ExposedContour(pointsOf("0 0, 4 0, 4 4, 0 4"));
}

// ---- With a segment -------------------------------------------------------------------------------

TEST(ContourAndSegment, ApartFromTheEnclosingRectangleThereIsNothingAndTheEdgesAreEmpty) {
  const Hits found = hits(square(), V(10, 10), V(20, 10));
  EXPECT_TRUE(found.points.empty());
  EXPECT_TRUE(found.edges.empty());
}

TEST(ContourAndSegment, InsideWithoutTouchingThereIsNothing) {
  EXPECT_TRUE(hits(square(), V(1, 1), V(3, 2)).edges.empty());
}

TEST(ContourAndSegment, CrossingTwoOppositeSidesGivesTwoPointsInOrderFromItsStart) {
  const Hits forth = hits(square(), V(-1, 1), V(5, 1));
  EXPECT_EQ(forth.points, pointsOf("0 1, 4 1"));
  EXPECT_EQ(forth.edges, Edges({0, 2}));
  const Hits back = hits(square(), V(5, 1), V(-1, 1));
  EXPECT_EQ(back.points, pointsOf("4 1, 0 1"));
  EXPECT_EQ(back.edges, Edges({2, 0}));
}

TEST(ContourAndSegment, ThroughACornerTheCornerComesOnceForEachOfItsEdges) {
  const Hits found = hits(square(), V(-1, 1), V(1, -1));
  EXPECT_EQ(found.points, pointsOf("0 0, 0 0"));
  EXPECT_EQ(found.edges, Edges({0, 1}));
}

TEST(ContourAndSegment, AlongASideThatSideGivesNothing) {
  const Hits found = hits(square(), V(-1, 0), V(5, 0));
  EXPECT_EQ(found.edges, Edges({0, 2})) << "the two sides at the corners, not the bottom between them";
  EXPECT_EQ(found.points, pointsOf("0 0, 4 0"));
  EXPECT_TRUE(hits(square(), V(1, 0), V(3, 0)).edges.empty());
}

TEST(ContourAndSegment, ParallelBesideASideIsNoCrossingHoweverClose) {
  EXPECT_TRUE(hits(square(), V(1, 1e-7), V(3, 1e-7)).edges.empty());
}

TEST(ContourAndSegment, AnEndOnTheContourCountsOnlyWhenContactsCount) {
  EXPECT_EQ(hits(square(), V(2, 2), V(4, 2), true).edges, Edges({2}));
  EXPECT_TRUE(hits(square(), V(2, 2), V(4, 2), false).edges.empty());
  EXPECT_EQ(hits(square(), V(4, 2), V(2, 2), true).edges, Edges({2}));
  EXPECT_TRUE(hits(square(), V(4, 2), V(2, 2), false).edges.empty());
}

TEST(ContourAndSegment, WithoutContactsAProperCrossingIsKept) {
  EXPECT_EQ(hits(square(), V(-1, 1), V(5, 1), false).edges, Edges({0, 2}));
}

TEST(ContourAndSegment, WithoutContactsAnEdgeWithinAMillionthOfAnEndIsLeftOutAltogether) {
  EXPECT_TRUE(hits(square(), V(4 - 0.99e-6, 2), V(6, 3), false).edges.empty());
  EXPECT_EQ(hits(square(), V(4 - 1.1e-6, 2), V(6, 3), false).edges, Edges({2}));
  EXPECT_EQ(hits(square(), V(4 - 0.99e-6, 2), V(6, 3), true).edges, Edges({2}));
}

TEST(ContourAndSegment, ACrossingMayMissTheEndsByLessThanAMillionth) {
  const ExposedContour diagonal(pointsOf("-1 -1, 1 1"), false);
  EXPECT_EQ(hits(diagonal, V(1, -1), V(0.5e-6, -0.5e-6)).edges, Edges({0})) << "0.7e-6 before the edge";
  EXPECT_TRUE(hits(diagonal, V(1, -1), V(1e-6, -1e-6)).edges.empty()) << "1.4e-6 before the edge";
}

TEST(ContourAndSegment, ARectangleTestComesBeforeTheTolerance) {
  EXPECT_TRUE(hits(square(), V(-1, 2), V(-0.5e-6, 2)).edges.empty())
      << "the upright boxes of segment and side are apart";
}

TEST(ContourAndSegment, BoxesThatOnlyTouchAreLookedAt) {
  EXPECT_EQ(hits(square(), V(-1, 2), V(0, 2)).edges, Edges({0}));
  EXPECT_EQ(hits(square(), V(4, 5), V(4.5, 4)).edges, Edges()) << "beside the corner";
  EXPECT_EQ(hits(square(), V(3.5, 5), V(4, 4)).edges, Edges({2, 3}));
}

//        1              the segment meets edge 2 first and vertex 0 last; the sort leaves the two
//      / |              edges of vertex 0 in exchanged order
//  --2---0-->           (drawn turned: edge 2 is the upright side)
TEST(ContourAndSegment, EqualPositionsComeInTheOrderThatTheExchangeSortLeaves) {
  const ExposedContour triangle(pointsOf("4 0, 0 2, 0 -2"));
  const Hits found = hits(triangle, V(-1, 0), V(5, 0));
  EXPECT_EQ(found.points, pointsOf("0 0, 4 0, 4 0"));
  EXPECT_EQ(found.edges, Edges({2, 1, 0}));
}

TEST(ContourAndSegment, OpenContourIsNotMetAtTheMissingEdge) {
  const ExposedContour open(square().points(), false);
  const Hits found = hits(open, V(-1, 1), V(5, 1));
  EXPECT_EQ(found.edges, Edges({1})) << "open, the right side is edge 1";
  EXPECT_EQ(found.points, pointsOf("4 1"));
}

TEST(ContourAndSegment, EdgesOfNoLengthAreNeverMet) {
  const ExposedContour contour(pointsOf("0 0, 2 0, 2 0, 4 0"), false);
  EXPECT_EQ(hits(contour, V(2, -1), V(2, 1)).edges, Edges({0, 2}));
}

TEST(ContourAndSegment, ASegmentOfNoLengthMeetsNothing) {
  EXPECT_TRUE(hits(square(), V(4, 2), V(4, 2)).edges.empty());
  EXPECT_TRUE(hits(square(), V(4, 2), V(4, 2), false).edges.empty());
}

TEST(ContourAndSegment, ThePublicFormGivesTheSamePoints) {
  const gxContour contour = square();
  EXPECT_EQ(contour.intersections(gxLineSeg(V(-1, 1), V(5, 1)), true), pointsOf("0 1, 4 1"));
}

TEST(ContourAndSegment, TwoPointsClosedMeetTwice) {
  EXPECT_EQ(hits(ExposedContour(pointsOf("0 0, 4 0")), V(1, -1), V(1, 1)).edges, Edges({0, 1}));
}

TEST(ContourAndSegment, OnePointOrNoneIsRefused) {
  for (const std::string text : {"", "1 1"}) {
    const ExposedContour contour(pointsOf(text));
    Edges edges;
    EXPECT_THROW(contour.intersections(gxLineSeg(), edges, true), gxContourDefs::EmptyContour);
    EXPECT_THROW(contour.intersections(gxLineSeg(), true), gxContourDefs::EmptyContour);
    EXPECT_THROW(contour.intersections(square()), gxContourDefs::EmptyContour);
  }
}

TEST(ContourAndSegment, ASegmentWithANaNMeetsNothing) {
  EXPECT_TRUE(hits(square(), V(kNaN, 1), V(5, 1)).edges.empty());
  EXPECT_TRUE(hits(square(), V(-1, 1), V(5, kNaN)).edges.empty());
  EXPECT_TRUE(hits(square(), V(kNaN, kNaN), V(kNaN, kNaN), false).edges.empty());
}

TEST(ContourAndSegment, AnInfiniteSegmentMeetsNothing) {
  EXPECT_TRUE(hits(square(), V(-kInf, 1), V(kInf, 1)).edges.empty());
  EXPECT_TRUE(hits(square(), V(2, 2), V(2, kInf)).edges.empty());
}

TEST(ContourAndSegment, AVertexThatIsNotFiniteTakesOnlyItsOwnEdgesOut) {
  const ExposedContour contour(pointsOf("0 0, 4 0, 4 4, nan 4"));
  EXPECT_EQ(hits(contour, V(1, -1), V(1.5, 1)).edges, Edges({1}));
  EXPECT_EQ(hits(contour, V(2, 2), V(5, 3)).edges, Edges({2}));
  EXPECT_TRUE(hits(contour, V(2, 2), V(2.5, 9)).edges.empty());
}

TEST(ContourAndSegment, ANaNInTheFirstVertexLeavesNoEnclosingRectangleToMeet) {
  EXPECT_TRUE(hits(ExposedContour(pointsOf("nan 0, 4 0, 4 4, 0 4")), V(2, 2), V(5, 3)).edges.empty());
}

TEST(ContourAndSegment, HugeCoordinatesAreMet) {
  const ExposedContour contour(pointsOf("-1e308 -1e308, 1e308 -1e308, 1e308 1e308, -1e308 1e308"));
  const Hits found = hits(contour, V(-1.5e308, 0), V(1.5e308, 0));
  EXPECT_EQ(found.points.size(), 2u);
  for (const V& p : found.points) EXPECT_EQ(std::abs(p.x()), 1e308);
}

TEST(ContourAndSegment, AContourSmallerThanItsToleranceIsMetByEverythingThatTouchesItsBoxes) {
  const ExposedContour tiny(pointsOf("0 0, 1e-9 0, 1e-9 1e-9, 0 1e-9"));
  EXPECT_EQ(hits(tiny, V(-1, 0.5e-9), V(1, 0.5e-9)).edges, Edges({0, 2}));
  const ExposedContour denormal(pointsOf("0 0, 1e-320 0, 1e-320 1e-320"));
  EXPECT_TRUE(hits(denormal, V(-1, -1), V(1, 1)).edges.empty()) << "its edges have no length";
}

TEST(ContourAndSegment, TheEdgesAreNotListedForAQuestion) {
  const ExposedContour contour = square();
  const Computed edges(gx_Computation::eEdges);
  const Computed boxes(gx_Computation::eEncloseRect);
  for (int i = 0; i < 3; ++i) hits(contour, V(-1, i + 0.5), V(5, i + 0.5));
  EXPECT_EQ(edges.times(), 0);
  EXPECT_LE(boxes.times(), 1);
}

// ---- With another contour ---------------------------------------------------------------------------

TEST(ContourAndContour, CrossingsComeInTheOrderOfTheOthersEdges) {
  // The other square covers the upper right corner; its closing edge, the left side, is first.
  const gxContour other(pointsOf("2 2, 6 2, 6 6, 2 6"));
  EXPECT_EQ(square().intersections(other), pointsOf("2 4, 4 2"));
  EXPECT_EQ(other.intersections(square()), pointsOf("4 2, 2 4"));
}

TEST(ContourAndContour, AlongOneEdgeOfTheOtherTheyComeInItsDirection) {
  const gxContour bar(pointsOf("5 1, -1 1"), false);
  EXPECT_EQ(square().intersections(bar), pointsOf("4 1, 0 1"));
}

TEST(ContourAndContour, AnOpenOtherHasNoClosingEdge) {
  const Points corner = pointsOf("-1 1, 2 2, -1 3");
  EXPECT_EQ(square().intersections(gxContour(corner, false)).size(), 2u);
  const Points reaching = pointsOf("2 2, 2 3, 9 3");
  EXPECT_EQ(square().intersections(gxContour(reaching, false)).size(), 1u);
  EXPECT_EQ(square().intersections(gxContour(reaching, true)).size(), 2u);
}

TEST(ContourAndContour, ARegionIsWalkedAsClosed) {
  const gxRegion region{gxContour(pointsOf("2 2, 2 3, 9 3"), false)};
  EXPECT_EQ(square().intersections(region).size(), 2u);
}

TEST(ContourAndContour, ACrossingAtAVertexOfBothComesFourTimes) {
  const gxContour spike(pointsOf("0 0, -3 -1, -1 -3"));
  EXPECT_EQ(square().intersections(spike), pointsOf("0 0, 0 0, 0 0, 0 0"));
}

TEST(ContourAndContour, AnEndOfTheOtherOnTheContourCounts) {
  EXPECT_EQ(square().intersections(gxContour(pointsOf("2 2, 4 2"), false)), pointsOf("4 2"));
}

TEST(ContourAndContour, AnOtherOfOnePointOrNoneMeetsNothing) {
  EXPECT_TRUE(square().intersections(gxContour(pointsOf("4 2"), false)).empty());
  EXPECT_TRUE(square().intersections(gxContour(pointsOf("4 2"), true)).empty());
  EXPECT_TRUE(square().intersections(gxContour()).empty());
}

TEST(ContourAndContour, RepeatedPointsOfTheOtherAddNothing) {
  EXPECT_EQ(square().intersections(gxContour(pointsOf("2 2, 2 2, 6 2, 6 2"), false)), pointsOf("4 2"));
}

TEST(ContourAndContour, WithItselfTheCornersComeAndTheSidesDoNot) {
  // Each side of the square meets its two neighbours at their corners: 4 sides, 2 hits each.
  EXPECT_EQ(square().intersections(square()).size(), 8u);
}

TEST(ContourAndContour, AnOtherWithPointsThatAreNotFiniteIsMetWhereItIsFinite) {
  const gxContour other(pointsOf("2 2, 6 2, nan 3, 2 inf"), false);
  EXPECT_EQ(square().intersections(other), pointsOf("4 2"));
}

// ---- With itself ------------------------------------------------------------------------------------

bool selfIntersecting(const std::string& text, bool closed = true) {
  return gxContour(pointsOf(text), closed).isSelfIntersecting();
}

TEST(ContourSelfIntersection, ABowTieCrossesItself) {
  EXPECT_TRUE(selfIntersecting("0 0, 4 4, 4 0, 0 4"));
}

TEST(ContourSelfIntersection, AConvexPolygonDoesNot) {
  EXPECT_FALSE(selfIntersecting("0 0, 4 0, 4 4, 0 4"));
  EXPECT_FALSE(selfIntersecting("0 4, 4 4, 4 0, 0 0")) << "in the other direction";
}

TEST(ContourSelfIntersection, TwoPointsDoNot) {
  EXPECT_FALSE(selfIntersecting("0 0, 4 0"));
  EXPECT_FALSE(selfIntersecting("0 0, 4 0", false));
}

TEST(ContourSelfIntersection, RepeatedPointsAloneDoNot) {
  EXPECT_FALSE(selfIntersecting("0 0, 0 0, 4 0, 4 0, 4 4, 4 4, 0 4, 0 4"));
  EXPECT_FALSE(selfIntersecting("1 1, 1 1, 1 1"));
}

TEST(ContourSelfIntersection, AVertexOnAnEdgeThatIsNotItsOwnCounts) {
  EXPECT_TRUE(selfIntersecting("0 0, 4 0, 4 4, 2 0, 0 4"));
}

TEST(ContourSelfIntersection, AVertexReachedTwiceDoesNotCountByItself) {
  // Two triangles that share the vertex (2, 2): each edge there touches an end of the others.
  EXPECT_FALSE(selfIntersecting("0 0, 4 0, 2 2, 4 4, 0 4, 2 2"));
}

TEST(ContourSelfIntersection, AnOpenFigureMayCrossOnlyByItsClosingEdge) {
  EXPECT_FALSE(selfIntersecting("0 0, 4 4, 4 0, 0 -4", false));
  EXPECT_TRUE(selfIntersecting("0 0, 4 0, 4 4, 2 -4", true));
  EXPECT_TRUE(selfIntersecting("0 0, 4 0, 4 4, 2 -4", false)) << "the last edge crosses the first";
  EXPECT_FALSE(selfIntersecting("0 4, 4 4, 0 0, 4 0", false));
  EXPECT_TRUE(selfIntersecting("0 4, 4 4, 0 0, 4 0", true));
}

TEST(ContourSelfIntersection, EdgesThatOverlapOnOneLineDoNotCount) {
  EXPECT_FALSE(selfIntersecting("0 0, 4 0, 2 0")) << "neighbours that overlap are parallel";
  EXPECT_FALSE(selfIntersecting("0 0, 4 0, 2 0, 6 0, 1 0", false));
  EXPECT_TRUE(selfIntersecting("0 0, 4 0, 2 0, 2 3")) << "but the spike's tip lies on the edge before";
}

TEST(ContourSelfIntersection, WithoutPointsOrWithOneTheAnswerIsNo) {
  EXPECT_FALSE(gxContour().isSelfIntersecting());
  EXPECT_FALSE(selfIntersecting("1 1"));
  EXPECT_FALSE(selfIntersecting("1 1", false));
}

TEST(ContourSelfIntersection, OnePointThatIsNotFiniteIsNoCrossingEither) {
  EXPECT_FALSE(selfIntersecting("nan 1"));
  EXPECT_FALSE(selfIntersecting("inf inf"));
  EXPECT_FALSE(selfIntersecting("nan 1", false));
}

TEST(ContourSelfIntersection, PointsThatAreNotFiniteTakePartInNoCrossing) {
  EXPECT_FALSE(selfIntersecting("0 0, nan 4, 4 0, 0 4"));
  EXPECT_FALSE(selfIntersecting("0 0, inf 4, 4 0, 0 4"));
  EXPECT_TRUE(selfIntersecting("0 0, 4 4, 4 0, 0 4, nan nan"));
}

TEST(ContourSelfIntersection, HugeAndTinyFiguresAreJudged) {
  EXPECT_TRUE(selfIntersecting("-1e308 -1e308, 1e308 1e308, 1e308 -1e308, -1e308 1e308"));
  EXPECT_FALSE(selfIntersecting("-1e308 -1e308, 1e308 -1e308, 1e308 1e308, -1e308 1e308"));
  EXPECT_FALSE(selfIntersecting("0 0, 1e-7 1e-7, 1e-7 0, 0 1e-7"))
      << "every edge comes within a millionth of every end";
  EXPECT_FALSE(selfIntersecting("0 0, 5e-324 5e-324, 5e-324 0, 0 5e-324"));
}

TEST(ContourSelfIntersection, OfManyPointsIsFoundWhereverItLies) {
  // A zigzag band of 300 points, simple; then one tooth that reaches through its neighbour.
  Points points;
  for (int i = 0; i < 150; ++i) points.emplace_back(i, (i % 2) * 3.0);
  for (int i = 149; i >= 0; --i) points.emplace_back(i, 10.0 + (i % 2) * 3.0);
  EXPECT_FALSE(gxContour(points).isSelfIntersecting());
  for (const std::size_t at : {std::size_t{1}, std::size_t{75}, std::size_t{200}, std::size_t{298}}) {
    Points crossed = points;
    crossed[at] = V(points[at].x(), at < 150 ? 25.0 : -25.0);
    EXPECT_TRUE(gxContour(crossed).isSelfIntersecting()) << "tooth " << at;
  }
}

}  // namespace
