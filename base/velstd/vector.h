/// Points and vectors of the plane.
#pragma once

#include <velstd/angle.h>
#include <velstd/export.h>
#include <velstd/pair.h>

#include <type_traits>

template <int N>
class gxVector;

/// A point or a vector of the plane: two doubles, x and y.  A default vector is (0, 0).
///
/// It is 16 bytes, trivially copyable and of standard layout, so that an array of points can be
/// seen by other libraries as an array of doubles x0, y0, x1, y1, … without a copy.
/// Arithmetic is that of doubles, component by component; NaN and infinities pass through.
template <>
class VELSTD_API gxVector<2> {
 public:
  constexpr gxVector() = default;
  /// Makes a vector of its coordinates.
  constexpr gxVector(double x, double y) : x_(x), y_(y) {}
  /// Builds the vector of that length in that direction: (length cos angle, length sin angle).
  gxVector(double length, gxRadian angle);
  /// Makes a vector of two whole numbers.
  constexpr explicit gxVector(const gxPair<long>& pair)
      : x_(static_cast<double>(pair.x())), y_(static_cast<double>(pair.y())) {}

  /// Return the coordinates.
  constexpr double x() const { return x_; }
  constexpr double y() const { return y_; }

  /// Calculate coordinate by coordinate.
  constexpr gxVector operator+(const gxVector& o) const { return {x_ + o.x_, y_ + o.y_}; }
  constexpr gxVector operator-(const gxVector& o) const { return {x_ - o.x_, y_ - o.y_}; }
  constexpr gxVector operator-() const { return {-x_, -y_}; }
  constexpr gxVector operator*(double factor) const { return {x_ * factor, y_ * factor}; }
  constexpr gxVector operator/(double divisor) const { return {x_ / divisor, y_ / divisor}; }
  constexpr gxVector& operator+=(const gxVector& o) { return *this = *this + o; }
  constexpr gxVector& operator-=(const gxVector& o) { return *this = *this - o; }

  /// Returns the dot product x·x' + y·y'.
  constexpr double operator*(const gxVector& o) const { return x_ * o.x_ + y_ * o.y_; }

  /// Returns the Euclidean length, 0 or more.  Where the plain square root of x² + y² would
  /// overflow or lose digits to underflow, the components are scaled by a power of two first, so
  /// that lengths up to the largest double and down to the smallest are right.
  ///  - a NaN component gives NaN; otherwise an infinite one gives +infinity
  double len() const;

  /// Returns the Euclidean distance: the length of the difference.
  double distance(const gxVector& other) const { return (*this - other).len(); }

  /// Returns the vector of length 1 in the same direction.
  ///  - (0, 0) has no direction and gives (0, 0); a NaN or infinite component gives NaN components
  gxVector unit() const;

  /// Returns the direction in (−π, π], from the x axis towards the y axis: atan2, where a zero
  /// counts as +0, so that equal vectors have equal directions.  (0, 0) gives 0, a NaN gives NaN.
  gxRadian angle() const;

  /// Is true when both components are equal, exactly: no tolerance, 0 equals −0, NaN equals nothing.
  constexpr bool operator==(const gxVector& o) const { return x_ == o.x_ && y_ == o.y_; }

 private:
  double scaledLen_() const;

  double x_ = 0.0;
  double y_ = 0.0;
};

static_assert(sizeof(gxVector<2>) == 16 && std::is_trivially_copyable_v<gxVector<2>> &&
              std::is_standard_layout_v<gxVector<2>>);

/// Returns the product of a number and a vector, component by component.
constexpr gxVector<2> operator*(double factor, const gxVector<2>& vector) {
  return vector * factor;
}

/// Returns a·d − b·c with an error of at most 1.5 units in the last place, however much the two
/// products cancel (Kahan's difference of products, by fused multiply-add; Jeannerod, Louvet and
/// Muller, Math. Comp. 82, 2013).  Products beyond the double range give infinities or NaN, and
/// products below 1e-290 lose digits: callers that may meet either scale their numbers first.
VELSTD_API double gf_DifferenceOfProducts(double a, double d, double b, double c);

/// Returns u.x·v.y − u.y·v.x, the plain cross product of two rounded products.
constexpr double gf_Cross(const gxVector<2>& u, const gxVector<2>& v) {
  return u.x() * v.y() - u.y() * v.x();
}
