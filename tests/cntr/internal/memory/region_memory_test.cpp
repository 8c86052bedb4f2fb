#include <cntr/internal/index/containment_grid.h>
#include <cntr/internal/memory/region_memory.h>

#include <cntr/region.h>

#include <gtest/gtest.h>

#include <utility>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;

// Everything filled, the numbers by hand; the repaired forms are given.
gx_RegionMemory full(const Handle& regularized, const Handle& outerHull) {
  gx_RegionMemory memory;
  const gx_SeldomOfRegion& seldom = memory.seldom.made();
  seldom.centerWithHoles.set({1, 2});
  memory.centerNoHoles.set({3, 4});
  seldom.areaWithHoles.set({5});
  memory.areaNoHoles.set({6});
  memory.inertiaNoHoles.set({7, 8, 8, 9});
  seldom.regularized.publish(regularized);
  seldom.outerHull.publish(outerHull);
  memory.rayEffort.add(11);
  return memory;
}

int known(const gx_RegionMemory& m) {
  const int often = m.centerNoHoles.known() + m.areaNoHoles.known() + m.inertiaNoHoles.known();
  const gx_SeldomOfRegion* seldom = m.seldom.get();
  if (seldom == nullptr) return often;
  return often + seldom->centerWithHoles.known() + seldom->areaWithHoles.known() +
         (seldom->regularized.get() != nullptr) + (seldom->outerHull.get() != nullptr);
}

TEST(RegionMemoryRecord, ByDefaultHoldsNothing) {
  const gx_RegionMemory memory;
  EXPECT_EQ(known(memory), 0);
  EXPECT_EQ(memory.rayEffort.spent(), 0U);
  EXPECT_EQ(memory.containment.get(), nullptr);
}

TEST(RegionMemoryRecord, CopiesEverythingAndSharesTheRepairedForms) {
  const Handle regularized(new gxRegion);
  const Handle outerHull(new gxRegion);
  const gx_RegionMemory memory = full(regularized, outerHull);
  const gx_RegionMemory copy(memory);
  EXPECT_EQ(known(copy), 7);
  double area = 0.0;
  ASSERT_NE(copy.seldom.get(), nullptr);
  EXPECT_TRUE(copy.seldom.get()->areaWithHoles.get<0>(area));
  EXPECT_EQ(area, 5.0);
  EXPECT_EQ(*copy.seldom.get()->regularized.get(), regularized);
  EXPECT_EQ(*copy.seldom.get()->outerHull.get(), outerHull);
  EXPECT_EQ(copy.rayEffort.spent(), 11U);
}

TEST(RegionMemoryRecord, DroppingForgetsEveryResult) {
  const Handle regularized(new gxRegion);
  const Handle outerHull(new gxRegion);
  gx_RegionMemory memory = full(regularized, outerHull);
  memory.drop();
  EXPECT_EQ(known(memory), 0);
  EXPECT_EQ(memory.rayEffort.spent(), 0U);
  EXPECT_EQ(regularized->refCount(), 1);
  EXPECT_EQ(outerHull->refCount(), 1);
}

TEST(RegionMemoryRecord, ExchangedWithAnEmptyOneLeavesNothingBehind) {
  gx_RegionMemory memory = full(Handle(new gxRegion), Handle(new gxRegion));
  const gx_RegionMemory taken = std::exchange(memory, {});
  EXPECT_EQ(known(taken), 7);
  EXPECT_EQ(known(memory), 0);
}

}  // namespace
