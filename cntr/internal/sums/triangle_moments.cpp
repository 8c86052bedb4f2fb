// One triangle, in a frame of its own.
//
//   1. Take the side from C to P as the base; where the foot of the altitude from Q falls outside
//      it, start again from the next corner.  One side of a proper triangle holds the foot, so two
//      turns are enough; after them a triangle that rounding has flattened is taken as it stands.
//   2. With the foot F as the origin the corners are (−a, 0), (b, 0), (0, h), and the moments are
//      short polynomials in a, b, h.  The foot may lie outside the base all the same, within the slack
//      of step 1, which is wide against a small or flat triangle: a or b is negative then.  (Taken as
//      bare distances they cost 3e-6 of the trace on a convex outline of 4 units.)
//   3. A clockwise triangle is mirrored: area, ȳ and Sxy change their sign.
//   4. Turn the moments by the angle of the base.
#include <cntr/internal/sums/triangle_moments.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>

#include <cmath>

namespace {

// How far the foot of an altitude may lie outside its side, in terms of the distances from the opposite
// corner to the side and to its line.
constexpr double kFootSlack = 1e-10;

gx_InertiaData turned(const gxRadian& theta, const gxVector<2>& foot, double area,
                      const gxVector<2>& centre, double sxx, double syy, double sxy) {
  const double c = std::cos(theta.toDouble());
  const double s = std::sin(theta.toDouble());
  const gxMatrix<2> rotation(c, -s, s, c);
  const double m00 = c * c * sxx - 2.0 * s * c * sxy + s * s * syy;
  const double m11 = s * s * sxx + 2.0 * s * c * sxy + c * c * syy;
  const double m01 = (c * c - s * s) * sxy + s * c * sxx - s * c * syy;
  return {area, foot + rotation * centre, gxMatrix<2>(m00, m01, m01, m11)};
}

// The distance of an end of the base from the foot, negative where the foot lies beyond that end.
double part(const gxVector<2>& foot, const gxVector<2>& end, const gxVector<2>& otherEnd) {
  const double distance = foot.distance(end);
  return (foot - end) * (otherEnd - end) < 0.0 ? -distance : distance;
}

}  // namespace

gx_InertiaData gx_triangleMoments(gxVector<2> c, gxVector<2> p, gxVector<2> q) {
  for (int turn = 0; turn < 2; ++turn) {
    const gxLineSeg base(c, p);
    if (!(base.distToPoint(q) - kFootSlack > base.line().distToPoint(q))) break;
    const gxVector<2> first = c;
    c = p;
    p = q;
    q = first;
  }
  const gxLine line = gxLineSeg(c, p).line();
  const gxVector<2> foot = line.proj(q);
  const double a = part(foot, c, p);
  const double b = part(foot, p, c);
  const double h = line.distToPoint(q);  // a foot is rounded, which a thin triangle would show
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
