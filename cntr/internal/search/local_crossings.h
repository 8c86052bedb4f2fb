/// Crossings of an outline with short segments along it.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/edge_index.h>
#include <velstd/budget.h>
#include <velstd/line_seg.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// Answers what `gxContour::intersections` answers about one segment after the other, contacts at
/// their ends left out, where each lies along an edge of the outline and the next one nearly always
/// along the same edge or a neighbour.
///
/// The edges near a run of 8 edges are looked up once and serve every segment along that run, so that
/// a walk around the outline looks them up once in 8 steps.
class GXSHAPE_API gx_LocalCrossings {
 public:
  using Points = std::vector<gxVector<2>>;

  /// Tells whether the outline is one that this class answers for: finite, coordinates up to 5e5.
  static bool covers(const gx_EdgeIndex& index);

  /// Of a closed outline that is covered, and whose upright rectangle, as it is asked for first, is
  /// the true box of its points.
  gx_LocalCrossings(const gx_EdgeIndex& index, const gx_Outline& outline, gxBudget& budget);

  /// Returns the crossings in the order along the segment, and the edges crossed.  Any segment with an
  /// end on a vertex is answered rightly, one that lies along edge `along` fast.
  Points operator()(const gxLineSeg& seg, std::size_t along, std::vector<int>& edges);

 private:
  void moveTo_(std::size_t run);

  const gx_EdgeIndex& index_;
  gx_Outline outline_;
  gxBudget& budget_;
  std::size_t run_;
  gx_Box reach_;  // the box of the run, widened
  // The edges that touch it, in order, and their boxes.
  std::vector<std::size_t> near_;
  std::vector<gx_Box> nearBoxes_;
  std::vector<std::size_t> inTheWay_;
};
