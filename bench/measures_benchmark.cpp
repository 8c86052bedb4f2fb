// What a shape measures: area and centre, second moments, length, and the upright rectangle in a
// turned frame, beside the peers.
//
// The one parameter is the number of points; the outline is that of gx_wobblyOutline.  An item is a
// point.  Our shapes remember what they measured, so each is asked once, fresh (first_calls.h).
//
// The peers, each through the call that is made for the question, on its own type of outline, which
// is made before the timing:
//   - GEOS: Polygon::getArea and the Centroid algorithm; LinearRing::getLength.
//   - Boost.Geometry: area and centroid, perimeter, of a closed counterclockwise ring; for the turned
//     rectangle transform into a ring that is there, then envelope.
//   - CGAL: for the turned rectangle Aff_transformation_2 of every point and the union of boxes, over
//     the Cartesian kernel of doubles.  It has no centroid, moments or length of a polygon.
//   - OpenCV: moments, which gives area, centre and second moments (and the third, which cannot be
//     left out) at once; arcLength.  Both work on single-precision points.  For the turned rectangle
//     transform and reduce on doubles, since its own bounding rectangle is one of whole pixels.
// The plain forms are the definitions, step by step.
#include "first_calls.h"
#include "outlines.h"
#include "rows.h"

#include <benchmark/benchmark.h>
#include <cntr/region.h>
#include <support/slow_truth_stats.h>

#include <cmath>
#include <map>
#include <memory>

#ifdef GXSHAPE_HAVE_GEOS
#  include "geos_outline.h"

#  include <geos/algorithm/Centroid.h>
#endif
#ifdef GXSHAPE_HAVE_BOOST
#  include <boost/geometry.hpp>
#  include <boost/geometry/geometries/geometries.hpp>
#endif
#ifdef GXSHAPE_HAVE_CGAL
#  include <CGAL/Aff_transformation_2.h>
#  include <CGAL/Simple_cartesian.h>
#endif
#ifdef GXSHAPE_HAVE_OPENCV
#  include <opencv2/imgproc.hpp>
#endif

