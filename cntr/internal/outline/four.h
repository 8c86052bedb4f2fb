/// Four points side by side, for loops over many.
#pragma once

#include <velstd/internal/four.h>
#include <velstd/vector.h>

#include <cstring>

/// Puts the coordinates of the points p[0], p[2], p[1], p[3], in this order, which saves moving them, into x
/// and y, seen from a point: `from` is its (x, y, x, y).
GX_FOURFOLD void gx_seeFour(const gxVector<2>* p, const gx_Four& from, gx_Four& x, gx_Four& y) {
  gx_Four first;
  gx_Four second;
  std::memcpy(&first, p, sizeof first);
  std::memcpy(&second, p + 2, sizeof second);
  first -= from;
  second -= from;
  x = __builtin_shufflevector(first, second, 0, 4, 2, 6);
  y = __builtin_shufflevector(first, second, 1, 5, 3, 7);
}
