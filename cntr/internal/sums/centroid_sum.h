/// The sum of triangle centres behind the centre of mass, and the area that comes with it.
#pragma once

#include <cntr/export.h>
#include <velstd/vector.h>

#include <vector>

/// Twice the signed area of an outline, and the centres of the triangles it makes with its first
/// point, each times twice its signed area, added up; relative to the first point.
struct gx_CentroidSum {
  double weight = 0.0;
  double x = 0.0;
  double y = 0.0;
  // Whether `weight` holds every triangle: those too small to count were all of area 0.
  bool whole = true;
};

/// Adds up all triangles of an outline of at least 1 point, in the order of its edges.
GXSHAPE_API gx_CentroidSum gx_sumCentroids(const std::vector<gxVector<2>>& points);

/// The centre of mass of an outline, bit for bit `gf_CenterOfMass`, and its area where the same sum
/// gives it, bit for bit `gf_Area`.
struct gx_CentreAndArea {
  gxVector<2> centre;
  bool hasCentre = false;  // false where it is (0, 0) for want of area or points
  double area = 0.0;
  bool areaIsKnown = false;
};
GXSHAPE_API gx_CentreAndArea gx_centreAndArea(const std::vector<gxVector<2>>& points);
