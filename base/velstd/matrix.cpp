// The operations of 2 × 2 matrices that are more than a line: rotation and skew, determinant,
// inverse by the adjugate.
#include <velstd/exception.h>
#include <velstd/matrix.h>

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

double gxMatrix<2>::determinant() const { return gf_DifferenceOfProducts(m00_, m11_, m01_, m10_); }

gxMatrix<2> gxMatrix<2>::inverse() const {
  const double det = determinant();
  const gxMatrix result(m11_ / det, -m01_ / det, -m10_ / det, m00_ / det);
  const bool finite = std::isfinite(result.m00_) && std::isfinite(result.m01_) &&
                      std::isfinite(result.m10_) && std::isfinite(result.m11_);
  if (det == 0.0 || !std::isfinite(det) || !finite) throw gxMathError::Singular();
  return result;
}
