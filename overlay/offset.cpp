// Growing and shrinking.
//
//  1. The shape is settled: what it holds, as valid regions that do not touch along edges.
//  2. Growing: the raw curve around every ring (internal/offset_walk), all of them counted as one.  What is
//     covered has a winding number above 0.
//  3. Shrinking is growing the outside: the same around the rings in the other direction.  What no piece
//     covers has the number −1 there; turned around once more, +1, so that both ask for the same.
//  4. A path is a ring of no width: there and back, or once each way around.
// A distance below 64 units in the last place would give strips whose corners are not where they ought to
// be by rounding alone, and counts as 0.
#include <overlay/offset.h>

#include <overlay/internal/arranged.h>
#include <overlay/internal/offset_walk.h>
#include <overlay/internal/operand_rings.h>

#include <cntr/contourdefs.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

using V = gxVector<2>;
using Ring = std::vector<V>;
using Rings = std::vector<Ring>;

void refuse(const gxOffsetForm& form, double distance) {
  using BadParams = gxContourDefs::BadParams;
  if (!std::isfinite(distance)) throw BadParams(L"the distance of an offset is not finite");
  if (!(form.mitreLimit >= 1.0)) throw BadParams(L"the mitre limit of an offset is below 1");
  if (!(form.arcTolerance >= 0.0)) throw BadParams(L"the arc tolerance of an offset is below 0");
}

bool countsAsZero(double distance, const Rings& rings) {
  double most = 0.0;
  for (const Ring& ring : rings) {
    for (const V& p : ring) most = std::max({most, std::fabs(p.x()), std::fabs(p.y())});
  }
  constexpr double kUnits = 64.0;
  return distance <= kUnits * (most - std::nextafter(most, 0.0)) || distance == 0.0;
}

gx_ArcDirections arcsOf(double distance, const gxOffsetForm& form) {
  constexpr double kChords = 1.0 / 500.0;
  return {distance, form.arcTolerance > 0.0 ? form.arcTolerance : kChords * distance};
}

// What the walks cover together.
std::vector<gx_ResultRegion> covered(const Rings& walks, const gxOverlayLimits& limits,
                                     gxOffsetReport& report) {
  gx_RingList list;
  for (const Ring& walk : walks) {
    gx_RingRole role;
    role.rule = gx_RingRule::ePositive;
    if (list.size() != 0) role.together = 0;
    list.add(walk, role);
    report.walkPoints += walk.size();
  }
  gx_Steps steps(limits);
  const gx_Arrangement arrangement(list, steps);
  report.snappedRings = arrangement.snappedRings();
  report.largestMove = arrangement.largestMove();
  return arrangement.regions(arrangement.label(1, gx_Membership::eUnion), gx_Keep());
}

Rings ringsOf(const std::vector<gx_ResultRegion>& regions) {
  Rings rings;
  for (const gx_ResultRegion& region : regions) {
    rings.push_back(region.outline.points);
    for (const gx_ResultRing& hole : region.holes) rings.push_back(hole.points);
  }
  return rings;
}

std::vector<gx_ResultRegion> offsetOf(std::vector<gx_ResultRegion> regions, double distance,
                                      const gxOffsetForm& form, const gxOverlayLimits& limits,
                                      gxOffsetReport& report) {
  Rings rings = ringsOf(regions);
  if (countsAsZero(std::fabs(distance), rings)) {
    report.countedAsZero = true;
    return regions;
  }
  const gx_ArcDirections arcs = arcsOf(std::fabs(distance), form);
  Rings walks;
  for (Ring& ring : rings) {
    if (distance < 0.0) std::reverse(ring.begin(), ring.end());
    gx_walkAround(ring, std::fabs(distance), form, arcs, false, walks);
  }
  if (distance < 0.0) {
    for (Ring& walk : walks) std::reverse(walk.begin(), walk.end());
  }
  return covered(walks, limits, report);
}

std::vector<gx_ResultRegion> settled(const gxShapes& shape, const gxOverlayLimits& limits) {
  gx_Steps steps(limits);
  return gx_settled(shape, steps);
}

// ---- Paths ----------------------------------------------------------------------------------------

