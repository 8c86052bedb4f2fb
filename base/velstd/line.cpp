// Lines.  All formulas work on differences of coordinates: with d the direction, o the line's
// point and w = p − o,
//
//   distance     |d × w| / |d|
//   projection   o + d (w · d) / (d · d)
//   intersection o + d t with t = (w × e) / (d × e), e the other direction, w from o to its point
//   parallel     |d × e| <= sine |d| |e|
//
// The two cross products of the intersection cancel when the lines are nearly parallel or nearly
// through each other's points, so they are taken with fused multiply-adds; centroids are built on
// this.  The other formulas lose at most a few units of |w|, and stay plain.
#include <velstd/line.h>

#include <algorithm>
#include <cmath>

gxLine::~gxLine() = default;

void gxLine::reInit() {
  point_ = gxVector<2>();
  direction_ = gxVector<2>(1.0, 0.0);
  mutating_();
}

void gxLine::scaleDirection_() noexcept {
  const double largest = std::max(std::abs(direction_.x()), std::abs(direction_.y()));
  if (largest == 0.0 || !std::isfinite(largest)) return;
  const int exponent = std::ilogb(largest);
  direction_ = gxVector<2>(std::scalbn(direction_.x(), -exponent), std::scalbn(direction_.y(), -exponent));
}

bool gxLine::isParallel(const gxLine& other) const {
  const double cross = gf_Cross(direction_, other.direction_);
  return std::abs(cross) <= kParallelSine * (direction_.len() * other.direction_.len());
}

gxPoint gxLine::intersect(const gxLine& other) const {
  const gxVector<2>& d = direction_;
  const gxVector<2>& e = other.direction_;
  const gxVector<2> w = other.point_ - point_;
  const double denominator = gf_DifferenceOfProducts(d.x(), e.y(), d.y(), e.x());
  const double numerator = gf_DifferenceOfProducts(w.x(), e.y(), w.y(), e.x());
  const gxVector<2> meeting = point_ + d * (numerator / denominator);
  if (std::isfinite(meeting.x()) && std::isfinite(meeting.y())) return gxPoint(meeting);
  return proj(other.point_);
}

gxPoint gxLine::proj(const gxVector<2>& point) const {
  const double square = direction_ * direction_;
  if (square == 0.0) return gxPoint(point_);
  const gxVector<2> foot = point_ + direction_ * (((point - point_) * direction_) / square);
  if (std::isfinite(foot.x()) && std::isfinite(foot.y())) return gxPoint(foot);

  // Coordinates near the end of the double range: the same in quarters of quarters of the unit.
  constexpr double kShrink = 0x1p-600;
  const gxVector<2> o = point_ * kShrink;
  const gxVector<2> unit = direction_.unit();
  const gxVector<2> shrunk = o + unit * ((point * kShrink - o) * unit);
  const gxVector<2> grown = shrunk * (1.0 / kShrink);
  const bool overflows = std::isinf(grown.x()) || std::isinf(grown.y());
  const bool finiteInput = std::isfinite(point_.x()) && std::isfinite(point_.y()) &&
                           std::isfinite(point.x()) && std::isfinite(point.y());
  return gxPoint(overflows && finiteInput ? point_ : grown);
}

double gxLine::distToPoint(const gxVector<2>& point) const {
  const gxVector<2> w = point - point_;
  const double length = direction_.len();
  if (length == 0.0) return w.len();
  return std::abs(gf_Cross(direction_, w)) / length;
}
