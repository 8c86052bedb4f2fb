// The operations of 2 × 2 matrices that are more than a line: rotation and skew, determinant,
// inverse by the adjugate.
//
// Where the determinant has overflowed or may have underflowed, rows and then columns are multiplied
// by powers of two until the largest element of each lies in [1, 2), which is exact; that matrix is
// inverted, and the powers are put back.  (One power for the whole matrix was not enough: with
// elements of 1e-300 and 1e10 on the diagonal, the smaller one is then lost.)
#include <velstd/exception.h>
#include <velstd/internal/scaled_vector.h>
#include <velstd/matrix.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace {

// Returns the exponent of the larger of the two.  Throws: gxMathError::Singular when both are 0.
int exponentOf(double a, double b) {
  const double largest = std::max(std::abs(a), std::abs(b));
  if (largest == 0.0) throw gxMathError::Singular();
  return std::ilogb(largest);
}

}  // namespace

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
  const double det = determinant();
  const gxMatrix result =
      gf_IsSafe(det) ? gxMatrix(m11_ / det, -m01_ / det, -m10_ / det, m00_ / det) : balancedInverse_();
  if (!result.isFinite_()) throw gxMathError::Singular();
  return result;
}

gxMatrix<2> gxMatrix<2>::balancedInverse_() const {
  const int row0 = exponentOf(m00_, m01_);
  const int row1 = exponentOf(m10_, m11_);
  const gxMatrix half(std::scalbn(m00_, -row0), std::scalbn(m01_, -row0), std::scalbn(m10_, -row1),
                      std::scalbn(m11_, -row1));
  const int column0 = exponentOf(half.m00_, half.m10_);
  const int column1 = exponentOf(half.m01_, half.m11_);
  const gxMatrix m(std::scalbn(half.m00_, -column0), std::scalbn(half.m01_, -column1),
                   std::scalbn(half.m10_, -column0), std::scalbn(half.m11_, -column1));
  const double det = m.determinant();
  if (det == 0.0) throw gxMathError::Singular();
  return {std::scalbn(m.m11_ / det, -column0 - row0), std::scalbn(-m.m01_ / det, -column0 - row1),
          std::scalbn(-m.m10_ / det, -column1 - row0), std::scalbn(m.m00_ / det, -column1 - row1)};
}
