#include <gauge/internal/edge_terms.h>

#include <gtest/gtest.h>
#include <support/same_bits.h>

#include <algorithm>
#include <random>

namespace {

using Four = double __attribute__((vector_size(32)));

}  // namespace

TEST(EdgeTerms, TheSumsOfASquareAreItsMoments) {
  // Seen from its first corner: (1, 0) to (1, 1) to (0, 1).
  double sums[6] = {};
  gx_addToMoments<double>({1, 0}, {1, 1}, sums);
  gx_addToMoments<double>({1, 1}, {0, 1}, sums);
  EXPECT_EQ(sums[0], 2.0 * 1.0);
  EXPECT_EQ(sums[1], 6.0 * 0.5);
  EXPECT_EQ(sums[2], 6.0 * 0.5);
  EXPECT_EQ(sums[3], 24.0 / 3.0);
  EXPECT_EQ(sums[4], 24.0 / 4.0);
  EXPECT_EQ(sums[5], 24.0 / 3.0);
}

TEST(EdgeTerms, FourSideBySideHaveTheBitsThatEachHasAlone) {
  std::mt19937_64 engine(5);
  std::uniform_real_distribution<double> uniform(-2.0, 2.0);
  Four together[6] = {};
  double alone[4][6] = {};
  for (int i = 0; i < 50; ++i) {
    gx_Corner<Four> a{};
    gx_Corner<Four> b{};
    for (int k = 0; k < 4; ++k) {
      a.x[k] = uniform(engine);
      a.y[k] = uniform(engine);
      b.x[k] = uniform(engine);
      b.y[k] = uniform(engine);
      gx_addToMoments<double>({a.x[k], a.y[k]}, {b.x[k], b.y[k]}, alone[k]);
    }
    gx_addToMoments(a, b, together);
  }
  for (int k = 0; k < 4; ++k) {
    for (int term = 0; term < 6; ++term) EXPECT_TRUE(sameBits(together[term][k], alone[k][term]));
  }
}

TEST(EdgeTerms, AnEdgeFromACornerToItselfAddsNothing) {
  double sums[6] = {1.0, 1e-300, -0.5, 3.0, 0.1, 7.0};
  double before[6];
  std::copy(sums, sums + 6, before);
  gx_addToMoments<double>({-0.3, 0.7}, {-0.3, 0.7}, sums);
  for (int term = 0; term < 6; ++term) EXPECT_TRUE(sameBits(sums[term], before[term]));
}

TEST(EdgeTerms, AKeptSumLosesNothingOfSmallTermsBesideALargeOne) {
  gx_KeptSum<double> kept;
  kept.add(1e16);
  for (int i = 0; i < 1000; ++i) kept.add(0.25);
  kept.add(-1e16);
  EXPECT_EQ(kept.high + kept.low, 250.0);
}
