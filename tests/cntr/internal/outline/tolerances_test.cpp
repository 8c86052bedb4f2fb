// What each tolerance decides, a little below it and a little above.
#include <cntr/internal/outline/tolerances.h>
#include <cntr/internal/repair/loops.h>
#include <cntr/region.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using V = gxVector<2>;

TEST(Tolerances, PointsThatCoincideMakeNoEdge) {
  for (const bool same : {true, false}) {
    const double length = same ? gx_kCoincide : 1.01 * gx_kCoincide;
    const gxContour edge({{0.0, 0.0}, {length, 0.0}}, false);
    const gxLineSeg across(V(0.0, -1.0), V(0.0, 1.0));
    EXPECT_EQ(edge.intersections(across, true).empty(), same) << length;
  }
}

TEST(Tolerances, ASegmentThatEndsWithinTheTouchMeetsTheEdge) {
  const gxContour edge({{-5.0, 0.0}, {5.0, 0.0}}, false);
  for (const double part : {0.9, 1.1}) {
    const gxLineSeg above(V(0.0, part * gx_kTouch), V(0.0, 3.0));
    EXPECT_EQ(edge.intersections(above, true).size(), part < 1.0 ? 1U : 0U);
    EXPECT_TRUE(edge.intersections(above, false).empty());
  }
}

TEST(Tolerances, APointOnAVertexIsInside) {
  const gxRegion square({{0.0, 0.0}, {4.0, 0.0}, {4.0, 4.0}, {0.0, 4.0}});
  EXPECT_TRUE(square.inside({4.0 + 0.9 * gx_kOnVertex, 4.0}, true));
  EXPECT_FALSE(square.inside({4.0 + 1.1 * gx_kOnVertex, 4.0}, true));
}

TEST(Tolerances, VerticesThatAreTheSamePinchAWalk) {
  // Two squares that hang together at a corner, passed twice, the second time a little beside it.
  for (const double part : {0.9, 1.1}) {
    const V corner(1.0, 1.0);
    gx_Loops loops({{{0.0, 0.0},
                     {1.0, 0.0},
                     corner,
                     {2.0, 1.0},
                     {2.0, 2.0},
                     {1.0, 2.0},
                     corner + V(part * gx_kSameVertex, 0.0),
                     {0.0, 1.0}}},
                   nullptr);
    loops.cutAtPinchPoints();
    EXPECT_EQ(loops.size(), part < 1.0 ? 2U : 1U);
  }
}

}  // namespace
