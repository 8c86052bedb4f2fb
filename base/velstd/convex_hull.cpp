// The convex hull, a quarter at a time.
//
//  1. Find the outermost points to the left, below, to the right and above.  They are corners.  A hull
//     falls into four chains between them, and along each both coordinates run one way.
//  2. Each chain is turned by a multiple of 90 degrees (which costs no digit) to be the one from the
//     left to the bottom: x grows, y falls, the inside is above.
//  3. The points that may belong to it are those in the box of its two ends that are not certainly
//     inside the octagon of the ends and of the points farthest in the diagonal directions (S. Akl and
//     G. Toussaint, "A fast convex hull algorithm", Information Processing Letters 7, 1978).  The test is made with rounded numbers and a bound for their error.
//  4. They are taken as they come.  Points along an outline come nearly in order: a point that is to
//     the right of the last and lower extends the chain, after corners that no longer turn left are
//     dropped (A. Andrew, Information Processing Letters 9, 1979); one that is dominated by the last,
//     or lies inside the last few edges, is dropped.  The rest is put aside.
//  5. Where something was put aside, chain and rest are sorted by x and taken again, in order.
//
// A point is only ever dropped for lying inside two other points' edge, or to the right of and above
// another one, as decided by comparisons of coordinates or the exact orientation.  So the corners are
// the same whatever the order of the points.
#include <velstd/convex_hull.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace {

using Point = gxVector<2>;
using Points = std::vector<Point>;

// Turns by k quarters clockwise, and back.
Point turned(const Point& p, int quarters) {
  switch (quarters) {
    case 0: return p;
    case 1: return {p.y(), -p.x()};
    case 2: return {-p.x(), -p.y()};
    default: return {-p.y(), p.x()};
  }
}
Point turnedBack(const Point& p, int quarters) {
  return turned(p, (4 - quarters) % 4);
}

bool leftOf(const Point& a, const Point& b) {
  return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y());
}
bool below(const Point& a, const Point& b) {
  return a.y() < b.y() || (a.y() == b.y() && a.x() < b.x());
}

// ---- Which points may belong to a chain ------------------------------------------------------------

// The ends of a chain, in its own frame, and the point that lies farthest to the lower left.
struct Ends {
  Point first;  // the lowest x, of several the one with the lowest y
  Point last;   // the lowest y, of several the one with the lowest x
  Point corner;
};

std::array<Ends, 4> findEnds(const Points& points) {
  std::array<Ends, 4> ends;
  for (int k = 0; k < 4; ++k) {
    const Point p = turned(points.front(), k);
    ends[static_cast<std::size_t>(k)] = {p, p, p};
  }
  auto& [e0, e1, e2, e3] = ends;
  double low = HUGE_VAL;
  double right = -HUGE_VAL;
  double high = -HUGE_VAL;
  double left = HUGE_VAL;
  for (const Point& p : points) {
    const double sum = p.x() + p.y();
    const double difference = p.x() - p.y();
    if (sum < low) low = sum, e0.corner = p;
    if (difference > right) right = difference, e1.corner = turned(p, 1);
    if (sum > high) high = sum, e2.corner = turned(p, 2);
    if (difference < left) left = difference, e3.corner = turned(p, 3);
    if (p.x() <= e0.first.x()) {
      if (leftOf(p, e0.first)) e0.first = p;
      if (const Point q = turned(p, 3); below(q, e3.last)) e3.last = q;
    }
    if (p.y() <= e0.last.y()) {
      if (below(p, e0.last)) e0.last = p;
      if (const Point q = turned(p, 1); leftOf(q, e1.first)) e1.first = q;
    }
    if (p.x() >= -e2.first.x()) {
      if (const Point q = turned(p, 1); below(q, e1.last)) e1.last = q;
      if (const Point q = turned(p, 2); leftOf(q, e2.first)) e2.first = q;
    }
    if (p.y() >= -e2.last.y()) {
      if (const Point q = turned(p, 2); below(q, e2.last)) e2.last = q;
      if (const Point q = turned(p, 3); leftOf(q, e3.first)) e3.first = q;
    }
  }
  return ends;
}

// The inside of the octagon of the ends and corners of all chains, as far as it is certain.
class Inside {
 public:
  Inside(const std::array<Ends, 4>& ends, const Point& middle, const Point& size) : middle_(middle) {
    std::array<Point, 8> around;
    for (int k = 0; k < 4; ++k) {
      const auto i = static_cast<std::size_t>(k);
      around[2 * i] = turnedBack(ends[i].first, k);
      around[2 * i + 1] = turnedBack(ends[i].corner, k);
    }
    for (std::size_t i = 0; i < 8; ++i) {
      const Point from = around[i] - middle;
      const Point along = around[(i + 1) % 8] - around[i];
      x_[i] = -along.y();
      y_[i] = along.x();
      // A point relative to the middle is at most `size` in each coordinate, and so is the end of an
      // edge.  Ten roundings of products of that size add up to less than the margin.
      const double margin =
          8.0 * DBL_EPSILON * (std::fabs(along.x()) * size.y() + std::fabs(along.y()) * size.x()) +
          DBL_MIN;
      bound_[i] = x_[i] * from.x() + y_[i] * from.y() + margin;
      // An edge without a direction leaves the decision to the others.  Near the ends of the range
      // nothing is certain.
      if (along == Point(0.0, 0.0)) bound_[i] = -1.0;
      if (!(margin < 1e290)) bound_[i] = HUGE_VAL;
    }
  }

