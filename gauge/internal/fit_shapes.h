/// A line, a circle, an ellipse as orthogonal fits see them: signed distances and their derivatives.
#pragma once

#include <cntr/export.h>
#include <velstd/vector.h>

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

/// A line through a point; unknowns: offset across it, turn about the point.
struct GXSHAPE_API gx_FitLine {
  static constexpr std::size_t kUnknowns = 2;
  static constexpr std::size_t kSample = 2;

  gxVector<2> point;
  gxVector<2> along{1.0, 0.0};

  double distance(const gxVector<2>& p) const { return gf_Cross(along, p - point); }
  std::array<double, 2> row(const gxVector<2>& p) const { return {-1.0, -(along * (p - point))}; }
  std::optional<gx_FitLine> moved(const std::array<double, 2>& step) const;
  static std::optional<gx_FitLine> through(const gxVector<2>* p);
  static std::optional<gx_FitLine> leastSquares(const std::vector<gxVector<2>>& points);
};

/// A circle; unknowns: centre x, y, radius.  Distances are positive outside.
struct GXSHAPE_API gx_FitCircle {
  static constexpr std::size_t kUnknowns = 3;
  static constexpr std::size_t kSample = 3;

  gxVector<2> centre;
  double radius = 0.0;

  double distance(const gxVector<2>& p) const { return (p - centre).len() - radius; }
  std::array<double, 3> row(const gxVector<2>& p) const;
  std::optional<gx_FitCircle> moved(const std::array<double, 3>& step) const;
  static std::optional<gx_FitCircle> through(const gxVector<2>* p);
  static std::optional<gx_FitCircle> leastSquares(const std::vector<gxVector<2>>& points);
};

/// An ellipse with a ≥ b; unknowns: centre x, y, a, b, angle.  Distances are positive outside.
struct GXSHAPE_API gx_FitEllipse {
  static constexpr std::size_t kUnknowns = 5;
  static constexpr std::size_t kSample = 5;

  gxVector<2> centre;
  gxVector<2> along{1.0, 0.0};
  double a = 0.0;
  double b = 0.0;

  double distance(const gxVector<2>& p) const;
  std::array<double, 5> row(const gxVector<2>& p) const;
  std::optional<gx_FitEllipse> moved(const std::array<double, 5>& step) const;
  static std::optional<gx_FitEllipse> through(const gxVector<2>* p);
  static std::optional<gx_FitEllipse> leastSquares(const std::vector<gxVector<2>>& points);

 private:
  gxVector<2> inside_(const gxVector<2>& p) const;
  gxVector<2> foot_(const gxVector<2>& q) const;
};

/// Refines a shape to the least sum of weighted squared distances by Gauss and Newton's steps, halved
/// where they do not lower it.  Returns nothing where the points leave an unknown open.
/// `covariance`, if given, gets the inverse of the normal equations.
template <class Shape>
std::optional<Shape> gx_refined(
    const Shape& start, std::span<const gxVector<2>> points, std::span<const double> weights, int most,
    std::array<std::array<double, Shape::kUnknowns>, Shape::kUnknowns>* covariance);
extern template GXSHAPE_API std::optional<gx_FitLine> gx_refined(const gx_FitLine&,
                                                                 std::span<const gxVector<2>>,
                                                                 std::span<const double>, int,
                                                                 std::array<std::array<double, 2>, 2>*);
extern template GXSHAPE_API std::optional<gx_FitCircle> gx_refined(
    const gx_FitCircle&, std::span<const gxVector<2>>, std::span<const double>, int,
    std::array<std::array<double, 3>, 3>*);
extern template GXSHAPE_API std::optional<gx_FitEllipse> gx_refined(
    const gx_FitEllipse&, std::span<const gxVector<2>>, std::span<const double>, int,
    std::array<std::array<double, 5>, 5>*);
