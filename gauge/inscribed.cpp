// The largest inscribed circle: a good one by trying, then a proof that none is larger.
//
//  1. Try: cells of a grid, and circles that touch the longest edges and some all around, each pushed away
//     from what it touches (internal/best_circle).
//  2. Prove: every circle in the material can grow until it touches the border, and it holds the smaller one
//     that touches in the same place.  So a circle larger than r exists only if one of radius r, rolled
//     along the border on its inner side, is free somewhere.  Its centre moves on a segment beside an edge, on
//     an arc around a corner that the material surrounds.  An edge is nearer than r to a whole stretch of
//     that way if it is so to both ends, as the distance from a segment is a convex function (of an arc, to
//     the ends and the corner of the tangents).  Stretches are halved until an edge is found that does that.
//     Where the circle is free, and in the material, it is a better one: it is pushed, and the proof goes
//     on with its radius, as what stopped a smaller circle stops a larger one.
//  3. Runs of 8 edges, 64, and so on are left out at once where one edge is nearer than r to all corners of
//     the box of their centres, or the whole box lies outside the material.
//
// Branch and bound over cells alone, to the end, was tried first.  Where many places are equally good its
// cells multiply: a slanted sliver of 1000 by 1e-6 would have 1e10 of them, and a ring of 360 corners ended
// at a cap of 200,000.  Rolled along the border, the sliver is four stretches.
#include <gauge/feret.h>
#include <gauge/inscribed.h>
#include <gauge/internal/best_circle.h>
#include <gauge/internal/edge_links.h>
#include <gauge/internal/locator_data.h>
#include <gauge/internal/segments.h>
#include <gauge/internal/shape_points.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>
#include <vector>

namespace {

using Point = gxVector<2>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// So many places of the border are tried before the proof: the longest edges and some all around.
constexpr std::size_t kLongest = 8;
constexpr std::size_t kAround = 32;

// Where so many looks for boxes were in vain, only one box of so many is looked for; a look that was not in
// vain makes up for some.
constexpr int kMisses = 64;
constexpr int kMissesForOne = 8;

Point leftOf(const Point& v) {
  return {-v.y(), v.x()};
}

// ---- Rolling along the border -----------------------------------------------------------------------

// A stretch of the way of the centre: beside an edge the direction from the border to the centre stays, around
// a corner the place on the border does; then the directions are at most 60 degrees apart.
struct Stretch {
  Point from;
  Point to;
  Point fromDirection;
  Point toDirection;

  Point middle() const { return from * 0.5 + to * 0.5; }
  Point direction() const { return (fromDirection + toDirection).unit(); }
  Point start(double r) const { return from + fromDirection * r; }
  Point end(double r) const { return to + toDirection * r; }
  Point half(double r) const { return middle() + direction() * r; }
  // Where the tangents at the ends meet; beside an edge the middle.
  Point corner(double r) const {
    const Point d = direction();
    return middle() + d * (r / (d * fromDirection));
  }
  // Half the length of the way, or a little more: an arc of 60 degrees is longer than its chord by a 20th.
  double reach(double r) const {
    return 0.5 * (gx_lengthOf(to - from) + 1.05 * r * gx_lengthOf(toDirection - fromDirection));
  }
};

class Roll {
 public:
  Roll(const gx_LocatorAccess::Data& data, gx_BestCircle& best)
      : tree_(data.tree), best_(best), links_(tree_) {}

  void searchSome();
  void proveAll();

 private:
  // What stops the circle: it, of radius `radius`, is not free where an edge is nearer than `limit`.
  struct Limit {
    double radius;
    double limit;
    explicit Limit(const gx_BestCircle& best)
        : radius(best.radius + best.slack()), limit(radius - 0.25 * best.slack()) {}
  };
  using Boxes = std::vector<std::vector<gx_Box>>;

  const gx_Edge& edge(std::size_t k) const { return tree_.edges()[k]; }
  template <class Visit>
  void forEachStretch(std::size_t k, double side, const Visit& visit) const;
  void touch(std::size_t k, double side);
  Boxes boxesOf(double side, double radius) const;
  void proveNode(const Boxes& boxes, std::size_t level, std::size_t i, double side, const Limit& first);
  bool leavesOut(const gx_Box& box, const Limit& first);
  void prove(const Stretch& whole);
  bool isStopped(const Stretch& s, const Limit& now);
  bool isAcross(const Point& p, const Point& q) const;
  template <class Stops>
  bool anyWitness(const Stops& stops);
  void remember(std::size_t edge);

