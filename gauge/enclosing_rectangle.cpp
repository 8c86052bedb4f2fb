// The rectangles of least area and of least width: the calipers of internal/hull find the edge, here the
// result is put in order, the longer side first.
#include <gauge/enclosing.h>
#include <gauge/internal/axis.h>
#include <gauge/internal/hull.h>
#include <gauge/internal/shape_points.h>

#include <cmath>
#include <numbers>
#include <ostream>
#include <utility>

namespace {

// Sides that agree to this make a square.
constexpr double kSquare = 1e-14;

gxTurnedRectangle ordered(const gx_Hull& hull, const gx_HullRectangle& found) {
  gxTurnedRectangle result;
  result.status = gxStatus::eOk;
  result.hullEdge = found.edge;
  result.centre = hull.frame().unscaled(found.centre);
  result.length = hull.frame().lengthFrom(std::max(found.onward, found.across));
  result.width = hull.frame().lengthFrom(std::min(found.onward, found.across));
  const bool turned = found.across > found.onward;
  result.angle = gx_axisAngle(turned ? gxVector<2>(-found.along.y(), found.along.x()) : found.along);
  if (std::fabs(found.onward - found.across) <= kSquare * found.onward) {
    // Of the two directions of a square the one from x towards y.
    if (result.angle < 0.0) result.angle += std::numbers::pi / 2.0;
    if (result.angle >= std::numbers::pi / 2.0) result.angle -= std::numbers::pi / 2.0;
  }
  return result;
}

gxTurnedRectangle flat(const gx_Hull& hull) {
  gxTurnedRectangle result;
  result.status = gxStatus::eFlat;
  const gxVector<2> a = hull.scaled(0);
  const gxVector<2> b = hull.scaled(hull.size() - 1);
  result.centre = hull.size() == 1 ? hull.corners()[0] : hull.frame().unscaled(a + (b - a) * 0.5);
  result.length = hull.frame().lengthFrom((b - a).len());
  result.angle = gx_axisAngle(b - a);
  return result;
}

gxTurnedRectangle rectangleOf(std::span<const gxVector<2>> points,
                              gx_HullRectangle (gx_Hull::*least)() const) {
  gxTurnedRectangle result;
  if (points.empty()) {
    result.angle = std::numeric_limits<double>::quiet_NaN();
    return result;
  }
  if (!gx_allFinite(points)) {
    result.status = gxStatus::eNotFinite;
    result.length = result.width = result.angle = std::numeric_limits<double>::quiet_NaN();
    return result;
  }
  const gx_Hull hull(points);
  return hull.size() < 3 ? flat(hull) : ordered(hull, (hull.*least)());
}

}  // namespace

std::array<gxVector<2>, 4> gxTurnedRectangle::corners() const {
  const gxVector<2> direction(std::cos(angle), std::sin(angle));
  const gxVector<2> l = direction * (length * 0.5);
  const gxVector<2> s = gxVector<2>(-direction.y(), direction.x()) * (width * 0.5);
  return {centre - l - s, centre + l - s, centre + l + s, centre - l + s};
}

gxTurnedRectangle gfLeastAreaRectangle(std::span<const gxVector<2>> points) {
  return rectangleOf(points, &gx_Hull::leastArea);
}
gxTurnedRectangle gfLeastAreaRectangle(const gxContour& contour) {
  return gfLeastAreaRectangle(std::span(contour.points()));
}
gxTurnedRectangle gfLeastAreaRectangle(const gxRegionSet& set) {
  return gfLeastAreaRectangle(std::span<const gxVector<2>>(gx_outlinePoints(set)));
}
gxTurnedRectangle gfLeastWidthRectangle(std::span<const gxVector<2>> points) {
  return rectangleOf(points, &gx_Hull::leastWidth);
}
gxTurnedRectangle gfLeastWidthRectangle(const gxContour& contour) {
  return gfLeastWidthRectangle(std::span(contour.points()));
}
gxTurnedRectangle gfLeastWidthRectangle(const gxRegionSet& set) {
  return gfLeastWidthRectangle(std::span<const gxVector<2>>(gx_outlinePoints(set)));
}

std::ostream& operator<<(std::ostream& out, const gxTurnedRectangle& r) {
  out << "centre (" << r.centre.x() << ", " << r.centre.y() << ") " << r.length << " by " << r.width
      << " angle " << r.angle;
  if (r.status != gxStatus::eOk) out << ' ' << r.status;
  return out;
}
