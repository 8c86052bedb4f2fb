// The farthest pair through the index.
//
//   1. A first good pair: from vertex 0 to the vertex farthest from it, from there to the vertex
//      farthest from that, and once more.
//   2. Pairs of boxes, in the order of their edges, down to pairs of vertices.  A pair of boxes is
//      left out when even their far corners are nearer to each other than the best pair so far, or
//      as far and the boxes hold no pair that comes before it.
//
// Rounding does not get in the way: the rounded difference of coordinates never decreases with the
// true one, nor do a rounded square, sum and square root with theirs, so the distance computed for
// far corners is a bound of every distance computed for points between them.  Outside the range
// where the distance is that plain root, boxes are left out with a slack.
//
//   3. In a round outline nearly every box has one on the other side that is as far away as any, and
//      the far corners of slanted boxes lie far outside it.  When many pairs have not been left out,
//      the boxes get slabs beside them, turned along their stretch of the outline, which are as thin as
//      the outline is straight there; from then on a pair of slabs too near to each other, by a slack
//      far above rounding, is left out as well.  A slab then meets two or three on the other side.
//
// (Rotating calipers over the convex hull find a farthest pair as fast, but not the first one among
// equal ones as they are rounded: for that every vertex near either end has to be looked at again.)
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/outline/tolerances.h>
#include <cntr/internal/search/farthest_pair.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Points = std::vector<gxVector<2>>;

// Inside these a distance is the plain root of a sum of squares.
constexpr double kShortestPlain = 1e-130;
constexpr double kLongestPlain = 1e140;

// A box turned along a stretch of the outline.
struct Slab {
  gxVector<2> middle;
  gxVector<2> along;  // of length 1
  double halfAlong = 0.0;
  double halfAcross = 0.0;
};

// The slab around points, along the chord from the first to the last.
Slab slabAround(const gxVector<2>* points, std::size_t count) {
  const gxVector<2> chord = points[count - 1] - points[0];
  const double length = std::sqrt(chord * chord);
  Slab slab;
  slab.along = length > 0.0 ? chord * (1.0 / length) : gxVector<2>(1.0, 0.0);
  const gx_Box box = gx_reachAlong(points, count, slab.along);
  const gxVector<2> across(-slab.along.y(), slab.along.x());
  slab.middle =
      points[0] + slab.along * (0.5 * (box.lowX + box.highX)) + across * (0.5 * (box.lowY + box.highY));
  slab.halfAlong = 0.5 * (box.highX - box.lowX);
  slab.halfAcross = 0.5 * (box.highY - box.lowY);
  return slab;
}

// Returns a bound above the square of the distance of any point of `a` from any of `b`.
double farthestSquare(const Slab& a, const Slab& b) {
  const gxVector<2> between = b.middle - a.middle;
  const double distance = std::sqrt(between * between);
  if (!(distance > 0.0)) return std::numeric_limits<double>::infinity();
  const gxVector<2> unit = between * (1.0 / distance);
  double onward = distance;
  double sideways = 0.0;
  for (const Slab* slab : {&a, &b}) {
    const double cosine = std::abs(unit * slab->along);
    const double sine = std::abs(gf_Cross(unit, slab->along));
    onward += slab->halfAlong * cosine + slab->halfAcross * sine;
    sideways += slab->halfAlong * sine + slab->halfAcross * cosine;
  }
  return onward * onward + sideways * sideways;
}

class Search {
 public:
  Search(const gx_EdgeIndex& index, const gx_Outline& outline, gxBudget& budget)
      : index_(index), outline_(outline), points_(outline.points), budget_(budget) {}

  gx_Pair find() {
    start();
    if (!outline_.closed) {  // the one vertex that no edge ends at
      for (std::size_t j = 1; j < points_.size(); ++j) offer(0, j);
    }
    const std::size_t top = index_.levels() - 1;
    among(top, 0, index_.size(top));
    return best_;
  }

 private:
  void start() {
    std::size_t from = 0;
    for (int sweep = 0; sweep < 3; ++sweep) {
      const std::size_t to = farthestFrom(points_[from]);
      offer(std::min(from, to), std::max(from, to));
      from = to;
    }
  }

  std::size_t farthestFrom(const gxVector<2>& point) const {
    std::size_t farthest = 0;
    double best = 0.0;
    for (std::size_t i = 0; i < points_.size(); ++i) {
      const gxVector<2> d = points_[i] - point;
      const double square = d * d;
      if (square > best) {
        best = square;
        farthest = i;
      }
    }
    return farthest;
  }

