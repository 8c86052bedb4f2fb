// Every edge with every other.
//
// A pair of boxes that do not touch holds no pair of edges whose boxes do.  Both orders of a pair are
// tested, for the test asks about the ends of one of them.  Which pair is found first does not matter:
// the answer is only whether there is one.
//
// Most pairs whose boxes meet are decided without the test itself: one edge lies so far to one side of
// the other's line that no rounding can bring a point near both (`gx_missesOn`), or the two are parallel
// beyond doubt, as all edges of an outline on a line are (`gx_surelyParallel`).
//
// An outline that passes the same edges many times, as one out of equal regions does, has pairs without
// number that touch and do not cross.  When many pairs have been tested in vain, the edges are sorted, and
// where half of them or more are repetitions, one of each is tested with one of each other: the test sees
// nothing but the four ends, and an edge never crosses itself or a neighbour.
//
// Few edges go without a tree: the boxes of all are held against each other, or, from some on, an index
// is made for the moment.
#include <cntr/internal/index/box_tree.h>
#include <cntr/internal/search/crossing.h>
#include <cntr/internal/search/edge_pairs.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <numeric>

bool gx_hasEdgeOfLength(const gx_Outline& outline) {
  bool found = false;
  for (std::size_t k = 0; k < outline.edges() && !found; ++k) {
    found = !gfRealEq(outline.from(k), outline.to(k), gx_kCoincide);
  }
  return found;
}

namespace {

// Pairs of boxes, down to pairs of edges.
class SelfCrossing {
 public:
  SelfCrossing(const gx_Outline& outline, const gxRect& box, gxBudget& budget)
      : outline_(outline), box_(box), budget_(budget) {}

  bool found(const gx_EdgeIndex& index) {
    index_ = &index;
    const std::size_t top = index.levels() - 1;
    // So the distance from an edge's end to that end is exactly 0, and neighbours never cross.
    const bool isOrdinary = !index.hasNaN() && index.bounds().isWithin(gx_kLargestExact);
    pairsLeft_ = isOrdinary ? gx_kPairsInVain * outline_.edges() : kNoEnd;
    if (!among(top, 0, index.size(top))) return false;
    if (pairsLeft_ > 0) return true;
    const std::vector<std::size_t> distinct = distinctEdges();
    if (2 * distinct.size() <= outline_.edges()) return foundAmong(distinct);
    pairsLeft_ = kNoEnd;
    return among(top, 0, index.size(top));
  }

  bool foundAmongFew() const {
    const gx_FewBoxes boxes(outline_);
    for (std::size_t i = 0; i < boxes.count(); ++i) {
      for (std::uint64_t near = boxes.notApartAfter(i); near != 0; near &= near - 1) {
        const auto j = static_cast<std::size_t>(std::countr_zero(near));
        if (pairCrosses(boxes.number(i), boxes.number(j))) return true;
      }
    }
    return false;
  }

 private:
  static constexpr std::size_t kNoEnd = static_cast<std::size_t>(-1);

  using Range = gx_EdgeIndex::Run;

  // One of each of the edges that are the same from end to end.
  std::vector<std::size_t> distinctEdges() const {
    std::vector<std::size_t> edges(outline_.edges());
    std::iota(edges.begin(), edges.end(), std::size_t{0});
    const auto ends = [this](std::size_t k) {
      return std::array{outline_.from(k).x(), outline_.from(k).y(), outline_.to(k).x(),
                        outline_.to(k).y()};
    };
    std::sort(edges.begin(), edges.end(),
              [&](std::size_t i, std::size_t j) { return ends(i) < ends(j); });
    edges.erase(std::unique(edges.begin(), edges.end(),
                            [&](std::size_t i, std::size_t j) { return ends(i) == ends(j); }),
                edges.end());
    return edges;
  }

  bool foundAmong(const std::vector<std::size_t>& edges) const {
    std::vector<gx_Box> boxes;
    boxes.reserve(edges.size());
    for (const std::size_t k : edges) boxes.push_back(gx_Box::ofEdge(outline_.from(k), outline_.to(k)));
    const gx_BoxTree tree(boxes);
    bool isFound = false;
    for (std::size_t i = 0; i < edges.size() && !isFound; ++i) {
      tree.forEachMeeting(boxes[i], [&](std::size_t j) {
        budget_.spend();
        isFound = isFound || (j > i && edgesCross(edges[i], edges[j]));
      });
    }
    return isFound;
  }

  // Pairs within and between the nodes of one run of nodes.
  bool among(std::size_t level, std::size_t first, std::size_t end) {
    for (std::size_t a = first; a < end; ++a) {
      const Range own = index_->below(level, a);
      if (level == 0 ? edgesAmong(own) : among(level - 1, own.first, own.end)) return true;
      for (std::size_t b = a + 1; b < end; ++b) {
        if (between(level, a, b)) return true;
      }
    }
    return false;
  }

