// The four measures of everyday use, from the sums that the gauges of descriptors and moments take too, in
// the same frame: so they agree bit by bit, without the hull that those need for the rest.
#include <gauge/internal/border_length.h>
#include <gauge/internal/ring_moments.h>
#include <gauge/measure.h>

#include <ostream>
#include <vector>

namespace {

std::vector<gx_Ring> ringsOf(std::span<const gxMeasuredRing> given, bool closed) {
  std::vector<gx_Ring> rings;
  rings.reserve(given.size());
  long region = -1;
  for (const auto& ring : given) {
    if (!ring.isHole) ++region;
    rings.push_back({ring.points, closed, ring.isHole ? 1 : 0, 0, region});
  }
  return rings;
}

// The box of the outlines, as descriptors have it.
gx_Box outlineBox(const std::vector<gx_Ring>& rings) {
  gx_Box box = gx_boxOf(rings[0].points);
  for (std::size_t i = 1; i < rings.size(); ++i) {
    if (rings[i].depth != 0) continue;
    const gx_Box other = gx_boxOf(rings[i].points);
    if (other.lowX < box.lowX) box.lowX = other.lowX;
    if (other.lowY < box.lowY) box.lowY = other.lowY;
    if (other.highX > box.highX) box.highX = other.highX;
    if (other.highY > box.highY) box.highY = other.highY;
  }
  return box;
}

bool isFlat(const std::vector<gx_Ring>& rings) {
  for (const auto& ring : rings) {
    if (ring.depth == 0 && !gx_onOneLine(ring.points)) return false;
  }
  return true;
}

void fillArea(const std::vector<gx_Ring>& rings, const gx_Frame& frame, gxMeasure& m) {
  const gxVector<2>& first = rings[0].points[0];
  const gx_MomentSums sums = gx_momentsOf(rings, frame, first, false);
  if (sums.area == 0.0 || isFlat(rings)) {
    m.status = gxStatus::eFlat;
    m.centre = gx_borderCentre(rings, frame);
    return;
  }
  m.status = sums.area < 0.0 ? gxStatus::eNegative : gxStatus::eOk;
  m.area = frame.areaFrom(sums.area);
  m.centre = frame.unscaled(frame.scaled(first) + sums.centre);
}

}  // namespace

gxMeasure gfMeasure(std::span<const gxMeasuredRing> given, bool closed) {
  gxMeasure m;
  const std::vector<gx_Ring> rings = ringsOf(given, closed);
  if (rings.empty() || rings[0].points.empty()) return m;
  if (!gx_allFinite(rings)) {
    m.status = gxStatus::eNotFinite;
    m.area = m.length = gxMeasure::kNaN;
    return m;
  }
  const gx_Box box = outlineBox(rings);
  const gx_Frame frame(box);
  double length = 0.0;
  for (const auto& ring : rings) length += gx_ringLength(ring, frame);
  m.length = frame.lengthFrom(length);
  m.low = {box.lowX, box.lowY};
  m.high = {box.highX, box.highY};
  if (closed) {
    fillArea(rings, frame, m);
  } else {
    m.status = gxStatus::eNotClosed;
    m.area = gxMeasure::kNaN;
    m.centre = gx_borderCentre(rings, frame);
  }
  return m;
}

gxMeasure gfMeasure(std::span<const gxVector<2>> points, bool closed) {
  const gxMeasuredRing ring{points, false};
  return gfMeasure(std::span(&ring, 1), closed);
}

std::ostream& operator<<(std::ostream& out, const gxMeasure& m) {
  out << "area " << m.area << " length " << m.length << " centre (" << m.centre.x() << ", "
      << m.centre.y() << ") box (" << m.low.x() << ", " << m.low.y() << ") to (" << m.high.x() << ", "
      << m.high.y() << ')';
  if (m.status != gxStatus::eOk) out << ' ' << m.status;
  return out;
}

std::ostream& operator<<(std::ostream& out, const gxMeasuredRing& ring) {
  return out << (ring.isHole ? "hole of " : "outline of ") << ring.points.size() << " points";
}
