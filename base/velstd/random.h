/// Seeded uniform random numbers.
#pragma once

#include <velstd/export.h>

#include <cstdint>

/// A generator of uniform random numbers that gives the same sequence for the same seed on every
/// machine: 64 bits of SplitMix64 a draw (Steele, Lea and Flood, OOPSLA 2014), of which the upper
/// 53 make the number.
class VELSTD_API gxRandomUniform {
 public:
  /// Begins the sequence of that seed; any seed will do.
  explicit gxRandomUniform(long seed);

  /// Draws a number in [low, high).
  ///  - where the range is empty or not a number (high <= low, NaN), returns `low`; a number is
  ///    drawn all the same
  ///  - a range that overflows is drawn from its ends, so that the answer is always finite for
  ///    finite ends
  ///  - an infinite end gives some number of the range, not a uniform one
  double next(double low, double high);

 private:
  std::uint64_t state_;
};
