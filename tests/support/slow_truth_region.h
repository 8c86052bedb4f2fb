/// What regions answer, computed the slow and plain way; see slow_truth_contour.h.
#pragma once

#include <support/slow_truth_contour.h>
#include <support/slow_truth_stats.h>

namespace slow {

/// A region: its outline, always closed, and its holes.
struct Region {
  Points outline;
  std::vector<Region> holes;
};

/// Throws EmptyContour below 3 points.
void checkRegion(const Points& outline);

// ---- Queries ------------------------------------------------------------------------------------

long insideCount(const Points& outline, const gxVector<2>& point, bool bothWays);
/// `box` is what the region takes for its upright rectangle.
long insideCount(const Points& outline, const gxRect& box, const gxVector<2>& point, bool bothWays);
bool inside(const Region& region, const gxVector<2>& point, bool considerHoles);
long closestVertexIndex(const Region& region, const gxVector<2>& point, bool considerHoles,
                        long& holeIndex);
gxVector<2> closestPoint(const Region& region, const gxVector<2>& point, bool vertexOnly,
                         bool considerHoles);
double distToPoint(const Region& region, const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                   bool insideIsZero);
Points intersections(const Region& region, const Outline& other, bool considerHoles);
Points intersections(const Region& region, const gxLineSeg& seg, bool countEndContacts,
                     bool considerHoles);

// ---- Measures -----------------------------------------------------------------------------------

double area(const Region& region, bool considerHoles);
gxVector<2> centerOfMass(const Region& region, bool considerHoles);
gxMatrix<2> inertiaMatrix(const Region& region, bool considerHoles);

// ---- Holes and repair ---------------------------------------------------------------------------

/// Throws what setting these holes throws.
void checkHoles(const Region& region, const std::vector<Region>& holes);

/// The outside of the outline, walked around, as it comes.
Points outsideWalk(const Points& outline);
/// One loop of it.
Points hullOfWalk(const Points& walked);
/// Of a region whose outline does not cross itself: that region.
Region regularize(const Region& region);
Region outerHull(const Region& region);

Points splice(const Points& outline, const Points& other);

}  // namespace slow
