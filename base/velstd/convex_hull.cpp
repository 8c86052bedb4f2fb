// The convex hull, in one of three ways.
//
// Points that go around some place once, as along most outlines:
//
//  a. Take a place in the middle of four of the points.  Where every step from one point to the next is
//     seen from there as a turn of less than half a circle in one direction, beyond rounding, and all
//     steps together make one circle, the points are in the order of their angles.
//  b. Then one walk over them finds the hull: a point that is no left turn between its neighbours lies
//     in the triangle of the neighbours and that place, and is dropped (R. Graham, "An efficient
//     algorithm for determining the convex hull of a finite planar set", Information Processing
//     Letters 1, 1972).  Two neighbours that stay are never half a circle apart.
//  c. Of many points the hull of every eighth is found first.  Between two of its corners only what lies
//     outside their edge takes part in the walk.  (The walk goes astray at each turn of a ragged
//     outline, which no processor foresees; this comparison it does foresee.)
//
// Few points in another order are sorted, and the lower and upper chains are built from left to right
// (A. Andrew, "Another efficient algorithm for convex hulls in two dimensions", Information Processing
// Letters 9, 1979).
//
// All others a quarter at a time:
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
//     dropped; one that is dominated by the last, or lies inside the last few edges, is dropped.  The rest is put aside.
//  5. Where something was put aside, chain and rest are sorted by x and taken again, in order.
//
// A point is only ever dropped for lying inside two other points' edge, or to the right of and above
// another one, as decided by comparisons of coordinates or the exact orientation.  So the corners are
// the same whatever the order of the points and whichever way is taken.  Of equal points that differ
// in the sign of a zero the first is given.
#include <velstd/convex_hull.h>
#include <velstd/internal/four.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

namespace {

using Point = gxVector<2>;
using Points = std::vector<Point>;

// Turns by k quarters clockwise, and back.
inline Point turned(const Point& p, int quarters) {
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

// An object, so that sorting inlines it.
constexpr auto leftOf = [](const Point& a, const Point& b) {
  return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y());
};
bool below(const Point& a, const Point& b) {
  return a.y() < b.y() || (a.y() == b.y() && a.x() < b.x());
}

// ---- Points that go around once ---------------------------------------------------------------------

// The middle two of four numbers, halfway between.
double middleOf(double a, double b, double c, double d) {
  const double low = std::max(std::min(a, b), std::min(c, d));
  const double high = std::min(std::max(a, b), std::max(c, d));
  return low * 0.5 + high * 0.5;
}

// Tells whether a, b, c make a left turn, beyond rounding: where the filter of `gx_Orientation` can tell.
bool surelyLeft(const Point& a, const Point& b, const Point& c, double direction) {
  const double left = (b.x() - a.x()) * (c.y() - a.y());
  const double right = (b.y() - a.y()) * (c.x() - a.x());
  const double error = 2.0 * DBL_EPSILON * (std::fabs(left) + std::fabs(right)) + DBL_MIN;
  return direction * (left - right) > error;
}

// The points in the order of their angles, beginning at the one farthest to the left.
class Around {
 public:
  // Tells whether the points go around some place once.  They are finite then, and no two are equal.
  bool found(const Points& points) {
    const std::size_t count = points.size();
    if (count < 3) return false;
    points_ = points.data();
    count_ = count;
    const Point& a = points[0];
    const Point& b = points[count / 4];
    const Point& c = points[count / 2];
    const Point& d = points[count / 2 + count / 4];
    middle_ = {middleOf(a.x(), b.x(), c.x(), d.x()), middleOf(a.y(), b.y(), c.y(), d.y())};
    if (surelyLeft(middle_, points[count - 1], a, 1.0)) {
      direction_ = 1.0;
    } else if (surelyLeft(middle_, points[count - 1], a, -1.0)) {
      direction_ = -1.0;
    } else {
      return false;
    }
    return goesAround();
  }

  // Returns the point `k` steps after the first, counterclockwise.
  const Point& at(std::size_t k) const {
    if (direction_ > 0.0) return points_[k < count_ - first_ ? first_ + k : k - (count_ - first_)];
    return points_[k <= first_ ? first_ - k : first_ + count_ - k];
  }
  std::size_t count() const { return count_; }
  // Tells whether the way from a to b is a turn to the left of less than half a circle.
  bool turnsLeft(const Point& a, const Point& b) const { return surelyLeft(middle_, a, b, 1.0); }

