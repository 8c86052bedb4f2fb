#include <support/plain_gauges.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>

namespace plain {

namespace {

using Real = long double;

Real distance(Real x, Real y, const gxVector<2>& p) {
  return std::hypot(x - static_cast<Real>(p.x()), y - static_cast<Real>(p.y()));
}

// Keeps the circle with that centre around all points if it is the smallest so far.
void offer(const Points& points, Real x, Real y, Circle& best) {
  Real radius = 0;
  for (const auto& p : points) {
    radius = std::max(radius, distance(x, y, p));
    if (best.radius >= 0 && radius >= best.radius) return;
  }
  best = {x, y, radius};
}

}  // namespace

// Every circle around the middle of two points, or the middle of the circle through three, that is as
// large as it must be to hold all; the smallest circle is among them.
Circle enclosingCircle(const Points& points) {
  Circle best{0, 0, -1};
  const std::size_t n = points.size();
  for (std::size_t i = 0; i < n; ++i) {
    offer(points, static_cast<Real>(points[i].x()), static_cast<Real>(points[i].y()), best);
    for (std::size_t j = i + 1; j < n; ++j) {
      const Real ax = static_cast<Real>(points[i].x());
      const Real ay = static_cast<Real>(points[i].y());
      const Real bx = static_cast<Real>(points[j].x()) - ax;
      const Real by = static_cast<Real>(points[j].y()) - ay;
      offer(points, ax + bx / 2, ay + by / 2, best);
      for (std::size_t k = j + 1; k < n; ++k) {
        const Real cx = static_cast<Real>(points[k].x()) - ax;
        const Real cy = static_cast<Real>(points[k].y()) - ay;
        const Real twice = 2 * (bx * cy - by * cx);
        if (twice == 0) continue;
        const Real b2 = bx * bx + by * by;
        const Real c2 = cx * cx + cy * cy;
        offer(points, ax + (cy * b2 - by * c2) / twice, ay + (bx * c2 - cx * b2) / twice, best);
      }
    }
  }
  return best;
}

Rectangles rectangles(const Points& points) {
  Rectangles best{-1, -1};
  for (const auto& a : points) {
    for (const auto& b : points) {
      if (a == b) continue;
      const bool side = std::all_of(points.begin(), points.end(),
                                    [&](const auto& p) { return gx_Orientation(a, b, p) >= 0; });
      if (!side) continue;
      const Real ex = static_cast<Real>(b.x()) - static_cast<Real>(a.x());
      const Real ey = static_cast<Real>(b.y()) - static_cast<Real>(a.y());
      const Real length = std::hypot(ex, ey);
      Real low = 0, high = 0, height = 0;
      for (const auto& p : points) {
        const Real x = static_cast<Real>(p.x()) - static_cast<Real>(a.x());
        const Real y = static_cast<Real>(p.y()) - static_cast<Real>(a.y());
        low = std::min(low, (ex * x + ey * y) / length);
        high = std::max(high, (ex * x + ey * y) / length);
        height = std::max(height, (ex * y - ey * x) / length);
      }
      if (best.area < 0 || (high - low) * height < best.area) best.area = (high - low) * height;
      if (best.width < 0 || height < best.width) best.width = height;
    }
  }
  return {std::max<Real>(best.area, 0), std::max<Real>(best.width, 0)};
}

long double farthest(const Points& points) {
  Real best = 0;
  for (const auto& a : points) {
    for (const auto& b : points) {
      best = std::max(best, distance(static_cast<Real>(a.x()), static_cast<Real>(a.y()), b));
    }
  }
  return best;
}

long double extent(const Points& points, long double angle) {
  Real low = HUGE_VALL, high = -HUGE_VALL;
  for (const auto& p : points) {
    const Real x = static_cast<Real>(p.x()) - static_cast<Real>(points[0].x());
    const Real y = static_cast<Real>(p.y()) - static_cast<Real>(points[0].y());
    const Real d = std::cos(angle) * x + std::sin(angle) * y;
    low = std::min(low, d);
    high = std::max(high, d);
  }
  return points.empty() ? 0 : high - low;
}

}  // namespace plain
