/// Which edge follows which.
#pragma once

#include <cntr/export.h>
#include <gauge/internal/edge_tree.h>

#include <cstddef>
#include <vector>

/// Of each edge of a tree that has a length, the edges of its ring before and after it that have one; of the
/// only one itself.  Edges without a length have 0.
struct GXSHAPE_API gx_EdgeLinks {
  explicit gx_EdgeLinks(const gx_EdgeTree& tree);

  std::vector<std::size_t> before;
  std::vector<std::size_t> after;
};
