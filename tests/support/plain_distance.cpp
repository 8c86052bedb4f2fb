// Everything is measured against everything.
#include <support/plain_distance.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace plain {

std::vector<Segment> segmentsOf(const gxBorders& borders) {
  std::vector<Segment> segments;
  for (const auto& ring : borders.rings()) {
    const std::size_t n = ring.points.size();
    if (n == 0) continue;
    if (ring.closed || n == 1) segments.push_back({ring.points[n - 1], ring.points[0]});
    for (std::size_t i = 1; i < n; ++i) segments.push_back({ring.points[i - 1], ring.points[i]});
  }
  return segments;
}

double distance(const Segment& segment, const gxVector<2>& p) {
  const gxVector<2> d = segment.b - segment.a;
  const double square = d * d;
  if (square == 0.0) return (p - segment.a).len();
  const double t = std::clamp(((p - segment.a) * d) / square, 0.0, 1.0);
  return (p - (segment.a + d * t)).len();
}

double distance(const std::vector<Segment>& segments, const gxVector<2>& p) {
  double least = std::numeric_limits<double>::infinity();
  for (const Segment& segment : segments) least = std::min(least, distance(segment, p));
  return least;
}

bool holds(const gxBorders& borders, const gxVector<2>& p) {
  bool inside = false;
  for (const auto& ring : borders.rings()) {
    if (!ring.closed || ring.points.empty()) continue;
    for (std::size_t i = 0; i < ring.points.size(); ++i) {
      const gxVector<2>& a = ring.points[i];
      const gxVector<2>& b = ring.points[(i + 1) % ring.points.size()];
      if ((a.y() > p.y()) == (b.y() > p.y())) continue;
      const double x = a.x() + (b.x() - a.x()) * ((p.y() - a.y()) / (b.y() - a.y()));
      if (x > p.x()) inside = !inside;
    }
  }
  return inside;
}

double directedHausdorff(const gxBorders& from, const gxBorders& to, int samples) {
  const std::vector<Segment> others = segmentsOf(to);
  double greatest = 0.0;
  for (const Segment& edge : segmentsOf(from)) {
    const auto at = [&](double t) { return distance(others, edge.a * (1.0 - t) + edge.b * t); };
    double best = -1.0;
    double where = 0.0;
    for (int k = 0; k <= samples; ++k) {
      const double t = static_cast<double>(k) / samples;
      const double here = at(t);
      if (here > best) {
        best = here;
        where = t;
      }
    }
    double low = std::max(0.0, where - 1.0 / samples);
    double high = std::min(1.0, where + 1.0 / samples);
    for (int k = 0; k < 100; ++k) {
      const double first = low + (high - low) / 3.0;
      const double second = high - (high - low) / 3.0;
      (at(first) < at(second) ? low : high) = at(first) < at(second) ? first : second;
    }
    greatest = std::max({greatest, best, at(0.5 * (low + high))});
  }
  return greatest;
}

}  // namespace plain
