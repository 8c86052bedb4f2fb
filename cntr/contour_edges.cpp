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
#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/memory/computation_count.h>
#include <cntr/internal/outline/tolerances.h>
#include <velstd/real_eq.h>

#include <utility>

namespace {

gx_EdgeList edgesOf(const gx_Outline& outline) {
  const std::vector<gxVector<2>>& points = outline.points;
  const std::size_t count = outline.edges();
  gx_EdgeList edges;
  edges.segments.reserve(count);
  edges.valid.resize(count);
  outline.forEachEdge([&](std::size_t from, std::size_t to, std::size_t k) {
    const bool hasLength = !gfRealEq(points[from], points[to], gx_kCoincide);
    edges.segments.push_back(hasLength ? gxLineSeg(points[from], points[to]) : gxLineSeg());
    edges.valid[k] = hasLength;
  });
  return edges;
}

}  // namespace

void gxContour::computeLineSegs() const {
  lineSegs();
}

const std::vector<gxLineSeg>& gxContour::lineSegs() const {
  return edgeList_().segments;
}

const std::vector<bool>& gxContour::validLine() const {
  return edgeList_().valid;
}

const gx_EdgeList& gxContour::edgeList_() const {
  return state_.memory.seldom.made().edges.made([this] {
    gx_countComputation(gx_Computation::eEdges);
    return edgesOf(outline_());
  });
}

const gx_EdgeIndex& gxContour::edgeIndex_() const {
  return state_.memory.edgeIndex.made([this] {
    gx_countComputation(gx_Computation::eEdgeIndex);
    return gx_EdgeIndex(outline_());
  });
}

const gx_EdgeIndex* gxContour::edgeIndexIfMade_() const {
  return state_.memory.edgeIndex.get();
}
