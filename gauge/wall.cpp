// The smallest wall.
//
//  1. The nearest points of two edges are the only pair on them that can be shortest in both places, since
//     the distance of two points on two segments is a convex function.  So every wall is the gap of two
//     edges, and a gap is a wall if moving an end of it that is a vertex into the edge next to it makes it
//     no shorter, and the line between runs in the material and meets no border.
//     Of parallel edges the pair in the middle of where they face each other stands for all.
//  2. Pairs of boxes are walked through the edge tree beside itself, near pairs first, leaving out those
//     farther apart than the best wall so far.
//  3. That alone looks at all pairs of neighbours in a dense outline, nearer to each other than any wall.
//     They have no wall because the line between them runs along the border and not across it.  So each box
//     keeps the directions in which its edges can have a wall: an interval around the perpendicular, from
//     the turns along the run.  A pair whose line of sight is in the interval of neither is left out.
//  4. A gap that is a wall by its ends is tried against all borders last.
//
// Repeated points are dropped first, so that an edge follows the next.
#include <gauge/internal/edge_links.h>
#include <gauge/internal/locator_data.h>
#include <gauge/internal/segments.h>
#include <gauge/wall.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <ostream>
#include <utility>
#include <vector>

namespace {

using Point = gxVector<2>;
constexpr double kPi = std::numbers::pi;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Edges are parallel, and a foot is one, within this and the rounding of coordinates.
constexpr double kParallel = 1e-12;

// A rounded foot is off by less than so many roundings of the largest coordinate.
constexpr double kRoundings = 32.0;

// An interval of directions of axes, as middle and half width; half a turn or more is all.
struct Directions {
  double middle = 0.0;
  double half = -1.0;  // none

  bool mayHold(double angle, double slack) const {
    if (half + slack >= 0.5 * kPi) return true;
    const double apart = std::remainder(angle - middle, kPi);
    return std::fabs(apart) <= half + slack;
  }
};

class Search {
 public:
  explicit Search(const gx_LocatorAccess::Data& data) : data_(data), tree_(data.tree), links_(tree_) {
    double largest = 0.0;
    for (const gx_Edge& e : tree_.edges()) {
      largest = std::max(
          {largest, std::fabs(e.a.x()), std::fabs(e.a.y()), std::fabs(e.b.x()), std::fabs(e.b.y())});
    }
    rounding_ = 1e-15 * largest;
    collectDirections();
  }

  void run() {
    const std::size_t top = tree_.levels() - 1;
    between(top, 0, top, 0);
  }

  double wall = kInfinity;
  gx_Gap gap;
  std::size_t i = 0;
  std::size_t j = 0;

 private:
  const gx_Edge& edge(std::size_t k) const { return tree_.edges()[k]; }

  bool follow(std::size_t k, std::size_t l) const {
    return k == l || links_.after[k] == l || links_.before[k] == l;
  }

  // ---- Directions -------------------------------------------------------------------------------

  void collectDirections() {
    directions_.resize(tree_.levels());
    for (std::size_t level = 0; level < tree_.levels(); ++level) {
      for (std::size_t k = 0; k < tree_.size(level); ++k) {
        const auto range = tree_.below(level, k);
        Directions all;
        for (std::size_t l = range.first; l < range.end; ++l) {
          join(all, level == 0 ? directionsOf(l) : directions_[level - 1][l]);
        }
        directions_[level].push_back(all);
      }
    }
  }

  // The perpendicular, and what lies between it and those of the edges next to it.
  Directions directionsOf(std::size_t k) const {
    const gx_Edge& e = edge(k);
    if (e.a == e.b) return {};
    const Point d = e.b - e.a;
    const double angle = std::atan2(d.y(), d.x()) + 0.5 * kPi;
    double low = 0.0;
    double high = 0.0;
    for (const std::size_t l : {links_.before[k], links_.after[k]}) {
      const Point other = edge(l).b - edge(l).a;
      const double turn = std::atan2(gf_Cross(d, other), d * other);
      low = std::min(low, turn);
      high = std::max(high, turn);
    }
    return {angle + 0.5 * (low + high), 0.5 * (high - low)};
  }

  static void join(Directions& all, const Directions& more) {
    if (more.half < 0.0) return;
    if (all.half < 0.0) {
      all = more;
      return;
    }
    const double apart = std::remainder(more.middle - all.middle, kPi);
    const double low = std::min(-all.half, apart - more.half);
    const double high = std::max(all.half, apart + more.half);
    all.middle += 0.5 * (low + high);
    all.half = 0.5 * (high - low);
  }

