/// Region sets: many regions as one shape.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/sets/regionset_memory.h>
#include <cntr/region.h>

#include <functional>
#include <initializer_list>
#include <vector>

/// An ordered list of shared, read-only regions handled as one shape.  Measures treat the regions as
/// disjoint and add them up; queries run over them in order.
///
/// Special sets.  A set without regions can be made, copied, compared, drawn, repaired, and asked
/// for its area (0), for containment (false) and for self-intersection (false); other questions
/// throw `EmptyRegionSet`.  A handle in the list may be null: it is stored as it is, and the first
/// operation that reaches it throws `gxBadPointer` and remembers nothing.  Regions may overlap, and
/// may stand in the list more than once.
///
/// Memory.  Every answer but containment and distance is remembered.  What drops it: `add`, the
/// `regions(…)` setters, loading, `reInit`.  What keeps it: `cachedVectorSize`, and the raw setter of
/// derived classes.  A change of a region after it was given is not noticed.
///
/// Copies share the regions and the repaired sets, and carry the rest of the memory along.
///
/// Threads.  Const operations may run on any number of threads at once, on one set and on sets that
/// share regions; the others need the set to themselves.  A region is changed only while nobody asks a
/// set that has it.
class GXSHAPE_API gxRegionSet : public virtual gxPersistent, public virtual gxRepBase {
 public:
  /// A region, shared and read-only.
  using RegionHandle = gxPtrHandle_const<gxRegion>;

  // ---- Model (regionst.cpp) ---------------------------------------------------------------------

  /// Makes a set without regions, `cachedVectorSize` 3.
  gxRegionSet();
  /// Makes a set of these regions in this order; `mode` says whether it is replaced by its outer
  /// hull or its regularized form then.  The regions themselves are not checked.
  /// Throws: with modes 1 and 2 what `outerHull` and `regularize` throw.
  explicit gxRegionSet(const std::vector<RegionHandle>& regions,
                       gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);
  explicit gxRegionSet(const std::vector<gxPtrHandle<gxRegion>>& regions,
                       gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);
  // NOLINTNEXTLINE(google-explicit-constructor): one argument may call it
  explicit gxRegionSet(std::initializer_list<RegionHandle> regions,
                       gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);
  /// Copies regions (shared), `cachedVectorSize` and everything remembered.
  gxRegionSet(const gxRegionSet& other);
  /// Takes everything over; `other` is then without regions, and usable.  Allocates nothing.
  gxRegionSet(gxRegionSet&& other) noexcept;
  ~gxRegionSet() override;

  /// Assigns as the copy constructor copies.  The source may be owned by this set (a repaired form).
  /// Self-assignment does nothing.  An object of a derived class then brings what it has beside the
  /// regions in step (see `setAssigned_`); when that fails, everything is as it was.  Reports no
  /// change to change tracking.
  gxRegionSet& operator=(const gxRegionSet& other);
  /// Assigns by moving: `other` is then without regions, and usable.
  /// Throws: what assigning a copy throws, where the object behind this set cannot follow; both are
  /// then as they were.
  gxRegionSet& operator=(gxRegionSet&& other);  // NOLINT(performance-noexcept-move-constructor)

  /// Is true when both hold as many regions and these are equal one by one, in order; so the same
  /// regions in another order are not.  Memories and `cachedVectorSize` take no part.
  /// Throws: gxBadPointer for a null handle met before the first difference.
  bool operator==(const gxRegionSet& other) const;

  /// Returns the regions in order, sharing them.
  std::vector<RegionHandle> regions() const { return state_.regions; }
  /// Replaces the regions, then replaces the set by its outer hull or regularized form as `mode`
  /// says.  Drops everything remembered first, even where it then throws.
  /// Throws, with the old regions kept: with modes 1 and 2 what `outerHull` and `regularize` throw;
  /// what a derived class throws that cannot bring its own data in step.
  void regions(const std::vector<RegionHandle>& regions,
               gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);
  void regions(const std::vector<gxPtrHandle<gxRegion>>& regions,
               gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);
  void regions(std::initializer_list<RegionHandle> regions,
               gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);

  /// Appends a region, which may be null; `mode` applies to the whole set.  Throws: as `regions`.
  void add(const RegionHandle& region, gxContourDefs::IntersectionMode mode = gxContourDefs::eNone);

  /// Returns the bound on the rectangles remembered by transform: up to that many and one more.
  /// 3 by default, never negative.
  long cachedVectorSize() const { return state_.cachedVectorSize; }
  /// Sets that bound; keeps the memory, also what is above the new bound.
  /// Throws: BadParams when `size` is negative; nothing changes.
  void cachedVectorSize(long size);

