/// Tangent, normal and curvature of a sampled curve, and its corners.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/angle.h>
#include <velstd/vector.h>

#include <cstddef>
#include <iosfwd>
#include <limits>
#include <span>
#include <vector>

/// What is fitted to the points around a vertex.
enum class gxCurvatureFit : int {
  eParabola = 0,  ///< x and y as parabolas in arc length; on a circle of radius R sampled closely, an
                  ///< error of the order of h² / R³
  eCircle = 1,    ///< a circle or line; on circles, however sampled, and on lines exact
};

/// The curve at one vertex.
struct GXSHAPE_API gxBend {
  /// Of length 1, along the walk.
  gxVector<2> tangent{std::numeric_limits<double>::quiet_NaN(),
                      std::numeric_limits<double>::quiet_NaN()};
  /// The tangent turned by −π/2: outwards on an outline that goes from x towards y.
  gxVector<2> normal{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  /// One over the radius, positive where the curve turns from x towards y; 0 on a line.
  double curvature = std::numeric_limits<double>::quiet_NaN();
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxBend& bend);

/// One answer for every point.
struct GXSHAPE_API gxBends {
  gxStatus status = gxStatus::eOk;
  std::vector<gxBend> at;  ///< in the order of the points
};
/// Prints how many there are.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxBends& bends);

/// Fits a curve to the points within `window` of arc length on either side of every vertex, with weights
/// that fall to 0 at its ends.  Where more than 256 points are within it on a side, every second, third …
/// takes part.  A poly-line has fewer points at its ends.
///  - fewer than 3 distinct points in a window: NaN there
///  - points that turn back so that no single curve goes through them: NaN there
///  - no points: `eEmpty`; a NaN or infinite coordinate: `eNotFinite`; a window that is not above 0 and
///    finite: `eBadArgument`; no answers
GXSHAPE_API gxBends gfCurvature(std::span<const gxVector<2>> points, bool closed, double window,
                                gxCurvatureFit fit = gxCurvatureFit::eParabola);
GXSHAPE_API gxBends gfCurvature(const gxContour& contour, double window,
                                gxCurvatureFit fit = gxCurvatureFit::eParabola);

/// A corner: a vertex, and by how much the walk turns there, in (−π, π], positive from x towards y.
struct GXSHAPE_API gxCorner {
  std::size_t vertex = 0;  ///< its index
  gxRadian turn;           ///< by how much
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxCorner& corner);

/// The corners in the order of the vertices.
struct GXSHAPE_API gxCorners {
  gxStatus status = gxStatus::eOk;
  std::vector<gxCorner> corners;  ///< in the order of the vertices
};
/// Prints how many there are.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxCorners& corners);

/// Returns the vertices at which the line fitted to the curve over `window` of arc length before, and the
/// one over as much after it, differ by `least` or more, and at which this turn is the greatest of all
/// vertices less than a window away; of equal ones, the lowest index.  The ends of a poly-line are none.
///  - no points: `eEmpty`; a NaN or infinite coordinate: `eNotFinite`; a window that is not above 0 and
///    finite, or a least turn that is not above 0: `eBadArgument`; no corners
GXSHAPE_API gxCorners gfCorners(std::span<const gxVector<2>> points, bool closed, double window,
                                const gxRadian& least);
GXSHAPE_API gxCorners gfCorners(const gxContour& contour, double window, const gxRadian& least);
