#include <cntr/internal/sets/region_index.h>
#include <cntr/internal/sets/set_index.h>

#include <cntr/region.h>
#include <support/computed.h>
#include <support/together.h>

#include <gtest/gtest.h>

#include <atomic>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

std::vector<gxPtrHandle<gxRegion>> row(int count) {
  std::vector<gxPtrHandle<gxRegion>> regions;
  for (int i = 0; i < count; ++i) {
    const double x = 2.0 * i;
    regions.push_back(gfMakeHandle<gxRegion>(Points{{x, 0}, {x + 1, 0}, {x + 1, 1}, {x, 1}}));
  }
  return regions;
}

gx_SetIndex::Regions constOf(const std::vector<gxPtrHandle<gxRegion>>& regions) {
  return {regions.begin(), regions.end()};
}

// Asks until there is an index, and returns how many questions that took.
int untilIndexed(const gx_SetIndex& index, const gx_SetIndex::Regions& regions) {
  int questions = 1;
  while (index.get(regions) == nullptr && questions < 1000) ++questions;
  return questions;
}

TEST(SetIndex, IsMadeAtTheEighthQuestionAndThenKept) {
  const auto regions = constOf(row(20));
  const gx_SetIndex index;
  const Computed made(gx_Computation::eSetIndex);
  EXPECT_EQ(untilIndexed(index, regions), 8);
  const gx_RegionIndex* const first = index.get(regions);
  EXPECT_EQ(index.get(regions), first);
  EXPECT_EQ(made.times(), 1);
}

TEST(SetIndex, ThatLostARegionComesBackAfterTwiceAsManyQuestions) {
  const auto regions = row(20);
  const auto handles = constOf(regions);
  const gx_SetIndex index;
  EXPECT_EQ(untilIndexed(index, handles), 8);
  regions[3]->points(Points{{0, 0}, {1, 0}, {0, 1}});
  EXPECT_EQ(untilIndexed(index, handles), 8);
  regions[3]->points(Points{{0, 0}, {1, 0}, {0, 1}});
  EXPECT_EQ(untilIndexed(index, handles), 16);
}

TEST(SetIndex, StaysThroughChangesElsewhere) {
  const auto regions = constOf(row(20));
  const gx_SetIndex index;
  untilIndexed(index, regions);
  const gx_RegionIndex* const before = index.get(regions);
  const auto others = row(20);
  const gx_SetIndex otherIndex;
  untilIndexed(otherIndex, constOf(others));
  others[0]->points(Points{{0, 0}, {1, 0}, {0, 1}});
  EXPECT_EQ(index.get(regions), before);
}

TEST(SetIndex, IsSharedByCopiesAndOutlivesTheFirst) {
  const auto regions = constOf(row(20));
  auto index = std::make_unique<gx_SetIndex>();
  untilIndexed(*index, regions);
  const gx_RegionIndex* const made = index->get(regions);
  const gx_SetIndex copy(*index);
  gx_SetIndex assigned;
  assigned = *index;
  index.reset();
  EXPECT_EQ(copy.get(regions), made);
  EXPECT_EQ(assigned.get(regions), made);
  assigned.drop();
  EXPECT_EQ(untilIndexed(assigned, regions), 8);
  EXPECT_NE(assigned.get(regions), made);
  EXPECT_EQ(copy.get(regions), made);
}

TEST(SetIndex, IsMadeByOneOfSeveralThreads) {
  for (int round = 0; round < 50; ++round) {
    const auto regions = constOf(row(20));
    const gx_SetIndex index;
    std::atomic<int> found{0};
    together(4, [&](std::size_t) {
      for (int i = 0; i < 40; ++i) {
        if (const gx_RegionIndex* known = index.get(regions)) {
          found += known->holds(regions) ? 1 : 0;
        }
      }
    });
    EXPECT_GT(found, 0);
    ASSERT_NE(index.get(regions), nullptr);
  }
}

// Regions change between the questions, never during them.
TEST(SetIndex, IsReplacedByOneOfSeveralThreadsThatFindItStale) {
  const auto regions = row(20);
  const auto handles = constOf(regions);
  const gx_SetIndex index;
  for (int round = 0; round < 30; ++round) {
    untilIndexed(index, handles);
    regions[static_cast<std::size_t>(round % 20)]->points(Points{{0, 0}, {1, 0}, {0, 1}});
    together(3, [&](std::size_t) {
      for (int i = 0; i < 20; ++i) {
        if (const gx_RegionIndex* known = index.get(handles)) {
          EXPECT_TRUE(known->holds(handles));
        }
      }
    });
  }
}

}  // namespace
