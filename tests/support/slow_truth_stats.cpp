// Moments and spread, the slow and plain way.
#include <support/quad.h>
#include <support/slow_truth_stats.h>
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>
#include <velstd/exception.h>

#include <algorithm>
#include <cmath>

namespace slow {

namespace {

// Coordinates relative to the first point, so that a shape far away loses no digits.
Points relative(const Points& points) {
  Points result;
  for (const gxVector<2>& p : points) result.push_back(p - points[0]);
  return result;
}

double twiceArea(const gxVector<2>& previous, const gxVector<2>& current) {
  return current.y() * previous.x() - previous.y() * current.x();
}

gxVector<2> middle(const gxVector<2>& u, const gxVector<2>& v) {
  return {(u.x() + v.x()) * 0.5, (u.y() + v.y()) * 0.5};
}

// Where two medians meet.
gxVector<2> triangleCentroid(const gxVector<2>& o, const gxVector<2>& p, const gxVector<2>& q) {
  const gxLineSeg first(o, middle(p, q));
  const gxLineSeg second(p, middle(o, q));
  return first.line().intersect(second.line());
}

// Seen from the apex.
std::vector<Moments> fan(const Points& points, const gxVector<2>& apex) {
  std::vector<Moments> triangles;
  for (const auto& [from, to] : edges({points, true})) {
    triangles.push_back(triangleMoments({0.0, 0.0}, points[from] - apex, points[to] - apex));
  }
  return triangles;
}

double sumOfAreas(const std::vector<Moments>& triangles) {
  double sum = 0.0;
  for (const Moments& t : triangles) sum += t.area;
  return sum;
}

// The triangles added up in three passes, the large ones first.
Moments addedUp(const std::vector<Moments>& triangles) {
  const double mean = sumOfAreas(triangles) / static_cast<double>(triangles.size());
  const double threshold = mean > 0 ? 1e-6 : -1e-6;
  std::vector<bool> added(triangles.size(), false);
  Moments sum;
  const auto pass = [&](auto wanted) {
    for (std::size_t i = 0; i < triangles.size(); ++i) {
      if (added[i] || !wanted(triangles[i].area)) continue;
      sum = add(sum, triangles[i]);
      added[i] = true;
    }
  };
  pass([&](double a) { return a > mean || (mean < 0 && a < mean); });
  pass([&](double a) { return a > threshold || (threshold < 0 && a < threshold); });
  pass([](double) { return true; });
  return sum;
}

gxMatrix<2> rotation(double angle) {
  return {gxRadian(angle), gxRadian(angle), 1.0, 1.0};
}

double eighthRoot(double value) {
  return std::sqrt(std::sqrt(std::sqrt(value)));
}

}  // namespace

double area(const Points& points) {
  if (points.size() < 3) return 0.0;
  const Points local = relative(points);
  double sum = 0.0;
  for (const auto& [from, to] : edges({local, true})) sum += twiceArea(local[from], local[to]);
  return std::abs(sum * 0.5);
}

gxVector<2> centerOfMass(const Points& points) {
  return centerIfAny(points).value_or(gxVector<2>(0.0, 0.0));
}

std::optional<gxVector<2>> centerIfAny(const Points& points) {
  if (points.size() <= 2) return std::nullopt;
  const Points local = relative(points);
  double total = 0.0;
  double sumX = 0.0;
  double sumY = 0.0;
  for (const auto& [from, to] : edges({local, true})) {
    const double w = twiceArea(local[from], local[to]);
    if (!(std::abs(w) > 1e-15)) continue;
    const gxVector<2> g = triangleCentroid({0.0, 0.0}, local[from], local[to]);
    total += w;
    sumX += g.x() * w;
    sumY += g.y() * w;
  }
  if (!(std::abs(total) > 1e-6)) return std::nullopt;
  return gxVector<2>((1.0 / total) * sumX, (1.0 / total) * sumY) + points[0];
}

namespace {

// How far along the base its end lies from the foot, measured away from the other end.
double reach(const gxVector<2>& foot, const gxVector<2>& end, const gxVector<2>& other) {
  const double size = (foot - end).len();
  return (other - end) * (foot - end) < 0 ? -size : size;
}

// The triangle with corners at (-before, 0), (behind, 0) and (0, height): what it is in its own frame.
Moments onItsBase(double before, double behind, double height) {
  const double third = 1.0 / 3.0;
  const double size = (before + behind) * height * 0.5;
  const gxVector<2> middle((behind - before) * third, height * third);
  const double cubes = before * before * before + behind * behind * behind;
  const double squares = behind * behind - before * before;
  const double along = cubes * height * (1.0 / 12.0) - middle.x() * middle.x() * size;
  const double across =
      (before + behind) * (height * height * height) * (1.0 / 12.0) - middle.y() * middle.y() * size;
  const double mixed = squares * (height * height) * (1.0 / 24.0) - middle.y() * middle.x() * size;
  return {size, middle, gxMatrix<2>(along, mixed, mixed, across)};
}

// Seen from the other side of the base.
Moments mirrored(const Moments& m) {
  return {-m.area, gxVector<2>(m.center.x(), -m.center.y()),
          gxMatrix<2>(m.matrix.m00(), -m.matrix.m01(), -m.matrix.m10(), m.matrix.m11())};
}

Moments fromCorner(const gxVector<2>& c, const gxVector<2>& p, const gxVector<2>& q, int turnsLeft) {
  const gxLineSeg base(c, p);
  const bool footIsOutside = base.distToPoint(q) - 1e-10 > base.line().distToPoint(q);
  if (footIsOutside && turnsLeft > 0) return fromCorner(p, q, c, turnsLeft - 1);
  const gxVector<2> foot = base.line().proj(q);
  Moments own = onItsBase(reach(foot, c, p), reach(foot, p, c), base.line().distToPoint(q));
  const bool isCounterClockwise =
      (p.x() - c.x()) * (q.y() - c.y()) - (q.x() - c.x()) * (p.y() - c.y()) >= 0;
  if (!isCounterClockwise) own = mirrored(own);

  const double angle = (p - c).angle().toDouble();
  const double cosine = std::cos(angle);
  const double sine = std::sin(angle);
  const double along = own.matrix.m00();
  const double across = own.matrix.m11();
  const double mixed = own.matrix.m01();
  const double m01 =
      (cosine * cosine - sine * sine) * mixed + sine * cosine * along - sine * cosine * across;
  return {
      own.area, foot + rotation(angle) * own.center,
      gxMatrix<2>(cosine * cosine * along - 2.0 * sine * cosine * mixed + sine * sine * across, m01, m01,
                  sine * sine * along + 2.0 * sine * cosine * mixed + cosine * cosine * across)};
}

}  // namespace

Moments triangleMoments(const gxVector<2>& corner0, const gxVector<2>& corner1,
                        const gxVector<2>& corner2) {
  return fromCorner(corner0, corner1, corner2, 2);
}

Moments add(const Moments& first, const Moments& second) {
  const double a1 = first.area;
  const double a2 = second.area;
  if (!(a1 < 0) && !(a1 > 0)) return second;
  if (!(a2 < 0) && !(a2 > 0)) return first;
  gxVector<2> c(0.0, 0.0);
  if (std::abs(a2 + a1) > 1e-16) c = (second.center * a2 + first.center * a1) * (1.0 / (a2 + a1));
  const gxVector<2> d1 = c - first.center;
  const gxVector<2> d2 = c - second.center;
  double s1 = 1.0;
  double s2 = 1.0;
  double w1 = a1;
  double w2 = a2;
  if (a1 * a2 > 0) {
    w1 = std::abs(a1);
    w2 = std::abs(a2);
  } else if (a1 * a2 < 0) {
    (a1 > a2 ? s2 : s1) = -1.0;
  }
  const gxMatrix<2>& m1 = first.matrix;
  const gxMatrix<2>& m2 = second.matrix;
  const double m00 = w1 * d1.x() * d1.x() + s1 * m1.m00() + s2 * m2.m00() + w2 * d2.x() * d2.x();
  const double m01 = s1 * m1.m01() + w1 * d1.x() * d1.y() + s2 * m2.m01() + w2 * d2.x() * d2.y();
  const double m11 = w1 * d1.y() * d1.y() + s1 * m1.m11() + s2 * m2.m11() + w2 * d2.y() * d2.y();
  return {a2 + a1, c, gxMatrix<2>(m00, m01, m01, m11)};
}

Moments polygonMoments(const Points& points) {
  if (points.size() < 3) return {};
  const gxVector<2> apex = centerIfAny(points).value_or(points[0]);
  const std::vector<Moments> triangles = fan(points, apex);
  const bool isClockwise = sumOfAreas(triangles) < 0;
  Points back = points;
  std::reverse(back.begin(), back.end());
  Moments moments = addedUp(isClockwise ? fan(back, apex) : triangles);
  const bool isNowhere = !(std::abs(moments.area) > 1e-16) && moments.center == gxVector<2>(0.0, 0.0);
  if (!isNowhere) moments.center = moments.center + apex;
  if (isClockwise) moments.area = -moments.area;
  return moments;
}

MomentsRounding momentsRounding(const Points& points) {
  if (points.empty()) return {};
  const gxVector<2> apex = centerOfMass(points);
  MomentsRounding rounding;
  double far = 0.0;
  for (const gxVector<2>& p : points) {
    rounding.reach = std::max(rounding.reach, p.distance(apex));
    far = std::max(far, p.len());
  }
  rounding.share = 1e-11 + 1e-15 * far * static_cast<double>(points.size()) / rounding.reach;
  return rounding;
}

bool nearMoments(const gxMatrix<2>& got, const gxMatrix<2>& want, const Points& points) {
  const auto [reach, share] = momentsRounding(points);
  const double bound = share * std::pow(reach, 4);
  const double norm = std::abs(want.m00()) + std::abs(want.m11());
  const auto isNear = [bound, norm](double a, double b) {
    const double difference = std::abs(a - b);
    return a == b || (std::isnan(a) && std::isnan(b)) || difference <= bound ||
           difference <= 1e-13 * norm;
  };
  return isNear(got.m00(), want.m00()) && isNear(got.m01(), want.m01()) &&
         isNear(got.m10(), want.m10()) && isNear(got.m11(), want.m11());
}

Moments momentsByGreen(const Points& points) {
  Quad area = 0;
  Quad x = 0;
  Quad y = 0;
  Quad xx = 0;
  Quad xy = 0;
  Quad yy = 0;
  const Quad ox = points[0].x();
  const Quad oy = points[0].y();
  for (const auto& [from, to] : edges({points, true})) {
    const Quad ax = points[from].x() - ox;
    const Quad ay = points[from].y() - oy;
    const Quad bx = points[to].x() - ox;
    const Quad by = points[to].y() - oy;
    const Quad w = ax * by - bx * ay;
    area += w / 2;
    x += w * (ax + bx) / 6;
    y += w * (ay + by) / 6;
    xx += w * (ax * ax + ax * bx + bx * bx) / 12;
    yy += w * (ay * ay + ay * by + by * by) / 12;
    xy += w * (2 * ax * ay + ax * by + bx * ay + 2 * bx * by) / 24;
  }
  x /= area;
  y /= area;
  const Quad sign = area < 0 ? -1 : 1;
  const auto m00 = static_cast<double>(sign * (xx - area * x * x));
  const auto m01 = static_cast<double>(sign * (xy - area * x * y));
  const auto m11 = static_cast<double>(sign * (yy - area * y * y));
  return {static_cast<double>(area),
          {static_cast<double>(x + ox), static_cast<double>(y + oy)},
          gxMatrix<2>(m00, m01, m01, m11)};
}

gxEllipse ellipseOf(const Moments& moments) {
  constexpr double kPiSquared = 9.869604401089358;
  const gxMatrix<2>& m = moments.matrix;
  double theta = 0.5 * std::atan2(2.0 * m.m01(), m.m00() - m.m11());
  if (theta == -1.5707963267948966) theta = -theta;  // the same axis
  const gxMatrix<2> turned = (rotation(-theta) * m) * rotation(theta);
  const double d0 = std::abs(turned.m00());
  const double d1 = std::abs(turned.m11());
  if (!(d0 > 1e-12 && d1 > 1e-12)) throw gxMathError::Singular();
  gxEllipse::gxEllipseGeom geom;
  geom.center = moments.center;
  const double r0 = eighthRoot(16.0 * (d0 * d0 * d0) / (kPiSquared * d1));
  geom.radii = {r0, eighthRoot(16.0 * (d1 * d1 * d1) / (kPiSquared * d0))};
  geom.rotation = gxRadian(theta);
  return gxEllipse(geom);
}

void fitEllipse(const Points& points, gxEllipse& ellipse, double& residual) {
  try {
    const gxEllipseFitParams params(static_cast<gxEllipseFitDefs::fit_mode>(0), gxRadian(0.0), 0,
                                    HUGE_VAL);
    gxEllipseFitResults results;
    gfEllipseFit(params, points, results);
    ellipse = results.ellipse();
    residual = results.residual();
    return;
  } catch (const gxException&) {  // then a circle
  }
  try {
    const gxCircleFitParams params(static_cast<gxCircleFitDefs::fit_mode>(0), 1.0, 0, HUGE_VAL);
    gxCircleFitResults results;
    gfCircleFit(params, points, results);
    ellipse = gxEllipse(results.circle());
    residual = results.residual();
    return;
  } catch (const gxException&) {  // then nothing
  }
  ellipse = gxEllipse();
  residual = -1.0;
}

double standardDeviation(const std::vector<double>& values) {
  const double reciprocal = 1.0 / static_cast<double>(values.size());
  double sum = 0.0;
  for (const double v : values) sum += v;
  const double mean = sum * reciprocal;
  double squares = 0.0;
  for (const double v : values) squares += (v - mean) * (v - mean);
  return std::sqrt(squares * reciprocal);
}

}  // namespace slow
