#include <cntr/internal/outline/deep_ptr.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Numbers = gx_DeepPtr<std::vector<int>>;

static_assert(std::is_nothrow_default_constructible_v<Numbers>);
static_assert(std::is_nothrow_move_constructible_v<Numbers>);
static_assert(std::is_nothrow_move_assignable_v<Numbers>);

Numbers holding(std::vector<int> numbers) {
  Numbers result;
  result.made() = std::move(numbers);
  return result;
}

TEST(DeepPtr, HoldsNothingByDefault) {
  const Numbers none;
  EXPECT_FALSE(none);
  EXPECT_EQ(none.get(), nullptr);
}

TEST(DeepPtr, MakesItsObjectOnceWhenAskedForIt) {
  Numbers numbers;
  std::vector<int>& first = numbers.made();
  EXPECT_TRUE(numbers);
  EXPECT_TRUE(first.empty());
  first.push_back(7);
  EXPECT_EQ(&numbers.made(), &first);
  EXPECT_EQ(numbers.get(), &first);
  EXPECT_EQ(numbers.made(), std::vector<int>({7}));
}

TEST(DeepPtr, CopiesTheObjectWithItself) {
  Numbers original = holding({1, 2});
  Numbers copy(original);
  original.made().push_back(3);
  EXPECT_EQ(*copy.get(), std::vector<int>({1, 2}));
  EXPECT_NE(copy.get(), original.get());
}

TEST(DeepPtr, CopiesNothingAsNothing) {
  const Numbers none;
  const Numbers copy(none);
  EXPECT_FALSE(copy);
}

TEST(DeepPtr, AssignmentMakesAnObjectWhereThereWasNone) {
  const Numbers original = holding({1, 2});
  Numbers target;
  target = original;
  EXPECT_EQ(*target.get(), std::vector<int>({1, 2}));
  EXPECT_NE(target.get(), original.get());
}

TEST(DeepPtr, AssignmentOfNothingFreesTheObject) {
  Numbers target = holding({1, 2});
  const Numbers none;
  target = none;
  EXPECT_FALSE(target);
}

TEST(DeepPtr, SelfAssignmentKeepsTheValue) {
  Numbers numbers = holding({1, 2});
  const Numbers& same = numbers;
  numbers = same;
  EXPECT_EQ(*numbers.get(), std::vector<int>({1, 2}));
}

TEST(DeepPtr, MovingHandsTheObjectOverAndLeavesNothing) {
  Numbers original = holding({1, 2});
  const std::vector<int>* const object = original.get();
  Numbers moved(std::move(original));
  EXPECT_EQ(moved.get(), object);
  EXPECT_FALSE(original);  // NOLINT(bugprone-use-after-move)
  Numbers assigned = holding({9});
  assigned = std::move(moved);
  EXPECT_EQ(assigned.get(), object);
}

TEST(DeepPtr, ResetFreesTheObject) {
  Numbers numbers = holding({1, 2});
  numbers.reset();
  EXPECT_FALSE(numbers);
  EXPECT_TRUE(numbers.made().empty());
}

struct CannotBeCopied {
  CannotBeCopied() = default;
  CannotBeCopied(const CannotBeCopied&) { throw std::runtime_error("no"); }
  CannotBeCopied& operator=(const CannotBeCopied&) = delete;
  int value = 5;
};

TEST(DeepPtr, AnAssignmentThatFailsLeavesTheOldObject) {
  gx_DeepPtr<CannotBeCopied> source;
  source.made();
  gx_DeepPtr<CannotBeCopied> target;
  target.made().value = 6;
  EXPECT_THROW(target = source, std::runtime_error);
  ASSERT_TRUE(target);
  EXPECT_EQ(target.get()->value, 6);
}

}  // namespace
