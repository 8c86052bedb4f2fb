/// Regions: outlines that enclose an area, with holes.
#pragma once

#include <cntr/contour.h>
#include <cntr/internal/memory/region_memory.h>

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <vector>

/// The first hole of a list that a region refuses, and where (`gxRegion::firstHoleConflict`).
struct gxHoleConflict {
  bool found = false;  ///< whether a hole is refused
  long hole = -1;      ///< its place in the list, from 0; −1 where none is refused
  /// Where its outline crosses or touches the region's; (NaN, NaN) where none is refused, where the
  /// handle is null, and where the region is empty.
  gxVector<2> point{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
};

/// A closed outline (the contour part) together with an ordered list of holes, each itself a region
/// held by a shared, read-only handle.  A hole counts through its own outline; only containment
/// looks at the holes of holes, as islands.
///
/// Degenerate regions.  An outline of fewer than 3 points has no area: measures throw
/// `EmptyContour`.  Holes are only asked not to cross the outline: they may lie outside it, and
/// overlap each other.
///
/// What leaves the holes out: `length`, `==`, `map`, `draw`, the hull and the repair read the outline
/// alone, and the region that `map` makes has no holes and label 0.  To map, draw or compare them too,
/// take each region of `holes()` in turn, and give the mapped ones to `holes(…)` of the mapped outline.
///
/// What it refuses: being opened, and holes whose outline crosses or touches its own.
///
/// Memory.  As the contour's; measures of area and the repaired forms are remembered beside it, and
/// dropped together with it on every change of points or holes.  A change of a hole after it was
/// given is not noticed.  Copies share holes and repaired forms.
///
/// Threads.  As the contour's, also for regions that share a hole.  A hole is changed only while nobody
/// asks a region that has it.
class GXSHAPE_API gxRegion : public virtual gxContour {
 public:
  /// A hole, shared and read-only.
  using HoleHandle = gxPtrHandle_const<gxRegion>;

  // ---- Model (region.cpp) -----------------------------------------------------------------------

  /// Makes a region without points and holes.
  gxRegion();
  /// Makes a region of this outline; `mode` says what to do where it crosses itself.
  /// Throws: with modes 1 and 2 what `outerHull` and `regularize` throw.
  explicit gxRegion(const std::vector<gxVector<2>>& points,
                    gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);
  /// The same with the outline taken over: nothing is copied, nothing allocated where it stays as it is.
  explicit gxRegion(std::vector<gxVector<2>>&& points,
                    gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);
  /// The same of the points and label of a contour, which may be open.
  explicit gxRegion(const gxContour& contour,
                    gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);
  /// The same of the vertices of a polygon, a repeated last vertex included.
  explicit gxRegion(const gxPolygon& polygon,
                    gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);
  /// Copies outline, holes (shared) and everything remembered.
  gxRegion(const gxRegion& other);
  /// Takes everything over; `other` is then without points and holes, and usable.
  gxRegion(gxRegion&& other) noexcept;
  ~gxRegion() override;

  /// Assigns as the copy constructor copies; the source may be owned by this region (its hole, its
  /// repaired form).  Self-assignment does nothing.
  gxRegion& operator=(const gxRegion& other);
  /// Assigns by moving: `other` is then without points and holes, and usable.
  /// Throws: what assigning a copy throws, where the object behind this region cannot follow; both are
  /// then as they were.
  gxRegion& operator=(gxRegion&& other);  // NOLINT(performance-noexcept-move-constructor)

  /// Compares the outlines as contours; holes take no part.
  bool operator==(const gxRegion& other) const;

  /// Tells that the outline is closed: true, always.
  bool isClosed() const override;
  /// Does nothing for true.  Throws: RegionCannotBeSetOpen for false.
  void isClosed(bool closed) override;

  /// Returns the holes in the order given.
  const std::vector<HoleHandle>& holes() const { return holes_; }
  /// Replaces the holes.  Drops everything remembered first, even where it then throws; what the check
  /// for crossings then computes of the outline is remembered.
  /// Throws, with the old holes kept: gxBadPointer for a null handle; BadParams "holes cannot
  /// intersect region" where a hole's outline crosses or touches this one's; EmptyContour where
  /// this region has fewer than 2 points and the list is not empty.
  void holes(const std::vector<HoleHandle>& holes);
  void holes(const std::vector<gxPtrHandle<gxRegion>>& holes);
  void holes(std::initializer_list<HoleHandle> holes);
  /// The same within a budget: edges that lie close together without meeting may cost n² steps.
  /// Throws: gxStopped besides, with the old holes kept.
  void holes(const std::vector<HoleHandle>& holes, gxBudget& budget);

