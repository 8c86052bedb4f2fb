#include <velstd/print.h>

#include <velstd/angle.h>
#include <velstd/circle.h>
#include <velstd/ellipse.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>
#include <velstd/matrix.h>
#include <velstd/polygon.h>
#include <velstd/rect.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

namespace {

template <class T>
std::string printed(const T& value) {
  std::ostringstream out;
  out << std::setprecision(2) << std::fixed << value;  // the stream's own settings take no part
  return out.str();
}

TEST(Print, ShapesOfTheBaseLayer) {
  using V = gxVector<2>;
  EXPECT_EQ(printed(V(1, 0.1)), "(1, 0.1)");
  EXPECT_EQ(printed(gxRadian(0.5)), "0.5 rad");
  EXPECT_EQ(printed(gxDegree(45)), "45 deg");
  EXPECT_EQ(printed(gxRect(V(1, 2), V(4, 3))), "[(1, 2), (5, 5)]");
  EXPECT_EQ(printed(gxLineSeg(V(0, 0), V(4, 3))), "(0, 0) to (4, 3)");
  EXPECT_EQ(printed(gxLine(V(0, 1), V(1, 0))), "through (0, 1) along (1, 0)");
  EXPECT_EQ(printed(gxCircle(V(0, 0), 2)), "circle at (0, 0), radius 2");
  EXPECT_EQ(printed(gxMatrix<2>(1, 2, 3, 4)), "[1 2; 3 4]");
  EXPECT_EQ(printed(gxXform<2>(gxMatrix<2>(1, 2, 3, 4), V(5, 6))), "[1 2; 3 4] + (5, 6)");
  EXPECT_EQ(printed(gxPolygon({V(0, 0), V(1, 0)}, gxPolygon::eEvenOdd)), "polygon of 2 vertices");
  gxEllipse::gxEllipseGeom geom;
  geom.center = V(1, 2);
  geom.radii = V(4, 3);
  geom.rotation = gxRadian(0.25);
  EXPECT_EQ(printed(gxEllipse(geom)), "ellipse at (1, 2), radii (4, 3), rotation 0.25");
}

TEST(Print, GivesEveryDigitThatTellsADoubleFromItsNeighbours) {
  EXPECT_EQ(printed(gxVector<2>(0.1 + 0.2, -1e-300)), "(0.30000000000000004, -1e-300)");
}

}  // namespace
