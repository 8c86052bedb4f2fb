// Area, centre of mass and moments of closed polygons.
//
// Area and centre.  Every edge makes a triangle with the first point; twice its signed area is a
// cross product of two differences.  The centre of a triangle is where two of its medians meet; the
// centres are added up with those weights (internal/sums/centroid_sum).
//
// Moments.  A fan of triangles around the centre of mass, or around the first point where the outline has
// too little area for a centre; a fan around the origin would lose all digits of a small outline far from
// it.  Everything is seen from there, and the centre moved back at the end, so that no digit goes to the
// distance from the origin.  The moments of the triangles are summed as polynomials
// (internal/sums/moment_sum).
//
// Where most of the area cancels, or is next to none, each triangle is a record of its own instead
// (internal/sums/triangle_moments), and what records make of such a figure is the answer.  They are added
// in three passes, the triangles above the mean area first, then those that are not nearly empty, then the
// rest, so that small ones are not lost one by one in a big sum.  Everywhere else they come to the same but
// for the last digits, with a root, an arctangent and a sine for each triangle: ten times the time.
//
// Records of an outline that runs clockwise make a fan of negative triangles.  Added one by one those lose
// the sign of the matrix as soon as one triangle of the fan turns the other way (a record of
// negative area is what is taken out of another), so such an outline is taken backwards and only
// the area's sign restored: an outline in picture coordinates, y down, has the same moments as the
// same outline reversed.
#include <cntr/internal/sums/centroid_sum.h>
#include <cntr/internal/sums/moment_sum.h>
#include <cntr/internal/sums/triangle_moments.h>
#include <cntr/shapestat.h>

#include <cmath>

namespace {

// Areas whose sum is below this have no common centre.
constexpr double kEmptySum = 1e-16;

// Triangles below this area come last.
constexpr double kNearlyEmpty = 1e-6;

using Points = std::vector<gxVector<2>>;

std::vector<gxVector<2>> positions(const std::vector<gxEdgelet>& edgelets) {
  std::vector<gxVector<2>> points;
  points.reserve(edgelets.size());
  for (const gxEdgelet& e : edgelets) points.push_back(e.position());
  return points;
}

struct Fan {
  std::vector<gx_InertiaData> triangles;
  double area = 0.0;
};

// The triangles that the edges make with the apex, seen from the apex.
Fan fanAround(const gxVector<2>& apex, const Points& points) {
  Fan fan;
  fan.triangles.reserve(points.size());
  gxVector<2> previous = points.back() - apex;
  for (const gxVector<2>& point : points) {
    const gxVector<2> current = point - apex;
    fan.triangles.push_back(gx_triangleMoments(gxVector<2>(), previous, current));
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

// Moves back what was seen from the apex; a centre at (0, 0) for want of area stays there.
gx_InertiaData movedBack(const gx_InertiaData& sum, const gxVector<2>& apex, double sign) {
  const bool hasCentre = std::abs(sum.area()) > kEmptySum || !(sum.centerOfMass() == gxVector<2>());
  const gxVector<2> centre = hasCentre ? sum.centerOfMass() + apex : gxVector<2>();
  return {sign * sum.area(), centre, sum.inertiaMatrix()};
}

// The moments about the centre of mass, from those about the apex of the fan.
gx_InertiaData aboutCentre(const gx_MomentSum& sum, const gxVector<2>& apex) {
  const gxVector<2> shift(sum.x / sum.area, sum.y / sum.area);
  const double sign = sum.area < 0.0 ? -1.0 : 1.0;
  const double xx = sign * (sum.xx - sum.x * shift.x());
  const double xy = sign * (sum.xy - sum.x * shift.y());
  const double yy = sign * (sum.yy - sum.y * shift.y());
  return {sum.area, apex + shift, gxMatrix<2>(xx, xy, xy, yy)};
}

}  // namespace

double gf_Area(const std::vector<gxVector<2>>& points) {
  if (points.size() <= 2) return 0.0;  // whatever the coordinates: differences may overflow
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
  return gf_Area(positions(edgelets));
}

gxVector<2> gnContour::centerOfMass(const std::vector<gxVector<2>>& points) {
  return gx_centreAndArea(points).centre;
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
  const gx_CentreAndArea middle = gx_centreAndArea(points);
  return gx_inertiaAround(middle.hasCentre ? middle.centre : points.front(), points);
}

gx_InertiaData gx_inertiaAround(const gxVector<2>& apex, const Points& points) {
  gx_MomentSum sum;
  return gx_sumMoments(points, apex, sum) ? aboutCentre(sum, apex) : gx_inertiaByTriangles(apex, points);
}

gx_InertiaData gx_inertiaByTriangles(const gxVector<2>& apex, const Points& points) {
  const Fan fan = fanAround(apex, points);
  if (!(fan.area < 0.0)) return movedBack(sumOf(fan), apex, 1.0);
  return movedBack(sumOf(fanAround(apex, Points(points.rbegin(), points.rend()))), apex, -1.0);
}
