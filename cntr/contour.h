/// Contours: outlines and poly-lines of the plane.
#pragma once

#include <cntr/contourdefs.h>
#include <cntr/export.h>
#include <cntr/internal/memory/contour_memory.h>
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/outline/outline.h>
#include <cntr/options.h>
#include <veldispc/tablet.h>
#include <velstd/angle.h>
#include <velstd/budget.h>
#include <velstd/circle.h>
#include <velstd/ellipse.h>
#include <velstd/handle.h>
#include <velstd/line_seg.h>
#include <velstd/persistent.h>
#include <velstd/polygon.h>
#include <velstd/rect.h>
#include <velstd/registry.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

class gxRegion;

/// An ellipse fitted to points, and its residual: the root mean square of the orthogonal distances.
struct gxFittedEllipse {
  gxEllipse ellipse;      ///< the default one where nothing could be fitted
  double residual = 0.0;  ///< −1 where nothing could be fitted
};

/// An ordered list of points of the plane, either closed (an outline: the last point joins the
/// first, which is not repeated) or open (a poly-line), with a label that is the caller's.
///
/// Edges.  A closed contour of n points has n edges; edge 0 is the closing edge, from the last
/// point to the first, then come (0, 1), (1, 2) …, so that edge k ends at point k.  An open contour
/// has the n − 1 edges (0, 1), (1, 2) ….  An edge of no length (ends within 1e-15) keeps its number.
///
/// Degenerate contours.  A contour of 0 or 1 point is empty: it can be made, copied, compared,
/// mapped and drawn and has length 0, but most questions throw `EmptyContour`.  Coordinates may be
/// anything, also NaN and infinite; each operation says what it then answers.
///
/// Memory.  Every answer is remembered until the points or the closed flag change; label and
/// `cachedVectorSize` keep it.  Copies carry it along.
///
/// Threads.  Const operations may run on any number of threads at once, on one contour and on contours
/// that share parts (copies do); the others need the contour to themselves.  Threads that ask one shape
/// have the same rounding mode, since whoever computes an answer first answers for all.
class GXSHAPE_API gxContour : public virtual gxPersistent, public virtual gxRepBase {
 public:
  // ---- Model (contour.cpp) ----------------------------------------------------------------------

  /// Makes a closed contour without points, label 0, `cachedVectorSize` 3.
  gxContour();
  /// Makes a contour of these points, in this order.
  explicit gxContour(const std::vector<gxVector<2>>& points, bool closed = true,
                     unsigned long label = 0);
  /// The same with the points taken over: nothing is copied, nothing allocated.
  explicit gxContour(std::vector<gxVector<2>>&& points, bool closed = true, unsigned long label = 0);
  /// Makes a contour of the vertices of a polygon: closed exactly when its first and last vertex
  /// coincide (within 1e-15).  The repeated last vertex is kept, so such a contour has a closing
  /// edge of no length.  An empty polygon makes a closed contour without points.
  explicit gxContour(const gxPolygon& polygon, unsigned long label = 0);
  /// Copies points, closed flag, label, `cachedVectorSize` and everything remembered; the hull
  /// region is shared, the rest of the memory is copied.
  gxContour(const gxContour& other);
  /// Takes everything over; `other` is then closed, without points, and usable.  Allocates nothing.
  gxContour(gxContour&& other) noexcept;
  ~gxContour() override;

  /// Assigns as the copy constructor copies.  The source may be owned by this object (its cached
  /// hull, for one).  Self-assignment does nothing.  An object of a derived class then brings what
  /// it has beside the contour in step (see `contourAssigned_`); when that fails, everything is as
  /// it was.  Reports no change to change tracking.
  gxContour& operator=(const gxContour& other);
  /// Assigns by moving: `other` is then closed, without points, and usable.  An object of a derived
  /// class then follows as above.
  /// Throws: what assigning a copy throws, where the object behind this contour cannot follow (an
  /// edge-point shape without a transform); both are then as they were.
  gxContour& operator=(gxContour&& other);  // NOLINT(performance-noexcept-move-constructor)

  /// Is true when both are closed or both open, the points are equal one by one (exactly), and
  /// `cachedVectorSize` is equal.  Labels and memories take no part.
  bool operator==(const gxContour& other) const;

