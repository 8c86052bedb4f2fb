// What do two threads gain that ask one and the same region?
//
// threads_<question>/<threads>: an outline of 1,000 points (gx_wobblyOutline) whose indexes and grid are
// made; all threads ask it about the same 4,096 places, each from a place of its own on.  Time per
// question of all threads together.
//
// The counter `gain` of the rows of two threads is the rate of two divided by that of one, 2 where nothing
// is in the way, in windows of a millisecond by turns, the best one of each: so that other work on the
// machine, which takes a processor away now and then, does not count.
//
// The counter `apart` is the same gain where each thread asks a region of its own, which shares nothing: what
// the machine itself gives.  Two processors that are the two halves of one core, or that the machine lends to
// others, give less than 2 there too, and another number in each run.
//
//   containment  gxRegion::inside: through the grid
//   nearest      gxContour::closestPoint: through the tree
//   crossings    gxContour::intersections with a segment: each makes a list
//   remembered   gxContour::encloseRect, remembered by its argument: guarded by a latch, the one question
//                that threads wait for each other with
#include <benchmark/benchmark.h>
#include <cntr/region.h>

#include "outlines.h"

#include <algorithm>
#include <barrier>
#include <chrono>
#include <cstddef>
#include <functional>
#include <limits>
#include <thread>
#include <vector>

namespace {

using V = gxVector<2>;
using Clock = std::chrono::steady_clock;
// Asks one question, about that place; returns something of the answer.
using Ask = std::function<double(const gxRegion&, const V&)>;

constexpr std::int64_t kPoints = 1000;
constexpr std::size_t kPlaces = 4096;
constexpr int kWindows = 60;

struct Input {
  Input()
      : region(gx_wobblyOutline(kPoints)),
        other(gx_wobblyOutline(kPoints)),
        places(gx_pointsAround(kPoints, kPlaces)) {}

  gxRegion region;
  gxRegion other;
  std::vector<V> places;
};

const Input& input() {
  static const Input made;
  return made;
}

// Asks so often, beginning at the place `from`.
void askOften(const Ask& ask, const gxRegion& region, std::size_t times, std::size_t from) {
  for (std::size_t i = 0; i < times; ++i) {
    benchmark::DoNotOptimize(ask(region, input().places[(from + i) % kPlaces]));
  }
}

// Which region the second thread asks.
enum class Second { eSame, eApart };

// The seconds that the threads take, from when all have begun to when the last one is done.
double window(const Ask& ask, std::size_t threads, std::size_t times, Second second = Second::eSame) {
  std::barrier<> begin(static_cast<std::ptrdiff_t>(threads));
  std::vector<Clock::time_point> started(threads);
  std::vector<Clock::time_point> ended(threads);
  const auto work = [&](std::size_t thread) {
    begin.arrive_and_wait();
    started[thread] = Clock::now();
    const bool apart = second == Second::eApart && thread > 0;
    askOften(ask, apart ? input().other : input().region, times, thread * kPlaces / 2);
    ended[thread] = Clock::now();
  };
  std::vector<std::thread> others;
  for (std::size_t i = 1; i < threads; ++i) others.emplace_back(work, i);
  work(0);
  for (std::thread& other : others) other.join();
  const auto first = *std::min_element(started.begin(), started.end());
  const auto last = *std::max_element(ended.begin(), ended.end());
  return std::chrono::duration<double>(last - first).count();
}

// As many questions as one thread asks in about a millisecond.
std::size_t timesOfAWindow(const Ask& ask) {
  askOften(ask, input().region, kPlaces, 0);  // what is made on demand is there then
  askOften(ask, input().other, kPlaces, 0);
  std::size_t times = 64;
  while (window(ask, 1, times) < 1e-3) times *= 2;
  return times;
}

double gain(const Ask& ask, Second second) {
  const std::size_t times = timesOfAWindow(ask);
  double one = std::numeric_limits<double>::infinity();
  double two = one;
  for (int i = 0; i < kWindows; ++i) {
    one = std::min(one, window(ask, 1, times));
    two = std::min(two, window(ask, 2, times, second));
  }
  return 2.0 * one / two;
}

void askTogether(benchmark::State& state, const Ask& ask) {
  const auto threads = static_cast<std::size_t>(state.range(0));
  const std::size_t times = timesOfAWindow(ask);
  for ([[maybe_unused]] const auto _ : state) state.SetIterationTime(window(ask, threads, times));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(times * threads));
  if (threads != 2) return;
  state.counters["gain"] = gain(ask, Second::eSame);
  state.counters["apart"] = gain(ask, Second::eApart);
}

double containment(const gxRegion& region, const V& place) {
  return region.inside(place, false) ? 1.0 : 0.0;
}
double nearest(const gxRegion& region, const V& place) {
  return region.gxContour::closestPoint(place, false).x();
}
double crossings(const gxRegion& region, const V& place) {
  const gxLineSeg across(place, place * -0.5);
  return static_cast<double>(region.intersections(across, true).size());
}
double remembered(const gxRegion& region, const V& place) {
  return region.encloseRect(gxXform<2>::I).size().x() + place.x();
}

void rows(benchmark::internal::Benchmark* row) {
  row->Arg(1)->Arg(2)->UseManualTime()->MinTime(0.1);
}
BENCHMARK_CAPTURE(askTogether, containment, containment)->Name("threads_containment/ours")->Apply(rows);
BENCHMARK_CAPTURE(askTogether, nearest, nearest)->Name("threads_nearest/ours")->Apply(rows);
BENCHMARK_CAPTURE(askTogether, crossings, crossings)->Name("threads_crossings/ours")->Apply(rows);
BENCHMARK_CAPTURE(askTogether, remembered, remembered)->Name("threads_remembered/ours")->Apply(rows);

}  // namespace
