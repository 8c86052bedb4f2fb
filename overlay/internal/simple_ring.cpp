// A ring that meets itself nowhere is a region as it stands: most outlines that come to a repair are.  Knowing it takes
// the search for meeting edges and no more; noding, graph, labels and trace would give the same ring back, and took
// three quarters of the time for outlines of a few points, half of it for large ones.
#include <overlay/internal/predicates.h>
#include <overlay/internal/ring_boxes.h>
#include <overlay/internal/simple_ring.h>

#include <algorithm>
#include <cstddef>

namespace {

// Tells whether the way stops or turns back on itself at a vertex.
bool hasFold(const gx_RingBoxes& ring) {
  std::size_t before = ring.size() - 1;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    if (ring.from(i) == ring.to(i) || gx_isFold(ring.from(before), ring.from(i), ring.to(i)))
      return true;
    before = i;
  }
  return false;
}

}  // namespace

bool gx_isSimpleRing(const std::vector<gxVector<2>>& points, gx_Steps& steps) {
  if (points.size() < 3) return false;
  const gx_RingBoxes ring(points);
  if (!ring.isFinite() || hasFold(ring)) return false;
  const auto meet = [&ring](std::size_t i, std::size_t j) {
    return gx_meetingOf(ring.from(i), ring.to(i), ring.from(j), ring.to(j)).kind !=
           gx_EdgeMeeting::eApart;
  };
  return !ring.forEachPair(meet, [&steps](std::size_t pairs) { steps.looked(pairs); });
}

bool gx_putInOrder(std::vector<gxVector<2>>& points) {
  std::rotate(points.begin(), std::min_element(points.begin(), points.end(), gx_before), points.end());
  const bool forward = gx_Orientation(points.back(), points[0], points[1]) > 0;
  if (!forward) std::reverse(points.begin() + 1, points.end());
  return forward;
}