  /// Returns the points.
  const std::vector<gxVector<2>>& points() const { return state_.points; }
  /// Replaces the points (`points` may be this contour's own list) and drops the memory.
  /// Throws: what a derived class throws that cannot bring its own data in step; the points are
  /// then as they were.
  virtual void points(const std::vector<gxVector<2>>& points);

  /// Tells whether the last point joins the first.
  virtual bool isClosed() const;
  /// Closes or opens the contour; drops the memory also where the flag was so already.
  virtual void isClosed(bool closed);

  /// Returns the caller's label.
  unsigned long label() const { return state_.label; }
  /// Sets the label; keeps the memory.
  void label(unsigned long label);

  /// Returns the bound on the answers remembered by argument (`extremalVertexIndex`, `encloseRect`,
  /// the grids of `vertexIndex`): each keeps up to that many and one more.  3 by default, never negative.
  long cachedVectorSize() const { return state_.cachedVectorSize; }
  /// Sets that bound; keeps the memory, also what is above the new bound.
  /// Throws: BadParams when `size` is negative; nothing changes.
  void cachedVectorSize(long size);

  void reInit() override;

  // ---- Proximity (contour_proximity.cpp) --------------------------------------------------------

  /// Returns the sum of the lengths of the edges, 0 or more; 0 for a contour of 0 or 1 point.
  ///  - a NaN coordinate gives NaN
  /// Cost: O(n) once.  Remembers: the length.
  double length() const;

  /// Returns the point of the contour nearest to `point`; with `vertexOnly`, the nearest vertex.
  /// Ties: the earlier edge wins (the closing edge is edge 0), the lower index among vertices.
  ///  - an edge of no length, or one so long (above 1e154) that the square of its length is infinite,
  ///    answers with its start point
  ///  - where nothing is at a finite distance (a NaN or infinite query, say): (0, 0), or vertex 0
  ///    with `vertexOnly`
  /// Throws: EmptyContour below 2 points.
  /// Cost: O(n) for the first few questions, as many as cost what a tree over the edges does;
  /// O(log n) then, where most edges are far.  Remembers: how many were asked; the tree.
  gxVector<2> closestPoint(const gxVector<2>& point, bool vertexOnly) const;

  /// Returns the index of the vertex nearest to `point`, the lowest on ties.
  ///  - 0 where no vertex is at a finite distance, so for a NaN query
  /// Throws: EmptyContour below 2 points.  Cost, remembers: as `closestPoint`.
  long closestVertexIndex(const gxVector<2>& point) const;

  /// Returns the Euclidean distance from `point` to `closestPoint(point, vertexOnly)`.
  ///  - a NaN query gives NaN
  /// Throws: EmptyContour below 2 points.
  double distToPoint(const gxVector<2>& point, bool vertexOnly) const;

  /// Return what `closestPoint`, `closestVertexIndex` and `distToPoint` return for each of many
  /// points, in their order.
  ///  - no points: an empty list, whatever the contour
  /// Throws: EmptyContour below 2 points.
  /// Cost: as one call after the other, less what these do over and over; many points make the tree
  /// at once.
  std::vector<gxVector<2>> closestPoints(const std::vector<gxVector<2>>& points, bool vertexOnly) const;
  std::vector<long> closestVertexIndices(const std::vector<gxVector<2>>& points) const;
  std::vector<double> distsToPoints(const std::vector<gxVector<2>>& points, bool vertexOnly) const;

  // ---- Intersections (contour_intersections.cpp) ------------------------------------------------

  /// Returns the points where the contour meets the segment, in the order along the segment.
  /// A crossing at a vertex is reported once for each of its two edges; an edge parallel to the
  /// segment (`gxLine::isParallel`) never meets it, not even where it lies on it.  Everything
  /// closer than 1e-6 meets.  Without `countEndContacts`, edges within 1e-6 of either end of the
  /// segment are left out.
  ///  - a segment of no length has no direction, is parallel to every edge, and meets nothing
  /// Throws: EmptyContour below 2 points.
  /// Cost: O(n) for a few points; then by the edges whose boxes come near the segment's.
  /// Remembers: the upright rectangle of the points; of many points a tree over the edges.
  std::vector<gxVector<2>> intersections(const gxLineSeg& seg, bool countEndContacts) const;

