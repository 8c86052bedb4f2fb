/// Gauges in their plain form: from their definitions, by looking at everything, in long double.
#pragma once

#include <velstd/vector.h>

#include <cstddef>
#include <vector>

namespace plain {

using Points = std::vector<gxVector<2>>;

/// The smallest circle of all those on two points and through three points that hold all.
struct Circle {
  long double x = 0, y = 0, radius = 0;
};
Circle enclosingCircle(const Points& points);

/// The area and the width of the smallest rectangles with a side along one of the lines through two
/// points that have all others on one side.
struct Rectangles {
  long double area = 0, width = 0;
};
Rectangles rectangles(const Points& points);

/// The greatest distance of two points.
long double farthest(const Points& points);

/// The extent in a direction.
long double extent(const Points& points, long double angle);

/// ∫ x^p y^q dA over what a ring encloses, counterclockwise turns positive, seen from a point: the general
/// formula for any p and q.
long double moment(const Points& ring, const gxVector<2>& from, int p, int q);

/// The deepest points of the pockets between neighbouring corners of the convex hull, for an outline that
/// does not touch itself: start, end, deepest, by looking for each corner in turn.
struct Pocket {
  std::size_t start = 0, end = 0, deepest = 0;
  long double depth = 0, area = 0;
};
std::vector<Pocket> pockets(const Points& outline);

}  // namespace plain
