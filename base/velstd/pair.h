/// Plain pairs of numbers.
#pragma once

/// Two values of one type, x and y, without arithmetic: the end points handed to a display, and
/// integer pixel positions.  A default pair holds (0, 0).
template <class T>
class gxPair {
 public:
  constexpr gxPair() = default;
  /// Makes a pair.
  constexpr gxPair(T x, T y) : x_(x), y_(y) {}

  /// Return the two values.
  constexpr T x() const { return x_; }
  constexpr T y() const { return y_; }

  /// Is true when both components are equal (exactly; a NaN equals nothing).
  friend constexpr bool operator==(const gxPair&, const gxPair&) = default;

 private:
  T x_{};
  T y_{};
};
