#include <cntr/region.h>

#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/region_shapes.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

Points spliced(const Points& outline, const Points& other) {
  gxRegion result;
  gx_RegionInside::splice(gxRegion(outline), gxRegion(other), result);
  return result.points();
}

const auto* const kApart = L"spliced regions do not intersect";

TEST(Splice, OverlappingSquaresGoThroughTheFirstCrossingTwice) {
  //  A from (0,0) to (4,4), B from (2,2) to (6,6).  Edge 3 of A, (4,4) to (0,4), is crossed in (2,4) by
  //  edge 0 of B; edge 2 of A, (4,0) to (4,4), in (4,2) by edge 1 of B; the lower edge of A wins.
  const Points walk = spliced(square(0, 0, 4), square(2, 2, 4));
  EXPECT_EQ(walk, pointsOf("4 2, 4 4, 0 4, 0 0, 4 0, 4 2, 6 2, 6 6, 2 6, 2 2"));
  EXPECT_EQ(walk.size(), 4u + 4u + 2u);
}

TEST(Splice, TheClosingEdgeIsTheLowestAndComesFirst) {
  // Edge 0 of A, (0,4) to (0,0), is crossed by B on the left.
  const Points walk = spliced(square(0, 0, 4), square(-2, 1, 3));
  EXPECT_EQ(walk.front(), V(0, 4)) << "B's upper edge ends beyond (0, 4): crossed from above first";
  EXPECT_EQ(walk[1], V(0, 0)) << "the end of edge 0 is point 0";
  EXPECT_EQ(walk[4], V(0, 4)) << "and around to the start of edge 0";
}

TEST(Splice, OnTheOtherOutlineTheWalkBeginsAtTheEndOfItsCrossedEdge) {
  const Points walk = spliced(square(0, 0, 4), square(2, 2, 4));
  EXPECT_EQ(Points(walk.begin() + 6, walk.end()), pointsOf("6 2, 6 6, 2 6, 2 2"));
}

TEST(Splice, APointEndsAtItsEdgeAlsoWhereTheEdgeHasNoLength) {
  // (4, 4) is repeated: edge 3 of A has no length, and ends at point 3 all the same.
  const Points walk = spliced(pointsOf("0 0, 4 0, 4 4, 4 4, 0 4"), square(2, 2, 4));
  EXPECT_EQ(walk, pointsOf("4 2, 4 4, 4 4, 0 4, 0 0, 4 0, 4 2, 6 2, 6 6, 2 6, 2 2"));
}

TEST(Splice, AnEdgeWithoutLengthIsNotAsked) {
  // Edge 0 of A runs along B's lower side and meets nothing.  Edge 1 is shorter than 1e-15: between its
  // points, which differ, a line could be drawn that meets that side.  Edge 2 is the first that counts.
  const Points walk = spliced(pointsOf("0 0, 0 5e-16, 2 -3, 5 0"), pointsOf("-1 0, 9 0, 9 4, -1 4"));
  ASSERT_EQ(walk.size(), 4u + 4u + 2u);
  EXPECT_EQ(walk[1], V(2, -3)) << "the end of edge 2";
}

TEST(Splice, AContactAtAnEndCounts) {
  // A's corner (4, 4) touches B's edge.
  const Points walk = spliced(square(0, 0, 4), pointsOf("4 2, 8 4, 4 8"));
  EXPECT_EQ(walk.front(), V(4, 2));
}

TEST(Splice, ARegionWithItsCopyIsTheKeyholeAtTheFirstReportedPointOfEdgeZero) {
  const Points walk = spliced(square(0, 0, 4), square(0, 0, 4));
  EXPECT_EQ(walk.size(), 10u);
  EXPECT_EQ(walk.front(), V(0, 4)) << "where edge 0 begins";
  EXPECT_EQ(walk[5], V(0, 4));
  EXPECT_EQ(Points(walk.begin() + 1, walk.begin() + 5), square(0, 0, 4));
}

TEST(Splice, RegionsApartAreRefused) {
  EXPECT_EQ(messageOfBadParams([] { spliced(square(0, 0, 4), square(9, 9, 4)); }), kApart);
}

