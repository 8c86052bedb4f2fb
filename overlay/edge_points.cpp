// Edge points of results.
//
//  1. The rings of the sources, outlines and edge-point holes, go into a table of their vertices; the first one
//     at a place stays.
//  2. A vertex of the result that is in the table has the edge point from there.
//  3. Any other is looked for on the edges of the sources, ring by ring, through a tree of boxes each.  A crossing
//     is rounded to doubles, and an edge may be bent to it: so near is on the edge.
//
// (The arrangement could carry the edge points along. It would carry them for everybody, and an interpolated one
// would still have to be told from the two edges that cross.)
#include <cntr/internal/index/edge_index.h>
#include <overlay/edge_points.h>
#include <overlay/internal/node_table.h>
#include <overlay/internal/operand_rings.h>
#include <velstd/xform_base.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <unordered_set>
#include <utility>

namespace {

using Region = gxRegionT<gxEdgelet>;
using Handle = gxPtrHandle_const<Region>;
using Points = std::vector<gxVector<2>>;

// Units in the last place of the largest coordinate: crossings are rounded by less than one, edges bent by
// less than three, and the foot on a bent edge is rounded in its turn.
constexpr double kUnits = 8.0;

class Sources {
 public:
  explicit Sources(const std::vector<Handle>& sources) {
    for (const Handle& source : sources) addWithHoles(*source);
  }

  const Region::XformHandle& transform() const { return transform_; }

  gxEdgelet edgePointAt(const gxVector<2>& p) {
    const std::uint32_t node = table_.add(p);
    if (node >= vertices_.size()) return onAnEdge(p);
    const auto [ring, at] = vertices_[node];
    return seen(*rings_[ring].region, at, p);
  }

 private:
  struct Ring {
    const Region* region;
    std::unique_ptr<gx_EdgeIndex> index;  // made when a crossing comes up
  };

  void addWithHoles(const Region& outermost) {
    std::vector<const Region*> open{&outermost};
    std::unordered_set<const Region*> taken;
    for (std::size_t i = 0; i < open.size(); ++i) {
      if (!taken.insert(open[i]).second) continue;
      add(*open[i]);
      for (const auto& hole : open[i]->holes()) open.push_back(&*hole);
    }
  }

  void add(const Region& region) {
    const Points& points = region.points();
    if (region.data().size() != points.size()) return;
    if (transform_.isNull()) transform_ = region.dataFromPointsXform();
    rings_.push_back({&region, nullptr});
    for (std::size_t i = 0; i < points.size(); ++i) {
      const std::uint32_t node = table_.add(points[i]);
      if (node == vertices_.size()) vertices_.emplace_back(rings_.size() - 1, i);
      largest_ = std::max({largest_, std::fabs(points[i].x()), std::fabs(points[i].y())});
    }
  }

  gxEdgelet seen(const Region& region, std::size_t at, const gxVector<2>& p) const {
    const gxEdgelet& kept = region.data()[at];
    if (&*region.dataFromPointsXform() == &*transform_) return kept;
    return {transform_->mapPoint(p), kept.magnitude(), kept.angle()};
  }

  // The nearest edge of the first ring that passes within the reach of rounding.
  gxEdgelet onAnEdge(const gxVector<2>& p) {
    const double reach = kUnits * std::numeric_limits<double>::epsilon() * largest_;
    for (Ring& ring : rings_) {
      const Points& points = ring.region->points();
      if (!ring.index) ring.index = std::make_unique<gx_EdgeIndex>(gx_Outline{points, true});
      std::size_t best = points.size();
      double least = reach;
      double bestShare = 0.0;
      ring.index->forEachRunNear(p, least, [&](std::size_t first, std::size_t end) {
        for (std::size_t e = first; e < end; ++e) {
          const gxVector<2>& a = points[e == 0 ? points.size() - 1 : e - 1];
          const gxVector<2> along = points[e] - a;
          const double whole = along * along;
          const double share = whole > 0.0 ? std::clamp(((p - a) * along) / whole, 0.0, 1.0) : 0.0;
          const double distance = (p - (a + along * share)).len();
          if (distance > least || (distance == least && best < e)) continue;
          best = e;
          bestShare = share;
          least = distance;
        }
      });
      if (best < points.size()) return between(*ring.region, best, bestShare, p);
    }
    return {transform_->mapPoint(p), 0, gxAngle8()};
  }

  gxEdgelet between(const Region& region, std::size_t edge, double share, const gxVector<2>& p) const {
    const std::vector<gxEdgelet>& data = region.data();
    const gxEdgelet& a = data[edge == 0 ? data.size() - 1 : edge - 1];
    const gxEdgelet& b = data[edge];
    const double magnitude = a.magnitude() * (1.0 - share) + b.magnitude() * share;
    // Of two opposite angles the way is that of rising ones.
    const int step = ((b.angle() - a.angle()).toByte() + 127) % 256 - 127;
    const auto turned = static_cast<unsigned char>(static_cast<int>(std::lround(share * step)) & 0xff);
    return {transform_->mapPoint(p), static_cast<unsigned short>(std::lround(magnitude)),
            a.angle() + gxAngle8(turned)};
  }

  std::vector<Ring> rings_;
  gx_NodeTable table_;
  // Ring and number of every vertex of a source, which are the first nodes of the table; crossings follow.
  std::vector<std::pair<std::size_t, std::size_t>> vertices_;
  Region::XformHandle transform_;
  double largest_ = 0.0;
};

gxPtrHandle<Region> withEdgePoints(const Points& points, Sources& sources) {
  std::vector<gxEdgelet> data;
  data.reserve(points.size());
  for (const gxVector<2>& p : points) data.push_back(sources.edgePointAt(p));
  return gxPtrHandle<Region>(new Region(data, sources.transform()));
}

}  // namespace

gxRegionSetT<gxEdgelet> gfWithEdgePoints(const gxRegionSet& result, const std::vector<Handle>& sources) {
  Sources found(sources);
  std::vector<Handle> regions;
  for (const auto& region : result.regions()) {
    if (found.transform().isNull()) throw gxBadPointer();
    const gxPtrHandle<Region> made = withEdgePoints(region->points(), found);
    std::vector<Region::HoleHandleT> typed;
    std::vector<gxRegion::HoleHandle> plain;
    for (const auto& hole : region->holes()) {
      const gxPtrHandle<Region> inner = withEdgePoints(hole->points(), found);
      typed.emplace_back(inner);
      plain.emplace_back(inner);
    }
    made->holes(typed);
    gx_ValidRegion::setHoles(*made, std::move(plain));
    regions.emplace_back(made);
  }
  return gxRegionSetT<gxEdgelet>(regions);
}
