// What every row of a benchmark does alike: its sizes, its check, its loop over queries or fresh shapes.
#pragma once

#include <benchmark/benchmark.h>
#include <velstd/vector.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using gx_Benchmark = benchmark::internal::Benchmark;

// The sizes of a row that scales, up to a largest one: a line sees outlines of 8 to 256 points by the thousand.
template <std::int64_t Largest>
void gx_sizesUpTo(gx_Benchmark* row) {
  for (const std::int64_t n : {8, 16, 32, 64, 100, 128, 256, 1000, 10000, 100000, 1000000}) {
    if (n <= Largest) row->Arg(n);
  }
  row->MinTime(0.1);
}
inline void gx_allSizes(gx_Benchmark* row) {
  gx_sizesUpTo<1000000>(row);
}

// The input of the size that is being measured: the last one is kept, since all rows of a size
// would make the same.
template <class Input>
const Input& gx_inputOf(std::int64_t n) {
  static std::unique_ptr<Input> input;
  static std::int64_t size = -1;
  if (size != n) {
    input.reset();
    input = std::make_unique<Input>(n);
    size = n;
  }
  return *input;
}

// Ends the row with an error, and returns false, unless both numbers agree within a share of the
// larger one: what is not the same work must not be compared.
inline bool gx_agree(benchmark::State& state, double expected, double got, double share = 0.0) {
  const double allowed = share * std::max(std::abs(expected), std::abs(got));
  if (std::abs(expected - got) <= allowed) return true;
  state.SkipWithError(
      ("answers " + std::to_string(got) + " instead of " + std::to_string(expected)).c_str());
  return false;
}

// Calls `check(i)` for the first queries before a row is timed: as many as take a fifth of a second, and
// at least ten.
template <class Check>
void gx_checkFirst(std::size_t queries, const Check& check) {
  const auto start = std::chrono::steady_clock::now();
  for (std::size_t i = 0; i < queries; ++i) {
    if (i >= 10 && i % 10 == 0 &&
        std::chrono::steady_clock::now() - start > std::chrono::milliseconds(200)) {
      return;
    }
    check(i);
  }
}

// Times `ask` on one query after the other, from the first again after the last.
template <class Query, class Ask>
void gx_timeQueries(benchmark::State& state, const std::vector<Query>& queries, const Ask& ask) {
  std::size_t next = 0;
  for ([[maybe_unused]] const auto _ : state) {
    benchmark::DoNotOptimize(ask(queries[next]));
    if (++next == queries.size()) next = 0;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

// Times `ask` on shapes that remember nothing, each asked once.  `make` returns a pointer to a fresh one.
// They are made and destroyed outside the timing, as many at a time as hold about 65,536 points, so
// that stopping the clock, about a microsecond, does not show.
template <class Make, class Ask>
void gx_timeFirst(benchmark::State& state, std::int64_t pointsEach, std::int64_t itemsEach,
                  const Make& make, const Ask& ask) {
  const std::int64_t batch = std::max<std::int64_t>(1, 65536 / pointsEach);
  std::vector<decltype(make())> fresh;
  fresh.reserve(static_cast<std::size_t>(batch));
  while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
    state.PauseTiming();
    fresh.clear();
    for (std::int64_t i = 0; i < batch; ++i) fresh.push_back(make());
    state.ResumeTiming();
    for (const auto& shape : fresh) benchmark::DoNotOptimize(ask(*shape));
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * itemsEach);
}

// The same of outlines of as many points as the row says, per point or edge.
template <class Make, class Ask>
void gx_timeFirst(benchmark::State& state, const Make& make, const Ask& ask) {
  gx_timeFirst(state, state.range(0), state.range(0), make, ask);
}
