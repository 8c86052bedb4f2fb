// Where does a segment meet the outline; where does another outline; does the outline meet itself?
//
// The parameter is the number of points of the outline, and of the other one.  Fixed: 100,000 different
// segments; the other outline is the same one, turned by 3 degrees and shifted by a twentieth of its
// radius.  All hits are computed and collected, also those of peers that can stop at the first.
//
// segment_short: segments of 10 pixels whose middles lie within 2 pixels of a vertex, in every
// direction.  segment_long: segments right across, longer than the outline is wide.  Both of an outline
// that was asked before.  segment_build: the first short segment, on a fresh outline, per edge.
// self_intersection: a fresh outline that does not cross itself, per edge.  outline_outline: both
// outlines indexed, where the party can index; outline_outline_first: both outlines fresh.
//
//  ours    gxContour::intersections and isSelfIntersecting.  Ours alone orders the hits along the segment.
//  plain   every edge for every question, the edges being remembered (plain_scan.h).
//  geos    MCIndexSegmentSetMutualIntersector, monotone chains in a tree, which GEOS's prepared lines
//          use too; the chains of the outline are kept, those of the segment are made for each call.
//          isSimple of the ring.  In outline_outline_first, `geos_overlay` is intersection() of the two
//          rings.
//  boost   an R-tree of the edges, filled at once, asked for those that intersect the segment, then
//          intersection() with each; intersects(ring), which looks for crossings of a ring with itself;
//          in outline_outline_first, intersection() of two linestrings, which makes an index of its own.
//  cgal    AABB_tree of the edges, all_intersections; is_simple_2, a sweep with exact predicates.
#include <cntr/contour.h>

#include "outlines.h"
#include "plain_scan.h"
#include "rows.h"

#include <random>

#ifdef GXSHAPE_HAVE_GEOS
#  include "geos_crossings.h"

#  include <geos/geom/LineString.h>
#endif
#ifdef GXSHAPE_HAVE_BOOST
#  include "boost_tree.h"

#  include <boost/geometry/geometries/multi_point.hpp>
#  include <boost/geometry/geometries/ring.hpp>
#endif
#ifdef GXSHAPE_HAVE_CGAL
#  include "cgal_tree.h"

#  include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#  include <CGAL/Polygon_2_algorithms.h>
#endif

namespace {

using V = gxVector<2>;

constexpr std::int64_t kQueries = 100000;
constexpr double kTurn = 6.283185307179586;

// How many hits, and a sum that changes with where they lie.
struct Tally {
  double hits = 0.0;
  double places = 0.0;

  void add(double x, double y) {
    ++hits;
    places += std::abs(x) + std::abs(y);
  }
};

// Hits within the tolerance of two edges count twice with us, so one more in ten thousand is the same
// answer.
bool agree(benchmark::State& state, const Tally& expected, const Tally& got) {
  return gx_agree(state, expected.hits, got.hits, 1e-4) &&
         gx_agree(state, expected.places, got.places, 1e-4);
}

std::vector<gxLineSeg> shortSegments(std::int64_t n) {
  std::mt19937_64 engine(20250104);
  std::uniform_real_distribution<double> turn(0.0, kTurn);
  std::vector<gxLineSeg> segments;
  segments.reserve(kQueries);
  for (const V& middle : gx_pointsNear(n, kQueries, 2.0)) {
    const double angle = turn(engine);
    const V half(5.0 * std::cos(angle), 5.0 * std::sin(angle));
    segments.emplace_back(middle - half, middle + half);
  }
  return segments;
}

std::vector<gxLineSeg> longSegments(std::int64_t n) {
  std::mt19937_64 engine(20250105);
  std::uniform_real_distribution<double> turn(0.0, kTurn);
  std::uniform_real_distribution<double> aside(-0.5, 0.5);
  const double radius = gx_radiusOf(n);
  std::vector<gxLineSeg> segments;
  segments.reserve(kQueries);
  for (std::int64_t i = 0; i < kQueries; ++i) {
    const double angle = turn(engine);
    const V along(1.3 * radius * std::cos(angle), 1.3 * radius * std::sin(angle));
    const V middle = V(-along.y(), along.x()) * (aside(engine) / 1.3);
    segments.emplace_back(middle - along, middle + along);
  }
  return segments;
}

std::vector<V> turned(const std::vector<V>& points, double shift) {
  const double c = std::cos(kTurn / 120.0);
  const double s = std::sin(kTurn / 120.0);
  std::vector<V> result;
  result.reserve(points.size());
  for (const V& p : points) {
    result.emplace_back(c * p.x() - s * p.y() + shift, s * p.x() + c * p.y() + shift);
  }
  return result;
}

struct Input {
  explicit Input(std::int64_t n)
      : outline(gx_wobblyOutline(n)),
        other(turned(outline, gx_radiusOf(n) / 20.0)),
        shorts(shortSegments(n)),
        longs(longSegments(n)),
        contour(outline),
        otherContour(other) {}

