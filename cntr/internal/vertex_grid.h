/// Vertices by square cells, for lookup within a tolerance.
#pragma once

#include <cntr/export.h>
#include <velstd/vector.h>

#include <cstdint>
#include <vector>

/// The vertices of a contour in square cells as wide as a tolerance.  Cells are kept in the order
/// of their coordinates, x first, the vertices of a cell in index order.
class GXSHAPE_API gx_VertexGrid {
 public:
  gx_VertexGrid(const std::vector<gxVector<2>>& points, double tolerance);

  double tolerance() const { return tolerance_; }

  /// Returns the vertices nearer to `point` than the tolerance, cell by cell.
  std::vector<int> near(const std::vector<gxVector<2>>& points, const gxVector<2>& point) const;

 private:
  struct Entry {
    double x;  // the cell
    double y;
    int index;  // the vertex
  };

  double cell_(double coordinate) const;
  double cellFor_(double coordinate, double towards) const;

  double tolerance_;
  double scale_;
  std::vector<Entry> entries_;
};
