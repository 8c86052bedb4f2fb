// The convex hull, and the two vertices farthest apart, beside the peers.
//
// The one parameter is the number of points; the outline is that of gx_wobblyOutline, whose hull has
// some hundreds of corners at most.  An item is a point.  Our contours remember both answers, so each
// is asked once, fresh (first_calls.h); the outlines of a pool are turned against each other.
//
//  ours    gxContour::convexHull into a fresh region; encloseCircle(eAllPairs).
//  plain   the points sorted and gone along twice, with the exact orientation (the upper and lower hull
//          of Andrew); every point with every other, up to 10,000 points.
//  cgal    convex_hull_2 over the kernel with exact predicates, cgal_double over plain doubles, which
//          may give a hull that is not one.  Farthest pair: that hull, then all_furthest_neighbors_2.
//  boost   convex_hull of a ring into a ring that is there.  It has no farthest pair.
//  geos    the ConvexHull algorithm on a linear ring.  It has no farthest pair but that of the
//          smallest circle, which is another.
//  opencv  convexHull of single-precision points.  It has no farthest pair.
#include "first_calls.h"
#include "outlines.h"
#include "rows.h"

#ifdef GXSHAPE_HAVE_GEOS
#  include "geos_outline.h"

#  include <geos/algorithm/ConvexHull.h>
#endif
#include <cntr/region.h>
#include <cntr/shapestat.h>
#include <support/slow_truth_contour.h>

#include "plain_hull.h"

#ifdef GXSHAPE_HAVE_BOOST
#  include <boost/geometry.hpp>
#  include <boost/geometry/geometries/point_xy.hpp>
#  include <boost/geometry/geometries/ring.hpp>
#endif
#ifdef GXSHAPE_HAVE_CGAL
#  include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#  include <CGAL/Simple_cartesian.h>
#  include <CGAL/circulator.h>
#  include <CGAL/convex_hull_2.h>
// Needs circulator.h before it, and does not include it.
#  include <CGAL/all_furthest_neighbors_2.h>
#endif
#ifdef GXSHAPE_HAVE_OPENCV
#  include <opencv2/imgproc.hpp>
#endif

namespace {

using Points = std::vector<gxVector<2>>;

struct Input {
  explicit Input(std::int64_t n) : outline(gx_wobblyOutline(n)) {
    const gxContour contour(outline);
    gxRegion hull;
    contour.convexHull(hull);
    hullArea = hull.area(false);
    farthest = contour.diameter(gxContourDefs::eAllPairs);
  }

