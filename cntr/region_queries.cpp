// Nearest point and vertex, distance and crossings, of the outline and the holes together.  The
// outline comes first, the holes follow in their order, and only what is strictly nearer replaces
// the best so far.  The nearest point always looks at the holes; only the nearest vertex asks
// whether it shall.
#include <cntr/region.h>

long gxRegion::closestVertexIndex(const gxVector<2>& point) const {
  return gxContour::closestVertexIndex(point);
}

long gxRegion::closestVertexIndex(const gxVector<2>& point, bool considerHoles, long& holeIndex) const {
  long hole = -1;
  long index = gxContour::closestVertexIndex(point);
  if (considerHoles) {
    double best = points()[static_cast<std::size_t>(index)].distance(point);
    for (std::size_t k = 0; k < holes_.size(); ++k) {
      const long candidate = holes_[k]->closestVertexIndex(point);
      const double distance = holes_[k]->points()[static_cast<std::size_t>(candidate)].distance(point);
      if (distance < best) {
        best = distance;
        hole = static_cast<long>(k);
        index = candidate;
      }
    }
  }
  holeIndex = hole;
  return index;
}

gxVector<2> gxRegion::closestPoint(const gxVector<2>& point, bool vertexOnly, bool considerHoles) const {
  if (vertexOnly) {
    long hole = -1;
    const auto index = static_cast<std::size_t>(closestVertexIndex(point, considerHoles, hole));
    return hole < 0 ? points()[index] : holes_[static_cast<std::size_t>(hole)]->points()[index];
  }
  gxVector<2> nearest = gxContour::closestPoint(point, false);
  double best = nearest.distance(point);
  for (const HoleHandle& hole : holes_) {
    const gxVector<2> candidate = hole->gxContour::closestPoint(point, false);
    const double distance = candidate.distance(point);
    if (distance < best) {
      best = distance;
      nearest = candidate;
    }
  }
  return nearest;
}

std::vector<gxVector<2>> gxRegion::closestPoints(const std::vector<gxVector<2>>& points, bool vertexOnly,
                                                 bool considerHoles) const {
  std::vector<gxVector<2>> result;
  result.reserve(points.size());
  for (const gxVector<2>& p : points) result.push_back(closestPoint(p, vertexOnly, considerHoles));
  return result;
}

double gxRegion::distToPoint(const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                             bool insideIsZero) const {
  if (insideIsZero && inside(point, considerHoles)) return 0.0;
  return point.distance(closestPoint(point, vertexOnly, considerHoles));
}

std::vector<gxVector<2>> gxRegion::intersections(const gxContour& other, bool considerHoles) const {
  std::vector<gxVector<2>> result = gxContour::intersections(other);
  if (!considerHoles) return result;
  for (const HoleHandle& hole : holes_) {
    const std::vector<gxVector<2>> more = hole->gxContour::intersections(other);
    result.insert(result.end(), more.begin(), more.end());
  }
  return result;
}

std::vector<gxVector<2>> gxRegion::intersections(const gxLineSeg& seg, bool countEndContacts,
                                                 bool considerHoles) const {
  std::vector<gxVector<2>> result = gxContour::intersections(seg, countEndContacts);
  if (!considerHoles) return result;
  for (const HoleHandle& hole : holes_) {
    const std::vector<gxVector<2>> more = hole->gxContour::intersections(seg, countEndContacts);
    result.insert(result.end(), more.begin(), more.end());
  }
  return result;
}
