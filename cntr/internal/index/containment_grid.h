/// Point in polygon by a grid of cells.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/edge_index.h>
#include <velstd/vector.h>

#include <cstdint>
#include <vector>

/// A grid over an outline that tells of most points at once whether a ray from them crosses the
/// outline an odd number of times, with the answer of the counted ray (see containment_grid.cpp for
/// the proof), and says of the others that it cannot tell.
class GXSHAPE_API gx_ContainmentGrid {
 public:
  enum class Answer : std::uint8_t { eOutside, eInside, eUnsure };

  /// Builds the grid over the points of a closed outline; `reach` is the radius of the circle around
  /// the first point that holds all others.  An outline that the proof does not cover makes a grid
  /// without cells, which is unsure of every point.
  gx_ContainmentGrid(const std::vector<gxVector<2>>& points, const gx_EdgeIndex& index, double reach);

  /// Tells on which side of the outline a point lies, which may be anything.
  Answer locate(const std::vector<gxVector<2>>& points, const gxVector<2>& point) const;

 private:
  static constexpr std::uint32_t kParity = 1;  // in a cell's word: its centre is inside
  static constexpr std::uint32_t kOnEdge = 2;  // its centre lies on an edge and is of no use
  static constexpr std::uint32_t kShift = 2;   // above them: where the cell's edges begin

  template <class Visit>
  void forEachCell_(const gxVector<2>& a, const gxVector<2>& b, const Visit& visit) const;
  bool layOut_(const std::vector<gxVector<2>>& points, const gx_Box& bounds, double cells,
               std::vector<std::uint32_t>& homes);
  void markCrossing_(const gxVector<2>& a, const gxVector<2>& b, std::uint32_t row);
  void markCrossings_(const gxVector<2>& a, const gxVector<2>& b);
  void markOn_(const gxVector<2>& a, const gxVector<2>& b, std::uint32_t cell,
               const gxVector<2>& centre);
  void sumUp_();
  void fill_(const std::vector<gxVector<2>>& points, const std::vector<std::uint32_t>& homes);
  std::uint32_t column_(double x) const;
  std::uint32_t row_(double y) const;
  gxVector<2> centre_(std::uint32_t column, std::uint32_t row) const;
  bool nearOutline_(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& point) const;

  gx_Box bounds_;
  gxVector<2> first_;
  double surelyReached_ = 0.0;  // squares of distances from the first point
  double surelyBeyond_ = 0.0;
  double nearVertex_ = 0.0;  // square of the distance below which a vertex disturbs the ray
  double margin_ = 0.0;
  double lowX_ = 0.0;
  double lowY_ = 0.0;
  double cellX_ = 0.0;
  double cellY_ = 0.0;
  double perX_ = 0.0;
  double perY_ = 0.0;
  std::uint32_t columns_ = 0;
  std::uint32_t rows_ = 0;
  std::vector<std::uint32_t> cells_;
  std::vector<std::uint32_t> edges_;
};
