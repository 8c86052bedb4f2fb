// Containment.
//
// Counting crossings of a ray:
//   1. A point outside the upright box of the outline has none.
//   2. A point within 1e-6 of a vertex is inside: one.
//   3. A point farther from the first vertex than the radius of the circle around that vertex which
//      holds all others is outside: none.  (A ray of twice that radius might end inside.)
//   4. The ray leaves through the middle of the first sector between neighbouring directions that is
//      wider than π / n, so that it grazes no vertex; along the x axis where there is none.
//      (Of many vertices the index gives the first few directions, internal/search/directions.)
//   5. Count its crossings with the outline, over twice the radius; both ways where asked, keeping
//      the smaller count.
//
// Only whether the count is odd matters to containment, and of most points a grid of cells knows that
// without a ray (internal/index/containment_grid), or, where there is no grid and few points, one look at
// every edge (internal/search/containment_scan); the others are left to the ray count.  The grid is made when
// scans and rays have cost about as much.
//
// Inside: an odd count, and not in a hole.  A hole asks the same question of itself, with its own
// holes, so an island in a hole is inside again.  The questions are kept on a list, not on the
// stack: holes may nest ten thousand deep.  A region that comes up again on its own path would
// nest for ever.
#include <cntr/internal/index/containment_grid.h>
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/outline/tolerances.h>
#include <cntr/internal/search/containment_scan.h>
#include <cntr/internal/search/directions.h>
#include <cntr/region.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <optional>
#include <unordered_map>
#include <vector>

namespace {

// Tells by looking at every vertex whether the point is on one.  A distance that is not a number is
// not greater than the limit either.
bool isOnVertex(const std::vector<gxVector<2>>& vertices, const gxVector<2>& point) {
  return std::any_of(vertices.begin(), vertices.end(), [&point](const gxVector<2>& vertex) {
    return !((vertex - point).len() > gx_kOnVertex);
  });
}

// Returns the unit vector through the middle of the first gap above π / n among all directions.
gxVector<2> throughFirstWideGap(const std::vector<gxVector<2>>& vertices, const gxVector<2>& point,
                                double wide) {
  std::vector<double> angles;
  angles.reserve(vertices.size());
  for (const gxVector<2>& vertex : vertices) angles.push_back(gx_directionTo(point, vertex));
  std::sort(angles.begin(), angles.end(),
            [](double a, double b) { return !std::isnan(a) && (std::isnan(b) || a < b); });
  for (std::size_t k = 0; k < angles.size(); ++k) {
    const double next = angles[k + 1 < angles.size() ? k + 1 : 0];
    const double gap = gxRadian(next - angles[k]).norm().toDouble();
    if (gap > wide) return {1.0, gxRadian(angles[k] + gap * 0.5)};
  }
  return {1.0, 0.0};
}

bool scanPays(std::size_t points) {
  return points >= 3 && points <= gx_kFewToScan;
}

// The regions of the path from the outermost to the one being asked, and the answers of those that were
// asked.  A hole that many regions share is asked once: otherwise levels that each refer twice to the
// next would double the questions from level to level.
class Path {
 public:
  /// Puts the region on the path, unless its answer is known: then returns that.
  std::optional<bool> enter(const gxRegion* region) {
    const auto [place, isNew] = states_.try_emplace(region, State::eBeingAsked);
    if (isNew) return std::nullopt;
    if (place->second == State::eBeingAsked) throw gxContourDefs::BadParams(L"holes nest too deeply");
    return place->second == State::eInside;
  }
  void leave(const gxRegion* region) { states_.erase(region); }
  void answer(const gxRegion* region, bool inside) {
    states_[region] = inside ? State::eInside : State::eOutside;
  }

 private:
  enum class State { eBeingAsked, eInside, eOutside };
  std::unordered_map<const gxRegion*, State> states_;
};

}  // namespace

// Counts what rays cost while there is no grid.  With one, nothing is written, so that the threads that
// ask keep the memory that they read.
void gxRegion::countRays_(std::uint64_t effort) const {
  if (memory_.containment.get() == nullptr) memory_.rayEffort.add(effort);
}

// The unit vector along the ray of step 4.
gxVector<2> gxRegion::rayFrom_(const gxVector<2>& point, std::uint64_t& effort) const {
  effort += gx_kRayEffort;
  const double wide = std::numbers::pi / static_cast<double>(points().size());
  double before = 0.0;
  double gap = 0.0;
  const auto throughGap = [&] { return gxVector<2>(1.0, gxRadian(before + gap * 0.5)); };
  if (indexPays_() && gx_firstWideGap(edgeIndex_(), points(), point, wide, before, gap)) {
    return throughGap();
  }
  effort += gx_kAllDirectionsEffort * points().size();
  if (indexPays_() && gx_firstWideGapOfAll(points(), point, wide, before, gap)) return throughGap();
  return throughFirstWideGap(points(), point, wide);
}

