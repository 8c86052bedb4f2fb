/// Shapes moved about for tests of invariance: turned by the angle of the 3-4-5 triangle, whose cosine
/// and sine are 0.8 and 0.6, moved, scaled.
#pragma once

#include <velstd/vector.h>

#include <span>
#include <vector>

/// A similarity of the plane by plain arithmetic.
struct Placement {
  double cosine = 1.0;
  double sine = 0.0;
  gxVector<2> shift;
  double scale = 1.0;

  gxVector<2> of(const gxVector<2>& p) const {
    return gxVector<2>(cosine * p.x() - sine * p.y(), sine * p.x() + cosine * p.y()) * scale + shift;
  }
  std::vector<gxVector<2>> of(std::span<const gxVector<2>> points) const {
    std::vector<gxVector<2>> result;
    for (const gxVector<2>& p : points) result.push_back(of(p));
    return result;
  }
};

inline const Placement kInPlace{};
inline const Placement kTurned345{0.8, 0.6, {0.0, 0.0}, 1.0};
inline const Placement kFarAway{1.0, 0.0, {1e6, -1e6}, 1.0};
inline const Placement kTurnedFarAway{0.8, 0.6, {1e6, -1e6}, 1.0};
