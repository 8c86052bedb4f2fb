// What is nearest to a point: of the boundary, of the vertices, all vertices within a pixel?
//
// The parameter is the number of points of the outline.  Fixed: 200,000 different query points, for the
// boundary and the vertex half of them spread evenly over the square of 2.4 radii around the outline
// (gx_pointsAround) and half within 5 pixels of a vertex (gx_pointsNear), in turn; for vertices_within
// within 2 pixels of a vertex, and the tolerance 1 pixel.
//
// The queries are put to an outline that was asked before; the …_build rows make what there is to make,
// per point of the outline, and answer the first questions.  Ours answers these without an index: there are as
// many of them, for every party, as it takes ours until there is one.
//
//  ours       gxContour::closestPoint(point, false), closestVertexIndex, vertexIndex(point, 1).
//  plain      every edge (plain_scan.h) or vertex (the definition in the tests' support) for every
//             question.
//  geos       IndexedFacetDistance::nearestPoints, a tree over runs of 6 points, the query being a point
//             geometry made beforehand.
//  boost      an R-tree filled at once, of edges (nearest, and then the foot on the edge) or of vertices
//             (nearest; in the square of the tolerance and nearer than it).
//  cgal       AABB_tree::closest_point with accelerate_distance_queries (the tree of this version lies in
//             space); Orthogonal_k_neighbor_search and Fuzzy_sphere on a Kd_tree.
//  nanoflann  KDTreeSingleIndexAdaptor over the points as they lie, 10 to a leaf: findNeighbors with a
//             KNNResultSet of one, radiusSearch unsorted.
#include <cntr/contour.h>

#include "outlines.h"
#include "plain_scan.h"
#include "rows.h"

#ifdef GXSHAPE_HAVE_GEOS
#  include "geos_outline.h"

#  include <geos/geom/Point.h>
#  include <geos/operation/distance/IndexedFacetDistance.h>
#endif
#ifdef GXSHAPE_HAVE_BOOST
#  include "boost_tree.h"
#endif
#ifdef GXSHAPE_HAVE_CGAL
#  include "cgal_tree.h"

#  include <CGAL/Fuzzy_sphere.h>
#  include <CGAL/Kd_tree.h>
#  include <CGAL/Orthogonal_k_neighbor_search.h>
#  include <CGAL/Search_traits_2.h>
#endif
#ifdef GXSHAPE_HAVE_NANOFLANN
#  include <nanoflann.hpp>
#endif

namespace {

using V = gxVector<2>;

constexpr std::int64_t kQueries = 200000;
constexpr double kTolerance = 1.0;

// After so many questions ours has its index.
constexpr int kPointQuestions = 4;
constexpr int kVertexQuestions = 11;
constexpr int kWithinQuestions = 17;

std::vector<V> nearAndFar(std::int64_t n) {
  const std::vector<V> far = gx_pointsAround(n, kQueries / 2);
  const std::vector<V> near = gx_pointsNear(n, kQueries / 2, 5.0);
  std::vector<V> points;
  points.reserve(kQueries);
  for (std::size_t i = 0; i < far.size(); ++i) {
    points.push_back(far[i]);
    points.push_back(near[i]);
  }
  return points;
}

struct Input {
  explicit Input(std::int64_t n)
      : outline(gx_wobblyOutline(n)),
        queries(nearAndFar(n)),
        nearQueries(gx_pointsNear(n, kQueries, 2.0)),
        contour(outline) {}

