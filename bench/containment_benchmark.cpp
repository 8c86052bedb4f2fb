// Is the point inside the outline?
//
// The parameter is the number of points of the outline.  Fixed: a million query points spread evenly
// over the square of 2.4 mean radii around it (gx_pointsAround), about half of them inside; the
// outline has no holes.
//
// containment: one query an iteration, of what has been asked before, so that everything remembered
// is there.  containment_bulk: all million in one call; GEOS has no such call and is asked one by one.
// containment_build: what the first query costs, per edge; ours answers the first ones without a grid,
// so it is asked about as many points at once as make one, a sixteenth of the edges.
//
//  ours    gxRegion::inside(point, true), or inside(points, true).
//  plain   the vertex directions sorted for every query (plain_scan.h); timed longer than the others,
//          since single queries differ.
//  geos    IndexedPointInAreaLocator, a tree over the y ranges of the edges; it is built on its first
//          query.
//  boost   within(point, polygon).  Boost.Geometry has no index for this question; it looks at every edge.
//  cgal    bounded_side_2, double coordinates, inexact kernel.  It looks at every edge as well.
//  opencv  pointPolygonTest of float points, which looks at every edge too.
#include <cntr/region.h>

#include "outlines.h"
#include "plain_scan.h"
#include "rows.h"

#ifdef GXSHAPE_HAVE_GEOS
#  include "geos_outline.h"

#  include <geos/algorithm/locate/IndexedPointInAreaLocator.h>
#endif
#ifdef GXSHAPE_HAVE_BOOST
#  include <boost/geometry.hpp>
#  include <boost/geometry/geometries/point_xy.hpp>
#  include <boost/geometry/geometries/polygon.hpp>
#endif
#ifdef GXSHAPE_HAVE_CGAL
#  include <CGAL/Polygon_2_algorithms.h>
#  include <CGAL/Simple_cartesian.h>
#endif
#ifdef GXSHAPE_HAVE_OPENCV
#  include <opencv2/imgproc.hpp>
#endif

namespace {

using V = gxVector<2>;

constexpr std::int64_t kQueries = 1000000;

struct Input {
  explicit Input(std::int64_t n)
      : outline(gx_wobblyOutline(n)), queries(gx_pointsAround(n, kQueries)), region(outline) {
    inside.reserve(queries.size());
    for (const V& query : queries) inside.push_back(region.inside(query, true));
  }

  std::vector<V> outline;
  std::vector<V> queries;
  gxRegion region;  // knows its answers
  std::vector<bool> inside;
};

// Compares the first answers with ours and then times `ask`.
template <class Query, class Ask>
void timeAndCheck(benchmark::State& state, const std::vector<Query>& queries, const Ask& ask) {
  const Input& input = gx_inputOf<Input>(state.range(0));
  double differing = 0.0;
  gx_checkFirst(queries.size(), [&](std::size_t i) {
    if (ask(queries[i]) != input.inside[i]) ++differing;
  });
  if (gx_agree(state, 0.0, differing)) gx_timeQueries(state, queries, ask);
}

// ---- Ours, and the plain scan -------------------------------------------------------------------

void ours(benchmark::State& state) {
  const Input& input = gx_inputOf<Input>(state.range(0));
  timeAndCheck(state, input.queries,
               [&input](const V& point) { return input.region.inside(point, true); });
}
BENCHMARK(ours)->Name("containment/ours")->Apply(gx_allSizes);

void oursBulk(benchmark::State& state) {
  const Input& input = gx_inputOf<Input>(state.range(0));
  if (!gx_agree(state, 1.0, input.region.inside(input.queries, true) == input.inside ? 1.0 : 0.0))
    return;
  for ([[maybe_unused]] const auto _ : state) {
    benchmark::DoNotOptimize(input.region.inside(input.queries, true).size());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kQueries);
}
BENCHMARK(oursBulk)->Name("containment_bulk/ours")->Apply(gx_allSizes);

void plain(benchmark::State& state) {
  const Input& input = gx_inputOf<Input>(state.range(0));
  const gx_PlainScan scan(input.outline);
  timeAndCheck(state, input.queries, [&scan](const V& point) { return scan.inside(point); });
}
BENCHMARK(plain)->Name("containment/plain")->Apply(gx_allSizes)->MinTime(0.5);

// A point inside, so that everything there is to build is needed.
void oursBuild(benchmark::State& state) {
  const Input& input = gx_inputOf<Input>(state.range(0));
  if (!gx_agree(state, 1.0, input.region.inside({0.0, 0.0}, true) ? 1.0 : 0.0)) return;
  gx_timeFirst(
      state, [&input] { return std::make_unique<gxRegion>(input.outline); },
      [](const gxRegion& region) {
        return region.inside(std::vector<V>(region.points().size() / 16 + 2), true).size();
      });
}
BENCHMARK(oursBuild)->Name("containment_build/ours")->Apply(gx_allSizes);

// ---- The peers ----------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_GEOS
using Locator = geos::algorithm::locate::IndexedPointInAreaLocator;

bool isInside(Locator& locator, const geos::geom::Coordinate& point) {
  return locator.locate(&point) != geos::geom::Location::EXTERIOR;
}

std::vector<geos::geom::Coordinate> geosQueries(const Input& input) {
  std::vector<geos::geom::Coordinate> queries;
  queries.reserve(input.queries.size());
  for (const V& p : input.queries) queries.emplace_back(p.x(), p.y());
  return queries;
}

void geosIndexed(benchmark::State& state) {
  const Input& input = gx_inputOf<Input>(state.range(0));
  const auto polygon = gx_geosPolygon(input.outline);
  const auto queries = geosQueries(input);
  Locator locator(*polygon);
  timeAndCheck(state, queries,
               [&locator](const geos::geom::Coordinate& point) { return isInside(locator, point); });
}
BENCHMARK(geosIndexed)->Name("containment/geos")->Apply(gx_allSizes);

void geosBulk(benchmark::State& state) {
  const Input& input = gx_inputOf<Input>(state.range(0));
  const auto polygon = gx_geosPolygon(input.outline);
  const auto queries = geosQueries(input);
  Locator locator(*polygon);
  const auto askAll = [&queries, &locator] {
    std::vector<bool> inside;
    inside.reserve(queries.size());
    for (const geos::geom::Coordinate& point : queries) inside.push_back(isInside(locator, point));
    return inside;
  };
  if (!gx_agree(state, 1.0, askAll() == input.inside ? 1.0 : 0.0)) return;
  for ([[maybe_unused]] const auto _ : state) benchmark::DoNotOptimize(askAll().size());
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kQueries);
}
BENCHMARK(geosBulk)->Name("containment_bulk/geos")->Apply(gx_allSizes);

