#include <gxshape/interop/fmt.h>

#include <support/region_shapes.h>

#include <fmt/ranges.h>
#include <gtest/gtest.h>

namespace {

TEST(Fmt, WritesWhatPrintingWrites) {
  EXPECT_EQ(fmt::format("{}", V(0.1, -2)), "(0.1, -2)");
  EXPECT_EQ(fmt::format("{}", gxPoint(1, 2)), "(1, 2)");
  EXPECT_EQ(fmt::format("{}", gxPair<long>(3, 4)), "(3, 4)");
  EXPECT_EQ(fmt::format("{} {}", gxRadian(0.5), gxDegree(45)), "0.5 rad 45 deg");
  EXPECT_EQ(fmt::format("{}", gxRect(V(0, 0), V(4, 3))), "[(0, 0), (4, 3)]");
  EXPECT_EQ(fmt::format("{}", gxLineSeg(V(0, 0), V(4, 3))), "(0, 0) to (4, 3)");
  EXPECT_EQ(fmt::format("{}", gxLine(V(0, 0), V(1, 0))), "through (0, 0) along (1, 0)");
  EXPECT_EQ(fmt::format("{}", gxCircle(V(0, 0), 2)), "circle at (0, 0), radius 2");
  EXPECT_EQ(fmt::format("{}", gxEllipse(gxCircle(V(0, 0), 2))), gfText(gxEllipse(gxCircle(V(0, 0), 2))));
  EXPECT_EQ(fmt::format("{}", gxMatrix<2>(1, 0, 0, 1)), "[1 0; 0 1]");
  EXPECT_EQ(fmt::format("{}", gxXform<2>()), "[1 0; 0 1] + (0, 0)");
  EXPECT_EQ(fmt::format("{}", gxPolygon()), "polygon of 0 vertices");
  EXPECT_EQ(fmt::format("{}", gxEdgelet(V(1, 2), 30, gxAngle8(64))),
            "(1, 2), magnitude 30, angle 64/256 turn");
  EXPECT_EQ(fmt::format("{}", gxColor(255, 0, 16)), "#ff0010");
  EXPECT_EQ(fmt::format("{}", gxContour(square(0, 0, 1), false)), "LINESTRING (0 0, 1 0, 1 1, 0 1)");
  EXPECT_EQ(fmt::format("{}", squareWithHole()), gfText(squareWithHole()));
  EXPECT_EQ(fmt::format("{}", gxRegionSet()), "MULTIPOLYGON EMPTY");
}

TEST(Fmt, TakesTheOptionsOfText) {
  EXPECT_EQ(fmt::format("{:>8}|{:<8}|{:^9}", V(1, 2), V(1, 2), V(1, 2)), "  (1, 2)|(1, 2)  | (1, 2)  ");
  EXPECT_EQ(fmt::format("{:.4}", V(1, 2)), "(1, ");
}

}  // namespace
