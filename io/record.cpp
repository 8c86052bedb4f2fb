// Records: flat arrays on the side of files, objects on the side of the library.
//
// Holes go into a region through a stand-in.  The setter of holes refuses holes that touch or cross the
// outline, and files are full of those (touching is valid in the formats).  So each hole is set as two equal
// points beyond the outline, which meets nothing, and gets its own points afterwards; nothing has been
// remembered of the region by then.
#include <io/record.h>

#include <ch_core/cntrtmpl.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

using Points = std::vector<gxVector<2>>;

Points copied(std::span<const gxVector<2>> points) {
  return {points.begin(), points.end()};
}

std::vector<gxPtrHandle<gxRegion>> standIns(std::size_t count, const gxVector<2>& place) {
  std::vector<gxPtrHandle<gxRegion>> holes;
  holes.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    holes.push_back(gxPtrHandle<gxRegion>(new gxRegion(Points{place, place})));
  }
  return holes;
}

// A point that is not in the box of the outline, whatever that is.
gxVector<2> beyond(std::span<const gxVector<2>> outline) {
  double most = 0.0;
  for (const auto& p : outline) {
    if (p.x() > most) most = p.x();
  }
  const double past = most < 1e300 ? 2.0 * most + 1.0 : -std::numeric_limits<double>::max();
  return {past, 0.0};
}

gxRegion regionOf(const gxRecord& record, std::size_t firstRing, std::size_t endRing) {
  if (firstRing >= endRing) return gxRegion();
  const auto outline = record.ring(firstRing);
  gxRegion region(copied(outline));
  const std::size_t holes = endRing - firstRing - 1;
  if (holes == 0) return region;
  // An outline that the setter cannot ask about takes its own points last, as holes do.
  if (outline.size() < 2) region.points(Points{{0.0, 0.0}, {0.0, 1.0}});
  const auto handles = standIns(holes, beyond(region.points()));
  region.holes(handles);
  for (std::size_t i = 0; i < holes; ++i) handles[i]->points(copied(record.ring(firstRing + 1 + i)));
  region.points(copied(outline));
  return region;
}

bool sameBits(const Points& a, const Points& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(gxVector<2>)) == 0);
}

void addRing(const gxContour& contour, gxRecord& record) {
  const auto& points = contour.points();
  record.points.insert(record.points.end(), points.begin(), points.end());
  record.ringEnds.push_back(record.points.size());
}

// A region and its holes become a part; what lies in the holes waits, with its level.
void addParts(const gxRegion& region, gxRecord& record) {
  std::vector<gxPtrHandle_const<gxRegion>> waiting;
  const auto addOne = [&](const gxRegion& one) {
    addRing(one, record);
    for (const auto& hole : one.holes()) {
      addRing(*hole, record);
      waiting.insert(waiting.end(), hole->holes().begin(), hole->holes().end());
    }
    record.endPart();
  };
  addOne(region);
  for (std::size_t i = 0; i < waiting.size(); ++i) {
    const auto island = waiting[i];
    addOne(*island);
  }
}

void takeLabel(const gxContour& contour, gxRecord& record) {
  if (contour.label() == 0) return;
  record.id = {std::to_string(contour.label()), true, true};
}

// The edge points of a shape that has them.
void takeEdges(const gxContour& contour, gxRecord& record) {
  const auto* edges = dynamic_cast<const gxContourT<gxEdgelet>*>(&contour);
  if (edges == nullptr || edges->data().size() != contour.points().size()) return;
  for (const gxEdgelet& edge : edges->data()) {
    record.magnitudes.push_back(edge.magnitude());
    record.angles.push_back(edge.angle().toByte());
  }
}

void takeEdges(const gxRegion& region, gxRecord& record) {
  takeEdges(static_cast<const gxContour&>(region), record);
  for (const auto& hole : region.holes()) takeEdges(static_cast<const gxContour&>(*hole), record);
}

void keepWholeEdges(gxRecord& record) {
  if (record.magnitudes.size() == record.points.size()) return;
  record.magnitudes.clear();
  record.angles.clear();
}

}  // namespace

void gxRecord::clear() {
  kind = Kind::eEmpty;
  number = byte = 0;
  id.text.clear();
  id.isGiven = id.isNumber = hadMore = false;
  points.clear();
  ringEnds.clear();
  partEnds.clear();
  magnitudes.clear();
  angles.clear();
}

bool gxRecord::sameAs(const gxRecord& other) const {
  return kind == other.kind && id == other.id && ringEnds == other.ringEnds &&
         partEnds == other.partEnds && magnitudes == other.magnitudes && angles == other.angles &&
         sameBits(points, other.points);
}

std::span<const gxVector<2>> gxRecord::ring(std::size_t i) const {
  const std::size_t first = i == 0 ? 0 : ringEnds[i - 1];
  return std::span(points).subspan(first, ringEnds[i] - first);
}

std::size_t gxRecord::holeCount() const {
  if (kind != Kind::eRegion && kind != Kind::eSet) return 0;
  std::size_t outlines = 0;
  for (std::size_t p = 0; p < partCount(); ++p) outlines += partEnds[p] > firstRing(p) ? 1U : 0U;
  return ringCount() - outlines;
}

void gxRecord::endRing(bool closed) {
  const std::size_t first = ringEnds.empty() ? 0 : ringEnds.back();
  if (closed && points.size() > first + 1 && points.back() == points[first]) {
    points.pop_back();
    if (magnitudes.size() > points.size()) magnitudes.pop_back();
    if (angles.size() > points.size()) angles.pop_back();
  }
  ringEnds.push_back(points.size());
}

void gxRecord::dropEmptyRing() {
  if (kind == Kind::eSet || !points.empty() || ringCount() > 1) return;
  ringEnds.clear();
  partEnds.clear();
}

gxRegion gxRecord::toRegion() const {
  return partCount() == 0 ? regionOf(*this, 0, (std::min)(ringCount(), std::size_t{1})) : toRegion(0);
}

gxRegion gxRecord::toRegion(std::size_t part) const {
  return regionOf(*this, firstRing(part), partEnds[part]);
}

gxRegionSet gxRecord::toSet() const {
  std::vector<gxPtrHandle_const<gxRegion>> regions;
  for (std::size_t p = 0; p < partCount(); ++p) {
    if (partEnds[p] > firstRing(p)) {
      regions.push_back(gxPtrHandle_const<gxRegion>(new gxRegion(toRegion(p))));
    }
  }
  return gxRegionSet(regions);
}

gxContour gxRecord::toContour() const {
  return gxContour(ringCount() == 0 ? Points() : copied(ring(0)), kind != Kind::eOpen);
}

void gxRecord::assign(const gxRegion& region) {
  clear();
  addParts(region, *this);
  kind = partCount() > 1 ? Kind::eSet : Kind::eRegion;
  takeLabel(region, *this);
  takeEdges(region, *this);
  keepWholeEdges(*this);
  dropEmptyRing();
}

void gxRecord::assign(const gxRegionSet& set) {
  clear();
  kind = Kind::eSet;
  for (const auto& region : set.regions()) {
    addParts(*region, *this);
    takeEdges(*region, *this);
  }
  keepWholeEdges(*this);
  dropEmptyRing();
}

void gxRecord::assign(const gxContour& contour) {
  clear();
  kind = contour.isClosed() ? Kind::eRegion : Kind::eOpen;
  addRing(contour, *this);
  endPart();
  takeLabel(contour, *this);
  takeEdges(contour, *this);
  keepWholeEdges(*this);
  dropEmptyRing();
}
