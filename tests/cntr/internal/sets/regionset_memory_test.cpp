#include <cntr/internal/sets/region_index.h>
#include <cntr/internal/sets/regionset_memory.h>

#include <cntr/regionst.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace {

using Handle = gxPtrHandle_const<gxRegionSet>;

// Everything filled, with values that differ.
gx_RegionSetMemory filled(const Handle& regularized, const Handle& outerHull) {
  gx_RegionSetMemory memory;
  memory.centerWithHoles.set({1, 2});
  memory.centerNoHoles.set({3, 4});
  memory.areaWithHoles.set({5});
  memory.areaNoHoles.set({6});
  memory.encloseRects.made().insert(gxXform<2>(), gxRect(gxVector<2>(7, 8), gxVector<2>(9, 10)), 3);
  memory.inertiaWithHoles.set({1, 2, 3, 4});
  memory.inertiaNoHoles.set({5, 6, 7, 8});
  memory.selfIntersecting.set(true);
  memory.regularizedSet.publish(regularized);
  memory.outerHullSet.publish(outerHull);
  return memory;
}

int known(const gx_RegionSetMemory& m) {
  bool crosses = false;
  return m.centerWithHoles.known() + m.centerNoHoles.known() + m.areaWithHoles.known() +
         m.areaNoHoles.known() + m.inertiaWithHoles.known() + m.inertiaNoHoles.known() +
         m.selfIntersecting.get(crosses) + (m.encloseRects.get() != nullptr) +
         (m.regularizedSet.get() != nullptr) + (m.outerHullSet.get() != nullptr);
}

}  // namespace

static_assert(std::is_nothrow_move_constructible_v<gx_RegionSetMemory>);
static_assert(std::is_nothrow_move_assignable_v<gx_RegionSetMemory>);

TEST(RegionSetMemory, DropForgetsEveryResult) {
  const Handle regularized(new gxRegionSet);
  const Handle outerHull(new gxRegionSet);
  gx_RegionSetMemory memory = filled(regularized, outerHull);
  EXPECT_EQ(known(memory), 10);
  memory.drop();
  EXPECT_EQ(known(memory), 0);
  EXPECT_EQ(regularized->refCount(), 1);
  EXPECT_EQ(outerHull->refCount(), 1);
}

TEST(RegionSetMemory, CopySharesTheRepairedSetsAndCopiesTheRectangles) {
  const gx_RegionSetMemory memory = filled(Handle(new gxRegionSet), Handle(new gxRegionSet));
  const gx_RegionSetMemory copy(memory);
  EXPECT_EQ(known(copy), 10);
  EXPECT_EQ(*copy.regularizedSet.get(), *memory.regularizedSet.get());
  EXPECT_EQ(*copy.outerHullSet.get(), *memory.outerHullSet.get());
  EXPECT_NE(copy.encloseRects.get(), memory.encloseRects.get());
  gxRect rect;
  ASSERT_TRUE(copy.encloseRects.get()->find(gxXform<2>(), rect));
  EXPECT_EQ(rect, gxRect(gxVector<2>(7, 8), gxVector<2>(9, 10)));
}
