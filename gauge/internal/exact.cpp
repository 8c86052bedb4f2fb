// The exact signs behind circles.
//
//  1. A filter: the expression in doubles, with a bound of its error.  It decides nearly all.
//  2. Otherwise integers.  Every finite double is an integer times a power of two; with the smallest such
//     power of all coordinates taken out, differences, products and sums of them are integers, which are
//     computed in words of 64 bits.  Coordinates of similar size need two words a difference; from the
//     smallest subnormal to the largest double it is 33, and 133 for a product of four.
//
// (Floating-point expansions are faster by a factor of two to three where they work, and do not work at
// the ends of the range, which here are inputs like others.)
#include <gauge/internal/exact.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace {

__extension__ using Wide = unsigned __int128;

// A whole number of up to 136 words, the lowest first, with a sign.
class Whole {
 public:
  Whole() = default;

  // The value / 2^exponent, which must be a whole number.
  Whole(double value, int exponent) {
    int own = 0;
    const double mantissa = std::frexp(std::fabs(value), &own);
    if (mantissa == 0.0) return;
    const int shift = own - 53 - exponent;
    auto whole = static_cast<std::uint64_t>(std::ldexp(mantissa, 53));
    negative_ = value < 0.0;
    if (shift < 0) {  // a subnormal: its low bits are zeros
      whole >>= static_cast<unsigned>(-shift);
      words_[0] = whole;
      used_ = 1;
      return;
    }
    const auto word = static_cast<std::size_t>(shift) / 64;
    const Wide wide = static_cast<Wide>(whole) << (static_cast<unsigned>(shift) % 64U);
    std::fill(words_.begin(), words_.begin() + static_cast<std::ptrdiff_t>(word), 0);
    words_[word] = static_cast<std::uint64_t>(wide);
    words_[word + 1] = static_cast<std::uint64_t>(wide >> 64U);
    used_ = word + 2;
    trim();
  }
  Whole(const Whole& other) { *this = other; }
  Whole& operator=(const Whole& other) {
    used_ = other.used_;
    negative_ = other.negative_;
    std::copy_n(other.words_.begin(), used_, words_.begin());
    return *this;
  }
  ~Whole() = default;

  int sign() const { return used_ == 0 ? 0 : negative_ ? -1 : 1; }

  Whole operator-() const {
    Whole result(*this);
    result.negative_ = !negative_;
    return result;
  }

  Whole operator+(const Whole& o) const {
    if (negative_ == o.negative_) return added(*this, o);
    const int order = compareMagnitudes(*this, o);
    if (order == 0) return {};
    return order > 0 ? subtracted(*this, o) : subtracted(o, *this);
  }
  Whole operator-(const Whole& o) const { return *this + -o; }

  Whole operator*(const Whole& o) const {
    Whole result;
    if (used_ == 0 || o.used_ == 0) return result;
    result.negative_ = negative_ != o.negative_;
    result.used_ = used_ + o.used_;
    std::fill_n(result.words_.begin(), result.used_, 0);
    for (std::size_t i = 0; i < used_; ++i) {
      Wide carry = 0;
      for (std::size_t j = 0; j < o.used_; ++j) {
        carry += static_cast<Wide>(words_[i]) * o.words_[j] + result.words_[i + j];
        result.words_[i + j] = static_cast<std::uint64_t>(carry);
        carry >>= 64U;
      }
      result.words_[i + o.used_] = static_cast<std::uint64_t>(carry);
    }
    result.trim();
    return result;
  }

 private:
  void trim() {
    while (used_ > 0 && words_[used_ - 1] == 0) --used_;
  }

  static int compareMagnitudes(const Whole& a, const Whole& b) {
    if (a.used_ != b.used_) return a.used_ > b.used_ ? 1 : -1;
    for (std::size_t i = a.used_; i-- > 0;) {
      if (a.words_[i] != b.words_[i]) return a.words_[i] > b.words_[i] ? 1 : -1;
    }
    return 0;
  }

  static Whole added(const Whole& a, const Whole& b) {
    const Whole& longer = a.used_ >= b.used_ ? a : b;
    const Whole& shorter = a.used_ >= b.used_ ? b : a;
    Whole result;
    result.negative_ = a.negative_;
    Wide carry = 0;
    for (std::size_t i = 0; i < longer.used_; ++i) {
      carry += static_cast<Wide>(longer.words_[i]) + (i < shorter.used_ ? shorter.words_[i] : 0);
      result.words_[i] = static_cast<std::uint64_t>(carry);
      carry >>= 64U;
    }
    result.used_ = longer.used_;
    if (carry != 0) result.words_[result.used_++] = static_cast<std::uint64_t>(carry);
    return result;
  }

  // The magnitude of `a` is the larger.
  static Whole subtracted(const Whole& a, const Whole& b) {
    Whole result;
    result.negative_ = a.negative_;
    std::uint64_t borrow = 0;
    for (std::size_t i = 0; i < a.used_; ++i) {
      const std::uint64_t other = i < b.used_ ? b.words_[i] : 0;
      const Wide difference = static_cast<Wide>(a.words_[i]) - other - borrow;
      result.words_[i] = static_cast<std::uint64_t>(difference);
      borrow = static_cast<std::uint64_t>(difference >> 64U) != 0 ? 1 : 0;
    }
    result.used_ = a.used_;
    result.trim();
    return result;
  }

