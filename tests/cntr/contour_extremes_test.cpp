#include <cntr/contour.h>
#include <cntr/regionst.h>

#include <support/computed.h>
#include <support/shape_text.h>
#include <velstd/random.h>
#include <velstd/real_eq.h>

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <limits>
#include <numbers>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = std::numbers::pi;

gxContour square() {
  return gxContour(pointsOf("0 0, 1 0, 1 1, 0 1"));
}

gxXform<2> moved(double x, double y) {
  return {gxMatrix<2>(1, 0, 0, 1), V(x, y)};
}

// ---- Farthest vertex ------------------------------------------------------------------------------

TEST(ContourExtremalVertex, AlongTheAxesTheLowestIndexWinsTies) {
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(0)), 1);
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(kPi / 2)), 2);
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(kPi)), 0);
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(3 * kPi / 2)), 0);
}

TEST(ContourExtremalVertex, AlongAnAxisBareCoordinatesAreCompared) {
  // In the direction of the y axis cos(π/2) is 6e-17, not 0: as a dot product vertex 1 would win.
  const gxContour contour(pointsOf("0 5, 1 5, 0 0"));
  EXPECT_EQ(contour.extremalVertexIndex(gxRadian(kPi / 2)), 0);
  const gxContour wide(pointsOf("0 5, 1e17 5, 0 0"));
  EXPECT_EQ(wide.extremalVertexIndex(gxRadian(kPi / 2)), 0);
  EXPECT_EQ(wide.extremalVertexIndex(gxRadian(kPi / 2 - 4e-16)), 0) << "within 1e-15 of the axis";
  EXPECT_EQ(wide.extremalVertexIndex(gxRadian(kPi / 2 - 3e-15)), 1) << "farther than that";
}

TEST(ContourExtremalVertex, EachAxisDirectionIsExact) {
  // In each direction vertices 0 and 1 tie; the sine or cosine that ought to be 0 would prefer 1.
  EXPECT_EQ(gxContour(pointsOf("5 0, 5 -1e17, 0 0")).extremalVertexIndex(gxRadian(2 * kPi + 1e-16)), 0);
  EXPECT_EQ(gxContour(pointsOf("-5 0, -5 1e17, 0 0")).extremalVertexIndex(gxRadian(kPi)), 0);
  EXPECT_EQ(gxContour(pointsOf("-5 0, -5 -1e17, 0 0")).extremalVertexIndex(gxRadian(-kPi)), 0);
  EXPECT_EQ(gxContour(pointsOf("0 5, 1e17 5, 0 0")).extremalVertexIndex(gxRadian(kPi / 2)), 0);
  EXPECT_EQ(gxContour(pointsOf("0 -5, -1e17 -5, 0 0")).extremalVertexIndex(gxRadian(3 * kPi / 2)), 0);
  EXPECT_EQ(gxContour(pointsOf("0 -5, 1e17 -5, 0 0")).extremalVertexIndex(gxRadian(-kPi / 2)), 0);
}

TEST(ContourExtremalVertex, InADirectionBetweenTheAxesTheDotProductDecides) {
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(0.7)), 2);
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(kPi + 0.7)), 0);
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(-0.7)), 1);
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(2.5)), 3);
}

TEST(ContourExtremalVertex, AnglesNeedNotBeNormalised) {
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(0.7 - 20 * kPi)), 2);
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(-3 * kPi / 2)), 2);
}

TEST(ContourExtremalVertex, TwoCoincidentPointsGiveTheFirst) {
  for (const double angle : {0.0, 0.7, 2.0, 4.0, -1.0, 100.0}) {
    EXPECT_EQ(gxContour(pointsOf("3 4, 3 4")).extremalVertexIndex(gxRadian(angle)), 0);
  }
}

TEST(ContourExtremalVertex, PositionIsThePointOfThatIndex) {
  EXPECT_EQ(square().extremalVertexPosition(gxRadian(0.7)), V(1, 1));
  EXPECT_EQ(square().extremalVertexPosition(gxRadian(0)), V(1, 0));
}

