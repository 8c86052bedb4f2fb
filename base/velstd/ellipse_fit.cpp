// The ellipse fit.
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>

#include <algorithm>
#include <cmath>

gxEllipseFitDefs::Errors::Errors(const wchar_t* message) : gxExceptionWithString(message) {}
gxEllipseFitDefs::Errors::Errors(const Errors&) noexcept = default;
gxEllipseFitDefs::Errors& gxEllipseFitDefs::Errors::operator=(const Errors&) noexcept = default;
gxEllipseFitDefs::Errors::~Errors() = default;

gxEllipseFitDefs::BadParams::BadParams(const wchar_t* message) : gx_ConcreteException(message) {}
gxEllipseFitDefs::BadParams::BadParams(const BadParams&) noexcept = default;
gxEllipseFitDefs::BadParams& gxEllipseFitDefs::BadParams::operator=(const BadParams&) noexcept = default;
gxEllipseFitDefs::BadParams::~BadParams() = default;

gxEllipseFitDefs::BadPoints::BadPoints(const wchar_t* message) : gx_ConcreteException(message) {}
gxEllipseFitDefs::BadPoints::BadPoints(const BadPoints&) noexcept = default;
gxEllipseFitDefs::BadPoints& gxEllipseFitDefs::BadPoints::operator=(const BadPoints&) noexcept = default;
gxEllipseFitDefs::BadPoints::~BadPoints() = default;

namespace {

constexpr double kPi = 3.141592653589793;

// The distance of a point to the ellipse at the origin with semi-axes a >= b > 0 along the axes.
double distance(double a, double b, double x, double y) {
  x = std::fabs(x), y = std::fabs(y);
  if (y == 0.0) {
    const double u = (a * a - b * b) > 0 ? a * x / (a * a - b * b) : 2.0;
    if (u < 1.0) return std::hypot(a * u - x, b * std::sqrt(1 - u * u));
    return std::fabs(x - a);
  }
  // t in [-b^2 + b y, ...]: F(t) = (a x / (t + a^2))^2 + (b y / (t + b^2))^2 - 1
  double lo = -b * b + b * y, hi = -b * b + std::hypot(a * x, b * y), t = 0;
  for (int i = 0; i < 200; ++i) {
    t = 0.5 * (lo + hi);
    if (t == lo || t == hi) break;
    const double u = a * x / (t + a * a), v = b * y / (t + b * b);
    (u * u + v * v > 1 ? lo : hi) = t;
  }
  const double u = a * a * x / (t + a * a), v = b * b * y / (t + b * b);
  return std::hypot(u - x, v - y);
}

}  // namespace

