#include <cntr/internal/memory/computation_count.h>

#include <support/computed.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(ComputationProbe, CountsEachKindByItself) {
  const Computed lengths(gx_Computation::eLength);
  const Computed hulls(gx_Computation::eConvexHull);
  gx_countComputation(gx_Computation::eLength);
  gx_countComputation(gx_Computation::eLength);
  EXPECT_EQ(lengths.times(), 2);
  EXPECT_EQ(hulls.times(), 0);
}

TEST(ComputationProbe, EveryKindHasACounter) {
  for (int i = 0; i < static_cast<int>(gx_Computation::eCount); ++i) {
    const auto kind = static_cast<gx_Computation>(i);
    const Computed computed(kind);
    gx_countComputation(kind);
    EXPECT_EQ(computed.times(), 1) << i;
  }
}

TEST(ComputationProbe, EveryThreadCountsForItself) {
  const Computed computed(gx_Computation::eLength);
  std::thread([] {
    EXPECT_EQ(gx_computations(gx_Computation::eLength), 0);
    gx_countComputation(gx_Computation::eLength);
    EXPECT_EQ(gx_computations(gx_Computation::eLength), 1);
  }).join();
  EXPECT_EQ(computed.times(), 0);
}

}  // namespace
