/// An outline onto which many others are spliced, one after the other.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/search/crossing.h>
#include <velstd/budget.h>
#include <velstd/vector.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

/// A closed outline of finite points that grows by splicing (`gxRegion::splice`), in O(log n) and what the
/// other outline has, not in O(n).
///
/// The edges stand in a balanced tree in the order of the outline, edge 0 first, with the box of each
/// subtree.  Splicing begins the outline anew at the cut, which in the tree is a cut and a joining of
/// what stands before it behind the rest.
class GXSHAPE_API gx_SplicedOutline {
 public:
  using Points = std::vector<gxVector<2>>;

  explicit gx_SplicedOutline(const Points& outline);

  std::size_t size() const { return countOf_(root_); }
  /// Returns the box of all points.
  const gx_Box& box() const { return box_; }
  /// Returns the points in their order.
  Points points() const;

  /// Tells whether some edge is hit.
  bool isHit(const gx_CrossingQuery& query, gxBudget& budget) const;

  /// Where an edge of this outline first meets the other one, and the number of the other's edge.
  struct Meeting {
    gxVector<2> place;
    std::size_t edge;
  };
  /// Says so of the edge between two points; nothing where they do not meet.
  using Meets = std::function<std::optional<Meeting>(const gxVector<2>&, const gxVector<2>&)>;

  /// Splices the other outline in at the lowest edge that meets it, and returns true; false, with nothing
  /// changed, where no edge does.  `meets` is asked in the order of the edges, up to the first that
  /// meets, of those that have a length and whose boxes touch that of the other outline.
  bool splice(const Points& other, const Meets& meets, gxBudget& budget);

 private:
  using Index = std::uint32_t;
  static constexpr Index kNone = static_cast<Index>(-1);

  struct Node {
    gxVector<2> from;
    gxVector<2> to;
    gx_Box box;  // of the edges of the subtree that have a length: no other one can meet anything
    Index left = kNone;
    Index right = kNone;
    Index count = 1;
    std::uint32_t priority = 0;
  };
  struct Found {
    std::size_t edge;
    Meeting meeting;
  };

  Index countOf_(Index node) const { return node == kNone ? 0 : nodes_[node].count; }
  Index newEdge_(const gxVector<2>& from, const gxVector<2>& to);
  void update_(Index node);
  Index joined_(Index first, Index second);
  void cut_(Index node, Index count, Index& first, Index& second);
  bool isHitBelow_(Index node, const gx_CrossingQuery& query, gxBudget& budget) const;
  std::optional<Found> firstBelow_(Index node, std::size_t before, const gx_Box& reach,
                                   const Meets& meets, gxBudget& budget) const;
  void append_(Index node, Points& points) const;

  std::vector<Node> nodes_;
  gx_Box box_;
  Index root_ = kNone;
};
