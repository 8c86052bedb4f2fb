/// From where on an index pays: the numbers that were chosen by measurement, and the benchmark rows that show
/// each.  No answer depends on them.
///
/// A name that begins with `gx_kFew` means "up to so many the plain way is taken".  An index is made when
/// the scans that it replaces have cost about as much as it will: efforts are in nanoseconds a point (or
/// in nanoseconds where it says so) of the machine that they were measured on, and only their ratios
/// matter.  To choose one anew, change it, run the row at sizes around it (`tools/build bench`, then the
/// program of `build/bench/bin` that has the row, with `--benchmark_filter=ROW/ours`), and keep what is
/// fastest on smooth and on jittered outlines (`adversary_benchmark`).
#pragma once

#include <cstddef>
#include <cstdint>

// ---- Edges of one outline ------------------------------------------------------ row -------------

/// Edges that are scanned rather than indexed; what is laid out for few edges has room for as many, and
/// contours keep to it (`gxContour::indexPays_`).       Rows: segment_long, nearest_point, outline_outline
inline constexpr std::size_t gx_kFewEdges = 64;
/// Edges all pairs of whose boxes are compared, without an index.          Row: self_intersection
inline constexpr std::size_t gx_kFewPairs = 16;
/// Tests of pairs an edge, in vain, before repeated edges are looked for.  Row: equal_set
inline constexpr std::size_t gx_kPairsInVain = 32;
/// Points all pairs of which are measured for the farthest.                Row: farthest_pair
inline constexpr std::size_t gx_kFewFarthest = 6;
/// Pairs of leaves looked through, as a part of all leaves, before slabs are made.  Row: farthest_pair
inline constexpr double gx_kFarthestPatience = 0.25;
/// Edges that are asked for their distance at once, without measuring.     Row: nearest_point
inline constexpr std::size_t gx_kHandful = 6;
/// Keys that are sorted by exchange itself.                                Row: segment_long
inline constexpr std::size_t gx_kFewKeys = 24;
/// Edges near a run beyond which the index is asked each time.             Row: repair (a tangle)
inline constexpr std::size_t gx_kMostNear = 96;

// ---- Efforts before an index ----------------------------------------------------------------------

/// What a question for the nearest vertex or edge costs without the tree, and what making it costs.
/// Rows: nearest_vertex, nearest_point, nearest_point_build
inline constexpr unsigned gx_kVertexEffort = 1;
inline constexpr unsigned gx_kEdgeEffort = 3;
inline constexpr unsigned gx_kTreeEffort = 10;
/// Look-ups of one tolerance before its grid is made: a grid costs 11 to 25 ns a vertex, and far more
/// where one vertex lies far from all others; looking at it, one.          Row: vertices_within
inline constexpr unsigned gx_kPlainLookups = 16;
/// Up to so many vertices looking at all of them is quicker than a grid.          Row: vertices_within
inline constexpr std::size_t gx_kFewToLookUp = 64;
/// What a ray costs, in nanoseconds, and one more, a point, where it looks at the directions of all
/// vertices; what rays and scans may cost, a point, before a containment grid is made, which takes 30 of a
/// smooth outline and up to 400 of a comb or tangle.          Rows: containment, containment_build
inline constexpr std::uint64_t gx_kRayEffort = 2000;
inline constexpr std::uint64_t gx_kAllDirectionsEffort = 30;
inline constexpr std::uint64_t gx_kGridEffort = 120;
/// Points up to which a scan for containment costs less than a ray.        Row: containment
inline constexpr std::size_t gx_kFewToScan = 512;

// ---- Regions of a set -----------------------------------------------------------------------------

/// Regions that are asked one after the other, without a tree.  Row: clustered_set (none shows questions)
inline constexpr std::size_t gx_kFewRegions = 15;
/// Questions to a set before its first index.                   No row shows it.
inline constexpr std::uint64_t gx_kFirstSetIndex = 8;
