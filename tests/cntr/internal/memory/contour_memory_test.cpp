// What a contour remembers, seen from outside: every question counts its computations, so a test can
// tell an answer from memory from one that was computed.
#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/memory/contour_memory.h>
#include <cntr/internal/outline/break_even.h>

#include <cntr/contour.h>
#include <cntr/region.h>
#include <support/computed.h>
#include <support/exposed.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

// Twelve points, no three on a line, no two edges alike; and a moved and larger form of them.
const Points kOutline =
    pointsOf("0 0, 7 1, 12 0, 13 5, 18 6, 14 9, 15 15, 9 12, 5 17, 4 11, -2 10, 2 6");
const Points kOther =
    pointsOf("50 50, 64 52, 74 50, 76 60, 86 62, 78 68, 80 80, 68 74, 60 84, 58 72, 46 70, 55 62");

// The same, each edge in seven: so many vertices that looking at all of them is not the end of it.
Points inSevenths(const Points& points) {
  constexpr int kParts = 7;
  static_assert(kParts * 12 > gx_kFewToLookUp);
  Points result;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const V& from = points[i];
    const V& to = points[(i + 1) % points.size()];
    for (int k = 0; k < kParts; ++k)
      result.push_back(from + (to - from) * (k / static_cast<double>(kParts)));
  }
  return result;
}

// The first questions about vertices within a tolerance look at all of them; this one makes the grid.
constexpr int kUntilGrid = 17;

// A question, the computation behind it, and its answer as numbers.
struct Question {
  std::string name;
  gx_Computation computation;
  std::function<std::vector<double>(const ExposedContour&)> answer;
  bool ofMany = false;  // is remembered of many vertices only
};

std::ostream& operator<<(std::ostream& out, const Question& question) {
  return out << question.name;
}

std::vector<double> numbers(const V& v) {
  return {v.x(), v.y()};
}

std::vector<double> numbers(const gxCircle& circle) {
  return {circle.center().x(), circle.center().y(), circle.radius()};
}

std::vector<double> numbers(const gxRect& rect) {
  return {rect.origin().x(), rect.origin().y(), rect.size().x(), rect.size().y()};
}

std::vector<double> edgeNumbers(const ExposedContour& contour) {
  std::vector<double> result;
  for (const gxLineSeg& seg : contour.lineSegs()) {
    result.insert(result.end(), {seg.p1().x(), seg.p1().y(), seg.p2().x(), seg.p2().y()});
  }
  return result;
}

std::vector<double> hullNumbers(const ExposedContour& contour) {
  gxRegion hull;
  contour.convexHull(hull);
  std::vector<double> result;
  for (const V& p : hull.points()) result.insert(result.end(), {p.x(), p.y()});
  return result;
}

std::vector<double> ellipseNumbers(const ExposedContour& contour) {
  gxEllipse ellipse;
  double residual = 0.0;
  contour.fitEllipse(ellipse, residual);
  const auto& geom = ellipse.geom();
  return {geom.center.x(), geom.center.y(), geom.radii.x(), geom.radii.y(), residual};
}

const gxXform<2> kTurned(gxMatrix<2>(0.6, -0.8, 0.8, 0.6), V(1, 2));

const std::vector<Question> kQuestions = {
    {"Length", gx_Computation::eLength,
     [](const ExposedContour& c) { return std::vector<double>{c.length()}; }},
    {"Edges", gx_Computation::eEdges, edgeNumbers},
    {"SelfIntersection", gx_Computation::eSelfIntersection,
     [](const ExposedContour& c) { return std::vector<double>{c.isSelfIntersecting() ? 1.0 : 0.0}; }},
    {"ExtremalVertex", gx_Computation::eExtremalVertex,
     [](const ExposedContour& c) { return numbers(c.extremalVertexPosition(gxRadian(0.7))); }},
    {"UprightBox", gx_Computation::eUprightBox,
     [](const ExposedContour& c) {
       const auto hits = c.gxContour::intersections(gxLineSeg(V(-100, 7), V(100, 8)), true);
       return hits.empty() ? std::vector<double>() : numbers(hits.front());
     }},
    {"EncloseRect", gx_Computation::eEncloseRect,
     [](const ExposedContour& c) { return numbers(c.encloseRect(kTurned)); }},
    {"CircleOfFarthestPair", gx_Computation::eEncloseCircle,
     [](const ExposedContour& c) { return numbers(c.encloseCircle(gxContourDefs::eAllPairs)); }},
    {"CircleAroundFirstPoint", gx_Computation::eEncloseCircle,
     [](const ExposedContour& c) { return numbers(c.encloseCircle(gxContourDefs::eFirstPoint)); }},
    {"ConvexHull", gx_Computation::eConvexHull, hullNumbers},
    {"MeanPosition", gx_Computation::eMeanPosition,
     [](const ExposedContour& c) { return numbers(c.meanPosition()); }},
    {"MedianFeatureSize", gx_Computation::eMedianFeatureSize,
     [](const ExposedContour& c) { return std::vector<double>{c.medianFeatureSize()}; }},
    {"VertexGrid", gx_Computation::eVertexGrid,
     [](const ExposedContour& c) {
       std::vector<double> answers;
       for (int i = 0; i < kUntilGrid; ++i) {
         const std::vector<int> near = c.vertexIndex(V(9, 9), 6.0);
         answers.insert(answers.end(), near.begin(), near.end());
       }
       return answers;
     },
     true},
    {"Ellipse", gx_Computation::eFitEllipse, ellipseNumbers},
};

