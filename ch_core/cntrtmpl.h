/// Contours, regions and region sets whose vertices are edge points.
///
/// The three are class templates by name; `gxEdgelet` is the one kind of edge point there is, and
/// the classes made of it live in the library.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <cntr/internal/memo/published.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <velip/edgelet.h>
#include <velstd/xform_base.h>

#include <functional>
#include <initializer_list>
#include <vector>

template <class T>
class GXSHAPE_API gxRegionT;

/// A contour with an edge point for every vertex.  The edge points (the data) live in a space of
/// their own, the picture as a rule; the points live in the client's.  A transform leads from points
/// to data, its inverse back, and the two lists are kept in step: setting the data makes the points,
/// setting the points makes the data anew, with magnitude 0 and angle 0.  All geometry is that of the
/// points.
///
/// Special contours.  A default contour, and one that was moved from, has no transform: it holds no
/// vertices, and giving it some, or asking for a single conversion, throws `gxBadPointer`.
///
/// What it refuses: `mapT` and `convexHullT` throw `gxPel::BadWindow`, always.  The plain `map` and
/// `convexHull` work on the points.
///
/// Copies copy the data and share the transform with its inverse; the transform given at
/// construction is cloned first, so the caller's own is never held.  A transform cannot be replaced
/// but by assigning a contour.
///
/// Seen as a plain contour or region and assigned to, copied or moved, it makes the data anew from the
/// points that came.  Without a transform it cannot: that throws `gxBadPointer` and changes nothing.
/// When only its points are moved out, its edge points go and the transform stays.
///
/// Memory and threads.  As the contour's; the inverse is remembered too, and outlives every change.
/// Copies share the transform object, which is only read.
template <class T>
class GXSHAPE_API gxContourT : public virtual gxContour {
 public:
  /// A transform, shared and read-only.
  using XformHandle = gxPtrHandle_const<gx2XformBase>;

  // ---- Model (cntrtmpl_contour.cpp) -------------------------------------------------------------

  /// Makes a closed contour without vertices and without a transform, label 0.
  gxContourT();
  /// Makes a closed contour of these edge points under the identity, label 0.
  explicit gxContourT(const std::vector<T>& data);
  /// Makes a closed contour of these edge points, label 0; `dataFromPoints` is cloned, and a null
  /// handle means the identity.
  /// Throws: gxMathError::Singular when there are edge points and the transform has no inverse.
  gxContourT(const std::vector<T>& data, const XformHandle& dataFromPoints);
  /// Copies everything but the transform and its inverse, which are shared.
  gxContourT(const gxContourT& other);
  /// Takes everything over; `other` is then as default-constructed, but for change tracking.
  gxContourT(gxContourT&& other) noexcept;
  ~gxContourT() override;

  /// Assigns as the copy constructor copies.  Self-assignment does nothing.
  gxContourT& operator=(const gxContourT& other);
  gxContourT& operator=(gxContourT&& other);  // NOLINT(performance-noexcept-move-constructor)

  /// Is true when the points are equal one by one and both hold the very same transform object (or
  /// none): a copy equals its original, two contours made of the same arguments are different.
  /// Edge points, closed flags and labels take no part.
  bool operator==(const gxContourT& other) const;

  /// Returns the edge points.
  const std::vector<T>& data() const;
  /// Replaces the edge points (`data` may be this contour's own list), makes the points from them,
  /// and drops the memory.
  /// Throws, with data and points kept: gxBadPointer without a transform, unless `data` is empty;
  /// gxMathError::Singular when the transform has no inverse.
  void data(const std::vector<T>& data);

  /// Returns the transform, null where there is none.
  XformHandle dataFromPointsXform() const;

  /// Returns the edge point at a point: the mapped position, magnitude 0, angle 0.  Nothing is
  /// taken from the vertices near it.
  /// Throws: gxBadPointer without a transform.
  T datum(const gxVector<2>& point) const;

  /// Returns the point of an edge point: its position mapped back.
  /// Throws: gxBadPointer without a transform; gxMathError::Singular when it has no inverse.
  /// Remembers: the inverse, for good, shared with copies.
  gxVector<2> point(const T& edgelet) const;

  /// Throws: gxPel::BadWindow, always.
  void convexHullT(gxRegionT<T>& hull) const;
  /// Throws: gxPel::BadWindow, always.
  void mapT(const gxXform<2>& xform, gxContourT& result) const;

  void reInit() override;

  // ---- Archive (cntrtmpl_archive.cpp) -----------------------------------------------------------

  /// Returns a new default-constructed contour.
  static gxPersistent* make();

 protected:
  void dispatchSerialize(gxArchive& archive) override;
  /// Stores or loads the fields of that version.
  void serialize_(gxArchive& archive, unsigned char version) override;

  // ---- For derived classes ----------------------------------------------------------------------

