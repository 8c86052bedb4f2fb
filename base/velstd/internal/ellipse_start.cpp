// The starts of an ellipse fit.
//
// The direct fit, with Q quadratic terms: 3, or 2 without xy.
//
//  1. Sum the products of the terms x², xy, y², x, y, 1 over the points, and eliminate the last three.
//  2. What is left is a Q × Q scatter matrix S.  Wanted is the vector of the largest ratio of the
//     constraint aᵀ C a = 4 xx yy − xy² to aᵀ S a.
//  3. With S = L Lᵀ that is an eigenvector of the symmetric L⁻¹ C L⁻ᵀ, for its only positive
//     eigenvalue.  Exact points make S singular; a ridge of rounding size is all that is needed then.
//     (The unsymmetric S⁻¹ C, which is usually written, loses half the digits there.)
#include <velstd/internal/ellipse_start.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

using Points = std::vector<gxVector<2>>;

template <std::size_t N>
using Matrix = std::array<std::array<double, N>, N>;

// Turns a symmetric matrix into a diagonal one by plane rotations; returns its eigenvector, of
// length 1, for the largest eigenvalue.
template <std::size_t N>
std::array<double, N> largestEigenvector(Matrix<N> m) {
  Matrix<N> vectors{};
  for (std::size_t i = 0; i < N; ++i) vectors[i][i] = 1.0;
  constexpr int kSweeps = 12;  // the off-diagonal elements are squared away after some five
  double largest = 0.0;
  for (std::size_t i = 0; i < N; ++i) {
    for (std::size_t j = 0; j <= i; ++j) largest = std::max(largest, std::fabs(m[i][j]));
  }
  const double nothing = largest * 1e-17;  // what cannot be seen beside it any more
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    for (std::size_t i = 0; i + 1 < N; ++i) {
      for (std::size_t j = i + 1; j < N; ++j) {
        if (!(std::fabs(m[i][j]) > nothing)) continue;
        // The rotation by the smaller angle: its tangent solves t² + 2 r t = 1.
        const double r = (m[j][j] - m[i][i]) / (2.0 * m[i][j]);
        const double t = std::copysign(1.0, r) / (std::fabs(r) + std::sqrt(r * r + 1.0));
        const double c = 1.0 / std::sqrt(t * t + 1.0);
        const double s = t * c;
        for (std::size_t k = 0; k < N; ++k) {
          const double first = m[k][i];
          const double second = m[k][j];
          m[k][i] = c * first - s * second;
          m[k][j] = s * first + c * second;
        }
        for (std::size_t k = 0; k < N; ++k) {
          const double first = m[i][k];
          const double second = m[j][k];
          m[i][k] = c * first - s * second;
          m[j][k] = s * first + c * second;
          const double u = vectors[k][i];
          const double v = vectors[k][j];
          vectors[k][i] = c * u - s * v;
          vectors[k][j] = s * u + c * v;
        }
      }
    }
  }
  std::size_t best = 0;
  for (std::size_t i = 1; i < N; ++i) {
    if (m[i][i] > m[best][best]) best = i;
  }
  std::array<double, N> result{};
  for (std::size_t i = 0; i < N; ++i) result[i] = vectors[i][best];
  return result;
}

template <std::size_t Q>
std::optional<gx_EllipseImage> directFit(const Points& points) {
  constexpr std::size_t N = Q + 3;
  Matrix<N> s{};
  for (const gxVector<2>& p : points) {
    std::array<double, N> term{};
    term[0] = p.x() * p.x();
    term[1] = Q == 3 ? p.x() * p.y() : p.y() * p.y();
    if (Q == 3) term[2] = p.y() * p.y();
    term[Q] = p.x();
    term[Q + 1] = p.y();
    term[Q + 2] = 1.0;
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t j = 0; j <= i; ++j) s[i][j] += term[i] * term[j];
    }
  }
  for (std::size_t i = 0; i < N; ++i) {
    for (std::size_t j = 0; j < i; ++j) s[j][i] = s[i][j];
  }
  for (std::size_t k = N; k-- > Q;) {
    if (!(s[k][k] > 0.0)) return std::nullopt;
    for (std::size_t i = 0; i < k; ++i) {
      for (std::size_t j = 0; j < k; ++j) s[i][j] -= s[i][k] * s[k][j] / s[k][k];
    }
  }

  Matrix<Q> low{};
  double trace = 0.0;
  for (std::size_t i = 0; i < Q; ++i) trace += s[i][i];
  const double ridge = trace * 1e-16;
  for (std::size_t i = 0; i < Q; ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      double value = s[i][j] + (i == j ? ridge : 0.0);
      for (std::size_t k = 0; k < j; ++k) value -= low[i][k] * low[j][k];
      low[i][j] = i == j ? std::sqrt(std::max(value, ridge)) : value / low[j][j];
    }
  }
  const auto solveLower = [&low](std::array<double, Q>& v) {
    for (std::size_t i = 0; i < Q; ++i) {
      for (std::size_t k = 0; k < i; ++k) v[i] -= low[i][k] * v[k];
      v[i] /= low[i][i];
    }
  };
  const auto solveUpper = [&low](std::array<double, Q>& v) {
    for (std::size_t i = Q; i-- > 0;) {
      for (std::size_t k = i + 1; k < Q; ++k) v[i] -= low[k][i] * v[k];
      v[i] /= low[i][i];
    }
  };
  Matrix<Q> m{};
  for (std::size_t j = 0; j < Q; ++j) {
    std::array<double, Q> v{};
    v[j] = 1.0;
    solveUpper(v);
    std::array<double, Q> c{};
    c[0] = 2.0 * v[Q - 1];
    c[Q - 1] = 2.0 * v[0];
    if (Q == 3) c[1] = -v[1];
    solveLower(c);
    for (std::size_t i = 0; i < Q; ++i) m[i][j] = c[i];
  }
  std::array<double, Q> quadratic = largestEigenvector<Q>(m);
  solveUpper(quadratic);

  std::array<double, N> k{};
  std::copy(quadratic.begin(), quadratic.end(), k.begin());
  for (std::size_t i = Q; i < N; ++i) {
    for (std::size_t j = 0; j < i; ++j) k[i] -= s[i][j] * k[j];
    k[i] /= s[i][i];
  }
  return gx_ImageOf(gx_Conic{k[0], Q == 3 ? k[1] : 0.0, k[Q - 1], k[Q], k[Q + 1], k[Q + 2]});
}

}  // namespace

std::optional<gx_EllipseImage> gx_DirectEllipse(const Points& points, bool upright) {
  return upright ? directFit<2>(points) : directFit<3>(points);
}

gx_EllipseImage gx_MomentsEllipse(const Points& points, bool upright) {
  const auto n = static_cast<double>(points.size());
  gxVector<2> centroid;
  for (const gxVector<2>& p : points) centroid += p;
  centroid = centroid / n;
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  for (const gxVector<2>& p : points) {
    const gxVector<2> d = p - centroid;
    xx += d.x() * d.x();
    xy += d.x() * d.y();
    yy += d.y() * d.y();
  }
  if (upright) xy = 0.0;
  const gxRadian angle(0.5 * std::atan2(2.0 * xy, xx - yy));
  const double mean = 0.5 * (xx + yy);
  const double spread = std::hypot(0.5 * (xx - yy), xy);
  const double a = std::sqrt(2.0 * (mean + spread) / n);
  const double b = std::sqrt(2.0 * std::max(mean - spread, 0.0) / n);
  return gx_ImageOf(gx_EllipseAxes{centroid, gxVector<2>(1.0, angle), a, std::max(b, 1e-3 * a)});
}
