/// Distances between outlines by looking at everything: the plain forms of the gauges that compare shapes.
#pragma once

#include <gauge/borders.h>
#include <velstd/vector.h>

#include <vector>

namespace plain {

/// The segments of all rings, ring by ring, each ring's edges as a contour counts them; a ring of one
/// point is a segment of no length.
struct Segment {
  gxVector<2> a;
  gxVector<2> b;
};
std::vector<Segment> segmentsOf(const gxBorders& borders);

/// The distance of a point from a segment, and from the nearest of all.
double distance(const Segment& segment, const gxVector<2>& p);
double distance(const std::vector<Segment>& segments, const gxVector<2>& p);

/// Tells by the even-odd rule over all closed rings whether a point is inside; walks every edge.
bool holds(const gxBorders& borders, const gxVector<2>& p);

/// The greatest distance of a point of one from the other, by sampling every edge and narrowing down
/// around the best samples; never above the true one.
double directedHausdorff(const gxBorders& from, const gxBorders& to, int samples = 400);

}  // namespace plain
