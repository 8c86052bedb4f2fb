// The distance to a segment.  With d from p1 to p2 and w from p1 to the point, the foot of the
// perpendicular lies before the segment when w · d <= 0, behind it when w · d >= d · d, and inside
// otherwise.  A NaN falls through both tests to the line's formula, which answers NaN.
#include <velstd/line_seg.h>

gxLineSeg::~gxLineSeg() = default;

void gxLineSeg::reInit() {
  p1_ = p2_ = gxVector<2>();
  mutating_();
}

double gxLineSeg::distToPoint(const gxVector<2>& point) const {
  const gxVector<2> d = p2_ - p1_;
  const double along = (point - p1_) * d;
  if (along <= 0.0) return point.distance(p1_);
  if (along >= d * d) return point.distance(p2_);
  return line().distToPoint(point);
}
