// Area, centre of mass and moments of closed polygons.
//
// Area and centre.  Every edge makes a triangle with the first point; twice its signed area is a
// cross product of two differences.  The centre of a triangle is where two of its medians meet.
//
// Moments.  A fan of triangles around the centre of mass; each triangle in a frame of its own:
//   1. Take the side from the apex C to P as the base; where the foot of the altitude from Q falls
//      outside it, start again from the next corner.  One side of a proper triangle holds the foot,
//      so two turns are enough; after them a triangle that rounding has flattened is taken as it
//      stands.
//   2. With the foot F as the origin the corners are (−a, 0), (b, 0), (0, h), and the moments are
//      short polynomials in a, b, h.
//   3. A clockwise triangle is mirrored: area, ȳ and Sxy change their sign.
//   4. Turn the moments by the angle of the base.
// The records are added in three passes, the triangles above the mean area first, then those that
// are not nearly empty, then the rest, so that small ones are not lost one by one in a big sum.
//
// An outline that runs clockwise makes a fan of negative triangles.  Added one by one those lose
// the sign of the matrix as soon as one triangle of the fan turns the other way (a record of
// negative area is what is taken out of another), so such an outline is taken backwards and only
// the area's sign restored: an outline in picture coordinates, y down, has the same moments as the
// same outline reversed.
#include <cntr/shapestat.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>

#include <cmath>

namespace {

// Twice the area below which a triangle has no centre worth the name, and below which a polygon
// has none; areas whose sum is below the last have no common centre.
constexpr double kEmptyTriangle = 1e-15;
constexpr double kEmptyPolygon = 1e-6;
constexpr double kEmptySum = 1e-16;

// How far the foot of an altitude may lie outside its side.
constexpr double kFootSlack = 1e-10;

// Triangles below this area come last.
constexpr double kNearlyEmpty = 1e-6;

using Points = std::vector<gxVector<2>>;

std::vector<gxVector<2>> positions(const std::vector<gxEdgelet>& edgelets) {
  std::vector<gxVector<2>> points;
  points.reserve(edgelets.size());
  for (const gxEdgelet& e : edgelets) points.push_back(e.position());
  return points;
}

gxVector<2> middle(const gxVector<2>& u, const gxVector<2>& v) {
  return {(u.x() + v.x()) * 0.5, (u.y() + v.y()) * 0.5};
}

gxVector<2> triangleCentroid(const gxVector<2>& o, const gxVector<2>& p, const gxVector<2>& q) {
  const gxLineSeg fromO(o, middle(p, q));
  const gxLineSeg fromP(p, middle(o, q));
  return fromO.line().intersect(fromP.line());
}

gx_InertiaData turned(const gxRadian& theta, const gxVector<2>& foot, double area,
                      const gxVector<2>& centre, double sxx, double syy, double sxy) {
  const double c = std::cos(theta.toDouble());
  const double s = std::sin(theta.toDouble());
  const gxMatrix<2> rotation(theta, theta, 1.0, 1.0);
  const double m00 = c * c * sxx - 2.0 * s * c * sxy + s * s * syy;
  const double m11 = s * s * sxx + 2.0 * s * c * sxy + c * c * syy;
  const double m01 = (c * c - s * s) * sxy + s * c * sxx - s * c * syy;
  return {area, foot + rotation * centre, gxMatrix<2>(m00, m01, m01, m11)};
}

gx_InertiaData triangleInertiaData(gxVector<2> c, gxVector<2> p, gxVector<2> q) {
  for (int turn = 0; turn < 2; ++turn) {
    const gxLineSeg base(c, p);
    if (!(base.distToPoint(q) - kFootSlack > base.line().distToPoint(q))) break;
    const gxVector<2> first = c;
    c = p;
    p = q;
    q = first;
  }
  const gxVector<2> foot = gxLineSeg(c, p).line().proj(q);
  const double a = foot.distance(c);
  const double b = foot.distance(p);
  const double h = foot.distance(q);
  double area = (a + b) * h * 0.5;
  const double x = (b - a) * (1.0 / 3.0);
  double y = h * (1.0 / 3.0);
  const double sxx = (a * a * a + b * b * b) * h * (1.0 / 12.0) - x * x * area;
  const double syy = (a + b) * (h * h * h) * (1.0 / 12.0) - y * y * area;
  double sxy = (b * b - a * a) * (h * h) * (1.0 / 24.0) - y * x * area;
  const double cross = (p.x() - c.x()) * (q.y() - c.y()) - (q.x() - c.x()) * (p.y() - c.y());
  if (!(cross >= 0.0)) {
    area = -area;
    y = -y;
    sxy = -sxy;
  }
  return turned((p - c).angle(), foot, area, gxVector<2>(x, y), sxx, syy, sxy);
}

struct Fan {
  std::vector<gx_InertiaData> triangles;
  double area = 0.0;
};

Fan fanAround(const gxVector<2>& apex, const Points& points) {
  Fan fan;
  fan.triangles.reserve(points.size());
  gxVector<2> previous = points.back();
  for (const gxVector<2>& current : points) {
    fan.triangles.push_back(triangleInertiaData(apex, previous, current));
    fan.area += fan.triangles.back().area();
    previous = current;
  }
  return fan;
}

// Adds up every triangle not yet added that passes the test, in order.
template <class Test>
void addWhere(const Fan& fan, std::vector<bool>& added, gx_InertiaData& sum, Test test) {
  for (std::size_t i = 0; i < fan.triangles.size(); ++i) {
    if (added[i] || !test(fan.triangles[i].area())) continue;
    sum = sum + fan.triangles[i];
    added[i] = true;
  }
}

gx_InertiaData sumOf(const Fan& fan) {
  const double mean = fan.area / static_cast<double>(fan.triangles.size());
  const double small = mean > 0.0 ? kNearlyEmpty : -kNearlyEmpty;
  std::vector<bool> added(fan.triangles.size());
  gx_InertiaData sum;
  addWhere(fan, added, sum, [mean](double a) { return a > mean || (mean < 0.0 && a < mean); });
  addWhere(fan, added, sum, [small](double a) { return a > small || (small < 0.0 && a < small); });
  addWhere(fan, added, sum, [](double) { return true; });
  return sum;
}

}  // namespace

