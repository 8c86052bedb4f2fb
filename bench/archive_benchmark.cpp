// Storing and loading contours, beside a plain copy of the same points.
//
// The one parameter is the number of points.  Bytes per second count the points alone (16 bytes each),
// so that the rows compare; `bytes_per_point` is what the archive takes in all.  The archive and its
// copy of the points are made anew in each round; the rows named Reused fill memory that is there.
// Blocks above 32 MB, as the edge points' last row needs, the C library takes from the system anew each
// time, and the fresh pages then cost more than filling them.
#include <benchmark/benchmark.h>
#include <ch_core/cntrtmpl.h>
#include <cntr/contour.h>
#include <velstd/archive.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

namespace {

std::vector<gxVector<2>> circle(std::int64_t count) {
  std::vector<gxVector<2>> points;
  for (std::int64_t i = 0; i < count; ++i) {
    const double angle = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(count);
    points.emplace_back(1000 * std::cos(angle), 1000 * std::sin(angle));
  }
  return points;
}

void countPoints(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetBytesProcessed(state.iterations() * state.range(0) * std::int64_t{sizeof(gxVector<2>)});
}

void PlainCopy(benchmark::State& state) {
  const std::vector<gxVector<2>> points = circle(state.range(0));
  const std::size_t size = points.size() * sizeof(gxVector<2>);
  for (auto round : state) {
    static_cast<void>(round);
    const auto target = std::make_unique_for_overwrite<unsigned char[]>(size);
    std::memcpy(target.get(), points.data(), size);
    benchmark::DoNotOptimize(target.get());
    benchmark::ClobberMemory();
  }
  countPoints(state);
}

void PlainCopyReused(benchmark::State& state) {
  const std::vector<gxVector<2>> points = circle(state.range(0));
  const std::size_t size = points.size() * sizeof(gxVector<2>);
  const auto target = std::make_unique<unsigned char[]>(size);
  for (auto round : state) {
    static_cast<void>(round);
    std::memcpy(target.get(), points.data(), size);
    benchmark::ClobberMemory();
  }
  countPoints(state);
}

void StoreContour(benchmark::State& state) {
  const gxContour contour(circle(state.range(0)));
  std::size_t bytes = 0;
  for (auto round : state) {
    static_cast<void>(round);
    gxArchive archive;
    archive.store(contour);
    bytes = archive.bytes().size();
    benchmark::DoNotOptimize(archive.bytes().data());
  }
  countPoints(state);
  state.counters["bytes_per_point"] = static_cast<double>(bytes) / static_cast<double>(state.range(0));
}

template <class Shape>
std::vector<unsigned char> stored(const Shape& shape) {
  gxArchive archive;
  archive.store(shape);
  return {archive.bytes().begin(), archive.bytes().end()};
}

void LoadContour(benchmark::State& state) {
  const std::vector<unsigned char> bytes = stored(gxContour(circle(state.range(0))));
  for (auto round : state) {
    static_cast<void>(round);
    gxArchive archive(bytes);
    gxContour contour;
    archive.load(contour);
    benchmark::DoNotOptimize(contour.points().data());
  }
  countPoints(state);
}

void LoadContourReused(benchmark::State& state) {
  const std::vector<unsigned char> bytes = stored(gxContour(circle(state.range(0))));
  gxContour contour;
  for (auto round : state) {
    static_cast<void>(round);
    gxArchive archive(bytes);
    archive.load(contour);
    benchmark::DoNotOptimize(contour.points().data());
  }
  countPoints(state);
}

gxContourT<gxEdgelet> edgeletCircle(std::int64_t count) {
  std::vector<gxEdgelet> data;
  for (const gxVector<2>& p : circle(count))
    data.emplace_back(p, static_cast<unsigned short>(100), gxAngle8(7));
  return gxContourT<gxEdgelet>(data);
}

void StoreEdgeletContour(benchmark::State& state) {
  const gxContourT<gxEdgelet> contour = edgeletCircle(state.range(0));
  std::size_t bytes = 0;
  for (auto round : state) {
    static_cast<void>(round);
    gxArchive archive;
    archive.store(contour);
    bytes = archive.bytes().size();
  }
  countPoints(state);
  state.counters["bytes_per_point"] = static_cast<double>(bytes) / static_cast<double>(state.range(0));
}

void LoadEdgeletContour(benchmark::State& state) {
  const std::vector<unsigned char> bytes = stored(edgeletCircle(state.range(0)));
  for (auto round : state) {
    static_cast<void>(round);
    gxArchive archive(bytes);
    gxContourT<gxEdgelet> contour;
    archive.load(contour);
    benchmark::DoNotOptimize(contour.data().data());
  }
  countPoints(state);
}

void sizes(benchmark::internal::Benchmark* row) {
  row->Arg(100)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMicrosecond);
}

}  // namespace

BENCHMARK(PlainCopy)->Apply(sizes);
BENCHMARK(PlainCopyReused)->Apply(sizes);
BENCHMARK(StoreContour)->Apply(sizes);
BENCHMARK(LoadContour)->Apply(sizes);
BENCHMARK(LoadContourReused)->Apply(sizes);
BENCHMARK(StoreEdgeletContour)->Apply(sizes);
BENCHMARK(LoadEdgeletContour)->Apply(sizes);
