/// Sums of products of doubles without error.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

/// A sum of products of up to three finite doubles, of which the sign is asked: exact for every exponent
/// from the smallest subnormal to the largest double, for fewer than 2^32 products.
///
/// What is positive and what is negative are added up apart, in long fixed-point numbers of 64-bit words.
class gx_LongSum {
 public:
  /// Adds x · y.
  void add(double x, double y) { add(x, y, 1.0); }
  /// Adds x · y · z.
  void add(double x, double y, double z) {
    const Parts p = split(x);
    const Parts q = split(y);
    const Parts r = split(z);
    if (p.mantissa == 0 || q.mantissa == 0 || r.mantissa == 0) return;
    const Wide two = static_cast<Wide>(p.mantissa) * q.mantissa;
    const Wide low = static_cast<Wide>(static_cast<std::uint64_t>(two)) * r.mantissa;
    const Wide high = (two >> 64U) * r.mantissa + (low >> 64U);
    const bool negative = (p.negative != q.negative) != r.negative;
    addShifted(negative ? negative_ : positive_,
               {static_cast<std::uint64_t>(low), static_cast<std::uint64_t>(high),
                static_cast<std::uint64_t>(high >> 64U)},
               static_cast<unsigned>(p.exponent + q.exponent + r.exponent - kLowest));
  }

  /// Returns the sign of the sum.
  int sign() const {
    for (std::size_t i = end_; i-- > 0;) {
      if (positive_[i] != negative_[i]) return positive_[i] > negative_[i] ? 1 : -1;
    }
    return 0;
  }

 private:
  __extension__ using Wide = unsigned __int128;

  // A finite double is mantissa · 2^exponent.
  struct Parts {
    std::uint64_t mantissa;
    int exponent;
    bool negative;
  };

  // The least exponent of a product of three is −3222, the greatest 2913; such a product has 159 bits and
  // the sum 32 more, so the highest bit is below 6328: 99 words, and one that a carry may look at.
  static constexpr int kLowest = -3222;
  using Words = std::array<std::uint64_t, 101>;

  static Parts split(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const auto field = static_cast<int>((bits >> 52U) & 0x7ffU);
    const std::uint64_t fraction = bits & 0xfffffffffffffU;
    const bool subnormal = field == 0;
    return {subnormal ? fraction : fraction | 0x10000000000000U, (subnormal ? 1 : field) - 1075,
            (bits >> 63U) != 0};
  }

  void addShifted(Words& words, const std::array<std::uint64_t, 3>& value, unsigned shift) {
    const unsigned bit = shift % 64U;
    std::size_t word = shift / 64U;
    std::uint64_t below = 0;
    Wide carry = 0;
    for (const std::uint64_t part : value) {
      const std::uint64_t shifted = bit == 0 ? part : (part << bit) | (below >> (64U - bit));
      carry += static_cast<Wide>(words[word]) + shifted;
      words[word++] = static_cast<std::uint64_t>(carry);
      carry >>= 64U;
      below = part;
    }
    if (bit != 0) carry += below >> (64U - bit);
    for (; carry != 0; ++word) {
      carry += words[word];
      words[word] = static_cast<std::uint64_t>(carry);
      carry >>= 64U;
    }
    end_ = word > end_ ? word : end_;
  }

  Words positive_{};
  Words negative_{};
  std::size_t end_ = 0;  // no word from here on was ever written
};
