/// Crossings of edges with a segment, with another contour, with each other.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/edge_index.h>
#include <velstd/budget.h>
#include <velstd/line_seg.h>
#include <velstd/rect.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// Where an edge meets a segment, and the number of the edge.
struct gx_Hit {
  gxVector<2> point;
  int edge;
};

/// A segment that edges are tested against, with what every test needs of it.
class GXSHAPE_API gx_CrossingQuery {
 public:
  gx_CrossingQuery(const gxVector<2>& from, const gxVector<2>& to, bool countEndContacts);
  gx_CrossingQuery(const gxLineSeg& seg, bool countEndContacts)
      : gx_CrossingQuery(seg.p1(), seg.p2(), countEndContacts) {}

  const gxVector<2>& from() const { return from_; }
  const gxVector<2>& to() const { return to_; }
  const gx_Box& box() const { return bounds_; }

  /// Tells whether the rectangle and the box of the segment share a point.
  bool reaches(const gxRect& rect) const {
    return rect.corner().x() >= bounds_.lowX && bounds_.highX >= rect.origin().x() &&
           rect.corner().y() >= bounds_.lowY && bounds_.highY >= rect.origin().y();
  }

  /// Tests the edge between two points, its length and its box included; appends a hit.
  void test(const gxVector<2>& from, const gxVector<2>& to, std::size_t number,
            std::vector<gx_Hit>& hits) const;

  /// Tests an edge of some length whose box touches the segment's; gives the place of a hit.
  bool hits(const gxVector<2>& from, const gxVector<2>& to, gxVector<2>& place) const;

  /// Tells whether an edge in the box can be hit: false only for certain.  A hit lies within the
  /// tolerance of the edge and of the segment, so a box farther from the segment's line than that,
  /// and a slack far above rounding, holds none.
  bool mayMeet(const gx_Box& box) const;

  /// Returns on which side of the segment's line the point lies, as a cross product with the line's
  /// direction.
  double side(const gxVector<2>& point) const { return gf_Cross(direction_, point - from_); }
  /// Returns the bound from which sides of points in the box are certain: an edge with both ends
  /// beyond it on the same side has no hit, for the reasons of `mayMeet`.
  double sideSlack(const gx_Box& bounds) const;

 private:
  gxVector<2> from_;
  gxVector<2> to_;
  gxVector<2> direction_;  // that of the segment's line
  gx_Box bounds_;
  bool countEndContacts_;
};

/// Appends the hits of the edges of an indexed outline, in edge order.
GXSHAPE_API void gx_findHits(const gx_EdgeIndex& index, const gx_Outline& outline,
                             const gx_CrossingQuery& query, std::vector<gx_Hit>& hits, gxBudget& budget);

/// Appends the same without an index, the points of the outline lying in the box.
GXSHAPE_API void gx_findHits(const gxRect& box, const gx_Outline& outline, const gx_CrossingQuery& query,
                             std::vector<gx_Hit>& hits);

/// Appends the points of the hits in the order along the segment from `from` to `to` to `points`, their
/// edges to `edges` where that is not null.
GXSHAPE_API void gx_appendAlong(const gxVector<2>& from, const gxVector<2>& to,
                                const std::vector<gx_Hit>& hits, std::vector<gxVector<2>>& points,
                                std::vector<int>* edges);
/// Returns the points in that order, and appends their edges.
inline std::vector<gxVector<2>> gx_inOrderAlong(const gxLineSeg& seg, const std::vector<gx_Hit>& hits,
                                                std::vector<int>& edges) {
  std::vector<gxVector<2>> points;
  if (!hits.empty()) gx_appendAlong(seg.p1(), seg.p2(), hits, points, &edges);
  return points;
}

/// Appends the hits of every edge of `theirs` with the edges of `ours`, edge by edge of `theirs`,
/// along each; edges of theirs whose box does not touch `box` have none.
GXSHAPE_API void gx_findCrossings(const gx_EdgeIndex& index, const gx_Outline& ours, const gxRect& box,
                                  const gx_EdgeIndex& theirIndex, const gx_Outline& theirs,
                                  std::vector<gxVector<2>>& result, gxBudget& budget);
/// Tells whether there is such a hit: the same walk, which ends at the first.
GXSHAPE_API bool gx_meet(const gx_EdgeIndex& index, const gx_Outline& ours, const gxRect& box,
                         const gx_EdgeIndex& theirIndex, const gx_Outline& theirs, gxBudget& budget);

/// Appends the same for outlines of at most `gx_kFewEdges` edges, without their indexes.
GXSHAPE_API void gx_findCrossingsOfFew(const gx_Outline& ours, const gxRect& box,
                                       const gx_Outline& theirs, std::vector<gxVector<2>>& result);
/// Tells whether there is such a hit, up to the first.
GXSHAPE_API bool gx_fewMeet(const gx_Outline& ours, const gxRect& box, const gx_Outline& theirs);

/// Tells whether some edge has a length.
GXSHAPE_API bool gx_hasEdgeOfLength(const gx_Outline& outline);

/// Tells whether some edge, its ends excepted, is hit by another; edges whose box does not touch
/// `box` are not asked.
GXSHAPE_API bool gx_crossesItself(const gx_EdgeIndex& index, const gx_Outline& outline,
                                  const gxRect& box, gxBudget& budget);

/// Tells the same of at most `gx_kFewEdges` edges for which there is no index.
GXSHAPE_API bool gx_fewCrossThemselves(const gx_Outline& outline, const gxRect& box);