  const std::vector<gxLineSeg>& segments(bool across) const { return across ? longs : shorts; }

  std::vector<V> outline;
  std::vector<V> other;
  std::vector<gxLineSeg> shorts;
  std::vector<gxLineSeg> longs;
  gxContour contour;  // has its index
  gxContour otherContour;
};

const Input& inputOf(const benchmark::State& state) {
  return gx_inputOf<Input>(state.range(0));
}

Tally tallyOf(const std::vector<V>& hits) {
  Tally tally;
  for (const V& hit : hits) tally.add(hit.x(), hit.y());
  return tally;
}

// ---- Segments -----------------------------------------------------------------------------------

// Checks `ask`, which returns the points found, on the first segments, and times it on all of them.
// `add` adds one of its points to a tally.
template <class Query, class Ask, class Add>
void timeSegments(benchmark::State& state, bool across, const std::vector<Query>& queries,
                  const Ask& ask, const Add& add) {
  const Input& input = inputOf(state);
  Tally expected;
  Tally got;
  gx_checkFirst(queries.size(), [&](std::size_t i) {
    for (const V& p : input.contour.intersections(input.segments(across)[i], true)) {
      expected.add(p.x(), p.y());
    }
    for (const auto& point : ask(queries[i])) add(got, point);
  });
  if (!agree(state, expected, got)) return;
  gx_timeQueries(state, queries, [&ask](const Query& query) { return ask(query).size(); });
}

void addVector(Tally& tally, const V& p) {
  tally.add(p.x(), p.y());
}

template <bool Across>
void oursSegment(benchmark::State& state) {
  const Input& input = inputOf(state);
  timeSegments(
      state, Across, input.segments(Across),
      [&input](const gxLineSeg& seg) { return input.contour.intersections(seg, true); }, addVector);
}
BENCHMARK_TEMPLATE(oursSegment, false)->Name("segment_short/ours")->Apply(gx_allSizes);
BENCHMARK_TEMPLATE(oursSegment, true)->Name("segment_long/ours")->Apply(gx_allSizes);

template <bool Across>
void plainSegment(benchmark::State& state) {
  const Input& input = inputOf(state);
  const gx_PlainScan scan(input.outline);
  timeSegments(
      state, Across, input.segments(Across),
      [&scan](const gxLineSeg& seg) { return scan.intersections(seg, true).points; }, addVector);
}
BENCHMARK_TEMPLATE(plainSegment, false)->Name("segment_short/plain")->Apply(gx_allSizes);
BENCHMARK_TEMPLATE(plainSegment, true)->Name("segment_long/plain")->Apply(gx_allSizes);

void oursBuild(benchmark::State& state) {
  const Input& input = inputOf(state);
  const gxLineSeg& seg = input.shorts.front();
  gx_timeFirst(
      state, [&input] { return std::make_unique<gxContour>(input.outline); },
      [&seg](const gxContour& contour) { return contour.intersections(seg, true).size(); });
}
BENCHMARK(oursBuild)->Name("segment_build/ours")->Apply(gx_allSizes);

#ifdef GXSHAPE_HAVE_GEOS
using GeosStrings = std::vector<std::unique_ptr<gx_GeosString>>;

std::unique_ptr<gx_GeosString> geosString(const gxLineSeg& seg) {
  auto points = std::make_unique<geos::geom::CoordinateArraySequence>(0, 2);
  points->add(geos::geom::Coordinate(seg.p1().x(), seg.p1().y()));
  points->add(geos::geom::Coordinate(seg.p2().x(), seg.p2().y()));
  return std::make_unique<gx_GeosString>(std::move(points));
}

template <bool Across>
void geosSegment(benchmark::State& state) {
  const Input& input = inputOf(state);
  GeosStrings queries;
  queries.reserve(kQueries);
  for (const gxLineSeg& seg : input.segments(Across)) queries.push_back(geosString(seg));
  gx_GeosString outline(gx_geosSequence(input.outline));
  gx_GeosCrossings crossings(outline);
  using Found = const std::vector<geos::geom::Coordinate>&;
  timeSegments(
      state, Across, queries,
      [&crossings](const std::unique_ptr<gx_GeosString>& seg) -> Found { return crossings.with(*seg); },
      [](Tally& tally, const geos::geom::Coordinate& p) { tally.add(p.x, p.y); });
}
BENCHMARK_TEMPLATE(geosSegment, false)->Name("segment_short/geos")->Apply(gx_allSizes);
BENCHMARK_TEMPLATE(geosSegment, true)->Name("segment_long/geos")->Apply(gx_allSizes);

void geosBuild(benchmark::State& state) {
  const Input& input = inputOf(state);
  gx_GeosString outline(gx_geosSequence(input.outline));
  const auto seg = geosString(input.shorts.front());
  using Crossings = std::unique_ptr<gx_GeosCrossings>;
  gx_timeFirst(
      state, [] { return std::make_unique<Crossings>(); },
      [&](Crossings& crossings) {
        crossings = std::make_unique<gx_GeosCrossings>(outline);
        return crossings->with(*seg).size();
      });
}
BENCHMARK(geosBuild)->Name("segment_build/geos")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_BOOST
namespace bg = boost::geometry;

void boostHits(const gx_BoostEdgeTree& tree, const gx_BoostSegment& seg,
               std::vector<gx_BoostPoint>& found) {
  for (auto edge = tree.qbegin(bg::index::intersects(seg)); edge != tree.qend(); ++edge) {
    bg::intersection(*edge, seg, found);
  }
}

template <bool Across>
void boostSegment(benchmark::State& state) {
  const Input& input = inputOf(state);
  std::vector<gx_BoostSegment> queries;
  queries.reserve(kQueries);
  for (const gxLineSeg& seg : input.segments(Across)) {
    queries.emplace_back(gx_boostPoint(seg.p1()), gx_boostPoint(seg.p2()));
  }
  const gx_BoostEdgeTree tree(gx_boostEdges(input.outline));
  timeSegments(
      state, Across, queries,
      [&tree](const gx_BoostSegment& seg) {
        std::vector<gx_BoostPoint> found;
        boostHits(tree, seg, found);
        return found;
      },
      [](Tally& tally, const gx_BoostPoint& p) { tally.add(p.x(), p.y()); });
}
BENCHMARK_TEMPLATE(boostSegment, false)->Name("segment_short/boost")->Apply(gx_allSizes);
BENCHMARK_TEMPLATE(boostSegment, true)->Name("segment_long/boost")->Apply(gx_allSizes);

void boostBuild(benchmark::State& state) {
  const std::vector<gx_BoostSegment> edges = gx_boostEdges(inputOf(state).outline);
  gx_timeFirst(
      state, [] { return std::make_unique<gx_BoostEdgeTree>(); },
      [&edges](gx_BoostEdgeTree& tree) {
        tree = gx_BoostEdgeTree(edges);
        return tree.size();
      });
}
BENCHMARK(boostBuild)->Name("segment_build/boost")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_CGAL
using CgalHits = std::vector<gx_CgalTree::Intersection_and_primitive_id<gx_CgalKernel::Segment_3>::Type>;

void cgalHits(const gx_CgalTree& tree, const gx_CgalKernel::Segment_3& seg, CgalHits& found) {
  tree.all_intersections(seg, std::back_inserter(found));
}

void addCgal(Tally& tally, const CgalHits::value_type& hit) {
  if (const auto* point = boost::get<gx_CgalKernel::Point_3>(&hit.first)) {
    tally.add(point->x(), point->y());
  }
}

template <bool Across>
void cgalSegment(benchmark::State& state) {
  const Input& input = inputOf(state);
  gx_CgalSegments queries;
  queries.reserve(kQueries);
  for (const gxLineSeg& seg : input.segments(Across)) {
    queries.emplace_back(gx_cgalPoint(seg.p1()), gx_cgalPoint(seg.p2()));
  }
  const gx_CgalSegments edges = gx_cgalEdges(input.outline);
  const auto tree = gx_cgalTree(edges);
  timeSegments(
      state, Across, queries,
      [&tree](const gx_CgalKernel::Segment_3& seg) {
        CgalHits found;
        cgalHits(*tree, seg, found);
        return found;
      },
      addCgal);
}
BENCHMARK_TEMPLATE(cgalSegment, false)->Name("segment_short/cgal")->Apply(gx_allSizes);
BENCHMARK_TEMPLATE(cgalSegment, true)->Name("segment_long/cgal")->Apply(gx_allSizes);

void cgalBuild(benchmark::State& state) {
  const gx_CgalSegments edges = gx_cgalEdges(inputOf(state).outline);
  gx_timeFirst(
      state, [] { return std::make_unique<gx_CgalTree>(); },
      [&edges](gx_CgalTree& tree) {
        tree.insert(edges.begin(), edges.end());
        tree.build();
        return tree.size();
      });
}
BENCHMARK(cgalBuild)->Name("segment_build/cgal")->Apply(gx_allSizes);
#endif

// ---- Self-intersection --------------------------------------------------------------------------

void oursSelf(benchmark::State& state) {
  const Input& input = inputOf(state);
  bool crosses = false;
  gx_timeFirst(
      state, [&input] { return std::make_unique<gxContour>(input.outline); },
      [&crosses](const gxContour& contour) { return crosses = contour.isSelfIntersecting(); });
  gx_agree(state, 0.0, crosses ? 1.0 : 0.0);
}
BENCHMARK(oursSelf)->Name("self_intersection/ours")->Apply(gx_allSizes);

// The edges are made in the timing, as they are by ours.
void plainSelf(benchmark::State& state) {
  const Input& input = inputOf(state);
  using Scan = std::unique_ptr<gx_PlainScan>;
  bool crosses = false;
  gx_timeFirst(
      state, [] { return std::make_unique<Scan>(); },
      [&](Scan& scan) {
        scan = std::make_unique<gx_PlainScan>(input.outline);
        return crosses = scan->isSelfIntersecting();
      });
  gx_agree(state, 0.0, crosses ? 1.0 : 0.0);
}
BENCHMARK(plainSelf)->Name("self_intersection/plain")->Apply(gx_sizesUpTo<10000>);
// 10,000,000,000 pairs.
BENCHMARK(plainSelf)->Name("self_intersection/plain")->Arg(100000)->Iterations(1);

// Times a test that remembers nothing on an outline of the party's own type.
template <class Outline, class Ask>
void timeSelf(benchmark::State& state, const Outline& outline, const Ask& crosses) {
  if (!gx_agree(state, 0.0, crosses(outline) ? 1.0 : 0.0)) return;
  for ([[maybe_unused]] const auto _ : state) benchmark::DoNotOptimize(crosses(outline));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

#ifdef GXSHAPE_HAVE_GEOS
void geosSelf(benchmark::State& state) {
  const auto ring = gx_geosRing(inputOf(state).outline);
  timeSelf(state, *ring, [](const geos::geom::LinearRing& r) { return !r.isSimple(); });
}
BENCHMARK(geosSelf)->Name("self_intersection/geos")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_BOOST
void boostSelf(benchmark::State& state) {
  using Ring = bg::model::ring<gx_BoostPoint, false>;
  Ring ring;
  for (const V& p : inputOf(state).outline) ring.push_back(gx_boostPoint(p));
  ring.push_back(ring.front());
  timeSelf(state, ring, [](const Ring& r) { return bg::intersects(r); });
}
BENCHMARK(boostSelf)->Name("self_intersection/boost")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_CGAL
void cgalSelf(benchmark::State& state) {
  using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
  using Points = std::vector<Kernel::Point_2>;
  Points points;
  for (const V& p : inputOf(state).outline) points.emplace_back(p.x(), p.y());
  timeSelf(state, points,
           [](const Points& p) { return !CGAL::is_simple_2(p.begin(), p.end(), Kernel()); });
}
BENCHMARK(cgalSelf)->Name("self_intersection/cgal")->Apply(gx_allSizes);
#endif

// ---- Outline against outline --------------------------------------------------------------------

Tally expectedOutline(const Input& input) {
  return tallyOf(input.contour.intersections(input.otherContour));
}

// Checks and times `ask`, which returns a tally of all crossings when its argument is true, and else
// their number alone in it.
template <class Ask>
void timeOutline(benchmark::State& state, const Ask& ask) {
  if (!agree(state, expectedOutline(inputOf(state)), ask(true))) return;
  for ([[maybe_unused]] const auto _ : state) benchmark::DoNotOptimize(ask(false).hits);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

template <class Points, class Add>
Tally counted(const Points& points, bool tally, const Add& add) {
  Tally result;
  if (tally) {
    for (const auto& point : points) add(result, point);
  } else {
    result.hits = static_cast<double>(points.size());
  }
  return result;
}

void oursOutline(benchmark::State& state) {
  const Input& input = inputOf(state);
  timeOutline(state, [&input](bool tally) {
    return counted(input.contour.intersections(input.otherContour), tally, addVector);
  });
}
BENCHMARK(oursOutline)->Name("outline_outline/ours")->Apply(gx_allSizes);

void plainOutline(benchmark::State& state) {
  const Input& input = inputOf(state);
  const gx_PlainScan scan(input.outline);
  const gx_PlainScan other(input.other);
  timeOutline(state, [&scan, &other](bool tally) {
    return counted(scan.intersections(other), tally, addVector);
  });
}
BENCHMARK(plainOutline)->Name("outline_outline/plain")->Apply(gx_sizesUpTo<10000>);

void oursOutlineFirst(benchmark::State& state) {
  const Input& input = inputOf(state);
  using Pair = std::pair<gxContour, gxContour>;
  gx_timeFirst(
      state, 2 * state.range(0), 1,
      [&input] { return std::make_unique<Pair>(gxContour(input.outline), gxContour(input.other)); },
      [](const Pair& pair) { return pair.first.intersections(pair.second).size(); });
}
BENCHMARK(oursOutlineFirst)->Name("outline_outline_first/ours")->Apply(gx_allSizes);

#ifdef GXSHAPE_HAVE_GEOS
void addGeos(Tally& tally, const geos::geom::Coordinate& p) {
  tally.add(p.x, p.y);
}

void geosOutline(benchmark::State& state) {
  const Input& input = inputOf(state);
  gx_GeosString outline(gx_geosSequence(input.outline));
  gx_GeosString other(gx_geosSequence(input.other));
  gx_GeosCrossings crossings(outline);
  timeOutline(state, [&crossings, &other](bool tally) {
    return counted(crossings.with(other), tally, addGeos);
  });
}
BENCHMARK(geosOutline)->Name("outline_outline/geos")->Apply(gx_allSizes);

void geosOutlineFirst(benchmark::State& state) {
  const Input& input = inputOf(state);
  gx_GeosString outline(gx_geosSequence(input.outline));
  gx_GeosString other(gx_geosSequence(input.other));
  timeOutline(state, [&outline, &other](bool tally) {
    gx_GeosCrossings crossings(outline);
    return counted(crossings.with(other), tally, addGeos);
  });
}
BENCHMARK(geosOutlineFirst)->Name("outline_outline_first/geos")->Apply(gx_allSizes);

void geosOverlay(benchmark::State& state) {
  const Input& input = inputOf(state);
  const auto outline = gx_geosRing(input.outline);
  const auto other = gx_geosRing(input.other);
  timeOutline(state, [&outline, &other](bool tally) {
    const auto points = outline->intersection(other.get());
    Tally result;
    if (tally) {
      for (std::size_t i = 0; i < points->getNumGeometries(); ++i) {
        addGeos(result, *points->getGeometryN(i)->getCoordinate());
      }
    } else {
      result.hits = static_cast<double>(points->getNumGeometries());
    }
    return result;
  });
}
BENCHMARK(geosOverlay)->Name("outline_outline_first/geos_overlay")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_BOOST
void addBoost(Tally& tally, const gx_BoostPoint& p) {
  tally.add(p.x(), p.y());
}

void boostOutline(benchmark::State& state) {
  const Input& input = inputOf(state);
  const gx_BoostEdgeTree tree(gx_boostEdges(input.outline));
  const std::vector<gx_BoostSegment> others = gx_boostEdges(input.other);
  timeOutline(state, [&tree, &others](bool tally) {
    std::vector<gx_BoostPoint> found;
    for (const gx_BoostSegment& other : others) boostHits(tree, other, found);
    return counted(found, tally, addBoost);
  });
}
BENCHMARK(boostOutline)->Name("outline_outline/boost")->Apply(gx_allSizes);

void boostOutlineFirst(benchmark::State& state) {
  const Input& input = inputOf(state);
  const auto outline = gx_boostLine(input.outline);
  const auto other = gx_boostLine(input.other);
  timeOutline(state, [&outline, &other](bool tally) {
    bg::model::multi_point<gx_BoostPoint> found;
    bg::intersection(outline, other, found);
    return counted(found, tally, addBoost);
  });
}
BENCHMARK(boostOutlineFirst)->Name("outline_outline_first/boost")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_CGAL
void cgalOutline(benchmark::State& state) {
  const Input& input = inputOf(state);
  const gx_CgalSegments edges = gx_cgalEdges(input.outline);
  const gx_CgalSegments others = gx_cgalEdges(input.other);
  const auto tree = gx_cgalTree(edges);
  timeOutline(state, [&tree, &others](bool tally) {
    CgalHits found;
    for (const gx_CgalKernel::Segment_3& other : others) cgalHits(*tree, other, found);
    return counted(found, tally, addCgal);
  });
}
BENCHMARK(cgalOutline)->Name("outline_outline/cgal")->Apply(gx_allSizes);
#endif

}  // namespace
