// With u and v from the apex to the ends of an edge and c = u × v, the triangle has
//
//   area c / 2,  ∫x dA = c (u.x + v.x) / 6,  ∫x² dA = c (u.x² + u.x v.x + v.x²) / 12,
//   ∫xy dA = c (2 u.x u.y + u.x v.y + v.x u.y + 2 v.x v.y) / 24,
//
// signed by c, and everything adds up (Green's theorem; C. Steger, "On the calculation of arbitrary
// moments of polygons", 1996).  No root, no angle, no frame of the triangle's own.
//
// Two things keep this from being another answer than that of the triangles taken as records.
//
// The foot of an altitude.  The record of a triangle takes a side as its base whose foot of the
// altitude lies outside it by so little that the distances to side and line differ by less than
// 1e-10; for a flat triangle that can be 1e-5 to one side, and shows in the ninth digit.  Such
// triangles are recognized (some that are not such among them) and their records taken.  With e the
// distance of the foot from the side's end and h the altitude, e² / 2h < 1e-10 there, about.  For
// the base u, e is |u·v − u²| / |u| or |u·v| / |u|, and h = |c| / |u|; for the next base, v − u, the
// numerators are the same.  No side is longer than twice the reach R of the polygon, hence the test:
// the square of the numerator against 4e-10 |c| R and a little more.
//
// The sign.  Adding records comes to the same as long as the area added so far is positive: a
// negative triangle is then what is taken out.  The records are added in three passes, the triangles
// above the mean first, then those above 1e-6, then the rest with the negative ones.  So the running
// area first rises and can fall only in the last pass; where even all negative triangles together
// leave most of what the first passes added, or where running through the passes shows that it stays
// well above 0, the sum stands.  A clockwise polygon is taken backwards.
#include <cntr/internal/moment_sum.h>
#include <cntr/internal/triangle_moments.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

using Points = std::vector<gxVector<2>>;

// The size from which triangles belong to the second pass.
constexpr double kNearlyEmpty = 1e-6;

// Records whose areas sum to 1e-16 or less have no common centre; ten times that is safely more.
constexpr double kLeastArea = 1e-15;

// The share of the area that the running area must not fall below.
constexpr double kShare = 0.25;

// The share of all triangles, by magnitude, that must be left when they are added up; below, as in a
// tangle, the answer has lost digits that another order of additions loses differently.
constexpr double kLeastShareOfAll = 0.01;

// Calls `use(u, v)` with the ends of every edge, relative to the apex, in the direction in which the
// records are made.
template <class Use>
void forEachTriangle(const Points& points, const gxVector<2>& apex, bool backwards, const Use& use) {
  gxVector<2> u = points.back() - apex;
  for (const gxVector<2>& p : points) {
    const gxVector<2> v = p - apex;
    if (backwards) {
      use(v, u);
    } else {
      use(u, v);
    }
    u = v;
  }
}

// What has to be known before the triangles are added: the direction of the polygon, by the sign of
// its area, and its reach, the largest distance from the apex.
struct Overview {
  double cross = 0.0;
  double squaredReach = 0.0;
};

Overview overview(const Points& points, const gxVector<2>& apex) {
  Overview all;
  forEachTriangle(points, apex, false, [&all](const gxVector<2>& u, const gxVector<2>& v) {
    all.cross += gf_Cross(u, v);
    const double square = v * v;
    all.squaredReach = square > all.squaredReach ? square : all.squaredReach;
  });
  return all;
}

class Sum {
 public:
  explicit Sum(double squaredReach)
      : perCross_(4.0 * gx_kFootSlack * 1.1 * std::sqrt(squaredReach)),
        least_(8.0 * gx_kFootSlack * gx_kFootSlack * squaredReach) {}

