// The distance of two shapes.
//
//  1. The shapes are brought to one scale, and each edge tree is walked beside the other: a pair of boxes
//     farther apart than the best gap so far is left out, the pairs below a pair in the order of their
//     distance.
//  2. Where no borders meet, every ring lies wholly inside or wholly outside the other shape's material:
//     one vertex of each tells.
#include <gauge/distance.h>
#include <gauge/internal/locator_data.h>
#include <gauge/internal/segments.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <utility>

namespace {

using Point = gxVector<2>;

// A bound below the square of the distance of any two points of the boxes, but for rounding.
double squareBetween(const gx_Box& a, const gx_Box& b) {
  const double dx = std::max(std::max(a.lowX - b.highX, b.lowX - a.highX), 0.0);
  const double dy = std::max(std::max(a.lowY - b.highY, b.lowY - a.highY), 0.0);
  return dx * dx + dy * dy;
}

class Search {
 public:
  Search(const gx_EdgeTree& first, const gx_EdgeTree& second) : a_(first), b_(second) {}

  void run() { between(a_.levels() - 1, 0, b_.levels() - 1, 0); }

  double distance = std::numeric_limits<double>::infinity();
  gx_Gap gap;
  std::size_t i = 0;
  std::size_t j = 0;

 private:
  bool tooFar(double square) const {
    const double reach = distance * (1.0 + 1e-12);
    return square > reach * reach;
  }

  void between(std::size_t levelA, std::size_t a, std::size_t levelB, std::size_t b) {
    if (tooFar(squareBetween(a_.box(levelA, a), b_.box(levelB, b)))) return;
    const auto below = a_.below(levelA, a);
    const auto other = b_.below(levelB, b);
    if (levelA == 0 && levelB == 0) {
      for (std::size_t k = below.first; k < below.end; ++k) {
        for (std::size_t l = other.first; l < other.end; ++l) offer(k, l);
      }
      return;
    }
    // The higher one is opened, the nearest of its parts first.
    const bool openA = levelA >= levelB;
    std::pair<double, std::size_t> parts[gx_EdgeTree::kFan];
    std::size_t count = 0;
    if (openA) {
      for (std::size_t k = below.first; k < below.end; ++k) {
        parts[count++] = {squareBetween(a_.box(levelA - 1, k), b_.box(levelB, b)), k};
      }
    } else {
      for (std::size_t k = other.first; k < other.end; ++k) {
        parts[count++] = {squareBetween(a_.box(levelA, a), b_.box(levelB - 1, k)), k};
      }
    }
    std::sort(parts, parts + count);
    for (std::size_t k = 0; k < count; ++k) {
      if (openA) {
        between(levelA - 1, parts[k].second, levelB, b);
      } else {
        between(levelA, a, levelB - 1, parts[k].second);
      }
    }
  }

  void offer(std::size_t k, std::size_t l) {
    const gx_Edge& e = a_.edges()[k];
    const gx_Edge& f = b_.edges()[l];
    if (tooFar(squareBetween(e.box(), f.box()))) return;
    const gx_Gap found = gx_gapBetween(e.a, e.b, f.a, f.b);
    const bool first = found.distance == distance && (k < i || (k == i && l < j));
    if (!(found.distance < distance) && !first) return;
    distance = found.distance;
    gap = found;
    i = k;
    j = l;
  }

  const gx_EdgeTree& a_;
  const gx_EdgeTree& b_;
};

// The shape's edges in a frame of both.
gx_EdgeTree treeIn(const gx_LocatorAccess::Data& shape, const gx_Frame& frame,
                   std::vector<std::vector<Point>>& points) {
  std::vector<gx_Ring> rings = shape.rings;
  points = shape.points;
  for (std::size_t r = 0; r < rings.size(); ++r) {
    for (Point& p : points[r]) p = frame.scaled(shape.from(p));
    rings[r].points = points[r];
  }
  return gx_EdgeTree(rings);
}

// Finds a vertex of `shape` in the material of `other`.
bool findInside(const gx_LocatorAccess::Data& shape, const gxLocator& other, gxPlace& place,
                long& region) {
  for (std::size_t r = 0; r < shape.rings.size(); ++r) {
    if (shape.points[r].empty()) continue;
    const Point vertex = shape.from(shape.points[r][0]);
    if (other.locate(vertex).state == gxState::eOutside) continue;
    const bool closed = shape.rings[r].closed;
    place = {shape.rings[r].number, 0, closed ? 1.0 : 0.0, vertex};
    region = shape.rings[r].region;
    return true;
  }
  return false;
}

gx_Box boxOf(const gx_LocatorAccess::Data& shape) {
  gx_Box box;
  for (const auto& points : shape.points) {
    for (const Point& p : points) box.add(shape.from(p));
  }
  return box;
}

}  // namespace

gxShapeDistance gfDistance(const gxLocator& first, const gxLocator& second) {
  gxShapeDistance result;
  for (const gxLocator* shape : {&first, &second}) {
    if (shape->status() == gxStatus::eNotFinite) result.status = gxStatus::eNotFinite;
  }
  if (result.status == gxStatus::eNotFinite) return result;
  if (first.status() != gxStatus::eOk || second.status() != gxStatus::eOk) return result;
  const auto& a = gx_LocatorAccess::data(first);
  const auto& b = gx_LocatorAccess::data(second);
  gx_Box box = boxOf(a);
  box.add(boxOf(b));
  const gx_Frame frame(box);
  std::vector<std::vector<Point>> pointsA;
  std::vector<std::vector<Point>> pointsB;
  const gx_EdgeTree treeA = treeIn(a, frame, pointsA);
  const gx_EdgeTree treeB = treeIn(b, frame, pointsB);
  Search search(treeA, treeB);
  search.run();
  result.status = gxStatus::eOk;
  if (search.distance > 0.0) {
    const bool inside = findInside(a, second, result.from, result.fromRegion) ||
                        findInside(b, first, result.to, result.toRegion);
    if (inside) {
      result.distance = 0.0;
      return result;
    }
  }
  const gx_Edge& e = treeA.edges()[search.i];
  const gx_Edge& f = treeB.edges()[search.j];
  result.distance = frame.lengthFrom(search.distance);
  result.from = {a.rings[e.ring].number, static_cast<long>(e.number), search.gap.s,
                 frame.unscaled(search.gap.p)};
  result.to = {b.rings[f.ring].number, static_cast<long>(f.number), search.gap.t,
               frame.unscaled(search.gap.q)};
  result.fromRegion = a.rings[e.ring].region;
  result.toRegion = b.rings[f.ring].region;
  return result;
}

std::ostream& operator<<(std::ostream& out, const gxShapeDistance& d) {
  out << "distance " << d.distance << " from " << d.from << " to " << d.to;
  if (d.status != gxStatus::eOk) out << ' ' << d.status;
  return out;
}
