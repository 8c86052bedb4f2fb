/// What the files of the Python binding share: shapes by composition, arrays in and out.
#pragma once

#include <ch_core/cntrtmpl.h>
#include <cntr/contour.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <gauge/borders.h>
#include <gauge/defects.h>
#include <gauge/places.h>
#include <io/record.h>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace py = pybind11;
using pybind11::literals::operator""_a;

using Points = std::vector<gxVector<2>>;
using PointSpan = std::span<const gxVector<2>>;
/// An array of points as Python hands it over: float64, C order; the shape is checked where it is read.
using PointArray = py::array_t<double, py::array::c_style>;

/// What a shape of Python is.  The numbers are those of gxshape/_shape.py.
enum class Kind : int {
  eContour = 0,
  eRegion = 1,
  eSet = 2,
  eEdgeContour = 3,
  eEdgeRegion = 4,
  eEdgeSet = 5
};

/// A shape of the library, which nothing changes any more: Python's setters make another one.  So a view of
/// its points stays good while someone holds it, and any number of threads may ask it without a lock.
///
/// The hierarchy has virtual bases, from which nothing leads down, so a region is held as region and as
/// contour.  The handles are members; they are never the holder that pybind11 wants.
class Shape {
 public:
  Shape(Kind kind, const gxPtrHandle_const<gxContour>& contour) : kind_(kind), contour_(contour) {}
  Shape(Kind kind, const gxPtrHandle_const<gxRegion>& region)
      : kind_(kind), contour_(region), region_(region) {}
  Shape(Kind kind, const gxPtrHandle_const<gxRegionSet>& set) : kind_(kind), set_(set) {}

  static Shape of(gxContour contour) {
    return {Kind::eContour, gxPtrHandle_const<gxContour>(new gxContour(std::move(contour)))};
  }
  static Shape of(gxRegion region) {
    return {Kind::eRegion, gxPtrHandle_const<gxRegion>(new gxRegion(std::move(region)))};
  }
  static Shape of(gxRegionSet set) {
    return {Kind::eSet, gxPtrHandle_const<gxRegionSet>(new gxRegionSet(std::move(set)))};
  }

  Kind kind() const { return kind_; }
  bool isSet() const { return !set_.isNull(); }
  bool isRegion() const { return !region_.isNull(); }
  /// Throw gxBadPointer where the shape is none of these.
  const gxContour& contour() const { return *contour_; }
  const gxRegion& region() const { return *region_; }
  const gxRegionSet& set() const { return *set_; }
  const gxPtrHandle_const<gxRegion>& regionHandle() const { return region_; }

  /// Returns the number of points of all rings that are reached without islands; for choosing whether to
  /// let go of the interpreter.
  std::size_t size() const;
  gxBorders borders() const;
  void into(gxRecord& record) const;

 private:
  Kind kind_;
  gxPtrHandle_const<gxContour> contour_;
  gxPtrHandle_const<gxRegion> region_;
  gxPtrHandle_const<gxRegionSet> set_;
};

/// Calls `use` with the shape as what it is.
template <class Use>
auto withShape(const Shape& shape, const Use& use) {
  if (shape.isSet()) return use(shape.set());
  if (shape.isRegion()) return use(shape.region());
  return use(shape.contour());
}

/// Computes without the interpreter's lock where there is enough to do; below that, letting go and taking
/// it again would cost more than it gives.
inline constexpr std::size_t kWorthUnlocking = 1000;
template <class Compute>
auto unlocked(std::size_t points, const Compute& compute) {
  if (points < kWorthUnlocking) return compute();
  const py::gil_scoped_release release;
  return compute();
}

/// Returns the points of an array.  Throws: std::invalid_argument where the shape is not (n, 2).
PointSpan spanOf(const PointArray& points);
/// Copies points into a new array of shape (n, 2).
py::array_t<double> arrayOf(PointSpan points);

/// What the library answers with, as Python has it.
py::object out(gxStatus status);
py::object out(const gxVector<2>& point);  ///< an array of shape (2,)
py::object out(const gxPlace& place);      ///< (ring, edge, t, x, y), or None
py::dict out(const gxConvexityDefect& defect);
py::object out(const std::vector<long>& numbers);
py::object out(const std::vector<std::size_t>& numbers);

/// A record as shapes: a region, a set, an open contour; points as an open contour.
Shape shapeOf(const gxRecord& record);

// What each file adds to the module.
void bindErrors(py::module_& module);
void bindShape(py::module_& module);
void bindShapeGauges(py::module_& module);
void bindPlaceGauges(py::module_& module);
void bindCompareGauges(py::module_& module);
void bindFormGauges(py::module_& module);
void bindOverlay(py::module_& module);
void bindFiles(py::module_& module);
void bindBatchMeasures(py::module_& module);
void bindBatchCompare(py::module_& module);
void bindBatchPlaces(py::module_& module);
void bindBatchShapes(py::module_& module);
