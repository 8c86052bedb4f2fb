// Vertex lookup.
//
//   1. Of few vertices, and at the first questions with a tolerance, every vertex is looked at.
//   2. When they have cost about as much as a grid of cells does (internal/index/vertex_grid), it is made, one
//      for a tolerance, and answers from then on, with the same vertices in the same order.
//   3. At most `cachedVectorSize` + 1 tolerances are known, as of the answers remembered by argument; a new
//      one takes the place of the one that was asked for the longest ago.  (Not of one drawn at random,
//      as there: the draws of one memory would change which entries the others give up.)
#include <cntr/contour.h>
#include <cntr/internal/index/vertex_grid.h>
#include <cntr/internal/memory/computation_count.h>
#include <cntr/internal/outline/break_even.h>

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
  if (state_.points.size() <= gx_kFewToLookUp)
    return gx_VertexGrid::scan(state_.points, tolerance, point);
  const auto lookup = state_.memory.seldom.made().vertexLookups.used(tolerance, state_.cachedVectorSize);
  const gx_VertexGrid* grid = lookup->grid.get();
  if (grid == nullptr && lookup->questions.spent() < gx_kPlainLookups) {
    lookup->questions.add(1);
    return gx_VertexGrid::scan(state_.points, tolerance, point);
  }
  if (grid == nullptr) {
    grid = lookup->grid.madeUnlessBusy([&] {
      gx_countComputation(gx_Computation::eVertexGrid);
      return gx_VertexGrid(state_.points, tolerance);
    });
  }
  if (grid == nullptr) return gx_VertexGrid::scan(state_.points, tolerance, point);
  return grid->near(state_.points, point);
}
