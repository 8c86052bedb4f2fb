/// From and to GEOS, through its C interface (`geos_c.h`, GEOS 3.10 or later): points as whole buffers of
/// coordinates, exactly.
#pragma once

#include <cntr/contour.h>
#include <cntr/contourdefs.h>
#include <cntr/region.h>
#include <gxshape/interop/rings.h>
#include <velstd/vector.h>

#include <geos_c.h>

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// A context of GEOS with the words of its last error: one for each thread.
class gxGeos {
 public:
  gxGeos() : context_(GEOS_init_r()) {
    if (context_ == nullptr) throw gxContourDefs::BadParams(L"GEOS: no context");
    GEOSContext_setErrorMessageHandler_r(context_, &gxGeos::remember_, &error_);
  }
  gxGeos(const gxGeos&) = delete;
  gxGeos& operator=(const gxGeos&) = delete;
  ~gxGeos() { GEOS_finish_r(context_); }

  /// Returns the context, for calls of GEOS.
  GEOSContextHandle_t context() const { return context_; }
  /// Returns what GEOS said last, empty where it never complained.
  const std::string& error() const { return error_; }

  /// Throws: BadParams with what was done and what GEOS said.
  [[noreturn]] void fail(const std::string& doing) const {
    const std::string text = "GEOS: " + doing + (error_.empty() ? "" : ": ") + error_;
    throw gxContourDefs::BadParams(std::wstring(text.begin(), text.end()));
  }
  /// Returns what GEOS returned.  Throws: as above where that is nothing.
  template <class T>
  T* check(T* made, const char* doing) const {
    if (made == nullptr) fail(doing);
    return made;
  }

 private:
  static void remember_(const char* message, void* error) noexcept {
    try {
      *static_cast<std::string*>(error) = message;
    } catch (...) {  // NOLINT(bugprone-empty-catch): the call fails all the same, without words
    }
  }

  GEOSContextHandle_t context_;
  std::string error_;
};

/// Destroys a geometry in its context.
struct gxGeosDelete {
  GEOSContextHandle_t context = nullptr;  ///< of the geometry, which must outlive it
  void operator()(GEOSGeometry* geometry) const { GEOSGeom_destroy_r(context, geometry); }
};
/// A geometry that is destroyed by itself; its `gxGeos` must outlive it.
using gxGeosGeometry = std::unique_ptr<GEOSGeometry, gxGeosDelete>;

// ---- To GEOS ---------------------------------------------------------------------------------------

/// Returns a sequence of coordinates, filled in one copy, with the first point again at the end where `closed`.
/// Throws: BadParams with what GEOS said.
inline GEOSCoordSequence* gx_sequence(const gxGeos& geos, const std::vector<gxVector<2>>& points,
                                      bool closed) {
  const std::vector<gxVector<2>>* all = &points;
  std::vector<gxVector<2>> repeated;
  if (closed && !points.empty()) {
    repeated.reserve(points.size() + 1);
    repeated = points;
    repeated.push_back(points.front());
    all = &repeated;
  }
  if (all->size() > (std::numeric_limits<unsigned>::max)()) geos.fail("too many points");
  return geos.check(
      GEOSCoordSeq_copyFromBuffer_r(geos.context(), reinterpret_cast<const double*>(all->data()),
                                    static_cast<unsigned>(all->size()), 0, 0),
      "coordinates");
}

/// Returns a ring of GEOS, which repeats its first point.  A ring there has no points or at least 3, so a
/// single point is repeated once more.
/// Throws: BadParams with what GEOS said.
inline gxGeosGeometry gfGeosRing(const gxGeos& geos, const std::vector<gxVector<2>>& points) {
  std::vector<gxVector<2>> longer;
  if (points.size() == 1) longer.assign(2, points.front());
  GEOSCoordSequence* const sequence = gx_sequence(geos, longer.empty() ? points : longer, true);
  return {geos.check(GEOSGeom_createLinearRing_r(geos.context(), sequence), "ring"), {geos.context()}};
}

/// Returns a line string of the points of an open contour, or a ring of those of a closed one.
///  - a single point of an open contour is repeated once, as lines have none or at least 2 points there
/// Throws: BadParams with what GEOS said.
inline gxGeosGeometry gfToGeos(const gxGeos& geos, const gxContour& contour) {
  if (contour.isClosed()) return gfGeosRing(geos, contour.points());
  std::vector<gxVector<2>> longer;
  if (contour.size() == 1) longer.assign(2, contour[0]);
  GEOSCoordSequence* const sequence =
      gx_sequence(geos, longer.empty() ? contour.points() : longer, false);
  return {geos.check(GEOSGeom_createLineString_r(geos.context(), sequence), "line string"),
          {geos.context()}};
}

/// Takes geometries out of their owners, for a call that takes all of them over, also when it fails.
inline std::vector<GEOSGeometry*> gx_released(std::vector<gxGeosGeometry>& geometries) {
  std::vector<GEOSGeometry*> pointers;
  pointers.reserve(geometries.size());
  for (gxGeosGeometry& geometry : geometries) pointers.push_back(geometry.release());
  return pointers;
}

