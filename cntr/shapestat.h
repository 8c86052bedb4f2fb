/// Shape statistics: moments of polygons, the ellipse of equal moments, fits, spread.
#pragma once

#include <cntr/export.h>
#include <velip/edgelet.h>
#include <velstd/ellipse.h>
#include <velstd/matrix.h>
#include <velstd/vector.h>

#include <vector>

/// The moments of a shape: signed area, centre of mass, and second moments about the centre of mass.
///
/// The matrix is not divided by the area: element (0,0) is ∫(x−x̄)² dA, (0,1) = (1,0) is
/// ∫(x−x̄)(y−ȳ) dA with a plus sign, (1,1) is ∫(y−ȳ)² dA.  The area is positive for a
/// counterclockwise outline (y up); the matrix is that of the material, the same for both
/// directions.  A default record is all zero.
class GXSHAPE_API gx_InertiaData {
 public:
  gx_InertiaData() = default;
  /// Stores the three as given, unchecked.
  gx_InertiaData(double area, const gxVector<2>& centerOfMass, const gxMatrix<2>& inertiaMatrix)
      : area_(area), centerOfMass_(centerOfMass), inertiaMatrix_(inertiaMatrix) {}

  /// Return the three as they were stored.
  double area() const { return area_; }
  const gxVector<2>& centerOfMass() const { return centerOfMass_; }
  const gxMatrix<2>& inertiaMatrix() const { return inertiaMatrix_; }

  /// Returns the moments of both shapes together, moved to their common centre of mass (the
  /// parallel-axis theorem).  Areas of the same sign add up; with areas of opposite sign the one
  /// with the negative area is taken out of the other, as a hole.
  ///  - a record of area 0 (or NaN) gives the other one unchanged
  ///  - areas that sum to at most 1e-16 in magnitude put the centre at (0, 0)
  gx_InertiaData operator+(const gx_InertiaData& other) const;

 private:
  double area_ = 0.0;
  gxVector<2> centerOfMass_;
  gxMatrix<2> inertiaMatrix_;
};

/// Returns the area of the closed polygon, 0 or more, whatever its direction: half the magnitude
/// of Σ (previous.x · current.y − current.x · previous.y), the shoelace formula, on coordinates
/// relative to the first point, so that a shape far from the origin loses no digits.
///  - fewer than 3 points: 0, whatever their coordinates
///  - a NaN coordinate: NaN
/// Cost: O(n).
GXSHAPE_API double gf_Area(const std::vector<gxVector<2>>& points);
/// The same of the edge points' positions.
GXSHAPE_API double gf_Area(const std::vector<gxEdgelet>& edgelets);

namespace gnContour {
/// Returns the centre of mass of the closed polygon: the centres of the triangles from the first
/// point to each edge, weighted with their signed areas.
///  - fewer than 3 points, or twice the area at most 1e-6 in magnitude: (0, 0)
///  - triangles of twice the area at most 1e-15 are passed over, and those with a NaN: a NaN vertex
///    leaves a finite centre that is not the shape's, where `gf_Area` is NaN; of the first vertex,
///    which all triangles share, (0, 0)
/// Cost: O(n).
GXSHAPE_API gxVector<2> centerOfMass(const std::vector<gxVector<2>>& points);
}  // namespace gnContour

/// Returns `gnContour::centerOfMass` of the points.
GXSHAPE_API gxVector<2> gf_CenterOfMass(const std::vector<gxVector<2>>& points);
/// The same of the edge points' positions.
GXSHAPE_API gxVector<2> gf_CenterOfMass(const std::vector<gxEdgelet>& edgelets);

/// Returns the moments of the closed polygon: a fan of triangles around its centre of mass, each
/// computed in a frame of its own and added up, the large ones first.  Where `gf_CenterOfMass` is (0, 0)
/// for want of area the fan starts at the first point, and small shapes have their moments all the
/// same, down to a side of some 1e-7.
///  - fewer than 3 points: an all-zero record
///  - a polygon without area: area 0 or what rounding leaves of it
///  - a NaN vertex: its two triangles are passed over, so the record is finite and not the shape's,
///    where `gf_Area` is NaN; of the first vertex, where the fan starts there, all NaN
/// Cost: O(n).
GXSHAPE_API gx_InertiaData gf_InertiaDataPolygon(const std::vector<gxVector<2>>& points);

/// Returns the ellipse that, filled, has the record's second moments: centred at its centre of
/// mass, first radius along the direction of the larger moment, rotation in (−π/2, π/2].  The
/// record's area takes no part.  From ∫u² dA = π a³ b / 4 and ∫v² dA = π a b³ / 4.
/// Throws: gxMathError::Singular unless both principal moments exceed 1e-12 in magnitude.
GXSHAPE_API gxEllipse gf_EllipseFromInertiaData(const gx_InertiaData& inertia);

/// Gives the ellipse fitted to the points and the root mean square of their orthogonal distances
/// from it.  Points that lie on no ellipse may give one several times as large as they lie apart: the
/// axes of any shape are those of `gf_EllipseFromInertiaData`.  Where no ellipse can be fitted, a
/// circle as an ellipse; where no circle can either, a default ellipse and the residual −1, the one
/// sign of failure.
/// Throws: nothing of the library's own; std::bad_alloc passes, with nothing changed.
GXSHAPE_API void gf_FitEllipse(const std::vector<gxVector<2>>& points, gxEllipse& ellipse,
                               double& residual);
/// The same of the edge points' positions.
GXSHAPE_API void gf_FitEllipse(const std::vector<gxEdgelet>& edgelets, gxEllipse& ellipse,
                               double& residual);

/// Returns the population standard deviation, 0 or more: the root of the mean squared deviation
/// from the mean.
///  - no values: NaN
GXSHAPE_API double gf_StdDev(const std::vector<double>& values);