  std::vector<gxVector<2>> intersections(const gxLineSeg& seg, gxContacts atItsEnds) const {
    return intersections(seg, atItsEnds == gxContacts::eCounted);
  }

  /// Returns the points where this contour meets the edges of `other`, edge by edge of `other` in
  /// its order, along each edge as above with end contacts counted.  A crossing at vertices of both
  /// is reported up to four times.
  ///  - `other` may have any number of points
  /// Throws: EmptyContour when this contour has fewer than 2 points.
  std::vector<gxVector<2>> intersections(const gxContour& other) const;
  /// The same within a budget: two outlines of n edges may meet in n² places.
  /// Throws: gxStopped besides.
  std::vector<gxVector<2>> intersections(const gxContour& other, gxBudget& budget) const;

  /// Tells whether the contour crosses or touches itself: whether some edge meets another one that
  /// comes nowhere within 1e-6 of its ends.  Neighbours that overlap do not count.
  /// It is no test of validity: an outline that comes back to one of its vertices, folds back along an
  /// edge, repeats a point or runs along itself may pass.
  ///  - fewer than 2 points: false
  /// Remembers: the answer; the upright rectangle of the points; of many points a tree over the edges.
  bool isSelfIntersecting() const;
  /// The same within a budget: edges that lie close together without meeting may cost n² steps.
  /// Throws: gxStopped; nothing is remembered then.
  bool isSelfIntersecting(gxBudget& budget) const;

  // ---- Extremes (contour_extremes.cpp) ----------------------------------------------------------

  /// Returns the index of the vertex farthest in the direction (cos angle, sin angle), the lowest
  /// on ties.  A direction within 1e-15 of an axis compares bare coordinates.
  ///  - no vertex with a score above the most negative finite double (all NaN, say): −1
  /// Throws: EmptyContour below 2 points.
  /// Remembers: up to `cachedVectorSize` + 1 answers by angle; angles a full turn apart are
  /// different, NaN angles are not remembered.
  long extremalVertexIndex(const gxRadian& angle) const;

  /// Returns the vertex of that index; (NaN, NaN) where it is −1.
  gxVector<2> extremalVertexPosition(const gxRadian& angle) const;

  /// Returns the smallest upright rectangle around the vertices mapped by `xform`.
  ///  - NaN coordinates are passed over, except in the first vertex, where they stay
  /// Throws: EmptyContour below 2 points.
  /// Remembers: up to `cachedVectorSize` + 1 answers by transform.  Transforms that differ in yx
  /// alone count as one, so a shear along y may be answered by what was remembered for another;
  /// transforms with a NaN in any other number are not remembered.  No other question is answered
  /// from this memory.
  gxRect encloseRect(const gxXform<2>& xform) const;

  // ---- Enclosing circle (contour_circle.cpp) ----------------------------------------------------

  /// Returns the circle of that mode; that of `eFirstPoint` encloses every vertex, that of `eAllPairs`
  /// often does not.
  ///  - `eAllPairs`: the farthest pair of vertices is its diameter; among equal distances the pair
  ///    with the lowest first index, then the lowest second.  Other vertices may lie outside.
  ///    Without two distinct points the slot keeps the circle it held: the default one, or that of
  ///    earlier points of this contour.
  ///  - `eFirstPoint`: the centre is vertex 0, the radius the largest distance from it.  Without
  ///    points the slot is returned as it stands.
  /// Throws: BadParams "diameterMode is not one of the valid enums" for any other mode.
  /// Remembers: one circle a mode.
  gxCircle encloseCircle(gxContourDefs::DiameterMode mode) const;
  /// The same within a budget, which `eAllPairs` spends: where very many pairs of vertices are about as
  /// far apart as the farthest, it may cost n² steps.
  /// Throws: gxStopped besides; nothing is remembered then.
  gxCircle encloseCircle(gxContourDefs::DiameterMode mode, gxBudget& budget) const;

  /// Returns twice the radius of `encloseCircle(mode)`.  Throws: as that.
  double diameter(gxContourDefs::DiameterMode mode) const;

  // ---- Hull (contour_hull.cpp) ------------------------------------------------------------------

