/// How far measures of an outline are uncertain, from the noise of its points.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <iosfwd>
#include <limits>
#include <span>

/// The noise of the points.
struct GXSHAPE_API gxEdgeNoise {
  /// Standard deviation of each coordinate, in the unit of the points; 0 or more.
  double sigma = 0.0;
  /// How far along the outline the noise of two points is alike: its correlation falls as
  /// exp(−arc length / correlationLength).  0: every point by itself.
  double correlationLength = 0.0;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxEdgeNoise& noise);

/// Standard deviations of measures, in the unit of the points and its square; 0 or more.
struct GXSHAPE_API gxUncertainty {
  gxStatus status = gxStatus::eOk;
  double length = std::numeric_limits<double>::quiet_NaN();  ///< of the outline
  /// By how much noise lengthens the outline on average: it makes a dense outline jagged.
  double lengthBias = std::numeric_limits<double>::quiet_NaN();
  double area = std::numeric_limits<double>::quiet_NaN();                ///< NaN for a poly-line
  double equivalentDiameter = std::numeric_limits<double>::quiet_NaN();  ///< likewise
  /// Of the centre of mass of an outline, of the mean position by length of a poly-line.
  double centreX = std::numeric_limits<double>::quiet_NaN();
  double centreY = std::numeric_limits<double>::quiet_NaN();
  double centreCovariance = std::numeric_limits<double>::quiet_NaN();  ///< of its x and y
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxUncertainty& result);

/// Returns the uncertainty of length, area, equivalent diameter and centre by first-order propagation:
/// the root of gᵀ C g with the gradient g of the measure and the covariance C of the points.  The bias of
/// the length is of second order: the sum over the edges of the variance across the edge, over twice its
/// length.  Noise as large as the edges are long is beyond both.
///  - no points: `eEmpty`; a NaN or infinite coordinate: `eNotFinite`; a noise that is negative, NaN or
///    infinite: `eBadArgument`; all numbers NaN
///  - an outline without area: `eFlat`; diameter and centre NaN, the other numbers as they come
///  - an edge of no length has no direction, and counts 0 in the gradient of the length; the bias is then
///    +infinity, unless sigma is 0
/// Cost: O(n), correlated or not.
GXSHAPE_API gxUncertainty gfUncertainty(std::span<const gxVector<2>> points, bool closed,
                                        const gxEdgeNoise& noise);
GXSHAPE_API gxUncertainty gfUncertainty(const gxContour& contour, const gxEdgeNoise& noise);