  /// Tells without throwing whether `holes(list)` would refuse the list, and if so for which hole and
  /// where: the first in the list, and of it the crossing that comes first in `intersections`.
  /// Nothing of the region changes.
  ///  - a null handle, and any hole of a region of fewer than 2 points, is refused, at (NaN, NaN)
  ///  - an empty list: nothing found
  /// Throws: std::bad_alloc alone.
  /// Cost: O(m log n) for m edges of holes; ends at the first crossing.  Remembers: as `intersections`.
  gxHoleConflict firstHoleConflict(const std::vector<HoleHandle>& holes) const;

  void reInit() override;

  // ---- Mapping, drawing (region_mapping.cpp) ----------------------------------------------------

  using gxContour::map;
  /// Puts the region of the mapped outline into `result`, without holes, label 0 and `cachedVectorSize`
  /// 3; `result` may be this region.  The class comment says how holes are mapped along.
  void map(const gxXform<2>& xform, gxRegion& result) const;

  using gxContour::draw;
  /// Draws the edges of the outline, as the contour's drawing does.  Holes are not drawn.
  virtual void draw(gxUITablet& tablet, const gxColor& colour, const gxUITablet::Layers& layer) const;

  // ---- Queries (region_containment.cpp, region_queries.cpp) -------------------------------------

  /// Tells whether the point lies inside: whether a ray from it crosses the outline an odd number
  /// of times.  With `considerHoles` a point in a hole is outside, in a hole of the hole inside
  /// again.
  ///  - within 1e-6 of a vertex of the outline: inside
  ///  - near a vertex, up to about 1e-6 · 2n / π from it, the ray may pass that vertex within 1e-6 and
  ///    the answer be wrong; elsewhere only within 1e-6 of the border
  ///  - NaN: outside
  /// Throws: EmptyContour below 2 points; gxBadPointer for a null hole; BadParams "holes nest too
  /// deeply" when a region comes up again among the holes of its own holes.
  /// Cost: that of a ray, O(n) for the first question and mostly less for the next ones, until rays
  /// have cost about as much as a grid of cells; then O(1) for most points.
  /// Remembers: what rays have cost; the grid.
  bool inside(const gxVector<2>& point, bool considerHoles) const;
  /// Returns the same for each of many points, in their order.
  ///  - no points: an empty list, whatever the region
  /// Throws: as the single form for the first point that makes it throw.
  /// Cost: as one call after the other, less what these do over and over.
  std::vector<bool> inside(const std::vector<gxVector<2>>& points, bool considerHoles) const;

  using gxContour::closestPoint;
  /// Returns the point of outline and holes nearest to `point`; with `vertexOnly` the nearest
  /// vertex, of the outline alone or, with `considerHoles`, of outline and holes.  Without
  /// `vertexOnly` the holes are always searched.  Ties keep the earlier, the outline first.
  /// Throws: EmptyContour below 2 points, of a hole too; gxBadPointer for a null hole.
  gxVector<2> closestPoint(const gxVector<2>& point, bool vertexOnly, bool considerHoles) const;

  using gxContour::closestPoints;
  /// Returns the same for each of many points, in their order.
  ///  - no points: an empty list, whatever the region
  /// Throws: as the single form for the first point that makes it throw.
  std::vector<gxVector<2>> closestPoints(const std::vector<gxVector<2>>& points, bool vertexOnly,
                                         bool considerHoles) const;

  /// Returns the index of the outline's vertex nearest to `point`.  Throws: as the contour's.
  long closestVertexIndex(const gxVector<2>& point) const;
  /// Returns the index of the nearest vertex within its own outline, and in `holeIndex` which: −1
  /// for this region's, else the hole's position.  Ties keep the earlier, the outline first.
  /// Throws: EmptyContour below 2 points, of a hole too; gxBadPointer for a null hole.
  long closestVertexIndex(const gxVector<2>& point, bool considerHoles, long& holeIndex) const;

  using gxContour::distToPoint;
  /// Returns the distance to `closestPoint(point, vertexOnly, considerHoles)`; with
  /// `insideIsZero`, 0 for a point inside.  Throws: as `inside` and `closestPoint`.
  double distToPoint(const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                     bool insideIsZero) const;

