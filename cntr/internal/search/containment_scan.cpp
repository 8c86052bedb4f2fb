// Even-odd over all edges, four at a time and without a branch.
//
// The answer is that of the counted ray under the conditions a to e of
// internal/index/containment_grid.cpp; each is looked at here for every edge as it comes by:
//   a. a vertex nearer than its limit, b. an edge nearer than the tolerance;
//   c. the distance from the first vertex, before the scan (beyond it the ray answers at once);
//   d, e. the coordinates, by the box.
// Everything is seen from the point.  With A and B the ends of an edge, the edge crosses the ray along x
// where the signs of A.y and B.y differ and A × B has the sign of B.y − A.y.  In plain arithmetic the sign
// of A × B is sure where its magnitude is above 1e-15 of its two products together (three roundings of
// 1.1e-16 each); where it is not, the scan cannot tell, and no exact test is needed.  A NaN makes every
// vertex it is in one that is not safely far.
#include <cntr/internal/outline/four.h>
#include <cntr/internal/outline/tolerances.h>
#include <cntr/internal/search/containment_scan.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace {

using Answer = gx_ContainmentGrid::Answer;
using Points = std::vector<gxVector<2>>;

// Three roundings, and something for good measure.
constexpr double kRoundingOfCross = 1e-15;
// Products below this have lost digits.
constexpr double kVanishing = 1e-290;

using Four = gx_Four;
using Truth = decltype(Four() < Four());

struct Ends {
  Four x;
  Four y;
};

// What the edges looked at so far say.
struct Scan {
  gxVector<2> point;
  double nearVertex = 0.0;  // a square
  Truth odd = {};           // an odd number of them crosses the ray
  Truth unsure = {};        // one of them came too near

  // Adds the edges from starts[k] to ends[k].
  GX_FOURFOLD void add(const gxVector<2>* starts, const gxVector<2>* ends) {
    const Four none = {};
    const Four from = {point.x(), point.y(), point.x(), point.y()};
    Ends a;
    Ends b;
    gx_seeFour(starts, from, a.x, a.y);
    gx_seeFour(ends, from, b.x, b.y);
    const Four dx = b.x - a.x;
    const Four dy = b.y - a.y;
    const Four length = dx * dx + dy * dy;
    const Four left = a.x * b.y;
    const Four right = a.y * b.x;
    const Four cross = left - right;
    const Four magnitude = (left < none ? -left : left) + (right < none ? -right : right);
    const Four size = cross < none ? -cross : cross;
    const Truth upward = b.y > none;
    const Truth crosses = (a.y > none) ^ upward;
    const Truth footBetween = (a.x * dx + a.y * dy < none) & (b.x * dx + b.y * dy > none);
    const Truth far = b.x * b.x + b.y * b.y > none + nearVertex;
    unsure |= ~far;
    unsure |= footBetween & (cross * cross <= gx_kSurelyApart * gx_kSurelyApart * length);
    unsure |= crosses & ~(size > kRoundingOfCross * magnitude + kVanishing);
    odd ^= crosses & ((cross > none) ^ ~upward);
  }

  // Adds all edges.  The last few are filled up with the last point, whose edge to itself crosses nothing.
  GX_FOURFOLD void addAll(const Points& points) {
    std::array<gxVector<2>, 8> rest;
    rest[0] = points.back();
    std::copy_n(points.begin(), 3, rest.begin() + 1);
    rest[4] = points[2];
    add(rest.data(), rest.data() + 1);
    std::size_t i = 3;
    for (; i + 4 <= points.size(); i += 4) add(&points[i - 1], &points[i]);
    if (i == points.size()) return;
    for (std::size_t k = 0; k < 5; ++k) rest[k] = points[std::min(i - 1 + k, points.size() - 1)];
    add(rest.data(), rest.data() + 1);
  }

  Answer answer() const {
    if ((unsure[0] | unsure[1] | unsure[2] | unsure[3]) != 0) return Answer::eUnsure;
    return (odd[0] ^ odd[1] ^ odd[2] ^ odd[3]) != 0 ? Answer::eInside : Answer::eOutside;
  }
};

#if defined(__x86_64__)
__attribute__((target("avx2"))) void addByRegistersOfFour(const Points& points, Scan& scan) {
  scan.addAll(points);
}
#endif

void addAsBuilt(const Points& points, Scan& scan) {
  scan.addAll(points);
}

bool covered(const gxRect& box) {
  const gxVector<2> low = box.origin();
  const gxVector<2> high = box.corner();
  return low.x() >= -gx_kLargestExact && low.y() >= -gx_kLargestExact && high.x() <= gx_kLargestExact &&
         high.y() <= gx_kLargestExact;
}

double square(double x) {
  return x * x;
}

// The limit of condition a, for n vertices: the sine of a small angle x is at least x (1 − x² / 6).
double nearVertex(std::size_t n) {
  const double angle = std::numbers::pi / (2.0 * static_cast<double>(n));
  return std::max(gx_kSurelyApart / (angle * (1.0 - angle * angle / 6.0)), 3.0 * gx_kSurelyApart);
}

}  // namespace

Answer gx_scanContainment(const Points& points, const gxRect& box, double reach,
                          const gxVector<2>& point, bool wide) {
  if (!covered(box)) return Answer::eUnsure;
  if (!box.within(point)) return Answer::eOutside;
  const gxVector<2> fromFirst = point - points.front();
  const double distance = fromFirst * fromFirst;
  if (!(reach > 2.0 * gx_kSurelyApart && distance < square(reach - 2.0 * gx_kSurelyApart)))
    return Answer::eUnsure;
  Scan scan{point, square(nearVertex(points.size())), {}, {}};
#if defined(__x86_64__)
  static const bool possible = __builtin_cpu_supports("avx2");
  if (wide && possible) {
    addByRegistersOfFour(points, scan);
  } else {
    addAsBuilt(points, scan);
  }
#else
  static_cast<void>(wide);
  addAsBuilt(points, scan);
#endif
  return scan.answer();
}