  const gx_EdgeTree& tree_;
  gx_BestCircle& best_;
  gx_EdgeLinks links_;
  std::array<std::size_t, 8> witnesses_{};  // what stopped the circle last
  int skipped_ = 0;
  int misses_ = 0;  // looks for boxes that were in vain, less some for each that was not
};

// The stretches beside edge k and around its end, on the left (side 1) or right (−1) of its direction.
template <class Visit>
void Roll::forEachStretch(std::size_t k, double side, const Visit& visit) const {
  constexpr double kThird = 1.0471975511965976;  // 60 degrees
  const gx_Edge& e = edge(k);
  if (e.a == e.b) return;
  const Point along = (e.b - e.a).unit();
  const Point normal = leftOf(along) * side;
  visit(Stretch{e.a, e.b, normal, normal});
  const gx_Edge& next = edge(links_.after[k]);
  const Point onward = (next.b - next.a).unit();
  const double turn = std::atan2(gf_Cross(along, onward) * side, along * onward);
  if (turn >= 0.0 && turn < 3.0 * kThird - 1e-9)
    return;  // the border turns towards the centre, or not at all
  const int arcs = static_cast<int>(std::ceil(std::fabs(turn) / kThird));  // a turn is π at most
  Point from = normal;
  for (int arc = 1; arc <= arcs; ++arc) {
    const double angle = -std::fabs(turn) * side * (static_cast<double>(arc) / arcs);
    const double c = std::cos(angle);
    const double d = std::sin(angle);
    const Point to = arc == arcs
                         ? leftOf(onward) * side
                         : Point(normal.x() * c - normal.y() * d, normal.x() * d + normal.y() * c);
    visit(Stretch{e.b, e.b, from, to});
    from = to;
  }
}

// ---- Some places first

void Roll::searchSome() {
  const std::size_t count = tree_.edges().size();
  std::vector<std::size_t> some(count);
  for (std::size_t k = 0; k < count; ++k) some[k] = k;
  const std::size_t longest = std::min(kLongest, count);
  const auto square = [&](std::size_t k) { return (edge(k).b - edge(k).a) * (edge(k).b - edge(k).a); };
  std::partial_sort(some.begin(), some.begin() + static_cast<std::ptrdiff_t>(longest), some.end(),
                    [&](std::size_t i, std::size_t j) {
                      return square(i) != square(j) ? square(i) > square(j) : i < j;
                    });
  some.resize(longest);
  for (std::size_t k = 0; k < count; k += count / kAround + 1) some.push_back(k);
  for (const std::size_t k : some) {
    touch(k, 1.0);
    touch(k, -1.0);
  }
}

void Roll::touch(std::size_t k, double side) {
  const gx_Edge& e = edge(k);
  if (e.a == e.b || best_.spent()) return;
  best_.touch((e.a + e.b) * 0.5, leftOf((e.b - e.a).unit()) * side);
}

// ---- The proof

Roll::Boxes Roll::boxesOf(double side, double radius) const {
  Boxes boxes(tree_.levels());
  for (std::size_t level = 0; level < tree_.levels(); ++level) {
    boxes[level].resize(tree_.size(level));
    for (std::size_t i = 0; i < boxes[level].size(); ++i) {
      gx_Box& box = boxes[level][i];
      const auto range = tree_.below(level, i);
      for (std::size_t k = range.first; k < range.end; ++k) {
        if (level > 0) {
          box.add(boxes[level - 1][k]);
          continue;
        }
        forEachStretch(k, side, [&](const Stretch& s) {
          for (const Point& p : {s.start(radius), s.end(radius), s.corner(radius)}) box.add(p);
        });
      }
    }
  }
  return boxes;
}

void Roll::proveAll() {
  for (const double side : {1.0, -1.0}) {
    misses_ = 0;
    const Limit first(best_);
    const Boxes boxes = boxesOf(side, first.radius);
    const std::size_t top = tree_.levels() - 1;
    for (std::size_t i = 0; i < boxes[top].size(); ++i) proveNode(boxes, top, i, side, first);
  }
}

void Roll::proveNode(const Boxes& boxes, std::size_t level, std::size_t i, double side,
                     const Limit& first) {
  const gx_Box& box = boxes[level][i];
  if (best_.spent() || !(box.lowX <= box.highX) || leavesOut(box, first)) return;
  const auto range = tree_.below(level, i);
  for (std::size_t k = range.first; k < range.end; ++k) {
    if (level > 0) {
      proveNode(boxes, level - 1, k, side, first);
    } else {
      forEachStretch(k, side, [&](const Stretch& s) { prove(s); });
    }
  }
}

// Tells whether no circle of that radius, nor a larger one, with its centre in the box is in the material.
bool Roll::leavesOut(const gx_Box& box, const Limit& first) {
  const Point low(box.lowX, box.lowY);
  const Point high(box.highX, box.highY);
  const double half = 0.5 * gx_lengthOf(high - low);
  if (half > 2.0 * first.radius) return false;
  const std::array<Point, 4> corners{low, Point(box.highX, box.lowY), high, Point(box.lowX, box.highY)};
  const auto stops = [&](std::size_t q) {
    return std::all_of(corners.begin(), corners.end(),
                       [&](const Point& p) { return best_.distanceFrom(q, p) < first.limit; });
  };
  if (anyWitness(stops)) return true;
  if (misses_ > kMisses && ++skipped_ % kMisses != 0) return false;
  ++misses_;
  const Point middle = low * 0.5 + high * 0.5;
  const gx_BestCircle::Look look = best_.at(middle);
  const bool isOutside = look.distance > half + 0.25 * best_.slack() && !best_.isInside(middle);
  const bool isStopped = look.distance + half < first.limit || stops(look.nearest);
  if (isStopped) remember(look.nearest);
  if (isStopped || isOutside) misses_ = std::max(misses_ - kMissesForOne, 0);
  return isStopped || isOutside;
}

void Roll::prove(const Stretch& whole) {
  std::vector<Stretch> left{whole};
  while (!left.empty() && !best_.spent()) {
    const Stretch s = left.back();
    const Limit now(best_);
    left.pop_back();
    if (isStopped(s, now)) continue;
    const Point p = s.half(now.radius);
    const gx_BestCircle::Look look = best_.at(p);
    const double reach = s.reach(now.radius);
    if (look.distance >= now.limit) {
      if (best_.isInside(p)) {
        best_.touch(s.middle(), s.direction());
        best_.offer(p, look.distance);
        left.push_back(s);
        continue;
      }
      if (look.distance > reach || !isAcross(s.start(now.radius), s.end(now.radius))) continue;
    } else {
      // What is this short cannot hold a larger circle by more than a part of the slack.
      if (look.distance + reach < now.limit || reach < 0.125 * best_.slack()) continue;
      remember(look.nearest);
      if (isStopped(s, now)) continue;
    }
    const Point m = s.middle();
    const Point d = s.direction();
    left.push_back({m, s.to, d, s.toDirection});
    left.push_back({s.from, m, s.fromDirection, d});
  }
}

// Tells whether one of the last witnesses is too near to all of the way.
bool Roll::isStopped(const Stretch& s, const Limit& now) {
  const std::array<Point, 3> ends{s.start(now.radius), s.end(now.radius), s.corner(now.radius)};
  return anyWitness([&](std::size_t q) {
    return std::all_of(ends.begin(), ends.end(),
                       [&](const Point& p) { return best_.distanceFrom(q, p) < now.limit; });
  });
}

// Tells whether the way beside an edge, of which a point is outside of the material, meets a border.
bool Roll::isAcross(const Point& p, const Point& q) const {
  gx_Box box;
  box.add(p);
  box.add(q);
  return tree_.forEachRun([&](const gx_Box& other) { return other.meets(box); },
                          [&](std::size_t first, std::size_t end) {
                            for (std::size_t k = first; k < end; ++k) {
                              if (gx_segmentsMeet(p, q, edge(k).a, edge(k).b)) return true;
                            }
                            return false;
                          });
}

// Around a round outline the witness across goes around, too: the neighbours of the last one count.
template <class Stops>
bool Roll::anyWitness(const Stops& stops) {
  for (const std::size_t next : {links_.after[witnesses_[0]], links_.before[witnesses_[0]]}) {
    if (!stops(next)) continue;
    witnesses_[0] = next;
    return true;
  }
  for (std::size_t i = 0; i < witnesses_.size(); ++i) {
    if (!stops(witnesses_[i])) continue;
    std::rotate(witnesses_.begin(), witnesses_.begin() + static_cast<std::ptrdiff_t>(i),
                witnesses_.begin() + static_cast<std::ptrdiff_t>(i) + 1);
    return true;
  }
  return false;
}

void Roll::remember(std::size_t edge) {
  std::copy_backward(witnesses_.begin(), witnesses_.end() - 1, witnesses_.end());
  witnesses_[0] = edge;
}

// ---- The answer -------------------------------------------------------------------------------------

gxInscribedCircle without(gxStatus status) {
  gxInscribedCircle result;
  result.status = status;
  if (status != gxStatus::eEmpty) result.radius = result.gap = kNaN;
  return result;
}

gxInscribedCircle flat(std::span<const Point> points) {
  gxInscribedCircle result;
  result.status = gxStatus::eFlat;
  const gxFeret feret = gfFeret(points);
  const gx_Frame frame(points);
  const Point a = frame.scaled(feret.feretMaxFromPoint);
  const Point b = frame.scaled(feret.feretMaxToPoint);
  result.centre = a == b ? feret.feretMaxFromPoint : frame.unscaled(a + (b - a) * 0.5);
  return result;
}

gxInscribedCircle inscribedIn(const gxLocator& locator, std::span<const Point> points, double tolerance,
                              std::size_t maxLooks) {
  if (locator.status() != gxStatus::eOk) return without(locator.status());
  if (!(tolerance > 0.0)) return without(gxStatus::eBadArgument);
  if (gx_onOneLine(points)) return flat(points);
  const auto& data = gx_LocatorAccess::data(locator);
  gx_BestCircle best(data, tolerance, maxLooks);
  best.searchCells();
  Roll roll(data, best);
  roll.searchSome();
  if (best.radius > 0.0) roll.proveAll();
  if (!(best.radius > 0.0)) return flat(points);
  gxInscribedCircle result;
  result.status = best.spent() ? gxStatus::eCapped : gxStatus::eOk;
  result.centre = data.from(best.centre);
  result.radius = data.lengthFrom(best.radius);
  result.gap = data.lengthFrom(best.spent() ? best.widest() : best.slack());
  result.looks = best.looks;
  const gxNearest touch = locator.nearest(result.centre);
  result.touch = touch.place;
  result.region = locator.locate(result.centre).region;
  return result;
}

}  // namespace

