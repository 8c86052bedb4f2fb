/// Axis-aligned rectangles.
#pragma once

#include <velstd/export.h>
#include <velstd/persistent.h>
#include <velstd/vector.h>

/// An axis-aligned rectangle, border included, given by its origin (the lowest corner) and its
/// size.  By default all zero.
///
/// It keeps its highest corner too, and compares corners: origin + size is rounded, and a test
/// against it would lose vertices of the shape that the rectangle was made to enclose.
///
/// The unit is that of the coordinates; whether y runs up or down does not matter: "lowest" means the
/// smallest numbers.  Nothing is checked or put right: a NaN or an infinity is kept as it is given, and
/// each question says what it makes of one.  Every operation takes constant time, allocates nothing and
/// throws nothing.  Stored in an archive it keeps all three vectors, bit by bit.
class VELSTD_API gxRect : public gxPersistent {
 public:
  /// Makes the rectangle that holds the point (0, 0) alone.
  gxRect() noexcept = default;
  /// Builds the rectangle from its origin and size, kept as given (a negative size is not turned
  /// around: such a rectangle holds no point).
  gxRect(const gxVector<2>& origin, const gxVector<2>& size) noexcept
      : origin_(origin), corner_(origin + size), size_(size) {}
  /// Copies the numbers.  Assigning counts as a change where the target tracks changes.
  gxRect(const gxRect&) noexcept = default;
  gxRect& operator=(const gxRect& other) noexcept {
    origin_ = other.origin_;
    corner_ = other.corner_;
    size_ = other.size_;
    mutating_();
    return *this;
  }
  ~gxRect() override;

  /// Returns the lowest corner.
  const gxVector<2>& origin() const noexcept { return origin_; }
  /// Returns the highest corner.
  const gxVector<2>& corner() const noexcept { return corner_; }
  /// Returns width and height: as given, or the difference of the corners after `enclose` and
  /// `fromCorners` (rounded, and infinite where it exceeds the double range).
  const gxVector<2>& size() const noexcept { return size_; }

  /// Returns the smallest rectangle that holds both.
  ///  - a rectangle of negative size takes part with its origin as its low and its corner as its high end
  ///  - a NaN coordinate of `other` is passed over; one of this rectangle stays
  gxRect enclose(const gxRect& other) const noexcept {
    const gxVector<2> low(other.origin_.x() < origin_.x() ? other.origin_.x() : origin_.x(),
                          other.origin_.y() < origin_.y() ? other.origin_.y() : origin_.y());
    const gxVector<2> high(other.corner_.x() > corner_.x() ? other.corner_.x() : corner_.x(),
                           other.corner_.y() > corner_.y() ? other.corner_.y() : corner_.y());
    return fromCorners(low, high);
  }
  /// Builds the rectangle between two corners, the lowest first; the corners keep their bits, and the size
  /// is their rounded difference.  Corners given the other way around make a rectangle that holds nothing.
  static gxRect fromCorners(const gxVector<2>& low, const gxVector<2>& high) noexcept {
    gxRect result;
    result.origin_ = low;
    result.corner_ = high;
    result.size_ = high - low;
    return result;
  }

  /// Tells whether the point lies inside or on the border; false for NaN.
  bool within(const gxVector<2>& p) const noexcept {
    return p.x() >= origin_.x() && p.x() <= corner_.x() && p.y() >= origin_.y() && p.y() <= corner_.y();
  }
  /// Tells whether the rectangles share a point, borders included; false where a NaN is compared.
  bool overlaps(const gxRect& o) const noexcept {
    return corner_.x() >= o.origin_.x() && o.corner_.x() >= origin_.x() &&
           corner_.y() >= o.origin_.y() && o.corner_.y() >= origin_.y();
  }

  /// Is true when origins, highest corners and sizes are equal, number by number (a NaN equals
  /// nothing): equal rectangles answer every question alike.  A rectangle made between corners need
  /// not be equal to one made of its origin and size, whose corner is rounded.
  friend bool operator==(const gxRect& a, const gxRect& b) {
    return a.origin_ == b.origin_ && a.corner_ == b.corner_ && a.size_ == b.size_;
  }

  /// Makes it the default rectangle again.
  void reInit() override;

 protected:
  void dispatchSerialize(gxArchive& archive) override;

 private:
  void serialize_(gxArchive& archive, unsigned char version);

  gxVector<2> origin_;
  gxVector<2> corner_;
  gxVector<2> size_;
};
