// An outline and a poly-line: edges, the nearest point, crossings, extremes.

#include <cntr/contour.h>

#include <cstdio>

int main() {
  const std::vector<gxVector<2>> corners = {{0, 0}, {40, 0}, {40, 30}, {0, 30}};
  const gxContour outline(corners);             // closed: edge 0 leads from the last corner to the first
  const gxContour polyLine(corners, false, 7);  // open, with the label 7
  std::printf("length: %g closed, %g open\n", outline.length(), polyLine.length());

  const gxVector<2> probe(-5, 12);
  const gxVector<2> nearest = outline.closestPoint(probe, false);
  std::printf("nearest to (-5, 12): (%g, %g) on the outline, %g away; on the poly-line %g away\n",
              nearest.x(), nearest.y(), outline.distToPoint(probe, false),
              polyLine.distToPoint(probe, false));

  for (const gxVector<2>& hit : outline.intersections(gxLineSeg({-10, 20}, {50, 10}), true)) {
    std::printf("the segment crosses at (%.3f, %.3f)\n", hit.x(), hit.y());
  }

  const gxVector<2> farthest = outline.extremalVertexPosition(gxRadian(gxDegree(30)));
  const gxCircle circle = outline.encloseCircle(gxContourDefs::eAllPairs);
  std::printf("farthest towards 30 degrees: (%g, %g); diameter %g\n", farthest.x(), farthest.y(),
              2 * circle.radius());

  try {
    static_cast<void>(gxContour().closestPoint(probe, false));
  } catch (const gxContourDefs::EmptyContour& error) {
    std::printf("refused: %s\n", error.what());
  }
}
