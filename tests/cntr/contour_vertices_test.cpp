#include <cntr/contour.h>
#include <cntr/internal/index/vertex_grid.h>
#include <cntr/internal/memo/eviction.h>
#include <cntr/internal/outline/break_even.h>
#include <velstd/random.h>
#include <velstd/real_eq.h>

#include <support/computed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Indices = std::vector<int>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// So many questions with one tolerance look at every vertex, before a grid is made.
constexpr int kPlainQuestions = 16;

Indices lookUp(const std::string& text, const V& query, double tolerance) {
  return gxContour(pointsOf(text)).vertexIndex(query, tolerance);
}

TEST(ContourVertexLookup, FindsTheVerticesNearerThanTheTolerance) {
  EXPECT_EQ(lookUp("0 0, 1 0, 1.5 0", V(0.5, 0), 1), Indices({0, 1}))
      << "vertex 2 is at exactly the tolerance";
}

TEST(ContourVertexLookup, ComparesDistancesAsRounded) {
  // As doubles, 1.4 - 0.4 is below 1.
  EXPECT_EQ(lookUp("0 0, 1 0, 1.4 0", V(0.4, 0), 1), Indices({0, 1, 2}));
}

TEST(ContourVertexLookup, FindsNothingWhereNothingIsNear) {
  EXPECT_EQ(lookUp("0 0, 1 0, 5 5", V(3, 3), 1), Indices());
}

TEST(ContourVertexLookup, AnswersCellColumnByCellColumnThenCellThenIndex) {
  // Cells as wide as 1, rounded: vertex 0 in cell (1, 0), 1 in (0, 1), 2 in (0, 0), 3 in (0, 0),
  // 4 in (-1, 0).
  EXPECT_EQ(lookUp("0.6 0, 0 0.6, 0.1 0, 0 0.1, -0.6 0", V(0, 0), 1), Indices({4, 2, 3, 1, 0}));
}

TEST(ContourVertexLookup, CellsRoundHalvesAwayFromZero) {
  // 0.5 and 0.7 share cell 1; -0.5 and -0.7 share cell -1.
  EXPECT_EQ(lookUp("0.7 0, 0.5 0, 0.4 0", V(0.5, 0), 1), Indices({2, 0, 1}));
  EXPECT_EQ(lookUp("-0.4 0, -0.7 0, -0.5 0", V(-0.5, 0), 1), Indices({1, 2, 0}));
}

TEST(ContourVertexLookup, RepeatedVerticesComeEachWithItsIndex) {
  EXPECT_EQ(lookUp("3 3, 0 0, 3 3, 3 3", V(3, 3), 0.1), Indices({0, 2, 3}));
}

TEST(ContourVertexLookup, OfAnOpenContourIsTheSame) {
  const gxContour open(pointsOf("0 0, 1 0, 1.5 0"), false);
  EXPECT_EQ(open.vertexIndex(V(0.5, 0), 1), Indices({0, 1}));
}

TEST(ContourVertexLookup, AToleranceOfZeroOrBelowFindsNothing) {
  EXPECT_EQ(lookUp("0 0, 1 0", V(0, 0), 0.0), Indices());
  EXPECT_EQ(lookUp("0 0, 1 0", V(0, 0), -0.0), Indices());
  EXPECT_EQ(lookUp("0 0, 1 0", V(0, 0), -1.0), Indices());
  EXPECT_EQ(lookUp("0 0, 1 0", V(0, 0), -kInf), Indices());
}

TEST(ContourVertexLookup, ANaNToleranceFindsNothing) {
  EXPECT_EQ(lookUp("0 0, 1 0", V(0, 0), kNaN), Indices());
}

TEST(ContourVertexLookup, AnInfiniteToleranceFindsEverythingAtAFiniteDistanceByIndex) {
  EXPECT_EQ(lookUp("9 9, -5 0, nan 1, inf 0, 0 0", V(1, 1), kInf), Indices({0, 1, 4}));
  EXPECT_EQ(lookUp("1e308 0, 0 0", V(-1e308, 0), kInf), Indices({1})) << "that distance overflows";
  EXPECT_EQ(lookUp("0 0, 1 0", V(kNaN, 0), kInf), Indices());
}

TEST(ContourVertexLookup, AToleranceThatMakesNoCellsBuildsNoGrid) {
  const gxContour contour(pointsOf("0 0, 1 0"));
  const Computed grids(gx_Computation::eVertexGrid);
  for (const double tolerance : {0.0, -1.0, kNaN, kInf}) contour.vertexIndex(V(0, 0), tolerance);
  EXPECT_EQ(grids.times(), 0);
}

