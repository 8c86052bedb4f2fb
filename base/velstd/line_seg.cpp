// The distance to a segment.  With d from p1 to p2 and w from p1 to the point, the foot of the
// perpendicular lies before the segment when w · d <= 0, behind it when w · d >= d · d, and inside
// otherwise.  A NaN falls through both tests to the line's formula, which answers NaN.
//
// Where the products have overflowed or may have underflowed, the tests are made once more with both
// vectors scaled to size 1.
#include <velstd/internal/scaled_vector.h>
#include <velstd/line_seg.h>

gxLineSeg::~gxLineSeg() = default;

void gxLineSeg::reInit() {
  p1_ = p2_ = gxVector<2>();
  mutating_();
}

gxLine gxLineSeg::line() const noexcept {
  const gxVector<2> d = p2_ - p1_;
  if (gf_IsFinite(d)) return {p1_, d};
  return {p1_, p2_ * 0.5 - p1_ * 0.5};  // the same direction, where the difference overflows
}

double gxLineSeg::distToPoint(const gxVector<2>& point) const {
  const gxVector<2> d = p2_ - p1_;
  const gxVector<2> w = point - p1_;
  double along = w * d;
  double end = d * d;
  const bool finite = gf_IsFinite(p1_) && gf_IsFinite(p2_) && gf_IsFinite(point);
  if (!(gf_IsSafe(along) && gf_IsSafe(end)) && finite) {
    const gx_ScaledVector toEnd = gf_ScaledDifference(p2_, p1_);
    const gx_ScaledVector toPoint = gf_ScaledDifference(point, p1_);
    along = std::scalbn(toPoint.vector * toEnd.vector, toPoint.exponent - toEnd.exponent);
    end = toEnd.vector * toEnd.vector;
  }
  if (along <= 0.0) return point.distance(p1_);
  if (along >= end) return point.distance(p2_);
  return line().distToPoint(point);
}
