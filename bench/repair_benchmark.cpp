// What does it cost to repair an outline that crosses itself, and to find out whether a set of regions
// meets anywhere?
//
// repair: the parameter is the number of points of an outline with a kink at every 20th point
// (gx_kinkedOutline), about one in four of which is a crossing; at 64 points none is, and the row begins
// at 256.  Per point, on a fresh region.  The parties do not answer the same question: ours
// is what lies outside, walked around, in one loop; non-zero union keeps every loop that is gone around;
// even-odd drops what is gone around twice.  On small kinks their areas differ by less than a hundredth,
// and that is checked.
//
//  ours          gxRegion::regularize.
//  plain         the definition in the tests' support, which looks at every edge at every step of the walk.
//  geos          MakeValid, even-odd; up to 100,000 points, a million take 45 s.
//  geos_buffer   buffer(0), which many use as a repair; it may lose parts on larger crossings.
//  polyclipping  SimplifyPolygon, non-zero; integer coordinates, scaled to the range in which it multiplies
//                in 64 bits.  Quadratic here: 100,000 points take half a minute, so it ends at 10,000.
//  Neither Boost.Geometry nor CGAL, in these versions, takes a polygon that crosses itself.
//
// self_intersecting_set: the parameter is the number of regions, coins of 182 points that do not touch
// (gx_coin).  Does any cross itself, or another?  Per call, on fresh regions.
// self_intersecting_set_pairs: the pairs alone, of regions that know about themselves.
//
//  ours   gxRegionSet::isSelfIntersecting.
//  plain  every edge with every other of a region, every region with every other (plain_scan.h).
//  geos   isSimple of each ring; pairs from a TemplateSTRtree of the rings, intersects() of each.
//  boost  intersects() of each ring with itself; pairs from an R-tree of boxes filled at once, intersects()
//         of the lines.
//  cgal   is_simple_2 of each; pairs from box_self_intersection_d, the edges of both then compared.
#include <cntr/region.h>
#include <cntr/regionst.h>

#include "coins.h"
#include "outlines.h"
#include "plain_scan.h"
#include "rows.h"

#ifdef GXSHAPE_HAVE_GEOS
#  include "geos_outline.h"

#  include <geos/index/strtree/TemplateSTRtree.h>
#  include <geos/operation/valid/MakeValid.h>
#endif
#ifdef GXSHAPE_HAVE_BOOST
#  include "boost_tree.h"

#  include <boost/geometry/geometries/ring.hpp>
#endif
#ifdef GXSHAPE_HAVE_CGAL
#  include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#  include <CGAL/Polygon_2_algorithms.h>
#  include <CGAL/box_intersection_d.h>
#endif
#ifdef GXSHAPE_HAVE_POLYCLIPPING
#  include <polyclipping/clipper.hpp>
#endif

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

// ---- Repair -------------------------------------------------------------------------------------

template <std::int64_t Largest>
void repairSizes(gx_Benchmark* row) {
  for (const std::int64_t n : {256, 1000, 10000, 100000, 1000000}) {
    if (n <= Largest) row->Arg(n);
  }
  row->MinTime(0.1);
}

struct Kinked {
  explicit Kinked(std::int64_t n) : outline(gx_kinkedOutline(n)) {
    gxRegion result;
    const gxRegion region(outline);
    crosses = region.isSelfIntersecting();
    region.regularize(result);
    area = result.area(false);
  }

  Points outline;
  bool crosses = false;
  double area = 0.0;  // of our repair
};

const Kinked& kinkedOf(const benchmark::State& state) {
  return gx_inputOf<Kinked>(state.range(0));
}

