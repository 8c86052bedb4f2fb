/// The walk over the edges of a contour.
#pragma once

#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// Calls `visit(start, end, k)` for every edge k in order, start and end being point indices: of a
/// closed contour the closing edge first, so that edge k ends at point k; of an open one the edges
/// (0, 1), (1, 2) ….  A closed contour of one point has one edge, from the point to itself.
template <class Visit>
void gx_forEachEdge(std::size_t points, bool closed, Visit visit) {
  if (points == 0) return;
  std::size_t previous = closed ? points - 1 : 0;
  std::size_t edge = 0;
  for (std::size_t i = closed ? 0 : 1; i < points; ++i) {
    visit(previous, i, edge);
    previous = i;
    ++edge;
  }
}

/// Returns the number of edges.
inline std::size_t gx_edgeCount(std::size_t points, bool closed) {
  if (closed) return points;
  return points == 0 ? 0 : points - 1;
}

/// Returns the point at which edge k begins.
inline std::size_t gx_edgeStart(std::size_t k, std::size_t points, bool closed) {
  if (!closed) return k;
  return k == 0 ? points - 1 : k - 1;
}

/// Returns the point at which edge k ends.
inline std::size_t gx_edgeEnd(std::size_t k, bool closed) {
  return closed ? k : k + 1;
}
