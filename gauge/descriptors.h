/// Shape descriptors: the one-number answers to "what does it look like", all in one call.
#pragma once

#include <cntr/export.h>
#include <cntr/regionst.h>
#include <gauge/places.h>
#include <velstd/handle.h>
#include <velstd/rect.h>

#include <cstddef>
#include <iosfwd>
#include <limits>
#include <span>
#include <vector>

/// Descriptors of a shape.
///
/// In the formulas A is the area less holes, Af the area with holes filled, P the perimeter of the
/// outlines, Ah and Ph area and perimeter of the convex hull, a and b the sides of the rectangle of least
/// area (a ≥ b), F a Feret diameter, λ1 ≥ λ2 the principal moments.  Other libraries use some of these
/// words otherwise; docs/gauges.md has a table.
///
/// A point is 0 in all lengths and areas, and NaN in all ratios.  A segment (all points on one line) has
/// what is said below, else NaN.
struct GXSHAPE_API gxDescriptors {
  static constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

  gxStatus status = gxStatus::eEmpty;
  double area = 0.0;        ///< A
  double filledArea = 0.0;  ///< Af
  double perimeter = 0.0;   ///< P: the outlines alone; of a segment both ways
  double length = 0.0;      ///< all borders, holes and islands too; the length of an open contour
  gxRect box;               ///< the upright rectangle around the outlines; NaN without points

  double equivalentDiameter = 0.0;  ///< 2 √(A / π), of the circle of that area
  double circularity = kNaN;        ///< 4 π Af / P², in (0, 1], 1 for a circle; segment 0
  double compactness = kNaN;        ///< 2 √(Af / π) / Fmax, in [0, 1] (ISO 9276-6); segment 0
  double convexity = kNaN;          ///< Ph / P, in (0, 1]; segment walked there and back 1
  double solidity = kNaN;           ///< A / Ah, in (0, 1]
  double extent = kNaN;             ///< A / area of the box, in (0, 1]
  double rectangularity = kNaN;     ///< A / (a b), in (0, 1]
  double aspectRatio = kNaN;        ///< a / b, 1 or more; segment +∞
  double elongation = kNaN;         ///< 1 − b / a, in [0, 1]; segment 1
  double eccentricity = kNaN;       ///< √(1 − λ2 / λ1), in [0, 1): 0 for equal axes
  /// The axis of λ1, in (−π/2, π/2], from x towards y; 0 for equal axes.
  double orientation = kNaN;
  long eulerNumber = 0;  ///< parts less holes, islands in holes being parts

  double feretMax = 0.0;
  double feretMin = 0.0;
  double feretAcross = 0.0;
  double feretMean = 0.0;
  double hullArea = 0.0;       ///< Ah
  double hullPerimeter = 0.0;  ///< Ph
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxDescriptors& descriptors);

/// Returns the descriptors of a shape.
///  - no points: `eEmpty`, lengths and areas 0, ratios NaN
///  - a NaN or infinite coordinate: `eNotFinite`, all NaN (the Euler number, which is of the rings, stays)
///  - an open contour: `eNotClosed`; its length, box, hull and Feret diameters, the rest NaN
///  - a point, a segment: `eFlat`, see above; so is what else has no area, with its hull's numbers
///  - holes that take away more than there is: `eNegative`, the numbers as they come
/// Area and perimeter are as `gfMoments` and the sum of the edges give them.  Of a set, the regions
/// together: areas and lengths add up, hull, rectangle and Feret diameters are those of all outlines.
/// Throws: gxBadPointer for a null handle; BadParams "holes nest too deeply".
/// Cost: O(n) for the sums, and a hull.
GXSHAPE_API gxDescriptors gfDescribe(std::span<const gxVector<2>> outline);
GXSHAPE_API gxDescriptors gfDescribe(const gxContour& contour);
GXSHAPE_API gxDescriptors gfDescribe(const gxRegion& region);
GXSHAPE_API gxDescriptors gfDescribe(const gxRegionSet& set);

/// Descriptors of many shapes: a column for each, in the order of the shapes.
struct GXSHAPE_API gxDescriptorColumns {
  std::vector<gxStatus> status;
  std::vector<double> area, filledArea, perimeter, length;
  std::vector<double> boxXMin, boxYMin, boxXMax, boxYMax;
  std::vector<double> equivalentDiameter, circularity, compactness, convexity, solidity, extent,
      rectangularity, aspectRatio, elongation, eccentricity, orientation;
  std::vector<long> eulerNumber;
  std::vector<double> feretMax, feretMin, feretAcross, feretMean, hullArea, hullPerimeter;

  std::size_t size() const { return status.size(); }
};
/// Prints how many rows there are, and how many of them are not ok.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxDescriptorColumns& columns);

/// Return the descriptors of each region, with the very bits of the single form.
///  - a null handle: a row of `eFailed` and NaN; no row throws
/// Throws: std::bad_alloc.
/// Cost: that of the single form for each.
GXSHAPE_API gxDescriptorColumns gfDescribeEach(std::span<const gxPtrHandle_const<gxRegion>> regions);
/// The same of the regions of a set, each by itself.
GXSHAPE_API gxDescriptorColumns gfDescribeEach(const gxRegionSet& set);

/// How many pixels an outline stands for, and whether that can be told.
struct GXSHAPE_API gxPixelArea {
  gxStatus status = gxStatus::eEmpty;
  double pixels = 0.0;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxPixelArea& area);

/// Returns the number of pixels of an outline that runs through the centres of the border pixels, at whole
/// coordinates, these pixels included: A + B / 2 + 1 with B the number of lattice points on the outline
/// (G. Pick, 1899).  An outline along the edges of pixels has no such question: there `filledArea` counts
/// the pixels.
///  - a single point: 1;  a straight run of n pixels, there and back: n
///  - a coordinate that is not whole, or above 2^52: `eNotOnGrid`, NaN
///  - no points: `eEmpty`, 0;  NaN or infinity: `eNotFinite`, NaN;  an open contour: `eNotClosed`, NaN
/// The outline must not cross itself; touching itself is fine where it leaves a line of pixels.
/// Cost: O(n).
GXSHAPE_API gxPixelArea gfPixelAreaOfCentres(std::span<const gxVector<2>> outline);
GXSHAPE_API gxPixelArea gfPixelAreaOfCentres(const gxContour& contour);
