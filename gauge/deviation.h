/// How far a shape deviates from a golden one, and where it is out of tolerance.
#pragma once

#include <cntr/export.h>
#include <gauge/borders.h>
#include <gauge/places.h>

#include <iosfwd>
#include <limits>
#include <span>
#include <vector>

/// What is allowed, and where samples are taken.
struct GXSHAPE_API gxDeviationOptions {
  /// The least and the greatest deviation within tolerance.
  double lower = -std::numeric_limits<double>::infinity();
  double upper = std::numeric_limits<double>::infinity();
  /// The greatest arc length between two samples; 0: the samples are the vertices.
  double spacing = 0.0;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxDeviationOptions& options);

/// A stretch of the shape's border that is out of tolerance, on one side throughout.
struct GXSHAPE_API gxDeviationStretch {
  gxPlace from;
  gxPlace to;
  gxPlace worst;                                                ///< the first of equal ones
  double deviation = std::numeric_limits<double>::quiet_NaN();  ///< there
  double length = 0.0;                                          ///< of the stretch
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxDeviationStretch& stretch);

/// One sample of the deviation.
struct GXSHAPE_API gxDeviationSample {
  gxPlace place;
  double deviation = std::numeric_limits<double>::quiet_NaN();
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxDeviationSample& sample);

/// The signed deviation of a shape's border: its distance from the golden border, positive outside the
/// golden material (a burr) and negative inside it (a chip).
struct GXSHAPE_API gxDeviation {
  gxStatus status = gxStatus::eOk;
  double deviationMax = std::numeric_limits<double>::quiet_NaN();
  double deviationMin = std::numeric_limits<double>::quiet_NaN();
  /// The root mean square over the length of the border.
  double deviationRms = std::numeric_limits<double>::quiet_NaN();
  gxPlace maxPlace;
  gxPlace minPlace;
  /// The part of the length that is out of tolerance, from 0 to 1.
  double outOfTolerance = std::numeric_limits<double>::quiet_NaN();
  /// The stretches out of tolerance in the order of the walk; one across the start of a ring comes last
  /// of that ring.
  std::vector<gxDeviationStretch> stretches;
  std::vector<gxDeviationSample> samples;

  /// Tells whether the whole border is within tolerance.
  bool within() const { return status == gxStatus::eOk && stretches.empty(); }
  /// Returns the deviation below which that share of the samples lies, as `gfPercentile`.
  double percentile(double share) const;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxDeviation& deviation);

/// Returns the signed deviation of `shape` from `golden`, over all points of the edges.
///
/// Inside is where the closed rings of `golden` go around an odd number of times.  Of a golden shape of
/// open poly-lines alone, the deviation is positive on the right of their direction and negative on the
/// left (x towards y is left).
///
/// Extremes, mean and stretches are exact within rounding: the nearest edge of the golden shape is known
/// for every point of the border, and the distance along a stretch is linear or the root of a
/// quadratic.  Samples come ring by ring: of the vertices each, by index; with a spacing s, on a ring of
/// length L at arc lengths 0, L / k, 2 L / k … with k = ceil(L / s), of an open ring its end, too.
///  - one of them has no points: `eEmpty`;  a NaN or infinite coordinate: `eNotFinite`
///  - a lower limit above the upper one, a NaN, a spacing that is negative or asks for more than 2^31
///    samples: `eBadArgument`.  All these: numbers NaN, lists empty
///  - a shape of length 0 (points): the mean counts every point once
/// Cost: nearly O((n + m) log m) for shapes near each other; a piece of the shape from which much of the
/// golden border is equally far costs as much as that part has edges.
GXSHAPE_API gxDeviation gfDeviation(const gxBorders& shape, const gxBorders& golden,
                                    const gxDeviationOptions& options = {});

/// Returns the value below which that share of the values lies, between the sorted values by linear
/// interpolation (definition 7 of R. Hyndman and Y. Fan, "Sample quantiles in statistical packages",
/// 1996): 0 gives the least, 0.5 the median, 1 the greatest.
///  - no values, a NaN among them, or a share outside of [0, 1]: NaN
GXSHAPE_API double gfPercentile(std::span<const double> values, double share);
