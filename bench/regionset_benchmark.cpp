// Sets of many coin-sized regions: what a question costs the first time, from memory, and per query,
// and how many bytes a region takes.
//
// The parameter is the number of regions.  Fixed: outlines of 182 points, the mean of the coins in the
// sample picture; radius 25 ± 2, slightly uneven, 80 apart, so that none touches another, which is
// the dearest case for the test of self-intersection: no pair answers early.
//
// Times are for the whole set; the counter `per_region` divides them.  Questions to a set run through
// its regions, so a first question is asked of fresh regions, which remember nothing either; making
// those is not timed.
#include <benchmark/benchmark.h>
#include <cntr/regionst.h>
#include <malloc.h>

#include "coins.h"

#include <cmath>
#include <vector>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;

std::vector<Handle> coins(long count) {
  std::vector<Handle> handles;
  handles.reserve(static_cast<std::size_t>(count));
  for (long i = 0; i < count; ++i) handles.emplace_back(new gxRegion(gx_coin(i)));
  return handles;
}

void perRegion(benchmark::State& state) {
  state.counters["per_region"] =
      benchmark::Counter(static_cast<double>(state.range(0)) * static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Asks a set of fresh regions, once each time.
template <class Ask>
void firstTime(benchmark::State& state, Ask ask) {
  for ([[maybe_unused]] const auto _ : state) {
    state.PauseTiming();
    {
      const gxRegionSet set(coins(state.range(0)));
      state.ResumeTiming();
      ask(set);
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
  perRegion(state);
}

void firstArea(benchmark::State& state) {
  firstTime(state, [](const gxRegionSet& set) { benchmark::DoNotOptimize(set.area(false)); });
}

void firstCenterOfMass(benchmark::State& state) {
  firstTime(state, [](const gxRegionSet& set) { benchmark::DoNotOptimize(set.centerOfMass(false)); });
}

void firstInertiaMatrix(benchmark::State& state) {
  firstTime(state, [](const gxRegionSet& set) { benchmark::DoNotOptimize(set.inertiaMatrix(false)); });
}

void firstEncloseRect(benchmark::State& state) {
  firstTime(state, [](const gxRegionSet& set) {
    benchmark::DoNotOptimize(set.encloseRect(gxXform<2>::I).size().x());
  });
}

void firstSelfIntersection(benchmark::State& state) {
  firstTime(state, [](const gxRegionSet& set) { benchmark::DoNotOptimize(set.isSelfIntersecting()); });
}

// All pairs, each of which begins with the test of the remembered boxes: what the set would do
// without its tree.
void selfIntersectionPairByPair(benchmark::State& state) {
  const std::vector<Handle> handles = coins(state.range(0));
  for (const Handle& region : handles) benchmark::DoNotOptimize(region->isSelfIntersecting());
  for ([[maybe_unused]] const auto _ : state) {
    bool crossing = false;
    for (std::size_t i = 0; i < handles.size(); ++i) {
      const gxContour& one = *handles[i];
      for (std::size_t j = i + 1; j < handles.size(); ++j) {
        const gxContour& other = *handles[j];
        crossing = crossing || !one.intersections(other).empty();
      }
    }
    benchmark::DoNotOptimize(crossing);
  }
  perRegion(state);
}

// The pairs alone: every region knows about itself already.
void pairsOfASet(benchmark::State& state) {
  const std::vector<Handle> handles = coins(state.range(0));
  static_cast<void>(gxRegionSet(handles).isSelfIntersecting());
  for ([[maybe_unused]] const auto _ : state) {
    state.PauseTiming();
    const gxRegionSet set(handles);
    state.ResumeTiming();
    benchmark::DoNotOptimize(set.isSelfIntersecting());
  }
  perRegion(state);
}

// One coin more, over the first one, so that the whole set is tested, merged and repaired.
void firstRegularize(benchmark::State& state) {
  for ([[maybe_unused]] const auto _ : state) {
    state.PauseTiming();
    {
      std::vector<Handle> handles = coins(state.range(0));
      gxRegion moved;
      handles.front()->map(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), gxVector<2>(40, 3)), moved);
      handles.emplace_back(new gxRegion(moved));
      const gxRegionSet set(handles);
      gxRegionSet result;
      state.ResumeTiming();
      set.regularize(result);
      benchmark::DoNotOptimize(result.cachedVectorSize());
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
  perRegion(state);
}

void areaFromMemory(benchmark::State& state) {
  const gxRegionSet set(coins(state.range(0)));
  static_cast<void>(set.area(true));
  for ([[maybe_unused]] const auto _ : state) benchmark::DoNotOptimize(set.area(true));
}

void copy(benchmark::State& state) {
  const gxRegionSet set(coins(state.range(0)));
  static_cast<void>(set.area(true));
  for ([[maybe_unused]] const auto _ : state) {
    const gxRegionSet same(set);
    benchmark::DoNotOptimize(same.cachedVectorSize());
  }
  perRegion(state);
}

// Query points on a spiral over the whole set.
template <class Ask>
void query(benchmark::State& state, Ask ask) {
  const gxRegionSet set(coins(state.range(0)));
  const gxRect rect = set.encloseRect(gxXform<2>::I);
  double turn = 0.0;
  ask(set, rect.origin());  // fills the regions' memories
  for ([[maybe_unused]] const auto _ : state) {
    turn += 2.4;
    const double x =
        rect.origin().x() + rect.size().x() * (0.5 + 0.5 * std::cos(turn) * std::sin(turn * 0.01));
    const double y =
        rect.origin().y() + rect.size().y() * (0.5 + 0.5 * std::sin(turn) * std::sin(turn * 0.01));
    ask(set, gxVector<2>(x, y));
  }
  perRegion(state);
}

void inside(benchmark::State& state) {
  query(state, [](const gxRegionSet& set, const gxVector<2>& point) {
    benchmark::DoNotOptimize(set.inside(point, true));
  });
}

void distToPoint(benchmark::State& state) {
  query(state, [](const gxRegionSet& set, const gxVector<2>& point) {
    benchmark::DoNotOptimize(set.distToPoint(point, false, true, true));
  });
}

// ---- Memory -------------------------------------------------------------------------------------

double bytesInUse() {
  const auto info = mallinfo2();
  return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

// Bytes a region after each kind of question, the allocator's overhead included; the points alone are
// 16 bytes each.  The time is that of all questions together.
void bytesPerRegion(benchmark::State& state) {
  for ([[maybe_unused]] const auto _ : state) {
    const auto regions = static_cast<double>(state.range(0));
    const double before = bytesInUse();
    const gxRegionSet set(coins(state.range(0)));
    const auto note = [&](const char* name) {
      state.counters[name] = (bytesInUse() - before) / regions;
    };
    note("bytes_new");
    static_cast<void>(set.area(false));
    static_cast<void>(set.centerOfMass(false));
    static_cast<void>(set.inertiaMatrix(false));
    static_cast<void>(set.encloseRect(gxXform<2>::I));
    note("bytes_measured");
    static_cast<void>(set.isSelfIntersecting());
    note("bytes_tested");
    static_cast<void>(set.distToPoint({0, 0}, false, true, true));
    note("bytes_queried");
  }
}

void many(benchmark::internal::Benchmark* b) {
  b->Arg(200)->Arg(2000)->Arg(20000)->Unit(benchmark::kMicrosecond);
}

void once(benchmark::internal::Benchmark* b) {
  b->Arg(200)->Arg(2000)->Arg(20000)->Unit(benchmark::kMicrosecond)->Iterations(1);
}

// Quadratic: 20,000 regions take half a minute.
void fewer(benchmark::internal::Benchmark* b) {
  b->Arg(200)->Arg(2000)->Unit(benchmark::kMicrosecond)->Iterations(1);
}

BENCHMARK(firstArea)->Apply(many);
BENCHMARK(firstCenterOfMass)->Apply(many);
BENCHMARK(firstInertiaMatrix)->Apply(many);
BENCHMARK(firstEncloseRect)->Apply(many);
BENCHMARK(firstSelfIntersection)->Apply(many);
BENCHMARK(pairsOfASet)->Apply(many);
BENCHMARK(selfIntersectionPairByPair)->Apply(fewer);
BENCHMARK(firstRegularize)->Apply(many);
BENCHMARK(areaFromMemory)->Apply(many);
BENCHMARK(copy)->Apply(many);
BENCHMARK(inside)->Apply(many);
BENCHMARK(distToPoint)->Apply(many);
BENCHMARK(bytesPerRegion)->Apply(once);

}  // namespace
