/// The frame in which gauges compute: around the middle of the points, at a size of about 1.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/outline/box.h>
#include <velstd/vector.h>

#include <span>

/// Tells whether every coordinate is finite; true for no points.  Cost: O(n), less than 1 ns a point.
GXSHAPE_API bool gx_allFinite(std::span<const gxVector<2>> points);

/// Returns the box of the points; empty for none.  A NaN coordinate is passed over.
GXSHAPE_API gx_Box gx_boxOf(std::span<const gxVector<2>> points);

/// Puts the box of the points into `box` and returns true where every coordinate is finite; else returns
/// false, with anything in `box`.  Cost: one pass.
GXSHAPE_API bool gx_finiteBoxOf(std::span<const gxVector<2>> points, gx_Box& box);

/// Tells, exactly, whether all points lie on one line; true for fewer than 3 distinct ones.
/// Cost: O(1) for nearly all shapes, O(n) where the answer is yes.
GXSHAPE_API bool gx_onOneLine(std::span<const gxVector<2>> points);

/// A frame with its origin in the middle of a box and a scale that is a power of two, in which the
/// longer half side of the box lies in [1, 2).  Squares, areas and fourth powers are then far from both
/// ends of the range, whether coordinates are 1e300 or 1e-300, and an offset of 1e6 costs no digits.
/// Scaling by a power of two rounds nothing (what comes back as a subnormal excepted).
///
/// The box must be finite and hold a point; that of a single point has scale 1.
class GXSHAPE_API gx_Frame {
 public:
  gx_Frame() = default;
  explicit gx_Frame(const gx_Box& box);
  explicit gx_Frame(std::span<const gxVector<2>> points) : gx_Frame(gx_boxOf(points)) {}

  /// Maps a point into the frame.
  gxVector<2> to(const gxVector<2>& p) const {
    return {(p.x() - middle_.x()) * up_ * upAgain_, (p.y() - middle_.y()) * up_ * upAgain_};
  }
  /// Maps a point of the frame back.
  gxVector<2> from(const gxVector<2>& p) const {
    return {p.x() * down_ * downAgain_ + middle_.x(), p.y() * down_ * downAgain_ + middle_.y()};
  }
  /// Scales a point without moving it: exact, and no difference of scaled points overflows.
  gxVector<2> scaled(const gxVector<2>& p) const {
    return {p.x() * up_ * upAgain_, p.y() * up_ * upAgain_};
  }
  /// Scales a point back.
  gxVector<2> unscaled(const gxVector<2>& p) const {
    return {p.x() * down_ * downAgain_, p.y() * down_ * downAgain_};
  }
  /// Maps a length into the frame, and back.
  double lengthTo(double length) const { return length * up_ * upAgain_; }
  double lengthFrom(double length) const { return length * down_ * downAgain_; }
  /// Maps an area back; infinite or 0 where it leaves the range.
  double areaFrom(double area) const { return lengthFrom(lengthFrom(area)); }

  /// The two factors of the scale, for loops that scale in lanes of their own: first times up(), then upAgain().
  double up() const { return up_; }
  double upAgain() const { return upAgain_; }

  /// Returns the middle of the box, the origin of the frame.
  const gxVector<2>& middle() const { return middle_; }

 private:
  gxVector<2> middle_;
  // The scale is the product of two factors: from 2^1074 to 2^-1024, which one double cannot hold.
  double up_ = 1.0;
  double upAgain_ = 1.0;
  double down_ = 1.0;
  double downAgain_ = 1.0;
};
