#include <cntr/internal/index/vertex_grid.h>
#include <cntr/internal/memory/vertex_lookups.h>

#include <support/together.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(VertexLookups, KeepWhatIsKnownOfATolerance) {
  gx_VertexLookups lookups;
  lookups.used(1.0, 3)->questions.add(5);
  EXPECT_EQ(lookups.used(2.0, 3)->questions.spent(), 0U);
  EXPECT_EQ(lookups.used(1.0, 3)->questions.spent(), 5U);
  EXPECT_EQ(lookups.used(1.0, 3)->tolerance, 1.0);
  EXPECT_EQ(lookups.size(), 2U);
}

TEST(VertexLookups, HoldOneMoreThanTheLimitAndGiveUpTheOneUsedTheLongestAgo) {
  gx_VertexLookups lookups;
  for (const double tolerance : {1.0, 2.0, 3.0}) lookups.used(tolerance, 2)->questions.add(1);
  lookups.used(1.0, 2);  // so that 2 is the oldest
  lookups.used(4.0, 2);
  EXPECT_EQ(lookups.size(), 3U);
  EXPECT_EQ(lookups.used(1.0, 2)->questions.spent(), 1U);
  EXPECT_EQ(lookups.used(3.0, 2)->questions.spent(), 1U);
  EXPECT_EQ(lookups.used(2.0, 2)->questions.spent(), 0U) << "it had been given up";
}

TEST(VertexLookups, OfACopyAreItsOwnAndShareTheGrid) {
  gx_VertexLookups lookups;
  const auto lookup = lookups.used(1.0, 3);
  const std::vector<gxVector<2>> points{{0, 0}, {1, 1}};
  const auto* grid = &lookup->grid.made([&] { return gx_VertexGrid(points, 1.0); });
  gx_VertexLookups copy(lookups);
  lookup->questions.add(1);
  EXPECT_EQ(copy.used(1.0, 3)->questions.spent(), 0U);
  EXPECT_EQ(copy.used(1.0, 3)->grid.get(), grid);
}

TEST(VertexLookups, OfSeveralThreadsKeepTheirBound) {
  gx_VertexLookups lookups;
  together(4, [&](std::size_t thread) {
    for (int i = 0; i < 400; ++i) {
      const double tolerance = static_cast<double>((static_cast<int>(thread) + i * 7) % 9);
      EXPECT_EQ(lookups.used(tolerance, 3)->tolerance, tolerance);
      if (i % 40 == 0) {
        EXPECT_LE(gx_VertexLookups(lookups).size(), 4U);
      }
    }
  });
  EXPECT_EQ(lookups.size(), 4U);
}

}  // namespace
