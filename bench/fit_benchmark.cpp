// How long the fits take, per point, beside OpenCV's.
//
// What varies is the number of points. Fixed: a whole ellipse of radii 100 and 66.7 (a circle of radius
// 100) with Gaussian noise of 1, as from a sub-pixel edge finder; one fit of everything, nobody left out.
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

std::vector<gxVector<2>> outline(std::int64_t count, double a, double b) {
  std::mt19937_64 engine(1);
  std::normal_distribution<double> noise;
  std::vector<gxVector<2>> points;
  for (std::int64_t i = 0; i < count; ++i) {
    const double t = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(count);
    const double x = 200.0 + a * std::cos(t) + noise(engine);
    points.emplace_back(x, b * std::sin(t) + noise(engine));
  }
  return points;
}

void countPoints(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ellipseFit(benchmark::State& state) {
  const auto points = outline(state.range(0), 100.0, 66.7);
  const gxEllipseFitParams params(gxEllipseFitDefs::eFitAll, gxRadian(0.0), 0, HUGE_VAL);
  gxEllipseFitResults results;
  for (auto _ : state) gfEllipseFit(params, points, results);
  countPoints(state);
}

void circleFit(benchmark::State& state) {
  const auto points = outline(state.range(0), 100.0, 100.0);
  const gxCircleFitParams params(gxCircleFitDefs::eFitAll, 1.0, 0, HUGE_VAL);
  gxCircleFitResults results;
  for (auto _ : state) gfCircleFit(params, points, results);
  countPoints(state);
}

BENCHMARK(ellipseFit)->RangeMultiplier(10)->Range(10, 100000);
BENCHMARK(circleFit)->RangeMultiplier(10)->Range(10, 100000);

#ifdef GXSHAPE_HAVE_OPENCV
template <class Fit>
void peerFit(benchmark::State& state, Fit fit) {
  std::vector<cv::Point2f> points;
  for (const auto& p : outline(state.range(0), 100.0, 66.7)) {
    points.emplace_back(static_cast<float>(p.x()), static_cast<float>(p.y()));
  }
  for (auto _ : state) benchmark::DoNotOptimize(fit(points));
  countPoints(state);
}

BENCHMARK_CAPTURE(peerFit, opencv_fitEllipse, [](const auto& p) { return cv::fitEllipse(p); })
    -> RangeMultiplier(10) -> Range(10, 100000);
BENCHMARK_CAPTURE(peerFit, opencv_fitEllipseAMS, [](const auto& p) { return cv::fitEllipseAMS(p); })
    -> RangeMultiplier(10) -> Range(10, 100000);
BENCHMARK_CAPTURE(peerFit, opencv_fitEllipseDirect, [](const auto& p) {
  return cv::fitEllipseDirect(p);
}) -> RangeMultiplier(10) -> Range(10, 100000);
#endif

}  // namespace
