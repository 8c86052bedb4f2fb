// One counter a kind and thread.  They cost an addition beside a computation of at least a loop
// over all points, so they are always on.
#include <cntr/internal/memory/probe.h>

#include <array>

namespace {
thread_local std::array<long, static_cast<std::size_t>(gx_Computation::eCount)> counts{};
}  // namespace

void gx_countComputation(gx_Computation what) noexcept {
  ++counts[static_cast<std::size_t>(what)];
}

long gx_computations(gx_Computation what) noexcept {
  return counts[static_cast<std::size_t>(what)];
}