TEST(ContourExtremalVertex, ANaNAngleGivesNoIndexAndNoPosition) {
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(kNaN)), -1);
  EXPECT_TRUE(std::isnan(square().extremalVertexPosition(gxRadian(kNaN)).x()));
  EXPECT_TRUE(std::isnan(square().extremalVertexPosition(gxRadian(kNaN)).y()));
}

TEST(ContourExtremalVertex, AnInfiniteAngleIsNoDirection) {
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(kInf)), -1);
  EXPECT_EQ(square().extremalVertexIndex(gxRadian(-kInf)), -1);
}

TEST(ContourExtremalVertex, OfPointsThatAreAllNaNIsMinusOne) {
  const gxContour contour(pointsOf("nan nan, nan nan"));
  EXPECT_EQ(contour.extremalVertexIndex(gxRadian(0)), -1);
  EXPECT_EQ(contour.extremalVertexIndex(gxRadian(0.7)), -1);
  EXPECT_TRUE(std::isnan(contour.extremalVertexPosition(gxRadian(0)).x()));
}

TEST(ContourExtremalVertex, NaNVerticesLoseAgainstAllOthers) {
  const gxContour contour(pointsOf("nan 0, -7 -7, 0 nan"));
  EXPECT_EQ(contour.extremalVertexIndex(gxRadian(0.7)), 1);
  EXPECT_EQ(contour.extremalVertexIndex(gxRadian(0)), 2) << "along x only x is read";
}

TEST(ContourExtremalVertex, TheMostNegativeFiniteScoreIsNotAboveTheStart) {
  const double lowest = std::numeric_limits<double>::lowest();
  EXPECT_EQ(gxContour({V(lowest, 0), V(-kInf, 0)}).extremalVertexIndex(gxRadian(0)), -1);
  EXPECT_EQ(gxContour({V(lowest, 0), V(-1e308, 0)}).extremalVertexIndex(gxRadian(0)), 1);
}

TEST(ContourExtremalVertex, AnInfiniteVertexIsFarthestAndTheFirstOfThemWins) {
  EXPECT_EQ(gxContour(pointsOf("0 0, inf 0, inf 0")).extremalVertexIndex(gxRadian(0)), 1);
  EXPECT_EQ(gxContour(pointsOf("0 0, 1e308 1e308, 1.7e308 1.7e308")).extremalVertexIndex(gxRadian(0.7)),
            2);
}

TEST(ContourExtremalVertex, DenormalsAreTold) {
  EXPECT_EQ(gxContour(pointsOf("0 0, 5e-324 0, 1e-323 0")).extremalVertexIndex(gxRadian(0)), 2);
}

// ---- Enclosing rectangle --------------------------------------------------------------------------

TEST(ContourEncloseRect, UprightItIsTheBoxOfTheVertices) {
  const gxContour contour(pointsOf("3 1, -2 5, 4 -7"), false);
  const gxRect rect = contour.encloseRect(gxXform<2>());
  EXPECT_EQ(rect.origin(), V(-2, -7));
  EXPECT_EQ(rect.corner(), V(4, 5));
  EXPECT_EQ(rect.size(), V(6, 12));
}

TEST(ContourEncloseRect, InAnotherFrameItIsTheBoxOfTheMappedVertices) {
  const gxXform<2> quarterTurn(gxMatrix<2>(0, -1, 1, 0), V(10, 20));
  const gxRect rect = gxContour(pointsOf("0 0, 4 0, 4 1")).encloseRect(quarterTurn);
  EXPECT_EQ(rect.origin(), V(9, 20));
  EXPECT_EQ(rect.size(), V(1, 4));
}

