// With u and v from the apex to the ends of an edge and c = u × v, the triangle has
//
//   area c / 2,  ∫x dA = c (u.x + v.x) / 6,  ∫x² dA = c (u.x² + u.x v.x + v.x²) / 12,
//   ∫xy dA = c (2 u.x u.y + u.x v.y + v.x u.y + 2 v.x v.y) / 24,
//
// signed by c, and everything adds up (Green's theorem; C. Steger, "On the calculation of arbitrary
// moments of polygons", 1996).  No root, no angle, no frame of the triangle's own.
//
// It comes to the same as the triangles added as records as long as the area added so far is positive: a
// negative triangle is then what is taken out.  (A clockwise polygon is taken backwards there; here all
// signs are turned at the end.)  The records are added in three passes, the triangles above the mean
// first, then those above 1e-6, then the rest with the negative ones.  What is positive in the last pass
// is at most the mean, so all of it together is less than the whole area, and the running area never
// falls below 2 / n of the whole: it stays positive, and above what records need for a common centre
// where the mean is.  (A run through the areas that looked whether it does was there; it never said no.)
//
// Where most of the area cancels, as in a tangle, the answer has lost digits, and another order of
// additions loses others; there the records decide.
//
// The sums are made four by four, in an order that is the same on every machine: each sum is one over
// every fourth edge, the edges left over added last.
#include <cntr/internal/outline/four.h>
#include <cntr/internal/sums/moment_sum.h>

#include <cmath>
#include <cstddef>

namespace {

using Points = std::vector<gxVector<2>>;

// Records whose areas sum to 1e-16 or less have no common centre; ten times that is safely more.
constexpr double kLeastArea = 1e-15;

// The share of all triangles, by magnitude, that must be left when they are added up; below, as in a
// tangle, the answer has lost digits that another order of additions loses differently.
constexpr double kLeastShareOfAll = 0.01;

using Four = gx_Four;

// Points seen from the apex, one or four, by component.
template <class Number>
struct Ends {
  Number x;
  Number y;
};

Ends<double> seen(const gxVector<2>& p, const gxVector<2>& apex) {
  return {p.x() - apex.x(), p.y() - apex.y()};
}

// The sums of the polynomials, without their denominators.
template <class Number>
struct Sums {
  Number area = {};
  Number x = {};
  Number y = {};
  Number xx = {};
  Number xy = {};
  Number yy = {};
  Number all = {};  // the areas by magnitude

  GX_FOURFOLD void add(const Ends<Number>& u, const Ends<Number>& v) {
    const Number none = {};
    const Number uxvy = u.x * v.y;
    const Number uyvx = u.y * v.x;
    const Number c = uxvy - uyvx;
    area += c;
    x += c * (u.x + v.x);
    y += c * (u.y + v.y);
    xx += c * ((u.x * u.x + u.x * v.x) + v.x * v.x);
    yy += c * ((u.y * u.y + u.y * v.y) + v.y * v.y);
    xy += c * (2.0 * (u.x * u.y + v.x * v.y) + (uxvy + uyvx));
    all += c < none ? -c : c;
  }
};

// All of it, in the order that makes the same bits everywhere: four sums for the triangles that come in
// fours, each over every fourth, and one for the rest.
struct Fan {
  Fan(const Points& p, const gxVector<2>& a) : points(p), apex(a) {}

  const Points& points;
  gxVector<2> apex;
  Sums<double> sums;

  GX_FOURFOLD void compute() {
    const Four from = {apex.x(), apex.y(), apex.x(), apex.y()};
    Sums<Four> four;
    sums.add(seen(points.back(), apex), seen(points.front(), apex));
    std::size_t i = 1;
    for (; i + 4 <= points.size(); i += 4) {
      Ends<Four> u;
      Ends<Four> v;
      gx_seeFour(&points[i - 1], from, u.x, u.y);
      gx_seeFour(&points[i], from, v.x, v.y);
      four.add(u, v);
    }
    for (; i < points.size(); ++i) sums.add(seen(points[i - 1], apex), seen(points[i], apex));
    sums.area += gf_Total(four.area);
    sums.x += gf_Total(four.x);
    sums.y += gf_Total(four.y);
    sums.xx += gf_Total(four.xx);
    sums.xy += gf_Total(four.xy);
    sums.yy += gf_Total(four.yy);
    sums.all += gf_Total(four.all);
  }

  gx_MomentSum result() const {
    return {sums.area / 2.0, sums.x / 6.0, sums.y / 6.0, sums.xx / 12.0, sums.xy / 24.0, sums.yy / 12.0};
  }
  // Tells whether so much cancels that the order of the additions shows in the answer.
  bool cancels() const { return std::abs(sums.area) < kLeastShareOfAll * sums.all; }
};

#if defined(__x86_64__)
__attribute__((target("avx2"))) void computeByRegistersOfFour(Fan& fan) {
  fan.compute();
}
#endif

void computeAsBuilt(Fan& fan) {
  fan.compute();
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
  const double mean = std::abs(sum.area) / static_cast<double>(points.size());
  return mean > kLeastArea && !fan.cancels() && std::isfinite(sum.xx + sum.xy + sum.yy);
}