 private:
  bool goesAround() {
    constexpr std::size_t kBlock = 16;  // between two looks whether it is still true
    const Point m = middle_;
    const double direction = direction_;
    Point last = points_[count_ - 1];
    double lowest = HUGE_VAL;
    unsigned circles = 0;  // how often a step comes from below the middle
    for (std::size_t i = 0; i < count_;) {
      bool turns = true;
      for (const std::size_t end = std::min(i + kBlock, count_); i < end; ++i) {
        const Point p = points_[i];
        turns &= surelyLeft(m, last, p, direction);
        const auto fromBelow = static_cast<unsigned>(last.y() < m.y());
        circles += fromBelow & static_cast<unsigned>(p.y() >= m.y());
        if (p.x() <= lowest && (p.x() < lowest || p.y() < points_[first_].y())) {
          lowest = p.x();
          first_ = i;
        }
        last = p;
      }
      if (!turns) return false;
    }
    return circles == 1;
  }

  const Point* points_ = nullptr;
  std::size_t count_ = 0;
  std::size_t first_ = 0;
  Point middle_;
  double direction_ = 1.0;
};

// Adds the next point to a walk around, after dropping what it takes back inside.
void addToWalk(Points& walk, const Point& p) {
  while (walk.size() >= 2 && gx_Orientation(walk[walk.size() - 2], walk.back(), p) <= 0) walk.pop_back();
  walk.push_back(p);
}

// Fewer points are walked over one and all.
constexpr std::size_t kManyAround = 128;

// Collects the steps of the corners of the hull of every eighth point; none where two of these are
// half a circle apart.
std::vector<std::size_t> roughCorners(const Around& around) {
  constexpr std::size_t kStride = 8;
  std::vector<std::size_t> steps;
  const Point* last = &around.at(0);
  for (std::size_t k = 0; k < around.count(); k += kStride) {
    const Point& p = around.at(k);
    if (k != 0 && !around.turnsLeft(*last, p)) return {};
    std::size_t size = steps.size();
    while (size >= 2 && gx_Orientation(around.at(steps[size - 2]), around.at(steps[size - 1]), p) <= 0) {
      --size;
    }
    steps.resize(size);
    steps.push_back(k);
    last = &p;
  }
  if (!around.turnsLeft(*last, around.at(0))) return {};
  return steps;
}

void walkAround(const Around& around, Points& walk) {
  std::vector<std::size_t> rough;
  if (around.count() >= kManyAround) rough = roughCorners(around);
  if (rough.empty()) {
    for (std::size_t k = 0; k < around.count(); ++k) addToWalk(walk, around.at(k));
  }
  for (std::size_t r = 0; r < rough.size(); ++r) {
    const std::size_t end = r + 1 < rough.size() ? rough[r + 1] : around.count();
    const Point& from = around.at(rough[r]);
    const Point& to = around.at(r + 1 < rough.size() ? end : 0);
    addToWalk(walk, from);
    for (std::size_t k = rough[r] + 1; k < end; ++k) {
      const Point& p = around.at(k);
      if (!surelyLeft(from, to, p, 1.0)) addToWalk(walk, p);
    }
  }
  addToWalk(walk, Point(walk.front()));
  walk.pop_back();
}

// ---- Few points ------------------------------------------------------------------------------------

// Up to here sorting costs less than dealing the points out.
constexpr std::size_t kFew = 64;

// Puts the corners of the lower hull of the points from first to last, and not the last, behind `hull`.
template <class Iterator>
void addChain(Iterator first, Iterator last, Points& hull) {
  const std::size_t start = hull.size();
  for (; first != last; ++first) {
    while (hull.size() >= start + 2 && gx_Orientation(hull[hull.size() - 2], hull.back(), *first) <= 0) {
      hull.pop_back();
    }
    hull.push_back(*first);
  }
  hull.pop_back();
}

void hullOfFew(const Points& points, Points& hull) {
  std::array<Point, kFew> sorted;
  Point* const begin = sorted.data();
  Point* end = std::copy(points.begin(), points.end(), begin);
  std::sort(begin, end, leftOf);
  end = std::unique(begin, end);
  if (end - begin < 2) {
    hull.assign(begin, end);
    return;
  }
  addChain(begin, end, hull);
  addChain(std::make_reverse_iterator(end), std::make_reverse_iterator(begin), hull);
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
      const double x = -along.y();
      const double y = along.x();
      // A point relative to the middle is at most `size` in each coordinate, and so is the end of an
      // edge.  Ten roundings of products of that size add up to less than the margin.
      const double margin =
          8.0 * DBL_EPSILON * (std::fabs(along.x()) * size.y() + std::fabs(along.y()) * size.x()) +
          DBL_MIN;
      double bound = x * from.x() + y * from.y() + margin;
      // An edge without a direction leaves the decision to the others.  Near the ends of the range
      // nothing is certain.
      if (along == Point(0.0, 0.0)) bound = -1.0;
      if (!(margin < 1e290)) bound = HUGE_VAL;
      x_[i / 2][i % 2] = x;
      y_[i / 2][i % 2] = y;
      bound_[i / 2][i % 2] = bound;
    }
  }

  // Tells whether a point is certainly left of all edges that have a direction.
  bool has(const Point& p) const {
    const Point d = p - middle_;
    const auto isLeftOf = [&](std::size_t i) { return x_[i] * d.x() + y_[i] * d.y() > bound_[i]; };
    const auto all = (isLeftOf(0) & isLeftOf(1)) & (isLeftOf(2) & isLeftOf(3));
    return (all[0] & all[1]) != 0;
  }

 private:
  Point middle_;
  // Two edges side by side.
  std::array<gx_Two, 4> x_;
  std::array<gx_Two, 4> y_;
  std::array<gx_Two, 4> bound_;
};

