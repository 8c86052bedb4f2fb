// Cutting to a box, one side after the other: of a segment the part on the inner side stays; of a ring every
// edge is cut, and what leaves a side comes back along it (I. Sutherland and G. Hodgman, "Reentrant polygon
// clipping", 1974).  Edges that this lays on the border go back over each other, so they enclose nothing.
#include <cairo/internal/clip.h>

#include <array>
#include <utility>

namespace {

// A side of the box: the coordinate it bounds, where, and whether that is the lower bound.
struct Side {
  bool isX;
  double at;
  bool isLow;

  double of(const gxPair<double>& p) const { return isX ? p.x() : p.y(); }
  bool keeps(const gxPair<double>& p) const { return isLow ? of(p) >= at : of(p) <= at; }
  gxPair<double> cut(const gxPair<double>& from, const gxPair<double>& to) const {
    const double t = (at - of(from)) / (of(to) - of(from));
    return isX ? gxPair<double>(at, from.y() + t * (to.y() - from.y()))
               : gxPair<double>(from.x() + t * (to.x() - from.x()), at);
  }
};

std::array<Side, 4> sidesOf(const gx_CutBox& box) {
  return {{{true, box.low.x(), true},
           {true, box.high.x(), false},
           {false, box.low.y(), true},
           {false, box.high.y(), false}}};
}

}  // namespace

bool gf_ClipSegment(const gx_CutBox& box, gxPair<double>& from, gxPair<double>& to) {
  for (const Side& side : sidesOf(box)) {
    const bool keepsFrom = side.keeps(from);
    const bool keepsTo = side.keeps(to);
    if (!keepsFrom && !keepsTo) return false;
    if (!keepsFrom) from = side.cut(from, to);
    if (!keepsTo) to = side.cut(from, to);
  }
  return true;
}

std::vector<gxPair<double>> gf_ClipRing(const gx_CutBox& box, std::vector<gxPair<double>> ring) {
  for (const Side& side : sidesOf(box)) {
    std::vector<gxPair<double>> kept;
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const gxPair<double>& from = ring[i == 0 ? ring.size() - 1 : i - 1];
      const gxPair<double>& to = ring[i];
      if (side.keeps(from) != side.keeps(to)) kept.push_back(side.cut(from, to));
      if (side.keeps(to)) kept.push_back(to);
    }
    ring = std::move(kept);
  }
  return ring;
}
