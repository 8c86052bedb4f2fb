/// What contours answer, computed the slow and plain way: the judge of every faster form.
///
/// Nothing here remembers, indexes or cuts short.  Each function is the definition, step by step, on
/// bare points, with the value types of the base library and nothing of the library above it but its
/// exceptions.  A faster form is right when it gives the same bits.
#pragma once

#include <cntr/contourdefs.h>
#include <velstd/circle.h>
#include <velstd/line_seg.h>
#include <velstd/rect.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace slow {

using Points = std::vector<gxVector<2>>;

/// A contour: points, and whether the last joins the first.
struct Outline {
  Points points;
  bool closed = true;
};

/// The edges as pairs of point numbers, the closing edge first.
std::vector<std::pair<std::size_t, std::size_t>> edges(const Outline& outline);
/// Throws EmptyContour below 2 points.
void checkContour(const Points& points);
/// Is `a` greater than `b`, where NaN is greater than every number and equal to itself?
bool greater(double a, double b);

// ---- Edges --------------------------------------------------------------------------------------

struct Edge {
  gxLineSeg segment;
  gxLine line;
  gxRect bounds;
  bool valid = false;
};
/// Edges of no length are default ones, not valid.
std::vector<Edge> lineSegs(const Outline& outline);

// ---- Proximity ----------------------------------------------------------------------------------

double length(const Outline& outline);
long closestVertexIndex(const Points& points, const gxVector<2>& point);
gxVector<2> closestPoint(const Outline& outline, const gxVector<2>& point, bool vertexOnly);
double distToPoint(const Outline& outline, const gxVector<2>& point, bool vertexOnly);

// ---- Intersections ------------------------------------------------------------------------------

struct Hits {
  Points points;
  std::vector<int> edges;
};
/// `box` is what the contour takes for its upright rectangle.
Hits intersections(const Outline& outline, const gxRect& box, const gxLineSeg& seg,
                   bool countEndContacts);
Hits intersections(const Outline& outline, const gxLineSeg& seg, bool countEndContacts);
Points intersections(const Outline& outline, const Outline& other);
bool isSelfIntersecting(const Outline& outline);
bool isSelfIntersecting(const Outline& outline, const gxRect& box);
/// The order in which the exchange sort leaves the keys: their positions.
std::vector<std::size_t> exchangeOrder(const std::vector<double>& keys);

// ---- Extremes -----------------------------------------------------------------------------------

long extremalVertexIndex(const Points& points, double angle);
gxVector<2> extremalVertexPosition(const Points& points, double angle);
gxRect encloseRect(const Points& points, const gxXform<2>& xform);
/// `slot` is the circle that this mode gave last, of whatever points; it is left there when no two
/// points differ.
gxCircle encloseCircle(const Points& points, int mode, const gxCircle& slot = gxCircle());
double diameter(const Points& points, int mode);

// ---- Features -----------------------------------------------------------------------------------

gxVector<2> meanPosition(const Outline& outline);
double medianFeatureSize(const Outline& outline);
/// By the square cells around the point, in their order.
std::vector<int> vertexIndex(const Points& points, const gxVector<2>& point, double tolerance);

// ---- Conversions --------------------------------------------------------------------------------

Points map(const gxXform<2>& xform, const Points& points);
Points polygon(const Outline& outline);
std::vector<gxLineSeg> drawn(const Outline& outline);

}  // namespace slow
