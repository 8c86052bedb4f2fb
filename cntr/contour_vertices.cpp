// Vertex lookup.
//
//   1. The first questions with a tolerance look at every vertex.
//   2. When they have cost about as much as a grid of cells does (internal/index/vertex_grid), it is made, one
//      for a tolerance, and answers from then on, with the same vertices in the same order.
//   3. At most `cachedVectorSize` + 1 tolerances are known, as of the answers remembered by argument; a new
//      one takes the place of the one that was asked for the longest ago.  (Not of one drawn at random,
//      as there: the draws of one memory would change which entries the others give up.)
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

// Returns what is known of the tolerance, last in the list, which is in the order of use.
gx_VertexLookup& lastUsed(std::vector<gx_VertexLookup>& lookups, double tolerance, long limit) {
  const auto known = std::find_if(lookups.rbegin(), lookups.rend(), [tolerance](const auto& lookup) {
    return lookup.tolerance == tolerance;
  });
  if (known != lookups.rend()) {
    std::rotate(known.base() - 1, known.base(), lookups.end());
  } else if (static_cast<long>(lookups.size()) <= limit) {
    lookups.push_back({tolerance, 0, {}});
  } else {
    std::rotate(lookups.begin(), lookups.begin() + 1, lookups.end());
    lookups.back() = {tolerance, 0, {}};
  }
  return lookups.back();
}

}  // namespace

std::vector<int> gxContour::vertexIndex(const gxVector<2>& point, double tolerance) const {
  checkEmptyContour();
  if (!(tolerance > 0.0)) return {};  // no distance is below 0, and none below NaN
  if (tolerance == std::numeric_limits<double>::infinity()) {
    return verticesAtFiniteDistance(state_.points, point);
  }
  gx_VertexLookup& lookup = lastUsed(state_.memory.vertexLookups, tolerance, state_.cachedVectorSize);
  if (!lookup.grid && lookup.questions < kPlainQuestions) {
    ++lookup.questions;
    return gx_VertexGrid::scan(state_.points, tolerance, point);
  }
  if (!lookup.grid) {
    gx_countComputation(gx_Computation::eVertexGrid);
    lookup.grid.made(state_.points, tolerance);
  }
  return lookup.grid.get()->near(state_.points, point);
}
