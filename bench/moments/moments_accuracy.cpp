// Errors of area, centre of mass and second moments.
//
//   moments_accuracy      prints the three tables of docs/accuracy.md
//
// The first: a small shape far from the origin.  The shape is a regular polygon of radius 5 with 64 corners (and with 16 for the moments, which are
// summed in another way from 17 on), its coordinates rounded to doubles where it lies; the largest error
// of 50 turns of it.  The truth is computed from those very doubles in 113-bit arithmetic, so that only the errors
// of the computation are seen, not those of rounding the corners.  Beside it stands the computation that
// takes its triangles from the coordinate origin instead of the first corner.
//
// The second: how far the fast sum of more than 16 points and the triangles added one by one lie apart,
// and each from the truth, on outlines around the origin, relative to the norm of the matrix.
#include <cntr/shapestat.h>
#include <support/quad.h>
#include <support/slow_truth_stats.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

struct Truth {
  Quad area = 0;
  Quad x = 0;
  Quad y = 0;
  Quad xx = 0;
  Quad xy = 0;
  Quad yy = 0;
};

// The corner sums, about the first corner and then moved to the centre of mass.
Truth truthOf(const Points& points) {
  Truth t;
  const Quad ox = points[0].x();
  const Quad oy = points[0].y();
  for (std::size_t i = 0; i < points.size(); ++i) {
    const V& p = points[i];
    const V& q = points[(i + 1) % points.size()];
    const Quad ax = p.x() - ox;
    const Quad ay = p.y() - oy;
    const Quad bx = q.x() - ox;
    const Quad by = q.y() - oy;
    const Quad w = ax * by - bx * ay;
    t.area += w / 2;
    t.x += w * (ax + bx) / 6;
    t.y += w * (ay + by) / 6;
    t.xx += w * (ax * ax + ax * bx + bx * bx) / 12;
    t.yy += w * (ay * ay + ay * by + by * by) / 12;
    t.xy += w * (2 * ax * ay + ax * by + bx * ay + 2 * bx * by) / 24;
  }
  t.x /= t.area;
  t.y /= t.area;
  t.xx -= t.area * t.x * t.x;
  t.yy -= t.area * t.y * t.y;
  t.xy -= t.area * t.x * t.y;
  t.x += ox;
  t.y += oy;
  return t;
}

double off(double got, Quad truth) {
  return static_cast<double>(quadAbs(static_cast<Quad>(got) - truth));
}

// Centre of mass by triangles from the coordinate origin.
V centerFromOrigin(const Points& points) {
  double w = 0;
  double x = 0;
  double y = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const V& p = points[i];
    const V& q = points[(i + 1) % points.size()];
    const double cross = p.x() * q.y() - q.x() * p.y();
    w += cross;
    x += cross * (p.x() + q.x());
    y += cross * (p.y() + q.y());
  }
  return V(x, y) * (1.0 / (3.0 * w));
}

Points polygon(int corners, int phase, const V& center) {
  Points points;
  for (int i = 0; i < corners; ++i) {
    const double t = (i + phase / 50.0) * 2.0 * 3.141592653589793 / corners;
    points.emplace_back(center.x() + 5.0 * std::cos(t), center.y() + 5.0 * std::sin(t));
  }
  return points;
}

double momentsOff(const Points& points, const Truth& truth) {
  const gx_InertiaData got = gf_InertiaDataPolygon(points);
  const gxMatrix<2>& m = got.inertiaMatrix();
  const double worst =
      std::max({off(m.m00(), truth.xx), off(m.m01(), truth.xy), off(m.m11(), truth.yy)});
  return worst / static_cast<double>(truth.xx);
}

void row(double distance, const V& center) {
  double area = 0;
  double place = 0;
  double naive = 0;
  double few = 0;
  double many = 0;
  for (int phase = 0; phase < 50; ++phase) {
    const Points points = polygon(64, phase, center);
    const Truth truth = truthOf(points);
    area = std::max(area, off(gf_Area(points), truth.area) / static_cast<double>(truth.area));
    const V c = gf_CenterOfMass(points);
    place = std::max(place, std::hypot(off(c.x(), truth.x), off(c.y(), truth.y)));
    const V n = centerFromOrigin(points);
    naive = std::max(naive, std::hypot(off(n.x(), truth.x), off(n.y(), truth.y)));
    many = std::max(many, momentsOff(points, truth));
    const Points coarse = polygon(16, phase, center);
    few = std::max(few, momentsOff(coarse, truthOf(coarse)));
  }
  std::printf("| %g | %.1e | %.1e | %.1e | %.1e | %.1e | %.1e |\n", distance, area, place,
              std::nextafter(5.0 + distance, 1e300) - (5.0 + distance), naive, few, many);
}

// ---- The fast sum beside the triangles ----------------------------------------------------------

