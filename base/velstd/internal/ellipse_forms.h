/// Three descriptions of an ellipse, and the ways between them.
#pragma once

#include <velstd/vector.h>

#include <optional>

/// An ellipse as the image of the unit circle: centre + M w, M symmetric.  These five numbers change
/// smoothly through circles, where a rotation would jump.
struct gx_EllipseImage {
  gxVector<2> center;
  double xx = 1.0;  ///< the elements of M
  double xy = 0.0;
  double yy = 1.0;
};

/// An ellipse by its axes.
struct gx_EllipseAxes {
  gxVector<2> center;
  gxVector<2> major{1.0, 0.0};  ///< direction of the longer axis, of length 1
  double a = 1.0;               ///< the longer semi-axis
  double b = 1.0;               ///< the shorter semi-axis
};

/// A conic: the points where xx x² + xy x y + yy y² + x x + y y + one = 0.
struct gx_Conic {
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  double x = 0.0;
  double y = 0.0;
  double one = 0.0;
};

/// Returns the axes.  A negative axis of M is the same ellipse as its opposite; a multiple of the unit
/// matrix, which has every direction for its axis, gets the x direction.
gx_EllipseAxes gx_AxesOf(const gx_EllipseImage& image);

gx_EllipseImage gx_ImageOf(const gx_EllipseAxes& axes);

/// Returns nothing where the conic is no ellipse.
std::optional<gx_EllipseImage> gx_ImageOf(const gx_Conic& conic);

/// Returns the conic scaled so that xx + yy is 1.
gx_Conic gx_ConicOf(const gx_EllipseAxes& axes);

/// Returns the factor between that conic and |M⁻¹ (p − centre)|² − 1.
double gx_ConicScale(const gx_EllipseAxes& axes);
