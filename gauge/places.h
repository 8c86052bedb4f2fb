/// What all gauges share: how an answer is marked, and how a place on a border is given.
#pragma once

#include <cntr/export.h>
#include <velstd/vector.h>

#include <cstdint>
#include <iosfwd>
#include <limits>

/// What an answer is worth.  A gauge never throws for what a shape is like: it answers, and says here
/// what kind of answer that is.  The numbers are frozen; new ones are appended.
enum class gxStatus : std::int8_t {
  eOk = 0,
  eEmpty = 1,         ///< there are no points: sizes 0, ratios and places NaN
  eNotFinite = 2,     ///< a coordinate is NaN or infinite: every number NaN, no place
  eBadArgument = 3,   ///< an argument makes no sense (a tolerance of 0, below 0 or NaN)
  eNotClosed = 4,     ///< an open contour was asked for what only an outline has
  eFlat = 5,          ///< all points lie on one line: the numbers are those of a shape without area
  eNone = 6,          ///< there is nothing of the kind asked for
  eUndetermined = 7,  ///< the data do not determine the answer
  eUnbounded = 8,     ///< the best value is only reached at infinity
  eWorse = 9,         ///< a simpler model explains the data as well
  eCapped = 10,       ///< the search ended at its cap of work; the answer says how far off it may be
  eNotOnGrid = 11,    ///< coordinates that ought to be integers are not
  eNegative = 12,     ///< holes take away more than there is
  eCrossing = 13,     ///< the outline crosses itself; the answer reads it as the gauge documents
  eStopped = 14,      ///< the caller stopped the work
  eFailed = 20,       ///< an exception in a bulk form
};

/// Returns the status as one word, "ok", "not_finite" and so on; "unknown" for any other number.
GXSHAPE_API const char* gfStatusName(gxStatus status);
GXSHAPE_API std::ostream& operator<<(std::ostream& out, gxStatus status);

/// A place on the border of a shape.  By default no place: edge −1, the rest NaN.
///
/// Rings: −1 is the outline, k from 0 on the hole with that index.  What lies within holes is numbered
/// on: after the holes of a region come the holes of its first hole, those of its second, and so on,
/// then those one level deeper.  Edges are numbered as `gxContour` numbers them: on a closed ring edge
/// k ends at point k, and edge 0 is the closing edge.
struct GXSHAPE_API gxPlace {
  /// Which ring, as said above.
  long ring = -1;
  /// Which edge of it; −1 for no place.
  long edge = -1;
  /// How far along the edge, from 0 at its start to 1 at its end.
  double t = std::numeric_limits<double>::quiet_NaN();
  gxVector<2> point{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};

  /// Tells whether this is a place.
  bool valid() const { return edge >= 0; }
  /// Is true when all four are equal; a place that is none equals nothing.
  bool operator==(const gxPlace& other) const = default;
};
/// Prints "ring -1 edge 3 t 0.5 at (1, 2)", or "no place".
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxPlace& place);
