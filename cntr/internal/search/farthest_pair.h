/// The two vertices of a contour farthest from each other.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/edge_index.h>
#include <velstd/budget.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// Two vertices, the lower index first, and their distance as the base library rounds it.
struct gx_Pair {
  std::size_t i = 0;
  std::size_t j = 0;
  double distance = 0.0;
};

/// Returns the first pair, in the order of i and then j, whose distance no other exceeds; distance
/// 0 where no two points are apart (NaN distances take no part).  A step of the budget is a pair of boxes.
GXSHAPE_API gx_Pair gx_farthestPair(const gx_EdgeIndex& index, const gx_Outline& outline,
                                    gxBudget& budget);
