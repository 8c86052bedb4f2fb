/// Everything a contour remembers about itself.
#pragma once

#include <cntr/internal/memo/keyed_memo.h>
#include <cntr/internal/memo/published.h>
#include <cntr/internal/memo/shared_part.h>
#include <cntr/internal/memory/vertex_lookups.h>
#include <cntr/internal/memory/watch.h>
#include <velstd/ellipse.h>
#include <velstd/handle.h>
#include <velstd/line_seg.h>
#include <velstd/rect.h>
#include <velstd/xform.h>

#include <array>
#include <vector>

class gxRegion;
class gx_EdgeIndex;

/// The edges, by edge number.
struct gx_EdgeList {
  std::vector<gxLineSeg> segments;  // a default one for an edge of no length
  std::vector<bool> valid;          // false for an edge of no length
};

/// An ellipse fitted to the points, with its residual.
struct gx_Fit {
  gxEllipse ellipse;
  double residual = 0.0;
};

/// What is rarely asked, made by the first question of these: so a contour that is asked for none of them
/// carries a pointer instead of eight memories.
struct gx_SeldomOfContour {
  gx_Numbers<2> meanPosition;
  gx_Numbers<1> medianFeatureSize;
  gx_Shared<gx_Fit> ellipse;
  gx_Shared<gx_EdgeList> edges;  // for derived classes that ask for them
  gx_KeyedMemo<gxXform<2>, gxRect, gx_XformKey> encloseRects;
  gx_KeyedMemo<double, long, gx_AngleKey> extremalVertices;
  gx_VertexLookups vertexLookups;
};

/// The circle of one diameter mode, centre and radius, and the one that stood there for the points before.
/// A contour without two distinct points answers with the latter, which `drop` alone writes.
struct gx_CircleOfMode {
  using Circle = std::array<double, 3>;

  gx_Numbers<3> now;
  Circle before{};

  void drop() noexcept {
    Circle circle{};
    if (now.get(circle)) before = circle;
    now.drop();
  }
};

/// The results that a contour has computed for its present points.  A result is computed aside and then
/// published (see `published.h`, `shared_part.h`, `keyed_memo.h`), by const operations and so by any
/// number of threads; all are dropped by one call, `drop`, which belongs to operations that have the
/// contour to themselves, so that a stale value cannot be seen.
///
/// A copy takes each result as known or unknown, whatever other threads are about to publish; nothing
/// may be concluded from one result about another.
struct gx_ContourMemory {
  gx_Numbers<1> length;
  gx_YesNo selfIntersecting;
  gx_Once<gxPtrHandle_const<gxRegion>> convexHull;  // shared with copies of the contour

  // The upright rectangle of the points themselves, lowest and highest corner, by which crossings and
  // containment reject.  It stands apart from the answers by transform, one of which may be that of a
  // shear under the identity's key.
  gx_Numbers<4> uprightBox;

  // The circle around the first point, by which containment rejects, and that of the farthest pair.  The
  // latter is made by the first question and stays from then on, for the sake of the circle before.
  gx_CircleOfMode aroundFirst;
  gx_Copied<gx_CircleOfMode> ofFarthestPair;

  // The tree of boxes over the edges, made by the first question that it pays for.
  gx_Shared<gx_EdgeIndex> edgeIndex;
  // What looking for the nearest edge or vertex has cost before there was a tree for it, about, in
  // nanoseconds a point.
  gx_Effort nearestEffort;

  gx_Copied<gx_SeldomOfContour> seldom;

  // Whether somebody relies on the points, and must be told when they change.  Does not go along with a
  // copy or a move.
  gx_Watch watch;

  /// Forgets every result.
  void drop() noexcept {
    watch.changed();
    aroundFirst.drop();
    if (gx_CircleOfMode* circle = ofFarthestPair.get()) circle->drop();
    length.drop();
    selfIntersecting.drop();
    convexHull.drop();
    uprightBox.drop();
    edgeIndex.drop();
    nearestEffort.drop();
    seldom.drop();
  }
};