/// Returns a polygon of one part of a region.  Throws: BadParams with what GEOS said, for a hole with points in
/// an outline without.
inline gxGeosGeometry gx_geosPart(const gxGeos& geos, const gxRegionRings& part) {
  gxGeosGeometry outline = gfGeosRing(geos, *part.outline);
  std::vector<gxGeosGeometry> holes;
  holes.reserve(part.holes.size());
  for (const std::vector<gxVector<2>>* hole : part.holes) holes.push_back(gfGeosRing(geos, *hole));
  std::vector<GEOSGeometry*> pointers = gx_released(holes);
  return {geos.check(GEOSGeom_createPolygon_r(geos.context(), outline.release(), pointers.data(),
                                              static_cast<unsigned>(pointers.size())),
                     "polygon"),
          {geos.context()}};
}

/// Returns a multi-polygon of regions with their holes; islands in holes are polygons of their own, behind the
/// region that they lie in.  No order or direction is changed: GEOS asks for none.
/// Throws: BadParams with what GEOS said, and "holes nest too deeply"; gxBadPointer for a null hole.
/// Cost: O(points).
inline gxGeosGeometry gfToGeos(const gxGeos& geos, const std::vector<gxRegion>& regions) {
  std::vector<gxGeosGeometry> polygons;
  for (const gxRegion& region : regions) {
    for (const gxRegionRings& part : gfRingsOf(region)) polygons.push_back(gx_geosPart(geos, part));
  }
  std::vector<GEOSGeometry*> pointers = gx_released(polygons);
  return {geos.check(GEOSGeom_createCollection_r(geos.context(), GEOS_MULTIPOLYGON, pointers.data(),
                                                 static_cast<unsigned>(pointers.size())),
                     "multi-polygon"),
          {geos.context()}};
}

/// Returns the polygon of a region; a multi-polygon where it has islands in its holes.
/// Throws: as for several regions.
inline gxGeosGeometry gfToGeos(const gxGeos& geos, const gxRegion& region) {
  const std::vector<gxRegionRings> parts = gfRingsOf(region);
  if (parts.size() == 1) return gx_geosPart(geos, parts.front());
  return gfToGeos(geos, std::vector<gxRegion>{region});
}

// ---- From GEOS -------------------------------------------------------------------------------------

/// Returns the points of a line string or ring; a last point that repeats the first is left out with `closed`.
/// Coordinates beyond x and y are dropped.
/// Throws: BadParams for any other geometry.
inline std::vector<gxVector<2>> gfPointsFromGeos(const gxGeos& geos, const GEOSGeometry& line,
                                                 bool closed) {
  const GEOSCoordSequence* sequence =
      geos.check(GEOSGeom_getCoordSeq_r(geos.context(), &line), "points of a geometry that is no line");
  unsigned size = 0;
  if (GEOSCoordSeq_getSize_r(geos.context(), sequence, &size) == 0) geos.fail("number of points");
  std::vector<gxVector<2>> points(size);
  if (size > 0 && GEOSCoordSeq_copyToBuffer_r(geos.context(), sequence,
                                              reinterpret_cast<double*>(points.data()), 0, 0) == 0) {
    geos.fail("coordinates");
  }
  if (closed && points.size() > 1 && points.back() == points.front()) points.pop_back();
  return points;
}

/// Returns the region of one polygon.  Throws: BadParams with what GEOS said.
inline gxRegion gx_regionFromGeosPolygon(const gxGeos& geos, const GEOSGeometry& polygon) {
  const GEOSGeometry* outline = geos.check(GEOSGetExteriorRing_r(geos.context(), &polygon), "outline");
  const int count = GEOSGetNumInteriorRings_r(geos.context(), &polygon);
  std::vector<std::vector<gxVector<2>>> holes;
  for (int i = 0; i < count; ++i) {
    const GEOSGeometry* hole = geos.check(GEOSGetInteriorRingN_r(geos.context(), &polygon, i), "hole");
    holes.push_back(gfPointsFromGeos(geos, *hole, true));
  }
  return gfRegionOfRings(gfPointsFromGeos(geos, *outline, true), holes);
}

/// Returns the regions of a polygon, of a multi-polygon, or of the polygons in a collection, in their order.
/// Holes are taken as they are, also those that touch their outline.
///  - a ring: the region inside; points and lines in a collection: passed over
/// Throws: BadParams for a point or a line alone, and with what GEOS said.
/// Cost: O(points).
inline std::vector<gxRegion> gfRegionsFromGeos(const gxGeos& geos, const GEOSGeometry& geometry) {
  std::vector<gxRegion> regions;
  std::vector<const GEOSGeometry*> open{&geometry};
  while (!open.empty()) {
    const GEOSGeometry* one = open.back();
    open.pop_back();
    switch (GEOSGeomTypeId_r(geos.context(), one)) {
      case GEOS_POLYGON: regions.push_back(gx_regionFromGeosPolygon(geos, *one)); break;
      case GEOS_LINEARRING: regions.emplace_back(gfPointsFromGeos(geos, *one, true)); break;
      case GEOS_MULTIPOLYGON:
      case GEOS_GEOMETRYCOLLECTION:
        for (int i = GEOSGetNumGeometries_r(geos.context(), one) - 1; i >= 0; --i) {
          open.push_back(geos.check(GEOSGetGeometryN_r(geos.context(), one, i), "part"));
        }
        break;
      default:
        if (one == &geometry) geos.fail("regions of a geometry that has no area");
    }
  }
  return regions;
}