Ring withoutRepeated(const gxContour& path) {
  Ring points;
  for (const V& p : path.points()) {
    if (!std::isfinite(p.x()) || !std::isfinite(p.y())) {
      throw gxContourDefs::BadParams(L"point " + std::to_wstring(&p - path.points().data()) +
                                     L" of the path is not finite");
    }
    if (points.empty() || !(points.back() == p)) points.push_back(p);
  }
  while (path.isClosed() && points.size() > 1 && points.back() == points.front()) points.pop_back();
  return points;
}

// Around a single point.
Ring dot(const V& p, double distance, const gxOffsetForm& form, const gx_ArcDirections& arcs) {
  Ring ring;
  const auto add = [&](const V& direction) { ring.push_back(p + direction * distance); };
  if (form.ends == gxEnds::eSquare) {
    for (const V& corner : {V(-1, -1), V(1, -1), V(1, 1), V(-1, 1)}) add(corner);
  } else if (form.ends == gxEnds::eRound) {
    for (const V& from : {V(1, 0), V(-1, 0)}) {
      add(from);
      arcs.between(from, -from, add);
    }
  }
  return ring;
}

Rings walksAround(const Ring& points, bool closed, double distance, const gxOffsetForm& form) {
  const gx_ArcDirections arcs = arcsOf(distance, form);
  Rings walks;
  if (points.size() == 1) {
    walks.push_back(dot(points[0], distance, form, arcs));
  } else if (closed) {
    gx_walkAround(points, distance, form, arcs, false, walks);
    if (points.size() > 2) {
      gx_walkAround(Ring(points.rbegin(), points.rend()), distance, form, arcs, false, walks);
    }
  } else {
    Ring ring = points;
    ring.insert(ring.end(), points.rbegin() + 1, points.rend() - 1);
    gx_walkAround(ring, distance, form, arcs, true, walks);
  }
  return walks;
}

}  // namespace

gxRegionSet gfOffset(const gxShapes& shape, double distance, const gxOffsetForm& form,
                     const gxOverlayLimits& limits, gxOffsetReport* report) {
  refuse(form, distance);
  gxOffsetReport own;
  gxRegionSet result = gx_regionSetOf(offsetOf(settled(shape, limits), distance, form, limits, own));
  if (report != nullptr) *report = own;
  return result;
}

gxRegionSet gfOffsetPath(const gxContour& path, double distance, const gxOffsetForm& form,
                         const gxOverlayLimits& limits, gxOffsetReport* report) {
  refuse(form, distance);
  if (distance < 0.0) throw gxContourDefs::BadParams(L"the distance of a path's offset is below 0");
  gxOffsetReport own;
  const Ring points = withoutRepeated(path);
  own.countedAsZero = countsAsZero(distance, {points});
  gxRegionSet result;
  if (!points.empty() && !own.countedAsZero) {
    result = gx_regionSetOf(covered(walksAround(points, path.isClosed(), distance, form), limits, own));
  }
  if (report != nullptr) *report = own;
  return result;
}

gxToleranceBand gfToleranceBand(const gxShapes& shape, double inward, double outward,
                                const gxOffsetForm& form, const gxOverlayLimits& limits) {
  refuse(form, inward);
  refuse(form, outward);
  if (inward < 0.0 || outward < 0.0) {
    throw gxContourDefs::BadParams(L"a distance of a tolerance band is below 0");
  }
  gxOffsetReport report;
  const std::vector<gx_ResultRegion> whole = settled(shape, limits);
  const auto inside = offsetOf(whole, -inward, form, limits, report);
  const auto outside = offsetOf(whole, outward, form, limits, report);
  gx_RingList list;
  const Rings rings[] = {ringsOf(outside), ringsOf(inside)};
  for (std::uint32_t operand = 0; operand < 2; ++operand) {
    // Valid regions in each other's holes: all rings count together, by even-odd.
    const auto first = static_cast<std::uint32_t>(list.size());
    for (const Ring& ring : rings[operand]) {
      gx_RingRole role;
      role.operand = operand;
      if (list.size() != first) role.together = first;
      list.add(ring, role);
    }
  }
  gx_Steps steps(limits);
  const gx_Arrangement arrangement(list, steps);
  const auto between = arrangement.regions(arrangement.label(2, gx_Membership::eDifference), gx_Keep());
  return {gx_regionSetOf(inside), gx_regionSetOf(outside), gx_regionSetOf(between)};
}