  /// Makes the data anew from the points.  Throws: gxBadPointer without a transform, where there are
  /// points; the data are then as they were.
  void makeDataConsistentWithPoints() override;
  /// Makes the points anew from the data.  Throws: as `data`; the points are then as they were.
  void makePointsConsistentWithData() override;
  /// Makes the data anew after an assignment through the contour base, keeping what came along.
  void contourAssigned_() override;
  /// Follows an assignment that brought points and data together: a derived class drops what it
  /// remembers itself.  As with `contourAssigned_`: where it throws, it has changed nothing, and what it
  /// throws after everything was moved away goes unheard.
  virtual void dataAssigned_();

  /// Assigns data and transform, not the points.
  void assignData_(const gxContourT& other);
  void assignData_(gxContourT&& other) noexcept;

 private:
  struct Edges {
    gxPtrHandle<gx2XformBase> dataFromPoints;  // null after default construction and moving from
    std::vector<T> data;                       // one for each point
    // The inverse, made when it is first needed; only loading another transform drops it.
    gx_Once<gxPtrHandle_const<gx2XformBase>> pointsFromData;
  };

  static gx_Instantiator sExemplar;

  std::vector<T> dataOfPoints_() const;
  void swapBoth_(gxContourT& other) noexcept;
  void followDataMoved_() noexcept;

  Edges edges_;
};

/// A region whose outline is a contour of edge points.  Geometry and measures are the region's.
///
/// It has two lists of holes: `holes()` gives the holes that are edge-point regions, which take part
/// in nothing; the holes of its region part, `gxRegion::holes()`, count in the region's measures and
/// queries.  Setting one list leaves the other as it is.  Setting the plain list makes the data anew
/// from the points, so magnitudes and angles become 0.
///
/// An archive keeps its points and plain holes, not its edge points, transform or typed holes: a loaded
/// region has points and no data.  Whoever needs these stores an edge-point contour of the outline
/// beside it, which keeps them all.
///
/// What it refuses: `mapT`, `regularizeT` and `convexHullT` throw `gxPel::BadWindow`, always.  The
/// plain `map`, `regularize`, `outerHull` and `convexHull` work on the points.
///
/// Memory, copies and threads.  As the region's and the edge-point contour's: copies share both
/// lists' holes, the transform and its inverse, and the repaired forms.
template <class T>
class GXSHAPE_API gxRegionT : public gxRegion, public gxContourT<T> {
 public:
  using typename gxContourT<T>::XformHandle;
  /// A hole with edge points, shared and read-only.
  using HoleHandleT = gxPtrHandle_const<gxRegionT>;

  // ---- Model (cntrtmpl_region.cpp) --------------------------------------------------------------

  /// Makes a region without vertices, holes and transform, label 0.
  gxRegionT();
  /// Makes a region of a contour, with another label; the transform is shared with the contour,
  /// which may be open.
  gxRegionT(const gxContourT<T>& contour, unsigned long label);
  /// Makes a region of these edge points; see the constructors of the contour.
  explicit gxRegionT(const std::vector<T>& data, unsigned long label = 0);
  gxRegionT(const std::vector<T>& data, const XformHandle& dataFromPoints, unsigned long label = 0);
  /// Copies points and data, shares transform and holes, takes everything remembered along.
  gxRegionT(const gxRegionT& other);
  /// Takes everything over; `other` is then as default-constructed, but for change tracking.
  gxRegionT(gxRegionT&& other) noexcept;
  ~gxRegionT() override;

  /// Assigns as the copy constructor copies; the source may be owned by this region (its hole).
  /// Self-assignment does nothing.
  gxRegionT& operator=(const gxRegionT& other);
  gxRegionT& operator=(gxRegionT&& other);  // NOLINT(performance-noexcept-move-constructor)

  /// Compares the outlines as edge-point contours: equal points, the very same transform.  Holes of
  /// either kind take no part.
  bool operator==(const gxRegionT& other) const;

  /// Returns the holes that are edge-point regions.  The plain holes: `gxRegion::holes()`.
  const std::vector<HoleHandleT>& holes() const;
  /// Replaces the edge-point holes and drops everything remembered.  They are not checked: null
  /// handles and holes that cross the outline are stored as they are.
  void holes(const std::vector<HoleHandleT>& holes);
  void holes(const std::vector<gxPtrHandle<gxRegionT>>& holes);
  void holes(std::initializer_list<HoleHandleT> holes);
  /// Replaces the plain holes; see the region.  Throws also: gxBadPointer for a region that has
  /// points and no transform; the holes are then as they were.
  void holes(const std::vector<HoleHandle>& holes);
  void holes(const std::vector<gxPtrHandle<gxRegion>>& holes);
  void holes(const std::vector<gxRegion>& holes) { gxRegion::holes(holes); }
  // A template, so that a list that fits both goes to the edge-point holes.
  template <class = void>
  void holes(std::initializer_list<HoleHandle> holes) {
    gxRegion::holes(holes);
  }

  using gxContourT<T>::mapT;
  /// Throws: gxPel::BadWindow, always.
  void mapT(const gxXform<2>& xform, gxRegionT& result) const;
  /// Throws: gxPel::BadWindow, always.
  void regularizeT(gxRegionT& result) const;

  void reInit() override;

  // ---- Drawing (cntrtmpl_drawing.cpp) -----------------------------------------------------------

