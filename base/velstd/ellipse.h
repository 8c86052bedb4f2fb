/// Ellipses.
#pragma once

#include <velstd/angle.h>
#include <velstd/circle.h>
#include <velstd/export.h>
#include <velstd/vector.h>

/// An ellipse: centre, two semi-axes and the direction of the first.  The default is at (0, 0)
/// with both radii 0.
///
/// A plain value; the numbers are kept as given.  In particular the first semi-axis need not be the longer
/// one, and the rotation is not brought into a range: who makes the ellipse says what is promised
/// (`gfEllipseFit` and `gf_EllipseFromInertiaData` put the longer axis first, with a rotation in
/// (−π/2, π/2]).  One and the same curve can therefore be written as unequal values.
class VELSTD_API gxEllipse {
 public:
  /// The numbers that describe an ellipse.
  struct gxEllipseGeom {
    /// Where it lies.
    gxVector<2> center;
    gxVector<2> radii;       ///< semi-axis along `rotation`, then the one across it
    gxRadian rotation;       ///< direction of the first axis, from the x axis towards the y axis
    bool clockwise = false;  ///< walked from the y axis towards the x axis; read by no operation here
    bool inverted = false;   ///< its outside is meant; read by no operation here
  };

  /// Makes the ellipse of no size at (0, 0).
  gxEllipse() = default;
  /// Builds the circle as an ellipse with equal radii and rotation 0.
  explicit gxEllipse(const gxCircle& circle)
      : geom_{circle.center(), {circle.radius(), circle.radius()}, gxRadian(0.0), false, false} {}
  /// Makes an ellipse; the numbers are kept as given.
  explicit gxEllipse(const gxEllipseGeom& geom) : geom_(geom) {}

  /// Returns the numbers.
  const gxEllipseGeom& geom() const { return geom_; }

  /// Returns the point of the ellipse at parameter `t`: centre + r0 cos t along the first axis
  /// + r1 sin t along the second.
  gxVector<2> point(const gxRadian& t) const;

  /// Is true when all numbers and both flags are equal, exactly: not when two ellipses are the same curve.
  friend bool operator==(const gxEllipse& a, const gxEllipse& b) {
    return a.geom_.center == b.geom_.center && a.geom_.radii == b.geom_.radii &&
           a.geom_.rotation == b.geom_.rotation && a.geom_.clockwise == b.geom_.clockwise &&
           a.geom_.inverted == b.geom_.inverted;
  }

 private:
  gxEllipseGeom geom_;
};
