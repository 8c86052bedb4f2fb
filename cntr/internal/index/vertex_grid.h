/// Vertices by square cells, for lookup within a tolerance.
#pragma once

#include <cntr/export.h>
#include <velstd/vector.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// The vertices of a contour in square cells as wide as a tolerance.  Cells are kept in the order
/// of their coordinates, x first, the vertices of a cell in index order.
class GXSHAPE_API gx_VertexGrid {
 public:
  gx_VertexGrid(const std::vector<gxVector<2>>& points, double tolerance);

  /// Returns the vertices nearer to `point` than the tolerance, cell by cell.
  std::vector<int> near(const std::vector<gxVector<2>>& points, const gxVector<2>& point) const;

  /// Returns what a grid of that tolerance, above 0 and finite, answers, in the same order, by looking
  /// at every vertex.
  static std::vector<int> scan(const std::vector<gxVector<2>>& points, double tolerance,
                               const gxVector<2>& point);

 private:
  struct Entry {
    double x;  // the cell
    double y;
    int index;  // the vertex
  };

  struct Cells {
    double first;
    double last;
  };

  static bool comesBefore_(const Entry& a, const Entry& b);
  static void sortByCells_(const std::vector<gxVector<2>>& points, double scale,
                           std::vector<int>& found);

  double cell_(double coordinate) const;
  Cells around_(double coordinate) const;
  std::size_t group_(double column) const;
  const Entry* firstFrom_(double column, double row) const;

  double tolerance_;
  double scale_;
  std::vector<Entry> entries_;

  // Columns in groups, about one an entry: where each group begins in `entries_`.
  double firstColumn_ = 0.0;
  double groupsPerColumn_ = 0.0;
  std::vector<std::uint32_t> groups_;
};
