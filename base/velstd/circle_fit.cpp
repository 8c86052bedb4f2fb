// The circle fit.
#include <velstd/circle_fit.h>

#include <algorithm>
#include <cmath>

gxCircleFitDefs::Errors::Errors(const wchar_t* message) : gxExceptionWithString(message) {}
gxCircleFitDefs::Errors::Errors(const Errors&) noexcept = default;
gxCircleFitDefs::Errors& gxCircleFitDefs::Errors::operator=(const Errors&) noexcept = default;
gxCircleFitDefs::Errors::~Errors() = default;

gxCircleFitDefs::BadParams::BadParams(const wchar_t* message) : gx_ConcreteException(message) {}
gxCircleFitDefs::BadParams::BadParams(const BadParams&) noexcept = default;
gxCircleFitDefs::BadParams& gxCircleFitDefs::BadParams::operator=(const BadParams&) noexcept = default;
gxCircleFitDefs::BadParams::~BadParams() = default;

gxCircleFitDefs::BadPoints::BadPoints(const wchar_t* message) : gx_ConcreteException(message) {}
gxCircleFitDefs::BadPoints::BadPoints(const BadPoints&) noexcept = default;
gxCircleFitDefs::BadPoints& gxCircleFitDefs::BadPoints::operator=(const BadPoints&) noexcept = default;
gxCircleFitDefs::BadPoints::~BadPoints() = default;

void gfCircleFit(const gxCircleFitParams& params, const std::vector<gxVector<2>>& points,
                 gxCircleFitResults& results) {
  if (params.mode() != gxCircleFitDefs::eFitAll) throw gxCircleFitDefs::BadParams(L"unknown mode");
  const auto n = static_cast<double>(points.size());
  if (points.size() < 3) throw gxCircleFitDefs::BadPoints(L"fewer than 3 points");
  gxVector<2> mean;
  for (const auto& p : points) mean += p;
  mean = mean / n;
  double scale = 0.0;
  for (const auto& p : points) scale += (p - mean) * (p - mean);
  scale = std::sqrt(scale / n);
  if (!(scale > 0.0) || !std::isfinite(scale))
    throw gxCircleFitDefs::BadPoints(L"points do not determine a circle");
  double xx = 0, xy = 0, yy = 0, xz = 0, yz = 0, zz = 0;
  for (const auto& p : points) {
    const gxVector<2> q = (p - mean) / scale;
    const double z = q * q;
    xx += q.x() * q.x();
    xy += q.x() * q.y();
    yy += q.y() * q.y();
    xz += q.x() * z;
    yz += q.y() * z;
    zz += z * z;
  }
  xx /= n, xy /= n, yy /= n, xz /= n, yz /= n, zz /= n;
  const double z = xx + yy;
  const double cov = xx * yy - xy * xy;
  if (!(cov > 1e-20)) throw gxCircleFitDefs::BadPoints(L"points do not determine a circle");
  const double var = zz - z * z;
  const double a2 = 4 * cov - 3 * z * z - zz;
  const double a1 = var * z + 4 * cov * z - xz * xz - yz * yz;
  const double a0 = xz * (xz * yy - yz * xy) + yz * (yz * xx - xz * xy) - var * cov;
  double t = 0.0;
  double f = a0;
  for (int i = 0; i < 99; ++i) {
    const double next = t - f / (a1 + t * (2 * a2 + 16 * t * t));
    if (next == t || !std::isfinite(next)) break;
    const double fNext = a0 + next * (a1 + next * (a2 + 4 * next * next));
    if (std::fabs(fNext) >= std::fabs(f)) break;
    t = next;
    f = fNext;
  }
  const double det = t * t - t * z + cov;
  const gxVector<2> c((xz * (yy - t) - yz * xy) / det / 2, (yz * (xx - t) - xz * xy) / det / 2);
  const double radius = std::sqrt(c * c + z - 2 * t) * scale;
  const gxVector<2> center = mean + c * scale;
  if (!std::isfinite(radius)) throw gxCircleFitDefs::BadPoints(L"points do not determine a circle");
  double sum = 0.0;
  for (const auto& p : points) sum += std::pow(p.distance(center) - radius, 2);
  results = gxCircleFitResults(gxCircle(center, radius), std::sqrt(sum / n), {});
}
