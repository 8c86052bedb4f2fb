// Cutting, dropping and joining, each near-linear.
//
// All vertices of all loops are numbered once, loop after loop, and linked to rings; cutting and joining
// are exchanges of links.  Which vertices share their point is found once, by hashing them into cells
// of 1/4096: nearly every vertex looks into one cell.
//
// Cutting.  A scan from a loop's first vertex finds the first vertex j that shares its point with a
// later one m.  Then nothing before j shares its point with anything in the loop, now or later, so
//   - the part from j up to m holds, of those that may still meet another, the numbers from j to m,
//     in their order, and its scan begins where this one stands;
//   - the part from m on holds those from m to the end of the loop, in their order, followed by some
//     that meet nothing.
// By induction a loop's vertices that may still meet another are always a stretch of numbers, and to
// lie in the loop is to lie in the stretch.  So each vertex is scanned about once.
//
// Dropping.  Whether a loop's test point lies in another does not depend on the order in which the
// others are asked; loops that were found to lie in none stay so while others go.  So one pass does.
//
// Joining.  Loops that touch nothing keep touching nothing, whatever is joined behind them.  So one
// pass over the first of the two does, with the set of places of all that it touches, which the
// joined loop takes over.
#include <cntr/internal/index/box_tree.h>
#include <cntr/internal/index/vertex_grid.h>
#include <cntr/internal/outline/tolerances.h>
#include <cntr/internal/repair/loops.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <set>
#include <utility>

namespace {

using Points = std::vector<gxVector<2>>;

// Cells a unit.  Scaling by a power of two is exact.
constexpr double kCells = 4096.0;

constexpr std::uint32_t kNone = static_cast<std::uint32_t>(-1);

// The vertices met so far, in cells.
class Cells {
 public:
  explicit Cells(std::size_t count)
      : mask_(std::bit_ceil(2 * count + 2) - 1), heads_(mask_ + 1, kNone), next_(count, kNone) {}

  // Tells whether there are cells for coordinates of that size: small against it, and numbered.
  static bool cover(const gxVector<2>& p) { return std::abs(p.x()) < kMost && std::abs(p.y()) < kMost; }

  // Calls `visit` for every vertex put in before that may be within the tolerance of the point, once
  // each.
  template <class Visit>
  void forEachNear(const gxVector<2>& p, const Visit& visit) const {
    const Range x = around(p.x());
    const Range y = around(p.y());
    std::size_t slots[4];
    std::size_t count = 0;
    for (std::int64_t column = x.first; column <= x.last; ++column) {
      for (std::int64_t row = y.first; row <= y.last; ++row) {
        const std::size_t slot = slotOf(column, row);
        if (std::find(slots, slots + count, slot) == slots + count) slots[count++] = slot;
      }
    }
    for (std::size_t s = 0; s < count; ++s) {
      for (std::uint32_t v = heads_[slots[s]]; v != kNone; v = next_[v]) visit(v);
    }
  }

  void put(std::uint32_t vertex, const gxVector<2>& p) {
    const std::size_t slot = slotOf(cellOf(p.x()), cellOf(p.y()));
    next_[vertex] = heads_[slot];
    heads_[slot] = vertex;
  }

 private:
  // Up to here the reach below is less than half a cell, so it ends in the next cell at most.
  static constexpr double kMost = 1e11;

  struct Range {
    std::int64_t first;
    std::int64_t last;
  };

  static std::int64_t cellOf(double coordinate) {
    const double scaled = coordinate * kCells;
    const auto cell = static_cast<std::int64_t>(scaled);
    return static_cast<double>(cell) > scaled ? cell - 1 : cell;
  }

  // Past the tolerance, and past the rounding of the sum.
  static Range around(double coordinate) {
    const double reach = 1.01 * gx_kSameVertex + 1e-15 * std::abs(coordinate);
    return {cellOf(coordinate - reach), cellOf(coordinate + reach)};
  }

