/// Line segments.
#pragma once

#include <velstd/export.h>
#include <velstd/line.h>
#include <velstd/persistent.h>
#include <velstd/vector.h>

/// The straight segment from one point to another.  By default both are (0, 0).
///
/// The order of the ends matters for `line`, which points from the first to the second, and for `==`; the
/// distance is the same either way but for the last bit.  Any coordinates are kept as given; distances are
/// right over the whole double range, also where plain products of differences would overflow or vanish.
class VELSTD_API gxLineSeg : public gxPersistent {
 public:
  /// Makes the segment of no length at (0, 0).
  gxLineSeg() noexcept = default;
  /// Makes the segment between two points.
  gxLineSeg(const gxVector<2>& p1, const gxVector<2>& p2) noexcept : p1_(p1), p2_(p2) {}
  /// Copies the ends.  Assigning counts as a change where the target tracks changes.
  gxLineSeg(const gxLineSeg&) noexcept = default;
  gxLineSeg& operator=(const gxLineSeg& other) noexcept {
    p1_ = other.p1_;
    p2_ = other.p2_;
    mutating_();
    return *this;
  }
  ~gxLineSeg() override;

  /// Return the ends.
  const gxVector<2>& p1() const noexcept { return p1_; }
  const gxVector<2>& p2() const noexcept { return p2_; }

  /// Returns the infinite line from p1 towards p2; without direction where the ends are equal.
  gxLine line() const noexcept;

  /// Returns the Euclidean distance from the point to the nearest point of the segment, 0 or more:
  /// the line's own distance where the foot of the perpendicular lies inside the segment, the
  /// distance to the nearer end elsewhere.
  ///  - a segment of equal ends: the distance to p1
  ///  - a NaN anywhere gives NaN
  double distToPoint(const gxVector<2>& point) const;

  /// Is true when the ends are equal, in their order and number by number: a segment is not equal to the
  /// same one walked the other way, and a NaN equals nothing.
  friend bool operator==(const gxLineSeg& a, const gxLineSeg& b) {
    return a.p1_ == b.p1_ && a.p2_ == b.p2_;
  }

  /// Makes it the default segment again.
  void reInit() override;

 protected:
  void dispatchSerialize(gxArchive& archive) override;

 private:
  void serialize_(gxArchive& archive, unsigned char version);

  gxVector<2> p1_;
  gxVector<2> p2_;
};
