// The borders of a shape.
//
// Each ring keeps the edge index of the contour classes, over its points in the frame.  The nearest edge:
//
//   1. Begin with the distance of the guess, mostly the answer to the question before.
//   2. Of a few rings ask one after the other; of many by a tree over their boxes, the nearest first.
//   3. In a ring, ask the slab tree for the runs of edges within the best distance so far, and measure
//      all 8 of a run.
//
// In the frame coordinates are below 2, so that squares neither overflow nor lose digits that count.
#include <cntr/internal/outline/edge_walk.h>
#include <gauge/internal/border_tree.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>

namespace {

// So few rings are asked one after the other.
constexpr std::size_t kFewRings = 4;

}  // namespace

gxStatus gx_statusOf(const gx_Rings& rings) {
  bool any = false;
  for (const gxBorders::Ring& ring : rings) {
    if (!gx_allFinite(ring.points)) return gxStatus::eNotFinite;
    any = any || !ring.points.empty();
  }
  return any ? gxStatus::eOk : gxStatus::eEmpty;
}

gx_Box gx_boxOf(const gx_Rings& rings) {
  gx_Box box;
  for (const gxBorders::Ring& ring : rings) box.add(gx_boxOf(ring.points));
  return box;
}

gx_BorderTree::gx_BorderTree(const gx_Rings& rings, const gx_Frame& frame) : frame_(frame) {
  std::size_t total = 0;
  for (const gxBorders::Ring& ring : rings) total += ring.points.size();
  pieces_.reserve(total);
  std::vector<gx_Box> boxes;
  for (std::size_t r = 0; r < rings.size(); ++r) {
    if (rings[r].points.empty()) continue;
    Tree tree;
    tree.ring = static_cast<long>(r) - 1;
    tree.closed = rings[r].closed || rings[r].points.size() == 1;
    tree.first = pieces_.size();
    tree.source = rings[r].points;
    tree.points.reserve(rings[r].points.size());
    for (const gxVector<2>& p : rings[r].points) tree.points.push_back(frame.to(p));
    gx_forEachEdge(tree.points.size(), tree.closed,
                   [&](std::size_t start, std::size_t end, std::size_t) {
                     pieces_.push_back({tree.points[start], tree.points[end]});
                   });
    tree.index = std::make_unique<gx_EdgeIndex>(gx_Outline{tree.points, tree.closed});
    boxes.push_back(tree.index->bounds());
    trees_.push_back(std::move(tree));
  }
  if (trees_.size() > kFewRings) boxes_ = std::make_unique<gx_BoxTree>(boxes);
}

std::size_t gx_BorderTree::ringOf(std::size_t edge) const {
  const auto after = std::upper_bound(trees_.begin(), trees_.end(), edge,
                                      [](std::size_t e, const Tree& tree) { return e < tree.first; });
  return static_cast<std::size_t>(after - trees_.begin()) - 1;
}

gxPlace gx_BorderTree::placeOf(std::size_t edge, double t) const {
  const Tree& tree = trees_[ringOf(edge)];
  const std::size_t k = edge - tree.first;
  gxPlace place;
  place.ring = tree.ring;
  place.edge = static_cast<long>(k);
  place.t = t;
  const std::size_t count = tree.points.size();
  if (t == 0.0) {
    place.point = tree.source[gx_edgeStart(k, count, tree.closed)];
  } else if (t == 1.0) {
    place.point = tree.source[gx_edgeEnd(k, tree.closed)];
  } else {
    place.point = frame_.from(pieces_[edge].at(t));
  }
  return place;
}

void gx_BorderTree::nearestOf_(const Tree& tree, const gxVector<2>& point, std::size_t& best,
                               double& square) const {
  double limit = std::sqrt(square);
  const auto visit = [&](std::size_t first, std::size_t end) {
    const double before = square;
    for (std::size_t k = tree.first + first; k < tree.first + end; ++k) {
      const double here = pieces_[k].squareFrom(point);
      if (here < square || (here == square && k < best)) {
        square = here;
        best = k;
      }
    }
    if (square < before) limit = std::sqrt(square);
  };
  const gx_SlabTree* slabs = tree.index->slabs({tree.points, tree.closed});
  if (slabs != nullptr && slabs->answers(point)) {
    slabs->forEachRunNear(point, limit, visit);
  } else {
    tree.index->forEachRunNear(point, limit, visit);
  }
}

std::size_t gx_BorderTree::nearest(const gxVector<2>& point, std::size_t guess) const {
  std::size_t best = guess;
  double square = squareFrom(guess, point);
  if (boxes_ == nullptr) {
    for (const Tree& tree : trees_) nearestOf_(tree, point, best, square);
    return best;
  }
  constexpr double kSlack = 1.0 + 1e-12;  // above what rounding does to squares
  boxes_->forEachNear(
      point, [&](const gx_Box& box) { return box.squareFrom(point) > square * kSlack; },
      [&](std::size_t i) { nearestOf_(trees_[i], point, best, square); });
  return best;
}

bool gx_BorderTree::holds(const gxVector<2>& point) const {
  const double x = point.x();
  const double y = point.y();
  bool inside = false;
  for (const Tree& tree : trees_) {
    if (!tree.closed) continue;
    tree.index->forEachRun(
        [&](const gx_Box& box) { return box.lowY <= y && box.highY > y && box.highX >= x; },
        [&](std::size_t first, std::size_t end) {
          for (std::size_t k = tree.first + first; k < tree.first + end; ++k) {
            const gx_Piece& edge = pieces_[k];
            const bool up = edge.a.y() <= y;
            if (up == (edge.b.y() <= y)) continue;
            const int side = gx_Orientation(edge.a, edge.b, point);
            if (up ? side > 0 : side < 0) inside = !inside;
          }
          return false;
        });
  }
  return inside;
}
