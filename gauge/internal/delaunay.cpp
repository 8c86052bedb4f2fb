// Delaunay triangulation: divide, triangulate both halves, and sew them together from below.
//
// An edge is two directed ones, e and e ^ 1, each with the next and the previous one around its origin,
// counterclockwise.  The seam rises as a bubble does: at each step the candidate on either side is the
// next edge that a circle through the ends of the seam's last edge meets, edges that the circle would
// cover are deleted, and the better candidate becomes the seam's next edge.  Orientation and in-circle
// tests are exact, so that no input, cocircular or nearly collinear, misleads it.  The halves are about equal,
// so the recursion is as deep as n has binary digits.
#include <gauge/internal/delaunay.h>
#include <gauge/internal/exact.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

using Edge = std::size_t;

Edge sym(Edge e) {
  return e ^ 1U;
}

class Triangulation {
 public:
  explicit Triangulation(const std::vector<gxVector<2>>& points)
      : points_(points), order_(points.size()) {
    std::iota(order_.begin(), order_.end(), 0L);
    const auto lower = [this](long i, long j) {
      const gxVector<2>& p = at(i);
      const gxVector<2>& q = at(j);
      if (p.x() != q.x()) return p.x() < q.x();
      return p.y() != q.y() ? p.y() < q.y() : i < j;
    };
    std::sort(order_.begin(), order_.end(), lower);
    const auto equal = [this](long i, long j) { return at(i) == at(j); };
    order_.erase(std::unique(order_.begin(), order_.end(), equal), order_.end());
    if (order_.size() > 1) build(0, order_.size());
  }

  std::vector<gx_DelaunayEdge> edges() const {
    std::vector<gx_DelaunayEdge> result;
    for (Edge e = 0; e < origin_.size(); e += 2) {
      if (dead_[e / 2] != 0) continue;
      result.push_back({origin_[e], dest(e), apex(e), apex(sym(e))});
    }
    return result;
  }

 private:
  const gxVector<2>& at(long i) const { return points_[static_cast<std::size_t>(i)]; }
  long dest(Edge e) const { return origin_[sym(e)]; }
  Edge leftNext(Edge e) const { return previous_[sym(e)]; }
  Edge rightPrevious(Edge e) const { return next_[sym(e)]; }

  int turn(long a, long b, long c) const { return gx_Orientation(at(a), at(b), at(c)); }
  bool isRightOf(long p, Edge e) const { return turn(p, dest(e), origin_[e]) > 0; }
  bool isLeftOf(long p, Edge e) const { return turn(p, origin_[e], dest(e)) > 0; }
  bool inCircle(long a, long b, long c, long p) const {
    return gx_InCircle(at(a), at(b), at(c), at(p)) > 0;
  }

  long apex(Edge e) const {
    const Edge second = leftNext(e);
    const Edge third = leftNext(second);
    if (leftNext(third) != e || origin_[third] == origin_[e]) return gx_DelaunayEdge::kNone;
    return turn(origin_[e], dest(e), dest(second)) > 0 ? dest(second) : gx_DelaunayEdge::kNone;
  }

  Edge make(long from, long to) {
    const Edge e = origin_.size();
    origin_.push_back(from);
    origin_.push_back(to);
    for (const Edge k : {e, e + 1}) {
      next_.push_back(k);
      previous_.push_back(k);
    }
    dead_.push_back(0);
    return e;
  }

  void splice(Edge a, Edge b) {
    const Edge afterA = next_[a];
    const Edge afterB = next_[b];
    next_[a] = afterB;
    next_[b] = afterA;
    previous_[afterB] = a;
    previous_[afterA] = b;
  }

  Edge connect(Edge a, Edge b) {
    const Edge e = make(dest(a), origin_[b]);
    splice(e, leftNext(a));
    splice(sym(e), b);
    return e;
  }

  void remove(Edge e) {
    splice(e, previous_[e]);
    splice(sym(e), previous_[sym(e)]);
    dead_[e / 2] = 1;
  }

  // Triangulates the points from `first` to before `end`; returns the hull's edge out of the lowest point
  // and that into the highest one.
  std::pair<Edge, Edge> build(std::size_t first, std::size_t end) {
    if (end - first == 2) {
      const Edge a = make(order_[first], order_[first + 1]);
      return {a, sym(a)};
    }
    if (end - first == 3) return buildThree(first);
    const std::size_t middle = first + (end - first) / 2;
    const auto left = build(first, middle);
    const auto right = build(middle, end);
    return sew(left, right);
  }

  std::pair<Edge, Edge> buildThree(std::size_t first) {
    const Edge a = make(order_[first], order_[first + 1]);
    const Edge b = make(order_[first + 1], order_[first + 2]);
    splice(sym(a), b);
    const int way = turn(order_[first], order_[first + 1], order_[first + 2]);
    if (way == 0) return {a, sym(b)};
    const Edge c = connect(b, a);
    return way > 0 ? std::pair(a, sym(b)) : std::pair(sym(c), c);
  }

  std::pair<Edge, Edge> sew(std::pair<Edge, Edge> left, std::pair<Edge, Edge> right) {
    Edge leftInner = left.second;
    Edge rightInner = right.first;
    for (;;) {
      if (isLeftOf(origin_[rightInner], leftInner)) {
        leftInner = leftNext(leftInner);
      } else if (isRightOf(origin_[leftInner], rightInner)) {
        rightInner = rightPrevious(rightInner);
      } else {
        break;
      }
    }
    Edge base = connect(sym(rightInner), leftInner);
    if (origin_[leftInner] == origin_[left.first]) left.first = sym(base);
    if (origin_[rightInner] == origin_[right.second]) right.second = base;
    while (rise(base)) {}
    return {left.first, right.second};
  }

  // Takes the seam one edge up; false where it has arrived.
  bool rise(Edge& base) {
    const auto above = [&](Edge e) { return isRightOf(dest(e), base); };
    Edge leftNextUp = next_[sym(base)];
    if (above(leftNextUp)) {
      while (inCircle(dest(base), origin_[base], dest(leftNextUp), dest(next_[leftNextUp]))) {
        const Edge after = next_[leftNextUp];
        remove(leftNextUp);
        leftNextUp = after;
      }
    }
    Edge rightNextUp = previous_[base];
    if (above(rightNextUp)) {
      while (inCircle(dest(base), origin_[base], dest(rightNextUp), dest(previous_[rightNextUp]))) {
        const Edge after = previous_[rightNextUp];
        remove(rightNextUp);
        rightNextUp = after;
      }
    }
    const bool onLeft = above(leftNextUp);
    const bool onRight = above(rightNextUp);
    if (!onLeft && !onRight) return false;
    const bool takesRight = !onLeft || (onRight && inCircle(dest(leftNextUp), origin_[leftNextUp],
                                                            origin_[rightNextUp], dest(rightNextUp)));
    base = takesRight ? connect(rightNextUp, sym(base)) : connect(sym(base), sym(leftNextUp));
    return true;
  }

  const std::vector<gxVector<2>>& points_;
  std::vector<long> order_;
  std::vector<long> origin_;
  std::vector<Edge> next_;
  std::vector<Edge> previous_;
  std::vector<char> dead_;
};

}  // namespace

std::vector<gx_DelaunayEdge> gx_delaunay(const std::vector<gxVector<2>>& points) {
  return Triangulation(points).edges();
}
