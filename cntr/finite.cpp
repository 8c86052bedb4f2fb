// A strict check of coordinates.
//
// Regions are gone through with a list instead of recursion, as holes may nest without end; each entry knows the
// one above it, and only where something is found is its place put into words.
#include <cntr/finite.h>

#include <velstd/number_text.h>

#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kMostRings = 10'000'000;
constexpr std::size_t kNone = static_cast<std::size_t>(-1);

struct Ring {
  const gxRegion* region;
  std::size_t above;  // the ring that it is a hole of, by its place in the list; kNone for an outline
  std::size_t index;  // among the holes of that
};

std::size_t firstNotFinite(std::span<const gxVector<2>> points) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (!std::isfinite(points[i].x()) || !std::isfinite(points[i].y())) return i;
  }
  return kNone;
}

[[noreturn]] void refuse(std::span<const gxVector<2>> points, std::size_t index,
                         const std::string& place) {
  const std::string text = "point " + std::to_string(index) + place + " is (" +
                           gfNumberText(points[index].x()) + ", " + gfNumberText(points[index].y()) +
                           "): coordinates have to be finite";
  throw gxContourDefs::BadParams(std::wstring(text.begin(), text.end()));
}

void check(std::span<const gxVector<2>> points) {
  const std::size_t found = firstNotFinite(points);
  if (found != kNone) refuse(points, found, "");
}

std::string placeOf(const std::vector<Ring>& rings, std::size_t at) {
  std::string place;
  for (; rings[at].above != kNone; at = rings[at].above) {
    place += " of hole " + std::to_string(rings[at].index);
  }
  return place;
}

void check(const gxRegion& region, const std::string& where) {
  std::vector<Ring> rings{{&region, kNone, 0}};
  for (std::size_t at = 0; at < rings.size(); ++at) {
    const gxRegion& here = *rings[at].region;
    const std::size_t found = firstNotFinite(here.points());
    if (found != kNone) refuse(here.points(), found, placeOf(rings, at) + where);
    const std::vector<gxRegion::HoleHandle>& holes = here.holes();
    for (std::size_t i = 0; i < holes.size(); ++i) rings.push_back({&*holes[i], at, i});
    if (rings.size() > kMostRings) throw gxContourDefs::BadParams(L"holes nest too deeply");
  }
}

}  // namespace

void gfCheckFinite(std::span<const gxVector<2>> points) {
  check(points);
}

void gfCheckFinite(const gxContour& contour) {
  check(contour.points());
}

void gfCheckFinite(const gxRegion& region) {
  check(region, "");
}

void gfCheckFinite(const gxRegionSet& set) {
  const std::vector<gxRegionSet::RegionHandle> regions = set.regions();
  for (std::size_t i = 0; i < regions.size(); ++i) check(*regions[i], " of region " + std::to_string(i));
}
