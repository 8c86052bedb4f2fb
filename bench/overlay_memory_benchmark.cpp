// How much memory does an overlay take while it runs?
//
// The parameter is the number of points of each outline.  Counted is what is asked of `new` at one time, at
// the most, beyond what there was before the call; the result is in it.
//
// overlay_memory_smooth: repair of a smooth outline, which meets nothing; bytes an edge.
// overlay_memory_combs: union of two combs across each other, n² / 4 crossings, each two nodes inside of edges
// (`gxOverlayLimits::maxMeetings` counts these); bytes a node, the edges' share taken off.
#include <overlay/overlay.h>

#include "outlines.h"

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <cstdlib>
#include <new>

namespace {

std::size_t held = 0;
std::size_t most = 0;

void* taken(std::size_t size) {
  void* p = std::malloc(size == 0 ? 1 : size);
  if (p == nullptr) throw std::bad_alloc();
  held += malloc_usable_size(p);
  if (held > most) most = held;
  return p;
}

void givenBack(void* p) {
  if (p == nullptr) return;
  held -= malloc_usable_size(p);
  std::free(p);
}

}  // namespace

void* operator new(std::size_t size) {
  return taken(size);
}
void* operator new[](std::size_t size) {
  return taken(size);
}
void operator delete(void* p) noexcept {
  givenBack(p);
}
void operator delete[](void* p) noexcept {
  givenBack(p);
}
void operator delete(void* p, std::size_t) noexcept {
  givenBack(p);
}
void operator delete[](void* p, std::size_t) noexcept {
  givenBack(p);
}

namespace {

using V = gxVector<2>;

template <class Call>
double bytesOf(const Call& call) {
  const std::size_t before = held;
  most = held;
  call();
  return static_cast<double>(most - before);
}

void smooth(benchmark::State& state) {
  const gxRegion region(gx_wobblyOutline(state.range(0)));
  double bytes = 0.0;
  for ([[maybe_unused]] const auto _ : state) {
    bytes = bytesOf([&] { benchmark::DoNotOptimize(gfRepair(region).report.areaAfter); });
  }
  state.counters["bytes_per_edge"] = bytes / static_cast<double>(state.range(0));
}

// Teeth along x, or along y with `upright`.
gxRegion comb(std::int64_t points, bool upright) {
  const double length = static_cast<double>(points) + 2.0;
  std::vector<V> outline;
  const auto add = [&](double x, double y) { outline.push_back(upright ? V(y, x) : V(x, y)); };
  for (std::int64_t i = 0; i < points; ++i)
    add(i % 4 == 1 || i % 4 == 2 ? length : -1.0, static_cast<double>(i) + 0.25);
  add(-2.0, static_cast<double>(points));
  add(-2.0, 0.0);
  return gxRegion(outline);
}

void combs(benchmark::State& state) {
  const gxRegion a = comb(state.range(0), false);
  const gxRegion b = comb(state.range(0), true);
  const std::vector<gxRegion> both{a, b};
  const double nodes = 2.0 * static_cast<double>(gfRepair(both).report.nodes);
  double bytes = 0.0;
  for ([[maybe_unused]] const auto _ : state) {
    bytes = bytesOf([&] { benchmark::DoNotOptimize(gfUnion(a, b).regions().size()); });
  }
  state.counters["nodes"] = nodes;
  state.counters["bytes_per_node"] = bytes / nodes;
}

BENCHMARK(smooth)->Name("overlay_memory_smooth/ours")->Arg(1000)->Arg(100000)->Iterations(1);
BENCHMARK(combs)->Name("overlay_memory_combs/ours")->Arg(100)->Arg(400)->Arg(1000)->Iterations(1);

}  // namespace
