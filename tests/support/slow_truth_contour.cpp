// Contours, the slow and plain way.  Each function is the definition; the numbers are those of the
// definition too, so that whoever changes a tolerance has to change it twice.
#include <support/slow_truth_contour.h>
#include <velstd/real_eq.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace slow {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

gxRect boxOf(const gxVector<2>& a, const gxVector<2>& b) {
  return gxRect(a, {0.0, 0.0}).enclose(gxRect(b, {0.0, 0.0}));
}

}  // namespace

std::vector<std::pair<std::size_t, std::size_t>> edges(const Outline& outline) {
  const std::size_t n = outline.points.size();
  std::vector<std::pair<std::size_t, std::size_t>> result;
  if (n == 0) return result;
  if (outline.closed) result.emplace_back(n - 1, 0);
  for (std::size_t i = 1; i < n; ++i) result.emplace_back(i - 1, i);
  return result;
}

void checkContour(const Points& points) {
  if (points.size() < 2) throw gxContourDefs::EmptyContour();
}

bool greater(double a, double b) {
  if (std::isnan(a)) return !std::isnan(b);
  return a > b;
}

// ---- Edges --------------------------------------------------------------------------------------

std::vector<Edge> lineSegs(const Outline& outline) {
  std::vector<Edge> result;
  for (const auto& [from, to] : edges(outline)) {
    const gxVector<2> a = outline.points[from];
    const gxVector<2> b = outline.points[to];
    Edge edge;
    if (!gfRealEq(a, b, 1e-15)) {
      edge.segment = gxLineSeg(a, b);
      edge.line = edge.segment.line();
      edge.bounds = boxOf(a, b);
      edge.valid = true;
    }
    result.push_back(edge);
  }
  return result;
}

// ---- Proximity ----------------------------------------------------------------------------------

double length(const Outline& outline) {
  double sum = 0.0;
  for (const auto& [from, to] : edges(outline)) sum += outline.points[from].distance(outline.points[to]);
  return sum;
}

long closestVertexIndex(const Points& points, const gxVector<2>& point) {
  checkContour(points);
  double best = kInfinity;
  long index = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double distance = point.distance(points[i]);
    if (distance < best) {
      best = distance;
      index = static_cast<long>(i);
    }
  }
  return index;
}

gxVector<2> closestPoint(const Outline& outline, const gxVector<2>& point, bool vertexOnly) {
  checkContour(outline.points);
  if (vertexOnly) {
    return outline.points[static_cast<std::size_t>(closestVertexIndex(outline.points, point))];
  }
  gxVector<2> result(0.0, 0.0);
  double best = kInfinity;
  for (const auto& [from, to] : edges(outline)) {
    const gxVector<2> s = outline.points[from];
    const gxVector<2> e = outline.points[to];
    const gxLineSeg segment(s, e);
    const double distance = segment.distToPoint(point);
    if (!(distance < best)) continue;
    best = distance;
    const gxVector<2> d = e - s;
    const double t =
        (d.x() * (point.x() - s.x()) + d.y() * (point.y() - s.y())) / (d.x() * d.x() + d.y() * d.y());
    if (!(t > 0)) {
      result = s;
    } else if (t >= 1) {
      result = e;
    } else {
      result = segment.line().proj(point);
    }
  }
  return result;
}

double distToPoint(const Outline& outline, const gxVector<2>& point, bool vertexOnly) {
  return point.distance(closestPoint(outline, point, vertexOnly));
}

// ---- Intersections ------------------------------------------------------------------------------