// More than are looked at one by one at each question.
std::vector<V> manyVertices() {
  std::vector<V> points = pointsOf("0 0, 1 0, 1.5 0, 1.5 0.5, 0 0");
  while (points.size() <= gx_kFewToLookUp)
    points.emplace_back(static_cast<double>(points.size()) * 0.75, 3.0);
  return points;
}

TEST(ContourVertexLookup, OfFewVerticesMakesNoGrid) {
  std::vector<V> points = manyVertices();
  points.resize(gx_kFewToLookUp);
  const gxContour contour(points);
  const Computed grids(gx_Computation::eVertexGrid);
  for (int i = 0; i < 3 * kPlainQuestions; ++i) {
    EXPECT_EQ(contour.vertexIndex(V(1, 0.25), 1.125), (std::vector<int>{0, 4, 1, 2, 3}));
  }
  EXPECT_EQ(grids.times(), 0);
}

TEST(ContourVertexLookup, EachToleranceBuildsItsGridOnce) {
  const gxContour contour(manyVertices());
  const Computed grids(gx_Computation::eVertexGrid);
  for (int i = 0; i < kPlainQuestions; ++i) {
    contour.vertexIndex(V(0, 0), 1);
    contour.vertexIndex(V(0, 0), 1.0000001);
  }
  EXPECT_EQ(grids.times(), 0) << "not before it pays";
  contour.vertexIndex(V(0, 0), 1);
  EXPECT_EQ(grids.times(), 1);
  contour.vertexIndex(V(0, 0), 1.0000001);
  EXPECT_EQ(grids.times(), 2);
  contour.vertexIndex(V(5, 5), 1);
  contour.vertexIndex(V(5, 5), 1.0000001);
  EXPECT_EQ(grids.times(), 2);
}

// Asks once more than is answered without a grid.
void askForAGrid(const gxContour& contour, double tolerance) {
  for (int i = 0; i <= kPlainQuestions; ++i) contour.vertexIndex(V(0, 0), tolerance);
}

TEST(ContourVertexLookup, KnowsAsManyTolerancesAsTheBoundAndOneMore) {
  gxContour contour(manyVertices());
  contour.cachedVectorSize(2);
  for (const double tolerance : {1.0, 2.0, 3.0}) askForAGrid(contour, tolerance);
  const Computed grids(gx_Computation::eVertexGrid);
  for (const double tolerance : {1.0, 2.0, 3.0}) contour.vertexIndex(V(0, 0), tolerance);
  EXPECT_EQ(grids.times(), 0) << "three are known";
  contour.vertexIndex(V(0, 0), 4.0);
  askForAGrid(contour, 1.0);
  EXPECT_EQ(grids.times(), 1) << "the fourth took the place of the first";
}

TEST(ContourVertexLookup, ForgetsTheToleranceThatWasAskedForTheLongestAgo) {
  gxContour contour(manyVertices());
  contour.cachedVectorSize(2);
  for (const double tolerance : {1.0, 2.0, 3.0}) askForAGrid(contour, tolerance);
  contour.vertexIndex(V(0, 0), 1.0);  // so 2 is the one
  contour.vertexIndex(V(0, 0), 4.0);
  const Computed grids(gx_Computation::eVertexGrid);
  for (const double tolerance : {1.0, 3.0}) contour.vertexIndex(V(0, 0), tolerance);
  EXPECT_EQ(grids.times(), 0);
  askForAGrid(contour, 2.0);
  EXPECT_EQ(grids.times(), 1);
}

TEST(ContourVertexLookup, OfABoundOfZeroKnowsTheLastToleranceAlone) {
  gxContour contour(manyVertices());
  contour.cachedVectorSize(0);
  const Computed grids(gx_Computation::eVertexGrid);
  for (const double tolerance : {1.0, 2.0, 1.0}) askForAGrid(contour, tolerance);
  EXPECT_EQ(grids.times(), 3);
}

TEST(ContourVertexLookup, ALoweredBoundForgetsNothing) {
  gxContour contour(manyVertices());
  for (const double tolerance : {1.0, 2.0}) askForAGrid(contour, tolerance);
  contour.cachedVectorSize(0);
  const Computed grids(gx_Computation::eVertexGrid);
  for (const double tolerance : {1.0, 2.0}) contour.vertexIndex(V(0, 0), tolerance);
  EXPECT_EQ(grids.times(), 0);
}

