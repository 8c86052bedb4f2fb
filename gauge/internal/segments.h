/// Distances of segments, with the places where they are taken.
#pragma once

#include <cntr/export.h>
#include <velstd/vector.h>

#include <cmath>

/// The nearest point of a segment: how far along it, from 0 to 1, the point, and its distance.
struct gx_Foot {
  double t = 0.0;
  gxVector<2> point;
  double distance = 0.0;
};

/// Returns the point of the segment ab nearest to p; of a segment without length its point with t = 0.
/// Numbers are of ordinary size: their squares do not overflow.
GXSHAPE_API gx_Foot gx_footOn(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& p);

/// Returns the distance of p from the segment ab, with the bits of `gx_footOn`.
GXSHAPE_API double gx_distanceFrom(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& p);

/// Returns the length of a vector of ordinary size, with the bits of `len()`, and without a call.
inline double gx_lengthOf(const gxVector<2>& v) {
  const double square = v * v;
  return square > 1e-280 && square < 1e280 ? std::sqrt(square) : v.len();
}

/// The points of two segments nearest to each other.
struct gx_Gap {
  double s = 0.0;  // along the first
  double t = 0.0;  // along the second
  gxVector<2> p;
  gxVector<2> q;
  double distance = 0.0;
};

/// Returns the gap between the segments ab and cd; 0 exactly where they share a point, which is decided
/// exactly.  Of parallel ones the first pair of an end and its foot: a, b, c, d.
GXSHAPE_API gx_Gap gx_gapBetween(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                                 const gxVector<2>& d);

/// Tells, exactly, whether the segments share a point.
GXSHAPE_API bool gx_segmentsMeet(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                                 const gxVector<2>& d);
