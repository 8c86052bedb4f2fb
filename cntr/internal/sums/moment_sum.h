/// The moments of a fan of triangles, as sums of polynomials.
#pragma once

#include <cntr/export.h>
#include <velstd/vector.h>

#include <vector>

/// Moments of a polygon about a point: the area, the first moments, the second moments; all of them
/// signed by the direction of the polygon.
struct gx_MomentSum {
  double area = 0.0;
  double x = 0.0;
  double y = 0.0;
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
};

/// Adds up the moments of the triangles that `apex` makes with the edges of the closed polygon of at
/// least 1 point.  Returns false where the sum may not stand for adding the triangles as records one
/// by one, in three passes by size: where less than a hundredth of their areas is left of them, where
/// the mean area is so small (1e-15) that records lose their common centre, or a number is not finite.
/// Not `wide`: without the widest registers of the machine; the bits are the same.
GXSHAPE_API bool gx_sumMoments(const std::vector<gxVector<2>>& points, const gxVector<2>& apex,
                               gx_MomentSum& sum, bool wide = true);
