// The largest inscribed circle, by branch and bound over square cells.
//
//  1. The radius at a point is its signed distance from the border.  A cell can hold nothing larger than
//     the radius at its centre plus half its diagonal.
//  2. That bound alone never ends on a plateau: in a rectangle of 3 by 1 all points of a line are equally
//     good, and the cells along it multiply.  There a second bound helps.  The distance from any edge is a
//     convex function, and so is the mean of the distances from two of them; over a cell it is largest at a
//     corner; and the radius nowhere exceeds the mean.  For the nearest edge and the one on the other side
//     of the centre, the mean is constant between parallel walls, and the whole plateau is left out once
//     the cells are as small as the edges.
//  3. From each new best centre the circle is pushed: away from the nearest edges until three of them (or
//     two, opposite to each other) hold it.  A push counts only when the distance, taken anew, has grown.
//     So the best is found to the last digits early, and what is left is to prove it.
//  4. Cells are taken by their bound, the largest first, until none exceeds the best by the tolerance.
#include <gauge/feret.h>
#include <gauge/inscribed.h>
#include <gauge/internal/locator_data.h>
#include <gauge/internal/segments.h>
#include <gauge/internal/shape_points.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <queue>
#include <vector>

namespace {

using Point = gxVector<2>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Below this a bound and a radius may differ by rounding alone.
constexpr double kFinest = 1e-12;

// A push looks at so many of the nearest edges, and so often.
constexpr std::size_t kPushed = 8;
constexpr int kPushes = 40;

struct Cell {
  Point centre;
  double half = 0.0;
  double bound = 0.0;

  bool operator<(const Cell& other) const { return bound < other.bound; }
};

class Search {
 public:
  Search(const gx_LocatorAccess::Data& data, double tolerance, std::size_t maxCells)
      : data_(data), tolerance_(std::max(tolerance, kFinest)), maxCells_(maxCells) {}

  void run(const gx_Box& box) {
    const double half = 0.5 * std::max(box.highX - box.lowX, box.highY - box.lowY);
    addCell({0.5 * (box.lowX + box.highX), 0.5 * (box.lowY + box.highY)}, half);
    while (!cells_.empty() && cells_.top().bound > radius * (1.0 + tolerance_) && !capped) {
      const Cell cell = cells_.top();
      cells_.pop();
      const double quarter = 0.5 * cell.half;
      for (const double x : {-quarter, quarter}) {
        for (const double y : {-quarter, quarter}) addCell(cell.centre + Point(x, y), quarter);
      }
    }
    upper = cells_.empty() ? radius : std::max(radius, cells_.top().bound);
    if (!capped) upper = std::min(upper, radius * (1.0 + tolerance_));
  }

  Point centre;
  double radius = 0.0;
  double upper = 0.0;
  std::size_t count = 0;
  bool capped = false;

 private:
  const gx_Edge& edge(std::size_t i) const { return data_.tree.edges()[i]; }

  double distanceFrom(std::size_t i, const Point& p) const {
    return gx_footOn(edge(i).a, edge(i).b, p).distance;
  }

  // Returns the signed distance, above 0 in the material.
  double depthAt(const Point& p, std::size_t& nearest) const {
    nearest = data_.nearestEdge(p);
    const double distance = distanceFrom(nearest, p);
    return data_.locate(p).state == gxState::eInside ? distance : -distance;
  }

  void addCell(const Point& middle, double half) {
    if (++count > maxCells_) capped = true;
    std::size_t nearest = 0;
    const double depth = depthAt(middle, nearest);
    if (depth > radius) {
      radius = depth;
      centre = middle;
      push();
    }
    const double limit = radius * (1.0 + tolerance_);
    double bound = depth + half * std::sqrt(2.0);
    if (bound > limit && depth > 0.0) bound = std::min(bound, boundByTwo(middle, half, depth, nearest));
    if (bound > limit) cells_.push({middle, half, bound});
  }

  // The largest mean of the distances from the nearest edge and from that across.
  double boundByTwo(const Point& middle, double half, double depth, std::size_t nearest) const {
    const Point foot = gx_footOn(edge(nearest).a, edge(nearest).b, middle).point;
    const Point across = middle + (middle - foot);
    const std::size_t other = data_.nearestEdge(across);
    double largest = 0.0;
    if (other == nearest || !(depth > 0.0)) return std::numeric_limits<double>::infinity();
    for (const double x : {-half, half}) {
      for (const double y : {-half, half}) {
        const Point corner = middle + Point(x, y);
        largest = std::max(largest, distanceFrom(nearest, corner) + distanceFrom(other, corner));
      }
    }
    return 0.5 * largest;
  }

  // Moves the best centre to where its distance from the edges around is largest, as long as it grows.
  void push() {
    std::vector<std::size_t> held;
    for (int round = 0; round < kPushes; ++round) {
      std::size_t nearest = 0;
      if (depthAt(centre, nearest) <= 0.0) return;
      if (std::find(held.begin(), held.end(), nearest) == held.end()) held.push_back(nearest);
      if (held.size() > kPushed) held.erase(held.begin());
      addAcross(nearest, held);
      Point best = centre;
      double largest = radius;
      tryTriples(held, best, largest);
      if (!(largest > radius)) return;
      radius = largest;
      centre = best;
    }
  }

