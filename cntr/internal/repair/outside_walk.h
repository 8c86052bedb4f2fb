/// The walk around the outside of an outline that crosses itself.
#pragma once

#include <cntr/export.h>
#include <velstd/line_seg.h>
#include <velstd/vector.h>

#include <cstddef>
#include <functional>
#include <vector>

/// What the walk asks of the outline.  Each is a question about the same closed outline.
struct gx_OutlineQuestions {
  /// Returns the crossings with a segment, contacts at its ends left out, and the edges crossed.  The
  /// segment lies along edge `along`.
  std::function<std::vector<gxVector<2>>(const gxLineSeg&, std::size_t along, std::vector<int>& edges)>
      crossings;
  /// Returns the number of crossings with a segment, contacts at its ends counted; for more than 2 any
  /// number above 2 will do.
  std::function<std::size_t(const gxLineSeg&)> contacts;
  /// Returns the smaller number of crossings of two opposite rays from a point.
  std::function<long(const gxVector<2>&)> raysBothWays;
};

/// Returns the lowest i, below n − 1, whose edge from point i to point i + 1 lies on the outside of
/// the figure: a short probe across its middle, `probe` long to either side, meets the outline
/// once; the edge itself meets it twice, at its ends; and one end of the probe is outside.
/// Throws: BadParams "invalid contour" where there is none.
GXSHAPE_API std::size_t gx_findStartEdge(const std::vector<gxVector<2>>& points, double probe,
                                         const gx_OutlineQuestions& outline);

/// Where the walk stands: at a point of the outline, heading for point `next` (forward) or for the
/// one before it.
struct gx_WalkState {
  gxVector<2> at;
  std::size_t next = 0;
  bool forward = true;
};

/// Makes one step: to the point headed for where nothing is in the way, else to the first crossing,
/// where the walk turns onto the crossed edge against its direction so far.
GXSHAPE_API gx_WalkState gx_walkStep(const std::vector<gxVector<2>>& points, const gx_WalkState& state,
                                     const gx_OutlineQuestions& outline);

/// Returns the largest number of steps that a walk around n points may take: max(200,000, 64 n).
GXSHAPE_API std::size_t gx_mostWalkSteps(std::size_t points);

/// Walks from the start edge around the outside until the start point comes up again, and returns
/// the points passed, the start point last.
/// Throws: BadParams "invalid contour" when the walk comes back to an earlier state without having
/// closed, or after `gx_mostWalkSteps`.
GXSHAPE_API std::vector<gxVector<2>> gx_walkOutside(const std::vector<gxVector<2>>& points,
                                                    std::size_t start,
                                                    const gx_OutlineQuestions& outline);
