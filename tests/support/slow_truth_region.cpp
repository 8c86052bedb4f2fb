// Regions, the slow and plain way: queries and measures.
#include <support/slow_truth_region.h>

#include <algorithm>
#include <cmath>

namespace slow {

namespace {

constexpr double kPi = 3.141592653589793;

Outline closedOutline(const Points& points) {
  return {points, true};
}

// The directions from the point to the vertices, ascending in [0, 2π), NaN last; false where a
// vertex is so near that the point counts as it.
bool directions(const Points& outline, const gxVector<2>& point, std::vector<double>& angles) {
  for (const gxVector<2>& v : outline) {
    const gxVector<2> d = v - point;
    if (!(d.len() > 1e-6)) return false;
    angles.push_back(d.angle().norm().toDouble());
  }
  std::sort(angles.begin(), angles.end(), [](double a, double b) { return greater(b, a); });
  return true;
}

// The middle of the first gap between directions that is wide enough; else along the x axis.
gxVector<2> rayDirection(const std::vector<double>& angles) {
  const double least = kPi / static_cast<double>(angles.size());
  for (std::size_t k = 0; k < angles.size(); ++k) {
    const std::size_t next = k + 1 < angles.size() ? k + 1 : 0;
    const double gap = gxRadian(angles[next] - angles[k]).norm().toDouble();
    if (gap > least) return {1.0, gxRadian(angles[k] + gap * 0.5)};
  }
  return {1.0, 0.0};
}

}  // namespace

void checkRegion(const Points& outline) {
  if (outline.size() < 3) throw gxContourDefs::EmptyContour();
}

// ---- Queries ------------------------------------------------------------------------------------

long insideCount(const Points& outline, const gxVector<2>& point, bool bothWays) {
  return insideCount(outline, encloseRect(outline, gxXform<2>()), point, bothWays);
}

long insideCount(const Points& outline, const gxRect& box, const gxVector<2>& point, bool bothWays) {
  if (!box.within(point)) return 0;
  std::vector<double> angles;
  if (!directions(outline, point, angles)) return 1;
  const double radius = encloseCircle(outline, 1).radius();
  if (point.distance(outline[0]) > radius) return 0;
  const gxVector<2> reach = rayDirection(angles) * (2.0 * radius);
  const auto count = [&](const gxVector<2>& end) {
    return static_cast<long>(
        intersections(closedOutline(outline), box, gxLineSeg(point, end), false).points.size());
  };
  const long there = count(point + reach);
  return bothWays ? std::min(there, count(point - reach)) : there;
}

bool inside(const Region& region, const gxVector<2>& point, bool considerHoles) {
  if (insideCount(region.outline, point, false) % 2 == 0) return false;
  if (!considerHoles) return true;
  for (const Region& hole : region.holes) {
    if (inside(hole, point, true)) return false;
  }
  return true;
}

long closestVertexIndex(const Region& region, const gxVector<2>& point, bool considerHoles,
                        long& holeIndex) {
  holeIndex = -1;
  long index = closestVertexIndex(region.outline, point);
  if (!considerHoles) return index;
  double best = point.distance(region.outline[static_cast<std::size_t>(index)]);
  for (std::size_t k = 0; k < region.holes.size(); ++k) {
    const Points& hole = region.holes[k].outline;
    const long candidate = closestVertexIndex(hole, point);
    const double distance = point.distance(hole[static_cast<std::size_t>(candidate)]);
    if (distance < best) {
      best = distance;
      index = candidate;
      holeIndex = static_cast<long>(k);
    }
  }
  return index;
}

gxVector<2> closestPoint(const Region& region, const gxVector<2>& point, bool vertexOnly,
                         bool considerHoles) {
  if (vertexOnly) {
    long hole = 0;
    const auto index = static_cast<std::size_t>(closestVertexIndex(region, point, considerHoles, hole));
    return hole < 0 ? region.outline[index]
                    : region.holes[static_cast<std::size_t>(hole)].outline[index];
  }
  gxVector<2> result = closestPoint(closedOutline(region.outline), point, false);
  double best = point.distance(result);
  for (const Region& hole : region.holes) {  // also when holes are not to be considered
    const gxVector<2> candidate = closestPoint(closedOutline(hole.outline), point, false);
    const double distance = point.distance(candidate);
    if (distance < best) {
      best = distance;
      result = candidate;
    }
  }
  return result;
}

double distToPoint(const Region& region, const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                   bool insideIsZero) {
  if (insideIsZero && inside(region, point, considerHoles)) return 0.0;
  return point.distance(closestPoint(region, point, vertexOnly, considerHoles));
}

Points intersections(const Region& region, const Outline& other, bool considerHoles) {
  Points result = intersections(closedOutline(region.outline), other);
  if (!considerHoles) return result;
  for (const Region& hole : region.holes) {
    const Points more = intersections(closedOutline(hole.outline), other);
    result.insert(result.end(), more.begin(), more.end());
  }
  return result;
}

Points intersections(const Region& region, const gxLineSeg& seg, bool countEndContacts,
                     bool considerHoles) {
  Points result = intersections(closedOutline(region.outline), seg, countEndContacts).points;
  if (!considerHoles) return result;
  for (const Region& hole : region.holes) {
    const Points more = intersections(closedOutline(hole.outline), seg, countEndContacts).points;
    result.insert(result.end(), more.begin(), more.end());
  }
  return result;
}

// ---- Measures -----------------------------------------------------------------------------------

double area(const Region& region, bool considerHoles) {
  checkRegion(region.outline);
  double result = area(region.outline);
  if (!considerHoles) return result;
  for (const Region& hole : region.holes) result = result - area(hole, false);
  return result;
}

gxVector<2> centerOfMass(const Region& region, bool considerHoles) {
  checkRegion(region.outline);
  if (!considerHoles) return centerOfMass(region.outline);
  double total = area(region.outline);
  gxVector<2> sum = centerOfMass(region.outline) * total;
  for (const Region& hole : region.holes) {
    sum = sum - centerOfMass(hole, false) * area(hole, false);
    total = total - area(hole, false);
  }
  return sum * (1.0 / total);
}

gxMatrix<2> inertiaMatrix(const Region& region, bool considerHoles) {
  checkRegion(region.outline);
  if (considerHoles && !region.holes.empty()) {
    throw gxContourDefs::BadParams(L"inertiaMatrix(considerHoles) is not implemented");
  }
  return polygonMoments(region.outline).matrix;
}

// ---- Holes --------------------------------------------------------------------------------------

void checkHoles(const Region& region, const std::vector<Region>& holes) {
  for (const Region& hole : holes) {
    if (!intersections(closedOutline(region.outline), closedOutline(hole.outline)).empty()) {
      throw gxContourDefs::BadParams(L"holes cannot intersect region");
    }
  }
}

}  // namespace slow
