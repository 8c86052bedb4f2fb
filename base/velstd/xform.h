/// Affine transforms of the plane, as values.
#pragma once

#include <velstd/export.h>
#include <velstd/matrix.h>
#include <velstd/vector.h>

#include <stdexcept>

template <int N>
class gxXform;

/// An affine transform: x' = xx·x + xy·y + tx, y' = yx·x + yy·y + ty.  The default is the identity.
///
/// A plain value of seven numbers: the six above and the determinant that goes with them.  A contour is
/// mapped by `gxContour::map`, a list of points one by one with `*`; `gx2XformBase` is the same as an
/// object that can be held by handle and stored.  A transform with a negative determinant mirrors: it turns
/// a counter-clockwise outline into a clockwise one.  Numbers that are not finite are kept, and make
/// mapped points that are not finite.
template <>
class VELSTD_API gxXform<2> {
 public:
  constexpr gxXform() = default;
  /// Makes the transform that maps p to matrix * p + translation.
  constexpr gxXform(const gxMatrix<2>& matrix, const gxVector<2>& translation)
      : stored_{matrix.m00(),
                matrix.m01(),
                matrix.m11(),
                translation.x(),
                translation.y(),
                matrix.m10(),
                matrix.m00() * matrix.m11() - matrix.m01() * matrix.m10()} {}

  /// The identity.
  static const gxXform I;

  /// Return the numbers: rows of the matrix, then the translation.
  constexpr double xx() const { return stored_[0]; }
  constexpr double xy() const { return stored_[1]; }
  constexpr double yy() const { return stored_[2]; }
  constexpr double tx() const { return stored_[3]; }
  constexpr double ty() const { return stored_[4]; }
  constexpr double yx() const { return stored_[5]; }
  /// Returns xx·yy − xy·yx as the plain difference of two rounded products, which is what is kept
  /// beside the six numbers; `matrix().determinant()` is the accurate one.
  constexpr double determinant() const { return stored_[6]; }

  /// Return the two parts.
  constexpr gxMatrix<2> matrix() const { return {xx(), xy(), yx(), yy()}; }
  constexpr gxVector<2> translation() const { return {tx(), ty()}; }

  /// Maps a point: two products and two sums a coordinate, in the order of the formula above.
  constexpr gxVector<2> operator*(const gxVector<2>& p) const {
    return {xx() * p.x() + xy() * p.y() + tx(), yx() * p.x() + yy() * p.y() + ty()};
  }
  /// Returns the transform that maps by `first` and then by this one.  Mapping a point by it gives what
  /// mapping twice gives, but for rounding.
  constexpr gxXform operator*(const gxXform& first) const {
    return {matrix() * first.matrix(), *this * first.translation()};
  }

  /// Returns the transform that undoes this one.  Throws: gxMathError::Singular when there is none
  /// (a number is not finite, the determinant is 0, or a number of the inverse exceeds the double range).
  gxXform inverse() const;

  /// Is true when all six numbers are equal, exactly.
  friend constexpr bool operator==(const gxXform&, const gxXform&) = default;

  /// Returns number i, 0 to 6, in the order of storage: xx, xy, yy, tx, ty, yx, determinant.
  /// Throws: std::out_of_range for any other i.
  constexpr double stored(int i) const {
    if (i < 0 || i > 6) throw std::out_of_range("gxXform<2>::stored: the index must be 0 to 6");
    return stored_[i];
  }

 private:
  // The order matters: ordered maps keyed by a transform compare the first five numbers only, so
  // two transforms share an entry exactly when they differ in yx (and with it in the determinant)
  // alone.  The identity can therefore only be confused with a shear along y, never with a rotation
  // or a scale.
  double stored_[7] = {1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
};

inline const gxXform<2> gxXform<2>::I{};