  std::size_t slotOf(std::int64_t column, std::int64_t row) const {
    std::uint64_t h = static_cast<std::uint64_t>(column) * 0x9e3779b97f4a7c15ULL;
    h = (h ^ (h >> 32U) ^ static_cast<std::uint64_t>(row)) * 0xbf58476d1ce4e5b9ULL;
    return static_cast<std::size_t>(h ^ (h >> 31U)) & mask_;
  }

  std::size_t mask_;
  std::vector<std::uint32_t> heads_;
  std::vector<std::uint32_t> next_;
};

}  // namespace

gx_Loops::gx_Loops(const std::vector<Points>& loops, gxBudget* budget) : budget_(budget) {
  for (const Points& loop : loops) {
    const auto first = static_cast<Index>(points_.size());
    const auto count = static_cast<Index>(loop.size());
    points_.insert(points_.end(), loop.begin(), loop.end());
    next_.resize(points_.size());
    previous_.resize(points_.size());
    for (Index i = 0; i < count; ++i) link_(first + i, i + 1 < count ? first + i + 1 : first);
    order_.push_back(loops_.size());
    loops_.push_back({first, count, first, first + count});
  }
  findTwins_();
}

void gx_Loops::link_(Index from, Index to) {
  next_[from] = to;
  previous_[to] = from;
}

gx_Loops::Points gx_Loops::pointsOf_(std::size_t loop) const {
  Points result;
  result.reserve(loops_[loop].count);
  Index v = loops_[loop].first;
  for (Index i = 0; i < loops_[loop].count; ++i, v = next_[v]) result.push_back(points_[v]);
  return result;
}

// ---- Shared points ------------------------------------------------------------------------------

void gx_Loops::findTwins_() {
  const auto count = static_cast<Index>(points_.size());
  twinCount_.assign(count, 0);
  twin_.assign(count, kNone);
  Cells cells(count);
  std::size_t looks = 64 * points_.size() + 64;  // of crowded cells, everything goes to the grid
  bool isMany = false;
  const auto note = [&](Index v, Index other) {
    twin_[v] = other;
    twinCount_[v] = twinCount_[v] == 0 ? 1 : kMany;
    isMany = isMany || twinCount_[v] == kMany;
  };
  bool fits = true;
  for (Index v = 0; v < count && fits; ++v) {
    const gxVector<2>& p = points_[v];
    if (!std::isfinite(p.x()) || !std::isfinite(p.y())) continue;  // at no distance below any tolerance
    fits = Cells::cover(p);
    if (!fits) break;
    cells.forEachNear(p, [&](Index u) {
      if (looks > 0) --looks;
      if (looks > 0 && points_[u].distance(p) < gx_kSameVertex) {
        note(u, v);
        note(v, u);
      }
    });
    fits = looks > 0;
    cells.put(v, p);
  }
  if (!fits) twinCount_.assign(count, kMany);
  if (fits && !isMany) return;
  for (Index v = 0; v < count; ++v) {
    if (twinCount_[v] == 0) continue;
    crowd_.push_back(v);
    crowdPoints_.push_back(points_[v]);
  }
  crowdGrid_.emplace(crowdPoints_, gx_kSameVertex);
}

// The others at the vertex's point, in the order in which a lookup gives them.
std::vector<gx_Loops::Index> gx_Loops::twinsOf_(Index vertex) const {
  if (twinCount_[vertex] == 0) return {};
  if (twinCount_[vertex] == 1) return {twin_[vertex]};
  std::vector<Index> twins;
  for (const int i : crowdGrid_->near(crowdPoints_, points_[vertex])) {
    const Index v = crowd_[static_cast<std::size_t>(i)];
    if (v != vertex) twins.push_back(v);
  }
  return twins;
}

// ---- Cutting ------------------------------------------------------------------------------------

std::optional<gx_Loops::Index> gx_Loops::firstTwinBetween_(Index vertex, Index end) const {
  if (twinCount_[vertex] == 0) return std::nullopt;
  if (twinCount_[vertex] == 1) {
    const Index twin = twin_[vertex];
    return twin > vertex && twin < end ? std::optional<Index>(twin) : std::nullopt;
  }
  for (const Index twin : twinsOf_(vertex)) {
    if (twin > vertex && twin < end) return twin;
  }
  return std::nullopt;
}

