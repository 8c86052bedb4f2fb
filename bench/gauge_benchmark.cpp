// How long do the gauges take, beside OpenCV, GEOS, CGAL and Boost.Geometry?
//
// The parameter is the number of points of the outline. Nothing remembers anything: every call is a first one,
// and what a party indexes is indexed in the call. Input is in the form that the party likes best, made
// before; OpenCV's is in single precision, as it takes no other. Before a row is timed, its answer is compared
// with ours: to 1e-9, of OpenCV's to 1e-3.
//
// Most rows come four times: `smooth` is what an edge finder gives; `winding` is a band wound up; `jittered` is
// the smooth one with every 20th point moved back along it; `tangled` is a random walk.
//
// gauge_circle, gauge_rectangle, gauge_width: smallest circle, rectangle of least area, rectangle of least width.
// gauge_feret: greatest, least, across, mean width. There is no peer; `geos_least` gives the least one alone.
// gauge_inscribed: the largest inscribed circle, ours proven to 1e-9 of its radius, the peer's to 1e-4.
// gauge_descriptors: all of gxDescriptors; of the peer what its users put together: area, length, hull, its area
// and length, rectangle, moments. gauge_describe_each: of 20,000 outlines of as many points, with one call.
// gauge_moments: to the third order. gauge_moments_hole: of a region with a hole of half the size; the
// peer's user subtracts raw moments.
// gauge_hausdorff: of the outline and of itself, turned by a hundredth and grown by one. Ours is that of all
// points of the edges, the peers' that of the vertices (`geos`) or of edges cut into four (`geos_densified`).
// gauge_states, gauge_distances: a million points around the outline: inside, on the border, outside; signed distance.
// gauge_simplify: with a tolerance of a quarter of a pixel. The peers begin at the first point, and keep some points
// more or fewer.
// gauge_resample: as many points as came, at equal lengths.
//
//  geos       MinimumBoundingCircle, MinimumDiameter, MaximumInscribedCircle, DiscreteHausdorffDistance,
//             IndexedPointInAreaLocator, IndexedFacetDistance, DouglasPeuckerSimplifier.
//  opencv     minEnclosingCircle, minAreaRect, moments, pointPolygonTest, approxPolyDP.
//  cgal       Min_circle_2, min_rectangle_2 and min_strip_2 of convex_hull_2 (double coordinates, exact decisions).
//  boost      discrete_hausdorff_distance, within, distance, simplify, line_interpolate.
#include <gauge/gauge.h>

#include "geos_outline.h"
#include "outlines.h"
#include "rows.h"

#include <cstdint>
#include <functional>
#include <string>

#ifdef GXSHAPE_HAVE_GEOS
#  include <geos/algorithm/MinimumBoundingCircle.h>
#  include <geos/algorithm/MinimumDiameter.h>
#  include <geos/algorithm/construct/MaximumInscribedCircle.h>
#  include <geos/algorithm/distance/DiscreteHausdorffDistance.h>
#  include <geos/algorithm/locate/IndexedPointInAreaLocator.h>
#  include <geos/geom/LineString.h>
#  include <geos/geom/Point.h>
#  include <geos/operation/distance/IndexedFacetDistance.h>
#  include <geos/simplify/DouglasPeuckerSimplifier.h>
#endif
#ifdef GXSHAPE_HAVE_OPENCV
#  include <opencv2/imgproc.hpp>
#endif
#ifdef GXSHAPE_HAVE_CGAL
#  include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#  include <CGAL/Min_circle_2.h>
#  include <CGAL/Min_circle_2_traits_2.h>
#  include <CGAL/Polygon_2.h>
#  include <CGAL/convex_hull_2.h>
#  include <CGAL/min_quadrilateral_2.h>
#endif
#ifdef GXSHAPE_HAVE_BOOST
#  include <boost/geometry.hpp>
#  include <boost/geometry/geometries/geometries.hpp>
#  include <boost/geometry/geometries/point_xy.hpp>
#endif

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Maker = Points (*)(std::int64_t);

constexpr std::int64_t kMany = 1'000'000;
constexpr std::int64_t kShapes = 20'000;
constexpr double kSimple = 0.25;
constexpr double kPi = 3.141592653589793;