class ContourMemory : public testing::TestWithParam<Question> {
 protected:
  const Points outline_ = GetParam().ofMany ? inSevenths(kOutline) : kOutline;
  const Points other_ = GetParam().ofMany ? inSevenths(kOther) : kOther;

  std::vector<double> ask(const ExposedContour& contour) const { return GetParam().answer(contour); }

  // Asks, and tells whether it took a computation.
  bool computes(const ExposedContour& contour) const {
    const Computed computed(GetParam().computation);
    ask(contour);
    return computed.times() != 0;
  }
};

INSTANTIATE_TEST_SUITE_P(AllQuestions, ContourMemory, testing::ValuesIn(kQuestions),
                         [](const auto& question) { return question.param.name; });

TEST_P(ContourMemory, FirstCallComputesOnceAndLaterCallsDoNot) {
  const ExposedContour contour(outline_);
  const Computed computed(GetParam().computation);
  const std::vector<double> first = ask(contour);
  EXPECT_EQ(computed.times(), 1);
  EXPECT_EQ(ask(contour), first);
  EXPECT_EQ(ask(contour), first);
  EXPECT_EQ(computed.times(), 1);
}

TEST_P(ContourMemory, IsDroppedByEveryChangeOfPointsOrClosedFlag) {
  const std::vector<std::pair<std::string, std::function<void(ExposedContour&)>>> mutators = {
      {"points", [this](ExposedContour& c) { c.points(outline_); }},
      {"points from own list", [](ExposedContour& c) { c.points(c.points()); }},
      {"setPoints", [this](ExposedContour& c) { c.setPoints(outline_); }},
      {"isClosed(false)", [](ExposedContour& c) { c.isClosed(false); }},
      {"isClosed with the value it has", [](ExposedContour& c) { c.isClosed(c.isClosed()); }},
      {"cleanCacheInfo", [](ExposedContour& c) { c.cleanCacheInfo(); }},
      {"makeDataConsistentWithPoints", [](ExposedContour& c) { c.makeDataConsistentWithPoints(); }},
      {"makePointsConsistentWithData", [](ExposedContour& c) { c.makePointsConsistentWithData(); }},
  };
  for (const auto& [name, change] : mutators) {
    SCOPED_TRACE(name);
    ExposedContour contour(outline_);
    ask(contour);
    change(contour);
    EXPECT_TRUE(computes(contour));
    EXPECT_FALSE(computes(contour));
  }
}

TEST_P(ContourMemory, AnswersForTheNewPointsAfterAChange) {
  ExposedContour contour(outline_);
  const std::vector<double> before = ask(contour);
  contour.points(other_);
  EXPECT_EQ(ask(contour), ask(ExposedContour(other_)));
  contour.setPoints(outline_);
  EXPECT_EQ(ask(contour), before);
}

TEST_P(ContourMemory, IsKeptWhenLabelOrCachedVectorSizeChange) {
  ExposedContour contour(outline_);
  ask(contour);
  contour.label(99);
  contour.cachedVectorSize(0);
  EXPECT_THROW(contour.cachedVectorSize(-1), gxContourDefs::BadParams);
  contour.trackChanges(true);
  contour.mutating_();
  EXPECT_FALSE(computes(contour));
}

TEST_P(ContourMemory, IsKeptWhenAnotherQuestionIsAsked) {
  const ExposedContour contour(outline_);
  ask(contour);
  for (const Question& other : kQuestions) other.answer(contour);
  EXPECT_FALSE(computes(contour));
}

