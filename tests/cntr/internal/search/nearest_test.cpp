// Nearest edge and vertex through the index, held against the scan.
#include <support/large_outlines.h>

#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/search/nearest.h>
#include <support/exposed.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

std::vector<gxVector<2>> square(int perSide) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < perSide; ++i) points.emplace_back(i, 0);
  for (int i = 0; i < perSide; ++i) points.emplace_back(perSide, i);
  for (int i = 0; i < perSide; ++i) points.emplace_back(perSide - i, perSide);
  for (int i = 0; i < perSide; ++i) points.emplace_back(0, perSide - i);
  return points;
}

TEST(Nearest, OfEquallyNearEdgesTheEarlierWins) {
  const std::vector<gxVector<2>> points = square(20);
  const gx_EdgeIndex index({points, true});
  // The middle of the square is as far from all four sides, and from the two edges beside the middle
  // of each; the closing edge, at the end of the fourth side, is not among them.
  EXPECT_EQ(gx_nearestEdge(index, {points, true}, {10, 10}), 10U);
}

TEST(Nearest, OfEquallyNearVerticesTheLowerWins) {
  const std::vector<gxVector<2>> points = square(20);
  const gx_EdgeIndex index({points, true});
  EXPECT_EQ(gx_nearestVertex(index, {points, true}, {10, 10}), 10U);
}

TEST(Nearest, APointThatIsNotANumberHasNoNearestEdgeAndVertexZero) {
  const std::vector<gxVector<2>> points = square(20);
  const gx_EdgeIndex index({points, true});
  const gxVector<2> nowhere(std::numeric_limits<double>::quiet_NaN(), 0);
  EXPECT_EQ(gx_nearestEdge(index, {points, true}, nowhere), index.edges());
  EXPECT_EQ(gx_nearestVertex(index, {points, true}, nowhere), 0U);
}

TEST(Nearest, TheFirstVertexOfAnOpenContourCounts) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < 100; ++i) points.emplace_back(i, 0);
  const gx_EdgeIndex index({points, false});
  EXPECT_EQ(gx_nearestVertex(index, {points, false}, {-5, 1}), 0U);
}

TEST(Nearest, AnswersAsTheScanDoesBitForBit) {
  RandomShapes random("nearest through the index", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = largeOutline(random);
    const ExposedContour contour(outline.points, outline.closed);
    for (int query = 0; query < 12; ++query) {
      const gxVector<2> p = random.pointNear(outline.points);
      EXPECT_TRUE(agree([&] { return contour.closestVertexIndex(p); },
                        [&] { return slow::closestVertexIndex(outline.points, p); }));
      EXPECT_TRUE(agree([&] { return contour.closestPoint(p, false); },
                        [&] { return slow::closestPoint(outline, p, false); }));
      EXPECT_TRUE(agree([&] { return contour.distToPoint(p, true); },
                        [&] { return slow::distToPoint(outline, p, true); }));
    }
  }
}

TEST(Nearest, OnTheEndOfAnEdgeThatIsNotANumberTheEdgesThatAreCount) {
  const gxVector<2> nowhere(3, std::numeric_limits<double>::quiet_NaN());
  const std::vector<gxVector<2>> points = {{0, 0}, {1, 0}, {2, 0}, nowhere, {9, 9}};
  EXPECT_EQ(gx_nearestEdge({points, false}, {9, 9}), 1U);
  EXPECT_EQ(gx_nearestVertex(points, {9, 8}), 4U);
}

// Smooth outlines of thousands of points, whose slabs are thin and whose interior is nearly as far from
// many edges: a circle exactly, with noise, on a pixel grid; big and small, near the origin and far away.
TEST(Nearest, InsideSmoothOutlinesTheAnswerIsThatOfTheScan) {
  RandomShapes random("nearest in smooth outlines", 40);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const int count = random.integer(500, 4000);
    const double radius = std::pow(10.0, random.uniform(-6.0, 9.0));
    const double noise = random.chance(0.3) ? 0.0 : radius * random.uniform(0.0, 6.0) / count;
    const double grid = random.chance(0.3) ? radius * 3.0 / count : 0.0;
    const gxVector<2> at = random.chance(0.5) ? gxVector<2>() : gxVector<2>(radius * 3e5, -radius * 1e4);
    slow::Outline outline{{}, random.chance(0.5)};
    for (int i = 0; i < count; ++i) {
      const double r = radius + noise * random.uniform(-1.0, 1.0);
      gxVector<2> p(r, gxRadian(6.283185307179586 * i / count));
      if (grid > 0.0) p = {grid * std::round(p.x() / grid), grid * std::round(p.y() / grid)};
      outline.points.push_back(at + p);
    }
    const ExposedContour contour(outline.points, outline.closed);
    for (int query = 0; query < 10; ++query) {
      const double out = random.chance(0.2) ? random.uniform(0.0, 100.0) : random.uniform(0.0, 1.0);
      const gxVector<2> p =
          query == 0 ? at : at + gxVector<2>(radius * out, gxRadian(random.uniform(0, 7)));
      EXPECT_TRUE(agree([&] { return contour.closestVertexIndex(p); },
                        [&] { return slow::closestVertexIndex(outline.points, p); }));
      EXPECT_TRUE(agree([&] { return contour.closestPoint(p, false); },
                        [&] { return slow::closestPoint(outline, p, false); }));
    }
  }
}

TEST(Nearest, OfFewPointsTheAnswerIsThatOfTheScan) {
  RandomShapes random("nearest of few points", 2000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto kind =
        static_cast<OutlineKind>(random.integer(0, static_cast<int>(OutlineKind::eCount) - 1));
    slow::Outline outline{random.outline(kind, random.integer(2, 64)), random.chance(0.5)};
    if (outline.points.size() < 2) continue;
    if (random.chance(0.5)) outline.points = random.placed(outline.points);
    const ExposedContour contour(outline.points, outline.closed);
    for (int query = 0; query < 4; ++query) {
      const gxVector<2> p = random.pointNear(outline.points);
      EXPECT_TRUE(agree([&] { return contour.closestVertexIndex(p); },
                        [&] { return slow::closestVertexIndex(outline.points, p); }));
      EXPECT_TRUE(agree([&] { return contour.closestPoint(p, false); },
                        [&] { return slow::closestPoint(outline, p, false); }));
    }
  }
}

}  // namespace