  /// Puts the convex hull of the points into `hull`, which may be this contour itself.
  /// Throws: EmptyContour below 2 points; gxBadPointer when the remembered hull is missing.
  /// Cost: O(n log n) once.  Remembers: the hull, shared with copies of the contour.
  void convexHull(gxRegion& hull) const;

  // ---- Features (contour_features.cpp) ----------------------------------------------------------

  /// Returns the mean of the edges' midpoints, each weighted with the edge's length.
  ///  - total length 0: the division by zero decides, (NaN, NaN)
  /// Throws: EmptyContour below 2 points.  Remembers: the position.
  gxVector<2> meanPosition() const;

  /// Gives the ellipse fitted to the points and its residual, as `gf_FitEllipse`: for outlines of
  /// ellipses.  Of another outline it may come out several times as large as the points lie apart; the
  /// axes of any shape are those of `gf_EllipseFromInertiaData`.  Where some points belong to something
  /// else, `gfEllipseFit` with its `ignore` leaves them out.
  /// Throws: EmptyContour below 2 points.  Remembers: both.
  void fitEllipse(gxEllipse& ellipse, double& residual) const;

  // ---- Vertex lookup (contour_vertices.cpp) -----------------------------------------------------

  /// Returns the indices of the vertices nearer to `point` than `tolerance` (strictly), in the
  /// order of square cells as wide as the tolerance: cell columns by x, in a column by y, in a cell
  /// by index.
  ///  - a tolerance of 0, below 0 or NaN: nothing; infinity: every vertex at a finite distance, by
  ///    index
  /// Throws: EmptyContour below 2 points.
  /// Cost: O(n) for the first 16 queries with a tolerance, O(n log n) for the next one, which makes a
  /// grid; then by the vertices in the cells around.  Remembers: the number of queries, and the grid, of
  /// the `cachedVectorSize` + 1 tolerances that were asked for last.
  std::vector<int> vertexIndex(const gxVector<2>& point, double tolerance) const;

  // ---- Mapping, conversion, drawing (contour_mapping.cpp, contour_drawing.cpp) -------------------

  /// Puts the contour of the mapped points into `result`, with the same closedness and label and the
  /// default `cachedVectorSize` of 3; `result` may be this contour.  As `==` reads that size, the
  /// identity maps a contour of another size to an unequal one.
  void map(const gxXform<2>& xform, gxContour& result) const;

  /// Returns the contour as a polygon with the even-odd fill mode: a closed one repeats its first
  /// point at the end, an open one is taken as it stands.  Without points: an empty polygon.
  gxPolygon polygon() const;

  /// Draws every edge as a segment, in edge order, edges of no length too; every mode draws alike.
  virtual void draw(gxUITablet& tablet, gxContourDefs::DrawMode mode, const gxColor& colour,
                    const gxUITablet::Layers& layer) const;

  // ---- Results by value, and the points as a range (contour_values.cpp) ---------------------------

  /// Makes a contour of these points, in this order; for whoever has them in memory of his own.
  /// A template, so that lists in braces go to the constructors above.
  template <class Span, class = std::enable_if_t<std::is_same_v<Span, std::span<const gxVector<2>>>>>
  // cppcheck-suppress passedByValue; a span is two words
  explicit gxContour(Span points, bool closed = true, unsigned long label = 0)
      : gxContour(std::vector<gxVector<2>>(points.begin(), points.end()), closed, label) {}

  /// Return the upright enclosing rectangle, the convex hull, the fitted ellipse with its residual,
  /// and the mapped contour, as the forms above give them.  Throws: as those.
  gxRect encloseRect() const { return encloseRect(gxXform<2>::I); }
  gxRegion convexHull() const;
  gxFittedEllipse fitEllipse() const;
  gxContour mapped(const gxXform<2>& xform) const;

  /// The points as a range, in their order.  A change of the points ends the validity of iterators.
  std::size_t size() const { return state_.points.size(); }
  auto begin() const { return state_.points.begin(); }
  auto end() const { return state_.points.end(); }
  /// Returns the point at that index, which must be below `size()`.
  const gxVector<2>& operator[](std::size_t index) const { return state_.points[index]; }

  // ---- Archive (contour_archive.cpp) ------------------------------------------------------------

