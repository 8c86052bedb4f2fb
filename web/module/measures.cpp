// Measures of one shape, under the names and in the order of the tool's commands `measure` and `describe`.
#include "binding.h"

#include <gauge/defects.h>
#include <gauge/descriptors.h>
#include <gauge/enclosing.h>
#include <gauge/feret.h>
#include <gauge/inscribed.h>
#include <gauge/measure.h>
#include <gauge/moments.h>
#include <gauge/wall.h>
#include <velstd/convex_hull.h>

#include <algorithm>
#include <initializer_list>

namespace {

using Kind = gxRecord::Kind;

// The first thing that is to be said of a shape stands.
void take(gxStatus status, gxStatus& whole) {
  if (whole == gxStatus::eOk) whole = status;
}

double asNumber(std::size_t count) {
  return static_cast<double>(count);
}

gxMeasure measureOf(const gxRecord& record) {
  std::vector<gxMeasuredRing> rings;
  for (std::size_t p = 0; p < record.partCount(); ++p) {
    for (std::size_t r = record.firstRing(p); r < record.partEnds[p]; ++r)
      rings.push_back({record.ring(r), r > record.firstRing(p)});
  }
  return gfMeasure(rings, record.kind != Kind::eOpen);
}

// Bare points have neither area nor border: their centre is the mean.
gxMeasure measureOfPoints(const gxRecord& record) {
  gxMeasure m = gfMeasure(std::span<const gxVector<2>>(record.points));
  m.area = 0.0;
  if (m.status == gxStatus::eOk) m.status = gxStatus::eFlat;
  if (record.points.empty() || m.status == gxStatus::eNotFinite) return m;
  m.length = 0.0;
  gxVector<2> sum;
  const double share = 1.0 / asNumber(record.points.size());
  for (const auto& p : record.points) sum += p * share;
  m.centre = sum;
  return m;
}

gxMeasure measured(const gxRecord& record) {
  return record.kind == Kind::ePoints ? measureOfPoints(record) : measureOf(record);
}

std::span<const gxVector<2>> outlineOf(const gxRecord& record) {
  return record.ringCount() == 0 ? std::span<const gxVector<2>>() : record.ring(0);
}

template <class Use>
auto withShape(gxwebShape& shape, const Use& use) {
  if (shape.isSet()) return use(shape.record.toSet());
  if (shape.record.kind == Kind::eOpen) return use(shape.record.toContour());
  return use(shape.region());
}

void add(gxwebAnswer& answer, std::initializer_list<double> numbers) {
  for (const double number : numbers) answer.add(number);
}

gxStatus addDescriptors(gxwebShape& shape, const gxMeasure& measure, gxwebAnswer& answer) {
  const gxDescriptors d = withShape(shape, [](const auto& s) { return gfDescribe(s); });
  add(answer, {d.area, d.filledArea, d.perimeter, d.length});
  answer.add(measure.centre);
  answer.add(d.box.origin());
  answer.add(d.box.corner());
  add(answer, {d.equivalentDiameter, d.circularity, d.compactness, d.convexity, d.solidity, d.extent,
               d.rectangularity, d.aspectRatio, d.elongation, d.eccentricity, d.orientation,
               static_cast<double>(d.eulerNumber), d.feretMax, d.feretMin, d.feretMean, d.feretAcross});
  return measure.status;
}

gxStatus addEnclosing(gxwebShape& shape, gxwebAnswer& answer) {
  const auto outline = outlineOf(shape.record);
  const gxRegionSet set = shape.isSet() ? shape.record.toSet() : gxRegionSet();
  const gxFeret f = shape.isSet() ? gfFeret(set) : gfFeret(outline);
  const gxEnclosingCircle c = shape.isSet() ? gfEnclosingCircle(set) : gfEnclosingCircle(outline);
  const gxTurnedRectangle r = shape.isSet() ? gfLeastAreaRectangle(set) : gfLeastAreaRectangle(outline);
  add(answer, {f.feretMaxAngle, f.feretMinAngle, c.radius});
  answer.add(c.centre);
  add(answer, {r.length, r.width, r.angle});
  answer.add(r.centre);
  gxStatus status = f.status;
  take(c.status, status);
  take(r.status, status);
  return status;
}

gxStatus addMoments(gxwebShape& shape, gxwebAnswer& answer) {
  const gxMoments m = withShape(shape, [](const auto& s) { return gfMoments(s); });
  add(answer, {m.moment20, m.moment11, m.moment02, m.moment30, m.moment21, m.moment12, m.moment03,
               m.eta20, m.eta11, m.eta02, m.eta30, m.eta21, m.eta12, m.eta03});
  for (const double number : m.hu) answer.add(number);
  add(answer, {m.ellipseA, m.ellipseB, m.ellipseAngle});
  return m.status;
}

double partsOf(const gxRecord& record) {
  if (record.kind == Kind::eSet) return asNumber(record.partCount());
  return record.points.empty() ? 0.0 : 1.0;
}

}  // namespace

