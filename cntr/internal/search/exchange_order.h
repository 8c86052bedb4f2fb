/// The order that the exchange sort of crossing points leaves.
#pragma once

#include <cntr/export.h>

#include <cmath>
#include <cstddef>
#include <vector>

/// Tells whether the first of two keys is the greater: NaN is greater than every number and equal to itself.
inline bool gx_exchanged(double first, double second) {
  if (std::isnan(second)) return false;
  return std::isnan(first) || first > second;
}

/// Returns the positions of the keys in the order in which this exchange sort leaves them:
///
///   for i = 0 …, for j = i + 1 …: exchange i and j when gx_exchanged(key(i), key(j))
///
/// The sort is not stable, and its order
/// of equal keys is part of the answer; this gives the same order in O(h log h) for distinct keys
/// and at most O(h^1.5) with equal ones, where the sort itself is O(h²).
GXSHAPE_API std::vector<std::size_t> gx_exchangeOrder(const std::vector<double>& keys);