  using gxRegion::draw;
  /// Draws every edge point, in data space, as a segment of length 1 centred on it and turned by
  /// −90° from its angle, that is along the edge.  Neither the outline nor the holes are drawn.
  void draw(gxUITablet& tablet, const gxColor& colour, const gxUITablet::Layers& layer) const override;

  // ---- Archive (cntrtmpl_archive.cpp) -----------------------------------------------------------

  /// Returns a new default-constructed region.
  static gxPersistent* make();

 protected:
  void dispatchSerialize(gxArchive& archive) override;
  /// Stores or loads the fields of that version.
  void serialize_(gxArchive& archive, unsigned char version) override;

  // ---- For derived classes ----------------------------------------------------------------------

  void makeDataConsistentWithPoints() override;
  void makePointsConsistentWithData() override;
  void cleanCacheInfo() override;
  void contourAssigned_() override;
  void dataAssigned_() override;

 private:
  static gx_Instantiator sExemplar;

  std::vector<HoleHandleT> holesT_;
};

/// A region set that keeps, beside its list of regions, a second list of the same regions as
/// edge-point regions, in the same order.  Measures and queries are the region set's.
///
/// Filling.  The constructors take edge-point regions, and both lists hold these very objects.  The
/// setters of the region set, `add` and `regions(…)`, take plain regions and make new edge-point
/// regions of their points; these have no transform, so any region in the set that has points makes
/// them throw `gxBadPointer`, and neither list changes.  Holes and labels do not come along.
///
/// Assigning through the region set (a repair with this set as its target, say): regions that are
/// edge-point regions stand in both lists; any other is treated as `add` treats it.
///
/// What it refuses: `mapT` and `regularizeT` throw `gxPel::BadWindow`, always.
///
/// Memory, copies and threads.  As the region set's: copies share the regions of both lists.
template <class T>
class GXSHAPE_API gxRegionSetT : public gxRegionSet {
 public:
  /// A region with edge points, shared and read-only.
  using RegionHandleT = gxPtrHandle_const<gxRegionT<T>>;

  // ---- Model (cntrtmpl_set.cpp) -----------------------------------------------------------------

  /// Makes a set without regions.
  gxRegionSetT();
  /// Makes a set of these regions in this order; a null handle stands as null in both lists.
  explicit gxRegionSetT(const std::vector<RegionHandleT>& regions);
  explicit gxRegionSetT(const std::vector<gxPtrHandle<gxRegionT<T>>>& regions);
  // NOLINTNEXTLINE(google-explicit-constructor): one argument may call it
  explicit gxRegionSetT(std::initializer_list<RegionHandleT> regions);
  /// Copies both lists (regions shared), `cachedVectorSize` and everything remembered.
  gxRegionSetT(const gxRegionSetT& other);
  /// Takes everything over; `other` is then without regions, and usable.  Allocates nothing.
  gxRegionSetT(gxRegionSetT&& other) noexcept;
  ~gxRegionSetT() override;

  /// Assigns as the copy constructor copies.  Self-assignment does nothing.
  gxRegionSetT& operator=(const gxRegionSetT& other);
  gxRegionSetT& operator=(gxRegionSetT&& other);  // NOLINT(performance-noexcept-move-constructor)

  /// Compares the regions as a region set does; the edge points take no part.
  bool operator==(const gxRegionSetT& other) const;

  /// Returns the regions as edge-point regions, sharing them.
  std::vector<RegionHandleT> regionsT() const;

  /// Throws: gxPel::BadWindow, always.
  void mapT(const gxXform<2>& xform, gxRegionSetT& result) const;
  /// Throws: gxPel::BadWindow, always.
  void regularizeT(gxRegionSetT& result) const;

  void reInit() override;

  // ---- Archive (cntrtmpl_archive.cpp) -----------------------------------------------------------

  /// Returns a new default-constructed set.
  static gxPersistent* make();

 protected:
  void dispatchSerialize(gxArchive& archive) override;
  /// Stores or loads the fields of that version.
  void serialize_(gxArchive& archive, unsigned char version) override;

  // ---- For derived classes ----------------------------------------------------------------------

  /// Makes a new edge-point region of the points of every region.  Throws: gxBadPointer for a region
  /// with points, and for a null handle; the list of edge-point regions is then as it was.
  void makeDataConsistentWithPoints() override;
  /// Puts the edge-point regions into the list of regions.
  void makePointsConsistentWithData() override;
  void cleanCacheInfo() override;
  void setAssigned_() override;
  std::function<void()> viewKeeper_() override;

 private:
  static gx_Instantiator sExemplar;

  std::vector<RegionHandleT> regionsT_;
};

// Registration defines these, in the order that archives rely on.
template <>
gx_Instantiator gxContourT<gxEdgelet>::sExemplar;
template <>
gx_Instantiator gxRegionT<gxEdgelet>::sExemplar;
template <>
gx_Instantiator gxRegionSetT<gxEdgelet>::sExemplar;

extern template class gxContourT<gxEdgelet>;
extern template class gxRegionT<gxEdgelet>;
extern template class gxRegionSetT<gxEdgelet>;
