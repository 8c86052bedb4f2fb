#include <velstd/exception.h>
#include <velstd/matrix.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>

#include <support/quad.h>
#include <support/random_doubles.h>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

using M = gxMatrix<2>;
using V = gxVector<2>;

void expectNear(const M& a, const M& b, double tolerance) {
  EXPECT_NEAR(a.m00(), b.m00(), tolerance);
  EXPECT_NEAR(a.m01(), b.m01(), tolerance);
  EXPECT_NEAR(a.m10(), b.m10(), tolerance);
  EXPECT_NEAR(a.m11(), b.m11(), tolerance);
}

TEST(Matrix, DefaultIsAllZero) {
  EXPECT_EQ(M(), M(0, 0, 0, 0));
}

TEST(Matrix, ElementsAreGivenRowByRow) {
  const M m(1, 2, 3, 4);
  EXPECT_EQ(m.element(0, 0), 1.0);
  EXPECT_EQ(m.element(0, 1), 2.0);
  EXPECT_EQ(m.element(1, 0), 3.0);
  EXPECT_EQ(m.element(1, 1), 4.0);
  EXPECT_EQ(m.m01(), 2.0);
  EXPECT_EQ(m.m10(), 3.0);
}

TEST(Matrix, ElementOutsideThrows) {
  const M m(1, 2, 3, 4);
  EXPECT_THROW(m.element(-1, 0), std::out_of_range);
  EXPECT_THROW(m.element(2, 0), std::out_of_range);
  EXPECT_THROW(m.element(0, -1), std::out_of_range);
  EXPECT_THROW(m.element(0, 2), std::out_of_range);
}

TEST(Matrix, RotationAndSkewMakeTheColumns) {
  const double rotation = 0.3;
  const double skew = -0.7;
  const M m{gxRadian(rotation), gxRadian(skew), 2.0, 3.0};
  expectNear(m,
             M(2 * std::cos(rotation), -3 * std::sin(skew), 2 * std::sin(rotation), 3 * std::cos(skew)),
             1e-15);
  const V firstColumn = m * V(1, 0);
  EXPECT_NEAR(firstColumn.angle().toDouble(), rotation, 1e-15);
  EXPECT_NEAR(firstColumn.len(), 2.0, 1e-15);
  const V secondColumn = m * V(0, 1);
  EXPECT_NEAR(secondColumn.angle().toDouble(), std::numbers::pi / 2 + skew, 1e-15);
  EXPECT_NEAR(secondColumn.len(), 3.0, 1e-15);
}

TEST(Matrix, EqualAnglesAndUnitScalesMakeARotation) {
  const M quarter{gxRadian(std::numbers::pi / 2), gxRadian(std::numbers::pi / 2), 1, 1};
  expectNear(quarter, M(0, -1, 1, 0), 1e-16);
}

TEST(Matrix, ProductsAndSums) {
  constexpr M a(1, 2, 3, 4);
  constexpr M b(5, 6, 7, 8);
  static_assert(a * b == M(19, 22, 43, 50));
  static_assert(b * a == M(23, 34, 31, 46));
  static_assert(a * V(10, 1) == V(12, 34));
  static_assert(a * 2.0 == M(2, 4, 6, 8));
  static_assert(a + b == M(6, 8, 10, 12));
  static_assert(b - a == M(4, 4, 4, 4));
  static_assert(a.transpose() == M(1, 3, 2, 4));
  EXPECT_EQ(a.determinant(), -2.0);
}

TEST(MatrixDeterminant, KeepsItsDigitsWhereTheProductsCancel) {
  const double a = 1.0 + 0x1p-30;
  EXPECT_EQ(M(a, 1.0 + 0x1p-29, 1.0, a).determinant(), 0x1p-60);
}

TEST(MatrixInverse, OfSimpleMatrices) {
  EXPECT_EQ(M(1, 0, 0, 1).inverse(), M(1, 0, 0, 1));
  EXPECT_EQ(M(2, 0, 0, 4).inverse(), M(0.5, 0, 0, 0.25));
  EXPECT_EQ(M(0, -1, 1, 0).inverse(), M(0, 1, -1, 0));
  EXPECT_EQ(M(1, 2, 3, 4).inverse(), M(-2, 1, 1.5, -0.5));
}

TEST(MatrixInverse, SingularAndNotFiniteMatricesThrow) {
  EXPECT_THROW(M().inverse(), gxMathError::Singular);
  EXPECT_THROW(M(1, 2, 2, 4).inverse(), gxMathError::Singular);
  EXPECT_THROW(M(1e200, 2e200, 2e200, 4e200).inverse(), gxMathError::Singular);
  EXPECT_THROW(M(1e-200, 2e-200, 2e-200, 4e-200).inverse(), gxMathError::Singular);
  EXPECT_THROW(M(kNaN, 0, 0, 1).inverse(), gxMathError::Singular);
  EXPECT_THROW(M(1, kInf, 0, 1).inverse(), gxMathError::Singular);
  EXPECT_THROW(M(5e-324, 0, 0, 5e-324).inverse(), gxMathError::Singular);  // 2e323 is beyond the range
}

TEST(MatrixInverse, LargeAndSmallElementsAreNoObstacle) {
  EXPECT_EQ(M(0x1p900, 0, 0, 0x1p900).inverse(), M(0x1p-900, 0, 0, 0x1p-900));
  EXPECT_EQ(M(0x1p-900, 0, 0, 0x1p-900).inverse(), M(0x1p900, 0, 0, 0x1p900));
  EXPECT_EQ(M(0, 0x1p600, -0x1p600, 0).inverse(), M(0, -0x1p-600, 0x1p-600, 0));
  EXPECT_EQ(M(0x1p-1022, 0, 0, 0x1p-1022).inverse(), M(0x1p1022, 0, 0, 0x1p1022));
}

TEST(MatrixInverse, ElementsOfVeryDifferentSizes) {
  EXPECT_EQ(M(0x1p-1000, 0, 0, 0x1p40).inverse(), M(0x1p1000, 0, 0, 0x1p-40));
  EXPECT_EQ(M(0, 0x1p-1000, 0x1p1000, 0).inverse(), M(0, 0x1p-1000, 0x1p1000, 0));
  EXPECT_EQ(M(0x1p-1000, 0x1p-1000, 0, 0x1p-40).inverse(), M(0x1p1000, -0x1p40, 0, 0x1p40));
  EXPECT_EQ(M(0x1p600, 0, 0x1p600, 0x1p-900).inverse(), M(0x1p-600, 0, -0x1p900, 0x1p900));
}

TEST(MatrixInverse, RandomMatricesTimesTheirInverseAreTheIdentity) {
  constexpr std::uint64_t kSeed = 131;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 20000; ++i) {
    const int size = random.whole(1600) - 800;
    const auto next = [&] { return std::scalbn(random.uniform(-1.0, 1.0), size); };
    const M m(next(), next(), next(), next());
    const Quad exact = static_cast<Quad>(m.m00()) * static_cast<Quad>(m.m11()) -
                       static_cast<Quad>(m.m01()) * static_cast<Quad>(m.m10());
    const auto condition =
        static_cast<double>(static_cast<Quad>(std::scalbn(1.0, size)) *
                            static_cast<Quad>(std::scalbn(1.0, size)) / quadAbs(exact));
    if (condition > 1e6) continue;
    SCOPED_TRACE(i);
    expectNear(m * m.inverse(), M(1, 0, 0, 1), 1e-15 * (condition + 1));
  }
}

}  // namespace