TEST(ContourEncloseRect, ATransformWithinOneQuadrillionthOfTheIdentityLeavesThePointsAlone) {
  const gxXform<2> nearly(gxMatrix<2>(1 + 8e-16, 0, 0, 1), V(0, 0));
  EXPECT_EQ(gxContour(pointsOf("0 0, 1e16 0")).encloseRect(nearly).corner(), V(1e16, 0));
  const gxXform<2> farther(gxMatrix<2>(1 + 2e-15, 0, 0, 1), V(0, 0));
  EXPECT_GT(gxContour(pointsOf("0 0, 1e16 0")).encloseRect(farther).corner().x(), 1e16);
}

TEST(ContourEncloseRect, OfTwoCoincidentPointsHasNoSize) {
  EXPECT_EQ(gxContour(pointsOf("3 4, 3 4")).encloseRect(gxXform<2>()), gxRect(V(3, 4), V(0, 0)));
  EXPECT_EQ(gxContour(pointsOf("3 4, 3 4")).encloseRect(moved(1, 1)), gxRect(V(4, 5), V(0, 0)));
}

TEST(ContourEncloseRect, EveryVertexIsWithinItHoweverOddItsDigits) {
  const std::vector<V> points = pointsOf("0.1 0.7, 1e16 0.3, -0.30000000000000004 1e-17, 3.3 -1e15");
  const gxRect rect = gxContour(points).encloseRect(gxXform<2>());
  for (const V& p : points) EXPECT_TRUE(rect.within(p));
}

TEST(ContourEncloseRect, ANaNIsPassedOverExceptInTheFirstVertex) {
  const gxRect rect = gxContour(pointsOf("0 0, nan 5, 3 nan, 1 1")).encloseRect(gxXform<2>());
  EXPECT_EQ(rect, gxRect(V(0, 0), V(3, 5)));
  const gxRect first = gxContour(pointsOf("nan 0, 5 5, 3 3")).encloseRect(gxXform<2>());
  EXPECT_TRUE(std::isnan(first.origin().x()));
  EXPECT_EQ(first.origin().y(), 0.0);
  EXPECT_EQ(first.corner().y(), 5.0);
}

TEST(ContourEncloseRect, InfiniteAndHugeCoordinatesMakeAnInfiniteSize) {
  const gxRect infinite = gxContour(pointsOf("0 0, inf 1, -inf 2")).encloseRect(gxXform<2>());
  EXPECT_EQ(infinite.origin(), V(-kInf, 0));
  EXPECT_EQ(infinite.corner(), V(kInf, 2));
  const gxRect huge = gxContour(pointsOf("-1e308 0, 1e308 1")).encloseRect(gxXform<2>());
  EXPECT_EQ(huge.origin(), V(-1e308, 0));
  EXPECT_EQ(huge.corner(), V(1e308, 1));
  EXPECT_EQ(huge.size(), V(kInf, 1));
}

TEST(ContourEncloseRect, DenormalSizesAreKept) {
  EXPECT_EQ(gxContour(pointsOf("0 0, 5e-324 1e-323")).encloseRect(gxXform<2>()).size(),
            V(5e-324, 1e-323));
}

TEST(ContourEncloseRect, ATransformWithANaNGivesANaNRectangle) {
  const gxRect rect = square().encloseRect(moved(kNaN, 0));
  EXPECT_TRUE(std::isnan(rect.origin().x()));
  EXPECT_EQ(rect.origin().y(), 0.0);
}

TEST(ContourExtremes, OnePointOrNoneIsRefused) {
  for (const std::string text : {"", "1 1"}) {
    const gxContour contour(pointsOf(text));
    EXPECT_THROW(contour.extremalVertexIndex(gxRadian(0)), gxContourDefs::EmptyContour);
    EXPECT_THROW(contour.extremalVertexPosition(gxRadian(0)), gxContourDefs::EmptyContour);
    EXPECT_THROW(contour.encloseRect(gxXform<2>()), gxContourDefs::EmptyContour);
  }
}

// ---- What is remembered -----------------------------------------------------------------------------

