// How shapes lie to each other.
//
//  1. Of two shapes of one ring each, one crossing that lies on no other edge tells everything, and so does
//     that there is no common point at all (internal/two_rings): valid or not.
//  2. Otherwise the relation is found on the edges as they are (internal/relation), where the shapes are
//     valid.  A shape that is not is settled by even-odd first; where it only touches itself, that
//     constructs nothing, and the answer stays exact.
//  3. The overlap needs an arrangement of both shapes, its faces labelled with who holds them, and no
//     rings: the area of all faces of a label is the sum, over the stretches of border that have such a
//     face on their left, of the triangles with a fixed point.  The point is a corner of the common box,
//     so that small shapes far from the origin keep their digits; the sum carries its rounding errors
//     along (Ogita, Rump and Oishi, "Accurate sum and dot product", 2005).
#include <overlay/relate.h>

#include <overlay/internal/arranged.h>
#include <overlay/internal/operand_rings.h>
#include <overlay/internal/relation.h>
#include <overlay/internal/shape_rings.h>
#include <overlay/internal/two_rings.h>

#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace {

using V = gxVector<2>;
using Rings = std::vector<gx_ShapeRing>;

// ---- Relations ------------------------------------------------------------------------------------

gx_RelationShape relationShape(const Rings& rings) {
  gx_RelationShape shape;
  for (const gx_ShapeRing& ring : rings) shape.rings.push_back({ring.source, ring.level, ring.owner});
  return shape;
}

gx_RelationShape relationShape(const std::vector<gx_ResultRegion>& regions) {
  gx_RelationShape shape;
  shape.trusted = true;
  for (const gx_ResultRegion& region : regions) {
    const std::size_t owner = shape.rings.size();
    shape.rings.push_back({&region.outline.points, 0, gx_RelationShape::kNone});
    for (const gx_ResultRing& hole : region.holes) shape.rings.push_back({&hole.points, 1, owner});
  }
  return shape;
}

gxRelation relate(const gxShapes& a, const Rings& ringsA, const gxShapes& b, const Rings& ringsB,
                  const gxOverlayLimits& limits) {
  gx_RelationShape shapes[2] = {relationShape(ringsA), relationShape(ringsB)};
  std::vector<gx_ResultRegion> settled[2];
  gx_Relation found = gx_relate(shapes[0], shapes[1], limits);
  for (std::size_t s = 0; s < 2; ++s) {
    if (!found.unclean[s]) continue;
    gx_Steps steps(limits);
    settled[s] = gx_settled(s == 0 ? a : b, steps);
    shapes[s] = relationShape(settled[s]);
  }
  if (found.unclean[0] || found.unclean[1]) found = gx_relate(shapes[0], shapes[1], limits);
  return {found.interiorsMeet, found.bordersMeet,       found.firstBeyond,
          found.secondBeyond,  shapes[0].rings.empty(), shapes[1].rings.empty()};
}

// The relation of two shapes of one ring each, where one look settles it.
std::optional<gxRelation> atOnce(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  if (a.regions().size() != 1 || b.regions().size() != 1) return std::nullopt;
  const gxRegion& first = *a.regions()[0];
  const gxRegion& second = *b.regions()[0];
  if (!first.holes().empty() || !second.holes().empty()) return std::nullopt;
  const auto found = gx_relateTwoRings(first.points(), second.points(), limits);
  if (!found) return std::nullopt;
  return gxRelation{
      found->interiorsMeet, found->bordersMeet, found->firstBeyond, found->secondBeyond, false, false};
}

// Tells whether the boxes of the shapes' points, all finite, have no point in common.
bool boxesApart(const Rings& a, const Rings& b) {
  gx_Box boxes[2];
  double finite = 0.0;
  for (int s = 0; s < 2; ++s) {
    for (const gx_ShapeRing& ring : s == 0 ? a : b) {
      for (const V& p : *ring.source) {
        boxes[s].add(p);
        finite += (p.x() - p.x()) + (p.y() - p.y());
      }
    }
  }
  return finite == 0.0 && !boxes[0].meets(boxes[1]);
}

