/// The planar graph that noded rings make.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/noding.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// The arcs between the nodes of all rings, and their order around each node.
///
/// Arc k begins at incidence k and runs along its ring to the next one; half-edge 2k goes along it,
/// half-edge 2k + 1 back.  Between its nodes an arc has the vertices that are no nodes, so that the graph
/// has the size of the meetings, not of the input.  Arcs that lie on each other are straight pieces
/// between the same nodes; they stay arcs of their own and form a *bundle* around both nodes.
///
/// Every ring has at least one node: its vertex that comes first by x, then y.
class GXSHAPE_API gx_Graph {
 public:
  static constexpr std::uint32_t kNone = gx_EdgeSet::kNone;

  /// A half-edge as it leaves a node.
  struct Leaving {
    gxVector<2> toward;  ///< the end of its first straight piece
    std::uint32_t half = 0;
    bool isSameWay = false;  ///< it lies on the one before it: both belong to one bundle
  };

  /// Of a noding that has run, and must outlive this object.
  explicit gx_Graph(const gx_Noding& noding);

  const gx_Noding& noding() const { return noding_; }
  const gx_EdgeSet& edges() const { return noding_.edges(); }
  std::size_t nodes() const { return nodeStarts_.size() - 1; }
  const gxVector<2>& node(std::uint32_t n) const { return noding_.nodes().at(n); }
  const std::vector<gx_Incidence>& incidences() const { return incidences_; }

  /// Return the positions of the half-edges that leave a node, counter-clockwise from straight down
  /// (excluded): those to the right first.
  std::uint32_t begin(std::uint32_t n) const { return nodeStarts_[n]; }
  std::uint32_t end(std::uint32_t n) const { return nodeStarts_[n + 1]; }
  const Leaving& leaving(std::uint32_t position) const { return leaving_[position]; }
  std::size_t positions() const { return leaving_.size(); }
  std::uint32_t positionOf(std::uint32_t half) const { return positions_[half]; }
  /// Return the first position of the bundle at a position, and the one behind its last.
  std::uint32_t bundleBegin(std::uint32_t position) const {
    while (leaving_[position].isSameWay) --position;
    return position;
  }
  std::uint32_t bundleEnd(std::uint32_t position) const {
    for (++position; position < leaving_.size() && leaving_[position].isSameWay;) ++position;
    return position;
  }

  /// Returns the node that a half-edge leaves.
  std::uint32_t nodeOf(std::uint32_t half) const { return incidences_[incidenceOf(half)].node; }
  /// Returns the incidence at which a half-edge begins.
  std::uint32_t incidenceOf(std::uint32_t half) const {
    return half % 2 == 0 ? half / 2 : arcs_[half / 2].end;
  }
  std::uint32_t ringOf(std::uint32_t half) const { return arcs_[half / 2].ring; }
  bool isArc(std::uint32_t arc) const { return arcs_[arc].end != kNone; }

  /// Calls `visit(i)` for the number of every vertex between the ends of a half-edge, in its direction.
  template <class Visit>
  void forEachVertex(std::uint32_t half, const Visit& visit) const {
    const Arc& arc = arcs_[half / 2];
    const gx_EdgeSet::Ring& ring = edges().ring(arc.ring);
    const auto at = [&](std::uint32_t i) {
      const std::uint32_t p = arc.firstVertex + i;
      return p < ring.end || !ring.closed ? p : p - ring.edges();
    };
    if (half % 2 == 0) {
      for (std::uint32_t i = 0; i < arc.vertices; ++i) visit(at(i));
    } else {
      for (std::uint32_t i = arc.vertices; i-- > 0;) visit(at(i));
    }
  }
  std::uint32_t vertices(std::uint32_t half) const { return arcs_[half / 2].vertices; }

  /// Returns for every ring the number of its component, counted from 0: rings that share nodes are of one.
  /// A ring without edges has kNone.
  const std::vector<std::uint32_t>& components() const { return components_; }
  /// Returns the node of each component that comes first by x, then y.
  const std::vector<std::uint32_t>& roots() const { return roots_; }

 private:
  struct Arc {
    std::uint32_t end = kNone;  // its last incidence; kNone behind the end of an open chain
    std::uint32_t ring = 0;
    std::uint32_t firstVertex = 0;
    std::uint32_t vertices = 0;
  };

  void makeArcs_();
  void addArc_(std::uint32_t from, std::uint32_t to, std::uint32_t ring);
  gxVector<2> toward_(std::uint32_t half) const;
  void orderAroundNodes_();
  void order_(std::uint32_t n);
  void findComponents_();

  const gx_Noding& noding_;
  const std::vector<gx_Incidence>& incidences_;
  std::vector<Arc> arcs_;
  std::vector<std::uint32_t> nodeStarts_;
  std::vector<Leaving> leaving_;
  std::vector<std::uint32_t> positions_;
  std::vector<std::uint32_t> components_;
  std::vector<std::uint32_t> roots_;
};
