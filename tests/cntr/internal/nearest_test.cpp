// Nearest edge and vertex through the index, held against the scan.
#include "large_outlines.h"

#include <cntr/internal/edge_index.h>
#include <cntr/internal/nearest.h>
#include <support/exposed.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>

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
  const gx_EdgeIndex index(points, true);
  // The middle of the square is as far from all four sides, and from the two edges beside the middle
  // of each; the closing edge, at the end of the fourth side, is not among them.
  EXPECT_EQ(gx_nearestEdge(index, points, true, {10, 10}), 10U);
}

TEST(Nearest, OfEquallyNearVerticesTheLowerWins) {
  const std::vector<gxVector<2>> points = square(20);
  const gx_EdgeIndex index(points, true);
  EXPECT_EQ(gx_nearestVertex(index, points, true, {10, 10}), 10U);
}

TEST(Nearest, APointThatIsNotANumberHasNoNearestEdgeAndVertexZero) {
  const std::vector<gxVector<2>> points = square(20);
  const gx_EdgeIndex index(points, true);
  const gxVector<2> nowhere(std::numeric_limits<double>::quiet_NaN(), 0);
  EXPECT_EQ(gx_nearestEdge(index, points, true, nowhere), index.edges());
  EXPECT_EQ(gx_nearestVertex(index, points, true, nowhere), 0U);
}

TEST(Nearest, TheFirstVertexOfAnOpenContourCounts) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < 100; ++i) points.emplace_back(i, 0);
  const gx_EdgeIndex index(points, false);
  EXPECT_EQ(gx_nearestVertex(index, points, false, {-5, 1}), 0U);
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

}  // namespace
