/// Circles.
#pragma once

#include <velstd/export.h>
#include <velstd/persistent.h>
#include <velstd/vector.h>

/// A circle: centre and radius, kept as given.  The default is at (0, 0) with radius 0.
///
/// A plain value that answers no geometric question itself: it is what `gxContour::encloseCircle`,
/// `gfCircleFit` and `gfEnclosingCircle` return, each of which says what a radius of 0, an infinite one
/// or a NaN means there.  The unit is that of the coordinates.  A negative radius is neither refused nor
/// turned around.  Stored in an archive it keeps the three numbers bit by bit.
class VELSTD_API gxCircle : public gxPersistent {
 public:
  /// Makes the circle of radius 0 at (0, 0).
  gxCircle() noexcept = default;
  /// Makes a circle; the numbers are kept as given.
  gxCircle(const gxVector<2>& center, double radius) noexcept : center_(center), radius_(radius) {}
  /// Copies the numbers.  Assigning counts as a change where the target tracks changes.
  gxCircle(const gxCircle&) noexcept = default;
  gxCircle& operator=(const gxCircle& other) noexcept {
    center_ = other.center_;
    radius_ = other.radius_;
    mutating_();
    return *this;
  }
  ~gxCircle() override;

  /// Return centre and radius.
  const gxVector<2>& center() const noexcept { return center_; }
  double radius() const noexcept { return radius_; }

  /// Is true when centre and radius are equal, number by number: a NaN equals nothing, and no tolerance
  /// takes part (`gfRealEq` has one).
  friend bool operator==(const gxCircle& a, const gxCircle& b) {
    return a.center_ == b.center_ && a.radius_ == b.radius_;
  }

  /// Makes it the default circle again.
  void reInit() override;

 protected:
  void dispatchSerialize(gxArchive& archive) override;

 private:
  void serialize_(gxArchive& archive, unsigned char version);

  gxVector<2> center_;
  double radius_ = 0.0;
};