 protected:
  void dispatchSerialize(gxArchive& archive) override;
  /// Stores or loads the fields of that version.
  virtual void serialize_(gxArchive& archive, unsigned char version);

  // ---- For derived classes ----------------------------------------------------------------------

  /// Brings per-vertex data in step after the points changed; a plain contour drops its memory.
  virtual void makeDataConsistentWithPoints();
  /// Brings the points in step after per-vertex data changed; a plain contour drops its memory.
  virtual void makePointsConsistentWithData();
  /// Forgets everything remembered and reports the change.  The one place that does: every change
  /// of points or closed flag comes through here, and so does loading.
  virtual void cleanCacheInfo();
  /// Follows an assignment that was made through the contour base: a derived class drops what it
  /// remembers itself and brings its own data in step with the new points.  The remembered results
  /// of the contour, which came along, are kept.  Where it throws, it has changed nothing.
  /// A contour whose points were moved away is called too, without points; what it throws then goes
  /// unheard.
  virtual void contourAssigned_();
  /// Calls `contourAssigned_` after the points were moved away.
  void followEmptied_() noexcept;

  /// Replaces the points and drops the memory without asking for data to be brought in step: for
  /// derived classes whose data are in step already.
  void setPoints(const std::vector<gxVector<2>>& points);
  /// Assigns without calling `contourAssigned_`: for the assignments of derived classes.
  void assignContour_(const gxContour& other);
  void assignContour_(gxContour&& other) noexcept;
  /// Exchanges everything with `other`, without telling either.
  void swapContour_(gxContour& other) noexcept;

  /// Throws: EmptyContour below 2 points.
  void checkEmptyContour() const;

  /// As the public form, with the number of the edge of each hit in `edges`, which keeps what it holds
  /// when the call throws.
  std::vector<gxVector<2>> intersections(const gxLineSeg& seg, std::vector<int>& edges,
                                         bool countEndContacts) const;
  /// Tells whether `intersections(other)` is not empty: the same answer, or exception, at the first hit.
  bool meets_(const gxContour& other, gxBudget& budget) const;
  /// Returns the edges as segments, by edge number; an edge of no length is a default segment.
  const std::vector<gxLineSeg>& lineSegs() const;
  /// Tells for each edge whether it has a length.
  const std::vector<bool>& validLine() const;
  /// Returns the median of the edge lengths, the upper of the two middle ones for an even count.
  /// NaN lengths count as the greatest.
  /// Throws: EmptyContour below 2 points.  Remembers: the median.
  double medianFeatureSize() const;
  /// Makes the lists behind `lineSegs` and `validLine` where there are none.
  void computeLineSegs() const;

  /// Tells whether the contour has so many points that the edge index is faster than a scan.
  gx_Outline outline_() const { return {state_.points, isClosed()}; }
  bool indexPays_() const { return state_.points.size() > gx_kFewEdges; }
  /// Returns the edge index, made first where there is none.  Remembers: the index.
  const gx_EdgeIndex& edgeIndex_() const;
  /// Returns the smallest upright rectangle around the points, apart from the memory by transform.
  /// Throws: EmptyContour below 2 points.  Remembers: the rectangle.
  gxRect uprightBox_() const;
  /// Returns the radius of `encloseCircle(eFirstPoint)`, without the circle around it.
  double radiusAroundFirst_() const;
  /// Tells whether it is remembered that the contour crosses itself.  Asks nothing.
  bool isKnownToCrossItself_() const {
    bool crosses = false;
    return state_.memory.selfIntersecting.get(crosses) && crosses;
  }
  /// Returns the edge index if there is one, else null.
  const gx_EdgeIndex* edgeIndexIfMade_() const;
  /// Returns the watch over the points, which a set of regions keeps.
  const gx_Watch& watch_() const { return state_.memory.watch; }

 private:
  // Everything a contour is made of, so that copying and moving are the language's own.
  struct State {
    unsigned long label = 0;
    bool closed = true;
    std::vector<gxVector<2>> points;
    long cachedVectorSize = 3;
    gx_ContourMemory memory;
  };

  static gxPersistent* make();
  static gx_Instantiator sExemplar;

  const gx_EdgeList& edgeList_() const;
  bool treePays_(unsigned effort) const;
  void expectNearest_(std::size_t questions) const;

  State state_;
};
