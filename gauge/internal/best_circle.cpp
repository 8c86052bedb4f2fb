// The largest circle so far: cells, and the push from what it touches.
//
//  1. Square cells, the one with the greatest bound (the depth at its centre and half its diagonal) first,
//     until the bound is near the best depth or a few hundred are looked at.
//  2. A circle that touches in one place is grown there: from one that is too large, each next one reaches to
//     what was nearest to the centre of the one before.
//  3. A push grows the circle where it touches, then moves it away from what it touches.  Of all places at which two or three of
//     the edges known around are equally far, the one with the greatest distance from the nearest of them is
//     looked at; what is nearest there joins the edges known.  It ends when no place promises more.
#include <gauge/internal/best_circle.h>

#include <cmath>
#include <limits>

namespace {

using Point = gxVector<2>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// No finer relative tolerance, and none finer than so many roundings of the largest coordinate, which is
// several times what distances are off by.
constexpr double kFinest = 1e-12;
constexpr double kRoundings = 16.0;

// The first search ends after so many cells, or where their bound is so near the best.
constexpr std::size_t kCells = 200;
constexpr double kNear = 1.02;

// A push keeps so many edges, and ends after so many moves.
constexpr std::size_t kHeld = 8;
constexpr int kMoves = 60;

Point leftOf(const Point& v) {
  return {-v.y(), v.x()};
}

}  // namespace

gx_BestCircle::gx_BestCircle(const gx_LocatorAccess::Data& data, double tolerance, std::size_t maxLooks)
    : data_(data), tolerance_(std::max(tolerance, kFinest)), maxLooks_(maxLooks) {
  for (const gx_Edge& e : data.tree.edges()) box_.add(e.box());
  const double largest = std::max(
      {std::fabs(box_.lowX), std::fabs(box_.highX), std::fabs(box_.lowY), std::fabs(box_.highY)});
  rounding_ = kRoundings * std::numeric_limits<double>::epsilon() * largest;
}

void gx_BestCircle::addCell(const Point& middle, double half, Cells& cells) {
  const Look look = at(middle);
  const bool inside = isInside(middle);
  if (inside) offer(middle, look.distance);
  cells.push({middle, half, (inside ? look.distance : -look.distance) + half * std::sqrt(2.0)});
}

void gx_BestCircle::searchCells() {
  Cells cells;
  addCell({0.5 * box_.lowX + 0.5 * box_.highX, 0.5 * box_.lowY + 0.5 * box_.highY}, 0.5 * size(), cells);
  for (std::size_t count = 0; count < kCells && cells.top().bound > radius * kNear; ++count) {
    const Cell cell = cells.top();
    cells.pop();
    const double quarter = 0.5 * cell.half;
    for (const double x : {-quarter, quarter}) {
      for (const double y : {-quarter, quarter}) addCell(cell.centre + Point(x, y), quarter, cells);
    }
  }
}

// ---- Pushing a circle -------------------------------------------------------------------------------

// The edges nearest to the centre and to places around it.
std::vector<std::size_t> gx_BestCircle::around() {
  const std::size_t nearest = at(centre).nearest;
  std::vector<std::size_t> held{nearest};
  const Point away = centre - gx_footOn(edge(nearest).a, edge(nearest).b, centre).point;
  const Point across = leftOf(away);
  for (const Point& d : {away, across, -across, away * 0.5 + across * 0.9, away * 0.5 - across * 0.9}) {
    const std::size_t other = at(centre + d).nearest;
    if (std::find(held.begin(), held.end(), other) == held.end()) held.push_back(other);
  }
  return held;
}

void gx_BestCircle::offer(const Point& p, double distance) {
  if (!(distance > radius)) return;
  radius = distance;
  centre = p;
  push();
}

void gx_BestCircle::touch(const Point& s, const Point& direction) {
  if (grow(s, direction)) push();
}