Points smooth(std::int64_t n) {
  return gx_wobblyOutline(n);
}

// Turned by a hundredth of a radian and grown by one.
Points other(const Points& points) {
  Points result;
  for (const V& p : points) {
    const double length = p.len();
    const V grown = length > 0.0 ? p + p / length : p;
    result.emplace_back(grown.x() - 0.01 * grown.y(), grown.y() + 0.01 * grown.x());
  }
  return result;
}

Points halfSize(const Points& points) {
  Points result;
  for (const V& p : points) result.push_back(p * 0.5);
  return result;
}

// What all rows of a size and form work on.
template <class Party, Maker Make>
struct Input {
  explicit Input(std::int64_t n)
      : outline(Make(n)), one(Party::one(outline)), second(Party::one(other(outline))) {}
  Points outline;
  typename Party::One one;
  typename Party::One second;
};

struct Queries {
  explicit Queries(std::int64_t n) : points(gx_pointsAround(n, kMany)) {}
  Points points;
};

void sizes(gx_Benchmark* row) {
  for (const std::int64_t n : {8, 16, 32, 64, 256, 1000, 10000, 100000}) row->Arg(n);
  row->MinTime(0.05);
}
void fewSizes(gx_Benchmark* row) {
  for (const std::int64_t n : {8, 16, 32, 64, 256, 1000, 10000}) row->Arg(n);
  row->MinTime(0.05);
}
[[maybe_unused]] void fewerSizes(gx_Benchmark* row) {
  for (const std::int64_t n : {8, 16, 32, 64, 256, 1000}) row->Arg(n);
  row->MinTime(0.05);
}
void smallSizes(gx_Benchmark* row) {
  for (const std::int64_t n : {8, 16, 64, 256}) row->Arg(n);
  row->MinTime(0.05)->Unit(benchmark::kMillisecond);
}
void manySizes(gx_Benchmark* row) {
  for (const std::int64_t n : {8, 64, 1000, 10000}) row->Arg(n);
  row->MinTime(0.05)->Unit(benchmark::kMillisecond);
}

