/// Points spread anew along an outline or poly-line.
#pragma once

#include <cntr/contour.h>
#include <cntr/export.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <cstddef>
#include <iosfwd>
#include <span>
#include <vector>

/// Points and what they are worth.
struct GXSHAPE_API gxResampled {
  gxStatus status = gxStatus::eOk;
  std::vector<gxVector<2>> points;  ///< in the order of the walk
};
/// Prints how many points there are.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxResampled& resampled);

/// Returns points at `pieces` equal arc lengths: of an outline that many points, the first one point 0;
/// of a poly-line one more, its ends among them.  Chords are shorter than the arcs they stand for.
///  - no points: `eEmpty`; a NaN or infinite coordinate: `eNotFinite`; both without points
///  - `pieces` is 0: `eBadArgument`, no points
///  - length 0: `eFlat`, the one point, as often as asked
/// Cost: O(n + pieces).
GXSHAPE_API gxResampled gfResample(std::span<const gxVector<2>> points, bool closed, std::size_t pieces);
GXSHAPE_API gxResampled gfResample(const gxContour& contour, std::size_t pieces);

/// Returns points at equal arc lengths of at most `spacing`: into ceil(length / spacing) pieces, as
/// `gfResample`.
///  - a spacing of 0, below 0 or NaN, or one that asks for more than 2^31 pieces: `eBadArgument`
GXSHAPE_API gxResampled gfResampleBySpacing(std::span<const gxVector<2>> points, bool closed,
                                            double spacing);
GXSHAPE_API gxResampled gfResampleBySpacing(const gxContour& contour, double spacing);

/// Returns the vertices that `gfSimplify` keeps within `tolerance`, with points put between where two of
/// them are farther apart than `spacing`, at equal distances; with a spacing of +infinity none.
///  - a tolerance or spacing that makes no sense: `eBadArgument`
GXSHAPE_API gxResampled gfResampleByDeviation(std::span<const gxVector<2>> points, bool closed,
                                              double tolerance, double spacing);
GXSHAPE_API gxResampled gfResampleByDeviation(const gxContour& contour, double tolerance,
                                              double spacing);