  /// Return the crossings of the outline alone, as the contour's.
  std::vector<gxVector<2>> intersections(const gxLineSeg& seg, bool countEndContacts) const {
    return gxContour::intersections(seg, countEndContacts);
  }
  std::vector<gxVector<2>> intersections(const gxContour& other) const {
    return gxContour::intersections(other);
  }
  /// Returns the crossings of the outline with `other`, then, with `considerHoles`, those of each
  /// hole's outline in order.  Nothing is sorted or merged across outlines.
  /// Throws: EmptyContour below 2 points, of a hole too; gxBadPointer for a null hole.
  std::vector<gxVector<2>> intersections(const gxContour& other, bool considerHoles) const;
  /// The same with a segment; `countEndContacts` as the contour's.
  std::vector<gxVector<2>> intersections(const gxLineSeg& seg, bool countEndContacts,
                                         bool considerHoles) const;

  // ---- Measures (region_measures.cpp) -----------------------------------------------------------

  /// Returns the area of the outline, 0 or more; with `considerHoles`, less the area of every hole,
  /// wherever it lies, so that the result may be negative.
  /// Throws: EmptyContour below 3 points, of a hole too; gxBadPointer for a null hole.
  /// Remembers: both.
  double area(bool considerHoles) const;

  /// Returns the centre of mass of the outline; with `considerHoles`, with the holes taken out.
  ///  - an outline without area: (0, 0); holes that cancel the area: the division by zero decides
  /// Throws: as `area`.  Remembers: both, and the area where the same sum gives it: to get both,
  /// call this first.
  gxVector<2> centerOfMass(bool considerHoles) const;

  /// Returns the second moments of the outline about its centre of mass (see `gx_InertiaData`).
  /// Throws: EmptyContour below 3 points; BadParams "inertiaMatrix(considerHoles) is not
  /// implemented" with `considerHoles` on a region with holes.  Remembers: the matrix.
  gxMatrix<2> inertiaMatrix(bool considerHoles) const;

  // ---- Repair (region_repair.cpp, internal/repair/outside_walk, internal/repair/loops) --------------------------

  /// Puts into `result`, which may be this region, a region without self-crossings: this region
  /// itself, holes and all, where its outline does not cross itself, else the outside of the
  /// figure, walked around, without holes.
  /// Throws, with `result` untouched: BadParams "invalid contour" where no edge is found on the
  /// outside or the walk does not close; EmptyContour below 3 points.  Remembers: the result.
  void regularize(gxRegion& result) const;
  /// The same within a budget: an outline of n edges may meet itself in n² places, and a walk may take
  /// max(200,000, 64 n) steps before it is given up.
  /// Throws: gxStopped besides, with `result` untouched and nothing remembered.
  void regularize(gxRegion& result, gxBudget& budget) const;

  /// The same, cut further into a single loop: at points passed twice, without inner loops, with
  /// touching loops joined.
  void outerHull(gxRegion& result) const;
  /// The same within a budget.  Throws: gxStopped besides, with `result` untouched.
  void outerHull(gxRegion& result, gxBudget& budget) const;

  // ---- The same with named flags ------------------------------------------------------------------

  /// Each answers as the form with positional flags of the same name does.
  bool inside(const gxVector<2>& point, gxHoles holes) const { return inside(point, isOn_(holes)); }
  std::vector<bool> inside(const std::vector<gxVector<2>>& points, gxHoles holes) const {
    return inside(points, isOn_(holes));
  }
  gxVector<2> closestPoint(const gxVector<2>& point, const gxNearestOptions& options) const {
    return closestPoint(point, options.vertexOnly, options.considerHoles);
  }
  std::vector<gxVector<2>> closestPoints(const std::vector<gxVector<2>>& points,
                                         const gxNearestOptions& options) const {
    return closestPoints(points, options.vertexOnly, options.considerHoles);
  }
  double distToPoint(const gxVector<2>& point, const gxNearestOptions& options) const {
    return distToPoint(point, options.vertexOnly, options.considerHoles, options.insideIsZero);
  }
  std::vector<gxVector<2>> intersections(const gxContour& other, gxHoles holes) const {
    return intersections(other, isOn_(holes));
  }
  std::vector<gxVector<2>> intersections(const gxLineSeg& seg, gxContacts atItsEnds,
                                         gxHoles holes = gxHoles::eIgnored) const {
    return intersections(seg, atItsEnds == gxContacts::eCounted, isOn_(holes));
  }
  double area(gxHoles holes) const { return area(isOn_(holes)); }
  gxVector<2> centerOfMass(gxHoles holes) const { return centerOfMass(isOn_(holes)); }
  gxMatrix<2> inertiaMatrix(gxHoles holes) const { return inertiaMatrix(isOn_(holes)); }

  // ---- Holes and results by value (region_values.cpp) -------------------------------------------

