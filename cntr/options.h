/// Names for the flags of queries, which are positional in the first forms of these.
#pragma once

/// Whether holes take part.
enum class gxHoles : bool { eIgnored = false, eConsidered = true };

/// Whether edges that come within the tolerance of an end of the segment count as crossed by it.
enum class gxContacts : bool { eLeftOut = false, eCounted = true };

/// What a question for the nearest point or the distance takes into account; to be written as
/// `plate.distToPoint(p, {.insideIsZero = true})`.
struct gxNearestOptions {
  bool vertexOnly = false;    ///< vertices alone, no points between them
  bool considerHoles = true;  ///< borders of holes too
  bool insideIsZero = false;  ///< a point inside is at distance 0 (distances only)
};