// Checks the area that `repair` leaves and times it; it returns something whose area `areaOf` tells.
template <class Repair, class AreaOf>
void timeRepair(benchmark::State& state, const Repair& repair, const AreaOf& areaOf) {
  if (!gx_agree(state, kinkedOf(state).area, areaOf(repair()), 0.01)) return;
  for ([[maybe_unused]] const auto _ : state) benchmark::DoNotOptimize(repair());
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

void oursRepair(benchmark::State& state) {
  const Kinked& input = kinkedOf(state);
  if (!gx_agree(state, 1.0, input.crosses ? 1.0 : 0.0)) return;
  gx_timeFirst(
      state, [&input] { return std::make_unique<gxRegion>(input.outline); },
      [](const gxRegion& region) {
        gxRegion result;
        region.regularize(result);
        return result.points().size();
      });
}
BENCHMARK(oursRepair)->Name("repair/ours")->Apply(repairSizes<1000000>);

void plainRepair(benchmark::State& state) {
  const slow::Region region{kinkedOf(state).outline, {}};
  timeRepair(
      state, [&region] { return slow::regularize(region); },
      [](const slow::Region& result) { return slow::area(result, false); });
}
BENCHMARK(plainRepair)->Name("repair/plain")->Apply(repairSizes<10000>);

#ifdef GXSHAPE_HAVE_GEOS
double geosArea(const std::unique_ptr<geos::geom::Geometry>& geometry) {
  return geometry->getArea();
}

void geosMakeValid(benchmark::State& state) {
  const auto polygon = gx_geosPolygon(kinkedOf(state).outline);
  timeRepair(
      state, [&polygon] { return geos::operation::valid::MakeValid().build(polygon.get()); }, geosArea);
}
BENCHMARK(geosMakeValid)->Name("repair/geos")->Apply(repairSizes<100000>);

void geosBuffer(benchmark::State& state) {
  const auto polygon = gx_geosPolygon(kinkedOf(state).outline);
  timeRepair(
      state, [&polygon] { return polygon->buffer(0.0); }, geosArea);
}
BENCHMARK(geosBuffer)->Name("repair/geos_buffer")->Apply(repairSizes<1000000>);
#endif

#ifdef GXSHAPE_HAVE_POLYCLIPPING
void polyclippingUnion(benchmark::State& state) {
  // Up to 2^30 - 1 it multiplies in 64 bits, beyond in 128; an outline reaches to 1.2 mean radii.
  const double scale = 1e9 / (1.2 * gx_radiusOf(state.range(0)));
  ClipperLib::Path path;
  for (const V& p : kinkedOf(state).outline) {
    path.emplace_back(std::llround(p.x() * scale), std::llround(p.y() * scale));
  }
  timeRepair(
      state,
      [&path] {
        ClipperLib::Paths result;
        ClipperLib::SimplifyPolygon(path, result, ClipperLib::pftNonZero);
        return result;
      },
      [scale](const ClipperLib::Paths& result) {
        double area = 0.0;
        for (const ClipperLib::Path& loop : result) area += ClipperLib::Area(loop);
        return std::abs(area) / (scale * scale);
      });
}
BENCHMARK(polyclippingUnion)->Name("repair/polyclipping")->Apply(repairSizes<10000>);
#endif

// ---- Sets ---------------------------------------------------------------------------------------

using Handle = gxPtrHandle_const<gxRegion>;

struct Coins {
  explicit Coins(std::int64_t n) {
    outlines.reserve(static_cast<std::size_t>(n));
    for (std::int64_t i = 0; i < n; ++i) outlines.push_back(gx_coin(i));
  }

  std::vector<Points> outlines;
};

const Coins& coinsOf(const benchmark::State& state) {
  return gx_inputOf<Coins>(state.range(0));
}

void setSizes(gx_Benchmark* row) {
  row->Arg(200)->Arg(2000)->Arg(20000)->MinTime(0.1);
}

// Quadratic: 20,000 regions take minutes.
void fewerSetSizes(gx_Benchmark* row) {
  row->Arg(200)->Arg(2000)->MinTime(0.1);
}

std::vector<Handle> regionsOf(const Coins& coins) {
  std::vector<Handle> handles;
  handles.reserve(coins.outlines.size());
  for (const Points& outline : coins.outlines) handles.emplace_back(new gxRegion(outline));
  return handles;
}

// No coin touches another, and every party has to find that.
template <class Ask>
void timeSet(benchmark::State& state, const Ask& meets) {
  if (!gx_agree(state, 0.0, meets() ? 1.0 : 0.0)) return;
  for ([[maybe_unused]] const auto _ : state) benchmark::DoNotOptimize(meets());
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

void oursSet(benchmark::State& state) {
  const Coins& coins = coinsOf(state);
  bool meets = false;
  gx_timeFirst(
      state, state.range(0) * gx_kCoinPoints, 1,
      [&coins] { return std::make_unique<gxRegionSet>(regionsOf(coins)); },
      [&meets](const gxRegionSet& set) { return meets = set.isSelfIntersecting(); });
  gx_agree(state, 0.0, meets ? 1.0 : 0.0);
}
BENCHMARK(oursSet)->Name("self_intersecting_set/ours")->Apply(setSizes);

void oursPairs(benchmark::State& state) {
  const std::vector<Handle> handles = regionsOf(coinsOf(state));
  bool meets = gxRegionSet(handles).isSelfIntersecting();
  gx_timeFirst(
      state, state.range(0), 1, [&handles] { return std::make_unique<gxRegionSet>(handles); },
      [&meets](const gxRegionSet& set) { return meets = set.isSelfIntersecting(); });
  gx_agree(state, 0.0, meets ? 1.0 : 0.0);
}
BENCHMARK(oursPairs)->Name("self_intersecting_set_pairs/ours")->Apply(setSizes);

bool plainPairsMeet(const std::vector<gx_PlainScan>& scans) {
  for (std::size_t i = 0; i < scans.size(); ++i) {
    for (std::size_t j = i + 1; j < scans.size(); ++j) {
      if (!scans[i].intersections(scans[j]).empty()) return true;
    }
  }
  return false;
}

std::vector<gx_PlainScan> scansOf(const Coins& coins) {
  std::vector<gx_PlainScan> scans;
  scans.reserve(coins.outlines.size());
  for (const Points& outline : coins.outlines) scans.emplace_back(outline);
  return scans;
}

void plainSet(benchmark::State& state) {
  const Coins& coins = coinsOf(state);
  timeSet(state, [&coins] {
    const std::vector<gx_PlainScan> scans = scansOf(coins);
    return std::any_of(scans.begin(), scans.end(),
                       [](const gx_PlainScan& scan) { return scan.isSelfIntersecting(); }) ||
           plainPairsMeet(scans);
  });
}
BENCHMARK(plainSet)->Name("self_intersecting_set/plain")->Apply(fewerSetSizes);

void plainPairs(benchmark::State& state) {
  const std::vector<gx_PlainScan> scans = scansOf(coinsOf(state));
  timeSet(state, [&scans] { return plainPairsMeet(scans); });
}
BENCHMARK(plainPairs)->Name("self_intersecting_set_pairs/plain")->Apply(fewerSetSizes);

#ifdef GXSHAPE_HAVE_GEOS
using GeosRings = std::vector<std::unique_ptr<geos::geom::LinearRing>>;

GeosRings geosRings(const Coins& coins) {
  GeosRings rings;
  for (const Points& outline : coins.outlines) rings.push_back(gx_geosRing(outline));
  return rings;
}

bool geosPairsMeet(const GeosRings& rings) {
  using Ring = const geos::geom::LinearRing*;
  geos::index::strtree::TemplateSTRtree<Ring> tree(10, rings.size());  // 10 to a node, its usual number
  for (const auto& ring : rings) tree.insert(*ring->getEnvelopeInternal(), ring.get());
  bool meet = false;
  for (const auto& ring : rings) {
    // Returning false ends the query.
    tree.query(*ring->getEnvelopeInternal(), [&meet, &ring](Ring other) {
      meet = meet || (ring.get() < other && ring->intersects(other));
      return !meet;
    });
    if (meet) return true;
  }
  return false;
}

void geosSet(benchmark::State& state) {
  const GeosRings rings = geosRings(coinsOf(state));
  timeSet(state, [&rings] {
    return std::any_of(rings.begin(), rings.end(), [](const auto& ring) { return !ring->isSimple(); }) ||
           geosPairsMeet(rings);
  });
}
BENCHMARK(geosSet)->Name("self_intersecting_set/geos")->Apply(setSizes);

void geosPairs(benchmark::State& state) {
  const GeosRings rings = geosRings(coinsOf(state));
  timeSet(state, [&rings] { return geosPairsMeet(rings); });
}
BENCHMARK(geosPairs)->Name("self_intersecting_set_pairs/geos")->Apply(setSizes);
#endif

#ifdef GXSHAPE_HAVE_BOOST
namespace bg = boost::geometry;
using BoostRing = bg::model::ring<gx_BoostPoint, false>;
using BoostBox = bg::model::box<gx_BoostPoint>;

// The same points once as a ring and once as a line, for a ring meets another inside it as well.
struct BoostCoins {
  explicit BoostCoins(const Coins& coins) {
    for (const Points& outline : coins.outlines) {
      lines.push_back(gx_boostLine(outline));
      rings.emplace_back(lines.back().begin(), lines.back().end());
    }
  }

  bool anyCrossesItself() const {
    return std::any_of(rings.begin(), rings.end(),
                       [](const BoostRing& ring) { return bg::intersects(ring); });
  }
  bool pairsMeet() const {
    using Value = std::pair<BoostBox, std::size_t>;
    std::vector<Value> boxes;
    boxes.reserve(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
      boxes.emplace_back(bg::return_envelope<BoostBox>(lines[i]), i);
    }
    const bg::index::rtree<Value, gx_BoostRule> tree(boxes);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const auto meets = [this, i](const Value& other) {
        return other.second > i && bg::intersects(lines[i], lines[other.second]);
      };
      const auto query = bg::index::intersects(boxes[i].first) && bg::index::satisfies(meets);
      if (tree.qbegin(query) != tree.qend()) return true;
    }
    return false;
  }

  std::vector<BoostRing> rings;
  std::vector<bg::model::linestring<gx_BoostPoint>> lines;
};

void boostSet(benchmark::State& state) {
  const BoostCoins coins(coinsOf(state));
  timeSet(state, [&coins] { return coins.anyCrossesItself() || coins.pairsMeet(); });
}
BENCHMARK(boostSet)->Name("self_intersecting_set/boost")->Apply(setSizes);

void boostPairs(benchmark::State& state) {
  const BoostCoins coins(coinsOf(state));
  timeSet(state, [&coins] { return coins.pairsMeet(); });
}
BENCHMARK(boostPairs)->Name("self_intersecting_set_pairs/boost")->Apply(setSizes);
#endif

#ifdef GXSHAPE_HAVE_CGAL
using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using CgalOutlines = std::vector<std::vector<Kernel::Point_2>>;

CgalOutlines cgalOutlines(const Coins& coins) {
  CgalOutlines result;
  for (const Points& outline : coins.outlines) {
    result.emplace_back();
    for (const V& p : outline) result.back().emplace_back(p.x(), p.y());
  }
  return result;
}

Kernel::Segment_2 cgalEdge(const std::vector<Kernel::Point_2>& outline, std::size_t i) {
  return {outline[i], outline[i + 1 == outline.size() ? 0 : i + 1]};
}

bool cgalMeet(const std::vector<Kernel::Point_2>& a, const std::vector<Kernel::Point_2>& b) {
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (std::size_t j = 0; j < b.size(); ++j) {
      if (CGAL::do_intersect(cgalEdge(a, i), cgalEdge(b, j))) return true;
    }
  }
  return false;
}

