// Random contours beside themselves: moved, turned, mirrored, scaled, walked the other way, begun at
// another vertex.  What depends on the shape alone must not change.
#include <cntr/contour.h>

#include <cntr/region.h>
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

// Whole coordinates up to 1000: translations, quarter turns, mirroring and doubling are exact then.
Points wholePoints(RandomShapes& random) {
  Points points;
  const int count = random.chance(0.2) ? random.integer(70, 150) : random.integer(2, 30);
  for (int i = 0; i < count; ++i) {
    points.emplace_back(random.integer(-1000, 1000), random.integer(-1000, 1000));
  }
  return points;
}

gxXform<2> exactTransform(RandomShapes& random) {
  static const gxMatrix<2> kMatrices[] = {{1, 0, 0, 1},  {0, -1, 1, 0}, {-1, 0, 0, -1},
                                          {0, 1, -1, 0}, {1, 0, 0, -1}, {0, 1, 1, 0}};
  const double scale = random.chance(0.5) ? 1.0 : 2.0;
  return {kMatrices[random.integer(0, 5)] * scale,
          V(random.integer(-4000, 4000), random.integer(-4000, 4000))};
}

double scaleOf(const gxXform<2>& xform) {
  return std::sqrt(std::abs(xform.determinant()));
}

gxContour mapped(const gxContour& contour, const gxXform<2>& xform) {
  gxContour result;
  contour.map(xform, result);
  return result;
}

// From the last point to the first, open contours too.
Points backwards(Points points) {
  std::reverse(points.begin(), points.end());
  return points;
}

double hullArea(const gxContour& contour) {
  gxRegion hull;
  contour.convexHull(hull);
  return hull.points().size() < 3 ? 0.0 : hull.area(false);
}

// The crossings with the segment, by edge: along the segment two edges may lie equally far, and then
// rounding orders them.
std::map<int, V> crossingsByEdge(const ExposedContour& contour, const V& from, const V& to) {
  std::vector<int> edges;
  const Points hits = contour.intersections(gxLineSeg(from, to), edges, true);
  std::map<int, V> result;
  for (std::size_t i = 0; i < hits.size(); ++i) result.emplace(edges[i], hits[i]);
  EXPECT_EQ(result.size(), hits.size()) << "an edge is crossed once";
  return result;
}

bool sameCrossings(const std::map<int, V>& here, const std::map<int, V>& there,
                   const gxXform<2>& xform) {
  return std::equal(here.begin(), here.end(), there.begin(), there.end(),
                    [&](const auto& a, const auto& b) {
                      return a.first == b.first && b.second.distance(xform * a.second) < 1e-6;
                    });
}

class Rounds : public RandomShapes {
 public:
  explicit Rounds(const char* tag) : RandomShapes(tag, 400) {}
};

TEST(ContourMovedTurnedMirroredOrDoubled, HasTheMeasuresThatFollow) {
  Rounds random("contour mapped");
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxContour contour(wholePoints(random), random.chance(0.5));
    const gxXform<2> xform = exactTransform(random);
    const gxContour other = mapped(contour, xform);
    const double scale = scaleOf(xform);
    EXPECT_DOUBLE_EQ(other.length(), scale * contour.length());
    EXPECT_DOUBLE_EQ(other.diameter(gxContourDefs::eAllPairs),
                     scale * contour.diameter(gxContourDefs::eAllPairs));
    EXPECT_DOUBLE_EQ(other.diameter(gxContourDefs::eFirstPoint),
                     scale * contour.diameter(gxContourDefs::eFirstPoint));
    EXPECT_DOUBLE_EQ(ExposedContour(other).medianFeatureSize(),
                     scale * ExposedContour(contour).medianFeatureSize());
    EXPECT_NEAR(hullArea(other), scale * scale * hullArea(contour), 1e-6);
    EXPECT_LT(other.meanPosition().distance(xform * contour.meanPosition()), 1e-9);
    EXPECT_EQ(other.isSelfIntersecting(), contour.isSelfIntersecting());
  }
}

TEST(ContourMovedTurnedMirroredOrDoubled, HasItsRectangleWhereTheFrameHadIt) {
  Rounds random("contour frame");
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxContour contour(wholePoints(random));
    const gxXform<2> xform = exactTransform(random);
    EXPECT_EQ(mapped(contour, xform).encloseRect(gxXform<2>()), contour.encloseRect(xform));
  }
}

TEST(ContourMovedTurnedMirroredOrDoubled, IsAsNearAsBefore) {
  Rounds random("contour near");
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxContour contour(wholePoints(random), random.chance(0.5));
    const gxXform<2> xform = exactTransform(random);
    const gxContour other = mapped(contour, xform);
    for (int i = 0; i < 10; ++i) {
      const V query(random.integer(-1500, 1500), random.integer(-1500, 1500));
      const double distance = contour.distToPoint(query, false);
      EXPECT_NEAR(other.distToPoint(xform * query, false), scaleOf(xform) * distance, 1e-9);
      EXPECT_EQ(other.closestVertexIndex(xform * query), contour.closestVertexIndex(query));
    }
  }
}

