/// The distance of two shapes.
#pragma once

#include <cntr/export.h>
#include <gauge/locate.h>
#include <gauge/places.h>

#include <iosfwd>
#include <limits>

/// The least distance of two shapes, and where it is taken.
struct GXSHAPE_API gxShapeDistance {
  gxStatus status = gxStatus::eEmpty;
  double distance = std::numeric_limits<double>::quiet_NaN();
  /// The places on the first shape and on the second, with their regions.  Where a part of one lies within
  /// the other's material, its place is one inside, and the other has none.
  gxPlace from;
  gxPlace to;
  long fromRegion = -1;
  long toRegion = -1;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxShapeDistance& distance);

/// Returns the least distance between the points of two shapes, material included: 0 where borders share
/// a point (decided exactly) or a part of one shape lies within the other's material.
///  - one without points: `eEmpty`, NaN;  a NaN or infinite coordinate in either: `eNotFinite`, NaN
///  - an open contour has no material: what lies in a loop of it is apart from it
/// Ties: the first on the walk of the first shape, then of the second.
/// Any shape stands for its locator: `gfDistance(regionA, regionB)` makes both; where one shape is compared
/// with many, make its locator once.
/// Throws: what making a locator throws.
/// Cost: O((n + m) log) where most edges are far from the other shape.
GXSHAPE_API gxShapeDistance gfDistance(const gxLocator& first, const gxLocator& second);
