// Delaunay triangulations: no point in any circle, every hull edge there.
#include <gauge/internal/delaunay.h>
#include <gauge/internal/exact.h>
#include <gtest/gtest.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>
#include <velstd/convex_hull.h>
#include <velstd/orientation.h>

#include <set>

namespace {

using Points = std::vector<gxVector<2>>;

TEST(Delaunay, FewPoints) {
  EXPECT_TRUE(gx_delaunay({}).empty());
  EXPECT_TRUE(gx_delaunay(pointsOf("1 1")).empty());
  EXPECT_TRUE(gx_delaunay(pointsOf("1 1, 1 1")).empty());
  const auto two = gx_delaunay(pointsOf("1 1, 0 0"));
  ASSERT_EQ(two.size(), 1u);
  EXPECT_EQ(two[0].left, gx_DelaunayEdge::kNone);
  EXPECT_EQ(two[0].right, gx_DelaunayEdge::kNone);
  EXPECT_EQ(gx_delaunay(pointsOf("0 0, 1 1, 2 2, 3 3")).size(), 3u);
  EXPECT_EQ(gx_delaunay(pointsOf("0 0, 4 0, 0 3")).size(), 3u);
  EXPECT_EQ(gx_delaunay(pointsOf("0 0, 4 0, 4 4, 0 4")).size(), 5u);
}

TEST(Delaunay, NoPointLiesInTheCircleOfATriangleAndEulerHolds) {
  RandomShapes random("delaunay", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineKind kinds[] = {OutlineKind::eCloud, OutlineKind::eLattice,  OutlineKind::eRegular,
                                 OutlineKind::eLine,  OutlineKind::eRepeated, OutlineKind::eStar};
    const Points points = random.outline(kinds[random.integer(0, 5)], random.integer(1, 60));
    std::set<std::pair<double, double>> distinct;
    for (const auto& p : points) distinct.emplace(p.x(), p.y());
    Points hull;
    gfConvexHull(points, hull);
    const auto edges = gx_delaunay(points);
    std::size_t sides = 0;
    for (const gx_DelaunayEdge& edge : edges) {
      for (const long third : {edge.left, edge.right}) {
        if (third == gx_DelaunayEdge::kNone) continue;
        ++sides;
        const auto& a = points[static_cast<std::size_t>(edge.a)];
        const auto& b = points[static_cast<std::size_t>(edge.b)];
        const auto& c = points[static_cast<std::size_t>(third)];
        EXPECT_EQ(gx_Orientation(a, b, c), third == edge.left ? 1 : -1);
        for (const auto& p : points) EXPECT_LE(gx_InCircle(a, b, c, p), 0);
      }
    }
    EXPECT_EQ(sides % 3, 0u);
    if (hull.size() > 2) {
      // Vertices − edges + triangles = 1.
      EXPECT_EQ(distinct.size() + sides / 3, edges.size() + 1);
    } else if (distinct.size() > 1) {
      EXPECT_EQ(edges.size(), distinct.size() - 1);
    }
  }
}

}  // namespace