TEST(ContourVertexLookup, DrawsNothingFromTheGeneratorOfTheOtherMemories) {
  long drawn = -1;
  std::thread([&drawn] {
    const gxContour contour(manyVertices());
    for (int i = 1; i < 100; ++i) contour.vertexIndex(V(0, 0), i);
    drawn = gx_drawEvicted(1000);
  }).join();
  EXPECT_EQ(drawn, gfIFloor(gxRandomUniform(1).next(0, 1000))) << "the first draw of a thread";
}

TEST(ContourVertexLookup, AnswersTheSameWhateverWasForgotten) {
  const gxContour contour(manyVertices());
  for (int round = 0; round < 40; ++round) {
    for (const double tolerance : {0.25, 0.75, 1.25, 1.75, 2.25, 2.75}) {
      const V query(0.25 * (round % 7), 0.125);
      EXPECT_EQ(contour.vertexIndex(query, tolerance),
                gx_VertexGrid::scan(contour.points(), tolerance, query));
    }
  }
}

TEST(ContourVertexLookup, QuestionsOfACopyGoOnWhereThoseOfTheOriginalStood) {
  const gxContour contour(manyVertices());
  for (int i = 0; i < kPlainQuestions; ++i) contour.vertexIndex(V(0, 0), 1);
  gxContour copy(contour);
  const Computed grids(gx_Computation::eVertexGrid);
  copy.vertexIndex(V(0, 0), 1);
  EXPECT_EQ(grids.times(), 1);
  copy.isClosed(true);
  copy.vertexIndex(V(0, 0), 1);
  EXPECT_EQ(grids.times(), 1) << "and begin anew where the memory is dropped";
}

TEST(ContourVertexLookup, OfOnePointOrNoneIsRefusedWhateverTheTolerance) {
  for (const std::string text : {"", "1 1"}) {
    for (const double tolerance : {1.0, 0.0, kNaN, kInf}) {
      EXPECT_THROW(lookUp(text, V(1, 1), tolerance), gxContourDefs::EmptyContour);
    }
  }
}

TEST(ContourVertexLookup, QueriesThatAreNotFiniteFindNothing) {
  for (const V& query : {V(kNaN, 0), V(0, kNaN), V(kInf, 0), V(0, -kInf)}) {
    EXPECT_EQ(lookUp("0 0, 1 0, nan 0, inf 0", query, 1), Indices());
  }
}

TEST(ContourVertexLookup, VerticesThatAreNotFiniteAreNeverFound) {
  EXPECT_EQ(lookUp("nan 0, 0 inf, 0 0, -inf nan", V(0, 0), 1e300), Indices({2}));
}

TEST(ContourVertexLookup, CellNumbersPastAllIntegersStillFindWhatIsNear) {
  // At a tolerance of 1e-9 these coordinates have cell numbers of 1e17, 1e25 and beyond.
  EXPECT_EQ(lookUp("1e8 0, 1e16 0, 1e300 0", V(1e8, 0), 1e-9), Indices({0}));
  EXPECT_EQ(lookUp("1e8 0, 1e16 0, 1e300 0", V(1e16, 0), 1e-9), Indices({1}));
  EXPECT_EQ(lookUp("1e8 0, 1e16 0, 1e300 0", V(1e300, 0), 1e-9), Indices({2}));
  EXPECT_EQ(lookUp("-1e300 -1e300, 1e300 1e300", V(-1e300, -1e300), 5e-324), Indices({0}));
}

TEST(ContourVertexLookup, ADenormalToleranceFindsTheVertexItself) {
  EXPECT_EQ(lookUp("0 0, 5e-324 0, 1e-323 0", V(5e-324, 0), 5e-324), Indices({1}));
  EXPECT_EQ(lookUp("0 0, 5e-324 0, 1e-323 0", V(0, 0), 1e-323), Indices({0, 1}));
}

TEST(ContourVertexLookup, AHugeToleranceFindsAllThatIsNearer) {
  EXPECT_EQ(lookUp("1e308 0, -1e308 0, 0 0", V(0, 0), 1.5e308), Indices({1, 2, 0}))
      << "cells -1, 0 and 1";
  EXPECT_EQ(lookUp("1e308 0, -1e308 0, 0 0", V(1e308, 0), 1.7e308), Indices({2, 0}));
}

