// Distances of segments.  Two segments that share no point are nearest at an end of one of them: four feet
// decide.  Whether they share one is decided by exact orientation tests.
#include <gauge/internal/segments.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>

namespace {

using Point = gxVector<2>;

bool inBox(const Point& a, const Point& b, const Point& p) {
  return std::min(a.x(), b.x()) <= p.x() && p.x() <= std::max(a.x(), b.x()) &&
         std::min(a.y(), b.y()) <= p.y() && p.y() <= std::max(a.y(), b.y());
}

// The gap of two segments that cross: no end need be near.
gx_Gap crossing(const Point& a, const Point& b, const Point& c, const Point& d) {
  const Point ab = b - a;
  const Point cd = d - c;
  const double cross = gf_DifferenceOfProducts(ab.x(), cd.y(), ab.y(), cd.x());
  gx_Gap gap;
  if (cross != 0.0) {
    const Point ac = c - a;
    gap.s = std::clamp(gf_DifferenceOfProducts(ac.x(), cd.y(), ac.y(), cd.x()) / cross, 0.0, 1.0);
    gap.t = std::clamp(gf_DifferenceOfProducts(ac.x(), ab.y(), ac.y(), ab.x()) / cross, 0.0, 1.0);
  }
  gap.p = gap.q = a + ab * gap.s;
  return gap;
}

}  // namespace

double gx_distanceFrom(const Point& a, const Point& b, const Point& p) {
  const Point d = b - a;
  const Point v = p - a;
  const double along = d * v;
  const double whole = d * d;
  if (!(along > 0.0) || whole == 0.0) return gx_lengthOf(v);
  if (along >= whole) return gx_lengthOf(p - b);
  return std::fabs(gf_DifferenceOfProducts(d.x(), v.y(), d.y(), v.x())) / std::sqrt(whole);
}

gx_Foot gx_footOn(const Point& a, const Point& b, const Point& p) {
  const Point d = b - a;
  const Point v = p - a;
  const double along = d * v;
  const double whole = d * d;
  if (!(along > 0.0) || whole == 0.0) return {0.0, a, gx_lengthOf(v)};
  if (along >= whole) return {1.0, b, gx_lengthOf(p - b)};
  const double t = along / whole;
  // From the nearer end, where less is rounded.
  const Point foot = t <= 0.5 ? a + d * t : b - d * (1.0 - t);
  return {t, foot, std::fabs(gf_DifferenceOfProducts(d.x(), v.y(), d.y(), v.x())) / std::sqrt(whole)};
}

bool gx_segmentsMeet(const Point& a, const Point& b, const Point& c, const Point& d) {
  if (std::max(a.x(), b.x()) < std::min(c.x(), d.x()) ||
      std::max(c.x(), d.x()) < std::min(a.x(), b.x()) ||
      std::max(a.y(), b.y()) < std::min(c.y(), d.y()) ||
      std::max(c.y(), d.y()) < std::min(a.y(), b.y())) {
    return false;
  }
  const int sideC = gx_Orientation(a, b, c);
  const int sideD = gx_Orientation(a, b, d);
  const int sideA = gx_Orientation(c, d, a);
  const int sideB = gx_Orientation(c, d, b);
  if (sideC * sideD < 0 && sideA * sideB < 0) return true;
  return (sideC == 0 && inBox(a, b, c)) || (sideD == 0 && inBox(a, b, d)) ||
         (sideA == 0 && inBox(c, d, a)) || (sideB == 0 && inBox(c, d, b));
}

gx_Gap gx_gapBetween(const Point& a, const Point& b, const Point& c, const Point& d) {
  const gx_Foot feet[] = {gx_footOn(c, d, a), gx_footOn(c, d, b), gx_footOn(a, b, c),
                          gx_footOn(a, b, d)};
  std::size_t nearest = 0;
  for (std::size_t k = 1; k < 4; ++k) {
    if (feet[k].distance < feet[nearest].distance) nearest = k;
  }
  if (feet[nearest].distance > 0.0 && gx_segmentsMeet(a, b, c, d)) return crossing(a, b, c, d);
  const gx_Foot& foot = feet[nearest];
  switch (nearest) {
    case 0: return {0.0, foot.t, a, foot.point, foot.distance};
    case 1: return {1.0, foot.t, b, foot.point, foot.distance};
    case 2: return {foot.t, 0.0, foot.point, c, foot.distance};
    default: return {foot.t, 1.0, foot.point, d, foot.distance};
  }
}
