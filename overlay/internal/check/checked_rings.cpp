// Directions and sides of the rings of a shape, for the check.
//
// Sides are told by a ray to the left.  An edge counts where one end is at or below the point and the
// other above, and its side of the edge is an orientation, so the count is exact; the tree over the
// edges leaves out the runs that the ray misses.
#include <overlay/internal/check/checked_rings.h>

#include <overlay/internal/predicates.h>

#include <algorithm>
#include <limits>

using V = gxVector<2>;

int gx_directionOfRing(const gx_CheckedRing& ring) {
  const auto first = std::min_element(ring.points.begin(), ring.points.end(), gx_before);
  const auto i = static_cast<std::size_t>(first - ring.points.begin());
  return gx_Orientation(ring.points[ring.before(i)], *first, ring.points[ring.after(i)]);
}

// ---- Directions around a point ------------------------------------------------------------------

bool gx_sameDirection(const V& v, const V& p, const V& q) {
  const auto way = [](double from, double to) { return (to > from) - (to < from); };
  return way(v.x(), p.x()) == way(v.x(), q.x()) && way(v.y(), p.y()) == way(v.y(), q.y()) &&
         gx_Orientation(v, p, q) == 0;
}

bool gx_between(const V& v, const V& from, const V& to, const V& q) {
  const bool afterFrom = gx_Orientation(v, from, q) > 0;
  const bool beforeTo = gx_Orientation(v, to, q) < 0;
  const int turn = gx_Orientation(v, from, to);
  if (turn > 0) return afterFrom && beforeTo;
  // Half a turn and more: all but what lies from `to` on to `from`.
  if (turn == 0) return afterFrom;
  return gx_Orientation(v, to, q) < 0 || gx_Orientation(v, from, q) > 0;
}

// ---- Sides --------------------------------------------------------------------------------------

gx_RingSides::gx_RingSides(const gx_CheckedRing& ring) : ring_(ring), index_({ring.points, true}) {}

gx_RingSides::Side gx_RingSides::sideOf_(const V& p, std::size_t& edge) const {
  constexpr double kFar = std::numeric_limits<double>::infinity();
  const gx_Box ray{-kFar, p.y(), p.x(), p.y()};
  bool odd = false;
  const bool border =
      index_.forEachRun([&](const gx_Box& box) { return box.meets(ray); },
                        [&](std::size_t first, std::size_t end) {
                          for (edge = first; edge < end; ++edge) {
                            const V& a = ring_.from(edge);
                            const V& b = ring_.to(edge);
                            if (std::min(a.y(), b.y()) > p.y() || std::max(a.y(), b.y()) < p.y())
                              continue;
                            if (std::min(a.x(), b.x()) > p.x()) continue;
                            const int side = gx_Orientation(a, b, p);
                            if (side == 0 && std::max(a.x(), b.x()) >= p.x()) return true;
                            if ((a.y() <= p.y()) != (b.y() <= p.y()))
                              odd ^= (a.y() <= p.y()) == (side < 0);
                          }
                          return false;
                        });
  if (border) return Side::eBorder;
  return odd ? Side::eInside : Side::eOutside;
}

bool gx_RingSides::holds(const gx_CheckedRing& other) const {
  std::size_t edge = 0;
  for (const V& p : other.points) {
    const Side side = sideOf_(p, edge);
    if (side != Side::eBorder) return side == Side::eInside;
  }
  sideOf_(other.points[0], edge);
  const V& v = other.points[0];
  const V& q = other.points[1];
  const bool leftInside = gx_directionOfRing(ring_) > 0;
  const V& a = ring_.from(edge);
  const V& b = ring_.to(edge);
  if (!(v == a) && !(v == b)) return (gx_Orientation(a, b, q) > 0) == leftInside;
  const std::size_t i = v == b ? edge : ring_.before(edge);
  const V& next = ring_.points[ring_.after(i)];
  const V& prev = ring_.points[ring_.before(i)];
  return leftInside ? gx_between(v, next, prev, q) : gx_between(v, prev, next, q);
}
