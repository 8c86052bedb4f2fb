#include <velstd/polygon.h>

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>

namespace {

using V = gxVector<2>;

TEST(Polygon, DefaultIsEmpty) {
  EXPECT_EQ(gxPolygon().size(), 0);
  EXPECT_EQ(gxPolygon().fillMode(), gxPolygon::eEvenOdd);
}

TEST(Polygon, FillModeZeroIsEvenOdd) {
  EXPECT_EQ(static_cast<int>(gxPolygon::eEvenOdd), 0);
  EXPECT_EQ(gxPolygon({}, static_cast<gxPolygon::PolyFillMode>(0)).fillMode(), gxPolygon::eEvenOdd);
}

TEST(Polygon, KeepsItsVerticesAsGiven) {
  const gxPolygon polygon({{1, 2}, {3, 4}, {1, 2}}, gxPolygon::eNonZero);
  EXPECT_EQ(polygon.size(), 3);
  EXPECT_EQ(polygon[0], V(1, 2));
  EXPECT_EQ(polygon[1], V(3, 4));
  EXPECT_EQ(polygon[2], V(1, 2));
  EXPECT_EQ(polygon.fillMode(), gxPolygon::eNonZero);
  EXPECT_EQ(polygon.vertices().size(), 3U);
}

TEST(Polygon, IndexOutsideThrowsAndSaysWhich) {
  const gxPolygon polygon({{1, 2}, {3, 4}}, gxPolygon::eEvenOdd);
  EXPECT_THROW(static_cast<void>(polygon[-1]), std::out_of_range);
  EXPECT_THROW(static_cast<void>(polygon[2]), std::out_of_range);
  EXPECT_THROW(static_cast<void>(polygon[std::numeric_limits<long>::max()]), std::out_of_range);
  EXPECT_THROW(static_cast<void>(polygon[std::numeric_limits<long>::min()]), std::out_of_range);
  EXPECT_THROW(static_cast<void>(gxPolygon()[0]), std::out_of_range);
  try {
    static_cast<void>(polygon[17]);
    FAIL();
  } catch (const std::out_of_range& e) {
    EXPECT_NE(std::string(e.what()).find("17"), std::string::npos);
  }
}

TEST(Polygon, EqualityReadsVerticesAndFillMode) {
  const gxPolygon polygon({{1, 2}, {3, 4}}, gxPolygon::eEvenOdd);
  EXPECT_EQ(polygon, gxPolygon({{1, 2}, {3, 4}}, gxPolygon::eEvenOdd));
  EXPECT_FALSE(polygon == gxPolygon({{1, 2}, {3, 5}}, gxPolygon::eEvenOdd));
  EXPECT_FALSE(polygon == gxPolygon({{1, 2}, {3, 4}}, gxPolygon::eNonZero));
}

}  // namespace
