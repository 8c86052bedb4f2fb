/// Axis-aligned boxes.
#pragma once

#include <velstd/vector.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

/// An axis-aligned box as its four bounds; empty by default, and then it meets nothing.
///
/// What a NaN does is said by each way to make one: `add` and `ofPoints` pass it over, in `ofEdge` it
/// stays where it is the edge's start, `ofNumbers` makes an empty box of points among which there is one.
struct gx_Box {
  double lowX = std::numeric_limits<double>::infinity();
  double lowY = std::numeric_limits<double>::infinity();
  double highX = -std::numeric_limits<double>::infinity();
  double highY = -std::numeric_limits<double>::infinity();

  /// Returns the box of the points; a coordinate that is NaN is passed over.
  static gx_Box ofPoints(const std::vector<gxVector<2>>& points) {
    gx_Box box;
    for (const gxVector<2>& p : points) box.add(p);
    return box;
  }
  /// Returns the box of the points, an empty one where some coordinate is NaN.
  static gx_Box ofNumbers(const std::vector<gxVector<2>>& points) {
    gx_Box box;
    for (const gxVector<2>& p : points) {
      if (p.x() != p.x() || p.y() != p.y()) return {};
      box.add(p);
    }
    return box;
  }
  /// Returns the box of an edge, its start widened by its end: so a NaN at the start stays, and one at
  /// the end is passed over.
  static gx_Box ofEdge(const gxVector<2>& from, const gxVector<2>& to) {
    return {to.x() < from.x() ? to.x() : from.x(), to.y() < from.y() ? to.y() : from.y(),
            to.x() > from.x() ? to.x() : from.x(), to.y() > from.y() ? to.y() : from.y()};
  }

  /// Widens the box to hold a point; a coordinate that is NaN is passed over.
  void add(const gxVector<2>& p) {
    lowX = p.x() < lowX ? p.x() : lowX;
    lowY = p.y() < lowY ? p.y() : lowY;
    highX = p.x() > highX ? p.x() : highX;
    highY = p.y() > highY ? p.y() : highY;
  }
  void add(const gx_Box& o) {
    lowX = (std::min)(lowX, o.lowX);
    lowY = (std::min)(lowY, o.lowY);
    highX = (std::max)(highX, o.highX);
    highY = (std::max)(highY, o.highY);
  }
  /// Tells whether the boxes share a point, borders included.
  bool meets(const gx_Box& o) const {
    return highX >= o.lowX && o.highX >= lowX && highY >= o.lowY && o.highY >= lowY;
  }
  /// Tells whether the point lies in the box or on its border; false for NaN.
  bool holds(const gxVector<2>& p) const {
    return p.x() >= lowX && p.x() <= highX && p.y() >= lowY && p.y() <= highY;
  }
  /// Tells whether no coordinate is larger than `most`; false where a bound is NaN.
  bool isWithin(double most) const {
    return lowX >= -most && lowY >= -most && highX <= most && highY <= most;
  }
  /// Returns a bound below the square of the distance of any point of the box from `p`; exact but
  /// for rounding.
  double squareFrom(const gxVector<2>& p) const {
    const double dx = (std::max)((std::max)(lowX - p.x(), p.x() - highX), 0.0);
    const double dy = (std::max)((std::max)(lowY - p.y(), p.y() - highY), 0.0);
    return dx * dx + dy * dy;
  }
};

/// Returns how far points reach along a direction of length 1 and across it, seen from the first: x is
/// along, y across, to the left.
inline gx_Box gx_reachAlong(const gxVector<2>* points, std::size_t count, const gxVector<2>& along) {
  gx_Box reach;
  for (std::size_t i = 0; i < count; ++i) {
    const gxVector<2> w = points[i] - points[0];
    reach.add(gxVector<2>(w * along, gf_Cross(along, w)));
  }
  return reach;
}
