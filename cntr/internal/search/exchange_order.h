/// The order that the exchange sort of crossing points leaves.
#pragma once

#include <cntr/export.h>

#include <cstddef>
#include <vector>

/// Returns the positions of the keys in the order in which this exchange sort leaves them:
///
///   for i = 0 …, for j = i + 1 …: exchange i and j when key(i) is greater than key(j)
///
/// with NaN greater than every number and equal to itself.  The sort is not stable, and its order
/// of equal keys is part of the answer; this gives the same order in O(h log h) for distinct keys
/// and at most O(h^1.5) with equal ones, where the sort itself is O(h²).
GXSHAPE_API std::vector<std::size_t> gx_exchangeOrder(const std::vector<double>& keys);
