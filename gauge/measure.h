/// Area, length, centre and box: what is asked of every shape of a file, at the least cost.
#pragma once

#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <cstddef>
#include <iosfwd>
#include <limits>
#include <span>

/// What `gfMeasure` finds.
struct GXSHAPE_API gxMeasure {
  static constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

  gxStatus status = gxStatus::eEmpty;
  double area = 0.0;  ///< in the square of the unit of length, holes taken away; NaN for an open contour
  double length = 0.0;             ///< of all borders, holes too
  gxVector<2> centre{kNaN, kNaN};  ///< of the area; of the border where there is no area
  gxVector<2> low{kNaN, kNaN};     ///< the corners of the upright box around the outlines
  gxVector<2> high{kNaN, kNaN};
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxMeasure& measure);

/// One ring, as `gfMeasure` takes it.
struct gxMeasuredRing {
  std::span<const gxVector<2>> points;
  bool isHole = false;
};
/// Prints "outline of 4 points" or "hole of 4 points".
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxMeasuredRing& ring);

/// Returns the measures of rings in the order outline, its holes, the next outline and so on, without an
/// object of the library around them.  Area, length and box are bit by bit those of `gfDescribe`, the
/// centre that of `gfMoments`.  `closed` false: a single poly-line.
///  - no rings, or a first one without points: status eEmpty, sizes 0, places NaN
///  - a coordinate that is not finite: eNotFinite, all NaN
///  - a poly-line: eNotClosed, area NaN, centre and length those of the line
///  - no area: eFlat, area 0, the centre of the border; holes larger than their outline: eNegative
/// Cost: O(n), about 15 ns a point; allocates once.
GXSHAPE_API gxMeasure gfMeasure(std::span<const gxMeasuredRing> rings, bool closed = true);
GXSHAPE_API gxMeasure gfMeasure(std::span<const gxVector<2>> points, bool closed = true);
