/// The places where the edges of rings meet.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/edge_set.h>
#include <overlay/internal/node_table.h>
#include <overlay/internal/steps.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// A node on the way of a ring.
struct gx_Incidence {
  std::uint32_t place = 0;  ///< 2 i at point i, 2 e + 1 inside of edge e
  std::uint32_t node = 0;
  std::uint32_t round = 0;  ///< where the edge was bent to pass the node: in which round; else 0

  bool isVertex() const { return place % 2 == 0; }
};

/// Finds the nodes of rings and chains: all places where edges meet, each crossing rounded to doubles.  An
/// edge with nodes inside becomes a chain of straight pieces, bent by the rounding; the ends of open
/// chains are nodes always.  After `run` has returned true, no two pieces have anything in common but
/// ends that are nodes, and pieces that are equal; and of every ring and chain the vertex that comes first by
/// x, then y, is a node too.
class GXSHAPE_API gx_Noding {
 public:
  /// Rounds that may insert nodes.  Of 17,890 random cases on lattices none that did not creep needed
  /// more.
  static constexpr std::uint32_t kMostRounds = 4;

  /// Of edges and steps that must outlive this object.
  gx_Noding(const gx_EdgeSet& edges, gx_Steps& steps);

  /// Finds all nodes.  Returns false where after `kMostRounds` rounds there are still meetings; `unsettled`
  /// then names the rings that have them.
  bool run();

  /// Returns the rounds that inserted something, and the one that found nothing.
  std::uint32_t rounds() const { return round_; }
  const std::vector<std::uint32_t>& unsettled() const { return unsettled_; }
  const gx_EdgeSet& edges() const { return edges_; }
  const gx_NodeTable& nodes() const { return nodes_; }
  /// Returns the nodes of all rings, in the order of the rings and along each.
  const std::vector<gx_Incidence>& incidences() const { return incidences_; }
  /// Tells whether there are nodes inside of the edge.
  bool isSplit(std::uint32_t edge) const { return (flags_[edge] & eSplit) != 0; }

  /// Calls `visit(from, to)` for every straight piece of an edge, in its direction.
  template <class Visit>
  void forEachPiece(std::uint32_t edge, const Visit& visit) const {
    const gxVector<2>* from = &edges_.from(edge);
    if (isSplit(edge)) {
      for (std::size_t i = firstInside_(edge);
           i < incidences_.size() && incidences_[i].place == 2 * edge + 1; ++i) {
        visit(*from, nodes_.at(incidences_[i].node));
        from = &nodes_.at(incidences_[i].node);
      }
    }
    visit(*from, edges_.to(edge));
  }

 private:
  enum Flag : unsigned char { eSplit = 1, eNode = 2, eClosing = 4, eBent = 8 };
  // An end of a piece: a node, or a vertex that is none yet.
  // The end of a piece.  Vertex and mark are one number, because ends are copied a moment after they are made, and a copy
  // of 8 bytes waits for two smaller stores.
  struct End {
    End(const gxVector<2>& place, std::uint32_t number, bool isMarked)
        : at(place), tag((static_cast<std::uint64_t>(isMarked) << 32U) | number) {}

    std::uint32_t vertex() const {
      return static_cast<std::uint32_t>(tag);
    }  // kNone at a node inside of an edge
    bool isNode() const { return (tag >> 32U) != 0; }

    gxVector<2> at;
    std::uint64_t tag;
  };
  struct Near {
    std::uint32_t edge;
    std::uint32_t other;
  };
  struct Piece {
    End from;
    End to;
    std::uint32_t edge;
    std::uint32_t isBent;  // 1 where it ends at a crossing of the last round
  };

  void markChainEnds_();
  void markFirsts_();
  void firstRound_();
  void fold_(std::uint32_t edge, std::uint32_t next);
  void pair_(std::uint32_t i, std::uint32_t j);
  void noteNear_(std::uint32_t i, std::uint32_t j);
  void equalEnds_(std::uint32_t i, std::uint32_t own, std::uint32_t far, std::uint32_t j,
                  std::uint32_t other, std::uint32_t otherFar);
  void laterRound_();
  void findBentEdges_();
  void bentJoints_(std::uint32_t edge);
  void bentPair_(std::uint32_t edge, std::uint32_t other);
  void piecePair_(const Piece& s, const Piece& t);
  void sharedEnd_(const Piece& s, const End& own, const End& far, const Piece& t, const End& other,
                  const End& otherFar);
  bool insert_();
  void noteInsides_();

  std::uint32_t vertexOf_(std::uint32_t point) const;
  void mark_(std::uint32_t point, std::uint32_t node);
  void markPoint_(std::uint32_t point);
  void onEdge_(std::uint32_t edge, const gxVector<2>& p, bool bends);
  void touch_(std::uint32_t edge, std::uint32_t point);
  void onPiece_(const Piece& piece, const gxVector<2>& p, bool bends);
  void ensureNode_(const End& end);
  void endOn_(const End& end, const Piece& piece);
  std::size_t firstInside_(std::uint32_t edge) const { return inside_[edge]; }
  void piecesOf_(std::uint32_t edge, const gx_Box& within, std::vector<Piece>& pieces) const;
  // The order of the rings, and along each edge by x, then y, in its direction.
  bool before_(const gx_Incidence& a, const gx_Incidence& b) const {
    if (a.place != b.place) return a.place < b.place;
    if (a.node == b.node) return a.round > b.round;
    const gxVector<2>& from = edges_.from(a.place / 2);
    const gxVector<2>& to = edges_.to(a.place / 2);
    const gxVector<2>& p = nodes_.at(a.node);
    const gxVector<2>& q = nodes_.at(b.node);
    if (p.x() != q.x()) return (p.x() < q.x()) == (from.x() < to.x());
    return (p.y() < q.y()) == (from.y() < to.y());
  }

  const gx_EdgeSet& edges_;
  gx_Steps& steps_;
  gx_NodeTable nodes_;
  std::vector<unsigned char> flags_;  // of every point and the edge behind it
  std::vector<gx_Incidence> incidences_;
  std::vector<gx_Incidence> added_;    // in this round, in no order
  std::vector<std::uint32_t> inside_;  // of split edges: their first incidence inside; empty without any
  std::vector<std::uint32_t> bent_;    // edges that were bent in the last round
  std::vector<std::uint32_t> unsettled_;
  double far_;              // more than two edges can come nearer to each other
  std::vector<Near> near_;  // pairs that are nearer, where they are known
  bool knowsNear_ = true;
  std::vector<Piece> pieces_;
  std::vector<Piece> others_;
  std::uint32_t round_ = 0;
};
