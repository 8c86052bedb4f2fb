// The sign of (b − a) × (c − a), where the filter in the header cannot tell.
//
//  1. Where the four differences are exact, which they are on pixel grids and other lattices, the
//     sign is that of the difference of two exact products.  Rounding keeps order, so unequal
//     rounded products decide; equal ones leave the decision to their rounding errors, which two
//     fused operations give without error unless something underflows.
//  2. Everything else is settled without floating point: the determinant is the sum of six products
//     of coordinates.  Each is an integer of 106 bits times a power of two.  The positive ones are
//     added in one long integer and the negative ones in another, and the two are compared.
//     The longest needs 4196 bits; coordinates of similar size need three or four words.
#include <velstd/orientation.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cstddef>
#include <cstdint>

namespace {

__extension__ using Wide = unsigned __int128;

int sign(double value) {
  return (value > 0.0) - (value < 0.0);
}

// Tells whether x − y is exact, given d, its rounded value: then both of Knuth's error terms are 0.
bool exactDifference(double x, double y, double d) {
  const double yBack = x - d;
  const double xBack = d + yBack;
  return x - xBack == 0.0 && yBack - y == 0.0;
}

// The result of step 1, or nothing.
constexpr int kUndecided = 2;

int signOfExactDifferences(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c) {
  if (FLT_EVAL_METHOD != 0) return kUndecided;  // step 1 needs operations that round once
  const double bx = b.x() - a.x();
  const double by = b.y() - a.y();
  const double cx = c.x() - a.x();
  const double cy = c.y() - a.y();
  if (!exactDifference(b.x(), a.x(), bx) || !exactDifference(b.y(), a.y(), by) ||
      !exactDifference(c.x(), a.x(), cx) || !exactDifference(c.y(), a.y(), cy)) {
    return kUndecided;
  }
  const double left = bx * cy;
  const double right = by * cx;
  if (left == 0.0 && right == 0.0) {
    const bool trueZeros = (bx == 0.0 || cy == 0.0) && (by == 0.0 || cx == 0.0);
    return trueZeros ? 0 : kUndecided;
  }
  if (!(std::fabs(left) <= DBL_MAX && std::fabs(right) <= DBL_MAX)) return kUndecided;
  if (left != right) return sign(left - right);
  // Below this the error of a product may be no double.
  constexpr double kErrorsAreExact = 0x1p-960;
  if (std::fabs(left) < kErrorsAreExact) return kUndecided;
  return sign(std::fma(bx, cy, -left) - std::fma(by, cx, -right));
}

// A finite double as mantissa · 2^exponent.
struct Parts {
  std::uint64_t mantissa;
  int exponent;
  bool negative;
};

Parts split(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const auto field = static_cast<int>((bits >> 52U) & 0x7ffU);
  const std::uint64_t fraction = bits & 0xfffffffffffffU;
  const bool subnormal = field == 0;
  return {subnormal ? fraction : fraction | 0x10000000000000U, (subnormal ? 1 : field) - 1075,
          (bits >> 63U) != 0};
}

struct Product {
  Wide value;
  int exponent;
  bool negative;
};

Product multiply(double x, double y, bool negate) {
  const Parts p = split(x);
  const Parts q = split(y);
  return {static_cast<Wide>(p.mantissa) * q.mantissa, p.exponent + q.exponent,
          (p.negative != q.negative) != negate};
}

// A sum of products, as a long number of 64-bit words, the lowest first.
class LongSum {
 public:
  // Adds value · 2^shift.
  void add(Wide value, int shift) {
    const auto bit = static_cast<unsigned>(shift) % 64U;
    auto word = static_cast<std::size_t>(shift) / 64U;
    const Wide low = static_cast<Wide>(static_cast<std::uint64_t>(value)) << bit;
    const Wide high = static_cast<Wide>(static_cast<std::uint64_t>(value >> 64U)) << bit;
    Wide carry = static_cast<std::uint64_t>(low);
    carry = addWord(word++, carry);
    carry = addWord(word++, carry + (low >> 64U) + static_cast<std::uint64_t>(high));
    carry = addWord(word++, carry + (high >> 64U));
    while (carry != 0) carry = addWord(word++, carry);
    used_ = std::max(used_, word);
  }

  // Returns the sign of this − other.
  int compare(const LongSum& other) const {
    for (std::size_t i = std::max(used_, other.used_); i-- > 0;) {
      if (words_[i] != other.words_[i]) return words_[i] > other.words_[i] ? 1 : -1;
    }
    return 0;
  }

 private:
  // Adds into one word and returns what is carried to the next.
  Wide addWord(std::size_t index, Wide addend) {
    const Wide sum = words_[index] + addend;
    words_[index] = static_cast<std::uint64_t>(sum);
    return sum >> 64U;
  }

  // Exponents of products run from −2148 to 1942, so a shift is at most 4090 and a sum of three
  // products of 106 bits ends below bit 4198: 66 words, and one for the last carry.
  std::array<std::uint64_t, 68> words_{};
  std::size_t used_ = 0;
};

int signOfSum(const std::array<Product, 6>& products) {
  int lowest = std::numeric_limits<int>::max();
  for (const Product& p : products) {
    if (p.value != 0) lowest = std::min(lowest, p.exponent);
  }
  LongSum positive;
  LongSum negative;
  for (const Product& p : products) {
    if (p.value != 0) (p.negative ? negative : positive).add(p.value, p.exponent - lowest);
  }
  return positive.compare(negative);
}

bool finite(const gxVector<2>& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

}  // namespace

int gx_OrientationExact(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c) {
  if (!finite(a) || !finite(b) || !finite(c)) return 0;
  const int quick = signOfExactDifferences(a, b, c);
  if (quick != kUndecided) return quick;
  return signOfSum({multiply(a.x(), b.y(), false), multiply(a.y(), b.x(), true),
                    multiply(b.x(), c.y(), false), multiply(b.y(), c.x(), true),
                    multiply(c.x(), a.y(), false), multiply(c.y(), a.x(), true)});
}
