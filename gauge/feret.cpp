// Widths, from the calipers of internal/hull; the indices are looked up at the end, because a hull is made
// of coordinates.
#include <gauge/feret.h>
#include <gauge/internal/axis.h>
#include <gauge/internal/hull.h>
#include <gauge/internal/shape_points.h>

#include <array>
#include <cmath>
#include <numbers>
#include <ostream>

namespace {

using Point = gxVector<2>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Returns the first index of each of the corners.
template <std::size_t N>
std::array<long, N> indicesOf(std::span<const Point> points, const std::array<Point, N>& corners) {
  std::array<long, N> result;
  for (std::size_t k = 0; k < N; ++k) {
    std::size_t i = 0;
    while (!(points[i] == corners[k])) ++i;
    result[k] = static_cast<long>(i);
  }
  return result;
}

void fillGreatest(const gx_Hull& hull, gxFeret& feret) {
  const gx_HullWidth greatest = hull.greatest();
  const Point d = hull.scaled(greatest.to) - hull.scaled(greatest.from);
  feret.feretMax = hull.frame().lengthFrom(greatest.width);
  feret.feretMaxFromPoint = hull.corners()[greatest.from];
  feret.feretMaxToPoint = hull.corners()[greatest.to];
  if (!(greatest.width > 0.0)) return;
  feret.feretMaxAngle = gx_axisAngle(d);
  feret.feretAcross = hull.frame().lengthFrom(hull.along(Point(-d.y(), d.x()) * (1.0 / greatest.width)));
}

void fillLeast(const gx_Hull& hull, const gx_HullWidth& least, gxFeret& feret) {
  const Point e = hull.edge(least.from);
  const Point far = hull.scaled(least.to) - hull.scaled(least.from);
  const double t = e * far / (e * e);
  feret.feretMin = hull.frame().lengthFrom(least.width);
  feret.feretMinAngle = gx_axisAngle({-e.y(), e.x()});
  feret.feretMinPoint = hull.corners()[least.to];
  feret.feretMinFoot = hull.frame().unscaled(hull.scaled(least.from) + e * t);
}

void fillIndices(std::span<const Point> points, const gx_Hull& hull, const gx_HullWidth& least,
                 gxFeret& feret) {
  const auto& corners = hull.corners();
  const auto index =
      indicesOf<5>(points, {feret.feretMaxFromPoint, feret.feretMaxToPoint, corners[least.from],
                            corners[hull.next(least.from)], corners[least.to]});
  feret.feretMaxFrom = index[0];
  feret.feretMaxTo = index[1];
  feret.feretMinEdgeFrom = index[2];
  feret.feretMinEdgeTo = index[3];
  feret.feretMinVertex = index[4];
}

}  // namespace

gxFeret gfFeret(std::span<const gxVector<2>> points) {
  gxFeret feret;
  if (points.empty()) return feret;
  if (!gx_allFinite(points)) {
    feret.status = gxStatus::eNotFinite;
    feret.feretMax = feret.feretMin = feret.feretAcross = feret.feretMean = kNaN;
    return feret;
  }
  const gx_Hull hull(points);
  feret.status = hull.size() < 3 ? gxStatus::eFlat : gxStatus::eOk;
  feret.feretMean = hull.frame().lengthFrom(hull.perimeter() / std::numbers::pi);
  fillGreatest(hull, feret);
  gx_HullWidth least;
  if (hull.size() >= 3) least = hull.least();
  if (hull.size() >= 2) fillLeast(hull, least, feret);
  if (hull.size() == 2) feret.feretAcross = 0.0;
  if (hull.size() == 1) feret.feretMinPoint = feret.feretMinFoot = hull.corners()[0];
  fillIndices(points, hull, least, feret);
  return feret;
}

gxFeret gfFeret(const gxContour& contour) {
  return gfFeret(std::span(contour.points()));
}

gxFeret gfFeret(const gxRegionSet& set) {
  return gfFeret(std::span<const gxVector<2>>(gx_outlinePoints(set)));
}

double gfWidthAt(std::span<const gxVector<2>> points, double angle) {
  if (!std::isfinite(angle) || !gx_allFinite(points)) return kNaN;
  if (points.empty()) return 0.0;
  const Point direction(std::cos(angle), std::sin(angle));
  const gx_Frame frame(points);
  double low = HUGE_VAL;
  double high = -HUGE_VAL;
  for (const Point& p : points) {
    const double d = direction * frame.to(p);
    low = d < low ? d : low;
    high = d > high ? d : high;
  }
  return frame.lengthFrom(high - low);
}

double gfWidthAt(const gxContour& contour, double angle) {
  return gfWidthAt(std::span(contour.points()), angle);
}

double gfWidthAt(const gxRegionSet& set, double angle) {
  return gfWidthAt(std::span<const gxVector<2>>(gx_outlinePoints(set)), angle);
}

std::ostream& operator<<(std::ostream& out, const gxFeret& f) {
  out << "greatest " << f.feretMax << " at " << f.feretMaxAngle << " least " << f.feretMin << " at "
      << f.feretMinAngle << " across " << f.feretAcross << " mean " << f.feretMean;
  if (f.status != gxStatus::eOk) out << ' ' << f.status;
  return out;
}