TEST(ContourVertexLookup, ACoordinateLargeAgainstTheToleranceIsFoundThoughRoundingMovesItsCell) {
  // 40 vertices around 1e9, a few thousand units in the last place apart.
  Points points;
  for (int i = 0; i < 40; ++i) points.emplace_back(1e9 + i * 2.5e-4, 0);
  const gxContour contour(points);
  for (int i = 0; i < 40; ++i) {
    const V& query = points[static_cast<std::size_t>(i)];
    const Indices found = contour.vertexIndex(query, 3e-4);
    EXPECT_EQ(std::count(found.begin(), found.end(), i), 1) << i;
    EXPECT_EQ(found.size(), (i > 0 ? 1u : 0u) + 1u + (i < 39 ? 1u : 0u)) << i;
  }
}

// ---- Against the plain search -----------------------------------------------------------------------

double cellOf(double coordinate, double tolerance) {
  const double scale = std::min(1.0 / tolerance, std::numeric_limits<double>::max());
  const double cell = scale * coordinate;
  return std::clamp(std::trunc(cell >= 0 ? cell + 0.5 : cell - 0.5), -0x1p53, 0x1p53);
}

// Every vertex, by distance alone; then put into the order of the cells.
Indices plainSearch(const Points& points, const V& query, double tolerance) {
  Indices found;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (points[i].distance(query) < tolerance) found.push_back(static_cast<int>(i));
  }
  if (tolerance == kInf) return found;
  const auto cells = [&](int i, auto coordinate) {
    return cellOf(coordinate(points[static_cast<std::size_t>(i)]), tolerance);
  };
  std::stable_sort(found.begin(), found.end(), [&](int a, int b) {
    const auto x = [](const V& p) { return p.x(); };
    const auto y = [](const V& p) { return p.y(); };
    if (cells(a, x) != cells(b, x)) return cells(a, x) < cells(b, x);
    return cells(a, y) < cells(b, y);
  });
  return found;
}

TEST(ContourVertexLookupAtRandom, EqualsThePlainSearchInTheOrderOfTheCells) {
  RandomShapes random("vertex lookup", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    if (points.size() < 2) continue;
    const gxContour contour(points);
    for (int i = 0; i < 20; ++i) {
      const V& near =
          points[static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1))];
      const double tolerance = std::pow(10.0, random.uniform(-6, 3));
      const V query =
          random.chance(0.3) ? near : near + V(random.uniform(-2, 2), random.uniform(-2, 2)) * tolerance;
      EXPECT_EQ(contour.vertexIndex(query, tolerance), plainSearch(points, query, tolerance))
          << "tolerance " << tolerance;
    }
  }
}

TEST(ContourVertexLookupAtRandom, AnswersTheSameBeforeThereIsAGridAndAfter) {
  RandomShapes random("vertex lookup again", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    if (points.size() < 2) continue;
    const gxContour contour(points);
    const double tolerance = std::pow(10.0, random.uniform(-6, 3));
    for (int i = 0; i < 2 * kPlainQuestions; ++i) {
      const V& near =
          points[static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1))];
      const V query =
          random.chance(0.3) ? near : near + V(random.uniform(-2, 2), random.uniform(-2, 2)) * tolerance;
      EXPECT_EQ(contour.vertexIndex(query, tolerance), plainSearch(points, query, tolerance))
          << "tolerance " << tolerance << ", question " << i;
    }
  }
}

TEST(ContourVertexLookupAtRandom, EqualsThePlainSearchForEveryPairOfScales) {
  // Coordinates of any size against tolerances of any size, at the edges of cells and beside them.
  RandomShapes random("vertex lookup scales", 2000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const double tolerance = std::pow(10.0, random.uniform(-320, 308));
    const double size = std::pow(10.0, random.uniform(-320, 308));
    Points points;
    for (int i = 0; i < 12; ++i) {
      const V steps(random.integer(-3, 3) * 0.5, random.integer(-3, 3) * 0.5);
      const V ulps(random.integer(-2, 2), random.integer(-2, 2));
      points.push_back(V(size, -size) + steps * tolerance + ulps * (size * 1.1e-16));
    }
    const gxContour contour(points);
    for (int round = 0; round < 2; ++round) {  // the second finds a grid
      for (const V& query : points) {
        EXPECT_EQ(contour.vertexIndex(query, tolerance), plainSearch(points, query, tolerance));
      }
    }
  }
}

}  // namespace
