#include <cntr/contour.h>

#include <cntr/region.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

namespace {

using V = gxVector<2>;

const std::vector<V> kKite = {V(0, 0), V(4, 1), V(5, 5), V(2, 2)};

TEST(ContourValues, AreWhatTheFormsWithAnArgumentGive) {
  const gxContour kite(kKite, true, 7);
  gxRegion hull;
  kite.convexHull(hull);
  EXPECT_EQ(kite.convexHull().points(), hull.points());
  EXPECT_EQ(hull.points().size(), 3U) << "one lies on the edge between two others";
  EXPECT_EQ(kite.encloseRect(), kite.encloseRect(gxXform<2>::I));

  const gxContour many({V(3, 0), V(2, 2), V(0, 3), V(-2, 2), V(-3, 0), V(0, -3), V(2, -2)});
  gxEllipse ellipse;
  double residual = 0.0;
  many.fitEllipse(ellipse, residual);
  const gxFittedEllipse fitted = many.fitEllipse();
  EXPECT_EQ(fitted.ellipse.geom().radii, ellipse.geom().radii);
  EXPECT_EQ(fitted.residual, residual);
  EXPECT_GT(residual, 0.0);

  const gxXform<2> shift(gxMatrix<2>(1, 0, 0, 1), V(10, 20));
  const gxContour mapped = kite.mapped(shift);
  EXPECT_EQ(mapped[2], V(15, 25));
  EXPECT_EQ(mapped.label(), 7U);
  EXPECT_TRUE(mapped.isClosed());
  EXPECT_FALSE(gxContour(kKite, false).mapped(shift).isClosed());
}

TEST(ContourValues, ThrowWhatTheFormsWithAnArgumentThrow) {
  const gxContour point({V(1, 1)});
  EXPECT_THROW(static_cast<void>(point.convexHull()), gxContourDefs::EmptyContour);
  EXPECT_THROW(static_cast<void>(point.encloseRect()), gxContourDefs::EmptyContour);
  EXPECT_THROW(static_cast<void>(point.fitEllipse()), gxContourDefs::EmptyContour);
  EXPECT_EQ(point.mapped(gxXform<2>()).size(), 1U);
}

TEST(ContourRange, WalksThePointsInTheirOrder) {
  const gxContour kite(kKite);
  EXPECT_EQ(kite.size(), 4U);
  EXPECT_EQ(kite[1], V(4, 1));
  EXPECT_TRUE(std::equal(kite.begin(), kite.end(), kKite.begin(), kKite.end()));
  std::size_t seen = 0;
  for (const V& point : gxRegion(kKite)) seen += point == kKite[seen] ? 1U : 0U;
  EXPECT_EQ(seen, 4U);
}

TEST(ContourRange, OfAnEmptyContourIsEmpty) {
  const gxContour empty;
  EXPECT_EQ(empty.size(), 0U);
  EXPECT_EQ(empty.begin(), empty.end());
}

TEST(ContourFromASpan, TakesPointsFromAnyArray) {
  const std::array<V, 3> points{V(0, 0), V(1, 0), V(0, 1)};
  const gxContour contour(std::span<const V>(points), false, 3);
  EXPECT_EQ(contour.points(), std::vector<V>(points.begin(), points.end()));
  EXPECT_FALSE(contour.isClosed());
  EXPECT_EQ(contour.label(), 3U);
  EXPECT_EQ(gxContour(std::span<const V>(points).first(2)).size(), 2U);
}

}  // namespace
