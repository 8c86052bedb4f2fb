// The operations of 2 × 2 matrices that are more than a line: rotation and skew, determinant,
// inverse by the adjugate.  Where the determinant has overflowed or may have underflowed, the inverse
// is taken of the matrix scaled by a power of two.
#include <velstd/exception.h>
#include <velstd/internal/scaled_vector.h>
#include <velstd/matrix.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

gxMatrix<2>::gxMatrix(const gxRadian& rotation, const gxRadian& skew, double scale0, double scale1)
    : m00_(scale0 * std::cos(rotation.toDouble())),
      m01_(-scale1 * std::sin(skew.toDouble())),
      m10_(scale0 * std::sin(rotation.toDouble())),
      m11_(scale1 * std::cos(skew.toDouble())) {}

double gxMatrix<2>::element(int row, int column) const {
  if (row < 0 || row > 1 || column < 0 || column > 1) {
    throw std::out_of_range("gxMatrix<2>::element: row and column must be 0 or 1");
  }
  if (row == 0) return column == 0 ? m00_ : m01_;
  return column == 0 ? m10_ : m11_;
}

double gxMatrix<2>::determinant() const {
  return gf_DifferenceOfProducts(m00_, m11_, m01_, m10_);
}

bool gxMatrix<2>::isFinite_() const {
  return std::isfinite(m00_) && std::isfinite(m01_) && std::isfinite(m10_) && std::isfinite(m11_);
}

gxMatrix<2> gxMatrix<2>::inverse() const {
  if (!isFinite_()) throw gxMathError::Singular();
  gxMatrix m = *this;
  double det = determinant();
  double scale = 1.0;
  if (!gf_IsSafe(det)) {
    const double largest =
        std::max(std::max(std::abs(m00_), std::abs(m01_)), std::max(std::abs(m10_), std::abs(m11_)));
    if (largest == 0.0) throw gxMathError::Singular();
    // The largest power of two below 1 / largest; for the smallest denormals the last finite one.
    scale = std::scalbn(1.0, std::min(-std::ilogb(largest), 1023));
    m = m * scale;
    det = m.determinant();
  }
  if (det == 0.0) throw gxMathError::Singular();
  const gxMatrix result(m.m11_ / det * scale, -m.m01_ / det * scale, -m.m10_ / det * scale,
                        m.m00_ / det * scale);
  if (!result.isFinite_()) throw gxMathError::Singular();
  return result;
}
