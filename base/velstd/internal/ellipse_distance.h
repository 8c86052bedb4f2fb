/// The point of an ellipse nearest to a given point.
#pragma once

/// The nearest point of an ellipse with its axes along x and y.
struct gx_EllipseFoot {
  double cosine = 1.0;  ///< the nearest point is (a cosine, b sine), cosine² + sine² = 1
  double sine = 0.0;
};

/// Finds the point of the ellipse x²/a² + y²/b² = 1 nearest to (x, y), to rounding.
///
/// Expects a >= b >= 1e-12 a and numbers that neither overflow nor vanish when squared.  Where
/// several points are equally near (points of the major axis near the centre), the one with y >= 0
/// is taken; a point in the centre of a circle gives (a, 0) or (0, b).
/// Cost: 2 to 4 rounds of three divisions for points near the ellipse, some more elsewhere.
gx_EllipseFoot gx_FootOnEllipse(double a, double b, double x, double y);
