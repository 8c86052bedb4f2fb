/// How the edges of rings meet each other: all meetings, each told once.
#pragma once

#include <overlay/internal/check/checked_rings.h>
#include <overlay/limits.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// A place where two edges meet that are no neighbours in a ring, or go back over each other.
struct gx_Contact {
  enum class Kind : std::uint8_t {
    eSpike,     ///< two edges, one after the other, that go back over each other
    eCrossing,  ///< edges cross, or the rings do at this point
    eTouching,  ///< a vertex lies on another edge or vertex
    eOverlap,   ///< edges lie on each other; the point is the first of the stretch by x, then y
  };
  Kind kind;
  std::size_t ring[2];  // the lower one first
  std::size_t edge[2];  // by position in the ring's points; in one ring the lower one first
  gxVector<2> point;
  gxVector<2> end;  // of an overlap
};

/// Returns the contacts of the usable rings, sorted by rings, then edges.  A point where vertices meet is
/// one contact of the edges that end there; where the rings share an edge at it, none: that is an overlap.
/// Stops at `atMost`, with the first that the search finds, and sets `cut` then; with `ringsMayTouch`
/// touching rings are told and not counted.
/// Throws: gxStopped, gxLimitExceeded.
std::vector<gx_Contact> gx_findContacts(const std::vector<gx_CheckedRing>& rings, std::size_t atMost,
                                        bool ringsMayTouch, const gxOverlayLimits& limits, bool& cut);
