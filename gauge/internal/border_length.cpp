// Lengths in the scale of a frame, where no square of a difference leaves the range.  Short edges are
// added in blocks, so that a million of them lose no digits.
#include <cntr/internal/outline/edge_walk.h>
#include <gauge/internal/border_length.h>
#include <gauge/internal/edge_terms.h>
#include <gauge/internal/segments.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

double gx_ringLength(const gx_Ring& ring, const gx_Frame& frame) {
  const auto& points = ring.points;
  if (points.size() < 2) return 0.0;
  double sum =
      ring.closed ? gx_lengthOf(frame.scaled(points.front()) - frame.scaled(points.back())) : 0.0;
  gxVector<2> a = frame.scaled(points[0]);
  for (std::size_t i = 1; i < points.size();) {
    double block = 0.0;
    for (const std::size_t end = std::min(i + gx_kLengthBlock, points.size()); i < end; ++i) {
      const gxVector<2> b = frame.scaled(points[i]);
      block += gx_lengthOf(b - a);
      a = b;
    }
    sum += block;
  }
  return sum;
}

gxVector<2> gx_borderCentre(std::span<const gx_Ring> rings, const gx_Frame& frame) {
  const auto begun =
      std::find_if(rings.begin(), rings.end(), [](const gx_Ring& ring) { return !ring.points.empty(); });
  if (begun == rings.end()) return {NAN, NAN};
  const gxVector<2> first = begun->points[0];
  const gxVector<2> origin = frame.scaled(first);
  double total = 0.0;
  gxVector<2> weighted;
  for (const gx_Ring& ring : rings) {
    gx_forEachEdge(ring.points.size(), ring.closed, [&](std::size_t i, std::size_t j, std::size_t) {
      const gxVector<2> a = frame.scaled(ring.points[i]) - origin;
      const gxVector<2> b = frame.scaled(ring.points[j]) - origin;
      const double length = gx_lengthOf(b - a);
      total += length;
      weighted += (a + b) * (0.5 * length);
    });
  }
  if (total == 0.0) return first;
  return frame.unscaled(origin + weighted / total);
}
