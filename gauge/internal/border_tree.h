/// The borders of a shape, all rings together, with a tree over the edges of each.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/box_tree.h>
#include <cntr/internal/index/edge_index.h>
#include <gauge/borders.h>
#include <gauge/internal/frame.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <span>
#include <vector>

using gx_Rings = std::vector<gxBorders::Ring>;

/// What can be said of the rings before anything is computed: empty, not finite, or ok.
GXSHAPE_API gxStatus gx_statusOf(const gx_Rings& rings);

/// Returns the box of all points.
GXSHAPE_API gx_Box gx_boxOf(const gx_Rings& rings);

/// A segment in a frame.
struct gx_Piece {
  gxVector<2> a;
  gxVector<2> b;

  gxVector<2> at(double t) const { return t == 1.0 ? b : a + (b - a) * t; }

  /// Returns the square of the distance of the point.  Above the inside of the segment it is that from
  /// the line, by a cross product, which keeps its digits however near the point is.
  double squareFrom(const gxVector<2>& p) const {
    const gxVector<2> along = b - a;
    const gxVector<2> v = p - a;
    const double dot = v * along;
    if (!(dot > 0.0)) return v * v;
    const double whole = along * along;
    if (dot >= whole) return (p - b) * (p - b);
    const double cross = gf_Cross(along, v);
    return cross * cross / whole;
  }

  /// Returns how far along the segment the nearest point lies, in [0, 1].
  double footFrom(const gxVector<2>& p) const {
    const gxVector<2> along = b - a;
    const double dot = (p - a) * along;
    if (!(dot > 0.0)) return 0.0;
    const double whole = along * along;
    return dot >= whole ? 1.0 : dot / whole;
  }
};

/// The edges of all rings of a shape in a frame, numbered through in the order of the walk: ring by
/// ring, each ring's edges as a contour counts them.  A ring of one point is one edge of no length.
class GXSHAPE_API gx_BorderTree {
 public:
  static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

  gx_BorderTree(const gx_Rings& rings, const gx_Frame& frame);

  std::size_t edges() const { return pieces_.size(); }
  const gx_Piece& piece(std::size_t edge) const { return pieces_[edge]; }

  /// Returns the place at t on an edge, mapped back by the frame; at the ends of an edge the very point
  /// of the shape.
  gxPlace placeOf(std::size_t edge, double t) const;
  /// Returns the index of the ring in which the edge lies; rings without points have none.
  std::size_t ringOf(std::size_t edge) const;
  std::size_t rings() const { return trees_.size(); }
  bool isClosed(std::size_t ring) const { return trees_[ring].closed; }
  std::size_t firstEdge(std::size_t ring) const { return trees_[ring].first; }
  std::size_t endEdge(std::size_t ring) const {
    return ring + 1 < trees_.size() ? trees_[ring + 1].first : pieces_.size();
  }

  /// Returns the edge nearest to the point, the lowest on ties.  `guess` is an edge that may be near.
  std::size_t nearest(const gxVector<2>& point, std::size_t guess = 0) const;
  double squareFrom(std::size_t edge, const gxVector<2>& point) const {
    return pieces_[edge].squareFrom(point);
  }

  /// Calls `visit(edge)` for every edge whose run of 8 comes within `reach` of the point, and for
  /// others, in the order of the walk.
  template <class Visit>
  void forEachWithin(const gxVector<2>& point, double reach, const Visit& visit) const {
    for (const Tree& tree : trees_) {
      const double square = reach * reach;
      tree.index->forEachRun([&](const gx_Box& box) { return box.squareFrom(point) <= square; },
                             [&](std::size_t first, std::size_t end) {
                               for (std::size_t k = first; k < end; ++k) visit(tree.first + k);
                               return false;
                             });
    }
  }

  /// Tells whether the point lies inside by the even-odd rule over all closed rings, by exact signs on
  /// half-open edges.  A point on the border is inside or outside, as the half-open edges fall.
  bool holds(const gxVector<2>& point) const;

 private:
  struct Tree {
    long ring = -1;
    bool closed = true;
    std::size_t first = 0;                // number of its edge 0
    std::span<const gxVector<2>> source;  // the points as they came
    std::vector<gxVector<2>> points;      // in the frame
    std::unique_ptr<gx_EdgeIndex> index;
  };
  void nearestOf_(const Tree& tree, const gxVector<2>& point, std::size_t& best, double& square) const;

  gx_Frame frame_;
  std::vector<Tree> trees_;
  std::vector<gx_Piece> pieces_;
  std::unique_ptr<gx_BoxTree> boxes_;  // of the rings, where there are many
};