  void reInit() override;

  // ---- Measures (regionst_measures.cpp) ---------------------------------------------------------

  /// Returns the sum of the regions' areas, with their holes taken out or not.
  ///  - no regions: 0
  /// Throws: EmptyContour for a region, or a hole that takes part, of fewer than 3 points;
  /// gxBadPointer for a null handle.
  /// Cost: O(regions) once, when they know their areas.  Remembers: one sum for each flag.
  double area(bool considerHoles) const;

  /// Returns the centre of mass of the regions together: the mean of their centres, weighted with
  /// their areas.
  ///  - a total area of at most 1e-15 in magnitude, or NaN: (0, 0)
  /// Throws: EmptyRegionSet without regions; else as `area`.  Remembers: one for each flag.
  gxVector<2> centerOfMass(bool considerHoles) const;

  /// Returns the second moments of the regions together, about their common centre of mass (see
  /// `gx_InertiaData`).
  /// Throws: EmptyRegionSet without regions; BadParams "inertiaMatrix(considerHoles) is not
  /// implemented" with `considerHoles` and a region with holes; else as `area`.
  /// Remembers: one for each flag.
  gxMatrix<2> inertiaMatrix(bool considerHoles) const;

  /// Returns the smallest upright rectangle around all outlines mapped by `xform`.
  /// Throws: EmptyRegionSet without regions; EmptyContour for an outline of fewer than 2 points;
  /// gxBadPointer for a null handle.
  /// Remembers: up to `cachedVectorSize` + 1 answers by transform.  Transforms that differ in yx
  /// alone count as one, so a shear along y may be answered by what was remembered for another;
  /// transforms with a NaN are not remembered.
  gxRect encloseRect(const gxXform<2>& xform) const;

  // ---- Queries (regionst_queries.cpp) -----------------------------------------------------------

  /// Tells whether the point is inside a region (see `gxRegion::inside`); the regions are asked in
  /// order up to the first that holds it.
  ///  - no regions: false
  /// Throws: EmptyContour for a region of fewer than 2 points, gxBadPointer for a null handle, where
  /// no region before holds the point.
  /// Cost: O(regions) for the first few queries; then O(log regions) and what the regions whose
  /// boxes hold the point cost, until a region is changed.
  bool inside(const gxVector<2>& point, bool considerHoles) const;
  /// Returns the same for each of many points, in their order.
  ///  - no points: an empty list
  /// Throws: as the single form for the first point that makes it throw.
  std::vector<bool> inside(const std::vector<gxVector<2>>& points, bool considerHoles) const;

  /// Returns the smallest of the regions' distances (see `gxRegion::distToPoint`, which gives the
  /// flags their meaning); distances that are NaN are passed over.
  ///  - all of them NaN: infinity
  /// Throws: EmptyRegionSet without regions; EmptyContour for a region of fewer than 2 points;
  /// gxBadPointer for a null handle.
  /// Cost: as `inside`, with the regions whose boxes come nearer than the answer.
  double distToPoint(const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                     bool insideIsZero) const;

  /// Each answers as the form with positional flags of the same name does.
  double area(gxHoles holes) const { return area(holes == gxHoles::eConsidered); }
  gxVector<2> centerOfMass(gxHoles holes) const { return centerOfMass(holes == gxHoles::eConsidered); }
  gxMatrix<2> inertiaMatrix(gxHoles holes) const { return inertiaMatrix(holes == gxHoles::eConsidered); }
  bool inside(const gxVector<2>& point, gxHoles holes) const {
    return inside(point, holes == gxHoles::eConsidered);
  }
  std::vector<bool> inside(const std::vector<gxVector<2>>& points, gxHoles holes) const {
    return inside(points, holes == gxHoles::eConsidered);
  }
  double distToPoint(const gxVector<2>& point, const gxNearestOptions& options) const {
    return distToPoint(point, options.vertexOnly, options.considerHoles, options.insideIsZero);
  }

  // ---- Drawing (regionst_drawing.cpp) -----------------------------------------------------------

  /// Draws every region in order, each in its own way (see `gxRegion::draw`).
  /// Throws: gxBadPointer for a null handle; the regions before it have been drawn.
  void draw(gxUITablet& tablet, const gxColor& colour, const gxUITablet::Layers& layer) const;

  // ---- Repair (regionst_repair.cpp) -------------------------------------------------------------