void gfEllipseFit(const gxEllipseFitParams& params, const std::vector<gxVector<2>>& points,
                  gxEllipseFitResults& results) {
  if (params.mode() != gxEllipseFitDefs::eFitAll) throw gxEllipseFitDefs::BadParams(L"unknown mode");
  if (points.size() < 5) throw gxEllipseFitDefs::BadPoints(L"fewer than 5 points");
  const auto n = static_cast<double>(points.size());
  gxVector<2> mean;
  for (const auto& p : points) mean += p;
  mean = mean / n;
  double scale = 0.0;
  for (const auto& p : points) scale += (p - mean) * (p - mean);
  scale = std::sqrt(scale / n);
  const auto fail = [] { throw gxEllipseFitDefs::BadPoints(L"points do not determine an ellipse"); };
  if (!(scale > 0.0) || !std::isfinite(scale)) fail();
  // Scatter of (x^2, xy, y^2, x, y, 1), then the direct fit's reduced 3x3 matrix M.
  double s[6][6] = {};
  for (const auto& p : points) {
    const gxVector<2> q = (p - mean) / scale;
    const double d[6] = {q.x() * q.x(), q.x() * q.y(), q.y() * q.y(), q.x(), q.y(), 1.0};
    for (int i = 0; i < 6; ++i)
      for (int j = 0; j < 6; ++j) s[i][j] += d[i] * d[j] / n;
  }
  // Schur complement on the last three by elimination.
  for (int k = 5; k >= 3; --k) {
    if (!(s[k][k] > 1e-20)) fail();
    for (int i = 0; i < k; ++i)
      for (int j = 0; j < k; ++j) s[i][j] -= s[i][k] * s[k][j] / s[k][k];
  }
  // Cholesky of the 3x3 block with a small ridge, then power iteration on L^-1 C L^-T.
  double l[3][3] = {};
  const double ridge = 1e-15 * (s[0][0] + s[1][1] + s[2][2]);
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j <= i; ++j) {
      double v = s[i][j] + (i == j ? ridge : 0.0);
      for (int k = 0; k < j; ++k) v -= l[i][k] * l[j][k];
      if (i == j && !(v > 0)) v = ridge;
      l[i][j] = i == j ? std::sqrt(v) : v / l[j][j];
    }
  const auto lowerSolve = [&](double* v) {
    for (int i = 0; i < 3; ++i) {
      for (int k = 0; k < i; ++k) v[i] -= l[i][k] * v[k];
      v[i] /= l[i][i];
    }
  };
  const auto upperSolve = [&](double* v) {
    for (int i = 2; i >= 0; --i) {
      for (int k = i + 1; k < 3; ++k) v[i] -= l[k][i] * v[k];
      v[i] /= l[i][i];
    }
  };
  double m[3][3];
  for (int j = 0; j < 3; ++j) {
    double e[3] = {0, 0, 0};
    e[j] = 1;
    upperSolve(e);
    double c[3] = {2 * e[2], -e[1], 2 * e[0]};
    lowerSolve(c);
    for (int i = 0; i < 3; ++i) m[i][j] = c[i];
  }
  double shift = 0.0;
  for (auto& row : m) shift = std::max(shift, std::fabs(row[0]) + std::fabs(row[1]) + std::fabs(row[2]));
  double v[3] = {1, 0.3, 0.9};
  // Jacobi eigenvalues of the symmetric m
  double q[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  for (int sweep = 0; sweep < 30; ++sweep)
    for (int i = 0; i < 2; ++i)
      for (int j = i + 1; j < 3; ++j) {
        if (m[i][j] == 0.0) continue;
        const double th = 0.5 * std::atan2(2 * m[i][j], m[j][j] - m[i][i]);
        const double co = std::cos(th), si = std::sin(th);
        for (int k = 0; k < 3; ++k) {
          const double a = m[k][i], b = m[k][j];
          m[k][i] = co * a - si * b, m[k][j] = si * a + co * b;
        }
        for (int k = 0; k < 3; ++k) {
          const double a = m[i][k], b = m[j][k];
          m[i][k] = co * a - si * b, m[j][k] = si * a + co * b;
          const double a2 = q[k][i], b2 = q[k][j];
          q[k][i] = co * a2 - si * b2, q[k][j] = si * a2 + co * b2;
        }
      }
  int best = 0;
  for (int i = 1; i < 3; ++i)
    if (m[i][i] > m[best][best]) best = i;
  for (int i = 0; i < 3; ++i) v[i] = q[i][best];
  upperSolve(v);
  double k[6] = {v[0], v[1], v[2], 0, 0, 0};
  for (int i = 3; i < 6; ++i) {
    for (int j = 0; j < i; ++j) k[i] -= s[i][j] * k[j];
    k[i] /= s[i][i];
  }
  if (k[0] + k[2] < 0)
    for (double& x : k) x = -x;
  const double disc = 4 * k[0] * k[2] - k[1] * k[1];
  if (!(disc > 0)) fail();
  const gxVector<2> c((k[1] * k[4] - 2 * k[2] * k[3]) / disc, (k[1] * k[3] - 2 * k[0] * k[4]) / disc);
  const double f = -(k[5] + 0.5 * (k[3] * c.x() + k[4] * c.y()));
  const double mid = 0.5 * (k[0] + k[2]), half = 0.5 * std::hypot(k[0] - k[2], k[1]);
  const double small = disc / 4 / (mid + half);
  const double a = std::sqrt(f / small) * scale, b = std::sqrt(f / (mid + half)) * scale;
  if (!std::isfinite(a) || !(b > 0)) fail();
  double rotation = 0.5 * std::atan2(-k[1], k[2] - k[0]);
  if (rotation <= -kPi / 2) rotation = kPi / 2;
  const gxVector<2> center = mean + c * scale;
  double sum = 0;
  const double co = std::cos(rotation), si = std::sin(rotation);
  for (const auto& p : points) {
    const gxVector<2> d = p - center;
    sum += std::pow(distance(a, b, co * d.x() + si * d.y(), co * d.y() - si * d.x()), 2);
  }
  const double residual = std::sqrt(sum / n);
  try {
    gxCircleFitResults circle;
    gfCircleFit(gxCircleFitParams(gxCircleFitDefs::eFitAll, 1.0, 0, params.limit()), points, circle);
    if (circle.residual() <= residual) {
      results = gxEllipseFitResults(gxEllipse(circle.circle()), circle.residual(), {});
      return;
    }
  } catch (const gxCircleFitDefs::Errors&) {}
  results = gxEllipseFitResults(
      gxEllipse(gxEllipse::gxEllipseGeom{center, {a, b}, gxRadian(rotation), false, false}), residual,
      {});
}
