/// Everything a contour remembers about itself.
#pragma once

#include <cntr/internal/index/edge_index.h>
#include <cntr/internal/index/vertex_grid.h>
#include <cntr/internal/memory/bounded_memo.h>
#include <cntr/internal/memory/watch.h>
#include <cntr/internal/outline/deep_ptr.h>
#include <velstd/circle.h>
#include <velstd/ellipse.h>
#include <velstd/handle.h>
#include <velstd/line_seg.h>
#include <velstd/rect.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <array>
#include <vector>

class gxRegion;

/// The results that a contour has computed, each beside the flag that says whether it holds for
/// the present points.  A flag is set only after its computation returned, and all are dropped by
/// one call, `drop`, so that a stale value cannot be seen.  Copying a contour copies this with the
/// language's own copy.
struct gx_ContourMemory {
  bool meanPositionValid = false;
  gxVector<2> meanPosition;

  bool lengthValid = false;
  double length = 0.0;

  // The hull is shared with copies of the contour.  It outlives the drop of its flag, until the
  // next computation puts another in its place.
  bool convexHullValid = false;
  gxPtrHandle_const<gxRegion> convexHull;

  // The upright rectangle of the points themselves, by which crossings and containment reject.  It
  // stands apart from the answers by transform, one of which may be that of a shear under the
  // identity's key.
  bool uprightBoxValid = false;
  gxRect uprightBox;

  gx_DeepPtr<gx_BoundedMemo<gxXform<2>, gxRect, gx_XformKey>> encloseRects;

  // One slot per diameter mode.  Dropping clears the flags and leaves the circles: a contour
  // without two distinct points answers with the circle that stands in the slot.
  std::array<bool, 2> encloseCircleValid{};
  std::array<gxCircle, 2> encloseCircles;

  gx_DeepPtr<gx_BoundedMemo<double, long, gx_AngleKey>> extremalVertices;

  bool ellipseValid = false;
  gxEllipse ellipse;
  double ellipseResidual = 0.0;

  bool selfIntersecting = false;
  bool selfIntersectingValid = false;

  // The edges, by edge number, for derived classes that ask for them.
  bool segmentsValid = false;
  std::vector<gxLineSeg> segments;
  std::vector<bool> validLine;  // false for an edge of no length

  // The tree of boxes over the edges, made by the first question that it pays for.
  gx_DeepPtr<gx_EdgeIndex> edgeIndex;

  // What looking for the nearest edge or vertex has cost before there was a tree for it, about, in
  // nanoseconds a point.
  unsigned nearestEffort = 0;

  bool medianFeatureSizeValid = false;
  double medianFeatureSize = 0.0;

  // What is known of each tolerance that vertices were looked up with, in the order of first use.
  std::vector<gx_VertexLookup> vertexLookups;

  // Whether somebody relies on the points, and is to hear when they change.  Does not go along with a
  // copy or a move.
  gx_Watch watch;

  /// Forgets every result.
  void drop() noexcept {
    watch.changed();
    uprightBoxValid = false;
    encloseRects.reset();
    extremalVertices.reset();
    std::vector<gx_VertexLookup>().swap(vertexLookups);
    edgeIndex.reset();
    nearestEffort = 0;
    meanPositionValid = false;
    lengthValid = false;
    length = 0.0;
    convexHullValid = false;
    encloseCircleValid = {};
    ellipseValid = false;
    ellipseResidual = 0.0;
    selfIntersectingValid = false;
    segmentsValid = false;
    medianFeatureSizeValid = false;
    medianFeatureSize = 0.0;
  }
};
