#include <cntr/internal/sets/regionset_memory.h>

#include <cntr/regionst.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace {

// Everything filled, with values that differ.
gx_RegionSetMemory filled() {
  gx_RegionSetMemory memory;
  memory.centerWithHolesValid = memory.centerNoHolesValid = true;
  memory.centerWithHoles = {1, 2};
  memory.centerNoHoles = {3, 4};
  memory.areaWithHolesValid = memory.areaNoHolesValid = true;
  memory.areaWithHoles = 5;
  memory.areaNoHoles = 6;
  memory.encloseRects.made().insert(gxXform<2>(), gxRect(gxVector<2>(7, 8), gxVector<2>(9, 10)), 3);
  memory.inertiaWithHolesValid = memory.inertiaNoHolesValid = true;
  memory.inertiaWithHoles = {1, 2, 3, 4};
  memory.inertiaNoHoles = {5, 6, 7, 8};
  memory.selfIntersecting = memory.selfIntersectingValid = true;
  memory.regularizedValid = memory.outerHullValid = true;
  memory.regularizedSet = gxPtrHandle_const<gxRegionSet>(new gxRegionSet);
  memory.outerHullSet = gxPtrHandle_const<gxRegionSet>(new gxRegionSet);
  return memory;
}

}  // namespace

static_assert(std::is_nothrow_move_constructible_v<gx_RegionSetMemory>);
static_assert(std::is_nothrow_move_assignable_v<gx_RegionSetMemory>);

TEST(RegionSetMemory, DropClearsEveryFlag) {
  gx_RegionSetMemory memory = filled();
  memory.drop();
  EXPECT_FALSE(memory.centerWithHolesValid);
  EXPECT_FALSE(memory.centerNoHolesValid);
  EXPECT_FALSE(memory.areaWithHolesValid);
  EXPECT_FALSE(memory.areaNoHolesValid);
  EXPECT_EQ(memory.areaWithHoles, 0.0);
  EXPECT_EQ(memory.areaNoHoles, 0.0);
  EXPECT_FALSE(memory.encloseRects);
  EXPECT_FALSE(memory.inertiaWithHolesValid);
  EXPECT_FALSE(memory.inertiaNoHolesValid);
  EXPECT_FALSE(memory.selfIntersectingValid);
  EXPECT_FALSE(memory.regularizedValid);
  EXPECT_FALSE(memory.outerHullValid);
}

TEST(RegionSetMemory, DropKeepsTheRepairedSetsUntilTheyAreReplaced) {
  gx_RegionSetMemory memory = filled();
  memory.drop();
  EXPECT_FALSE(memory.regularizedSet.isNull());
  EXPECT_FALSE(memory.outerHullSet.isNull());
}

TEST(RegionSetMemory, CopySharesTheRepairedSetsAndCopiesTheRectangles) {
  const gx_RegionSetMemory memory = filled();
  const gx_RegionSetMemory copy(memory);
  EXPECT_EQ(copy.regularizedSet, memory.regularizedSet);
  EXPECT_EQ(copy.outerHullSet, memory.outerHullSet);
  ASSERT_TRUE(copy.encloseRects);
  EXPECT_NE(copy.encloseRects.get(), memory.encloseRects.get());
  EXPECT_EQ(*copy.encloseRects.get()->find(gxXform<2>()), gxRect(gxVector<2>(7, 8), gxVector<2>(9, 10)));
}
