/// How far points lie from a chord.
#pragma once

#include <cntr/export.h>
#include <velstd/internal/four.h>
#include <velstd/vector.h>

#include <cstddef>
#include <span>

/// Tells whether a point comes before another: by x, then by y.
inline bool gx_isLower(const gxVector<2>& a, const gxVector<2>& b) {
  return (static_cast<unsigned>(a.x() < b.x()) |
          (static_cast<unsigned>(a.x() == b.x()) & static_cast<unsigned>(a.y() < b.y()))) != 0;
}

/// A chord, from which distances have the same bits in both directions: they are computed from its lower end.
class GXSHAPE_API gx_Chord {
 public:
  gx_Chord(const gxVector<2>& p, const gxVector<2>& q) {
    const bool inOrder = gx_isLower(p, q);
    a_ = inOrder ? p : q;
    b_ = inOrder ? q : p;
    along_ = b_ - a_;
    whole_ = along_ * along_;
    scale_ = whole_ > 0.0 ? whole_ : 1.0;
  }

  /// Returns the square of a point's distance from the segment, times `scale()`.
  double measure(const gxVector<2>& p) const {
    double result = 0.0;
    measureEach(p.x(), p.y(), result);
    return result;
  }
  /// The same of a point, or of four.  The distances from both ends and from the line are computed and one of them is
  /// taken: quicker than to ask first where the foot lies, which is hard to foretell.
  template <class Number>
  GX_FOURFOLD void measureEach(const Number& x, const Number& y, Number& result) const {
    const Number vx = x - a_.x();
    const Number vy = y - a_.y();
    const Number wx = x - b_.x();
    const Number wy = y - b_.y();
    const Number dot = vx * along_.x() + vy * along_.y();
    const Number cross = along_.x() * vy - along_.y() * vx;
    const Number before = (vx * vx + vy * vy) * scale_;
    const Number behind = (wx * wx + wy * wy) * scale_;
    const Number beside = cross * cross;
    const Number none = {};
    const Number whole = none + whole_;
    const Number beyond = dot < whole ? beside : behind;
    result = dot > none ? beyond : before;
  }
  /// Puts the measures of all points into `measures`, with the bits of `measure`, and returns the largest; −1 for none.
  double measureAll(std::span<const gxVector<2>> points, double* measures) const;
  /// Returns the square of the segment's length; 1 where that is 0.
  double scale() const { return scale_; }

 private:
  gxVector<2> a_;
  gxVector<2> b_;
  gxVector<2> along_;
  double whole_;
  double scale_;
};