  std::vector<V> outline;
  std::vector<V> queries;
  std::vector<V> nearQueries;
  gxContour contour;  // has its index
};

const Input& inputOf(const benchmark::State& state) {
  return gx_inputOf<Input>(state.range(0));
}

// The query points as the party's own.
template <class Convert>
auto converted(const std::vector<V>& points, const Convert& convert) {
  std::vector<decltype(convert(points.front()))> result;
  result.reserve(points.size());
  for (const V& p : points) result.push_back(convert(p));
  return result;
}

// ---- The checks ---------------------------------------------------------------------------------

// Times `ask`, which returns the nearest point or its distance as a vector, after comparing distances:
// of two points equally near either may be named.
template <class Query, class Ask, class Distance>
void timeNearestPoint(benchmark::State& state, const std::vector<Query>& queries, const Ask& ask,
                      const Distance& distanceOf) {
  const Input& input = inputOf(state);
  double expected = 0.0;
  double got = 0.0;
  gx_checkFirst(queries.size(), [&](std::size_t i) {
    expected += input.contour.distToPoint(input.queries[i], false);
    got += distanceOf(input.queries[i], ask(queries[i]));
  });
  if (gx_agree(state, expected, got, 1e-9)) gx_timeQueries(state, queries, ask);
}

// The same with `ask` returning the number of the nearest vertex.
template <class Query, class Ask>
void timeNearestVertex(benchmark::State& state, const std::vector<Query>& queries, const Ask& ask) {
  const Input& input = inputOf(state);
  double expected = 0.0;
  double got = 0.0;
  gx_checkFirst(queries.size(), [&](std::size_t i) {
    const V& point = input.queries[i];
    expected +=
        point.distance(input.outline[static_cast<std::size_t>(input.contour.closestVertexIndex(point))]);
    got += point.distance(input.outline[static_cast<std::size_t>(ask(queries[i]))]);
  });
  if (gx_agree(state, expected, got, 1e-12)) gx_timeQueries(state, queries, ask);
}

// The same with `ask` collecting the vertices within the tolerance in a vector, of which `indexOf` tells
// the numbers.
template <class Query, class Ask, class IndexOf>
void timeWithin(benchmark::State& state, const std::vector<Query>& queries, const Ask& ask,
                const IndexOf& indexOf) {
  const Input& input = inputOf(state);
  double differing = 0.0;
  gx_checkFirst(queries.size(), [&](std::size_t i) {
    std::vector<int> expected = input.contour.vertexIndex(input.nearQueries[i], kTolerance);
    std::vector<int> got;
    for (const auto& found : ask(queries[i])) got.push_back(static_cast<int>(indexOf(found)));
    std::sort(expected.begin(), expected.end());
    std::sort(got.begin(), got.end());
    if (got != expected) ++differing;
  });
  if (!gx_agree(state, 0.0, differing)) return;
  gx_timeQueries(state, queries, [&ask](const Query& query) { return ask(query).size(); });
}

double between(const V& query, const V& nearest) {
  return query.distance(nearest);
}

int itself(int index) {
  return index;
}

// ---- Ours, and the plain scan -------------------------------------------------------------------

void oursPoint(benchmark::State& state) {
  const Input& input = inputOf(state);
  timeNearestPoint(
      state, input.queries, [&input](const V& p) { return input.contour.closestPoint(p, false); },
      between);
}
BENCHMARK(oursPoint)->Name("nearest_point/ours")->Apply(gx_allSizes);

void plainPoint(benchmark::State& state) {
  const Input& input = inputOf(state);
  const gx_PlainScan scan(input.outline);
  timeNearestPoint(
      state, input.queries, [&scan](const V& p) { return scan.closestPoint(p); }, between);
}
BENCHMARK(plainPoint)->Name("nearest_point/plain")->Apply(gx_allSizes);

void oursVertex(benchmark::State& state) {
  const Input& input = inputOf(state);
  timeNearestVertex(state, input.queries,
                    [&input](const V& p) { return input.contour.closestVertexIndex(p); });
}
BENCHMARK(oursVertex)->Name("nearest_vertex/ours")->Apply(gx_allSizes);

void plainVertex(benchmark::State& state) {
  const Input& input = inputOf(state);
  timeNearestVertex(state, input.queries,
                    [&input](const V& p) { return slow::closestVertexIndex(input.outline, p); });
}
BENCHMARK(plainVertex)->Name("nearest_vertex/plain")->Apply(gx_allSizes);

void oursWithin(benchmark::State& state) {
  const Input& input = inputOf(state);
  timeWithin(
      state, input.nearQueries,
      [&input](const V& p) { return input.contour.vertexIndex(p, kTolerance); }, itself);
}
BENCHMARK(oursWithin)->Name("vertices_within/ours")->Apply(gx_allSizes);

void plainWithin(benchmark::State& state) {
  const Input& input = inputOf(state);
  timeWithin(
      state, input.nearQueries,
      [&input](const V& p) { return slow::vertexIndex(input.outline, p, kTolerance); }, itself);
}
BENCHMARK(plainWithin)->Name("vertices_within/plain")->Apply(gx_allSizes);

// The questions to a fresh contour until it has made its index, that one included.
template <class Ask>
void oursBuild(benchmark::State& state, int questions, const Ask& ask) {
  const Input& input = inputOf(state);
  gx_timeFirst(
      state, [&input] { return std::make_unique<gxContour>(input.outline); },
      [&](const gxContour& contour) {
        for (int i = 0; i < questions; ++i) {
          benchmark::DoNotOptimize(ask(contour, input.nearQueries.front()));
        }
        return &contour;
      });
}

void oursPointBuild(benchmark::State& state) {
  oursBuild(state, kPointQuestions,
            [](const gxContour& c, const V& p) { return c.closestPoint(p, false); });
}
BENCHMARK(oursPointBuild)->Name("nearest_point_build/ours")->Apply(gx_allSizes);

void oursVertexBuild(benchmark::State& state) {
  oursBuild(state, kVertexQuestions,
            [](const gxContour& c, const V& p) { return c.closestVertexIndex(p); });
}
BENCHMARK(oursVertexBuild)->Name("nearest_vertex_build/ours")->Apply(gx_allSizes);

void oursWithinBuild(benchmark::State& state) {
  oursBuild(state, kWithinQuestions,
            [](const gxContour& c, const V& p) { return c.vertexIndex(p, kTolerance).size(); });
}
BENCHMARK(oursWithinBuild)->Name("vertices_within_build/ours")->Apply(gx_allSizes);

// Times the making of a peer's index, which `build` returns a pointer to, and the same questions.
template <class Build, class Ask>
void timeBuild(benchmark::State& state, int questions, const Build& build, const Ask& ask) {
  using Index = decltype(build());
  gx_timeFirst(
      state, [] { return std::make_unique<Index>(); },
      [&](Index& index) {
        index = build();
        for (int i = 0; i < questions; ++i) benchmark::DoNotOptimize(ask(*index));
        return index.get();
      });
}

// ---- GEOS ---------------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_GEOS
using FacetDistance = geos::operation::distance::IndexedFacetDistance;

void geosPoint(benchmark::State& state) {
  const Input& input = inputOf(state);
  const auto ring = gx_geosRing(input.outline);
  const FacetDistance distance(ring.get());
  const auto* factory = geos::geom::GeometryFactory::getDefaultInstance();
  const auto queries = converted(input.queries, [factory](const V& p) {
    return std::unique_ptr<geos::geom::Point>(
        factory->createPoint(geos::geom::Coordinate(p.x(), p.y())));
  });
  timeNearestPoint(
      state, queries,
      [&distance](const std::unique_ptr<geos::geom::Point>& p) {
        return distance.nearestPoints(p.get()).front();
      },
      [](const V& p, const geos::geom::Coordinate& c) {
        return p.distance({c.x, c.y});
      });
}
BENCHMARK(geosPoint)->Name("nearest_point/geos")->Apply(gx_allSizes);

void geosPointBuild(benchmark::State& state) {
  const Input& input = inputOf(state);
  const auto ring = gx_geosRing(input.outline);
  const V& p = input.nearQueries.front();
  const std::unique_ptr<geos::geom::Point> point(
      geos::geom::GeometryFactory::getDefaultInstance()->createPoint(
          geos::geom::Coordinate(p.x(), p.y())));
  timeBuild(
      state, kPointQuestions, [&ring] { return std::make_unique<FacetDistance>(ring.get()); },
      [&point](const FacetDistance& distance) { return distance.nearestPoints(point.get()).front(); });
}
BENCHMARK(geosPointBuild)->Name("nearest_point_build/geos")->Apply(gx_allSizes);
#endif

// ---- Boost --------------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_BOOST
namespace bg = boost::geometry;

V footOn(const gx_BoostSegment& edge, const gx_BoostPoint& p) {
  const V s(edge.first.x(), edge.first.y());
  const V d(edge.second.x() - s.x(), edge.second.y() - s.y());
  const double t = (d.x() * (p.x() - s.x()) + d.y() * (p.y() - s.y())) / (d * d);
  return s + d * std::clamp(t, 0.0, 1.0);
}

V boostNearest(const gx_BoostEdgeTree& tree, const gx_BoostPoint& p) {
  return footOn(*tree.qbegin(bg::index::nearest(p, 1)), p);
}

std::size_t boostNearestVertex(const gx_BoostVertexTree& tree, const gx_BoostPoint& p) {
  return tree.qbegin(bg::index::nearest(p, 1))->second;
}

std::vector<gx_BoostVertex> boostVerticesWithin(const gx_BoostVertexTree& tree, const gx_BoostPoint& p) {
  std::vector<gx_BoostVertex> found;
  const bg::model::box<gx_BoostPoint> box({p.x() - kTolerance, p.y() - kTolerance},
                                          {p.x() + kTolerance, p.y() + kTolerance});
  tree.query(bg::index::intersects(box) && bg::index::satisfies([&p](const gx_BoostVertex& v) {
               return bg::comparable_distance(v.first, p) < kTolerance * kTolerance;
             }),
             std::back_inserter(found));
  return found;
}

void boostPoint(benchmark::State& state) {
  const Input& input = inputOf(state);
  const gx_BoostEdgeTree tree(gx_boostEdges(input.outline));
  timeNearestPoint(
      state, converted(input.queries, gx_boostPoint),
      [&tree](const gx_BoostPoint& p) { return boostNearest(tree, p); }, between);
}
BENCHMARK(boostPoint)->Name("nearest_point/boost")->Apply(gx_allSizes);

void boostVertex(benchmark::State& state) {
  const Input& input = inputOf(state);
  const gx_BoostVertexTree tree(gx_boostVertices(input.outline));
  timeNearestVertex(state, converted(input.queries, gx_boostPoint),
                    [&tree](const gx_BoostPoint& p) { return boostNearestVertex(tree, p); });
}
BENCHMARK(boostVertex)->Name("nearest_vertex/boost")->Apply(gx_allSizes);

void boostWithin(benchmark::State& state) {
  const Input& input = inputOf(state);
  const gx_BoostVertexTree tree(gx_boostVertices(input.outline));
  timeWithin(
      state, converted(input.nearQueries, gx_boostPoint),
      [&tree](const gx_BoostPoint& p) { return boostVerticesWithin(tree, p); },
      [](const gx_BoostVertex& v) { return v.second; });
}
BENCHMARK(boostWithin)->Name("vertices_within/boost")->Apply(gx_allSizes);

void boostPointBuild(benchmark::State& state) {
  const std::vector<gx_BoostSegment> edges = gx_boostEdges(inputOf(state).outline);
  const gx_BoostPoint point = gx_boostPoint(inputOf(state).nearQueries.front());
  timeBuild(
      state, kPointQuestions, [&edges] { return std::make_unique<gx_BoostEdgeTree>(edges); },
      [&point](const gx_BoostEdgeTree& tree) { return boostNearest(tree, point); });
}
BENCHMARK(boostPointBuild)->Name("nearest_point_build/boost")->Apply(gx_allSizes);

template <class Ask>
void boostTreeBuild(benchmark::State& state, int questions, const Ask& ask) {
  const std::vector<gx_BoostVertex> vertices = gx_boostVertices(inputOf(state).outline);
  const gx_BoostPoint point = gx_boostPoint(inputOf(state).nearQueries.front());
  timeBuild(
      state, questions, [&vertices] { return std::make_unique<gx_BoostVertexTree>(vertices); },
      [&](const gx_BoostVertexTree& tree) { return ask(tree, point); });
}

void boostVertexBuild(benchmark::State& state) {
  boostTreeBuild(state, kVertexQuestions, boostNearestVertex);
}
BENCHMARK(boostVertexBuild)->Name("nearest_vertex_build/boost")->Apply(gx_allSizes);

void boostWithinBuild(benchmark::State& state) {
  boostTreeBuild(state, kWithinQuestions, boostVerticesWithin);
}
BENCHMARK(boostWithinBuild)->Name("vertices_within_build/boost")->Apply(gx_allSizes);
#endif

// ---- CGAL ---------------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_CGAL
void cgalPoint(benchmark::State& state) {
  const Input& input = inputOf(state);
  const gx_CgalSegments edges = gx_cgalEdges(input.outline);
  const auto tree = gx_cgalTree(edges);
  tree->accelerate_distance_queries();
  timeNearestPoint(
      state, converted(input.queries, gx_cgalPoint),
      [&tree](const gx_CgalKernel::Point_3& p) { return tree->closest_point(p); },
      [](const V& p, const gx_CgalKernel::Point_3& c) {
        return p.distance({c.x(), c.y()});
      });
}
BENCHMARK(cgalPoint)->Name("nearest_point/cgal")->Apply(gx_allSizes);

void cgalPointBuild(benchmark::State& state) {
  const gx_CgalSegments edges = gx_cgalEdges(inputOf(state).outline);
  const gx_CgalKernel::Point_3 point = gx_cgalPoint(inputOf(state).nearQueries.front());
  const auto build = [&edges] {
    auto tree = gx_cgalTree(edges);
    tree->accelerate_distance_queries();
    return tree;
  };
  timeBuild(state, kPointQuestions, build,
            [&point](const auto& tree) { return tree.closest_point(point); });
}
BENCHMARK(cgalPointBuild)->Name("nearest_point_build/cgal")->Apply(gx_allSizes);

using CgalPoint = gx_CgalKernel::Point_2;
using CgalTraits = CGAL::Search_traits_2<gx_CgalKernel>;
using CgalSearch = CGAL::Orthogonal_k_neighbor_search<CgalTraits>;
using CgalKdTree = CgalSearch::Tree;

CgalPoint flatPoint(const V& p) {
  return {p.x(), p.y()};
}

// The tree names points, not their numbers; these are found again by their coordinates when answers are
// compared, not when they are timed.
class VertexNumbers {
 public:
  explicit VertexNumbers(const std::vector<V>& outline) {
    for (const V& p : outline) numbers_.push_back({p.x(), p.y(), numbers_.size()});
    std::sort(numbers_.begin(), numbers_.end());
  }
  std::size_t operator()(const CgalPoint& p) const {
    return std::get<2>(*std::lower_bound(numbers_.begin(), numbers_.end(),
                                         std::tuple<double, double, std::size_t>(p.x(), p.y(), 0)));
  }

