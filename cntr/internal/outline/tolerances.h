/// The tolerances of contours and regions, each in one place.
///
/// The first four are part of the answers and never change.  The others are bounds with which an answer
/// is found by a shorter way: they keep that way to where it gives the same bits.
#pragma once

/// Closer points coincide: an edge between them has no length and meets nothing.
constexpr double gx_kCoincide = 1e-15;

/// How far a crossing, as it is computed, may lie off either segment.
constexpr double gx_kTouch = 1e-6;

/// A point no farther than this from a vertex lies on it, and so in the region.
constexpr double gx_kOnVertex = 1e-6;

/// Vertices no farther apart than this are the same when loops are cut and joined.
constexpr double gx_kSameVertex = 1e-6;

/// Beyond both tolerances of a ray, that of crossings and that of vertices, by a tenth, which is far above
/// any rounding at coordinates up to `gx_kLargestExact`.
constexpr double gx_kSurelyApart = 1.1e-6;
static_assert(gx_kSurelyApart > gx_kTouch && gx_kSurelyApart > gx_kOnVertex);

/// Up to coordinates of this size the rounding of a distance stays far below the tolerances: 5e5 has units
/// in the last place of 6e-11.  Shortcuts that are proved with that go no farther.
constexpr double gx_kLargestExact = 5e5;

/// Many times the rounding of a distance, of a direction, of a cross product, in units of its size.
constexpr double gx_kRounding = 1e-12;