  Points outline;
  double hullArea = 0.0;
  double farthest = 0.0;
};

// The outline turned by `number` radians.
Points outline(const benchmark::State& state, std::int64_t number) {
  const gxRadian angle(static_cast<double>(number));
  const gxMatrix<2> rotation(angle, angle, 1.0, 1.0);
  Points points = gx_inputOf<Input>(state.range(0)).outline;
  if (number == 0) return points;
  for (gxVector<2>& p : points) p = rotation * p;
  return points;
}

// Times `hullOf(shape)` on shapes that `make` makes, where `areaOf(hull)` is that of our hull.
void timeHull(benchmark::State& state, gx_Pool pool, double share, const auto& make, const auto& hullOf,
              const auto& areaOf) {
  const double got = areaOf(hullOf(make(0)));
  if (!gx_agree(state, gx_inputOf<Input>(state.range(0)).hullArea, got, share)) return;
  gx_timePool(state, pool, gx_poolSize(state.range(0)), make, [&](const auto& shape) {
    const auto& hull = hullOf(shape);
    benchmark::DoNotOptimize(&hull);
    benchmark::ClobberMemory();
  });
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Times `distanceOf(shape)`, the largest distance of two of its points.
void timeFarthest(benchmark::State& state, gx_Pool pool, const auto& make, const auto& distanceOf) {
  const Input& input = gx_inputOf<Input>(state.range(0));
  if (!gx_agree(state, input.farthest, distanceOf(make(0)), 1e-12)) return;
  gx_timePool(state, pool, gx_poolSize(state.range(0)), make,
              [&](const auto& shape) { benchmark::DoNotOptimize(distanceOf(shape)); });
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// ---- Ours, and the plain scan --------------------------------------------------------------------

void hullOurs(benchmark::State& state) {
  timeHull(
      state, gx_Pool::eAnew, 0.0, [&](std::int64_t number) { return gxContour(outline(state, number)); },
      [](const gxContour& shape) {
        gxRegion hull;
        shape.convexHull(hull);
        return hull;
      },
      [](const gxRegion& hull) { return hull.area(false); });
}
BENCHMARK(hullOurs)->Name("convex_hull/ours")->Apply(gx_allSizes);

void hullPlain(benchmark::State& state) {
  timeHull(
      state, gx_Pool::eKept, 0.0, [&](std::int64_t number) { return outline(state, number); },
      [](const Points& points) { return gx_plainHull(points); },
      [](const Points& hull) { return gf_Area(hull); });
}
BENCHMARK(hullPlain)->Name("convex_hull/plain")->Apply(gx_allSizes);

void farthestOurs(benchmark::State& state) {
  timeFarthest(
      state, gx_Pool::eAnew, [&](std::int64_t number) { return gxContour(outline(state, number)); },
      [](const gxContour& shape) { return shape.diameter(gxContourDefs::eAllPairs); });
}
BENCHMARK(farthestOurs)->Name("farthest_pair/ours")->Apply(gx_allSizes);

void farthestPlain(benchmark::State& state) {
  timeFarthest(
      state, gx_Pool::eKept, [&](std::int64_t number) { return outline(state, number); },
      [](const Points& points) { return slow::diameter(points, gxContourDefs::eAllPairs); });
}
BENCHMARK(farthestPlain)->Name("farthest_pair/plain")->Apply(gx_sizesUpTo<10000>);

// ---- The peers -----------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_GEOS
void hullGeos(benchmark::State& state) {
  timeHull(
      state, gx_Pool::eKept, 1e-12,
      [&](std::int64_t number) { return gx_geosRing(outline(state, number)); },
      [](const auto& ring) { return geos::algorithm::ConvexHull(ring.get()).getConvexHull(); },
      [](const auto& hull) { return hull->getArea(); });
}
BENCHMARK(hullGeos)->Name("convex_hull/geos")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_BOOST
void hullBoost(benchmark::State& state) {
  namespace bg = boost::geometry;
  using Ring = bg::model::ring<bg::model::d2::point_xy<double>, false, true>;
  const auto make = [&](std::int64_t number) {
    Ring ring;
    for (const gxVector<2>& p : outline(state, number)) ring.emplace_back(p.x(), p.y());
    ring.push_back(ring.front());
    return ring;
  };
  Ring hull;
  timeHull(
      state, gx_Pool::eKept, 1e-12, make,
      [&hull](const Ring& ring) -> const Ring& {
        hull.clear();
        bg::convex_hull(ring, hull);
        return hull;
      },
      [](const Ring& ring) { return bg::area(ring); });
}
BENCHMARK(hullBoost)->Name("convex_hull/boost")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_CGAL
template <class Kernel>
std::vector<typename Kernel::Point_2> cgalPoints(const Points& points) {
  std::vector<typename Kernel::Point_2> result;
  result.reserve(points.size());
  for (const gxVector<2>& p : points) result.emplace_back(p.x(), p.y());
  return result;
}

template <class Point>
std::vector<Point> cgalHull(const std::vector<Point>& points) {
  std::vector<Point> hull;
  CGAL::convex_hull_2(points.begin(), points.end(), std::back_inserter(hull));
  return hull;
}

template <class Kernel>
void hullCgal(benchmark::State& state) {
  using Points2 = std::vector<typename Kernel::Point_2>;
  timeHull(
      state, gx_Pool::eKept, 1e-12,
      [&](std::int64_t number) { return cgalPoints<Kernel>(outline(state, number)); },
      [](const Points2& points) { return cgalHull(points); },
      [](const Points2& hull) {
        Points corners;
        for (const auto& p : hull) corners.emplace_back(p.x(), p.y());
        return gf_Area(corners);
      });
}
BENCHMARK(hullCgal<CGAL::Exact_predicates_inexact_constructions_kernel>)
    ->Name("convex_hull/cgal")
    ->Apply(gx_allSizes);
BENCHMARK(hullCgal<CGAL::Simple_cartesian<double>>)->Name("convex_hull/cgal_double")->Apply(gx_allSizes);

template <class Kernel>
void farthestCgal(benchmark::State& state) {
  using Points2 = std::vector<typename Kernel::Point_2>;
  std::vector<int> neighbours;
  timeFarthest(
      state, gx_Pool::eKept,
      [&](std::int64_t number) { return cgalPoints<Kernel>(outline(state, number)); },
      [&neighbours](const Points2& points) {
        const Points2 hull = cgalHull(points);
        neighbours.clear();
        CGAL::all_furthest_neighbors_2(hull.begin(), hull.end(), std::back_inserter(neighbours));
        double best = 0.0;
        for (std::size_t i = 0; i < hull.size(); ++i) {
          const auto& other = hull[static_cast<std::size_t>(neighbours[i])];
          best = std::max(best, CGAL::to_double(CGAL::squared_distance(hull[i], other)));
        }
        return std::sqrt(best);
      });
}
BENCHMARK(farthestCgal<CGAL::Exact_predicates_inexact_constructions_kernel>)
    ->Name("farthest_pair/cgal")
    ->Apply(gx_allSizes);
BENCHMARK(farthestCgal<CGAL::Simple_cartesian<double>>)
    ->Name("farthest_pair/cgal_double")
    ->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_OPENCV
void hullOpencv(benchmark::State& state) {
  using Points2 = std::vector<cv::Point2f>;
  const auto make = [&](std::int64_t number) {
    Points2 points;
    for (const gxVector<2>& p : outline(state, number)) {
      points.emplace_back(static_cast<float>(p.x()), static_cast<float>(p.y()));
    }
    return points;
  };
  Points2 hull;
  timeHull(
      state, gx_Pool::eKept, 1e-5, make,
      [&hull](const Points2& points) -> const Points2& {
        cv::convexHull(points, hull);
        return hull;
      },
      [](const Points2& corners) { return cv::contourArea(corners); });
}
BENCHMARK(hullOpencv)->Name("convex_hull/opencv")->Apply(gx_allSizes);
#endif

}  // namespace