namespace {

using Points = std::vector<gxVector<2>>;

// Off the origin by a few pixels, as an object in a picture is.
const Points& outline(std::int64_t count) {
  static std::map<std::int64_t, Points> made;
  Points& points = made[count];
  if (points.empty()) points = gx_wobblyOutline(count, 12.5, -3.25);
  return points;
}

constexpr double kDouble = 1e-9;  // how far parties may differ that compute with doubles
constexpr double kSingle = 1e-2;  // and with single-precision points, a pixel apart at 160,000 pixels

void timePool(benchmark::State& state, gx_Pool pool, const auto& make, const auto& ask) {
  gx_timePool(
      state, pool, gx_poolSize(state.range(0)), [&](std::int64_t) { return make(); }, ask);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

gxRegion region(std::int64_t count) {
  return gxRegion(outline(count));
}

// ---- Area and centre -----------------------------------------------------------------------------

struct AreaAndCentre {
  double area = 0.0;
  double x = 0.0;
  double y = 0.0;
};

AreaAndCentre ourAreaAndCentre(const gxRegion& shape) {
  const gxVector<2> centre = shape.centerOfMass(false);  // finds the area too
  return {shape.area(false), centre.x(), centre.y()};
}

bool agrees(benchmark::State& state, const AreaAndCentre& got, double tolerance) {
  const AreaAndCentre ours = ourAreaAndCentre(region(state.range(0)));
  const double size = std::sqrt(ours.area);
  return gx_agree(state, ours.area, got.area, tolerance) &&
         gx_agree(state, ours.x + size, got.x + size, tolerance) &&
         gx_agree(state, ours.y + size, got.y + size, tolerance);
}

// Makes a row of a party that answers area and centre.
void timeAreaAndCentre(benchmark::State& state, gx_Pool pool, double tolerance, const auto& make,
                       const auto& measure) {
  if (!agrees(state, measure(make()), tolerance)) return;
  timePool(state, pool, make, [&](const auto& shape) { benchmark::DoNotOptimize(measure(shape)); });
}

void areaAndCentreOurs(benchmark::State& state) {
  timeAreaAndCentre(
      state, gx_Pool::eAnew, 0.0, [&] { return region(state.range(0)); }, ourAreaAndCentre);
}
BENCHMARK(areaAndCentreOurs)->Name("area_and_centre/ours")->Apply(gx_allSizes);

void areaAndCentrePlain(benchmark::State& state) {
  timeAreaAndCentre(
      state, gx_Pool::eKept, 0.0, [&] { return outline(state.range(0)); },
      [](const Points& points) {
        const gxVector<2> centre = slow::centerOfMass(points);
        return AreaAndCentre{slow::area(points), centre.x(), centre.y()};
      });
}
BENCHMARK(areaAndCentrePlain)->Name("area_and_centre/plain")->Apply(gx_allSizes);

// ---- Second moments ------------------------------------------------------------------------------

bool agrees(benchmark::State& state, const gxMatrix<2>& got, double tolerance) {
  const gxMatrix<2> ours = region(state.range(0)).inertiaMatrix(false);
  const double size = ours.m00() + ours.m11();
  return gx_agree(state, ours.m00(), got.m00(), tolerance) &&
         gx_agree(state, ours.m01() + size, got.m01() + size, tolerance) &&
         gx_agree(state, ours.m11(), got.m11(), tolerance);
}

void timeMoments(benchmark::State& state, gx_Pool pool, double tolerance, const auto& make,
                 const auto& measure) {
  if (!agrees(state, measure(make()), tolerance)) return;
  timePool(state, pool, make, [&](const auto& shape) { benchmark::DoNotOptimize(measure(shape)); });
}

void momentsOurs(benchmark::State& state) {
  timeMoments(
      state, gx_Pool::eAnew, 0.0, [&] { return region(state.range(0)); },
      [](const gxRegion& shape) { return shape.inertiaMatrix(false); });
}
BENCHMARK(momentsOurs)->Name("second_moments/ours")->Apply(gx_allSizes);

void momentsPlain(benchmark::State& state) {
  timeMoments(
      state, gx_Pool::eKept, 1e-12, [&] { return outline(state.range(0)); },
      [](const Points& points) { return slow::polygonMoments(points).matrix; });
}
BENCHMARK(momentsPlain)->Name("second_moments/plain")->Apply(gx_allSizes);

// ---- Length --------------------------------------------------------------------------------------

void timeLength(benchmark::State& state, gx_Pool pool, double tolerance, const auto& make,
                const auto& measure) {
  const double ours = gxContour(outline(state.range(0))).length();
  if (!gx_agree(state, ours, measure(make()), tolerance)) return;
  timePool(state, pool, make, [&](const auto& shape) { benchmark::DoNotOptimize(measure(shape)); });
}

void lengthOurs(benchmark::State& state) {
  timeLength(
      state, gx_Pool::eAnew, 0.0, [&] { return gxContour(outline(state.range(0))); },
      [](const gxContour& shape) { return shape.length(); });
}
BENCHMARK(lengthOurs)->Name("length/ours")->Apply(gx_allSizes);

void lengthPlain(benchmark::State& state) {
  timeLength(
      state, gx_Pool::eKept, 0.0,
      [&] {
        return slow::Outline{outline(state.range(0)), true};
      },
      [](const slow::Outline& shape) { return slow::length(shape); });
}
BENCHMARK(lengthPlain)->Name("length/plain")->Apply(gx_allSizes);

// ---- Turned rectangle ----------------------------------------------------------------------------

constexpr double kTurn = 0.5;  // radians

gxXform<2> turn() {
  return {gxMatrix<2>(gxRadian(kTurn), gxRadian(kTurn), 1.0, 1.0), {0.0, 0.0}};
}

struct Size {
  double x = 0.0;
  double y = 0.0;
};

void timeRectangle(benchmark::State& state, gx_Pool pool, double tolerance, const auto& make,
                   const auto& measure) {
  const gxVector<2> ours = region(state.range(0)).encloseRect(turn()).size();
  auto first = make();
  const Size got = measure(first);
  if (!gx_agree(state, ours.x(), got.x, tolerance)) return;
  if (!gx_agree(state, ours.y(), got.y, tolerance)) return;
  timePool(state, pool, make, [&](auto& shape) { benchmark::DoNotOptimize(measure(shape)); });
}

void rectangleOurs(benchmark::State& state) {
  const gxXform<2> frame = turn();
  timeRectangle(
      state, gx_Pool::eAnew, 0.0, [&] { return region(state.range(0)); },
      [&](const gxRegion& shape) {
        const gxVector<2> size = shape.encloseRect(frame).size();
        return Size{size.x(), size.y()};
      });
}
BENCHMARK(rectangleOurs)->Name("turned_rectangle/ours")->Apply(gx_allSizes);

void rectanglePlain(benchmark::State& state) {
  const gxXform<2> frame = turn();
  timeRectangle(
      state, gx_Pool::eKept, 0.0, [&] { return outline(state.range(0)); },
      [&](const Points& points) {
        const gxVector<2> size = slow::encloseRect(points, frame).size();
        return Size{size.x(), size.y()};
      });
}
BENCHMARK(rectanglePlain)->Name("turned_rectangle/plain")->Apply(gx_allSizes);

// ---- GEOS ----------------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_GEOS
void areaAndCentreGeos(benchmark::State& state) {
  timeAreaAndCentre(
      state, gx_Pool::eKept, kDouble, [&] { return gx_geosPolygon(outline(state.range(0))); },
      [](const auto& polygon) {
        geos::geom::Coordinate centre;
        geos::algorithm::Centroid::getCentroid(*polygon, centre);
        return AreaAndCentre{polygon->getArea(), centre.x, centre.y};
      });
}
BENCHMARK(areaAndCentreGeos)->Name("area_and_centre/geos")->Apply(gx_allSizes);

void lengthGeos(benchmark::State& state) {
  timeLength(
      state, gx_Pool::eKept, kDouble, [&] { return gx_geosPolygon(outline(state.range(0))); },
      [](const auto& polygon) { return polygon->getExteriorRing()->getLength(); });
}
BENCHMARK(lengthGeos)->Name("length/geos")->Apply(gx_allSizes);
#endif

// ---- Boost.Geometry ------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_BOOST
namespace bg = boost::geometry;
using BoostPoint = bg::model::d2::point_xy<double>;
using BoostRing = bg::model::ring<BoostPoint, false, true>;

BoostRing boostRing(std::int64_t count) {
  BoostRing ring;
  for (const gxVector<2>& p : outline(count)) ring.emplace_back(p.x(), p.y());
  ring.push_back(ring.front());
  return ring;
}

void areaAndCentreBoost(benchmark::State& state) {
  timeAreaAndCentre(
      state, gx_Pool::eKept, kDouble, [&] { return boostRing(state.range(0)); },
      [](const BoostRing& ring) {
        BoostPoint centre(0.0, 0.0);
        bg::centroid(ring, centre);
        return AreaAndCentre{bg::area(ring), centre.x(), centre.y()};
      });
}
BENCHMARK(areaAndCentreBoost)->Name("area_and_centre/boost")->Apply(gx_allSizes);

void lengthBoost(benchmark::State& state) {
  timeLength(
      state, gx_Pool::eKept, kDouble, [&] { return boostRing(state.range(0)); },
      [](const BoostRing& ring) { return static_cast<double>(bg::perimeter(ring)); });
}
BENCHMARK(lengthBoost)->Name("length/boost")->Apply(gx_allSizes);

void rectangleBoost(benchmark::State& state) {
  // Its rotation is clockwise for a positive angle.
  const bg::strategy::transform::rotate_transformer<bg::radian, double, 2, 2> rotation(-kTurn);
  BoostRing turned;
  bg::model::box<BoostPoint> box;
  timeRectangle(
      state, gx_Pool::eKept, kDouble, [&] { return boostRing(state.range(0)); },
      [&](const BoostRing& ring) {
        turned.clear();
        bg::transform(ring, turned, rotation);
        bg::envelope(turned, box);
        return Size{box.max_corner().x() - box.min_corner().x(),
                    box.max_corner().y() - box.min_corner().y()};
      });
}
BENCHMARK(rectangleBoost)->Name("turned_rectangle/boost")->Apply(gx_allSizes);
#endif

// ---- CGAL ----------------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_CGAL
void rectangleCgal(benchmark::State& state) {
  using Kernel = CGAL::Simple_cartesian<double>;
  const CGAL::Aff_transformation_2<Kernel> rotation(CGAL::ROTATION, std::sin(kTurn), std::cos(kTurn));
  const auto make = [&] {
    std::vector<Kernel::Point_2> points;
    for (const gxVector<2>& p : outline(state.range(0))) points.emplace_back(p.x(), p.y());
    return points;
  };
  timeRectangle(state, gx_Pool::eKept, kDouble, make, [&](const auto& points) {
    CGAL::Bbox_2 box;
    for (const Kernel::Point_2& p : points) box += rotation.transform(p).bbox();
    return Size{box.xmax() - box.xmin(), box.ymax() - box.ymin()};
  });
}
BENCHMARK(rectangleCgal)->Name("turned_rectangle/cgal")->Apply(gx_allSizes);
#endif

// ---- OpenCV --------------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_OPENCV
std::vector<cv::Point2f> opencvPoints(std::int64_t count) {
  std::vector<cv::Point2f> points;
  for (const gxVector<2>& p : outline(count)) {
    points.emplace_back(static_cast<float>(p.x()), static_cast<float>(p.y()));
  }
  return points;
}

void areaAndCentreOpencv(benchmark::State& state) {
  timeAreaAndCentre(
      state, gx_Pool::eKept, kSingle, [&] { return opencvPoints(state.range(0)); },
      [](const auto& points) {
        const cv::Moments m = cv::moments(points);
        return AreaAndCentre{m.m00, m.m10 / m.m00, m.m01 / m.m00};
      });
}
BENCHMARK(areaAndCentreOpencv)->Name("area_and_centre/opencv")->Apply(gx_allSizes);

void momentsOpencv(benchmark::State& state) {
  timeMoments(
      state, gx_Pool::eKept, kSingle, [&] { return opencvPoints(state.range(0)); },
      [](const auto& points) {
        const cv::Moments m = cv::moments(points);
        return gxMatrix<2>(m.mu20, m.mu11, m.mu11, m.mu02);
      });
}
BENCHMARK(momentsOpencv)->Name("second_moments/opencv")->Apply(gx_allSizes);

void lengthOpencv(benchmark::State& state) {
  timeLength(
      state, gx_Pool::eKept, kSingle, [&] { return opencvPoints(state.range(0)); },
      [](const auto& points) { return cv::arcLength(points, true); });
}
BENCHMARK(lengthOpencv)->Name("length/opencv")->Apply(gx_allSizes);

void rectangleOpencv(benchmark::State& state) {
  const cv::Matx23d rotation(std::cos(kTurn), -std::sin(kTurn), 0, std::sin(kTurn), std::cos(kTurn), 0);
  const auto make = [&] {
    std::vector<cv::Point2d> points;
    for (const gxVector<2>& p : outline(state.range(0))) points.emplace_back(p.x(), p.y());
    return points;
  };
  std::vector<cv::Point2d> turned;
  timeRectangle(state, gx_Pool::eKept, kDouble, make, [&](const auto& points) {
    cv::transform(points, turned, rotation);
    cv::Mat_<cv::Point2d> low;
    cv::Mat_<cv::Point2d> high;
    cv::reduce(cv::Mat(turned), low, 0, cv::REDUCE_MIN);
    cv::reduce(cv::Mat(turned), high, 0, cv::REDUCE_MAX);
    return Size{high(0).x - low(0).x, high(0).y - low(0).y};
  });
}
BENCHMARK(rectangleOpencv)->Name("turned_rectangle/opencv")->Apply(gx_allSizes);
#endif

}  // namespace
