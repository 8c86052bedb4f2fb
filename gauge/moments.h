/// The moments of shapes with holes.
#pragma once

#include <cntr/export.h>
#include <cntr/regionst.h>
#include <gauge/places.h>
#include <velstd/ellipse.h>
#include <velstd/matrix.h>
#include <velstd/vector.h>

#include <array>
#include <iosfwd>
#include <limits>
#include <span>

/// The moments of a shape to the third order, and what follows from them.
struct GXSHAPE_API gxMoments {
  static constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

  gxStatus status = gxStatus::eEmpty;
  /// ∫ dA, holes taken away, islands in them added.
  double area = 0.0;
  /// The centre of mass.
  gxVector<2> centre{kNaN, kNaN};

  /// Raw moments ∫ x^p y^q dA about the origin of the coordinates.
  double raw10 = 0.0, raw01 = 0.0;
  double raw20 = 0.0, raw11 = 0.0, raw02 = 0.0;
  double raw30 = 0.0, raw21 = 0.0, raw12 = 0.0, raw03 = 0.0;
  /// Central moments μ_pq = ∫ (x − x̄)^p (y − ȳ)^q dA; those of the first order are 0.
  double moment20 = 0.0, moment11 = 0.0, moment02 = 0.0;
  double moment30 = 0.0, moment21 = 0.0, moment12 = 0.0, moment03 = 0.0;
  /// Normalised moments η_pq = μ_pq / area^(1 + (p + q) / 2), which do not change with the size.
  double eta20 = kNaN, eta11 = kNaN, eta02 = kNaN;
  double eta30 = kNaN, eta21 = kNaN, eta12 = kNaN, eta03 = kNaN;
  /// The seven invariants of M.-K. Hu, "Visual pattern recognition by moment invariants", 1962; the
  /// seventh changes its sign when the shape is mirrored.
  std::array<double, 7> hu{kNaN, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN};

  /// The principal moments, ∫ u² dA along the axis `ellipseAngle` and across it, the larger first.
  double principal1 = 0.0, principal2 = 0.0;
  /// The ellipse with the same moments, filled: semi-axes 2 √(principal / area), the longer first, and the
  /// angle of the longer one in (−π/2, π/2].
  double ellipseA = kNaN, ellipseB = kNaN, ellipseAngle = kNaN;

  /// Returns (μ20, μ11; μ11, μ02), as `gx_InertiaData` has it.
  gxMatrix<2> inertia() const { return {moment20, moment11, moment11, moment02}; }
  /// Returns the ellipse with the same moments.  Its numbers are NaN where there is none.
  gxEllipse ellipse() const;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxMoments& moments);

/// Returns the moments of the material: outlines count as positive whichever way they go around, holes as
/// negative, islands in holes as positive again.  This is the way to the moments of a region with holes,
/// which `gxRegion::inertiaMatrix` refuses.
///
/// Every ring is summed about its own first point and moved by differences of centres, so that a shape at
/// 1e6 has the same central moments as one at 0, to rounding of its coordinates; raw moments come last.
///  - no points: `eEmpty`, area and moments 0, the rest NaN
///  - a NaN or infinite coordinate: `eNotFinite`, all NaN
///  - an open contour: `eNotClosed`, all NaN
///  - no area (fewer than three distinct points, all on one line, or turns that cancel each other):
///    `eFlat`, area and moments 0, η, φ and ellipse NaN, the centre that of the borders by length (of
///    equal points the point)
///  - holes that take away more than there is: `eNegative`, the numbers as they come
///  - axes equal within 1e-13: angle 0
///  - where a power of the size leaves the range of doubles: infinities and zeros in the raw and central
///    moments; η, φ and ellipse are right all the same
/// An outline that crosses itself counts with the area that the turns enclose, signed, its sum as positive.
/// Regions of a set that overlap count twice, as in `gxRegionSet::area`.
/// Throws: gxBadPointer for a null handle; BadParams "holes nest too deeply".
/// Cost: O(n), one pass.  (C. Steger, "On the calculation of moments of polygons", 1996.)
GXSHAPE_API gxMoments gfMoments(std::span<const gxVector<2>> outline);
GXSHAPE_API gxMoments gfMoments(const gxContour& contour);
GXSHAPE_API gxMoments gfMoments(const gxRegion& region);
GXSHAPE_API gxMoments gfMoments(const gxRegionSet& set);