long gxRegion::insideCount(const gxVector<2>& point, bool bothWays) const {
  std::uint64_t effort = 0;
  return countAlongRay_(point, bothWays, effort);
}

long gxRegion::countAlongRay_(const gxVector<2>& point, bool bothWays, std::uint64_t& effort) const {
  if (!uprightBox_().within(point)) return 0;
  const bool onVertex = indexPays_() ? gx_isOnVertex(edgeIndex_(), points(), point, gx_kOnVertex)
                                     : isOnVertex(points(), point);
  if (onVertex) return 1;
  const double radius = radiusAroundFirst_();
  if (point.distance(points().front()) > radius) return 0;
  const std::uint64_t before = effort;
  const gxVector<2> ray = rayFrom_(point, effort) * (2.0 * radius);
  countRays_(effort - before);
  const auto crossings = [this, &point](const gxVector<2>& end) {
    return static_cast<long>(gxContour::intersections(gxLineSeg(point, end), false).size());
  };
  const long ahead = crossings(point + ray);
  return bothWays ? std::min(ahead, crossings(point - ray)) : ahead;
}

// The grid, made if there is none and it pays; null where it may not be used.
const gx_ContainmentGrid* gxRegion::containment_() const {
  if (points().size() < 3) return nullptr;
  if (const gx_ContainmentGrid* grid = memory_.containment.get()) return grid;
  if (memory_.rayEffort.spent() < gx_kGridEffort * points().size()) return nullptr;
  return memory_.containment.madeUnlessBusy(
      [this] { return gx_ContainmentGrid(points(), edgeIndex_(), radiusAroundFirst_()); });
}

bool gxRegion::isInOutline_(const gxVector<2>& point) const {
  using Answer = gx_ContainmentGrid::Answer;
  if (const gx_ContainmentGrid* grid = containment_()) {
    const Answer answer = grid->locate(points(), point);
    if (answer != Answer::eUnsure) return answer == Answer::eInside;
  } else if (scanPays(points().size())) {
    const gxRect box = uprightBox_();
    if (!box.within(point)) return false;
    countRays_(gx_scanEffort(points().size()));
    const Answer answer = gx_scanContainment(points(), box, radiusAroundFirst_(), point);
    if (answer != Answer::eUnsure) return answer == Answer::eInside;
  }
  return insideCount(point, false) % 2 != 0;
}

bool gxRegion::inside(const gxVector<2>& point, bool considerHoles) const {
  return isInOutline_(point) && (!considerHoles || holes_.empty() || isOutsideHoles_(point));
}

std::vector<bool> gxRegion::inside(const std::vector<gxVector<2>>& points, bool considerHoles) const {
  const bool askHoles = considerHoles && !holes_.empty();
  const std::size_t size = this->points().size();
  std::vector<bool> result(points.size());
  const std::uint64_t each = scanPays(size) ? gx_scanEffort(size) : gx_kRayEffort;
  const std::uint64_t expected = points.empty() ? 0 : (points.size() - 1) * each;
  if (expected >= gx_kGridEffort * size) countRays_(expected);
  for (std::size_t i = 0; i < points.size(); ++i) {
    result[i] = isInOutline_(points[i]) && (!askHoles || isOutsideHoles_(points[i]));
  }
  return result;
}

// Whether a point inside the outline is in no hole.
bool gxRegion::isOutsideHoles_(const gxVector<2>& point) const {
  struct Question {
    const gxRegion* region;
    std::size_t nextHole;
  };
  Path path;
  std::vector<Question> open;
  path.enter(this);
  open.push_back({this, 0});
  while (true) {
    // The region on top contains the point in its outline: the first hole that holds it decides.
    Question& top = open.back();
    bool answer = true;
    bool descended = false;
    while (answer && top.nextHole < top.region->holes_.size()) {
      const gxRegion* hole = &*top.region->holes_[top.nextHole++];
      if (const std::optional<bool> known = path.enter(hole)) {
        answer = !*known;
        continue;
      }
      if (hole->isInOutline_(point)) {
        open.push_back({hole, 0});
        descended = true;
        break;
      }
      path.leave(hole);
    }
    if (descended) continue;
    // When no hole holds the point, it is inside this one, and so not inside the region around it; an
    // answer of false goes back to the next hole of the region around.
    while (true) {
      path.answer(open.back().region, answer);
      open.pop_back();
      if (open.empty()) return answer;
      if (!answer) break;
      answer = false;
    }
  }
}
