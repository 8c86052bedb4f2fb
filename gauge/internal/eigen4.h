/// Eigenvalues and eigenvectors of small symmetric matrices.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>

/// A symmetric matrix of order 4, brought to its axes by rotations (C. Jacobi, 1846): after `solve` the
/// eigenvalues stand on the diagonal of `a`, in no order, and the eigenvector of each, of length 1, in the
/// same column of `v`.
///  - a matrix that is not finite: anything, in bounded time
struct gx_Eigen4 {
  std::array<std::array<double, 4>, 4> a{};
  std::array<std::array<double, 4>, 4> v{};

  void solve() {
    for (std::size_t i = 0; i < 4; ++i) v[i][i] = 1.0;
    // Each sweep squares what is beside the diagonal; six or seven are enough.
    for (int sweep = 0; sweep < 30; ++sweep) {
      double off = 0.0;
      for (std::size_t p = 0; p < 4; ++p) {
        for (std::size_t q = p + 1; q < 4; ++q) off += a[p][q] * a[p][q];
      }
      if (off == 0.0) return;
      for (std::size_t p = 0; p < 4; ++p) {
        for (std::size_t q = p + 1; q < 4; ++q) rotate_(p, q);
      }
    }
  }

 private:
  void rotate_(std::size_t p, std::size_t q) {
    if (a[p][q] == 0.0) return;
    const double theta = (a[q][q] - a[p][p]) / (2.0 * a[p][q]);
    const double t = std::copysign(1.0, theta) / (std::abs(theta) + std::sqrt(theta * theta + 1.0));
    const double c = 1.0 / std::sqrt(t * t + 1.0);
    const double s = t * c;
    for (std::size_t k = 0; k < 4; ++k) {
      const double kp = a[k][p];
      const double kq = a[k][q];
      a[k][p] = c * kp - s * kq;
      a[k][q] = s * kp + c * kq;
    }
    for (std::size_t k = 0; k < 4; ++k) {
      const double pk = a[p][k];
      const double qk = a[q][k];
      a[p][k] = c * pk - s * qk;
      a[q][k] = s * pk + c * qk;
      const double vp = v[k][p];
      const double vq = v[k][q];
      v[k][p] = c * vp - s * vq;
      v[k][q] = s * vp + c * vq;
    }
    a[p][q] = 0.0;
    a[q][p] = 0.0;
  }
};
