/// What an edge adds to the sums of a ring: for one ring, or for four rings side by side, with the same bits.
#pragma once

#include <cntr/internal/outline/four.h>
#include <cstddef>

/// So many edges are added plainly, and these sums then to the whole.
constexpr std::size_t gx_kMomentBlock = 32;
constexpr std::size_t gx_kLengthBlock = 64;

/// A corner of a ring, or the corners of four.
template <class Number>
struct gx_Corner {
  Number x;
  Number y;
};

/// A sum that keeps what rounding takes away (D. Knuth's exact sum of two).
template <class Number>
struct gx_KeptSum {
  Number high = {};
  Number low = {};

  GX_FOURFOLD void add(const Number& term) {
    const Number sum = high + term;
    const Number part = sum - high;
    low += (high - (sum - part)) + (term - part);
    high = sum;
  }
};

/// Adds the terms of an edge from a to b, seen from the ring's first corner, to the sums of m00, m10, m01,
/// m20, m11, m02, each times 2, 6, 6, 24, 24, 24.  An edge from a corner to itself adds nothing.
template <class Number>
GX_FOURFOLD void gx_addToMoments(const gx_Corner<Number>& a, const gx_Corner<Number>& b, Number* sums) {
  const Number w = a.x * b.y - b.x * a.y;
  const Number x = a.x + b.x;
  const Number y = a.y + b.y;
  sums[0] += w;
  sums[1] += w * x;
  sums[2] += w * y;
  sums[3] += w * (x * x + (a.x * a.x + b.x * b.x));
  sums[4] += w * (x * y + (a.x * a.y + b.x * b.y));
  sums[5] += w * (y * y + (a.y * a.y + b.y * b.y));
}
