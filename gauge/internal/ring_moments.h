/// The moments of a single ring.
#pragma once

#include <cntr/export.h>
#include <gauge/internal/frame.h>
#include <gauge/internal/rings.h>
#include <velstd/vector.h>

#include <array>
#include <span>
#include <vector>

/// Area, centre and central moments of material, in the scale of a frame; the centre seen from some point
/// that all of a shape have in common.
struct gx_MomentSums {
  double area = 0.0;
  gxVector<2> centre;
  double m20 = 0.0, m11 = 0.0, m02 = 0.0;
  double m30 = 0.0, m21 = 0.0, m12 = 0.0, m03 = 0.0;

  /// Moves the moments, central so far, to be about another point; −d is where that lies from the centre.
  void shift(const gxVector<2>& d);
};

/// Returns the moments of a closed ring as if it went around counterclockwise, the third order only where
/// asked for; the centre seen from `from`, a point in the coordinates of the ring.
GXSHAPE_API gx_MomentSums gx_ringMoments(std::span<const gxVector<2>> points, const gx_Frame& frame,
                                         const gxVector<2>& from, bool thirdOrder);

/// Returns the same from the sums over its edges: m00, m10, m01, m20, m11, m02, m30, m21, m12, m03 about its
/// first point, each times 2, 6, 6, 24, 24, 24, 20, 60, 60, 20; `first` is where that point lies.
GXSHAPE_API gx_MomentSums gx_ringMomentsFrom(const std::array<double, 10>& sums,
                                             const gxVector<2>& first, bool thirdOrder);

/// Returns the moments of rings together, odd depths taken away, about their common centre.
GXSHAPE_API gx_MomentSums gx_momentsOf(std::span<const gx_Ring> rings, const gx_Frame& frame,
                                       const gxVector<2>& from, bool thirdOrder);