void geosBuild(benchmark::State& state) {
  const auto polygon = gx_geosPolygon(gx_inputOf<Input>(state.range(0)).outline);
  const geos::geom::Coordinate middle(0.0, 0.0);
  gx_timeFirst(
      state, [&polygon] { return std::make_unique<Locator>(*polygon); },
      [&middle](Locator& locator) { return isInside(locator, middle); });
}
BENCHMARK(geosBuild)->Name("containment_build/geos")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_BOOST
void boostWithin(benchmark::State& state) {
  using Point = boost::geometry::model::d2::point_xy<double>;
  const Input& input = gx_inputOf<Input>(state.range(0));
  boost::geometry::model::polygon<Point, false> polygon;  // counterclockwise, the first point repeated
  for (const V& p : input.outline) polygon.outer().emplace_back(p.x(), p.y());
  polygon.outer().push_back(polygon.outer().front());
  std::vector<Point> queries;
  queries.reserve(input.queries.size());
  for (const V& p : input.queries) queries.emplace_back(p.x(), p.y());
  timeAndCheck(state, queries,
               [&polygon](const Point& point) { return boost::geometry::within(point, polygon); });
}
BENCHMARK(boostWithin)->Name("containment/boost")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_CGAL
void cgalBoundedSide(benchmark::State& state) {
  using Kernel = CGAL::Simple_cartesian<double>;
  const Input& input = gx_inputOf<Input>(state.range(0));
  std::vector<Kernel::Point_2> polygon;
  for (const V& p : input.outline) polygon.emplace_back(p.x(), p.y());
  std::vector<Kernel::Point_2> queries;
  queries.reserve(input.queries.size());
  for (const V& p : input.queries) queries.emplace_back(p.x(), p.y());
  timeAndCheck(state, queries, [&polygon](const Kernel::Point_2& point) {
    return CGAL::bounded_side_2(polygon.begin(), polygon.end(), point, Kernel()) !=
           CGAL::ON_UNBOUNDED_SIDE;
  });
}
BENCHMARK(cgalBoundedSide)->Name("containment/cgal")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_OPENCV
void opencvPointPolygon(benchmark::State& state) {
  const Input& input = gx_inputOf<Input>(state.range(0));
  std::vector<cv::Point2f> polygon;
  for (const V& p : input.outline) {
    polygon.emplace_back(static_cast<float>(p.x()), static_cast<float>(p.y()));
  }
  std::vector<cv::Point2f> queries;
  queries.reserve(input.queries.size());
  for (const V& p : input.queries) {
    queries.emplace_back(static_cast<float>(p.x()), static_cast<float>(p.y()));
  }
  timeAndCheck(state, queries, [&polygon](const cv::Point2f& point) {
    return cv::pointPolygonTest(polygon, point, false) >= 0.0;
  });
}
BENCHMARK(opencvPointPolygon)->Name("containment/opencv")->Apply(gx_allSizes);
#endif

}  // namespace
