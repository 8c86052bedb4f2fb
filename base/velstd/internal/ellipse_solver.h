/// The ellipse nearest to points in a frame, without regard to outliers.
#pragma once

#include <velstd/internal/ellipse_forms.h>
#include <velstd/internal/normal_equations.h>
#include <velstd/vector.h>

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <vector>

/// Fits ellipses to points in a frame.  With `upright` the axes are held along x and y.
class gx_EllipseSolver {
 public:
  using Shape = gx_EllipseImage;

  /// A shape and the sum of the squared distances of the points that it was fitted to.
  struct Fitted {
    Shape shape;
    double cost = 0.0;
  };

  /// So many points determine an ellipse.
  static constexpr std::size_t kFewest = 5;

  gx_EllipseSolver(bool upright, double rounding) : upright_(upright), rounding_(rounding) {}

  /// Returns the ellipse of the least sum of squared distances (see the source for the points that
  /// leave its size open), never one with a larger sum than the best circle; nothing where the
  /// points do not determine an ellipse.
  std::optional<Fitted> fit(const std::vector<gxVector<2>>& points) const;
  /// Returns an ellipse near it, faster.
  std::optional<Shape> roughFit(const std::vector<gxVector<2>>& points) const;

  /// Writes the distance of each point to the ellipse, 0 or more.
  static void distances(const Shape& shape, const std::vector<gxVector<2>>& points,
                        std::vector<double>& out);

 private:
  using Points = std::vector<gxVector<2>>;

  // Refines a start; where it is on its way to a minimum that is known, not to the end.
  Fitted refine(const Shape& start, const Points& points, double preference, const gx_Refinement& how,
                const std::optional<Fitted>& known) const;
  std::optional<Fitted> best(std::initializer_list<std::optional<Shape>> starts, const Points& points,
                             double preference, const gx_Refinement& how,
                             const std::optional<Fitted>& known) const;

  bool upright_;
  double rounding_;
};
