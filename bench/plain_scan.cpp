#include "plain_scan.h"

#include <velstd/angle.h>
#include <velstd/real_eq.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kTolerance = 1e-6;

}  // namespace

gx_PlainScan::gx_PlainScan(const std::vector<gxVector<2>>& points)
    : points_(points), box_(slow::encloseRect(points, gxXform<2>())) {
  segments_.reserve(points.size());
  lines_.reserve(points.size());
  bounds_.reserve(points.size());
  valid_.reserve(points.size());
  gxVector<2> from = points.back();
  for (const gxVector<2>& to : points) {
    const bool valid = !gfRealEq(from, to, 1e-15);
    const gxLineSeg segment = valid ? gxLineSeg(from, to) : gxLineSeg();
    segments_.push_back(segment);
    lines_.push_back(valid ? segment.line() : gxLine());
    bounds_.push_back(gxRect(from, {0.0, 0.0}).enclose(gxRect(to, {0.0, 0.0})));
    valid_.push_back(valid);
    from = to;
  }
}

gxVector<2> gx_PlainScan::closestPoint(const gxVector<2>& point) const {
  std::size_t nearest = 0;
  double best = std::numeric_limits<double>::infinity();
  for (std::size_t k = 0; k < segments_.size(); ++k) {
    const double distance = segments_[k].distToPoint(point);
    if (!(distance < best)) continue;
    best = distance;
    nearest = k;
  }
  const gxVector<2> s = segments_[nearest].p1();
  const gxVector<2> e = segments_[nearest].p2();
  const gxVector<2> d = e - s;
  const double t = (d * (point - s)) / (d * d);
  if (!(t > 0)) return s;
  return t >= 1 ? e : lines_[nearest].proj(point);
}

slow::Hits gx_PlainScan::intersections(const gxLineSeg& seg, bool countEndContacts) const {
  const gxVector<2> p1 = seg.p1();
  const gxVector<2> p2 = seg.p2();
  const gxLine line = seg.line();
  const gxRect bounds = gxRect(p1, {0.0, 0.0}).enclose(gxRect(p2, {0.0, 0.0}));
  if (!box_.overlaps(bounds)) return {};
  slow::Hits found;
  for (std::size_t k = 0; k < segments_.size(); ++k) {
    if (!bounds_[k].overlaps(bounds) || !valid_[k] || lines_[k].isParallel(line)) continue;
    if (!countEndContacts &&
        (segments_[k].distToPoint(p1) <= kTolerance || segments_[k].distToPoint(p2) <= kTolerance)) {
      continue;
    }
    const gxVector<2> q = lines_[k].intersect(line);
    if (segments_[k].distToPoint(q) < kTolerance && seg.distToPoint(q) < kTolerance) {
      found.points.push_back(q);
      found.edges.push_back(static_cast<int>(k));
    }
  }
  std::vector<double> keys;
  keys.reserve(found.points.size());
  for (const gxVector<2>& q : found.points) keys.push_back((q - p1) * (p2 - p1));
  slow::Hits sorted;
  for (const std::size_t i : slow::exchangeOrder(keys)) {
    sorted.points.push_back(found.points[i]);
    sorted.edges.push_back(found.edges[i]);
  }
  return sorted;
}

std::vector<gxVector<2>> gx_PlainScan::intersections(const gx_PlainScan& other) const {
  std::vector<gxVector<2>> result;
  for (std::size_t k = 0; k < other.points_.size(); ++k) {
    const gxVector<2>& from = other.points_[k == 0 ? other.points_.size() - 1 : k - 1];
    const slow::Hits hits = intersections(gxLineSeg(from, other.points_[k]), true);
    result.insert(result.end(), hits.points.begin(), hits.points.end());
  }
  return result;
}

bool gx_PlainScan::isSelfIntersecting() const {
  for (std::size_t k = 0; k < segments_.size(); ++k) {
    if (valid_[k] && !intersections(segments_[k], false).points.empty()) return true;
  }
  return false;
}

bool gx_PlainScan::isOnVertex_(const gxVector<2>& point) const {
  return std::any_of(points_.begin(), points_.end(), [&point](const gxVector<2>& vertex) {
    return !((vertex - point).len() > kTolerance);
  });
}

// Through the middle of the first gap between the directions to the vertices that is wide enough.
gxVector<2> gx_PlainScan::rayFrom_(const gxVector<2>& point) const {
  std::vector<double> angles;
  angles.reserve(points_.size());
  for (const gxVector<2>& v : points_) angles.push_back((v - point).angle().norm().toDouble());
  std::sort(angles.begin(), angles.end());
  const double least = kPi / static_cast<double>(angles.size());
  for (std::size_t k = 0; k < angles.size(); ++k) {
    const double next = angles[k + 1 < angles.size() ? k + 1 : 0];
    const double gap = gxRadian(next - angles[k]).norm().toDouble();
    if (gap > least) return {1.0, gxRadian(angles[k] + gap * 0.5)};
  }
  return {1.0, 0.0};
}

bool gx_PlainScan::inside(const gxVector<2>& point) const {
  if (!box_.within(point)) return false;
  if (isOnVertex_(point)) return true;
  if (radius_ < 0.0) radius_ = slow::encloseCircle(points_, 1).radius();
  if (point.distance(points_.front()) > radius_) return false;
  const gxVector<2> end = point + rayFrom_(point) * (2.0 * radius_);
  return intersections(gxLineSeg(point, end), false).points.size() % 2 != 0;
}
