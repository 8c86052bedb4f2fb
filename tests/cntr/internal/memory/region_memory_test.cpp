#include <cntr/internal/memory/region_memory.h>

#include <cntr/region.h>

#include <gtest/gtest.h>

#include <utility>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;

// Everything filled.
gx_RegionMemory full() {
  gx_RegionMemory memory;
  memory.centerWithHolesValid = memory.centerNoHolesValid = true;
  memory.centerWithHoles = gxVector<2>(1, 2);
  memory.centerNoHoles = gxVector<2>(3, 4);
  memory.areaWithHolesValid = memory.areaNoHolesValid = true;
  memory.areaWithHoles = 5;
  memory.areaNoHoles = 6;
  memory.inertiaNoHolesValid = true;
  memory.inertiaNoHoles = gxMatrix<2>(7, 8, 8, 9);
  memory.regularizedValid = memory.outerHullValid = true;
  memory.regularized = Handle(new gxRegion);
  memory.outerHull = Handle(new gxRegion);
  return memory;
}

int validFlags(const gx_RegionMemory& m) {
  return m.centerWithHolesValid + m.centerNoHolesValid + m.areaWithHolesValid + m.areaNoHolesValid +
         m.inertiaNoHolesValid + m.regularizedValid + m.outerHullValid;
}

TEST(RegionMemoryRecord, ByDefaultHoldsNothing) {
  const gx_RegionMemory memory;
  EXPECT_EQ(validFlags(memory), 0);
  EXPECT_EQ(memory.areaNoHoles, 0.0);
  EXPECT_TRUE(memory.regularized.isNull());
  EXPECT_TRUE(memory.outerHull.isNull());
}

TEST(RegionMemoryRecord, CopiesEverythingAndSharesTheRepairedForms) {
  const gx_RegionMemory memory = full();
  const gx_RegionMemory copy(memory);
  EXPECT_EQ(validFlags(copy), 7);
  EXPECT_EQ(copy.areaWithHoles, 5.0);
  EXPECT_EQ(copy.centerNoHoles, gxVector<2>(3, 4));
  EXPECT_EQ(copy.inertiaNoHoles.m00(), 7.0);
  EXPECT_EQ(copy.regularized.get(), memory.regularized.get());
  EXPECT_EQ(copy.outerHull.get(), memory.outerHull.get());
}

TEST(RegionMemoryRecord, DroppingForgetsEveryResultAndKeepsTheRepairedFormsAlive) {
  gx_RegionMemory memory = full();
  const Handle regularized = memory.regularized;
  memory.drop();
  EXPECT_EQ(validFlags(memory), 0);
  EXPECT_EQ(memory.areaWithHoles, 0.0);
  EXPECT_EQ(memory.areaNoHoles, 0.0);
  EXPECT_EQ(memory.regularized.get(), regularized.get());
  EXPECT_EQ(regularized->refCount(), 2) << "until the next repair puts another in its place";
}

TEST(RegionMemoryRecord, ExchangedWithAnEmptyOneLeavesNothingBehind) {
  gx_RegionMemory memory = full();
  const gx_RegionMemory taken = std::exchange(memory, {});
  EXPECT_EQ(validFlags(taken), 7);
  EXPECT_EQ(validFlags(memory), 0);
  EXPECT_TRUE(memory.regularized.isNull());
}

}  // namespace
