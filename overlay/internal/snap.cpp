// Snap rounding (Hobby, "Practical segment intersection with finite precision output", 1999; Guibas and
// Marimont, "Rounding arrangements dynamically", 1998).
//
//  1. Groups: from a ring that does not settle to every ring with an edge whose box, widened by two units of
//     the grid, meets that of an edge of the group, and so on.  Without groups one far vertex would set the
//     grid for everything, and small parts would vanish.
//  2. Vertices go to the nearest point of the grid.  The hot pixels, squares of one unit, are those of all
//     vertices and of the crossings of the edges between them.
//  3. Every edge passes the centre of every hot pixel whose open square it passes, and those of its own
//     crossings (one in the very corner of its pixel has both edges pass outside of the open square).
//     Squares are tested by the signs of their corners, in integers.
//
// Why edges then do not cross: to come over the centre of a pixel while it is pulled to its own nodes, an
// edge would have had to pass that pixel, and then the centre is one of its nodes.  That needs pixels of one
// size: with the doubles' own cells, which change size at powers of two, it is false.  A centre may still lie
// exactly on a link that passed its square along the border; the noding that follows finds those, and bends
// nothing by it.
#include <cntr/internal/index/box_tree.h>
#include <overlay/internal/crossing_point.h>
#include <overlay/internal/node_table.h>
#include <overlay/internal/predicates.h>
#include <overlay/internal/snap.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace {

__extension__ using Wide = __int128;

// ---- Groups -------------------------------------------------------------------------------------

double sizeOf(const gx_Box& box) {
  return std::max(
      {std::fabs(box.lowX), std::fabs(box.lowY), std::fabs(box.highX), std::fabs(box.highY)});
}

// The spacing of doubles at a coordinate of that size.
double gridFor(double size) {
  int exponent = 0;
  (void)std::frexp(size, &exponent);
  return std::ldexp(1.0, std::max(exponent - 53, -1074));
}

struct Group {
  std::vector<std::uint32_t> rings;
  double grid = 0.0;
};

class Groups {
 public:
  explicit Groups(const gx_EdgeSet& edges) : edges_(edges), groupOf_(edges.rings(), gx_EdgeSet::kNone) {}

  void growFrom(std::uint32_t ring) {
    if (groupOf_[ring] != gx_EdgeSet::kNone) return;
    groups.emplace_back();
    join(ring);
    Group& group = groups.back();
    // A ring that makes the grid coarser widens the boxes of all before it.
    for (std::size_t next = 0; next < group.rings.size();) {
      const double grid = group.grid;
      joinNear(edges_.ring(group.rings[next]));
      next = group.grid == grid ? next + 1 : 0;
    }
  }

  std::vector<Group> groups;

 private:
  void join(std::uint32_t ring) {
    Group& group = groups.back();
    const auto here = static_cast<std::uint32_t>(groups.size() - 1);
    const std::uint32_t other = groupOf_[ring];
    if (other == here) return;
    if (other == gx_EdgeSet::kNone) {
      group.rings.push_back(ring);
      groupOf_[ring] = here;
      group.grid = std::max(group.grid, gridFor(sizeOf(edges_.ring(ring).box)));
      return;
    }
    for (const std::uint32_t r : groups[other].rings) groupOf_[r] = here;
    group.rings.insert(group.rings.end(), groups[other].rings.begin(), groups[other].rings.end());
    group.grid = std::max(group.grid, groups[other].grid);
    groups[other].rings.clear();
  }

  void joinNear(const gx_EdgeSet::Ring& ring) {
    for (std::uint32_t edge = ring.first; edge < ring.end; ++edge) {
      const double by = 2.0 * groups.back().grid;
      const gx_Box b = edges_.boxOf(edge);
      edges_.forEachMeeting({b.lowX - by, b.lowY - by, b.highX + by, b.highY + by},
                            [this](std::uint32_t other) { join(edges_.ringOf(other)); });
    }
  }

