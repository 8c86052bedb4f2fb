/// Inside, on the border, outside: even-odd by a grid, exactly.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/outline/box.h>
#include <gauge/internal/edge_tree.h>
#include <velstd/vector.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Where a point lies: on an edge (then which, the first of them), or how often a ray from it crosses.
struct gx_Parity {
  bool odd = false;
  bool onEdge = false;
  std::size_t edge = 0;
};

/// A grid over edges that answers, for any point and exactly, whether it lies on one of them, and whether a
/// ray from it crosses an odd number of them.
class GXSHAPE_API gx_ParityGrid {
 public:
  gx_ParityGrid() = default;
  /// The edges are finite and of ordinary size (their squares do not overflow), and outlive the grid.
  explicit gx_ParityGrid(std::span<const gx_Edge> edges);

  gx_Parity at(const gxVector<2>& p) const;

 private:
  static constexpr std::uint32_t kOdd = 1;

  std::size_t column_(double x) const;
  std::size_t row_(double y) const;
  gxVector<2> centre_(std::size_t column, std::size_t row) const;
  void layOut_();
  template <class Visit>
  void forEachCell_(const gx_Edge& edge, const Visit& visit) const;
  void toggle_(const gx_Edge& edge);

  std::span<const gx_Edge> edges_;
  gx_Box box_;
  double perX_ = 0.0;  // cells a unit
  double perY_ = 0.0;
  double cellX_ = 0.0;
  double cellY_ = 0.0;
  double slack_ = 0.0;
  std::size_t columns_ = 0;
  std::size_t rows_ = 0;
  std::vector<std::uint32_t>
      starts_;  // where a cell's list begins, twice that, and whether its centre is odd
  std::vector<std::uint32_t> lists_;
};

/// The same by looking at all edges.
GXSHAPE_API gx_Parity gx_parityByScan(std::span<const gx_Edge> edges, const gxVector<2>& p);