double gf_Area(const std::vector<gxVector<2>>& points) {
  if (points.empty()) return 0.0;
  const gxVector<2> origin = points.front();
  gxVector<2> previous = points.back() - origin;
  double sum = 0.0;
  for (const gxVector<2>& point : points) {
    const gxVector<2> current = point - origin;
    sum += current.y() * previous.x() - previous.y() * current.x();
    previous = current;
  }
  return std::abs(sum * 0.5);
}

double gf_Area(const std::vector<gxEdgelet>& edgelets) {
  return edgelets.size() <= 2 ? 0.0 : gf_Area(positions(edgelets));
}

gxVector<2> gnContour::centerOfMass(const std::vector<gxVector<2>>& points) {
  if (points.size() <= 2) return {};
  const gxVector<2> origin = points.front();
  gxVector<2> previous = points.back() - origin;
  double weights = 0.0;
  double x = 0.0;
  double y = 0.0;
  for (const gxVector<2>& point : points) {
    const gxVector<2> current = point - origin;
    const double weight = current.y() * previous.x() - previous.y() * current.x();
    if (std::abs(weight) > kEmptyTriangle) {
      const gxVector<2> g = triangleCentroid(gxVector<2>(), previous, current);
      weights += weight;
      x += g.x() * weight;
      y += g.y() * weight;
    }
    previous = current;
  }
  if (!(std::abs(weights) > kEmptyPolygon)) return {};
  const double share = 1.0 / weights;
  return origin + gxVector<2>(share * x, share * y);
}

gxVector<2> gf_CenterOfMass(const std::vector<gxVector<2>>& points) {
  return gnContour::centerOfMass(points);
}

gxVector<2> gf_CenterOfMass(const std::vector<gxEdgelet>& edgelets) {
  return gnContour::centerOfMass(positions(edgelets));
}

gx_InertiaData gx_InertiaData::operator+(const gx_InertiaData& other) const {
  const double a1 = area_;
  const double a2 = other.area_;
  if (!(a1 < 0.0) && !(a1 > 0.0)) return other;
  if (!(a2 < 0.0) && !(a2 > 0.0)) return *this;

  gxVector<2> centre;
  if (std::abs(a2 + a1) > kEmptySum) {
    centre = (other.centerOfMass_ * a2 + centerOfMass_ * a1) * (1.0 / (a2 + a1));
  }
  const gxVector<2> d1 = centre - centerOfMass_;
  const gxVector<2> d2 = centre - other.centerOfMass_;
  double w1 = a1;
  double w2 = a2;
  double s1 = 1.0;
  double s2 = 1.0;
  if (a1 * a2 > 0.0) {
    w1 = std::abs(a1);
    w2 = std::abs(a2);
  } else if (a1 * a2 < 0.0) {
    (a1 > a2 ? s2 : s1) = -1.0;
  }
  const gxMatrix<2>& m1 = inertiaMatrix_;
  const gxMatrix<2>& m2 = other.inertiaMatrix_;
  const double m00 = w1 * d1.x() * d1.x() + s1 * m1.m00() + s2 * m2.m00() + w2 * d2.x() * d2.x();
  const double m01 = s1 * m1.m01() + w1 * d1.x() * d1.y() + s2 * m2.m01() + w2 * d2.x() * d2.y();
  const double m11 = w1 * d1.y() * d1.y() + s1 * m1.m11() + s2 * m2.m11() + w2 * d2.y() * d2.y();
  return {a2 + a1, centre, gxMatrix<2>(m00, m01, m01, m11)};
}

gx_InertiaData gf_InertiaDataPolygon(const std::vector<gxVector<2>>& points) {
  if (points.size() < 3) return {};
  const gxVector<2> apex = gnContour::centerOfMass(points);
  const Fan fan = fanAround(apex, points);
  if (!(fan.area < 0.0)) return sumOf(fan);
  const gx_InertiaData forward = sumOf(fanAround(apex, Points(points.rbegin(), points.rend())));
  return {-forward.area(), forward.centerOfMass(), forward.inertiaMatrix()};
}
