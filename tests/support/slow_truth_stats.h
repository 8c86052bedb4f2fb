/// The statistics of point lists, computed the slow and plain way; see slow_truth_contour.h.
#pragma once

#include <support/slow_truth_contour.h>
#include <velstd/ellipse.h>
#include <velstd/matrix.h>

#include <optional>

namespace slow {

/// Signed area, centre of mass, second moments about it.
struct Moments {
  double area = 0.0;
  gxVector<2> center;
  gxMatrix<2> matrix;
};

double area(const Points& points);
gxVector<2> centerOfMass(const Points& points);
/// Nothing where it is (0, 0) for want of area or points.
std::optional<gxVector<2>> centerIfAny(const Points& points);
Moments triangleMoments(const gxVector<2>& c, const gxVector<2>& p, const gxVector<2>& q);
Moments add(const Moments& first, const Moments& second);
Moments polygonMoments(const Points& points);
/// The moments of an outline that does not cross itself, by its corners alone, good to the last digit: sums
/// over the edges in 113-bit arithmetic.  What the triangles have to add up to.
Moments momentsByGreen(const Points& points);
/// How far the moments of these points may lie from each other where they are summed in two ways: `share` of
/// the power of `reach`, the farthest that a point lies from the apex of the triangles.  Far from the origin
/// the coordinates' own rounding comes in, once a point.
struct MomentsRounding {
  double reach = 0.0;
  double share = 0.0;
};
MomentsRounding momentsRounding(const Points& points);
/// Tells whether the second moments of these points agree but for that, or in 13 digits of their trace.
bool nearMoments(const gxMatrix<2>& got, const gxMatrix<2>& want, const Points& points);
gxEllipse ellipseOf(const Moments& moments);
void fitEllipse(const Points& points, gxEllipse& ellipse, double& residual);
double standardDeviation(const std::vector<double>& values);

}  // namespace slow