  const gx_EdgeSet& edges_;
  std::vector<std::uint32_t> groupOf_;
};

// ---- One group ----------------------------------------------------------------------------------

struct Cell {
  std::int64_t x;
  std::int64_t y;
};

class Snap {
 public:
  Snap(const gx_EdgeSet& edges, const Group& group, gx_Steps& steps) : grid_(group.grid), steps_(steps) {
    for (const std::uint32_t number : group.rings) moveVertices(edges, number);
    for (const gx_SnappedRing& ring : moved_) {
      const bool closed = edges.ring(ring.ring).closed;
      snapped_.add(ring.points.data(), ring.points.size(), closed, ring.sources.data());
    }
    snapped_.finish();
    findPixels();
  }

  std::vector<gx_SnappedRing> rings() const {
    std::vector<gx_Box> boxes(pixels_.size());
    for (std::uint32_t i = 0; i < pixels_.size(); ++i) boxes[i].add(pixels_.at(i));
    const gx_BoxTree tree(boxes);
    std::vector<gx_SnappedRing> result(moved_.size());
    for (std::size_t i = 0; i < moved_.size(); ++i) {
      result[i].ring = moved_[i].ring;
      const gx_EdgeSet::Ring& ring = snapped_.ring(i);
      for (std::uint32_t edge = ring.first; edge < ring.end; ++edge) {
        add(result[i], snapped_.from(edge), snapped_.source(edge));
        passPixels(tree, edge, result[i]);
      }
      if (!ring.closed && ring.edges() != 0)
        add(result[i], snapped_.point(ring.end), snapped_.source(ring.end));
    }
    return result;
  }

 private:
  static void add(gx_SnappedRing& ring, const gxVector<2>& p, std::uint32_t source) {
    ring.points.push_back(p);
    ring.sources.push_back(source);
  }

  double onGrid(double value) const { return std::nearbyint(value / grid_) * grid_; }
  Cell cellOf(const gxVector<2>& p) const {
    return {static_cast<std::int64_t>(p.x() / grid_), static_cast<std::int64_t>(p.y() / grid_)};
  }

  void moveVertices(const gx_EdgeSet& edges, std::uint32_t number) {
    const gx_EdgeSet::Ring& ring = edges.ring(number);
    gx_SnappedRing& moved = moved_.emplace_back();
    moved.ring = number;
    const std::uint32_t end = ring.closed || ring.edges() == 0 ? ring.end : ring.end + 1;
    for (std::uint32_t i = ring.first; i < end; ++i) {
      const gxVector<2>& p = edges.point(i);
      // A coordinate that stays keeps its bits, the sign of a zero too.
      const double x = onGrid(p.x()) == p.x() ? p.x() : onGrid(p.x());
      const double y = onGrid(p.y()) == p.y() ? p.y() : onGrid(p.y());
      add(moved, {x, y}, edges.source(i));
    }
  }

  void findPixels() {
    for (std::size_t r = 0; r < snapped_.rings(); ++r) {
      const gx_EdgeSet::Ring& ring = snapped_.ring(r);
      for (std::uint32_t i = ring.first; ring.edges() != 0 && i <= ring.end; ++i)
        pixels_.add(snapped_.point(i));
    }
    snapped_.forEachPair(
        [this](std::uint32_t i, std::uint32_t j) {
          const gxVector<2>& a = snapped_.from(i);
          const gxVector<2>& b = snapped_.to(i);
          const gxVector<2>& c = snapped_.from(j);
          const gxVector<2>& d = snapped_.to(j);
          if (gx_meetingOf(a, b, c, d).kind == gx_EdgeMeeting::eCrossing) {
            steps_.met();
            const std::uint32_t pixel = pixels_.add(gx_crossingOnGrid(a, b, c, d, grid_));
            own_.emplace_back(i, pixel);
            own_.emplace_back(j, pixel);
          }
          return false;
        },
        [this](std::size_t count) { steps_.looked(count); });
    std::sort(own_.begin(), own_.end());
  }

