/// Infinite lines.
#pragma once

#include <velstd/export.h>
#include <velstd/persistent.h>
#include <velstd/point.h>
#include <velstd/vector.h>

/// An infinite line: a point on it and a direction, of any length.  The default is the x axis.
///
/// A line whose direction is (0, 0), such as the line through two equal points, has no direction:
/// it is parallel to every line, and stands for its one point.  Directions so long or so short that
/// products of them would overflow or underflow are kept scaled by a power of two, which changes
/// neither the line nor any answer.
class VELSTD_API gxLine : public gxPersistent {
 public:
  gxLine() noexcept : direction_(1.0, 0.0) {}
  /// Makes the line through a point along a direction of any length.
  gxLine(const gxVector<2>& point, const gxVector<2>& direction) noexcept
      : point_(point), direction_(direction) {
    const double size = (direction.x() < 0 ? -direction.x() : direction.x()) +
                        (direction.y() < 0 ? -direction.y() : direction.y());
    if (!(size >= kShortest && size <= kLongest)) scaleDirection_();
  }
  gxLine(const gxLine&) noexcept = default;
  gxLine& operator=(const gxLine& other) noexcept {
    point_ = other.point_;
    direction_ = other.direction_;
    mutating_();
    return *this;
  }
  ~gxLine() override;

  /// Return point and direction as they were given.
  const gxVector<2>& point() const noexcept { return point_; }
  const gxVector<2>& direction() const noexcept { return direction_; }

  /// The largest |sin| of the angle between two lines that count as parallel: well above what the
  /// rounding of two directions can make (about 3e-16), well below any angle that can be measured.
  static constexpr double kParallelSine = 1e-12;

  /// Tells whether |sin| of the angle between the lines is at most `kParallelSine`.
  ///  - a line without direction is parallel to every line
  ///  - a direction that holds a NaN is parallel to none
  bool isParallel(const gxLine& other) const;

  /// Returns the point where the lines meet, computed from differences of coordinates (so that it
  /// is as good far from the origin as near it) and from cross products good to 1.5 units in the
  /// last place.  Finite for finite lines.
  ///  - parallel within rounding, a line without direction, or meeting beyond the double range: the
  ///    point of this line nearest to the other line's point (see `proj`)
  ///  - lines that are parallel in the sense of `isParallel` but do meet give that far point
  ///  - NaN or infinity anywhere in either line gives (NaN, NaN)
  gxPoint intersect(const gxLine& other) const;

  /// Returns the orthogonal projection of the point on the line.
  ///  - a line without direction gives its one point
  ///  - where the projection exceeds the double range: the line's point
  ///  - NaN or infinity in the line or the point gives (NaN, NaN)
  gxPoint proj(const gxVector<2>& point) const;

  /// Returns the Euclidean distance of the point from the line, 0 or more.
  ///  - from the line's one point where it has no direction
  ///  - a NaN anywhere gives NaN, an infinity NaN or infinity; a distance beyond the double range
  ///    gives infinity
  double distToPoint(const gxVector<2>& point) const;

  /// Is true when points and directions are equal, number by number.
  friend bool operator==(const gxLine& a, const gxLine& b) {
    return a.point_ == b.point_ && a.direction_ == b.direction_;
  }

  void reInit() override;

 protected:
  void dispatchSerialize(gxArchive& archive) override;

 private:
  void serialize_(gxArchive& archive, unsigned char version);
  void scaleDirection_() noexcept;
  bool isFinite_() const;
  gxPoint intersectScaled_(const gxLine& other) const;
  gxPoint projScaled_(const gxVector<2>& point) const;

  // Between these, the squares and products of directions keep all their digits.
  static constexpr double kShortest = 1e-120;
  static constexpr double kLongest = 1e120;

  gxVector<2> point_;
  gxVector<2> direction_;
};
