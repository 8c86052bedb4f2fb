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
//
// The sums are made four by four, in an order that is the same on every machine: each sum is one over
// every fourth edge, the edges left over and the triangles taken as records added last.
#include <cntr/internal/sums/moment_sum.h>
#include <cntr/internal/sums/triangle_moments.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

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

// Four numbers side by side; compilers make two registers of them where four do not fit into one.
using Four = double __attribute__((vector_size(32)));

// Code for four, to be compiled for the machine at hand by who calls it.
#define GX_FOURFOLD __attribute__((always_inline)) inline

// Points seen from the apex, one or four, by component.
template <class Number>
struct Ends {
  Number x;
  Number y;
};

Ends<double> seen(const gxVector<2>& p, const gxVector<2>& apex) {
  return {p.x() - apex.x(), p.y() - apex.y()};
}

// The points p[0], p[2], p[1], p[3] in this order, which saves moving them.
GX_FOURFOLD void seen(const gxVector<2>* p, const Four& apex, Ends<Four>& result) {
  Four first;
  Four second;
  std::memcpy(&first, p, sizeof first);
  std::memcpy(&second, p + 2, sizeof second);
  first -= apex;
  second -= apex;
  result.x = __builtin_shufflevector(first, second, 0, 4, 2, 6);
  result.y = __builtin_shufflevector(first, second, 1, 5, 3, 7);
}

template <class Number>
GX_FOURFOLD void keepLarger(Number& largest, const Number& value) {
  largest = value > largest ? value : largest;
}

GX_FOURFOLD double total(const Four& v) {
  return (v[0] + v[2]) + (v[1] + v[3]);
}

// What has to be known before the triangles are added: the direction of the polygon, by the sign of
// its area, and its reach, the largest distance from the apex.
template <class Number>
struct Overview {
  Number cross = {};
  Number squaredReach = {};

  GX_FOURFOLD void add(const Ends<Number>& u, const Ends<Number>& v) {
    cross += u.x * v.y - u.y * v.x;
    keepLarger(squaredReach, v.x * v.x + v.y * v.y);
  }
};

// The bounds of the test whether the foot of an altitude may lie outside its side by the slack.
struct FootBounds {
  explicit FootBounds(double squaredReach)
      : perCross(4.0 * gx_kFootSlack * 1.1 * std::sqrt(squaredReach)),
        least(8.0 * gx_kFootSlack * gx_kFootSlack * squaredReach) {}

  double perCross;
  double least;
};

// The sums of the polynomials, without their denominators.
template <class Number>
struct Sums {
  Number area = {};
  Number x = {};
  Number y = {};
  Number xx = {};
  Number xy = {};
  Number yy = {};
  Number large = {};    // the areas, twice, of the triangles that belong to the first passes
  Number against = {};  // those of the negative triangles, by magnitude

  // Adds the triangles whose feet lie inside their sides for certain; tells which do not.
  template <class Truth>
  GX_FOURFOLD void add(const Ends<Number>& u, const Ends<Number>& v, const FootBounds& bounds,
                       Truth& unsure) {
    const Number none = {};
    const Number uxvy = u.x * v.y;
    const Number uyvx = u.y * v.x;
    const Number uxvx = u.x * v.x;
    const Number uyvy = u.y * v.y;
    const Number ux2 = u.x * u.x;
    const Number uy2 = u.y * u.y;
    const Number cross = uxvy - uyvx;
    const Number size = cross < none ? -cross : cross;
    const Number fromStart = uxvx + uyvy;
    const Number fromEnd = fromStart - (ux2 + uy2);
    const Number start = fromStart < none ? -fromStart : fromStart;
    const Number end = fromEnd < none ? -fromEnd : fromEnd;
    const Number past = start < end ? start : end;
    unsure = past * past <= bounds.perCross * size + bounds.least;
    const Number c = unsure ? none : cross;
    area += c;
    x += c * (u.x + v.x);
    y += c * (u.y + v.y);
    xx += c * ((ux2 + uxvx) + v.x * v.x);
    yy += c * ((uy2 + uyvy) + v.y * v.y);
    xy += c * (2.0 * (u.x * u.y + v.x * v.y) + (uxvy + uyvx));
    large += c > none + 2.0 * kNearlyEmpty ? c : none;
    against -= c < none ? c : none;
  }
};

// The sums of the triangles that are taken as records.
struct Records {
  gx_MomentSum sum;
  double large = 0.0;
  double against = 0.0;

  void add(const Ends<double>& u, const Ends<double>& v) {
    const gx_InertiaData record = gx_triangleMoments(gxVector<2>(), {u.x, u.y}, {v.x, v.y});
    const double a = record.area();
    const gxVector<2>& g = record.centerOfMass();
    const gxMatrix<2>& m = record.inertiaMatrix();
    const double sign = a < 0.0 ? -1.0 : 1.0;
    sum.area += a;
    sum.x += a * g.x();
    sum.y += a * g.y();
    sum.xx += sign * m.m00() + a * g.x() * g.x();
    sum.xy += sign * m.m01() + a * g.x() * g.y();
    sum.yy += sign * m.m11() + a * g.y() * g.y();
    large += a > kNearlyEmpty ? 2.0 * a : 0.0;
    against -= a < 0.0 ? 2.0 * a : 0.0;
  }
};

// All of it, in the order that makes the same bits everywhere: four sums for the triangles that come in
// fours, each over every fourth, and one for the rest.
struct Fan {
  Fan(const Points& p, const gxVector<2>& a) : points(p), apex(a) {}

