// Bytes a vertex that an outline holds beside its points, after each kind of question.
//
// The parameter is the number of points. Each counter is the growth of the memory in use, the
// allocator's overhead included, when a fresh region is asked that one question, as often as it takes until
// an index pays; `all` when one region is asked all of them. The time is that of all questions together.
#include <benchmark/benchmark.h>
#include <cntr/region.h>
#include <malloc.h>
#include <support/exposed.h>

#include "outlines.h"

namespace {

double bytesInUse() {
  const auto info = mallinfo2();
  return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

struct Question {
  const char* name;
  void (*ask)(const ExposedRegion&);
};

// Many questions where the first few are answered without an index.
template <class Ask>
void often(Ask ask) {
  for (int i = 0; i < 20; ++i) ask();
}

const Question kQuestions[] = {
    {"nearest point",
     [](const ExposedRegion& r) {
       often([&r] { benchmark::DoNotOptimize(r.closestPoint({3, 4}, false)); });
     }},
    {"containment",
     [](const ExposedRegion& r) {
       const std::vector<gxVector<2>> points(r.points().size() + 2, gxVector<2>(3, 4));
       benchmark::DoNotOptimize(r.inside(points, true).size());
     }},
    {"vertices within 1 px",
     [](const ExposedRegion& r) {
       often([&r] { benchmark::DoNotOptimize(r.vertexIndex({3, 4}, 1.0).size()); });
     }},
    {"self-intersection",
     [](const ExposedRegion& r) { benchmark::DoNotOptimize(r.isSelfIntersecting()); }},
    {"convex hull",
     [](const ExposedRegion& r) {
       gxRegion hull;
       r.convexHull(hull);
     }},
    {"edge caches",
     [](const ExposedRegion& r) {
       benchmark::DoNotOptimize(r.lineSegs().size() + r.validLine().size());
     }},
};

void memory(benchmark::State& state) {
  const std::vector<gxVector<2>> points = gx_wobblyOutline(state.range(0));
  const auto perVertex = [&state](double bytes) { return bytes / static_cast<double>(state.range(0)); };
  for ([[maybe_unused]] const auto _ : state) {
    for (const Question& question : kQuestions) {
      const ExposedRegion region(points);
      const double before = bytesInUse();
      question.ask(region);
      state.counters[question.name] = perVertex(bytesInUse() - before);
    }
    const ExposedRegion region(points);
    const double before = bytesInUse();
    for (const Question& question : kQuestions) question.ask(region);
    state.counters["all"] = perVertex(bytesInUse() - before);
  }
}

BENCHMARK(memory)->Name("memory/ours")->Iterations(1)->RangeMultiplier(10)->Range(100, 1000000);

}  // namespace