 private:
  std::vector<std::tuple<double, double, std::size_t>> numbers_;
};

std::unique_ptr<CgalKdTree> cgalKdTree(const std::vector<CgalPoint>& points) {
  auto tree = std::make_unique<CgalKdTree>(points.begin(), points.end());
  tree->build();
  return tree;
}

double cgalNearestVertex(const CgalKdTree& tree, const CgalPoint& p) {
  return CgalSearch(tree, p, 1).begin()->first.x();
}

std::vector<CgalPoint> cgalVerticesWithin(const CgalKdTree& tree, const CgalPoint& p) {
  std::vector<CgalPoint> found;
  tree.search(std::back_inserter(found), CGAL::Fuzzy_sphere<CgalTraits>(p, kTolerance));
  return found;
}

void cgalVertex(benchmark::State& state) {
  const Input& input = inputOf(state);
  const auto tree = cgalKdTree(converted(input.outline, flatPoint));
  const auto queries = converted(input.queries, flatPoint);
  double expected = 0.0;
  double got = 0.0;
  gx_checkFirst(queries.size(), [&](std::size_t i) {
    expected += input.contour.distToPoint(input.queries[i], true);
    got += std::sqrt(CgalSearch(*tree, queries[i], 1).begin()->second);
  });
  if (!gx_agree(state, expected, got, 1e-9)) return;
  gx_timeQueries(state, queries, [&tree](const CgalPoint& p) { return cgalNearestVertex(*tree, p); });
}
BENCHMARK(cgalVertex)->Name("nearest_vertex/cgal")->Apply(gx_allSizes);

void cgalWithin(benchmark::State& state) {
  const Input& input = inputOf(state);
  const auto tree = cgalKdTree(converted(input.outline, flatPoint));
  timeWithin(
      state, converted(input.nearQueries, flatPoint),
      [&tree](const CgalPoint& p) { return cgalVerticesWithin(*tree, p); },
      VertexNumbers(input.outline));
}
BENCHMARK(cgalWithin)->Name("vertices_within/cgal")->Apply(gx_allSizes);

template <class Ask>
void cgalTreeBuild(benchmark::State& state, int questions, const Ask& ask) {
  const auto points = converted(inputOf(state).outline, flatPoint);
  const CgalPoint point = flatPoint(inputOf(state).nearQueries.front());
  timeBuild(
      state, questions, [&points] { return cgalKdTree(points); },
      [&](const CgalKdTree& tree) { return ask(tree, point); });
}

void cgalVertexBuild(benchmark::State& state) {
  cgalTreeBuild(state, kVertexQuestions, cgalNearestVertex);
}
BENCHMARK(cgalVertexBuild)->Name("nearest_vertex_build/cgal")->Apply(gx_allSizes);

void cgalWithinBuild(benchmark::State& state) {
  cgalTreeBuild(state, kWithinQuestions, cgalVerticesWithin);
}
BENCHMARK(cgalWithinBuild)->Name("vertices_within_build/cgal")->Apply(gx_allSizes);
#endif

// ---- nanoflann ----------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_NANOFLANN
// The points as they lie.
struct Cloud {
  const std::vector<V>& points;