bool gx_BestCircle::grow(const Point& s, const Point& direction) {
  constexpr int kRounds = 40;
  double r = size();
  for (int round = 0; round < kRounds && !spent(); ++round) {
    const Point c = s + direction * r;
    const Look look = at(c);
    if (look.distance >= r * (1.0 - 1e-9)) {
      if (!(look.distance > radius) || !isInside(c)) return false;
      radius = look.distance;
      centre = c;
      return true;
    }
    const Point d = gx_footOn(edge(look.nearest).a, edge(look.nearest).b, c).point - s;
    const double onward = 2.0 * (d * direction);
    if (!(onward > 0.0)) return false;
    const double smaller = (d * d) / onward;
    if (!(smaller > radius) || !(smaller < r)) return false;
    r = smaller;
  }
  return false;
}

void gx_BestCircle::push() {
  const gx_Edge& touched = edge(at(centre).nearest);
  const Point foot = gx_footOn(touched.a, touched.b, centre).point;
  grow(foot, (centre - foot).unit());
  std::vector<std::size_t> held = around();
  for (int move = 0; move < kMoves && !spent(); ++move) {
    double reach = radius;
    const Point p = farthestFrom(held, reach);
    if (!(reach > radius)) return;
    const Look look = at(p);
    const bool isBetter = look.distance > radius && isInside(p);
    if (isBetter) {
      radius = look.distance;
      centre = p;
    }
    if (std::find(held.begin(), held.end(), look.nearest) != held.end()) {
      if (!isBetter) return;
      continue;
    }
    if (held.size() == kHeld) {
      held.erase(std::max_element(held.begin(), held.end(), [&](std::size_t i, std::size_t j) {
        return distanceFrom(i, centre) < distanceFrom(j, centre);
      }));
    }
    held.push_back(look.nearest);
  }
}

gxVector<2> gx_BestCircle::awayFrom(std::size_t i) const {
  return (centre - gx_footOn(edge(i).a, edge(i).b, centre).point).unit();
}

// The place near the centre, equally far from two or three of the edges or between two of them a step on,
// whose distance from the nearest of all of them is greatest; nowhere if none is above `reach`, which becomes
// that distance.
Point gx_BestCircle::farthestFrom(const std::vector<std::size_t>& held, double& reach) const {
  Point best{kNaN, kNaN};
  const auto consider = [&](const Point& p) {
    if (!std::isfinite(p.x()) || !std::isfinite(p.y()) || gx_lengthOf(p - centre) > 4.0 * radius) return;
    double least = kInfinity;
    for (const std::size_t i : held) least = std::min(least, distanceFrom(i, p));
    if (!(least > reach)) return;
    reach = least;
    best = p;
  };
  for (std::size_t i = 0; i < held.size(); ++i) {
    for (std::size_t j = i + 1; j < held.size(); ++j) {
      consider(equidistant({held[i], held[j], held[j]}));
      const Point between = (awayFrom(held[i]) + awayFrom(held[j])).unit();
      for (const double step : {1.0, 0.25}) consider(centre + between * (step * radius));
      for (std::size_t k = j + 1; k < held.size(); ++k)
        consider(equidistant({held[i], held[j], held[k]}));
    }
  }
  return best;
}

// Where the distances from three edges are equal, near the centre, by Newton's steps; where the last two are
// one, the nearest place at which those of two are equal.
Point gx_BestCircle::equidistant(const std::array<std::size_t, 3>& edges) const {
  constexpr int kSteps = 12;
  Point p = centre;
  for (int step = 0; step < kSteps; ++step) {
    std::array<double, 3> distance{};
    std::array<Point, 3> slope;
    for (std::size_t k = 0; k < 3; ++k) {
      const gx_Foot foot = gx_footOn(edge(edges[k]).a, edge(edges[k]).b, p);
      if (!(foot.distance > 0.0)) return {kNaN, kNaN};
      distance[k] = foot.distance;
      slope[k] = (p - foot.point) * (1.0 / foot.distance);
    }
    const Point u = slope[1] - slope[0];
    const double du = distance[0] - distance[1];
    Point move;
    if (edges[1] == edges[2]) {
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
    const double moved = gx_lengthOf(move);
    if (!(moved < 1e3 * radius)) return {kNaN, kNaN};
    if (moved <= 1e-17 * radius) break;
  }
  return p;
}
