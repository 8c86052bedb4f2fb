/// Line segments.
#pragma once

#include <velstd/export.h>
#include <velstd/line.h>
#include <velstd/persistent.h>
#include <velstd/vector.h>

/// The straight segment from one point to another.  By default both are (0, 0).
class VELSTD_API gxLineSeg : public gxPersistent {
 public:
  gxLineSeg() noexcept = default;
  /// Makes the segment between two points.
  gxLineSeg(const gxVector<2>& p1, const gxVector<2>& p2) noexcept : p1_(p1), p2_(p2) {}
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

  /// Compares the ends, in their order.
  friend bool operator==(const gxLineSeg& a, const gxLineSeg& b) {
    return a.p1_ == b.p1_ && a.p2_ == b.p2_;
  }

  void reInit() override;

 protected:
  void dispatchSerialize(gxArchive& archive) override;

 private:
  void serialize_(gxArchive& archive, unsigned char version);

  gxVector<2> p1_;
  gxVector<2> p2_;
};
