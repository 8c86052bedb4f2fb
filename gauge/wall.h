/// The thinnest place of a shape's material.
#pragma once

#include <cntr/export.h>
#include <cntr/regionst.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <iosfwd>
#include <limits>
#include <span>

/// A wall: two places of the border that face each other across material.
struct GXSHAPE_API gxWall {
  gxStatus status = gxStatus::eEmpty;
  /// The distance of the two places; +∞ where there is no wall.
  double wall = std::numeric_limits<double>::infinity();
  gxPlace from;
  gxPlace to;
  /// Which region of a set it belongs to.
  long region = -1;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxWall& wall);

/// Returns the smallest wall of an outline or region, or of any region of a set: the least distance of two places of
/// the border between which the straight line runs in the material (even-odd), meets no border, and is
/// shortest in both places: a small step of either place along the border makes it no shorter.
///
/// Such places are feet of perpendiculars on edges, or corners at which the material turns inwards.  So a
/// pointed corner, towards which any shape grows thin without end, is no wall: a triangle has none.
///  - none: `eNone`, +∞;  no points: `eEmpty`, +∞;  no area: `eNone`, +∞
///  - a NaN or infinite coordinate: `eNotFinite`, NaN;  an open contour: `eNotClosed`, NaN
///  - borders that touch or cross, of different rings or one ring at points that do not follow each other:
///    0, at the first such pair
///  - parallel edges (within 1e-12 and the rounding of their coordinates): the middle of where they face
///    each other
/// Ties: the first place on the walk, then the second.
/// Throws: gxBadPointer for a null handle; BadParams "holes nest too deeply".
/// Cost: O(n log n) where few stretches of border face each other at a distance near the smallest.
GXSHAPE_API gxWall gfSmallestWall(std::span<const gxVector<2>> outline);
GXSHAPE_API gxWall gfSmallestWall(const gxContour& contour);
GXSHAPE_API gxWall gfSmallestWall(const gxRegion& region);
GXSHAPE_API gxWall gfSmallestWall(const gxRegionSet& set);
