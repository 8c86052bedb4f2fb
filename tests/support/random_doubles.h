/// Random numbers for tests: the same on every machine for the same seed.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>

/// Draws doubles of several kinds.  A test makes one from a seed that it shows by SCOPED_TRACE.
class RandomDoubles {
 public:
  explicit RandomDoubles(std::uint64_t seed) : bits_(seed) {}

  /// Draws from [low, high), evenly.
  double uniform(double low, double high) {
    return low + (high - low) * (static_cast<double>(bits_() >> 11U) * 0x1p-53);
  }

  /// Draws a whole number from 0 to `count` − 1.
  int whole(int count) { return static_cast<int>(bits_() % static_cast<std::uint64_t>(count)); }

  /// Draws a finite double by its bits: every exponent is as likely as any other, denormals and
  /// both zeros included.
  double anyFinite() {
    for (;;) {
      const auto value = std::bit_cast<double>(bits_());
      if (std::isfinite(value)) return value;
    }
  }

  /// Draws a number with a random sign, exponent between the two and random digits.
  double withExponent(int least, int most) {
    const double digits = uniform(1.0, 2.0);
    const double value = std::scalbn(digits, least + whole(most - least + 1));
    return (bits_() & 1U) != 0 ? -value : value;
  }

  /// Draws finite doubles that are trouble more often than not: zeros, ends of the range, denormals.
  double nasty() {
    constexpr double kNasty[] = {0.0,     -0.0,     1.0,    -1.0,    1e308,  -1e308,
                                 1.7e308, -1.7e308, 5e-324, -5e-324, 2e-310, 2.3e-308,
                                 -1e-160, 1e160,    1e-150, 3.0,     -1e154, 1e-300};
    const int i = whole(24);
    return i < 18 ? kNasty[i] : anyFinite();
  }

 private:
  std::mt19937_64 bits_;
};
