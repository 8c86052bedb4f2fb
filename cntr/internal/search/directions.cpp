// The first wide gap among sorted directions needs only the first few directions above 0, so they
// are taken from the index in their order, as a walk through a tree takes the nearest: the box with
// the least direction next, and a vertex only when no box that is left can hold an earlier one.  The
// number that orders boxes and vertices on the way is not the direction, which costs an arc tangent,
// but the share of |y| in |x| + |y|, quarter by quarter, which grows with it.  The two disagree by
// rounding only, so vertices closer than a slack far above that are taken together, and their true
// directions are sorted.
//
// (Asking the index for one sector after the other, each twice as wide as the last, was tried first.
// From a point near the border the first sectors are empty and the next one holds half the outline.)
//
// Where very many directions come first, in an even row of gaps just below the limit, all of them are
// looked at, quarter by quarter, without sorting: each goes into one of narrow buckets, so narrow that
// no wide gap has both ends in one, and a bucket keeps its least and greatest.  Of the gaps from bucket
// to bucket those that come near the limit are measured between true directions.
#include <cntr/internal/search/directions.h>

#include <algorithm>
#include <cmath>

namespace {

using Points = std::vector<gxVector<2>>;

// Far above the rounding of squared distances, of directions and of what stands for these.
constexpr double kSlack = 1e-9;
constexpr double kSameDirection = 1e-12;

// Coordinates up to here can be subtracted and added without overflow.
constexpr double kLargest = 1e150;

// A number from 0 to 4 that grows with the direction of (x, y) from 0 to 2π; 0 for (0, 0).
double turnOf(double x, double y) {
  const double size = std::abs(x) + std::abs(y);
  if (size == 0.0) return 0.0;
  const double share = y / size;
  if (x < 0.0) return 2.0 - share;
  return y < 0.0 ? 4.0 + share : share;
}

// The least such number of any point of the box, seen from the point.  Directions so little below the
// x axis that rounding may put them on it count as 0.
double leastTurn(const gx_Box& b, const gxVector<2>& point) {
  const double lowX = b.lowX - point.x();
  const double highX = b.highX - point.x();
  const double lowY = b.lowY - point.y();
  const double highY = b.highY - point.y();
  if (lowY > 0.0) return turnOf(highX, highX >= 0.0 ? lowY : highY);
  if (highY >= -kSlack * std::max(highX, 0.0)) return highX >= 0.0 ? 0.0 : turnOf(highX, highY);
  return turnOf(lowX, lowX <= 0.0 ? highY : lowY);
}

// The directions to the vertices in ascending order, group by group of those that are the same
// within rounding.
class Directions {
 public:
  Directions(const gx_EdgeIndex& index, const Points& points, const gxVector<2>& point, std::size_t most)
      : index_(index), points_(points), point_(point), left_(most) {
    const std::size_t top = index.levels() - 1;
    for (std::size_t i = 0; i < index.size(top); ++i) push(top, i);
  }

  // Gives the next group, sorted; false when there is none or too many vertices were looked at.
  bool next(std::vector<double>& group) {
    group.clear();
    while (vertices_.empty()) {
      if (boxes_.empty() || !open()) return false;
    }
    while (true) {
      if (!openUpToFirst()) return false;
      const double last = vertices_.front().turn;
      group.push_back(gx_directionTo(point_, points_[vertices_.front().at]));
      std::pop_heap(vertices_.begin(), vertices_.end(), later);
      vertices_.pop_back();
      if (!openUpTo(last)) return false;
      if (vertices_.empty() || vertices_.front().turn > last + kSameDirection) break;
    }
    std::sort(group.begin(), group.end());
    return true;
  }

 private:
  struct Item {
    double turn;
    std::size_t level;  // of a box
    std::size_t at;
  };
  static bool later(const Item& a, const Item& b) { return a.turn > b.turn; }

  void push(std::size_t level, std::size_t at) {
    boxes_.push_back({leastTurn(index_.box(level, at), point_), level, at});
    std::push_heap(boxes_.begin(), boxes_.end(), later);
  }

