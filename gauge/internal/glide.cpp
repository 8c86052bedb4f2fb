// Distances seen from a gliding point.
//
// The square of the distance from a segment is quadratic in t while the nearest part stays the same: an
// end, or the inside, where the distance itself is linear.  Two such are equal where
//
//   end and end         a linear equation holds, as the factor of u² is the same for both
//   inside and inside   the two linear forms are equal, or opposite
//   end and inside      a quadratic holds, solved by the form that adds numbers of one sign
//
// Every distance from a segment is a convex function of t, so the smaller of two has its maximum over a
// stretch at the ends or where the two are equal.
#include <gauge/internal/glide.h>

#include <algorithm>
#include <cmath>

namespace {

// The parameters at which the foot on the segment passes its two ends.
void addFootCut(const gxVector<2>& step, const gxVector<2>& along, const gxVector<2>& fromEnd, double t0,
                double t1, gx_Cuts& cuts) {
  const double slope = step * along;
  if (slope == 0.0) return;
  const double t = -(fromEnd * along) / slope;
  if (t > t0 && t < t1) cuts.add(t);
}

}  // namespace

gx_GlideZone gx_zoneOf(const gx_Piece& glide, const gx_Piece& segment, double t0, double middle) {
  const gxVector<2> step = glide.b - glide.a;
  const gxVector<2> along = segment.b - segment.a;
  const gxVector<2> start = glide.at(t0);
  const double whole = along * along;
  const double dot = (glide.at(middle) - segment.a) * along;
  gx_GlideZone zone;
  if (dot > 0.0 && dot < whole) {
    const double length = std::sqrt(whole);
    zone.inside = true;
    zone.at = gf_Cross(along, start - segment.a) / length;
    zone.slope = gf_Cross(along, step) / length;
    zone.a = zone.at * zone.at;
    zone.b = 2.0 * zone.at * zone.slope;
    zone.c = zone.slope * zone.slope;
    return zone;
  }
  const gxVector<2> v = start - (dot > 0.0 ? segment.b : segment.a);
  zone.a = v * v;
  zone.b = 2.0 * (v * step);
  zone.c = step * step;
  return zone;
}

void gx_addZoneCuts(const gx_Piece& glide, const gx_Piece& segment, double t0, double t1,
                    gx_Cuts& cuts) {
  const gxVector<2> step = glide.b - glide.a;
  const gxVector<2> along = segment.b - segment.a;
  addFootCut(step, along, glide.a - segment.a, t0, t1, cuts);
  addFootCut(step, along, glide.a - segment.b, t0, t1, cuts);
}

void gx_addRoots(double a, double b, double c, gx_Roots& roots) {
  if (c == 0.0) {
    if (b != 0.0) roots.add(-a / b);
    return;
  }
  const double inner = gf_DifferenceOfProducts(b, b, 4.0 * a, c);
  if (inner < 0.0) {
    // A double root that rounding has lost.
    if (-inner <= 1e-14 * b * b) roots.add(-b / (2.0 * c));
    return;
  }
  const double q = -0.5 * (b + std::copysign(std::sqrt(inner), b));
  if (q != 0.0) roots.add(a / q);
  roots.add(q / c);
}

gx_Roots gx_equalRoots(const gx_GlideZone& f, const gx_GlideZone& g) {
  gx_Roots roots;
  if (f.inside && g.inside) {
    gx_addRoots(f.at - g.at, f.slope - g.slope, 0.0, roots);
    gx_addRoots(f.at + g.at, f.slope + g.slope, 0.0, roots);
  } else if (!f.inside && !g.inside) {
    gx_addRoots(f.a - g.a, f.b - g.b, 0.0, roots);
  } else {
    gx_addRoots(f.a - g.a, f.b - g.b, f.c - g.c, roots);
  }
  return roots;
}

gx_Summit gx_summitOf(const gx_Piece& glide, const gx_Piece& f, const gx_Piece& g, double t0,
                      double t1) {
  gx_Cuts cuts;
  cuts.add(t0);
  cuts.add(t1);
  gx_addZoneCuts(glide, f, t0, t1, cuts);
  gx_addZoneCuts(glide, g, t0, t1, cuts);
  gx_Summit best{0.5 * (t0 + t1), -1.0};
  const auto consider = [&](double t) {
    const gxVector<2> p = glide.at(t);
    const double square = std::min(f.squareFrom(p), g.squareFrom(p));
    if (square > best.square) best = {t, square};
  };
  for (std::size_t i = 0; i + 1 < cuts.count; ++i) {
    const double from = cuts.t[i];
    const double to = cuts.t[i + 1];
    if (i > 0) consider(from);
    const double middle = 0.5 * (from + to);
    const gx_Roots roots =
        gx_equalRoots(gx_zoneOf(glide, f, from, middle), gx_zoneOf(glide, g, from, middle));
    for (std::size_t k = 0; k < roots.count; ++k) {
      const double t = from + roots.u[k];
      if (t >= from && t <= to && t > t0 && t < t1) consider(t);
    }
  }
  if (best.square < 0.0) consider(best.t);
  return best;
}
