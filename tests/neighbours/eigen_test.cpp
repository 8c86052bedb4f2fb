#include <gxshape/interop/eigen.h>

#include <support/random_shapes.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

TEST(EigenPoints, AreTheMemoryOfThePoints) {
  Points points{{1, 2}, {3, 4}, {5, 9}};
  const Points& readOnly = points;
  EXPECT_EQ(static_cast<const void*>(gfEigenPoints(readOnly).data()),
            static_cast<const void*>(points.data()));
  const Eigen::Vector2d mean = gfEigenPoints(readOnly).rowwise().mean();
  EXPECT_EQ(mean, Eigen::Vector2d(3, 5));
  gfEigenPoints(points).row(1).array() += 10;
  EXPECT_EQ(points, (Points{{1, 12}, {3, 14}, {5, 19}}));
  const gxContour contour(points);
  EXPECT_EQ(gfEigenPoints(contour).cols(), 3);
  EXPECT_EQ(gfEigenPoints(contour)(0, 2), 5);
  Points none;
  EXPECT_EQ(gfEigenPoints(none).cols(), 0);
}

TEST(EigenPoints, ComeBackBitForBit) {
  RandomShapes random("Eigen points", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    const Points back = gfPointsFromEigen(gfEigenPoints(points));
    ASSERT_EQ(back.size(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) EXPECT_TRUE(sameBits(back[i], points[i]));
  }
}

TEST(EigenPoints, ComeOfExpressionsAndFloats) {
  const Points points{{1, 2}, {3, 4}};
  EXPECT_EQ(gfPointsFromEigen(2 * gfEigenPoints(points)), (Points{{2, 4}, {6, 8}}));
  Eigen::Matrix2Xf floats(2, 1);
  floats << 0.5F, 0.25F;
  EXPECT_EQ(gfPointsFromEigen(floats), (Points{{0.5, 0.25}}));
}

TEST(EigenTransforms, ComeBackBitForBit) {
  RandomShapes random("Eigen transforms", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxXform<2> xform = random.transform();
    const gxXform<2> back = gfFromEigen(gfToEigen(xform));
    for (int i = 0; i < 7; ++i) EXPECT_TRUE(sameBits(back.stored(i), xform.stored(i)));
  }
}

TEST(EigenTransforms, MapAsOursDo) {
  const gxXform<2> xform(gxMatrix<2>(1, 2, 3, 4), V(5, 6));
  EXPECT_EQ(gfFromEigen(gfToEigen(xform) * gfToEigen(V(7, 8))), xform * V(7, 8));
  EXPECT_EQ(gfToEigen(xform).matrix().row(2), Eigen::RowVector3d(0, 0, 1));
  EXPECT_EQ(gfFromEigen(gfToEigen(gxMatrix<2>(1, 2, 3, 4))), gxMatrix<2>(1, 2, 3, 4));
  EXPECT_EQ(gfToEigen(gxMatrix<2>(1, 2, 3, 4))(0, 1), 2);
  Eigen::Isometry2d isometry = Eigen::Isometry2d::Identity();
  isometry.pretranslate(Eigen::Vector2d(3, 4));
  EXPECT_EQ(gfFromEigen(isometry), gxXform<2>(gxMatrix<2>(1, 0, 0, 1), V(3, 4)));
  Eigen::AffineCompact2d compact(gfToEigen(xform));
  EXPECT_EQ(gfFromEigen(compact), xform);
}

}  // namespace
