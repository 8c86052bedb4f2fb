// Cutting, dropping and joining loops.  Loops are regions because the questions asked of them, which
// vertices lie near a point and whether a point is inside, are questions to regions.
#include <cntr/internal/loops.h>

#include <cstddef>
#include <utility>

namespace {

using Points = std::vector<gxVector<2>>;

// Vertices this close are one point of the outline.
constexpr double kSameVertex = 1e-6;

// The points from `first`, `count` of them, around the loop.
Points stretch(const Points& loop, std::size_t first, std::size_t count) {
  Points result;
  result.reserve(count);
  for (std::size_t i = 0; i < count; ++i) result.push_back(loop[(first + i) % loop.size()]);
  return result;
}

// A point passed twice: vertex `first`, and `second` after it, counted on past the end of the loop.
struct Pinch {
  std::size_t first = 0;
  std::size_t second = 0;
};

bool findPinch(const gxRegion& loop, Pinch& pinch) {
  const Points& points = loop.points();
  if (points.size() < 2) return false;
  for (std::size_t j = 0; j < points.size(); ++j) {
    for (const int index : loop.vertexIndex(points[j], kSameVertex)) {
      const auto m = static_cast<std::size_t>(index);
      if (m == j) continue;
      pinch = {j, m < j ? m + points.size() : m};
      return true;
    }
  }
  return false;
}

void moveLastTo(std::vector<gxRegion>& loops, std::size_t place) {
  if (place + 1 < loops.size()) loops[place] = std::move(loops.back());
  loops.pop_back();
}

bool liesInAnother(const std::vector<gxRegion>& loops, std::size_t i) {
  const Points& points = loops[i].points();
  const gxVector<2> test = (points[0] + points[1]) / 2.0;
  for (std::size_t j = 0; j < loops.size(); ++j) {
    if (j != i && loops[j].inside(test, true)) return true;
  }
  return false;
}

bool dropOneInnerLoop(std::vector<gxRegion>& loops) {
  for (std::size_t i = 0; i < loops.size(); ++i) {
    if (!liesInAnother(loops, i)) continue;
    moveLastTo(loops, i);
    return true;
  }
  return false;
}

// Finds the first vertex of `a` that is a vertex of `b` too, and builds the walk around both.
bool joined(const gxRegion& a, const gxRegion& b, Points& walk) {
  for (std::size_t t = 0; t < a.points().size(); ++t) {
    const std::vector<int> shared = b.vertexIndex(a.points()[t], kSameVertex);
    if (shared.empty()) continue;
    walk = stretch(a.points(), t, a.points().size());
    const Points rest = stretch(b.points(), static_cast<std::size_t>(shared.front()), b.points().size());
    walk.insert(walk.end(), rest.begin(), rest.end());
    return true;
  }
  return false;
}

bool joinOnePair(std::vector<gxRegion>& loops) {
  Points walk;
  for (std::size_t i = 0; i < loops.size(); ++i) {
    for (std::size_t j = i + 1; j < loops.size(); ++j) {
      if (!joined(loops[i], loops[j], walk)) continue;
      loops[i] = gxRegion(walk);
      moveLastTo(loops, j);
      return true;
    }
  }
  return false;
}

}  // namespace

void gx_cutAtPinchPoints(std::vector<gxRegion>& loops) {
  std::size_t l = 0;
  while (l < loops.size()) {
    Pinch pinch;
    if (!findPinch(loops[l], pinch)) {
      ++l;
      continue;
    }
    const Points points = loops[l].points();
    const Points a = stretch(points, pinch.first, pinch.second - pinch.first);
    const Points b = stretch(points, pinch.second, points.size() - a.size());
    if (a.size() > 1) {
      loops[l] = gxRegion(a);
      if (b.size() > 1) loops.emplace_back(b);
    } else if (b.size() > 1) {
      loops[l] = gxRegion(b);
    } else if (loops.size() > 1) {
      loops.erase(loops.begin() + static_cast<std::ptrdiff_t>(l));
    } else {
      ++l;
    }
  }
}

void gx_dropInnerLoops(std::vector<gxRegion>& loops) {
  while (dropOneInnerLoop(loops)) {}
}

void gx_joinTouchingLoops(std::vector<gxRegion>& loops) {
  while (joinOnePair(loops)) {}
}
