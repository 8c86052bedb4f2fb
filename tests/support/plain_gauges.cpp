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

namespace {

Real choose(int n, int k) {
  Real result = 1;
  for (int i = 1; i <= k; ++i) result = result * static_cast<Real>(n - k + i) / static_cast<Real>(i);
  return result;
}

Real power(Real x, int n) {
  Real result = 1;
  for (int i = 0; i < n; ++i) result *= x;
  return result;
}

}  // namespace

long double moment(const Points& ring, const gxVector<2>& from, int p, int q) {
  const Real fromX = static_cast<Real>(from.x());
  const Real fromY = static_cast<Real>(from.y());
  Real total = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const auto& a = ring[i];
    const auto& b = ring[(i + 1) % ring.size()];
    const Real ax = static_cast<Real>(a.x()) - fromX, ay = static_cast<Real>(a.y()) - fromY;
    const Real bx = static_cast<Real>(b.x()) - fromX, by = static_cast<Real>(b.y()) - fromY;
    Real sum = 0;
    for (int k = 0; k <= p; ++k) {
      for (int l = 0; l <= q; ++l) {
        sum += choose(k + l, l) * choose(p + q - k - l, q - l) * power(bx, k) * power(ax, p - k) *
               power(by, l) * power(ay, q - l);
      }
    }
    total += (ax * by - bx * ay) * sum;
  }
  return total / (static_cast<Real>((p + q + 2) * (p + q + 1)) * choose(p + q, p));
}

std::vector<Pocket> pockets(const Points& outline) {
  const std::size_t n = outline.size();
  // A corner of the hull has a line through it and another point with everything strictly on one side, but
  // for points on the line between the two.
  const auto isCorner = [&](std::size_t i) {
    for (std::size_t j = 0; j < n; ++j) {
      if (outline[j] == outline[i]) continue;
      const bool edge = std::all_of(outline.begin(), outline.end(), [&](const auto& p) {
        const int side = gx_Orientation(outline[i], outline[j], p);
        if (side != 0) return side > 0;
        // On the line: not behind i.
        return (outline[j] - outline[i]) * (p - outline[i]) >= 0;
      });
      if (edge) return true;
    }
    return false;
  };
  std::vector<std::size_t> corners;
  for (std::size_t i = 0; i < n; ++i) {
    if (isCorner(i)) corners.push_back(i);
  }
  std::vector<Pocket> result;
  for (std::size_t k = 0; k < corners.size(); ++k) {
    Pocket pocket;
    pocket.start = corners[k];
    pocket.end = corners[(k + 1) % corners.size()];
    const auto& a = outline[pocket.start];
    const auto& b = outline[pocket.end];
    const Real ex = static_cast<Real>(b.x()) - static_cast<Real>(a.x());
    const Real ey = static_cast<Real>(b.y()) - static_cast<Real>(a.y());
    Points ring{a};
    for (std::size_t i = (pocket.start + 1) % n; i != pocket.end; i = (i + 1) % n) {
      ring.push_back(outline[i]);
      const Real x = static_cast<Real>(outline[i].x()) - static_cast<Real>(a.x());
      const Real y = static_cast<Real>(outline[i].y()) - static_cast<Real>(a.y());
      const Real depth = std::fabs(ex * y - ey * x) / std::hypot(ex, ey);
      if (depth <= pocket.depth) continue;
      pocket.depth = depth;
      pocket.deepest = i;
    }
    ring.push_back(b);
    pocket.area = std::fabs(moment(ring, a, 0, 0));
    if (pocket.depth > 0) result.push_back(pocket);
  }
  return result;
}

}  // namespace plain