  // Opens boxes until none that is left reaches up to the first vertex.  What is opened may bring an
  // earlier one: the box that the point lies in comes first of all, and may hold vertices behind it, up
  // to which lies half the outline.
  bool openUpToFirst() {
    while (!boxes_.empty() && boxes_.front().turn <= vertices_.front().turn + kSameDirection) {
      if (!open()) return false;
    }
    return true;
  }

  // Opens boxes until none that is left reaches up to the turn.
  bool openUpTo(double turn) {
    while (!boxes_.empty() && boxes_.front().turn <= turn + kSameDirection) {
      if (!open()) return false;
    }
    return true;
  }

  bool open() {
    const Item box = boxes_.front();
    std::pop_heap(boxes_.begin(), boxes_.end(), later);
    boxes_.pop_back();
    const gx_EdgeIndex::Run run = index_.below(box.level, box.at);
    if (box.level > 0) {
      for (std::size_t i = run.first; i < run.end; ++i) push(box.level - 1, i);
      return true;
    }
    if (left_ < run.end - run.first) return false;
    left_ -= run.end - run.first;
    for (std::size_t i = run.first; i < run.end; ++i) addVertex(i);
    return true;
  }

  void addVertex(std::size_t i) {
    const gxVector<2> d = points_[i] - point_;
    double turn = turnOf(d.x(), d.y());
    if (turn > 4.0 - kSlack && gx_directionTo(point_, points_[i]) < 1.0) turn = 0.0;
    vertices_.push_back({turn, 0, i});
    std::push_heap(vertices_.begin(), vertices_.end(), later);
  }

  const gx_EdgeIndex& index_;
  const Points& points_;
  gxVector<2> point_;
  std::size_t left_;
  std::vector<Item> boxes_;
  std::vector<Item> vertices_;
};

bool isOrdinary(const gx_Box& b, const gxVector<2>& point) {
  return b.lowX > -kLargest && b.lowY > -kLargest && b.highX < kLargest && b.highY < kLargest &&
         std::abs(point.x()) < kLargest && std::abs(point.y()) < kLargest;
}

}  // namespace

double gx_directionTo(const gxVector<2>& point, const gxVector<2>& vertex) {
  return (vertex - point).angle().norm().toDouble();
}

bool gx_isOnVertex(const gx_EdgeIndex& index, const Points& points, const gxVector<2>& point,
                   double tolerance) {
  if (index.hasNaN()) return true;
  const auto isNear = [&](const gxVector<2>& vertex) { return !((vertex - point).len() > tolerance); };
  if (!std::isfinite(point.x()) || !std::isfinite(point.y())) {  // ∞ − ∞ is near, whatever the box
    return std::any_of(points.begin(), points.end(), isNear);
  }
  const double limit = tolerance * tolerance * (1.0 + kSlack);
  return index.forEachRun([&](const gx_Box& box) { return !(box.squareFrom(point) > limit); },
                          [&](std::size_t first, std::size_t end) {
                            for (std::size_t i = first; i < end; ++i) {
                              if (isNear(points[i])) return true;
                            }
                            return false;
                          });
}

bool gx_firstWideGap(const gx_EdgeIndex& index, const Points& points, const gxVector<2>& point,
                     double wide, double& before, double& gap) {
  if (index.hasNaN() || !isOrdinary(index.bounds(), point)) return false;
  Directions directions(index, points, point, points.size() / 32 + 64);
  std::vector<double> group;
  bool isFirst = true;
  double last = 0.0;
  while (directions.next(group)) {
    for (const double direction : group) {
      if (!isFirst) {
        gap = gxRadian(direction - last).norm().toDouble();
        if (gap > wide) {
          before = last;
          return true;
        }
      }
      isFirst = false;
      last = direction;
    }
  }
  return false;
}

