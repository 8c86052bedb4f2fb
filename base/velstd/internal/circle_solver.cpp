// The circle nearest to points.
//
//  1. Start with the algebraic fit that is free of bias up to the order of the squared noise (A.
//     Al-Sharadqah and N. Chernov, "Error analysis for circle fitting algorithms", Electronic Journal
//     of Statistics 3, 2009: the hyperaccurate fit): a Newton iteration on a quartic whose smallest
//     positive root is wanted.
//  2. Refine it to the least sum of squared orthogonal distances.  The unknowns are those of a
//     circle seen from one of its own points (half the curvature, an offset along the normal and a
//     turn of the normal), after the parameters of N. Chernov and C. Lesort, "Least squares fitting
//     of circles", Journal of Mathematical Imaging and Vision 23, 2005.  Centre and radius as
//     unknowns run away together on flat arcs; these do not, and a straight line is an ordinary
//     value of theirs.  Theirs are seen from the coordinate origin, which fails for a circle around
//     it; hence the point is moved onto the circle after each step.
//  3. With a held radius the curvature is left alone.  Then the sum has several minima (the centre
//     may lie on either side of an arc), so three starts are refined and the best is taken.
#include <velstd/internal/circle_solver.h>
#include <velstd/internal/fit_frame.h>
#include <velstd/internal/four.h>
#include <velstd/internal/normal_equations.h>

#include <algorithm>
#include <array>

namespace {

// Refinement needs 4 to 10 evaluations; noise as large as the arc's height may need some 50.
constexpr int kMostEvaluations = 100;

gx_CircleArc arcOf(const gxVector<2>& center, double radius, const gxVector<2>& normal) {
  return {center + normal * radius, normal, 0.5 / radius};
}

// The hyperaccurate algebraic fit, in coordinates relative to the centroid.
std::optional<gx_CircleArc> algebraicFit(const std::vector<gxVector<2>>& points) {
  const auto n = static_cast<double>(points.size());
  gxVector<2> centroid;
  for (const gxVector<2>& p : points) centroid += p;
  centroid = centroid / n;
  double xx = 0.0, xy = 0.0, yy = 0.0, xz = 0.0, yz = 0.0, zz = 0.0;
  for (const gxVector<2>& p : points) {
    const gxVector<2> d = p - centroid;
    const double z = d * d;
    xx += d.x() * d.x();
    xy += d.x() * d.y();
    yy += d.y() * d.y();
    xz += d.x() * z;
    yz += d.y() * z;
    zz += z * z;
  }
  xx /= n, xy /= n, yy /= n, xz /= n, yz /= n, zz /= n;

  // The quartic c0 + c1 t + c2 t² + 4 t⁴ and its root next to 0, from the left.
  const double z = xx + yy;
  const double det = xx * yy - xy * xy;
  const double variance = zz - z * z;
  const double c2 = 4.0 * det - 3.0 * z * z - zz;
  const double c1 = variance * z + 4.0 * det * z - xz * xz - yz * yz;
  const double c0 = xz * (xz * yy - yz * xy) + yz * (yz * xx - xz * xy) - variance * det;
  double t = 0.0;
  double value = c0;
  for (int i = 0; i < 50; ++i) {
    const double next = t - value / (c1 + t * (2.0 * c2 + 16.0 * t * t));
    const double nextValue = c0 + next * (c1 + next * (c2 + 4.0 * next * next));
    if (!(std::fabs(nextValue) < std::fabs(value))) break;
    t = next;
    value = nextValue;
  }

  const double divisor = 2.0 * (t * t - t * z + det);
  const gxVector<2> fromCentroid((xz * (yy - t) - yz * xy) / divisor,
                                 (yz * (xx - t) - xz * xy) / divisor);
  const double radius = std::sqrt(fromCentroid * fromCentroid + z - 2.0 * t);
  if (!std::isfinite(radius) || !(radius > 0.0)) return std::nullopt;
  const double far = fromCentroid.len();
  const gxVector<2> normal = far > 0.0 ? fromCentroid / -far : gxVector<2>(1.0, 0.0);
  return arcOf(centroid + fromCentroid, radius, normal);
}

// The sums behind the normal equations, each over one point in four.
struct NormalSums {
  gx_Four matrix[6] = {};  // row by row, up to the diagonal
  gx_Four gradient[3] = {};
  gx_Four cost = {};