// Scans on, up to a vertex that the loop passes again; gives the second pass.
std::optional<gx_Loops::Index> gx_Loops::findPinch_(Loop& loop) const {
  for (; loop.scanned < loop.end; ++loop.scanned) {
    spend_(1);
    if (const auto second = firstTwinBetween_(loop.scanned, loop.end)) return second;
  }
  return std::nullopt;
}

void gx_Loops::cutAtPinchPoints() {
  std::size_t place = 0;
  while (place < order_.size()) {
    Loop& loop = loops_[order_[place]];
    const std::optional<Index> second = findPinch_(loop);
    if (!second) {
      ++place;
      continue;
    }
    const Index first = loop.scanned;
    const Loop a{first, *second - first, first, *second};
    const Loop b{*second, loop.count - a.count, *second, loop.end};
    if (a.count == 1 && b.count == 1) {
      if (order_.size() > 1) {
        order_.erase(order_.begin() + static_cast<std::ptrdiff_t>(place));
      } else {
        ++place;
      }
      continue;
    }
    const Index beforeFirst = previous_[first];
    const Index beforeSecond = previous_[*second];
    link_(beforeSecond, first);
    link_(beforeFirst, *second);
    loop = a.count > 1 ? a : b;
    if (a.count > 1 && b.count > 1) {
      order_.push_back(loops_.size());
      loops_.push_back(b);
    }
  }
}

// ---- Dropping -----------------------------------------------------------------------------------

void gx_Loops::dropInnerLoops(const InsideOf& insideOf) {
  if (order_.size() < 2) return;
  std::vector<gx_Box> boxes(loops_.size());
  std::vector<bool> isLeft(loops_.size(), false);
  std::vector<Inside> inside(loops_.size());
  for (const std::size_t loop : order_) {
    isLeft[loop] = loops_[loop].count >= 2;
    Index v = loops_[loop].first;
    for (Index i = 0; i < loops_[loop].count; ++i, v = next_[v]) boxes[loop].add(points_[v]);
  }
  const gx_BoxTree tree(boxes);
  std::vector<std::size_t> around;
  const auto liesInAnother = [&](std::size_t loop) {
    if (loops_[loop].count < 2) return false;
    const Index first = loops_[loop].first;
    const gxVector<2> test = (points_[first] + points_[next_[first]]) / 2.0;
    around.clear();
    tree.forEachMeeting({test.x(), test.y(), test.x(), test.y()}, [&](std::size_t other) {
      if (other != loop && isLeft[other]) around.push_back(other);
    });
    return std::any_of(around.begin(), around.end(), [&](std::size_t other) {
      spend_(inside[other] ? 64 : loops_[other].count);
      if (!inside[other]) inside[other] = insideOf(pointsOf_(other));
      return inside[other](test);
    });
  };
  for (std::size_t place = 0; place < order_.size();) {
    if (!liesInAnother(order_[place])) {
      ++place;
      continue;
    }
    isLeft[order_[place]] = false;
    order_[place] = order_.back();
    order_.pop_back();
  }
}

// ---- Joining ------------------------------------------------------------------------------------

// What joining knows beside the loops: where each loop stands, which loop a vertex that shares its
// point is on, and those vertices of each loop.
class gx_LoopJoiner {
 public:
  explicit gx_LoopJoiner(gx_Loops& loops)
      : loops_(loops),
        place_(loops.loops_.size(), kGone),
        loopOf_(loops.points_.size(), kGone),
        sharers_(loops.loops_.size()) {
    for (std::size_t place = 0; place < loops.order_.size(); ++place) {
      const std::size_t loop = loops.order_[place];
      place_[loop] = place;
      Index v = loops.loops_[loop].first;
      for (Index i = 0; i < loops.loops_[loop].count; ++i, v = loops.next_[v]) {
        if (loops.twinCount_[v] == 0) continue;
        loopOf_[v] = loop;
        sharers_[loop].push_back(v);
      }
    }
  }