bool cgalPairsMeet(const CgalOutlines& outlines) {
  using Box = CGAL::Box_intersection_d::Box_with_info_d<double, 2, std::size_t>;
  std::vector<Box> boxes;
  boxes.reserve(outlines.size());
  for (std::size_t i = 0; i < outlines.size(); ++i) {
    boxes.emplace_back(CGAL::bbox_2(outlines[i].begin(), outlines[i].end()), i);
  }
  bool meet = false;
  CGAL::box_self_intersection_d(boxes.begin(), boxes.end(), [&](const Box& a, const Box& b) {
    meet = meet || cgalMeet(outlines[a.info()], outlines[b.info()]);
  });
  return meet;
}

void cgalSet(benchmark::State& state) {
  const CgalOutlines outlines = cgalOutlines(coinsOf(state));
  timeSet(state, [&outlines] {
    return std::any_of(outlines.begin(), outlines.end(),
                       [](const auto& o) { return !CGAL::is_simple_2(o.begin(), o.end(), Kernel()); }) ||
           cgalPairsMeet(outlines);
  });
}
BENCHMARK(cgalSet)->Name("self_intersecting_set/cgal")->Apply(setSizes);

void cgalPairs(benchmark::State& state) {
  const CgalOutlines outlines = cgalOutlines(coinsOf(state));
  timeSet(state, [&outlines] { return cgalPairsMeet(outlines); });
}
BENCHMARK(cgalPairs)->Name("self_intersecting_set_pairs/cgal")->Apply(setSizes);
#endif

}  // namespace
