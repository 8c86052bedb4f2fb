// The repaired form of a shape is made once, and held while it is assigned.
#include <cntr/internal/memory/repaired.h>
#include <cntr/region.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace {

using V = gxVector<2>;
using Memory = gx_Once<gxPtrHandle_const<gxRegion>>;

constexpr auto kWhat = gx_Computation::eRegularize;

void makeSquare(gxRegion& form) {
  form = gxRegion(std::vector<V>{{0, 0}, {1, 0}, {1, 1}, {0, 1}});
}

TEST(Repaired, IsMadeByTheFirstQuestionAndRememberedForTheNext) {
  const Memory memory;
  gxRegion first;
  gxRegion second;
  int made = 0;
  int told = 0;
  const long before = gx_computations(kWhat);
  const auto repair = [&made](gxRegion& form) {
    makeSquare(form);
    ++made;
  };
  gx_assignRepaired(
      memory, kWhat, repair, [&told] { ++told; }, first);
  gx_assignRepaired(
      memory, kWhat, repair, [&told] { ++told; }, second);
  EXPECT_EQ(made, 1);
  EXPECT_EQ(told, 1);
  EXPECT_EQ(gx_computations(kWhat), before + 1);
  EXPECT_EQ(first.points().size(), 4U);
  EXPECT_EQ(second, first);
}

TEST(Repaired, IsToldBeforeTheAssignment) {
  const Memory memory;
  gxRegion result;
  std::size_t then = 99;
  gx_assignRepaired(
      memory, kWhat, makeSquare, [&] { then = result.points().size(); }, result);
  EXPECT_EQ(then, 0U);
}

TEST(Repaired, ARepairThatThrowsLeavesNothingBehind) {
  const Memory memory;
  gxRegion result({{5, 5}, {6, 5}, {6, 6}});
  const auto fails = [](gxRegion& form) {
    makeSquare(form);
    throw std::runtime_error("no way around");
  };
  const auto never = [] { ADD_FAILURE(); };
  EXPECT_THROW(gx_assignRepaired(memory, kWhat, fails, never, result), std::runtime_error);
  EXPECT_EQ(memory.get(), nullptr);
  EXPECT_EQ(result.points().size(), 3U);
}

}  // namespace
