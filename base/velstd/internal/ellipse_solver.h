/// The ellipse nearest to points in a frame, without regard to outliers.
#pragma once

#include <velstd/vector.h>

#include <cstddef>
#include <optional>
#include <vector>

/// An ellipse as the image of the unit circle: centre + M w, M symmetric.  Unlike radii and rotation,
/// these five numbers change smoothly through circles.
struct gx_EllipseImage {
  gxVector<2> center;
  double xx = 1.0;  ///< the elements of M
  double xy = 0.0;
  double yy = 1.0;
};

/// The same ellipse by its axes.
struct gx_EllipseAxes {
  gxVector<2> center;
  gxVector<2> major;  ///< direction of the longer axis, of length 1
  double a = 1.0;     ///< the longer semi-axis
  double b = 1.0;     ///< the shorter semi-axis
};

gx_EllipseAxes gx_AxesOf(const gx_EllipseImage& image);

/// Fits ellipses to points in a frame.  With `upright` the axes are held along x and y.
class gx_EllipseSolver {
 public:
  using Shape = gx_EllipseImage;

  /// So many points determine an ellipse.
  static constexpr std::size_t kFewest = 5;

  gx_EllipseSolver(bool upright, double rounding) : upright_(upright), rounding_(rounding) {}

  /// Returns the ellipse of the least sum of squared distances, nothing where the points do not
  /// determine one.
  std::optional<Shape> fit(const std::vector<gxVector<2>>& points) const;
  /// Returns an ellipse near it, faster.
  std::optional<Shape> roughFit(const std::vector<gxVector<2>>& points) const;

  /// Refines a given ellipse.
  Shape refine(const Shape& start, const std::vector<gxVector<2>>& points) const;

  /// Writes the distance of each point to the ellipse, 0 or more.
  static void distances(const Shape& shape, const std::vector<gxVector<2>>& points,
                        std::vector<double>& out);

 private:
  bool upright_;
  double rounding_;
};