  void join() {
    for (std::size_t place = 0; place < loops_.order_.size(); ++place) {
      touched_.clear();
      addTouched(place, loops_.order_[place]);
      while (!touched_.empty()) joinAt(place, *touched_.begin());
    }
  }

 private:
  using Index = gx_Loops::Index;
  static constexpr std::size_t kGone = static_cast<std::size_t>(-1);

  // Adds the places behind `place` of all loops that the sharers of a loop touch.
  void addTouched(std::size_t place, std::size_t sharersOf) {
    for (const Index v : sharers_[sharersOf]) {
      for (const Index twin : loops_.twinsOf_(v)) {
        const std::size_t loop = loopOf_[twin];
        if (loop != kGone && place_[loop] != kGone && place_[loop] > place)
          touched_.insert(place_[loop]);
      }
    }
  }

  void joinAt(std::size_t place, std::size_t otherPlace) {
    const std::size_t one = loops_.order_[place];
    const std::size_t other = loops_.order_[otherPlace];
    const Index t = firstShared(one, other);
    const Index u = meetingPoint(other, t);
    const Index oneEnd = loops_.previous_[t];
    const Index otherEnd = loops_.previous_[u];
    loops_.link_(oneEnd, u);
    loops_.link_(otherEnd, t);
    loops_.loops_[one].first = t;
    loops_.loops_[one].count += loops_.loops_[other].count;

    const std::size_t lastPlace = loops_.order_.size() - 1;
    touched_.erase(otherPlace);
    place_[other] = kGone;
    if (otherPlace != lastPlace) {
      const std::size_t last = loops_.order_[lastPlace];
      loops_.order_[otherPlace] = last;
      place_[last] = otherPlace;
      if (touched_.erase(lastPlace) > 0) touched_.insert(otherPlace);
    }
    loops_.order_.pop_back();

    loops_.spend_(sharers_[other].size());
    for (const Index v : sharers_[other]) loopOf_[v] = one;
    addTouched(place, other);
    sharers_[one].insert(sharers_[one].end(), sharers_[other].begin(), sharers_[other].end());
  }

  // The first vertex of `one` at a point of `other`, from the first vertex of `one` on.
  Index firstShared(std::size_t one, std::size_t other) const {
    std::set<Index> shared;
    for (const Index v : sharers_[other]) {
      for (const Index twin : loops_.twinsOf_(v)) {
        if (loopOf_[twin] == one) shared.insert(twin);
      }
    }
    if (shared.size() == 1) return *shared.begin();
    Index v = loops_.loops_[one].first;
    for (; shared.count(v) == 0; v = loops_.next_[v]) loops_.spend_(1);
    return v;
  }

  // The vertex of the loop at the point of `vertex`; of several the one that a lookup gives first.
  Index meetingPoint(std::size_t loop, Index vertex) const {
    std::vector<Index> found;
    for (const Index twin : loops_.twinsOf_(vertex)) {
      if (loopOf_[twin] == loop) found.push_back(twin);
    }
    if (found.size() == 1) return found.front();
    loops_.spend_(4 * loops_.loops_[loop].count);
    const gx_Loops::Points outline = loops_.pointsOf_(loop);
    const std::vector<int> order =
        gx_VertexGrid(outline, gx_kSameVertex).near(outline, loops_.points_[vertex]);
    Index v = loops_.loops_[loop].first;
    for (int i = 0; i < order.front(); ++i) v = loops_.next_[v];
    return v;
  }

  gx_Loops& loops_;
  std::vector<std::size_t> place_;
  std::vector<std::size_t> loopOf_;
  std::vector<std::vector<Index>> sharers_;
  std::set<std::size_t> touched_;
};

void gx_Loops::joinTouchingLoops() {
  if (order_.size() > 1) gx_LoopJoiner(*this).join();
}
