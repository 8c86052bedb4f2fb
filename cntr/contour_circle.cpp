// The circle of a contour, in two modes, and the diameter.
//
// All pairs: look at every ordered pair, first index outer; a distance strictly above the best so
// far makes a new circle of that pair.  The slot is not reset first: where no two points are apart
// it keeps what it held, the default circle or the circle of earlier points.  First point: the
// radius is the largest distance from vertex 0; without points there is nothing to read, and the
// slot is returned as it stands.
#include <cntr/contour.h>
#include <cntr/internal/farthest_pair.h>
#include <cntr/internal/probe.h>

namespace {

void circleOfFarthestPair(const std::vector<gxVector<2>>& points, gxCircle& circle) {
  double best = 0.0;
  for (const gxVector<2>& p : points) {
    for (const gxVector<2>& q : points) {
      const double distance = p.distance(q);
      if (distance > best) {
        best = distance;
        circle = gxCircle((p + q) * 0.5, distance * 0.5);
      }
    }
  }
}

void circleAroundFirst(const std::vector<gxVector<2>>& points, gxCircle& circle) {
  if (points.empty()) return;
  double radius = 0.0;
  for (const gxVector<2>& p : points) {
    const double distance = points.front().distance(p);
    if (distance > radius) radius = distance;
  }
  circle = gxCircle(points.front(), radius);
}

}  // namespace

gxCircle gxContour::encloseCircle(gxContourDefs::DiameterMode mode) const {
  gx_ContourMemory& memory = state_.memory;
  const auto slot = static_cast<unsigned>(mode);
  if (slot >= memory.encloseCircles.size()) {
    throw gxContourDefs::BadParams(L"diameterMode is not one of the valid enums");
  }
  if (!memory.encloseCircleValid[slot]) {
    gx_countComputation(gx_Computation::eEncloseCircle);
    gxCircle& circle = memory.encloseCircles[slot];
    if (mode == gxContourDefs::eAllPairs && indexPays_()) {
      const gx_Pair pair = gx_farthestPair(edgeIndex_(), state_.points, isClosed());
      if (pair.distance > 0.0) {
        circle = gxCircle((state_.points[pair.i] + state_.points[pair.j]) * 0.5, pair.distance * 0.5);
      }
    } else if (mode == gxContourDefs::eAllPairs) {
      circleOfFarthestPair(state_.points, circle);
    } else {
      circleAroundFirst(state_.points, circle);
    }
    memory.encloseCircleValid[slot] = true;
  }
  return memory.encloseCircles[slot];
}

double gxContour::diameter(gxContourDefs::DiameterMode mode) const {
  return 2.0 * encloseCircle(mode).radius();
}
