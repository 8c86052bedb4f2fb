/// Weighted linear least squares of a few unknowns, with what the equations leave open.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

/// The equations row · x = right, each with a weight, solved by orthogonal columns (modified Gram and
/// Schmidt, after scaling every column to length 1), which does not square the condition as normal
/// equations do.
template <std::size_t N>
class gx_LeastSquares {
 public:
  using Row = std::array<double, N>;

  void clear() {
    columns_ = {};
    right_.clear();
  }
  void reserve(std::size_t rows) {
    for (auto& column : columns_) column.reserve(rows);
    right_.reserve(rows);
  }
  void add(const Row& row, double right, double weight) {
    const double root = std::sqrt(weight);
    for (std::size_t k = 0; k < N; ++k) columns_[k].push_back(root * row[k]);
    right_.push_back(root * right);
  }

  /// Solves.  Afterwards `x`, `determined` and `covariance` hold; the rows are used up.
  void solve() {
    Row scale{};
    std::array<Row, N> r{};
    Row projected{};
    smallest_ = std::numeric_limits<double>::infinity();
    for (std::size_t k = 0; k < N; ++k) scale[k] = lengthOf(columns_[k]);
    for (std::size_t k = 0; k < N; ++k) {
      if (!(scale[k] > 0.0)) {
        smallest_ = 0.0;
        continue;
      }
      for (double& value : columns_[k]) value /= scale[k];
      // Twice is enough: what is left of the earlier columns after the first time is rounding.
      for (int twice = 0; twice < 2; ++twice) {
        for (std::size_t j = 0; j < k; ++j) {
          if (r[j][j] == 0.0) continue;
          const double part = dot(columns_[j], columns_[k]);
          r[j][k] += part;
          for (std::size_t i = 0; i < right_.size(); ++i) columns_[k][i] -= part * columns_[j][i];
        }
      }
      r[k][k] = lengthOf(columns_[k]);
      smallest_ = std::fmin(smallest_, r[k][k]);
      if (!(r[k][k] > kSingular)) {
        r[k][k] = 0.0;
        continue;
      }
      for (double& value : columns_[k]) value /= r[k][k];
      projected[k] = dot(columns_[k], right_);
      for (std::size_t i = 0; i < right_.size(); ++i) right_[i] -= projected[k] * columns_[k][i];
    }
    backSubstitute(r, projected, scale);
  }

  /// The least squares solution; 0 for an unknown that the equations leave open.
  Row x{};
  /// Whether they determine all unknowns: whether each column, scaled to length 1, keeps more than
  /// `kSingular` of itself when its parts along those before are taken away.
  bool determined() const { return smallest_ > kSingular; }
  /// The inverse of the matrix of the normal equations.
  std::array<Row, N> covariance{};

  static constexpr double kSingular = 1e-12;

 private:
  static double dot(const std::vector<double>& a, const std::vector<double>& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += a[i] * b[i];
    return sum;
  }
  static double lengthOf(const std::vector<double>& a) { return std::sqrt(dot(a, a)); }

  void backSubstitute(const std::array<Row, N>& r, const Row& projected, const Row& scale) {
    std::array<Row, N> inverse{};
    for (std::size_t c = 0; c < N; ++c) {
      for (std::size_t k = c + 1; k-- > 0;) {
        if (r[k][k] == 0.0) continue;
        double value = k == c ? 1.0 : 0.0;
        for (std::size_t j = k + 1; j <= c; ++j) value -= r[k][j] * inverse[j][c];
        inverse[k][c] = value / r[k][k];
      }
    }
    for (std::size_t i = 0; i < N; ++i) {
      x[i] = 0.0;
      for (std::size_t k = i; k < N; ++k) x[i] += inverse[i][k] * projected[k];
      if (scale[i] > 0.0) x[i] /= scale[i];
      for (std::size_t j = 0; j < N; ++j) {
        double sum = 0.0;
        for (std::size_t k = std::max(i, j); k < N; ++k) sum += inverse[i][k] * inverse[j][k];
        covariance[i][j] = sum / (scale[i] * scale[j]);
      }
    }
  }

  std::array<std::vector<double>, N> columns_;
  std::vector<double> right_;
  double smallest_ = 0.0;
};