  // Tells whether a point is certainly left of all edges that have a direction.
  bool has(const Point& p) const {
    const Point d = p - middle_;
    bool inside = true;
    for (std::size_t i = 0; i < 8; ++i) inside &= x_[i] * d.x() + y_[i] * d.y() > bound_[i];
    return inside;
  }

 private:
  Point middle_;
  std::array<double, 8> x_;
  std::array<double, 8> y_;
  std::array<double, 8> bound_;
};

// Deals the points that may be corners out to the chains in whose boxes they lie.
std::array<Points, 4> findCandidates(const Points& points, const std::array<Ends, 4>& ends) {
  const Point low(ends[0].first.x(), ends[0].last.y());
  const Point high(-ends[2].first.x(), -ends[2].last.y());
  const Inside inside(ends, low * 0.5 + high * 0.5, high - low);
  std::array<Points, 4> candidates;
  for (const Point& p : points) {
    if (inside.has(p)) continue;
    for (int k = 0; k < 4; ++k) {
      const auto i = static_cast<std::size_t>(k);
      const Point q = turned(p, k);
      if (q.x() <= ends[i].last.x() && q.y() <= ends[i].first.y()) candidates[i].push_back(q);
    }
  }
  return candidates;
}

// ---- The chain -------------------------------------------------------------------------------------

// The lower left chain of the points added so far: x grows, y falls, every turn is to the left.
class Chain {
 public:
  explicit Chain(const Point& first) : corners_{first} {}

  // Takes a point that is not to the left of the first; returns false where its place is farther back
  // than a look at the last few corners tells.
  bool add(const Point& p) {
    while (p.x() < corners_.back().x() && p.y() <= corners_.back().y()) corners_.pop_back();
    if (p.x() < corners_.back().x()) return liesInside(p);
    if (p.y() >= corners_.back().y()) return true;
    if (p.x() == corners_.back().x()) corners_.pop_back();
    while (corners_.size() >= 2 &&
           gx_Orientation(corners_[corners_.size() - 2], corners_.back(), p) <= 0) {
      corners_.pop_back();
    }
    corners_.push_back(p);
    return true;
  }

  const Points& corners() const { return corners_; }

 private:
  // Looks back from the last corner for the edge above or below p, which is to the left of it.
  bool liesInside(const Point& p) const {
    constexpr std::size_t kLook = 8;
    const std::size_t count = corners_.size();
    for (std::size_t i = count - 1; i-- > 0 && i + kLook >= count;) {
      if (corners_[i].x() > p.x()) continue;
      return corners_[i].y() <= p.y() || gx_Orientation(corners_[i], corners_[i + 1], p) >= 0;
    }
    return false;
  }

  Points corners_;
};

Points chainOf(const Points& candidates, const Ends& ends) {
  Chain chain(ends.first);
  Points aside;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (!chain.add(candidates[i])) aside.push_back(candidates[i]);
    // Points in no order at all: looking at more of them is of no use.
    if (aside.size() > 50 + i / 4) {
      aside.insert(aside.end(), candidates.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                   candidates.end());
      break;
    }
  }
  if (aside.empty()) {
    chain.add(ends.last);
    return chain.corners();
  }
  aside.insert(aside.end(), chain.corners().begin(), chain.corners().end());
  aside.push_back(ends.last);
  std::sort(aside.begin(), aside.end(), leftOf);
  Chain sorted(ends.first);
  for (const Point& p : aside) sorted.add(p);
  return sorted.corners();
}

bool isFinite(const Point& p) {
  return p.x() - p.x() == 0.0 && p.y() - p.y() == 0.0;
}

}  // namespace

void gfConvexHull(const std::vector<gxVector<2>>& points, std::vector<gxVector<2>>& hull) {
  Points some;
  const bool all = std::all_of(points.begin(), points.end(), isFinite);
  if (!all) std::copy_if(points.begin(), points.end(), std::back_inserter(some), isFinite);
  const Points& given = all ? points : some;
  Points corners;
  if (!given.empty()) {
    const std::array<Ends, 4> ends = findEnds(given);
    const std::array<Points, 4> candidates = findCandidates(given, ends);
    for (int k = 0; k < 4; ++k) {
      const auto i = static_cast<std::size_t>(k);
      for (const Point& q : chainOf(candidates[i], ends[i])) {
        const Point p = turnedBack(q, k);
        if (corners.empty() || !(corners.back() == p)) corners.push_back(p);
      }
    }
    if (corners.size() > 1 && corners.front() == corners.back()) corners.pop_back();
  }
  hull = std::move(corners);
}
