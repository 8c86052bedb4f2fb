#include <gauge/internal/eigen4.h>
#include <gtest/gtest.h>
#include <support/random_shapes.h>

#include <algorithm>
#include <cmath>

namespace {

using Matrix = std::array<std::array<double, 4>, 4>;

// Whether vectors and values make the matrix again, and the vectors are at right angles and of length 1.
void expectAxesOf(const Matrix& given, double slack) {
  gx_Eigen4 system;
  system.a = given;
  system.solve();
  for (std::size_t p = 0; p < 4; ++p) {
    for (std::size_t q = 0; q < 4; ++q) {
      double back = 0.0;
      double product = 0.0;
      for (std::size_t k = 0; k < 4; ++k) {
        back += system.v[p][k] * system.a[k][k] * system.v[q][k];
        product += system.v[k][p] * system.v[k][q];
      }
      EXPECT_NEAR(back, given[p][q], slack) << p << ' ' << q;
      EXPECT_NEAR(product, p == q ? 1.0 : 0.0, 1e-14) << p << ' ' << q;
      if (p == q) continue;
      EXPECT_NEAR(system.a[p][q], 0.0, 1e-10 * slack);
    }
  }
}

TEST(Eigen4, ADiagonalMatrixStaysAsItIs) {
  gx_Eigen4 system;
  for (std::size_t k = 0; k < 4; ++k) system.a[k][k] = static_cast<double>(4 - k);
  system.solve();
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(system.a[k][k], static_cast<double>(4 - k));
    EXPECT_EQ(system.v[k][k], 1.0);
  }
}

TEST(Eigen4, OfEqualDiagonalTheAxesLieAtHalfARightAngle) {
  gx_Eigen4 system;
  system.a[0][0] = system.a[1][1] = 2.0;
  system.a[0][1] = system.a[1][0] = 1.0;
  system.solve();
  EXPECT_NEAR(system.a[0][0], 1.0, 1e-15);
  EXPECT_NEAR(system.a[1][1], 3.0, 1e-15);
  EXPECT_NEAR(std::abs(system.v[0][1]), std::sqrt(0.5), 1e-15);
  EXPECT_EQ(system.v[2][2], 1.0);
}

TEST(Eigen4, AMatrixOfRankOneHasOneValue) {
  Matrix given{};
  const std::array<double, 4> row{1, -2, 3, 0.5};
  for (std::size_t p = 0; p < 4; ++p) {
    for (std::size_t q = 0; q < 4; ++q) given[p][q] = row[p] * row[q];
  }
  expectAxesOf(given, 1e-13);
  gx_Eigen4 system;
  system.a = given;
  system.solve();
  std::array<double, 4> values{};
  for (std::size_t k = 0; k < 4; ++k) values[k] = system.a[k][k];
  std::sort(values.begin(), values.end());
  EXPECT_NEAR(values[3], 14.25, 1e-13);
  EXPECT_NEAR(values[2], 0.0, 1e-14);
}

TEST(Eigen4, RandomMatricesComeBackFromTheirAxes) {
  RandomShapes random("eigen4", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    // Rows of very different size, as turns and shifts are.
    Matrix given{};
    double most = 0.0;
    for (std::size_t p = 0; p < 4; ++p) {
      for (std::size_t q = p; q < 4; ++q) {
        given[p][q] = random.uniform(-1.0, 1.0) * std::pow(10.0, random.uniform(-3.0, 3.0));
        given[q][p] = given[p][q];
        most = std::max(most, std::abs(given[p][q]));
      }
    }
    expectAxesOf(given, 1e-13 * most);
  }
}

TEST(Eigen4, WhatIsNotFiniteEnds) {
  gx_Eigen4 system;
  system.a[0][1] = system.a[1][0] = std::nan("");
  system.solve();
  EXPECT_TRUE(std::isnan(system.a[0][0]));
}

}  // namespace