Hits intersections(const Outline& outline, const gxRect& box, const gxLineSeg& seg,
                   bool countEndContacts) {
  constexpr double kTolerance = 1e-6;
  checkContour(outline.points);
  const gxVector<2> p1 = seg.p1();
  const gxVector<2> p2 = seg.p2();
  const gxLine line = seg.line();
  const gxRect bounds = boxOf(p1, p2);
  if (!box.overlaps(bounds)) return {};

  Hits found;
  const std::vector<Edge> all = lineSegs(outline);
  for (std::size_t k = 0; k < all.size(); ++k) {
    const Edge& edge = all[k];
    if (!edge.valid) continue;
    if (!edge.bounds.overlaps(bounds)) continue;
    if (edge.line.isParallel(line)) continue;
    if (!countEndContacts) {
      if (edge.segment.distToPoint(p1) <= kTolerance) continue;
      if (edge.segment.distToPoint(p2) <= kTolerance) continue;
    }
    const gxVector<2> q = edge.line.intersect(line);
    if (edge.segment.distToPoint(q) < kTolerance && seg.distToPoint(q) < kTolerance) {
      found.points.push_back(q);
      found.edges.push_back(static_cast<int>(k));
    }
  }

  std::vector<double> keys;
  for (const gxVector<2>& q : found.points) keys.push_back((q - p1) * (p2 - p1));
  Hits sorted;
  for (const std::size_t i : exchangeOrder(keys)) {
    sorted.points.push_back(found.points[i]);
    sorted.edges.push_back(found.edges[i]);
  }
  return sorted;
}

Hits intersections(const Outline& outline, const gxLineSeg& seg, bool countEndContacts) {
  checkContour(outline.points);
  return intersections(outline, encloseRect(outline.points, gxXform<2>()), seg, countEndContacts);
}

Points intersections(const Outline& outline, const Outline& other) {
  checkContour(outline.points);
  Points result;
  for (const auto& [from, to] : edges(other)) {
    const Hits hits = intersections(outline, gxLineSeg(other.points[from], other.points[to]), true);
    result.insert(result.end(), hits.points.begin(), hits.points.end());
  }
  return result;
}

bool isSelfIntersecting(const Outline& outline) {
  if (outline.points.size() < 2) return false;
  return isSelfIntersecting(outline, encloseRect(outline.points, gxXform<2>()));
}

bool isSelfIntersecting(const Outline& outline, const gxRect& box) {
  for (const Edge& edge : lineSegs(outline)) {
    if (edge.valid && !intersections(outline, box, edge.segment, false).points.empty()) return true;
  }
  return false;
}

std::vector<std::size_t> exchangeOrder(const std::vector<double>& keys) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < keys.size(); ++i) order.push_back(i);
  for (std::size_t i = 0; i < order.size(); ++i) {
    for (std::size_t j = i + 1; j < order.size(); ++j) {
      if (greater(keys[order[i]], keys[order[j]])) std::swap(order[i], order[j]);
    }
  }
  return order;
}

// ---- Extremes -----------------------------------------------------------------------------------

long extremalVertexIndex(const Points& points, double angle) {
  checkContour(points);
  const gxVector<2> d(std::cos(angle), std::sin(angle));
  double best = -1.7976931348623157e308;
  long result = -1;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const gxVector<2> p = points[i];
    double score = 0.0;
    if (gfRealEq(d, gxVector<2>(1.0, 0.0), 1e-15)) {
      score = p.x();
    } else if (gfRealEq(d, gxVector<2>(-1.0, 0.0), 1e-15)) {
      score = -p.x();
    } else if (gfRealEq(d, gxVector<2>(0.0, 1.0), 1e-15)) {
      score = p.y();
    } else if (gfRealEq(d, gxVector<2>(0.0, -1.0), 1e-15)) {
      score = -p.y();
    } else {
      score = d * p;
    }
    if (score > best) {
      best = score;
      result = static_cast<long>(i);
    }
  }
  return result;
}

gxVector<2> extremalVertexPosition(const Points& points, double angle) {
  const long index = extremalVertexIndex(points, angle);
  return index < 0 ? gxVector<2>(kNaN, kNaN) : points[static_cast<std::size_t>(index)];
}