  void addAcross(std::size_t nearest, std::vector<std::size_t>& held) const {
    const Point foot = gx_footOn(edge(nearest).a, edge(nearest).b, centre).point;
    const Point away = centre - foot;
    for (const Point& p :
         {centre + away, centre + Point(-away.y(), away.x()), centre - Point(-away.y(), away.x()),
          centre + away * 0.5 + Point(-away.y(), away.x()) * 0.9,
          centre + away * 0.5 - Point(-away.y(), away.x()) * 0.9}) {
      const std::size_t other = data_.nearestEdge(p);
      if (std::find(held.begin(), held.end(), other) == held.end()) held.push_back(other);
    }
  }

  void tryTriples(const std::vector<std::size_t>& held, Point& best, double& largest) const {
    for (std::size_t i = 0; i < held.size(); ++i) {
      for (std::size_t j = i + 1; j < held.size(); ++j) {
        offer(equidistant({held[i], held[j], held[j]}, 2), best, largest);
        for (std::size_t k = j + 1; k < held.size(); ++k) {
          offer(equidistant({held[i], held[j], held[k]}, 3), best, largest);
        }
      }
    }
  }

  void offer(const Point& p, Point& best, double& largest) const {
    if (!std::isfinite(p.x()) || !std::isfinite(p.y())) return;
    if ((p - centre).len() > 4.0 * radius + (p - best).len()) return;
    std::size_t nearest = 0;
    const double depth = depthAt(p, nearest);
    if (!(depth > largest)) return;
    largest = depth;
    best = p;
  }

  // Where the distances from two or three edges are equal, near the centre: Newton's steps.
  Point equidistant(const std::array<std::size_t, 3>& edges, int count_) const {
    Point p = centre;
    for (int step = 0; step < 12; ++step) {
      double distance[3];
      Point slope[3];
      for (std::size_t k = 0; k < 3; ++k) {
        const gx_Foot foot = gx_footOn(edge(edges[k]).a, edge(edges[k]).b, p);
        if (!(foot.distance > 0.0)) return {kNaN, kNaN};
        distance[k] = foot.distance;
        slope[k] = (p - foot.point) * (1.0 / foot.distance);
      }
      const Point u = slope[1] - slope[0];
      const double du = distance[0] - distance[1];
      Point move;
      if (count_ == 2) {
        // The shortest step to the line between the two.
        const double square = u * u;
        if (!(square > 1e-20)) return {kNaN, kNaN};
        move = u * (du / square);
      } else {
        const Point v = slope[2] - slope[0];
        const double dv = distance[0] - distance[2];
        const double cross = gf_Cross(u, v);
        if (!(std::fabs(cross) > 1e-14)) return {kNaN, kNaN};
        move = Point((du * v.y() - dv * u.y()) / cross, (dv * u.x() - du * v.x()) / cross);
      }
      p += move;
      if (!(move.len() < 1e3 * radius)) return {kNaN, kNaN};
      if (move.len() <= 1e-17 * radius) break;
    }
    return p;
  }

  const gx_LocatorAccess::Data& data_;
  double tolerance_;
  std::size_t maxCells_;
  std::priority_queue<Cell> cells_;
};

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
                              std::size_t maxCells) {
  if (locator.status() != gxStatus::eOk) return without(locator.status());
  if (!(tolerance > 0.0)) return without(gxStatus::eBadArgument);
  const auto& data = gx_LocatorAccess::data(locator);
  gx_Box box;
  for (const gx_Edge& e : data.tree.edges()) box.add(e.box());
  Search search(data, tolerance, maxCells);
  if (!gx_onOneLine(points)) search.run(box);
  if (!(search.radius > 0.0)) return flat(points);
  gxInscribedCircle result;
  result.status = search.capped ? gxStatus::eCapped : gxStatus::eOk;
  result.centre = data.from(search.centre);
  result.radius = data.lengthFrom(search.radius);
  result.gap = data.lengthFrom(search.upper - search.radius);
  result.cells = search.count;
  const gxNearest touch = locator.nearest(result.centre);
  result.touch = touch.place;
  result.region = locator.locate(result.centre).region;
  return result;
}

}  // namespace

gxInscribedCircle gfInscribedCircle(const gxRegion& region, double tolerance, std::size_t maxCells) {
  return inscribedIn(gxLocator(region), region.points(), tolerance, maxCells);
}

gxInscribedCircle gfInscribedCircle(const gxRegionSet& set, double tolerance, std::size_t maxCells) {
  const std::vector<Point> points = gx_outlinePoints(set);
  return inscribedIn(gxLocator(set), points, tolerance, maxCells);
}

std::ostream& operator<<(std::ostream& out, const gxInscribedCircle& c) {
  out << "centre (" << c.centre.x() << ", " << c.centre.y() << ") radius " << c.radius << " gap "
      << c.gap << " touches " << c.touch;
  if (c.status != gxStatus::eOk) out << ' ' << c.status;
  return out;
}