// The relation as far as the shapes meet: of shapes whose boxes are apart, that they do not.
gxRelation ofMeeting(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  if (const auto found = atOnce(a, b, limits)) return *found;
  const Rings first = gx_ringsOf(a.regions());
  const Rings second = gx_ringsOf(b.regions());
  return boxesApart(first, second) ? gxRelation() : relate(a, first, b, second, limits);
}

// ---- Areas ----------------------------------------------------------------------------------------

// A sum with its rounding error beside it.
class Sum {
 public:
  void add(double value) {
    const double sum = sum_ + value;
    const double back = sum - sum_;
    error_ += (sum_ - (sum - back)) + (value - back);
    sum_ = sum;
  }
  double value() const { return std::isfinite(sum_) ? sum_ + error_ : sum_; }

 private:
  double sum_ = 0.0;
  double error_ = 0.0;
};

class Areas {
 public:
  explicit Areas(const gx_Arrangement& arrangement)
      : graph_(arrangement.graph()),
        labels_(arrangement.label(2, gx_Membership::eFirstTwo)),
        origin_(arrangement.edges().box().lowX, arrangement.edges().box().lowY) {
    for (std::uint32_t p = 0; p < graph_.positions(); ++p) {
      // A bundle borders its faces once.
      if (!graph_.leaving(p).isSameWay) addHalf_(p);
    }
  }

  // Where the sum leaves the range of doubles, it may be no number.
  double of(unsigned char label) const {
    const double area = 0.5 * sums_[label].value();
    return std::isfinite(area) ? std::fmax(area, 0.0) : std::numeric_limits<double>::infinity();
  }

 private:
  void addHalf_(std::uint32_t position) {
    const unsigned char left = labels_.left[position];
    if (left == 0 || left == labels_.right[position]) return;
    const std::uint32_t half = graph_.leaving(position).half;
    V from = graph_.node(graph_.nodeOf(half));
    const auto to = [&](const V& p) {
      sums_[left].add(gf_Cross(from - origin_, p - origin_));
      from = p;
    };
    graph_.forEachVertex(half, [&](std::uint32_t i) { to(graph_.edges().point(i)); });
    to(graph_.node(graph_.nodeOf(half ^ 1U)));
  }

  const gx_Graph& graph_;
  const gx_FaceLabels labels_;
  V origin_;
  std::array<Sum, 4> sums_;
};

}  // namespace

gxRelation gfRelate(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  if (const auto found = atOnce(a, b, limits)) return *found;
  return relate(a, gx_ringsOf(a.regions()), b, gx_ringsOf(b.regions()), limits);
}

bool gfIntersects(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  return ofMeeting(a, b, limits).intersects();
}

bool gfDisjoint(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  return !gfIntersects(a, b, limits);
}

bool gfTouches(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  return ofMeeting(a, b, limits).touches();
}

bool gfContains(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  return gfRelate(a, b, limits).contains();
}

bool gfCovers(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  return gfRelate(a, b, limits).covers();
}

bool gfOverlaps(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  return gfRelate(a, b, limits).overlaps();
}

bool gfEqual(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  return gfRelate(a, b, limits).equal();
}

gxOverlap gfOverlap(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  gx_OperandRings rings;
  rings.add(a, 0, gxFillRule::eEvenOdd);
  rings.add(b, 1, gxFillRule::eEvenOdd);
  gx_Steps steps(limits);
  const gx_Arrangement arrangement(rings.list, steps);
  const Areas areas(arrangement);
  const double both = areas.of(3);
  return {areas.of(1) + both, areas.of(2) + both, both, areas.of(1) + areas.of(2) + both};
}

double gfOverlapRatio(const gxShapes& a, const gxShapes& b, const gxOverlayLimits& limits) {
  return gfOverlap(a, b, limits).ratio();
}