gxInscribedCircle gfInscribedCircle(std::span<const Point> outline, double tolerance,
                                    std::size_t maxLooks) {
  return inscribedIn(gxLocator(outline), outline, tolerance, maxLooks);
}

gxInscribedCircle gfInscribedCircle(const gxContour& contour, double tolerance, std::size_t maxLooks) {
  const gxLocator locator(contour);
  if (locator.status() == gxStatus::eOk && !contour.isClosed()) return without(gxStatus::eNotClosed);
  return inscribedIn(locator, contour.points(), tolerance, maxLooks);
}

gxInscribedCircle gfInscribedCircle(const gxRegion& region, double tolerance, std::size_t maxLooks) {
  return inscribedIn(gxLocator(region), region.points(), tolerance, maxLooks);
}

gxInscribedCircle gfInscribedCircle(const gxRegionSet& set, double tolerance, std::size_t maxLooks) {
  const std::vector<Point> points = gx_outlinePoints(set);
  return inscribedIn(gxLocator(set), points, tolerance, maxLooks);
}

std::ostream& operator<<(std::ostream& out, const gxInscribedCircle& c) {
  out << "centre (" << c.centre.x() << ", " << c.centre.y() << ") radius " << c.radius << " gap "
      << c.gap << " touches " << c.touch;
  if (c.status != gxStatus::eOk) out << ' ' << c.status;
  return out;
}
