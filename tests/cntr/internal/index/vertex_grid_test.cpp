#include <cntr/internal/index/vertex_grid.h>

#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using V = gxVector<2>;
using Indices = std::vector<int>;

Indices near(const std::string& text, const V& query, double tolerance) {
  const std::vector<V> points = pointsOf(text);
  const Indices found = gx_VertexGrid(points, tolerance).near(points, query);
  EXPECT_EQ(gx_VertexGrid::scan(points, tolerance, query), found);
  return found;
}

TEST(VertexGrid, WithoutPointsFindsNothing) {
  EXPECT_EQ(near("", V(0, 0), 1), Indices());
}

TEST(VertexGrid, LooksIntoTheCellsAllAround) {
  // One vertex in each of the nine cells around the query, and one in each corner beyond.
  EXPECT_EQ(near("-0.6 -0.6, -0.6 0, -0.6 0.6, 0 -0.6, 0 0, 0 0.6, 0.6 -0.6, 0.6 0, 0.6 0.6,"
                 "2 2, -2 2, 2 -2, -2 -2",
                 V(0, 0), 1),
            Indices({0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(VertexGrid, ColumnsComeByXAndCellsInAColumnByY) {
  EXPECT_EQ(near("0.6 0.6, 0.6 -0.6, -0.6 0.6, -0.6 -0.6", V(0, 0), 1), Indices({3, 2, 1, 0}));
}

TEST(VertexGrid, AVertexAtExactlyTheToleranceIsOut) {
  EXPECT_EQ(near("3 4, 3 3.9", V(0, 0), 5), Indices({1}));
}

TEST(VertexGrid, EveryCellIsVisitedOnce) {
  // Past 2^53 the cell to the left, the cell itself and the cell to the right are the same number.
  EXPECT_EQ(near("1e20 1e20, 1e20 1e20", V(1e20, 1e20), 1e-3), Indices({0, 1}));
  EXPECT_EQ(near("-1e20 1e20, -1e20 1e20", V(-1e20, 1e20), 1e-3), Indices({0, 1}));
}

TEST(VertexGrid, VerticesOnBothSidesOfTheLastCellAreTold) {
  // 2^53 times the tolerance and the next numbers around it.
  const double last = 0x1p53;
  const std::vector<V> points = {V(last - 1, 0), V(last, 0), V(last + 2, 0), V(last + 4, 0),
                                 V(-last, 0)};
  const gx_VertexGrid grid(points, 1.0);
  EXPECT_EQ(grid.near(points, V(last - 1, 0)), Indices({0}));
  EXPECT_EQ(grid.near(points, V(last, 0)), Indices({1}));
  EXPECT_EQ(grid.near(points, V(last + 4, 0)), Indices({3}));
  EXPECT_EQ(grid.near(points, V(-last, 0)), Indices({4}));
  const gx_VertexGrid wider(points, 2.5);
  EXPECT_EQ(wider.near(points, V(last, 0)), Indices({0, 1, 2}));
}

TEST(VertexGrid, ManyVerticesInOneCellComeByIndex) {
  std::vector<V> points(1000, V(0.1, 0.1));
  const gx_VertexGrid grid(points, 1.0);
  const Indices found = grid.near(points, V(0, 0));
  ASSERT_EQ(found.size(), 1000u);
  EXPECT_EQ(gx_VertexGrid::scan(points, 1.0, V(0, 0)), found);
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(found[static_cast<std::size_t>(i)], i);
}

TEST(VertexGrid, PointsAndQueriesThatAreNotFiniteAreNearToNothing) {
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(near("nan 0, 0 nan, inf 0, 0 -inf, 0 0", V(0, 0), 1), Indices({4}));
  EXPECT_EQ(near("nan 0, inf 0, 0 0", V(inf, 0), 1e308), Indices());
}

}  // namespace
