/// From and to Eigen: points as matrices in the same memory, transforms as values.
#pragma once

#include <cntr/contour.h>
#include <velstd/matrix.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <Eigen/Core>
#include <Eigen/Geometry>

#include <cstddef>
#include <vector>

/// Points as the columns of a matrix of doubles, x above y, in the memory of the points.
using gxEigenPoints = Eigen::Map<Eigen::Matrix2Xd>;
/// The same for reading.
using gxEigenPoints_const = Eigen::Map<const Eigen::Matrix2Xd>;

/// Return the points as a matrix of 2 rows and a column a point.  Nothing is copied: the matrix is used while
/// the points stay where they are, and what is written to it is written to them.
///
///   Eigen::Vector2d centre = gfEigenPoints(contour.points()).rowwise().mean();
inline gxEigenPoints gfEigenPoints(std::vector<gxVector<2>>& points) {
  return {reinterpret_cast<double*>(points.data()), 2, static_cast<Eigen::Index>(points.size())};
}
inline gxEigenPoints_const gfEigenPoints(const std::vector<gxVector<2>>& points) {
  return {reinterpret_cast<const double*>(points.data()), 2, static_cast<Eigen::Index>(points.size())};
}
inline gxEigenPoints_const gfEigenPoints(const gxContour& contour) {
  return gfEigenPoints(contour.points());
}
/// A view of points that are about to go would refer to nothing.
inline gxEigenPoints_const gfEigenPoints(std::vector<gxVector<2>>&&) = delete;
inline gxEigenPoints_const gfEigenPoints(gxContour&&) = delete;

/// Returns the columns of a matrix, or of an expression, as points.
template <class Derived>
std::vector<gxVector<2>> gfPointsFromEigen(const Eigen::MatrixBase<Derived>& matrix) {
  static_assert(Derived::RowsAtCompileTime == 2, "points are the columns of a matrix of 2 rows");
  const auto& values = matrix.derived().eval();
  std::vector<gxVector<2>> points;
  points.reserve(static_cast<std::size_t>(values.cols()));
  for (Eigen::Index i = 0; i < values.cols(); ++i) {
    points.emplace_back(static_cast<double>(values(0, i)), static_cast<double>(values(1, i)));
  }
  return points;
}

/// Convert a vector, a 2 × 2 matrix, an affine transform: number by number, exactly.
inline Eigen::Vector2d gfToEigen(const gxVector<2>& vector) {
  return {vector.x(), vector.y()};
}
inline gxVector<2> gfFromEigen(const Eigen::Vector2d& vector) {
  return {vector.x(), vector.y()};
}

inline Eigen::Matrix2d gfToEigen(const gxMatrix<2>& matrix) {
  Eigen::Matrix2d result;
  result << matrix.m00(), matrix.m01(), matrix.m10(), matrix.m11();
  return result;
}
inline gxMatrix<2> gfFromEigen(const Eigen::Matrix2d& matrix) {
  return {matrix(0, 0), matrix(0, 1), matrix(1, 0), matrix(1, 1)};
}

inline Eigen::Affine2d gfToEigen(const gxXform<2>& xform) {
  Eigen::Affine2d result;
  result.linear() = gfToEigen(xform.matrix());
  result.translation() = gfToEigen(xform.translation());
  result.makeAffine();
  return result;
}
/// The same of the other forms of an affine transform, isometries too.
template <int Mode, int Options>
gxXform<2> gfFromEigen(const Eigen::Transform<double, 2, Mode, Options>& transform) {
  static_assert(Mode != Eigen::Projective, "a projective transform is not affine");
  const Eigen::Matrix2d linear = transform.linear();
  const Eigen::Vector2d translation = transform.translation();
  return {gfFromEigen(linear), gfFromEigen(translation)};
}
