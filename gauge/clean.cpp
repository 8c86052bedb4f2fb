// Cleaning.
//
// Collinear points are dropped by a stack: a point goes when it lies on the segment from the one below it to
// the one that comes, and then the one below it is looked at again.  Of an outline the two ends of the
// stack are worked off against each other at last, as dropping at the seam can free points on both sides.
//
// Two outlines are compared by their least rotations: the start from which an outline is lowest, point by
// point, found in linear time by the two candidates' race (J. Shiloach, "Fast canonization of circular
// strings", 1981).
#include <gauge/clean.h>
#include <gauge/internal/frame.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>

namespace {

using Points = std::vector<gxVector<2>>;

bool lower(const gxVector<2>& a, const gxVector<2>& b) {
  return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y());
}

// Tells whether b may go between a and c.
bool saysNothing(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c) {
  const gxVector<2> three[] = {a, b, c};
  if (!gx_allFinite(three)) return false;
  if (a == b || b == c) return true;
  if (gx_Orientation(a, b, c) != 0) return false;
  return b.x() >= std::min(a.x(), c.x()) && b.x() <= std::max(a.x(), c.x()) &&
         b.y() >= std::min(a.y(), c.y()) && b.y() <= std::max(a.y(), c.y());
}

// Twice the signed area about the middle, and what rounding may have done to it.
void twiceArea(const Points& points, double& area, double& error) {
  area = 0.0;
  double sizes = 0.0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const gxVector<2>& a = points[i];
    const gxVector<2>& b = points[i + 1 == points.size() ? 0 : i + 1];
    area += gf_Cross(a, b);
    sizes += std::abs(a.x() * b.y()) + std::abs(a.y() * b.x());
  }
  error = sizes * (static_cast<double>(points.size()) + 4.0) * 2.3e-16;
}

// The turn at the lowest corner of an outline, which is convex.
int turnAtLowest(std::span<const gxVector<2>> points) {
  const std::size_t n = points.size();
  const auto lowest =
      static_cast<std::size_t>(std::min_element(points.begin(), points.end(), lower) - points.begin());
  std::size_t before = lowest;
  std::size_t after = lowest;
  for (std::size_t k = 0; k < n && points[before] == points[lowest]; ++k) before = (before + n - 1) % n;
  for (std::size_t k = 0; k < n && points[after] == points[lowest]; ++k) after = (after + 1) % n;
  return gx_Orientation(points[before], points[lowest], points[after]);
}

// Where the least rotation begins.
std::size_t leastStart(const Points& points) {
  const std::size_t n = points.size();
  std::size_t i = 0;
  std::size_t j = 1;
  std::size_t k = 0;
  while (i < n && j < n && k < n) {
    const gxVector<2>& a = points[(i + k) % n];
    const gxVector<2>& b = points[(j + k) % n];
    if (a == b) {
      ++k;
      continue;
    }
    (lower(b, a) ? i : j) += k + 1;
    if (i == j) ++j;
    k = 0;
  }
  return std::min(i, j);
}

bool sameFrom(const Points& a, std::size_t startA, const Points& b, std::size_t startB) {
  for (std::size_t k = 0; k < a.size(); ++k) {
    if (!(a[(startA + k) % a.size()] == b[(startB + k) % b.size()])) return false;
  }
  return true;
}

}  // namespace

int gfOrientation(std::span<const gxVector<2>> points) {
  if (points.size() < 3 || !gx_allFinite(points)) return 0;
  const gx_Frame frame(points);
  Points inFrame;
  inFrame.reserve(points.size());
  for (const gxVector<2>& p : points) inFrame.push_back(frame.to(p));
  double area = 0.0;
  double error = 0.0;
  twiceArea(inFrame, area, error);
  if (area > error) return 1;
  if (-area > error) return -1;
  return turnAtLowest(points);
}

int gfOrientation(const gxContour& contour) {
  return contour.isClosed() ? gfOrientation(contour.points()) : 0;
}

Points gfReversed(std::span<const gxVector<2>> points, bool closed) {
  Points result(points.begin(), points.end());
  if (!result.empty()) std::reverse(result.begin() + (closed ? 1 : 0), result.end());
  return result;
}

Points gfOriented(std::span<const gxVector<2>> points, int orientation) {
  const int now = gfOrientation(points);
  if (orientation * now < 0) return gfReversed(points, true);
  return {points.begin(), points.end()};
}

Points gfStartingAt(std::span<const gxVector<2>> points, std::size_t start) {
  Points result(points.begin(), points.end());
  if (result.empty()) return result;
  std::rotate(result.begin(), result.begin() + static_cast<std::ptrdiff_t>(start % result.size()),
              result.end());
  return result;
}

Points gfWithoutRepeated(std::span<const gxVector<2>> points, bool closed, double tolerance) {
  const double limit = tolerance > 0.0 ? tolerance : 0.0;
  const auto repeats = [limit](const gxVector<2>& a, const gxVector<2>& b) {
    return a == b || (limit > 0.0 && a.distance(b) <= limit);
  };
  Points result;
  for (const gxVector<2>& p : points) {
    if (result.empty() || !repeats(result.back(), p)) result.push_back(p);
  }
  if (closed) {
    while (result.size() > 1 && repeats(result.back(), result.front())) result.pop_back();
  } else if (result.size() > 1 && !(result.back() == points.back())) {
    result.back() = points.back();
    // The point that gave way may have been what kept the one before it apart.
    while (result.size() > 2 && repeats(result[result.size() - 2], result.back())) {
      result.erase(result.end() - 2);
    }
  }
  return result;
}

Points gfWithoutCollinear(std::span<const gxVector<2>> points, bool closed) {
  Points stack;
  for (const gxVector<2>& p : points) {
    while (stack.size() > 1 && saysNothing(stack[stack.size() - 2], stack.back(), p)) stack.pop_back();
    if (stack.size() == 1 && stack.back() == p) continue;
    stack.push_back(p);
  }
  if (!closed) return stack;
  std::size_t first = 0;
  while (stack.size() - first > 2) {
    const gxVector<2>& last = stack.back();
    if (saysNothing(stack[stack.size() - 2], last, stack[first])) {
      stack.pop_back();
    } else if (saysNothing(last, stack[first], stack[first + 1])) {
      ++first;
    } else {
      break;
    }
  }
  if (stack.size() - first == 2 && stack.back() == stack[first]) stack.pop_back();
  stack.erase(stack.begin(), stack.begin() + static_cast<std::ptrdiff_t>(first));
  return stack;
}

bool gfSameWalk(std::span<const gxVector<2>> a, std::span<const gxVector<2>> b, bool closed) {
  if (a.size() != b.size()) return false;
  if (a.empty()) return true;
  const auto isNaN = [](const gxVector<2>& p) { return std::isnan(p.x()) || std::isnan(p.y()); };
  if (std::any_of(a.begin(), a.end(), isNaN) || std::any_of(b.begin(), b.end(), isNaN)) return false;
  const Points first(a.begin(), a.end());
  const Points second(b.begin(), b.end());
  const Points back = gfReversed(b, closed);
  if (!closed) return sameFrom(first, 0, second, 0) || sameFrom(first, 0, back, 0);
  const std::size_t start = leastStart(first);
  return sameFrom(first, start, second, leastStart(second)) ||
         sameFrom(first, start, back, leastStart(back));
}

bool gfSameWalk(const gxContour& a, const gxContour& b) {
  return a.isClosed() == b.isClosed() && gfSameWalk(a.points(), b.points(), a.isClosed());
}
