/// Two by two matrices.
#pragma once

#include <velstd/angle.h>
#include <velstd/export.h>
#include <velstd/vector.h>

template <int N>
class gxMatrix;

/// A 2 × 2 matrix of doubles, elements m00, m01 (first row), m10, m11 (second row).
/// A default matrix is all zero.
///
/// It is the linear part of a transform, and the form that second moments come in.  Vectors are columns:
/// `matrix * vector` maps a vector.  Sums and products are computed as they are written, each product and
/// each sum rounded once (no fused multiply-add), so the bits are the same on every machine.  Elements
/// that are not finite are carried along; only `inverse` refuses them.
template <>
class VELSTD_API gxMatrix<2> {
 public:
  constexpr gxMatrix() = default;
  /// Makes a matrix row by row.
  constexpr gxMatrix(double m00, double m01, double m10, double m11)
      : m00_(m00), m01_(m01), m10_(m10), m11_(m11) {}
  /// Builds the matrix with the columns scale0·(cos rotation, sin rotation) and
  /// scale1·(−sin skew, cos skew): with skew = rotation and scales 1, a rotation.
  gxMatrix(const gxRadian& rotation, const gxRadian& skew, double scale0, double scale1);

  /// Return the elements: row, column.
  constexpr double m00() const { return m00_; }
  constexpr double m01() const { return m01_; }
  constexpr double m10() const { return m10_; }
  constexpr double m11() const { return m11_; }
  /// Returns the element in that row and column.  Throws: std::out_of_range unless both are 0 or 1.
  double element(int row, int column) const;

  /// Calculate as matrices do; a product maps by its right factor first.  An element of a product is
  /// the sum of two rounded products, the first column's first.
  constexpr gxVector<2> operator*(const gxVector<2>& v) const {
    return {m00_ * v.x() + m01_ * v.y(), m10_ * v.x() + m11_ * v.y()};
  }
  constexpr gxMatrix operator*(const gxMatrix& o) const {
    return {m00_ * o.m00_ + m01_ * o.m10_, m00_ * o.m01_ + m01_ * o.m11_, m10_ * o.m00_ + m11_ * o.m10_,
            m10_ * o.m01_ + m11_ * o.m11_};
  }
  constexpr gxMatrix operator*(double f) const { return {m00_ * f, m01_ * f, m10_ * f, m11_ * f}; }
  constexpr gxMatrix operator+(const gxMatrix& o) const {
    return {m00_ + o.m00_, m01_ + o.m01_, m10_ + o.m10_, m11_ + o.m11_};
  }
  constexpr gxMatrix operator-(const gxMatrix& o) const {
    return {m00_ - o.m00_, m01_ - o.m01_, m10_ - o.m10_, m11_ - o.m11_};
  }
  /// Is true when all four elements are equal, exactly; a NaN equals nothing.
  friend constexpr bool operator==(const gxMatrix&, const gxMatrix&) = default;

  /// Returns the matrix with rows and columns exchanged.
  constexpr gxMatrix transpose() const { return {m00_, m10_, m01_, m11_}; }
  /// Returns m00·m11 − m01·m10, accurate to 1.5 units in the last place while the products are
  /// inside the double range.
  double determinant() const;
  /// Returns the inverse.  Where the determinant would overflow or vanish, rows and columns are brought to
  /// one size first: elements of 1e-300 beside others of 1e10 keep theirs.  Throws: gxMathError::Singular when an element is not finite, the
  /// determinant is 0, or the inverse has an element that exceeds the double range.
  gxMatrix inverse() const;

 private:
  bool isFinite_() const;
  gxMatrix balancedInverse_() const;

  double m00_ = 0.0;
  double m01_ = 0.0;
  double m10_ = 0.0;
  double m11_ = 0.0;
};