namespace {

// The vertices' turns, and the greatest and least true direction of those at a turn.
class Turns {
 public:
  Turns(const Points& points, const gxVector<2>& point) : points_(points), point_(point) {
    turns_.reserve(points.size());
    for (const gxVector<2>& p : points) {
      if (!(std::abs(p.x()) < kLargest && std::abs(p.y()) < kLargest)) return;
      const gxVector<2> d = p - point;
      double turn = turnOf(d.x(), d.y());
      if (turn > 4.0 - kSlack && gx_directionTo(point, p) < 1.0) turn = 0.0;
      turns_.push_back(turn);
    }
    isOrdinary_ = std::abs(point.x()) < kLargest && std::abs(point.y()) < kLargest;
  }

  bool isOrdinary() const { return isOrdinary_; }
  const std::vector<double>& all() const { return turns_; }

  double greatestAt(double turn) const {
    return choose(turn, [](double a, double b) { return a < b; });
  }
  double leastAt(double turn) const {
    return choose(turn, [](double a, double b) { return b < a; });
  }

 private:
  template <class Worse>
  double choose(double turn, const Worse& worse) const {
    bool isFirst = true;
    double best = 0.0;
    for (std::size_t i = 0; i < turns_.size(); ++i) {
      if (std::abs(turns_[i] - turn) > kSameDirection) continue;
      const double direction = gx_directionTo(point_, points_[i]);
      if (isFirst || worse(best, direction)) best = direction;
      isFirst = false;
    }
    return best;
  }

  const Points& points_;
  gxVector<2> point_;
  bool isOrdinary_ = false;
  std::vector<double> turns_;
};

// Tells whether the directions at two turns may be farther apart than `wide`.  A turn t into a quarter
// is the direction of (1 − t, t), which grows by 1 / ((1 − t)² + t²) there.  The middle's rate is right
// up to the square of the difference (the second derivative is 16 at most), except across the border
// of two quarters, where it is off by the difference.
bool mayBeWide(double from, double to, double wide) {
  const double difference = to - from;
  if (difference > 0.0625) return true;
  const double middle = 0.5 * (from + to);
  const double t = middle - std::floor(middle);
  const double rate = 1.0 / ((1.0 - t) * (1.0 - t) + t * t);
  const double slack =
      std::floor(from) == std::floor(to) ? 2.0 * difference * difference : 8.0 * difference;
  return difference * rate * (1.0 + slack) + 1e-14 > wide * (1.0 - kSlack);
}

}  // namespace

bool gx_firstWideGapOfAll(const Points& points, const gxVector<2>& point, double wide, double& before,
                          double& gap) {
  const Turns turns(points, point);
  if (!turns.isOrdinary()) return false;
  // A direction grows at most twice as fast as its turn, so a wide gap spans more than half of `wide`.
  const auto buckets = static_cast<std::size_t>(1.0 / (0.45 * wide)) + 2;
  const double perTurn = static_cast<double>(buckets - 1);
  std::vector<double> least(buckets);
  std::vector<double> greatest(buckets);
  constexpr double kNone = -1.0;
  double last = kNone;
  for (int quarter = 0; quarter < 4; ++quarter) {
    std::fill(greatest.begin(), greatest.end(), kNone);
    for (const double turn : turns.all()) {
      const double into = turn - quarter;
      if (into < 0.0 || into >= (quarter == 3 ? 2.0 : 1.0)) continue;
      const std::size_t b = std::min(static_cast<std::size_t>(into * perTurn), buckets - 1);
      least[b] = greatest[b] == kNone ? turn : std::min(least[b], turn);
      greatest[b] = std::max(greatest[b], turn);
    }
    for (std::size_t b = 0; b < buckets; ++b) {
      if (greatest[b] == kNone) continue;
      if (last != kNone && mayBeWide(last, least[b], wide)) {
        before = turns.greatestAt(last);
        gap = gxRadian(turns.leastAt(least[b]) - before).norm().toDouble();
        if (gap > wide) return true;
      }
      last = greatest[b];
    }
  }
  return false;
}