  // Adds four points; `kept` is 0 for a point that only fills a place.
  GX_FOURFOLD void add(const gx_CircleArc& arc, const gx_Four& px, const gx_Four& py,
                       const gx_Four& kept) {
    const gx_Four zero = {};
    const gx_Four dx = px - arc.origin.x();
    const gx_Four dy = py - arc.origin.y();
    const gx_Four u = arc.normal.x() * dx + arc.normal.y() * dy;
    const gx_Four v = arc.normal.x() * dy - arc.normal.y() * dx;
    const gx_Four square = u * u + v * v;
    const gx_Four power = arc.bend * square + u;
    gx_Four root = 1.0 + 4.0 * arc.bend * power;
    root = root > zero ? root : zero;
    gf_TakeRoot(root);
    const gx_Four d = kept * (2.0 * power / (1.0 + root));
    // At the centre itself the distance has no derivatives; any finite ones do.
    const gx_Four least = zero + 1e-9;
    const gx_Four scale = kept / (root > least ? root : least);
    const gx_Four bend = (square - d * d) * scale;
    const gx_Four offset = (1.0 + 2.0 * arc.bend * u) * scale;
    const gx_Four turn = v * scale;
    matrix[0] += bend * bend;
    matrix[1] += offset * bend;
    matrix[2] += offset * offset;
    matrix[3] += turn * bend;
    matrix[4] += turn * offset;
    matrix[5] += turn * turn;
    gradient[0] += bend * d;
    gradient[1] += offset * d;
    gradient[2] += turn * d;
    cost += d * d;
  }
};

// Of the last points the rest of four is the last one again, which is not kept.
GX_FOURFOLD void addAll(const gx_CircleArc& arc, const std::vector<gxVector<2>>& points,
                        NormalSums& sums) {
  gx_Four x;
  gx_Four y;
  std::size_t i = 0;
  for (; i + 4 <= points.size(); i += 4) {
    gf_LoadFour(&points[i], x, y);
    sums.add(arc, x, y, gx_Four{1.0, 1.0, 1.0, 1.0});
  }
  const std::size_t count = points.size() - i;
  if (count == 0) return;
  std::array<gxVector<2>, 4> rest;
  for (std::size_t k = 0; k < 4; ++k) rest[k] = k < count ? points[i + k] : points.back();
  gf_LoadFour(rest.data(), x, y);
  sums.add(arc, x, y, gx_Four{1.0, count > 2 ? 1.0 : 0.0, count > 1 ? 1.0 : 0.0, 0.0});
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void addWithRegistersOfFour(const gx_CircleArc& arc,
                                                            const std::vector<gxVector<2>>& points,
                                                            NormalSums& sums) {
  addAll(arc, points, sums);
}
#endif

gx_NormalEquations<3> evaluate(const gx_CircleArc& arc, const std::vector<gxVector<2>>& points,
                               bool holdBend) {
  NormalSums fours;
#if defined(__x86_64__)
  static const bool wide = __builtin_cpu_supports("avx2");
  if (wide) {
    addWithRegistersOfFour(arc, points, fours);
  } else {
    addAll(arc, points, fours);
  }
#else
  addAll(arc, points, fours);
#endif
  gx_NormalEquations<3> sums;
  std::size_t k = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j <= i; ++j, ++k) sums.matrix[i][j] = gf_Total(fours.matrix[k]);
    sums.gradient[i] = gf_Total(fours.gradient[i]);
  }
  sums.cost = gf_Total(fours.cost);
  if (holdBend) sums.hold(0);
  return sums;
}

