// On both sides of every limit from which on an index pays, the answers are those of the plain form.
#include <cntr/internal/outline/break_even.h>
#include <cntr/regionst.h>
#include <support/slow_truth_contour.h>
#include <support/slow_truth_region.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using V = gxVector<2>;

// A round outline with waves; of odd counts one that crosses itself.
std::vector<V> wave(std::size_t count) {
  std::vector<V> points;
  for (std::size_t i = 0; i < count; ++i) {
    const double angle = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(count);
    const double radius = 50.0 + 8.0 * std::sin(5.0 * angle);
    points.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
  }
  if (count % 2 == 1) std::swap(points[count / 3], points[2 * count / 3]);
  return points;
}

std::vector<std::size_t> around(std::size_t limit) {
  return {limit - 1, limit, limit + 1, limit + 2};
}

void expectPlainAnswers(std::size_t count) {
  SCOPED_TRACE(std::to_string(count) + " points");
  const slow::Outline outline{wave(count), true};
  const gxRegion region(outline.points);
  EXPECT_EQ(region.isSelfIntersecting(), slow::isSelfIntersecting(outline));
  const gxCircle circle = slow::encloseCircle(outline.points, gxContourDefs::eAllPairs);
  EXPECT_EQ(region.encloseCircle(gxContourDefs::eAllPairs), circle);
  for (int i = 0; i < 60; ++i) {  // often enough for every index to be made on the way
    const V p(60.0 * std::sin(1.3 * i), 60.0 * std::cos(0.7 * i));
    EXPECT_EQ(region.gxContour::closestPoint(p, false), slow::closestPoint(outline, p, false));
    EXPECT_EQ(region.gxContour::closestVertexIndex(p), slow::closestVertexIndex(outline.points, p));
    EXPECT_EQ(region.vertexIndex(p, 25.0), slow::vertexIndex(outline.points, p, 25.0));
    EXPECT_EQ(region.inside(p, false), slow::inside({outline.points, {}}, p, false));
  }
}

TEST(BreakEven, AnswersAreTheSameOnBothSidesOfEveryNumberOfPoints) {
  for (const std::size_t limit :
       {gx_kFewEdges, gx_kFewPairs, gx_kFewFarthest, gx_kFewToLookUp, gx_kHandful}) {
    for (const std::size_t count : around(limit)) expectPlainAnswers(count);
  }
}

TEST(BreakEven, AScanForContainmentGivesTheRaysAnswerUpToItsLimitAndBeyond) {
  for (const std::size_t count : around(gx_kFewToScan)) {
    const std::vector<V> points = wave(count);
    const gxRegion region(points);
    for (int i = 0; i < 40; ++i) {
      const V p(60.0 * std::sin(1.3 * i), 60.0 * std::cos(0.7 * i));
      EXPECT_EQ(region.inside(p, false), slow::inside({points, {}}, p, false)) << count;
    }
  }
}

TEST(BreakEven, ASetAnswersTheSameOnBothSidesOfItsNumberOfRegions) {
  for (const std::size_t count : around(gx_kFewRegions)) {
    gxRegionSet set;
    std::vector<gxRegion> regions;
    for (std::size_t i = 0; i < count; ++i) {
      std::vector<V> points = wave(12);
      for (V& p : points) p += V(90.0 * static_cast<double>(i), 0.0);
      regions.emplace_back(points);
      set.add(gxPtrHandle_const<gxRegion>(new gxRegion(points)));
    }
    const auto questions = static_cast<int>(4 * gx_kFirstSetIndex);
    for (int i = 0; i < questions; ++i) {
      const V p(37.0 * i, 60.0 * std::cos(0.7 * i));
      bool inside = false;
      for (const gxRegion& region : regions) inside = inside || region.inside(p, false);
      EXPECT_EQ(set.inside(p, false), inside) << count << " regions, place " << i;
    }
  }
}

}  // namespace