/// Answers with the names, in order, of what the next three answer; all of them end with the status.
GXWEB_API int gxweb_names(int which) {
  return gfAnswered([&](gxwebAnswer& answer) {
    static const char* const names[] = {
        "points holes area length centre box status",
        "points holes parts area filled_area perimeter length centre box equivalent_diameter "
        "circularity "
        "compactness convexity solidity extent rectangularity aspect_ratio elongation eccentricity "
        "orientation euler_number feret_max feret_min feret_mean feret_across feret_max_angle "
        "feret_min_angle enclosing_circle_radius enclosing_circle_centre rectangle_length "
        "rectangle_width "
        "rectangle_angle rectangle_centre moment_20 moment_11 moment_02 moment_30 moment_21 moment_12 "
        "moment_03 eta_20 eta_11 eta_02 eta_30 eta_21 eta_12 eta_03 hu_1 hu_2 hu_3 hu_4 hu_5 hu_6 hu_7 "
        "ellipse_a ellipse_b ellipse_angle status",
        "inscribed_circle_radius inscribed_circle_centre wall wall_from wall_to status"};
    answer.text = names[which];
  });
}

GXWEB_API int gxweb_measure(gxwebShape* shape) {
  return gfAnswered([&](gxwebAnswer& answer) {
    const gxMeasure m = measured(shape->record);
    add(answer,
        {asNumber(shape->record.points.size()), asNumber(shape->record.holeCount()), m.area, m.length});
    answer.add(m.centre);
    answer.add(m.low);
    answer.add(m.high);
    answer.add(m.status);
  });
}

GXWEB_API int gxweb_describe(gxwebShape* shape) {
  return gfAnswered([&](gxwebAnswer& answer) {
    add(answer, {asNumber(shape->record.points.size()), asNumber(shape->record.holeCount()),
                 partsOf(shape->record)});
    gxStatus status = addDescriptors(*shape, measured(shape->record), answer);
    take(addEnclosing(*shape, answer), status);
    take(addMoments(*shape, answer), status);
    answer.add(status);
  });
}

/// The largest circle within and the smallest wall, which take longer.
GXWEB_API int gxweb_thickness(gxwebShape* shape) {
  return gfAnswered([&](gxwebAnswer& answer) {
    const gxRecord& record = shape->record;
    const gxInscribedCircle c =
        shape->isSet() ? gfInscribedCircle(record.toSet()) : gfInscribedCircle(shape->region());
    const gxWall w = shape->isSet() ? gfSmallestWall(record.toSet()) : gfSmallestWall(shape->region());
    answer.add(c.radius);
    answer.add(c.centre);
    answer.add(w.wall);
    answer.add(w.from);
    answer.add(w.to);
    gxStatus status = c.status;
    take(w.status, status);
    answer.add(status);
  });
}

/// Answers, of each dent of the first outline, its first, last and deepest vertex, its depth and area.
GXWEB_API int gxweb_defects(const gxwebShape* shape) {
  return gfAnswered([&](gxwebAnswer& answer) {
    for (const auto& d : gfConvexityDefects(outlineOf(shape->record)).defects) {
      add(answer, {static_cast<double>(d.start), static_cast<double>(d.end),
                   static_cast<double>(d.deepest), d.depth, d.area});
    }
  });
}

/// Answers where the greatest and the least width are taken: the ends of the one, vertex and foot of the
/// other.
GXWEB_API int gxweb_feret_ends(const gxwebShape* shape) {
  return gfAnswered([&](gxwebAnswer& answer) {
    const gxFeret f =
        shape->isSet() ? gfFeret(shape->record.toSet()) : gfFeret(outlineOf(shape->record));
    answer.add(f.feretMaxFromPoint);
    answer.add(f.feretMaxToPoint);
    answer.add(f.feretMinPoint);
    answer.add(f.feretMinFoot);
  });
}

/// Answers the corners of the rectangle of least area.
GXWEB_API int gxweb_rectangle_corners(const gxwebShape* shape) {
  return gfAnswered([&](gxwebAnswer& answer) {
    const gxTurnedRectangle r = shape->isSet() ? gfLeastAreaRectangle(shape->record.toSet())
                                               : gfLeastAreaRectangle(outlineOf(shape->record));
    for (const auto& corner : r.corners()) answer.add(corner);
  });
}

/// Makes the convex hull, as a region; of everything that is there.
GXWEB_API gxwebShape* gxweb_hull(const gxwebShape* shape) {
  return gfMade([&](gxwebShape& hull) {
    hull.record.kind = Kind::eRegion;
    gfConvexHull(shape->record.points, hull.record.points);
    hull.record.endRing(true);
    hull.record.endPart();
    hull.record.dropEmptyRing();
  });
}
