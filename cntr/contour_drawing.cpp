// Drawing: every edge as one segment, in edge order; nothing else, whatever the mode.
#include <cntr/contour.h>
#include <cntr/internal/outline/edge_walk.h>

void gxContour::draw(gxUITablet& tablet, gxContourDefs::DrawMode /*mode*/, const gxColor& colour,
                     const gxUITablet::Layers& layer) const {
  const std::vector<gxVector<2>>& points = state_.points;
  gx_forEachEdge(points.size(), isClosed(), [&](std::size_t from, std::size_t to, std::size_t) {
    tablet.drawLineSeg(gxPair<double>(points[from].x(), points[from].y()),
                       gxPair<double>(points[to].x(), points[to].y()), colour, layer);
  });
}
