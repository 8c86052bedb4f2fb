// The ways between an ellipse as image of the unit circle, by its axes, and as a conic.
//
// Half of an angle is taken by roots: a fit goes these ways once a trial, and an arctangent with sine and
// cosine behind it took as long as the distances of fifty points.
#include <velstd/internal/ellipse_forms.h>

#include <cmath>
#include <utility>

namespace {

// The length of (p, q) where its square does not vanish; what is below 1e-150 makes no axis.
double lengthOf(double p, double q) {
  return std::sqrt(p * p + q * q);
}

// The direction of half the angle of (p, q), whose length is given, in the right half plane; the x
// direction where there is no length to speak of.
gxVector<2> halfWayTo(double p, double q, double length) {
  if (!(length > 1e-150)) return {1.0, 0.0};
  const double larger = std::sqrt(0.5 + 0.5 * (std::fabs(p) / length));
  const double smaller = 0.5 * (std::fabs(q) / length) / larger;
  if (p < 0.0) return {smaller, std::copysign(larger, q)};
  return {larger, std::copysign(smaller, q)};
}

}  // namespace

gx_EllipseAxes gx_AxesOf(const gx_EllipseImage& image) {
  const double mean = 0.5 * (image.xx + image.yy);
  const double p = image.xx - image.yy;
  const double q = 2.0 * image.xy;
  const double length = lengthOf(p, q);
  const double spread = 0.5 * length;
  gx_EllipseAxes axes;
  axes.center = image.center;
  axes.major = halfWayTo(p, q, length);
  axes.a = std::fabs(mean + spread);
  axes.b = std::fabs(mean - spread);
  if (axes.a < axes.b) {
    std::swap(axes.a, axes.b);
    axes.major = {-axes.major.y(), axes.major.x()};
  }
  return axes;
}

gx_EllipseImage gx_ImageOf(const gx_EllipseAxes& axes) {
  const double c = axes.major.x();
  const double s = axes.major.y();
  return {axes.center, axes.a * c * c + axes.b * s * s, (axes.a - axes.b) * c * s,
          axes.a * s * s + axes.b * c * c};
}

std::optional<gx_EllipseImage> gx_ImageOf(const gx_Conic& k) {
  const double det = 4.0 * k.xx * k.yy - k.xy * k.xy;
  if (!(det > 0.0)) return std::nullopt;
  const gxVector<2> center((k.xy * k.y - 2.0 * k.yy * k.x) / det, (k.xy * k.x - 2.0 * k.xx * k.y) / det);
  const double level = -(k.one + 0.5 * (k.x * center.x() + k.y * center.y()));
  const double mean = 0.5 * (k.xx + k.yy) / level;
  const double length = lengthOf(k.xx - k.yy, k.xy);
  const double spread = 0.5 * length / std::fabs(level);
  const double larger = mean + spread;
  const double smaller = det / (4.0 * level * level) / larger;
  if (!(smaller > 0.0) || !std::isfinite(larger)) return std::nullopt;
  const double sign = level < 0.0 ? -1.0 : 1.0;
  gx_EllipseAxes axes{center, halfWayTo(sign * (k.yy - k.xx), -sign * k.xy, length),
                      1.0 / std::sqrt(smaller), 1.0 / std::sqrt(larger)};
  if (!std::isfinite(axes.a) || !std::isfinite(center * center)) return std::nullopt;
  return gx_ImageOf(axes);
}

double gx_ConicScale(const gx_EllipseAxes& axes) {
  return 1.0 / (1.0 / (axes.a * axes.a) + 1.0 / (axes.b * axes.b));
}

gx_Conic gx_ConicOf(const gx_EllipseAxes& axes) {
  const double level = gx_ConicScale(axes);
  const double u = level / (axes.a * axes.a);
  const double v = level / (axes.b * axes.b);
  const double c = axes.major.x();
  const double s = axes.major.y();
  gx_Conic k{u * c * c + v * s * s, 2.0 * (u - v) * c * s, u * s * s + v * c * c, 0.0, 0.0, 0.0};
  k.x = -2.0 * k.xx * axes.center.x() - k.xy * axes.center.y();
  k.y = -2.0 * k.yy * axes.center.y() - k.xy * axes.center.x();
  k.one = -0.5 * (k.x * axes.center.x() + k.y * axes.center.y()) - level;
  return k;
}
