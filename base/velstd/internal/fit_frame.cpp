// The frame of a fit.
//
//  1. Find the points' box.  Coordinates so large that differences could overflow are first halved
//     often enough (guard_).
//  2. Take differences to the middle of the box: exact or nearly so, whatever the offset.
//  3. Divide by the power of two that brings the larger half side of the box into [0.5, 1).
//  4. Move the centroid to the origin.
#include <velstd/internal/fit_frame.h>

#include <algorithm>
#include <cmath>
#include <limits>

gx_FitFrame::gx_FitFrame(const std::vector<gxVector<2>>& points) {
  if (points.empty()) return;
  double lowX = points.front().x();
  double highX = lowX;
  double lowY = points.front().y();
  double highY = lowY;
  double nanTrap = 0.0;  // stays 0 while every coordinate is finite
  for (const gxVector<2>& p : points) {
    lowX = std::min(lowX, p.x());
    highX = std::max(highX, p.x());
    lowY = std::min(lowY, p.y());
    highY = std::max(highY, p.y());
    nanTrap += p.x() * 0.0 + p.y() * 0.0;
  }
  const double largest = std::max({-lowX, highX, -lowY, highY});
  if (!(nanTrap == 0.0) || !std::isfinite(largest)) return;

  constexpr double kNearTheEnd = 0x1p1000;
  if (largest > kNearTheEnd) guard_ = 0x1p-30;
  middle_ = {0.5 * (lowX * guard_) + 0.5 * (highX * guard_),
             0.5 * (lowY * guard_) + 0.5 * (highY * guard_)};
  const double half = 0.5 * std::max(highX * guard_ - lowX * guard_, highY * guard_ - lowY * guard_);
  // Half of the smallest subnormal is 0 as well: two neighbouring subnormals count as equal.
  if (half == 0.0) return;
  exponent_ = std::ilogb(half) + 1;

  // Two factors, as 2^-exponent_ itself may be beyond the doubles.
  const double first = std::ldexp(1.0, -exponent_ / 2);
  const double second = std::ldexp(1.0, -exponent_ - (-exponent_ / 2));
  points_.reserve(points.size());
  gxVector<2> sum;
  for (const gxVector<2>& p : points) {
    points_.push_back((p * guard_ - middle_) * first * second);
    sum += points_.back();
  }
  centroid_ = sum / static_cast<double>(points_.size());
  for (gxVector<2>& p : points_) p -= centroid_;
  rounding_ = std::max(largest * guard_ * std::numeric_limits<double>::epsilon(),
                       std::numeric_limits<double>::denorm_min()) *
              first * second;
}

double gx_FitFrame::lengthOut(double length) const {
  return std::ldexp(length, exponent_) / guard_;
}

double gx_FitFrame::lengthIn(double length) const {
  return std::ldexp(length * guard_, -exponent_);
}

gxVector<2> gx_FitFrame::positionOut(const gxVector<2>& position) const {
  const gxVector<2> fromMiddle = centroid_ + position;
  return gxVector<2>(std::ldexp(fromMiddle.x(), exponent_) + middle_.x(),
                     std::ldexp(fromMiddle.y(), exponent_) + middle_.y()) /
         guard_;
}

std::size_t gx_CountDistinct(const std::vector<gxVector<2>>& points, std::size_t enough) {
  std::vector<gxVector<2>> seen;
  for (const gxVector<2>& p : points) {
    if (seen.size() >= enough) break;
    if (std::find(seen.begin(), seen.end(), p) == seen.end()) seen.push_back(p);
  }
  return seen.size();
}

gx_NearestLine gx_FindNearestLine(const std::vector<gxVector<2>>& points) {
  const auto n = static_cast<double>(points.size());
  gx_NearestLine line;
  for (const gxVector<2>& p : points) line.point += p;
  line.point = line.point / n;
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  for (const gxVector<2>& p : points) {
    const gxVector<2> d = p - line.point;
    xx += d.x() * d.x();
    xy += d.x() * d.y();
    yy += d.y() * d.y();
  }
  line.direction = gxVector<2>(1.0, gxRadian(0.5 * std::atan2(2.0 * xy, xx - yy)));
  // The width is summed anew: taken from the three sums it would be lost in their rounding.
  double along = 0.0;
  double across = 0.0;
  for (const gxVector<2>& p : points) {
    const gxVector<2> d = p - line.point;
    const double u = d * line.direction;
    const double v = gf_Cross(line.direction, d);
    along += u * u;
    across += v * v;
  }
  line.length = std::sqrt(along / n);
  line.width = std::sqrt(across / n);
  return line;
}
