/// Lines, circles and ellipses fitted to points of which some belong to something else.
#pragma once

#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/angle.h>
#include <velstd/vector.h>

#include <array>
#include <cstddef>
#include <iosfwd>
#include <limits>
#include <span>
#include <vector>

/// How points count.
enum class gxFitWeights : int {
  eLeastSquares = 0,  ///< all alike
  eHuber = 1,         ///< beyond 1.345 standard deviations by their distance, not its square
  eTukey = 2,         ///< less and less, and beyond 4.685 standard deviations not at all
  eConsensus = 3,     ///< the inliers alike, the others not at all
};
/// Prints "least squares", "huber", "tukey" or "consensus".
GXSHAPE_API std::ostream& operator<<(std::ostream& out, gxFitWeights weights);

/// What a robust fit is asked for.
struct GXSHAPE_API gxRobustOptions {
  gxFitWeights weights = gxFitWeights::eTukey;
  /// A point is an inlier up to this distance; 0: up to 2.5 standard deviations, estimated from the median
  /// distance from the start.
  double inlierLimit = 0.0;
  /// Of the random samples that the start is chosen from; the same seed, the same bits.
  long seed = 1;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxRobustOptions& options);

/// What all fits say about themselves.
struct GXSHAPE_API gxFitQuality {
  gxStatus status = gxStatus::eOk;
  /// The standard deviation of the points from the shape: √(Σe² / (n − p)) over the points with weight; NaN
  /// where there are no more points than unknowns.
  double deviation = std::numeric_limits<double>::quiet_NaN();
  /// Root mean square and greatest distance of the inliers.
  double residualRms = std::numeric_limits<double>::quiet_NaN();
  double residualMax = std::numeric_limits<double>::quiet_NaN();
  /// The indices of the points that belong to the shape, ascending.
  std::vector<std::size_t> inliers;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxFitQuality& quality);

/// A line through `point`, the weighted mean of the points.
struct GXSHAPE_API gxRobustLine : gxFitQuality {
  gxVector<2> point{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  gxRadian angle{std::numeric_limits<double>::quiet_NaN()};       ///< in (−π/2, π/2]
  double offsetError = std::numeric_limits<double>::quiet_NaN();  ///< standard error across, at `point`
  double angleError = std::numeric_limits<double>::quiet_NaN();
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxRobustLine& line);

/// A circle.
struct GXSHAPE_API gxRobustCircle : gxFitQuality {
  gxVector<2> centre{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  double radius = std::numeric_limits<double>::quiet_NaN();
  double centreXError = std::numeric_limits<double>::quiet_NaN();  ///< standard errors
  double centreYError = std::numeric_limits<double>::quiet_NaN();
  double radiusError = std::numeric_limits<double>::quiet_NaN();
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxRobustCircle& circle);

/// An ellipse.
struct GXSHAPE_API gxRobustEllipse : gxFitQuality {
  gxVector<2> centre{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  double a = std::numeric_limits<double>::quiet_NaN();       ///< the longer semi-axis
  double b = std::numeric_limits<double>::quiet_NaN();       ///< the shorter one
  gxRadian angle{std::numeric_limits<double>::quiet_NaN()};  ///< of the longer one, in (−π/2, π/2]
  double centreXError = std::numeric_limits<double>::quiet_NaN();  ///< standard errors
  double centreYError = std::numeric_limits<double>::quiet_NaN();
  double aError = std::numeric_limits<double>::quiet_NaN();
  double bError = std::numeric_limits<double>::quiet_NaN();
  double angleError = std::numeric_limits<double>::quiet_NaN();
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxRobustEllipse& ellipse);

/// Fit a line, a circle, an ellipse by orthogonal distance.  Robust weights start from the best of some
/// hundred shapes through a few random points each, that with the least median distance; less than half
/// of the points, however far off, do no harm then.
///
///  - no points: `eEmpty`;  a NaN or infinite coordinate: `eNotFinite`;  an inlier limit that is negative or
///    NaN: `eBadArgument`.  All these: numbers NaN, no inliers
///  - too few distinct points, or such as leave an unknown open: `eUndetermined`, numbers NaN.  A line needs
///    2, a circle 3 that are not on a line, an ellipse 5; points on two parallel lines leave the length of an
///    ellipse open
///  - as many points as unknowns: `deviation` and standard errors NaN
///  - a line fitted to points that are spread alike in all directions: `eUndetermined`, with the numbers of
///    the line at angle 0
///  - a circle no better than the line through the same points, an ellipse no better than the circle or the
///    line (as many inliers there and no larger a deviation): `eWorse`, with its numbers
///  - points exactly on the shape: deviation and standard errors 0
/// Standard errors are those of independent noise of one size in all inliers: the root of the diagonal of
/// s² (JᵀJ)⁻¹, with robust weights times (Σψ² / (n − p)) / (mean ψ′)², ψ in units of s (P. Huber, "Robust
/// Statistics", 1981).
/// The result depends on nothing but the arguments.
/// Cost: O(n) a round, some tens of rounds, and some hundred medians over at most 500 of the points.
GXSHAPE_API gxRobustLine gfRobustLine(std::span<const gxVector<2>> points,
                                      const gxRobustOptions& options = {});
GXSHAPE_API gxRobustCircle gfRobustCircle(std::span<const gxVector<2>> points,
                                          const gxRobustOptions& options = {});
GXSHAPE_API gxRobustEllipse gfRobustEllipse(std::span<const gxVector<2>> points,
                                            const gxRobustOptions& options = {});
