/// Outlines and poly-lines smoothed along their arc length.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <iosfwd>
#include <span>
#include <vector>

/// What is done about the shrinking of curved outlines under smoothing.
enum class gxSmoothCorrection : int {
  eNone = 0,    ///< nothing: a circle of radius R becomes one of R exp(−σ² / 2 R²)
  eShrink = 1,  ///< each point is moved back by what its curvature says that it was moved (D. Lowe,
                ///< "Organization of smooth image curves at multiple scales", 1989): circles keep R
};

/// One point for every point that came.
struct GXSHAPE_API gxSmoothed {
  gxStatus status = gxStatus::eOk;
  std::vector<gxVector<2>> points;  ///< in the order of the points that came
};
/// Prints how many points there are.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxSmoothed& smoothed);

/// Replaces every point by the mean of the curve around it, weighted with a Gaussian of standard
/// deviation `sigma` in arc length; the curve counts by length, not by vertices, however these lie.  An
/// outline goes around; a poly-line goes on beyond its ends turned by half a turn, so that they stay.
///  - sigma 0: the points as they are
///  - sigma negative, NaN or infinite: `eBadArgument`, no points
///  - no points: `eEmpty`; a NaN or infinite coordinate: `eNotFinite`; no points
///  - length 0: `eFlat`, the points as they are
///  - sigma above twice the length of an outline: all at its mean position; above three times that of a
///    poly-line: on the straight line between its ends
/// Error: 1e-9 of sigma.  Where some point has more than 1000 others within 8.5 sigma on a side,
/// stretches shorter than sigma / 64 are replaced by their mean first: 1e-4 of sigma.
/// Cost: O(n k), k vertices within 8.5 sigma, at most some thousand.
GXSHAPE_API gxSmoothed gfSmooth(std::span<const gxVector<2>> points, bool closed, double sigma,
                                gxSmoothCorrection correction = gxSmoothCorrection::eNone);
/// The same of a contour.
GXSHAPE_API gxSmoothed gfSmooth(const gxContour& contour, double sigma,
                                gxSmoothCorrection correction = gxSmoothCorrection::eNone);
