// The Fréchet distance.
//
//   1. Whether a leash of a given length is enough: of each pair of edges the free part of the square of
//      parameters is convex, so what can be reached is an interval on every side of a cell, and goes from
//      cell to cell, column by column (Alt and Godau).
//   2. The distance between the ends is a lower bound, and often the answer.  A walk that always takes the
//      shorter of three steps between vertices gives an upper bound.
//   3. Bisection between the two, down to two units in the last place.
//   4. The answer is the distance of two vertices, or of a vertex from an edge, or from where a vertex of
//      one is as far from two of the other.  If one of the first two lies within rounding of the result,
//      it is the answer: so figures that are round numbers come out round.
#include <gauge/frechet.h>
#include <gauge/internal/border_tree.h>
#include <gauge/internal/frame.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <ostream>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kMostPairs = 2e7;
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// A part of a side of a cell, from 0 to 1; empty where low > high.
struct Interval {
  double low = 1.0;
  double high = 0.0;
  bool empty() const { return !(low <= high); }
};

// The part of the edge from a to b within the leash of p.
Interval freePart(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& p, double square) {
  const gxVector<2> along = b - a;
  const gxVector<2> v = p - a;
  const double whole = along * along;
  const bool hasStart = v * v <= square;
  const bool hasEnd = (p - b) * (p - b) <= square;
  if (whole == 0.0) return hasStart ? Interval{0.0, 1.0} : Interval{};
  const double cross = gf_Cross(along, v);
  const double inner = square - cross * cross / whole;
  Interval part;
  if (inner >= 0.0) {
    const double middle = (v * along) / whole;
    const double half = std::sqrt(inner / whole);
    part = {std::max(0.0, middle - half), std::min(1.0, middle + half)};
  }
  // What the ends say counts: they are shared with other cells.
  if (hasStart) part = {0.0, part.empty() ? 0.0 : part.high};
  if (hasEnd) part = {part.empty() ? 1.0 : part.low, 1.0};
  if (!hasStart && !part.empty() && part.low == 0.0 && part.high == 0.0) return {};
  return part;
}

class Decision {
 public:
  Decision(const Points& a, const Points& b) : a_(a), b_(b), left_(b.size() - 1) {}

  // Tells whether that leash, given by its square, is enough.
  bool enough(double square) {
    const std::size_t n = a_.size() - 1;
    const std::size_t m = b_.size() - 1;
    if ((a_[0] - b_[0]) * (a_[0] - b_[0]) > square) return false;
    if ((a_[n] - b_[m]) * (a_[n] - b_[m]) > square) return false;
    bool reaches = true;
    for (std::size_t j = 0; j < m; ++j) {
      left_[j] = reaches ? freePart(b_[j], b_[j + 1], a_[0], square) : Interval{};
      if (!left_[j].empty() && left_[j].low > 0.0) left_[j] = {};
      reaches = !left_[j].empty() && left_[j].high >= 1.0;
    }
    bool alongBottom = true;
    for (std::size_t i = 0; i < n; ++i) {
      Interval bottom;
      if (alongBottom) {
        bottom = freePart(a_[i], a_[i + 1], b_[0], square);
        if (!bottom.empty() && bottom.low > 0.0) bottom = {};
      }
      alongBottom = !bottom.empty() && bottom.high >= 1.0;
      bool any = false;
      for (std::size_t j = 0; j < m; ++j) {
        const Interval before = left_[j];
        if (before.empty() && bottom.empty()) {
          left_[j] = {};
          continue;
        }
        Interval right = freePart(b_[j], b_[j + 1], a_[i + 1], square);
        Interval top = freePart(a_[i], a_[i + 1], b_[j + 1], square);
        if (bottom.empty()) right.low = std::max(right.low, before.low);
        if (before.empty()) top.low = std::max(top.low, bottom.low);
        left_[j] = right;
        bottom = top;
        any = any || !right.empty() || !top.empty();
      }
      if (!any && !alongBottom) return false;
    }
    return !left_[m - 1].empty() && left_[m - 1].high >= 1.0;
  }

 private:
  const Points& a_;
  const Points& b_;
  std::vector<Interval> left_;  // what is reached on the left side of the column
};

