/// The convex hull as gauges use it: scaled, with calipers around it.
#pragma once

#include <cntr/export.h>
#include <gauge/internal/frame.h>
#include <velstd/vector.h>

#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

/// A rectangle found on a hull, in the hull's scale.
struct gx_HullRectangle {
  gxVector<2> centre;
  gxVector<2> along;  // of length 1, the direction of the edge
  double onward = 0.0;
  double across = 0.0;
  long edge = -1;
};

/// A width of a hull: between two corners, or between an edge and a corner.
struct gx_HullWidth {
  double width = 0.0;
  std::size_t from = 0;  // the corner, or the edge's first end (the next corner is the other)
  std::size_t to = 0;    // the corner on the other side
};

/// The convex hull of finite points, at least one, scaled by a power of two to a size of about 1 (not
/// moved, so that differences of corners are those of the points, bit by bit but for the scale).
class GXSHAPE_API gx_Hull {
 public:
  explicit gx_Hull(std::span<const gxVector<2>> points);
  gx_Hull(std::span<const gxVector<2>> points, const gx_Box& box);

  /// The corners as `gfConvexHull` gives them.
  const std::vector<gxVector<2>>& corners() const { return corners_; }
  std::size_t size() const { return corners_.size(); }
  const gxVector<2>& scaled(std::size_t i) const { return scaled_[i]; }
  /// Returns the edge from corner i to the next.
  gxVector<2> edge(std::size_t i) const { return scaled_[next(i)] - scaled_[i]; }
  /// Returns a vector in the direction of that edge whose square is far from the end of the range.
  gxVector<2> direction(std::size_t i) const {
    const gxVector<2> e = edge(i);
    // A corner may be as near to its neighbour as 2^-1074 of the size; scaled up it keeps its direction.
    const bool tiny = std::fabs(e.x()) < 0x1p-400 && std::fabs(e.y()) < 0x1p-400;
    return tiny ? e * 0x1p600 : e;
  }
  std::size_t next(std::size_t i) const { return i + 1 == scaled_.size() ? 0 : i + 1; }
  const gx_Frame& frame() const { return frame_; }

  // What follows is in the hull's scale.

  /// Returns the length all around, twice that of a segment.
  double perimeter() const;
  double area() const;
  /// Returns the rectangles of least area and of least width; the hull has at least 3 corners.
  gx_HullRectangle leastArea() const;
  gx_HullRectangle leastWidth() const;
  /// Returns the pair of corners farthest from each other, the first of equal ones.
  gx_HullWidth greatest() const;
  /// Returns the least width, between an edge and a corner; the hull has at least 3 corners.
  gx_HullWidth least() const;
  /// Returns the width in the direction of a vector of length 1.
  double along(const gxVector<2>& direction) const;

 private:
  template <class Visit>
  void aroundWithCalipers(const Visit& visit) const;
  template <class Better>
  gx_HullRectangle rectangle(const Better& size) const;

  gx_Frame frame_;
  std::vector<gxVector<2>> corners_;
  std::vector<gxVector<2>> scaled_;
};
