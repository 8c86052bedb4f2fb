// One counter a kind and thread, in builds with tests only: what a library that is installed for use
// computes is nobody's business, and a counter would be state that all its shapes share.
#include <cntr/internal/memory/computation_count.h>

#if defined(GXSHAPE_COUNTS_COMPUTATIONS)

#  include <array>

namespace {
thread_local std::array<long, static_cast<std::size_t>(gx_Computation::eCount)> counts{};
}  // namespace

void gx_countComputation(gx_Computation what) noexcept {
  ++counts[static_cast<std::size_t>(what)];
}

long gx_computations(gx_Computation what) noexcept {
  return counts[static_cast<std::size_t>(what)];
}

#endif
