// What encloses many outlines, one after the other.
#include <cntr/contourdefs.h>
#include <gauge/enclosing.h>
#include <gauge/internal/hull.h>
#include <gauge/measure_many.h>
#include <velstd/convex_hull.h>

#include <algorithm>
#include <cstddef>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

using Points = std::span<const gxVector<2>>;

void encloseOne(const gxOutlines& outlines, std::size_t k, gxEnclosureColumns& c) {
  const Points points = outlines[k];
  gxEnclosingCircle circle = gfEnclosingCircle(points);
  double area = 0.0;
  double diameter = 0.0;
  long corners = 0;
  if (!outlines.valid(k)) circle.status = gxStatus::eBadArgument;
  if (circle.status == gxStatus::eBadArgument) {
    area = diameter = circle.radius = kNaN;
  } else if (circle.status == gxStatus::eNotFinite) {
    area = diameter = kNaN;
  } else if (!points.empty()) {
    const gx_Hull hull(points);
    corners = static_cast<long>(hull.size());
    area = hull.size() < 3 ? 0.0 : hull.frame().areaFrom(hull.area());
    diameter = hull.frame().lengthFrom(hull.greatest().width);
  }
  c.status[k] = circle.status;
  c.hullSize[k] = corners;
  c.hullArea[k] = area;
  c.diameter[k] = diameter;
  c.circleX[k] = circle.centre.x();
  c.circleY[k] = circle.centre.y();
  c.circleRadius[k] = circle.radius;
}

// Leaves no corners where the status is not that of an answer.
gxStatus hullOf(bool valid, const std::vector<gxVector<2>>& points, std::vector<gxVector<2>>& hull) {
  hull.clear();
  if (!valid) return gxStatus::eBadArgument;
  if (points.empty()) return gxStatus::eEmpty;
  if (!gx_allFinite(points)) return gxStatus::eNotFinite;
  gfConvexHull(points, hull);
  return hull.size() < 3 ? gxStatus::eFlat : gxStatus::eOk;
}

}  // namespace

void gxEnclosureColumns::resize(std::size_t rows) {
  status.resize(rows, gxStatus::eEmpty);
  hullSize.resize(rows, 0);
  for (auto* column : {&hullArea, &diameter, &circleRadius}) column->resize(rows, 0.0);
  for (auto* column : {&circleX, &circleY}) column->resize(rows, kNaN);
}

gxEnclosureColumns gfEncloseMany(const gxOutlines& outlines) {
  gxEnclosureColumns columns;
  columns.resize(outlines.size());
  gfEncloseMany(outlines, 0, outlines.size(), columns);
  return columns;
}

void gfEncloseMany(const gxOutlines& outlines, std::size_t first, std::size_t last,
                   gxEnclosureColumns& columns) {
  last = std::min(last, outlines.size());
  if (columns.size() < last) throw gxContourDefs::BadParams(L"the columns are shorter than the range");
  for (std::size_t k = first; k < last; ++k) encloseOne(outlines, k, columns);
}

gxHullLists gfHullsMany(const gxOutlines& outlines) {
  return gfHullsMany(outlines, 0, outlines.size());
}

gxHullLists gfHullsMany(const gxOutlines& outlines, std::size_t first, std::size_t last) {
  last = std::min(last, outlines.size());
  gxHullLists lists;
  if (first >= last) return lists;
  lists.status.reserve(last - first);
  lists.offsets.reserve(last - first + 1);
  std::vector<gxVector<2>> points;
  std::vector<gxVector<2>> hull;
  for (std::size_t k = first; k < last; ++k) {
    const Points outline = outlines[k];
    points.assign(outline.begin(), outline.end());
    lists.status.push_back(hullOf(outlines.valid(k), points, hull));
    lists.points.insert(lists.points.end(), hull.begin(), hull.end());
    lists.offsets.push_back(lists.points.size());
  }
  return lists;
}