  // Tells whether a line from one box to the other may have a direction of both.
  static bool mayFace(const gx_Box& a, const Directions& da, const gx_Box& b, const Directions& db) {
    if (da.half < 0.0 || db.half < 0.0) return false;
    const Point d(0.5 * (b.lowX + b.highX) - 0.5 * (a.lowX + a.highX),
                  0.5 * (b.lowY + b.highY) - 0.5 * (a.lowY + a.highY));
    const double reach = 0.5 * (std::hypot(a.highX - a.lowX, a.highY - a.lowY) +
                                std::hypot(b.highX - b.lowX, b.highY - b.lowY));
    const double distance = d.len();
    if (!(distance > reach)) return true;
    const double angle = std::atan2(d.y(), d.x());
    const double slack = std::asin(reach / distance) + 1e-6;
    return da.mayHold(angle, slack) && db.mayHold(angle, slack);
  }

  // ---- Pairs ------------------------------------------------------------------------------------

  static double squareBetween(const gx_Box& a, const gx_Box& b) {
    const double dx = std::max(std::max(a.lowX - b.highX, b.lowX - a.highX), 0.0);
    const double dy = std::max(std::max(a.lowY - b.highY, b.lowY - a.highY), 0.0);
    return dx * dx + dy * dy;
  }

  bool tooFar(double square) const {
    const double reach = wall * (1.0 + 1e-12);
    return square > reach * reach;
  }

  // Pairs of `a` and what does not come before it.
  void between(std::size_t levelA, std::size_t a, std::size_t levelB, std::size_t b) {
    const gx_Box& boxA = tree_.box(levelA, a);
    const gx_Box& boxB = tree_.box(levelB, b);
    const bool same = levelA == levelB && a == b;
    if (tooFar(squareBetween(boxA, boxB))) return;
    // Boxes that share a point may hold borders that touch.
    if (!same && !boxA.meets(boxB) &&
        !mayFace(boxA, directions_[levelA][a], boxB, directions_[levelB][b]))
      return;
    const auto inA = tree_.below(levelA, a);
    const auto inB = tree_.below(levelB, b);
    if (levelA == 0) {
      for (std::size_t k = inA.first; k < inA.end; ++k) {
        for (std::size_t l = same ? k + 1 : inB.first; l < inB.end; ++l) offer(k, l);
      }
      return;
    }
    std::vector<std::pair<double, std::pair<std::size_t, std::size_t>>> parts;
    for (std::size_t k = inA.first; k < inA.end; ++k) {
      for (std::size_t l = same ? k : inB.first; l < inB.end; ++l) {
        parts.push_back({squareBetween(tree_.box(levelA - 1, k), tree_.box(levelB - 1, l)), {k, l}});
      }
    }
    std::sort(parts.begin(), parts.end());
    for (const auto& part : parts)
      between(levelA - 1, part.second.first, levelB - 1, part.second.second);
  }

  void offer(std::size_t k, std::size_t l) {
    const gx_Edge& e = edge(k);
    const gx_Edge& f = edge(l);
    if (e.a == e.b || f.a == f.b) return;
    if (data_.rings[e.ring].region != data_.rings[f.ring].region) return;
    if (tooFar(squareBetween(e.box(), f.box())) || follow(k, l)) return;
    gx_Gap found = gx_gapBetween(e.a, e.b, f.a, f.b);
    if (found.distance > 0.0) faceMiddle(e, f, found);
    const bool first = found.distance == wall && std::pair(k, l) < std::pair(i, j);
    if (!(found.distance < wall) && !first) return;
    if (found.distance > 0.0 && (!holds(k, found.s, found.p, found.q) ||
                                 !holds(l, found.t, found.q, found.p) || !isFree(k, l, found))) {
      return;
    }
    wall = found.distance;
    gap = found;
    i = k;
    j = l;
  }

  // Of parallel edges that face each other all pairs in between are equal, and those at the ends may be
  // worse, where the border turns towards the other: takes the pair in the middle.
  void faceMiddle(const gx_Edge& e, const gx_Edge& f, gx_Gap& found) const {
    const Point d = e.b - e.a;
    const Point g = f.b - f.a;
    const double length = d.len();
    const double other = g.len();
    const double slack = kParallel + 4.0 * rounding_ / length + 4.0 * rounding_ / other;
    if (std::fabs(gf_Cross(d, g)) > slack * length * other) return;
    const double first = d * (f.a - e.a) / (length * length);
    const double second = d * (f.b - e.a) / (length * length);
    const double low = std::max(0.0, std::min(first, second));
    const double high = std::min(1.0, std::max(first, second));
    if (!(high - low > 1e-9)) return;
    found.s = 0.5 * (low + high);
    found.p = e.a + d * found.s;
    const gx_Foot foot = gx_footOn(f.a, f.b, found.p);
    found.t = foot.t;
    found.q = foot.point;
    found.distance = foot.distance;
  }

  // Tells whether a small step of p along the border, p lying on edge k, brings it no nearer to q.
  bool holds(std::size_t k, double t, const Point& p, const Point& q) const {
    const gx_Edge& e = edge(k);
    if (t > 0.0 && t < 1.0) return true;  // the gap of the edge itself is shortest there
    const gx_Edge& next = edge(t == 0.0 ? links_.before[k] : links_.after[k]);
    const Point away = p - q;
    const Point own = t == 0.0 ? e.b - e.a : e.a - e.b;
    const Point other = t == 0.0 ? next.a - next.b : next.b - next.a;
    return notTowards(own, away) && notTowards(other, away);
  }

