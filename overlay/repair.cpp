// Repair by rule: an arrangement with one operand.  The steps are told in internal/arrangement.cpp and the
// files that it names.  A single outline that meets itself nowhere is its own repair.
#include <overlay/internal/operand_rings.h>
#include <overlay/internal/outer_faces.h>
#include <overlay/internal/simple_ring.h>
#include <overlay/repair.h>

#include <cmath>

namespace {

double areaOf(const std::vector<gxVector<2>>& points) {
  if (points.size() < 3) return 0.0;
  const gxVector<2> origin = points[0];
  double twice = 0.0;
  gxVector<2> previous = points[1] - origin;
  for (std::size_t i = 2; i < points.size(); ++i) {
    const gxVector<2> next = points[i] - origin;
    twice += gf_Cross(previous, next);
    previous = next;
  }
  return std::fabs(twice / 2.0);
}

double areaBefore(const gxShapes& shapes) {
  double area = 0.0;
  for (const gxRegion* region : shapes.regions()) {
    area += areaOf(region->points());
    for (const gxRegion::HoleHandle& hole : region->holes()) area -= areaOf(hole->points());
  }
  return area;
}

// Returns how many rings have no edge between a kept face and one that is not.
std::size_t ringsWithoutBorder(const gx_Graph& graph, const gx_FaceLabels& labels) {
  std::vector<unsigned char> has(graph.edges().rings(), 0);
  for (std::uint32_t i = 0; i < graph.positions(); ++i) {
    if (labels.left[i] != labels.right[i]) has[graph.ringOf(graph.leaving(i).half)] = 1;
  }
  std::size_t without = 0;
  for (const unsigned char h : has) without += h == 0 ? 1U : 0U;
  return without;
}

void describe(const std::vector<gx_ResultRegion>& regions, gxRepairReport& report) {
  report.regions = regions.size();
  for (const gx_ResultRegion& region : regions) {
    report.areaAfter += areaOf(region.outline.points);
    report.holes += region.holes.size();
    for (const gx_ResultRing& hole : region.holes) report.areaAfter -= areaOf(hole.points);
  }
}

bool isSimple(const gxShapes& shapes, gx_Steps& steps) {
  if (shapes.regions().size() != 1) return false;
  const gxRegion& region = *shapes.regions()[0];
  return region.holes().empty() && gx_isSimpleRing(region.points(), steps);
}

// The repair of an outline that is right as it is, but perhaps the wrong way round.
gxRepaired asItIs(const gxRegion& region, gxFillRule rule) {
  std::vector<gx_ResultRegion> regions(1);
  regions[0].outline.points = region.points();
  const bool forward = gx_putInOrder(regions[0].outline.points);
  if (rule == gxFillRule::ePositive && !forward) regions.clear();
  gxRepairReport report;
  report.areaBefore = areaOf(region.points());
  describe(regions, report);
  report.ringsDropped = regions.empty() ? 1 : 0;
  report.nodes = 1;
  return {gx_regionSetOf(regions), report};
}

}  // namespace

gxRepaired gfRepair(const gxShapes& shapes, const gxOverlayOptions& options) {
  gx_Steps steps(options.limits);
  if (isSimple(shapes, steps)) return asItIs(*shapes.regions()[0], options.rule);
  gx_OperandRings rings;
  rings.add(shapes, 0, options.rule);
  const gx_Arrangement arrangement(rings.list, steps);
  gxRepairReport report;
  gx_FaceLabels labels;
  std::vector<gx_ResultRegion> regions;
  if (options.rule == gxFillRule::eOuter) {
    regions = gx_outerRegions(arrangement.graph(), labels);
  } else {
    labels = arrangement.label(1, gx_Membership::eUnion);
    regions = arrangement.regions(labels, gx_Keep());
  }
  report.areaBefore = areaBefore(shapes);
  describe(regions, report);
  report.ringsDropped = ringsWithoutBorder(arrangement.graph(), labels);
  report.nodes = arrangement.graph().nodes();
  report.ringsSnapped = arrangement.snappedRings();
  report.largestMove = arrangement.largestMove();
  return {gx_regionSetOf(regions), report};
}

gxRepaired gfRepair(const gxShapes& shapes, gxFillRule rule) {
  gxOverlayOptions options;
  options.rule = rule;
  return gfRepair(shapes, options);
}
