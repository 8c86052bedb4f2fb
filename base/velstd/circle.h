/// Circles.
#pragma once

#include <velstd/export.h>
#include <velstd/persistent.h>
#include <velstd/vector.h>

/// A circle: centre and radius, kept as given.  The default is at (0, 0) with radius 0.
class VELSTD_API gxCircle : public gxPersistent {
 public:
  gxCircle() noexcept = default;
  /// Makes a circle; the numbers are kept as given.
  gxCircle(const gxVector<2>& center, double radius) noexcept : center_(center), radius_(radius) {}
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

  /// Compares centre and radius.
  friend bool operator==(const gxCircle& a, const gxCircle& b) {
    return a.center_ == b.center_ && a.radius_ == b.radius_;
  }

  void reInit() override;

 protected:
  void dispatchSerialize(gxArchive& archive) override;

 private:
  void serialize_(gxArchive& archive, unsigned char version);

  gxVector<2> center_;
  double radius_ = 0.0;
};