long anglesComputed(const gxContour& contour, const std::vector<double>& angles) {
  const Computed computed(gx_Computation::eExtremalVertex);
  for (const double angle : angles) contour.extremalVertexIndex(gxRadian(angle));
  return computed.times();
}

TEST(ContourExtremesMemory, HoldsOneAnswerMoreThanCachedVectorSize) {
  const gxContour contour = square();
  EXPECT_EQ(anglesComputed(contour, {0.1, 0.2, 0.3, 0.4}), 4);
  EXPECT_EQ(anglesComputed(contour, {0.1, 0.2, 0.3, 0.4}), 0) << "size 3 holds four";
}

TEST(ContourExtremesMemory, WithSizeZeroHoldsOneAnswerAndEveryNewQuestionReplacesIt) {
  gxContour contour = square();
  contour.cachedVectorSize(0);
  EXPECT_EQ(anglesComputed(contour, {0.1, 0.1, 0.2, 0.2, 0.1, 0.1}), 3);
  const Computed rects(gx_Computation::eEncloseRect);
  for (const double x : {1.0, 1.0, 2.0, 2.0, 1.0, 1.0}) contour.encloseRect(moved(x, 0));
  EXPECT_EQ(rects.times(), 3);
}

TEST(ContourExtremesMemory, WithSizeOneHoldsTwoAnswers) {
  gxContour contour = square();
  contour.cachedVectorSize(1);
  EXPECT_EQ(anglesComputed(contour, {0.1, 0.2, 0.1, 0.2, 0.1, 0.2}), 2);
}

TEST(ContourExtremesMemory, AboveTheBoundANewAnswerReplacesExactlyOneOldOne) {
  const gxContour contour = square();
  anglesComputed(contour, {0.1, 0.2, 0.3, 0.4, 0.5});
  EXPECT_EQ(anglesComputed(contour, {0.5}), 0) << "the newest is always kept";
  int remembered = 0;
  for (const double angle : {0.1, 0.2, 0.3, 0.4}) {
    const gxContour copy(contour);  // asking would remember
    if (anglesComputed(copy, {angle}) == 0) ++remembered;
  }
  EXPECT_EQ(remembered, 3);
}

TEST(ContourExtremesMemory, ALoweredBoundTrimsNothing) {
  gxContour contour = square();
  anglesComputed(contour, {0.1, 0.2, 0.3, 0.4});
  contour.cachedVectorSize(0);
  EXPECT_EQ(anglesComputed(contour, {0.1, 0.2, 0.3, 0.4}), 0);
}

TEST(ContourExtremesMemory, ARaisedBoundMakesRoom) {
  gxContour contour = square();
  contour.cachedVectorSize(10);
  const std::vector<double> angles = {0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0, 1.1};
  EXPECT_EQ(anglesComputed(contour, angles), 11);
  EXPECT_EQ(anglesComputed(contour, angles), 0);
}

TEST(ContourExtremesMemory, AnglesAFullTurnApartAreDifferentQuestions) {
  EXPECT_EQ(anglesComputed(square(), {0.7, 0.7 + 2 * kPi, 0.7 - 2 * kPi}), 3);
  EXPECT_EQ(anglesComputed(square(), {0.0, -0.0}), 1) << "0 equals -0";
}

TEST(ContourExtremesMemory, NaNAnglesAreComputedEachTimeAndTakeNoPlace) {
  gxContour contour = square();
  contour.cachedVectorSize(0);
  anglesComputed(contour, {0.5});
  EXPECT_EQ(anglesComputed(contour, {kNaN, kNaN, -kNaN}), 3);
  EXPECT_EQ(anglesComputed(contour, {0.5}), 0);
}

TEST(ContourExtremesMemory, AnAnswerOfMinusOneIsRememberedToo) {
  EXPECT_EQ(anglesComputed(gxContour(pointsOf("nan nan, nan nan")), {0.5, 0.5}), 1);
}

