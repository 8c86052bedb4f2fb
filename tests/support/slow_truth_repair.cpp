// The repair of outlines that cross themselves, the slow and plain way: the walk around the outside,
// its cutting, dropping and joining of loops; and the splice of two outlines.
#include <support/slow_truth_region.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <set>
#include <tuple>

namespace slow {

namespace {

constexpr double kCoincident = 1e-6;

std::size_t crossings(const Points& outline, const gxVector<2>& from, const gxVector<2>& to) {
  return intersections(Outline{outline, true}, gxLineSeg(from, to), true).points.size();
}

// The first edge, the closing edge excepted, that is proven to lie on the outside.
std::size_t startEdge(const Points& p) {
  const double tolerance = 0.01 * medianFeatureSize({p, true});
  for (std::size_t i = 0; i + 1 < p.size(); ++i) {
    const gxVector<2> middle = (p[i] + p[i + 1]) * 0.5;
    const gxVector<2> u = (p[i] - p[i + 1]).unit();
    const gxVector<2> offset(-u.y() * tolerance, u.x() * tolerance);
    const gxVector<2> a = middle + offset;
    const gxVector<2> b = middle - offset;
    const bool outside = insideCount(p, a, true) == 0 || insideCount(p, b, true) == 0;
    if (crossings(p, a, b) == 1 && crossings(p, p[i], p[i + 1]) == 2 && outside) return i;
  }
  throw gxContourDefs::BadParams(L"invalid contour");
}

std::size_t wrapped(long index, std::size_t n) {
  const auto count = static_cast<long>(n);
  if (index < 0) index += count;
  if (index >= count) index -= count;
  return static_cast<std::size_t>(index);
}

std::vector<int> verticesAt(const Points& loop, const gxVector<2>& point) {
  return vertexIndex(loop, point, kCoincident);
}

// `count` points of the loop, from number `first` on, around the end.
Points run(const Points& loop, std::size_t first, std::size_t count) {
  Points result;
  for (std::size_t k = 0; k < count; ++k) result.push_back(loop[(first + k) % loop.size()]);
  return result;
}

struct Cut {
  bool found = false;
  Points first;
  Points second;
};

// The loop cut in two at the first vertex that it passes twice.
Cut cutAtPinch(const Points& loop) {
  const std::size_t k = loop.size();
  for (std::size_t j = 0; j < k; ++j) {
    for (const int at : verticesAt(loop, loop[j])) {
      auto m = static_cast<std::size_t>(at);
      if (m == j) continue;
      if (m < j) m += k;
      return {true, run(loop, j, m - j), run(loop, m, j + k - m)};
    }
  }
  return {};
}

void cutLoops(std::vector<Points>& loops) {
  for (std::size_t i = 0; i < loops.size();) {
    const Cut cut = cutAtPinch(loops[i]);
    if (!cut.found) {
      ++i;
    } else if (cut.first.size() > 1 && cut.second.size() > 1) {
      loops[i] = cut.first;
      loops.push_back(cut.second);
    } else if (cut.first.size() > 1) {
      loops[i] = cut.first;
    } else if (cut.second.size() > 1) {
      loops[i] = cut.second;
    } else if (loops.size() > 1) {
      loops.erase(loops.begin() + static_cast<std::ptrdiff_t>(i));
    } else {
      ++i;
    }
  }
}

void removeByLast(std::vector<Points>& loops, std::size_t i) {
  loops[i] = loops.back();
  loops.pop_back();
}

bool dropOneInner(std::vector<Points>& loops) {
  for (std::size_t i = 0; i < loops.size(); ++i) {
    const gxVector<2> test = (loops[i][0] + loops[i][1]) / 2.0;
    for (std::size_t j = 0; j < loops.size(); ++j) {
      if (j == i || !inside(Region{loops[j], {}}, test, true)) continue;
      removeByLast(loops, i);
      return true;
    }
  }
  return false;
}

bool joinOnePair(std::vector<Points>& loops) {
  for (std::size_t i = 0; i < loops.size(); ++i) {
    for (std::size_t j = i + 1; j < loops.size(); ++j) {
      for (std::size_t t = 0; t < loops[i].size(); ++t) {
        const std::vector<int> touched = verticesAt(loops[j], loops[i][t]);
        if (touched.empty()) continue;
        Points joined = run(loops[i], t, loops[i].size());
        const Points other = run(loops[j], static_cast<std::size_t>(touched[0]), loops[j].size());
        joined.insert(joined.end(), other.begin(), other.end());
        loops[i] = joined;
        removeByLast(loops, j);
        return true;
      }
    }
  }
  return false;
}

}  // namespace

Points outsideWalk(const Points& outline) {
  checkRegion(outline);
  const std::size_t n = outline.size();
  const std::size_t start = startEdge(outline);
  const gxRect box = encloseRect(outline, gxXform<2>());

  gxVector<2> q = outline[start];
  bool forward = true;
  std::size_t next = start + 1;
  Points traced;
  std::set<std::tuple<std::uint64_t, std::uint64_t, std::size_t, bool>> seen;
  const std::size_t limit = std::max<std::size_t>(200000, 64 * n);
  do {
    const auto state = std::make_tuple(std::bit_cast<std::uint64_t>(q.x()),
                                       std::bit_cast<std::uint64_t>(q.y()), next, forward);
    if (!seen.insert(state).second || traced.size() >= limit) {
      throw gxContourDefs::BadParams(L"invalid contour");
    }
    const std::size_t target = forward ? next : wrapped(static_cast<long>(next) - 1, n);
    const Hits hits = intersections(Outline{outline, true}, box, gxLineSeg(q, outline[target]), false);
    if (hits.points.empty()) {
      q = outline[target];
      next = wrapped(static_cast<long>(next) + (forward ? 1 : -1), n);
    } else {
      q = hits.points.front();
      next = static_cast<std::size_t>(hits.edges.front());
      forward = !forward;
    }
    traced.push_back(q);
  } while (!(q == outline[start]));
  return traced;
}

Points hullOfWalk(const Points& walked) {
  std::vector<Points> loops{walked};
  cutLoops(loops);
  while (dropOneInner(loops)) {}
  while (joinOnePair(loops)) {}
  return loops[0];
}

Region regularize(const Region& region) {
  if (!isSelfIntersecting({region.outline, true})) return region;
  return {outsideWalk(region.outline), {}};
}

Region outerHull(const Region& region) {
  if (!isSelfIntersecting({region.outline, true})) return region;
  return {hullOfWalk(outsideWalk(region.outline)), {}};
}

Points splice(const Points& outline, const Points& other) {
  const std::vector<Edge> mine = lineSegs({outline, true});
  for (std::size_t i = 0; i < mine.size(); ++i) {
    if (!mine[i].valid) continue;
    const Hits hits = intersections(Outline{other, true}, mine[i].segment, true);
    if (hits.points.empty()) continue;
    Points result{hits.points.front()};
    const Points around = run(outline, i, outline.size());  // edge k ends at point k
    result.insert(result.end(), around.begin(), around.end());
    result.push_back(hits.points.front());
    const Points far = run(other, static_cast<std::size_t>(hits.edges.front()), other.size());
    result.insert(result.end(), far.begin(), far.end());
    return result;
  }
  throw gxContourDefs::BadParams(L"spliced regions do not intersect");
}

}  // namespace slow
