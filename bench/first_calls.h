// Timing the first question to a shape, where a second one would be answered from memory.
//
// A pool of shapes is made, every shape is asked once, and the whole pass is timed; before the
// next pass the timer is stopped and the pool is made anew.  Stopping and starting the timer costs
// some 0.3 µs that are counted; the pool has so many shapes that this is below one percent of what
// is timed (256 shapes of 64 points, 32 of 1,000, one from 32,768 on), and no more than the second
// level cache holds.
//
// Those who remember nothing are asked over a pool of the same size, which need not be made anew, so
// that the points come from the same cache for everybody.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

// How many shapes of `points` points are asked between two stops of the timer.
inline std::int64_t gx_poolSize(std::int64_t points, std::int64_t most = 256) {
  return std::clamp<std::int64_t>(32768 / std::max<std::int64_t>(points, 1), 1, most);
}

enum class gx_Pool : int {
  eAnew,  // made again before each pass
  eKept   // made once
};

// Times `ask(shape)` over a pool of `size` shapes; `make(i)` makes number i, the same each time.  Where an
// algorithm decides by comparing coordinates, these ought to be different shapes: of 64 points that are
// always the same the processor learns every decision by heart.
template <class Make, class Ask>
void gx_timePool(benchmark::State& state, gx_Pool pool, std::int64_t size, const Make& make,
                 const Ask& ask) {
  std::vector<decltype(make(size))> shapes;
  shapes.reserve(static_cast<std::size_t>(size));
  const auto fill = [&] {
    shapes.clear();
    for (std::int64_t i = 0; i < size; ++i) shapes.push_back(make(i));
  };
  fill();
  while (state.KeepRunningBatch(size)) {
    if (pool == gx_Pool::eAnew) {
      state.PauseTiming();
      fill();
      state.ResumeTiming();
    }
    for (auto& shape : shapes) ask(shape);
  }
}
