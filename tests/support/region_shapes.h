/// Regions that the tests of regions speak of, by name.
#pragma once

#include <cntr/region.h>
#include <support/shape_text.h>

#include <cmath>
#include <string>
#include <vector>

using V = gxVector<2>;
using Points = std::vector<V>;
using Handle = gxPtrHandle_const<gxRegion>;

inline Handle shared(const gxRegion& region) {
  return Handle(new gxRegion(region));
}

/// A square by its lowest corner, counterclockwise with y up.
inline Points square(double x, double y, double size) {
  return {{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}};
}

inline gxRegion regionOf(const Points& outline, const std::vector<Points>& holes = {}) {
  gxRegion region(outline);
  std::vector<Handle> handles;
  for (const Points& hole : holes) handles.push_back(shared(gxRegion(hole)));
  region.holes(handles);
  return region;
}

/// 10 by 10 at the origin, with a hole from (4, 4) to (6, 6).
inline gxRegion squareWithHole() {
  return regionOf(square(0, 0, 10), {square(4, 4, 2)});
}

///   3     1
///   |\   /|        the two diagonals cross in (2, 2)
///   | \ / |
///   |  X  |
///   | / \ |
///   |/   \|
///   0     2
inline Points bowTie() {
  return {{0, 0}, {4, 4}, {4, 0}, {0, 4}};
}

/// Five points of a star, every other one joined: each edge is crossed by two others.
inline Points pentagram() {
  Points points;
  for (int i = 0; i < 5; ++i) {
    const double angle = 4.0 * 3.141592653589793 * i / 5.0;
    points.emplace_back(5.0 * std::cos(angle), 5.0 * std::sin(angle));
  }
  return points;
}

/// Puts a null handle among the holes.  The setters refuse it; a region that is read from an archive
/// may come with one.
inline void addNullHole(gxRegion& region) {
  const_cast<std::vector<Handle>&>(region.holes()).emplace_back();  // NOLINT: see above
}

/// Returns the message of the BadParams that the call throws; another text where it throws none.
template <class Call>
std::wstring messageOfBadParams(const Call& call) {
  try {
    call();
  } catch (const gxContourDefs::BadParams& error) {
    return error.message();
  }
  return L"(no BadParams)";
}