// Deals the points that may be corners out to the chains in whose boxes they lie.
std::array<Points, 4> findCandidates(const Points& points, const std::array<Ends, 4>& ends) {
  const Point low(ends[0].first.x(), ends[0].last.y());
  const Point high(-ends[2].first.x(), -ends[2].last.y());
  const Inside inside(ends, low * 0.5 + high * 0.5, high - low);
  std::array<Points, 4> candidates;
  // As many as there are where few lie inside; of a long outline most do, and the lists grow as they must.
  constexpr std::size_t kLikely = 256;
  for (Points& some : candidates) some.reserve(std::min(points.size() / 4 + 16, kLikely));
  for (const Point& p : points) {
    if (inside.has(p)) continue;
    for (int k = 0; k < 4; ++k) {
      const auto i = static_cast<std::size_t>(k);
      const Point q = turned(p, k);
      if (q.x() <= ends[i].last.x() && q.y() <= ends[i].first.y())
        candidates[i].emplace_back(q.x(), q.y());
    }
  }
  return candidates;
}

// ---- The chain -------------------------------------------------------------------------------------

// The lower left chain of the points added so far: x grows, y falls, every turn is to the left.
class Chain {
 public:
  explicit Chain(const Point& first) {
    constexpr std::size_t kLikely = 32;
    corners_.reserve(kLikely);
    corners_.push_back(first);
  }

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

  Points& corners() { return corners_; }

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
    return std::move(chain.corners());
  }
  aside.insert(aside.end(), chain.corners().begin(), chain.corners().end());
  aside.push_back(ends.last);
  std::sort(aside.begin(), aside.end(), leftOf);
  Chain sorted(ends.first);
  for (const Point& p : aside) sorted.add(p);
  return std::move(sorted.corners());
}

bool isFinite(const Point& p) {
  return p.x() - p.x() == 0.0 && p.y() - p.y() == 0.0;
}

void hullByQuarters(const Points& points, Points& hull) {
  const std::array<Ends, 4> ends = findEnds(points);
  const std::array<Points, 4> candidates = findCandidates(points, ends);
  for (int k = 0; k < 4; ++k) {
    const auto i = static_cast<std::size_t>(k);
    for (const Point& q : chainOf(candidates[i], ends[i])) {
      const Point p = turnedBack(q, k);
      if (hull.empty() || !(hull.back() == p)) hull.push_back(p);
    }
  }
  if (hull.size() > 1 && hull.front() == hull.back()) hull.pop_back();
}

// Where a corner has a zero coordinate, takes the first of the points that equal it.
void takeFirstZeros(const Points& points, Points& hull) {
  for (Point& corner : hull) {
    if (corner.x() == 0.0 || corner.y() == 0.0)
      corner = *std::find(points.begin(), points.end(), corner);
  }
}

void findHull(const Points& points, Points& hull) {
  if (points.empty()) return;
  if (points.size() <= kFew) {
    hullOfFew(points, hull);
  } else {
    hullByQuarters(points, hull);
  }
  takeFirstZeros(points, hull);
}

}  // namespace

void gfConvexHull(const std::vector<gxVector<2>>& points, std::vector<gxVector<2>>& hull) {
  Points corners;
  corners.reserve(std::min(points.size(), kFew));
  Around around;
  if (around.found(points)) {
    walkAround(around, corners);
  } else if (std::all_of(points.begin(), points.end(), isFinite)) {
    findHull(points, corners);
  } else {
    Points some;
    std::copy_if(points.begin(), points.end(), std::back_inserter(some), isFinite);
    if (around.found(some)) {
      walkAround(around, corners);
    } else {
      findHull(some, corners);
    }
  }
  hull = std::move(corners);
}
