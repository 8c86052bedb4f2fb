// Vertex lookup.
//
//   1. The first questions with a tolerance look at every vertex.
//   2. When they have cost about as much as a grid of cells does (internal/index/vertex_grid), it is made, one
//      for every tolerance, and answers from then on, with the same vertices in the same order.
#include <cntr/contour.h>
#include <cntr/internal/memory/probe.h>

#include <algorithm>
#include <limits>

namespace {

// So many questions are answered without a grid: a grid costs 11 to 25 ns a vertex, and far more where
// one vertex lies far from all others; looking at it, one.
constexpr unsigned kPlainQuestions = 16;

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
  std::vector<gx_VertexLookup>& lookups = state_.memory.vertexLookups;
  auto lookup = std::find_if(lookups.begin(), lookups.end(),
                             [tolerance](const gx_VertexLookup& l) { return l.tolerance == tolerance; });
  if (lookup == lookups.end()) lookup = lookups.insert(lookup, {tolerance, 0, {}});
  if (!lookup->grid && lookup->questions < kPlainQuestions) {
    ++lookup->questions;
    return gx_VertexGrid::scan(state_.points, tolerance, point);
  }
  if (!lookup->grid) {
    gx_countComputation(gx_Computation::eVertexGrid);
    lookup->grid.made(state_.points, tolerance);
  }
  return lookup->grid.get()->near(state_.points, point);
}
