/// Ellipses.
#pragma once

#include <velstd/angle.h>
#include <velstd/circle.h>
#include <velstd/export.h>
#include <velstd/vector.h>

/// An ellipse: centre, two semi-axes and the direction of the first.  The default is at (0, 0)
/// with both radii 0.
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

  /// Compares the numbers and the flags.
  friend bool operator==(const gxEllipse& a, const gxEllipse& b) {
    return a.geom_.center == b.geom_.center && a.geom_.radii == b.geom_.radii &&
           a.geom_.rotation == b.geom_.rotation && a.geom_.clockwise == b.geom_.clockwise &&
           a.geom_.inverted == b.geom_.inverted;
  }

 private:
  gxEllipseGeom geom_;
};
