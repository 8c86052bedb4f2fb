/// Lines, circles and ellipses fitted to many lists of points in one call.
#pragma once

#include <cntr/export.h>
#include <gauge/measure_many.h>
#include <gauge/places.h>

#include <cstddef>
#include <iosfwd>
#include <vector>

/// Lines fitted to many lists: a column for each number, in the order of the lists.
struct GXSHAPE_API gxLineColumns {
  std::vector<gxStatus> status;
  std::vector<double> pointX, pointY;  ///< the mean of the points, which the line goes through
  std::vector<double> angle;           ///< in (−π/2, π/2]
  std::vector<double> residual;        ///< root mean square of the distances

  std::size_t size() const { return status.size(); }
  /// Makes every column so long; new rows are those of a list without points.
  void resize(std::size_t rows);
};
/// Prints how many rows there are, and how many of them are not ok.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxLineColumns& columns);

/// Circles fitted to many lists.
struct GXSHAPE_API gxCircleColumns {
  std::vector<gxStatus> status;
  std::vector<double> centreX, centreY, radius;
  std::vector<double> residual;  ///< root mean square of the distances

  std::size_t size() const { return status.size(); }
  /// Makes every column so long; new rows are those of a list without points.
  void resize(std::size_t rows);
};
/// Prints how many rows there are, and how many of them are not ok.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxCircleColumns& columns);

/// Ellipses fitted to many lists.
struct GXSHAPE_API gxEllipseColumns {
  std::vector<gxStatus> status;
  std::vector<double> centreX, centreY;
  std::vector<double> a, b;      ///< the longer and the shorter semi-axis
  std::vector<double> angle;     ///< of the longer one, in (−π/2, π/2]; 0 for a circle
  std::vector<double> residual;  ///< root mean square of the distances

  std::size_t size() const { return status.size(); }
  /// Makes every column so long; new rows are those of a list without points.
  void resize(std::size_t rows);
};
/// Prints how many rows there are, and how many of them are not ok.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxEllipseColumns& columns);

/// Fit a line, a circle, an ellipse to each list of points, by least squares of the distances: with the
/// very bits of `gfRobustLine` with `eLeastSquares`, `gfCircleFit` and `gfEllipseFit` that fit everything
/// and leave nobody out.  The lists are ragged rows as of outlines, but nothing is closed.
///  - no points: `eEmpty`;  a coordinate that is not finite: `eNotFinite`;  offsets that are not valid:
///    `eBadArgument`;  points that do not determine the shape, where the single form throws:
///    `eUndetermined`.  All these: every number NaN
///  - points spread alike in all directions: `eUndetermined`, with the numbers of the line at angle 0
/// The forms with `first` and `last` write these rows alone, which must be there, and touch no other:
/// threads may work on ranges that do not overlap at the same time.  A range beyond the lists is cut.
/// No row throws.  Throws: std::bad_alloc; gxContourDefs::BadParams where the columns are shorter than the
/// range, and then nothing is written.
/// Cost: that of the single forms, which need memory of their own.
GXSHAPE_API gxLineColumns gfFitLinesMany(const gxOutlines& lists);
GXSHAPE_API void gfFitLinesMany(const gxOutlines& lists, std::size_t first, std::size_t last,
                                gxLineColumns& columns);
GXSHAPE_API gxCircleColumns gfFitCirclesMany(const gxOutlines& lists);
GXSHAPE_API void gfFitCirclesMany(const gxOutlines& lists, std::size_t first, std::size_t last,
                                  gxCircleColumns& columns);
GXSHAPE_API gxEllipseColumns gfFitEllipsesMany(const gxOutlines& lists);
GXSHAPE_API void gfFitEllipsesMany(const gxOutlines& lists, std::size_t first, std::size_t last,
                                   gxEllipseColumns& columns);