  void offer(std::size_t i, std::size_t j) {
    const gxVector<2> d = points_[i] - points_[j];
    if (d * d < tooShort_) return;
    const double distance = points_[i].distance(points_[j]);
    const bool wins = distance > best_.distance || (distance == best_.distance && distance > 0.0 &&
                                                    (i < best_.i || (i == best_.i && j < best_.j)));
    if (!wins) return;
    best_ = {i, j, distance};
    plain_ = distance > kShortestPlain && distance < kLongestPlain;
    // A square this far below has a smaller root, rounded too.
    tooShort_ = plain_ ? distance * distance * (1.0 - 2e-15) : 0.0;
  }

  // Tells whether no pair of a point of `a` and a point of `b` can win, the lowest indices of the
  // two given.
  bool hopeless(const gx_Box& a, std::size_t i, const gx_Box& b, std::size_t j) const {
    const gxVector<2> span(std::max(a.highX - b.lowX, b.highX - a.lowX),
                           std::max(a.highY - b.lowY, b.highY - a.lowY));
    if (plain_ && span * span < tooShort_) return true;
    const double longest = span.len();
    if (!plain_) return longest < best_.distance * (1.0 - 1e-9) || longest == 0.0;
    return longest == best_.distance && (i > best_.i || (i == best_.i && j >= best_.j));
  }

  std::size_t vertex(std::size_t level, std::size_t at) const {
    for (std::size_t l = 0; l <= level; ++l) at *= gx_EdgeIndex::kFan;
    return outline_.end(at);
  }

  using Range = gx_EdgeIndex::Run;

  void among(std::size_t level, std::size_t first, std::size_t end) {
    for (std::size_t a = first; a < end; ++a) {
      const gx_Box& box = index_.box(level, a);
      const Range own = index_.below(level, a);
      const std::size_t i = vertex(level, a);
      if (!hopeless(box, i, box, i + 1)) {
        if (level == 0) {
          verticesBetween(own, own);
        } else {
          among(level - 1, own.first, own.end);
        }
      }
      for (std::size_t b = a + 1; b < end; ++b) between(level, a, b);
    }
  }

  void between(std::size_t level, std::size_t a, std::size_t b) {
    budget_.spend();
    if (hopeless(index_.box(level, a), vertex(level, a), index_.box(level, b), vertex(level, b))) return;
    const Range inA = index_.below(level, a);
    const Range inB = index_.below(level, b);
    if (!slabs_.empty() && tooNear(slabs_[level][a], slabs_[level][b])) return;
    if (level == 0) {
      if (++lookedThrough_ > gx_kFarthestPatience * static_cast<double>(index_.size(0)) &&
          slabs_.empty())
        makeSlabs();
      return verticesBetween(inA, inB);
    }
    for (std::size_t i = inA.first; i < inA.end; ++i) {
      for (std::size_t j = inB.first; j < inB.end; ++j) between(level - 1, i, j);
    }
  }

  bool tooNear(const Slab& a, const Slab& b) const {
    return plain_ && farthestSquare(a, b) < best_.distance * best_.distance * (1.0 - gx_kRounding);
  }

  // Those of the leaves around their vertices, those above around the corners of those below; seen from
  // the first vertex, so that rounding is in proportion to the outline, wherever it lies.
  void makeSlabs() {
    slabs_.resize(index_.levels());
    gxVector<2> points[4 * gx_EdgeIndex::kFan];
    for (std::size_t level = 0; level < slabs_.size(); ++level) {
      for (std::size_t i = 0; i < index_.size(level); ++i) {
        std::size_t count = 0;
        const Range range = index_.below(level, i);
        for (std::size_t k = range.first; k < range.end; ++k) {
          if (level == 0) {
            points[count++] = points_[outline_.end(k)] - points_[0];
            continue;
          }
          const Slab& slab = slabs_[level - 1][k];
          const gxVector<2> a = slab.along * slab.halfAlong;
          const gxVector<2> b = gxVector<2>(-slab.along.y(), slab.along.x()) * slab.halfAcross;
          // The chord runs from the beginning of the first to the end of the last.
          for (const gxVector<2>& corner : {b - a, -a - b, a + b, a - b}) {
            points[count++] = slab.middle + corner;
          }
        }
        slabs_[level].push_back(slabAround(points, count));
      }
    }
  }

  void verticesBetween(const Range& inA, const Range& inB) {
    for (std::size_t a = inA.first; a < inA.end; ++a) {
      for (std::size_t b = std::max(inB.first, a + 1); b < inB.end; ++b) {
        offer(outline_.end(a), outline_.end(b));
      }
    }
  }

  const gx_EdgeIndex& index_;
  const gx_Outline& outline_;
  const Points& points_;
  gxBudget& budget_;
  gx_Pair best_;
  bool plain_ = false;
  double tooShort_ = 0.0;
  double lookedThrough_ = 0.0;            // pairs of leaves
  std::vector<std::vector<Slab>> slabs_;  // by level, once they are made
};

}  // namespace

gx_Pair gx_farthestPair(const gx_EdgeIndex& index, const gx_Outline& outline, gxBudget& budget) {
  return Search(index, outline, budget).find();
}
