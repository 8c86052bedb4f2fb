/// Positions along an outline or poly-line by the length of the way to them.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <cstddef>
#include <span>
#include <vector>

/// A way along the edges of an outline or poly-line, measured from point 0: along the edge from point 0
/// to point 1 first; the closing edge of an outline comes last, and ends at point 0 again.  The lengths
/// are summed with what rounding drops, and edges of no length are passed over.  It keeps a copy of the
/// points.
///
///  - no points: status `eEmpty`, length 0; places are none, points NaN
///  - a NaN or infinite coordinate: `eNotFinite`, length NaN; places are none, points NaN
///  - one point, or all equal: length 0; that point is at every length
///  - a way longer than the largest double: length +infinity, no place anywhere
/// Used by any number of threads at a time, as nothing changes.
class GXSHAPE_API gxArcLength {
 public:
  /// Measures the way along the points, once for all questions.
  gxArcLength(std::span<const gxVector<2>> points, bool closed);
  explicit gxArcLength(const gxContour& contour) : gxArcLength(contour.points(), contour.isClosed()) {}

  /// Return whether there is an answer, and what was given.
  gxStatus status() const { return status_; }
  bool isClosed() const { return closed_; }
  const std::vector<gxVector<2>>& points() const { return points_; }

  /// Returns the length of the whole way, in the unit of the points, 0 or more.
  double length() const { return total_; }
  /// Returns the length of the way to point i, which may be the number of points for the end of an
  /// outline's closing edge.
  double lengthTo(std::size_t i) const { return sums_[i]; }

  /// Returns the place at a length along the way.  An outline goes around, also backwards; a poly-line
  /// stops at its ends.  At the length of a vertex it is the end of the edge that arrives there.
  ///  - a NaN: no place
  /// Cost: O(log n).
  gxPlace placeAt(double length) const;
  /// Returns the point there; (NaN, NaN) where there is no place.
  gxVector<2> at(double length) const { return placeAt(length).point; }

  /// Returns the length of the way to a place, in [0, length()], by its edge and t alone.
  ///  - no place, or an edge that there is not: NaN
  double lengthAt(const gxPlace& place) const;

  /// Returns the part of the way from one length to another: both ends and the vertices between, no
  /// point twice running.  Of an outline, forward, across the start where `to` lies before `from`; equal
  /// lengths give the one point.  Of a poly-line with `to` before `from`, the part backwards.
  ///  - a NaN: no points
  std::vector<gxVector<2>> part(double from, double to) const;

 private:
  double wrapped_(double length) const;

  gxStatus status_ = gxStatus::eOk;
  bool closed_ = true;
  std::vector<gxVector<2>> points_;
  std::vector<double> sums_;  // of the lengths up to each point, and to the end of the closing edge
  double total_ = 0.0;
};