TEST(ContourMovedTurnedMirroredOrDoubled, IsCrossedOnTheSameEdges) {
  Rounds random("contour crossed");
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const ExposedContour contour(wholePoints(random), random.chance(0.5));
    const gxXform<2> xform = exactTransform(random);
    const ExposedContour other(mapped(contour, xform));
    // Ends between the whole numbers, so that no vertex lies on the segment but by rare chance.
    const V from(random.integer(-1000, 1000) + 0.3125, random.integer(-1000, 1000) + 0.40625);
    const V to(random.integer(-1000, 1000) + 0.59375, random.integer(-1000, 1000) + 0.6875);
    EXPECT_TRUE(sameCrossings(crossingsByEdge(contour, from, to),
                              crossingsByEdge(other, xform * from, xform * to), xform));
  }
}

TEST(ContourWalkedTheOtherWay, HasTheSameMeasures) {
  Rounds random("contour reversed");
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxContour contour(wholePoints(random), random.chance(0.5));
    const gxContour other(backwards(contour.points()), contour.isClosed());
    EXPECT_NEAR(other.length(), contour.length(), 1e-12 * contour.length());
    EXPECT_EQ(other.diameter(gxContourDefs::eAllPairs), contour.diameter(gxContourDefs::eAllPairs));
    EXPECT_EQ(ExposedContour(other).medianFeatureSize(), ExposedContour(contour).medianFeatureSize());
    EXPECT_EQ(hullArea(other), hullArea(contour));
    EXPECT_LT(other.meanPosition().distance(contour.meanPosition()), 1e-9);
    EXPECT_EQ(other.encloseRect(gxXform<2>()), contour.encloseRect(gxXform<2>()));
    EXPECT_EQ(other.isSelfIntersecting(), contour.isSelfIntersecting());
    const V query(random.integer(-1500, 1500), random.integer(-1500, 1500));
    EXPECT_NEAR(other.distToPoint(query, false), contour.distToPoint(query, false), 1e-9);
  }
}

TEST(ClosedContourBegunAtAnotherVertex, HasTheSameMeasures) {
  Rounds random("contour begun elsewhere");
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxContour contour(wholePoints(random));
    const int last = static_cast<int>(contour.points().size()) - 1;
    const auto first = static_cast<std::size_t>(random.integer(0, last));
    const gxContour other(rotatedStart(contour.points(), first));
    EXPECT_NEAR(other.length(), contour.length(), 1e-12 * contour.length());
    EXPECT_EQ(other.diameter(gxContourDefs::eAllPairs), contour.diameter(gxContourDefs::eAllPairs));
    EXPECT_EQ(ExposedContour(other).medianFeatureSize(), ExposedContour(contour).medianFeatureSize());
    EXPECT_EQ(hullArea(other), hullArea(contour));
    EXPECT_LT(other.meanPosition().distance(contour.meanPosition()), 1e-9);
    EXPECT_EQ(other.isSelfIntersecting(), contour.isSelfIntersecting());
    const gxRadian angle(random.uniform(0.0, 6.28));
    const V direction(1.0, angle);
    EXPECT_DOUBLE_EQ(other.extremalVertexPosition(angle) * direction,
                     contour.extremalVertexPosition(angle) * direction);
  }
}

TEST(ClosedContourBegunAtAnotherVertex, HasItsEdgesShiftedByAsMuch) {
  Rounds random("contour edges shifted");
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const ExposedContour contour(wholePoints(random));
    const std::size_t count = contour.points().size();
    const auto first = static_cast<std::size_t>(random.integer(0, static_cast<int>(count) - 1));
    const ExposedContour other(rotatedStart(contour.points(), first));
    for (std::size_t k = 0; k < count; ++k) {
      EXPECT_EQ(other.lineSegs()[k], contour.lineSegs()[(k + first) % count]);
    }
  }
}

TEST(ContourFarFromTheOrigin, IsAskedForTheSameVerticesAndCells) {
  Rounds random("contour far away");
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxContour contour(wholePoints(random));
    const V far(0x1p30, -0x1p31);
    const gxContour other = mapped(contour, gxXform<2>(gxMatrix<2>(1, 0, 0, 1), far));
    const V query(random.integer(-1000, 1000), random.integer(-1000, 1000));
    EXPECT_EQ(other.closestVertexIndex(query + far), contour.closestVertexIndex(query));
    EXPECT_EQ(other.closestPoint(query + far, true), contour.closestPoint(query, true) + far);
    // Cells of width 64: the far point is a whole number of cells away.
    std::vector<int> near = contour.vertexIndex(query, 64.0);
    std::vector<int> there = other.vertexIndex(query + far, 64.0);
    std::sort(near.begin(), near.end());
    std::sort(there.begin(), there.end());
    EXPECT_EQ(near, there);
    EXPECT_EQ(other.diameter(gxContourDefs::eAllPairs), contour.diameter(gxContourDefs::eAllPairs));
    EXPECT_EQ(other.length(), contour.length());
  }
}

}  // namespace