TEST(Splice, ARegionInsideAnotherIsRefused) {
  EXPECT_EQ(messageOfBadParams([] { spliced(square(0, 0, 10), square(4, 4, 2)); }), kApart);
  EXPECT_EQ(messageOfBadParams([] { spliced(square(4, 4, 2), square(0, 0, 10)); }), kApart);
}

TEST(Splice, OfNoPointsIsRefused) {
  EXPECT_EQ(messageOfBadParams([] { spliced(Points(), square(4, 4, 2)); }), kApart);
}

TEST(Splice, WithAnOutlineOfFewerThanTwoPointsThrowsEmptyContour) {
  EXPECT_THROW(spliced(square(4, 4, 2), Points()), gxContourDefs::EmptyContour);
  EXPECT_THROW(spliced(square(4, 4, 2), pointsOf("4 4")), gxContourDefs::EmptyContour);
}

TEST(Splice, AThrowLeavesTheResultUntouched) {
  gxRegion result = squareWithHole();
  EXPECT_THROW(gx_RegionInside::splice(gxRegion(square(0, 0, 1)), gxRegion(square(5, 5, 1)), result),
               gxContourDefs::BadParams);
  EXPECT_EQ(result.points(), square(0, 0, 10));
  EXPECT_EQ(result.holes().size(), 1u);
}

TEST(Splice, HolesOfBothAreDropped) {
  gxRegion result;
  gx_RegionInside::splice(squareWithHole(), regionOf(square(8, 8, 10), {square(12, 12, 1)}), result);
  EXPECT_TRUE(result.holes().empty());
}

TEST(Splice, TheResultMayBeEitherOfThem) {
  const Points expected = spliced(square(0, 0, 4), square(2, 2, 4));
  gxRegion a(square(0, 0, 4));
  gxRegion b(square(2, 2, 4));
  gx_RegionInside::splice(a, b, a);
  EXPECT_EQ(a.points(), expected);
  gxRegion c(square(0, 0, 4));
  gx_RegionInside::splice(c, b, b);
  EXPECT_EQ(b.points(), expected);
}

TEST(Splice, PassesEveryPointOfBothOnce) {
  RandomShapes random("splice passes every point", 300);
  long joined = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points a = random.finiteOutline();
    const Points b = random.finiteOutline();
    if (a.size() < 2 || b.size() < 2) continue;
    Points walk;
    const std::wstring message = messageOfBadParams([&] { walk = spliced(a, b); });
    if (message != L"(no BadParams)") {
      EXPECT_EQ(message, kApart);
      continue;
    }
    ++joined;
    ASSERT_EQ(walk.size(), a.size() + b.size() + 2);
    EXPECT_EQ(walk.front(), walk[a.size() + 1]);
    const Points around(walk.begin() + 1, walk.begin() + 1 + static_cast<std::ptrdiff_t>(a.size()));
    EXPECT_TRUE(std::is_permutation(around.begin(), around.end(), a.begin()));
    const Points rest(walk.begin() + 2 + static_cast<std::ptrdiff_t>(a.size()), walk.end());
    EXPECT_TRUE(std::is_permutation(rest.begin(), rest.end(), b.begin()));
  }
  EXPECT_GT(joined, 20);
}

TEST(Splice, OfAnyCoordinatesEndsInAResultOrARefusal) {
  for (const char* text :
       {"nan 0, 4 4, 4 0", "0 0, inf inf, 4 0", "-1e308 -1e308, 1e308 1e308, 1e308 -1e308",
        "0 0, 4e-324 0, 0 4e-324", "1 1, 1 1, 1 1"}) {
    SCOPED_TRACE(text);
    for (const auto& [a, b] :
         {std::pair(pointsOf(text), square(0, 0, 2)), std::pair(square(0, 0, 2), pointsOf(text))}) {
      Points walk;
      const std::wstring message = messageOfBadParams([&, &a = a, &b = b] { walk = spliced(a, b); });
      EXPECT_TRUE(message == L"(no BadParams)" || message == kApart);
      EXPECT_EQ(walk.size(), message == kApart ? 0u : a.size() + b.size() + 2);
    }
  }
}

}  // namespace