  // Adds the centres of the pixels that the edge passes between its ends, in its direction.
  void passPixels(const gx_BoxTree& tree, std::uint32_t edge, gx_SnappedRing& ring) const {
    const gxVector<2>& a = snapped_.from(edge);
    const gxVector<2>& b = snapped_.to(edge);
    std::vector<gxVector<2>> passed;
    const gx_Box box = snapped_.boxOf(edge);
    tree.forEachMeeting({box.lowX - grid_, box.lowY - grid_, box.highX + grid_, box.highY + grid_},
                        [&](std::size_t i) {
                          const gxVector<2>& p = pixels_.at(static_cast<std::uint32_t>(i));
                          if (!(p == a) && !(p == b) && passes(cellOf(a), cellOf(b), cellOf(p)))
                            passed.push_back(p);
                        });
    for (auto i = std::lower_bound(own_.begin(), own_.end(),
                                   std::pair<std::uint32_t, std::uint32_t>(edge, 0));
         i != own_.end() && i->first == edge; ++i) {
      const gxVector<2>& p = pixels_.at(i->second);
      if (!(p == a) && !(p == b)) passed.push_back(p);
    }
    std::sort(passed.begin(), passed.end(), [&](const gxVector<2>& p, const gxVector<2>& q) {
      if (p.x() != q.x()) return (p.x() < q.x()) == (a.x() < b.x());
      return p.y() != q.y() && (p.y() < q.y()) == (a.y() < b.y());
    });
    passed.erase(std::unique(passed.begin(), passed.end()), passed.end());
    for (const gxVector<2>& p : passed) add(ring, p, snapped_.source(edge) | 1U);
  }

  // Tells whether the segment from a to b passes the open unit square around the pixel's centre: where their
  // boxes overlap and the square has corners on both sides of the line, no line parts them.
  static bool passes(const Cell& a, const Cell& b, const Cell& pixel) {
    const std::int64_t px = 2 * pixel.x;
    const std::int64_t py = 2 * pixel.y;
    if (2 * std::max(a.x, b.x) <= px - 1 || 2 * std::min(a.x, b.x) >= px + 1) return false;
    if (2 * std::max(a.y, b.y) <= py - 1 || 2 * std::min(a.y, b.y) >= py + 1) return false;
    bool left = false;
    bool right = false;
    for (const auto& [dx, dy] :
         std::array<std::pair<int, int>, 4>{{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}}) {
      const Wide side = static_cast<Wide>(b.x - a.x) * (py + dy - 2 * a.y) -
                        static_cast<Wide>(b.y - a.y) * (px + dx - 2 * a.x);
      left = left || side > 0;
      right = right || side < 0;
    }
    return left && right;
  }

  double grid_;
  gx_Steps& steps_;
  std::vector<gx_SnappedRing> moved_;  // the vertices alone
  gx_EdgeSet snapped_;
  gx_NodeTable pixels_;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> own_;  // edges and the pixels of their crossings
};

}  // namespace

std::vector<gx_SnappedRing> gx_snapRings(const gx_EdgeSet& edges,
                                         const std::vector<std::uint32_t>& rings, bool together,
                                         gx_Steps& steps) {
  std::vector<gx_SnappedRing> result;
  const auto snap = [&](const Group& group) {
    for (gx_SnappedRing& ring : Snap(edges, group, steps).rings()) result.push_back(std::move(ring));
  };
  if (together) {
    Group all;
    for (std::uint32_t r = 0; r < edges.rings(); ++r) all.rings.push_back(r);
    all.grid = gridFor(sizeOf(edges.box()));
    snap(all);
    return result;
  }
  Groups groups(edges);
  for (const std::uint32_t ring : rings) groups.growFrom(ring);
  for (const Group& group : groups.groups) {
    if (!group.rings.empty()) snap(group);
  }
  return result;
}