  bool between(std::size_t level, std::size_t a, std::size_t b) {
    budget_.spend();
    const gx_Box& boxA = index_->box(level, a);
    const gx_Box& boxB = index_->box(level, b);
    if (!boxA.meets(boxB)) return false;
    const Range inA = index_->below(level, a);
    const Range inB = index_->below(level, b);
    if (level == 0) return edgesBetween(inA, boxA, inB, boxB);
    for (std::size_t i = inA.first; i < inA.end; ++i) {
      if (!index_->box(level - 1, i).meets(boxB)) continue;
      for (std::size_t j = inB.first; j < inB.end; ++j) {
        if (between(level - 1, i, j)) return true;
      }
    }
    return false;
  }

  bool edgesAmong(const Range& run) {
    for (std::size_t i = run.first; i < run.end; ++i) {
      for (std::size_t j = i + 2; j < run.end; ++j) {
        if (!apart(i, j) && endsAt(i, j)) return true;
      }
    }
    return false;
  }

  bool edgesBetween(const Range& inA, const gx_Box& boxA, const Range& inB, const gx_Box& boxB) {
    std::size_t candidates[gx_EdgeIndex::kFan];
    std::size_t count = 0;
    for (std::size_t j = inB.first; j < inB.end; ++j) {
      if (edgeMeets(j, boxA)) candidates[count++] = j;
    }
    if (count == 0) return false;
    for (std::size_t i = inA.first; i < inA.end; ++i) {
      if (!edgeMeets(i, boxB)) continue;
      for (std::size_t c = 0; c < count; ++c) {
        if (!apart(i, candidates[c]) && endsAt(i, candidates[c])) return true;
      }
    }
    return false;
  }

  bool edgeMeets(std::size_t k, const gx_Box& box) const {
    const gxVector<2>& a = outline_.from(k);
    const gxVector<2>& b = outline_.to(k);
    return !gx_outside(a.x(), b.x(), box.lowX, box.highX) &&
           !gx_outside(a.y(), b.y(), box.lowY, box.highY);
  }

  // Tells whether the boxes of two edges do not meet; a NaN never tells.
  bool apart(std::size_t i, std::size_t j) const {
    const gx_Box a = gx_Box::ofEdge(outline_.from(i), outline_.to(i));
    const gx_Box b = gx_Box::ofEdge(outline_.from(j), outline_.to(j));
    return a.highX < b.lowX || b.highX < a.lowX || a.highY < b.lowY || b.highY < a.lowY;
  }

  // Tells whether the walk over pairs ends with this one: it crosses, or is the last that is to be tested.
  bool endsAt(std::size_t i, std::size_t j) {
    if (pairCrosses(i, j)) return true;
    return pairsLeft_ != kNoEnd && --pairsLeft_ == 0;
  }

  // Tests a pair of edges.  Neighbours touch each other's ends and never count.
  bool pairCrosses(std::size_t i, std::size_t j) const {
    if (j == i + 1 || (outline_.closed && i == 0 && j + 1 == outline_.edges())) return false;
    return edgesCross(i, j);
  }

  // Tests a pair of edges both ways.
  bool edgesCross(std::size_t i, std::size_t j) const {
    const gxVector<2>& a = outline_.from(i);
    const gxVector<2>& b = outline_.to(i);
    const gxVector<2>& c = outline_.from(j);
    const gxVector<2>& d = outline_.to(j);
    const gxVector<2> ab = gx_directionOf(a, b);
    const gxVector<2> cd = gx_directionOf(c, d);
    if (gx_surelyParallel(ab, cd) || gx_missesOn(a, ab, c, d) || gx_missesOn(c, cd, a, b)) return false;
    return crosses(a, b, c, d) || crosses(c, d, a, b);
  }

  // Tells whether the edge from a to b, its ends excepted, is hit by the one from c to d.
  bool crosses(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
               const gxVector<2>& d) const {
    if (gfRealEq(a, b, gx_kCoincide) || gfRealEq(c, d, gx_kCoincide)) return false;
    const gx_CrossingQuery query(a, b, false);
    gxVector<2> place;
    return query.reaches(box_) && gx_Box::ofEdge(c, d).meets(query.box()) && query.hits(c, d, place);
  }

  const gx_Outline& outline_;
  const gxRect& box_;
  gxBudget& budget_;
  const gx_EdgeIndex* index_ = nullptr;
  std::size_t pairsLeft_ = kNoEnd;  // so many pairs are tested before repetitions are looked for
};

}  // namespace

bool gx_crossesItself(const gx_EdgeIndex& index, const gx_Outline& outline, const gxRect& box,
                      gxBudget& budget) {
  return SelfCrossing(outline, box, budget).found(index);
}

bool gx_fewCrossThemselves(const gx_Outline& outline, const gxRect& box) {
  gxBudget unlimited;
  SelfCrossing pairs(outline, box, unlimited);
  return outline.edges() > gx_kFewPairs ? pairs.found(gx_EdgeIndex(outline)) : pairs.foundAmongFew();
}
