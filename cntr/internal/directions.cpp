// The first wide gap among sorted directions needs only the first few directions above 0, so they
// are taken from the index sector by sector, each twice as wide as the last, until a gap above the
// limit lies between two directions that are both known.  A sector asks for all runs of edges whose
// box it may touch, with a slack far above the rounding of an angle, and then for the true direction
// of each vertex; so the directions known are always all of those below the sector's end.
#include <cntr/internal/directions.h>

#include <algorithm>
#include <cmath>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kFullTurn = 6.283185307179586;
constexpr double kQuarterTurn = 1.5707963267948966;

// Far above the rounding of a direction, far below any sector.
constexpr double kSlack = 1e-9;

// Tells whether the box holds a point on the side of the direction u that crosses to the left of it
// (sign 1) or to the right (sign −1); in doubt, that it does.
bool reaches(const gx_Box& b, const gxVector<2>& point, const gxVector<2>& u, double sign) {
  const double lowX = b.lowX - point.x();
  const double highX = b.highX - point.x();
  const double lowY = b.lowY - point.y();
  const double highY = b.highY - point.y();
  const double ux = sign * u.x();
  const double uy = sign * u.y();
  const double most = ux * (ux > 0.0 ? highY : lowY) - uy * (uy > 0.0 ? lowX : highX);
  const double size =
      std::max(std::abs(lowX), std::abs(highX)) + std::max(std::abs(lowY), std::abs(highY));
  return !(most < -kSlack * size);
}

}  // namespace

double gx_directionTo(const gxVector<2>& point, const gxVector<2>& vertex) {
  return (vertex - point).angle().norm().toDouble();
}

bool gx_isOnVertex(const gx_EdgeIndex& index, const Points& points, const gxVector<2>& point,
                   double tolerance) {
  if (index.hasNaN()) return true;
  const auto isNear = [&](const gxVector<2>& vertex) { return !((vertex - point).len() > tolerance); };
  if (!std::isfinite(point.x()) || !std::isfinite(point.y())) {  // ∞ − ∞ is near, whatever the box
    return std::any_of(points.begin(), points.end(), isNear);
  }
  const double limit = tolerance * tolerance * (1.0 + kSlack);
  return index.forEachRun([&](const gx_Box& box) { return !(box.squareFrom(point) > limit); },
                          [&](std::size_t first, std::size_t end) {
                            for (std::size_t i = first; i < end; ++i) {
                              if (isNear(points[i])) return true;
                            }
                            return false;
                          });
}

bool gx_firstWideGap(const gx_EdgeIndex& index, const Points& points, const gxVector<2>& point,
                     double wide, double& before, double& gap) {
  const std::size_t most = points.size() / 16 + 16;
  std::vector<double> known;
  double from = 0.0;
  double width = std::min(8.0 * wide, kQuarterTurn);
  for (std::size_t sorted = 0; from < kFullTurn;) {
    const double to = from + width;
    const gxVector<2> left(1.0, gxRadian(from));
    const gxVector<2> right(1.0, gxRadian(to));
    std::size_t seen = 0;
    const bool tooMany = index.forEachRun(
        [&](const gx_Box& b) { return reaches(b, point, left, 1.0) && reaches(b, point, right, -1.0); },
        [&](std::size_t first, std::size_t end) {
          for (std::size_t i = first; i < end; ++i) {
            const double direction = gx_directionTo(point, points[i]);
            if (direction >= from && direction < to) known.push_back(direction);
          }
          seen += end - first;
          return seen > 2 * most;
        });
    if (tooMany || known.size() > most) return false;
    std::sort(known.begin() + static_cast<std::ptrdiff_t>(sorted), known.end());
    for (std::size_t k = sorted == 0 ? 1 : sorted; k < known.size(); ++k) {
      gap = gxRadian(known[k] - known[k - 1]).norm().toDouble();
      if (!(gap > wide)) continue;
      before = known[k - 1];
      return true;
    }
    sorted = known.size();
    from = to;
    width = std::min(2.0 * width, kQuarterTurn);
  }
  return false;
}
