// The edge list: for every edge its segment, its infinite line, its bounding box and whether it has
// a length.
//
//   1. Walk the edges, the closing edge first.
//   2. An edge whose ends coincide (within 1e-15) gets default entries and the flag false, so that
//      edge numbers stay what they are.
//   3. Any other edge gets its segment, the line through it, and the box around its two ends.
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

gxRect pointRect(const gxVector<2>& p) {
  return {p, gxVector<2>(0.0, 0.0)};
}

}  // namespace

void gxContour::computeLineSegs() const {
  gx_ContourMemory& memory = state_.memory;
  if (memory.segmentsValid && memory.linesValid && memory.segmentBoundsValid) return;
  gx_countComputation(gx_Computation::eEdges);

  const std::vector<gxVector<2>>& points = state_.points;
  const bool closed = isClosed();
  const std::size_t count = gx_edgeCount(points.size(), closed);
  std::vector<gxLineSeg> segments;
  std::vector<gxLine> lines;
  std::vector<gxRect> bounds;
  std::vector<bool> valid(count);
  segments.reserve(count);
  lines.reserve(count);
  bounds.reserve(count);
  gx_forEachEdge(points.size(), closed, [&](std::size_t from, std::size_t to, std::size_t k) {
    if (gfRealEq(points[from], points[to], kCoincide)) {
      segments.emplace_back();
      lines.emplace_back();
      bounds.emplace_back();
      return;
    }
    segments.emplace_back(points[from], points[to]);
    lines.push_back(segments.back().line());
    bounds.push_back(pointRect(points[from]).enclose(pointRect(points[to])));
    valid[k] = true;
  });

  memory.segments = std::move(segments);
  memory.lines = std::move(lines);
  memory.segmentBounds = std::move(bounds);
  memory.validLine = std::move(valid);
  memory.segmentsValid = memory.linesValid = memory.segmentBoundsValid = true;
}

const std::vector<gxLineSeg>& gxContour::lineSegs() const {
  if (!state_.memory.segmentsValid) computeLineSegs();
  return state_.memory.segments;
}

const std::vector<bool>& gxContour::validLine() const {
  if (!state_.memory.segmentsValid) computeLineSegs();
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