// Times `run`, whose answer must be `expected` to a share.
template <class Run>
void timed(benchmark::State& state, double expected, double share, const Run& run) {
  if (!gx_agree(state, expected, static_cast<double>(run()), share)) return;
  for ([[maybe_unused]] const auto _ : state) benchmark::DoNotOptimize(run());
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

// ---- Ours ---------------------------------------------------------------------------------------

struct Ours {
  using One = Points;
  static constexpr double kShare = 0.0;
  static One one(const Points& points) { return points; }

  static double circle(const One& one) { return gfEnclosingCircle(one).radius; }
  static double rectangle(const One& one) { return gfLeastAreaRectangle(one).area(); }
  static double width(const One& one) { return gfLeastWidthRectangle(one).width; }
  static double feret(const One& one) { return gfFeret(one).feretMin; }
  static double descriptors(const One& one) { return gfDescribe(one).circularity; }
  static double moments(const One& one) { return gfMoments(one).moment20; }
  static double hausdorff(const One& a, const One& b) { return gfHausdorff(a, b).hausdorff; }
  static double simplify(const One& one) {
    return static_cast<double>(gfSimplify(one, true, kSimple).points.size());
  }
  static double resample(const One& one) {
    return static_cast<double>(gfResample(one, true, one.size()).points.size());
  }
  static double inside(const One& one, const Points& queries) {
    double count = 0.0;
    for (const gxState s : gxLocator(one).states(queries)) count += s == gxState::eOutside ? 0.0 : 1.0;
    return count;
  }
  static double distances(const One& one, const Points& queries) {
    double sum = 0.0;
    for (const double d : gxLocator(one).signedDistances(queries)) sum += std::fabs(d);
    return sum;
  }
};

// ---- Rows ---------------------------------------------------------------------------------------

using Ask = double (*)(const Points&);

// A row of one outline; `expected` is ours.
template <class Party, Maker Make, class Run>
void oneRow(benchmark::State& state, Ask expected, double share, const Run& run) {
  const auto& input = gx_inputOf<Input<Party, Make>>(state.range(0));
  timed(state, expected(input.outline), share, [&] { return run(input.one); });
}

template <class Party, Maker Make, class Run>
void twoRow(benchmark::State& state, double share, const Run& run) {
  const auto& input = gx_inputOf<Input<Party, Make>>(state.range(0));
  timed(state, Ours::hausdorff(input.outline, other(input.outline)), share,
        [&] { return run(input.one, input.second); });
}

template <class Party, class Expected, class Run>
void manyRow(benchmark::State& state, double share, const Expected& expected, const Run& run) {
  const auto& input = gx_inputOf<Input<Party, smooth>>(state.range(0));
  const Points& queries = gx_inputOf<Queries>(state.range(0)).points;
  timed(state, expected(input.outline, queries), share, [&] { return run(input.one, queries); });
}

template <class Run>
gx_Benchmark* row(const std::string& name, const std::string& party, const Run& run) {
  return benchmark::RegisterBenchmark(("gauge_" + name + "/" + party).c_str(), run);
}

// The rows of one measure on the four outlines.
template <class Party, class Sizes, class Run>
void addForms(const std::string& name, const std::string& party, Sizes which, Ask expected,
              const Run& run, double share = Party::kShare) {
  row(name + "_smooth", party, [=](benchmark::State& s) {
    oneRow<Party, smooth>(s, expected, share, run);
  })->Apply(which);
  row(name + "_winding", party, [=](benchmark::State& s) {
    oneRow<Party, gx_windingOutline>(s, expected, share, run);
  })->Apply(which);
  row(name + "_jittered", party, [=](benchmark::State& s) {
    oneRow<Party, gx_jitteredOutline>(s, expected, share, run);
  })->Apply(which);
  row(name + "_tangled", party, [=](benchmark::State& s) {
    oneRow<Party, gx_tangledOutline>(s, expected, share, run);
  })->Apply(which);
}

template <class Party, class Sizes, class Run>
void addTwo(const std::string& party, Sizes which, const Run& run, double share) {
  row("hausdorff_smooth", party, [=](benchmark::State& s) {
    twoRow<Party, smooth>(s, share, run);
  })->Apply(which);
  row("hausdorff_winding", party, [=](benchmark::State& s) {
    twoRow<Party, gx_windingOutline>(s, share, run);
  })->Apply(which);
  row("hausdorff_jittered", party, [=](benchmark::State& s) {
    twoRow<Party, gx_jitteredOutline>(s, share, run);
  })->Apply(which);
  row("hausdorff_tangled", party, [=](benchmark::State& s) {
    twoRow<Party, gx_tangledOutline>(s, share, run);
  })->Apply(which);
}

template <class Party, class Sizes, class Run>
void addMany(const std::string& name, const std::string& party, Sizes which, double share,
             double (*expected)(const Points&, const Points&), const Run& run) {
  row(name, party, [=](benchmark::State& s) { manyRow<Party>(s, share, expected, run); })->Apply(which);
}

// ---- Shapes with holes, and many shapes ---------------------------------------------------------

gxRegion holed(const Points& outline) {
  gxRegion region(outline);
  region.holes({gxRegion::HoleHandle(new gxRegion(halfSize(outline)))});
  return region;
}

void momentsHole(benchmark::State& state) {
  const gxRegion region = holed(smooth(state.range(0)));
  timed(state, gfMoments(region).moment20, 0.0, [&] { return gfMoments(region).moment20; });
}

void inscribed(benchmark::State& state) {
  const gxRegion region(smooth(state.range(0)));
  timed(state, gfInscribedCircle(region).radius, 0.0, [&] { return gfInscribedCircle(region).radius; });
}

void describeEach(benchmark::State& state) {
  std::vector<gxPtrHandle_const<gxRegion>> regions;
  for (std::int64_t i = 0; i < kShapes; ++i)
    regions.emplace_back(new gxRegion(gx_wobblyOutline(state.range(0), static_cast<double>(i), 0.0)));
  for ([[maybe_unused]] const auto _ : state) {
    benchmark::DoNotOptimize(gfDescribeEach(std::span<const gxPtrHandle_const<gxRegion>>(regions)));
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kShapes);
}

void addOurs() {
  addForms<Ours>("circle", "ours", sizes, Ours::circle, Ours::circle);
  addForms<Ours>("rectangle", "ours", sizes, Ours::rectangle, Ours::rectangle);
  addForms<Ours>("width", "ours", sizes, Ours::width, Ours::width);
  addForms<Ours>("feret", "ours", sizes, Ours::feret, Ours::feret);
  addForms<Ours>("descriptors", "ours", sizes, Ours::descriptors, Ours::descriptors);
  addForms<Ours>("moments", "ours", sizes, Ours::moments, Ours::moments);
  addForms<Ours>("simplify", "ours", sizes, Ours::simplify, Ours::simplify);
  addForms<Ours>("resample", "ours", sizes, Ours::resample, Ours::resample);
  addTwo<Ours>("ours", fewSizes, Ours::hausdorff, 0.0);
  addMany<Ours>("states", "ours", manySizes, 0.0, Ours::inside, Ours::inside);
  addMany<Ours>("distances", "ours", manySizes, 0.0, Ours::distances, Ours::distances);
  row("moments_hole", "ours", momentsHole)->Apply(sizes);
  row("inscribed", "ours", inscribed)->Apply(fewSizes);
  row("describe_each", "ours", describeEach)->Apply(smallSizes);
}

// ---- Peers --------------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_GEOS
namespace gg = geos::geom;
namespace ga = geos::algorithm;

struct Geos {
  // (Of the ring itself, as a polygon gives it, the Hausdorff distance looks at the first point alone.)
  struct One {
    std::unique_ptr<gg::Polygon> polygon;
    std::unique_ptr<gg::LineString> line;
  };
  static constexpr double kShare = 1e-9;
  static One one(const Points& points) {
    return {gx_geosPolygon(points),
            gg::GeometryFactory::getDefaultInstance()->createLineString(gx_geosSequence(points))};
  }

  static double circle(const One& one) {
    return ga::MinimumBoundingCircle(one.polygon.get()).getRadius();
  }
  static double width(const One& one) { return ga::MinimumDiameter(one.polygon.get()).getLength(); }
  static double rectangle(const One& one) {
    return ga::MinimumDiameter(one.polygon.get()).getMinimumRectangle()->getArea();
  }
  template <int Pieces>
  static double hausdorff(const One& a, const One& b) {
    ga::distance::DiscreteHausdorffDistance distance(*a.line, *b.line);
    if (Pieces > 1) distance.setDensifyFraction(1.0 / Pieces);
    return distance.distance();
  }
  static double inside(const One& one, const Points& queries) {
    ga::locate::IndexedPointInAreaLocator locator(*one.polygon);
    double count = 0.0;
    for (const V& q : queries) {
      const gg::Coordinate at(q.x(), q.y());
      count += locator.locate(&at) == gg::Location::EXTERIOR ? 0.0 : 1.0;
    }
    return count;
  }
  static double distances(const One& one, const Points& queries) {
    ga::locate::IndexedPointInAreaLocator locator(*one.polygon);
    geos::operation::distance::IndexedFacetDistance facets(one.polygon.get());
    double sum = 0.0;
    for (const V& q : queries) {
      const gg::Coordinate at(q.x(), q.y());
      const std::unique_ptr<gg::Point> point(one.polygon->getFactory()->createPoint(at));
      const double d = facets.distance(point.get());
      sum += std::fabs(locator.locate(&at) == gg::Location::EXTERIOR ? d : -d);
    }
    return sum;
  }
  static double simplify(const One& one) {
    const auto line = geos::simplify::DouglasPeuckerSimplifier::simplify(one.line.get(), kSimple);
    return static_cast<double>(line->getNumPoints()) - 1.0;
  }
};

void inscribedGeos(benchmark::State& state) {
  const Points points = smooth(state.range(0));
  const double expected = gfInscribedCircle(gxRegion(points)).radius;
  const auto polygon = gx_geosPolygon(points);
  timed(state, expected, 1e-3, [&] {
    return ga::construct::MaximumInscribedCircle(polygon.get(), 1e-4 * expected)
        .getRadiusLine()
        ->getLength();
  });
}

void addGeos() {
  addForms<Geos>("circle", "geos", sizes, Ours::circle, Geos::circle);
  addForms<Geos>("width", "geos", sizes, Ours::width, Geos::width);
  addForms<Geos>("feret", "geos_least", sizes, Ours::feret, Geos::width);
  addForms<Geos>("simplify", "geos", sizes, Ours::simplify, Geos::simplify, 0.25);
  addTwo<Geos>("geos", fewerSizes, Geos::hausdorff<1>, 0.2);
  addTwo<Geos>("geos_densified", fewerSizes, Geos::hausdorff<4>, 0.2);
  addMany<Geos>("states", "geos", manySizes, 0.0, Ours::inside, Geos::inside);
  addMany<Geos>("distances", "geos", manySizes, 1e-9, Ours::distances, Geos::distances);
  row("inscribed", "geos", inscribedGeos)->Apply(fewerSizes);
}
#else
void addGeos() {}
#endif

#ifdef GXSHAPE_HAVE_OPENCV
struct Opencv {
  using One = std::vector<cv::Point2f>;
  static constexpr double kShare = 1e-3;
  static One one(const Points& points) {
    One result;
    for (const V& p : points) result.emplace_back(static_cast<float>(p.x()), static_cast<float>(p.y()));
    return result;
  }

  static double circle(const One& one) {
    cv::Point2f centre;
    float radius = 0.0F;
    cv::minEnclosingCircle(one, centre, radius);
    return static_cast<double>(radius);
  }
  static double rectangle(const One& one) {
    const cv::RotatedRect box = cv::minAreaRect(one);
    return static_cast<double>(box.size.width) * static_cast<double>(box.size.height);
  }
  static double moments(const One& one) { return cv::moments(one).mu20; }
  static double descriptors(const One& one) {
    const double area = cv::contourArea(one);
    const double perimeter = cv::arcLength(one, true);
    One hull;
    cv::convexHull(one, hull);
    benchmark::DoNotOptimize(cv::contourArea(hull) + cv::arcLength(hull, true) +
                             static_cast<double>(cv::minAreaRect(hull).angle) + cv::moments(one).mu11 +
                             cv::boundingRect(one).width);
    return 4.0 * kPi * area / (perimeter * perimeter);
  }
  static double simplify(const One& one) {
    One kept;
    cv::approxPolyDP(one, kept, kSimple, true);
    return static_cast<double>(kept.size());
  }
  template <class Add>
  static double each(const One& one, const Points& queries, bool measures, const Add& add) {
    double sum = 0.0;
    for (const V& q : queries) {
      const cv::Point2f at(static_cast<float>(q.x()), static_cast<float>(q.y()));
      sum += add(cv::pointPolygonTest(one, at, measures));
    }
    return sum;
  }
  static double inside(const One& one, const Points& queries) {
    return each(one, queries, false, [](double d) { return d < 0.0 ? 0.0 : 1.0; });
  }
  static double distances(const One& one, const Points& queries) {
    return each(one, queries, true, [](double d) { return std::fabs(d); });
  }
};

void momentsHoleOpencv(benchmark::State& state) {
  const Points points = smooth(state.range(0));
  const Opencv::One outer = Opencv::one(points);
  const Opencv::One inner = Opencv::one(halfSize(points));
  timed(state, gfMoments(holed(points)).moment20, 1e-3, [&] {
    const cv::Moments a = cv::moments(outer);
    const cv::Moments b = cv::moments(inner);
    const double m00 = a.m00 - b.m00;
    const double m10 = a.m10 - b.m10;
    return a.m20 - b.m20 - m10 * m10 / m00;
  });
}

void describeEachOpencv(benchmark::State& state) {
  std::vector<Opencv::One> shapes;
  for (std::int64_t i = 0; i < kShapes; ++i)
    shapes.push_back(Opencv::one(gx_wobblyOutline(state.range(0), static_cast<double>(i), 0.0)));
  for ([[maybe_unused]] const auto _ : state) {
    for (const Opencv::One& shape : shapes) benchmark::DoNotOptimize(Opencv::descriptors(shape));
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kShapes);
}

void addOpencv() {
  addForms<Opencv>("circle", "opencv", fewerSizes, Ours::circle, Opencv::circle);
  addForms<Opencv>("rectangle", "opencv", sizes, Ours::rectangle, Opencv::rectangle);
  addForms<Opencv>("moments", "opencv", sizes, Ours::moments, Opencv::moments, 2e-2);
  addForms<Opencv>("descriptors", "opencv", sizes, Ours::descriptors, Opencv::descriptors);
  addForms<Opencv>("simplify", "opencv", sizes, Ours::simplify, Opencv::simplify, 0.25);
  addMany<Opencv>("states", "opencv", smallSizes, 1e-4, Ours::inside, Opencv::inside);
  addMany<Opencv>("distances", "opencv", smallSizes, 1e-4, Ours::distances, Opencv::distances);
  row("moments_hole", "opencv", momentsHoleOpencv)->Apply(sizes);
  row("describe_each", "opencv", describeEachOpencv)->Apply(smallSizes);
}
#else
void addOpencv() {}
#endif

#ifdef GXSHAPE_HAVE_CGAL
struct Cgal {
  using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
  using One = std::vector<Kernel::Point_2>;
  using Traits = CGAL::Min_circle_2_traits_2<Kernel>;
  static constexpr double kShare = 1e-9;
  static One one(const Points& points) {
    One result;
    for (const V& p : points) result.emplace_back(p.x(), p.y());
    return result;
  }
  static One hull(const One& one) {
    One result;
    CGAL::convex_hull_2(one.begin(), one.end(), std::back_inserter(result));
    return result;
  }

  static double circle(const One& one) {
    const CGAL::Min_circle_2<Traits> circle(one.begin(), one.end(), true);
    return std::sqrt(CGAL::to_double(circle.circle().squared_radius()));
  }
  static double rectangle(const One& one) {
    const One around = hull(one);
    CGAL::Polygon_2<Kernel> box;
    CGAL::min_rectangle_2(around.begin(), around.end(), std::back_inserter(box));
    return std::fabs(CGAL::to_double(box.area()));
  }
  static double width(const One& one) {
    const One around = hull(one);
    std::vector<Kernel::Line_2> strip;
    CGAL::min_strip_2(around.begin(), around.end(), std::back_inserter(strip));
    return std::sqrt(CGAL::to_double(CGAL::squared_distance(strip[0].point(), strip[1])));
  }
};

void addCgal() {
  addForms<Cgal>("circle", "cgal", sizes, Ours::circle, Cgal::circle);
  addForms<Cgal>("rectangle", "cgal", sizes, Ours::rectangle, Cgal::rectangle);
  addForms<Cgal>("width", "cgal", sizes, Ours::width, Cgal::width);
}
#else
void addCgal() {}
#endif

#ifdef GXSHAPE_HAVE_BOOST
namespace bg = boost::geometry;

struct Boost {
  using Point = bg::model::d2::point_xy<double>;
  struct One {
    bg::model::polygon<Point, false> polygon;
    bg::model::linestring<Point> line;
  };
  static constexpr double kShare = 1e-9;
  static One one(const Points& points) {
    One result;
    for (const V& p : points) {
      bg::append(result.polygon.outer(), Point(p.x(), p.y()));
      result.line.emplace_back(p.x(), p.y());
    }
    result.line.push_back(result.line.front());
    bg::correct(result.polygon);
    return result;
  }

  static double hausdorff(const One& a, const One& b) {
    return std::max(bg::discrete_hausdorff_distance(a.line, b.line),
                    bg::discrete_hausdorff_distance(b.line, a.line));
  }
  static double simplify(const One& one) {
    bg::model::linestring<Point> kept;
    bg::simplify(one.line, kept, kSimple);
    return static_cast<double>(kept.size()) - 1.0;
  }
  static double resample(const One& one) {
    bg::model::multi_point<Point> points;
    const auto count = static_cast<double>(one.line.size() - 1);
    bg::line_interpolate(one.line, bg::length(one.line) / count * (1.0 + 1e-12), points);
    return static_cast<double>(points.size()) + 1.0;
  }
};

void addBoost() {
  addForms<Boost>("simplify", "boost", sizes, Ours::simplify, Boost::simplify, 0.25);
  addForms<Boost>("resample", "boost", sizes, Ours::resample, Boost::resample, 0.2);
  addTwo<Boost>("boost", fewerSizes, Boost::hausdorff, 0.2);
}
#else
void addBoost() {}
#endif

// All rows, before main.
const bool kRegistered = [] {
  addOurs();
  addGeos();
  addOpencv();
  addCgal();
  addBoost();
  return true;
}();

}  // namespace
