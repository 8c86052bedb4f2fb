// Length, direction and the accurate cross product.
//
// The length is the plain square root of the sum of squares wherever the sum of squares is safely
// inside the double range: then it is good to about one unit in the last place, and fast.  Outside,
// the components are scaled by a power of two (exact) and scaled back.  The obvious std::hypot is
// slower and its last bit depends on the C library.
#include <velstd/vector.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Sums of squares in this range have neither overflowed nor lost digits to denormals.
constexpr double kSmallestSafeSquare = 1e-280;
constexpr double kLargestSafeSquare = 1e300;

}  // namespace

gxVector<2>::gxVector(double length, gxRadian angle)
    : x_(length * std::cos(angle.toDouble())), y_(length * std::sin(angle.toDouble())) {}

double gxVector<2>::len() const {
  const double square = x_ * x_ + y_ * y_;
  if (square >= kSmallestSafeSquare && square <= kLargestSafeSquare) return std::sqrt(square);
  return scaledLen_();
}

double gxVector<2>::scaledLen_() const {
  if (std::isnan(x_) || std::isnan(y_)) return x_ + y_;
  const double largest = std::max(std::abs(x_), std::abs(y_));
  if (largest == 0.0 || std::isinf(largest)) return largest;
  const int exponent = std::ilogb(largest);
  const double u = std::scalbn(x_, -exponent);
  const double v = std::scalbn(y_, -exponent);
  return std::scalbn(std::sqrt(u * u + v * v), exponent);
}

gxVector<2> gxVector<2>::unit() const {
  if (!std::isfinite(x_) || !std::isfinite(y_)) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    return {kNaN, kNaN};
  }
  const double largest = std::max(std::abs(x_), std::abs(y_));
  if (largest == 0.0) return {};
  if (largest > 1e-140 && largest < 1e140) return *this / len();
  const int exponent = std::ilogb(largest);
  const gxVector scaled(std::scalbn(x_, -exponent), std::scalbn(y_, -exponent));
  return scaled / scaled.len();
}

gxRadian gxVector<2>::angle() const {
  return gxRadian(std::atan2(y_ + 0.0, x_ + 0.0));  // + 0.0 turns -0.0 into 0.0
}

double gf_DifferenceOfProducts(double a, double d, double b, double c) {
  const double bc = b * c;
  const double error = std::fma(-b, c, bc);
  const double difference = std::fma(a, d, -bc);
  return difference + error;
}
