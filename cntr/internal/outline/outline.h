/// An outline as everything below the classes sees it.
#pragma once

#include <cntr/internal/outline/edge_walk.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// Points that somebody else holds, and whether an edge joins the last to the first.  Edges are numbered
/// as `gxContour` numbers them (see `edge_walk.h`): of a closed outline the closing edge is number 0.
struct gx_Outline {
  const std::vector<gxVector<2>>& points;
  bool closed = true;

  std::size_t edges() const { return gx_edgeCount(points.size(), closed); }

  /// Return the numbers of the points between which edge k runs.
  std::size_t start(std::size_t k) const { return gx_edgeStart(k, points.size(), closed); }
  std::size_t end(std::size_t k) const { return gx_edgeEnd(k, closed); }

  /// Return these points.
  const gxVector<2>& from(std::size_t k) const { return points[start(k)]; }
  const gxVector<2>& to(std::size_t k) const { return points[end(k)]; }

  /// Calls `visit(start, end, k)` for every edge k in order.
  template <class Visit>
  void forEachEdge(const Visit& visit) const {
    gx_forEachEdge(points.size(), closed, visit);
  }
};
