// The ways between an ellipse as image of the unit circle, by its axes, and as a conic.
#include <velstd/internal/ellipse_forms.h>

#include <cmath>
#include <utility>

gx_EllipseAxes gx_AxesOf(const gx_EllipseImage& image) {
  const double mean = 0.5 * (image.xx + image.yy);
  const double spread = std::hypot(0.5 * (image.xx - image.yy), image.xy);
  gx_EllipseAxes axes;
  axes.center = image.center;
  // A multiple of the unit matrix has every direction for its axis; atan2(0, 0) is 0.
  axes.major = gxVector<2>(1.0, gxRadian(0.5 * std::atan2(2.0 * image.xy, image.xx - image.yy)));
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
  const double spread = 0.5 * std::hypot(k.xx - k.yy, k.xy) / std::fabs(level);
  const double larger = mean + spread;
  const double smaller = det / (4.0 * level * level) / larger;
  if (!(smaller > 0.0) || !std::isfinite(larger)) return std::nullopt;
  const double sign = level < 0.0 ? -1.0 : 1.0;
  const gxRadian major(0.5 * std::atan2(-sign * k.xy, sign * (k.yy - k.xx)));
  gx_EllipseAxes axes{center, gxVector<2>(1.0, major), 1.0 / std::sqrt(smaller),
                      1.0 / std::sqrt(larger)};
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
