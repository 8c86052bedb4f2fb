// The convex hull, by monotone chains over sorted points (A. M. Andrew, Information Processing
// Letters 9, 1979), with an exact orientation test.
//
//  1. Copy the finite points, so that `hull` may be `points` itself.
//  2. Sort by x, then y; drop repeated points.
//  3. Walk from left to right and keep the lower chain, then back for the upper chain.  A corner that
//     does not turn left is dropped, so collinear points go as well.
#include <velstd/convex_hull.h>
#include <velstd/internal/orientation.h>

#include <algorithm>
#include <cmath>

namespace {

bool before(const gxVector<2>& a, const gxVector<2>& b) {
  return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y());
}

// Appends `point` to the chain that starts at index `first`, dropping corners that do not turn left.
void extend(std::vector<gxVector<2>>& chain, std::size_t first, const gxVector<2>& point) {
  while (chain.size() >= first + 2 &&
         gx_Orientation(chain[chain.size() - 2], chain.back(), point) <= 0) {
    chain.pop_back();
  }
  chain.push_back(point);
}

}  // namespace

void gfConvexHull(const std::vector<gxVector<2>>& points, std::vector<gxVector<2>>& hull) {
  std::vector<gxVector<2>> sorted;
  sorted.reserve(points.size());
  for (const gxVector<2>& p : points) {
    if (std::isfinite(p.x()) && std::isfinite(p.y())) sorted.push_back(p);
  }
  std::sort(sorted.begin(), sorted.end(), before);
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());

  std::vector<gxVector<2>> chain;
  if (sorted.size() < 3) {
    chain = std::move(sorted);
  } else {
    for (const gxVector<2>& p : sorted) extend(chain, 0, p);
    const std::size_t last = chain.size() - 1;
    for (std::size_t i = sorted.size() - 1; i-- > 0;) extend(chain, last, sorted[i]);
    chain.pop_back();  // the first point again
  }
  hull = std::move(chain);
}
