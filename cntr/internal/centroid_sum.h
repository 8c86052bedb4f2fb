/// The sum of triangle centres behind the centre of mass.
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
};

/// Adds up all triangles of an outline of at least 1 point, in the order of its edges.
GXSHAPE_API gx_CentroidSum gx_sumCentroids(const std::vector<gxVector<2>>& points);