TEST(ContourExtremesMemory, TransformsWithANaNAreComputedEachTime) {
  const gxContour contour = square();
  const Computed rects(gx_Computation::eEncloseRect);
  for (int i = 0; i < 3; ++i) contour.encloseRect(moved(kNaN, 0));
  EXPECT_EQ(rects.times(), 3);
}

TEST(ContourExtremesMemory, AShearAlongYIsAnsweredFromTheIdentitysEntry) {
  // Transforms that differ in yx alone count as one, on purpose: whichever comes first answers.
  const gxXform<2> shear(gxMatrix<2>(1, 0, 1, 1), V(0, 0));
  const gxContour contour = square();
  EXPECT_EQ(contour.encloseRect(gxXform<2>()), gxRect(V(0, 0), V(1, 1)));
  EXPECT_EQ(contour.encloseRect(shear), gxRect(V(0, 0), V(1, 1)));
  const gxContour fresh = square();
  EXPECT_EQ(fresh.encloseRect(shear), gxRect(V(0, 0), V(1, 2)));
  EXPECT_EQ(fresh.encloseRect(gxXform<2>()), gxRect(V(0, 0), V(1, 2)));
}

// A shear's rectangle under the identity's key is told by `encloseRect` alone.
TEST(ContourExtremesMemory, AShearAskedBeforeChangesNoOtherAnswer) {
  const gxXform<2> shear(gxMatrix<2>(1, 0, 1, 1), V(0, 0));
  const Points points = pointsOf("10 0, 11 0, 11 1, 10 1");
  const Points bow = pointsOf("10 0, 12 2, 12 0, 10 2");
  const gxRegion asked(points);
  EXPECT_EQ(asked.encloseRect(shear), gxRect(V(10, 10), V(1, 2)));
  EXPECT_EQ(asked.encloseRect(gxXform<2>()), gxRect(V(10, 10), V(1, 2)));
  EXPECT_EQ(asked.intersections(gxLineSeg(V(9, 0.5), V(12, 0.5)), true).size(), 2U);
  EXPECT_EQ(asked.intersections(gxContour(bow)).size(),
            gxRegion(points).intersections(gxContour(bow)).size());
  EXPECT_TRUE(asked.inside(V(10.5, 0.5), false));
  EXPECT_FALSE(asked.inside(V(10.5, 10.5), false));
  gxRegion crossed(bow);
  EXPECT_EQ(crossed.encloseRect(shear).origin(), V(10, 10));
  EXPECT_TRUE(crossed.isSelfIntersecting());
  gxRegion repaired;
  crossed.regularize(repaired);
  EXPECT_FALSE(gxRegion(repaired.points()).isSelfIntersecting());
  EXPECT_TRUE(gxRegionSet({gxPtrHandle_const<gxRegion>(new gxRegion(asked)),
                           gxPtrHandle_const<gxRegion>(new gxRegion(bow))})
                  .isSelfIntersecting());
}

TEST(ContourExtremesMemory, OtherQuestionsNeitherFillNorUseIt) {
  const gxRegion region(pointsOf("0 0, 4 0, 4 4, 0 4"));
  const Computed rects(gx_Computation::eEncloseRect);
  const Computed boxes(gx_Computation::eUprightBox);
  EXPECT_TRUE(region.inside(V(1, 1), false));
  EXPECT_FALSE(region.isSelfIntersecting());
  EXPECT_EQ(region.intersections(gxLineSeg(V(-1, 1), V(9, 1)), true).size(), 2U);
  EXPECT_EQ(rects.times(), 0);
  EXPECT_EQ(boxes.times(), 1);
  const gxXform<2> shear(gxMatrix<2>(1, 0, 1, 1), V(0, 0));
  EXPECT_EQ(region.encloseRect(shear), gxRect(V(0, 0), V(4, 8))) << "the identity's entry is still free";
}