// The largest difference of an element, relative to the norm of the matrix.
double apart(const gxMatrix<2>& a, const gxMatrix<2>& b) {
  const double norm = std::abs(b.m00()) + 2.0 * std::abs(b.m01()) + std::abs(b.m11());
  const gxMatrix<2> d = a - b;
  return std::max({std::abs(d.m00()), std::abs(d.m01()), std::abs(d.m11())}) / norm;
}

// Uneven all around, by waves and by noise of a share of the radius.
Points uneven(int corners, double share, std::mt19937_64& engine) {
  std::uniform_real_distribution<double> phase(0.0, 6.283185307179586);
  std::uniform_real_distribution<double> noise(1.0 - share, 1.0 + share);
  const double first = phase(engine);
  const double second = phase(engine);
  Points points;
  for (int i = 0; i < corners; ++i) {
    const double t = 6.283185307179586 * i / corners;
    const double r = 100.0 * noise(engine) *
                     (1.0 + 0.2 * std::sin(3.0 * t + first) + 0.1 * std::sin(8.0 * t + second));
    points.emplace_back(r * std::cos(t), r * std::sin(t));
  }
  return points;
}

void deviationRow(int corners, double share, int outlines) {
  std::mt19937_64 engine(7);
  double between = 0;
  double fast = 0;
  double triangles = 0;
  for (int k = 0; k < outlines; ++k) {
    const Points points = uneven(corners, share, engine);
    const gxMatrix<2> got = gf_InertiaDataPolygon(points).inertiaMatrix();
    const gxMatrix<2> plain = slow::polygonMoments(points).matrix;
    const Truth t = truthOf(points);
    const gxMatrix<2> truth(static_cast<double>(t.xx), static_cast<double>(t.xy),
                            static_cast<double>(t.xy), static_cast<double>(t.yy));
    between = std::max(between, apart(got, plain));
    fast = std::max(fast, apart(got, truth));
    triangles = std::max(triangles, apart(plain, truth));
  }
  std::printf("| %d | %g %% | %d | %.1e | %.1e | %.1e |\n", corners, 100.0 * share, outlines, between,
              fast, triangles);
}

// ---- Units --------------------------------------------------------------------------------------

// An outline of 3 to 60 corners that does not cross itself, about one unit across: smooth, uneven, or in
// pairs of corners close together, which make the flat triangles; some of it turned the other way.
Points anySimple(std::mt19937_64& engine) {
  std::uniform_int_distribution<int> corners(3, 60);
  std::uniform_real_distribution<double> share(0.0, 1.0);
  const int n = corners(engine);
  const double depth =
      share(engine) < 0.5 ? 0.6 * share(engine) : std::pow(10.0, -9.0 + 6.0 * share(engine));
  const bool pairs = n >= 6 && share(engine) < 0.3;  // of fewer it would be a sliver
  Points points;
  for (int i = 0; i < n; ++i) {
    const double place = pairs ? (i - i % 2) + (i % 2) * 1e-3 * share(engine) : i + 0.0;
    const double t = 6.283185307179586 * place / n;
    const double r = 0.5 * (1.0 - depth * share(engine));
    points.emplace_back(r * std::cos(t), r * std::sin(t));
  }
  if (share(engine) < 0.5) std::reverse(points.begin(), points.end());
  return points;
}

void unitRow(double unit, int outlines) {
  std::mt19937_64 engine(11);
  double worst = 0;
  for (int k = 0; k < outlines; ++k) {
    Points points = anySimple(engine);
    for (V& p : points) p = p * unit;
    const gxMatrix<2> truth = slow::momentsByGreen(points).matrix;
    const gxMatrix<2> d = gf_InertiaDataPolygon(points).inertiaMatrix() - truth;
    const double off = std::max({std::abs(d.m00()), std::abs(d.m01()), std::abs(d.m11())});
    worst = std::max(worst, off / (truth.m00() + truth.m11()));
  }
  std::printf("| %g | %d | %.1e |\n", unit, outlines, worst);
}

}  // namespace

int main() {
  std::puts(
      "| Centre at | area, relative | centre of mass | one unit in the last place | centre, summed from "
      "the origin | moments, 16 corners | moments, 64 corners |");
  std::puts("|---|---|---|---|---|---|---|");
  for (const double d : {0.0, 5e3, 1e5, 1e6}) row(d, V(d, d));
  std::puts("\n| corners | noise | outlines | fast − triangles | fast − truth | triangles − truth |");
  std::puts("|--:|--:|--:|--:|--:|--:|");
  for (const double share : {0.0, 0.001, 0.1}) {
    deviationRow(5, share, 2000);
    deviationRow(16, share, 2000);
    deviationRow(64, share, 2000);
    deviationRow(1000, share, 200);
    deviationRow(10000, share, 20);
    deviationRow(100000, share, 4);
    deviationRow(1000000, share, 1);
  }
  std::puts("\n| size of the outline | outlines | largest error of the matrix / trace |");
  std::puts("|--:|--:|--:|");
  for (const double unit : {1e-6, 1e-5, 1e-4, 1e-3, 1e-2, 1.0, 10.0, 1e3, 1e4, 1e6}) unitRow(unit, 2000);
  return 0;
}