  std::array<std::uint64_t, 136> words_;  // only the first `used_` mean something
  std::size_t used_ = 0;
  bool negative_ = false;
};

using Points = std::initializer_list<const gxVector<2>*>;

bool allFinite(const Points& points) {
  for (const auto* p : points) {
    if (!std::isfinite(p->x()) || !std::isfinite(p->y())) return false;
  }
  return true;
}

// The exponent of the lowest bit of a double that can be set: −1074 for zero and subnormals.
int lowestBit(double value) {
  const auto field = static_cast<int>((std::bit_cast<std::uint64_t>(value) >> 52U) & 0x7ffU);
  return std::max(field, 1) - 1075;
}

// A power of two of which all coordinates are multiples.
int unitOf(const Points& points) {
  int lowest = INT32_MAX;
  for (const auto* p : points) {
    for (const double value : {p->x(), p->y()}) {
      if (value != 0.0) lowest = std::min(lowest, lowestBit(value));
    }
  }
  return lowest == INT32_MAX ? 0 : lowest;
}

// A vector of whole numbers.
struct WholeVector {
  WholeVector(const gxVector<2>& to, const gxVector<2>& from, int unit)
      : x(Whole(to.x(), unit) - Whole(from.x(), unit)), y(Whole(to.y(), unit) - Whole(from.y(), unit)) {}
  Whole operator*(const WholeVector& o) const { return x * o.x + y * o.y; }
  Whole cross(const WholeVector& o) const { return x * o.y - y * o.x; }

  Whole x;
  Whole y;
};

int exactInCircle(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                  const gxVector<2>& p) {
  const Points all = {&a, &b, &c, &p};
  if (!allFinite(all)) return 0;
  const int unit = unitOf(all);
  const WholeVector fromA(a, p, unit);
  const WholeVector fromB(b, p, unit);
  const WholeVector fromC(c, p, unit);
  return ((fromA * fromA) * fromB.cross(fromC) + (fromB * fromB) * fromC.cross(fromA) +
          (fromC * fromC) * fromA.cross(fromB))
      .sign();
}

}  // namespace

int gx_DotSign(const gxVector<2>& p, const gxVector<2>& a, const gxVector<2>& b) {
  // The bound is that of `gx_Orientation`: the same differences, products and sum.
  const double x = (a.x() - p.x()) * (b.x() - p.x());
  const double y = (a.y() - p.y()) * (b.y() - p.y());
  const double error = 2.0 * DBL_EPSILON * (std::fabs(x) + std::fabs(y)) + DBL_MIN;
  if (x + y > error) return 1;
  if (-(x + y) > error) return -1;
  const Points all = {&p, &a, &b};
  if (!allFinite(all)) return 0;
  const int unit = unitOf(all);
  return (WholeVector(a, p, unit) * WholeVector(b, p, unit)).sign();
}

int gx_InCircle(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c, const gxVector<2>& p) {
  const gxVector<2> u = a - p;
  const gxVector<2> v = b - p;
  const gxVector<2> w = c - p;
  const int turn = gx_Orientation(a, b, c);
  if (turn == 0) return 0;
  const double vw = v.x() * w.y();
  const double wv = v.y() * w.x();
  const double wu = w.x() * u.y();
  const double uw = w.y() * u.x();
  const double uv = u.x() * v.y();
  const double vu = u.y() * v.x();
  const double det = (u * u) * (vw - wv) + (v * v) * (wu - uw) + (w * w) * (uv - vu);
  const double sum = (u * u) * (std::fabs(vw) + std::fabs(wv)) +
                     (v * v) * (std::fabs(wu) + std::fabs(uw)) +
                     (w * w) * (std::fabs(uv) + std::fabs(vu));
  // Each of the products of four factors carries at most 10 roundings, the differences included
  // (J. Shewchuk, "Adaptive precision floating-point arithmetic and fast robust geometric predicates",
  // Discrete & Computational Geometry 18, 1997, has 10 + 96 u in units of u for this very expression).
  // Below 1e-200 products may have lost digits to underflow.
  const double error = 12.0 * (DBL_EPSILON / 2.0) * sum;
  const double longest = std::max({std::fabs(u.x()), std::fabs(u.y()), std::fabs(v.x()),
                                   std::fabs(v.y()), std::fabs(w.x()), std::fabs(w.y())});
  if (longest < 1e70 && std::fabs(det) > error && std::fabs(det) > 1e-180)
    return det > 0.0 ? turn : -turn;
  return exactInCircle(a, b, c, p) * turn;
}

int gx_CompareDistances(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                        const gxVector<2>& d) {
  const gxVector<2> u = a - b;
  const gxVector<2> v = c - d;
  const double left = u * u;
  const double right = v * v;
  const double error = 4.0 * DBL_EPSILON * (left + right) + DBL_MIN;
  if (left - right > error && left < 1e300) return 1;
  if (right - left > error && right < 1e300) return -1;
  const Points all = {&a, &b, &c, &d};
  if (!allFinite(all)) return 0;
  const int unit = unitOf(all);
  const WholeVector first(a, b, unit);
  const WholeVector second(c, d, unit);
  return (first * first - second * second).sign();
}