TEST(ContourExtremesMemory, TransformsThatDifferElsewhereAreDifferentQuestions) {
  const gxContour contour = square();
  const Computed rects(gx_Computation::eEncloseRect);
  contour.encloseRect(gxXform<2>(gxMatrix<2>(2, 0, 0, 1), V(0, 0)));
  contour.encloseRect(gxXform<2>(gxMatrix<2>(1, 1, 0, 1), V(0, 0)));
  contour.encloseRect(gxXform<2>(gxMatrix<2>(1, 0, 0, 2), V(0, 0)));
  contour.encloseRect(moved(1, 0));
  EXPECT_EQ(rects.times(), 4);
  EXPECT_EQ(contour.encloseRect(moved(0, 1)), gxRect(V(0, 1), V(1, 1)));
}

TEST(ContourExtremesMemory, IsGoneWhenThePointsChange) {
  gxContour contour = square();
  EXPECT_EQ(contour.extremalVertexIndex(gxRadian(0.7)), 2);
  contour.points(pointsOf("9 9, 0 0"));
  EXPECT_EQ(contour.extremalVertexIndex(gxRadian(0.7)), 0);
  EXPECT_EQ(contour.encloseRect(gxXform<2>()), gxRect(V(0, 0), V(9, 9)));
}

// ---- Which answer is given up -----------------------------------------------------------------------

// Asks random angles of ten, on a thread of its own, and returns for each whether it was computed.
std::vector<bool> computedOnAFreshThread(long cachedVectorSize) {
  std::vector<bool> result;
  std::thread([&] {
    gxContour contour = square();
    contour.cachedVectorSize(cachedVectorSize);
    gxRandomUniform questions(4711);
    for (int i = 0; i < 300; ++i) {
      const double angle = static_cast<double>(gfIFloor(questions.next(0, 10)));
      result.push_back(anglesComputed(contour, {angle}) != 0);
    }
  }).join();
  return result;
}

// What that has to be: a sorted list of keys, of which one drawn by position is replaced.
std::vector<bool> computedByTheRule(long cachedVectorSize) {
  std::vector<bool> result;
  std::set<double> keys;
  gxRandomUniform draws(1);
  gxRandomUniform questions(4711);
  for (int i = 0; i < 300; ++i) {
    const double angle = static_cast<double>(gfIFloor(questions.next(0, 10)));
    result.push_back(keys.count(angle) == 0);
    if (!result.back()) continue;
    if (static_cast<long>(keys.size()) > cachedVectorSize) {
      keys.erase(std::next(keys.begin(), gfIFloor(draws.next(0.0, static_cast<double>(keys.size())))));
    }
    keys.insert(angle);
  }
  return result;
}

TEST(ContourExtremesEviction, OnAFreshThreadFollowsTheGeneratorOfSeedOne) {
  for (const long size : {0L, 1L, 3L, 7L}) {
    SCOPED_TRACE(size);
    EXPECT_EQ(computedOnAFreshThread(size), computedByTheRule(size));
  }
}

TEST(ContourExtremesEviction, IsTheSameOnEveryFreshThread) {
  EXPECT_EQ(computedOnAFreshThread(3), computedOnAFreshThread(3));
}

TEST(ContourExtremesEviction, GivesTheSameAnswersAsNoMemoryAtAll) {
  const gxContour contour(pointsOf("0 0, 5 1, 7 6, 3 9, -2 4"));
  gxRandomUniform draws(99);
  for (int i = 0; i < 500; ++i) {
    const gxRadian angle(static_cast<double>(gfIFloor(draws.next(0, 20))));
    EXPECT_EQ(contour.extremalVertexIndex(angle),
              gxContour(contour.points()).extremalVertexIndex(angle));
    const gxXform<2> frame(gxMatrix<2>(angle, angle, 1, 1), V(0, 0));
    EXPECT_EQ(contour.encloseRect(frame), gxContour(contour.points()).encloseRect(frame));
  }
}

}  // namespace
