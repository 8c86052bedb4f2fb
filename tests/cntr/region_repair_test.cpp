#include <cntr/region.h>

#include <support/computed.h>
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/region_shapes.h>

#include <gtest/gtest.h>

#include <string>

namespace {

Points regularized(const Points& outline) {
  gxRegion result;
  gxRegion(outline).regularize(result);
  return result.points();
}

Points hullOf(const Points& outline) {
  gxRegion result;
  gxRegion(outline).outerHull(result);
  return result.points();
}

//   5 --------------- 4
//   |     2-----1     |
//   |       \ /       |     crosses itself in (5, 2.5)
//   |       / \       |
//   0 ----'     '---- 3
Points squareWithCurl() {
  return pointsOf("0 0, 6 3, 4 3, 10 0, 10 10, 0 10");
}

// The pentagram with its last tip cut off: the cut is the only edge that nothing crosses.
Points cutPentagram(bool cutIsTheClosingEdge) {
  Points points = pentagram();
  const V before = points[3];
  const V tip = points[4];
  const V after = points[0];
  points.pop_back();
  points.push_back(tip + (before - tip) * 0.1);
  points.push_back(tip + (after - tip) * 0.1);
  if (cutIsTheClosingEdge) return rotatedStart(points, 5);
  return points;
}

// ---- Outlines that do not cross themselves ----------------------------------------------------------

TEST(Repair, ASimpleOutlineIsCopiedHolesAndAllAndNothingIsComputed) {
  const gxRegion region = squareWithHole();
  region.area(true);
  const Computed regular(gx_Computation::eRegularize);
  const Computed hull(gx_Computation::eOuterHull);
  const Computed area(gx_Computation::eArea);
  gxRegion result;
  region.regularize(result);
  EXPECT_EQ(result.points(), square(0, 0, 10));
  EXPECT_EQ(result.holes().size(), 1u);
  EXPECT_EQ(result.area(true), 96.0);
  gxRegion other;
  region.outerHull(other);
  EXPECT_EQ(other.points(), square(0, 0, 10));
  EXPECT_EQ(other.holes().size(), 1u);
  EXPECT_EQ(other.area(true), 96.0);
  EXPECT_EQ(regular.times() + hull.times(), 0);
  EXPECT_EQ(area.times(), 0) << "what was remembered came along";
}

TEST(Repair, ASimpleOutlineIntoItselfStays) {
  gxRegion region = squareWithHole();
  region.regularize(region);
  region.outerHull(region);
  EXPECT_EQ(region.points(), square(0, 0, 10));
  EXPECT_EQ(region.holes().size(), 1u);
}

TEST(Repair, OfTooFewPointsToCrossThemselvesIsACopy) {
  for (const char* text : {"", "1 1", "0 0, 1 1", "0 0, 4 0, 4 4"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(regularized(pointsOf(text)), pointsOf(text));
    EXPECT_EQ(hullOf(pointsOf(text)), pointsOf(text));
  }
}

// ---- Outlines that cross themselves -----------------------------------------------------------------

TEST(Regularize, ABowTieRunsAroundBothLobesThroughTheCrossing) {
  EXPECT_EQ(regularized(bowTie()), pointsOf("4 0, 2 2, 0 0, 0 4, 2 2, 4 4"));
}

TEST(Regularize, TheStartEdgeIsProbedAHundredthOfTheMedianEdgeAway) {
  // Twice around, the inner turn half a unit inside of the outer one; median edge length 9.5.  Edge 1, the
  // first that is asked, is the lower side of the inner turn: a probe of 0.1 stays inside on both sides of
  // it; one of 1 does not, and a walk from there ends nowhere.
  const gxRegion region(pointsOf("0.5 0.5, 9.5 0.5, 9.5 9.5, 0.5 9.5, 0 0, 10 0, 10 10, 0 10"));
  gxRegion result;
  region.regularize(result);
  ASSERT_EQ(result.points().size(), 10U);
  EXPECT_EQ(result.points().front(), V(10, 0)) << "begun on the outer turn";
  EXPECT_EQ(result.closestPoint(V(5, -1), false), V(5, 0));
}

TEST(Regularize, ABowTiesAreaIsThatOfBothLobes) {
  gxRegion result;
  gxRegion(bowTie()).regularize(result);
  EXPECT_EQ(result.area(false), 8.0) << "both lobes run the same way around now";
}

TEST(OuterHull, ABowTieIsOneLoopFromTheCrossing) {
  EXPECT_EQ(hullOf(bowTie()), pointsOf("2 2, 0 0, 0 4, 2 2, 4 4, 4 0"));
}

TEST(Regularize, ACurlIsTurnedOver) {
  EXPECT_EQ(regularized(squareWithCurl()), pointsOf("10 10, 0 10, 0 0, 5 2.5, 4 3, 6 3, 5 2.5, 10 0"));
}

TEST(OuterHull, ACurlOnTheInsideIsDropped) {
  const Points hull = hullOf(squareWithCurl());
  EXPECT_EQ(hull.size(), 5u);
  EXPECT_EQ(gxRegion(hull).area(false), 100.0 - 12.5);
}

TEST(OuterHull, ACurlOnTheOutsideIsKeptAsATouchingLoop) {
  const Points hull = hullOf(pointsOf("0 0, 6 -3, 4 -3, 10 0, 10 10, 0 10"));
  EXPECT_EQ(hull.size(), 8u);
  EXPECT_DOUBLE_EQ(gxRegion(hull).area(false), 100.0 + 12.5 + 0.5);
}

TEST(OuterHull, IsNoLargerThanTheConvexHull) {
  for (const Points& outline : {bowTie(), squareWithCurl(), cutPentagram(false)}) {
    gxRegion convex;
    gxRegion(outline).convexHull(convex);
    EXPECT_LE(gxRegion(hullOf(outline)).area(false), convex.area(false) * (1 + 1e-12));
  }
}

TEST(Repair, OfAFigureThatGoesAroundTwiceKeepsTheOneTipTheWalkCloses) {
  // At a crossing the walk turns back against its direction.  Where two strands run the same way
  // around, that leads into the figure: from the cut tip to its two notches, and it has closed.
  const Points outline = cutPentagram(false);
  const Points walked = regularized(outline);
  ASSERT_EQ(walked.size(), 4u);
  EXPECT_EQ(walked[0], outline[5]);
  EXPECT_EQ(walked[3], outline[4]);
  EXPECT_EQ(hullOf(outline), walked);
  EXPECT_FALSE(gxContour(walked).isSelfIntersecting());
}

TEST(OuterHull, ARepeatedVertexDoesNotMakeItFail) {
  Points outline = squareWithCurl();
  outline.insert(outline.begin() + 4, outline[4]);
  outline.insert(outline.begin() + 4, outline[4]);
  const Points hull = hullOf(outline);
  EXPECT_EQ(gxRegion(hull).area(false), 100.0 - 12.5);
  EXPECT_EQ(hull.size(), 5u) << "and is dropped";
}

TEST(Repair, TheResultNeverHasHoles) {
  gxRegion region(pointsOf("0 0, 40 40, 40 0, 0 40"));
  region.holes({shared(gxRegion(square(3, 18, 2)))});
  region.label(5);
  gxRegion result = squareWithHole();
  region.regularize(result);
  EXPECT_TRUE(result.holes().empty());
  EXPECT_EQ(result.label(), 0u);
  result = squareWithHole();
  region.outerHull(result);
  EXPECT_TRUE(result.holes().empty());
}

TEST(Repair, IntoItselfReplacesTheRegion) {
  gxRegion region(bowTie());
  region.regularize(region);
  EXPECT_EQ(region.points(), regularized(bowTie()));
  gxRegion other(bowTie());
  other.outerHull(other);
  EXPECT_EQ(other.points(), hullOf(bowTie()));
}

TEST(Repair, IntoItselfWhenTheResultIsRememberedAlready) {
  gxRegion region(bowTie());
  gxRegion elsewhere;
  region.outerHull(elsewhere);
  region.outerHull(region);
  EXPECT_EQ(region.points(), elsewhere.points());
}

TEST(Repair, TheCoreMayWriteIntoTheRegionItReads) {
  gxRegion region(bowTie());
  gx_RegionInside::outerHullRegularize(region, region, true);
  EXPECT_EQ(region.points(), hullOf(bowTie()));
}

TEST(Repair, TheCoreAsksForThreePoints) {
  gxRegion result(square(0, 0, 1));
  for (const char* text : {"", "1 1", "0 0, 1 1"}) {
    SCOPED_TRACE(text);
    EXPECT_THROW(gx_RegionInside::outerHullRegularize(gxRegion(pointsOf(text)), result, false),
                 gxContourDefs::EmptyContour);
    EXPECT_THROW(gx_RegionInside::outerHullRegularize(gxRegion(pointsOf(text)), result, true),
                 gxContourDefs::EmptyContour);
  }
  EXPECT_EQ(result.points(), square(0, 0, 1)) << "untouched";
}

TEST(Repair, TheCoreWalksASimpleOutlineToo) {
  gxRegion result;
  gx_RegionInside::outerHullRegularize(gxRegion(square(0, 0, 4)), result, false);
  EXPECT_EQ(result.points(), pointsOf("4 0, 4 4, 0 4, 0 0"));
}

// ---- Memory ---------------------------------------------------------------------------------------

TEST(Repair, IsComputedOnceForEachForm) {
  const gxRegion region(bowTie());
  const Computed regular(gx_Computation::eRegularize);
  const Computed hull(gx_Computation::eOuterHull);
  gxRegion result;
  for (int i = 0; i < 3; ++i) region.regularize(result);
  EXPECT_EQ(regular.times(), 1);
  EXPECT_EQ(hull.times(), 0) << "the two are remembered apart";
  for (int i = 0; i < 3; ++i) region.outerHull(result);
  EXPECT_EQ(hull.times(), 1);
}

TEST(Repair, NewHolesDropTheRememberedForm) {
  gxRegion region(bowTie());
  gxRegion result;
  region.outerHull(result);
  region.holes({});
  const Computed hull(gx_Computation::eOuterHull);
  region.outerHull(result);
  EXPECT_EQ(hull.times(), 1);
}

TEST(Repair, AfterAThrowNothingIsRememberedAndTheResultIsUntouched) {
  const gxRegion region(pentagram());
  gxRegion result = squareWithHole();
  const Computed regular(gx_Computation::eRegularize);
  const Computed hull(gx_Computation::eOuterHull);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(messageOfBadParams([&] { region.regularize(result); }), L"invalid contour");
    EXPECT_EQ(messageOfBadParams([&] { region.outerHull(result); }), L"invalid contour");
  }
  EXPECT_EQ(regular.times(), 3) << "tried anew each time";
  EXPECT_EQ(hull.times(), 3);
  EXPECT_EQ(result.points(), square(0, 0, 10));
  EXPECT_EQ(result.holes().size(), 1u);
}

TEST(Repair, IntoItselfThatThrowsLeavesTheRegionAsItWas) {
  gxRegion region(pentagram());
  region.label(3);
  EXPECT_EQ(messageOfBadParams([&] { region.outerHull(region); }), L"invalid contour");
  EXPECT_EQ(region.points(), pentagram());
  EXPECT_EQ(region.label(), 3u);
}

TEST(Repair, ARegionRepairedAfterAFailureWorks) {
  gxRegion region(pentagram());
  EXPECT_THROW(region.regularize(region), gxContourDefs::BadParams);
  region.points(bowTie());
  gxRegion result;
  region.regularize(result);
  EXPECT_EQ(result.points(), regularized(bowTie()));
}

TEST(Repair, ACopyGetsTheResultComputedBeforeAndKeepsItWhenTheOriginalChanges) {
  gxRegion region(bowTie());
  gxRegion result;
  region.outerHull(result);
  const gxRegion copy(region);
  region.points(squareWithCurl());
  region.outerHull(result);
  gxRegion ofCopy;
  copy.outerHull(ofCopy);
  EXPECT_EQ(ofCopy.points(), hullOf(bowTie()));
}

// ---- Failures -------------------------------------------------------------------------------------

TEST(RepairFailure, EveryEdgeCrossedIsAnInvalidContour) {
  EXPECT_EQ(messageOfBadParams([] { regularized(pentagram()); }), L"invalid contour");
  EXPECT_EQ(messageOfBadParams([] { hullOf(pentagram()); }), L"invalid contour");
}

TEST(RepairFailure, TheClosingEdgeIsNeverTheStart) {
  EXPECT_NO_THROW(regularized(cutPentagram(false)));
  EXPECT_EQ(messageOfBadParams([] { regularized(cutPentagram(true)); }), L"invalid contour");
}

TEST(RepairFailure, AWalkThatNeverClosesIsAnInvalidContour) {
  // There is an edge to start from, but two edges lie on each other, and the walk goes round between
  // them for ever (see the walk's own tests).
  const Points outline = pointsOf("0 0, 6 0, 4 3, 6 3, 4 0, 10 0, 10 10, 0 10");
  EXPECT_TRUE(gxContour(outline).isSelfIntersecting());
  EXPECT_EQ(messageOfBadParams([&] { regularized(outline); }), L"invalid contour");
  EXPECT_EQ(messageOfBadParams([&] { hullOf(outline); }), L"invalid contour");
}

// ---- Ends of the range ----------------------------------------------------------------------------

TEST(Repair, OfAnyCoordinatesEndsInAResultOrAnInvalidContour) {
  for (const char* text :
       {"nan 0, 4 4, 4 0, 0 4", "0 0, inf inf, 4 0, 0 4", "0 0, 4 4, 4 -inf, 0 4",
        "-1e308 -1e308, 1e308 1e308, 1e308 -1e308, -1e308 1e308", "0 0, 1e308 1e308, 4 0, 0 4",
        "0 0, 4e-324 4e-324, 4e-324 0, 0 4e-324", "0 0, 1e-7 1e-7, 1e-7 0, 0 1e-7", "0 0, 0 0, 0 0, 0 0",
        "0 0, 4 0, 2 0, 6 0", "0 0, 4 4, nan nan, 4 0, 0 4, 2 2"}) {
    SCOPED_TRACE(text);
    const gxRegion region(pointsOf(text));
    for (const bool hull : {false, true}) {
      gxRegion result;
      const auto repair = [&] { gx_RegionInside::outerHullRegularize(region, result, hull); };
      const std::wstring message = messageOfBadParams(repair);
      EXPECT_TRUE(message == L"(no BadParams)" || message == L"invalid contour");
      EXPECT_EQ(result.points().empty(), message == L"invalid contour");
    }
  }
}

TEST(Repair, OfAHugeBowTieIsThatOfASmallOne) {
  const Points hull = hullOf(pointsOf("0 0, 4e100 4e100, 4e100 0, 0 4e100"));
  ASSERT_EQ(hull.size(), 6u);
  EXPECT_NEAR(hull[0].x() / 1e100, 2.0, 1e-12);
}

// ---- Random ---------------------------------------------------------------------------------------

TEST(Repair, ReachesNoFartherThanTheFigure) {
  RandomShapes random("repair within the figure", 300);
  long repaired = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points outline = random.finiteOutline();
    const gxRegion region(outline);
    if (outline.size() < 3 || !region.isSelfIntersecting()) continue;
    gxRegion result;
    const std::wstring message = messageOfBadParams([&] { region.outerHull(result); });
    if (message != L"(no BadParams)") {
      EXPECT_EQ(message, L"invalid contour");
      continue;
    }
    ++repaired;
    const gxRect figure = region.encloseRect(gxXform<2>::I);
    const double slack = 1e-6 + 1e-12 * (figure.size().x() + figure.size().y() + figure.origin().len());
    for (const V& p : result.points()) EXPECT_LE(region.distToPoint(p, false), slack);
  }
  EXPECT_GT(repaired, 20);
}

}  // namespace
