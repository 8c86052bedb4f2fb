// What each tolerance decides, a little below it and a little above.
#include <cntr/internal/outline/tolerances.h>
#include <cntr/internal/repair/loops.h>
#include <cntr/region.h>

#include <gtest/gtest.h>

#include <cmath>
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
  const gxContour edge({{-5.0, -1.0}, {5.0, 1.0}}, false);
  for (const double part : {0.9, 1.1}) {
    const double above = part * gx_kTouch * std::sqrt(1.04);  // so far along y, from a line of slope 0.2
    const gxLineSeg upward(V(0.0, above), V(0.0, 0.5));
    EXPECT_EQ(edge.intersections(upward, true).size(), part < 1.0 ? 1U : 0U);
    EXPECT_TRUE(edge.intersections(upward, false).empty());
  }
}

TEST(Tolerances, APointOnAVertexIsInside) {
  const gxRegion notched({{0.0, 0.0}, {4.0, 0.0}, {4.0, 4.0}, {2.0, 2.0}, {0.0, 4.0}});
  EXPECT_TRUE(notched.inside({2.0, 2.0 + 0.9 * gx_kOnVertex}, true));
  EXPECT_FALSE(notched.inside({2.0, 2.0 + 1.1 * gx_kOnVertex}, true));
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