  const Points& points;
  gxVector<2> apex;
  bool backwards = false;
  Overview<double> all;
  Sums<double> sums;
  Records records;

  GX_FOURFOLD void look() {
    const Four from = {apex.x(), apex.y(), apex.x(), apex.y()};
    Overview<Four> four;
    all.add(seen(points.back(), apex), seen(points.front(), apex));
    std::size_t i = 1;
    for (; i + 4 <= points.size(); i += 4) {
      Ends<Four> u;
      Ends<Four> v;
      seen(&points[i - 1], from, u);
      seen(&points[i], from, v);
      four.add(u, v);
    }
    for (; i < points.size(); ++i) all.add(seen(points[i - 1], apex), seen(points[i], apex));
    all.cross += total(four.cross);
    for (int k = 0; k < 4; ++k) keepLarger(all.squaredReach, four.squaredReach[k]);
    backwards = all.cross < 0.0;
  }

  void addOne(const gxVector<2>& from, const gxVector<2>& to, const FootBounds& bounds) {
    const Ends<double> u = seen(backwards ? to : from, apex);
    const Ends<double> v = seen(backwards ? from : to, apex);
    bool unsure = false;
    sums.add(u, v, bounds, unsure);
    if (unsure) records.add(u, v);
  }

  template <bool kBackwards>
  GX_FOURFOLD void addUp() {
    const FootBounds bounds(all.squaredReach);
    const Four from = {apex.x(), apex.y(), apex.x(), apex.y()};
    Sums<Four> four;
    addOne(points.back(), points.front(), bounds);
    std::size_t i = 1;
    for (; i + 4 <= points.size(); i += 4) {
      Ends<Four> u;
      Ends<Four> v;
      seen(&points[i - 1], from, kBackwards ? v : u);
      seen(&points[i], from, kBackwards ? u : v);
      decltype(u.x < v.x) unsure = {};
      four.add(u, v, bounds, unsure);
      if ((unsure[0] | unsure[1] | unsure[2] | unsure[3]) == 0) continue;
      for (int k = 0; k < 4; ++k) {
        if (unsure[k] != 0) records.add({u.x[k], u.y[k]}, {v.x[k], v.y[k]});
      }
    }
    for (; i < points.size(); ++i) addOne(points[i - 1], points[i], bounds);
    sums.area += total(four.area);
    sums.x += total(four.x);
    sums.y += total(four.y);
    sums.xx += total(four.xx);
    sums.xy += total(four.xy);
    sums.yy += total(four.yy);
    sums.large += total(four.large);
    sums.against += total(four.against);
  }

  GX_FOURFOLD void compute() {
    look();
    if (backwards) {
      addUp<true>();
    } else {
      addUp<false>();
    }
  }

  gx_MomentSum result() const {
    const gx_MomentSum& r = records.sum;
    return {sums.area / 2.0 + r.area, sums.x / 6.0 + r.x,    sums.y / 6.0 + r.y,
            sums.xx / 12.0 + r.xx,    sums.xy / 24.0 + r.xy, sums.yy / 12.0 + r.yy};
  }
  double against() const { return sums.against + records.against; }
  // Tells whether even all negative triangles leave most of the large ones.
  bool balanced() const { return against() < (1.0 - 2.0 * kShare) * (sums.large + records.large); }
  // Tells whether so much cancels that the order of the additions shows in the answer.
  bool cancels(double area) const { return area < kLeastShareOfAll * (area + against()); }
};

#if defined(__x86_64__)
__attribute__((target("avx2"))) void computeByRegistersOfFour(Fan& fan) {
  fan.compute();
}
#endif

void computeAsBuilt(Fan& fan) {
  fan.compute();
}

// Calls `use(area)` for the triangles in the direction in which the records are made.
template <class Use>
void forEachArea(const Fan& fan, const Use& use) {
  Ends<double> u = seen(fan.points.back(), fan.apex);
  for (const gxVector<2>& p : fan.points) {
    const Ends<double> v = seen(p, fan.apex);
    const double cross = u.x * v.y - u.y * v.x;
    use(0.5 * (fan.backwards ? -cross : cross));
    u = v;
  }
}

// Runs through the three passes with the areas alone.
bool staysPositive(const Fan& fan, double mean) {
  const double early = std::min(mean, kNearlyEmpty);
  double running = 0.0;
  forEachArea(fan, [&](double a) { running += a > early ? a : 0.0; });
  double least = running;
  forEachArea(fan, [&](double a) {
    running += a > early ? 0.0 : a;
    least = std::min(least, running);
  });
  return least > kShare * mean * static_cast<double>(fan.points.size());
}

}  // namespace

bool gx_sumMoments(const Points& points, const gxVector<2>& apex, gx_MomentSum& sum, bool wide) {
  Fan fan(points, apex);
#if defined(__x86_64__)
  static const bool possible = __builtin_cpu_supports("avx2");
  if (wide && possible) {
    computeByRegistersOfFour(fan);
  } else {
    computeAsBuilt(fan);
  }
#else
  static_cast<void>(wide);
  computeAsBuilt(fan);
#endif
  sum = fan.result();
  const double mean = sum.area / static_cast<double>(points.size());
  if (!(mean > kLeastArea) || fan.cancels(sum.area) || !std::isfinite(sum.xx + sum.xy + sum.yy)) {
    return false;
  }
  if (!fan.balanced() && !staysPositive(fan, mean)) return false;
  if (fan.backwards) sum = {-sum.area, -sum.x, -sum.y, -sum.xx, -sum.xy, -sum.yy};
  return true;
}