// The arc after a step (bend, offset, turn), seen from a point of its own again.
std::optional<gx_CircleArc> moved(const gx_CircleArc& arc, const std::array<double, 3>& step,
                                  bool holdBend) {
  const double offset = step[1];
  double bend = arc.bend + step[0];
  if (holdBend) bend = arc.bend;
  const double square = 1.0 + 4.0 * bend * offset;
  if (!(square > 0.0)) return std::nullopt;
  const gxVector<2> across(-arc.normal.y(), arc.normal.x());
  gxVector<2> normal = (arc.normal * std::cos(step[2]) + across * std::sin(step[2])).unit();
  const gxVector<2> origin = arc.origin - normal * (2.0 * offset / (1.0 + std::sqrt(square)));
  return gx_CircleArc{origin, normal, bend};
}

}  // namespace

bool gx_CircleSolver::determined(const std::vector<gxVector<2>>& points) const {
  if (gx_CountDistinct(points, kFewest) < kFewest) return false;
  const gx_NearestLine line = gx_FindNearestLine(points);
  return line.width > 4.0 * rounding_ && line.width > 1e-14 * line.length;
}

std::vector<gx_CircleArc> gx_CircleSolver::starts(const std::vector<gxVector<2>>& points) const {
  std::vector<gx_CircleArc> result;
  const std::optional<gx_CircleArc> free = algebraicFit(points);
  if (!radius_) {
    if (free) {
      result.push_back(*free);
    } else {
      const gx_NearestLine line = gx_FindNearestLine(points);
      result.push_back({line.point, gxVector<2>(-line.direction.y(), line.direction.x()), 0.0});
    }
    return result;
  }
  if (free) {
    result.push_back(arcOf(free->center(), *radius_, free->normal));  // the same centre
    result.push_back({free->origin, free->normal, 0.5 / *radius_});   // the same arc
    result.push_back({free->origin, free->normal, -0.5 / *radius_});  // the arc bent the other way
  } else {
    const gx_NearestLine line = gx_FindNearestLine(points);
    const gxVector<2> normal(-line.direction.y(), line.direction.x());
    result.push_back({line.point, normal, 0.5 / *radius_});
    result.push_back({line.point, normal, -0.5 / *radius_});
  }
  return result;
}

std::optional<gx_CircleArc> gx_CircleSolver::roughFit(const std::vector<gxVector<2>>& points) const {
  if (!radius_) return algebraicFit(points);
  const std::optional<Fitted> found = fit(points);
  return found ? std::optional<Shape>(found->shape) : std::nullopt;
}

std::optional<gx_CircleSolver::Fitted> gx_CircleSolver::fit(
    const std::vector<gxVector<2>>& points) const {
  if (!determined(points)) return std::nullopt;
  const bool holdBend = radius_.has_value();
  std::optional<Fitted> best;
  for (const gx_CircleArc& start : starts(points)) {
    const auto [arc, cost] = gx_LeastSquares<3>(
        start, kMostEvaluations, gx_Refinement(),
        [&](const gx_CircleArc& a) { return evaluate(a, points, holdBend); },
        [&](const gx_CircleArc& a, const std::array<double, 3>& step) {
          return moved(a, step, holdBend);
        });
    if (!best || cost < best->cost) best = Fitted{arc, cost};
  }
  // An arc whose height over the points' length is lost in rounding is a straight line.
  const double length = gx_FindNearestLine(points).length;
  if (best && std::fabs(best->shape.bend) * length * length <= std::max(4.0 * rounding_, 1e-15)) {
    return std::nullopt;
  }
  return best;
}

void gx_CircleSolver::distances(const gx_CircleArc& shape, const std::vector<gxVector<2>>& points,
                                std::vector<double>& out) {
  out.clear();
  out.reserve(points.size());
  for (const gxVector<2>& p : points) out.push_back(std::fabs(shape.distance(p)));
}
