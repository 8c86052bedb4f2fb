/// The statistics of point lists, computed the slow and plain way; see slow_truth_contour.h.
#pragma once

#include <support/slow_truth_contour.h>
#include <velstd/ellipse.h>
#include <velstd/matrix.h>

namespace slow {

/// Signed area, centre of mass, second moments about it.
struct Moments {
  double area = 0.0;
  gxVector<2> center;
  gxMatrix<2> matrix;
};

double area(const Points& points);
gxVector<2> centerOfMass(const Points& points);
Moments triangleMoments(const gxVector<2>& c, const gxVector<2>& p, const gxVector<2>& q);
Moments add(const Moments& first, const Moments& second);
Moments polygonMoments(const Points& points);
gxEllipse ellipseOf(const Moments& moments);
void fitEllipse(const Points& points, gxEllipse& ellipse, double& residual);
double standardDeviation(const std::vector<double>& values);

}  // namespace slow
