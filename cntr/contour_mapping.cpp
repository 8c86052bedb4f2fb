// Mapping through a transform, and conversion to a polygon.
#include <cntr/contour.h>

void gxContour::map(const gxXform<2>& xform, gxContour& result) const {
  std::vector<gxVector<2>> mapped;
  mapped.reserve(state_.points.size());
  for (const gxVector<2>& p : state_.points) mapped.push_back(xform * p);
  const gxContour contour(mapped, isClosed(), label());
  result = contour;
}

gxPolygon gxContour::polygon() const {
  std::vector<gxVector<2>> vertices = state_.points;
  if (isClosed() && !vertices.empty()) vertices.push_back(vertices.front());
  return {vertices, gxPolygon::eEvenOdd};
}
