// Small linear least squares.
#include <gauge/internal/least_squares.h>
#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(LeastSquares, ALineThroughPointsWithItsCovariance) {
  gx_LeastSquares<2> equations;
  for (int i = -2; i <= 2; ++i) equations.add({1.0, static_cast<double>(i)}, 3.0 + 0.5 * i, 1.0);
  equations.solve();
  EXPECT_TRUE(equations.determined());
  EXPECT_NEAR(equations.x[0], 3.0, 1e-15);
  EXPECT_NEAR(equations.x[1], 0.5, 1e-15);
  EXPECT_NEAR(equations.covariance[0][0], 0.2, 1e-15);
  EXPECT_NEAR(equations.covariance[1][1], 0.1, 1e-15);
  EXPECT_NEAR(equations.covariance[0][1], 0.0, 1e-15);
}

TEST(LeastSquares, WeightsCountAsManyRows) {
  gx_LeastSquares<2> once;
  gx_LeastSquares<2> often;
  for (int i = 0; i < 4; ++i) {
    const std::array<double, 2> row{1.0, i * i + 0.5};
    once.add(row, i, i == 2 ? 3.0 : 1.0);
    for (int k = 0; k < (i == 2 ? 3 : 1); ++k) often.add(row, i, 1.0);
  }
  once.solve();
  often.solve();
  for (std::size_t k = 0; k < 2; ++k) EXPECT_NEAR(once.x[k], often.x[k], 1e-14);
  EXPECT_NEAR(once.covariance[0][1], often.covariance[0][1], 1e-14);
}

TEST(LeastSquares, NearlyEqualColumnsKeepTheirDigits) {
  // A condition of 1e7, which normal equations would square.
  gx_LeastSquares<2> equations;
  for (int i = 0; i < 10; ++i) equations.add({1.0, 1.0 + 1e-7 * i}, 2.0 + 1e-7 * i, 1.0);
  equations.solve();
  EXPECT_TRUE(equations.determined());
  EXPECT_NEAR(equations.x[0], 1.0, 1e-7);
  EXPECT_NEAR(equations.x[1], 1.0, 1e-7);
}

TEST(LeastSquares, WhatIsOpenIsSaid) {
  gx_LeastSquares<2> equal;
  for (int i = 0; i < 5; ++i) equal.add({1.0, 2.0}, 1.0, 1.0);
  equal.solve();
  EXPECT_FALSE(equal.determined());
  gx_LeastSquares<2> none;
  for (int i = 0; i < 5; ++i) none.add({1.0, 0.0}, 1.0, 1.0);
  none.solve();
  EXPECT_FALSE(none.determined());
  gx_LeastSquares<2> cleared;
  cleared.add({1.0, 5.0}, 7.0, 1.0);
  cleared.clear();
  cleared.add({1.0, 0.0}, 1.0, 1.0);
  cleared.add({0.0, 1.0}, 2.0, 1.0);
  cleared.solve();
  EXPECT_TRUE(cleared.determined());
  EXPECT_EQ(cleared.x[1], 2.0);
}

}  // namespace
