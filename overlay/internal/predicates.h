/// Exact tests on edges and rings: no tolerance, for every finite coordinate.
#pragma once

#include <cntr/export.h>
#include <velstd/orientation.h>
#include <velstd/vector.h>

#include <cstddef>

/// What two edges a→b and c→d, each of some length, have in common.
struct gx_EdgeMeeting {
  enum Kind : unsigned char {
    eApart,     ///< nothing
    eCrossing,  ///< one point inside of both
    eTouching,  ///< one point that is an end of one of them, or of both
    eOverlap,   ///< a stretch of some length
  };
  /// Which ends lie on the other edge, its ends included.
  enum End : unsigned char { eA = 1, eB = 2, eC = 4, eD = 8 };

  Kind kind = eApart;
  unsigned char ends = 0;  ///< a sum of `End`; 0 for eApart and eCrossing
};

/// Tells whether p comes before q: by x, then by y.
inline bool gx_before(const gxVector<2>& p, const gxVector<2>& q) {
  return p.x() < q.x() || (p.x() == q.x() && p.y() < q.y());
}

/// Tells whether `p`, which is on the line through a and b, lies between them or is one of them.
inline bool gx_isBetween(const gxVector<2>& p, const gxVector<2>& a, const gxVector<2>& b) {
  const bool forward = gx_before(a, b);
  const gxVector<2>& low = forward ? a : b;
  const gxVector<2>& high = forward ? b : a;
  return !gx_before(p, low) && !gx_before(high, p);
}

/// The rest of `gx_meetingOf`, where an end lies on the other edge's line.
GXSHAPE_API gx_EdgeMeeting gx_meetingAtEnds(const gxVector<2>& a, const gxVector<2>& b,
                                            const gxVector<2>& c, const gxVector<2>& d, int sideOfC,
                                            int sideOfD);

/// Returns what the edges a→b and c→d have in common, exactly.
///  - an edge of no length is a point, and touches what it lies on
///  - a coordinate that is not finite: anything
inline gx_EdgeMeeting gx_meetingOf(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                                   const gxVector<2>& d) {
  const int sideOfC = gx_Orientation(a, b, c);
  const int sideOfD = gx_Orientation(a, b, d);
  if (sideOfC * sideOfD > 0) return {};
  return gx_meetingAtEnds(a, b, c, d, sideOfC, sideOfD);
}

/// Tells whether the edges from→joint and joint→to lie on each other for some length: whether the way
/// turns back on itself at the joint.
inline bool gx_isFold(const gxVector<2>& from, const gxVector<2>& joint, const gxVector<2>& to) {
  const auto side = [](double p, double q) { return (p > q) - (p < q); };
  return side(from.x(), joint.x()) == side(to.x(), joint.x()) &&
         side(from.y(), joint.y()) == side(to.y(), joint.y()) && gx_Orientation(from, joint, to) == 0 &&
         !(from == joint);
}

/// Returns the sign of the area of a closed ring of `count` points, crossings and all: +1 where more of it
/// is gone around counter-clockwise (y up), −1 clockwise, 0 where both are the same or there are fewer
/// than 3 points; exactly.
///  - a coordinate that is not finite: anything
GXSHAPE_API int gx_signOfArea(const gxVector<2>* points, std::size_t count);
