/// Many outlines in one array, measured in one call: for whoever sees tens of thousands of small shapes.
#pragma once

#include <cntr/export.h>
#include <gauge/locate.h>
#include <gauge/places.h>
#include <velstd/vector.h>

#include <cstddef>
#include <iosfwd>
#include <span>
#include <vector>

/// Outlines one after the other in one array of points, and where each begins: outline k is the points from
/// `offsets[k]` up to, not including, `offsets[k + 1]`.  It only looks at the two arrays, which stay the
/// caller's.
///  - fewer than two offsets: no outlines
///  - an outline whose offsets fall, or lie beyond the points: no points; its row says `eBadArgument`
class GXSHAPE_API gxOutlines {
 public:
  gxOutlines() = default;
  gxOutlines(std::span<const gxVector<2>> points, std::span<const std::size_t> offsets)
      : points_(points), offsets_(offsets) {}

  /// Looks at outlines whose coordinates lie in one array of numbers, x and y in turns, as tables and
  /// other libraries have them.  Offsets count points, not numbers; an odd number at the end belongs to
  /// no point.
  static gxOutlines ofCoordinates(std::span<const double> xy, std::span<const std::size_t> offsets) {
    static_assert(sizeof(gxVector<2>) == 2 * sizeof(double) && alignof(gxVector<2>) == alignof(double));
    return {{reinterpret_cast<const gxVector<2>*>(xy.data()), xy.size() / 2}, offsets};
  }

  /// Returns how many outlines there are.
  std::size_t size() const { return offsets_.empty() ? 0 : offsets_.size() - 1; }
  /// Tells whether the offsets of outline k are in order and within the points.
  bool valid(std::size_t k) const {
    return offsets_[k] <= offsets_[k + 1] && offsets_[k + 1] <= points_.size();
  }
  /// Returns the points of outline k, none where its offsets are not valid.
  std::span<const gxVector<2>> operator[](std::size_t k) const {
    if (!valid(k)) return {};
    return points_.subspan(offsets_[k], offsets_[k + 1] - offsets_[k]);
  }
  /// Returns where outline k begins in the array.
  std::size_t offset(std::size_t k) const { return offsets_[k]; }

  /// Return all points, and all offsets.
  std::span<const gxVector<2>> points() const { return points_; }
  std::span<const std::size_t> offsets() const { return offsets_; }

 private:
  std::span<const gxVector<2>> points_;
  std::span<const std::size_t> offsets_;
};
/// Prints how many there are: "2 outlines in 7 points".
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxOutlines& outlines);

/// Measures of many outlines: a column for each, in the order of the outlines.
struct GXSHAPE_API gxMeasureColumns {
  std::vector<gxStatus> status;
  std::vector<double> area, length;
  std::vector<double> centreX, centreY;
  std::vector<double> boxXMin, boxYMin, boxXMax, boxYMax;
  /// The central moments of the second order.
  std::vector<double> moment20, moment11, moment02;

  std::size_t size() const { return status.size(); }
  /// Makes every column so long; new rows are those of an outline without points.
  void resize(std::size_t rows);
};
/// Prints how many rows there are, and how many of them are not ok.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxMeasureColumns& columns);

/// Measures each outline, taken as closed: area, length, centre and box with the very bits of `gfMeasure`,
/// the moments with those of `gfMoments`.
///  - no points, coordinates that are not finite, no area: the row is as those say (moments 0, of what is
///    not finite NaN), `status` too
///  - offsets that are not valid: `eBadArgument`, all NaN
/// No row throws.  Throws: std::bad_alloc.
/// Cost: O(all points), one pass for the box and one for the sums; four outlines go side by side in vector
/// registers, each with its own sums in its own order.
GXSHAPE_API gxMeasureColumns gfMeasureMany(const gxOutlines& outlines);

/// The same of the outlines from `first` up to `last` alone, into rows that are there; the other rows are
/// not touched.  Threads may work on ranges that do not overlap at the same time.  A range beyond the
/// outlines is cut to them.  Outlines that go side by side need no memory; those without area, and those
/// beyond 1e±300, are measured one by one, which does.
/// Throws: gxContourDefs::BadParams where the columns are shorter than the range; then nothing is written.
GXSHAPE_API void gfMeasureMany(const gxOutlines& outlines, std::size_t first, std::size_t last,
                               gxMeasureColumns& columns);

/// Area and centre of many outlines: a column for each number, in the order of the outlines.
struct GXSHAPE_API gxAreaColumns {
  std::vector<gxStatus> status;
  std::vector<double> area, centreX, centreY;

  std::size_t size() const { return status.size(); }
  /// Makes every column so long; new rows are those of an outline without points.
  void resize(std::size_t rows);
};
/// Prints how many rows there are, and how many of them are not ok.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxAreaColumns& columns);

