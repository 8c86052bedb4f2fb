/// The largest circle within a shape.
#pragma once

#include <cntr/export.h>
#include <cntr/regionst.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <array>
#include <cstddef>
#include <iosfwd>
#include <limits>
#include <span>

/// The largest circle in the material.
struct GXSHAPE_API gxInscribedCircle {
  gxStatus status = gxStatus::eEmpty;
  gxVector<2> centre{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  double radius = 0.0;
  /// How much larger the largest circle may be at most: radius ≤ largest ≤ radius + gap.
  double gap = 0.0;
  /// The nearest place of the border.
  gxPlace touch;
  /// Which region of a set it lies in.
  long region = -1;
  /// How often the nearest edge was looked for.
  std::size_t looks = 0;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxInscribedCircle& circle);

/// Returns the largest circle that lies in the material (even-odd over outline, holes, islands) of an
/// outline or region, or of one region of a set; `gap` is at most `tolerance` times the radius, or 16 units in the last
/// place of the largest coordinate where that is more.
///
/// The radius is that of a circle around the rounded centre, by the nearest place of the border, so it
/// never reaches beyond the border but by rounding.  Where several places are equally good (a long
/// rectangle has a line of them), one of them.
///  - no points: `eEmpty`, radius 0, centre NaN;  a NaN or infinite coordinate: `eNotFinite`, all NaN
///  - an open contour: `eNotClosed`, all NaN
///  - no area: `eFlat`, radius 0 around the middle of the farthest pair of points
///  - a tolerance of 0, below 0 or NaN: `eBadArgument`, all NaN;  below 1e-12: as 1e-12
///  - the search ended after `maxLooks` looks for a nearest edge: `eCapped`, with the gap to the largest circle
///    in the box of the shape, which is all that is then known
/// Throws: gxBadPointer for a null handle; BadParams "holes nest too deeply".
/// Cost: some hundred looks of O(log n) each, and one for every few edges: O(n log n).
GXSHAPE_API gxInscribedCircle gfInscribedCircle(std::span<const gxVector<2>> outline,
                                                double tolerance = 1e-9,
                                                std::size_t maxLooks = 4'000'000);
GXSHAPE_API gxInscribedCircle gfInscribedCircle(const gxContour& contour, double tolerance = 1e-9,
                                                std::size_t maxLooks = 4'000'000);
GXSHAPE_API gxInscribedCircle gfInscribedCircle(const gxRegion& region, double tolerance = 1e-9,
                                                std::size_t maxLooks = 4'000'000);
GXSHAPE_API gxInscribedCircle gfInscribedCircle(const gxRegionSet& set, double tolerance = 1e-9,
                                                std::size_t maxLooks = 4'000'000);
