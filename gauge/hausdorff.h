/// The Hausdorff distance of two shapes' borders, exact for poly-lines.
#pragma once

#include <cntr/export.h>
#include <gauge/borders.h>
#include <gauge/places.h>

#include <iosfwd>
#include <limits>

/// The distance of one shape from another: how far the point of the first lies from the second that lies
/// farthest from it.
struct GXSHAPE_API gxDirectedHausdorff {
  gxStatus status = gxStatus::eOk;
  double distance = std::numeric_limits<double>::quiet_NaN();  ///< in the unit of the points, 0 or more
  gxPlace from;                                                ///< that point
  gxPlace to;                                                  ///< the nearest one of the other shape
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxDirectedHausdorff& result);

/// Both directions, and the larger of them.
struct GXSHAPE_API gxHausdorff {
  gxStatus status = gxStatus::eOk;
  /// The larger of both distances, in the unit of the points.
  double hausdorff = std::numeric_limits<double>::quiet_NaN();
  double hausdorffForward = std::numeric_limits<double>::quiet_NaN();  ///< of the shape from the golden
  double hausdorffBack = std::numeric_limits<double>::quiet_NaN();     ///< of the golden from the shape
  /// Both directions, with their places.
  gxDirectedHausdorff forward;
  gxDirectedHausdorff back;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxHausdorff& result);

/// Returns the greatest distance of a point of the borders of `shape` from the borders of `golden`: over
/// all points of the edges, not the vertices alone.  Edges of no length count as points, rings without
/// points not at all.  Several places equally far within a few roundings: the first along the walk over
/// the edges.
///  - one of them has no points: `eEmpty`, NaN, no places
///  - a coordinate is NaN or infinite: `eNotFinite`, NaN, no places
/// Error: some units in the last place of the distance, and of the size of both shapes together.
/// Cost: nearly O((n + m) log m); what is farther than the greatest distance so far is left out.
/// Source: H. Alt, B. Behrends and J. Blömer, "Approximate matching of polygonal shapes", 1995, for the
/// fact that the maximum lies at a vertex or where two edges are equally near.
GXSHAPE_API gxDirectedHausdorff gfDirectedHausdorff(const gxBorders& shape, const gxBorders& golden);

/// Returns both directed distances and the larger one.  Degenerate shapes, cost: as above.
GXSHAPE_API gxHausdorff gfHausdorff(const gxBorders& shape, const gxBorders& golden);
