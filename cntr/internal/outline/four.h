/// Four points side by side, for loops over many.
#pragma once

#include <velstd/vector.h>

#include <cstring>

/// Four doubles that are computed with together.  Each component has the bits that it would have alone,
/// whatever registers the machine has: compilers make two of them where four do not fit into one.
using gx_FourDoubles = double __attribute__((vector_size(32)));

/// Marks code that is compiled for the machine of its caller.  Fours are handed on by reference: by value,
/// they would be handed on in different ways on different machines.
#define GX_FOUR_AT_ONCE __attribute__((always_inline)) inline

/// Puts the coordinates of the points p[0], p[2], p[1], p[3], in this order, which saves moving them, into x
/// and y, seen from a point: `from` is its (x, y, x, y).
GX_FOUR_AT_ONCE void gx_seeFour(const gxVector<2>* p, const gx_FourDoubles& from, gx_FourDoubles& x,
                                gx_FourDoubles& y) {
  gx_FourDoubles first;
  gx_FourDoubles second;
  std::memcpy(&first, p, sizeof first);
  std::memcpy(&second, p + 2, sizeof second);
  first -= from;
  second -= from;
  x = __builtin_shufflevector(first, second, 0, 4, 2, 6);
  y = __builtin_shufflevector(first, second, 1, 5, 3, 7);
}

/// Adds up the components, always in the same order.
GX_FOUR_AT_ONCE double gx_totalOfFour(const gx_FourDoubles& v) {
  return (v[0] + v[2]) + (v[1] + v[3]);
}
