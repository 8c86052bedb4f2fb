// Vertex lookup: one grid for every tolerance asked for, made on its first query.
#include <cntr/contour.h>
#include <cntr/internal/probe.h>

#include <algorithm>
#include <limits>

namespace {

std::vector<int> verticesAtFiniteDistance(const std::vector<gxVector<2>>& points,
                                          const gxVector<2>& point) {
  std::vector<int> found;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (points[i].distance(point) < std::numeric_limits<double>::infinity()) {
      found.push_back(static_cast<int>(i));
    }
  }
  return found;
}

}  // namespace

std::vector<int> gxContour::vertexIndex(const gxVector<2>& point, double tolerance) const {
  checkEmptyContour();
  if (!(tolerance > 0.0)) return {};  // no distance is below 0, and none below NaN
  if (tolerance == std::numeric_limits<double>::infinity()) {
    return verticesAtFiniteDistance(state_.points, point);
  }
  std::vector<gx_VertexGrid>& grids = state_.memory.vertexGrids.made();
  auto grid = std::find_if(grids.begin(), grids.end(),
                           [tolerance](const gx_VertexGrid& g) { return g.tolerance() == tolerance; });
  if (grid == grids.end()) {
    gx_countComputation(gx_Computation::eVertexGrid);
    grid = grids.insert(grid, gx_VertexGrid(state_.points, tolerance));
  }
  return grid->near(state_.points, point);
}