TEST_P(ContourMemory, TravelsWithCopies) {
  const ExposedContour original(outline_);
  const std::vector<double> answer = ask(original);
  const ExposedContour copy(original);
  ExposedContour assigned(other_);
  ask(assigned);
  assigned = original;
  const Computed computed(GetParam().computation);
  EXPECT_EQ(ask(copy), answer);
  EXPECT_EQ(ask(assigned), answer);
  EXPECT_EQ(ask(original), answer);
  EXPECT_EQ(computed.times(), 0);
}

TEST_P(ContourMemory, TravelsWithMoves) {
  ExposedContour original(outline_);
  const std::vector<double> answer = ask(original);
  ExposedContour moved(std::move(original));
  ExposedContour assigned(other_);
  const Computed computed(GetParam().computation);
  EXPECT_EQ(ask(moved), answer);
  assigned = std::move(moved);
  EXPECT_EQ(ask(assigned), answer);
  EXPECT_EQ(computed.times(), 0);
}

TEST_P(ContourMemory, OfACopyIsIndependent) {
  ExposedContour original(outline_);
  const std::vector<double> answer = ask(original);
  const ExposedContour copy(original);
  original.points(other_);
  ask(original);
  const Computed computed(GetParam().computation);
  EXPECT_EQ(ask(copy), answer);
  EXPECT_EQ(computed.times(), 0);
}

TEST_P(ContourMemory, OfACopyDoesNotReachBack) {
  const ExposedContour original(outline_);
  const ExposedContour copy(original);
  ask(copy);
  EXPECT_TRUE(computes(original)) << "only the copy was asked";
}

TEST_P(ContourMemory, IsGoneWithAnAssignmentFromAContourThatWasNeverAsked) {
  ExposedContour contour(outline_);
  ask(contour);
  contour = ExposedContour(other_);
  EXPECT_TRUE(computes(contour));
}

TEST_P(ContourMemory, SurvivesSelfAssignment) {
  ExposedContour contour(outline_);
  ask(contour);
  const ExposedContour& same = contour;
  contour = same;
  EXPECT_FALSE(computes(contour));
}

TEST_P(ContourMemory, OfAMovedFromContourIsGone) {
  ExposedContour contour(outline_);
  ask(contour);
  const ExposedContour moved(std::move(contour));
  contour.points(outline_);  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(computes(contour));
}

TEST_P(ContourMemory, OfARegionSeenAsItsContourComesFromTheAssignedContour) {
  const ExposedContour asked(outline_);
  const std::vector<double> answer = ask(asked);
  gxRegion region(other_);
  static_cast<gxContour&>(region) = asked;
  const ExposedContour copy(region);
  const Computed computed(GetParam().computation);
  EXPECT_EQ(ask(copy), answer);
  EXPECT_EQ(computed.times(), 0);
}

TEST(ContourMemoryOfAnOpenContour, IsNotTakenOverByARegion) {
  //  3 -- 2     open: three sides of a square; as a region's outline: all four
  //       |
  //  0 -- 1
  const gxContour open(pointsOf("0 0, 1 0, 1 1, 0 1"), false);
  EXPECT_EQ(open.length(), 3.0);
  EXPECT_EQ(open.meanPosition(), V(2.0 / 3.0, 0.5));
  gxRegion region;
  static_cast<gxContour&>(region) = open;
  EXPECT_EQ(region.length(), 4.0);
  EXPECT_EQ(region.meanPosition(), V(0.5, 0.5));
  EXPECT_EQ(open.length(), 3.0);
}

TEST(ContourMemoryOfARegion, IsNotTakenOverByAContourThatThenIsOpen) {
  const gxRegion region{gxContour(pointsOf("0 0, 1 0, 1 1, 0 1"), false)};
  EXPECT_EQ(region.length(), 4.0);
  gxContour contour;
  contour = region;
  EXPECT_EQ(contour.length(), contour.isClosed() ? 4.0 : 3.0);
}

TEST(ContourMemoryOfSeveralArguments, EachArgumentHasItsOwnAnswer) {
  const gxContour contour(inSevenths(kOutline));
  const Computed angles(gx_Computation::eExtremalVertex);
  const Computed grids(gx_Computation::eVertexGrid);
  const Computed circles(gx_Computation::eEncloseCircle);
  for (int i = 0; i < 2 * kUntilGrid; ++i) {
    contour.extremalVertexIndex(gxRadian(0.0));
    contour.extremalVertexIndex(gxRadian(0.5));
    contour.vertexIndex(V(0, 0), 1.0);
    contour.vertexIndex(V(0, 0), 1.0000001);
    contour.encloseCircle(gxContourDefs::eAllPairs);
    contour.encloseCircle(gxContourDefs::eFirstPoint);
  }
  EXPECT_EQ(angles.times(), 2);
  EXPECT_EQ(grids.times(), 2);
  EXPECT_EQ(circles.times(), 2);
}

