// The edge list: for every edge its segment and whether it has a length.  Derived classes ask for it; the
// contour's own questions take the edges from the points or from the edge index.
//
//   1. Walk the edges, the closing edge first.
//   2. An edge whose ends coincide (within 1e-15) gets a default segment and the flag false, so that
//      edge numbers stay what they are.
//   3. Any other edge gets its segment.
//
// The lists are built aside and put in place together, so that a failure leaves none half-filled.
#include <cntr/contour.h>
#include <cntr/internal/memory/probe.h>
#include <cntr/internal/outline/edge_walk.h>
#include <velstd/real_eq.h>

#include <utility>

namespace {

// Closer points coincide.
constexpr double kCoincide = 1e-15;

}  // namespace

void gxContour::computeLineSegs() const {
  gx_ContourMemory& memory = state_.memory;
  if (memory.segmentsValid) return;
  gx_countComputation(gx_Computation::eEdges);

  const std::vector<gxVector<2>>& points = state_.points;
  const bool closed = isClosed();
  const std::size_t count = gx_edgeCount(points.size(), closed);
  std::vector<gxLineSeg> segments;
  std::vector<bool> valid(count);
  segments.reserve(count);
  gx_forEachEdge(points.size(), closed, [&](std::size_t from, std::size_t to, std::size_t k) {
    if (gfRealEq(points[from], points[to], kCoincide)) {
      segments.emplace_back();
      return;
    }
    segments.emplace_back(points[from], points[to]);
    valid[k] = true;
  });

  memory.segments = std::move(segments);
  memory.validLine = std::move(valid);
  memory.segmentsValid = true;
}

const std::vector<gxLineSeg>& gxContour::lineSegs() const {
  computeLineSegs();
  return state_.memory.segments;
}

const std::vector<bool>& gxContour::validLine() const {
  computeLineSegs();
  return state_.memory.validLine;
}

const gx_EdgeIndex& gxContour::edgeIndex_() const {
  auto& index = state_.memory.edgeIndex;
  if (!index) {
    gx_countComputation(gx_Computation::eEdgeIndex);
    index.made(state_.points, isClosed());
  }
  return *index.get();
}