/// Finds area and centre alone of each outline, in a fraction of the time that all measures take.  They
/// are those of `gfMeasure` to a part in 1e12 of the area and of the outline's size (usually the last bit or
/// two), as the edges are added in another order.  The bits are the same on every machine.
///  - what `gfMeasure` gives another status than `eOk`, and outlines of which most cancels, as of a bow-tie
///    (less than a hundredth of the triangles from the first point is left): the very numbers of `gfMeasure`
///  - offsets that are not valid: `eBadArgument`, all NaN
/// The second form does so for the outlines from `first` up to `last`, as that of `gfMeasureMany`.
/// No row throws.  Throws: as `gfMeasureMany`.
/// Cost: O(all points), one pass; no memory but for outlines that are left to `gfMeasure`: those above, and
/// those beyond 1e±60.
GXSHAPE_API gxAreaColumns gfAreasMany(const gxOutlines& outlines);
GXSHAPE_API void gfAreasMany(const gxOutlines& outlines, std::size_t first, std::size_t last,
                             gxAreaColumns& columns);

/// Tells where points lie, each list of `queries` against the outline with the same number: inside, outside
/// or exactly on the border, as `gfLocate` with tolerance 0.  The states stand in the order of the points of
/// `queries`; states[j] belongs to queries.points()[j].
///  - an outline that is not valid, has no points or is not finite, or a query that is not finite: outside
///  - more outlines than lists, or the other way around: what has no partner is left alone
/// The second form does so for the outlines from `first` up to `last`, as above.
/// Throws: std::bad_alloc; gxContourDefs::BadParams where there are fewer states than points in `queries`.
/// Cost: O(n) a question; no memory.  For many questions to one outline, `gxLocator`.
GXSHAPE_API std::vector<gxState> gfLocateMany(const gxOutlines& outlines, const gxOutlines& queries);
GXSHAPE_API void gfLocateMany(const gxOutlines& outlines, const gxOutlines& queries, std::size_t first,
                              std::size_t last, std::span<gxState> states);

/// What encloses many outlines: a column for each number, in the order of the outlines.
struct GXSHAPE_API gxEnclosureColumns {
  std::vector<gxStatus> status;
  std::vector<long> hullSize;  ///< the corners of the convex hull
  std::vector<double> hullArea, diameter;
  std::vector<double> circleX, circleY, circleRadius;

  std::size_t size() const { return status.size(); }
  /// Makes every column so long; new rows are those of an outline without points.
  void resize(std::size_t rows);
};
/// Prints how many rows there are, and how many of them are not ok.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxEnclosureColumns& columns);

/// Finds the hull of each outline, its greatest width, bit by bit `feretMax` of `gfDescribe`, and the
/// smallest circle around it, as `gfEnclosingCircle` finds it, with its status.
///  - offsets that are not valid: `eBadArgument`, 0 corners, the rest NaN
/// The second form: as that of `gfMeasureMany`.
/// Throws: as `gfMeasureMany`.
/// Cost: that of a hull each, which needs memory of its own.
GXSHAPE_API gxEnclosureColumns gfEncloseMany(const gxOutlines& outlines);
GXSHAPE_API void gfEncloseMany(const gxOutlines& outlines, std::size_t first, std::size_t last,
                               gxEnclosureColumns& columns);

/// The convex hulls of many outlines, one after the other: the corners of hull k are the points from
/// `offsets[k]` up to, not including, `offsets[k + 1]`.
struct GXSHAPE_API gxHullLists {
  std::vector<gxStatus> status;
  std::vector<gxVector<2>> points;
  std::vector<std::size_t> offsets{0};

  std::size_t size() const { return status.size(); }
  /// Looks at the hulls as outlines, for the other forms over many; ends with this object.
  gxOutlines outlines() const { return {points, offsets}; }
};
/// Prints how many rows there are, and how many of them are not ok.
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxHullLists& hulls);

/// Finds the convex hull of each outline, as `gfConvexHull` does: counterclockwise, from the corner with the
/// lowest x.  The second form takes the outlines from `first` up to `last` alone; its hull 0 is that of
/// outline `first`.
///  - no points: `eEmpty`, no corners;  all on one line: `eFlat`, its two ends, or the one point
///  - coordinates that are not finite: `eNotFinite`; offsets that are not valid: `eBadArgument`; no corners
/// No row throws.  Throws: std::bad_alloc.
/// Cost: that of a hull each.
GXSHAPE_API gxHullLists gfHullsMany(const gxOutlines& outlines);
GXSHAPE_API gxHullLists gfHullsMany(const gxOutlines& outlines, std::size_t first, std::size_t last);