TEST(ContourMemoryDrop, KeepsTheCirclesForPointsThatHaveNoneAndNothingElse) {
  gx_ContourMemory memory;
  memory.aroundFirst.now.set({1, 2, 3});
  memory.ofFarthestPair.made().now.set({4, 5, 6});
  const gxPtrHandle_const<gxRegion> hull(new gxRegion(kOutline));
  memory.convexHull.publish(hull);
  memory.length.set({5});
  memory.drop();
  ASSERT_NE(memory.ofFarthestPair.get(), nullptr);
  const gx_CircleOfMode& farthest = *memory.ofFarthestPair.get();
  EXPECT_EQ(memory.aroundFirst.before, (gx_CircleOfMode::Circle{1, 2, 3}));
  EXPECT_EQ(farthest.before, (gx_CircleOfMode::Circle{4, 5, 6}));
  EXPECT_FALSE(memory.aroundFirst.now.known());
  EXPECT_FALSE(farthest.now.known());
  EXPECT_EQ(memory.convexHull.get(), nullptr);
  EXPECT_EQ(hull->refCount(), 1);
  EXPECT_FALSE(memory.length.known());
  memory.drop();  // nothing is known now: the circle of before stays
  EXPECT_EQ(memory.aroundFirst.before, (gx_CircleOfMode::Circle{1, 2, 3}));
  EXPECT_EQ(farthest.before, (gx_CircleOfMode::Circle{4, 5, 6}));
}

TEST(ContourMemoryDrop, FreesWhatIsSeldomAsked) {
  gx_ContourMemory memory;
  gx_SeldomOfContour& seldom = memory.seldom.made();
  seldom.extremalVertices.insert(1.0, 2, 3);
  seldom.encloseRects.insert(gxXform<2>(), gxRect(), 3);
  seldom.vertexLookups.used(1.0, 3);
  memory.drop();
  EXPECT_EQ(memory.seldom.get(), nullptr);
}

TEST(ContourMemoryWeight, IsHalfOfWhatItWasWithEveryAnswerInPlace) {
  // 512 and 776 bytes on a 64-bit machine when every memory stood in the shape itself.
  EXPECT_LE(sizeof(gxContour), 256U);
  EXPECT_LE(sizeof(gxRegion), 388U);
}

TEST(ContourMemoryCopy, SharesWhatNeverChangesAndCopiesTheRest) {
  gx_ContourMemory memory;
  gx_SeldomOfContour& seldom = memory.seldom.made();
  seldom.extremalVertices.insert(1.0, 2, 3);
  const gxPtrHandle_const<gxRegion> hull(new gxRegion(kOutline));
  memory.convexHull.publish(hull);
  const auto* const edges = &seldom.edges.made([] { return gx_EdgeList(); });
  const gx_ContourMemory copy(memory);
  ASSERT_NE(copy.convexHull.get(), nullptr);
  EXPECT_EQ(*copy.convexHull.get(), hull);
  ASSERT_NE(copy.seldom.get(), nullptr);
  EXPECT_EQ(copy.seldom.get()->edges.get(), edges);
  seldom.extremalVertices.insert(2.0, 2, 3);
  EXPECT_EQ(copy.seldom.get()->extremalVertices.size(), 1);
}

TEST(ContourMemoryAfterAFailure, HoldsNothingOfAQuestionThatThrew) {
  ExposedContour contour(pointsOf("1 1"));
  EXPECT_THROW(contour.meanPosition(), gxContourDefs::EmptyContour);
  EXPECT_THROW(contour.medianFeatureSize(), gxContourDefs::EmptyContour);
  gxRegion hull(kOutline);
  EXPECT_THROW(contour.convexHull(hull), gxContourDefs::EmptyContour);
  EXPECT_EQ(hull.points(), kOutline) << "the result was not touched";
  gxEllipse ellipse(gxCircle(V(1, 2), 3));
  double residual = 42;
  EXPECT_THROW(contour.fitEllipse(ellipse, residual), gxContourDefs::EmptyContour);
  EXPECT_EQ(ellipse, gxEllipse(gxCircle(V(1, 2), 3)));
  EXPECT_EQ(residual, 42);
  contour.points(kOutline);
  for (const Question& question : kQuestions) {
    EXPECT_EQ(question.answer(contour), question.answer(ExposedContour(kOutline))) << question.name;
  }
}

}  // namespace