  /// Makes a region of this outline with holes of these outlines, in their order.
  /// Throws: as setting the holes does.
  gxRegion(const std::vector<gxVector<2>>& outline, const std::vector<std::vector<gxVector<2>>>& holes);

  /// Replaces the holes by these regions, which are copied.  Throws: as with handles.
  void holes(const std::vector<gxRegion>& holes);
  /// Adds one hole behind the others.
  /// Throws, with the holes as they were: as setting the holes does.
  /// Cost: as setting all holes anew, since all are checked: give many holes at once.
  void addHole(const gxRegion& hole);
  void addHole(const std::vector<gxVector<2>>& outline);

  using gxContour::encloseRect;
  /// Return the repaired region, as `regularize` and `outerHull` give it.  Throws: as those.
  gxRegion regularized() const;
  gxRegion outerHull() const;

  /// Returns the region with its holes, and theirs, mapped through `xform`, with its label and
  /// `cachedVectorSize`.  What is a hole of several regions is mapped once and stays shared.  The
  /// mapped holes are not checked against their outlines: rounding may bring them to touch.
  /// Throws: gxBadPointer for a null hole; BadParams "holes nest too deeply" for a cycle of holes.
  gxRegion mapped(const gxXform<2>& xform) const;
  /// Returns a copy that shares nothing with this region, neither holes nor anything remembered.
  /// Throws: as `mapped`.
  gxRegion unshared() const;

  // ---- Archive (region_archive.cpp) -------------------------------------------------------------

 protected:
  void dispatchSerialize(gxArchive& archive) override;
  /// Stores or loads the fields of that version.
  void serialize_(gxArchive& archive, unsigned char version) override;

  // ---- For derived classes ----------------------------------------------------------------------

  void cleanCacheInfo() override;
  void contourAssigned_() override;

  /// Assigns holes and remembered results, not the outline.
  void assignRegion_(const gxRegion& other);
  void assignRegion_(gxRegion&& other) noexcept;

  /// Throws: EmptyContour below 3 points.
  void checkEmptyContour() const;

  /// Returns how often a ray from the point crosses the outline; the smaller count of both ways along
  /// the ray with `bothWays`.
  ///  - within 1e-6 of a vertex: 1; outside the upright rectangle of the points, or farther from the
  ///    first vertex than every other one: 0
  /// Throws: EmptyContour below 2 points.
  long insideCount(const gxVector<2>& point, bool bothWays) const;
  /// Does what `outerHull` (with `hull`) and `regularize` do to an outline that crosses itself.
  /// Throws: as these.
  void outerHullRegularize(gxRegion& result, bool hull) const;
  /// Makes one outline out of this one and another that crosses it, by a keyhole cut at their first
  /// crossing.  Throws: BadParams "spliced regions do not intersect"; EmptyContour where `other` has
  /// fewer than 2 points.
  void splice(const gxRegion& other, gxRegion& result) const;

 private:
  static bool isOn_(gxHoles holes) { return holes == gxHoles::eConsidered; }

  friend class gxRegionSet;     // splices and repairs its regions
  friend class gx_RegionIndex;  // looks into their memories
  friend class gx_ValidRegion;  // sets holes that were checked exactly, touching ones too

  static gxPersistent* make();
  static gx_Instantiator sExemplar;

  void takeOver_(gxRegion& source);
  void applyMode_(gxContourDefs::IntersectionMode mode);
  void checkHoles_(const std::vector<HoleHandle>& holes, gxBudget& budget) const;
  double outlineArea_() const;
  gxVector<2> outlineCenter_() const;
  void countRays_(std::uint64_t effort) const;
  const gx_ContainmentGrid* containment_() const;
  bool isInOutline_(const gxVector<2>& point) const;
  bool isOutsideHoles_(const gxVector<2>& point) const;
  // As `insideCount`; adds what the ray has cost, about, in nanoseconds.
  long countAlongRay_(const gxVector<2>& point, bool bothWays, std::uint64_t& effort) const;
  gxVector<2> rayFrom_(const gxVector<2>& point, std::uint64_t& effort) const;
  template <class Outline>
  gxRegion rebuilt_(const Outline& outline) const;
  void repair_(gxRegion& result, bool hull, gxBudget& budget) const;
  // The same where it is needed, once.
  void repairOnce_(gxRegion& result, bool hull, gxBudget& budget) const;
  bool firstMeeting_(const gxLineSeg& edge, gxVector<2>& place, std::size_t& ownEdge) const;

  std::vector<HoleHandle> holes_;
  gx_RegionMemory memory_;
};