  bool notTowards(const Point& step, const Point& away) const {
    const double length = step.len();
    const double across = away.len();
    const double slack =
        (kParallel + 4.0 * rounding_ / length + 4.0 * rounding_ / across) * length * across;
    return step * away >= -slack;
  }

  // Tells whether the line between the ends of a gap runs in the material and meets no border but in its
  // ends.
  bool isFree(std::size_t k, std::size_t l, const gx_Gap& found) const {
    const Point middle = found.p + (found.q - found.p) * 0.5;
    const long region = data_.rings[edge(k).ring].region;
    if (data_.locateIn(static_cast<std::size_t>(regionAt(region)), middle).state != gxState::eInside)
      return false;
    gx_Box box;
    box.add(found.p);
    box.add(found.q);
    const auto meets = [&box](const gx_Box& other) { return other.meets(box); };
    return !tree_.forEachRun(meets, [&](std::size_t first, std::size_t end) {
      for (std::size_t m = first; m < end; ++m) {
        if (m == k || m == l || data_.rings[edge(m).ring].region != region) continue;
        if (crosses(k, l, m, found)) return true;
      }
      return false;
    });
  }

  // Tells whether the line meets another edge.  An edge next to one of its own meets it in the vertex where
  // it ends, which does not count; where the foot beside that vertex was rounded, it may be met by rounding.
  bool crosses(std::size_t k, std::size_t l, std::size_t m, const gx_Gap& found) const {
    const gx_Edge& e = edge(m);
    if (e.a == e.b) return false;
    const Point rounded = (found.q - found.p) * (kRoundings * rounding_ / found.distance);
    Point p = found.p;
    Point q = found.q;
    if (links_.before[k] == m || links_.after[k] == m) {
      if (e.a == p || e.b == p) return false;
      p += rounded;
    }
    if (links_.before[l] == m || links_.after[l] == m) {
      if (e.a == q || e.b == q) return false;
      q -= rounded;
    }
    return (q - p) * rounded > 0.0 && gx_segmentsMeet(p, q, e.a, e.b);
  }

  // Which grid a region has: regions without points have none.
  std::size_t regionAt(long region) const {
    std::size_t at = 0;
    while (data_.rings[edge(data_.firstOfRegion[at]).ring].region != region) ++at;
    return at;
  }

  const gx_LocatorAccess::Data& data_;
  const gx_EdgeTree& tree_;
  double rounding_ = 0.0;
  gx_EdgeLinks links_;
  std::vector<std::vector<Directions>> directions_;
};

gxWall wallOf(const gxLocator& locator) {
  gxWall result;
  result.status = locator.status();
  if (result.status == gxStatus::eNotFinite) result.wall = std::numeric_limits<double>::quiet_NaN();
  if (result.status != gxStatus::eOk) return result;
  const auto& data = gx_LocatorAccess::data(locator);
  Search search(data);
  search.run();
  if (!(search.wall < kInfinity)) {
    result.status = gxStatus::eNone;
    return result;
  }
  result.wall = data.lengthFrom(search.wall);
  const gx_Edge& e = data.tree.edges()[search.i];
  const gx_Edge& f = data.tree.edges()[search.j];
  result.from = data.place(e, search.gap.s, search.gap.p);
  result.to = data.place(f, search.gap.t, search.gap.q);
  result.region = data.rings[e.ring].region;
  return result;
}

// Of one outline and what lies within it.
gxWall wallWithin(const gxLocator& locator, std::span<const Point> outline) {
  if (locator.status() != gxStatus::eOk || !gx_onOneLine(outline)) return wallOf(locator);
  gxWall none;
  none.status = gxStatus::eNone;
  return none;
}

}  // namespace

gxWall gfSmallestWall(std::span<const Point> outline) {
  return wallWithin(gxLocator(outline), outline);
}

gxWall gfSmallestWall(const gxContour& contour) {
  const gxLocator locator(contour);
  if (locator.status() != gxStatus::eOk || contour.isClosed())
    return wallWithin(locator, contour.points());
  gxWall open;
  open.status = gxStatus::eNotClosed;
  open.wall = std::numeric_limits<double>::quiet_NaN();
  return open;
}

gxWall gfSmallestWall(const gxRegion& region) {
  return wallWithin(gxLocator(region), region.points());
}

gxWall gfSmallestWall(const gxRegionSet& set) {
  return wallOf(gxLocator(set));
}

std::ostream& operator<<(std::ostream& out, const gxWall& w) {
  out << "wall " << w.wall << " from " << w.from << " to " << w.to;
  if (w.status != gxStatus::eOk) out << ' ' << w.status;
  return out;
}
