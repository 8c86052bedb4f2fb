/// A box that takes both coordinates of a point at once.
#pragma once

#include <cntr/internal/outline/box.h>
#include <velstd/vector.h>

#include <limits>

#if defined(__SSE2__)
#  include <emmintrin.h>
#endif

/// A box as `gx_Box::add` widens it, the coordinates in one register where the machine has one; empty by default.
///
/// The minimum and maximum instructions take their first operand where it is strictly beyond the second, else the
/// second, NaN or not: a NaN is passed over, and of equal bounds, which only zeros can be without being the same, the
/// first stays.
class gx_PairedBox {
 public:
  gx_PairedBox() = default;
#if defined(__SSE2__)
  /// The box of a first point, which stays where it is NaN.
  explicit gx_PairedBox(const gxVector<2>& first) : low_(loaded(first)), high_(loaded(first)) {}

  void add(const gxVector<2>& p) {
    const __m128d xy = loaded(p);
    low_ = _mm_min_pd(xy, low_);
    high_ = _mm_max_pd(xy, high_);
  }
  void add(const gx_PairedBox& o) {
    low_ = _mm_min_pd(o.low_, low_);
    high_ = _mm_max_pd(o.high_, high_);
  }
  /// Notes whether a point is finite, and does not widen the box: zero times a finite number is 0.
  void note(const gxVector<2>& p) {
    zeros_ = _mm_add_pd(zeros_, _mm_mul_pd(loaded(p), _mm_setzero_pd()));
  }
  /// Tells whether all points that were noted are finite.
  bool isFinite() const {
    return _mm_movemask_pd(_mm_cmpeq_pd(zeros_, zeros_)) == 3;
  }
  gx_Box box() const {
    gx_Box result;
    _mm_storeu_pd(&result.lowX, low_);
    _mm_storeu_pd(&result.highX, high_);
    return result;
  }

 private:
  static __m128d loaded(const gxVector<2>& p) {
    return _mm_loadu_pd(reinterpret_cast<const double*>(&p));
  }

  __m128d low_ = _mm_set1_pd(std::numeric_limits<double>::infinity());
  __m128d high_ = _mm_set1_pd(-std::numeric_limits<double>::infinity());
  __m128d zeros_ = _mm_setzero_pd();
#else
  explicit gx_PairedBox(const gxVector<2>& first) : box_{first.x(), first.y(), first.x(), first.y()} {}

  void add(const gxVector<2>& p) {
    box_.add(p);
  }
  void add(const gx_PairedBox& o) {
    box_ = {o.box_.lowX < box_.lowX ? o.box_.lowX : box_.lowX,
            o.box_.lowY < box_.lowY ? o.box_.lowY : box_.lowY,
            o.box_.highX > box_.highX ? o.box_.highX : box_.highX,
            o.box_.highY > box_.highY ? o.box_.highY : box_.highY};
  }
  void note(const gxVector<2>& p) {
    zeros_ += p.x() * 0.0 + p.y() * 0.0;
  }
  bool isFinite() const {
    return zeros_ == 0.0;
  }
  gx_Box box() const {
    return box_;
  }

 private:
  gx_Box box_;
  double zeros_ = 0.0;
#endif
};
