/// Shapes whose measures are known exactly, and what they are.
#pragma once

#include <cntr/region.h>
#include <cntr/regionst.h>
#include <velstd/vector.h>

#include <string>
#include <vector>

/// A shape and its measures.  NaN: not given.
struct KnownShape {
  std::string name;
  std::vector<gxVector<2>> outline;
  std::vector<gxVector<2>> hole;    // none if empty
  std::vector<gxVector<2>> island;  // in the hole
  std::vector<gxVector<2>> second;  // another region, which makes a set of the two

  double area, filled, outer, total;
  int euler;
  double circularity, solidity, convexity;
  double feretMax, feretMin;
  double circleRadius;
  double rectangleLength, rectangleWidth;
  double inscribed;
  double hu1, hu2;
  double eccentricity;
  double wall;  // infinite for none

  /// The region of outline, hole and island.
  gxRegion region() const;
  /// The set of that region and of the second one, if there is one.
  gxRegionSet set() const;
};

/// The table: squares, triangles, regular and pointed polygons, letters, washers, a set.
const std::vector<KnownShape>& knownShapes();

/// The same shape, turned by the angle of the 3-4-5 triangle, scaled and moved (in this order).
KnownShape placed(const KnownShape& shape, bool turn, double scale, const gxVector<2>& offset);

/// A regular polygon of radius 1 around the origin with its first corner on the x axis.
std::vector<gxVector<2>> regularPolygon(int corners);
