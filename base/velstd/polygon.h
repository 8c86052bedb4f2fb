/// Polygons as the display and other libraries exchange them.
#pragma once

#include <velstd/export.h>
#include <velstd/vector.h>

#include <vector>

/// A list of vertices with a rule that says what its inside is.  The list is kept as given: a
/// closed outline repeats its first vertex at the end.  The default is empty.
class VELSTD_API gxPolygon {
 public:
  /// Which points count as inside of an outline that crosses itself.
  enum PolyFillMode : int {
    eEvenOdd = 0,  ///< those with an odd number of crossings on the way out
    eNonZero = 1,  ///< those around which the outline turns
  };

  gxPolygon() = default;
  /// Makes a polygon; the list is kept as given.
  gxPolygon(const std::vector<gxVector<2>>& vertices, PolyFillMode fillMode)
      : vertices_(vertices), fillMode_(fillMode) {}

  /// Returns the number of vertices; saturates at the largest int.
  int size() const;
  /// Returns vertex i, 0 to size − 1.  Throws: std::out_of_range elsewhere.
  const gxVector<2>& operator[](long i) const;
  /// Return what was given.
  const std::vector<gxVector<2>>& vertices() const { return vertices_; }
  PolyFillMode fillMode() const { return fillMode_; }

  /// Compares vertices and fill mode.
  friend bool operator==(const gxPolygon&, const gxPolygon&) = default;

 private:
  std::vector<gxVector<2>> vertices_;
  PolyFillMode fillMode_ = eEvenOdd;
};