// The longest step of a walk over vertices that always takes the shortest next one.
double greedyWalk(const Points& a, const Points& b) {
  const auto square = [&](std::size_t i, std::size_t j) { return (a[i] - b[j]) * (a[i] - b[j]); };
  std::size_t i = 0;
  std::size_t j = 0;
  double most = square(0, 0);
  while (i + 1 < a.size() || j + 1 < b.size()) {
    const double inf = std::numeric_limits<double>::infinity();
    const double first = i + 1 < a.size() ? square(i + 1, j) : inf;
    const double second = j + 1 < b.size() ? square(i, j + 1) : inf;
    const double both = i + 1 < a.size() && j + 1 < b.size() ? square(i + 1, j + 1) : inf;
    const double least = std::min({first, second, both});
    if (least == both) {
      ++i;
      ++j;
    } else if (least == first) {
      ++i;
    } else {
      ++j;
    }
    most = std::max(most, least);
  }
  return std::sqrt(most);
}

// The distance of a vertex from an edge nearest to `value`, if it is within rounding of it.
double snapped(const Points& a, const Points& b, double value) {
  double best = value;
  double least = 16.0 * kEpsilon * (value + 1.0);
  const auto consider = [&](double square) {
    const double candidate = std::sqrt(square);
    if (std::abs(candidate - value) < least) {
      least = std::abs(candidate - value);
      best = candidate;
    }
  };
  for (const auto& [points, others] : {std::pair(&a, &b), std::pair(&b, &a)}) {
    for (const gxVector<2>& p : *points) {
      for (std::size_t j = 0; j + 1 < others->size(); ++j) {
        consider(gx_Piece{(*others)[j], (*others)[j + 1]}.squareFrom(p));
      }
    }
  }
  return best;
}

double farthestFrom(const gxVector<2>& p, const Points& points) {
  double most = 0.0;
  for (const gxVector<2>& q : points) most = std::max(most, (q - p) * (q - p));
  return std::sqrt(most);
}

// Half way between, by value: a leash is seldom many powers of two shorter than the other bound.
double bisected(const Points& a, const Points& b, double low, double high) {
  Decision decision(a, b);
  if (decision.enough(low * low * (1.0 + 4.0 * kEpsilon))) return low;
  while (high - low > 2.0 * kEpsilon * high) {
    const double middle = low + 0.5 * (high - low);
    if (!(middle > low && middle < high)) break;
    (decision.enough(middle * middle) ? high : low) = middle;
  }
  return snapped(a, b, high);
}

gxFrechet frechet(const Points& first, const Points& second) {
  gxFrechet result;
  if (first.empty() || second.empty()) result.status = gxStatus::eEmpty;
  if (!gx_allFinite(first) || !gx_allFinite(second)) result.status = gxStatus::eNotFinite;
  if (result.status != gxStatus::eOk) return result;
  gx_Box box = gx_boxOf(first);
  box.add(gx_boxOf(second));
  const gx_Frame frame(box);
  Points a;
  Points b;
  for (const gxVector<2>& p : first) a.push_back(frame.to(p));
  for (const gxVector<2>& p : second) b.push_back(frame.to(p));
  const double low = std::sqrt(std::max((a.front() - b.front()) * (a.front() - b.front()),
                                        (a.back() - b.back()) * (a.back() - b.back())));
  double high = 0.0;
  if (a.size() == 1 || b.size() == 1) {
    high = a.size() == 1 ? farthestFrom(a[0], b) : farthestFrom(b[0], a);
    result.lower = frame.lengthFrom(high);
  } else {
    high = greedyWalk(a, b);
    const double pairs = static_cast<double>(a.size()) * static_cast<double>(b.size());
    if (pairs > kMostPairs && low < high) {
      result.status = gxStatus::eCapped;
      result.lower = frame.lengthFrom(low);
    } else {
      high = bisected(a, b, low, high);
      result.lower = frame.lengthFrom(high);
    }
  }
  result.frechet = frame.lengthFrom(high);
  return result;
}

Points walkOf(const gxContour& contour) {
  Points points = contour.points();
  if (contour.isClosed() && points.size() > 1) points.push_back(points.front());
  return points;
}

}  // namespace

gxFrechet gfFrechet(std::span<const gxVector<2>> a, std::span<const gxVector<2>> b) {
  return frechet(Points(a.begin(), a.end()), Points(b.begin(), b.end()));
}

gxFrechet gfFrechet(const gxContour& a, const gxContour& b) {
  return frechet(walkOf(a), walkOf(b));
}

std::ostream& operator<<(std::ostream& out, const gxFrechet& result) {
  return out << "frechet " << result.frechet << ", at least " << result.lower << ", " << result.status;
}
