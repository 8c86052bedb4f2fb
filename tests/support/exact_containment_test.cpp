#include <support/exact_containment.h>

#include <support/shape_text.h>

#include <gtest/gtest.h>

namespace {

using V = gxVector<2>;

TEST(ExactContainment, TellsInsideOutsideVertexAndEdge) {
  const ExactOutline outline(pointsOf("0 0, 10 0, 10 10, 5 5, 0 10"));
  EXPECT_EQ(outline.locate(V(5, 4)), ExactSide::eInside);
  EXPECT_EQ(outline.locate(V(5, 6)), ExactSide::eOutside);
  EXPECT_EQ(outline.locate(V(-1, 5)), ExactSide::eOutside);
  EXPECT_EQ(outline.locate(V(11, 5)), ExactSide::eOutside);
  EXPECT_EQ(outline.locate(V(5, 5)), ExactSide::eOnVertex);
  EXPECT_EQ(outline.locate(V(7, 7)), ExactSide::eOnEdge);
  EXPECT_EQ(outline.locate(V(0, 3)), ExactSide::eOnEdge);
  EXPECT_EQ(outline.locate(V(5, 0)), ExactSide::eOnEdge);
  EXPECT_EQ(outline.locate(V(7, 7 - ExactOutline::kGrid)), ExactSide::eInside);
  EXPECT_EQ(outline.locate(V(7, 7 + ExactOutline::kGrid)), ExactSide::eOutside);
}

TEST(ExactContainment, IsEvenOdd) {
  const ExactOutline twice(pointsOf("0 0, 10 0, 10 10, 0 10, 0 0, 10 0, 10 10, 0 10"));
  EXPECT_EQ(twice.locate(V(5, 5)), ExactSide::eOutside);
}

TEST(ExactContainment, RaysThroughVerticesAndAlongEdgesCountRight) {
  const ExactOutline steps(pointsOf("0 0, 8 0, 8 2, 4 2, 4 4, 8 4, 8 6, 0 6"));
  EXPECT_EQ(steps.locate(V(2, 2)), ExactSide::eInside) << "the ray runs along an edge";
  EXPECT_EQ(steps.locate(V(2, 4)), ExactSide::eInside);
  EXPECT_EQ(steps.locate(V(6, 3)), ExactSide::eOutside);
  const ExactOutline diamond(pointsOf("0 -2, 2 0, 0 2, -2 0"));
  EXPECT_EQ(diamond.locate(V(0, 0)), ExactSide::eInside) << "the ray runs through a vertex";
  EXPECT_EQ(diamond.locate(V(-3, 0)), ExactSide::eOutside);
  EXPECT_EQ(diamond.locate(V(-1, 2)), ExactSide::eOutside);
}

}  // namespace
