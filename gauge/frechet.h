/// The Fréchet distance of two poly-lines.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <iosfwd>
#include <limits>
#include <span>

/// The Fréchet distance, and what is proved about it.
struct GXSHAPE_API gxFrechet {
  gxStatus status = gxStatus::eOk;
  double frechet = std::numeric_limits<double>::quiet_NaN();  ///< in the unit of the points, 0 or more
  double lower = std::numeric_limits<double>::quiet_NaN();    ///< it is not less than this
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxFrechet& result);

/// Returns the Fréchet distance of two poly-lines: the shortest leash with which one can walk along the
/// one and a dog along the other, both from start to end, at any pace, never turning back.  It counts
/// every point of the edges, not the vertices alone.  A closed contour counts as the poly-line from point
/// 0 around to point 0 again.
///  - one point: the greatest distance of the other poly-line from it
///  - no points: `eEmpty`, NaN;  a NaN or infinite coordinate: `eNotFinite`, NaN
///  - more than 2·10^7 pairs of edges: `eCapped`; `frechet` is then the leash of one walk, never too short,
///    and `lower` never too long.  (Elsewhere both are equal but for rounding.)
/// Error: some units in the last place of the distance and of the size of both together.
/// Cost: some 55 decisions of O(n m) each, about 10 ns a pair of edges.
/// Source: H. Alt and M. Godau, "Computing the Fréchet distance between two polygonal curves", 1995.
GXSHAPE_API gxFrechet gfFrechet(std::span<const gxVector<2>> a, std::span<const gxVector<2>> b);
GXSHAPE_API gxFrechet gfFrechet(const gxContour& a, const gxContour& b);
