/// Boolean operations on regions: union, intersection, difference, and cutting.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <overlay/options.h>
#include <overlay/shapes.h>
#include <velstd/rect.h>

#include <vector>

/// Return the regions that both shapes hold together (union), that both hold (intersection), that `a` holds
/// and `b` does not (difference), that exactly one holds (symmetric difference).
///
/// What a shape is, holes and islands included, stands at `gxShapes`; the rule of `options` says what an
/// outline encloses.  The results are valid, in order, and independent of how the operands are said, as
/// those of `gfRepair`, which also says how crossings are rounded.
///  - an operand without regions holds nothing
/// Throws, cost: as `gfRepair`.
GXSHAPE_API gxRegionSet gfUnion(const gxShapes& a, const gxShapes& b,
                                const gxOverlayOptions& options = {});
GXSHAPE_API gxRegionSet gfIntersection(const gxShapes& a, const gxShapes& b,
                                       const gxOverlayOptions& options = {});
GXSHAPE_API gxRegionSet gfDifference(const gxShapes& a, const gxShapes& b,
                                     const gxOverlayOptions& options = {});
GXSHAPE_API gxRegionSet gfSymmetricDifference(const gxShapes& a, const gxShapes& b,
                                              const gxOverlayOptions& options = {});

/// Returns the union of any number of regions and sets, in one pass.
///  - none: an empty set
GXSHAPE_API gxRegionSet gfUnion(const gxShapes& shapes, const gxOverlayOptions& options = {});
/// Returns what all shapes hold, in one pass.
///  - none: an empty set
GXSHAPE_API gxRegionSet gfIntersection(const std::vector<gxShapes>& shapes,
                                       const gxOverlayOptions& options = {});

/// Returns the part of the shape in the rectangle.
///  - a size that is negative or NaN: an empty set
GXSHAPE_API gxRegionSet gfClip(const gxShapes& shapes, const gxRect& window,
                               const gxOverlayOptions& options = {});
/// Returns the part of the shape on the left of the line from `from` to `to`, seen in that direction.  The
/// line is as good as its ends rounded far outside of the shape are; upright and level ones are exact.
/// Throws: BadParams where the points coincide or are not finite, and for coordinates above 1e300.
GXSHAPE_API gxRegionSet gfClipLeft(const gxShapes& shapes, const gxVector<2>& from,
                                   const gxVector<2>& to, const gxOverlayOptions& options = {});

/// Returns the pieces into which the open contour cuts the shape: of its way through the shape, what leads
/// from border to border or encloses something counts, dead ends do not.  A closed contour cuts along its
/// closing edge too.
GXSHAPE_API gxRegionSet gfSplit(const gxShapes& shapes, const gxContour& knife,
                                const gxOverlayOptions& options = {});

/// The parts of a contour, in the order along it, each open.
struct gxCutContour {
  std::vector<gxContour> inside;
  std::vector<gxContour> outside;
  std::vector<gxContour> border;  ///< along the border of the shape
};

/// Returns the parts of the contour inside of the shape, outside of it and along its border.  A part begins
/// and ends where the contour meets the border and changes sides, or ends; touching the border does not cut.
/// Of a closed contour the closing edge is the last; one that stays on one side comes back closed.
/// Throws: as `gfRepair`.
GXSHAPE_API gxCutContour gfCut(const gxContour& contour, const gxShapes& shapes,
                               const gxOverlayOptions& options = {});

/// Returns the regions that an outline encloses by rule, less what its holes do: for holes as tracers give
/// them, which may touch, cross or overlap the outline and each other, in any direction.
/// Throws: as `gfRepair`.
GXSHAPE_API gxRegionSet gfRegionsOf(const gxContour& outline, const std::vector<gxContour>& holes,
                                    const gxOverlayOptions& options = {});
