/// The circle nearest to points in a frame, without regard to outliers.
#pragma once

#include <velstd/vector.h>

#include <cmath>
#include <cstddef>
#include <optional>
#include <vector>

/// A circle given by one of its points, the outward or inward direction there and the curvature, so
/// that flat arcs are described as well as full circles.
struct gx_CircleArc {
  gxVector<2> origin;  ///< a point of the circle
  gxVector<2> normal;  ///< of length 1; the centre is at origin − normal / (2 bend)
  double bend = 0.0;   ///< half the curvature; negative where the normal points inwards

  double radius() const { return 0.5 / std::fabs(bend); }
  gxVector<2> center() const { return origin - normal / (2.0 * bend); }

  /// Returns the distance of a point, positive on the side that the normal points to.
  double distance(const gxVector<2>& point) const {
    const gxVector<2> d = point - origin;
    const double power = bend * (d * d) + normal * d;
    return 2.0 * power / (1.0 + std::sqrt(std::fmax(0.0, 1.0 + 4.0 * bend * power)));
  }
};

/// Fits circles to points in a frame; `radius` holds the radius where it is given.
class gx_CircleSolver {
 public:
  using Shape = gx_CircleArc;

  /// A shape and the sum of the squared distances of the points that it was fitted to.
  struct Fitted {
    Shape shape;
    double cost = 0.0;
  };

  /// So many points determine a circle.
  static constexpr std::size_t kFewest = 3;

  explicit gx_CircleSolver(std::optional<double> radius, double rounding)
      : radius_(radius), rounding_(rounding) {}

  /// Returns the circle of the least sum of squared distances, nothing where the points do not
  /// determine one.
  std::optional<Fitted> fit(const std::vector<gxVector<2>>& points) const;
  /// Returns a circle near it, faster.
  std::optional<Shape> roughFit(const std::vector<gxVector<2>>& points) const;

  /// Writes the distance of each point to the circle, 0 or more.
  static void distances(const Shape& shape, const std::vector<gxVector<2>>& points,
                        std::vector<double>& out);

 private:
  bool determined(const std::vector<gxVector<2>>& points) const;
  std::vector<Shape> starts(const std::vector<gxVector<2>>& points) const;

  std::optional<double> radius_;
  double rounding_;
};