gxRect encloseRect(const Points& points, const gxXform<2>& xform) {
  checkContour(points);
  const bool identity = gfRealEq(xform, gxXform<2>(), 1e-15);
  const auto at = [&](std::size_t i) { return identity ? points[i] : xform * points[i]; };
  gxRect rect(at(0), {0.0, 0.0});
  for (std::size_t i = 1; i < points.size(); ++i) rect = rect.enclose(gxRect(at(i), {0.0, 0.0}));
  return rect;
}

gxCircle encloseCircle(const Points& points, int mode, const gxCircle& slot) {
  if (mode != 0 && mode != 1) {
    throw gxContourDefs::BadParams(L"diameterMode is not one of the valid enums");
  }
  if (mode == 1) {
    if (points.empty()) return slot;
    double radius = 0.0;
    for (std::size_t j = 1; j < points.size(); ++j) {
      const double distance = points[0].distance(points[j]);
      if (distance > radius) radius = distance;
    }
    return {points[0], radius};
  }
  gxCircle circle = slot;
  double best = 0.0;
  for (const gxVector<2>& a : points) {
    for (const gxVector<2>& b : points) {
      const double distance = a.distance(b);
      if (distance > best) {
        best = distance;
        circle = gxCircle((a + b) * 0.5, distance * 0.5);
      }
    }
  }
  return circle;
}

double diameter(const Points& points, int mode) {
  return 2.0 * encloseCircle(points, mode).radius();
}

// ---- Features -----------------------------------------------------------------------------------

gxVector<2> meanPosition(const Outline& outline) {
  checkContour(outline.points);
  gxVector<2> sum(0.0, 0.0);
  double total = 0.0;
  for (const auto& [from, to] : edges(outline)) {
    const gxVector<2> a = outline.points[from];
    const gxVector<2> b = outline.points[to];
    const gxVector<2> middle = (a + b) * 0.5;
    const double distance = a.distance(b);
    total += distance;
    sum = sum + middle * distance;
  }
  return sum / total;
}

double medianFeatureSize(const Outline& outline) {
  checkContour(outline.points);
  std::vector<double> lengths;
  for (const auto& [from, to] : edges(outline)) {
    lengths.push_back(outline.points[from].distance(outline.points[to]));
  }
  std::sort(lengths.begin(), lengths.end(), [](double a, double b) { return greater(b, a); });
  return lengths[lengths.size() / 2];
}

std::vector<int> vertexIndex(const Points& points, const gxVector<2>& point, double tolerance) {
  checkContour(points);
  const auto isNear = [&](std::size_t i) { return points[i].distance(point) < tolerance; };
  struct Found {
    double cellX;
    double cellY;
    int index;
  };
  std::vector<Found> found;
  const double scale = 1.0 / tolerance;
  const auto cell = [&](double coordinate) {
    const double value = scale * coordinate;
    return std::trunc(value >= 0 ? value + 0.5 : value - 0.5);
  };
  const bool allInOne = std::isinf(tolerance);  // one cell holds everything
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (!isNear(i)) continue;
    if (allInOne) {
      found.push_back({0.0, 0.0, static_cast<int>(i)});
    } else {
      found.push_back({cell(points[i].x()), cell(points[i].y()), static_cast<int>(i)});
    }
  }
  std::stable_sort(found.begin(), found.end(), [](const Found& a, const Found& b) {
    return a.cellX < b.cellX || (a.cellX == b.cellX && a.cellY < b.cellY);
  });
  std::vector<int> result;
  for (const Found& f : found) result.push_back(f.index);
  return result;
}

// ---- Conversions --------------------------------------------------------------------------------

Points map(const gxXform<2>& xform, const Points& points) {
  Points result;
  for (const gxVector<2>& p : points) result.push_back(xform * p);
  return result;
}

Points polygon(const Outline& outline) {
  Points result = outline.points;
  if (outline.closed && !result.empty()) result.push_back(outline.points.front());
  return result;
}

std::vector<gxLineSeg> drawn(const Outline& outline) {
  std::vector<gxLineSeg> result;
  for (const auto& [from, to] : edges(outline))
    result.emplace_back(outline.points[from], outline.points[to]);
  return result;
}

}  // namespace slow
