// How long the fits take, per point, beside OpenCV's.
//
// What varies is the number of points. Fixed: a whole ellipse of radii 100 and 66.7 (a circle of radius
// 100) with Gaussian noise of 1, as from a sub-pixel edge finder; one fit of everything, nobody left out.
//
// The peer's three fits are algebraic, of single-precision points; ours minimises the distances of the
// points from the ellipse, which takes several passes. Before the timing the ellipses are compared:
// centres within a pixel, radii within three percent (the methods differ, and in how they err).
#include "first_calls.h"
#include "rows.h"

#include <benchmark/benchmark.h>
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#ifdef GXSHAPE_HAVE_OPENCV
#  include <opencv2/imgproc.hpp>
#endif

namespace {

constexpr double kRadius = 100.0;
constexpr double kSmallRadius = 66.7;

// Outlines of other seeds differ by their noise.
std::vector<gxVector<2>> outline(std::int64_t count, double a, double b, std::uint64_t seed) {
  std::mt19937_64 engine(seed + 1);
  std::normal_distribution<double> noise;
  std::vector<gxVector<2>> points;
  for (std::int64_t i = 0; i < count; ++i) {
    const double t = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(count);
    const double x = 200.0 + a * std::cos(t) + noise(engine);
    points.emplace_back(x, b * std::sin(t) + noise(engine));
  }
  return points;
}

struct Found {
  double x = 0.0;
  double y = 0.0;
  double large = 0.0;
  double small = 0.0;
};

// Times `fit(points)` over different point lists, which `make(seed)` makes, where it finds the ellipse.
void timeFit(benchmark::State& state, const auto& make, const auto& fit, double large, double small) {
  const Found found = fit(make(0));
  if (!gx_agree(state, 0.0, std::abs(found.x - 200.0) < 1.0 ? 0.0 : found.x)) return;
  if (!gx_agree(state, 0.0, std::abs(found.y) < 1.0 ? 0.0 : found.y)) return;
  if (!gx_agree(state, large, found.large, 0.03)) return;
  if (!gx_agree(state, small, found.small, 0.03)) return;
  gx_timePool(state, gx_Pool::eKept, gx_poolSize(state.range(0)), make,
              [&](const auto& points) { benchmark::DoNotOptimize(fit(points)); });
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ellipseFitOurs(benchmark::State& state) {
  const gxEllipseFitParams params(gxEllipseFitDefs::eFitAll, gxRadian(0.0), 0, HUGE_VAL);
  const auto make = [&](std::int64_t seed) {
    return outline(state.range(0), kRadius, kSmallRadius, static_cast<std::uint64_t>(seed));
  };
  timeFit(
      state, make,
      [&params](const std::vector<gxVector<2>>& points) {
        gxEllipseFitResults results;
        gfEllipseFit(params, points, results);
        const gxEllipse::gxEllipseGeom geom = results.ellipse().geom();
        const gxVector<2> radii(geom.radii.x(), geom.radii.y());
        return Found{geom.center.x(), geom.center.y(), std::max(radii.x(), radii.y()),
                     std::min(radii.x(), radii.y())};
      },
      kRadius, kSmallRadius);
}
BENCHMARK(ellipseFitOurs)->Name("ellipse_fit/ours")->Apply(gx_allSizes);

void circleFitOurs(benchmark::State& state) {
  const gxCircleFitParams params(gxCircleFitDefs::eFitAll, 1.0, 0, HUGE_VAL);
  const auto make = [&](std::int64_t seed) {
    return outline(state.range(0), kRadius, kRadius, static_cast<std::uint64_t>(seed));
  };
  timeFit(
      state, make,
      [&params](const std::vector<gxVector<2>>& points) {
        gxCircleFitResults results;
        gfCircleFit(params, points, results);
        const gxCircle circle = results.circle();
        return Found{circle.center().x(), circle.center().y(), circle.radius(), circle.radius()};
      },
      kRadius, kRadius);
}
BENCHMARK(circleFitOurs)->Name("circle_fit/ours")->Apply(gx_allSizes);

#ifdef GXSHAPE_HAVE_OPENCV
void timeOpencv(benchmark::State& state, cv::RotatedRect (*fit)(cv::InputArray)) {
  const auto make = [&](std::int64_t seed) {
    std::vector<cv::Point2f> points;
    for (const auto& p :
         outline(state.range(0), kRadius, kSmallRadius, static_cast<std::uint64_t>(seed))) {
      points.emplace_back(static_cast<float>(p.x()), static_cast<float>(p.y()));
    }
    return points;
  };
  timeFit(
      state, make,
      [fit](const std::vector<cv::Point2f>& points) {
        const cv::RotatedRect box = fit(points);
        return Found{box.center.x, box.center.y, 0.5 * std::max(box.size.width, box.size.height),
                     0.5 * std::min(box.size.width, box.size.height)};
      },
      kRadius, kSmallRadius);
}

void ellipseFitOpencv(benchmark::State& state) {
  timeOpencv(state, cv::fitEllipse);
}
BENCHMARK(ellipseFitOpencv)->Name("ellipse_fit/opencv")->Apply(gx_allSizes);

void ellipseFitOpencvAms(benchmark::State& state) {
  timeOpencv(state, cv::fitEllipseAMS);
}
BENCHMARK(ellipseFitOpencvAms)->Name("ellipse_fit/opencv_ams")->Apply(gx_allSizes);

void ellipseFitOpencvDirect(benchmark::State& state) {
  timeOpencv(state, cv::fitEllipseDirect);
}
BENCHMARK(ellipseFitOpencvDirect)->Name("ellipse_fit/opencv_direct")->Apply(gx_allSizes);
#endif

}  // namespace
