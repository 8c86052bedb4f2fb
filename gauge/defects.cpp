// Convexity defects.
//
//  1. The hull's corners are looked up in the outline: the outline is walked once around from a point that
//     is the hull's first corner, with the next corner to come in mind, forwards or backwards on the hull.
//     A simple outline comes to all of them in order; so does one that touches itself, if the walk begins
//     at the right one of the equal points.
//  2. Where it does not, from no beginning, the outline crosses itself: then every point that is a corner
//     ends a stretch.
//  3. Of each stretch: the deepest point and the area of the pocket.
//
// (Taking the first point with a corner's coordinates, corner by corner, pairs a stretch with the wrong
// edge as soon as the outline touches itself at a corner.)
#include <gauge/defects.h>
#include <gauge/internal/hull.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace {

using Points = std::span<const gxVector<2>>;
using Indices = std::vector<std::size_t>;

// So many equal points are tried as the beginning.
constexpr std::size_t kMostBeginnings = 32;

bool leftOf(const gxVector<2>& a, const gxVector<2>& b) {
  return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y());
}

// Walks once around from `begin` and collects where the corners come, in the hull's order or against it;
// tells whether all did.
bool inOrder(Points points, const std::vector<gxVector<2>>& corners, std::size_t begin, bool against,
             Indices& found) {
  found.clear();
  const std::size_t count = corners.size();
  std::size_t at = begin;
  for (std::size_t step = 0; step < points.size() && found.size() < count; ++step) {
    const std::size_t k = found.size();
    const gxVector<2>& wanted = corners[against && k != 0 ? count - k : k];
    if (points[at] == wanted) found.push_back(at);
    if (++at == points.size()) at = 0;
  }
  return found.size() == count;
}

// The indices of the hull's corners in the order of the outline; none where there is no such order.
Indices cornersOf(Points points, const std::vector<gxVector<2>>& corners) {
  Indices found;
  std::size_t tried = 0;
  for (std::size_t i = 0; i < points.size() && tried < kMostBeginnings; ++i) {
    if (!(points[i] == corners[0])) continue;
    ++tried;
    for (const bool against : {false, true}) {
      if (inOrder(points, corners, i, against, found)) return found;
    }
  }
  return {};
}

// All points that are corners, one after the other.
Indices visitsOf(Points points, std::vector<gxVector<2>> corners) {
  std::sort(corners.begin(), corners.end(), leftOf);
  Indices visits;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (std::binary_search(corners.begin(), corners.end(), points[i], leftOf)) visits.push_back(i);
  }
  return visits;
}

// The defect between two points of the outline; of no depth where there is none.
gxConvexityDefect defectBetween(Points points, const gx_Frame& frame, std::size_t start,
                                std::size_t end) {
  gxConvexityDefect defect;
  const gxVector<2> origin = frame.scaled(points[start]);
  const gxVector<2> chord = frame.scaled(points[end]) - origin;
  const double length = chord.len();
  double twice = 0.0;
  double deepest = 0.0;
  gxVector<2> last;
  std::size_t at = start;
  for (;;) {
    if (++at == points.size()) at = 0;
    const gxVector<2> p = frame.scaled(points[at]) - origin;
    twice += gf_Cross(last, p);
    last = p;
    if (at == end) break;
    const double depth = length > 0.0 ? std::fabs(gf_Cross(chord, p)) / length : p.len();
    if (!(depth > deepest)) continue;
    if (length > 0.0 && gx_Orientation(points[start], points[end], points[at]) == 0) continue;
    deepest = depth;
    defect.deepest = static_cast<long>(at);
  }
  if (defect.deepest < 0) return defect;
  defect.start = static_cast<long>(start);
  defect.end = static_cast<long>(end);
  defect.startPoint = points[start];
  defect.endPoint = points[end];
  defect.deepestPoint = points[static_cast<std::size_t>(defect.deepest)];
  defect.depth = frame.lengthFrom(deepest);
  defect.area = frame.areaFrom(0.5 * std::fabs(twice));
  return defect;
}

}  // namespace

gxConvexityDefects gfConvexityDefects(Points outline) {
  gxConvexityDefects result;
  if (outline.empty()) return result;
  if (!gx_allFinite(outline)) {
    result.status = gxStatus::eNotFinite;
    return result;
  }
  const gx_Hull hull(outline);
  if (hull.size() < 3) {
    result.status = gxStatus::eFlat;
    return result;
  }
  result.status = gxStatus::eOk;
  Indices ends = cornersOf(outline, hull.corners());
  if (ends.empty()) {
    result.status = gxStatus::eCrossing;
    ends = visitsOf(outline, hull.corners());
  }
  std::rotate(ends.begin(), std::min_element(ends.begin(), ends.end()), ends.end());
  for (std::size_t k = 0; k < ends.size(); ++k) {
    const auto defect =
        defectBetween(outline, hull.frame(), ends[k], ends[k + 1 == ends.size() ? 0 : k + 1]);
    if (defect.deepest >= 0) result.defects.push_back(defect);
  }
  return result;
}

gxConvexityDefects gfConvexityDefects(const gxContour& contour) {
  if (!contour.points().empty() && !contour.isClosed()) {
    gxConvexityDefects result;
    result.status = gxStatus::eNotClosed;
    return result;
  }
  return gfConvexityDefects(Points(contour.points()));
}

std::ostream& operator<<(std::ostream& out, const gxConvexityDefect& d) {
  return out << "from " << d.start << " to " << d.end << " deepest " << d.deepest << " depth " << d.depth
             << " area " << d.area;
}

std::ostream& operator<<(std::ostream& out, const gxConvexityDefects& d) {
  out << d.defects.size() << " defects";
  if (d.status != gxStatus::eOk) out << ' ' << d.status;
  return out;
}
