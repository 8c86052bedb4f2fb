// An edge is crossed by the ray to the right of the point when its ends lie on different sides of the
// ray's line, an end on the line counting as above, and the point lies to the left of the edge; which
// side that is, is the sign of a product of 128 bits.
#include <support/exact_containment.h>

#include <algorithm>
#include <cmath>

namespace {

__extension__ using Int128 = __int128;

gxVector<2> rounded(const gxVector<2>& p, double grid) {
  return {std::round(p.x() / grid) * grid, std::round(p.y() / grid) * grid};
}

}  // namespace

ExactOutline::ExactOutline(const std::vector<gxVector<2>>& points) {
  for (const gxVector<2>& p : points) {
    points_.push_back(rounded(p, 2 * kGrid));
    corners_.push_back(whole(points_.back()));
  }
}

gxVector<2> ExactOutline::onGrid(const gxVector<2>& point) {
  return rounded(point, kGrid);
}

ExactOutline::Whole ExactOutline::whole(const gxVector<2>& point) {
  return {std::llround(point.x() / kGrid), std::llround(point.y() / kGrid)};
}

ExactSide ExactOutline::locate(const gxVector<2>& point) const {
  const Whole p = whole(point);
  bool inside = false;
  bool onEdge = false;
  for (std::size_t i = 0; i < corners_.size(); ++i) {
    const Whole& a = corners_[i == 0 ? corners_.size() - 1 : i - 1];
    const Whole& b = corners_[i];
    if (b.x == p.x && b.y == p.y) return ExactSide::eOnVertex;
    const Int128 side =
        static_cast<Int128>(b.x - a.x) * (p.y - a.y) - static_cast<Int128>(b.y - a.y) * (p.x - a.x);
    const bool within = p.x >= std::min(a.x, b.x) && p.x <= std::max(a.x, b.x) &&
                        p.y >= std::min(a.y, b.y) && p.y <= std::max(a.y, b.y);
    if (side == 0 && within) onEdge = true;
    if ((a.y >= p.y) != (b.y >= p.y) && (side > 0) == (b.y > a.y)) inside = !inside;
  }
  if (onEdge) return ExactSide::eOnEdge;
  return inside ? ExactSide::eInside : ExactSide::eOutside;
}
