// Boolean operations: an arrangement of all operands at once, and one question to its faces.  A union of many
// shapes is one operand of many regions.
//
// A half-plane is a rectangle on the left of the line that reaches far beyond the shape.
#include <cntr/contourdefs.h>
#include <overlay/boolean.h>
#include <overlay/internal/cutting.h>
#include <overlay/internal/operand_rings.h>
#include <velstd/vector.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using Points = std::vector<gxVector<2>>;
using Question = gx_Membership::Question;

gxRegionSet combined(const std::vector<const gxShapes*>& operands, Question question,
                     const gxOverlayOptions& options) {
  gx_OperandRings rings;
  for (std::size_t i = 0; i < operands.size(); ++i) {
    rings.add(*operands[i], static_cast<std::uint32_t>(i), options.rule);
  }
  gx_Steps steps(options.limits);
  const gx_Arrangement arrangement(rings.list, steps);
  return gx_regionSetOf(arrangement.regions(arrangement.label(operands.size(), question), gx_Keep()));
}

bool isFinite(const gxVector<2>& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

// The box of all outlines; holes outside of them hold nothing.
gx_Box boxOf(const gxShapes& shapes) {
  gx_Box box;
  for (const gxRegion* region : shapes.regions()) {
    for (const gxVector<2>& p : region->points()) {
      if (isFinite(p)) box.add(p);
    }
  }
  return box;
}

// An arrangement of shapes, operand 0, and a chain, its last ring.
struct Knifed {
  Knifed(const gxShapes& shapes, const gxContour& chain, const gxOverlayOptions& options)
      : steps(options.limits) {
    rings.add(shapes, 0, options.rule);
    points = chain.points();
    if (chain.isClosed() && points.size() > 1) points.push_back(gxVector<2>(points[0]));
    ring = rings.list.add(points, {}, false);
    arrangement = std::make_unique<gx_Arrangement>(rings.list, steps);
    labels = arrangement->label(1, gx_Membership::eUnion);
  }

  gx_OperandRings rings;
  gx_Steps steps;
  Points points;
  std::uint32_t ring = 0;
  std::unique_ptr<gx_Arrangement> arrangement;
  gx_FaceLabels labels;
};

}  // namespace

gxRegionSet gfUnion(const gxShapes& a, const gxShapes& b, const gxOverlayOptions& options) {
  return combined({&a, &b}, gx_Membership::eUnion, options);
}

gxRegionSet gfIntersection(const gxShapes& a, const gxShapes& b, const gxOverlayOptions& options) {
  return combined({&a, &b}, gx_Membership::eIntersection, options);
}

gxRegionSet gfDifference(const gxShapes& a, const gxShapes& b, const gxOverlayOptions& options) {
  return combined({&a, &b}, gx_Membership::eDifference, options);
}

gxRegionSet gfSymmetricDifference(const gxShapes& a, const gxShapes& b,
                                  const gxOverlayOptions& options) {
  return combined({&a, &b}, gx_Membership::eSymmetric, options);
}

gxRegionSet gfUnion(const gxShapes& shapes, const gxOverlayOptions& options) {
  return combined({&shapes}, gx_Membership::eUnion, options);
}

gxRegionSet gfIntersection(const std::vector<gxShapes>& shapes, const gxOverlayOptions& options) {
  std::vector<const gxShapes*> operands;
  operands.reserve(shapes.size());
  for (const gxShapes& s : shapes) operands.push_back(&s);
  return combined(operands, gx_Membership::eIntersection, options);
}

gxRegionSet gfClip(const gxShapes& shapes, const gxRect& window, const gxOverlayOptions& options) {
  const gxVector<2>& low = window.origin();
  const gxVector<2>& high = window.corner();
  if (!(low.x() <= high.x() && low.y() <= high.y())) return gxRegionSet();
  const gxRegion region(Points{low, {high.x(), low.y()}, high, {low.x(), high.y()}});
  return gfIntersection(shapes, region, options);
}

gxRegionSet gfClipLeft(const gxShapes& shapes, const gxVector<2>& from, const gxVector<2>& to,
                       const gxOverlayOptions& options) {
  if (!isFinite(from) || !isFinite(to) || from == to) {
    throw gxContourDefs::BadParams(L"a half-plane needs two different finite points");
  }
  const gx_Box box = boxOf(shapes);
  if (!(box.lowX <= box.highX)) return gfUnion(shapes, options);
  constexpr double kLargest = 1e300;
  const double size =
      std::max({std::fabs(box.lowX), std::fabs(box.lowY), std::fabs(box.highX), std::fabs(box.highY),
                std::fabs(from.x()), std::fabs(from.y()), std::fabs(to.x()), std::fabs(to.y())});
  if (size > kLargest)
    throw gxContourDefs::BadParams(L"coordinates above 1e300 cannot be clipped by a half-plane");
  // Every point of the box is nearer than that to both points of the line.
  const gxVector<2> along = (to - from).unit() * (8.0 * size);
  const gxVector<2> aside(-along.y(), along.x());
  const gxVector<2> start = from - along;
  const gxVector<2> end = from + along;
  return gfIntersection(shapes, gxRegion(Points{start, end, end + aside, start + aside}), options);
}

gxRegionSet gfSplit(const gxShapes& shapes, const gxContour& knife, const gxOverlayOptions& options) {
  const Knifed k(shapes, knife, options);
  const gx_Graph& graph = k.arrangement->graph();
  const std::vector<unsigned char> cuts = gx_cuts(graph, k.labels, gx_Keep());
  return gx_regionSetOf(gx_traceRegions(graph, k.labels, gx_Keep(), false, &cuts));
}

gxCutContour gfCut(const gxContour& contour, const gxShapes& shapes, const gxOverlayOptions& options) {
  const Knifed k(shapes, contour, options);
  std::vector<gx_ChainPart> parts = gx_partsOf(k.arrangement->graph(), k.labels, gx_Keep(), k.ring);
  gxCutContour result;
  const bool staysOnOneSide = contour.isClosed() && parts.size() == 1;
  for (gx_ChainPart& part : parts) {
    if (staysOnOneSide) part.points.pop_back();
    std::vector<gxContour>& list = part.side == gx_ChainPart::eInside    ? result.inside
                                   : part.side == gx_ChainPart::eOutside ? result.outside
                                                                         : result.border;
    list.emplace_back(part.points, staysOnOneSide, contour.label());
  }
  return result;
}

gxRegionSet gfRegionsOf(const gxContour& outline, const std::vector<gxContour>& holes,
                        const gxOverlayOptions& options) {
  gx_RingList rings;
  const std::uint32_t ring =
      rings.add(outline.points(), {0, gx_EdgeSet::kNone, gx_ringRule(options.rule, false)});
  for (const gxContour& hole : holes)
    rings.add(hole.points(), {0, ring, gx_ringRule(options.rule, true)});
  gx_Steps steps(options.limits);
  const gx_Arrangement arrangement(rings, steps);
  return gx_regionSetOf(arrangement.regions(arrangement.label(1, gx_Membership::eUnion), gx_Keep()));
}