  void add(const gxVector<2>& u, const gxVector<2>& v) {
    const double c = gf_Cross(u, v);
    const double along = u * v;
    const double uu = u * u;
    const double past = std::min(std::abs(along), std::abs(along - uu));
    if (past * past <= perCross_ * std::abs(c) + least_) {
      addRecord(u, v);
      return;
    }
    const double ux = u.x();
    const double uy = u.y();
    const double vx = v.x();
    const double vy = v.y();
    area_ += c;
    x_ += c * (ux + vx);
    y_ += c * (uy + vy);
    xx_ += c * (ux * ux + ux * vx + vx * vx);
    yy_ += c * (uy * uy + uy * vy + vy * vy);
    xy_ += c * (2.0 * (ux * uy + vx * vy) + (ux * vy + vx * uy));
    large_ += c > 2.0 * kNearlyEmpty ? c : 0.0;
    against_ -= c < 0.0 ? c : 0.0;
  }

  gx_MomentSum result() const {
    return {area_ / 2.0 + records_.area, x_ / 6.0 + records_.x,    y_ / 6.0 + records_.y,
            xx_ / 12.0 + records_.xx,    xy_ / 24.0 + records_.xy, yy_ / 12.0 + records_.yy};
  }
  // Tells whether even all negative triangles leave most of the large ones.
  bool balanced() const { return against_ < (1.0 - 2.0 * kShare) * large_; }
  // Tells whether so much cancels that the order of the additions shows in the answer.
  bool cancels(double area) const { return area < kLeastShareOfAll * (area + against_); }

 private:
  void addRecord(const gxVector<2>& u, const gxVector<2>& v) {
    const gx_InertiaData record = gx_triangleMoments(gxVector<2>(), u, v);
    const double a = record.area();
    const gxVector<2>& g = record.centerOfMass();
    const gxMatrix<2>& m = record.inertiaMatrix();
    const double sign = a < 0.0 ? -1.0 : 1.0;
    records_.area += a;
    records_.x += a * g.x();
    records_.y += a * g.y();
    records_.xx += sign * m.m00() + a * g.x() * g.x();
    records_.xy += sign * m.m01() + a * g.x() * g.y();
    records_.yy += sign * m.m11() + a * g.y() * g.y();
    large_ += a > kNearlyEmpty ? 2.0 * a : 0.0;
    against_ -= a < 0.0 ? 2.0 * a : 0.0;
  }

  double perCross_;
  double least_;
  double area_ = 0.0;
  double x_ = 0.0;
  double y_ = 0.0;
  double xx_ = 0.0;
  double xy_ = 0.0;
  double yy_ = 0.0;
  double large_ = 0.0;
  double against_ = 0.0;
  gx_MomentSum records_;
};

// Runs through the three passes with the areas alone.
bool staysPositive(const Points& points, const gxVector<2>& apex, bool backwards, double mean) {
  const double early = std::min(mean, kNearlyEmpty);
  double running = 0.0;
  forEachTriangle(points, apex, backwards, [&](const gxVector<2>& u, const gxVector<2>& v) {
    const double a = 0.5 * gf_Cross(u, v);
    running += a > early ? a : 0.0;
  });
  double least = running;
  forEachTriangle(points, apex, backwards, [&](const gxVector<2>& u, const gxVector<2>& v) {
    const double a = 0.5 * gf_Cross(u, v);
    running += a > early ? 0.0 : a;
    least = std::min(least, running);
  });
  return least > kShare * mean * static_cast<double>(points.size());
}

}  // namespace

bool gx_sumMoments(const Points& points, const gxVector<2>& apex, gx_MomentSum& sum) {
  const Overview all = overview(points, apex);
  const bool backwards = all.cross < 0.0;
  Sum triangles(all.squaredReach);
  forEachTriangle(points, apex, backwards,
                  [&triangles](const gxVector<2>& u, const gxVector<2>& v) { triangles.add(u, v); });
  sum = triangles.result();
  const double mean = sum.area / static_cast<double>(points.size());
  if (!(mean > kLeastArea) || triangles.cancels(sum.area) || !std::isfinite(sum.xx + sum.xy + sum.yy))
    return false;
  if (!triangles.balanced() && !staysPositive(points, apex, backwards, mean)) return false;
  if (backwards) sum = {-sum.area, -sum.x, -sum.y, -sum.xx, -sum.xy, -sum.yy};
  return true;
}