  std::size_t kdtree_get_point_count() const { return points.size(); }
  double kdtree_get_pt(std::size_t i, std::size_t axis) const {
    return axis == 0 ? points[i].x() : points[i].y();
  }
  template <class Box>
  bool kdtree_get_bbox(Box&) const {
    return false;
  }
};

using FlannTree = nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, Cloud>, Cloud,
                                                      2, std::uint32_t>;

std::unique_ptr<FlannTree> flannTree(const Cloud& cloud) {
  return std::make_unique<FlannTree>(2, cloud, nanoflann::KDTreeSingleIndexAdaptorParams(10));
}

std::uint32_t flannNearestVertex(const FlannTree& tree, const V& p) {
  const double at[2] = {p.x(), p.y()};
  std::uint32_t index = 0;
  double square = 0.0;
  nanoflann::KNNResultSet<double, std::uint32_t> result(1);
  result.init(&index, &square);
  tree.findNeighbors(result, at, nanoflann::SearchParams());
  return index;
}

using FlannFound = std::vector<std::pair<std::uint32_t, double>>;

FlannFound flannVerticesWithin(const FlannTree& tree, const V& p) {
  const double at[2] = {p.x(), p.y()};
  FlannFound found;
  tree.radiusSearch(at, kTolerance * kTolerance, found, nanoflann::SearchParams(32, 0.0F, false));
  return found;
}

void flannVertex(benchmark::State& state) {
  const Input& input = inputOf(state);
  const Cloud cloud{input.outline};
  const auto tree = flannTree(cloud);
  timeNearestVertex(state, input.queries, [&tree](const V& p) { return flannNearestVertex(*tree, p); });
}
BENCHMARK(flannVertex)->Name("nearest_vertex/nanoflann")->Apply(gx_allSizes);

void flannWithin(benchmark::State& state) {
  const Input& input = inputOf(state);
  const Cloud cloud{input.outline};
  const auto tree = flannTree(cloud);
  timeWithin(
      state, input.nearQueries, [&tree](const V& p) { return flannVerticesWithin(*tree, p); },
      [](const FlannFound::value_type& found) { return found.first; });
}
BENCHMARK(flannWithin)->Name("vertices_within/nanoflann")->Apply(gx_allSizes);

template <class Ask>
void flannBuild(benchmark::State& state, int questions, const Ask& ask) {
  const Input& input = inputOf(state);
  const Cloud cloud{input.outline};
  timeBuild(
      state, questions, [&cloud] { return flannTree(cloud); },
      [&](const FlannTree& tree) { return ask(tree, input.nearQueries.front()); });
}

void flannVertexBuild(benchmark::State& state) {
  flannBuild(state, kVertexQuestions, flannNearestVertex);
}
BENCHMARK(flannVertexBuild)->Name("nearest_vertex_build/nanoflann")->Apply(gx_allSizes);

void flannWithinBuild(benchmark::State& state) {
  flannBuild(state, kWithinQuestions, flannVerticesWithin);
}
BENCHMARK(flannWithinBuild)->Name("vertices_within_build/nanoflann")->Apply(gx_allSizes);
#endif

}  // namespace
