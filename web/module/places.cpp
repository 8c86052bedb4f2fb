// Points and shapes: where a point lies, how far from the border, and what is nearest.
#include "binding.h"

#include <cstddef>

namespace {

void addPlaceOf(const gxLocator& locator, const gxVector<2>& point, double tolerance,
                gxwebAnswer& answer) {
  const gxLocation location = locator.locate(point, tolerance);
  const gxNearest nearest = locator.nearest(point);
  answer.add(static_cast<double>(location.state));
  answer.add(locator.signedDistance(point));
  answer.add(static_cast<double>(location.region));
  answer.add(nearest.distance);
  answer.add(nearest.place);
  answer.add(location.status);
}

}  // namespace

/// Answers for each of the points: state (−1 outside, 0 border, 1 inside), signed distance, region, distance,
/// the nearest place (ring, edge, t, x, y), status.  On the border is what is within the tolerance of it.
GXWEB_API int gxweb_locate(gxwebShape* shape, const double* coordinates, std::size_t count,
                           double tolerance) {
  return gfAnswered([&](gxwebAnswer& answer) {
    const gxLocator& locator = shape->locator();
    answer.numbers.reserve(count * 10);
    for (std::size_t i = 0; i < count; ++i)
      addPlaceOf(locator, {coordinates[2 * i], coordinates[2 * i + 1]}, tolerance, answer);
  });
}
