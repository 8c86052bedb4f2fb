/// The protected operations of shapes, for tests that look inside.
#pragma once

#include <cntr/contour.h>
#include <cntr/region.h>
#include <cntr/regionst.h>

#include <vector>

/// A contour whose protected operations can be called.
class ExposedContour : public gxContour {
 public:
  using gxContour::gxContour;
  ExposedContour() = default;
  explicit ExposedContour(const gxContour& contour) : gxContour(contour) {}

  using gxContour::checkEmptyContour;
  using gxContour::cleanCacheInfo;
  using gxContour::intersections;
  using gxContour::lineSegs;
  using gxContour::makeDataConsistentWithPoints;
  using gxContour::makePointsConsistentWithData;
  using gxContour::medianFeatureSize;
  using gxContour::setPoints;
  using gxContour::validLine;
};

/// A region whose protected operations can be called.  Every constructor goes through a plain
/// region: the contour is a virtual base, which this class would otherwise build itself, empty.
class ExposedRegion : public gxRegion {
 public:
  ExposedRegion() = default;
  explicit ExposedRegion(const gxRegion& region) { gxRegion::operator=(region); }
  explicit ExposedRegion(const std::vector<gxVector<2>>& points,
                         gxContourDefs::IntersectionMode mode = gxContourDefs::eNone)
      : ExposedRegion(gxRegion(points, mode)) {}

  using gxContour::lineSegs;
  using gxContour::makeDataConsistentWithPoints;
  using gxContour::makePointsConsistentWithData;
  using gxContour::medianFeatureSize;
  using gxContour::setPoints;
  using gxContour::validLine;
  using gxRegion::checkEmptyContour;
  using gxRegion::cleanCacheInfo;
  using gxRegion::intersections;
  std::vector<gxVector<2>> intersections(const gxLineSeg& seg, std::vector<int>& edges,
                                         bool countEndContacts) const {
    return gxContour::intersections(seg, edges, countEndContacts);
  }
};

/// The operations that regions keep for derived classes, of any region.
class ProtectedOfRegions : public gxRegion {
 public:
  using gxRegion::insideCount;
  using gxRegion::outerHullRegularize;
  using gxRegion::splice;
};
struct gx_RegionInside {
  static long insideCount(const gxRegion& region, const gxVector<2>& point, bool bothWays) {
    return (region.*(&ProtectedOfRegions::insideCount))(point, bothWays);
  }
  static void outerHullRegularize(const gxRegion& region, gxRegion& result, bool hull) {
    (region.*(&ProtectedOfRegions::outerHullRegularize))(result, hull);
  }
  static void splice(const gxRegion& region, const gxRegion& other, gxRegion& result) {
    (region.*(&ProtectedOfRegions::splice))(other, result);
  }
};

/// A region set whose protected operations can be called.
class ExposedRegionSet : public gxRegionSet {
 public:
  ExposedRegionSet() = default;
  explicit ExposedRegionSet(const gxRegionSet& set) : gxRegionSet(set) {}

  using gxRegionSet::checkEmptyRegionSet;
  using gxRegionSet::cleanCacheInfo;
  using gxRegionSet::makeDataConsistentWithPoints;
  using gxRegionSet::makePointsConsistentWithData;
  using gxRegionSet::outerHullRegularize;
  using gxRegionSet::setRegions;
};

/// The operations that sets keep for derived classes, of any set.
struct gx_RegionSetInside {
  static void outerHullRegularize(const gxRegionSet& set, gxRegionSet& result, bool hull) {
    (set.*(&ExposedRegionSet::outerHullRegularize))(result, hull);
  }
};