  /// Tells whether the outline of a region crosses or touches itself, or the outlines of two regions
  /// meet.  Holes are not looked at; a region wholly inside another does not count.
  ///  - no regions: false
  /// Throws: EmptyContour for a region of fewer than 2 points that is followed by another;
  /// gxBadPointer for a null handle.  Remembers: the answer.
  bool isSelfIntersecting() const;
  /// The same within a budget.  Throws: gxStopped besides; nothing is remembered then.
  bool isSelfIntersecting(gxBudget& budget) const;

  /// Puts into `result`, which may be this set, a set of regions without self-crossings: this set
  /// itself, regions and all, where it does not intersect itself, else the regions with those that
  /// meet joined two by two, each regularized.  One pass joins them, so of a chain of overlaps some
  /// may stay apart and overlap.  A joined region takes the place of the first of the two, the last
  /// region that of the second.
  /// Throws, with `result` untouched: BadParams "spliced regions do not intersect", BadParams
  /// "invalid contour", EmptyContour (see `gxRegion::regularize`); gxBadPointer for a null handle.
  /// Remembers: the result.
  void regularize(gxRegionSet& result) const;

  /// The same with the outer hull of each region (see `gxRegion::outerHull`).
  void outerHull(gxRegionSet& result) const;

  /// The same two within a budget.  Throws: gxStopped besides, with `result` untouched.
  void regularize(gxRegionSet& result, gxBudget& budget) const;
  void outerHull(gxRegionSet& result, gxBudget& budget) const;

  // ---- Archive (regionst_archive.cpp) -----------------------------------------------------------

 protected:
  void dispatchSerialize(gxArchive& archive) override;
  /// Stores or loads the fields of that version.
  virtual void serialize_(gxArchive& archive, unsigned char version);

  // ---- For derived classes ----------------------------------------------------------------------

  /// Brings a derived class's own view of the regions in step after these changed; a plain set does
  /// nothing.
  virtual void makeDataConsistentWithPoints();
  /// Brings the regions in step after a derived class's own view changed; a plain set does nothing.
  virtual void makePointsConsistentWithData();
  /// Forgets everything remembered and reports the change.  The one place that does.
  virtual void cleanCacheInfo();
  /// Follows an assignment that was made through this base: a derived class brings its own view in
  /// step with the new regions.  What the set remembers came along and is kept.
  /// Where it throws, it has changed nothing.  A set whose regions were moved away is called too,
  /// without regions; what it throws then goes unheard.
  virtual void setAssigned_();
  /// Calls `setAssigned_` after the regions were moved away.
  void followEmptied_() noexcept;
  /// Returns what puts a derived class's own view back as it is now, once and without throwing, for a
  /// change that fails after the view was brought in step; empty for a plain set.
  virtual std::function<void()> viewKeeper_();

  /// Replaces the regions and does nothing else: memory and view stay as they are.  For derived
  /// classes that do their own.
  void setRegions(const std::vector<RegionHandle>& regions);
  /// Assigns without calling `setAssigned_`: for the assignments of derived classes.
  void assignSet_(const gxRegionSet& other);
  void assignSet_(gxRegionSet&& other) noexcept;

  /// Throws: EmptyRegionSet without regions.
  void checkEmptyRegionSet() const;

  /// Does what `outerHull` (with `hull`) and `regularize` do to a set that intersects itself.
  /// Throws: as these; EmptyRegionSet without regions.
  void outerHullRegularize(gxRegionSet& result, bool hull) const;

 private:
  // Everything a set is made of, so that copying and moving are the language's own.
  struct State {
    std::vector<RegionHandle> regions;
    long cachedVectorSize = 3;
    gx_RegionSetMemory memory;
  };

  static gxPersistent* make();
  static gx_Instantiator sExemplar;

  void applyMode_(gxContourDefs::IntersectionMode mode);
  void regionsChanged_(gxContourDefs::IntersectionMode mode);
  bool computeSelfIntersecting_(gxBudget& budget) const;
  void repair_(gxRegionSet& result, bool hull, gxBudget& budget) const;
  // The same where it is needed, once.
  void repairOnce_(gxRegionSet& result, bool hull, gxBudget& budget) const;
  const gx_RegionIndex* index_() const;
  double distToPointOneByOne_(const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                              bool insideIsZero) const;
  static void mergeWhereTheyMeet_(std::vector<RegionHandle>& work, gxBudget& budget);
  static void mergeOneByOne_(std::vector<RegionHandle>& work, gxBudget& budget);

  State state_;
};
