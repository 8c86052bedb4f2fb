/// Containment by the even-odd rule in exact whole numbers, to hold the counted ray against.
#pragma once

#include <velstd/vector.h>

#include <cstdint>
#include <vector>

/// Where a point lies.
enum class ExactSide : int { eOutside, eInside, eOnVertex, eOnEdge };

/// A closed outline whose coordinates are multiples of `kGrid`, so that every question about points
/// of the grid is answered by whole numbers, without rounding.
class ExactOutline {
 public:
  /// 2^-21, a little finer than the tolerances of the library.
  static constexpr double kGrid = 0x1p-21;

  /// Rounds the points to multiples of 2 · `kGrid` (so that half way between two is on the grid).
  explicit ExactOutline(const std::vector<gxVector<2>>& points);

  /// Returns the points as they were rounded.
  const std::vector<gxVector<2>>& points() const { return points_; }

  /// Tells where a point lies whose coordinates are rounded to multiples of `kGrid`.
  ExactSide locate(const gxVector<2>& point) const;

  /// Returns the nearest point of the grid.
  static gxVector<2> onGrid(const gxVector<2>& point);

 private:
  struct Whole {
    std::int64_t x;
    std::int64_t y;
  };
  static Whole whole(const gxVector<2>& point);

  std::vector<gxVector<2>> points_;
  std::vector<Whole> corners_;
};
