#include "plain_hull.h"

#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

using V = gxVector<2>;

// Puts the corners of the lower hull of the points from first to last, and not the last, behind `hull`.
template <class Iterator>
void appendChain(Iterator first, Iterator last, std::vector<V>& hull) {
  const std::size_t start = hull.size();
  for (; first != last; ++first) {
    while (hull.size() >= start + 2 && gx_Orientation(hull[hull.size() - 2], hull.back(), *first) <= 0) {
      hull.pop_back();
    }
    hull.push_back(*first);
  }
  hull.pop_back();
}

}  // namespace

std::vector<V> gx_plainHull(const std::vector<V>& points) {
  std::vector<V> sorted;
  for (const V& p : points) {
    if (std::isfinite(p.x()) && std::isfinite(p.y())) sorted.push_back(p);
  }
  std::sort(sorted.begin(), sorted.end(),
            [](const V& a, const V& b) { return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y()); });
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  if (sorted.size() < 2) return sorted;
  std::vector<V> hull;
  appendChain(sorted.begin(), sorted.end(), hull);
  appendChain(sorted.rbegin(), sorted.rend(), hull);
  return hull;
}
